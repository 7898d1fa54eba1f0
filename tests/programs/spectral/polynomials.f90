module polynomials
   ! Polynomials of any degree: coefficient k belongs to the power k. Memory is owned by the variable;
   ! assignment copies.
   implicit none
   integer, parameter :: pr = selected_real_kind(14)
   private
   public :: polynomial, poly, operator(+), operator(-), operator(*), operator(/), operator(**), &
             operator(.mod.), operator(.of.), operator(==), assignment(=), degree, derivative, &
             primitive, roots, legendre, display, discard, pr

   type polynomial
      private
      integer :: degree
      real(pr), pointer :: c(:)            ! (0:degree)
   end type polynomial

   interface poly
      module procedure poly_of_array, poly_of_number, poly_of_ints
   end interface

   interface operator(+)
      module procedure add, add_scalar
   end interface

   interface operator(-)
      module procedure subtract, negate
   end interface

   interface operator(*)
      module procedure multiply, scale_left
   end interface

   interface operator(/)
      module procedure quotient
   end interface

   interface operator(**)
      module procedure power
   end interface

   interface operator(.mod.)
      module procedure remainder
   end interface

   ! p .of. x: the value at a place, at several, or the composition
   interface operator(.of.)
      module procedure value_at, values_at, complex_value_at, compose
   end interface

   interface operator(==)
      module procedure same
   end interface

   interface assignment(=)
      module procedure copy_poly, poly_from_array, array_from_poly
   end interface

