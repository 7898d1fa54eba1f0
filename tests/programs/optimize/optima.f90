program optima
  use line_searches, bracket => bracket_minimum
  use minimizers
  use test_functions
  use working_precision
  implicit none
  real(wp) :: a, b, c, least, x2(2), x4(4), p(3), t(25), y(25)
  type(root_info) :: root
  type(report) :: outcome
  integer :: i, steps, order(12)

  print '(a)', ' one variable'
  a = -4; b = -3.5_wp
  call bracket(valley, a, b, c)
  print '(1x, 2(a, f12.7))', 'golden section', golden_section(valley, a, c)
  call parabolic_minimum(valley, a, b, c, x2(1), least, steps)
  print '(1x, a, f12.7, a, f12.7, a, i4)', 'parabolas     ', x2(1), ' value', least, ' steps', steps
  root = find_root(f=cubic, a=1.0_wp, b=5.0_wp, tolerance=1.0e-12_wp)
  print '(1x, a, f12.7, l3)', 'root          ', root%root, root%found .and. root%evaluations < 60
  root = find_root(cubic, 3.0_wp, 5.0_wp, 1.0e-12_wp)
  if (root%found) print *, 'there is no root from 3 to 5'

  print '(a)', ' several variables'
  x2 = (/ -1.2_wp, 1.0_wp /)
  call simplex_search(banana, x2, 0.5_wp, outcome)
  call print_report('banana, simplex', outcome, x2)
  x2 = 0
  call simplex_search(himmel, x2, size_of_start=1.0_wp, most_steps=300, outcome=outcome)
  call print_report('four valleys', outcome, x2)
  x4 = (/ (-1.2_wp + 0.2_wp*i, i = 1, 4) /)
  call quasi_newton(banana, x4, outcome, banana_gradient)
  call print_report('banana, gradient', outcome, x4)
  x4 = (/ -1.2_wp, 1.0_wp, -1.2_wp, 1.0_wp /)
  call quasi_newton(banana, x4, outcome, tolerance=1.0e-6_wp)
  call print_report('banana, differences', outcome)

  t = (/ (0.2_wp*i, i = 1, size(t)) /)
  y = 2.5_wp*exp(-1.3_wp*t) + 0.5_wp + 0.001_wp*(/ (mod(7*i, 5) - 2, i = 1, size(t)) /)
  p = (/ 1.0_wp, 1.0_wp, 0.0_wp /)
  call fit_curve(decay, t, y, p, outcome)
  call print_report('decay', outcome, p)

  do i = 1, size(towns, 2)
     towns(:, i) = (/ cos(2.6179938779914944_wp*i), sin(2.6179938779914944_wp*i) /)
  end do
  order = (/ (i, i = 1, size(order)) /)
  call anneal(tour_length, order, 1.0_wp, outcome)
  call print_report('tour of a circle', outcome)
  if (outcome%value < 24*sin(0.2617993877991494_wp) + root_eps) print *, 'it is the shortest'
end program optima
