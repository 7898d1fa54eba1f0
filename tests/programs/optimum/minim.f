C     Minima of functions of one and of several variables.
C
C     GOLDEN   golden section with a bracket given
C     BRACKT   finds a bracket, downhill
C     SIMPLX   the downhill simplex of Nelder and Mead
C     QNEWTN   quasi-Newton (BFGS) with differences for the gradient
C     PENALT   SIMPLX under constraints, by penalties
C
C     Functions of several variables are  FUNCTION F (N, X).
C     COMMON /MINCNT/ counts evaluations; LEVEL > 0 prints progress.
C
      SUBROUTINE GOLDEN (F, A, B, TOL, XMIN, FMIN)
      DOUBLE PRECISION F, A, B, TOL, XMIN, FMIN
      DOUBLE PRECISION X0, X1, X2, X3, F1, F2, R, C
      PARAMETER (R = 0.61803398874989485D0, C = 1.0D0 - R)
      EXTERNAL F
      X0 = A
      X3 = B
      X1 = X0 + C*(X3 - X0)
      X2 = X0 + R*(X3 - X0)
      F1 = F(X1)
      F2 = F(X2)
   10 IF (ABS(X3 - X0) .LE. TOL) GO TO 20
         IF (F2 .LT. F1) THEN
            X0 = X1
            X1 = X2
            X2 = R*X1 + C*X3
            F1 = F2
            F2 = F(X2)
         ELSE
            X3 = X2
            X2 = X1
            X1 = R*X2 + C*X0
            F2 = F1
            F1 = F(X1)
         END IF
      GO TO 10
   20 IF (F1 .LT. F2) THEN
         XMIN = X1
         FMIN = F1
      ELSE
         XMIN = X2
         FMIN = F2
      END IF
      END
C
      SUBROUTINE BRACKT (F, A, B, C, *)
      DOUBLE PRECISION F, A, B, C, FA, FB, FC, T, GROW
      PARAMETER (GROW = 1.618034D0)
      INTEGER I
      FA = F(A)
      FB = F(B)
      IF (FB .GT. FA) THEN
         T = A
         A = B
         B = T
         T = FA
         FA = FB
         FB = T
      END IF
      C = B + GROW*(B - A)
      FC = F(C)
      DO 10 I = 1, 60
         IF (FC .GE. FB) RETURN
         A = B
         B = C
         FB = FC
         C = B + GROW*(B - A)
         FC = F(C)
   10 CONTINUE
      RETURN 1
      END
C
      SUBROUTINE SIMPLX (F, N, X, STEP, TOL, MAXF, P, V, FMIN, IFLAG)
C     P(N,N+4) and V(N+4) are work: columns 1..N+1 the corners, N+2 the
C     centre, N+3 the reflected and N+4 the next trial point.
      INTEGER N, MAXF, IFLAG
      DOUBLE PRECISION F, X(N), STEP(N), TOL, P(N,*), V(*), FMIN
      EXTERNAL F
      INTEGER NEVAL, LEVEL
      COMMON /MINCNT/ NEVAL, LEVEL
      INTEGER I, J, LO, HI, NX, MID, REF, TRY
      DOUBLE PRECISION COEF
C
      MID = N + 2
      REF = N + 3
      TRY = N + 4
      DO 20 J = 1, N + 1
         DO 10 I = 1, N
            P(I,J) = X(I)
            IF (J .EQ. I + 1) P(I,J) = X(I) + STEP(I)
   10    CONTINUE
         V(J) = F(N, P(1,J))
   20 CONTINUE
      NEVAL = NEVAL + N + 1
C
  100 CONTINUE
