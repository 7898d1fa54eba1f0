      PROGRAM POISS
* The equation of Poisson,  d2u/dx2 + d2u/dy2 = f,  on a rectangle with
* given values on its boundary, or with no flux through its left and
* right sides, solved by relaxation with red and black points, by
* alternating directions, and directly by a sine or cosine transform.
      INCLUDE 'grid.inc'
      REAL U(0:MX, 0:MY), F(0:MX, 0:MY), EXACT(0:MX, 0:MY)
      REAL TOL, ERR, OMEGA, FLUX
      INTEGER NITER, NCASE
      REAL SOURCE, PEAK, HEAT
      EXTERNAL SOURCE, PEAK, HEAT
      CHARACTER NAMES(3)*22, JOB*6
      DATA NAMES /'red-black relaxation', 'alternating directions',
     $            'transform'/
*
      CALL INIT (2.0, 1.0)
      TOL = 1E-6
      DO 500 NCASE = 1, 3
         IF (NCASE .EQ. 3) BOUND = 'DNDN'
         GO TO (10, 20, 30) NCASE
   10    CALL PROBLM (SOURCE, U, F, EXACT)
         PRINT '(/'' Case 1: a smooth solution'')'
         GO TO 40
   20    CALL PROBLM (PEAK, U, F, EXACT)
         PRINT '(/'' Case 2: a steep solution'')'
         GO TO 40
   30    CALL PROBLM (HEAT, U, F, EXACT)
         PRINT '(/'' Case 3: sides without flux'')'
*
   40    CALL CLEAR (U)
         OMEGA = 2.0/(1.0 + SIN (3.1415927/MY))
         NITER = 2000
         CALL SWEEPS (U, F, OMEGA, TOL, NITER, *410)
         CALL COMPAR (NAMES(1), U, EXACT, NITER, ERR)
         IF (NCASE .LT. 3) THEN
            CALL CLEAR (U)
            CALL ALTDIR (U, F, 5, TOL, NITER)
            CALL COMPAR (NAMES(2), U, EXACT, NITER, ERR)
         END IF
         CALL CLEAR (U)
         JOB = 'Cosine'
         IF (BOUND(2:2) .EQ. 'D') JOB = 'Sine'
         CALL DIRECT (JOB, U, F, *420)
         CALL COMPAR (NAMES(3), U, EXACT, 0, ERR)
         IF (NCASE .EQ. 2) CALL MAP (U)
         PRINT 900, FLUX (U)
  500 CONTINUE
      STOP
  410 PRINT *, 'no convergence after', NITER, ' sweeps'
      STOP 1
  420 PRINT *, 'no transform of that kind: ', JOB
      STOP 2
  900 FORMAT (' Flux through the lower side:', F9.4)
      END

      SUBROUTINE INIT (A, B)
      INCLUDE 'grid.inc'
      REAL A, B
      HX = A/MX
      HY = B/MY
      CX = 1/HX**2
      CY = 1/HY**2
      CC = 2*(CX + CY)
      BOUND = 'DDDD'
      END

      SUBROUTINE PROBLM (FUN, U, F, EXACT)
* Tabulate a solution; its boundary values go into U, and the second
* differences of the grid applied to it into F, so that the solution of
* the difference equations is known exactly.
      INCLUDE 'grid.inc'
      REAL FUN, U(0:MX, 0:MY), F(0:MX, 0:MY), EXACT(0:MX, 0:MY)
      INTEGER I, J, IW, IE
      DO 10 J = 0, MY
         DO 10 I = 0, MX
            EXACT(I, J) = FUN (I*HX, J*HY)
            U(I, J) = EXACT(I, J)
   10 CONTINUE
      DO 20 J = 1, MY - 1
         DO 20 I = 0, MX
            IW = ABS (I - 1)
            IE = MX - ABS (MX - I - 1)
            F(I, J) = CX*(EXACT(IW, J) + EXACT(IE, J))
     $              + CY*(EXACT(I, J-1) + EXACT(I, J+1)) - CC*EXACT(I,J)
   20 CONTINUE
      END

      REAL FUNCTION SOURCE (X, Y)
