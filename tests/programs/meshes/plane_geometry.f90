MODULE plane_geometry
  ! Points, lines and polygons of the plane.
  IMPLICIT NONE
  INTEGER, PARAMETER :: rp = SELECTED_REAL_KIND(13, 100)

  TYPE point
    REAL(rp) :: x, y
  END TYPE point

  TYPE circle
    TYPE(point) :: centre
    REAL(rp)    :: radius
  END TYPE circle

  TYPE polygon
    INTEGER :: corners
    TYPE(point), DIMENSION(:), POINTER :: p
  END TYPE polygon

  INTERFACE OPERATOR (+)
    MODULE PROCEDURE point_plus_point
  END INTERFACE
  INTERFACE OPERATOR (-)
    MODULE PROCEDURE point_minus_point
  END INTERFACE
  INTERFACE OPERATOR (*)
    MODULE PROCEDURE real_times_point, inner_product
  END INTERFACE
  INTERFACE OPERATOR (.cross.)
    MODULE PROCEDURE cross_product
  END INTERFACE
  INTERFACE OPERATOR (.inside.)
    MODULE PROCEDURE point_inside_polygon, point_inside_circle
  END INTERFACE
  INTERFACE area
    MODULE PROCEDURE polygon_area, triangle_area, circle_area
  END INTERFACE
  INTERFACE distance
    MODULE PROCEDURE point_distance, segment_distance
  END INTERFACE

  PRIVATE point_plus_point, point_minus_point, real_times_point, inner_product, cross_product, &
          point_inside_polygon, point_inside_circle, polygon_area, triangle_area, circle_area, &
          point_distance, segment_distance

