C     ------------------------------------------------------------------
C     SFTAB - checks the special functions against known values and
C     against each other, and prints short tables.
C     ------------------------------------------------------------------
      PROGRAM SFTAB
      IMPLICIT DOUBLE PRECISION (A-H, O-Z)
      PARAMETER (PI = 3.14159265358979323846D0, NCASE = 14)
      CHARACTER*24 NAME(NCASE)
      DIMENSION GOT(NCASE), WANT(NCASE), BJ(0:20)
      COMPLEX CGAMLN, Z
      INTEGER NBAD, NERR
      COMMON /SFERRC/ NERR
      EXTERNAL SFINIT
C
      DATA NAME / 'GAMMA(5)', 'GAMMA(1/2)', 'GAMMA(-1/2)',
     1   'LOG GAMMA(100)', 'PSI(1)', 'BETA(2,3)', 'P(2,3)',
     2   'I(0.5;2,3)', 'ERF(1)', 'ERFC(3)', 'Q NORMAL(0.975)',
     3   'DAWSON(1)', 'E1(1)', 'K(SIN 45)' /
      DATA WANT / 24.0D0, 1.7724538509055160D0, -3.5449077018110321D0,
     1   359.13420536957540D0, -0.57721566490153286D0,
     2   8.3333333333333333D-2, 0.80085172652854421D0, 0.6875D0,
     3   0.84270079294971487D0, 2.2090496998585441D-5,
     4   1.9599639845400542D0, 0.53807950691276842D0,
     5   0.21938393439552027D0, 1.8540746773013719D0 /
C
      GOT( 1) = GAMFUN(5.0D0)
      GOT( 2) = GAMFUN(0.5D0)
      GOT( 3) = GAMFUN(-0.5D0)
      GOT( 4) = ALNGAM(100.0D0)
      GOT( 5) = DIGAMM(1.0D0)
      GOT( 6) = BETFUN(2.0D0, 3.0D0)
      GOT( 7) = GAMINC(2.0D0, 3.0D0)
      GOT( 8) = BETINC(0.5D0, 2.0D0, 3.0D0)
      GOT( 9) = DERFN(1.0D0)
      GOT(10) = DERFCN(3.0D0)
      GOT(11) = QNORM(0.975D0)
      GOT(12) = DAWSON(1.0D0)
      GOT(13) = EXPINT(1, 1.0D0)
      GOT(14) = ELLK(SQRT(0.5D0))
C
      NBAD = 0
      WRITE (*, 100)
      DO 10 I = 1, NCASE
         R = ABS(GOT(I) - WANT(I))/ABS(WANT(I))
         IF (R .LT. 1.0D-11) THEN
            WRITE (*, 110) NAME(I), GOT(I), R
         ELSE
            NBAD = NBAD + 1
            WRITE (*, 110) NAME(I), GOT(I), R, ' WRONG'
         END IF
   10 CONTINUE
C
C     Bessel functions: the sum rule, and the Wronskian-like identity
      WRITE (*, 120) (N, N = 0, 3)
      DO 30 I = 0, 10, 2
         X = I
         CALL BESJN (20, X, BJ)
         WRITE (*, 130) X, (BJ(N), N = 0, 3), BESI(0, X)
         S = BJ(0)**2
         DO 20 N = 1, 20
   20       S = S + 2.0D0*BJ(N)**2
         IF (ABS(S - 1.0D0) .GT. 1.0D-6) THEN
            WRITE (*, *) 'SUM RULE FAILS AT ', X, S
            NBAD = NBAD + 1
         ENDIF
   30 CONTINUE
      WRITE (*, '('' Y0(1) ='', F18.14)') BESY0(1.0D0)
C
C     Legendre's relation between the complete integrals
      DO 40 I = 1, 9, 4
         A = I/10.0D0
         B = SQRT(1.0D0 - A*A)
         S = ELLE(A)*ELLK(B) + ELLE(B)*ELLK(A) - ELLK(A)*ELLK(B)
         WRITE (*, 140) A, ELLK(A), ELLE(A), ELLF(PI/6, A), S - PI/2
   40 CONTINUE
C
C     complex gamma
      Z = (1.0, 1.0)
      WRITE (*, 150) 'LN GAMMA', Z, CGAMLN(Z)
      WRITE (*, 150) 'LN GAMMA', CONJG(Z), CGAMLN(CONJG(Z))
C
C     errors are counted, not fatal
      X = GAMFUN(-3.0D0) + ALNGAM(0.0D0)
      X = QNORM(1.5D0)
      IF (NERR .NE. 3) NBAD = NBAD + 1
      IF (NBAD .EQ. 0) THEN
         WRITE (*, *) 'ALL WELL'
      ELSE
         WRITE (*, *) NBAD, ' FAILURES'
      END IF
  100 FORMAT ('1FUNCTION', T30, 'VALUE', T50, 'ERROR' / )
  110 FORMAT (1X, A, 1P, D23.15, D10.1, :, A)
  120 FORMAT ('0   X  ', 4(4X, 'J', I1, 9X), 4X, 'I0')
  130 FORMAT (1X, F5.1, 1X, 4F15.10, 1P, D15.6)
  140 FORMAT (1X, F4.1, 3F14.10, 1P, D10.1)
  150 FORMAT (1X, A, 2(' (', SP, F9.5, ',', F9.5, ')'))
      END
