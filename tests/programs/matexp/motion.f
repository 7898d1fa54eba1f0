      PROGRAM MOTION
C
C     A CHAIN OF MASSES, SPRINGS AND DAMPERS, ITS STATE X THE PLACES AND
C     VELOCITIES:  DX/DT = A*X, FOLLOWED WITH THE EXPONENTIAL OF A, WITH
C     RUNGE AND KUTTA'S METHOD, AND WITH TAYLOR SERIES.
C
      INTEGER NM, NS
      PARAMETER (NM = 3, NS = 2*NM)
      DOUBLE PRECISION A(NS, NS), E(NS, NS), W(NS*NS*5), X0(NS), X(NS)
      DOUBLE PRECISION Y(NS), ENERGY, E0, T, ERR, MNORM, R(NS, NS)
      INTEGER I, J, METHOD, STEPS(3), ITER
      CHARACTER*15 NAMES(3)
      COMMON /CHAIN/ SPRING(0:NM), DAMPER(NM), RMASS(NM)
      COMMON /STATE/ A, NCALL
      EXTERNAL RKSTEP, TAYLOR, EXPSTP, DERIV
      DATA (X0(I), I = 1, NM), (X0(I), I = NM + 1, NS)
     +     /1D0, NM*0D0, 2*0D0/
      DATA NAMES, STEPS /'exponential', 'Runge and Kutta', 'Taylor', 1,
     +                   400, 20/
      DATA W /180*0D0/
C
      CALL BUILD (A, NS)
      PRINT 900, ((A(I, J), J = 1, NS), I = 1, NS)
      T = 10D0
      CALL MEXP (A, T, E, NS, W, *300)
      DO 30 I = 1, NS
         Y(I) = 0
         DO 30 J = 1, NS
            Y(I) = Y(I) + E(I, J)*X0(J)
   30 CONTINUE
      E0 = ENERGY (X0)
      DO 200 METHOD = 1, 3
         DO 50 I = 1, NS
   50    X(I) = X0(I)
         NCALL = 0
         GO TO (60, 70, 80), METHOD
   60    CALL ADVANC (EXPSTP, DERIV, X, NS, T, STEPS(METHOD))
         GO TO 90
   70    CALL ADVANC (RKSTEP, DERIV, X, NS, T, STEPS(METHOD))
         GO TO 90
   80    CALL ADVANC (TAYLOR, DERIV, X, NS, T, STEPS(METHOD))
   90    ERR = 0
         DO 100 I = 1, NS
  100    ERR = MAX (ERR, ABS (X(I) - Y(I)))
         PRINT 910, NAMES(METHOD), STEPS(METHOD), NCALL,
     +              INT (LOG10 (ERR + 1D-15) - 1), ENERGY (X)/E0
  200 CONTINUE
C
C     THE SQUARE ROOT OF THE EXPONENTIAL GOES HALF WAY.
      CALL MEXP (A, 1D0, E, NS, W, *300)
      CALL MROOT (E, R, NS, W, ITER, *300)
      CALL MEXP (A, 0.5D0, E, NS, W, *300)
      CALL MAXPY (R, -1D0, E, NS)
      PRINT '('' Half way:'', L2, I4)', MNORM (R, NS, 'M') .LT. 1D-8,
     +      ITER
      CALL MEXP (A, 0.25D0, E, NS, W, *300)
      CALL MPOW (E, 40, R, NS, W)
      CALL MEXP (A, T, E, NS, W, *300)
      CALL MAXPY (R, -1D0, E, NS)
      PRINT '('' Forty steps:'', L2)', MNORM (R, NS, 'F') .LT. 1D-10
      CALL MTRN (E, NS)
      CALL TABLE (Y, NS)
      STOP
  300 PRINT *, 'singular matrix'
  900 FORMAT (' The matrix:' / (6F9.3))
  910 FORMAT (1X, A, ':', I4, ' steps,', I6, ' calls, error 1E', I3.2,
     +        ', energy', 2PF8.3, '%')
      END
C
      BLOCK DATA CHAIN0
      PARAMETER (NM = 3)
      COMMON /CHAIN/ SPRING(0:NM), DAMPER(NM), RMASS(NM)
      DATA SPRING, DAMPER, RMASS /4., 2., 1., 0.5, .1, 0., .05,
     +     1., 2 * 2.0/
      END
C
      SUBROUTINE BUILD (A, NS)
C     THE MATRIX, IN FOUR BLOCKS: ZERO, ONE; STIFFNESS, DAMPING.
      DOUBLE PRECISION A(NS, *)
      PARAMETER (NM = 3)
      COMMON /CHAIN/ SPRING(0:NM), DAMPER(NM), RMASS(NM)
      CALL MSET (A, NS, 0D0, 0D0)
      DO 10 I = 1, NM
         A(I, NM + I) = 1
         A(NM + I, I) = -(SPRING(I - 1) + SPRING(I))/RMASS(I)
         IF (I .GT. 1) A(NM + I, I - 1) = SPRING(I - 1)/RMASS(I)
         IF (I .LT. NM) A(NM + I, I + 1) = SPRING(I)/RMASS(I)
         A(NM + I, NM + I) = -DAMPER(I)/RMASS(I)
   10 CONTINUE
      END
