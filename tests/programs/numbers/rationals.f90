! Rational numbers with default integers, always in lowest terms.
MODULE rationals
  USE bigs, ONLY : gcd
  IMPLICIT NONE
  PRIVATE :: reduced

  TYPE rational
    PRIVATE
    INTEGER :: num, den
  END TYPE rational

  INTERFACE OPERATOR (.over.)
    MODULE PROCEDURE make
  END INTERFACE
  INTERFACE ASSIGNMENT (=)
    MODULE PROCEDURE rational_from_integer, real_from_rational, string_from_rational
  END INTERFACE
  INTERFACE OPERATOR (+)
    MODULE PROCEDURE add_rationals, plus_integer
  END INTERFACE
  INTERFACE OPERATOR (-)
    MODULE PROCEDURE subtract_rationals, minus_rational
  END INTERFACE
  INTERFACE OPERATOR (*)
    MODULE PROCEDURE multiply_rationals, integer_times
  END INTERFACE
  INTERFACE OPERATOR (/)
    MODULE PROCEDURE divide_rationals
  END INTERFACE
  INTERFACE OPERATOR (.EQ.)
    MODULE PROCEDURE same_rationals
  END INTERFACE
  INTERFACE OPERATOR (.LT.)
    MODULE PROCEDURE less_rational
  END INTERFACE
  INTERFACE INT
    MODULE PROCEDURE int_rational
  END INTERFACE
  INTERFACE SUM
    MODULE PROCEDURE sum_rationals
  END INTERFACE

CONTAINS

  FUNCTION reduced(num, den) RESULT (r)
    INTEGER, INTENT (IN) :: num, den
    TYPE (rational) :: r
    INTEGER :: common

    common = gcd(num, den)
    IF (common == 0) common = 1
    IF (den < 0) common = -common
    r = rational(num / common, den / common)
  END FUNCTION reduced

  FUNCTION make(num, den) RESULT (r)
    INTEGER, INTENT (IN) :: num, den
    TYPE (rational) :: r
    r = reduced(num, den)
  END FUNCTION make

  SUBROUTINE rational_from_integer(r, i)
    TYPE (rational), INTENT (OUT) :: r
    INTEGER, INTENT (IN) :: i
    r = rational(i, 1)
  END SUBROUTINE rational_from_integer

  SUBROUTINE real_from_rational(x, r)
    REAL, INTENT (OUT) :: x
    TYPE (rational), INTENT (IN) :: r
    x = REAL(r%num) / REAL(r%den)
  END SUBROUTINE real_from_rational

  ! Like 3, -1/2 or 2 1/3
  SUBROUTINE string_from_rational(s, r)
    CHARACTER (LEN=*), INTENT (OUT) :: s
    TYPE (rational), INTENT (IN) :: r
    CHARACTER (LEN=36) :: t
    INTEGER :: rest, blank

    rest = MOD(r%num, r%den)
    IF (rest == 0) THEN
      WRITE (t, '(I11)') r%num / r%den
    ELSE IF (ABS(r%num) < r%den) THEN
      WRITE (t, '(I11, "/", I11)') r%num, r%den
    ELSE
      WRITE (t, '(I11, "_", I11, "/", I11)') r%num / r%den, ABS(rest), r%den
    END IF
    s = ' '
    blank = 0
    squeeze: DO rest = 1, LEN(t)
      IF (t(rest:rest) == ' ') CYCLE squeeze
      blank = blank + 1
      IF (blank > LEN(s)) EXIT squeeze
      s(blank:blank) = t(rest:rest)
    END DO squeeze
    rest = INDEX(s, '_')
    IF (rest > 0) s(rest:rest) = ' '
  END SUBROUTINE string_from_rational

  FUNCTION add_rationals(a, b) RESULT (c)
    TYPE (rational), INTENT (IN) :: a, b
    TYPE (rational) :: c
    INTEGER :: common
    common = gcd(a%den, b%den)
    c = reduced(a%num * (b%den / common) + b%num * (a%den / common), &
                a%den / common * b%den)
  END FUNCTION add_rationals

  FUNCTION plus_integer(a, i) RESULT (c)
    TYPE (rational), INTENT (IN) :: a
    INTEGER, INTENT (IN) :: i
    TYPE (rational) :: c
    c = rational(a%num + i * a%den, a%den)
  END FUNCTION plus_integer

  FUNCTION minus_rational(a) RESULT (c)
    TYPE (rational), INTENT (IN) :: a
    TYPE (rational) :: c
    c = rational(-a%num, a%den)
  END FUNCTION minus_rational

  FUNCTION subtract_rationals(a, b) RESULT (c)
    TYPE (rational), INTENT (IN) :: a, b
    TYPE (rational) :: c
    c = a + (-b)
  END FUNCTION subtract_rationals

  FUNCTION multiply_rationals(a, b) RESULT (c)
    TYPE (rational), INTENT (IN) :: a, b
    TYPE (rational) :: c, x, y
    ! across first, which keeps the products small
    x = reduced(a%num, b%den)
    y = reduced(b%num, a%den)
    c = rational(x%num * y%num, x%den * y%den)
  END FUNCTION multiply_rationals

  FUNCTION integer_times(i, a) RESULT (c)
    INTEGER, INTENT (IN) :: i
    TYPE (rational), INTENT (IN) :: a
    TYPE (rational) :: c
    c = reduced(i * a%num, a%den)
  END FUNCTION integer_times

  FUNCTION divide_rationals(a, b) RESULT (c)
    TYPE (rational), INTENT (IN) :: a, b
    TYPE (rational) :: c
    c = a * reduced(b%den, b%num)
  END FUNCTION divide_rationals

  LOGICAL FUNCTION same_rationals(a, b)
    TYPE (rational), INTENT (IN) :: a, b
    same_rationals = a%num .EQ. b%num .AND. a%den .EQ. b%den
  END FUNCTION same_rationals

  LOGICAL FUNCTION less_rational(a, b)
    TYPE (rational), INTENT (IN) :: a, b
    TYPE (rational) :: d
    d = a - b
    less_rational = d%num .LT. 0
  END FUNCTION less_rational

  INTEGER FUNCTION int_rational(a)
    TYPE (rational), INTENT (IN) :: a
    int_rational = a%num / a%den
  END FUNCTION int_rational

  FUNCTION sum_rationals(list) RESULT (total)
    TYPE (rational), DIMENSION (:), INTENT (IN) :: list
    TYPE (rational) :: total
    INTEGER :: i

    total = 0
    DO i = LBOUND(list, DIM=1), UBOUND(list, DIM=1)
      total = total + list(i)
    END DO
  END FUNCTION sum_rationals

END MODULE rationals
