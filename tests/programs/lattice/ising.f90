module ising
  ! Spins on a torus: Metropolis steps by the colours of a chess board, so that a whole colour is
  ! one array operation, and growth of clusters.
  use random_numbers
  implicit none
  private
  public :: spins, set_up, sweep, grow_cluster, energy, magnetization, correlation, clear, domains

  type spins
     integer :: n
     integer, dimension(:, :), pointer :: s
     logical, dimension(:, :), pointer :: black
     real(rk) :: temperature, field
     real(rk) :: accept(-4:4)
  end type spins

contains

  subroutine set_up(lattice, n, temperature, field, hot)
    type(spins), intent(out) :: lattice
    integer, intent(in) :: n
    real(rk), intent(in) :: temperature
    real(rk), intent(in), optional :: field
    logical, intent(in), optional :: hot
    integer :: i, j
    real(rk) :: x(n, n)
    lattice%n = n
    allocate (lattice%s(n, n), lattice%black(n, n))
    lattice%s = 1
    lattice%black = reshape((/ ((mod(i + j, 2) == 0, i = 1, n), j = 1, n) /), (/ n, n /))
    lattice%temperature = temperature
    lattice%field = 0
    if (present(field)) lattice%field = field
    lattice%accept = (/ (exp(-2*i/temperature), i = -4, 4) /)
    if (present(hot)) then
       if (hot) then
          call random_real(x)
          where (x < 0.5_rk) lattice%s = -1
       end if
    end if
  end subroutine set_up

  subroutine clear(lattice)
    type(spins), intent(inout) :: lattice
    deallocate (lattice%s, lattice%black)
  end subroutine clear

  ! The sum of the four neighbours of each place
  function neighbours(s) result(total)
    integer, intent(in) :: s(:, :)
    integer, dimension(size(s, 1), size(s, 2)) :: total
    total = cshift(s, 1, 1) + cshift(s, -1, 1) + cshift(s, shift=1, dim=2) + cshift(s, shift=-1, dim=2)
  end function neighbours

  subroutine sweep(lattice, changed)
    type(spins), intent(inout) :: lattice
    integer, intent(out), optional :: changed
    logical, dimension(lattice%n, lattice%n) :: flip
    real(rk), dimension(lattice%n, lattice%n) :: x, chance
    integer :: colour, flips
    flips = 0
    do colour = 0, 1
       call random_real(x)
       chance = exp(-2*lattice%s*(neighbours(lattice%s) + lattice%field)/lattice%temperature)
       flip = (lattice%black .eqv. colour == 1) .and. x < chance
       where (flip)
          lattice%s = -lattice%s
       end where
       flips = flips + count(flip)
    end do
    if (present(changed)) changed = flips
  end subroutine sweep

  ! Turns over a cluster of like spins, grown from a random place by a stack of places
  subroutine grow_cluster(lattice, turned)
    type(spins), intent(inout) :: lattice
    integer, intent(out) :: turned
    integer :: stack(2, lattice%n**2), top, place(2), side(2), d, old
    integer, parameter :: way(2, 4) = reshape((/ 1, 0, -1, 0, 0, 1, 0, -1 /), shape=(/ 2, 4 /))
    real(rk) :: x, bond
    bond = 1 - exp(-2/lattice%temperature)
    call random_integer(place, 1, lattice%n)
    old = lattice%s(place(1), place(2))
    lattice%s(place(1), place(2)) = -old
    stack(:, 1) = place
    top = 1
    turned = 1
    do while (top > 0)
       place = stack(:, top)
       top = top - 1
       do d = 1, 4
          side = modulo(place + way(:, d) - 1, lattice%n) + 1
          if (lattice%s(side(1), side(2)) /= old) cycle
          call random_real(x)
          if (x >= bond) cycle
          lattice%s(side(1), side(2)) = -old
          turned = turned + 1
          top = top + 1
          stack(:, top) = side
       end do
    end do
  end subroutine grow_cluster

  ! Per place
  function energy(lattice) result(e)
    type(spins), intent(in) :: lattice
    real(rk) :: e
    e = -sum(lattice%s*(cshift(lattice%s, 1, 1) + cshift(lattice%s, 1, 2)))
    e = (e - lattice%field*sum(lattice%s))/size(lattice%s)
  end function energy

  function magnetization(lattice) result(m)
    type(spins), intent(in) :: lattice
    real(rk) :: m
    m = real(sum(lattice%s), rk)/real(size(lattice%s), rk)
  end function magnetization

  function correlation(lattice, furthest) result(c)
    type(spins), intent(in) :: lattice
    integer, intent(in) :: furthest
    real(rk), dimension(0:furthest) :: c
    integer :: d
    do d = 0, furthest
       c(d) = real(sum(lattice%s*cshift(lattice%s, d)), rk)/size(lattice%s)
    end do
  end function correlation

  ! Numbers the connected regions of like spins; the labels spread until nothing changes.
  function domains(lattice) result(number)
    type(spins), intent(in) :: lattice
    integer :: number
    integer, dimension(lattice%n, lattice%n) :: label, before, moved
    integer :: i, d
    label = reshape((/ (i, i = 1, lattice%n**2) /), shape(label))
    do
       before = label
       do d = 1, 2
          do i = -1, 1, 2
             moved = cshift(label, i, d)
             where (lattice%s == cshift(lattice%s, i, d) .and. moved < label) label = moved
          end do
       end do
       if (all(before == label)) exit
    end do
    number = count((/ (any(label == i), i = 1, lattice%n**2) /))
  end function domains

end module ising
