module intervals
   ! Interval arithmetic with outward rounding by NEAREST: the true result of an operation on any
   ! members of the operands is a member of the result.
   use constants
   implicit none
   private

   type, public :: interval
      real(double) :: lo
      real(double) :: hi
   end type interval

   interface operator(+)
      module procedure add, add_number, number_add
   end interface
   interface operator(-)
      module procedure subtract, negate, subtract_number
   end interface
   interface operator(*)
      module procedure multiply, number_multiply
   end interface
   interface operator(/)
      module procedure divide
   end interface
   interface operator(**)
      module procedure power
   end interface
   interface operator(<)
      module procedure certainly_less
   end interface
   interface operator(.in.)
      module procedure number_in, interval_in
   end interface
   interface operator(.hull.)
      module procedure hull
   end interface
   interface operator(.meet.)
      module procedure meet
   end interface
   interface sqrt
      module procedure interval_sqrt
   end interface
   interface exp
      module procedure interval_exp
   end interface
   interface abs
      module procedure interval_abs
   end interface
   interface sin
      module procedure interval_sin
   end interface
   interface assignment(=)
      module procedure from_number, from_integer, from_text
   end interface

   public :: operator(+), operator(-), operator(*), operator(/), operator(**), operator(<)
   public :: operator(.in.), operator(.hull.), operator(.meet.), assignment(=)
   public :: sqrt, exp, abs, sin, midpoint, width, empty, bisect, newton_root

