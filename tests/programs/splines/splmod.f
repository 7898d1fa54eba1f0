! Interpolation by cubic splines, in Fortran 90 but fixed form, so that
! the old routines of INTERP can sit in the same library.

      module spline_types
      implicit none
      integer, parameter :: wp = kind (1.0d0)
      integer, parameter :: natural = 0, clamped = 1, periodic = 2

      type spline
         integer :: n, ends
         real (wp), dimension (:), pointer :: x, y, m
      end type spline

      type point
         sequence
         real (wp) :: x, y
      end type point

      interface operator (+)
         module procedure add_points
      end interface
      interface operator (*)
         module procedure scale_point
      end interface

      contains

      function add_points (p, q) result (r)
         type (point), intent (in) :: p, q
         type (point) :: r
         r = point (p % x + q % x, p % y + q % y)
      end function add_points

      function scale_point (a, p) result (r)
         real (wp), intent (in) :: a
         type (point), intent (in) :: p
         type (point) :: r
         r % x = a*p % x;  r % y = a*p % y
      end function
      end module spline_types


      module spline_work
      use spline_types
      implicit none
      private
      public :: spline_fit, spline_value, spline_slope, spline_area,
     &          spline_free, spline_ok

! What went wrong last, for spline_ok
      integer, save :: status = 0
      integer, parameter :: too_few = 1, not_rising = 2, no_memory = 3,
     &                      not_periodic = 4

      interface spline_value
         module procedure value_one, value_many
      end interface

      contains

! Fits a spline to the points (x, y). The ends are natural unless
! slopes are given or the spline is to be periodic.
      subroutine spline_fit (s, x, y, left, right, period)
      type (spline), intent (out) :: s
      real (wp), intent (in) :: x(:), y(:)
      real (wp), intent (in), optional :: left, right
      logical, intent (in), optional :: period

      real (wp), dimension (size (x)) :: sub, dia, sup, rhs, h
      integer :: n, i, stat

      n = size (x)
      status = 0
      if (n < 3 .or. size (y) /= n) then
         status = too_few
         return
      else if (any (x(2:) <= x(:n - 1))) then
         status = not_rising
         return
      end if
      s % n = n
      s % ends = natural
      if (present (left) .and. present (right)) s % ends = clamped
      if (present (period)) then
         if (period) s % ends = periodic
      end if
      allocate (s % x(n), s % y(n), s % m(n), stat = stat)
      if (stat /= 0) then
         status = no_memory
         return
      end if
      s % x = x
      s % y = y

      h(:n - 1) = x(2:) - x(:n - 1)
      sub = 0; dia = 2; sup = 0; rhs = 0
      do i = 2, n - 1
         sub(i) = h(i - 1)/(h(i - 1) + h(i))
         sup(i) = 1 - sub(i)
         rhs(i) = 6*((y(i + 1) - y(i))/h(i) - (y(i) - y(i - 1))
     &            /h(i - 1))/(h(i - 1) + h(i))
      end do

      select case (s % ends)
      case (natural)
         call tridiagonal (sub, dia, sup, rhs, s % m)
      case (clamped)
         sup(1) = 1
         rhs(1) = 6*((y(2) - y(1))/h(1) - left)/h(1)
         sub(n) = 1
         rhs(n) = 6*(right - (y(n) - y(n - 1))/h(n - 1))/h(n - 1)
         call tridiagonal (sub, dia, sup, rhs, s % m)
      case (periodic)
         if (abs (y(n) - y(1)) > 1.0e-12_wp*(1 + maxval (abs (y)))) then
            status = not_periodic
            return
         end if
         call cyclic
      case default
         stop 'spline_fit'
      end select

      contains

