module lattice_gas
  ! A gas of particles on a square lattice. Each place is a word: bits 0 to 3 are particles that go
  ! east, north, west and south, bit 4 is a wall.
  implicit none
  private
  integer, parameter, public :: east = 0, north = 1, west = 2, south = 3, wall = 4
  public :: collide, stream, particles, momentum, walls_around, density_profile, picture

  ! What the 16 states of a place turn into: head-on pairs change their axis.
  integer, dimension(0:15), save :: outcome
  logical, save :: ready = .false.

contains

  subroutine make_table
    integer :: k
    integer, parameter :: pair_x = 2**east + 2**west, pair_y = 2**north + 2**south
    outcome = (/ (k, k = 0, 15) /)
    outcome(pair_x) = pair_y
    outcome(pair_y) = pair_x
    ready = .true.
  end subroutine make_table

  subroutine collide(site)
    integer, dimension(:, :), intent(inout) :: site
    integer :: i, j
    if (.not. ready) call make_table
    do j = 1, size(site, 2)
       do i = 1, size(site, 1)
          if (btest(site(i, j), wall)) then
             ! Back where they came from: bits 0 and 2, and 1 and 3, are exchanged
             site(i, j) = ior(ibset(0, wall), ishftc(ibits(site(i, j), 0, 4), 2, 4))
          else
             site(i, j) = outcome(site(i, j))
          end if
       end do
    end do
  end subroutine collide

  subroutine stream(site)
    integer, dimension(:, :), intent(inout) :: site
    integer, dimension(size(site, 1), size(site, 2)) :: e, n, w, s
    e = cshift(iand(site, 2**east), -1, dim=1)
    w = cshift(iand(site, 2**west), 1, dim=1)
    n = cshift(iand(site, 2**north), -1, dim=2)
    s = cshift(iand(site, 2**south), 1, dim=2)
    site = ior(ior(iand(site, 2**wall), ior(e, w)), ior(n, s))
  end subroutine stream

  integer function particles(site)
    integer, intent(in) :: site(:, :)
    integer :: b
    particles = 0
    do b = east, south
       particles = particles + count(btest(site, b))
    end do
  end function particles

  function momentum(site) result(p)
    integer, intent(in) :: site(:, :)
    integer :: p(2)
    p(1) = count(btest(site, east)) - count(btest(site, west))
    p(2) = count(btest(site, north)) - count(btest(site, south))
  end function momentum

  subroutine walls_around(site)
    integer, intent(inout) :: site(:, :)
    integer :: border
    do border = 1, size(site, 1), size(site, 1) - 1
       site(border, :) = ibset(site(border, :), wall)
    end do
    site(:, 1:size(site, 2):size(site, 2) - 1) = ibset(site(:, 1:size(site, 2):size(site, 2) - 1), wall)
  end subroutine walls_around

  function density_profile(site, axis) result(d)
    integer, intent(in) :: site(:, :), axis
    real :: d(size(site, axis))
    integer :: b
    d = 0.0
    do b = 0, 3
       d = d + count(btest(site, b), dim=3 - axis)
    end do
    d = d/size(site, 3 - axis)
  end function density_profile

  subroutine picture(site)
    integer, intent(in) :: site(:, :)
    character(len=1), parameter :: sign_of(0:4) = (/ ' ', '.', ':', '+', '*' /)
    character(len=size(site, 1)) :: line
    integer :: i, j, b
    do j = size(site, 2), 1, -1
       do i = 1, size(site, 1)
          if (btest(site(i, j), wall)) then
             line(i:i) = '#'
          else
             line(i:i) = sign_of(count((/ (btest(site(i, j), b), b = 0, 3) /)))
          end if
       end do
       write (*, '(2x, a)') line
    end do
  end subroutine picture

end module lattice_gas
