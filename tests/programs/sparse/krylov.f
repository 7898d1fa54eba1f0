C***********************************************************************
C*    ITERATIVE SOLVERS.                                               *
C*                                                                     *
C*    The matrix is not seen by the solvers: they call MULT (X, Y) for *
C*    Y := A*X and PRECON (R, Z) for Z := M**(-1)*R.                   *
C***********************************************************************
      SUBROUTINE CONGRD (N, MULT, PRECON, B, X, TOL, MAXIT, WORK, ITER,
     *                   RES)
C
C     CONJUGATE GRADIENTS FOR A SYMMETRIC POSITIVE DEFINITE MATRIX.
C     WORK HAS 4*N ELEMENTS.  ITER = -1 IF A DIRECTION OF NEGATIVE
C     CURVATURE WAS MET.
C
      INTEGER N, MAXIT, ITER
      DOUBLE PRECISION B(N), X(N), TOL, WORK(N, 4), RES
      EXTERNAL MULT, PRECON
      INTEGER R, Z, P, Q
      PARAMETER (R = 1, Z = 2, P = 3, Q = 4)
      DOUBLE PRECISION RHO, OLD, ALPHA, BETA, BNORM, DOT
      EXTERNAL DOT
C
      BNORM = SQRT (DOT (N, B, B))
      IF (BNORM .EQ. 0D0) BNORM = 1D0
      CALL MULT (X, WORK(1, R))
      DO 10 I = 1, N
         WORK(I, R) = B(I) - WORK(I, R)
   10 CONTINUE
      OLD = 1D0
      DO 40 ITER = 0, MAXIT
         RES = SQRT (DOT (N, WORK(1, R), WORK(1, R)))/BNORM
         IF (RES .LE. TOL) RETURN
         CALL PRECON (WORK(1, R), WORK(1, Z))
         RHO = DOT (N, WORK(1, R), WORK(1, Z))
         IF (ITER .EQ. 0) THEN
            BETA = 0D0
         ELSE
            BETA = RHO/OLD
         END IF
         DO 20 I = 1, N
            IF (ITER .EQ. 0) WORK(I, P) = 0D0
            WORK(I, P) = WORK(I, Z) + BETA*WORK(I, P)
   20    CONTINUE
         CALL MULT (WORK(1, P), WORK(1, Q))
         ALPHA = DOT (N, WORK(1, P), WORK(1, Q))
         IF (ALPHA .LE. 0D0) GO TO 90
         ALPHA = RHO/ALPHA
         DO 30 I = 1, N
            X(I) = X(I) + ALPHA*WORK(I, P)
            WORK(I, R) = WORK(I, R) - ALPHA*WORK(I, Q)
   30    CONTINUE
         OLD = RHO
   40 CONTINUE
      ITER = MAXIT
      RETURN
   90 ITER = -1
      END
C
      SUBROUTINE GENMIN (N, MULT, PRECON, B, X, TOL, MAXIT, M, V, H,
     *                   ITER, RES)
C
C     GENERALIZED MINIMAL RESIDUALS, RESTARTED AFTER M STEPS, FOR ANY
C     REGULAR MATRIX.
C
C     V   N*(M + 2) ELEMENTS, THE ORTHOGONAL VECTORS
C     H   (M + 1)*(M + 4) ELEMENTS, THE HESSENBERG MATRIX, THE ROTATIONS
C         THAT MAKE IT TRIANGULAR, AND THE RIGHT HAND SIDE
C
      INTEGER N, MAXIT, M, ITER, I, J, K, L, KC, KS, KY
      DOUBLE PRECISION B(N), X(N), TOL, V(N, *), H(M + 1, M + 4), RES
      DOUBLE PRECISION BNORM, BETA, T, DOT
      EXTERNAL MULT, PRECON, DOT
C
      KC = M + 1
      KS = M + 2
      KY = M + 3
      ITER = 0
      BNORM = SQRT (DOT (N, B, B))
      IF (BNORM .EQ. 0D0) BNORM = 1D0
C
C     BEGIN, OR BEGIN ANEW.
  100 CALL MULT (X, V(1, M + 2))
      DO 110 I = 1, N
         V(I, M + 2) = B(I) - V(I, M + 2)
  110 CONTINUE
      RES = SQRT (DOT (N, V(1, M + 2), V(1, M + 2)))/BNORM
      IF (RES .LE. TOL .OR. ITER .GE. MAXIT) RETURN
      CALL PRECON (V(1, M + 2), V(1, 1))
      BETA = SQRT (DOT (N, V(1, 1), V(1, 1)))
      DO 120 I = 1, N
         V(I, 1) = V(I, 1)/BETA
  120 CONTINUE
      DO 130 I = 1, M + 1
         H(I, KY) = 0D0
  130 CONTINUE
      H(1, KY) = BETA
