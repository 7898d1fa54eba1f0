module grids
  ! A hierarchy of square grids with the transfers between them. Level 1 is the coarsest, of
  ! 3 by 3 points; each level has 2**level + 1 points to a side, the boundary among them.
  implicit none

  integer, parameter :: wp = selected_real_kind(12)

  type grid
     integer :: n                                   ! intervals to a side
     real(wp) :: h
     real(wp), dimension(:, :), pointer :: u, f, r  ! (0:n, 0:n)
     type(grid), pointer :: coarser, finer
  end type grid

  type grid_stack
     integer :: levels
     type(grid), pointer :: coarsest, finest
  end type grid_stack

  private :: new_grid

contains

  subroutine build_stack(stack, levels, side)
    type(grid_stack), intent(out) :: stack
    integer, intent(in) :: levels
    real(wp), intent(in), optional :: side
    type(grid), pointer :: level, below
    real(wp) :: length
    integer :: l

    length = 1.0_wp
    if (present(side)) length = side
    nullify(below)
    do l = 1, levels
       call new_grid(level, 2**l, length)
       level%coarser => below
       if (associated(below)) then
          below%finer => level
       else
          stack%coarsest => level
       end if
       below => level
    end do
    stack%finest => below
    stack%levels = levels
  end subroutine build_stack

  subroutine new_grid(g, n, side)
    type(grid), pointer :: g
    integer, intent(in) :: n
    real(wp), intent(in) :: side
    allocate (g)
    allocate (g%u(0:n, 0:n), g%f(0:n, 0:n), g%r(0:n, 0:n))
    g%n = n
    g%h = side/n
    g%u = 0; g%f = 0; g%r = 0
    nullify (g%coarser, g%finer)
  end subroutine new_grid

  subroutine clear_stack(stack)
    type(grid_stack), intent(inout) :: stack
    type(grid), pointer :: g, next
    g => stack%coarsest
    do
       if (.not. associated(g)) exit
       next => g%finer
       deallocate (g%u, g%f, g%r)
       deallocate (g)
       g => next
    end do
    nullify (stack%coarsest, stack%finest)
    stack%levels = 0
  end subroutine clear_stack

  ! The points of a grid along one axis
  function axis(g) result(x)
    type(grid), intent(in) :: g
    real(wp), dimension(0:g%n) :: x
    integer :: i
    x = (/ (i*g%h, i = 0, g%n) /)
  end function axis

  ! Full weighting of the residual of g to the right hand side of the next coarser grid
  subroutine restrict(g)
    type(grid), intent(inout) :: g
    integer :: m
    real(wp), dimension(:, :), pointer :: r, c
    r => g%r
    c => g%coarser%f
    m = g%n
    c = 0
    c(1:g%coarser%n-1, 1:g%coarser%n-1) = &
         0.25_wp*r(2:m-2:2, 2:m-2:2) &
         + 0.125_wp*(r(1:m-3:2, 2:m-2:2) + r(3:m-1:2, 2:m-2:2) + r(2:m-2:2, 1:m-3:2) + r(2:m-2:2, 3:m-1:2)) &
         + 0.0625_wp*(r(1:m-3:2, 1:m-3:2) + r(3:m-1:2, 1:m-3:2) + r(1:m-3:2, 3:m-1:2) + r(3:m-1:2, 3:m-1:2))
  end subroutine restrict

  ! Adds the bilinear interpolation of the coarser solution to that of g
  subroutine prolong_and_correct(g)
    type(grid), intent(inout) :: g
    real(wp), pointer :: c(:, :)
    real(wp), dimension(0:g%n, 0:g%n) :: fine
    integer :: n, k
    n = g%n
    k = g%coarser%n
    c => g%coarser%u
    fine(0:n:2, 0:n:2) = c
    fine(1:n-1:2, 0:n:2) = 0.5_wp*(c(0:k-1, :) + c(1:k, :))
    fine(:, 1:n-1:2) = 0.5_wp*(fine(:, 0:n-2:2) + fine(:, 2:n:2))
    g%u(1:n-1, 1:n-1) = g%u(1:n-1, 1:n-1) + fine(1:n-1, 1:n-1)
  end subroutine prolong_and_correct

end module grids
