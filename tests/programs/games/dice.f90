! Random numbers that are the same everywhere, for games and mazes.
module dice
  implicit none
  include 'randoms.inc'
  integer, save, private :: seed = 42
  private :: modulus, factor, addend

contains

  subroutine reseed(start)
    integer, intent(in) :: start
    seed = modulo(start, modulus)
  end subroutine reseed

  ! From 1 to sides.
  integer function throw(sides)
    integer, intent(in) :: sides
    seed = mod(seed*factor + addend, modulus)
    throw = 1 + int(real(seed)/real(modulus)*sides)
  end function throw

  subroutine shuffle(deck)
    integer, intent(inout), dimension(:) :: deck
    integer :: k, other, held

    do k = size(deck), 2, -1
       other = throw(k)
       held = deck(k); deck(k) = deck(other); deck(other) = held
    end do
  end subroutine shuffle
end module dice
