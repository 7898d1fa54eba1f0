C***********************************************************************
C*    SPARSE MATRICES BY ROWS.                                         *
C*                                                                     *
C*    A matrix of N rows is held in three arrays: the nonzero elements *
C*    of row I are VAL(K), K = IROW(I), ..., IROW(I+1) - 1, and they   *
C*    stand in the columns ICOL(K), in ascending order.                *
C***********************************************************************
      SUBROUTINE SPBLD (N, NT, IT, JT, T, MAXNZ, IROW, ICOL, VAL, IER)
C
C     BUILD A MATRIX FROM NT TRIPLETS (IT, JT, T) IN ANY ORDER.  THOSE
C     FOR THE SAME ELEMENT ARE ADDED UP.
C
C     IER = 0   GOOD
C           1   A SUBSCRIPT OUT OF RANGE
C           2   MORE THAN MAXNZ ELEMENTS
C
      IMPLICIT INTEGER (I - N), DOUBLE PRECISION (A - H, O - Z)
      DIMENSION IT(NT), JT(NT), T(NT), IROW(N + 1), ICOL(MAXNZ),
     *          VAL(MAXNZ)
      IER = 1
      DO 10 I = 1, N + 1
         IROW(I) = 0
   10 CONTINUE
      DO 20 L = 1, NT
         IF (IT(L) .LT. 1 .OR. IT(L) .GT. N) RETURN
         IF (JT(L) .LT. 1 .OR. JT(L) .GT. N) RETURN
         IROW(IT(L)) = IROW(IT(L)) + 1
   20 CONTINUE
      IER = 2
      IF (NT .GT. MAXNZ) RETURN
C     FROM THE COUNTS TO THE END OF EACH ROW; FILLING MOVES IT TO THE
C     BEGINNING.
      DO 30 I = 2, N + 1
         IROW(I) = IROW(I) + IROW(I - 1)
   30 CONTINUE
      DO 40 L = NT, 1, -1
         K = IROW(IT(L))
         IROW(IT(L)) = K - 1
         ICOL(K) = JT(L)
         VAL(K) = T(L)
   40 CONTINUE
      DO 50 I = 1, N + 1
         IROW(I) = IROW(I) + 1
   50 CONTINUE
C     SORT EACH ROW BY INSERTION, AND CLOSE THE GAPS THAT ARE LEFT BY
C     ELEMENTS WHICH MEET.
      KNEW = 0
      KBEG = 1
      DO 90 I = 1, N
         KEND = IROW(I + 1) - 1
         KFIRST = KNEW + 1
         DO 80 K = KBEG, KEND
            J = ICOL(K)
            V = VAL(K)
            L = KNEW
   60       IF (L .LT. KFIRST) GO TO 70
            IF (ICOL(L) .LT. J) GO TO 70
            L = L - 1
            GO TO 60
C           HERE L IS THE LAST PLACE WITH A SMALLER COLUMN
   70       IF (L .LT. KNEW) THEN
               IF (ICOL(L + 1) .EQ. J) THEN
                  VAL(L + 1) = VAL(L + 1) + V
                  GO TO 80
               END IF
            END IF
            DO 75 M = KNEW, L + 1, -1
               ICOL(M + 1) = ICOL(M)
               VAL(M + 1) = VAL(M)
   75       CONTINUE
            ICOL(L + 1) = J
            VAL(L + 1) = V
            KNEW = KNEW + 1
   80    CONTINUE
         IROW(I) = KFIRST
         KBEG = KEND + 1
   90 CONTINUE
      IROW(N + 1) = KNEW + 1
      IER = 0
      RETURN
      END
C
      SUBROUTINE SPMUL (N, IROW, ICOL, VAL, X, Y)
C     Y := A*X;  SPTMUL: Y := A'*X.
      INTEGER N, IROW(*), ICOL(*)
      DOUBLE PRECISION VAL(*), X(*), Y(*), S
      DO 20 I = 1, N
         S = 0.0D0
         DO 10 K = IROW(I), IROW(I + 1) - 1
            S = S + VAL(K)*X(ICOL(K))
   10    CONTINUE
         Y(I) = S
   20 CONTINUE
      RETURN
C
      ENTRY SPTMUL (N, IROW, ICOL, VAL, X, Y)
      DO 30 I = 1, N
         Y(I) = 0.0D0
   30 CONTINUE
      DO 50 I = 1, N
         DO 40 K = IROW(I), IROW(I + 1) - 1
            Y(ICOL(K)) = Y(ICOL(K)) + VAL(K)*X(I)
   40    CONTINUE
   50 CONTINUE
      RETURN
      END
C
      SUBROUTINE SPTRAN (N, IROW, ICOL, VAL, JROW, JCOL, W)
C     THE TRANSPOSED MATRIX; ITS ROWS COME OUT IN ORDER BY THEMSELVES.
      INTEGER N, IROW(*), ICOL(*), JROW(*), JCOL(*), I, J, K, L
      DOUBLE PRECISION VAL(*), W(*)
      DO 10 I = 1, N + 1
   10 JROW(I) = 0
      DO 20 K = 1, IROW(N + 1) - 1
         JROW(ICOL(K) + 1) = JROW(ICOL(K) + 1) + 1
   20 CONTINUE
      JROW(1) = 1
      DO 30 I = 1, N
   30 JROW(I + 1) = JROW(I + 1) + JROW(I)
      DO 50 I = 1, N
         DO 40 K = IROW(I), IROW(I + 1) - 1
            J = ICOL(K)
            L = JROW(J)
            JROW(J) = L + 1
            JCOL(L) = I
            W(L) = VAL(K)
   40    CONTINUE
   50 CONTINUE
      DO 60 I = N, 1, -1
   60 JROW(I + 1) = JROW(I)
      JROW(1) = 1
      END
C
      DOUBLE PRECISION FUNCTION SPGET (N, IROW, ICOL, VAL, I, J)
C     ELEMENT (I, J), FOUND BY BISECTION.
      INTEGER N, IROW(*), ICOL(*), I, J, LO, HI, MID
      DOUBLE PRECISION VAL(*)
      SPGET = 0D0
      IF (I .GT. N) RETURN
      LO = IROW(I)
      HI = IROW(I + 1) - 1
   10 IF (LO .GT. HI) RETURN
      MID = (LO + HI)/2
      IF (ICOL(MID) - J) 20, 30, 40
   20 LO = MID + 1
      GO TO 10
   30 SPGET = VAL(MID)
      RETURN
   40 HI = MID - 1
      GO TO 10
      END
C
      SUBROUTINE SPSHOW (N, IROW, ICOL, VAL, LUN)
C     DRAW THE PATTERN, WITH + AND - FOR THE SIGNS OF THE ELEMENTS.
      INTEGER N, IROW(*), ICOL(*), LUN
      DOUBLE PRECISION VAL(*)
      CHARACTER*100 LINE
      INTEGER I, K
      DO 20 I = 1, N
         LINE(1:N) = ' '
         DO 10 K = IROW(I), IROW(I + 1) - 1
            IF (VAL(K) .GE. 0D0) LINE(ICOL(K):ICOL(K)) = '+'
            IF (VAL(K) .LT. 0D0) LINE(ICOL(K):ICOL(K)) = '-'
   10    CONTINUE
         WRITE (LUN, '(1X, I4, 1X, ''|'', A, ''|'')') I, LINE(1:N)
   20 CONTINUE
      END
