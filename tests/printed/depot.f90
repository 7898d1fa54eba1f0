! A module with storage and interfaces, an included file, and units that use what the module has.
MODULE depot
  IMPLICIT NONE
  INCLUDE 'limits.inc'
  INTRINSIC sin, random_seed
  TYPE crate
    INTEGER :: weight
    CHARACTER(LEN=6) :: mark
  END TYPE
  TYPE(crate) :: crates(most)
  REAL :: total, share(2), whole
  COMMON /account/ total
  EQUIVALENCE (share, whole)
  NAMELIST /state/ total, whole
  INTERFACE heavier
    FUNCTION heavier_of(a, b) RESULT(h)
      INTEGER, INTENT(IN) :: a, b
      INTEGER :: h
    END FUNCTION
    MODULE PROCEDURE heavier_crate
  END INTERFACE
CONTAINS
  RECURSIVE FUNCTION heavier_crate(a, b) RESULT(h)
    TYPE(crate), INTENT(IN) :: a, b
    TYPE(crate) :: h
    h = a
    IF (b%weight > a%weight) h = heavier_crate(b, a)
  END FUNCTION
END MODULE
RECURSIVE SUBROUTINE load(c, n, *)
  USE depot, ONLY: crate, crates, heavier, total
  INTEGER, INTENT(IN) :: n
  TYPE(crate), INTENT(INOUT) :: c(n)
  INTEGER :: first, both(2), blank
  REAL, ALLOCATABLE :: room(:, :)
  EQUIVALENCE (first, both)
  COMMON // blank
  EXTERNAL note
  INTERFACE
    RECURSIVE SUBROUTINE report(x, f)
      REAL, INTENT(OUT) :: x
      REAL, EXTERNAL :: f
    END SUBROUTINE
    CHARACTER(4) FUNCTION code()
    END FUNCTION
  END INTERFACE
  c(1) = heavier(crates(1), c(n))
  first = heavier(n, 2)
  ALLOCATE (room(n:5, 2:3))
  CALL note(total)
  GO TO 20
  ENTRY unload(c, n, *)
  blank = both(2)
20 WRITE (*, 30) code()
  PRINT *
  PRINT 30
  IF (n > 2) RETURN 1
30 FORMAT ('a	b', A)
END SUBROUTINE
BLOCK DATA start
  COMMON /account/ total
  REAL :: total = 1.5
END BLOCK DATA
