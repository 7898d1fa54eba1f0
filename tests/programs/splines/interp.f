C     Older ways of interpolation, kept for tables that use them.
C
C     AITKEN  polynomial through all points, by repeated lines
C     DIVDIF  table of divided differences;  ENTRY DIVVAL evaluates it
C     HERMIT  cubic with given slopes
C     BILIN   in a table of two variables
C     LOOKUP  linear, in a table that DATA holds
C
      DOUBLE PRECISION FUNCTION AITKEN (X, Y, N, T, ERR)
      INTEGER N, MAXN, I, J
      PARAMETER (MAXN = 20)
      DOUBLE PRECISION X(N), Y(N), T, ERR, P(MAXN)
      IF (N .GT. MAXN) STOP 'AITKEN: TOO MANY POINTS'
      DO 10 I = 1, N
   10 P(I) = Y(I)
      ERR = 0D0
      DO 30 J = 1, N - 1
         DO 20 I = N, J + 1, -1
            P(I) = ((T - X(J))*P(I) - (T - X(I))*P(J))/(X(I) - X(J))
   20    CONTINUE
         ERR = ABS(P(J+1) - P(J))
   30 CONTINUE
      AITKEN = P(N)
      END
C
      SUBROUTINE DIVDIF (X, Y, N, D)
      INTEGER N, I, J
      DOUBLE PRECISION X(N), Y(N), D(N), T, VALUE
      DO 10 I = 1, N
   10    D(I) = Y(I)
      DO 20 J = 2, N
      DO 20 I = N, J, -1
   20 D(I) = (D(I) - D(I-1))/(X(I) - X(I-J+1))
      RETURN
C
      ENTRY DIVVAL (X, N, D, T, VALUE)
      VALUE = D(N)
      DO 30 I = N - 1, 1, -1
         VALUE = VALUE*(T - X(I)) + D(I)
   30 CONTINUE
      END
C
      DOUBLE PRECISION FUNCTION HERMIT (X0, Y0, S0, X1, Y1, S1, T)
      IMPLICIT DOUBLE PRECISION (S-Y)
      DOUBLE PRECISION H, H00, H10
      H00(U) = (1 + 2*U)*(1 - U)**2
      H10(U) = U*(1 - U)**2
      H = X1 - X0
      U0 = (T - X0)/H
      HERMIT = Y0*H00(U0) + Y1*H00(1 - U0) + H*(S0*H10(U0)
     1         - S1*H10(1 - U0))
      END
C
      REAL FUNCTION BILIN (TAB, LD, NX, NY, X0, DX, Y0, DY, X, Y)
      REAL TAB(LD,*)
      I = MIN(MAX(INT((X - X0)/DX), 0), NX - 2)
      J = MIN(MAX(INT((Y - Y0)/DY), 0), NY - 2)
      A = (X - X0)/DX - I
      B = (Y - Y0)/DY - J
      I = I + 1
      J = J + 1
      BILIN = (1-A)*((1-B)*TAB(I,J) + B*TAB(I,J+1))
     1      + A*((1-B)*TAB(I+1,J) + B*TAB(I+1,J+1))
      END
C
      REAL FUNCTION LOOKUP (T)
C     density of water by temperature, degrees Celsius
      REAL T, TEMP(7), DENS(7)
      INTEGER K
      SAVE TEMP, DENS
      DATA (TEMP(K), DENS(K), K = 1, 7)
     1   / 0.0, 0.99984,   4.0, 0.99997,  10.0, 0.99970,
     2    20.0, 0.99820,  40.0, 0.99222,  70.0, 0.97777,
     3   100.0, 0.95835 /
      DO 10 K = 2, 6
         IF (T .LE. TEMP(K)) GO TO 20
   10 CONTINUE
      K = 7
   20 LOOKUP = DENS(K-1) + (DENS(K) - DENS(K-1))*(T - TEMP(K-1))
     1         /(TEMP(K) - TEMP(K-1))
      END
