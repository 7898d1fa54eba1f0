C     A small interpreter.  Commands, one to a line:
C
C        LET v = expression       set a variable (A to Z)
C        PRINT item, item ...     expressions and 'texts'
C        IF expression rel expression THEN label
C        GOTO label               labels are numbers before a command
C        GOSUB label   RETURN     to a depth of 20
C        FOR v = e TO e [STEP e]  NEXT v
C        DIM v(n)                 the variable becomes a table
C        REM anything             END
C
C     Expressions know + - * / ^, brackets, numbers, variables, elements
C     of tables and the functions SQR, ABS, INT, MOD(,) and MAX(,).
C     They are worked out by two stacks, operators and operands.
C
      BLOCK DATA INTBD
      INTEGER MAXLIN, NLIN, NUMLAB, PC, ERRNO
      PARAMETER (MAXLIN = 100)
      COMMON /PROG/ NLIN, NUMLAB(MAXLIN), PC, ERRNO
      CHARACTER*72 TEXT
      COMMON /PROGC/ TEXT(MAXLIN)
      REAL VAR, POOL
      INTEGER BASE, SIZE, USED
      COMMON /VARS/ VAR(26), BASE(26), SIZE(26), POOL(500), USED
      INTEGER NSUB, ISUB, NFOR, LFOR, IFOR
      REAL FLIM, FSTEP
      COMMON /STACKS/ NSUB, ISUB(20), NFOR, LFOR(20), IFOR(20),
     1                FLIM(20), FSTEP(20)
      DATA NLIN, PC, ERRNO /3*0/
      DATA VAR /26*0.0/, BASE /26*0/, USED /0/, SIZE /26*0/
      DATA NSUB, NFOR /0, 0/
      END
C
      SUBROUTINE LOAD (LU, *)
C     Reads a program from unit LU and tells labels and commands apart.
      INTEGER LU, MAXLIN, NLIN, NUMLAB, PC, ERRNO, IOS, K, L
      PARAMETER (MAXLIN = 100)
      COMMON /PROG/ NLIN, NUMLAB(MAXLIN), PC, ERRNO
      CHARACTER*72 TEXT, CARD
      COMMON /PROGC/ TEXT(MAXLIN)
      NLIN = 0
   10 READ (LU, '(A)', END = 40, ERR = 50, IOSTAT = IOS) CARD
      IF (CARD .EQ. ' ') GO TO 10
      IF (NLIN .EQ. MAXLIN) RETURN 1
      NLIN = NLIN + 1
      NUMLAB(NLIN) = 0
      K = 1
   20 IF (LLE('0', CARD(K:K)) .AND. LLE(CARD(K:K), '9')) THEN
         NUMLAB(NLIN) = 10*NUMLAB(NLIN) + ICHAR(CARD(K:K)) - ICHAR('0')
         K = K + 1
         GO TO 20
      END IF
   30 IF (CARD(K:K) .EQ. ' ') THEN
         K = K + 1
         IF (K .LE. LEN(CARD)) GO TO 30
         K = LEN(CARD)
      END IF
      TEXT(NLIN) = CARD(K:)
      DO 35 L = 1, NLIN - 1
         IF (NUMLAB(L) .NE. 0 .AND. NUMLAB(L) .EQ. NUMLAB(NLIN)) THEN
            WRITE (*, *) 'LABEL TWICE: ', NUMLAB(L)
            RETURN 1
         END IF
   35 CONTINUE
      GO TO 10
   40 RETURN
   50 RETURN 1
      END
C
      SUBROUTINE RUN
C     Executes the program from its first line.
      INTEGER MAXLIN, NLIN, NUMLAB, PC, ERRNO, NCMD
      PARAMETER (MAXLIN = 100, NCMD = 10)
      COMMON /PROG/ NLIN, NUMLAB(MAXLIN), PC, ERRNO
      CHARACTER*72 TEXT, LINE
      COMMON /PROGC/ TEXT(MAXLIN)
      REAL VAR, POOL
      INTEGER BASE, SIZE, USED
      COMMON /VARS/ VAR(26), BASE(26), SIZE(26), POOL(500), USED
      INTEGER NSUB, ISUB, NFOR, LFOR, IFOR
      REAL FLIM, FSTEP
      COMMON /STACKS/ NSUB, ISUB(20), NFOR, LFOR(20), IFOR(20),
     1                FLIM(20), FSTEP(20)
      CHARACTER*6 CMD(NCMD), WORD
      CHARACTER*26 ALPHA
      INTEGER I, K, KTO, KSTEP, V, NSTEPS, LABEL
      REAL X, EXPR
      LOGICAL TRUTH
      SAVE CMD
      DATA CMD /'LET', 'PRINT', 'IF', 'GOTO', 'GOSUB', 'RETURN', 'FOR',
     1          'NEXT', 'DIM', 'REM'/
      PARAMETER (ALPHA = 'ABCDEFGHIJKLMNOPQRSTUVWXYZ')
