! A mesh of variable size: a namelist file gives its measures, arrays are allocated to them, and a linked list
! keeps the cells that were refined.

program mesh
  implicit none

  type cell
    integer :: column, row
    real :: size
    type(cell), pointer :: next
  end type cell

  integer :: columns, rows, status, level
  real :: width, height, limit
  character(len=30) :: title
  logical :: verbose
  namelist /measures/ columns, rows, width, height, title
  namelist /control/ limit, level, verbose

  real, allocatable :: depth(:, :), slope(:, :)
  type(cell), pointer :: refined, item
  integer, parameter :: unit = 21

  columns = 40
  rows = 20
  width = 4.0
  height = 2.0
  title = 'a hill'
  limit = 0.3
  level = 1
  verbose = .false.

  open (unit, file='mesh.nml', action='write', status='replace')
  write (unit, nml=measures)
  write (unit, nml=control)
  close (unit)
  open (unit, file='mesh.nml', action='read', status='old', iostat=status)
  if (status /= 0) stop 'no mesh.nml'
  read (unit, nml=measures)
  read (unit, nml=control, end=10, err=10)
10 close (unit, status='delete')

  allocate (depth(0:columns, 0:rows), slope(columns, rows), stat=status)
  if (status /= 0) stop 'the mesh is too large'
  call fill(depth, width, height)
  call slopes(depth, slope)

  nullify (refined)
  call refine(slope, limit)
  print '(1x, 2a, i5, a)', trim(title), ':', count_cells(refined), ' cells are steep'

  do while (associated(refined))
    item => refined
    refined => refined%next
    if (verbose) print *, item%column, item%row, item%size
    deallocate (item)
  end do
  deallocate (depth, slope)

contains

  subroutine fill(z, width, height)
    real, intent(out) :: z(0:, 0:)
    real, intent(in) :: width, height
    integer :: i, j
    real :: x, y

    do j = 0, ubound(z, 2)
      y = height * (real(j) / ubound(z, 2) - 0.5)
      do i = 0, ubound(z, 1)
        x = width * (real(i) / ubound(z, 1) - 0.5)
        z(i, j) = exp(-(x**2 + y**2))
      end do
    end do
  end subroutine fill

  subroutine slopes(z, s)
    real, intent(in) :: z(0:, 0:)
    real, intent(out) :: s(:, :)
    integer :: m, n

    m = size(s, 1)
    n = size(s, 2)
    s = sqrt((z(1:m, 1:n) - z(0:m - 1, 1:n))**2 + (z(1:m, 1:n) - z(1:m, 0:n - 1))**2)
    where (s < 1.0e-6)
      s = 0
    elsewhere
      s = s / maxval(s)
    end where
  end subroutine slopes

  subroutine refine(s, limit)
    real, intent(in) :: s(:, :), limit
    type(cell), pointer :: new
    integer :: i, j

    do j = 1, size(s, 2)
      do i = 1, size(s, 1)
        if (s(i, j) <= limit) cycle
        allocate (new)
        new = cell(i, j, s(i, j), refined)
        refined => new
      end do
    end do
  end subroutine refine

  integer function count_cells(list)
    type(cell), pointer :: list
    type(cell), pointer :: walker

    count_cells = 0
    walker => list
    do
      if (.not. associated(walker)) return
      count_cells = count_cells + 1
      walker => walker%next
    end do
  end function count_cells

end program mesh
