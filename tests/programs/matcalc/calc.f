C        A calculator for matrices.
C
C     It reads lines such as
C
C        LET A = 2 X 2 : 1 2 3 4
C        MUL C = A B
C        SHOW C
C
C     from a list of its own, and does what they say.
C
      PROGRAM CALC
      INTEGER NLINES
      PARAMETER (NLINES = 30)
      CHARACTER*60 LINES(NLINES), MESSAG
      INTEGER I, NBAD
      DATA (LINES(I), I = 1, 10) /
     1   '! the store is empty at first',
     2   'LET A = 3 X 3 : 4 1 0  1 3 1  0 1 2',
     3   'LET B = 3 X 1 : 5 5 3',
     4   'SOLVE X = A B',
     5   'SHOW X',
     6   'MUL C = A X',
     7   'SUB C = C B',
     8   'NORM C',
     9   'TRN T = A',
     A   'ADD S = A T'/
      DATA (LINES(I), I = 11, 21)
     1  /'SHOW S', 'DET S', 'DROP A', 'let i = 2 x 2 : 0 1 1 1',
     2   'mul j = i i', 'mul i = j j', 'mul j = i i', 'show j',
     3   'PACK', 'LIST', 'SHOW A'/
      DATA (LINES(I), I = 22, NLINES) /'MUL Q = S B C', 'MUL Q = B B',
     1   'LET Z = 2 X 2 : 1 2 3', 'LET Z = 0 X 2 :', 'LET Z = 2 BY 2',
     2   'SOLVE Z = J Y', 'LET R = 1 X 2 : 1.5E0 one', 'FORGET', 'END'/
      NBAD = 0
      CALL EMPTY
      DO 20 I = 1, NLINES
         WRITE (*, 900) LINES(I)
         CALL OBEY (LINES(I), MESSAG, *10, *30)
         GO TO 20
   10    NBAD = NBAD + 1
         WRITE (*, 910) MESSAG
   20 CONTINUE
   30 WRITE (*, 920) NBAD
  900 FORMAT ('> ', A)
  910 FORMAT ('    ?', 1X, A)
  920 FORMAT (1X, I2, ' lines were not understood')
      END

      SUBROUTINE OBEY (LINE, MESSAG, *, *)
C        One line.  First return: an error, explained in MESSAG; second:
C        the end.
      CHARACTER*(*) LINE, MESSAG
      INCLUDE 'store.inc'
      INTEGER MAXWRD, NVERBS
      PARAMETER (MAXWRD = 30, NVERBS = 12)
      CHARACTER*12 WORDS(MAXWRD)
      CHARACTER*5 VERBS(NVERBS)
      INTEGER NWORDS, IVERB, IA, IB, IC, I, J, K, M, N, NREAD
      INTEGER NARGS(NVERBS), LOOKUP, NEWMAT, IROW
      DOUBLE PRECISION VALUE, DETERM, SUM
      LOGICAL SAMESH
      EXTERNAL LOOKUP, NEWMAT, DETERM
      SAVE VERBS, NARGS
      DATA VERBS /'LET', 'SHOW', 'MUL', 'ADD', 'SUB', 'TRN', 'SOLVE',
     *            'DET', 'NORM', 'DROP', 'LIST', 'PACK'/
      DATA NARGS /-1, 1, 2, 2, 2, 1, 2, 4*1, 0/
      SAMESH (I, J) = NROWS(I) .EQ. NROWS(J) .AND.
     *                NCOLS(I) .EQ. NCOLS(J)
C
      IF (LINE(1:1) .EQ. '!' .OR. LINE .EQ. ' ') RETURN
      CALL SPLIT (LINE, WORDS, MAXWRD, NWORDS)
      IF (WORDS(1) .EQ. 'END') RETURN 2
      DO 10 IVERB = 1, NVERBS
         IF (WORDS(1) .EQ. VERBS(IVERB)) GO TO 20
   10 CONTINUE
      MESSAG = 'no such command: ' // WORDS(1)
      RETURN 1