C
      PC = 1
      NSTEPS = 0
  100 IF (PC .GT. NLIN) RETURN
      NSTEPS = NSTEPS + 1
      IF (NSTEPS .GT. 20000) THEN
         WRITE (*, *) 'STOPPED AFTER', NSTEPS - 1, ' STEPS'
         RETURN
      END IF
      LINE = TEXT(PC)
      K = INDEX(LINE, ' ')
      WORD = LINE(:K)
      LINE = LINE(K+1:)
      PC = PC + 1
      ERRNO = 0
      IF (WORD .EQ. 'END') RETURN
      DO 110 I = 1, NCMD
         IF (WORD .EQ. CMD(I)) GO TO 120
  110 CONTINUE
      CALL FAULT ('NO SUCH COMMAND', *900)
  120 GO TO (1000, 2000, 3000, 4000, 5000, 6000, 7000, 8000, 9000, 100),
     1   I
C
C     LET
 1000 K = INDEX(LINE, '=')
      IF (K .EQ. 0) CALL FAULT ('NO = IN LET', *900)
      X = EXPR(LINE(K+1:))
      IF (ERRNO .NE. 0) GO TO 900
      CALL ASSIGN (LINE(:K-1), X)
      GO TO 150
C     PRINT
 2000 CALL PRLINE (LINE)
      GO TO 150
C     IF
 3000 K = INDEX(LINE, 'THEN')
      IF (K .EQ. 0) CALL FAULT ('NO THEN', *900)
      IF (TRUTH(LINE(:K-1))) THEN
         READ (LINE(K+4:), '(BN,I8)', ERR = 890) LABEL
         GO TO 200
      END IF
      GO TO 150
C     GOTO and GOSUB
 5000 IF (NSUB .EQ. 20) CALL FAULT ('TOO DEEP', *900)
      NSUB = NSUB + 1
      ISUB(NSUB) = PC
 4000 READ (LINE, '(BN,I8)', ERR = 890) LABEL
      GO TO 200
C     RETURN
 6000 IF (NSUB .EQ. 0) CALL FAULT ('RETURN WITHOUT GOSUB', *900)
      PC = ISUB(NSUB)
      NSUB = NSUB - 1
      GO TO 150
C     FOR
 7000 K = INDEX(LINE, '=')
      KTO = INDEX(LINE, ' TO ')
      KSTEP = INDEX(LINE, ' STEP ')
      V = INDEX(ALPHA, LINE(1:1))
      IF (MIN(K, KTO, V) .EQ. 0) CALL FAULT ('BAD FOR', *900)
      NFOR = NFOR + 1
      IFOR(NFOR) = V
      LFOR(NFOR) = PC
      VAR(V) = EXPR(LINE(K+1:KTO))
      FSTEP(NFOR) = 1.0
      IF (KSTEP .GT. 0) THEN
         FSTEP(NFOR) = EXPR(LINE(KSTEP+6:))
      ELSE
         KSTEP = LEN(LINE)
      END IF
      FLIM(NFOR) = EXPR(LINE(KTO+4:KSTEP))
      GO TO 150
C     NEXT
 8000 V = INDEX(ALPHA, LINE(1:1))
      IF (NFOR .EQ. 0) CALL FAULT ('NEXT WITHOUT FOR', *900)
      IF (IFOR(NFOR) .NE. V) CALL FAULT ('NEXT OF ANOTHER', *900)
      VAR(V) = VAR(V) + FSTEP(NFOR)
      IF ((FLIM(NFOR) - VAR(V))*SIGN(1.0, FSTEP(NFOR)) .GE. 0.0) THEN
         PC = LFOR(NFOR)
      ELSE
         NFOR = NFOR - 1
      END IF
      GO TO 150
C     DIM
 9000 V = INDEX(ALPHA, LINE(1:1))
      K = INT(EXPR(LINE(2:)))
      IF (V .EQ. 0 .OR. K .LE. 0 .OR. USED + K .GT. 500) CALL FAULT (
     1   'BAD DIM', *900)
      BASE(V) = USED
      SIZE(V) = K
      USED = USED + K
