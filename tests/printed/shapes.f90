! A module with types, generic interfaces and a private part.
MODULE shapes
  IMPLICIT NONE
  PRIVATE
  PUBLIC :: point, area, OPERATOR(+), zero
  TYPE point
    SEQUENCE
    REAL :: x, y
  END TYPE
  TYPE secret
    PRIVATE
    INTEGER :: n
    CHARACTER(LEN=8), POINTER :: names(:)
  END TYPE
  REAL, PARAMETER :: zero = 0.0
  TYPE(point), PARAMETER :: origin = point(1.0, 2.5)
  INTERFACE area
    MODULE PROCEDURE area1, area2
  END INTERFACE
  INTERFACE OPERATOR(+)
    MODULE PROCEDURE add
  END INTERFACE
CONTAINS
  FUNCTION add(a, b) RESULT(c)
    TYPE(point), INTENT(IN) :: a, b
    TYPE(point) :: c
    c%x = a%x + b%x
    c = point(c%x, b%y)
  END FUNCTION
  REAL FUNCTION area1(r)
    REAL, INTENT(IN) :: r
    area1 = r * r
  END FUNCTION
  REAL FUNCTION area2(r, s)
    REAL, INTENT(IN) :: r, s
    OPTIONAL :: s
    IF (PRESENT(s)) area2 = r * s
  END FUNCTION
END MODULE