C
      DO 200 K = 1, M
         ITER = ITER + 1
         CALL MULT (V(1, K), V(1, M + 2))
         CALL PRECON (V(1, M + 2), V(1, K + 1))
         DO 150 J = 1, K
            T = DOT (N, V(1, J), V(1, K + 1))
            H(J, K) = T
            DO 140 I = 1, N
               V(I, K + 1) = V(I, K + 1) - T*V(I, J)
  140       CONTINUE
  150    CONTINUE
         T = SQRT (DOT (N, V(1, K + 1), V(1, K + 1)))
         H(K + 1, K) = T
         IF (T .NE. 0D0) THEN
            DO 160 I = 1, N
               V(I, K + 1) = V(I, K + 1)/T
  160       CONTINUE
         END IF
C        THE OLD ROTATIONS, AND A NEW ONE
         DO 170 J = 1, K - 1
            T = H(J, KC)*H(J, K) + H(J, KS)*H(J + 1, K)
            H(J + 1, K) = H(J, KC)*H(J + 1, K) - H(J, KS)*H(J, K)
            H(J, K) = T
  170    CONTINUE
         T = SQRT (H(K, K)**2 + H(K + 1, K)**2)
         IF (T .EQ. 0D0) RETURN
         H(K, KC) = H(K, K)/T
         H(K, KS) = H(K + 1, K)/T
         H(K, K) = T
         H(K + 1, KY) = -H(K, KS)*H(K, KY)
         H(K, KY) = H(K, KC)*H(K, KY)
         L = K
         IF (ABS (H(K + 1, KY)) .LE. 0.1D0*TOL*BETA) GO TO 210
         IF (ITER .GE. MAXIT) GO TO 210
  200 CONTINUE
C
C     THE COMBINATION OF THE VECTORS.
  210 DO 230 J = L, 1, -1
         T = H(J, KY)
         DO 220 K = J + 1, L
            T = T - H(J, K)*H(K, KY)
  220    CONTINUE
         H(J, KY) = T/H(J, J)
  230 CONTINUE
      DO 250 J = 1, L
         DO 240 I = 1, N
            X(I) = X(I) + H(J, KY)*V(I, J)
  240    CONTINUE
  250 CONTINUE
      GO TO 100
      END
C
      DOUBLE PRECISION FUNCTION DOT (N, X, Y)
      INTEGER N
      DOUBLE PRECISION X(N), Y(N)
      DOT = 0D0
      DO 10 I = 1, N
         DOT = DOT + X(I)*Y(I)
   10 CONTINUE
      END
C
      SUBROUTINE SUCCOR (N, IROW, ICOL, VAL, B, X, OMEGA, TOL, MAXIT,
     *                   *, *)
C
C     SUCCESSIVE OVERRELAXATION.  THE FIRST ALTERNATE RETURN IS FOR A
C     ZERO ON THE DIAGONAL, THE SECOND FOR NO CONVERGENCE; MAXIT BECOMES
C     THE NUMBER OF SWEEPS.
C
      INTEGER N, IROW(N + 1), ICOL(*), MAXIT, SWEEP
      DOUBLE PRECISION VAL(*), B(N), X(N), OMEGA, TOL, S, D, STEP, BIG
      DO 30 SWEEP = 1, MAXIT
         STEP = 0D0
         BIG = 0D0
         DO 20 I = 1, N
            S = B(I)
            D = 0D0
            DO 10 K = IROW(I), IROW(I + 1) - 1
               IF (ICOL(K) .EQ. I) D = VAL(K)
               S = S - VAL(K)*X(ICOL(K))
   10       CONTINUE
            IF (D .EQ. 0D0) RETURN 1
            X(I) = X(I) + OMEGA*S/D
            STEP = MAX (STEP, ABS (S/D))
            BIG = MAX (BIG, ABS (X(I)))
   20    CONTINUE
         IF (STEP .LE. TOL*BIG) GO TO 40
   30 CONTINUE
      RETURN 2
   40 MAXIT = SWEEP
      END
