module quadrature
   !
   ! Integrals of functions of one or two variables: adaptive, by extrapolation, and by the points of
   ! Gauss and Legendre, which are computed on demand.
   !
   use real_kinds, dp => double
   implicit none
   private
   public :: adaptive, romberg, gauss_points, gauss, plane_integral, dp, to_infinity

   interface
      function integrand(x) result(y)      ! what the integrals are of
         use real_kinds
         real(double), intent(in) :: x
         real(double) :: y
      end function integrand
   end interface

   interface gauss
      module procedure gauss_of_function, gauss_of_table
   end interface

contains

   ! Simpson's rule on parts, halved until the halves agree with the whole
   function adaptive(f, a, b, tolerance, deepest, evaluations) result(total)
      interface
         function f(x) result(y)
            use real_kinds
            real(double), intent(in) :: x
            real(double) :: y
         end function f
      end interface
      real(dp), intent(in) :: a, b, tolerance
      integer, intent(in), optional :: deepest
      integer, intent(out), optional :: evaluations
      real(dp) :: total, fa, fm, fb
      integer :: limit, count

      limit = 40
      if (present(deepest)) limit = deepest
      fa = f(a)
      fb = f(b)
      fm = f(0.5_dp*(a + b))
      count = 3
      total = part(a, fa, fm, b, fb, simpson(a, fa, fm, b, fb), tolerance, limit)
      if (present(evaluations)) evaluations = count

   contains

      recursive function part(a, fa, fm, b, fb, whole, tol, levels) result(s)
         real(dp), intent(in) :: a, fa, fm, b, fb, whole, tol
         integer, intent(in) :: levels
         real(dp) :: s
         real(dp) :: m, fl, fr, left, right
         m = 0.5_dp*(a + b)
         fl = f(0.5_dp*(a + m)); fr = f(0.5_dp*(m + b))
         count = count + 2
         left = simpson(a, fa, fl, m, fm)
         right = simpson(m, fm, fr, b, fb)
         if (levels <= 0 .or. abs(left + right - whole) <= 15.0_dp*tol) then
            s = left + right + (left + right - whole)/15.0_dp
         else
            s = part(a, fa, fl, m, fm, left, 0.5_dp*tol, levels - 1) &
              + part(m, fm, fr, b, fb, right, 0.5_dp*tol, levels - 1)
         end if
      end function part

      function simpson(a, fa, fm, b, fb)
         real(dp) simpson
         real(dp), intent(in) :: a, fa, fm, b, fb
         simpson = (b - a)/6.0_dp*(fa + 4.0_dp*fm + fb)
      end function simpson

   end function adaptive

   ! The trapezoidal rule with ever more points, extrapolated to steps of no length
   subroutine romberg(f, a, b, value, error, rows)
      interface
         function f(x) result(y)
            use real_kinds
            real(double), intent(in) :: x
            real(double) :: y
         end function f
      end interface
      real(dp), intent(in) :: a, b
      real(dp), intent(out) :: value, error
      integer, intent(in) :: rows
      real(dp), dimension(0:rows) :: table
      real(dp) :: h, before, old
      integer :: k, j, i
      h = b - a
      table(0) = 0.5_dp*h*(f(a) + f(b))
      error = huge(error)
      do k = 1, rows
         h = 0.5_dp*h
         old = table(0)
         table(0) = 0.5_dp*old
         do i = 1, 2**k - 1, 2
            table(0) = table(0) + h*f(a + i*h)
         end do
         do j = 1, k
            before = old
            if (j < k) old = table(j)
            table(j) = table(j - 1) + (table(j - 1) - before)/(4.0_dp**j - 1.0_dp)
         end do
         error = abs(table(k) - table(k - 1))
      end do
      value = table(rows)
   end subroutine romberg

   ! The zeros of the Legendre polynomial of degree size(x), by Newton steps, and the weights
   subroutine gauss_points(x, w)
      real(dp), intent(out) :: x(:), w(:)
      real(dp) :: z, p0, p1, p2, slope, step
      integer :: n, i, k
      n = size(x)
      do i = 1, (n + 1)/2
         z = cos(3.14159265358979324_dp*(i - 0.25_dp)/(n + 0.5_dp))
         do
            p1 = 1; p0 = 0
            do k = 1, n
               p2 = p0
               p0 = p1
               p1 = ((2*k - 1)*z*p0 - (k - 1)*p2)/k
            end do
            slope = n*(z*p1 - p0)/(z*z - 1)
            step = p1/slope
            z = z - step
            if (abs(step) < 4*epsilon(z)) exit
         end do
         x((/ i, n + 1 - i /)) = (/ -z, z /)
         w((/ i, n + 1 - i /)) = 2/((1 - z*z)*slope*slope)
      end do
   end subroutine gauss_points

   function gauss_of_function(f, a, b, points) result(s)
      interface
         function f(x) result(y)
            use real_kinds
            real(double), intent(in) :: x
            real(double) :: y
         end function f
      end interface
      real(dp), intent(in) :: a, b
      integer, intent(in) :: points
      real(dp) :: s, x(points), w(points)
      integer :: i
      call gauss_points(x, w)
      x = 0.5_dp*((b - a)*x + (b + a))
      s = 0
      do i = 1, points
         s = s + w(i)*f(x(i))
      end do
      s = 0.5_dp*(b - a)*s
   end function gauss_of_function

   ! The values of a function at the points, in their order
   function gauss_of_table(values, a, b) result(s)
      real(dp), intent(in) :: values(:), a, b
      real(dp) :: s
      real(dp), dimension(size(values)) :: x, w
      call gauss_points(x, w)
      s = 0.5_dp*(b - a)*dot_product(w, values)
   end function gauss_of_table

   ! Over a region between two curves
   function plane_integral(f, a, b, lower, upper, points) result(s)
      interface
         function f(x, y) result(z)
            use real_kinds, only: double
            real(double), intent(in) :: x, y
            real(double) :: z
         end function f
         function lower(x) result(y)
            use real_kinds, only: double
            real(double), intent(in) :: x
            real(double) :: y
         end function lower
         function upper(x) result(y)
            use real_kinds, only: double
            real(double), intent(in) :: x
            real(double) :: y
         end function upper
      end interface
      real(dp), intent(in) :: a, b
      integer, intent(in) :: points
      real(dp) :: s, u(points), w(points), column(points), x, low, high
      integer :: i, j
      call gauss_points(u, w)
      do i = 1, points
         x = 0.5_dp*((b - a)*u(i) + a + b)
         low = lower(x)
         high = upper(x)
         column(i) = 0
         do j = 1, points
            column(i) = column(i) + w(j)*f(x, 0.5_dp*((high - low)*u(j) + low + high))
         end do
         column(i) = 0.5_dp*(high - low)*column(i)
      end do
      s = gauss(column, a, b)
   end function plane_integral

   ! Parts of doubled length until one adds nothing; the integrand must decrease.
   function to_infinity(f, a) result(s)
      interface
         function f(x) result(y)
            use real_kinds
            real(double), intent(in) :: x
            real(double) :: y
         end function f
      end interface
      real(dp), intent(in) :: a
      real(dp) :: s, add, low, length
      low = a
      length = 1
      s = 0
      do
         add = gauss(f, low, low + length, 16)
         s = s + add
         if (abs(add) <= epsilon(s)*abs(s) .or. exponent(length) > 40) exit
         low = low + length
         length = scale(length, 1)
      end do
   end function to_infinity

end module quadrature
