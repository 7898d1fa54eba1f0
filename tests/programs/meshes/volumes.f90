MODULE volumes
  ! Finite volumes: a density carried by a wind over the triangles of a mesh, and the division of the
  ! mesh into domains that exchange the values at their borders.
  USE plane_geometry
  USE triangulation, ONLY: mesh, edges_of
  IMPLICIT NONE

  TYPE field
    INTEGER :: cells, faces
    INTEGER, POINTER :: face(:, :)
    REAL(rp), POINTER :: density(:), volume(:), normal(:, :)
    TYPE(point), POINTER :: centre(:)
  END TYPE field

  TYPE domain
    INTEGER :: own, halo
    INTEGER, POINTER, DIMENSION(:) :: cell        ! own cells first, then those of others
  END TYPE domain

CONTAINS

  SUBROUTINE prepare(m, f)
    TYPE(mesh), INTENT(IN) :: m
    TYPE(field), INTENT(OUT) :: f
    TYPE(point) :: c(3), along
    INTEGER :: i, k
    f%cells = m%triangles
    CALL edges_of(m, f%face, f%faces)
    ALLOCATE (f%density(f%cells), f%volume(f%cells), f%centre(f%cells), f%normal(2, f%faces))
    DO i = 1, f%cells
      c = m%p(m%t(:, i))
      f%volume(i) = ABS(area(c(1), c(2), c(3)))
      f%centre(i) = point(SUM(c%x)/3, SUM(c%y)/3)
    END DO
    DO k = 1, f%faces
      along = m%p(f%face(2, k)) - m%p(f%face(1, k))
      f%normal(:, k) = (/ along%y, -along%x /)
    END DO
    f%density = 0.0_rp
  END SUBROUTINE prepare

  ! One step; what leaves through the rim is returned.
  FUNCTION advance(f, wind, dt, lost) RESULT(ok)
    TYPE(field), INTENT(INOUT) :: f
    REAL(rp), INTENT(IN) :: wind(2), dt
    REAL(rp), INTENT(INOUT), OPTIONAL :: lost
    LOGICAL :: ok
    REAL(rp) :: change(0:f%cells), flow, amount
    INTEGER :: k, left, right
    change = 0
    DO k = 1, f%faces
      left = f%face(3, k)
      right = f%face(4, k)
      flow = DOT_PRODUCT(wind, f%normal(:, k))
      IF (flow >= 0) THEN
        amount = flow*f%density(left)
      ELSE IF (right > 0) THEN
        amount = flow*f%density(right)
      ELSE
        amount = 0
      END IF
      change(left) = change(left) - amount
      change(right) = change(right) + amount
    END DO
    IF (PRESENT(lost)) lost = lost + dt*change(0)
    f%density = f%density + dt*change(1:)/f%volume
    ok = ALL(f%density >= -1.0E-12_rp)
  END FUNCTION advance

  ! Halves the cells again and again along the longer side of their box.
  SUBROUTINE decompose(f, owner, levels)
    TYPE(field), INTENT(IN) :: f
    INTEGER, INTENT(OUT) :: owner(:)
    INTEGER, INTENT(IN) :: levels
    INTEGER :: i, all_cells(f%cells)
    all_cells = (/ (i, i = 1, f%cells) /)
    owner = 0
    CALL halve(all_cells, levels)
  CONTAINS
    RECURSIVE SUBROUTINE halve(cells, level)
      INTEGER, INTENT(IN) :: cells(:), level
      REAL(rp), DIMENSION(SIZE(cells)) :: x, y
      INTEGER :: order(SIZE(cells)), middle
      IF (level == 0) RETURN
      x = f%centre(cells)%x
      y = f%centre(cells)%y
      IF (MAXVAL(x) - MINVAL(x) >= MAXVAL(y) - MINVAL(y)) THEN
        order = sorted_order(x, y)
      ELSE
        order = sorted_order(y, x)
      END IF
      order = cells(order)
      middle = SIZE(cells)/2
      owner(order(middle+1:)) = owner(order(middle+1:)) + 2**(level - 1)
      CALL halve(order(:middle), level - 1)
      CALL halve(order(middle+1:), level - 1)
    END SUBROUTINE halve
  END SUBROUTINE decompose

  ! The cells of each domain, with a halo of the neighbours of others
  SUBROUTINE make_domains(f, owner, list)
    TYPE(field), INTENT(IN) :: f
    INTEGER, INTENT(IN) :: owner(:)
    TYPE(domain), INTENT(OUT), DIMENSION(0:) :: list
    LOGICAL :: near(f%cells)
    INTEGER :: d, k, i
    DO d = 0, UBOUND(list, 1)
      near = .FALSE.
      DO k = 1, f%faces
        IF (f%face(4, k) == 0) CYCLE
        IF (owner(f%face(3, k)) == d) near(f%face(4, k)) = .TRUE.
        IF (owner(f%face(4, k)) == d) near(f%face(3, k)) = .TRUE.
      END DO
      near = near .AND. owner /= d
      list(d)%own = COUNT(owner == d)
      list(d)%halo = COUNT(near)
      ALLOCATE (list(d)%cell(list(d)%own + list(d)%halo))
      list(d)%cell = (/ PACK((/ (i, i = 1, f%cells) /), owner == d), PACK((/ (i, i = 1, f%cells) /), near) /)
    END DO
  END SUBROUTINE make_domains

END MODULE volumes
