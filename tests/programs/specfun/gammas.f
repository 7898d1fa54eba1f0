C     ------------------------------------------------------------------
C     GAMMAS - the gamma function and its relatives.
C
C        ALNGAM (X)       log of gamma, X > 0
C        GAMFUN (X)       gamma, X not 0, -1, -2 ...
C        DIGAMM (X)       psi, the logarithmic derivative
C        BETFUN (A, B)    beta
C        GAMINC (A, X)    incomplete gamma ratio P;  ENTRY GAMCMP gives Q
C        BETINC (X, A, B) incomplete beta ratio
C        CGAMLN (Z)       log of gamma for COMPLEX arguments
C
C     An argument without an answer is reported by SFERR, and the value
C     returned is the largest of the machine, from COMMON /SFMACH/.
C     ------------------------------------------------------------------
      BLOCK DATA SFINIT
      DOUBLE PRECISION BIG, EPS, TINY
      INTEGER NERR
      COMMON /SFMACH/ BIG, EPS, TINY
      COMMON /SFERRC/ NERR
      DATA BIG, EPS, TINY /1.7976931348623D+308, 2.22D-16, 1.0D-300/
      DATA NERR /0/
      END
C
      SUBROUTINE SFERR (WHO, WHAT)
      CHARACTER*(*) WHO, WHAT
      INTEGER NERR
      COMMON /SFERRC/ NERR
      NERR = NERR + 1
      IF (NERR .LE. 10) WRITE (*, 10) NERR, WHO, WHAT
   10 FORMAT (' **', I3, ' IN ', A, ': ', A)
      END
C
      DOUBLE PRECISION FUNCTION ALNGAM (X)
      IMPLICIT DOUBLE PRECISION (A-H, O-Z)
      PARAMETER (HLN2PI = 0.91893853320467274178D0)
      DIMENSION C(8)
      COMMON /SFMACH/ BIG, EPS, TINY
      SAVE C
C     Bernoulli numbers over 2k(2k-1)
      DATA C /  8.333333333333333D-2,  -2.777777777777778D-3,
     1          7.936507936507937D-4,  -5.952380952380952D-4,
     2          8.417508417508418D-4,  -1.917526917526918D-3,
     3          6.410256410256410D-3,  -2.955065359477124D-2 /
C
      IF (X .LE. 0.0D0) THEN
         CALL SFERR ('ALNGAM', 'ARGUMENT NOT POSITIVE')
         ALNGAM = BIG
         RETURN
      END IF
C     Shift the argument up until Stirling's series is good enough.
      SHIFT = 0.0D0
      Y = X
      P = 1.0D0
   10 IF (Y .LT. 10.0D0) THEN
         P = P*Y
         Y = Y + 1.0D0
         GO TO 10
      END IF
      IF (P .NE. 1.0D0) SHIFT = LOG(P)
      R = 1.0D0/(Y*Y)
      S = 0.0D0
      DO 20 I = 8, 1, -1
         S = S*R + C(I)
   20 CONTINUE
      ALNGAM = (Y - 0.5D0)*LOG(Y) - Y + HLN2PI + S/Y - SHIFT
      END
C
      DOUBLE PRECISION FUNCTION GAMFUN (X)
      IMPLICIT DOUBLE PRECISION (A-H, O-Z)
      PARAMETER (PI = 3.14159265358979323846D0)
      COMMON /SFMACH/ BIG, EPS, TINY
      LOGICAL WHOLE
      WHOLE(U) = AINT(U) .EQ. U
      IF (X .GT. 0.0D0) THEN
         IF (X .GT. 171.6D0) THEN
            CALL SFERR ('GAMFUN', 'OVERFLOW')
            GAMFUN = BIG
         ELSE IF (WHOLE(X) .AND. X .LE. 20.0D0) THEN
            F = 1.0D0
            DO 10 I = 2, INT(X) - 1
   10          F = F*I
            GAMFUN = F
         ELSE
            GAMFUN = EXP(ALNGAM(X))
         END IF
      ELSE IF (WHOLE(X)) THEN
         CALL SFERR ('GAMFUN', 'POLE')
         GAMFUN = BIG
      ELSE
C        reflection
         GAMFUN = PI/(SIN(PI*X)*EXP(ALNGAM(1.0D0 - X)))
      END IF
      END
C
      DOUBLE PRECISION FUNCTION DIGAMM (X)
      DOUBLE PRECISION X, Y, S, R
      S = 0.0D0
      Y = X
      DO WHILE (Y .LT. 8.0D0)
         S = S - 1.0D0/Y
         Y = Y + 1.0D0
      END DO
      R = 1.0D0/Y**2
      DIGAMM = S + LOG(Y) - 0.5D0/Y - R*(1.0D0/12 - R*(1.0D0/120
     1         - R*(1.0D0/252 - R*(1.0D0/240 - R/132))))
      END
C
      DOUBLE PRECISION FUNCTION BETFUN (A, B)
      DOUBLE PRECISION A, B, ALNGAM
      BETFUN = EXP(ALNGAM(A) + ALNGAM(B) - ALNGAM(A + B))
      END
