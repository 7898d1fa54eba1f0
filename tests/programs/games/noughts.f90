! Noughts and crosses with perfect play, by negamax with alpha and beta bounds.
module noughts_play
  implicit none
  integer, parameter :: player = selected_int_kind(2)
  integer(player), parameter :: cross = 1, nought = -1, empty = 0
  integer, dimension(3, 8), parameter :: lines = reshape( &
       (/1, 2, 3, 4, 5, 6, 7, 8, 9, 1, 4, 7, 2, 5, 8, 3, 6, 9, 1, 5, 9, 3, 5, 7/), (/3, 8/))
  integer, save :: visited
  data visited /0/

contains

  function winner(square) result(who)
    integer(kind=player), dimension(9), intent(in) :: square
    integer(player) :: who
    integer :: k, total

    do k = 1, size(lines, 2)
       total = sum(int(square(lines(:, k))))
       if (abs(total) == 3) then
          who = sign(cross, int(total, player))
          return
       end if
    end do
    who = empty
  end function winner

  recursive function value_of(square, mover, alpha, beta) result(best)
    integer(player), dimension(9), intent(inout) :: square
    integer(player), intent(in) :: mover
    integer, intent(in) :: alpha, beta
    integer :: best
    integer :: k, bound

    visited = visited + 1
    best = int(winner(square))*mover
    if (best /= 0) return
    if (all(square /= empty)) return
    best = -2
    bound = alpha
    do k = 1, 9
       if (square(k) /= empty) cycle
       square(k) = mover
       best = max(best, -value_of(square, -mover, -beta, -bound))
       square(k) = empty
       bound = max(bound, best)
       if (bound >= beta) return
    end do
  end function value_of

  integer function best_move(square, mover)
    integer(player), intent(inout) :: square(9)
    integer(player), intent(in) :: mover
    integer :: k, score, best

    best_move = 0
    best = -2
    do k = 1, 9
       if (square(k) == empty) then
          square(k) = mover
          score = -value_of(square, -mover, -1, 1)
          square(k) = empty
          if (score > best) then
             best = score; best_move = k
          end if
       end if
    end do
  end function best_move
end module noughts_play

program noughts
  use noughts_play
  implicit none
  integer(player) :: square(9), mover
  character(len=1) :: mark(-1:1)
  integer :: move, turn
  data mark /'O', '.', 'X'/

  square = empty
  mover = cross
  game: do turn = 1, 9
     if (winner(square) /= empty) exit game
     move = best_move(square, mover)
     square(move) = mover
     mover = -mover
     print '(I2, ".", I2, 4X, 3(3A1, 1X))', turn, move, mark(square)
  end do game
  select case (winner(square))
  case (cross); print *, 'crosses'
  case (nought); print *, 'noughts'
  case default; print *, 'a draw after', visited, 'positions'
  end select
end program noughts
