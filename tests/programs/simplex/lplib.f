C     LPLIB - LINEAR PROGRAMS BY THE SIMPLEX METHOD ON A TABLEAU
C
C     TABLEAU T(0:M, 0:N): ROW 0 THE AIM (TO BE MADE LARGE), COLUMN 0
C     THE RIGHT HAND SIDES, ROW I:  X(ROWVAR(I)) = T(I,0) - SUM OF
C     T(I,J)*X(COLVAR(J)).   VARIABLES N+1 ... N+M ARE THE SLACKS.
C
      SUBROUTINE LPINIT (M, N, LDT, T, A, LDA, B, C, ROWVAR, COLVAR)
      INTEGER M, N, LDT, LDA, ROWVAR(M), COLVAR(N), I, J
      DOUBLE PRECISION T(0:LDT,0:N), A(LDA,N), B(M), C(N)
      T(0,0) = 0D0
      DO 10 J = 1, N
         T(0,J) = -C(J)
         COLVAR(J) = J
         DO 10 I = 1, M
            T(I,J) = A(I,J)
   10 CONTINUE
      DO 20 I = 1, M
         T(I,0) = B(I)
         ROWVAR(I) = N + I
   20 CONTINUE
      RETURN
      END

      SUBROUTINE LPPIVO (M, N, LDT, T, IP, JP, ROWVAR, COLVAR)
C     EXCHANGES THE VARIABLES OF ROW IP AND COLUMN JP
      INTEGER M, N, LDT, IP, JP, ROWVAR(M), COLVAR(N), I, J, KEEP
      DOUBLE PRECISION T(0:LDT,0:N), P, Q
      P = 1D0/T(IP,JP)
      DO 20 I = 0, M
         IF (I .EQ. IP) GO TO 20
         Q = T(I,JP)*P
         IF (Q .EQ. 0D0) GO TO 20
         DO 10 J = 0, N
            IF (J .NE. JP) T(I,J) = T(I,J) - Q*T(IP,J)
   10    CONTINUE
         T(I,JP) = -Q
   20 CONTINUE
      DO 30 J = 0, N
   30 IF (J .NE. JP) T(IP,J) = T(IP,J)*P
      T(IP,JP) = P
      KEEP = ROWVAR(IP)
      ROWVAR(IP) = COLVAR(JP)
      COLVAR(JP) = KEEP
      END

      SUBROUTINE LPSOLV (M, N, LDT, T, ROWVAR, COLVAR, ITMAX, INFO)
C     INFO: 0 SOLVED, 1 WITHOUT LIMIT, 2 IMPOSSIBLE, 3 TOO MANY STEPS.
C     FIRST ROWS WITH NEGATIVE RIGHT HAND SIDES ARE MENDED, THEN THE
C     AIM IS RAISED; THE LOWEST NUMBERS DECIDE, SO THERE ARE NO CYCLES.
      IMPLICIT DOUBLE PRECISION (P - T)
      INTEGER ROWVAR(M), COLVAR(N)
      DIMENSION T(0:LDT,0:N)
      LOGICAL MENDED
      COMMON /LPSTAT/ NPHAS1, NPHAS2, TINY
      MENDED = .FALSE.
      NPHAS1 = 0
      NPHAS2 = 0
      DO 100 ITER = 1, ITMAX
         IP = 0
         JP = 0
         IF (MENDED) GO TO 40
C        A ROW THAT IS NOT POSSIBLE YET
         DO 10 I = 1, M
            IF (T(I,0) .GE. -TINY) GO TO 10
            IF (IP .EQ. 0) THEN
               IP = I
            ELSE IF (ROWVAR(I) .LT. ROWVAR(IP)) THEN
               IP = I
            ENDIF
   10    CONTINUE
         IF (IP .EQ. 0) THEN
            MENDED = .TRUE.
            GO TO 40
         END IF
         DO 20 J = 1, N
            IF (T(IP,J) .GE. -TINY) GO TO 20
            IF (JP .EQ. 0) THEN
               JP = J
            ELSE IF (COLVAR(J) .LT. COLVAR(JP)) THEN
               JP = J
            END IF
   20    CONTINUE
         IF (JP .EQ. 0) THEN
            INFO = 2
            RETURN
         END IF
         NPHAS1 = NPHAS1 + 1
         GO TO 90
C        A COLUMN THAT RAISES THE AIM
   40    CONTINUE
         DO 50 J = 1, N
            IF (T(0,J) .GE. -TINY) GO TO 50
            IF (JP .EQ. 0) THEN
               JP = J
            ELSE IF (COLVAR(J) .LT. COLVAR(JP)) THEN
               JP = J
            END IF
   50    CONTINUE
         IF (JP .EQ. 0) THEN
            INFO = 0
            RETURN
         END IF
C        THE ROW THAT FIRST STOPS IT
         RLEAST = 0D0
         DO 60 I = 1, M
            IF (T(I,JP) .LE. TINY) GO TO 60
            RATIO = T(I,0)/T(I,JP)
            IF (IP .EQ. 0 .OR. RATIO .LT. RLEAST) THEN
               IP = I
               RLEAST = RATIO
            ELSE IF (RATIO .EQ. RLEAST) THEN
               IF (ROWVAR(I) .LT. ROWVAR(IP)) IP = I
            END IF
   60    CONTINUE
         IF (IP .EQ. 0) THEN
            INFO = 1
            RETURN
         END IF
         NPHAS2 = NPHAS2 + 1
   90    CALL LPPIVO (M, N, LDT, T, IP, JP, ROWVAR, COLVAR)
  100 CONTINUE
      INFO = 3
      END

      BLOCK DATA LPBLK
      DOUBLE PRECISION TINY
      COMMON /LPSTAT/ NPHAS1, NPHAS2, TINY
      DATA NPHAS1, NPHAS2, TINY /0, 0, 1.D-11/
      END

      SUBROUTINE LPVALS (M, N, LDT, T, ROWVAR, COLVAR, X, Y)
C     THE VARIABLES X AND THE PRICES Y OF THE ROWS
      INTEGER M, N, LDT, ROWVAR(M), COLVAR(N), I, J
      DOUBLE PRECISION T(0:LDT,0:N), X(N), Y(M)
      DATA I, J /2*0/
      DO 10 J = 1, N
   10 X(J) = 0
      DO 20 I = 1, M
   20 Y(I) = 0
      DO 30 I = 1, M
      IF (ROWVAR(I) .LE. N) X(ROWVAR(I)) = T(I,0)
   30 CONTINUE
      DO 40 J = 1, N
      IF (COLVAR(J) .GT. N) Y(COLVAR(J) - N) = T(0,J)
   40 CONTINUE
      END
