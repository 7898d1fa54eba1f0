! A calculator that knows variables, and differentiates what it is given.
! The lines it works on come from a scratch file written first.
PROGRAM calculator
   USE trees
   USE parsing, ONLY: parse, error_text
   USE derivatives
   IMPLICIT NONE

   INTEGER, PARAMETER :: max_variables = 20, line_length = 72
   TYPE (binding), DIMENSION (max_variables), TARGET :: memory
   TYPE (binding), DIMENSION (:), POINTER :: known
   CHARACTER (LEN=line_length) :: line
   INTEGER :: variables, ios, unit

   memory(1) = binding('pi', 3.14159265358979_rk)
   memory(2) = binding('e', 2.71828182845905_rk)
   variables = 2
   known => memory(1:variables)

   unit = 20
   CALL write_lines(unit)
   REWIND (unit)
   dialogue: DO
      READ (unit, '(A)', IOSTAT=ios) line
      IF (ios < 0) EXIT dialogue
      IF (line == ' ' .OR. line(1:1) == '#') CYCLE dialogue
      WRITE (*, '(1X, 2A)') '> ', TRIM(line)
      IF (line(1:2) == 'd/') THEN
         CALL differentiate
      ELSE IF (INDEX(line, '=') > 1) THEN
         CALL assign
      ELSE
         CALL compute(line)
      END IF
   END DO dialogue
   CLOSE (UNIT=unit)

CONTAINS

   SUBROUTINE write_lines(lun)
      INTEGER, INTENT (IN) :: lun

      OPEN (UNIT=lun, STATUS='SCRATCH', ACTION='READWRITE', FORM='FORMATTED')
      WRITE (lun, '(A)') '# arithmetic', '1 + 2*3', '(1 + 2)*3', '2^3^2', '-2^2', &
         '10/4 - 1.5e0', '7 - 3 - 2'
      WRITE (lun, '(A)') '# variables', 'r = 2', 'area = pi*r^2', 'area/r', &
         'sin(pi/6) + cos(0)', 'unknown + 1'
      WRITE (lun, '(A)') '# mistakes', '1 +', '(2*3', '4 $ 5', '2 3', 'sqrt(-1)', &
         '1/(r - 2)'
      WRITE (lun, '(A)') '# derivatives', 'd/x x^3 - 2*x + 7', 'd/x sin(x)*exp(2*x)', &
         'd/x (x + 1)/(x - 1)', 'd/x x^x', 'd/y x*y^2', 'd/x ln(sqrt(x))', &
         'd/x -(-x)', 'd/x tan(x) - f(x)'
   END SUBROUTINE write_lines

   SUBROUTINE complain_at(where, shift)
      INTEGER, INTENT (IN) :: where, shift
      WRITE (*, '(1X, A, TR1, A)') REPEAT(' ', where + shift + 1) // '^', &
         TRIM(error_text())
   END SUBROUTINE complain_at

   SUBROUTINE compute(formula)
      CHARACTER (LEN=*), INTENT (IN) :: formula
      TYPE (node), POINTER :: tree
      REAL (rk) :: value
      LOGICAL :: ok
      INTEGER :: where

      CALL parse(formula, tree, where)
      IF (.NOT. ASSOCIATED(tree)) THEN
         CALL complain_at(where, 0)
         RETURN
      END IF
      ok = .TRUE.
      value = evaluate(tree, known, ok)
      IF (ok) THEN
         WRITE (*, '(4X, F14.6)') value
      ELSE
         WRITE (*, '(4X, A)') 'has no value'
      END IF
      CALL free(tree)
   END SUBROUTINE compute

   ! NAME = EXPRESSION
   SUBROUTINE assign
      TYPE (node), POINTER :: tree
      CHARACTER (LEN=name_length) :: name
      REAL (rk) :: value
      INTEGER :: equals, where, i
      LOGICAL :: ok

      equals = INDEX(line, '=')
      name = line(:equals - 1)
      CALL parse(line(equals + 1:), tree, where=where)
      IF (where > 0) THEN
         CALL complain_at(where, equals)
         RETURN
      END IF
      ok = .TRUE.
      value = evaluate(tree, known, ok)
      CALL free(tree)
      IF (.NOT. ok) RETURN
      find: DO i = 1, variables
         IF (memory(i)%name == name) EXIT find
      END DO find
      IF (i > variables) THEN
         variables = variables + 1
         known => memory(:variables)
      END IF
      known(i) = binding(name, value)
      WRITE (*, '(4X, A, A, G14.7)') name, '=', value
   END SUBROUTINE assign

   ! d/VARIABLE EXPRESSION
   SUBROUTINE differentiate
      TYPE (node), POINTER :: tree, slope
      CHARACTER (LEN=name_length) :: by
      CHARACTER (LEN=line_length) :: shown
      INTEGER :: blank, where, length

      blank = INDEX(line, ' ')
      by = line(3:blank - 1)
      CALL parse(line(blank + 1:), tree, where)
      IF (where > 0) THEN
         CALL complain_at(where, blank)
         RETURN
      END IF
      slope => derivative(tree, by)
      CALL simplify(slope)
      CALL show(slope, shown, length)
      WRITE (*, '(4X, A, T60, I3, 1X, A)') shown(:length), size_of(slope), 'nodes'
      CALL free(tree)
      CALL free(slope)
   END SUBROUTINE differentiate

END PROGRAM calculator
