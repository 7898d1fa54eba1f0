module duals
   ! Forward automatic differentiation: a value and its derivatives by n_variables variables.
   use constants
   implicit none
   private
   integer, parameter, public :: n_variables = 3

   type, public :: dual
      real(double) :: x
      real(double) :: d(n_variables)
   end type dual

   public :: variable, gradient, operator(+), operator(-), operator(*), operator(/), operator(**)
   public :: sin, cos, tan, exp, log, sqrt, atan2, assignment(=), operator(>), sum, dot_product, max

   interface assignment(=)
      module procedure dual_is_real, dual_is_int
   end interface
   interface operator(+)
      module procedure dd_add, dr_add, rd_add, d_plus
   end interface
   interface operator(-)
      module procedure dd_sub, dr_sub, rd_sub, d_minus
   end interface
   interface operator(*)
      module procedure dd_mul, dr_mul, rd_mul
   end interface
   interface operator(/)
      module procedure dd_div, dr_div, rd_div
   end interface
   interface operator(**)
      module procedure di_pow, dr_pow, dd_pow
   end interface
   interface operator(>)
      module procedure dd_gt, dr_gt
   end interface
   interface sin;   module procedure d_sin;   end interface
   interface cos;   module procedure d_cos;   end interface
   interface tan;   module procedure d_tan;   end interface
   interface exp;   module procedure d_exp;   end interface
   interface log;   module procedure d_log;   end interface
   interface sqrt;  module procedure d_sqrt;  end interface
   interface atan2; module procedure d_atan2; end interface
   interface max;   module procedure d_max;   end interface
   interface sum
      module procedure d_sum
   end interface
   interface dot_product
      module procedure d_dot
   end interface

