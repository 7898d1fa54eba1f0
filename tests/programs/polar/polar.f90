! Points of the plane in polar and in Cartesian coordinates.
module polar
    implicit none
    private
    public :: point, polar_point, cartesian, distance, operator(+), assignment(=)

    type point
        real :: x, y
    end type point

    type polar_point
        real :: radius, angle
    end type polar_point

    interface operator(+)
        module procedure sum_of_points
    end interface

    interface assignment(=)
        module procedure point_of_polar, polar_of_point
    end interface

contains

    function sum_of_points(a, b) result(c)
        type(point), intent(in) :: a, b
        type(point) :: c
        c = point(a%x + b%x, a%y + b%y)
    end function sum_of_points

    subroutine point_of_polar(p, q)
        type(point), intent(out) :: p
        type(polar_point), intent(in) :: q
        p%x = q%radius * cos(q%angle)
        p%y = q%radius * sin(q%angle)
    end subroutine point_of_polar

    subroutine polar_of_point(q, p)
        type(polar_point), intent(out) :: q
        type(point), intent(in) :: p
        q%radius = sqrt(p%x**2 + p%y**2)
        q%angle = atan2(p%y, p%x)
    end subroutine polar_of_point

    function cartesian(radius, angle) result(p)
        real, intent(in) :: radius, angle
        type(point) :: p
        p = polar_point(radius, angle)
    end function cartesian

    real function distance(a, b)
        type(point), intent(in) :: a, b
        distance = sqrt((a%x - b%x)**2 + (a%y - b%y)**2)
    end function distance

end module polar
