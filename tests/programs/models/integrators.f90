! Ways to step a system of ordinary differential equations.
module integrators
  use chance, only: wp
  implicit none
  private
  public :: runge_kutta, leapfrog, trajectory, record_point, forget

  ! Points of a solution, each with its time, in a list that knows its end.
  type, public :: sample
     real(wp) :: time
     real(wp), dimension(:), pointer :: values
     type(sample), pointer :: next
  end type sample

  type trajectory
     type(sample), pointer :: first, last
     integer :: length
  end type trajectory

contains

  subroutine runge_kutta(slope, t, y, h)
    real(wp), intent(inout) :: t
    real(wp), dimension(:), intent(inout) :: y
    real(wp), intent(in) :: h
    interface
       function slope(t, y) result(dy)
         use chance, only: wp
         real(wp), intent(in) :: t, y(:)
         real(wp) :: dy(size(y))
       end function slope
    end interface
    real(wp), dimension(size(y)) :: k1, k2, k3, k4

    k1 = slope(t, y)
    k2 = slope(t + h/2, y + h/2*k1)
    k3 = slope(t + h/2, y + h/2*k2)
    k4 = slope(t + h, y + h*k3)
    y = y + h/6*(k1 + 2*(k2 + k3) + k4)
    t = t + h
  end subroutine runge_kutta

  ! Kick, drift, kick: keeps the energy of orbits.
  subroutine leapfrog(force, x, v, h, steps)
    real(wp), dimension(:, :), intent(inout) :: x, v
    real(wp), intent(in) :: h
    integer, intent(in) :: steps
    interface
       subroutine force(x, a)
         use chance
         real(kind=wp), intent(in), dimension(:, :) :: x
         real(kind=wp), intent(out), dimension(:, :) :: a
       end subroutine force
    end interface
    real(wp), dimension(size(x, 1), size(x, 2)) :: a
    integer :: n

    call force(x, a)
    do n = 1, steps
       v = v + 0.5_wp*h*a
       x = x + h*v
       call force(x, a)
       v = v + 0.5_wp*h*a
    end do
  end subroutine leapfrog

  subroutine record_point(path, t, y)
    type(trajectory), intent(inout) :: path
    real(wp), intent(in) :: t, y(:)
    type(sample), pointer :: new

    allocate (new)
    allocate (new%values(size(y)))
    new%time = t
    new%values = y
    nullify (new%next)
    if (path%length == 0) then
       path%first => new
    else
       path%last%next => new
    end if
    path%last => new
    path%length = path%length + 1
  end subroutine record_point

  subroutine forget(path)
    type(trajectory), intent(inout) :: path
    type(sample), pointer :: gone

    do while (path%length > 0)
       gone => path%first
       path%first => gone%next
       deallocate (gone%values)
       deallocate (gone)
       path%length = path%length - 1
    end do
    nullify (path%first, path%last)
  end subroutine forget
end module integrators
