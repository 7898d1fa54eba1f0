! Sudoku by candidates kept as bits, and backtracking on the square with the fewest.
module sudoku_board
  implicit none
  private
  public :: board, load, solve, show, consistent

  integer, parameter :: side = 9, block = 3
  integer, parameter :: everything = 1022        ! bits 1 to 9

  type board
     private
     integer, dimension(side, side) :: digit
     integer, dimension(side) :: in_row, in_column, in_block
     integer :: steps
  end type board

  interface show
     module procedure show_board, show_bits
  end interface

contains

  integer function block_of(i, j)
    integer, intent(in) :: i, j
    block_of = block*((i - 1)/block) + (j - 1)/block + 1
  end function block_of

  subroutine load(b, rows, ok)
    type(board), intent(out) :: b
    character(len=side), dimension(side), intent(in) :: rows
    logical, intent(out) :: ok
    integer :: i, j, d

    b%digit = 0; b%in_row = 0; b%in_column = 0; b%in_block = 0
    b%steps = 0
    ok = .true.
    do i = 1, side
       do j = 1, side
          d = index('.123456789', rows(i)(j:j)) - 1
          if (d <= 0) cycle
          if (btest(taken(b, i, j), d)) then
             ok = .false.
             return
          end if
          call put(b, i, j, d)
       end do
    end do
  end subroutine load

  integer function taken(b, i, j)
    type(board), intent(in) :: b
    integer, intent(in) :: i, j
    taken = ior(ior(b%in_row(i), b%in_column(j)), b%in_block(block_of(i, j)))
  end function taken

  subroutine put(b, i, j, d)
    type(board), intent(inout) :: b
    integer, intent(in) :: i, j, d
    integer :: k

    k = block_of(i, j)
    b%digit(i, j) = d
    b%in_row(i) = ibset(b%in_row(i), d)
    b%in_column(j) = ibset(b%in_column(j), d)
    b%in_block(k) = ibset(b%in_block(k), d)
  end subroutine put

  subroutine take_back(b, i, j)
    type(board), intent(inout) :: b
    integer, intent(in) :: i, j
    integer :: k, d

    d = b%digit(i, j)
    k = block_of(i, j)
    b%digit(i, j) = 0
    b%in_row(i) = ibclr(b%in_row(i), d)
    b%in_column(j) = ibclr(b%in_column(j), d)
    b%in_block(k) = ibclr(b%in_block(k), d)
  end subroutine take_back

  integer function bits_in(set)
    integer, intent(in) :: set
    integer :: k
    bits_in = count((/(btest(set, k), k = 0, side)/))
  end function bits_in

  recursive subroutine solve(b, solved, steps)
    type(board), intent(inout) :: b
    logical, intent(out) :: solved
    integer, intent(out), optional :: steps
    integer :: i, j, d, best_i, best_j, fewest, free

    b%steps = b%steps + 1
    fewest = side + 1
    best_i = 0; best_j = 0
    search: do j = 1, side
       do i = 1, side
          if (b%digit(i, j) /= 0) cycle
          free = bits_in(iand(not(taken(b, i, j)), everything))
          if (free < fewest) then
             fewest = free
             best_i = i
             best_j = j
             if (free <= 1) exit search
          end if
       end do
    end do search

    solved = best_i == 0
    if (.not. solved .and. fewest > 0) then
       do d = 1, side
          if (btest(taken(b, best_i, best_j), d)) cycle
          call put(b, best_i, best_j, d)
          call solve(b, solved)
          if (solved) exit
          call take_back(b, best_i, best_j)
       end do
    end if
    if (present(steps)) steps = b%steps
  end subroutine solve

  logical function consistent(b)
    type(board), intent(in) :: b
    consistent = all(b%in_row == everything) .and. all(b%in_column == everything) &
         .and. all(b%in_block == everything)
  end function consistent

  subroutine show_board(b)
    type(board), intent(in) :: b
    integer :: i
    character(len=*), parameter :: bar = '------+-------+------'

    do i = 1, side
       write (*, 10) b%digit(i, :)
       if (mod(i, block) == 0 .and. i < side) write (*, '(1X, A)') bar
    end do
10  format (1X, 2(3(I1, 1X), '| '), 3(I1, 1X))
  end subroutine show_board

  subroutine show_bits(set)
    integer, intent(in) :: set
    print '(1X, B10.10)', set
  end subroutine show_bits

end module sudoku_board

program sudoku
  use sudoku_board
  implicit none
  type(board) :: b
  logical :: ok
  integer :: n
  character(len=9), dimension(9), parameter :: puzzle = (/ &
       '53..7....', &
       '6..195...', &
       '.98....6.', &
       '8...6...3', &
       '4..8.3..1', &
       '7...2...6', &
       '.6....28.', &
       '...419..5', &
       '....8..79' /)

  call load(b, puzzle, ok)
  if (.not. ok) stop 'puzzle is wrong'
  call solve(b, ok, steps=n)
  call show(b)
  print *, ok, consistent(b), n
  call show(1022)
end program sudoku
