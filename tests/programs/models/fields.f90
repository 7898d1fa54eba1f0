! Things that spread on a grid: heat through a plate and in an exchanger, and a puff carried by the wind.
module fields
  use chance, only: wp
  implicit none
  private :: put_edges

  type plate
     integer :: n
     real(wp) :: conductivity
     real(wp), pointer :: t(:, :), inner(:, :), north(:), south(:), east(:), west(:)
  end type plate

contains

  ! The inner part and the edges are other names for parts of the one array.
  subroutine make_plate(p, n)
    type(plate), intent(out) :: p
    integer, intent(in) :: n

    p%n = n
    p%conductivity = 1.0_wp
    allocate (p%t(0:n + 1, 0:n + 1))
    p%t = 0
    p%inner => p%t(1:n, 1:n)
    p%north => p%t(0, :)
    p%south => p%t(n + 1, :)
    p%west => p%t(1:n, 0)
    p%east => p%t(1:n, n + 1)
  end subroutine make_plate

  subroutine put_edges(p, values)
    type(plate), intent(inout) :: p
    real(wp), dimension(4), intent(in) :: values

    p%north = values(1)
    p%east = values(2)
    p%south = values(3)
    p%west = values(4)
  end subroutine put_edges

  ! Red points and black points in turn, moved beyond the mean of their neighbours.
  subroutine warm(p, edges, tolerance, sweeps)
    type(plate), intent(inout) :: p
    real(wp), intent(in) :: edges(4)
    real(wp), intent(in) :: tolerance
    integer, intent(out) :: sweeps
    logical, dimension(p%n, p%n) :: red
    real(wp), dimension(p%n, p%n) :: change
    real(wp), parameter :: over = 1.7_wp
    integer :: i, j, n, half

    call put_edges(p, edges)
    n = p%n
    red = reshape((/((mod(i + j, 2) == 0, i = 1, n), j = 1, n)/), (/n, n/))
    do sweeps = 1, 1000
       do half = 1, 2
          change = (p%t(:n - 1, 1:n) + p%t(2:, 1:n) + p%t(1:n, :n - 1) + p%t(1:n, 2:))/4 - p%inner
          where (red) p%inner = p%inner + over*change
          red = .not. red
       end do
       if (maxval(abs(change)) < tolerance) return
    end do
    sweeps = -1
  end subroutine warm

  ! Two streams along a wall, either way round: the temperatures where they leave.
  subroutine exchange(hot_in, cold_in, transfer, sections, hot_out, cold_out, counter)
    real(wp), intent(in) :: hot_in, cold_in, transfer
    integer, intent(in) :: sections
    real(wp), intent(out) :: hot_out, cold_out
    logical, intent(in), optional :: counter
    real(wp), dimension(0:sections) :: hot, cold
    real(wp) :: flow, before
    integer :: k, pass
    logical :: opposed

    opposed = .false.
    if (present(counter)) opposed = counter
    hot = hot_in
    cold = cold_in
    passes: do pass = 1, 10000
       before = hot(sections)
       do k = 1, sections
          if (opposed) then
             flow = transfer/sections*(hot(k - 1) - cold(k))
             hot(k) = hot(k - 1) - flow
             cold(k - 1) = cold(k) + flow
          else
             flow = transfer/sections*(hot(k - 1) - cold(k - 1))
             hot(k) = hot(k - 1) - flow
             cold(k) = cold(k - 1) + flow
          end if
       end do
       if (abs(hot(sections) - before) < 1.0e-10_wp) exit passes
    end do passes
    hot_out = hot(sections)
    cold_out = cold(merge(0, sections, opposed))
  end subroutine exchange

  ! A puff on a globe's grid that closes upon itself, carried against the differences upwind.
  subroutine blow(field, u, v, steps)
    real(wp), dimension(:, :), intent(inout) :: field
    real(wp), dimension(:, :), intent(in) :: u, v
    integer, intent(in) :: steps
    real(wp), dimension(size(field, 1), size(field, 2)) :: along, across
    integer :: n

    do n = 1, steps
       where (u > 0)
          along = field - cshift(field, -1, 1)
       elsewhere
          along = cshift(field, 1, 1) - field
       end where
       where (v > 0)
          across = field - cshift(field, shift=-1, dim=2)
       elsewhere
          across = cshift(field, dim=2, shift=1) - field
       end where
       field = field - u*along - v*across
    end do
  end subroutine blow

end module fields
