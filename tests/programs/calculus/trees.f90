! Expression trees: making them, freeing them, evaluating and printing them.
MODULE trees
   IMPLICIT NONE
   PRIVATE
   INTEGER, PARAMETER, PUBLIC :: rk = SELECTED_REAL_KIND(12, 100)
   INTEGER, PARAMETER, PUBLIC :: name_length = 8

   ! Kinds of nodes
   INTEGER, PARAMETER, PUBLIC :: is_number = 1, is_variable = 2, is_sum = 3, &
      is_difference = 4, is_product = 5, is_quotient = 6, is_power = 7,      &
      is_negation = 8, is_call = 9

   TYPE, PUBLIC :: node
      INTEGER                    :: kind
      REAL (rk)                  :: value       ! of a number
      CHARACTER (LEN=name_length) :: name       ! of a variable or function
      TYPE (node), POINTER       :: left, right
   END TYPE node

   ! The variables that have values
   TYPE, PUBLIC :: binding
      CHARACTER (LEN=name_length) :: name
      REAL (KIND=rk)              :: value
   END TYPE binding

   PUBLIC :: number, variable, unary, binary, function_of
   PUBLIC :: free, duplicate, evaluate, show, same_tree, size_of
   PUBLIC :: OPERATOR (+), OPERATOR (-), OPERATOR (*), OPERATOR (/), OPERATOR (**)
   PUBLIC :: OPERATOR (.same.)

   INTERFACE OPERATOR (+)
      MODULE PROCEDURE add_nodes
   END INTERFACE
   INTERFACE OPERATOR (-)
      MODULE PROCEDURE subtract_nodes, negate_node
   END INTERFACE
   INTERFACE OPERATOR (*)
      MODULE PROCEDURE multiply_nodes
   END INTERFACE
   INTERFACE OPERATOR (/)
      MODULE PROCEDURE divide_nodes
   END INTERFACE
   INTERFACE OPERATOR (**)
      MODULE PROCEDURE raise_node
   END INTERFACE
   INTERFACE OPERATOR (.same.)
      MODULE PROCEDURE same_tree
   END INTERFACE

   INTERFACE number
      MODULE PROCEDURE number_from_real, number_from_integer
   END INTERFACE

   CHARACTER (LEN=1), DIMENSION (is_sum:is_power), PARAMETER :: sign_of = &
      (/ '+', '-', '*', '/', '^' /)
   INTEGER, DIMENSION (is_number:is_call), PARAMETER :: strength = &
      (/ 9, 9, 1, 1, 2, 2, 4, 3, 9 /)