C
      DOUBLE PRECISION FUNCTION ENERGY (X)
      PARAMETER (NM = 3)
      COMMON /CHAIN/ SPRING(0:NM), DAMPER(NM), RMASS(NM)
      DOUBLE PRECISION X(NM, 2), D
      ENERGY = SPRING(NM)*X(NM, 1)**2/2 + SPRING(0)*X(1, 1)**2/2
      DO 10 I = 1, NM
         ENERGY = ENERGY + RMASS(I)*X(I, 2)**2/2
         IF (I .EQ. NM) GO TO 10
         D = X(I + 1, 1) - X(I, 1)
         ENERGY = ENERGY + SPRING(I)*D**2/2
   10 CONTINUE
      END
C
      SUBROUTINE ADVANC (STEP, F, X, N, T, NSTEP)
C     NSTEP EQUAL STEPS OF A METHOD UNTIL T.
      EXTERNAL STEP, F
      DOUBLE PRECISION X(N), T
      DO 10 K = 1, NSTEP
         CALL STEP (F, X, N, T/NSTEP)
   10 CONTINUE
      END
C
      SUBROUTINE DERIV (X, DX, N)
C     DX := A*X
      PARAMETER (NS = 6)
      DOUBLE PRECISION X(N), DX(N), A
      COMMON /STATE/ A(NS, NS), NCALL
      NCALL = NCALL + 1
      DO 20 I = 1, N
         DX(I) = 0
         DO 10 J = 1, N
            DX(I) = DX(I) + A(I, J)*X(J)
   10    CONTINUE
   20 CONTINUE
      END
C
      SUBROUTINE RKSTEP (F, X, N, H)
C     THE CLASSICAL STEP OF FOURTH ORDER.
      PARAMETER (MAXN = 6)
      DOUBLE PRECISION X(N), H, D(MAXN), Y(MAXN), SUM(MAXN)
      DOUBLE PRECISION FRAC(4), WEIGHT(4)
      EXTERNAL F
      SAVE FRAC, WEIGHT
      DATA FRAC /0.5D0, 0.5D0, 1D0, 0D0/
      DATA (WEIGHT(K), WEIGHT(5 - K), K = 1, 2) /2*1D0, 2*2D0/
      DO 10 I = 1, N
         Y(I) = X(I)
         SUM(I) = 0
   10 CONTINUE
      DO 30 K = 1, 4
         CALL F (Y, D, N)
         DO 20 I = 1, N
            SUM(I) = SUM(I) + WEIGHT(K)*D(I)
            Y(I) = X(I) + FRAC(K)*H*D(I)
   20    CONTINUE
   30 CONTINUE
      DO 40 I = 1, N
         X(I) = X(I) + H*SUM(I)/6
   40 CONTINUE
      END
C
      SUBROUTINE TAYLOR (F, X, N, H)
C     TERMS OF THE SERIES UNTIL THEY ARE NEGLIGIBLE.
      PARAMETER (MAXN = 6)
      DOUBLE PRECISION X(N), H, TERM(MAXN), D(MAXN), BIG
      EXTERNAL F
      DO 10 I = 1, N
         TERM(I) = X(I)
   10 CONTINUE
      DO 30 K = 1, 60
         CALL F (TERM, D, N)
         BIG = 0
         DO 20 I = 1, N
            TERM(I) = D(I)*H/K
            X(I) = X(I) + TERM(I)
            BIG = DMAX1 (BIG, DABS (TERM(I)))
   20    CONTINUE
         IF (BIG .LT. 1D-17) RETURN
   30 CONTINUE
      END
C
      SUBROUTINE EXPSTP (F, X, N, H)
C     BY THE EXPONENTIAL.  THE MATRIX IS FOUND BY CALLS OF F WITH THE
C     UNIT VECTORS.
      PARAMETER (MAXN = 6)
      DOUBLE PRECISION X(N), H, A(MAXN*MAXN), E(MAXN, MAXN), U(MAXN)
      DOUBLE PRECISION W(4*MAXN**2)
      EXTERNAL F
      IF (N .NE. MAXN) STOP 'EXPSTP: order'
      DO 10 I = 1, N
         U(I) = 0
   10 CONTINUE
      DO 20 J = 1, N
         U(J) = 1
         CALL F (U, A((J - 1)*N + 1), N)
         U(J) = 0
   20 CONTINUE
      CALL MEXP (A, H, E, N, W, *90)
      DO 40 I = 1, N
         DO 30 J = 1, N
            U(I) = U(I) + E(I, J)*X(J)
   30    CONTINUE
   40 CONTINUE
      DO 50 I = 1, N
   50 X(I) = U(I)
   90 END
C
      SUBROUTINE TABLE (Y, N)
C     THE FINAL STATE, IN DIFFERENT FORMATS.
      DOUBLE PRECISION Y(N)
      CHARACTER*24 FMT
      CHARACTER*8 FORMS(4)
      DATA FORMS /'F12.6', '1PE12.4', 'G12.4', '3PD12.3'/
      DO 10 K = 1, 4
         FMT = '(A8,'' :'',6(' // FORMS(K) // '))'
         PRINT FMT, FORMS(K), Y
   10 CONTINUE
      END
