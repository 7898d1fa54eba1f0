C     ------------------------------------------------------------------
C     BESSEL - Bessel functions of whole order, and elliptic integrals.
C     ------------------------------------------------------------------
      SUBROUTINE BESJN (NMAX, X, BJ)
C     J of orders 0 to NMAX at X, by Miller's backward recurrence.
      INTEGER NMAX, M, K
      DOUBLE PRECISION X, BJ(0:NMAX), JM, J0, JP, SUM, SCALE
      PARAMETER (SCALE = 1.0D-200)
      IF (X .EQ. 0.0D0) THEN
         BJ(0) = 1.0D0
         DO 10 K = 1, NMAX
   10       BJ(K) = 0.0D0
         RETURN
      END IF
C     start high enough, at an even order
      M = 2*((MAX(NMAX, INT(ABS(X))) + INT(SQRT(60.0D0*MAX(NMAX,
     1    INT(ABS(X)) + 1))) + 1)/2)
      JP = 0.0D0
      J0 = SCALE
      SUM = 0.0D0
      DO 20 K = M, 1, -1
         IF (MOD(K, 2) .EQ. 0) SUM = SUM + 2.0D0*J0
         IF (K .LE. NMAX) BJ(K) = J0
         JM = 2.0D0*K/X*J0 - JP
         JP = J0
         J0 = JM
         IF (ABS(J0) .GT. 1.0D100) CALL BESDWN (K, NMAX, BJ, J0, JP,
     1      SUM)
   20 CONTINUE
      BJ(0) = J0
      SUM = SUM + J0
      DO 30 K = 0, NMAX
   30    BJ(K) = BJ(K)/SUM
      END
C
      SUBROUTINE BESDWN (KLOW, NMAX, BJ, A, B, SUM)
C     scale what was found so far down, lest it overflow
      INTEGER KLOW, NMAX, I
      DOUBLE PRECISION BJ(0:*), A, B, SUM, D
      D = 1.0D-200
      A = A*D
      B = B*D
      SUM = SUM*D
      DO 10 I = KLOW, NMAX
   10    BJ(I) = BJ(I)*D
      END
C
      DOUBLE PRECISION FUNCTION BESY0 (X)
C     Y of order 0 from Neumann's series over the J of even orders
      DOUBLE PRECISION X, BJ(0:80), S, EULER, PI
      PARAMETER (EULER = 0.57721566490153286061D0,
     1           PI = 3.14159265358979323846D0)
      INTEGER K
      IF (X .LE. 0.0D0 .OR. X .GT. 60.0D0) THEN
         CALL SFERR ('BESY0', 'ARGUMENT OUT OF RANGE')
         BESY0 = -1.0D300
         RETURN
      END IF
      CALL BESJN (80, X, BJ)
      S = 0.0D0
      DO 10 K = 40, 1, -1
         S = S + (-1)**K*BJ(2*K)/K
   10 CONTINUE
      BESY0 = 2.0D0/PI*(LOG(0.5D0*X) + EULER)*BJ(0) - 4.0D0/PI*S
      END
C
      DOUBLE PRECISION FUNCTION BESI (N, X)
C     modified Bessel function I by its power series
      INTEGER N, K
      DOUBLE PRECISION X, T, Q
      T = 1.0D0
      DO 10 K = 1, N
   10    T = T*0.5D0*X/K
      Q = 0.25D0*X*X
      BESI = T
      K = 0
   20 K = K + 1
      T = T*Q/(DBLE(K)*(K + N))
      BESI = BESI + T
      IF (T .GT. 1.0D-17*BESI) GO TO 20
      END
C
      DOUBLE PRECISION FUNCTION ELLK (RK)
C     Complete elliptic integrals by the arithmetic-geometric mean:
C     ELLK of the first kind, ELLE of the second, modulus RK.
      IMPLICIT DOUBLE PRECISION (A-H, O-Z)
      PARAMETER (PI = 3.14159265358979323846D0)
      LOGICAL SECOND
      SECOND = .FALSE.
      GO TO 1
      ENTRY ELLE (RK)
      SECOND = .TRUE.
    1 A = 1.0D0
      B = SQRT((1.0D0 - RK)*(1.0D0 + RK))
      C = RK
      P = 1.0D0
      S = C*C
   10 IF (ABS(C) .GT. 1.0D-16*A) THEN
         C = 0.5D0*(A - B)
         T = 0.5D0*(A + B)
         B = SQRT(A*B)
         A = T
         P = 2.0D0*P
         S = S + P*C*C
         GO TO 10
      END IF
      IF (SECOND) THEN
         ELLE = 0.5D0*PI/A*(1.0D0 - 0.5D0*S)
      ELSE
         ELLK = 0.5D0*PI/A
      END IF
      END
C
      DOUBLE PRECISION FUNCTION RF (X, Y, Z)
C     the symmetric integral of the first kind, by duplication
      IMPLICIT DOUBLE PRECISION (A-H, O-Z)
      A = X
      B = Y
      C = Z
   10 E = (A + B + C)/3.0D0
      U = (E - A)/E
      V = (E - B)/E
      W = (E - C)/E
      IF (MAX(ABS(U), ABS(V), ABS(W)) .GT. 1.0D-3) THEN
         D = SQRT(A*B) + SQRT(A*C) + SQRT(B*C)
         A = 0.25D0*(A + D)
         B = 0.25D0*(B + D)
         C = 0.25D0*(C + D)
         GO TO 10
      END IF
      E2 = U*V - W*W
      E3 = U*V*W
      RF = (1.0D0 + (E2/24.0D0 - 0.1D0 - 3.0D0*E3/44.0D0)*E2
     1      + E3/14.0D0)/SQRT(E)
      END
C
      DOUBLE PRECISION FUNCTION ELLF (PHI, RK)
C     incomplete integral of the first kind, 0 <= PHI <= pi/2
      DOUBLE PRECISION PHI, RK, RF, S, C
      S = SIN(PHI)
      C = COS(PHI)
      ELLF = S*RF(C*C, (1.0D0 - S*RK)*(1.0D0 + S*RK), 1.0D0)
      END