! The periodic system has two more corners: two solves and a correction.
         subroutine cyclic
         real (wp), dimension (n - 1) :: a, b, c, r, u, z
         real (wp) :: alpha, beta, gamma, fact
         integer :: k
         k = n - 1
         a = sub(:k); b = dia(:k); c = sup(:k); r = rhs(:k)
         a(1) = h(k)/(h(k) + h(1))
         c(1) = 1 - a(1)
         r(1) = 6*((y(2) - y(1))/h(1) - (y(1) - y(k))/h(k))
     &          /(h(k) + h(1))
         alpha = c(k)
         beta = a(1)
         gamma = -b(1)
         b(1) = b(1) - gamma
         b(k) = b(k) - alpha*beta/gamma
         u = 0
         u(1) = gamma
         u(k) = alpha
         call tridiagonal (a, b, c, r, s % m(:k))
         call tridiagonal (a, b, c, u, z)
         fact = (s % m(1) + beta*s % m(k)/gamma)
     &          /(1 + z(1) + beta*z(k)/gamma)
         s % m(:k) = s % m(:k) - fact*z
         s % m(n) = s % m(1)
         end subroutine cyclic
      end subroutine spline_fit

      subroutine tridiagonal (a, b, c, r, x)
      real (wp), dimension (:), intent (in) :: a, b, c, r
      real (wp), dimension (:), intent (out) :: x
      real (wp) :: g(size (b)), beta
      integer :: j, n
      n = size (b)
      beta = b(1)
      x(1) = r(1)/beta
      do j = 2, n
         g(j) = c(j - 1)/beta
         beta = b(j) - a(j)*g(j)
         x(j) = (r(j) - a(j)*x(j - 1))/beta
      end do
      do j = n - 1, 1, -1
         x(j) = x(j) - g(j + 1)*x(j + 1)
      end do
      end subroutine tridiagonal

! The interval of a spline that x is in, by halving
      integer function locate (s, x)
      type (spline), intent (in) :: s
      real (wp), intent (in) :: x
      integer :: lo, hi, mid
      lo = 1
      hi = s % n
      halve: do
         if (hi - lo <= 1) exit halve
         mid = (lo + hi)/2
         if (x >= s % x(mid)) then
            lo = mid
         else
            hi = mid
         end if
      end do halve
      locate = lo
      end function locate

      function value_one (s, x) result (v)
      type (spline), intent (in) :: s
      real (wp), intent (in) :: x
      real (wp) :: v, a, b, h
      integer :: i
      i = locate (s, x)
      h = s % x(i + 1) - s % x(i)
      a = (s % x(i + 1) - x)/h
      b = 1 - a
      v = a*s % y(i) + b*s % y(i + 1)
     &    + ((a**3 - a)*s % m(i) + (b**3 - b)*s % m(i + 1))*h*h/6
      end function value_one

      function value_many (s, x) result (v)
      type (spline), intent (in) :: s
      real (wp), intent (in) :: x(:)
      real (wp) :: v(size (x))
      integer :: i
      do i = 1, size (x)
         v(i) = value_one (s, x(i))
      end do
      end function value_many

      real (wp) function spline_slope (s, x)
      type (spline), intent (in) :: s
      real (wp), intent (in) :: x
      real (wp) :: a, h
      integer :: i
      i = locate (s, x)
      h = s % x(i + 1) - s % x(i)
      a = (s % x(i + 1) - x)/h
      spline_slope = (s % y(i + 1) - s % y(i))/h
     &   + h/6*((1 - 3*a*a)*s % m(i)
     &          + (3*(1 - a)**2 - 1)*s % m(i + 1))
      end function spline_slope

! The integral from the first to the last point
      real (wp) function spline_area (s)
      type (spline), intent (in) :: s
      real (wp) :: h(s % n - 1)
      associate_n: if (s % n > 1) then
         h = s % x(2:) - s % x(:s % n - 1)
         spline_area = sum (0.5_wp*h*(s % y(2:) + s % y(:s % n - 1))
     &      - h**3/24*(s % m(2:) + s % m(:s % n - 1)))
      else associate_n
         spline_area = 0
      end if associate_n
      end function spline_area

      subroutine spline_free (s)
      type (spline), intent (inout) :: s
      if (associated (s % x)) deallocate (s % x, s % y, s % m)
      nullify (s % x, s % y, s % m)
      s % n = 0
      end subroutine spline_free

! True when the last fit was good; otherwise the text says why not.
      function spline_ok (text)
      logical :: spline_ok
      character (len = *), intent (out), optional :: text
      character (len = 24), parameter, dimension (0:4) :: texts = (/
     &   'all is well             ', 'too few points          ',
     &   'abscissae do not rise   ', 'no memory               ',
     &   'ends are not the same   ' /)
      spline_ok = status == 0
      if (present (text)) text = texts(status)
      end function spline_ok
      end module spline_work
