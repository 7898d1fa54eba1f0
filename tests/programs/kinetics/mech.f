C     REACTION MECHANISMS: READ AS TEXT, KEPT AS MATRICES
      MODULE MECH
      USE PREC
      IMPLICIT NONE
      PRIVATE
      INTEGER, PUBLIC, PARAMETER :: MAXSPC = 20, MAXRCT = 40, LSPC = 8
      PUBLIC :: MECHAN, READMC, RATES, JACOBN, ARRHEN, SHOWMC, SPECNO

      TYPE MECHAN
         INTEGER :: NSPC, NRCT
         CHARACTER (LEN=LSPC) :: SPC(MAXSPC)
C        HOW OFTEN A SPECIES IS ON THE LEFT AND ON THE RIGHT
         INTEGER, DIMENSION(MAXSPC, MAXRCT) :: LEFT, RIGHT
         REAL(DP), DIMENSION(MAXRCT) :: A, E, K
      END TYPE MECHAN

      REAL(DP), PARAMETER :: GASCON = 8.314_DP

      CONTAINS

C     READS LINES OF THE FORM   A + 2 B = C ; 1.0D4, 2000.0
C     WHICH GIVE THE FACTOR AND THE ENERGY OF THE RATE
      SUBROUTINE READMC (IUNIT, M, IERR)
      INTEGER, INTENT(IN)        :: IUNIT
      TYPE (MECHAN), INTENT(OUT) :: M
      INTEGER, INTENT(OUT)       :: IERR
      CHARACTER (LEN=80) :: LINE
      INTEGER :: IEQ, ISEMI, NLINE

      M%NSPC = 0
      M%NRCT = 0
      M%LEFT = 0
      M%RIGHT = 0
      NLINE = 0
      IERR = 0
      DO
         READ (IUNIT, '(A)', END=100, ERR=900) LINE
         NLINE = NLINE + 1
         IF (LINE .EQ. ' ' .OR. LINE(1:1) .EQ. '*') CYCLE
         IEQ = INDEX(LINE, '=')
         ISEMI = INDEX(LINE, ';')
         IF (IEQ .EQ. 0 .OR. ISEMI .LT. IEQ) GO TO 910
         M%NRCT = M%NRCT + 1
         CALL SIDE (LINE(:IEQ-1), M%LEFT(:, M%NRCT))
         CALL SIDE (LINE(IEQ+1:ISEMI-1), M%RIGHT(:, M%NRCT))
         READ (LINE(ISEMI+1:), *, ERR=910, END=910) M%A(M%NRCT),
     1      M%E(M%NRCT)
      END DO
  100 CONTINUE
      M%K(:M%NRCT) = M%A(:M%NRCT)
      RETURN
C     TROUBLE
  900 IERR = -1
      RETURN
  910 IERR = NLINE

      CONTAINS

C        ONE SIDE OF A REACTION: COUNTS EACH SPECIES
         SUBROUTINE SIDE (TEXT, COUNTS)
         CHARACTER (LEN=*), INTENT(IN) :: TEXT
         INTEGER, INTENT(INOUT) :: COUNTS(:)
         INTEGER :: I, J, N, L, MULT
         CHARACTER (LEN=LSPC) :: WORD
         I = 1
         MULT = 1
         DO
C           NEXT WORD
            DO WHILE (I .LE. LEN(TEXT))
               IF (TEXT(I:I) .NE. ' ' .AND. TEXT(I:I) .NE. '+') EXIT
               I = I + 1
            END DO
            IF (I .GT. LEN(TEXT)) RETURN
            L = SCAN(TEXT(I:), ' +')
            IF (L .EQ. 0) L = LEN(TEXT) - I + 2
            J = I + L - 2
            WORD = TEXT(I:J)
            I = J + 1
            IF (VERIFY(TRIM(WORD), '0123456789') .EQ. 0) THEN
               READ (WORD, '(BN, I8)') MULT
               CYCLE
            END IF
            N = SPECNO(M, WORD)
            IF (N .EQ. 0) THEN
               M%NSPC = M%NSPC + 1
               N = M%NSPC
               M%SPC(N) = WORD
            END IF
            COUNTS(N) = COUNTS(N) + MULT
            MULT = 1
         END DO
         END SUBROUTINE SIDE
      END SUBROUTINE READMC

      INTEGER FUNCTION SPECNO (M, NAME)
      TYPE (MECHAN), INTENT(IN) :: M
      CHARACTER (LEN=*), INTENT(IN) :: NAME
      DO SPECNO = M%NSPC, 1, -1
         IF (M%SPC(SPECNO) .EQ. NAME) RETURN
      END DO
      END FUNCTION SPECNO

