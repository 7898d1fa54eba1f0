PROGRAM lake
  ! A round lake: its shore is a spline, its inside a mesh, and a cloud drifts over it.
  USE plane_geometry
  USE triangulation
  USE splines, at => value
  USE volumes
  IMPLICIT NONE
  INTEGER, PARAMETER :: shore = 24, levels = 2
  TYPE(polygon) :: stakes, hull
  TYPE(curve) :: line
  TYPE(mesh) :: water, again
  TYPE(field) :: cloud
  TYPE(domain) :: part(0:2**levels - 1)
  TYPE(spline) :: s
  TYPE(point) :: p(200)
  REAL(rp) :: lost, angle, t(9)
  INTEGER :: n, i, j, status, owner(500)
  LOGICAL :: fixed(200), ok

  ! Splines alone
  t = (/ (0.125_rp*i, i = 0, 8) /)
  s = make_spline(t, SIN(t), first_slope = 1.0_rp, last_slope = COS(1.0_rp))
  PRINT '(1X, A, 3F10.6)', 'sine by spline', at(s, 0.3_rp), slope(s, 0.3_rp), integral(s)
  PRINT '(1X, A, ES9.1)', 'largest error below', 10.0_rp**CEILING(LOG10(MAXVAL(ABS(at(s, t(:8) + 0.05_rp) &
    - SIN(t(:8) + 0.05_rp)))))

  ! The shore
  stakes%corners = 6
  ALLOCATE (stakes%p(6))
  DO i = 1, 6
    angle = i*1.0471975511965976_rp
    stakes%p(i) = (1 + 0.2_rp*MOD(i, 2))*point(COS(angle), SIN(angle))
  END DO
  CALL curve_through(stakes, line)
  DO i = 1, shore
    p(i) = place_on(line, line%length*(i - 1)/shore)
  END DO
  fixed(:shore) = .TRUE.

  CALL convex_hull(p(:shore), hull)
  PRINT '(1X, A, 2F9.5, I4)', 'areas', area(stakes), area(hull), hull%corners

  ! Points inside, on a grid whose rows are shifted
  n = shore
  DO j = -7, 7
    DO i = -7, 7
      p(n + 1) = point(0.18_rp*i + 0.09_rp*MODULO(j, 2) + 0.001_rp*j, 0.156_rp*j + 0.0005_rp*i)
      IF (.NOT. (p(n + 1) .inside. stakes)) CYCLE
      IF (near_shore(p(n + 1))) CYCLE
      n = n + 1
      fixed(n) = .FALSE.
    END DO
  END DO
  CALL triangulate(p(:n), water)
  PRINT '(1X, A, 3I6)', 'points, triangles, euler', water%points, water%triangles, euler_number(water)
  PRINT '(1X, A, F6.3)', 'mean quality', SUM(quality(water))/water%triangles
  CALL smooth_mesh(water, fixed(:n), rounds = 3)
  PRINT '(1X, A, F6.3)', 'smoothed    ', SUM(quality(water))/water%triangles

  ! Out to a file and in again
  OPEN (17, STATUS = 'SCRATCH', FORM = 'FORMATTED', ACTION = 'READWRITE')
  CALL write_mesh(water, 17)
  REWIND (17)
  CALL read_mesh(again, 17, status)
  CLOSE (17)
  PRINT *, 'read again: ', status == 0 .AND. ALL(again%t == water%t) .AND. ALL(again%p%x == water%p%x)

  ! The cloud
  CALL prepare(water, cloud)
  WHERE (cloud%centre%x**2 + cloud%centre%y**2 < 0.16_rp) cloud%density = 1
  lost = SUM(cloud%density*cloud%volume)
  PRINT '(1X, A, F9.5)', 'mass before', lost
  lost = 0
  ok = .TRUE.
  DO i = 1, 120
    ok = advance(cloud, (/ 1.0_rp, 0.5_rp /), 0.01_rp, lost) .AND. ok
  END DO
  PRINT '(1X, A, F9.5, L3)', 'mass after ', lost + SUM(cloud%density*cloud%volume), ok
  PRINT '(1X, A, 2F8.4)', 'centre of the rest', &
    DOT_PRODUCT(cloud%density*cloud%volume, cloud%centre%x)/SUM(cloud%density*cloud%volume), &
    SUM(cloud%density*cloud%volume*cloud%centre%y)/SUM(cloud%density*cloud%volume)

  ! Domains
  CALL decompose(cloud, owner(:cloud%cells), levels)
  CALL make_domains(cloud, owner(:cloud%cells), part)
  DO i = LBOUND(part, 1), UBOUND(part, 1)
    PRINT '(1X, A, I2, A, I4, A, I4)', 'domain', i, ': own', part(i)%own, ' halo', part(i)%halo
  END DO

CONTAINS

  LOGICAL FUNCTION near_shore(q)
    TYPE(point), INTENT(IN) :: q
    INTEGER :: k
    near_shore = .TRUE.
    DO k = 1, shore
      IF (distance(q, p(k), p(MOD(k, shore) + 1)) < 0.08_rp) RETURN
    END DO
    near_shore = .FALSE.
  END FUNCTION near_shore

END PROGRAM lake