* The solutions, functions of X and Y on [0, 2] x [0, 1].
      REAL X, Y, PEAK, HEAT, PI
      PARAMETER (PI = 3.1415927)
      SOURCE = SIN (PI*X/2)*Y*(1 - Y) + X*Y
      RETURN
      ENTRY PEAK (X, Y)
      PEAK = EXP (-40*((X - 1.5)**2 + (Y - 0.5)**2)) - X/4
      RETURN
      ENTRY HEAT (X, Y)
      HEAT = COS (PI*X)*EXP (-Y) + Y**2
      END

      SUBROUTINE CLEAR (U)
* Zero at all points where U is unknown.
      INCLUDE 'grid.inc'
      REAL U(0:MX, 0:MY)
      INTEGER I, J, IBEG, IEND
      CALL RANGE (IBEG, IEND)
      DO 10 J = 1, MY - 1
         DO 10 I = IBEG, IEND
   10       U(I, J) = 0.0
      END

      SUBROUTINE RANGE (IBEG, IEND)
* The first and the last unknown along X.
      INCLUDE 'grid.inc'
      INTEGER IBEG, IEND
      IBEG = 1
      IEND = MX - 1
      IF (BOUND(2:2) .EQ. 'N') IBEG = 0
      IF (BOUND(4:4) .EQ. 'N') IEND = MX
      END

      SUBROUTINE SWEEPS (U, F, OMEGA, TOL, NITER, *)
* Red points, then black ones, until no value moves by more than TOL.
      INCLUDE 'grid.inc'
      REAL U(0:MX, 0:MY), F(0:MX, 0:MY), OMEGA, TOL, MOST, STEP
      INTEGER NITER, MAX0, N, I, J, COLOUR, IBEG, IEND
      INTRINSIC MAX0
      CALL RANGE (IBEG, IEND)
      DO 40 N = 1, NITER
         MOST = 0.0
         DO 30 COLOUR = 0, 1
            DO 20 J = 1, MY - 1
               DO 10 I = IBEG + MOD (IBEG + J + COLOUR, 2), IEND, 2
                  STEP = (CX*(U(ABS (I-1), J) + U(MX - ABS (MX-I-1), J))
     $                 +  CY*(U(I, J-1) + U(I, J+1)) - F(I, J))/CC
     $                 -  U(I, J)
                  U(I, J) = U(I, J) + OMEGA*STEP
                  MOST = MAX (MOST, ABS (STEP))
   10          CONTINUE
   20       CONTINUE
   30    CONTINUE
         IF (MOST .LT. TOL) THEN
            NITER = MAX0 (N, 1)
            RETURN
         ENDIF
   40 CONTINUE
      RETURN 1
      END

      SUBROUTINE ALTDIR (U, F, NPAR, TOL, NITER)
* Alternating directions with NPAR parameters in turn, in geometrical
* progression between the extreme eigenvalues.
      INCLUDE 'grid.inc'
      REAL U(0:MX, 0:MY), F(0:MX, 0:MY), TOL, RHO(10), LOW, HIGH, D
      REAL A(0:MX), B(0:MX), C(0:MX), S(0:MX)
      INTEGER NPAR, NITER, K, N, I, J
      EQUIVALENCE (WORK(1), A(0)), (WORK(MX + 2), B(0))
      EQUIVALENCE (WORK(2*MX + 3), C(0)), (WORK(3*MX + 4), S(0))
      LOW = 4*MIN (CX*SIN (1.5708/MX)**2, CY*SIN (1.5708/MY)**2)
      HIGH = 4*MAX (CX, CY)
      DO 10 K = 1, NPAR
   10 RHO(K) = LOW*(HIGH/LOW)**((2*K - 1.0)/(2*NPAR))
      DO 90 NITER = 1, 100
         D = 0.0
         K = MOD (NITER - 1, NPAR) + 1