CONTAINS

  FUNCTION point_plus_point(a, b) RESULT(c)
    TYPE(point), INTENT(IN) :: a, b
    TYPE(point) :: c
    c = point(a%x + b%x, a%y + b%y)
  END FUNCTION point_plus_point

  FUNCTION point_minus_point(a, b) RESULT(c)
    TYPE(point), INTENT(IN) :: a, b
    TYPE(point) :: c
    c = point(a%x - b%x, a%y - b%y)
  END FUNCTION point_minus_point

  FUNCTION real_times_point(s, a) RESULT(c)
    REAL(rp), INTENT(IN) :: s
    TYPE(point), INTENT(IN) :: a
    TYPE(point) :: c
    c = point(s*a%x, s*a%y)
  END FUNCTION real_times_point

  REAL(rp) FUNCTION inner_product(a, b)
    TYPE(point), INTENT(IN) :: a, b
    inner_product = a%x*b%x + a%y*b%y
  END FUNCTION inner_product

  REAL(rp) FUNCTION cross_product(a, b)
    TYPE(point), INTENT(IN) :: a, b
    cross_product = a%x*b%y - a%y*b%x
  END FUNCTION cross_product

  REAL(rp) FUNCTION point_distance(a, b)
    TYPE(point), INTENT(IN) :: a, b
    point_distance = SQRT((a - b)*(a - b))
  END FUNCTION point_distance

  ! From p to the segment from a to b
  FUNCTION segment_distance(p, a, b) RESULT(d)
    TYPE(point), INTENT(IN) :: p, a, b
    REAL(rp) :: d, t
    t = (p - a)*(b - a)/MAX((b - a)*(b - a), TINY(1.0_rp))
    t = MIN(1.0_rp, MAX(0.0_rp, t))
    d = point_distance(p, a + t*(b - a))
  END FUNCTION segment_distance

  ! Positive if a, b, c turn to the left
  REAL(rp) FUNCTION triangle_area(a, b, c)
    TYPE(point), INTENT(IN) :: a, b, c
    triangle_area = 0.5_rp*((b - a) .cross. (c - a))
  END FUNCTION triangle_area

  REAL(rp) FUNCTION polygon_area(p)
    TYPE(polygon), INTENT(IN) :: p
    polygon_area = 0.5_rp*SUM(p%p%x*CSHIFT(p%p%y, 1) - CSHIFT(p%p%x, 1)*p%p%y)
  END FUNCTION polygon_area

  FUNCTION circle_area(c) RESULT(a)
    TYPE(circle), INTENT(IN) :: c
    REAL(rp) a
    a = 4*ATAN(1.0_rp)*c%radius**2
  END FUNCTION circle_area

  ! Crossings of a ray to the right
  LOGICAL FUNCTION point_inside_polygon(q, p)
    TYPE(point), INTENT(IN) :: q
    TYPE(polygon), INTENT(IN) :: p
    INTEGER :: i, j
    point_inside_polygon = .FALSE.
    j = p%corners
    DO i = 1, p%corners
      IF ((p%p(i)%y > q%y) .NEQV. (p%p(j)%y > q%y)) THEN
        IF (q%x < (p%p(j)%x - p%p(i)%x)*(q%y - p%p(i)%y)/(p%p(j)%y - p%p(i)%y) + p%p(i)%x) &
          point_inside_polygon = .NOT. point_inside_polygon
      END IF
      j = i
    END DO
  END FUNCTION point_inside_polygon

  LOGICAL FUNCTION point_inside_circle(q, c)
    TYPE(point), INTENT(IN) :: q
    TYPE(circle), INTENT(IN) :: c
    point_inside_circle = (q - c%centre)*(q - c%centre) < c%radius**2*(1 - 100*EPSILON(1.0_rp))
  END FUNCTION point_inside_circle

  FUNCTION circle_through(a, b, c) RESULT(k)
    TYPE(point), INTENT(IN) :: a, b, c
    TYPE(circle) :: k
    TYPE(point) :: u, v
    REAL(rp) :: d
    u = b - a
    v = c - a
    d = 2*(u .cross. v)
    IF (d == 0) THEN
      k = circle(a, HUGE(d)**0.25_rp)
    ELSE
      k%centre = a + point((v%y*(u*u) - u%y*(v*v))/d, (u%x*(v*v) - v%x*(u*u))/d)
      k%radius = distance(k%centre, a)
    END IF
  END FUNCTION circle_through

  ! The corners of the convex hull in order, by a scan from left to right and back
  SUBROUTINE convex_hull(points, hull)
    TYPE(point), INTENT(IN) :: points(:)
    TYPE(polygon), INTENT(OUT) :: hull
    INTEGER :: order(SIZE(points)), chain(2*SIZE(points)), n, k, i, lower
    n = SIZE(points)
    order = sorted_order(points%x, points%y)
    k = 0
    DO i = 1, n
      CALL push(order(i), 2)
    END DO
    lower = k + 1
    DO i = n - 1, 1, -1
      CALL push(order(i), lower)
    END DO
    hull%corners = k - 1
    ALLOCATE (hull%p(k - 1))
    hull%p = points(chain(:k - 1))
  CONTAINS
    SUBROUTINE push(new, least)
      INTEGER, INTENT(IN) :: new, least
      DO
        IF (k < least) EXIT
        IF (area(points(chain(k - 1)), points(chain(k)), points(new)) > 0) EXIT
        k = k - 1
      END DO
      k = k + 1
      chain(k) = new
    END SUBROUTINE push
  END SUBROUTINE convex_hull

  ! Indices in ascending order of x, then of y, by heaps
  FUNCTION sorted_order(x, y) RESULT(order)
    REAL(rp), DIMENSION(:), INTENT(IN) :: x, y
    INTEGER, DIMENSION(SIZE(x)) :: order
    INTEGER :: i, last, t
    order = (/ (i, i = 1, SIZE(x)) /)
    DO i = SIZE(x)/2, 1, -1
      CALL sift(i, SIZE(x))
    END DO
    DO last = SIZE(x), 2, -1
      t = order(1); order(1) = order(last); order(last) = t
      CALL sift(1, last - 1)
    END DO
  CONTAINS
    LOGICAL FUNCTION before(a, b)
      INTEGER, INTENT(IN) :: a, b
      before = x(a) < x(b) .OR. (x(a) == x(b) .AND. y(a) < y(b))
    END FUNCTION before

    SUBROUTINE sift(root, size_of_heap)
      INTEGER, INTENT(IN) :: root, size_of_heap
      INTEGER :: parent, child, moved
      parent = root
      moved = order(root)
      DO
        child = 2*parent
        IF (child > size_of_heap) EXIT
        IF (child < size_of_heap) THEN
          IF (before(order(child), order(child + 1))) child = child + 1
        END IF
        IF (.NOT. before(moved, order(child))) EXIT
        order(parent) = order(child)
        parent = child
      END DO
      order(parent) = moved
    END SUBROUTINE sift
  END FUNCTION sorted_order

END MODULE plane_geometry
