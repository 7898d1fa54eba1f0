C=======================================================================
C     ODETEST - tries the integrators on problems with known answers
C     and prints a table for each.
C=======================================================================
      PROGRAM ODETST
      INTEGER MAXN
      PARAMETER (MAXN = 4)
      DOUBLE PRECISION T, Y(MAXN), W(MAXN,6), HIST(MAXN,0:3), EST,
     1                 WJ(MAXN,MAXN), ERR, OLD, G(0:7)
      INTEGER ISTAT(3), IPIV(MAXN), M, K, NSTEP, IERR, NORD, N
      CHARACTER NAME*20
      COMMON /STFCNT/ NFUN, NJAC, NITER, NFAIL
      COMMON /VDPMU/ DMU
      DOUBLE PRECISION DMU
      EXTERNAL OSCIL, DECAY, VDPOL, KEPLER, ROBERT
      INTRINSIC ABS, COS, EXP
C
C     ---- fixed steps on the harmonic oscillator ------------------
      WRITE (*, 9000) 'HARMONIC OSCILLATOR, FIXED STEPS'
      DO 30 M = 1, 6
         CALL RKSEL (M, *40)
         CALL RKTITL (NAME)
         CALL RKORD (NORD)
         OLD = 0.0D0
         DO 20 K = 1, 4
            NSTEP = 25*2**K
            T = 0.0D0
            Y(1) = 1.0D0
            Y(2) = 0.0D0
            CALL RKGO (OSCIL, 2, T, Y, 2.0D0, NSTEP, W, IERR)
            IF (IERR .NE. 0) STOP 'RKGO FAILED'
            ERR = ABS(Y(1) - COS(T))
            IF (K .EQ. 1) THEN
               WRITE (*, 9010) NAME, NORD, NSTEP, ERR
            ELSE
               WRITE (*, 9020) NSTEP, ERR, OLD/ERR
            END IF
            OLD = ERR
   20    CONTINUE
   30 CONTINUE
   40 WRITE (*, '(1X,A,I2)') 'METHODS TRIED: ', M - 1
C
C     ---- Merson on an orbit -----------------------------------------
      WRITE (*, 9000) 'KEPLER ORBIT, MERSON'
      Y(1) = 0.5D0
      Y(2) = 0.0D0
      Y(3) = 0.0D0
      Y(4) = SQRT(3.0D0)
      T = 0.0D0
      CALL RKMERS (KEPLER, 4, T, Y, 8.0D0*ATAN(1.0D0), 1.0D-9, 0.1D0,
     1             W, ISTAT, *910, *920)
      WRITE (*, 9030) T, (Y(K), K = 1, 4), ISTAT
C
C     ---- Adams -----------------------------------------------------
      WRITE (*, 9000) 'DECAY, ADAMS PREDICTOR-CORRECTOR'
      DO 50 K = 1, 3
         T = 0.0D0
         Y(1) = 1.0D0
         NSTEP = 10*2**K
         CALL ADPC (DECAY, 1, T, Y, 1.0D0, NSTEP, HIST, W, EST)
         WRITE (*, 9040) NSTEP, Y(1), ABS(Y(1) - EXP(-1.0D0)), EST
   50 CONTINUE
      CALL ADCOEF (6, .FALSE., G)
      WRITE (*, '('' EXPLICIT'',6F10.6)') (G(K), K = 0, 5)
      CALL ADCOEF (6, .TRUE., G)
      WRITE (*, '('' IMPLICIT'',6F10.6)') (G(K), K = 0, 5)
C
C     ---- stiff problems ----------------------------------------------
      WRITE (*, 9000) 'VAN DER POL, MU = 50, BDF'
      DMU = 50.0D0
      CALL STFINI
      T = 0.0D0
      Y(1) = 2.0D0
      Y(2) = 0.0D0
      N = 2
      CALL STFBDF (VDPOL, N, MAXN, T, Y, 20.0D0, 2000, WJ, W, IPIV,
     1             *930)
      WRITE (*, 9050) T, Y(1), Y(2), NFUN, NJAC, NITER, NFAIL
      WRITE (*, 9000) 'REACTION KINETICS, BDF'
      CALL STFINI
      T = 0.0D0
      Y(1) = 1.0D0
      Y(2) = 0.0D0
      Y(3) = 0.0D0
      CALL STFBDF (ROBERT, 3, MAXN, T, Y, 40.0D0, 4000, WJ, W, IPIV,
     1             *930)
      WRITE (*, 9060) (Y(K), K = 1, 3), Y(1) + Y(2) + Y(3)
      STOP
C
  910 STOP 'STEP TOO SMALL'
  920 STOP 'TOO MANY STEPS'
  930 STOP 'NEWTON FAILED'
 9000 FORMAT (/1X, A / 1X, 60('-'))
 9010 FORMAT (1X, A, ' ORDER', I2, I8, 1P, E14.4)
 9020 FORMAT (1X, 28X, I8, 1P, E14.4, 0P, F10.2)
 9030 FORMAT (1X, 'T =', F9.6, ' Y =', 4F12.8 / 1X, 'STEPS', I6,
     1        '  REFUSED', I6, '  EVALUATIONS', I6)
 9040 FORMAT (1X, I6, F16.12, 1P2E12.3)
 9050 FORMAT (' T =', F8.3, 2F14.8 / ' F', I7, ' JAC', I5, ' ITER',
     1        I7, ' FAIL', I4)
 9060 FORMAT (3(1X,1PE15.8), '  SUM', 0PF14.10)
      END
C-----------------------------------------------------------------------
C     The right-hand sides
C-----------------------------------------------------------------------
      SUBROUTINE OSCIL (N, T, Y, DY)
      INTEGER N
      DOUBLE PRECISION T, Y(N), DY(N)
      DY(1) = Y(2)
      DY(2) = -Y(1)
      END
      SUBROUTINE DECAY (N, T, Y, DY)
      INTEGER N
      DOUBLE PRECISION T, Y(N), DY(N)
      DY(1) = -Y(1)
      END
      SUBROUTINE KEPLER (N, T, Y, DY)
      INTEGER N
      DOUBLE PRECISION T, Y(N), DY(N), R3
      R3 = (Y(1)**2 + Y(2)**2)*SQRT(Y(1)**2 + Y(2)**2)
      DY(1) = Y(3)
      DY(2) = Y(4)
      DY(3) = -Y(1)/R3
      DY(4) = -Y(2)/R3
      END
      SUBROUTINE VDPOL (N, T, Y, DY)
      DOUBLE PRECISION T, Y(*), DY(*), RMU
      COMMON /VDPMU/ RMU
      DY(1) = Y(2)
      DY(2) = RMU*(1.0D0 - Y(1)**2)*Y(2) - Y(1)
      END
      SUBROUTINE ROBERT (N, T, Y, DY)
      DOUBLE PRECISION T, Y(*), DY(*), R1, R2, R3
      R1 = 0.04D0*Y(1)
      R2 = 1.0D4*Y(2)*Y(3)
      R3 = 3.0D7*Y(2)**2
      DY(1) = -R1 + R2
      DY(2) = R1 - R2 - R3
      DY(3) = R3
      END