*        Implicit along the rows.
         DO 30 J = 1, MY - 1
            DO 20 I = 1, MX - 1
               A(I) = -CX
               B(I) = RHO(K) + 2*CX
               C(I) = -CX
               S(I) = RHO(K)*U(I, J) + CY*(U(I, J-1) - 2*U(I, J)
     $              + U(I, J+1)) - F(I, J)
   20       CONTINUE
            S(1) = S(1) + CX*U(0, J)
            S(MX - 1) = S(MX - 1) + CX*U(MX, J)
            CALL LINE (A(1), B(1), C(1), S(1), MX - 1)
            CALL MOVE (S(1), WORK((MX+1)*(MY+1) + (J-1)*(MX-1) + 1),
     $                 MX - 1)
   30    CONTINUE
         DO 40 J = 1, MY - 1
            CALL MOVE (WORK((MX+1)*(MY+1) + (J-1)*(MX-1) + 1), U(1, J),
     $                 MX - 1)
   40    CONTINUE
*        Implicit along the columns; the neighbours' old values are
*        needed, so the new columns lag behind by one.
         DO 70 I = 1, MX - 1
            DO 50 J = 1, MY - 1
               A(J) = -CY
               B(J) = RHO(K) + 2*CY
               C(J) = -CY
               N = (MX + 1)*(MY + 1) + (J - 1)*(MX - 1) + I
               S(J) = (RHO(K) - 2*CX)*U(I, J) + CX*U(I+1, J) - F(I, J)
               IF (I .EQ. 1) S(J) = S(J) + CX*U(0, J)
               IF (I .GT. 1) S(J) = S(J) + CX*WORK(N - 1)
   50       CONTINUE
            S(1) = S(1) + CY*U(I, 0)
            S(MY - 1) = S(MY - 1) + CY*U(I, MY)
            CALL LINE (A(1), B(1), C(1), S(1), MY - 1)
            DO 60 J = 1, MY - 1
               D = MAX (D, ABS (S(J) - U(I, J)))
               U(I, J) = S(J)
   60       CONTINUE
   70    CONTINUE
         IF (D .LT. TOL .AND. K .EQ. NPAR) RETURN
   90 CONTINUE
      END

      SUBROUTINE LINE (A, B, C, S, N)
      INTEGER N, I
      REAL A(N), B(N), C(N), S(N)
      DO 10 I = 2, N
         B(I) = B(I) - A(I)/B(I-1)*C(I-1)
   10 S(I) = S(I) - A(I)/B(I-1)*S(I-1)
      S(N) = S(N)/B(N)
      DO 20 I = N - 1, 1, -1
   20 S(I) = (S(I) - C(I)*S(I+1))/B(I)
      END

      SUBROUTINE MOVE (FROM, TO, N)
      INTEGER N, I
      REAL FROM(N), TO(N)
      DO 10, I = 1, N
         TO(I) = FROM(I)
   10 CONTINUE
      END

      SUBROUTINE DIRECT (KIND, U, F, *)
* Expand along X in sines or cosines, solve for each of them along Y,
* and sum up.
      CHARACTER*(*) KIND
      INCLUDE 'grid.inc'
      REAL U(0:MX, 0:MY), F(0:MX, 0:MY), G(0:MX, 0:MY), T(0:2*MX), S
      REAL A(MY), B(MY), C(MY), R(MY), PI, EIGEN
      INTEGER IBEG, IEND, I, J, K, N, KSHIFT, L
      PARAMETER (PI = 3.1415927)
      IF (KIND .EQ. 'Sine' .OR. KIND .EQ. 'sine') THEN
         KSHIFT = 0
      ELSE IF (KIND(:6) .EQ. 'Cosine') THEN
         KSHIFT = MX/2
      ELSE
         RETURN 1
      END IF
      CALL RANGE (IBEG, IEND)
*     A sine is a cosine a quarter of the period earlier.
      DO 10 I = 0, 2*MX
         T(I) = SIN (PI*I/MX)
   10 CONTINUE
