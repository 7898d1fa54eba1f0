MODULE triangulation
  ! Meshes of triangles by insertion of points: the triangles whose circles have the new point are
  ! taken away, and the hole is filled by triangles with the new point.
  USE plane_geometry
  IMPLICIT NONE
  PRIVATE
  PUBLIC :: mesh, triangulate, edges_of, quality, euler_number, smooth_mesh, write_mesh, read_mesh

  TYPE, PUBLIC :: triangle
    INTEGER :: corner(3)
    LOGICAL :: alive
    TYPE(circle) :: around
  END TYPE triangle

  TYPE mesh
    INTEGER :: points, triangles
    TYPE(point), POINTER :: p(:)
    INTEGER, POINTER :: t(:, :)            ! (3, triangles)
  END TYPE mesh

CONTAINS

  SUBROUTINE triangulate(points, m)
    TYPE(point), DIMENSION(:), INTENT(IN) :: points
    TYPE(mesh), INTENT(OUT) :: m
    TYPE(triangle), DIMENSION(:), ALLOCATABLE :: list
    TYPE(point), DIMENSION(:), ALLOCATABLE :: p
    INTEGER, DIMENSION(2, 3*SIZE(points) + 30) :: rim
    LOGICAL, DIMENSION(3*SIZE(points) + 30) :: twice
    REAL(rp) :: reach
    TYPE(point) :: middle
    INTEGER :: n, used, i, k, e, f, edges, failed

    n = SIZE(points)
    ALLOCATE (list(20*n + 50), p(n + 3), STAT = failed)
    IF (failed /= 0) STOP 'triangulate: no room'
    p(:n) = points
    middle = point(SUM(points%x)/n, SUM(points%y)/n)
    reach = 20*(1 + MAXVAL(ABS((/ points%x - middle%x, points%y - middle%y /))))
    p(n + 1) = middle + point(-reach, -reach)
    p(n + 2) = middle + point(reach, -reach)
    p(n + 3) = middle + point(0.0_rp, 1.5_rp*reach)
    used = 0
    CALL append((/ n + 1, n + 2, n + 3 /))

    each_point: DO i = 1, n
      edges = 0
      DO k = 1, used
        IF (.NOT. list(k)%alive) CYCLE
        IF (p(i) .inside. list(k)%around) THEN
          list(k)%alive = .FALSE.
          rim(:, edges + 1:edges + 3) = RESHAPE(list(k)%corner((/ 1, 2, 2, 3, 3, 1 /)), (/ 2, 3 /))
          edges = edges + 3
        END IF
      END DO
      ! An edge between two triangles taken away is not part of the rim.
      twice(:edges) = .FALSE.
      DO e = 1, edges - 1
        DO f = e + 1, edges
          IF (ALL(rim(:, e) == rim(2:1:-1, f))) twice((/ e, f /)) = .TRUE.
        END DO
      END DO
      IF (used + COUNT(.NOT. twice(:edges)) > SIZE(list)) CALL compress
      DO e = 1, edges
        IF (.NOT. twice(e)) CALL append((/ rim(1, e), rim(2, e), i /))
      END DO
    END DO each_point

    CALL compress
    m%points = n
    k = 0
    DO i = 1, used
      IF (ALL(list(i)%corner <= n)) k = k + 1
    END DO
    m%triangles = k
    ALLOCATE (m%p(n), m%t(3, k))
    m%p = points
    k = 0
    DO i = 1, used
      IF (ANY(list(i)%corner > n)) CYCLE
      k = k + 1
      m%t(:, k) = list(i)%corner
    END DO
    DEALLOCATE (list, p)

  CONTAINS

    SUBROUTINE append(corners)
      INTEGER, INTENT(IN) :: corners(3)
      used = used + 1
      list(used) = triangle(corners, .TRUE., &
        circle_through(p(corners(1)), p(corners(2)), p(corners(3))))
    END SUBROUTINE append

    SUBROUTINE compress
      INTEGER :: from, to
      to = 0
      DO from = 1, used
        IF (list(from)%alive) THEN
          to = to + 1
          IF (to < from) list(to) = list(from)
        END IF
      END DO
      used = to
    END SUBROUTINE compress

  END SUBROUTINE triangulate

  ! Each edge once: the two ends, and the triangles to the left and right, 0 outside
  SUBROUTINE edges_of(m, edge, number)
    TYPE(mesh), INTENT(IN) :: m
    INTEGER, DIMENSION(:, :), POINTER :: edge
    INTEGER, INTENT(OUT) :: number
    INTEGER :: i, k, a, b, j
    ALLOCATE (edge(4, 3*m%triangles))
    number = 0
    DO i = 1, m%triangles
      sides: DO k = 1, 3
        a = m%t(k, i)
        b = m%t(MOD(k, 3) + 1, i)
        DO j = 1, number
          IF (edge(1, j) == b .AND. edge(2, j) == a) THEN
            edge(4, j) = i
            CYCLE sides
          END IF
        END DO
        number = number + 1
        edge(:, number) = (/ a, b, i, 0 /)
      END DO sides
    END DO
  END SUBROUTINE edges_of

  INTEGER FUNCTION euler_number(m)
    TYPE(mesh), INTENT(IN) :: m
    INTEGER, POINTER :: edge(:, :)
    INTEGER :: number
    CALL edges_of(m, edge, number)
    euler_number = m%points - number + m%triangles
    DEALLOCATE (edge)
  END FUNCTION euler_number

  ! 1 for a triangle of equal sides, 0 for a flat one
  FUNCTION quality(m) RESULT(q)
    TYPE(mesh), INTENT(IN) :: m
    REAL(rp), DIMENSION(m%triangles) :: q
    TYPE(point) :: c(3)
    INTEGER :: i
    DO i = 1, m%triangles
      c = m%p(m%t(:, i))
      q(i) = 4*SQRT(3.0_rp)*ABS(area(c(1), c(2), c(3))) &
           / (distance(c(1), c(2))**2 + distance(c(2), c(3))**2 + distance(c(3), c(1))**2)
    END DO
  END FUNCTION quality

  ! Moves the points that are not fixed to the mean of their neighbours
  SUBROUTINE smooth_mesh(m, fixed, rounds)
    TYPE(mesh), INTENT(INOUT) :: m
    LOGICAL, INTENT(IN) :: fixed(:)
    INTEGER, INTENT(IN), OPTIONAL :: rounds
    TYPE(point) :: total(m%points)
    INTEGER :: weight(m%points), number, e, r, last
    INTEGER, POINTER :: edge(:, :)
    last = 1; IF (PRESENT(rounds)) last = rounds
    CALL edges_of(m, edge, number)
    DO r = 1, last
      total = point(0.0_rp, 0.0_rp)
      weight = 0
      DO e = 1, number
        total(edge(1, e)) = total(edge(1, e)) + m%p(edge(2, e))
        total(edge(2, e)) = total(edge(2, e)) + m%p(edge(1, e))
        weight(edge(1:2, e)) = weight(edge(1:2, e)) + 1
      END DO
      WHERE (.NOT. fixed .AND. weight > 0)
        m%p%x = total%x/weight
        m%p%y = total%y/weight
      END WHERE
    END DO
    DEALLOCATE (edge)
  END SUBROUTINE smooth_mesh

  SUBROUTINE write_mesh(m, unit)
    TYPE(mesh), INTENT(IN) :: m
    INTEGER, INTENT(IN) :: unit
    INTEGER :: i
    WRITE (unit, '(A4, 2(1X, I8))') 'mesh', m%points, m%triangles
    WRITE (unit, '(2(1X, ES24.16E3))') (m%p(i), i = 1, m%points)
    WRITE (unit, 200) m%t
200 FORMAT (3(:, 1X, I8))
  END SUBROUTINE write_mesh

  SUBROUTINE read_mesh(m, unit, status)
    TYPE(mesh), INTENT(OUT) :: m
    INTEGER, INTENT(IN) :: unit
    INTEGER, INTENT(OUT) :: status
    CHARACTER(LEN = 4) :: mark
    INTEGER :: i
    READ (unit, FMT = '(A4, 2(1X, I8))', IOSTAT = status) mark, m%points, m%triangles
    IF (status == 0 .AND. mark /= 'mesh') status = 99
    IF (status /= 0) RETURN
    ALLOCATE (m%p(m%points), m%t(3, m%triangles))
    READ (unit, *, IOSTAT = status) (m%p(i)%x, m%p(i)%y, i = 1, m%points)
    IF (status == 0) READ (unit, *, IOSTAT = status) m%t
  END SUBROUTINE read_mesh

END MODULE triangulation
