C     BANDED AND TRIDIAGONAL SYSTEMS, AND CYCLIC ONES BY WAY OF THEM.
C
C     A band matrix with ML diagonals below and MU above the main one is
C     kept by diagonals: A(I,J) is found in BAND(ML+MU+1+I-J, J).  The
C     first ML rows of BAND are for the fill-in caused by pivoting.
C
      SUBROUTINE BDFACT (BAND, LDB, N, ML, MU, IPIV, INFO)
C        Elimination with exchange of rows, of which row K never reaches
C        beyond column K + ML + MU.
      INTEGER LDB, N, ML, MU, IPIV(N), INFO
      DOUBLE PRECISION BAND(LDB, N), T
      INTEGER I, J, K, L, LAST, LOW
C        The place of row I in column J
      INTEGER IR
      IR (I, J) = ML + MU + 1 + I - J
C
      INFO = 0
      DO 10 J = 1, N
         DO 10 I = 1, ML
            BAND(I, J) = 0.0D0
   10 CONTINUE
      DO 60 K = 1, N
         LOW = MIN (K + ML, N)
         LAST = MIN (K + ML + MU, N)
         L = K
         DO 20 I = K + 1, LOW
            IF (ABS (BAND(IR (I, K), K)) .GT. ABS (BAND(IR (L, K), K)))
     &         L = I
   20    CONTINUE
         IPIV(K) = L
         IF (BAND(IR (L, K), K) .EQ. 0.0D0) THEN
            INFO = K
            GO TO 60
         END IF
         IF (L .NE. K) THEN
            DO 30 J = K, LAST
               T = BAND(IR (L, J), J)
               BAND(IR (L, J), J) = BAND(IR (K, J), J)
               BAND(IR (K, J), J) = T
   30       CONTINUE
         END IF
         DO 50 I = K + 1, LOW
            T = BAND(IR (I, K), K)/BAND(IR (K, K), K)
            BAND(IR (I, K), K) = T
            IF (T .EQ. 0.0D0) GO TO 50
            DO 40 J = K + 1, LAST
               BAND(IR (I, J), J) = BAND(IR (I, J), J)
     &                            - T*BAND(IR (K, J), J)
   40       CONTINUE
   50    CONTINUE
   60 CONTINUE
      END

      SUBROUTINE BDSOLV (BAND, LDB, N, ML, MU, IPIV, B)
      INTEGER LDB, N, ML, MU, IPIV(N), I, J, M
      DOUBLE PRECISION BAND(LDB, N), B(N), T
      M = ML + MU + 1
      DO 20 J = 1, N
         T = B(IPIV(J))
         B(IPIV(J)) = B(J)
         B(J) = T
         DO 10 I = J + 1, MIN (N, J + ML)
            B(I) = B(I) - BAND(M + I - J, J)*T
   10    CONTINUE
   20 CONTINUE
      DO 40 I = N, 1, -1
         DO 30 J = I + 1, MIN (N, I + M - 1)
            B(I) = B(I) - BAND(M + I - J, J)*B(J)
   30    CONTINUE
         B(I) = B(I)/BAND(M, I)
   40 CONTINUE
      END

      SUBROUTINE BDMULT (BAND, LDB, N, ML, MU, X, Y)
C        Y := A*X for a band matrix that has not been factored.
      INTEGER LDB, N, ML, MU
      DOUBLE PRECISION BAND(LDB, *), X(*), Y(*)
      INTEGER I, J, M
      M = ML + MU + 1
      DO 10 I = 1, N
   10 Y(I) = 0.0D0
      DO 20 J = 1, N
         DO 20 I = MAX (1, J - MU), MIN (N, J + ML)
   20 Y(I) = Y(I) + BAND(M + I - J, J)*X(J)
      RETURN
      END

      SUBROUTINE TRIDI (SUB, DIAG, SUP, B, N, *)
C
C        The tridiagonal system
C           SUB(I)*X(I-1) + DIAG(I)*X(I) + SUP(I)*X(I+1) = B(I)
C        for matrices with dominant diagonals.  DIAG and B are replaced,
C        B by the solution.  Alternate return if a pivot vanishes.
C
      INTEGER N, I
      DOUBLE PRECISION SUB(N), DIAG(N), SUP(N), B(N), R
      DO 10 I = 2, N
         IF (DIAG(I-1) .EQ. 0.0D0) RETURN 1
         R = SUB(I)/DIAG(I-1)
         DIAG(I) = DIAG(I) - R*SUP(I-1)
         B(I) = B(I) - R*B(I-1)
   10 CONTINUE
      IF (DIAG(N) .EQ. 0.0D0) RETURN 1
      B(N) = B(N)/DIAG(N)
      DO 20 I = N - 1, 1, -1
         B(I) = (B(I) - SUP(I)*B(I+1))/DIAG(I)
   20 CONTINUE
      RETURN
      END

      SUBROUTINE CYCTRI (SUB, DIAG, SUP, B, N, WORK, *)
C
C        The same with corners: X(0) is X(N), and X(N+1) is X(1).  The
C        corners are split off as a matrix of rank one, whose effect is
C        made good after two tridiagonal systems have been solved.
C
      INTEGER N
      DOUBLE PRECISION SUB(N), DIAG(N), SUP(N), B(N), WORK(N, 2)
      INTEGER I
      DOUBLE PRECISION GAMMA, FACT
      GAMMA = -DIAG(1)
      DO 10 I = 1, N
         WORK(I, 1) = DIAG(I)
         WORK(I, 2) = 0.0D0
   10 CONTINUE
      WORK(1, 1) = DIAG(1) - GAMMA
      WORK(N, 1) = DIAG(N) - SUP(N)*SUB(1)/GAMMA
      WORK(1, 2) = GAMMA
      WORK(N, 2) = SUP(N)
      CALL TRIDI (SUB, WORK, SUP, B, N, *50)
      DO 20 I = 1, N
         WORK(I, 1) = DIAG(I)
   20 CONTINUE
      WORK(1, 1) = DIAG(1) - GAMMA
      WORK(N, 1) = DIAG(N) - SUP(N)*SUB(1)/GAMMA
      CALL TRIDI (SUB, WORK, SUP, WORK(1, 2), N, *50)
      FACT = (B(1) + SUB(1)*B(N)/GAMMA)/
     &       (1D0 + WORK(1, 2) + SUB(1)*WORK(N, 2)/GAMMA)
      DO 30 I = 1, N
         B(I) = B(I) - FACT*WORK(I, 2)
   30 CONTINUE
      RETURN
   50 RETURN 1
      END
