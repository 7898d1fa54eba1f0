module poisson
  ! The multigrid solution of  -laplace(u) + c u = f  with u given on the boundary.
  use grids
  implicit none
  private
  public :: options, default_options, solve, full_multigrid, residual_norm

  type options
     integer :: presweeps, postsweeps, cycle_index, most_cycles
     real(wp) :: tolerance, reaction
     logical :: red_black
     character(len=8) :: norm
  end type options

contains

  function default_options() result(o)
    type(options) :: o
    o = options(2, 1, 1, 20, 1.0e-10_wp, 0.0_wp, .true., 'max')
  end function default_options

  ! Cycles until the residual is small, or `most_cycles` are done.
  subroutine solve(g, o, cycles, history)
    type(grid), intent(inout) :: g
    type(options), intent(in) :: o
    integer, intent(out) :: cycles
    real(wp), dimension(0:), intent(out), optional :: history
    real(wp) :: first, now
    first = residual_norm(g, o)
    if (present(history)) history(0) = first
    do cycles = 1, o%most_cycles
       call one_cycle(g, o)
       now = residual_norm(g, o)
       if (present(history)) then
          if (cycles <= ubound(history, 1)) history(cycles) = now
       end if
       if (now <= o%tolerance*max(first, tiny(first))) exit
    end do
    cycles = min(cycles, o%most_cycles)
  end subroutine solve

  ! Down and up again; cycle_index 1 gives V cycles, 2 gives W cycles.
  recursive subroutine one_cycle(g, o)
    type(grid), intent(inout) :: g
    type(options), intent(in) :: o
    integer :: k
    if (.not. associated(g%coarser)) then
       ! One inner point: solved as it stands
       g%u(1, 1) = (g%f(1, 1)*g%h**2 + g%u(0, 1) + g%u(2, 1) + g%u(1, 0) + g%u(1, 2)) &
                   /(4.0_wp + o%reaction*g%h**2)
       return
    end if
    call smooth(g, o, o%presweeps)
    call find_residual(g, o)
    call restrict(g)
    g%coarser%u = 0
    do k = 1, o%cycle_index
       call one_cycle(g%coarser, o)
    end do
    call prolong_and_correct(g)
    call smooth(g, o, o%postsweeps)
  end subroutine one_cycle

  subroutine smooth(g, o, sweeps)
    type(grid), intent(inout) :: g
    type(options), intent(in) :: o
    integer, intent(in) :: sweeps
    integer :: sweep, colour, i, j, n
    real(wp) :: middle
    real(wp), pointer :: u(:, :)
    u => g%u
    n = g%n
    middle = 4.0_wp + o%reaction*g%h**2
    do sweep = 1, sweeps
       if (o%red_black) then
          do colour = 0, 1
             do j = 1, n - 1
                do i = 1 + mod(j + colour, 2), n - 1, 2
                   u(i, j) = (g%f(i, j)*g%h**2 + u(i-1, j) + u(i+1, j) + u(i, j-1) + u(i, j+1))/middle
                end do
             end do
          end do
       else
          ! Damped simultaneous displacements
          u(1:n-1, 1:n-1) = 0.2_wp*u(1:n-1, 1:n-1) + 0.8_wp/middle*(g%f(1:n-1, 1:n-1)*g%h**2 &
               + u(0:n-2, 1:n-1) + u(2:n, 1:n-1) + u(1:n-1, 0:n-2) + u(1:n-1, 2:n))
       end if
    end do
  end subroutine smooth

  subroutine find_residual(g, o)
    type(grid), intent(inout) :: g
    type(options), intent(in) :: o
    g%r = g%f - o%reaction*g%u + (eoshift(g%u, 1, dim=1) + eoshift(g%u, -1, dim=1) &
          + eoshift(g%u, 1, dim=2) + eoshift(g%u, -1, dim=2) - 4.0_wp*g%u)/g%h**2
    g%r((/ 0, g%n /), :) = 0
    g%r(:, (/ 0, g%n /)) = 0
  end subroutine find_residual

  function residual_norm(g, o) result(s)
    type(grid), intent(inout) :: g
    type(options), intent(in) :: o
    real(wp) :: s
    call find_residual(g, o)
    select case (o%norm)
    case ('max', 'MAX')
       s = maxval(abs(g%r))
    case ('l2', 'L2')
       s = g%h*sqrt(sum(g%r**2))
    case default
       s = g%h**2*sum(abs(g%r))
    end select
  end function residual_norm

  ! From the coarsest grid on, each solution is the start of the next finer one.
  subroutine full_multigrid(stack, o, right_hand_side)
    type(grid_stack), intent(inout) :: stack
    type(options), intent(in) :: o
    interface
       function right_hand_side(x, y) result(f)
         use grids, only: wp
         real(wp), intent(in) :: x, y
         real(wp) :: f
       end function right_hand_side
    end interface
    type(grid), pointer :: g
    real(wp), dimension(:), pointer :: x
    integer :: i, j
    g => stack%coarsest
    do while (associated(g))
       allocate (x(0:g%n))
       x = axis(g)
       if (associated(g%coarser)) then
          g%u = 0
          call prolong_and_correct(g)
       end if
       do j = 0, g%n
          do i = 0, g%n
             g%f(i, j) = right_hand_side(x(i), x(j))
          end do
       end do
       deallocate (x)
       call one_cycle_keeping(g)
       g => g%finer
    end do
  contains
    ! The cycle overwrites the right hand sides of the coarser grids, which are done with.
    subroutine one_cycle_keeping(level)
      type(grid), pointer :: level
      call one_cycle(level, o)
      if (o%cycle_index > 1) call one_cycle(level, o)
    end subroutine one_cycle_keeping
  end subroutine full_multigrid

end module poisson