*     Boundary values on the right hand side.
      DO 20 J = 1, MY - 1
         DO 20 I = IBEG, IEND
            G(I, J) = F(I, J)
            IF (J .EQ. 1) G(I, J) = G(I, J) - CY*U(I, 0)
            IF (J .EQ. MY - 1) G(I, J) = G(I, J) - CY*U(I, MY)
            IF (I .EQ. 1 .AND. IBEG .EQ. 1) G(I, J) = G(I, J)
     $         - CX*U(0, J)
            IF (I .EQ. MX - 1 .AND. IEND .EQ. I) G(I, J) = G(I, J)
     $         - CX*U(MX, J)
   20 CONTINUE
      DO 30 J = 1, MY - 1
         DO 30 I = IBEG, IEND
   30    U(I, J) = 0
      DO 80 K = IBEG, IEND
         EIGEN = 2*CX*(COS (PI*K/MX) - 1)
         N = MY - 1
         DO 50 J = 1, N
            S = 0
            DO 40 I = IBEG, IEND
               L = MOD (I*K + KSHIFT, 2*MX)
               IF (I .EQ. 0 .OR. I .EQ. MX) THEN
                  S = S + T(L)*G(I, J)/2
               ELSE
                  S = S + T(L)*G(I, J)
               END IF
   40       CONTINUE
            R(J) = 2*S/MX
            IF (K .EQ. 0 .OR. K .EQ. MX) R(J) = R(J)/2
            A(J) = CY
            B(J) = EIGEN - 2*CY
            C(J) = CY
   50    CONTINUE
         CALL LINE (A, B, C, R, N)
         DO 70 J = 1, N
            DO 60 I = IBEG, IEND
               U(I, J) = U(I, J) + R(J)*T(MOD (I*K + KSHIFT, 2*MX))
   60       CONTINUE
   70    CONTINUE
   80 CONTINUE
      END

      SUBROUTINE COMPAR (NAME, U, EXACT, NITER, ERR)
      CHARACTER*(*) NAME
      INCLUDE 'grid.inc'
      REAL U(0:MX, 0:MY), EXACT(0:MX, 0:MY), ERR
      INTEGER NITER, I, J
      CHARACTER*9 VERDIC
      ERR = 0.0
      DO 10 J = 0, MY
         DO 10 I = 0, MX
   10 ERR = AMAX1 (ERR, ABS (U(I, J) - EXACT(I, J)))
      IF (ERR .LT. 1E-4) THEN
         VERDIC = 'accurate'
      ELSE IF (ERR .LT. 1E-2) THEN
         VERDIC = 'rough'
      ELSE
         VERDIC = 'useless'
      END IF
      IF (NITER .GT. 0) THEN
         PRINT 20, NAME, VERDIC, NITER
      ELSE
         PRINT 20, NAME, VERDIC
      END IF
   20 FORMAT (1X, A, T26, A9, :, I5, ' iterations')
      END

      SUBROUTINE MAP (U)
* A map of the solution with letters for its height.
      INCLUDE 'grid.inc'
      REAL U(0:MX, 0:MY), LOW, HIGH
      CHARACTER STEPS*10, ROW(0:MX)*1
      PARAMETER (STEPS = '.-:=+*oO%#')
      INTEGER I, J, K
      LOW = U(0, 0)
      HIGH = LOW
      DO 10 J = 0, MY
      DO 10 I = 0, MX
         LOW = MIN (LOW, U(I, J))
         HIGH = MAX (HIGH, U(I, J))
   10 CONTINUE
      DO 30 J = MY, 0, -2
         DO 20 I = 0, MX
            K = MIN (INT (10*(U(I, J) - LOW)/(HIGH - LOW)), 9) + 1
            ROW(I) = STEPS(K:K)
   20    CONTINUE
         PRINT 40, ROW
   30 CONTINUE
   40 FORMAT (5X, 40A1)
      END

      REAL FUNCTION FLUX (U)
* The flux through the lower side, by the trapezoidal rule and one sided
* differences of second order.
      INCLUDE 'grid.inc'
      REAL U(0:MX, 0:MY), SLOPE, W
      INTEGER I
      SLOPE (I) = (-3*U(I, 0) + 4*U(I, 1) - U(I, 2))/(2*HY)
      FLUX = 0
      DO 10 I = 0, MX
         W = HX
         IF (I .EQ. 0 .OR. I .EQ. MX) W = HX/2
         FLUX = FLUX + W*SLOPE (I)
   10 CONTINUE
      END
