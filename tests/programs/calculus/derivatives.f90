! Differentiates expression trees and makes them simpler.
MODULE derivatives
   USE trees
   IMPLICIT NONE
   PRIVATE
   PUBLIC :: derivative, simplify

CONTAINS

   ! The derivative of P by the variable X, a tree of its own. The rules
   ! are written with the operators on trees; what they copy in between is
   ! not worth freeing in a program as small as this one.
   RECURSIVE FUNCTION derivative(p, x) RESULT (d)
      TYPE (node), POINTER           :: p
      CHARACTER (LEN=*), INTENT (IN) :: x
      TYPE (node), POINTER           :: d
      TYPE (node), POINTER           :: u, v, du, dv

      u => p%left
      v => p%right
      NULLIFY (du, dv)
      IF (ASSOCIATED(u)) du => derivative(u, x)
      IF (ASSOCIATED(v)) dv => derivative(v, x)

      SELECT CASE (p%kind)
      CASE (is_number)
         d => number(0)
      CASE (is_variable)
         IF (p%name == x) THEN
            d => number(1)
         ELSE
            d => number(0)
         END IF
      CASE (is_sum)
         d => du + dv
      CASE (is_difference)
         d => du - dv
      CASE (is_product)
         d => du * v + u * dv
      CASE (is_quotient)
         d => (du * v - u * dv) / v ** number(2)
      CASE (is_power)
         IF (v%kind == is_number) THEN
            d => v * u ** number(v%value - 1) * du
         ELSE
            d => p * (dv * function_of('ln', duplicate(u)) + v * du / u)
         END IF
      CASE (is_negation)
         d => -du
      CASE (is_call)
         d => outer_derivative() * du
      END SELECT

   CONTAINS

      FUNCTION outer_derivative() RESULT (o)
         TYPE (node), POINTER :: o

         SELECT CASE (p%name)
         CASE ('sin')
            o => function_of('cos', duplicate(u))
         CASE ('cos')
            o => -function_of('sin', duplicate(u))
         CASE ('tan')
            o => number(1) + p ** number(2)
         CASE ('exp')
            o => duplicate(p)
         CASE ('ln')
            o => number(1) / u
         CASE ('sqrt')
            o => number(1) / (number(2) * p)
         CASE DEFAULT
            o => function_of(TRIM(p%name) // '''', duplicate(u))
         END SELECT
      END FUNCTION outer_derivative

   END FUNCTION derivative

   ! Works out what is constant and drops what does nothing, from the
   ! leaves to the root.
   RECURSIVE SUBROUTINE simplify(p)
      TYPE (node), POINTER :: p
      TYPE (binding), DIMENSION (0) :: nothing
      LOGICAL   :: ok
      REAL (rk) :: v

      IF (ASSOCIATED(p%left)) CALL simplify(p%left)
      IF (ASSOCIATED(p%right)) CALL simplify(p%right)

      ! An operation on numbers only
      IF (constant_operands()) THEN
         ok = .TRUE.
         v = evaluate(p, nothing, ok)
         IF (ok .AND. v == AINT(v)) THEN
            CALL become_number(v)
            RETURN
         END IF
      END IF

      rules: SELECT CASE (p%kind)
      CASE (is_sum) rules
         IF (is_value(p%left, 0)) THEN
            CALL keep_right
         ELSE IF (is_value(p%right, 0)) THEN
            CALL keep_left
         ELSE IF (p%right%kind == is_negation) THEN
            p%kind = is_difference
            CALL unwrap(p%right)
         END IF
      CASE (is_difference) rules
         IF (is_value(p%right, 0)) THEN
            CALL keep_left
         ELSE IF (p%left .same. p%right) THEN
            CALL become_number(0.0_rk)
         ELSE IF (is_value(p%left, 0)) THEN
            p%kind = is_negation
            CALL free(p%left)
            p%left => p%right
            NULLIFY (p%right)
         END IF
      CASE (is_product) rules
         IF (is_value(p%left, 0) .OR. is_value(p%right, 0)) THEN
            CALL become_number(0.0_rk)
         ELSE IF (is_value(p%left, 1)) THEN
            CALL keep_right
         ELSE IF (is_value(p%right, 1)) THEN
            CALL keep_left
         ELSE IF (p%right%kind == is_number) THEN
            CALL swap
         END IF
      CASE (is_quotient) rules
         IF (is_value(p%right, 1)) THEN
            CALL keep_left
         ELSE IF (is_value(p%left, 0)) THEN
            CALL become_number(0.0_rk)
         END IF
      CASE (is_power) rules
         IF (is_value(p%right, 1)) CALL keep_left
         IF (p%kind == is_power .AND. ASSOCIATED(p%right)) THEN
            IF (is_value(p%right, 0)) CALL become_number(1.0_rk)
         END IF
      CASE (is_negation) rules
         IF (p%left%kind == is_negation) THEN
            CALL unwrap(p)
            CALL unwrap(p)
         END IF
      END SELECT rules

   CONTAINS

      LOGICAL FUNCTION constant_operands()
         constant_operands = .FALSE.
         IF (p%kind == is_call) RETURN
         IF (.NOT. ASSOCIATED(p%left)) RETURN
         IF (p%left%kind /= is_number) RETURN
         constant_operands = .TRUE.
         IF (ASSOCIATED(p%right)) constant_operands = p%right%kind == is_number
      END FUNCTION constant_operands

      LOGICAL FUNCTION is_value(q, n)
         TYPE (node), POINTER :: q
         INTEGER, INTENT (IN) :: n
         is_value = q%kind == is_number .AND. q%value == n
      END FUNCTION is_value

      SUBROUTINE become_number(x)
         REAL (rk), INTENT (IN) :: x
         CALL free(p)
         p => number(x)
      END SUBROUTINE become_number

      SUBROUTINE keep_left
         TYPE (node), POINTER :: old
         old => p
         p => old%left
         NULLIFY (old%left)
         CALL free(old)
      END SUBROUTINE keep_left

      SUBROUTINE keep_right
         TYPE (node), POINTER :: old
         old => p
         p => old%right
         NULLIFY (old%right)
         CALL free(old)
      END SUBROUTINE keep_right

      SUBROUTINE swap
         TYPE (node), POINTER :: other
         other => p%left; p%left => p%right; p%right => other
      END SUBROUTINE swap

   END SUBROUTINE simplify

   ! Puts the operand of Q in its place.
   SUBROUTINE unwrap(q)
      TYPE (node), POINTER :: q, old
      old => q
      q => old%left
      DEALLOCATE (old)
   END SUBROUTINE unwrap

END MODULE derivatives
