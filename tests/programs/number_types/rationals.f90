module rationals
   ! Fractions in lowest terms with a positive denominator. A denominator of 0 marks an overflow.
   use constants, only: long, double
   implicit none
   private
   public :: rational, ratio, operator(+), operator(-), operator(*), operator(/), operator(**)
   public :: operator(==), operator(/=), operator(<), operator(>), assignment(=)
   public :: text_of, numerator, denominator, nint, gcd, continued_fraction, convergent

   type rational
      private
      integer(long) :: n, d
   end type rational

   interface operator(+)
      module procedure plus, plus_integer
   end interface
   interface operator(-)
      module procedure minus, negative
   end interface
   interface operator(*)
      module procedure times, integer_times
   end interface
   interface operator(/)
      module procedure over, over_integer
   end interface
   interface operator(**)
      module procedure raised
   end interface
   interface operator(==)
      module procedure equal, equal_integer
   end interface
   interface operator(/=)
      module procedure unequal
   end interface
   interface operator(<)
      module procedure less
   end interface
   interface operator(.gt.)
      module procedure greater
   end interface
   interface assignment(=)
      module procedure take_integer, give_real
   end interface
   interface nint
      module procedure rational_nint
   end interface
   interface gcd
      module procedure gcd_long
   end interface

contains

   recursive function gcd_long(a, b) result(g)
      integer(long), intent(in) :: a, b
      integer(long) :: g
      if (b == 0) then
         g = abs(a)
      else
         g = gcd_long(b, mod(a, b))
      end if
   end function gcd_long

   function ratio(n, d) result(r)
      integer, intent(in) :: n
      integer, intent(in), optional :: d
      type(rational) :: r
      if (present(d)) then
         r = reduced(int(n, long), int(d, long))
      else
         r = rational(n, 1_long)
      end if
   end function ratio

   function reduced(n, d) result(r)
      integer(long), intent(in) :: n, d
      type(rational) :: r
      integer(long) :: g
      g = gcd(n, d)
      if (d == 0 .or. g == 0) then
         r = rational(sign(1_long, n), 0_long)
      else
         g = sign(g, d)
         r = rational(n/g, d/g)
      end if
   end function reduced

   function plus(a, b) result(c)
      type(rational), intent(in) :: a, b
      type(rational) :: c
      integer(long) :: g
      g = gcd(a%d, b%d)
      if (g == 0) then
         c = rational(1, 0)
      else
         c = reduced(a%n*(b%d/g) + b%n*(a%d/g), a%d*(b%d/g))
      end if
   end function plus

   function plus_integer(a, k) result(c)
      type(rational), intent(in) :: a
      integer, intent(in) :: k
      type(rational) :: c
      c = rational(a%n + k*a%d, a%d)
   end function plus_integer

   function minus(a, b) result(c)
      type(rational), intent(in) :: a, b
      type(rational) :: c
      c = a + (-b)
   end function minus

   function negative(a) result(c)
      type(rational), intent(in) :: a
      type(rational) :: c
      c = rational(-a%n, a%d)
   end function negative

   function times(a, b) result(c)
      type(rational), intent(in) :: a, b
      type(rational) :: c
      type(rational) :: x, y
      x = reduced(a%n, b%d)
      y = reduced(b%n, a%d)
      c = rational(x%n*y%n, x%d*y%d)
   end function times

   function integer_times(k, a) result(c)
      integer, intent(in) :: k
      type(rational), intent(in) :: a
      type(rational) :: c
      c = reduced(k*a%n, a%d)
   end function integer_times

   function over(a, b) result(c)
      type(rational), intent(in) :: a, b
      type(rational) :: c
      c = a*reduced(b%d, b%n)
   end function over

   function over_integer(a, k) result(c)
      type(rational), intent(in) :: a
      integer, intent(in) :: k
      type(rational) :: c
      c = reduced(a%n, a%d*k)
   end function over_integer

   function raised(a, k) result(c)
      type(rational), intent(in) :: a
      integer, intent(in) :: k
      type(rational) :: c
      if (k >= 0) then
         c = rational(a%n**k, a%d**k)
      else
         c = reduced(a%d**(-k), a%n**(-k))
      end if
   end function raised

   function equal(a, b)
      type(rational), intent(in) :: a, b
      logical :: equal
      equal = a%n == b%n .and. a%d == b%d
   end function equal

   function equal_integer(a, k)
      type(rational), intent(in) :: a
      integer, intent(in) :: k
      logical :: equal_integer
      equal_integer = a%n == k .and. a%d == 1
   end function equal_integer

   function unequal(a, b)
      type(rational), intent(in) :: a, b
      logical :: unequal
      unequal = .not. a == b
   end function unequal

   function less(a, b)
      type(rational), intent(in) :: a, b
      logical :: less
      less = a%n*b%d < b%n*a%d
   end function less

   function greater(a, b)
      type(rational), intent(in) :: a, b
      logical :: greater
      greater = b < a
   end function greater

   subroutine take_integer(a, k)
      type(rational), intent(out) :: a
      integer, intent(in) :: k
      a = rational(k, 1)
   end subroutine take_integer

   subroutine give_real(x, a)
      real(double), intent(out) :: x
      type(rational), intent(in) :: a
      x = real(a%n, double)/real(a%d, double)
   end subroutine give_real

   integer(long) function numerator(a)
      type(rational), intent(in) :: a
      numerator = a%n
   end function numerator

   integer(long) function denominator(a)
      type(rational), intent(in) :: a
      denominator = a%d
   end function denominator

   function rational_nint(a) result(k)
      type(rational), intent(in) :: a
      integer :: k
      k = nint(real(a%n, double)/real(a%d, double))
   end function rational_nint

   ! "n/d" or "n", with blanks before it to the given width
   function text_of(a, width) result(text)
      type(rational), intent(in) :: a
      integer, intent(in) :: width
      character(len=width) :: text
      character(len=25) :: work
      if (a%d == 1) then
         write (work, '(i12)') a%n
      else
         write (work, '(i12, "/", i12)') a%n, a%d
      end if
      text = squeezed(work)
      text = adjustr(text)
   end function text_of

   function squeezed(s) result(t)
      character(len=*), intent(in) :: s
      character(len=len(s)) :: t
      integer :: i, k
      t = ' '
      k = 0
      do i = 1, len_trim(s)
         if (s(i:i) /= ' ') then
            k = k + 1
            t(k:k) = s(i:i)
         end if
      end do
   end function squeezed

   ! The terms of the continued fraction of x, as many as `terms` has room for
   subroutine continued_fraction(x, terms, used)
      real(double), intent(in) :: x
      integer, intent(out) :: terms(:)
      integer, intent(out) :: used
      real(double) :: rest
      rest = x
      terms = 0
      do used = 1, size(terms)
         terms(used) = floor(rest)
         rest = rest - terms(used)
         if (rest < 1.0e-9_double) return
         rest = 1/rest
      end do
      used = size(terms)
   end subroutine continued_fraction

   function convergent(terms) result(a)
      integer, intent(in) :: terms(:)
      type(rational) :: a
      integer :: k
      a = terms(size(terms))
      do k = size(terms) - 1, 1, -1
         a = ratio(1)/a + terms(k)
      end do
   end function convergent

end module rationals
