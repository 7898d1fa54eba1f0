! A report with every kind of edit descriptor.
subroutine print_report(values, flags, phases)
  implicit none
  real, dimension(:), intent(in)    :: values
  logical, dimension(:), intent(in) :: flags
  complex, intent(in)               :: phases(2)
  integer :: i, mask
  double precision :: exact
  character(len=40) :: form

  exact = 4.0d0 * atan(1.0d0)
  mask = 2989
  print 10, 'Report', ('=', i = 1, 40)
  print 20, (i, values(i), values(i), values(i), flags(i), i = 1, size(values))
  print 30, mask, mask, mask, mask
  print 40, values(1:3)
  print 50, values(2), values(2), values(2), exact
  print 60, phases
  print 70, -1, 1, -1, 1
  print 80, 7, 8
  print 90, 'tabs', 'left', 'right'
  print 100, (i, i*i, i = 1, 5)
  print 110, exact, 42, 'text', .true.
  ! a format made to measure
  write (form, '("(1x, ", i2, "(""-""), f", i2, ".", i1, ", -2p, f8.3, 0p)")') &
    size(values), 9, 4
  print form, values(1), values(3) * 100.0
10 format (1x, a6 / 1x, 40a1)
20 format (1x, i3, 2x, f10.3, 2x, e12.4, 2x, g12.5, l3)
30 format (' decimal ', i6.6, ', binary ', b16, ', octal ', o8.6, ', hex ', z6)
40 format (1x, 3(f8.2, :, ' and '))
50 format (1x, es12.4, en14.3, e14.4e3, d20.12)
60 format (2(1x, '(', f6.2, ',', f6.2, ')'))
70 format (1x, sp, 2i4, ss, 2i4, s)
80 format (1x, 'it''s', i2, ' of', i2, ' characters')
90 format (1x, t12, a, t4, a, tr14, a, tl30, '<')
100 format (5(1x, i2, '^2 =', i3, :, ';'))
110 format (1x, g14.6, g6.2, g8.2, g4.2)
end subroutine print_report
