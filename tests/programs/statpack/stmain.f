      PROGRAM STMAIN
C     A tour of the statistics on made-up data.
      INTEGER N, NV, NCELL
      PARAMETER (N = 500, NV = 3, NCELL = 10)
      REAL X(N), Y(N), XV(N,NV), COEF(0:NV), SE(NV), R(N), EXPECT(NCELL)
      INTEGER NOBS(NCELL), IDX(N), DECK(52), IERR, I, J, K, S1, S2
      DOUBLE PRECISION A(NV,NV)
      REAL MEDIAN, UNIFRM, RNORML, REXPON
      CHARACTER*8 LABEL(0:NV)
      LOGICAL SEEN(52)
      EXTERNAL RNGBD
      DATA LABEL /'CONSTANT', 'FIRST', 'SECOND', 'THIRD'/
      DATA SEEN /52*.FALSE./, NOBS /NCELL*0/
C
      CALL RNSEED (2024, 11)
      DO 10 I = 1, 10000
         K = 1 + INT(NCELL*UNIFRM())
         NOBS(K) = NOBS(K) + 1
   10 CONTINUE
      DO 20 K = 1, NCELL
   20    EXPECT(K) = 1000.0
      C = CHISQ(NOBS, EXPECT, NCELL)
      WRITE (*, 901) NCELL - 1, C .LT. 27.9
C
      DO 30 I = 1, N
   30    X(I) = RNORML(50.0, 10.0)
      CALL MOMENT (X, N, AVE, SDEV, SKEW, CURT, *800)
      CALL SORTR (X, N)
      WRITE (*, 902) 'NORMAL', ABS(AVE - 50.0) .LT. 2.0,
     1   ABS(SDEV - 10.0) .LT. 1.5, ABS(MEDIAN(X, N) - 50.0) .LT. 2.0
      DO 35 I = 2, N
         IF (X(I) .LT. X(I-1)) STOP 'NOT SORTED'
   35 CONTINUE
      WRITE (*, 902) 'QUARTILE', ABS(QUANTL(X, N, 0.25) - 43.26) .LT. 3.
      DO 40 I = 1, N
   40    Y(I) = REXPON(4.0)
      CALL MOMENT (Y, N, AVE, SDEV, SKEW, CURT, *800)
      WRITE (*, 902) 'EXPON', ABS(AVE - 4.0) .LT. 0.8, SKEW .GT. 1.0
      J = 0
      DO 50 I = 1, 1000
   50    J = J + NPOISS(2.5)
      WRITE (*, 902) 'POISSON', ABS(J - 2500) .LT. 250
C
C     a deck of cards stays a deck
      DO 60 I = 1, 52
   60    DECK(I) = I
      CALL SHUFFL (DECK, 52)
      DO 70 I = 1, 52
         IF (SEEN(DECK(I))) STOP 'A CARD TWICE'
         SEEN(DECK(I)) = .TRUE.
   70 CONTINUE
C
C     correlation, plain and of ranks
      DO 80 I = 1, N
         X(I) = UNIFRM()
         Y(I) = X(I)**3
   80 CONTINUE
      C = CORREL(X, Y, N)
      CALL RANKS (X, IDX, R, N)
      DO 90 I = 1, N
   90    X(I) = R(I)
      CALL RANKS (Y, IDX, R, N)
      WRITE (*, 903) C, CORREL(X, R, N)
C
C     regression on known coefficients
      DO 110 I = 1, N
         DO 100 J = 1, NV
            XV(I,J) = RNORML(0.0, 1.0)
  100    CONTINUE
         Y(I) = 5.0 + 2.0*XV(I,1) - 3.0*XV(I,2) + 0.5*XV(I,3)
     1          + RNORML(0.0, 0.1)
  110 CONTINUE
      CALL LINREG (XV, N, N, NV, Y, COEF, SE, RSQ, A, IERR)
      WRITE (*, 904) IERR, ANINT(1000.0*RSQ)/1000.0
      WRITE (*, 905) LABEL(0), NINT(COEF(0)*10)/10.
      DO 120 J = 1, NV
         WRITE (*, 905) LABEL(J), NINT(COEF(J)*10)/10., SE(J) .LT. 0.01
  120 CONTINUE
C     a variable that is the sum of the others is found
      DO 130 I = 1, N
  130    XV(I,3) = XV(I,1) + XV(I,2)
      CALL LINREG (XV, N, N, NV, Y, COEF, SE, RSQ, A, IERR)
      WRITE (*, '('' DEPENDENT VARIABLE'', I3)') IERR
      T = TTEST(XV(1,1), N, XV(1,2), N, DF)
      WRITE (*, 902) 'T TEST', ABS(T) .LT. 4.0, DF .GT. 900.
      CALL RNSTAT (S1, S2)
      IF (S1 .LE. 0 .OR. S2 .LE. 0) STOP 'BAD STATE'
      STOP
  800 WRITE (*, *) 'NO DATA'
  901 FORMAT (' CHI SQUARE WITH', I3, ' DEGREES OF FREEDOM', L3)
  902 FORMAT (1X, A8, 5L3)
  903 FORMAT (' CORRELATION', F7.2, '  OF RANKS', F7.3)
  904 FORMAT (' REGRESSION, ERROR', I2, ' R SQUARE', F6.3)
  905 FORMAT (3X, A, F8.2, :, L4)
      END
