C     FUNCTIONS OF MATRICES: EXPONENTIAL, SQUARE ROOT, SIGN, POWERS; AND
C     LINEAR DIFFERENTIAL EQUATIONS BY MEANS OF THEM.
C
C     SMALL MATRICES, OF ORDER NMAX AT MOST, IN ARRAYS WITH ADJUSTABLE
C     DIMENSIONS.
C
      SUBROUTINE MMUL (A, B, C, N)
C     C := A*B, WHERE C IS NEITHER A NOR B.
      INTEGER N, I, J, K
      DOUBLE PRECISION A(N, N), B(N, N), C(N, N), S
      DO 30 J = 1, N
         DO 20 I = 1, N
            S = 0.D0
            DO 10 K = 1, N
               S = S + A(I, K)*B(K, J)
   10       CONTINUE
            C(I, J) = S
   20    CONTINUE
   30 CONTINUE
      RETURN
      END
C
      SUBROUTINE MSET (A, N, OFF, DIAG)
C     SET A TO DIAG ON THE DIAGONAL, OFF ELSEWHERE.  BY OTHER ENTRIES:
C     MCPY   A := B
C     MAXPY  A := A + T*B
C     MSCAL  A := T*A
C     MTRN   A := A TRANSPOSED
      INTEGER N, I, J
      DOUBLE PRECISION A(N, N), B(N, N), OFF, DIAG, T, S
      DO 10 J = 1, N
         DO 5 I = 1, N
            A(I, J) = OFF
    5    CONTINUE
         A(J, J) = DIAG
   10 CONTINUE
      RETURN
C
      ENTRY MCPY (A, B, N)
      DO 20 J = 1, N
         DO 20 I = 1, N
            A(I, J) = B(I, J)
   20 CONTINUE
      RETURN
C
      ENTRY MAXPY (A, T, B, N)
      DO 30 J = 1, N
         DO 30 I = 1, N
            A(I, J) = A(I, J) + T*B(I, J)
   30 CONTINUE
      RETURN
C
      ENTRY MSCAL (A, T, N)
      DO 40 J = 1, N
         DO 40 I = 1, N
            A(I, J) = T*A(I, J)
   40 CONTINUE
      RETURN
C
      ENTRY MTRN (A, N)
      DO 60 J = 2, N
         DO 50 I = 1, J - 1
            S = A(I, J)
            A(I, J) = A(J, I)
            A(J, I) = S
   50    CONTINUE
   60 CONTINUE
      END
C
      DOUBLE PRECISION FUNCTION MNORM (A, N, WHICH)
C     A NORM: WHICH = '1' FOR COLUMNS, 'I' FOR ROWS, 'F' FOR THE ROOT OF
C     THE SUM OF SQUARES, 'M' FOR THE LARGEST ELEMENT.
      INTEGER N, I, J, K
      DOUBLE PRECISION A(N, N), S
      CHARACTER WHICH
      CHARACTER*4 ALL
      PARAMETER (ALL = '1IFM')
      MNORM = 0.0D+0
      K = INDEX (ALL, WHICH)
      DO 20 J = 1, N
         S = 0.0D+0
         DO 10 I = 1, N
            IF (K .EQ. 1) S = S + DABS (A(I, J))
            IF (K .EQ. 2) S = S + DABS (A(J, I))
            IF (K .EQ. 3) S = S + A(I, J)**2
            IF (K .EQ. 4) S = DMAX1 (S, DABS (A(I, J)))
   10    CONTINUE
         IF (K .EQ. 3) THEN
            MNORM = MNORM + S
         ELSE
            MNORM = DMAX1 (MNORM, S)
         END IF
   20 CONTINUE
      IF (K .EQ. 3) MNORM = DSQRT (MNORM)
      END
C
      SUBROUTINE MSOLV (A, B, N, *)
C     B := A**(-1)*B; A IS DESTROYED.
      INTEGER N, I, J, K, L
      DOUBLE PRECISION A(N, N), B(N, N), T
      DO 60 K = 1, N
         L = K
         DO 10 I = K + 1, N
            IF (DABS (A(I, K)) .GT. DABS (A(L, K))) L = I
   10    CONTINUE
         IF (A(L, K) .EQ. 0D0) RETURN 1
         DO 20 J = 1, N
            T = A(L, J)
            A(L, J) = A(K, J)
            A(K, J) = T
            T = B(L, J)
            B(L, J) = B(K, J)
            B(K, J) = T
   20    CONTINUE
         T = 1D0/A(K, K)
         DO 30 J = 1, N
            A(K, J) = A(K, J)*T
            B(K, J) = B(K, J)*T
   30    CONTINUE
         DO 50 I = 1, N
            IF (I .EQ. K) GO TO 50
            T = A(I, K)
            DO 40 J = 1, N
               A(I, J) = A(I, J) - T*A(K, J)
               B(I, J) = B(I, J) - T*B(K, J)
   40       CONTINUE
   50    CONTINUE
   60 CONTINUE
      END
