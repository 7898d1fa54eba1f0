! Vectors with their operators: sum, difference, product with a number, inner product, length.
module vectors
  use kinds, only: rk => real_kind
  implicit none
  private :: rk, add, subtract, scale_left, scale_right, inner, assign_number

  type vector
    integer :: n
    real(rk), pointer :: x(:)
  end type vector

  interface operator(+)
    module procedure add
  end interface
  interface operator(-)
    module procedure subtract, negate
  end interface
  interface operator(*)
    module procedure scale_left, scale_right
  end interface
  interface operator(.dot.)
    module procedure inner
  end interface
  interface assignment(=)
    module procedure assign_number, assign_values
  end interface
  interface norm
    module procedure vector_norm, array_norm
  end interface

contains

  function new_vector(n) result(v)
    integer, intent(in) :: n
    type(vector) :: v

    v%n = n
    allocate (v%x(n))
    v%x = 0
  end function new_vector

  function add(a, b) result(c)
    type(vector), intent(in) :: a, b
    type(vector) :: c

    c = new_vector(a%n)
    c%x = a%x + b%x
  end function add

  function subtract(a, b) result(c)
    type(vector), intent(in) :: a, b
    type(vector) :: c

    c = new_vector(a%n)
    c%x = a%x - b%x
  end function subtract

  function negate(a) result(c)
    type(vector), intent(in) :: a
    type(vector) :: c

    c = new_vector(a%n)
    c%x = -a%x
  end function negate

  function scale_left(s, a) result(c)
    real(rk), intent(in) :: s
    type(vector), intent(in) :: a
    type(vector) :: c

    c = new_vector(a%n)
    c%x = s * a%x
  end function scale_left

  function scale_right(a, s) result(c)
    type(vector), intent(in) :: a
    real(rk), intent(in) :: s
    type(vector) :: c

    c = scale_left(s, a)
  end function scale_right

  function inner(a, b) result(s)
    type(vector), intent(in) :: a, b
    real(rk) :: s

    s = dot_product(a%x, b%x)
  end function inner

  subroutine assign_number(v, s)
    type(vector), intent(inout) :: v
    real(rk), intent(in) :: s

    v%x = s
  end subroutine assign_number

  subroutine assign_values(v, x)
    type(vector), intent(inout) :: v
    real(rk), intent(in) :: x(:)

    v%n = size(x)
    v%x => null_array(v%n)
    v%x = x
  end subroutine assign_values

  function null_array(n) result(x)
    integer, intent(in) :: n
    real(rk), pointer :: x(:)

    allocate (x(n))
    x = 0
  end function null_array

  function vector_norm(v) result(s)
    type(vector), intent(in) :: v
    real(rk) :: s

    s = sqrt(v .dot. v)
  end function vector_norm

  function array_norm(x) result(s)
    real(rk), intent(in) :: x(:)
    real(rk) :: s

    s = sqrt(sum(x**2))
  end function array_norm

end module vectors
