! Hulls, areas, clipping and triangulation of polygons given by their corners.
module polygons
  use points
  implicit none
  private
  public :: convex_hull, area, inside, clip, triangulate, sort_points, simplify

  type ring
     type(point) :: corner
     integer :: number
     type(ring), pointer :: next, previous
  end type ring

contains

  recursive subroutine sort_points(p)
    type(point), dimension(:), intent(inout) :: p
    type(point) :: pivot, held
    integer :: i, j

    if (size(p) < 2) return
    pivot = p((size(p) + 1)/2)
    i = 0; j = size(p) + 1
    do
       do
          i = i + 1
          if (.not. p(i) < pivot) exit
       end do
       do
          j = j - 1
          if (.not. pivot < p(j)) exit
       end do
       if (i >= j) exit
       held = p(i); p(i) = p(j); p(j) = held
    end do
    call sort_points(p(:i - 1))
    call sort_points(p(j + 1:))
  end subroutine sort_points

  ! The corners of the hull from the leftmost one, counterclockwise.
  subroutine convex_hull(cloud, hull)
    type(point), dimension(:), intent(in) :: cloud
    type(point), dimension(:), pointer :: hull
    type(point), dimension(size(cloud)) :: p
    type(point), dimension(2*size(cloud)) :: h
    integer :: n, k, floor_size

    p = cloud
    call sort_points(p)
    n = 0
    do k = 1, size(p)
       call extend(1)
    end do
    floor_size = n
    do k = size(p) - 1, 1, -1
       call extend(floor_size)
    end do
    allocate (hull(max(1, n - 1)))
    hull = h(:size(hull))

  contains

    subroutine extend(at_least)
      integer, intent(in) :: at_least
      do
         if (n <= at_least) exit
         if (turn(h(n - 1), h(n), p(k)) > 0) exit
         n = n - 1
      end do
      n = n + 1
      h(n) = p(k)
    end subroutine extend
  end subroutine convex_hull

  function area(corners)
    type(point), intent(in) :: corners(:)
    real(coordinate) :: area
    integer :: k, n

    n = size(corners)
    area = 0.0_coordinate
    do k = 1, n
       area = area + (corners(k) .cross. corners(mod(k, n) + 1))
    end do
    area = area/2
  end function area

  ! Counts how often a ray to the right leaves the polygon.
  logical function inside(corners, p)
    type(point), dimension(:), intent(in) :: corners
    type(point), intent(in) :: p
    type(point) :: a, b
    integer :: k

    inside = .false.
    b = corners(size(corners))
    do k = 1, size(corners)
       a = b
       b = corners(k)
       if ((a%y > p%y) .neqv. (b%y > p%y)) then
          if (p%x < a%x + (p%y - a%y)*(b%x - a%x)/(b%y - a%y)) inside = .not. inside
       end if
    end do
  end function inside

  ! Cuts the polygon along the four sides of the window, one after the other.
  subroutine clip(corners, window, result, n)
    type(point), dimension(:), intent(in) :: corners
    type(box), intent(in) :: window
    type(point), dimension(:), intent(out) :: result
    integer, intent(out) :: n
    type(point), dimension(size(result)) :: now
    integer :: side

    n = size(corners)
    result(:n) = corners
    do side = 1, 4
       now(:n) = result(:n)
       call cut(now(:n))
    end do

  contains

    ! How far within the window's side the point is.
    real(coordinate) function depth(p)
      type(point), intent(in) :: p
      select case (side)
      case (1)
         depth = p%x - window%low%x
      case (2)
         depth = window%high%x - p%x
      case (3)
         depth = p%y - window%low%y
      case default
         depth = window%high%y - p%y
      end select
    end function depth

    subroutine cut(p)
      type(point), dimension(:), intent(in) :: p
      real(coordinate) :: here, before
      type(point) :: last
      integer :: k

      n = 0
      if (size(p) == 0) return
      last = p(size(p))
      before = depth(last)
      do k = 1, size(p)
         here = depth(p(k))
         if (here*before < 0) call keep(last + (before/(before - here))*(p(k) - last))
         if (here >= 0) call keep(p(k))
         before = here
         last = p(k)
      end do
    end subroutine cut

    subroutine keep(p)
      type(point), intent(in) :: p
      n = n + 1
      result(n) = p
    end subroutine keep
  end subroutine clip

  ! Cuts off ears until a triangle is left; the columns of corners_of are the triangles.
  subroutine triangulate(corners, corners_of, found)
    type(point), dimension(:), target, intent(in) :: corners
    integer, dimension(:, :), intent(out) :: corners_of
    integer, intent(out) :: found
    type(ring), dimension(size(corners)), target :: chain
    type(ring), pointer :: a
    integer :: k, n, tries

    n = size(corners)
    do k = 1, n
       chain(k)%corner = corners(k)
       chain(k)%number = k
       chain(k)%next => chain(modulo(k, n) + 1)
       chain(k)%previous => chain(modulo(k - 2, n) + 1)
    end do
    found = 0
    tries = 0
    a => chain(1)
    do while (n >= 3 .and. tries < n)
       if (is_ear(a)) then
          found = found + 1
          corners_of(:, found) = (/a%previous%number, a%number, a%next%number/)
          a%previous%next => a%next
          a%next%previous => a%previous
          n = n - 1
          tries = 0
       else
          tries = tries + 1
       end if
       a => a%next
    end do
  end subroutine triangulate

  function is_ear(a) result(ear)
    type(ring), intent(in) :: a
    logical :: ear
    type(ring), pointer :: other
    type(point) :: p, q, r

    p = a%previous%corner
    q = a%corner
    r = a%next%corner
    ear = turn(p, q, r) > 0
    if (.not. ear) return
    other => a%next%next
    do
       if (associated(other, a%previous)) exit
       if (turn(p, q, other%corner) >= 0 .and. turn(q, r, other%corner) >= 0 &
            .and. turn(r, p, other%corner) >= 0) then
          ear = .false.
          exit
       end if
       other => other%next
    end do
  end function is_ear

  ! Keeps only the points that the path needs to stay within the tolerance.
  subroutine simplify(path, tolerance, keep)
    type(point), dimension(:), intent(in) :: path
    real(coordinate), intent(in) :: tolerance
    logical, dimension(:), intent(out) :: keep

    if (size(keep) /= size(path)) stop 'simplify: sizes differ'
    keep = .false.
    keep(1) = .true.
    keep(size(path)) = .true.
    call between(1, size(path))

  contains

    recursive subroutine between(i, j)
      integer, intent(in) :: i, j
      integer :: k, worst
      real(coordinate) :: most, off

      most = tolerance*length(segment(path(i), path(j)))
      worst = 0
      do k = i + 1, j - 1
         off = abs(turn(path(i), path(j), path(k)))
         if (off > most) then
            most = off
            worst = k
         end if
      end do
      if (worst == 0) return
      keep(worst) = .true.
      call between(i, worst)
      call between(worst, j)
    end subroutine between
  end subroutine simplify

end module polygons
