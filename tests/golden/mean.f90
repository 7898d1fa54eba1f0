function mean(x, n)
  integer n
  real x(n), mean
  mean = 0.0
  do i = 1, n
    mean = mean + x(i)
  end do
  if (n > 0) mean = mean / n
end function mean