CONTAINS

   FUNCTION new_node(kind) RESULT (p)
      INTEGER, INTENT (IN) :: kind
      TYPE (node), POINTER :: p

      ALLOCATE (p)
      p % kind = kind
      p % value = 0
      p % name = ' '
      NULLIFY (p % left, p % right)
   END FUNCTION new_node

   FUNCTION number_from_real(x) RESULT (p)
      REAL (rk), INTENT (IN) :: x
      TYPE (node), POINTER   :: p
      p => new_node(is_number)
      p%value = x
   END FUNCTION number_from_real

   FUNCTION number_from_integer(n) RESULT (p)
      INTEGER, INTENT (IN) :: n
      TYPE (node), POINTER :: p
      p => number_from_real(REAL(n, rk))
   END FUNCTION number_from_integer

   FUNCTION variable(name) RESULT (p)
      CHARACTER (LEN=*), INTENT (IN) :: name
      TYPE (node), POINTER :: p
      p => new_node(is_variable)
      p%name = name
   END FUNCTION variable

   FUNCTION unary(kind, operand) RESULT (p)
      INTEGER, INTENT (IN) :: kind
      TYPE (node), POINTER :: operand, p
      p => new_node(kind)
      p%left => operand
   END FUNCTION unary

   FUNCTION binary(kind, left, right) RESULT (p)
      INTEGER, INTENT (IN) :: kind
      TYPE (node), POINTER :: left, right, p
      p => new_node(kind)
      p%left => left
      p%right => right
   END FUNCTION binary

   FUNCTION function_of(name, argument) RESULT (p)
      CHARACTER (LEN=*), INTENT (IN) :: name
      TYPE (node), POINTER :: argument, p
      p => unary(is_call, argument)
      p%name = name
   END FUNCTION function_of

   ! The operators copy their operands, so trees never share branches.

   FUNCTION add_nodes(a, b) RESULT (p)
      TYPE (node), INTENT (IN) :: a, b
      TYPE (node), POINTER :: p
      p => binary_copy(is_sum, a, b)
   END FUNCTION add_nodes

   FUNCTION subtract_nodes(a, b) RESULT (p)
      TYPE (node), INTENT (IN) :: a, b
      TYPE (node), POINTER :: p
      p => binary_copy(is_difference, a, b)
   END FUNCTION subtract_nodes

   FUNCTION multiply_nodes(a, b) RESULT (p)
      TYPE (node), INTENT (IN) :: a, b
      TYPE (node), POINTER :: p
      p => binary_copy(is_product, a, b)
   END FUNCTION multiply_nodes

   FUNCTION divide_nodes(a, b) RESULT (p)
      TYPE (node), INTENT (IN) :: a, b
      TYPE (node), POINTER :: p
      p => binary_copy(is_quotient, a, b)
   END FUNCTION divide_nodes

   FUNCTION raise_node(a, b) RESULT (p)
      TYPE (node), INTENT (IN) :: a, b
      TYPE (node), POINTER :: p
      p => binary_copy(is_power, a, b)
   END FUNCTION raise_node

   FUNCTION negate_node(a) RESULT (p)
      TYPE (node), INTENT (IN) :: a
      TYPE (node), POINTER :: p
      p => new_node(is_negation)
      p%left => duplicate(a)
   END FUNCTION negate_node

   FUNCTION binary_copy(kind, a, b) RESULT (p)
      INTEGER, INTENT (IN) :: kind
      TYPE (node), INTENT (IN) :: a, b
      TYPE (node), POINTER :: p

      p => new_node(kind)
      p%left => duplicate(a)
      p%right => duplicate(b)
   END FUNCTION binary_copy

   RECURSIVE FUNCTION duplicate(a) RESULT (p)
      TYPE (node), INTENT (IN) :: a
      TYPE (node), POINTER     :: p

      p => new_node(a%kind)
      p%value = a%value
      p%name = a%name
      IF (ASSOCIATED(a%left)) p%left => duplicate(a%left)
      IF (ASSOCIATED(a%right)) p%right => duplicate(a%right)
   END FUNCTION duplicate

   RECURSIVE SUBROUTINE free(p)
      TYPE (node), POINTER :: p

      IF (.NOT. ASSOCIATED(p)) RETURN
      CALL free(p%left)
      CALL free(p%right)
      DEALLOCATE (p)
   END SUBROUTINE free

   RECURSIVE FUNCTION size_of(p) RESULT (n)
      TYPE (node), POINTER :: p
      INTEGER :: n
      n = 0
      IF (ASSOCIATED(p)) n = 1 + size_of(p%left) + size_of(p%right)
   END FUNCTION size_of

   RECURSIVE FUNCTION same_tree(a, b) RESULT (same)
      TYPE (node), INTENT (IN) :: a, b
      LOGICAL :: same

      same = a%kind == b%kind .AND. a%name == b%name .AND. a%value == b%value
      IF (same) same = ASSOCIATED(a%left) .EQV. ASSOCIATED(b%left)
      IF (same) same = ASSOCIATED(a%right) .EQV. ASSOCIATED(b%right)
      IF (same .AND. ASSOCIATED(a%left)) same = same_tree(a%left, b%left)
      IF (same .AND. ASSOCIATED(a%right)) same = same_tree(a%right, b%right)
   END FUNCTION same_tree

   ! The value of a tree; OK becomes false when a name has no value or a
   ! function is outside its range of arguments.
   RECURSIVE FUNCTION evaluate(p, known, ok) RESULT (v)
      TYPE (node), POINTER :: p
      TYPE (binding), DIMENSION (:), INTENT (IN) :: known
      LOGICAL, INTENT (INOUT) :: ok
      REAL (rk) :: v, a, b
      INTEGER   :: i

      v = 0
      a = 0
      b = 0
      IF (ASSOCIATED(p%left)) a = evaluate(p%left, known, ok)
      IF (ASSOCIATED(p%right)) b = evaluate(p%right, known, ok)
      IF (.NOT. ok) RETURN

      SELECT CASE (p%kind)
      CASE (is_number)
         v = p%value
      CASE (is_variable)
         ok = .FALSE.
         DO i = 1, SIZE(known)
            IF (known(i)%name /= p%name) CYCLE
            v = known(i)%value
            ok = .TRUE.
            EXIT
         END DO
      CASE (is_sum)
         v = a + b
      CASE (is_difference)
         v = a - b
      CASE (is_product)
         v = a * b
      CASE (is_quotient)
         ok = b /= 0
         IF (ok) v = a / b
      CASE (is_power)
         IF (b == AINT(b) .AND. ABS(b) < 1000) THEN
            ok = a /= 0 .OR. b >= 0
            IF (ok) v = a ** NINT(b)
         ELSE
            ok = a > 0
            IF (ok) v = a ** b
         END IF
      CASE (is_negation)
         v = -a
      CASE (is_call)
         CALL call_function
      CASE DEFAULT
         STOP 'damaged tree'
      END SELECT

   CONTAINS

      SUBROUTINE call_function
         SELECT CASE (p%name)
         CASE ('sin')
            v = SIN(a)
         CASE ('cos')
            v = COS(a)
         CASE ('tan')
            v = TAN(a)
         CASE ('exp')
            v = EXP(a)
         CASE ('ln')
            ok = a > 0
            IF (ok) v = LOG(a)
         CASE ('sqrt')
            ok = a >= 0
            IF (ok) v = SQRT(a)
         CASE ('abs')
            v = ABS(a)
         CASE DEFAULT
            ok = .FALSE.
         END SELECT
      END SUBROUTINE call_function

   END FUNCTION evaluate

   ! Writes the tree into LINE with as few parentheses as possible.
   SUBROUTINE show(p, line, length)
      TYPE (node), POINTER :: p
      CHARACTER (LEN=*), INTENT (OUT) :: line
      INTEGER, INTENT (OUT) :: length

      line = ' '
      length = 0
      CALL write_node(p, 0)

   CONTAINS

      SUBROUTINE append(piece)
         CHARACTER (*), INTENT (IN) :: piece
         INTEGER :: last
         last = MIN(LEN(line), length + LEN(piece))
         line(length + 1:last) = piece
         length = last
      END SUBROUTINE append

      RECURSIVE SUBROUTINE write_node(q, outer)
         TYPE (node), POINTER :: q
         INTEGER, INTENT (IN) :: outer
         INTEGER :: mine
         LOGICAL :: wrap
         CHARACTER (LEN=24) :: digits

         mine = strength(q%kind)
         IF (q%kind == is_number .AND. q%value < 0) mine = 3
         wrap = mine < outer
         IF (wrap) CALL append('(')
         SELECT CASE (q%kind)
         CASE (is_number)
            IF (q%value == AINT(q%value) .AND. ABS(q%value) < 1.0E9_rk) THEN
               WRITE (digits, '(I24)') NINT(q%value)
            ELSE
               WRITE (digits, '(G24.7)') q%value
            END IF
            CALL append(TRIM(ADJUSTL(digits)))
         CASE (is_variable)
            CALL append(TRIM(q%name))
         CASE (is_call)
            CALL append(TRIM(q%name) // '(')
            CALL write_node(q%left, 0)
            CALL append(')')
         CASE (is_negation)
            CALL append('-')
            CALL write_node(q%left, mine)
         CASE (is_sum, is_difference)
            CALL write_node(q%left, mine)
            CALL append(' ' // sign_of(q%kind) // ' ')
            CALL write_node(q%right, mine + 1)
         CASE (is_power)
            CALL write_node(q%left, mine + 1)
            CALL append(sign_of(q%kind))
            CALL write_node(q%right, mine)
         CASE (is_product:is_quotient)
            CALL write_node(q%left, mine)
            CALL append(sign_of(q%kind))
            CALL write_node(q%right, mine + 1)
         END SELECT
         IF (wrap) CALL append(')')
      END SUBROUTINE write_node

   END SUBROUTINE show

END MODULE trees
