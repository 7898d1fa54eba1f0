C     ------------------------------------------------------------------
C     ERFS - error function, Dawson's integral, exponential and sine
C     integrals, the normal distribution and its inverse.
C     ------------------------------------------------------------------
      DOUBLE PRECISION FUNCTION DERFN (X)
      IMPLICIT DOUBLE PRECISION (A-H, O-Z)
      EXTERNAL GAMINC, GAMCMP
      DERFN = SIGN(GAMINC(0.5D0, X*X), X)
      RETURN
C
      ENTRY DERFCN (X)
      IF (X .GE. 0.0D0) THEN
         DERFCN = GAMCMP(0.5D0, X*X)
      ELSE
         DERFCN = 1.0D0 + GAMINC(0.5D0, X*X)
      END IF
      RETURN
C
      ENTRY PNORM (X)
      T = X/SQRT(2.0D0)
      IF (T .LT. 0.0D0) THEN
         PNORM = 0.5D0*GAMCMP(0.5D0, T*T)
      ELSE
         PNORM = 0.5D0*(1.0D0 + GAMINC(0.5D0, T*T))
      END IF
      END
C
      DOUBLE PRECISION FUNCTION QNORM (P)
C     The quantile: a rough start, then Newton on PNORM.
      DOUBLE PRECISION P, PNORM, X, T, D, RS2PI
      PARAMETER (RS2PI = 0.39894228040143267794D0)
      INTEGER I
      IF (P .LE. 0.0D0 .OR. P .GE. 1.0D0) THEN
         CALL SFERR ('QNORM', 'NO PROBABILITY')
         QNORM = 0.0D0
         RETURN
      END IF
      T = SQRT(-2.0D0*LOG(MIN(P, 1.0D0 - P)))
      X = T - (2.30753D0 + 0.27061D0*T)/(1.0D0 + T*(0.99229D0
     +    + 0.04481D0*T))
      IF (P .LT. 0.5D0) X = -X
      DO 10 I = 1, 20
         D = (PNORM(X) - P)/(RS2PI*EXP(-0.5D0*X*X))
         X = X - D
         IF (ABS(D) .LT. 1.0D-13*(1.0D0 + ABS(X))) GO TO 20
   10 CONTINUE
   20 QNORM = X
      END
C
      DOUBLE PRECISION FUNCTION DAWSON (X)
C     Rybicki's exponentially convergent sum
      DOUBLE PRECISION X, H, XP, S, XX, SQPI
      INTEGER N0, K
      PARAMETER (H = 0.2D0, SQPI = 1.77245385090551602730D0)
      XX = ABS(X)
      N0 = 2*NINT(0.5D0*XX/H)
      XP = XX - N0*H
      S = 0.0D0
      DO 10 K = -23, 23, 2
         S = S + EXP(-(XP - K*H)**2)/(N0 + K)
   10 CONTINUE
      DAWSON = SIGN(S/SQPI, X)
      END
C
      DOUBLE PRECISION FUNCTION EXPINT (N, X)
C     E of order N, X > 0 (or X = 0 and N > 1)
      INTEGER N, I, J
      DOUBLE PRECISION X, A, B, C, D, H, F, PSI, DEL, EULER
      PARAMETER (EULER = 0.57721566490153286061D0)
      IF (N .LT. 0 .OR. X .LT. 0.0D0 .OR.
     1    (X .EQ. 0.0D0 .AND. N .LE. 1)) THEN
         CALL SFERR ('EXPINT', 'ARGUMENT OUT OF RANGE')
         EXPINT = 0.0D0
      ELSE IF (N .EQ. 0) THEN
         EXPINT = EXP(-X)/X
      ELSE IF (X .EQ. 0.0D0) THEN
         EXPINT = 1.0D0/(N - 1)
      ELSE IF (X .GT. 1.0D0) THEN
         B = X + N
         C = 1.0D300
         D = 1.0D0/B
         H = D
         DO 10 I = 1, 200
            A = -DBLE(I)*(N - 1 + I)
            B = B + 2.0D0
            D = 1.0D0/(A*D + B)
            C = B + A/C
            DEL = C*D
            H = H*DEL
            IF (ABS(DEL - 1.0D0) .LT. 4.0D-16) GO TO 20
   10    CONTINUE
   20    EXPINT = H*EXP(-X)
      ELSE
         H = -LOG(X) - EULER
         IF (N .GT. 1) H = 1.0D0/(N - 1)
         F = 1.0D0
         DO 40 I = 1, 200
            F = -F*X/I
            IF (I .NE. N - 1) THEN
               DEL = -F/(I - N + 1)
            ELSE
               PSI = -EULER
               DO 30 J = 1, N - 1
                  PSI = PSI + 1.0D0/J
   30          CONTINUE
               DEL = F*(PSI - LOG(X))
            END IF
            H = H + DEL
            IF (ABS(DEL) .LT. ABS(H)*1.0D-16) GO TO 50
   40    CONTINUE
   50    EXPINT = H
      END IF
      END
