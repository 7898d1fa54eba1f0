      PROGRAM TSPARS
C
C     SOLVE A DIFFUSION PROBLEM ON A GRID IN EACH WAY, AND COMPARE; THEN
C     ADD A WIND, WHICH MAKES THE MATRIX UNSYMMETRIC, AND A RING, WHOSE
C     UNKNOWNS ARE BADLY NUMBERED.
C
      INTEGER NX, NY, N, MAXNZ, MAXS, M
      PARAMETER (NX = 9, NY = 7, N = NX*NY, MAXNZ = 5*N, MAXS = 2000,
     +           M = 12)
      INTEGER IROW, ICOL, IT(MAXNZ), JT(MAXNZ), NT, IER, ITER, NNEG
      DOUBLE PRECISION VAL, DIAG, T(MAXNZ)
      COMMON /MATRIX/ VAL(MAXNZ), DIAG(N), IROW(N + 1), ICOL(MAXNZ)
      DOUBLE PRECISION B(N), X(N), XTRUE(N), WORK(N*(M + 2)),
     +                 H((M + 1)*(M + 4)), S(MAXS), RES, SPGET, WIND
      INTEGER LD(0:N), LEVEL(N), JROW(N + 1), JCOL(MAXNZ)
      DOUBLE PRECISION W(MAXNZ)
      EQUIVALENCE (S, H), (LD(0), LEVEL(1)), (W(1), T(1))
      INTEGER I, J, K, NSWEEP
      CHARACTER*20 METHOD
      EXTERNAL AMULT, NOPREC, JACPRE, SPGET
      DATA METHOD /' '/
C     POSITION OF A POINT OF THE GRID
      IPOS (I, J) = (J - 1)*NX + I
C
      DO 300 K = 0, 1
         WIND = 0.4D0*K
         NT = 0
         DO 20 J = 1, NY
            DO 10 I = 1, NX
               L = IPOS (I, J)
               CALL PUT (NT, IT, JT, T, L, L, 2D0)
               CALL PUT (NT, IT, JT, T, L, L, 2D0)
               IF (I .GT. 1) CALL PUT (NT, IT, JT, T, L, L - 1,
     +            -1D0 - WIND)
               IF (I .LT. NX) CALL PUT (NT, IT, JT, T, L, L + 1,
     +            -1D0 + WIND)
               IF (J .GT. 1) CALL PUT (NT, IT, JT, T, L, L - NX, -1D0)
               IF (J .LT. NY .AND. NT .LT. MAXNZ) THEN
                  CALL PUT (NT, IT, JT, T, L, L + NX, -1D0)
               END IF
               XTRUE(L) = DBLE (I*J)/N
               IF (MOD (L, 8) .EQ. 0) CALL SQUASH (NT, IT, JT, T)
   10       CONTINUE
   20    CONTINUE
         CALL SPBLD (N, NT, IT, JT, T, MAXNZ, IROW, ICOL, VAL, IER)
         IF (IER .NE. 0) GO TO 900
         IF (SPGET (N, IROW, ICOL, VAL, 5, 5) .NE. 4D0) GO TO 910
         DO 30 I = 1, N
            DIAG(I) = SPGET (N, IROW, ICOL, VAL, I, I)
   30    CONTINUE
         CALL AMULT (XTRUE, B)
         WRITE (*, 950) N, IROW(N + 1) - 1, WIND
C
         IF (K .EQ. 0) THEN
            METHOD = 'gradients'
            CALL ZERO (N, X)
            CALL CONGRD (N, AMULT, NOPREC, B, X, 1D-10, 200, WORK, ITER,
     +                   RES)
            CALL SHOW (METHOD, ITER, N, X, XTRUE)
            METHOD(11:) = 'scaled'
            CALL ZERO (N, X)
            CALL CONGRD (N, AMULT, JACPRE, B, X, 1D-10, 200, WORK, ITER,
     +                   RES)
            CALL SHOW (METHOD, ITER, N, X, XTRUE)
         END IF
         METHOD = 'minimal residuals'
         CALL ZERO (N, X)
         CALL GENMIN (N, AMULT, JACPRE, B, X, 1D-10, 300, M, WORK, H,
     +                ITER, RES)
         CALL SHOW (METHOD, ITER, N, X, XTRUE)
         METHOD = 'overrelaxation'
         CALL ZERO (N, X)
         NSWEEP = 500
         CALL SUCCOR (N, IROW, ICOL, VAL, B, X, 1.5D0, 1D-11, NSWEEP,
     +                *910, *920)
         CALL SHOW (METHOD, NSWEEP, N, X, XTRUE)
         IF (K .EQ. 0) THEN
            METHOD = 'skyline'
            CALL SKYLD (N, IROW, ICOL, VAL, MAXS, LD, S, *930)
            CALL SKYFAC (N, LD, S, NNEG, *910)
            DO 40 I = 1, N
   40       X(I) = B(I)
            CALL SKYSOL (N, LD, S, X)
            CALL SHOW (METHOD, LD(N), N, X, XTRUE)
         END IF
  300 CONTINUE
