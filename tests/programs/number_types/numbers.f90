program numbers
   ! A tour of the number types. The generic names of all modules meet here.
   use constants
   use intervals
   use quaternions
   use rationals
   use duals
   implicit none

   call show_intervals
   call show_quaternions
   call show_rationals
   call show_duals

contains

   subroutine show_intervals
      type(interval) :: x, y, left, right
      integer :: i, steps
      x = '[0.9, 1.1]'
      y = 2
      write (*, 10) 'x', x
      write (*, 10) 'x * x', x*x
      write (*, 10) 'x ** 2', x**2
      write (*, 10) '1 / (x - 2)', interval(one, one)/(x - two)
      write (*, 10) 'exp (sin x)', exp(sin(x))
      write (*, 10) 'x hull y', x .hull. y
      print *, 'one is in x: ', one .in. x, ', x < y: ', x < y, ', y in x: ', y .in. x
      call bisect(x, left, right)
      write (*, 10) 'left half', left
      print *, 'halves meet in a point: ', width(left .meet. right) < 1.0e-15_double
      x = interval(1, 2)
      call newton_root(y, x, steps)
      print '(1x, a, l2, a, i3)', 'root of 2 enclosed: ', sqrt(two) .in. x, ' steps ', steps
      y = zero
      do i = 1, 100
         y = y + 0.1_double
      end do
      print '(1x, a, 2l2)', 'sum of tenths: ', 10.0_double .in. y, sqrt(y) < interval(4, 5)
10    format (1x, a, t16, '[', f12.8, ',', f12.8, ' ]')
   end subroutine show_intervals

   subroutine show_quaternions
      type(quaternion) :: q, r
      real(double) :: corners(3, 4), turned(3, 4)
      integer :: j, k
      print *, 'i j = k: ', abs(q_i*q_j - q_k) < epsilon(one)
      q = turn((/ one, one, one /), 120.0_double)
      print '(1x, a, 3f8.4)', 'x goes to', rotate(q, (/ 1.0_double, 0.0_double, 0.0_double /))
      corners = reshape((/ ((real(merge(1, -1, mod(k/2**j, 2) == 0), double), j = 0, 2), k = 0, 3) /), &
                        (/ 3, 4 /))
      turned = rotate(q, corners)
      do k = 1, ubound(turned, dim=2)
         print '(1x, 3f6.1, " ->", 3f6.1)', corners(:, k), turned(:, k)
      end do
      r = slerp(q_one, q, half)
      print '(1x, a, f10.6)', 'half a turn twice', abs(r*r - q)
      r = exp(quaternion(zero, (/ zero, zero, half_pi /)))
      print '(1x, a, 4f8.4)', 'exp of k pi/2', r%w, r%v
      q = half*conjg(r) + q_one*two
      print '(1x, a, 4f8.4)', 'sum', q
   end subroutine show_quaternions

   subroutine show_rationals
      type(rational) :: h, term, third
      integer :: n, terms(6), used
      real(double) :: value
      h = 0
      do n = 1, 10
         term = ratio(1, n)
         h = h + term
      end do
      value = h
      print '(1x, a, a, f14.10)', 'tenth harmonic number', text_of(h, 14), value
      third = ratio(-2, -6)
      print *, 'thirds: ', third == ratio(1, 3), 3*third == 1, third**(-2) == 9, third > ratio(1, 4)
      print *, 'rounded: ', nint(ratio(7, 2)), nint(-ratio(7, 3)), nint(2.5)
      call continued_fraction(pi, terms, used)
      do n = 1, min(4, used)
         print '(1x, a)', text_of(convergent(terms(:n)), 12)
      end do
      print '(1x, 2a)', 'division: ', trim(adjustl(text_of((third - ratio(1, 2))/ratio(5, 6)/2, 20)))
   end subroutine show_rationals

   subroutine show_duals
      type(dual) :: x(n_variables), f
      real(double), dimension(n_variables) :: at, numeric
      integer :: j, k
      real(double), parameter :: h = 1.0e-5_double
      at = (/ 0.5_double, 1.25_double, 2.0_double /)
      x = (/ (variable(at(k), k), k = 1, n_variables) /)
      f = formula(x)
      do k = 1, n_variables
         x = (/ (variable(at(j), j), j = 1, n_variables) /)
         x(k)%x = at(k) + h
         f = formula(x)
         numeric(k) = f%x
         x(k)%x = at(k) - h
         f = formula(x)
         numeric(k) = (numeric(k) - f%x)/(2*h)
      end do
      x(n_variables)%x = at(n_variables)
      f = formula(x)
      print '(1x, a, f12.7)', 'value', f%x
      print '(1x, a, 3f12.7)', 'gradient ', gradient(f)
      print '(1x, a, 3f12.7)', 'numeric  ', numeric
      f = atan2(x(1), x(2)) + max(x(1), x(3))**0.5_double + sum(x)/3.0_double - dot_product(x, x)**x(1)
      print '(1x, a, 4f12.7)', 'another', f
   end subroutine show_duals

   function formula(x) result(f)
      type(dual), intent(in) :: x(:)
      type(dual) :: f
      f = exp(-x(1)*x(2))*sin(x(3)) + log(x(2) + one)/sqrt(x(1)) - tan(x(1)/x(3))**2 + (two - x(3)**3)
   end function formula

end program numbers
