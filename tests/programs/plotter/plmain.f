      PROGRAM PLMAIN
C     A spiral, two curves, and the set of points that stay bounded under
C     z*z + c, the last one written straight to the page.
      INTEGER N, I, J, K
      PARAMETER (N = 60)
      REAL X(N), Y(N), BUMP, WAVE
      COMPLEX Z, C
      CHARACTER*10 SHADE
      CHARACTER*61 LINE
      EXTERNAL BUMP, WAVE
      INTRINSIC SIN
      DATA SHADE /' .:-=+*%@#'/
C
      DO 10 I = 1, N
         Z = 0.05*I*EXP((0.0, 0.3)*I)
         X(I) = REAL(Z)
         Y(I) = AIMAG(Z)
   10 CONTINUE
      CALL PLINIT (61, 21)
      CALL PLAUTO (X, Y, N)
      CALL PLPNTS (X, Y, N, 'o*')
      CALL PLEND (6, 'A SPIRAL')
C
      CALL PLINIT (61, 16)
      CALL PLSCAL (-3.0, 3.0, -1.0, 1.0)
      CALL PLLINE (-3.0, 0.0, 3.0, 0.0, '.')
      CALL PLCURV (BUMP, 'B')
      CALL PLCURV (SIN, 'S')
      CALL PLCURV (WAVE, 'W')
      CALL PLTEXT (-2.8, 0.9, 'B BUMP S SINE')
      CALL PLEND (6, 'CURVES')
C
      DO 40 I = 10, -10, -2
         DO 30 J = 1, 61
            C = CMPLX(-2.0 + 0.05*(J - 1), 0.12*I)
            Z = (0.0, 0.0)
            DO 20 K = 1, 50
               Z = Z**2 + C
               IF (REAL(Z*CONJG(Z)) .GT. 4.0) GO TO 25
   20       CONTINUE
   25       K = MIN(K, 50)/5
            LINE(J:J) = SHADE(MIN(10, K + 1):MIN(10, K + 1))
   30    CONTINUE
         WRITE (*, '(14X,A)') LINE
   40 CONTINUE
      END
C
      REAL FUNCTION BUMP (X)
      BUMP = EXP(-X*X)
      RETURN
      ENTRY WAVE (X)
      WAVE = 0.5*COS(3.0*X)
      END
