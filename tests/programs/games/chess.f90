! Counts the positions that can arise in chess: knights, kings, rooks, bishops, queens and pawns,
! without castling, on a board with a border ("mailbox") so that no move needs range checks.
module chess_moves
  implicit none
  private

  integer, parameter, public :: off = 99, none = 0
  integer, parameter :: pawn = 1, knight = 2, bishop = 3, rook = 4, queen = 5, king = 6
  character(len=6), parameter :: letters = 'PNBRQK'
  integer, parameter :: leaps(8) = (/-21, -19, -12, -8, 8, 12, 19, 21/)
  integer, parameter :: rays(8) = (/-11, -9, 9, 11, -10, -1, 1, 10/)
  integer, parameter, public :: most_moves = 256

  type, public :: move
     integer :: from, to
     integer :: captured, becomes
  end type move

  type, public :: position
     integer, dimension(0:119) :: square      ! white positive, black negative
     integer :: side                          ! 1 or -1
  end type position

  interface operator(.attacks.)
     module procedure side_attacks
  end interface

  public :: set_up, find_moves, make, count_positions, in_check, name_of, operator(.attacks.)

contains

  subroutine set_up(p, placement, side)
    type(position), intent(out) :: p
    character(len=*), intent(in) :: placement
    character(len=1), intent(in), optional :: side
    integer :: k, n, at, row, column
    character(len=1) :: c

    p%square = off
    do row = 0, 7
       p%square(21 + 10*row:28 + 10*row) = none
    end do
    row = 7
    column = 0
    do k = 1, len_trim(placement)
       c = placement(k:k)
       at = 21 + 10*row + column
       select case (c)
       case ('/')
          row = row - 1
          column = 0
       case ('1':'8')
          read (c, '(I1)') n
          column = column + n
       case ('a':'z')
          p%square(at) = -index(letters, achar(iachar(c) - 32))
          column = column + 1
       case default
          p%square(at) = index(letters, c)
          column = column + 1
       end select
    end do
    p%side = 1
    if (present(side)) then
       if (side == 'b') p%side = -1
    end if
  end subroutine set_up

  ! The name of a square, such as e4.
  function name_of(square) result(text)
    integer, intent(in) :: square
    character(len=2) :: text

    text = achar(iachar('a') + mod(square, 10) - 1)//achar(iachar('1') + square/10 - 2)
  end function name_of

  ! Does the side attack the square?
  function side_attacks(p, square) result(attacks)
    type(position), intent(in) :: p
    integer, intent(in) :: square
    logical :: attacks
    integer :: k, at, piece

    attacks = .true.
    if (any(p%square(square + leaps) == knight*p%side)) return
    if (any(p%square(square + rays) == king*p%side)) return
    if (any(p%square(square - p%side*(/9, 11/)) == pawn*p%side)) return
    do k = 1, size(rays)
       at = square + rays(k)
       do
          piece = p%square(at)
          if (piece /= none) exit
          at = at + rays(k)
       end do
       if (piece == queen*p%side) return
       if (k <= 4) then
          if (piece == bishop*p%side) return
       else if (piece == rook*p%side) then
          return
       end if
    end do
    attacks = .false.
  end function side_attacks

  ! Could the side to move take the other's king?
  logical function in_check(p)
    type(position), intent(in) :: p
    integer :: at

    in_check = .false.
    do at = 21, 98
       if (p%square(at) == -p%side*king) then
          in_check = p .attacks. at
          return
       end if
    end do
  end function in_check

  subroutine find_moves(p, list, n)
    type(position), intent(in) :: p
    type(move), dimension(:), intent(out) :: list
    integer, intent(out) :: n
    integer :: at, piece

    n = 0
    do at = 21, 98
       piece = p%square(at)*p%side
       if (p%square(at) == off .or. piece <= 0) cycle
       select case (piece)
       case (pawn);   call pawn_moves()
       case (knight); call step(leaps, .false.)
       case (bishop); call step(rays(:4), .true.)
       case (rook);   call step(rays(5:), .true.)
       case (queen);  call step(rays, .true.)
       case (king);   call step(rays, slides=.false.)
       end select
    end do

  contains

    subroutine enter(to, becomes)
      integer, intent(in) :: to
      integer, intent(in), optional :: becomes

      n = n + 1
      list(n) = move(at, to, p%square(to), p%square(at))
      if (present(becomes)) list(n)%becomes = becomes*p%side
    end subroutine enter

    subroutine step(ways, slides)
      integer, intent(in) :: ways(:)
      logical, intent(in) :: slides
      integer :: k, to

      do k = 1, size(ways)
         to = at
         do
            to = to + ways(k)
            if (p%square(to) == off) exit
            if (p%square(to)*p%side > 0) exit
            call enter(to)
            if (p%square(to) /= none .or. .not. slides) exit
         end do
      end do
    end subroutine step

    subroutine pawn_moves
      integer :: to, k

      to = at + 10*p%side
      if (p%square(to) == none) then
         call forward(to)
         if ((at/10 == 3 .and. p%side == 1) .or. (at/10 == 8 .and. p%side == -1)) then
            if (p%square(to + 10*p%side) == none) call enter(to + 10*p%side)
         end if
      end if
      do k = -1, 1, 2
         if (p%square(to + k) /= off .and. p%square(to + k)*p%side < 0) call forward(to + k)
      end do
    end subroutine pawn_moves

    subroutine forward(to)
      integer, intent(in) :: to
      integer :: piece

      if (to > 90 .or. to < 30) then
         do piece = knight, queen
            call enter(to, becomes=piece)
         end do
      else
         call enter(to)
      end if
    end subroutine forward
  end subroutine find_moves

  subroutine make(p, m)
    type(position), intent(inout) :: p
    type(move), intent(in) :: m

    p%square(m%from) = none
    p%square(m%to) = m%becomes
    p%side = -p%side
  end subroutine make

  recursive function count_positions(p, depth) result(total)
    type(position), intent(inout) :: p
    integer, intent(in) :: depth
    integer :: total
    type(move), dimension(most_moves) :: list
    type(position) :: saved
    integer :: n, k

    if (depth == 0) then
       total = 1
       return
    end if
    total = 0
    call find_moves(p, list, n)
    saved = p
    do k = 1, n
       call make(p, list(k))
       if (.not. in_check(p)) total = total + count_positions(p, depth - 1)
       p = saved
    end do
  end function count_positions

end module chess_moves

program chess
  use chess_moves, square_border => off
  implicit none
  type(position) :: p
  type(move), dimension(most_moves) :: list
  integer :: depth, n, k

  call set_up(p, 'rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR')
  do depth = 1, 3
     print '(" depth", I2, ":", I9)', depth, count_positions(p, depth)
  end do
  call find_moves(p, list, n)
  print '(10(1X, A2, "-", A2))', (name_of(list(k)%from), name_of(list(k)%to), k = 1, n)
  call set_up(p, '8/P5k1/8/8/3q4/8/6K1/8', side='w')
  call find_moves(p, list, n)
  print *, n, count_positions(p, 2), count(p%square == square_border)
end program chess
