C     STEPS THROUGH STIFF SYSTEMS WITH AN IMPLICIT RULE OF ORDER TWO
      MODULE STIFF
      USE PREC, ONLY: DP, ONE
      IMPLICIT NONE
      INTEGER :: NSTEPS, NSOLVE, NREJCT
      COMMON /COUNTS/ NSTEPS, NSOLVE, NREJCT
      SAVE /COUNTS/
      PRIVATE FACTOR, SOLVE

      CONTAINS

C     LU FACTORS IN PLACE, ROWS EXCHANGED AS PIV TELLS
      SUBROUTINE FACTOR (A, PIV, OK)
      REAL(DP), INTENT(INOUT) :: A(:, :)
      INTEGER, INTENT(OUT) :: PIV(:)
      LOGICAL, INTENT(OUT) :: OK
      REAL(DP) :: ROW(SIZE(A, 2))
      INTEGER :: K, N, P(1), I
      N = SIZE(A, 1)
      OK = .FALSE.
      DO K = 1, N
         P = MAXLOC(ABS(A(K:N, K))) + K - 1
         PIV(K) = P(1)
         IF (A(P(1), K) .EQ. 0) RETURN
         IF (P(1) .NE. K) THEN
            ROW = A(K, :)
            A(K, :) = A(P(1), :)
            A(P(1), :) = ROW
         END IF
         A(K+1:, K) = A(K+1:, K)/A(K, K)
         DO I = K + 1, N
            A(K+1:, I) = A(K+1:, I) - A(K+1:, K)*A(K, I)
         END DO
      END DO
      OK = .TRUE.
      END SUBROUTINE FACTOR

      SUBROUTINE SOLVE (A, PIV, B)
      REAL(DP), INTENT(IN) :: A(:, :)
      INTEGER, INTENT(IN) :: PIV(:)
      REAL(DP), INTENT(INOUT) :: B(:)
      REAL(DP) :: T
      INTEGER :: K, N
      N = SIZE(B)
      DO K = 1, N
         T = B(PIV(K))
         B(PIV(K)) = B(K)
         B(K) = T
      END DO
      DO K = 1, N - 1
         B(K+1:) = B(K+1:) - A(K+1:, K)*B(K)
      END DO
      DO K = N, 1, -1
         B(K) = B(K)/A(K, K)
         B(:K-1) = B(:K-1) - A(:K-1, K)*B(K)
      END DO
      END SUBROUTINE SOLVE

C     FROM T TO TEND. TWO STAGES A STEP WITH THE SAME FACTORS, WHOSE
C     DIFFERENCE FROM A STEP OF ORDER ONE TELLS THE ERROR.
      SUBROUTINE GOSTEP (F, PD, Y, T, TEND, TOL, HSTART, STATUS)
      INTERFACE
         SUBROUTINE F (N, Y, DY)
         USE PREC
         INTEGER, INTENT(IN) :: N
         REAL(DP), INTENT(IN) :: Y(N)
         REAL(DP), INTENT(OUT) :: DY(N)
         END SUBROUTINE F
         SUBROUTINE PD (N, Y, A)
         USE PREC
         INTEGER, INTENT(IN) :: N
         REAL(DP), INTENT(IN) :: Y(N)
         REAL(DP), INTENT(OUT) :: A(N, N)
         END SUBROUTINE PD
      END INTERFACE
      REAL(DP), INTENT(INOUT) :: Y(:), T
      REAL(DP), INTENT(IN) :: TEND
      REAL(DP), INTENT(IN), OPTIONAL :: TOL, HSTART
      INTEGER, INTENT(OUT) :: STATUS
      REAL(DP), DIMENSION(SIZE(Y), SIZE(Y)) :: A, W
      REAL(DP), DIMENSION(SIZE(Y)) :: K1, K2, DY, TRY
      INTEGER :: PIV(SIZE(Y)), N, I
      REAL(DP) :: H, EPS, ERR
      REAL(DP), PARAMETER :: GAMMA = 1.7071067811865475_DP
      LOGICAL :: OK

      N = SIZE(Y)
      EPS = 1.0E-5_DP
      IF (PRESENT(TOL)) EPS = TOL
      H = 1.0E-6_DP
      IF (PRESENT(HSTART)) H = HSTART
      STATUS = 0
      STEPS: DO
         IF (T .GE. TEND) EXIT STEPS
         IF (T + H .GT. TEND) H = TEND - T
         CALL PD (N, Y, A)
   10    CONTINUE
         W = -GAMMA*H*A
         DO I = 1, N
            W(I, I) = ONE + W(I, I)
         END DO
         CALL FACTOR (W, PIV, OK)
         IF (.NOT. OK) THEN
            STATUS = 1
            RETURN
         END IF
         CALL F (N, Y, K1)
         CALL SOLVE (W, PIV, K1)
         TRY = Y + H*K1
         CALL F (N, TRY, DY)
         K2 = DY - 2*K1
         CALL SOLVE (W, PIV, K2)
         NSOLVE = NSOLVE + 2
         ERR = MAXVAL(ABS(0.5_DP*H*(K1 + K2))/(EPS*(ABS(Y) + 1.0E-3_DP))
     1      )
         IF (ERR .GT. ONE) THEN
            NREJCT = NREJCT + 1
            H = H*MAX(0.2_DP, 0.9_DP/SQRT(ERR))
            IF (T + H .EQ. T) THEN
               STATUS = 2
               RETURN
            END IF
            GO TO 10
         END IF
         Y = Y + H*(1.5_DP*K1 + 0.5_DP*K2)
         T = T + H
         NSTEPS = NSTEPS + 1
         H = H*MIN(5.0_DP, 0.9_DP/SQRT(MAX(ERR, 1.0E-4_DP)))
      END DO STEPS
      END SUBROUTINE GOSTEP

      END MODULE STIFF

      BLOCK DATA CNTBLK
      COMMON /COUNTS/ N(3)
      DATA N /3*0/
      END
