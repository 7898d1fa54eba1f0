module points
  type point
    real x, y
  end type point
  interface operator(+)
    module procedure add
  end interface
  integer, private :: made = 0
contains
  function add(a, b)
    type(point), intent(in) :: a, b
    type(point) add
    add = point(a%x + b%x, a%y + b%y)
    made = made + 1
  end function add
end module points