contains

   function down(x) result(y)
      real(double), intent(in) :: x
      real(double) :: y
      y = nearest(x, -1.0)
   end function down

   function up(x) result(y)
      real(double), intent(in) :: x
      real(double) :: y
      y = nearest(x, 1.0)
   end function up

   function add(a, b) result(c)
      type(interval), intent(in) :: a, b
      type(interval) :: c
      c = interval(down(a%lo + b%lo), up(a%hi + b%hi))
   end function add

   function add_number(a, x) result(c)
      type(interval), intent(in) :: a
      real(double), intent(in) :: x
      type(interval) :: c
      c = interval(down(a%lo + x), up(a%hi + x))
   end function add_number

   function number_add(x, a) result(c)
      real(double), intent(in) :: x
      type(interval), intent(in) :: a
      type(interval) :: c
      c = a + x
   end function number_add

   function subtract(a, b) result(c)
      type(interval), intent(in) :: a, b
      type(interval) :: c
      c%lo = down(a%lo - b%hi)
      c%hi = up(a%hi - b%lo)
   end function subtract

   function subtract_number(a, x) result(c)
      type(interval), intent(in) :: a
      real(double), intent(in) :: x
      type(interval) :: c
      c = interval(down(a%lo - x), up(a%hi - x))
   end function subtract_number

   function negate(a) result(c)
      type(interval), intent(in) :: a
      type(interval) :: c
      c = interval(-a%hi, -a%lo)
   end function negate

   function multiply(a, b) result(c)
      type(interval), intent(in) :: a, b
      type(interval) :: c
      real(double), dimension(4) :: products
      products = (/ a%lo*b%lo, a%lo*b%hi, a%hi*b%lo, a%hi*b%hi /)
      c = interval(down(minval(products)), up(maxval(products)))
   end function multiply

   function number_multiply(x, a) result(c)
      real(double), intent(in) :: x
      type(interval), intent(in) :: a
      type(interval) :: c
      c = interval(x, x)*a
   end function number_multiply

   function divide(a, b) result(c)
      type(interval), intent(in) :: a, b
      type(interval) :: c
      if (b%lo <= zero .and. b%hi >= zero) then
         c = interval(-huge(zero), huge(zero))
      else
         c = a*interval(down(one/b%hi), up(one/b%lo))
      end if
   end function divide

   recursive function power(a, n) result(c)
      type(interval), intent(in) :: a
      integer, intent(in) :: n
      type(interval) :: c, root
      if (n < 0) then
         c = interval(one, one)/power(a, -n)
      else if (n == 0) then
         c = interval(one, one)
      else if (n == 1) then
         c = a
      else if (mod(n, 2) == 0) then
         root = abs(power(a, n/2))
         c = interval(max(zero, down(root%lo*root%lo)), up(root%hi*root%hi))
      else
         c = a*power(a, n - 1)
      end if
   end function power

   logical function certainly_less(a, b)
      type(interval), intent(in) :: a, b
      certainly_less = a%hi < b%lo
   end function certainly_less

   logical function number_in(x, a)
      real(double), intent(in) :: x
      type(interval), intent(in) :: a
      number_in = a%lo <= x .and. x <= a%hi
   end function number_in

   logical function interval_in(x, a)
      type(interval), intent(in) :: x, a
      interval_in = (x%lo .in. a) .and. (x%hi .in. a)
   end function interval_in

   function hull(a, b) result(c)
      type(interval), intent(in) :: a, b
      type(interval) :: c
      c = interval(min(a%lo, b%lo), max(a%hi, b%hi))
   end function hull

   function meet(a, b) result(c)
      type(interval), intent(in) :: a, b
      type(interval) :: c
      c = interval(max(a%lo, b%lo), min(a%hi, b%hi))
   end function meet

   function interval_sqrt(a) result(c)
      type(interval), intent(in) :: a
      type(interval) :: c
      c = interval(max(zero, down(sqrt(max(zero, a%lo)))), up(sqrt(max(zero, a%hi))))
   end function interval_sqrt

   function interval_exp(a) result(c)
      type(interval), intent(in) :: a
      type(interval) :: c
      c = interval(down(exp(a%lo)), up(exp(a%hi)))
   end function interval_exp

   function interval_abs(a) result(c)
      type(interval), intent(in) :: a
      type(interval) :: c
      if (zero .in. a) then
         c = interval(zero, max(-a%lo, a%hi))
      else
         c = interval(min(abs(a%lo), abs(a%hi)), max(abs(a%lo), abs(a%hi)))
      end if
   end function interval_abs

   function interval_sin(a) result(c)
      type(interval), intent(in) :: a
      type(interval) :: c
      integer :: k
      c%lo = down(min(sin(a%lo), sin(a%hi)))
      c%hi = up(max(sin(a%lo), sin(a%hi)))
      ! A maximum or minimum inside: half_pi + k pi
      do k = ceiling((a%lo - half_pi)/pi), floor((a%hi - half_pi)/pi)
         if (modulo(k, 2) == 0) then; c%hi = one; else; c%lo = -one; end if
      end do
   end function interval_sin

   subroutine from_number(a, x)
      type(interval), intent(out) :: a
      real(double), intent(in) :: x
      a%lo = x
      a%hi = x
   end subroutine from_number

   subroutine from_integer(a, n)
      type(interval), intent(out) :: a
      integer, intent(in) :: n
      a = real(n, double)
   end subroutine from_integer

   ! "[lo, hi]", or one number, which is widened by one unit in the last place
   subroutine from_text(a, text)
      type(interval), intent(out) :: a
      character(len=*), intent(in) :: text
      integer :: open, comma, close, status
      open = index(text, '[')
      comma = index(text, ',')
      close = index(text, ']', back=.true.)
      if (open > 0 .and. comma > open .and. close > comma) then
         read (text(open+1:comma-1), *, iostat=status) a%lo
         if (status == 0) read (text(comma+1:close-1), *, iostat=status) a%hi
      else
         read (text, *, iostat=status) a%lo
         a%hi = up(a%lo)
         a%lo = down(a%lo)
      end if
      if (status /= 0) a = interval(one, -one)
   end subroutine from_text

   real(double) function midpoint(a)
      type(interval), intent(in) :: a
      midpoint = half*(a%lo + a%hi)
   end function midpoint

   function width(a) result(w)
      type(interval), intent(in) :: a
      real(double) w
      w = up(a%hi - a%lo)
   end function width

   function empty(a)
      logical empty
      type(interval), intent(in) :: a
      empty = a%lo > a%hi
   end function empty

   subroutine bisect(a, left, right)
      type(interval), intent(in) :: a
      type(interval), intent(out) :: left, right
      left = interval(a%lo, midpoint(a))
      right = interval(midpoint(a), a%hi)
   end subroutine bisect

   ! The square root of x in a, enclosed by the steps of Newton: f(y) = y**2 - x.
   subroutine newton_root(x, a, steps)
      type(interval), intent(in) :: x
      type(interval), intent(inout) :: a
      integer, intent(out), optional :: steps
      type(interval) :: next, centre
      integer :: step
      do step = 1, 50
         centre = midpoint(a)
         next = (centre - (centre**2 - x)/(2.0_double*a)) .meet. a
         if (empty(next) .or. width(next) >= width(a)) exit
         a = next
      end do
      if (present(steps)) steps = step
   end subroutine newton_root

end module intervals
