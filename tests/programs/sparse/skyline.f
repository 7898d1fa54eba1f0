C     SYMMETRIC MATRICES BY SKYLINE: OF EACH COLUMN, THE PART FROM ITS
C     FIRST NONZERO ELEMENT DOWN TO THE DIAGONAL.  THE DIAGONAL ELEMENT
C     OF COLUMN J IS S(LD(J)), THOSE ABOVE IT PRECEDE IT; LD(0) = 0.
C
      SUBROUTINE SKYLD (N, IROW, ICOL, VAL, MAXS, LD, S, *)
C     TAKE OVER THE UPPER TRIANGLE OF A MATRIX KEPT BY ROWS.
      INTEGER N, IROW(*), ICOL(*), MAXS, LD(0:N)
      DOUBLE PRECISION VAL(*), S(*)
      INTEGER I, J, K
      LD(0) = 0
      DO 10 J = 1, N
   10 LD(J) = 1
      DO 30 I = 1, N
         DO 20 K = IROW(I), IROW(I + 1) - 1
            J = ICOL(K)
            IF (J .GE. I) LD(J) = MAX (LD(J), J - I + 1)
   20    CONTINUE
   30 CONTINUE
      DO 40 J = 1, N
         LD(J) = LD(J) + LD(J - 1)
   40 CONTINUE
      IF (LD(N) .GT. MAXS) RETURN 1
      DO 50 K = 1, LD(N)
   50 S(K) = 0D0
      DO 70 I = 1, N
         DO 60 K = IROW(I), IROW(I + 1) - 1
            J = ICOL(K)
            IF (J .GE. I) S(LD(J) - J + I) = VAL(K)
   60    CONTINUE
   70 CONTINUE
      END
C
      SUBROUTINE SKYFAC (N, LD, S, NNEG, *)
C     S = U'*D*U; NNEG IS THE NUMBER OF NEGATIVE PIVOTS.
      INTEGER N, LD(0:N), NNEG, I, J, K, IFIRST, JFIRST, KFIRST
      DOUBLE PRECISION S(*), T, U
C     THE ROW OF THE FIRST ELEMENT OF A COLUMN
      INTEGER FIRST, JJ
      FIRST (JJ) = JJ - (LD(JJ) - LD(JJ - 1)) + 1
      NNEG = 0
      DO 50 J = 1, N
         JFIRST = FIRST (J)
         DO 20 I = JFIRST + 1, J - 1
            IFIRST = FIRST (I)
            KFIRST = MAX (IFIRST, JFIRST)
            T = S(LD(J) - J + I)
            DO 10 K = KFIRST, I - 1
               T = T - S(LD(I) - I + K)*S(LD(J) - J + K)
   10       CONTINUE
            S(LD(J) - J + I) = T
   20    CONTINUE
         T = S(LD(J))
         DO 30 K = JFIRST, J - 1
            U = S(LD(J) - J + K)/S(LD(K))
            T = T - U*S(LD(J) - J + K)
            S(LD(J) - J + K) = U
   30    CONTINUE
         S(LD(J)) = T
         IF (T) 40, 60, 50
   40    NNEG = NNEG + 1
   50 CONTINUE
      RETURN
   60 NNEG = J
      RETURN 1
      END
C
      SUBROUTINE SKYSOL (N, LD, S, B)
      INTEGER N, LD(0:*), J, K, L
      DOUBLE PRECISION S(*), B(*)
      DO 20 J = 2, N
         L = LD(J) - J
         DO 10 K = LD(J - 1) - L + 1, J - 1
            B(J) = B(J) - S(L + K)*B(K)
   10    CONTINUE
   20 CONTINUE
      DO 30 J = 1, N
         B(J) = B(J)/S(LD(J))
   30 CONTINUE
      DO 50 J = N, 2, -1
         L = LD(J) - J
         DO 40 K = LD(J - 1) - L + 1, J - 1
            B(K) = B(K) - S(L + K)*B(J)
   40    CONTINUE
   50 CONTINUE
      END
C
      SUBROUTINE REORD (N, IROW, ICOL, NEW, LEVEL)
C
C     NUMBER THE UNKNOWNS ANEW FROM NEIGHBOUR TO NEIGHBOUR, BACKWARDS,
C     WHICH KEEPS THE SKYLINE LOW.  NEW(I) IS THE NEW NUMBER OF I.
C     LEVEL IS A WORK ARRAY: THE QUEUE.
C
      INTEGER N, IROW(*), ICOL(*), NEW(N), LEVEL(N)
      INTEGER I, J, K, L, HEAD, TAIL, START, DEG, T
      DEG (I) = IROW(I + 1) - IROW(I)
      DO 10 I = 1, N
   10 NEW(I) = 0
      HEAD = 1
      TAIL = 0
   20 IF (TAIL .EQ. N) GO TO 80
C     A PART THAT WAS NOT REACHED: BEGIN WHERE FEWEST NEIGHBOURS ARE
      START = 0
      DO 30 I = 1, N
         IF (NEW(I) .NE. 0) GO TO 30
         IF (START .EQ. 0) THEN
            START = I
         ELSE IF (DEG (I) .LT. DEG (START)) THEN
            START = I
         END IF
   30 CONTINUE
      TAIL = TAIL + 1
      LEVEL(TAIL) = START
      NEW(START) = -1
   40 IF (HEAD .GT. TAIL) GO TO 20
      I = LEVEL(HEAD)
      HEAD = HEAD + 1
      L = TAIL + 1
      DO 50 K = IROW(I), IROW(I + 1) - 1
         J = ICOL(K)
         IF (NEW(J) .EQ. 0) THEN
            TAIL = TAIL + 1
            LEVEL(TAIL) = J
            NEW(J) = -1
         END IF
   50 CONTINUE
C     THOSE THAT CAME IN, BY NUMBER OF THEIR NEIGHBOURS
      DO 70 J = L + 1, TAIL
         DO 60 K = J, L + 1, -1
            IF (DEG (LEVEL(K)) .GE. DEG (LEVEL(K - 1))) GO TO 70
            T = LEVEL(K)
            LEVEL(K) = LEVEL(K - 1)
            LEVEL(K - 1) = T
   60    CONTINUE
   70 CONTINUE
      GO TO 40
   80 DO 90 I = 1, N
         NEW(LEVEL(I)) = N + 1 - I
   90 CONTINUE
      END
