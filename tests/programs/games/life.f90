! Conway's game of life on a torus.
program life
  implicit none
  integer, parameter :: n = 20, m = 40
  integer, parameter :: cell = kind(.true.)
  logical(cell), dimension(n, m) :: alive, before
  integer :: neighbours(n, m)
  integer :: generation, first_seen, i
  character(len=m) :: row
  character(3), parameter :: glider(3) = (/' # ', '  #', '###'/)
  character(len=*), parameter :: gun_head = '#.#..##.#'

  alive = .false.
  call stamp(glider, 2, 2)
  call stamp(spread(gun_head, 1, 1), row=12, column=15)
  first_seen = -1
  evolve: do generation = 1, 200
     before = alive
     neighbours = count_around(alive)
     where (alive)
        alive = neighbours == 2 .or. neighbours == 3
     elsewhere
        alive = neighbours == 3
     end where
     if (.not. any(alive)) exit evolve
     if (all(alive .eqv. before)) then
        first_seen = generation
        exit evolve
     end if
     if (mod(generation, 50) == 0) print '(" generation", I4, ":", I4, " alive")', generation, count(alive)
  end do evolve

  if (first_seen >= 0) then
     print *, 'still life from generation', first_seen
  else
     print *, 'alive at the end:', count(alive)
  end if
  do i = 1, n
     call paint(alive(i, :), row)
     if (row /= ' ') write (*, '(I3, 1X, A)') i, trim(row)
  end do

contains

  function count_around(field) result(total)
    logical(cell), intent(in) :: field(:, :)
    integer, dimension(size(field, 1), size(field, 2)) :: total, ones
    integer :: up, left

    ones = 0
    where (field) ones = 1
    total = -ones
    do up = -1, 1
       do left = -1, 1
          total = total + cshift(cshift(ones, up, dim=1), left, dim=2)
       end do
    end do
  end function count_around

  subroutine stamp(pattern, row, column)
    character(len=*), dimension(:), intent(in) :: pattern
    integer, intent(in) :: row, column
    integer :: i, j

    do i = 1, size(pattern)
       do j = 1, len(pattern)
          alive(row + i - 1, column + j - 1) = pattern(i)(j:j) == '#'
       end do
    end do
  end subroutine stamp

  subroutine paint(cells, text)
    logical(cell), intent(in) :: cells(:)
    character(len=*), intent(out) :: text
    integer :: j

    text = ' '
    do j = 1, min(size(cells), len(text))
       text(j:j) = merge('o', ' ', cells(j))
    end do
  end subroutine paint
end program life
