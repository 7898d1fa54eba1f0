*     ORTHOGONAL FACTORIZATION AND LINEAR LEAST SQUARES.
*
      SUBROUTINE HREFL (N, ALPHA, X, LX, TAU)
*
*     An elementary reflector H = I - TAU*(1, V)*(1, V)' that maps the
*     vector (ALPHA, X) to (BETA, 0).  X is replaced by V, and ALPHA by
*     BETA, whose sign is opposite, so that nothing cancels.
*
      INTEGER N, LX
      DOUBLE PRECISION ALPHA, X(*), TAU
      DOUBLE PRECISION BETA, XNORM, VNORM
      EXTERNAL VNORM
      XNORM = VNORM (N - 1, X, LX)
      IF (XNORM .EQ. 0.0D0) THEN
         TAU = 0.0D0
      ELSE
         BETA = -SIGN (SQRT (ALPHA**2 + XNORM**2), ALPHA)
         TAU = (BETA - ALPHA)/BETA
         CALL VSCALE (N - 1, 1.0D0/(ALPHA - BETA), X, LX)
         ALPHA = BETA
      END IF
      END
*
      SUBROUTINE HAPPLY (M, N, V, TAU, C, LDC)
*     C := H*C for the reflector of M elements, the first of which, one,
*     is not stored: V begins with the second.
      INTEGER M, N, LDC
      DOUBLE PRECISION V(*), TAU, C(LDC, *), S, VDOT
      INTEGER J
      EXTERNAL VDOT
      IF (TAU .EQ. 0.0D0) RETURN
      DO 10 J = 1, N
         S = TAU*(C(1, J) + VDOT (M - 1, V, 1, C(2, J), 1))
         C(1, J) = C(1, J) - S
         CALL VADD (M - 1, -S, V, 1, C(2, J), 1)
   10 CONTINUE
      END
*
      SUBROUTINE QRFACT (A, LDA, M, N, TAU, JPVT, WORK, TOL, IRANK)
*
*     A*P = Q*R with column exchanges: each step takes the column with
*     the largest remainder.  IRANK tells for how many steps that was
*     larger than TOL times the first.
*
*     JPVT   the original number of each column
*     WORK   2*N elements; the norms of the remainders, and what they
*            were when they were last computed afresh
*
      INTEGER LDA, M, N, JPVT(N), IRANK
      DOUBLE PRECISION A(LDA, N), TAU(N), WORK(N, 2), TOL
      INTEGER I, J, K, L
      DOUBLE PRECISION T, FIRST, SMALL, VNORM
      INTEGER VIMAX
      EXTERNAL VIMAX, VNORM
      PARAMETER (SMALL = 1.0D-3)
*
      DO 10 J = 1, N
         JPVT(J) = J
         WORK(J, 1) = VNORM (M, A(1, J), 1)
         WORK(J, 2) = WORK(J, 1)
   10 CONTINUE
      IRANK = 0
      FIRST = 0.0D0
      DO 40 K = 1, MIN (M, N)
         L = K - 1 + VIMAX (N - K + 1, WORK(K, 1), 1)
         IF (K .EQ. 1) FIRST = WORK(L, 1)
         IF (WORK(L, 1) .GT. TOL*FIRST) IRANK = K
         IF (L .NE. K) THEN
            CALL VSWAP (M, A(1, L), 1, A(1, K), 1)
            I = JPVT(L)
            JPVT(L) = JPVT(K)
            JPVT(K) = I
            WORK(L, 1) = WORK(K, 1)
            WORK(L, 2) = WORK(K, 2)
         END IF
         CALL HREFL (M - K + 1, A(K, K), A(MIN (K + 1, M), K), 1,TAU(K))
         IF (K .LT. N) CALL HAPPLY (M - K + 1, N - K,
     $                   A(MIN (K + 1, M), K), TAU(K), A(K, K + 1), LDA)
         DO 30 J = K + 1, N
            IF (WORK(J, 1) .EQ. 0.0D0) GO TO 30
            T = MAX (0.0D0, 1.0D0 - (ABS (A(K, J))/WORK(J, 1))**2)
            IF (T*(WORK(J, 1)/WORK(J, 2))**2 .GT. SMALL) THEN
               WORK(J, 1) = WORK(J, 1)*SQRT (T)
            ELSE
               WORK(J, 1) = VNORM (M - K, A(MIN (K + 1, M), J), 1)
               WORK(J, 2) = WORK(J, 1)
            END IF
   30    CONTINUE
   40 CONTINUE
      END
*
      SUBROUTINE QRSOLV (A, LDA, M, N, TAU, JPVT, IRANK, B, X, RNORM)
*
*     The least squares solution X of A*X = B, and the norm of what
*     remains.  B is replaced by Q'*B.  Unknowns beyond the rank are set
*     to zero.
*
      INTEGER LDA, M, N, JPVT(N), IRANK, K
      DOUBLE PRECISION A(LDA, N), TAU(N), B(M), X(N), RNORM, VNORM
      EXTERNAL VNORM
      DO 10 K = 1, MIN (M, N)
         CALL HAPPLY (M - K + 1, 1, A(MIN (K + 1, M), K), TAU(K), B(K),
     $                M)
   10 CONTINUE
      RNORM = VNORM (M - IRANK, B(MIN (IRANK + 1, M)), 1)
      IF (IRANK .EQ. M) RNORM = 0.0D0
      DO 20 K = 1, N
   20 X(JPVT(K)) = 0.0D0
      DO 30 K = IRANK, 1, -1
         B(K) = B(K)/A(K, K)
         CALL VADD (K - 1, -B(K), A(1, K), 1, B, 1)
   30 CONTINUE
      DO 40 K = 1, IRANK
         X(JPVT(K)) = B(K)
   40 CONTINUE
      END
*
      SUBROUTINE POLFIT (NPT, X, Y, NDEG, COEF, RES, WORK, IWORK)
*
*     Fit a polynomial of degree NDEG to NPT points.  Its coefficients
*     are delivered in COEF(0), ..., COEF(NDEG).
*     WORK has at least (NPT + 3)*(NDEG + 1) + NPT elements, and IWORK
*     NDEG + 1.
*
      INTEGER NPT, NDEG, IWORK(0:NDEG)
      DOUBLE PRECISION X(NPT), Y(NPT), COEF(0:NDEG), RES, WORK(0:*)
      INTEGER I, J, LA, LTAU, LW, LB, IRANK
      LA = 0
      LTAU = LA + NPT*(NDEG + 1)
      LW = LTAU + NDEG + 1
      LB = LW + 2*(NDEG + 1)
      DO 20 I = 1, NPT
         WORK(LA + I - 1) = 1.0D0
         DO 10 J = 1, NDEG
            WORK(LA + J*NPT + I - 1) = WORK(LA + (J-1)*NPT + I - 1)*X(I)
   10    CONTINUE
         WORK(LB + I - 1) = Y(I)
   20 CONTINUE
      CALL QRFACT (WORK(LA), NPT, NPT, NDEG + 1, WORK(LTAU), IWORK,
     $             WORK(LW), 1.0D-12, IRANK)
      CALL QRSOLV (WORK(LA), NPT, NPT, NDEG + 1, WORK(LTAU), IWORK,
     $             IRANK, WORK(LB), COEF, RES)
      END
