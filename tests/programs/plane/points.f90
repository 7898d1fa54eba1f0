! Points of the plane, with operators, and predicates on them.
module points
  implicit none
  public

  integer, parameter :: coordinate = selected_real_kind(12)

  type point
     real(coordinate) :: x, y
  end type point

  type segment
     type(point) :: from, to
  end type segment

  type box
     type(point) :: low, high
  end type box

  interface operator(+)
     module procedure plus_point
  end interface
  interface operator(-)
     module procedure minus_point
  end interface
  interface operator(*)
     module procedure times_point
  end interface
  interface operator(.cross.)
     module procedure cross_product
  end interface
  interface operator(<)
     module procedure is_left_of
  end interface
  interface operator(==)
     module procedure same_point
  end interface
  interface length
     module procedure length_of_point, length_of_segment, length_of_path
  end interface
  interface assignment(=)
     module procedure point_from_complex, complex_from_point, point_from_pair
  end interface

  type(point), parameter :: origin = point(0.0_coordinate, 0.0_coordinate)

  private plus_point, minus_point, times_point, cross_product, is_left_of, same_point
  private length_of_point, length_of_segment, length_of_path
  private point_from_complex, complex_from_point, point_from_pair

contains

  function plus_point(a, b) result(c)
    type(point), intent(in) :: a, b
    type(point) :: c
    c%x = a%x + b%x; c%y = a%y + b%y
  end function plus_point

  function minus_point(a, b) result(c)
    type(point), intent(in) :: a, b
    type(point) :: c
    c%x = a%x - b%x; c%y = a%y - b%y
  end function minus_point

  function times_point(s, a) result(c)
    real(coordinate), intent(in) :: s
    type(point), intent(in) :: a
    type(point) :: c
    c = point(s*a%x, s*a%y)
  end function times_point

  real(coordinate) function cross_product(a, b)
    type(point), intent(in) :: a, b
    cross_product = a%x*b%y - a%y*b%x
  end function cross_product

  logical function is_left_of(a, b)
    type(point), intent(in) :: a, b
    is_left_of = a%x < b%x .or. (a%x == b%x .and. a%y < b%y)
  end function is_left_of

  logical function same_point(a, b)
    type(point), intent(in) :: a, b
    same_point = a%x == b%x .and. a%y == b%y
  end function same_point

  function length_of_point(a) result(l)
    type(point), intent(in) :: a
    real(coordinate) :: l
    l = sqrt(a%x**2 + a%y**2)
  end function length_of_point

  function length_of_segment(s) result(l)
    type(segment), intent(in) :: s
    real(coordinate) :: l
    l = length_of_point(s%to - s%from)
  end function length_of_segment

  function length_of_path(path, closed) result(l)
    type(point), dimension(:), intent(in) :: path
    logical, intent(in), optional :: closed
    real(coordinate) :: l
    integer :: k

    l = 0
    do k = 2, size(path)
       l = l + length_of_point(path(k) - path(k - 1))
    end do
    if (present(closed)) then
       if (closed) l = l + length_of_point(path(1) - path(size(path)))
    end if
  end function length_of_path

  subroutine point_from_complex(p, z)
    type(point), intent(out) :: p
    complex, intent(in) :: z
    p = point(real(z, coordinate), real(aimag(z), coordinate))
  end subroutine point_from_complex

  subroutine complex_from_point(z, p)
    complex, intent(out) :: z
    type(point), intent(in) :: p
    z = cmplx(p%x, p%y)
  end subroutine complex_from_point

  subroutine point_from_pair(p, pair)
    type(point), intent(out) :: p
    integer, dimension(2), intent(in) :: pair
    p%x = pair(1)
    p%y = pair(2)
  end subroutine point_from_pair

  ! Twice the signed area of the triangle: positive if the turn is to the left.
  real(coordinate) function turn(a, b, c)
    type(point), intent(in) :: a, b, c
    turn = (b - a) .cross. (c - a)
  end function turn

end module points