C
      DOUBLE PRECISION FUNCTION GAMINC (A, X)
      IMPLICIT DOUBLE PRECISION (A-H, O-Z)
      PARAMETER (MAXIT = 500)
      LOGICAL UPPER
      COMMON /SFMACH/ BIG, EPS, TINY
      UPPER = .FALSE.
      GO TO 5
C
      ENTRY GAMCMP (A, X)
      UPPER = .TRUE.
C
    5 IF (X .LT. 0.0D0 .OR. A .LE. 0.0D0) THEN
         CALL SFERR ('GAMINC', 'ARGUMENT OUT OF RANGE')
         GAMINC = BIG
         RETURN
      END IF
      IF (X .EQ. 0.0D0) THEN
         P = 0.0D0
         GO TO 90
      END IF
      FRONT = EXP(A*LOG(X) - X - ALNGAM(A))
      IF (X .LT. A + 1.0D0) THEN
C        power series
         T = 1.0D0/A
         S = T
         AP = A
         DO 10 N = 1, MAXIT
            AP = AP + 1.0D0
            T = T*X/AP
            S = S + T
            IF (ABS(T) .LT. ABS(S)*EPS) GO TO 20
   10    CONTINUE
         CALL SFERR ('GAMINC', 'SERIES DOES NOT CONVERGE')
   20    P = FRONT*S
      ELSE
C        continued fraction, evaluated forwards
         B = X + 1.0D0 - A
         C = 1.0D0/TINY
         D = 1.0D0/B
         H = D
         DO 30 N = 1, MAXIT
            AN = -N*(N - A)
            B = B + 2.0D0
            D = AN*D + B
            IF (ABS(D) .LT. TINY) D = TINY
            C = B + AN/C
            IF (ABS(C) .LT. TINY) C = TINY
            D = 1.0D0/D
            H = H*D*C
            IF (ABS(D*C - 1.0D0) .LT. 2.0D0*EPS) GO TO 40
   30    CONTINUE
         CALL SFERR ('GAMINC', 'FRACTION DOES NOT CONVERGE')
   40    P = 1.0D0 - FRONT*H
         IF (UPPER) THEN
            GAMCMP = FRONT*H
            RETURN
         END IF
      END IF
   90 IF (UPPER) THEN
         GAMCMP = 1.0D0 - P
      ELSE
         GAMINC = P
      END IF
      END
C
      DOUBLE PRECISION FUNCTION BETINC (X, A, B)
      IMPLICIT DOUBLE PRECISION (A-H, O-Z)
      LOGICAL SWAP
      COMMON /SFMACH/ BIG, EPS, TINY
      IF (X .LT. 0.0D0 .OR. X .GT. 1.0D0) THEN
         CALL SFERR ('BETINC', 'X OUTSIDE 0 TO 1')
         BETINC = BIG
         RETURN
      END IF
      IF (X .EQ. 0.0D0 .OR. X .EQ. 1.0D0) THEN
         BETINC = X
         RETURN
      END IF
      SWAP = X .GT. (A + 1.0D0)/(A + B + 2.0D0)
      IF (.NOT. SWAP) THEN
         P = A
         Q = B
         Z = X
      ELSE
         P = B
         Q = A
         Z = 1.0D0 - X
      END IF
      C = 1.0D0
      D = 1.0D0 - (P + Q)*Z/(P + 1.0D0)
      IF (ABS(D) .LT. TINY) D = TINY
      D = 1.0D0/D
      H = D
      DO 20 M = 1, 300
         DO 10 K = 0, 1
            IF (K .EQ. 0) THEN
               U = M*(Q - M)*Z/((P + 2*M - 1)*(P + 2*M))
            ELSE
               U = -(P + M)*(P + Q + M)*Z/((P + 2*M)*(P + 2*M + 1))
            END IF
            D = 1.0D0 + U*D
            IF (ABS(D) .LT. TINY) D = TINY
            C = 1.0D0 + U/C
            IF (ABS(C) .LT. TINY) C = TINY
            D = 1.0D0/D
            H = H*D*C
   10    CONTINUE
         IF (ABS(D*C - 1.0D0) .LT. 3.0D0*EPS) GO TO 30
   20 CONTINUE
   30 BETINC = H*EXP(P*LOG(Z) + Q*LOG(1.0D0 - Z))/(P*BETFUN(P, Q))
      IF (SWAP) BETINC = 1.0D0 - BETINC
      END
C
      COMPLEX FUNCTION CGAMLN (Z)
C     log of gamma in single precision for REAL(Z) > 0
      COMPLEX Z, W, P, R
      W = Z
      P = (1.0, 0.0)
   10 IF (ABS(W) .LT. 7.0) THEN
         P = P*W
         W = W + 1.0
         GO TO 10
      END IF
      R = 1.0/(W*W)
      CGAMLN = (W - 0.5)*LOG(W) - W + CMPLX(0.9189385, 0.0)
     *         + (1.0/12.0 - R*(1.0/360.0 - R/1260.0))/W - CLOG(P)
      END
