C     BANDED AND TRIDIAGONAL SYSTEMS, AND CYCLIC ONES BY WAY OF THEM.
C
C     A band matrix with ML diagonals below and MU above the main one is
C     kept by diagonals: A(I,J) is found in ABD(ML+MU+1+I-J, J).  The
C     first ML rows of ABD are for the fill-in caused by pivoting.
C
      SUBROUTINE BDFACT (ABD, LDA, N, ML, MU, IPIV, INFO)
      INTEGER LDA, N, ML, MU, IPIV(N), INFO
      DOUBLE PRECISION ABD(LDA, N)
      INTEGER I, J, K, L, M, JU, LM, IROW
      DOUBLE PRECISION T, BIG
C
      M = ML + MU + 1
      INFO = 0
C        Clear the room for fill-in.
      DO 20 J = 1, N
         DO 10 I = 1, ML
            ABD(I, J) = 0.0D0
   10    CONTINUE
   20 CONTINUE
      JU = 0
      DO 90 K = 1, N
         LM = MIN (ML, N - K)
         L = 0
         BIG = ABS (ABD(M, K))
         DO 30 I = 1, LM
            IF (ABS (ABD(M + I, K)) .GT. BIG) THEN
               BIG = ABS (ABD(M + I, K))
               L = I
            END IF
   30    CONTINUE
         IPIV(K) = K + L
         IF (BIG .EQ. 0.0D0) THEN
            INFO = K
            GO TO 90
         END IF
         JU = MIN (MAX (JU, MU + IPIV(K)), N)
         IF (L .NE. 0) THEN
            T = ABD(M + L, K)
            ABD(M + L, K) = ABD(M, K)
            ABD(M, K) = T
         END IF
         DO 40 I = 1, LM
            ABD(M + I, K) = -ABD(M + I, K)/ABD(M, K)
   40    CONTINUE
         IROW = M
         DO 60 J = K + 1, JU
            IROW = IROW - 1
            T = ABD(IROW + L, J)
            IF (L .NE. 0) THEN
               ABD(IROW + L, J) = ABD(IROW, J)
               ABD(IROW, J) = T
            END IF
            DO 50 I = 1, LM
               ABD(IROW + I, J) = ABD(IROW + I, J) + T*ABD(M + I, K)
   50       CONTINUE
   60    CONTINUE
   90 CONTINUE
      END

      SUBROUTINE BDSOLV (ABD, LDA, N, ML, MU, IPIV, B)
      INTEGER LDA, N, ML, MU, IPIV(N), I, K, L, M
      DOUBLE PRECISION ABD(LDA, N), B(N), T
      M = ML + MU + 1
      DO 20 K = 1, N - 1
         L = IPIV(K)
         T = B(L)
         IF (L .NE. K) THEN
            B(L) = B(K)
            B(K) = T
         END IF
         DO 20 I = 1, MIN (ML, N - K)
            B(K + I) = B(K + I) + T*ABD(M + I, K)
   20 CONTINUE
      DO 30 K = N, 1, -1
         B(K) = B(K)/ABD(M, K)
         DO 30 I = 1, MIN (M - 1, K - 1)
            B(K - I) = B(K - I) - B(K)*ABD(M - I, K)
   30 CONTINUE
      END

      SUBROUTINE BDMULT (ABD, LDA, N, ML, MU, X, Y)
C        Y := A*X for a band matrix that has not been factored.
      INTEGER LDA, N, ML, MU
      DOUBLE PRECISION ABD(LDA, *), X(*), Y(*)
      INTEGER I, J, M
      M = ML + MU + 1
      DO 10 I = 1, N
   10 Y(I) = 0.0D0
      DO 20 J = 1, N
         DO 20 I = MAX (1, J - MU), MIN (N, J + ML)
   20 Y(I) = Y(I) + ABD(M + I - J, J)*X(J)
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