C
      SUBROUTINE MEXP (A, T, E, N, W, *)
C
C     E := EXP (T*A).  THE MATRIX IS DIVIDED BY A POWER OF TWO UNTIL IT
C     IS SMALL, A RATIONAL FUNCTION APPROXIMATES THE EXPONENTIAL, AND
C     THAT IS SQUARED REPEATEDLY.  W HAS ROOM FOR FOUR MATRICES.
C
      INTEGER N, NQ, K, NS
      PARAMETER (NQ = 6)
      DOUBLE PRECISION A(N, N), T, E(N, N), W(N, N, 4), C, X, MNORM
      INTEGER M, D, P, Q
      PARAMETER (M = 1, D = 2, P = 3, Q = 4)
      CALL MCPY (W(1, 1, M), A, N)
      CALL MSCAL (W(1, 1, M), T, N)
      X = MNORM (W(1, 1, M), N, 'I')
      NS = 0
   10 IF (X .GT. 0.5D0) THEN
         X = X/2
         NS = NS + 1
         GO TO 10
      END IF
      CALL MSCAL (W(1, 1, M), 0.5D0**NS, N)
      CALL MSET (W(1, 1, P), N, 0D0, 1D0)
      CALL MSET (E, N, 0D0, 1D0)
      CALL MSET (W(1, 1, D), N, 0D0, 1D0)
      C = 1
      DO 20 K = 1, NQ
         C = C*(NQ - K + 1)/DBLE (K*(2*NQ - K + 1))
         CALL MMUL (W(1, 1, M), W(1, 1, P), W(1, 1, Q), N)
         CALL MCPY (W(1, 1, P), W(1, 1, Q), N)
         CALL MAXPY (E, C, W(1, 1, P), N)
         CALL MAXPY (W(1, 1, D), C*(-1)**K, W(1, 1, P), N)
   20 CONTINUE
      CALL MSOLV (W(1, 1, D), E, N, *90)
      DO 30 K = 1, NS
         CALL MMUL (E, E, W(1, 1, Q), N)
         CALL MCPY (E, W(1, 1, Q), N)
   30 CONTINUE
      RETURN
   90 RETURN 1
      END
C
      SUBROUTINE MROOT (A, R, N, W, ITER, *)
C     R := THE SQUARE ROOT OF A BY COUPLED ITERATION; IN W(*, *, 1) ITS
C     INVERSE IS LEFT.  W HAS ROOM FOR FIVE MATRICES.
      INTEGER N, ITER
      DOUBLE PRECISION A(N, N), R(N, N), W(N, N, 5), X, MNORM
      CALL MCPY (R, A, N)
      CALL MSET (W, N, 0D0, 1D0)
      DO 10 ITER = 1, 50
         CALL MCPY (W(1, 1, 2), R, N)
         CALL MSET (W(1, 1, 3), N, 0D0, 1D0)
         CALL MSOLV (W(1, 1, 2), W(1, 1, 3), N, *90)
         CALL MCPY (W(1, 1, 2), W, N)
         CALL MSET (W(1, 1, 4), N, 0D0, 1D0)
         CALL MSOLV (W(1, 1, 2), W(1, 1, 4), N, *90)
         CALL MCPY (W(1, 1, 5), R, N)
         CALL MAXPY (R, 1D0, W(1, 1, 4), N)
         CALL MSCAL (R, 0.5D0, N)
         CALL MAXPY (W, 1D0, W(1, 1, 3), N)
         CALL MSCAL (W, 0.5D0, N)
         CALL MAXPY (W(1, 1, 5), -1D0, R, N)
         X = MNORM (W(1, 1, 5), N, '1')
         IF (X .LE. 1D-14*MNORM (R, N, '1')) RETURN
   10 CONTINUE
   90 RETURN 1
      END
C
      SUBROUTINE MPOW (A, K, P, N, W)
C     P := A**K FOR K >= 0 BY SQUARING.
      INTEGER K, N, L
      DOUBLE PRECISION A(N*N), P(N*N), W(N*N, 2)
      CALL MSET (P, N, 0D0, 1D0)
      CALL MCPY (W, A, N)
      L = K
   10 IF (L .EQ. 0) RETURN
      IF (MOD (L, 2) .EQ. 1) THEN
         CALL MMUL (W(1, 1), P, W(1, 2), N)
         CALL MCPY (P, W(1, 2), N)
      END IF
      CALL MMUL (W(1, 1), W(1, 1), W(1, 2), N)
      CALL MCPY (W(1, 1), W(1, 2), N)
      L = L/2
      GO TO 10
      END
