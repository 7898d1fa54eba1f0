! A page of each edit descriptor, written and read back through internal files.

program formats
  implicit none
  integer, parameter :: width = 72
  character(len=width) :: line, page(4)
  character(len=5) :: word
  integer :: i, j, digits(4)
  real :: x, y, table(2, 3)
  double precision :: d
  complex :: z
  logical :: flag

  x = 3.14159
  y = -0.00271828
  d = 1.0d-12
  z = (1.5, -2.5)
  i = 255
  flag = .true.
  table = reshape((/ 1.0, 2.0, 3.0, 4.0, 5.0, 6.0 /), (/ 2, 3 /))

  ! numbers
  write (*, '(1x, i6, i6.4, b12.8, o8.6, z6.4)') i, i, i, i, i
  write (*, '(1x, f10.3, e12.4, e14.5e3, en14.3, es12.3, g12.4)') x, x, x, x, x, x
  write (*, '(1x, d20.10, 1p, e12.4, 0p, f8.2)') d, x, x
  write (*, '(1x, 2(f8.3, :, '' + i*''))') z
  write (*, '(1x, l3, l7)') flag, .not. flag

  ! characters, positions and signs
  word = 'text'
  write (*, '(1x, a, a8, a2, ''quoted'', 7hcounted)') word, word, word
  write (*, '(1x, t10, a, tl3, a, tr5, a, 3x, a)') 'ten', 'back', 'on', 'end'
  write (*, '(1x, sp, i4, ss, i4, s, i4)') 1, 2, 3

  ! groups, slashes, and more items than descriptors
  write (*, 100) table
100 format (1x, 'table', 3(/ 3x, 2f8.2))
  write (*, '(1x, 3(i3, '',''), i3)') (j, j = 1, 8)
  write (page, '(a / a / a / a)') 'one', 'two', 'three', 'four'
  print '(1x, 4(a5, 1x))', page

  ! reading: blanks as nothing or as zeros, scale factors, list-directed and from a format in a variable
  line = ' 1 2 34   5'
  read (line, '(bn, i4, bz, i4)') digits(1), digits(2)
  read (line, '(bn, i2, 2i2, 1x, i3)') digits
  line = '12345'
  read (line, '(2p, f5.2)') y
  line = '5 6, 2*7'
  read (line, *) digits
  write (line, '(a, i2.2, a)') '(1x, ', size(digits), 'i5)'
  write (*, fmt=line) digits
  print *, y
end program formats
