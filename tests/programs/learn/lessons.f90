! A network learns "one or the other", a salesman his way, and bits their pattern.
program lessons
  use network
  use search, only: city, anneal, breed, trip_length, edit_distance, common_word => longest_common
  implicit none

  type(net) :: pupil, copy
  real(rk), dimension(2, 4) :: questions
  real(rk), dimension(1, 4) :: answers
  real(rk) :: error
  integer :: k, rounds, genes, status
  integer, parameter :: n = 12, unit = 33
  type(city), dimension(n) :: towns
  integer, dimension(n) :: order
  character(len=20) :: word
  integer, parameter :: places(2, n) = reshape((/ &
       0, 0,  7, 1,  3, 9,  5, 5,  8, 8,  1, 6, &
       9, 3,  2, 2,  6, 9,  4, 0,  0, 9,  9, 0 /), (/2, n/))
  interface
     integer function like_pattern(genes)
       integer, intent(in) :: genes
     end function like_pattern
  end interface
  data questions / 0, 0, 0, 1, 1, 0, 1, 1 /
  data answers(1, 1), answers(1, 4) / 2*0.0 /, (answers(1, k), k = 2, 3) / 1.0, 1.0 /

  call create(pupil, 'one of two', (/2, 4, 1/))
  call set_rate(new_momentum=0.9_rk)
  do rounds = 1, 20000
     error = train(pupil, questions, answers)
     if (error < 0.01) exit
  end do
  print *, 'learned: ', rounds < 20000, error < 0.01
  open (unit, form='unformatted', status='scratch', access='sequential')
  call save_net(pupil, unit)
  rewind unit
  call load_net(copy, unit, status)
  if (status /= 0) stop 'cannot load'
  do k = 1, 4
     print '(1X, 2F5.1, " -> ", I2)', questions(:, k), nint(copy .of. questions(:, k))
  end do
  call load_net(copy, unit, status)
  print *, 'second is missing:', status
  close (unit)
  call drop(pupil)

  do k = 1, n
     write (towns(k)%name, '("town ", I2)') k
     towns(k)%x = places(1, k)
     towns(k)%y = places(2, k)
     order(k) = k
  end do
  call anneal(towns, order, cooling=0.9, trials=400)
  print '(1X, "trip shorter than 42: ", L1)', trip_length(towns, order) < 42.0
  if (sum(order) /= n*(n + 1)/2) print *, 'towns were lost', towns(order)%name

  call breed(like_pattern, goal=32, size_of_herd=60, best=genes, generations=k)
  print '(1X, Z8.8, L2)', genes, k < 1000

  print *, edit_distance('kitten', 'sitting'), edit_distance('same', 'same ')
  call common_word('photograph', 'tomography', word)
  print *, word
end program lessons

! How many bits are as in the pattern.
integer function like_pattern(genes)
  implicit none
  integer, intent(in) :: genes
  integer :: pattern, k
  data pattern / B'00110011000011111010101001010101' /

  like_pattern = 0
  do k = 0, bit_size(genes) - 1
     if (btest(genes, k) .eqv. btest(pattern, k)) like_pattern = like_pattern + 1
  end do
end function like_pattern
