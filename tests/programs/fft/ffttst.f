*     Tests of the transforms, and a small spectrum drawn in asterisks.
      PROGRAM FFTTST
      INTEGER N, I, J, K, NA, NC, M, NBAD
      COMPLEX X(0:255), Y(0:255), Z(0:255), A(0:511), B(0:511)
      REAL R(256), AMP(0:128), P(20), Q(20), PQ(40), DIFF, ERR
      EQUIVALENCE (R(1), Z(0))
      REAL C1, C2
      INTEGER SEED
      CHARACTER BAR*50
      LOGICAL OK, ALLOK
      DATA NBAD /0/, SEED /12345/, BAR /' '/
      DIFF(C1, C2) = ABS(C1 - C2)
*
      ALLOK = .TRUE.
*     powers of two against the definition
      N = 1
   10 IF (N .LE. 128) THEN
         DO 20 I = 0, N - 1
            X(I) = CMPLX(RAND1(SEED), RAND1(SEED))
            Z(I) = X(I)
   20    CONTINUE
         CALL CDFT (X, Y, N, -1)
         CALL CFFT2 (X, N, -1, *900)
         ERR = 0.0
         DO 30 I = 0, N - 1
   30       ERR = MAX(ERR, CABS(X(I) - Y(I)))
         CALL CFFT2 (X, N, 1, *900)
         DO 40 I = 0, N - 1
   40       ERR = MAX(ERR, CABS(X(I) - Z(I)))
         OK = ERR .LT. 1.0E-4
         ALLOK = ALLOK .AND. OK
         PRINT '(1X,''LENGTH'',I5,L4)', N, OK
         N = N*2
         GOTO 10
      END IF
*     any length
      DO 80 N = 3, 99, 24
         DO 50 I = 0, N - 1
   50    X(I) = CMPLX(RAND1(SEED), 0.0)
         CALL CDFT (X, Y, N, -1)
         M = 512
         CALL CFFTB (X, N, -1, A, B, M, *900)
         ERR = 0.0
         DO 60 I = 0, N - 1
   60    ERR = MAX(ERR, ABS(X(I) - Y(I)))
         OK = ERR .LT. 1.0E-3
         ALLOK = ALLOK .AND. OK
         PRINT '(1X,''CHIRP '',I5,L4)', N, OK
   80 CONTINUE
*     a length that is refused
      CALL CFFT2 (X, 12, -1, *90)
      ALLOK = .FALSE.
   90 CONTINUE
*
*     two cosines and a constant
      N = 256
      DO 100 I = 1, N
         R(I) = 1.0 + 3.0*COS(6.2831853*10*(I-1)/N)
     &              + 1.5*SIN(6.2831853*37*(I-1)/N)
  100 CONTINUE
      CALL RSPEC (R, N, AMP, NA)
      DO 110 K = 0, NA
         IF (AMP(K) .GT. 0.01) THEN
            I = MIN(50, NINT(10*AMP(K)))
            BAR = ' '
            DO 105 J = 1, I
  105       BAR(J:J) = '*'
            PRINT 1000, K, AMP(K), BAR
         END IF
  110 CONTINUE
      IF (DIFF(AMP(10), 3.0) .GT. 1E-4 .OR. DIFF(AMP(37), 1.5) .GT.
     &    1E-4 .OR. DIFF(AMP(0), 1.0) .GT. 1E-4) ALLOK = .FALSE.
*
*     multiplication of polynomials: (1 + x)**4 times (1 - x)**4
      CALL BINOM (4, 1.0, P)
      CALL BINOM (4, -1.0, Q)
      CALL CONVOL (P, 5, Q, 5, PQ, NC, 40)
      PRINT '(1X, 9F6.1)', (ANINT(PQ(I)), I = 1, NC)
      IF (NC .NE. 9 .OR. NINT(PQ(5)) .NE. 6) NBAD = NBAD + 1
      IF (ALLOK .AND. NBAD .EQ. 0) STOP
  900 PRINT *, 'SOMETHING IS WRONG'
 1000 FORMAT (1X, I4, F8.3, ' |', A)
      END
*
      SUBROUTINE BINOM (N, X, C)
      REAL C(N + 1), X
      C(1) = 1
      DO 10 K = 1, N
   10 C(K + 1) = C(K)*X*(N - K + 1)/K
      END
*
      REAL FUNCTION RAND1 (ISEED)
*     poor, but the same everywhere
      ISEED = MOD(ISEED*137 + 4711, 65536)
      RAND1 = ISEED/65536.0
      END
