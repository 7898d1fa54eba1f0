C     ******************************************************************
C     VECTOR KERNELS.
C
C     All kernels work on vectors stored with a constant stride, so that
C     the rows of a matrix, stored by columns, can be treated just like
C     its columns.  A stride must not be zero; with a negative stride a
C     vector is walked from its far end.
C     ******************************************************************
      DOUBLE PRECISION FUNCTION VDOT (N, X, LX, Y, LY)
C     Inner product of X and Y.
      INTEGER N, LX, LY
      DOUBLE PRECISION X(*), Y(*)
      INTEGER I, IX, IY, M
      DOUBLE PRECISION S, T
      S = 0.0D0
      IF (N .LE. 0) GO TO 40
      IF (LX .NE. 1 .OR. LY .NE. 1) GO TO 20
C        Both strides are one: two sums, of the halves.
      M = N/2
      T = 0.0D0
      DO 10 I = 1, M
         S = S + X(I)*Y(I)
         T = T + X(M + I)*Y(M + I)
   10 CONTINUE
      S = S + T
      IF (2*M .LT. N) S = S + X(N)*Y(N)
      GO TO 40
   20 IX = 1
      IY = 1
      IF (LX .LT. 0) IX = 1 - (N - 1)*LX
      IF (LY .LT. 0) IY = 1 - (N - 1)*LY
      DO 30 I = 1, N
         S = S + X(IX)*Y(IY)
         IX = IX + LX
         IY = IY + LY
   30 CONTINUE
   40 VDOT = S
      RETURN
      END
C
      SUBROUTINE VADD (N, A, X, LX, Y, LY)
C     Y := Y + A*X
      INTEGER N, LX, LY
      DOUBLE PRECISION A, X(*), Y(*)
      INTEGER I, IX, IY
      IF (N .LE. 0) RETURN
      IF (A .EQ. 0.0D0) RETURN
      IX = 1
      IY = 1
      IF (LX .LT. 0) IX = 1 - (N - 1)*LX
      IF (LY .LT. 0) IY = 1 - (N - 1)*LY
      DO 10, I = 1, N
         Y(IY) = Y(IY) + A*X(IX)
         IX = IX + LX
         IY = IY + LY
   10 CONTINUE
      END
C
      SUBROUTINE VCOPY (N, X, LX, Y, LY)
C     Y := X
C     VSWAP, entered below, exchanges the two vectors, and VFILL sets
C     each element of Y to the scalar X(1).
      INTEGER N, LX, LY
      DOUBLE PRECISION X(*), Y(*)
      INTEGER I, IX, IY, JOB
      DOUBLE PRECISION T
      JOB = 1
      GO TO 100
      ENTRY VSWAP (N, X, LX, Y, LY)
      JOB = 2
      GO TO 100
      ENTRY VFILL (N, X, Y, LY)
      JOB = 3
  100 IF (N .LE. 0) RETURN
      IY = 1
      IF (LY .LT. 0) IY = 1 - (N - 1)*LY
      IX = 1
      IF (JOB .NE. 3) THEN
         IF (LX .LT. 0) IX = 1 - (N - 1)*LX
      END IF
      DO 150 I = 1, N
         GO TO (110, 120, 130), JOB
  110    Y(IY) = X(IX)
         GO TO 140
  120    T = Y(IY)
         Y(IY) = X(IX)
         X(IX) = T
         GO TO 140
  130    Y(IY) = X(1)
  140    IY = IY + LY
         IF (JOB .NE. 3) IX = IX + LX
  150 CONTINUE
      RETURN
      END
C
      SUBROUTINE VSCALE (N, A, X, LX)
C     X := A*X
      INTEGER N, LX
      DOUBLE PRECISION A, X(*)
      INTEGER I
      IF (N .LE. 0) RETURN
      DO 10 I = 1, 1 + (N - 1)*ABS (LX), ABS (LX)
   10    X(I) = A*X(I)
      END
C
      DOUBLE PRECISION FUNCTION VNORM (N, X, LX)
C     The Euclidean norm of X, guarded against overflow and underflow by
C     taking all elements relative to the largest one.
      INTEGER N, LX
      DOUBLE PRECISION X(*)
      DOUBLE PRECISION BIG, SUM
      INTEGER I
      VNORM = 0.0D0
      IF (N .LT. 1) RETURN
      IF (N .EQ. 1) THEN
         VNORM = ABS (X(1))
         RETURN
      ENDIF
C        First the largest, then the sum of squares relative to it.
      BIG = 0.0D0
      DO 10 I = 0, N - 1
         BIG = MAX (BIG, ABS (X(1 + I*ABS (LX))))
   10 CONTINUE
      IF (BIG .EQ. 0.0D0) RETURN
      SUM = 0.0D0
      DO 20 I = 0, N - 1
         SUM = SUM + (X(1 + I*ABS (LX))/BIG)**2
   20 CONTINUE
      VNORM = BIG*SQRT (SUM)
      RETURN
      END
C
      INTEGER FUNCTION VIMAX (N, X, LX)
C     The position (1 to N) of the element of largest absolute value, or
C     0 if there is no element.
      INTEGER N, LX, I, IX
      DOUBLE PRECISION X(*), BIG
      INTRINSIC ABS
      VIMAX = 0
      IF (N .LT. 1) RETURN
      VIMAX = 1
      BIG = ABS (X(1))
      IX = 1 + LX
      DO 10 I = 2, N
         IF (ABS (X(IX)) .GT. BIG) THEN
            VIMAX = I
            BIG = ABS (X(IX))
         END IF
         IX = IX + LX
   10 CONTINUE
      END
C
      DOUBLE PRECISION FUNCTION VASUM (N, X, LX)
C     The sum of the absolute values.
      INTEGER N, LX, I
      DOUBLE PRECISION X(LX, *), S
      S = 0.0D0
      DO 10 I = 1, N
         S = S + DABS (X(1, I))
   10 CONTINUE
      VASUM = S
      END
C
      SUBROUTINE VROT (N, X, LX, Y, LY, C, S)
C     Apply a plane rotation:  (X, Y) := (C*X + S*Y, C*Y - S*X).
      INTEGER N, LX, LY, I, IX, IY
      DOUBLE PRECISION X(*), Y(*), A, B, C, S, T
      IX = 1
      IY = 1
      DO 10 I = 1, N
         T = C*X(IX) + S*Y(IY)
         Y(IY) = C*Y(IY) - S*X(IX)
         X(IX) = T
         IX = IX + LX
         IY = IY + LY
   10 CONTINUE
      RETURN
C
      ENTRY VROTG (A, B, C, S)
C     Find C and S with which the rotation makes B vanish.  A receives
C     the length of (A, B) and B is set to zero.
      CALL VROTH (A, B, C, S)
      RETURN
      END
C
      SUBROUTINE VROTH (A, B, C, S)
      DOUBLE PRECISION A, B, C, S, H, T
C     The hypotenuse without harmful overflow, for T at least U
      DOUBLE PRECISION HYP, U
      HYP (T, U) = T*SQRT (1.0D0 + (U/T)**2)
      IF (B .EQ. 0.0D0) THEN
         C = 1.0D0
         S = 0.0D0
      ELSE
         IF (ABS (A) .GE. ABS (B)) THEN
            H = HYP (ABS (A), ABS (B))
         ELSE
            H = HYP (ABS (B), ABS (A))
         END IF
         C = A/H
         S = B/H
         A = H
         B = 0.0D0
      END IF
      END
