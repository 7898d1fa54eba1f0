! From characters to expression trees: a scanner and a parser by recursive
! descent. Grammar:
!    expression = ["-"] term { ("+" | "-") term }
!    term       = factor { ("*" | "/") factor }
!    factor     = primary [ "^" factor ]
!    primary    = number | name | name "(" expression ")" | "(" expression ")"
MODULE parsing
   USE trees
   IMPLICIT NONE
   PRIVATE
   PUBLIC :: parse, error_text

   INTEGER, PARAMETER :: tk_end = 0, tk_number = 1, tk_name = 2, tk_sign = 3, &
                         tk_bad = 4

   CHARACTER(LEN=10), PARAMETER :: digits = '0123456789'
   CHARACTER(LEN=*), PARAMETER  :: letters = 'abcdefghijklmnopqrstuvwxyz' // &
                                             'ABCDEFGHIJKLMNOPQRSTUVWXYZ'

   ! The state of the scanner, kept between calls
   CHARACTER(LEN=200), SAVE :: source
   INTEGER, SAVE            :: position, token, token_start, error_at
   CHARACTER(LEN=name_length), SAVE :: token_name
   CHARACTER, SAVE          :: token_sign
   REAL(rk), SAVE           :: token_value
   CHARACTER(LEN=40), SAVE  :: message

CONTAINS

   ! Parses LINE; TREE is disassociated and WHERE is the column of the
   ! mistake if the line is no expression.
   SUBROUTINE parse(line, tree, where)
      CHARACTER(LEN=*), INTENT(IN)   :: line
      TYPE(node), POINTER            :: tree
      INTEGER, OPTIONAL, INTENT(OUT) :: where

      source = line
      position = 1
      error_at = 0
      message = ' '
      CALL advance
      tree => expression()
      IF (token /= tk_end) CALL complain('operator expected')
      IF (error_at > 0) CALL free(tree)
      IF (PRESENT(where)) where = error_at
   END SUBROUTINE parse

   FUNCTION error_text()
      CHARACTER(LEN=40) :: error_text
      error_text = message
   END FUNCTION error_text

   SUBROUTINE complain(what)
      CHARACTER(LEN=*), INTENT(IN) :: what
      IF (error_at > 0) RETURN          ! only the first counts
      error_at = token_start
      message = what
   END SUBROUTINE complain

   ! Reads the next token.
   SUBROUTINE advance
      INTEGER :: skip, last, ios
      CHARACTER(LEN=12) :: form

      skip = VERIFY(source(position:), ' ')
      token_start = LEN_TRIM(source) + 1
      IF (skip == 0) THEN
         token = tk_end
         RETURN
      END IF
      position = position + skip - 1
      token_start = position

      SELECT CASE (source(position:position))
      CASE ('0':'9', '.')
         last = end_of_number(position)
         WRITE (form, '(''(F'',I2,''.0)'')') last - position + 1
         READ (source(position:last), form, IOSTAT=ios) token_value
         token = tk_number
         IF (ios /= 0) THEN
            token = tk_bad
            CALL complain('bad number')
         END IF
         position = last + 1
      CASE ('a':'z', 'A':'Z')
         skip = VERIFY(source(position:), letters // digits // '_')
         last = position + skip - 2
         IF (skip == 0) last = LEN(source)
         token = tk_name
         token_name = source(position:last)
         position = last + 1
      CASE ('+', '-', '*', '/', '^', '(', ')')
         token = tk_sign
         token_sign = source(position:position)
         position = position + 1
      CASE DEFAULT
         token = tk_bad
         CALL complain('character not known')
         position = position + 1
      END SELECT
   END SUBROUTINE advance

   INTEGER FUNCTION end_of_number(start) RESULT(last)
      INTEGER, INTENT(IN) :: start
      INTEGER :: n

      n = VERIFY(source(start:), digits // '.')
      last = start + n - 2
      IF (n == 0) last = LEN(source)
      IF (last + 2 > LEN(source)) RETURN
      IF (SCAN(source(last+1:last+1), 'eE') == 1) THEN
         n = last + 2
         IF (INDEX('+-', source(n:n)) > 0) n = n + 1
         IF (VERIFY(source(n:n), digits) == 0) THEN
            last = n + VERIFY(source(n:), digits) - 2
         END IF
      END IF
   END FUNCTION end_of_number

   LOGICAL FUNCTION at(signs)
      CHARACTER(LEN=*), INTENT(IN) :: signs
      at = .FALSE.
      IF (token == tk_sign) at = INDEX(signs, token_sign) /= 0
   END FUNCTION at

   RECURSIVE FUNCTION expression() RESULT(tree)
      TYPE(node), POINTER :: tree, right
      INTEGER :: kind

      IF (at('-')) THEN
         CALL advance
         tree => unary(is_negation, term())
      ELSE
         tree => term()
      END IF
      DO
         IF (.NOT. at('+-')) EXIT
         kind = is_sum
         IF (token_sign == '-') kind = is_difference
         CALL advance
         right => term()
         tree => binary(kind, tree, right)
      END DO
   END FUNCTION expression

   RECURSIVE FUNCTION term() RESULT(tree)
      TYPE(node), POINTER :: tree, right
      INTEGER :: kind

      tree => factor()
      DO WHILE (at('*/'))
         kind = MERGE(is_product, is_quotient, token_sign == '*')
         CALL advance
         right => factor()
         tree => binary(kind, tree, right)
      END DO
   END FUNCTION term

   RECURSIVE FUNCTION factor() RESULT(tree)
      TYPE(node), POINTER :: tree, right

      tree => primary()
      IF (at('^')) THEN
         CALL advance
         right => factor()
         tree => binary(is_power, tree, right)
      END IF
   END FUNCTION factor

   RECURSIVE FUNCTION primary() RESULT(tree)
      TYPE(node), POINTER :: tree
      CHARACTER(LEN=name_length) :: name

      SELECT CASE (token)
      CASE (tk_number)
         tree => number(token_value)
         CALL advance
      CASE (tk_name)
         name = token_name
         CALL advance
         IF (at('(')) THEN
            tree => function_of(name, parenthesized())
         ELSE
            tree => variable(name)
         END IF
      CASE (tk_sign)
         IF (token_sign == '(') THEN
            tree => parenthesized()
         ELSE
            CALL complain('operand expected')
            tree => number(0)
            IF (token_sign /= ')') CALL advance
         END IF
      CASE DEFAULT
         CALL complain('operand expected')
         tree => number(0)
      END SELECT
   END FUNCTION primary

   RECURSIVE FUNCTION parenthesized() RESULT(tree)
      TYPE(node), POINTER :: tree

      CALL advance
      tree => expression()
      IF (at(')')) THEN
         CALL advance
      ELSE
         CALL complain('")" expected')
      END IF
   END FUNCTION parenthesized

END MODULE parsing
