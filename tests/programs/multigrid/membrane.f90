module membrane_load
  ! The load, chosen so that the exact shape is a product of sines
  use grids, only: wp
  implicit none
  real(wp), save :: reaction
contains
  function load(x, y) result(f)
    real(wp), intent(in) :: x, y
    real(wp) :: f
    real(wp), parameter :: pi = 3.14159265358979324_wp
    f = (2*pi**2 + reaction)*sin(pi*x)*sin(pi*y)
  end function load
end module membrane_load

program membrane
  ! A loaded membrane; the settings come from a NAMELIST file, which the program writes itself
  ! if there is none.
  use grids, only: wp, grid_stack, build_stack, clear_stack, axis
  use poisson
  use membrane_load
  implicit none
  integer, parameter :: nml_unit = 21, first_level = 3
  character(len=*), parameter :: nml_file = 'membrane.nml'
  type(grid_stack) :: stack
  type(options) :: o
  integer :: levels, cycles, ios, k
  logical :: there, w_cycle, red_black
  real(wp) :: tolerance, history(0:20), error
  character(len=8) :: norm
  namelist /settings/ levels, tolerance, reaction, w_cycle, red_black
  namelist /output/ norm

  inquire (file=nml_file, exist=there)
  if (there) then
     open (nml_unit, file=nml_file, status='old', action='read', iostat=ios)
  else
     open (unit=nml_unit, file=nml_file, status='new', action='readwrite', form='formatted', &
           delim='apostrophe', iostat=ios)
     if (ios == 0) call write_defaults
  end if
  if (ios /= 0) then
     write (*, *) 'cannot open ', nml_file, ': ', ios
     stop 2
  end if

  call set_defaults
  read (nml_unit, nml=settings, iostat=ios, end=900)
  if (ios > 0) print *, 'settings are not understood, defaults are used'
  rewind nml_unit
  read (nml_unit, output, err=910, end=900)
900 continue
  close (nml_unit, status='delete')

  o = default_options()
  o%tolerance = tolerance
  o%reaction = reaction
  o%cycle_index = merge(2, 1, w_cycle)
  o%red_black = red_black
  o%norm = norm

  write (*, '(1x, a6, a9, a8, a14, a14)') 'points', 'cycles', 'rate', 'residual', 'error'
  do k = first_level, levels
     call build_stack(stack, k)
     call load_membrane
     call solve(stack%finest, o, cycles, history)
     error = maxval(abs(stack%finest%u - exact(stack%finest%n)))
     write (*, fmt='(1x, i6, i9, f8.3, 2es14.3)') 2**k + 1, cycles, &
          (history(cycles)/history(0))**(1.0_wp/cycles), history(cycles), error
     call clear_stack(stack)
  end do

  ! From the coarsest grid on: the error of the discretization after one cycle to a grid
  call build_stack(stack, levels)
  call full_multigrid(stack, o, load)
  write (*, '(1x, a, es10.3)') 'full multigrid, error', maxval(abs(stack%finest%u - exact(stack%finest%n)))
  call section_through(stack%finest%n/2)
  call clear_stack(stack)
  stop

910 write (*, *) 'no name of a norm in ', nml_file
  stop 3

contains

  subroutine set_defaults
    levels = 5; tolerance = 1.0e-9_wp; reaction = 1
    w_cycle = .false.; red_black = .true.
    norm = 'max'
  end subroutine set_defaults

  subroutine write_defaults
    call set_defaults
    levels = 6
    norm = 'L2'
    write (nml_unit, nml=settings)
    write (nml_unit, nml=output)
    endfile nml_unit
    rewind nml_unit
  end subroutine write_defaults

  subroutine load_membrane
    real(wp), allocatable :: x(:)
    integer :: i, j
    allocate (x(0:stack%finest%n), stat=ios)
    if (ios /= 0) stop 'no room'
    x = axis(stack%finest)
    do j = 0, ubound(x, 1)
       do i = 0, ubound(x, 1)
          stack%finest%f(i, j) = load(x(i), x(j))
       end do
    end do
    deallocate (x)
  end subroutine load_membrane

  function exact(n) result(u)
    integer, intent(in) :: n
    real(wp), dimension(0:n, 0:n) :: u
    real(wp) :: s(0:n)
    integer :: i
    s = sin((/ (i, i = 0, n) /)*(3.14159265358979324_wp/n))
    u = spread(s, 2, n + 1)*spread(s, 1, n + 1)
  end function exact

  subroutine section_through(row)
    integer, intent(in) :: row
    integer :: i
    write (*, '(1x, 9f8.4)') (stack%finest%u(i, row), i = 0, stack%finest%n, stack%finest%n/8)
  end subroutine section_through

end program membrane
