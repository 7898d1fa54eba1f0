C     SOLUTION OF DENSE LINEAR SYSTEMS
C
C     THE MATRIX IS FACTORED BY GAUSSIAN ELIMINATION WITH PARTIAL
C     PIVOTING, THE SYSTEM IS SOLVED WITH THE FACTORS, AND THE ERROR
C     OF THE SOLUTION IS MEASURED ON A MATRIX WITH KNOWN SOLUTION.
C
      PROGRAM GAUSS
      INTEGER NMAX
      PARAMETER (NMAX = 100)
      DOUBLE PRECISION A(NMAX, NMAX), B(NMAX), X(NMAX)
      DOUBLE PRECISION ERRMAX, RCOND
      INTEGER IPVT(NMAX)
      INTEGER I, N, INFO
C
      DO 30 N = 10, NMAX, 30
         CALL MATGEN(A, NMAX, N, B, X)
         CALL FACTOR(A, NMAX, N, IPVT, RCOND, INFO)
         IF (INFO .NE. 0) THEN
            WRITE (*, 900) N, INFO
            STOP 1
         END IF
         CALL SOLVE(A, NMAX, N, IPVT, B)
         ERRMAX = 0.0D0
         DO 20 I = 1, N
            ERRMAX = MAX(ERRMAX, ABS(B(I) - X(I)))
   20    CONTINUE
         WRITE (*, 910) N, RCOND, ERRMAX
   30 CONTINUE
C
  900 FORMAT (' ORDER', I5, ': PIVOT', I5, ' IS ZERO')
  910 FORMAT (' ORDER', I5, '  RCOND', 1PE12.4, '  ERROR', 1PE12.4)
      END
C
C     A MATRIX THAT IS DIAGONALLY DOMINANT, A SOLUTION AND THE RIGHT
C     HAND SIDE THAT BELONGS TO IT.
C
      SUBROUTINE MATGEN(A, LDA, N, B, X)
      INTEGER LDA, N
      DOUBLE PRECISION A(LDA, N), B(N), X(N)
      INTEGER I, J, INIT
      DOUBLE PRECISION RANDOM
      EXTERNAL RANDOM
C
      INIT = 1325
      DO 20 J = 1, N
         DO 10 I = 1, N
            A(I, J) = RANDOM(INIT) - 0.5D0
   10    CONTINUE
         A(J, J) = A(J, J) + DBLE(N)
         X(J) = DBLE(MOD(J, 7)) - 3.0D0
   20 CONTINUE
      DO 30 I = 1, N
         B(I) = 0.0D0
   30 CONTINUE
      DO 50 J = 1, N
         DO 40 I = 1, N
            B(I) = B(I) + A(I, J) * X(J)
   40    CONTINUE
   50 CONTINUE
      RETURN
      END
C
C     UNIFORM NUMBERS IN (0, 1) BY A CONGRUENTIAL GENERATOR.
C
      DOUBLE PRECISION FUNCTION RANDOM(INIT)
      INTEGER INIT
C
      INIT = MOD(3125 * INIT, 65536)
      RANDOM = DBLE(INIT) / 65536.0D0
      RETURN
      END
C
C     FACTORS A INTO L AND U, IN PLACE. IPVT(K) IS THE ROW THAT WAS
C     EXCHANGED WITH ROW K; INFO IS THE INDEX OF A ZERO PIVOT, OR 0.
C     RCOND IS THE RATIO OF THE SMALLEST PIVOT TO THE LARGEST.
C
      SUBROUTINE FACTOR(A, LDA, N, IPVT, RCOND, INFO)
      INTEGER LDA, N, IPVT(N), INFO
      DOUBLE PRECISION A(LDA, N), RCOND
      INTEGER I, J, K, L
      DOUBLE PRECISION T, PMIN, PMAX
C
      INFO = 0
      PMIN = 0.0D0
      PMAX = 0.0D0
      DO 60 K = 1, N
C
C        FIND THE PIVOT
C
         L = K
         DO 10 I = K + 1, N
            IF (ABS(A(I, K)) .GT. ABS(A(L, K))) L = I
   10    CONTINUE
         IPVT(K) = L
         IF (A(L, K) .EQ. 0.0D0) GO TO 70
         IF (K .EQ. 1) THEN
            PMIN = ABS(A(L, K))
            PMAX = PMIN
         ELSE
            PMIN = MIN(PMIN, ABS(A(L, K)))
            PMAX = MAX(PMAX, ABS(A(L, K)))
         END IF
C
C        EXCHANGE THE ROWS AND COMPUTE THE MULTIPLIERS
C
         IF (L .NE. K) THEN
            DO 20 J = 1, N
               T = A(L, J)
               A(L, J) = A(K, J)
               A(K, J) = T
   20       CONTINUE
         END IF
         T = -1.0D0 / A(K, K)
         DO 30 I = K + 1, N
            A(I, K) = T * A(I, K)
   30    CONTINUE
C
C        ELIMINATE BY COLUMNS
C
         DO 50 J = K + 1, N
            T = A(K, J)
            DO 40 I = K + 1, N
               A(I, J) = A(I, J) + T * A(I, K)
   40       CONTINUE
   50    CONTINUE
   60 CONTINUE
      RCOND = PMIN / PMAX
      RETURN
   70 INFO = K
      RCOND = 0.0D0
      RETURN
      END
C
C     SOLVES A * X = B WITH THE FACTORS OF A; B BECOMES X.
C
      SUBROUTINE SOLVE(A, LDA, N, IPVT, B)
      INTEGER LDA, N, IPVT(N)
      DOUBLE PRECISION A(LDA, N), B(N)
      INTEGER I, K, L
      DOUBLE PRECISION T
C
      DO 10 K = 1, N
         L = IPVT(K)
         IF (L .NE. K) THEN
            T = B(L)
            B(L) = B(K)
            B(K) = T
         END IF
   10 CONTINUE
      DO 30 K = 1, N - 1
         DO 20 I = K + 1, N
            B(I) = B(I) + B(K) * A(I, K)
   20    CONTINUE
   30 CONTINUE
      DO 50 K = N, 1, -1
         B(K) = B(K) / A(K, K)
         DO 40 I = 1, K - 1
            B(I) = B(I) - B(K) * A(I, K)
   40    CONTINUE
   50 CONTINUE
      RETURN
      END
