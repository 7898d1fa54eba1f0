! A small ray tracer: spheres above a chequered floor, one lamp, mirrors.
MODULE raytracer
  USE graymaps, ONLY: graymap, new_image
  IMPLICIT NONE
  PRIVATE
  PUBLIC :: sphere, vector, render, OPERATOR(+), OPERATOR(-), OPERATOR(*), OPERATOR(.dot.)

  TYPE vector
     REAL :: x, y, z
  END TYPE vector

  TYPE sphere
     TYPE(vector) :: centre
     REAL :: radius
     REAL :: brightness, mirror
  END TYPE sphere

  TYPE ray
     PRIVATE
     TYPE(vector) :: start, way
  END TYPE ray

  INTERFACE OPERATOR(+)
     MODULE PROCEDURE add
  END INTERFACE
  INTERFACE OPERATOR(-)
     MODULE PROCEDURE subtract
  END INTERFACE
  INTERFACE OPERATOR(*)
     MODULE PROCEDURE scale_left, scale_right
  END INTERFACE
  INTERFACE OPERATOR(.dot.)
     MODULE PROCEDURE inner
  END INTERFACE

  REAL, PARAMETER :: far_away = 1.0E10, tiny_step = 1.0E-3
  INTEGER, PARAMETER :: deepest = 4
  TYPE(vector), PARAMETER :: lamp = vector(-4.0, 8.0, -6.0), upward = vector(0.0, 1.0, 0.0)

CONTAINS

  FUNCTION add(a, b) RESULT(c)
    TYPE(vector), INTENT(IN) :: a, b
    TYPE(vector) :: c
    c = vector(a%x + b%x, a%y + b%y, a%z + b%z)
  END FUNCTION add

  FUNCTION subtract(a, b) RESULT(c)
    TYPE(vector), INTENT(IN) :: a, b
    TYPE(vector) :: c
    c = vector(a%x - b%x, a%y - b%y, a%z - b%z)
  END FUNCTION subtract

  FUNCTION scale_left(s, a) RESULT(c)
    REAL, INTENT(IN) :: s
    TYPE(vector), INTENT(IN) :: a
    TYPE(vector) :: c
    c = vector(s*a%x, s*a%y, s*a%z)
  END FUNCTION scale_left

  TYPE(vector) FUNCTION scale_right(a, s)
    TYPE(vector), INTENT(IN) :: a
    REAL, INTENT(IN) :: s
    scale_right = s*a
  END FUNCTION scale_right

  REAL FUNCTION inner(a, b)
    TYPE(vector), INTENT(IN) :: a, b
    inner = a%x*b%x + a%y*b%y + a%z*b%z
  END FUNCTION inner

  FUNCTION unit_length(a) RESULT(c)
    TYPE(vector), INTENT(IN) :: a
    TYPE(vector) :: c
    c = (1.0/SQRT(a .dot. a))*a
  END FUNCTION unit_length

  ! The distance along the ray at which it meets the ball, or far_away.
  REAL FUNCTION distance_to(ball, beam)
    TYPE(sphere), INTENT(IN) :: ball
    TYPE(ray), INTENT(IN) :: beam
    TYPE(vector) :: offset
    REAL :: b, c, disc, root

    distance_to = far_away
    offset = beam%start - ball%centre
    b = offset .dot. beam%way
    c = (offset .dot. offset) - ball%radius**2
    disc = b*b - c
    IF (disc <= 0.0) RETURN
    root = SQRT(disc)
    IF (-b - root > tiny_step) THEN
       distance_to = -b - root
    ELSE IF (-b + root > tiny_step) THEN
       distance_to = -b + root
    END IF
  END FUNCTION distance_to

  ! Which of the scene the ray meets first: its number, -1 for the floor, 0 for the sky.
  SUBROUTINE nearest(scene, beam, which, distance)
    TYPE(sphere), DIMENSION(:), INTENT(IN) :: scene
    TYPE(ray), INTENT(IN) :: beam
    INTEGER, INTENT(OUT) :: which
    REAL, INTENT(OUT) :: distance
    INTEGER :: k
    REAL :: d

    which = 0
    distance = far_away
    DO k = 1, SIZE(scene)
       d = distance_to(scene(k), beam)
       IF (d < distance) THEN; distance = d; which = k; END IF
    END DO
    IF (beam%way%y < -tiny_step) THEN
       d = -beam%start%y/beam%way%y
       IF (d > tiny_step .AND. d < distance) THEN
          distance = d
          which = -1
       END IF
    END IF
  END SUBROUTINE nearest

  RECURSIVE FUNCTION trace(scene, beam, depth) RESULT(light)
    TYPE(sphere), INTENT(IN) :: scene(:)
    TYPE(ray), INTENT(IN) :: beam
    INTEGER, INTENT(IN) :: depth
    REAL :: light
    TYPE(vector) :: spot, normal, to_lamp
    INTEGER :: which, blocker
    REAL :: distance, shine, surface, mirror

    CALL nearest(scene, beam, which, distance)
    SELECT CASE (which)
    CASE (0)
       light = 0.35 + 0.4*beam%way%y
       RETURN
    CASE (:-1)
       spot = beam%start + distance*beam%way
       normal = upward
       surface = 0.25
       IF (MODULO(FLOOR(spot%x) + FLOOR(spot%z), 2) == 0) surface = 0.9
       mirror = 0.1
    CASE DEFAULT
       spot = beam%start + distance*beam%way
       normal = unit_length(spot - scene(which)%centre)
       surface = scene(which)%brightness
       mirror = scene(which)%mirror
    END SELECT
    to_lamp = unit_length(lamp - spot)
    shine = MAX(0.0, normal .dot. to_lamp)
    IF (shine > 0.0) THEN
       CALL nearest(scene, ray(spot, to_lamp), blocker, distance)
       IF (blocker > 0) shine = 0.0
    END IF
    light = surface*(0.15 + 0.85*shine)
    IF (mirror > 0.0 .AND. depth < deepest) THEN
       light = (1.0 - mirror)*light + mirror*trace(scene, ray(spot, &
            unit_length(beam%way - normal*(2.0*(normal .dot. beam%way)))), depth + 1)
    END IF
  END FUNCTION trace

  SUBROUTINE render(scene, image, rows, columns)
    TYPE(sphere), INTENT(IN), DIMENSION(:) :: scene
    TYPE(graymap), INTENT(OUT) :: image
    INTEGER, INTENT(IN) :: rows, columns
    REAL :: field(rows, columns)
    TYPE(vector) :: eye, aim
    INTEGER :: i, j

    eye = vector(0.0, 2.0, -7.0)
    DO j = 1, columns
       DO i = 1, rows
          aim%x = (REAL(j) - 0.5*columns)/columns
          aim%y = (0.4*rows - i)/columns
          aim%z = 1.0
          field(i, j) = trace(scene, ray(eye, unit_length(aim)), 0)
       END DO
    END DO
    CALL new_image(image, field, title='spheres')
  END SUBROUTINE render

END MODULE raytracer
