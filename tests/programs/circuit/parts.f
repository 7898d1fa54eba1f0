C     THE PARTS OF A CIRCUIT AND WHAT THEY ADD TO ITS EQUATIONS
      MODULE PARTS
      USE SPARSE, DP => WP
      IMPLICIT LOGICAL (L), REAL(DP) (A-H, O-X, Z), COMPLEX(DP) (Y)

      INTEGER, PARAMETER :: MAXPRT = 100
      CHARACTER*1, PARAMETER :: CLASS(6) =
     1   (/ 'R', 'C', 'L', 'V', 'I', 'G' /)

      TYPE PART
         CHARACTER*1 CLASS
         CHARACTER*7 NAME
         INTEGER NODE(4)
         REAL(DP) VALUE
         INTEGER BRANCH
      END TYPE PART

      TYPE (PART), TARGET :: CIRCT(MAXPRT)
      INTEGER NPARTS, NNODES, NBRANC
      COMMON /SIZES/ NPARTS, NNODES, NBRANC
      REAL(DP), PARAMETER :: TWOPI = 6.283185307179586D0

      CONTAINS

C     A PART BY A LINE SUCH AS   R1 2 0 4.7K
      SUBROUTINE ADDPRT (LINE, *)
      CHARACTER*(*), INTENT(IN) :: LINE
      TYPE (PART), POINTER :: P
      CHARACTER*12 WORD(6)
      CALL WORDS (LINE, WORD, NWORD)
      IF (NWORD .LT. 4 .OR. NPARTS .GE. MAXPRT) RETURN 1
      P => CIRCT(NPARTS + 1)
      P%CLASS = WORD(1)(1:1)
      P%NAME = WORD(1)
      P%NODE = 0
      P%BRANCH = 0
      IF (ALL(P%CLASS .NE. CLASS)) RETURN 1
      NENDS = 2
      IF (P%CLASS .EQ. 'G') NENDS = 4
      IF (NWORD .NE. NENDS + 2) RETURN 1
      DO 10 I = 1, NENDS
         READ (WORD(I+1), '(BN, I12)', ERR=20) P%NODE(I)
   10 CONTINUE
      P%VALUE = AMOUNT(WORD(NWORD), LGOOD)
      IF (.NOT. LGOOD) GO TO 20
      NPARTS = NPARTS + 1
      NNODES = MAX(NNODES, MAXVAL(P%NODE))
      IF (P%CLASS .EQ. 'V' .OR. P%CLASS .EQ. 'L') THEN
         NBRANC = NBRANC + 1
         P%BRANCH = NBRANC
      END IF
      RETURN
   20 RETURN 1
      END SUBROUTINE ADDPRT

      SUBROUTINE WORDS (LINE, WORD, N)
      CHARACTER*(*), INTENT(IN) :: LINE
      CHARACTER*(*), INTENT(OUT) :: WORD(:)
      INTEGER, INTENT(OUT) :: N
      LOGICAL LIN
      N = 0
      LIN = .FALSE.
      DO I = 1, LEN(LINE)
         IF (LINE(I:I) .NE. ' ' .AND. .NOT. LIN) THEN
            IF (N .EQ. SIZE(WORD)) RETURN
            N = N + 1
            WORD(N) = LINE(I:)
            K = INDEX(WORD(N), ' ')
            IF (K .GT. 0) WORD(N)(K:) = ' '
         END IF
         LIN = LINE(I:I) .NE. ' '
      END DO
      END SUBROUTINE WORDS

C     A NUMBER WITH A LETTER FOR THE POWER OF TEN, 4.7K OR 10U
      FUNCTION AMOUNT (WORD, LGOOD) RESULT (VALUE)
      CHARACTER*(*), INTENT(IN) :: WORD
      LOGICAL, INTENT(OUT) :: LGOOD
      REAL(DP) VALUE
      CHARACTER*1 C
      N = LEN_TRIM(WORD)
      C = WORD(N:N)
      FACTOR = 1
      SELECT CASE (C)
      CASE ('0':'9', '.')
         N = N + 1
      CASE ('K')
         FACTOR = 1D3
      CASE ('M')
         FACTOR = 1D-3
      CASE ('U')
         FACTOR = 1D-6
      CASE ('N')
         FACTOR = 1D-9
      CASE DEFAULT
         FACTOR = 0
      END SELECT
      READ (WORD(:N-1), '(F20.0)', IOSTAT=IOS) VALUE
      VALUE = VALUE*FACTOR
      LGOOD = IOS .EQ. 0 .AND. FACTOR .NE. 0
      END FUNCTION AMOUNT

C     ALL EQUATIONS AT A FREQUENCY (0: DIRECT CURRENT)
      SUBROUTINE EQUATE (A, YRIGHT, FREQ)
      TYPE (SPMAT), INTENT(INOUT) :: A
      COMPLEX(DP), INTENT(OUT) :: YRIGHT(:)
      REAL(DP), INTENT(IN), OPTIONAL :: FREQ
      TYPE (PART) Q
C     A CONDUCTANCE BETWEEN TWO NODES
      YADM(SIGMA, OMEGAC) = CMPLX(SIGMA, OMEGAC, DP)
      OMEGA = 0
      IF (PRESENT(FREQ)) OMEGA = TWOPI*FREQ
      YRIGHT = 0
      DO K = 1, NPARTS
         Q = CIRCT(K)
         I = Q%NODE(1)
         J = Q%NODE(2)
         M = NNODES + Q%BRANCH
         SELECT CASE (Q%CLASS)
         CASE ('R')
            CALL BETWEN (YADM(1/Q%VALUE, 0D0))
         CASE ('C')
            IF (OMEGA .NE. 0) CALL BETWEN (YADM(0D0, OMEGA*Q%VALUE))
         CASE ('L', 'V')
            CALL STAMP (A, I, M, 1D0)
            CALL STAMP (A, J, M, -1D0)
            CALL STAMP (A, M, I, 1D0)
            CALL STAMP (A, M, J, -1D0)
            IF (Q%CLASS .EQ. 'L') THEN
               CALL STAMP (A, M, M, YADM(0D0, -OMEGA*Q%VALUE))
            ELSE
               YRIGHT(M) = Q%VALUE
            END IF
         CASE ('I')
            IF (I .GT. 0) YRIGHT(I) = YRIGHT(I) - Q%VALUE
            IF (J .GT. 0) YRIGHT(J) = YRIGHT(J) + Q%VALUE
         CASE ('G')
            CALL STAMP (A, I, Q%NODE(3), Q%VALUE)
            CALL STAMP (A, I, Q%NODE(4), -Q%VALUE)
            CALL STAMP (A, J, Q%NODE(3), -Q%VALUE)
            CALL STAMP (A, J, Q%NODE(4), VALUE=Q%VALUE)
         END SELECT
      END DO

      CONTAINS
         SUBROUTINE BETWEN (Y)
         COMPLEX(DP), INTENT(IN) :: Y
         CALL STAMP (A, I, I, Y)
         CALL STAMP (A, J, J, Y)
         CALL STAMP (A, I, J, -Y)
         CALL STAMP (A, J, I, -Y)
         END SUBROUTINE BETWEN
      END SUBROUTINE EQUATE

      END MODULE PARTS