C
   20 GO TO (100, 50, 30, 30, 30, 30, 30, 50, 50, 50, 600, 700), IVERB
C        Result and operands: VERB C = A B
   30 IF (NWORDS .NE. 3 + NARGS(IVERB)) GO TO 910
      IF (WORDS(3) .NE. '=') GO TO 910
      IA = LOOKUP (WORDS(4))
      IF (IA .EQ. 0) GO TO 920
      IB = IA
      IF (NARGS(IVERB) .EQ. 2) IB = LOOKUP (WORDS(5))
      IF (IB .EQ. 0) GO TO 920
      GO TO (999, 999, 200, 300, 300, 400, 500) IVERB
C        One matrix: VERB A
   50 IF (NWORDS .NE. 2) GO TO 910
      IA = LOOKUP (WORDS(2))
      IF (IA .EQ. 0) GO TO 920
      GO TO (999, 110, 999, 999, 999, 999, 999, 120, 130, 140), IVERB
C
C        LET A = 2 X 2 : 1 2 3 4
  100 IF (NWORDS .LT. 7) GO TO 910
      IF (WORDS(3) .NE. '=' .OR. WORDS(5) .NE. 'X' .OR.
     *    WORDS(7) .NE. ':') GO TO 910
      READ (WORDS(4), '(BN, I12)', ERR=930) M
      READ (WORDS(6), '(BN, I12)', ERR=930) N
      IF (M .LT. 1 .OR. N .LT. 1) GO TO 930
      NREAD = NWORDS - 7
      IF (NREAD .NE. M*N) GO TO 940
      IA = NEWMAT (WORDS(2), M, N)
      IF (IA .EQ. 0) GO TO 950
      K = 7
      DO 105 I = 1, M
         DO 105 J = 1, N
            K = K + 1
            READ (WORDS(K), '(BN, F12.0)', ERR=930) VALUE
            STORE(IPLACE(IA) + (J - 1)*M + I) = VALUE
  105 CONTINUE
      RETURN
  110 CALL SHOW (IA)
      RETURN
  120 IF (NROWS(IA) .NE. NCOLS(IA)) GO TO 960
      WRITE (*, '(4X, ''determinant'', 1PG14.6)')
     *   DETERM (STORE(IPLACE(IA) + 1), NROWS(IA))
      RETURN
  130 SUM = 0D0
      DO 135 K = 1, NROWS(IA)*NCOLS(IA)
         SUM = SUM + STORE(IPLACE(IA) + K)**2
  135 CONTINUE
      WRITE (*, '(4X, ''norm'', F10.6)') SQRT (SUM)
      RETURN
  140 NROWS(IA) = -NROWS(IA)
      RETURN
C
C        MUL
  200 IF (NCOLS(IA) .NE. NROWS(IB)) GO TO 960
      IC = NEWMAT ('%', NROWS(IA), NCOLS(IB))
      IF (IC .EQ. 0) GO TO 950
      CALL TIMES (STORE(IPLACE(IA) + 1), STORE(IPLACE(IB) + 1),
     *            STORE(IPLACE(IC) + 1), NROWS(IA), NCOLS(IA),
     *            NCOLS(IB))
      GO TO 990
C        ADD and SUB
  300 IF (.NOT. SAMESH (IA, IB)) GO TO 960
      IC = NEWMAT ('%', NROWS(IA), NCOLS(IA))
      IF (IC .EQ. 0) GO TO 950
      DO 310 K = 1, NROWS(IA)*NCOLS(IA)
         VALUE = STORE(IPLACE(IB) + K)
         IF (VERBS(IVERB) .EQ. 'SUB') VALUE = -VALUE
         STORE(IPLACE(IC) + K) = STORE(IPLACE(IA) + K) + VALUE
  310 CONTINUE
      GO TO 990