C
  150 IF (ERRNO .EQ. 0) GO TO 100
      GO TO 900
C     jump to a label
  200 DO 210 I = 1, NLIN
         IF (NUMLAB(I) .EQ. LABEL) THEN
            PC = I
            GO TO 100
         END IF
  210 CONTINUE
      CALL FAULT ('NO SUCH LABEL', *900)
  890 CALL FAULT ('BAD LABEL', *900)
  900 WRITE (*, 910) PC - 1, TEXT(PC-1)
  910 FORMAT (' IN LINE', I4, ': ', A)
      END
C
      SUBROUTINE FAULT (WHAT, *)
      CHARACTER WHAT*(*)
      INTEGER MAXLIN, NLIN, NUMLAB, PC, ERRNO
      PARAMETER (MAXLIN = 100)
      COMMON /PROG/ NLIN, NUMLAB(MAXLIN), PC, ERRNO
      IF (ERRNO .EQ. 0) WRITE (*, '(1X,''*** '',A)') WHAT
      ERRNO = ERRNO + 1
      RETURN 1
      END
C
      SUBROUTINE PRLINE (ITEMS)
C     The items of PRINT, put into a line and printed
      CHARACTER*(*) ITEMS
      CHARACTER OUT*80, NUMBER*14
      INTEGER I, J, L, DEPTH
      REAL X, EXPR
      OUT = ' '
      L = 1
      I = 1
   10 IF (ITEMS(I:) .EQ. ' ') GO TO 50
   20 IF (ITEMS(I:I) .EQ. ' ') THEN
         I = I + 1
         GO TO 20
      END IF
      IF (ITEMS(I:I) .EQ. '''') THEN
         J = INDEX(ITEMS(I+1:), '''')
         IF (J .EQ. 0) CALL FAULT ('TEXT WITHOUT END', *60)
         IF (J .GT. 1) OUT(L:) = ITEMS(I+1:I+J-1)
         L = L + J - 1
         I = I + J + 1
         J = INDEX(ITEMS(I:), ',')
         IF (J .GT. 0) I = I + J
         GO TO 10
      END IF
C     an expression goes to the next comma outside brackets
      DEPTH = 0
      DO 30 J = I, LEN(ITEMS)
         IF (ITEMS(J:J) .EQ. '(') DEPTH = DEPTH + 1
         IF (ITEMS(J:J) .EQ. ')') DEPTH = DEPTH - 1
         IF (ITEMS(J:J) .EQ. ',' .AND. DEPTH .EQ. 0) GO TO 40
   30 CONTINUE
      J = LEN(ITEMS) + 1
   40 X = EXPR(ITEMS(I:J-1))
      IF (X .EQ. ANINT(X) .AND. ABS(X) .LT. 1.0E7) THEN
         WRITE (NUMBER, '(I10)') NINT(X)
      ELSE
         WRITE (NUMBER, '(1PG14.6)') X
      END IF
      OUT(L:) = NUMBER
      L = L + LEN(NUMBER)
      I = J + 1
      IF (I .LE. LEN(ITEMS)) GO TO 10
   50 WRITE (*, '(1X,A)') OUT(:MAX(1, L-1))
   60 END
C
      LOGICAL FUNCTION TRUTH (COND)
      CHARACTER*(*) COND
      INTEGER K, L
      REAL D, EXPR
      TRUTH = .FALSE.
      L = 2
      K = INDEX(COND, '<>')
      IF (K .EQ. 0) K = INDEX(COND, '<=')
      IF (K .EQ. 0) K = INDEX(COND, '>=')
      IF (K .EQ. 0) THEN
         L = 1
         K = MAX(INDEX(COND, '<'), INDEX(COND, '>'), INDEX(COND, '='))
      END IF
      IF (K .LE. 1) CALL FAULT ('NO RELATION', *10)
      D = EXPR(COND(:K-1)) - EXPR(COND(K+L:))
      TRUTH = (INDEX(COND(K:K+L-1), '<') .GT. 0 .AND. D .LT. 0.0)
     1   .OR. (INDEX(COND(K:K+L-1), '>') .GT. 0 .AND. D .GT. 0.0)
     2   .OR. (INDEX(COND(K:K+L-1), '=') .GT. 0 .AND. D .EQ. 0.0)
   10 RETURN
      END