C     RATE CONSTANTS AT A TEMPERATURE
      SUBROUTINE ARRHEN (M, T)
      TYPE (MECHAN), INTENT(INOUT) :: M
      REAL(DP), INTENT(IN) :: T
      INTEGER :: N
      N = M%NRCT
      M%K(1:N) = M%A(1:N)*EXP(-M%E(1:N)/(GASCON*T))
      END SUBROUTINE ARRHEN

C     HOW FAST THE CONCENTRATIONS CHANGE
      FUNCTION RATES (M, C) RESULT (DC)
      TYPE (MECHAN), INTENT(IN) :: M
      REAL(DP), INTENT(IN)  :: C(:)
      REAL(DP), DIMENSION(SIZE(C)) :: DC
      REAL(DP) :: SPEED
      INTEGER :: R, N
      N = SIZE(C)
      DC = ZERO
      DO R = 1, M%NRCT
         SPEED = M%K(R)*PRODUCT(C**M%LEFT(:N, R))
         DC = DC + SPEED*(M%RIGHT(:N, R) - M%LEFT(:N, R))
      END DO
      END FUNCTION RATES

C     THE DERIVATIVES OF THE RATES BY THE CONCENTRATIONS
      SUBROUTINE JACOBN (M, C, PD)
      TYPE (MECHAN), INTENT(IN) :: M
      REAL(DP), DIMENSION(:), INTENT(IN) :: C
      REAL(DP), DIMENSION(:, :), INTENT(OUT) :: PD
      REAL(DP) :: SLOPE
      INTEGER :: R, J, L, N
      N = SIZE(C)
      PD = ZERO
      DO 30 R = 1, M%NRCT
         DO 20 J = 1, N
            L = M%LEFT(J, R)
            IF (L .EQ. 0) GO TO 20
            SLOPE = M%K(R)*L*C(J)**(L - 1)
            SLOPE = SLOPE*PRODUCT(C(:J-1)**M%LEFT(:J-1, R))
            SLOPE = SLOPE*PRODUCT(C(J+1:)**M%LEFT(J+1:N, R))
            PD(:, J) = PD(:, J) + SLOPE*(M%RIGHT(:N,R) - M%LEFT(:N,R))
   20    CONTINUE
   30 CONTINUE
      END SUBROUTINE JACOBN

      SUBROUTINE SHOWMC (M)
      TYPE (MECHAN), INTENT(IN) :: M
      INTEGER :: R, S
      CHARACTER (LEN=72) :: TEXT
      DO R = 1, M%NRCT
         TEXT = ' '
         DO S = 1, M%NSPC
            CALL TERM (M%LEFT(S, R), ' + ')
         END DO
         TEXT = TRIM(TEXT)//' ='
         DO S = 1, M%NSPC
            CALL TERM (M%RIGHT(S, R), ' + ')
         END DO
         WRITE (*, 10) R, TEXT(2:40), M%K(R)
      END DO
   10 FORMAT (1X, I2, '. ', A, 1P, E12.4)
      CONTAINS
         SUBROUTINE TERM (MULT, SEP)
         INTEGER, INTENT(IN) :: MULT
         CHARACTER (LEN=*), INTENT(IN) :: SEP
         INTEGER :: K
         DO K = 1, MULT
            IF (INDEX(TEXT, '=') .EQ. LEN_TRIM(TEXT)) THEN
               TEXT = TRIM(TEXT)//' '//M%SPC(S)
            ELSE
               TEXT = TRIM(TEXT)//SEP//M%SPC(S)
            END IF
         END DO
         END SUBROUTINE TERM
      END SUBROUTINE SHOWMC

      END MODULE MECH
