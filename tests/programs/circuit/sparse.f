C     SPARSE MATRICES: EACH ROW IS A LINKED LIST, SORTED BY COLUMN
      MODULE SPARSE
      IMPLICIT NONE
      PRIVATE ENTRY2, SPRFND
      INTEGER, PARAMETER :: WP = KIND(1D0)

      TYPE ENTRY2
         INTEGER COL
         COMPLEX(WP) VAL
         TYPE (ENTRY2), POINTER :: NEXT
      END TYPE ENTRY2

      TYPE ROWPTR
         PRIVATE
         TYPE (ENTRY2), POINTER :: HEAD
      END TYPE ROWPTR

      TYPE SPMAT
         INTEGER N, FILLED
         TYPE (ROWPTR), DIMENSION(:), POINTER :: ROW
      END TYPE SPMAT

      INTERFACE STAMP
         MODULE PROCEDURE STAMPR, STAMPC
      END INTERFACE

      CONTAINS

      SUBROUTINE SPNEW (A, N)
      TYPE (SPMAT), INTENT(OUT) :: A
      INTEGER, INTENT(IN) :: N
      INTEGER I
      A%N = N
      A%FILLED = 0
      ALLOCATE (A%ROW(N))
      DO I = 1, N
         NULLIFY (A%ROW(I)%HEAD)
      END DO
      END SUBROUTINE SPNEW

      SUBROUTINE SPFREE (A)
      TYPE (SPMAT), INTENT(INOUT) :: A
      TYPE (ENTRY2), POINTER :: P
      INTEGER I
      DO I = 1, A%N
         DO
            P => A%ROW(I)%HEAD
            IF (.NOT. ASSOCIATED(P)) EXIT
            A%ROW(I)%HEAD => P%NEXT
            DEALLOCATE (P)
         END DO
      END DO
      DEALLOCATE (A%ROW)
      A%N = 0
      END SUBROUTINE SPFREE

C     THE PLACE (I, J), MADE IF IT IS NOT YET THERE
      FUNCTION SPRFND (A, I, J) RESULT (P)
      TYPE (SPMAT), INTENT(INOUT) :: A
      INTEGER, INTENT(IN) :: I, J
      TYPE (ENTRY2), POINTER :: P, PREV
      NULLIFY (PREV)
      P => A%ROW(I)%HEAD
      DO WHILE (ASSOCIATED(P))
         IF (P%COL .EQ. J) RETURN
         IF (P%COL .GT. J) EXIT
         PREV => P
         P => P%NEXT
      END DO
      ALLOCATE (P)
      P%COL = J
      P%VAL = (0.0D0, 0.0D0)
      IF (ASSOCIATED(PREV)) THEN
         P%NEXT => PREV%NEXT
         PREV%NEXT => P
      ELSE
         P%NEXT => A%ROW(I)%HEAD
         A%ROW(I)%HEAD => P
      END IF
      A%FILLED = A%FILLED + 1
      END FUNCTION SPRFND

C     ADDS TO AN ELEMENT; ROW OR COLUMN 0 IS THE EARTH
      SUBROUTINE STAMPC (A, I, J, VALUE)
      TYPE (SPMAT), INTENT(INOUT) :: A
      INTEGER, INTENT(IN) :: I, J
      COMPLEX(WP), INTENT(IN) :: VALUE
      TYPE (ENTRY2), POINTER :: P
      IF (I .EQ. 0 .OR. J .EQ. 0) RETURN
      P => SPRFND(A, I, J)
      P%VAL = P%VAL + VALUE
      END SUBROUTINE STAMPC

      SUBROUTINE STAMPR (A, I, J, VALUE)
      TYPE (SPMAT), INTENT(INOUT) :: A
      INTEGER, INTENT(IN) :: I, J
      REAL(WP), INTENT(IN) :: VALUE
      CALL STAMPC (A, I, J, CMPLX(VALUE, KIND=WP))
      END SUBROUTINE STAMPR

C     ROW I MINUS S TIMES ROW K, FROM COLUMN K ON
      SUBROUTINE SPSUBT (A, I, K, S)
      TYPE (SPMAT), INTENT(INOUT) :: A
      INTEGER, INTENT(IN) :: I, K
      COMPLEX(WP), INTENT(IN) :: S
      TYPE (ENTRY2), POINTER :: P, Q
      P => A%ROW(K)%HEAD
      DO WHILE (ASSOCIATED(P))
         IF (P%COL .GT. K) THEN
            Q => SPRFND(A, I, P%COL)
            Q%VAL = Q%VAL - S*P%VAL
         END IF
         P => P%NEXT
      END DO
      END SUBROUTINE SPSUBT

C     SOLVES A*X = B; B BECOMES X AND A ITS FACTORS. THE PIVOT IS THE
C     LARGEST OF ITS COLUMN, FOUND BY EXCHANGING ONLY ROW POINTERS.
      SUBROUTINE SPSOLV (A, B, SINGLR)
      TYPE (SPMAT), INTENT(INOUT) :: A
      COMPLEX(WP), DIMENSION(:), INTENT(INOUT) :: B
      LOGICAL, INTENT(OUT) :: SINGLR
      TYPE (ENTRY2), POINTER :: P
      TYPE (ROWPTR) :: HELD
      COMPLEX(WP) :: S, T, PIVOT
      REAL(WP) :: MOST
      INTEGER I, K, BEST

      SINGLR = .TRUE.
      DO 100 K = 1, A%N
         MOST = 0
         BEST = 0
         DO 20 I = K, A%N
            CALL PEEK (I, K, T)
            IF (ABS(T) .LE. MOST) GO TO 20
            MOST = ABS(T)
            BEST = I
            PIVOT = T
   20    CONTINUE
         IF (BEST .EQ. 0) RETURN
         IF (BEST .NE. K) THEN
            HELD = A%ROW(K)
            A%ROW(K) = A%ROW(BEST)
            A%ROW(BEST) = HELD
            T = B(K)
            B(K) = B(BEST)
            B(BEST) = T
         END IF
         DO 40 I = K + 1, A%N
            CALL PEEK (I, K, T)
            IF (T .EQ. (0.0D0, 0.0D0)) GO TO 40
            S = T/PIVOT
            CALL SPSUBT (A, I, K, S)
            B(I) = B(I) - S*B(K)
   40    CONTINUE
  100 CONTINUE
      DO K = A%N, 1, -1
         P => A%ROW(K)%HEAD
         DO WHILE (ASSOCIATED(P))
            IF (P%COL .GT. K) B(K) = B(K) - P%VAL*B(P%COL)
            IF (P%COL .EQ. K) PIVOT = P%VAL
            P => P%NEXT
         END DO
         B(K) = B(K)/PIVOT
      END DO
      SINGLR = .FALSE.

      CONTAINS
         SUBROUTINE PEEK (I, J, VALUE)
         INTEGER, INTENT(IN) :: I, J
         COMPLEX(WP), INTENT(OUT) :: VALUE
         TYPE (ENTRY2), POINTER :: P
         VALUE = (0.0_WP, 0.0_WP)
         P => A%ROW(I)%HEAD
         DO WHILE (ASSOCIATED(P))
            IF (P%COL .GE. J) THEN
               IF (P%COL .EQ. J) VALUE = P%VAL
               RETURN
            END IF
            P => P%NEXT
         END DO
         END SUBROUTINE PEEK
      END SUBROUTINE SPSOLV

      END MODULE SPARSE