C     THE TRANSPOSED MATRIX MUST DO AS THE PRODUCT FROM THE LEFT.
      CALL SPTRAN (N, IROW, ICOL, VAL, JROW, JCOL, W)
      CALL SPTMUL (N, IROW, ICOL, VAL, XTRUE, B)
      CALL SPMUL (N, JROW, JCOL, W, XTRUE, X)
      CALL SHOW ('transposition', 0, N, X, B)
      CALL RING
      STOP
  900 WRITE (*, *) 'matrix not accepted, code', IER
      STOP 1
  910 PAUSE 'bad diagonal'
      STOP 2
  920 WRITE (*, *) 'no convergence with ', METHOD
      STOP 3
  930 WRITE (*, '(A, I7)') ' skyline needs more room than', MAXS
  950 FORMAT (/' GRID WITH', I4, ' POINTS,', I5, ' ELEMENTS, WIND',
     +        F5.1/)
      END
C
      SUBROUTINE PUT (NT, IT, JT, T, I, J, V)
      INTEGER NT, IT(*), JT(*), I, J
      DOUBLE PRECISION T(*), V
      NT = NT + 1
      IT(NT) = I
      JT(NT) = J
      T(NT) = V
      END
C
      SUBROUTINE SQUASH (NT, IT, JT, T)
C     PUT TOGETHER NEIGHBOURS IN THE LIST FOR THE SAME ELEMENT, SO THAT
C     IT DOES NOT GROW TOO LONG.
      INTEGER NT, IT(*), JT(*), K, L
      DOUBLE PRECISION T(*)
      L = 1
      DO 10 K = 2, NT
         IF (IT(K) .EQ. IT(L) .AND. JT(K) .EQ. JT(L)) THEN
            T(L) = T(L) + T(K)
         ELSE
            L = L + 1
            IT(L) = IT(K)
            JT(L) = JT(K)
            T(L) = T(K)
         END IF
   10 CONTINUE
      NT = L
      END
C
      SUBROUTINE AMULT (X, Y)
C     WHAT THE SOLVERS CALL.
      INTEGER N, MAXNZ
      PARAMETER (N = 63, MAXNZ = 5*N)
      DOUBLE PRECISION VAL, DIAG, X(N), Y(N)
      COMMON /MATRIX/ VAL(MAXNZ), DIAG(N), IROW(N + 1), ICOL(MAXNZ)
      CALL SPMUL (N, IROW, ICOL, VAL, X, Y)
      RETURN
      ENTRY JACPRE (X, Y)
      DO 10 I = 1, N
         Y(I) = X(I)/DIAG(I)
   10 CONTINUE
      RETURN
      ENTRY NOPREC (X, Y)
      DO 20 I = 1, N
   20 Y(I) = X(I)
      END
C
      SUBROUTINE ZERO (N, X)
      DOUBLE PRECISION X(N)
      DO 10 I = 1, N
   10 X(I) = 0
      END
C
      SUBROUTINE SHOW (METHOD, ITER, N, X, XTRUE)
      CHARACTER*(*) METHOD
      INTEGER ITER, N, NGOOD
      DOUBLE PRECISION X(N), XTRUE(N), ERR
      CHARACTER*5 WORD(0:1)
      DATA WORD /'WRONG', 'right'/
      ERR = 0
      DO 10 I = 1, N
         ERR = MAX (ERR, ABS (X(I) - XTRUE(I)))
   10 CONTINUE
      NGOOD = 0
      IF (ERR .LE. 1D-7) NGOOD = 1
      WRITE (*, 20) METHOD, ITER, WORD(NGOOD)
   20 FORMAT (1X, A, T24, I5, 3X, A5)
      END
C
      SUBROUTINE RING
C     A RING OF 20 UNKNOWNS, EACH BOUND TO THE ONES SEVEN AWAY.
      INTEGER N, NZ
      PARAMETER (N = 20, NZ = 3*N)
      INTEGER IT(NZ), JT(NZ), IROW(N + 1), ICOL(NZ), NEW(N), LEVEL(N)
      INTEGER LD(0:N), ENV(2), PASS
      DOUBLE PRECISION T(NZ), VAL(NZ), S(N*(N + 1)/2), X(N)
      DATA T /NZ*-1D0/, (IT(I), I = 1, N) /N*0/
      DO 10 I = 1, N
         IT(I) = I
         JT(I) = I
         T(I) = 3D0
         IT(N + I) = I
         JT(N + I) = MOD (I + 6, N) + 1
         IT(2*N + I) = JT(N + I)
         JT(2*N + I) = I
   10 CONTINUE
      DO 40 PASS = 1, 2
         CALL SPBLD (N, NZ, IT, JT, T, NZ, IROW, ICOL, VAL, IER)
         CALL SPSHOW (N, IROW, ICOL, VAL, 6)
         CALL SKYLD (N, IROW, ICOL, VAL, N*(N + 1)/2, LD, S, *90)
         ENV(PASS) = LD(N)
         CALL SKYFAC (N, LD, S, NNEG, *90)
         DO 20 I = 1, N
            X(I) = 1D0
   20    CONTINUE
         CALL SKYSOL (N, LD, S, X)
         WRITE (*, '(1X,''largest, smallest'',2F10.6,I5,'' negative'')')
     +      MAX (X(1), X(N/2), X(N)), MIN (X(1), X(N/2), X(N)), NNEG
         CALL REORD (N, IROW, ICOL, NEW, LEVEL)
         DO 30 K = 1, NZ
            IT(K) = NEW(IT(K))
            JT(K) = NEW(JT(K))
   30    CONTINUE
   40 CONTINUE
      PRINT 50, ENV
   50 FORMAT (' Skyline:', I5, ' elements before,', I5, ' after')
      RETURN
   90 STOP 'RING'
      END
