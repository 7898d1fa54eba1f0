module number_models
   ! What the numbers of a kind are like, and values taken apart and put together again.
   use descriptive, only: sp, dp
   implicit none
   private
   public :: describe, ulps_apart, round_to_bits, digits_of, integer_kinds

   interface describe
      module procedure describe_sp, describe_dp
   end interface

   interface ulps_apart
      module procedure ulps_apart_sp, ulps_apart_dp
   end interface

   integer, parameter :: integer_kinds(3) = (/ selected_int_kind(2), selected_int_kind(4), selected_int_kind(9) /)

contains

   subroutine describe_sp(x, unit)
      real(sp), intent(in) :: x
      integer, intent(in) :: unit
      write (unit, 1) 'single', digits(x), radix(x), minexponent(x), maxexponent(x), precision(x), range(x)
      write (unit, 2) epsilon(x), tiny(x), huge(x)
1     format (1x, a, t10, 6i7)
2     format (1x, t10, 1p, 3e14.5e3)
   end subroutine describe_sp

   subroutine describe_dp(x, unit)
      real(dp), intent(in) :: x
      integer, intent(in) :: unit
      write (unit, 1) 'double', digits(x), radix(x), minexponent(x), maxexponent(x), precision(x), range(x)
      write (unit, 2) epsilon(x), tiny(x), huge(x)
1     format (1x, a, t10, 6i7)
2     format (1x, t10, 1p, 3e14.5e3)
   end subroutine describe_dp

   function ulps_apart_sp(a, b) result(n)
      real(sp), intent(in) :: a, b
      integer :: n
      n = nint((b - a)/spacing(max(abs(a), abs(b))))
   end function ulps_apart_sp

   function ulps_apart_dp(a, b) result(n)
      real(dp), intent(in) :: a, b
      integer :: n
      n = nint((b - a)/spacing(max(abs(a), abs(b))))
   end function ulps_apart_dp

   ! x with its fraction rounded to a number of bits
   function round_to_bits(x, bits) result(y)
      real(dp), intent(in) :: x
      integer, intent(in) :: bits
      real(dp) :: y
      y = set_exponent(anint(scale(fraction(x), bits)), exponent(x))
      if (abs(anint(scale(fraction(x), bits))) >= radix(x)**bits) y = scale(y, 1)
      if (rrspacing(y) <= 0) y = 0
   end function round_to_bits

   ! The decimal digits of a number, the last first
   function digits_of(k) result(d)
      integer, intent(in) :: k
      integer :: d(range(k) + 1)
      integer :: i, rest
      rest = abs(k)
      do i = 1, size(d)
         d(i) = mod(rest, 10)
         rest = rest/10
      end do
   end function digits_of

end module number_models