C     highest, next highest and lowest corner
      LO = 1
      HI = 1
      DO 110 J = 2, N + 1
         IF (V(J) .LT. V(LO)) LO = J
         IF (V(J) .GT. V(HI)) HI = J
  110 CONTINUE
      NX = LO
      DO 120 J = 1, N + 1
         IF (J .NE. HI .AND. V(J) .GT. V(NX)) NX = J
  120 CONTINUE
      IF (LEVEL .GT. 1) PRINT 900, NEVAL, V(LO), V(HI)
      IFLAG = 0
      IF (V(HI) - V(LO) .LE. TOL*(ABS(V(HI)) + ABS(V(LO)) + TOL))
     1   GO TO 800
      IFLAG = 2
      IF (NEVAL .GT. MAXF) GO TO 800
      DO 140 I = 1, N
         P(I,MID) = 0.0D0
         DO 130 J = 1, N + 1
            IF (J .NE. HI) P(I,MID) = P(I,MID) + P(I,J)
  130    CONTINUE
         P(I,MID) = P(I,MID)/N
         P(I,REF) = 2.0D0*P(I,MID) - P(I,HI)
  140 CONTINUE
      V(REF) = F(N, P(1,REF))
      NEVAL = NEVAL + 1
      IF (V(REF) .LT. V(LO)) THEN
         COEF = 2.0D0
      ELSE IF (V(REF) .LT. V(NX)) THEN
         GO TO 300
      ELSE IF (V(REF) .LT. V(HI)) THEN
         COEF = 0.5D0
      ELSE
         COEF = -0.5D0
      END IF
      DO 150 I = 1, N
         P(I,TRY) = P(I,MID) + COEF*(P(I,MID) - P(I,HI))
  150 CONTINUE
      V(TRY) = F(N, P(1,TRY))
      NEVAL = NEVAL + 1
      IF (V(TRY) .LT. MIN(V(REF), V(HI))) THEN
         REF = TRY
      ELSE IF (COEF .LT. 1.0D0) THEN
C        shrink towards the best corner
         DO 170 J = 1, N + 1
            IF (J .EQ. LO) GO TO 170
            DO 160 I = 1, N
               P(I,J) = 0.5D0*(P(I,J) + P(I,LO))
  160       CONTINUE
            V(J) = F(N, P(1,J))
            NEVAL = NEVAL + 1
  170    CONTINUE
         GO TO 100
      END IF
  300 DO 310 I = 1, N
  310    P(I,HI) = P(I,REF)
      V(HI) = V(REF)
      REF = N + 3
      GO TO 100
C
  800 DO 810 I = 1, N
  810    X(I) = P(I,LO)
      FMIN = V(LO)
      IF (LEVEL .GT. 0) WRITE (*, 910) FMIN, NEVAL, IFLAG
  900 FORMAT (' SIMPLEX', I6, 1P, 2E14.6)
  910 FORMAT (' SIMPLEX ENDS AT', 1PE14.6, ' AFTER', I6, ' FLAG', I2)
      END
C
      SUBROUTINE QNEWTN (F, N, X, TOL, H, G, W, FMIN, IFLAG)
C     H(N,N) the inverse Hessian, G(N), W(N,4) work
      INTEGER N, IFLAG, I, J, IT, K
      DOUBLE PRECISION F, X(N), TOL, H(N,N), G(N), W(N,4), FMIN
      DOUBLE PRECISION FX, FT, SLOPE, A, SY, YHY, GN
      INTEGER NEVAL, LEVEL
      COMMON /MINCNT/ NEVAL, LEVEL
      EXTERNAL F
      INTEGER PX, PS, PY, PH
      PARAMETER (PX = 1, PS = 2, PY = 3, PH = 4)
C
      DO 10 I = 1, N
         DO 10 J = 1, N
            H(I,J) = 0.0D0
            IF (I .EQ. J) H(I,J) = 1.0D0
   10 CONTINUE
      FX = F(N, X)
      CALL GRADNT (F, N, X, G)
      DO 100 IT = 1, 200
         SLOPE = 0.0D0
         DO 30 I = 1, N
            W(I,PS) = 0.0D0
            DO 20 J = 1, N
   20          W(I,PS) = W(I,PS) - H(I,J)*G(J)
            SLOPE = SLOPE + W(I,PS)*G(I)
   30    CONTINUE
