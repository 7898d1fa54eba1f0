C     Expressions: a scanner and two stacks.
C
C     Operators on the stack are numbers:
C        1 +   2 -   3 *   4 /   5 ^   6 minus with one operand
C        7 (   8 element of a table    9 .. function number + 8
C     and 20 is the bottom.
C
      REAL FUNCTION EXPR (SRC)
      CHARACTER*(*) SRC
      INTEGER MAXST, NFUN
      PARAMETER (MAXST = 40, NFUN = 5)
      INTEGER OPS(MAXST), TABV(MAXST), NOP, NVAL, I, L, OP, V, COMMAS
      REAL VAL(MAXST), X
      CHARACTER*1 C
      CHARACTER*3 FUNS(NFUN)
      INTEGER PRIO(9)
      REAL VAR, POOL
      INTEGER BASE, SIZE, USED
      COMMON /VARS/ VAR(26), BASE(26), SIZE(26), POOL(500), USED
      INTEGER MAXLIN, NLIN, NUMLAB, PC, ERRNO
      PARAMETER (MAXLIN = 100)
      COMMON /PROG/ NLIN, NUMLAB(MAXLIN), PC, ERRNO
      LOGICAL OPERND, DIGIT, LETTER
      DATA FUNS /'SQR', 'ABS', 'INT', 'MOD', 'MAX'/
      DATA PRIO /1, 1, 2, 2, 4, 3, 0, 0, 0/
C     classes of characters
      DIGIT(C) = LGE(C, '0') .AND. LLE(C, '9')
      LETTER(C) = C .GE. 'A' .AND. C .LE. 'Z'
C
      EXPR = 0.0
      NOP = 0
      NVAL = 0
      COMMAS = 0
      OPERND = .TRUE.
      L = LEN(SRC)
      I = 1
   10 IF (I .GT. L) GO TO 100
      C = SRC(I:I)
      IF (C .EQ. ' ') THEN
         I = I + 1
      ELSE IF (OPERND) THEN
         IF (NOP .GE. MAXST .OR. NVAL .GE. MAXST) CALL FAULT (
     1      'EXPRESSION TOO LONG', *900)
         IF (DIGIT(C) .OR. C .EQ. '.') THEN
            CALL NUMBER (SRC(I:L), X, V)
            IF (V .LE. 0) CALL FAULT ('BAD NUMBER', *900)
            I = I + V
            NVAL = NVAL + 1
            VAL(NVAL) = X
            OPERND = .FALSE.
         ELSE IF (C .EQ. '(') THEN
            NOP = NOP + 1
            OPS(NOP) = 7
            I = I + 1
         ELSE IF (C .EQ. '-') THEN
            NOP = NOP + 1
            OPS(NOP) = 6
            I = I + 1
         ELSE IF (LETTER(C)) THEN
C           a function, a table, or a plain variable
            V = ICHAR(C) - ICHAR('A') + 1
            IF (I + 2 .LE. L) THEN
               DO 20 OP = 1, NFUN
                  IF (SRC(I:I+2) .EQ. FUNS(OP)) GO TO 30
   20          CONTINUE
            END IF
            IF (SIZE(V) .GT. 0) THEN
               NOP = NOP + 1
               OPS(NOP) = 8
               TABV(NOP) = V
            ELSE
               NVAL = NVAL + 1
               VAL(NVAL) = VAR(V)
               OPERND = .FALSE.
            END IF
            I = I + 1
            GO TO 10
   30       NOP = NOP + 1
            OPS(NOP) = 8 + OP
            I = I + 3
         ELSE
            CALL FAULT ('OPERAND EXPECTED', *900)
         END IF
      ELSE
         OP = INDEX('+-*/^', C)
         IF (OP .GT. 0) THEN
   40       IF (NOP .GT. 0) THEN
               IF (PRIO(MIN(OPS(NOP), 9)) .GE. PRIO(OP)) THEN
                  CALL REDUCE (OPS(NOP), VAL, NVAL, TABV(NOP), *900)
                  NOP = NOP - 1
                  GO TO 40
               END IF
            END IF
            NOP = NOP + 1
            OPS(NOP) = OP
            OPERND = .TRUE.
         ELSE IF (C .EQ. ')' .OR. C .EQ. ',') THEN
   50       IF (NOP .EQ. 0) CALL FAULT ('BRACKETS', *900)
            IF (OPS(NOP) .NE. 7) THEN
               CALL REDUCE (OPS(NOP), VAL, NVAL, TABV(NOP), *900)
               NOP = NOP - 1
               GO TO 50
            END IF
            IF (C .EQ. ',') THEN
               COMMAS = COMMAS + 1
               OPERND = .TRUE.
            ELSE
               NOP = NOP - 1
C              what stands before the bracket?
               IF (NOP .GT. 0) THEN
                  IF (OPS(NOP) .GE. 8) THEN
                     CALL REDUCE (OPS(NOP), VAL, NVAL, TABV(NOP), *900)
                     NOP = NOP - 1
                  END IF
               END IF
            END IF
         ELSE
            CALL FAULT ('OPERATOR EXPECTED', *900)
         END IF
         I = I + 1
      END IF
      GO TO 10
C
  100 IF (NOP .GT. 0) THEN
         IF (OPS(NOP) .EQ. 7) CALL FAULT ('BRACKET NOT CLOSED', *900)
         CALL REDUCE (OPS(NOP), VAL, NVAL, TABV(NOP), *900)
         NOP = NOP - 1
         GO TO 100
      END IF
      IF (NVAL .NE. 1) CALL FAULT ('NOT AN EXPRESSION', *900)
      EXPR = VAL(1)
  900 RETURN
      END
C
      SUBROUTINE NUMBER (S, X, N)
C     The number that S begins with, and how long it is
      CHARACTER*(*) S
      REAL X
      INTEGER N
      N = 0
   10 IF (N .LT. LEN(S)) THEN
         IF (INDEX('0123456789.', S(N+1:N+1)) .GT. 0) THEN
            N = N + 1
            GO TO 10
         END IF
      END IF
      READ (S(:N), '(F20.0)', ERR = 20) X
      RETURN
   20 N = 0
      END
C
      SUBROUTINE REDUCE (OP, VAL, NVAL, V, *)
      INTEGER OP, NVAL, V, K
      REAL VAL(*), A, B
      REAL VAR, POOL
      INTEGER BASE, SIZE, USED
      COMMON /VARS/ VAR(26), BASE(26), SIZE(26), POOL(500), USED
      INTEGER NEED(13)
      DATA NEED /5*2, 1, 0, 1, 3*1, 2*2/
      IF (NVAL .LT. NEED(OP)) CALL FAULT ('OPERAND MISSING', *900)
      B = VAL(NVAL)
      IF (NEED(OP) .EQ. 2) THEN
         A = VAL(NVAL-1)
         NVAL = NVAL - 1
      END IF
      GO TO (1, 2, 3, 4, 5, 6, 900, 8, 9, 10, 11, 12, 13), OP
    1 B = A + B
      GO TO 100
    2 B = A - B
      GO TO 100
    3 B = A*B
      GO TO 100
    4 IF (B .EQ. 0.0) CALL FAULT ('DIVISION BY ZERO', *900)
      B = A/B
      GO TO 100
    5 IF (B .EQ. AINT(B)) THEN
         B = A**INT(B)
      ELSE IF (A .GT. 0.0) THEN
         B = A**B
      ELSE
         CALL FAULT ('BAD POWER', *900)
      END IF
      GO TO 100
    6 B = -B
      GO TO 100
    8 K = NINT(B)
      IF (K .LT. 1 .OR. K .GT. SIZE(V)) CALL FAULT ('SUBSCRIPT', *900)
      B = POOL(BASE(V) + K)
      GO TO 100
    9 IF (B .LT. 0.0) CALL FAULT ('ROOT OF A NEGATIVE', *900)
      B = SQRT(B)
      GO TO 100
   10 B = ABS(B)
      GO TO 100
   11 B = AINT(B)
      GO TO 100
   12 IF (B .EQ. 0.0) CALL FAULT ('DIVISION BY ZERO', *900)
      B = MOD(A, B)
      GO TO 100
   13 B = MAX(A, B)
  100 VAL(NVAL) = B
      RETURN
  900 RETURN 1
      END
C
      SUBROUTINE ASSIGN (TARGET, X)
      CHARACTER*(*) TARGET
      REAL X, EXPR
      INTEGER V, K
      REAL VAR, POOL
      INTEGER BASE, SIZE, USED
      COMMON /VARS/ VAR(26), BASE(26), SIZE(26), POOL(500), USED
      V = INDEX('ABCDEFGHIJKLMNOPQRSTUVWXYZ', TARGET(1:1))
      IF (V .EQ. 0) CALL FAULT ('NO VARIABLE', *10)
      IF (SIZE(V) .EQ. 0) THEN
         VAR(V) = X
      ELSE
         K = NINT(EXPR(TARGET(2:)))
         IF (K .LT. 1 .OR. K .GT. SIZE(V)) CALL FAULT ('SUBSCRIPT', *10)
         POOL(BASE(V) + K) = X
      END IF
   10 RETURN
      END
