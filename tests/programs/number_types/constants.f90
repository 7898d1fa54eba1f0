module constants
   ! Kinds of the number types, and the constants that several of them need.
   implicit none
   public
   integer, parameter :: double = kind(0.0d0), long = selected_int_kind(9)
   real(double), parameter :: half = 0.5_double, one = 1, zero = 0, two = 2
   real(double), parameter :: half_pi = 1.57079632679489661923_double
   real(double), parameter :: pi = two*half_pi
end module constants
