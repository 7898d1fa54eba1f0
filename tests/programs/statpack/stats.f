C     STATS - descriptive statistics, ranks, tests and regression.
C
      SUBROUTINE MOMENT (X, N, AVE, SDEV, SKEW, CURT, *)
      INTEGER N, I
      REAL X(N), AVE, SDEV, SKEW, CURT
      DOUBLE PRECISION S, S2, S3, S4, D
      IF (N .LT. 2) RETURN 1
      S = 0.D0
      DO 10 I = 1, N
   10    S = S + X(I)
      S = S/N
      AVE = S
      S2 = 0.D0
      S3 = 0.D0
      S4 = 0.D0
      DO 20 I = 1, N
         D = X(I) - S
         S2 = S2 + D*D
         S3 = S3 + D**3
         S4 = S4 + D**4
   20 CONTINUE
      SDEV = SQRT(S2/(N - 1))
      IF (SDEV .EQ. 0.0) THEN
         SKEW = 0.0
         CURT = 0.0
      ELSE
         SKEW = S3/(N*DBLE(SDEV)**3)
         CURT = S4/(N*DBLE(SDEV)**4) - 3.0D0
      END IF
      END
C
      SUBROUTINE SORTR (X, N)
C     heap sort
      INTEGER N, I, J, L, LAST
      REAL X(N), T
      IF (N .LE. 1) RETURN
      L = N/2 + 1
      LAST = N
   10 IF (L .GT. 1) THEN
         L = L - 1
         T = X(L)
      ELSE
         T = X(LAST)
         X(LAST) = X(1)
         LAST = LAST - 1
         IF (LAST .EQ. 1) THEN
            X(1) = T
            RETURN
         END IF
      END IF
      I = L
      J = L + L
   20 IF (J .LE. LAST) THEN
         IF (J .LT. LAST) THEN
            IF (X(J) .LT. X(J+1)) J = J + 1
         END IF
         IF (T .LT. X(J)) THEN
            X(I) = X(J)
            I = J
            J = J + J
         ELSE
            J = LAST + 1
         END IF
         GO TO 20
      END IF
      X(I) = T
      GO TO 10
      END
C
      REAL FUNCTION QUANTL (X, N, P)
C     quantile of sorted data
      INTEGER N, K
      REAL X(N), P, H
      REAL MEDIAN
      H = (N - 1)*P
      GO TO 10
      ENTRY MEDIAN (X, N)
      H = 0.5*(N - 1)
   10 K = MIN(INT(H) + 1, N - 1)
      QUANTL = X(K) + (H - (K - 1))*(X(K+1) - X(K))
      END
C
      SUBROUTINE RANKS (X, IDX, R, N)
C     R(I) is the rank of X(I), ties sharing their mean rank.
      INTEGER N, IDX(N), I, J, K
      REAL X(N), R(N)
      DO 20 I = 1, N
         DO 10 J = I - 1, 1, -1
            IF (X(IDX(J)) .LE. X(I)) GO TO 15
            IDX(J+1) = IDX(J)
   10    CONTINUE
         J = 0
   15    IDX(J+1) = I
   20 CONTINUE
      I = 1
   30 IF (I .GT. N) RETURN
         J = I
   40    IF (J .LT. N) THEN
            IF (X(IDX(J+1)) .EQ. X(IDX(I))) THEN
               J = J + 1
               GO TO 40
            END IF
         END IF
         DO 50 K = I, J
            R(IDX(K)) = 0.5*(I + J)
   50    CONTINUE
         I = J + 1
      GO TO 30
      END
C
      REAL FUNCTION CORREL (X, Y, N)
      INTEGER N, I
      REAL X(N), Y(N)
      DOUBLE PRECISION MX, MY, SXX, SYY, SXY
      DATA MX, MY, SXX, SYY, SXY /5*0D0/
      SAVE
      MX = 0
      MY = 0
      DO 10, I = 1, N
         MX = MX + X(I)
         MY = MY + Y(I)
   10 CONTINUE
      MX = MX/N
      MY = MY/N
      SXX = 0
      SYY = 0
      SXY = 0
      DO 20, I = 1, N
         SXX = SXX + (X(I) - MX)**2
         SYY = SYY + (Y(I) - MY)**2
         SXY = SXY + (X(I) - MX)*(Y(I) - MY)
   20 CONTINUE
      CORREL = SXY/SQRT(SXX*SYY)
      END
