C     Cubic splines: the second derivatives from a tridiagonal system,
C     the value, the slope and the integral of the curve.  The driver
C     interpolates the sine and prints the largest errors.
      PROGRAM SPLDRV
      INTEGER N, M, I
      PARAMETER (N = 21, M = 200)
      DOUBLE PRECISION X(N), Y(N), Y2(N), WORK(N)
      DOUBLE PRECISION PI, T, V, D, E, EV, ED, AREA, SPLINT
      INTEGER IER
      EXTERNAL SPLINT
C
      PI = 4.0D0 * ATAN(1.0D0)
      DO 10 I = 1, N
         X(I) = PI * DBLE(I - 1) / DBLE(N - 1)
         Y(I) = SIN(X(I))
   10 CONTINUE
      CALL SPLSET(N, X, Y, 1.0D0, -1.0D0, Y2, WORK, IER)
      IF (IER .NE. 0) GO TO 900
C
      EV = 0.0D0
      ED = 0.0D0
      DO 20 I = 0, M
         T = PI * DBLE(I) / DBLE(M)
         CALL SPLEV(N, X, Y, Y2, T, V, D, IER)
         IF (IER .NE. 0) GO TO 900
         E = ABS(V - SIN(T))
         IF (E .GT. EV) EV = E
         E = ABS(D - COS(T))
         IF (E .GT. ED) ED = E
   20 CONTINUE
      AREA = SPLINT(N, X, Y, Y2)
      WRITE (*, 1000) EV, ED, AREA - 2.0D0
      STOP
C
  900 WRITE (*, 1010) IER
      STOP 1
 1000 FORMAT (' ERROR OF THE VALUE   ', 1PE12.4 /
     1        ' ERROR OF THE SLOPE   ', 1PE12.4 /
     2        ' ERROR OF THE INTEGRAL', 1PE12.4)
 1010 FORMAT (' SPLINE FAILED WITH CODE', I3)
      END
C
C     The second derivatives at the knots.  A slope at an end beyond
C     1.0D30 asks for the natural end condition there.
      SUBROUTINE SPLSET(N, X, Y, YP1, YPN, Y2, U, IER)
      INTEGER N, IER, I, K
      DOUBLE PRECISION X(N), Y(N), YP1, YPN, Y2(N), U(N)
      DOUBLE PRECISION P, QN, SIG, UN, BIG
      PARAMETER (BIG = 1.0D30)
C
      IER = 1
      IF (N .LT. 3) RETURN
      IER = 2
      DO 10 I = 2, N
         IF (X(I) .LE. X(I-1)) RETURN
   10 CONTINUE
      IER = 0
      IF (YP1 .GE. BIG) THEN
         Y2(1) = 0.0D0
         U(1) = 0.0D0
      ELSE
         Y2(1) = -0.5D0
         U(1) = (3.0D0 / (X(2) - X(1)))
     1        * ((Y(2) - Y(1)) / (X(2) - X(1)) - YP1)
      ENDIF
      DO 20 I = 2, N - 1
         SIG = (X(I) - X(I-1)) / (X(I+1) - X(I-1))
         P = SIG * Y2(I-1) + 2.0D0
         Y2(I) = (SIG - 1.0D0) / P
         U(I) = (6.0D0 * ((Y(I+1) - Y(I)) / (X(I+1) - X(I))
     1        - (Y(I) - Y(I-1)) / (X(I) - X(I-1)))
     2        / (X(I+1) - X(I-1)) - SIG * U(I-1)) / P
   20 CONTINUE
      IF (YPN .GE. BIG) THEN
         QN = 0.0D0
         UN = 0.0D0
      ELSE
         QN = 0.5D0
         UN = (3.0D0 / (X(N) - X(N-1)))
     1      * (YPN - (Y(N) - Y(N-1)) / (X(N) - X(N-1)))
      ENDIF
      Y2(N) = (UN - QN * U(N-1)) / (QN * Y2(N-1) + 1.0D0)
      DO 30 K = N - 1, 1, -1
         Y2(K) = Y2(K) * Y2(K+1) + U(K)
   30 CONTINUE
      RETURN
      END
C
C     The value V and the slope D of the spline at T.
      SUBROUTINE SPLEV(N, X, Y, Y2, T, V, D, IER)
      INTEGER N, IER, KLO, KHI, K
      DOUBLE PRECISION X(N), Y(N), Y2(N), T, V, D, A, B, H
C
      KLO = 1
      KHI = N
    1 IF (KHI - KLO .GT. 1) THEN
         K = (KHI + KLO) / 2
         IF (X(K) .GT. T) THEN
            KHI = K
         ELSE
            KLO = K
         ENDIF
         GO TO 1
      ENDIF
      H = X(KHI) - X(KLO)
      IER = 3
      IF (H .EQ. 0.0D0) RETURN
      IER = 0
      A = (X(KHI) - T) / H
      B = (T - X(KLO)) / H
      V = A * Y(KLO) + B * Y(KHI)
     1  + ((A**3 - A) * Y2(KLO) + (B**3 - B) * Y2(KHI)) * H**2 / 6.0D0
      D = (Y(KHI) - Y(KLO)) / H
     1  - (3.0D0 * A**2 - 1.0D0) / 6.0D0 * H * Y2(KLO)
     2  + (3.0D0 * B**2 - 1.0D0) / 6.0D0 * H * Y2(KHI)
      RETURN
      END
C
C     The integral from the first knot to the last one.
      DOUBLE PRECISION FUNCTION SPLINT(N, X, Y, Y2)
      INTEGER N, I
      DOUBLE PRECISION X(N), Y(N), Y2(N), H, S
C
      S = 0.0D0
      DO 10 I = 1, N - 1
         H = X(I+1) - X(I)
         S = S + 0.5D0 * H * (Y(I) + Y(I+1))
     1         - H**3 * (Y2(I) + Y2(I+1)) / 24.0D0
   10 CONTINUE
      SPLINT = S
      END