contains

   function blank(degree) result(p)
      integer, intent(in) :: degree
      type(polynomial) :: p
      p%degree = max(degree, 0)
      allocate (p%c(0:p%degree))
      p%c = 0
   end function blank

   function poly_of_array(c) result(p)
      real(pr), intent(in) :: c(0:)
      type(polynomial) :: p
      integer :: n
      n = ubound(c, 1)
      do while (n > 0)
         if (c(n) /= 0) exit
         n = n - 1
      end do
      p%degree = max(n, 0)
      allocate (p%c(0:p%degree))
      p%c = 0
      if (n >= 0) p%c = c(0:n)
   end function poly_of_array

   function poly_of_ints(c) result(p)
      integer, intent(in) :: c(:)
      type(polynomial) :: p
      real(pr) :: work(size(c))
      work = c
      call steal(p, poly_of_array(work))
   end function poly_of_ints

   function poly_of_number(c) result(p)
      real(pr), intent(in) :: c
      type(polynomial) :: p
      call steal(p, poly_of_array((/ c /)))
   end function poly_of_number

   ! Takes the memory over instead of copying it
   subroutine steal(p, q)
      type(polynomial), intent(out) :: p
      type(polynomial), intent(in) :: q
      p%degree = q%degree
      p%c => q%c
   end subroutine steal

   subroutine copy_poly(p, q)
      type(polynomial), intent(out) :: p
      type(polynomial), intent(in) :: q
      p%degree = q%degree
      allocate (p%c(0:q%degree))
      p%c = q%c
   end subroutine copy_poly

   subroutine poly_from_array(p, c)
      type(polynomial), intent(out) :: p
      real(pr), intent(in) :: c(:)
      call steal(p, poly_of_array(c))
   end subroutine poly_from_array

   subroutine array_from_poly(c, p)
      real(pr), intent(out) :: c(:)
      type(polynomial), intent(in) :: p
      integer :: n
      n = min(size(c), p%degree + 1)
      c = (/ p%c(0:n - 1), spread(0.0_pr, 1, size(c) - n) /)
   end subroutine array_from_poly

   subroutine discard(p)
      type(polynomial), intent(inout) :: p
      if (associated(p%c)) deallocate (p%c)
      p%degree = -1
   end subroutine discard

   function add(p, q) result(r)
      type(polynomial), intent(in) :: p, q
      type(polynomial) :: r
      real(pr) :: sum_c(0:max(p%degree, q%degree))
      sum_c = 0
      sum_c(:p%degree) = p%c
      sum_c(:q%degree) = sum_c(:q%degree) + q%c
      call steal(r, poly(sum_c))
   end function add

   function add_scalar(p, x) result(r)
      type(polynomial), intent(in) :: p
      real(pr), intent(in) :: x
      type(polynomial) :: r
      call steal(r, p + poly(x))
   end function add_scalar

   function subtract(p, q) result(r)
      type(polynomial), intent(in) :: p, q
      type(polynomial) :: r
      call steal(r, p + (-q))
   end function subtract

   function negate(p) result(r)
      type(polynomial), intent(in) :: p
      type(polynomial) :: r
      call steal(r, poly(-p%c))
   end function negate

   function multiply(p, q) result(r)
      type(polynomial), intent(in) :: p, q
      type(polynomial) :: r
      real(pr) :: product_c(0:p%degree + q%degree)
      integer :: k
      product_c = 0
      do k = 0, p%degree
         product_c(k:k + q%degree) = product_c(k:k + q%degree) + p%c(k)*q%c
      end do
      call steal(r, poly(product_c))
   end function multiply

   function scale_left(x, p) result(r)
      real(pr), intent(in) :: x
      type(polynomial), intent(in) :: p
      type(polynomial) :: r
      call steal(r, poly(x*p%c))
   end function scale_left

   recursive function power(p, n) result(r)
      type(polynomial), intent(in) :: p
      integer, intent(in) :: n
      type(polynomial) :: r, root
      select case (n)
      case (:-1)
         stop 'polynomials: a negative power'
      case (0)
         call steal(r, poly(1.0_pr))
      case (1)
         call steal(r, poly(p%c))
      case default
         call steal(root, power(p, n/2))
         call steal(r, root*root)
         if (mod(n, 2) == 1) call steal(r, r*p)
         call discard(root)
      end select
   end function power

   subroutine divide(p, q, quot, rest)
      type(polynomial), intent(in) :: p, q
      real(pr), intent(out) :: quot(0:), rest(0:)
      integer :: k
      quot = 0
      rest = p%c
      do k = p%degree - q%degree, 0, -1
         quot(k) = rest(k + q%degree)/q%c(q%degree)
         rest(k:k + q%degree) = rest(k:k + q%degree) - quot(k)*q%c
         rest(k + q%degree) = 0
      end do
   end subroutine divide

   function quotient(p, q) result(r)
      type(polynomial), intent(in) :: p, q
      type(polynomial) :: r
      real(pr) :: quot(0:max(p%degree - q%degree, 0)), rest(0:p%degree)
      call divide(p, q, quot, rest)
      call steal(r, poly(quot))
   end function quotient

   function remainder(p, q) result(r)
      type(polynomial), intent(in) :: p, q
      type(polynomial) :: r
      real(pr) :: quot(0:max(p%degree - q%degree, 0)), rest(0:p%degree)
      call divide(p, q, quot, rest)
      call steal(r, poly(rest))
   end function remainder

   logical function same(p, q)
      type(polynomial), intent(in) :: p, q
      same = .false.
      if (p%degree == q%degree) same = all(p%c == q%c)
   end function same

   function value_at(p, x) result(y)
      type(polynomial), intent(in) :: p
      real(pr), intent(in) :: x
      real(pr) :: y
      integer :: k
      y = p%c(p%degree)
      do k = p%degree - 1, 0, -1
         y = y*x + p%c(k)
      end do
   end function value_at

   function values_at(p, x) result(y)
      type(polynomial), intent(in) :: p
      real(pr), intent(in) :: x(:)
      real(pr) :: y(size(x))
      integer :: k
      y = 0
      do k = p%degree, 0, -1
         y = y*x + p%c(k)
      end do
   end function values_at

   function complex_value_at(p, z) result(w)
      type(polynomial), intent(in) :: p
      complex(pr), intent(in) :: z
      complex(pr) :: w
      integer :: k
      w = (0.0_pr, 0.0_pr)
      do k = p%degree, 0, -1
         w = w*z + p%c(k)
      end do
   end function complex_value_at

   function compose(p, q) result(r)
      type(polynomial), intent(in) :: p, q
      type(polynomial) :: r
      integer :: k
      call steal(r, poly(0.0_pr))
      do k = p%degree, 0, -1
         call steal(r, r*q + p%c(k))
      end do
   end function compose

   integer function degree(p)
      type(polynomial), intent(in) :: p
      degree = p%degree
   end function degree

   function derivative(p, order) result(r)
      type(polynomial), intent(in) :: p
      integer, intent(in), optional :: order
      type(polynomial) :: r
      integer :: i, k, times
      times = 1
      if (present(order)) times = order
      call steal(r, poly(p%c))
      do i = 1, times
         if (r%degree == 0) then
            call steal(r, poly(0.0_pr))
         else
            call steal(r, poly((/ (k*r%c(k), k = 1, r%degree) /)))
         end if
      end do
   end function derivative

   function primitive(p, constant) result(r)
      type(polynomial), intent(in) :: p
      real(pr), intent(in), optional :: constant
      type(polynomial) :: r
      integer :: k
      call steal(r, blank(p%degree + 1))
      if (present(constant)) r%c(0) = constant
      r%c(1:) = p%c/(/ (k, k = 1, p%degree + 1) /)
   end function primitive

   ! All roots at once, from points on a circle
   subroutine roots(p, z, steps)
      type(polynomial), intent(in) :: p
      complex(pr), intent(out) :: z(:)
      integer, intent(out), optional :: steps
      complex(pr), dimension(size(z)) :: step
      real(pr) :: radius
      integer :: k, n, round, number(size(z))
      n = min(p%degree, size(z))
      radius = 1 + maxval(abs(p%c(0:p%degree - 1)))/abs(p%c(p%degree))
      z(:n) = (/ (0.5_pr*radius*exp(cmplx(0.0_pr, 6.2831853_pr*(k - 0.25_pr)/n, pr)), k = 1, n) /)
      number = (/ (k, k = 1, size(z)) /)
      do round = 1, 200
         do k = 1, n
            step(k) = (p .of. z(k))/(p%c(p%degree)*product(z(k) - z(:n), mask=number(:n) /= k))
         end do
         z(:n) = z(:n) - step(:n)
         if (all(abs(step(:n)) < 1.0e-13_pr*radius)) exit
      end do
      if (present(steps)) steps = round
   end subroutine roots

   ! The Legendre polynomials of degree 0 to n by their recurrence
   function legendre(n) result(table)
      integer, intent(in) :: n
      type(polynomial), dimension(0:n) :: table
      type(polynomial) :: x
      integer :: k
      call steal(x, poly((/ 0, 1 /)))
      call steal(table(0), poly(1.0_pr))
      if (n > 0) call steal(table(1), poly((/ 0, 1 /)))
      do k = 1, n - 1
         call steal(table(k + 1), (real(2*k + 1, pr)/(k + 1))*(x*table(k)) - (real(k, pr)/(k + 1))*table(k - 1))
      end do
      call discard(x)
   end function legendre

   subroutine display(name, p, unit)
      character(len=*), intent(in) :: name
      type(polynomial), intent(in) :: p
      integer, intent(in), optional :: unit
      integer :: k, u
      character(len=1) :: sign_mark
      character(len=14) :: number
      character(len=200) :: line
      u = 6
      if (present(unit)) u = unit
      line = ' ' // name // ' ='
      do k = p%degree, 0, -1
         if (p%c(k) == 0 .and. p%degree > 0) cycle
         sign_mark = merge('-', '+', p%c(k) < 0)
         write (number, '(g14.6)') abs(p%c(k))
         line = trim(line) // ' ' // sign_mark // ' ' // trim(adjustl(number))
         if (k > 0) then
            write (number, '("x**", i2)') k
            line = trim(line) // ' ' // number
         end if
      end do
      write (u, '(a)') trim(line)
   end subroutine display

end module polynomials