contains

   ! The independent variable of number k with the value x
   function variable(x, k) result(v)
      real(double), intent(in) :: x
      integer, intent(in) :: k
      type(dual) :: v
      integer :: i
      v = dual(x, (/ (merge(one, zero, i == k), i = 1, n_variables) /))
   end function variable

   function gradient(v) result(g)
      type(dual), intent(in) :: v
      real(double) :: g(n_variables)
      g = v%d
   end function gradient

   subroutine dual_is_real(v, x)
      type(dual), intent(out) :: v
      real(double), intent(in) :: x
      v%x = x
      v%d = zero
   end subroutine dual_is_real

   subroutine dual_is_int(v, k)
      type(dual), intent(out) :: v
      integer, intent(in) :: k
      v = real(k, kind=double)
   end subroutine dual_is_int

   function dd_add(a, b) result(c)
      type(dual), intent(in) :: a, b
      type(dual) :: c
      c = dual(a%x + b%x, a%d + b%d)
   end function dd_add

   function dr_add(a, r) result(c)
      type(dual), intent(in) :: a
      real(double), intent(in) :: r
      type(dual) :: c
      c = dual(a%x + r, a%d)
   end function dr_add

   function rd_add(r, a) result(c)
      real(double), intent(in) :: r
      type(dual), intent(in) :: a
      type(dual) :: c
      c = dual(r + a%x, a%d)
   end function rd_add

   function d_plus(a) result(c)
      type(dual), intent(in) :: a
      type(dual) :: c
      c = a
   end function d_plus

   function dd_sub(a, b) result(c)
      type(dual), intent(in) :: a, b
      type(dual) :: c
      c = dual(a%x - b%x, a%d - b%d)
   end function dd_sub

   function dr_sub(a, r) result(c)
      type(dual), intent(in) :: a
      real(double), intent(in) :: r
      type(dual) :: c
      c = dual(a%x - r, a%d)
   end function dr_sub

   function rd_sub(r, a) result(c)
      real(double), intent(in) :: r
      type(dual), intent(in) :: a
      type(dual) :: c
      c = dual(r - a%x, -a%d)
   end function rd_sub

   function d_minus(a) result(c)
      type(dual), intent(in) :: a
      type(dual) :: c
      c = dual(-a%x, -a%d)
   end function d_minus

   function dd_mul(a, b) result(c)
      type(dual), intent(in) :: a, b
      type(dual) :: c
      c = dual(a%x*b%x, a%x*b%d + b%x*a%d)
   end function dd_mul

   function dr_mul(a, r) result(c)
      type(dual), intent(in) :: a
      real(double), intent(in) :: r
      type(dual) :: c
      c = dual(a%x*r, a%d*r)
   end function dr_mul

   function rd_mul(r, a) result(c)
      real(double), intent(in) :: r
      type(dual), intent(in) :: a
      type(dual) :: c
      c = dual(r*a%x, r*a%d)
   end function rd_mul

   function dd_div(a, b) result(c)
      type(dual), intent(in) :: a, b
      type(dual) :: c
      c%x = a%x/b%x
      c%d = (a%d - c%x*b%d)/b%x
   end function dd_div

   function dr_div(a, r) result(c)
      type(dual), intent(in) :: a
      real(double), intent(in) :: r
      type(dual) :: c
      c = dual(a%x/r, a%d/r)
   end function dr_div

   function rd_div(r, b) result(c)
      real(double), intent(in) :: r
      type(dual), intent(in) :: b
      type(dual) :: c
      c%x = r/b%x
      c%d = -c%x/b%x*b%d
   end function rd_div

   function di_pow(a, n) result(c)
      type(dual), intent(in) :: a
      integer, intent(in) :: n
      type(dual) :: c
      if (n == 0) then
         c = 1
      else
         c = dual(a%x**n, n*a%x**(n - 1)*a%d)
      end if
   end function di_pow

   function dr_pow(a, p) result(c)
      type(dual), intent(in) :: a
      real(double), intent(in) :: p
      type(dual) :: c
      c = dual(a%x**p, p*a%x**(p - one)*a%d)
   end function dr_pow

   function dd_pow(a, b) result(c)
      type(dual), intent(in) :: a, b
      type(dual) :: c
      c = exp(b*log(a))
   end function dd_pow

   logical function dd_gt(a, b)
      type(dual), intent(in) :: a, b
      dd_gt = a%x > b%x
   end function dd_gt

   logical function dr_gt(a, r)
      type(dual), intent(in) :: a
      real(double), intent(in) :: r
      dr_gt = a%x > r
   end function dr_gt

   function d_sin(a) result(c)
      type(dual), intent(in) :: a
      type(dual) :: c
      c = dual(sin(a%x), cos(a%x)*a%d)
   end function d_sin

   function d_cos(a) result(c)
      type(dual), intent(in) :: a
      type(dual) :: c
      c = dual(cos(a%x), -sin(a%x)*a%d)
   end function d_cos

   function d_tan(a) result(c)
      type(dual), intent(in) :: a
      type(dual) :: c
      c = sin(a)/cos(a)
   end function d_tan

   function d_exp(a) result(c)
      type(dual), intent(in) :: a
      type(dual) :: c
      c%x = exp(a%x)
      c%d = c%x*a%d
   end function d_exp

   function d_log(a) result(c)
      type(dual), intent(in) :: a
      type(dual) :: c
      c = dual(log(a%x), a%d/a%x)
   end function d_log

   function d_sqrt(a) result(c)
      type(dual), intent(in) :: a
      type(dual) :: c
      c%x = sqrt(a%x)
      c%d = half/c%x*a%d
   end function d_sqrt

   function d_atan2(y, x) result(c)
      type(dual), intent(in) :: y, x
      type(dual) :: c
      c = dual(atan2(y%x, x%x), (x%x*y%d - y%x*x%d)/(x%x**2 + y%x**2))
   end function d_atan2

   function d_max(a, b) result(c)
      type(dual), intent(in) :: a, b
      type(dual) :: c
      c = b
      if (a > b) c = a
   end function d_max

   function d_sum(a) result(c)
      type(dual), dimension(:), intent(in) :: a
      type(dual) :: c
      integer :: k
      c%x = sum(a%x)
      c%d = (/ (sum(a%d(k)), k = 1, n_variables) /)
   end function d_sum

   function d_dot(a, b) result(c)
      type(dual), intent(in) :: a(:), b(:)
      type(dual) :: c
      integer :: i
      c = 0
      do i = 1, size(a)
         c = c + a(i)*b(i)
      end do
   end function d_dot

end module duals
