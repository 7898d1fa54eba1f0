program greet
  character(5) :: word = 'hello'
  integer, parameter :: times = 2
  common /state/ count, limits(2)
  integer count
  do while (count < times)
    count = count + 1
    print *, word // '!', limits(count)
  end do
end program greet