C        TRN
  400 IC = NEWMAT ('%', NCOLS(IA), NROWS(IA))
      IF (IC .EQ. 0) GO TO 950
      DO 420 J = 1, NCOLS(IA)
         DO 410 I = 1, NROWS(IA)
            IROW = IPLACE(IC) + (I - 1)*NCOLS(IA)
            STORE(IROW + J) = STORE(IPLACE(IA) + (J-1)*NROWS(IA) + I)
  410    CONTINUE
  420 CONTINUE
      GO TO 990
C        SOLVE
  500 IF (NROWS(IA) .NE. NCOLS(IA) .OR. NROWS(IB) .NE. NROWS(IA))
     *   GO TO 960
      IC = NEWMAT ('%', NROWS(IB), NCOLS(IB))
      IF (IC .EQ. 0) GO TO 950
      I = NEWMAT ('%%', NROWS(IA), NROWS(IA))
      IF (I .EQ. 0) GO TO 950
      CALL COPY (STORE(IPLACE(IB)+1), STORE(IPLACE(IC)+1),
     *           NROWS(IB)*NCOLS(IB))
      CALL COPY (STORE(IPLACE(IA)+1), STORE(IPLACE(I)+1),
     *           NROWS(IA)**2)
      NROWS(I) = -NROWS(I)
      CALL GAUSS (STORE(IPLACE(I)+1), NCOLS(I), STORE(IPLACE(IC)+1),
     *            NCOLS(IC), *970)
      GO TO 990
  600 CALL LIST
      RETURN
  700 CALL PACK
      RETURN
C
  910 MESSAG = 'the command is not complete'
      RETURN 1
  920 MESSAG = 'no such matrix'
      RETURN 1
  930 MESSAG = 'not a proper number'
      RETURN 1
  940 WRITE (MESSAG, '(I4, '' elements are needed'')') M*N
      RETURN 1
  950 MESSAG = 'the store is full'
      RETURN 1
  960 MESSAG = 'the shapes do not fit'
      RETURN 1
  970 MESSAG = 'singular'
      NROWS(IC) = -NROWS(IC)
      RETURN 1
C        The result gets its name.
  990 CALL NAMING (IC, WORDS(2))
      RETURN
  999 STOP 'OBEY'
      END

      SUBROUTINE SPLIT (LINE, WORDS, MAXWRD, NWORDS)
C        The words of a line in capital letters; '=' and ':' are words
C        though no blanks are around them.
      CHARACTER*(*) LINE, WORDS(*)
      INTEGER MAXWRD, NWORDS, I, L, KIND, LAST
      CHARACTER C, CAPITL
      EXTERNAL CAPITL
      NWORDS = 0
      LAST = 0
      L = 0
      DO 10 I = 1, LEN (LINE)
         C = CAPITL (LINE(I:I))
         IF (C .EQ. ' ') THEN
            KIND = 0
         ELSE IF (INDEX ('=:', C) .NE. 0) THEN
            KIND = 1
         ELSE
            KIND = 2
         END IF
         IF (KIND .EQ. 0) GO TO 9
         IF (KIND .EQ. 1 .OR. LAST .NE. 2) THEN
            IF (NWORDS .EQ. MAXWRD) RETURN
            NWORDS = NWORDS + 1
            WORDS(NWORDS) = ' '
            L = 0
         END IF
         L = L + 1
         IF (L .LE. LEN (WORDS(1))) WORDS(NWORDS)(L:L) = C
    9    LAST = KIND
   10 CONTINUE
      END

      CHARACTER FUNCTION CAPITL (C)
      CHARACTER C
      CHARACTER*26 SMALL, LARGE
      PARAMETER (SMALL = 'abcdefghijklmnopqrstuvwxyz',
     *           LARGE = 'ABCDEFGHIJKLMNOPQRSTUVWXYZ')
      INTEGER K
      K = INDEX (SMALL, C)
      CAPITL = C
      IF (K .GT. 0) CAPITL = LARGE(K:K)
      END