C
      REAL FUNCTION CHISQ (NOBS, EXPECT, K)
      INTEGER NOBS(K)
      REAL EXPECT(K)
      CHISQ = 0
      DO 10 I = 1, K
         IF (EXPECT(I) .LE. 0.0) THEN
            CHISQ = -1.0
            RETURN
         END IF
         CHISQ = CHISQ + (NOBS(I) - EXPECT(I))**2/EXPECT(I)
   10 CONTINUE
      END
C
      REAL FUNCTION TTEST (X, NX, Y, NY, DF)
C     Welch's statistic for the difference of two means
      REAL X(NX), Y(NY)
      CALL MOMENT (X, NX, AX, SX, SK, CU, *90)
      CALL MOMENT (Y, NY, AY, SY, SK, CU, *90)
      VX = SX*SX/NX
      VY = SY*SY/NY
      DF = (VX + VY)**2/(VX*VX/(NX - 1) + VY*VY/(NY - 1))
      TTEST = (AX - AY)/SQRT(VX + VY)
      RETURN
   90 TTEST = 0
      DF = 0
      END
C
      SUBROUTINE LINREG (X, LDX, NOBS, NVAR, Y, COEF, STDERR, RSQ, A,
     1                   IERR)
C     Multiple regression with a constant term, COEF(0), by the normal
C     equations of centred data and Cholesky's factors in A(NVAR,NVAR).
C        IERR  0, or the number of the variable that depends on others
      INTEGER LDX, NOBS, NVAR, IERR
      REAL X(LDX,NVAR), Y(NOBS), COEF(0:NVAR), STDERR(NVAR), RSQ
      DOUBLE PRECISION A(NVAR,NVAR)
      INTEGER I, J, K, MAXV
      PARAMETER (MAXV = 10)
      DOUBLE PRECISION S, XM(MAXV), YM, B(MAXV), SYY, SSE, E(MAXV)
      IERR = -1
      IF (NVAR .GT. MAXV .OR. NOBS .LE. NVAR + 1) RETURN
      YM = 0
      DO 5 I = 1, NOBS
    5    YM = YM + Y(I)
      YM = YM/NOBS
      SYY = 0
      DO 6 I = 1, NOBS
    6    SYY = SYY + (Y(I) - YM)**2
      DO 20 J = 1, NVAR
         S = 0
         DO 10 I = 1, NOBS
   10       S = S + X(I,J)
         XM(J) = S/NOBS
         S = 0
         DO 15 I = 1, NOBS
   15       S = S + (X(I,J) - XM(J))*(Y(I) - YM)
         B(J) = S
   20 CONTINUE
      DO 60 J = 1, NVAR
         DO 50 K = J, NVAR
            S = 0
            DO 30 I = 1, NOBS
   30          S = S + (X(I,J) - XM(J))*(X(I,K) - XM(K))
            DO 40 I = 1, J - 1
   40          S = S - A(I,J)*A(I,K)
            IF (K .EQ. J) THEN
               IERR = J
               IF (S .LE. 1D-10) RETURN
               A(J,J) = SQRT(S)
            ELSE
               A(J,K) = S/A(J,J)
            END IF
   50    CONTINUE
   60 CONTINUE
      IERR = 0
      SSE = SYY
      DO 80 J = 1, NVAR
         DO 70 I = 1, J - 1
   70       B(J) = B(J) - A(I,J)*B(I)
         B(J) = B(J)/A(J,J)
         SSE = SSE - B(J)**2
   80 CONTINUE
      COEF(0) = YM
      DO 100 J = NVAR, 1, -1
         DO 90 K = J + 1, NVAR
   90       B(J) = B(J) - A(J,K)*B(K)
         B(J) = B(J)/A(J,J)
         COEF(J) = B(J)
         COEF(0) = COEF(0) - B(J)*XM(J)
  100 CONTINUE
      RSQ = 1 - SSE/SYY
C     standard errors: squares of the columns of the inverse factor
      DO 150 J = 1, NVAR
         DO 110 I = 1, NVAR
  110       E(I) = 0
         E(J) = 1
         S = 0
         DO 140 I = J, NVAR
            DO 130 K = J, I - 1
  130          E(I) = E(I) - A(K,I)*E(K)
            E(I) = E(I)/A(I,I)
            S = S + E(I)**2
  140    CONTINUE
         STDERR(J) = SQRT(S*SSE/(NOBS - NVAR - 1))
  150 CONTINUE
      END