C        line search: halve until the decrease suffices
         A = 1.0D0
         DO 50 K = 1, 50
            DO 40 I = 1, N
   40          W(I,PX) = X(I) + A*W(I,PS)
            FT = F(N, W(1,PX))
            NEVAL = NEVAL + 1
            IF (FT .LE. FX + 1.0D-4*A*SLOPE) GO TO 60
            A = 0.5D0*A
   50    CONTINUE
         IFLAG = 1
         GO TO 110
   60    FX = FT
         DO 70 I = 1, N
            W(I,PS) = W(I,PX) - X(I)
            X(I) = W(I,PX)
            W(I,PY) = G(I)
   70    CONTINUE
         CALL GRADNT (F, N, X, G)
         GN = 0.0D0
         SY = 0.0D0
         DO 80 I = 1, N
            W(I,PY) = G(I) - W(I,PY)
            SY = SY + W(I,PS)*W(I,PY)
            GN = MAX(GN, ABS(G(I)))
   80    CONTINUE
         IFLAG = 0
         IF (GN .LE. TOL) GO TO 110
         IF (SY .LE. 0.0D0) GO TO 100
         YHY = 0.0D0
         DO 90 I = 1, N
            W(I,PH) = 0.0D0
            DO 85 J = 1, N
   85          W(I,PH) = W(I,PH) + H(I,J)*W(J,PY)
            YHY = YHY + W(I,PY)*W(I,PH)
   90    CONTINUE
         DO 95 J = 1, N
            DO 95 I = 1, N
               H(I,J) = H(I,J) + (1.0D0 + YHY/SY)*W(I,PS)*W(J,PS)/SY
     1                - (W(I,PS)*W(J,PH) + W(I,PH)*W(J,PS))/SY
   95    CONTINUE
  100 CONTINUE
      IFLAG = 2
  110 FMIN = FX
      IF (LEVEL .GT. 0) WRITE (*, '(A,1PE14.6,A,I5,A,I2)')
     1   ' QUASI-NEWTON', FMIN, ' AFTER', IT, ' STEPS, FLAG', IFLAG
      END
C
      SUBROUTINE GRADNT (F, N, X, G)
      INTEGER N, I
      DOUBLE PRECISION F, X(N), G(N), KEEP, D, UP
      COMMON /MINCNT/ NEVAL, LEVEL
      DO 10 I = 1, N
         KEEP = X(I)
         D = 1.0D-6*(1.0D0 + ABS(KEEP))
         X(I) = KEEP + D
         UP = F(N, X)
         X(I) = KEEP - D
         G(I) = (UP - F(N, X))/(2.0D0*D)
         X(I) = KEEP
         NEVAL = NEVAL + 2
   10 CONTINUE
      END
C
      SUBROUTINE PENALT (N, X, STEP, TOL, P, V, FMIN, IFLAG)
C     Minimizes the objective of OBJPEN, with growing weights.
      INTEGER N, IFLAG, I, NEVAL, LEVEL, K
      DOUBLE PRECISION X(N), STEP(N), TOL, P(N,*), V(*), FMIN
      DOUBLE PRECISION OBJPEN, WEIGHT
      EXTERNAL OBJPEN
      COMMON /MINCNT/ NEVAL, LEVEL
      COMMON /PENWGT/ WEIGHT
      WEIGHT = 1.0D0
      DO 20 K = 1, 7
         CALL SIMPLX (OBJPEN, N, X, STEP, TOL, NEVAL + 3000, P, V,
     1                FMIN, IFLAG)
         WEIGHT = WEIGHT*10.0D0
         DO 10 I = 1, N
   10       STEP(I) = 0.5D0*STEP(I)
   20 CONTINUE
      END
