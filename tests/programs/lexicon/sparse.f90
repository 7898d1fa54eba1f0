! Sets of integers from a small range that can be emptied at once: a dense list
! of the members and, for each number, where in the list it would be.
MODULE sparse
   IMPLICIT NONE
   INTEGER, PARAMETER :: largest = 999

   TYPE sparse_set
      PRIVATE
      INTEGER :: n
      INTEGER, DIMENSION(0:largest) :: dense, place
   END TYPE sparse_set

   INTERFACE OPERATOR(.has.)
      MODULE PROCEDURE has_number, has_all
   END INTERFACE

   INTERFACE put
      MODULE PROCEDURE put_number, put_list
   END INTERFACE

CONTAINS

   SUBROUTINE clear(s)
      TYPE(sparse_set), INTENT(INOUT) :: s
      s%n = 0
      s%place = 0
   END SUBROUTINE clear

   LOGICAL FUNCTION has_number(s, i)
      TYPE(sparse_set), INTENT(IN) :: s
      INTEGER, INTENT(IN) :: i

      has_number = .FALSE.
      IF (i < 0 .OR. i > largest) RETURN
      IF (s%place(i) < s%n) has_number = s%dense(s%place(i)) == i
   END FUNCTION has_number

   LOGICAL FUNCTION has_all(s, list)
      TYPE(sparse_set), INTENT(IN) :: s
      INTEGER, INTENT(IN), DIMENSION(:) :: list
      INTEGER :: k

      has_all = .TRUE.
      DO k = LBOUND(list, 1), UBOUND(list, 1)
         has_all = has_all .AND. (s .has. list(k))
      END DO
   END FUNCTION has_all

   SUBROUTINE put_number(s, i)
      TYPE(sparse_set), INTENT(INOUT) :: s
      INTEGER, INTENT(IN) :: i

      IF (s .has. i) RETURN
      s%dense(s%n) = i
      s%place(i) = s%n
      s%n = s%n + 1
   END SUBROUTINE put_number

   SUBROUTINE put_list(s, list)
      TYPE(sparse_set), INTENT(INOUT) :: s
      INTEGER, DIMENSION(:), INTENT(IN) :: list
      INTEGER :: k
      DO k = 1, SIZE(list); CALL put(s, list(k)); END DO
   END SUBROUTINE put_list

   ! The last member takes the place of the one that goes.
   SUBROUTINE take(s, i)
      TYPE(sparse_set), INTENT(INOUT) :: s
      INTEGER, INTENT(IN) :: i
      INTEGER :: last

      IF (.NOT. (s .has. i)) RETURN
      s%n = s%n - 1
      last = s%dense(s%n)
      s%dense(s%place(i)) = last
      s%place(last) = s%place(i)
   END SUBROUTINE take

   FUNCTION members(s) RESULT(list)
      TYPE(sparse_set), INTENT(IN) :: s
      INTEGER, DIMENSION(s%n) :: list
      list = s%dense(:s%n - 1)
   END FUNCTION members

END MODULE sparse
