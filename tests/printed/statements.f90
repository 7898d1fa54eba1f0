! Every statement that the printer has a form for.
SUBROUTINE work(n, v, text, *)
  INTEGER n, i, j, k, stat
  REAL v(n, *), w(3), x
  CHARACTER*(*) text
  CHARACTER(LEN=LEN(text)) copy
  COMPLEX z
  LOGICAL flag
  LOGICAL(1) small
  INTEGER(1) short
  POINTER p
  REAL p(:)
  ALLOCATABLE a
  REAL a(:, :)
  TARGET w
  EXTERNAL sub, fun
  REAL fun
  NAMELIST /group/ n, x, z
  EQUIVALENCE (i, x)
  COMMON /blk/ j, k
  DATA k2 /3/, w /3*1.5/
  INTERFACE
    SUBROUTINE ext(q, r)
      REAL, INTENT(IN) :: q(:)
      INTEGER, OPTIONAL :: r
    END SUBROUTINE
  END INTERFACE
  sf(y) = y * 2
  ASSIGN 10 TO i
  GO TO i, (10, 20)
10 x = sf(1.0) + v(1, 2)
  IF (x) 10, 20, 30
20 GO TO (10, 20, 30), n
30 CONTINUE
  ALLOCATE (a(n, 2:5), STAT=stat)
  p => w(1:3:2)
  NULLIFY (p)
  DEALLOCATE (a, STAT=stat)
  outer: DO i = 1, 10, 2
    IF (i > 5) THEN
      EXIT outer
    ELSE IF (i == 3) THEN
      CYCLE outer
    ELSE
      CALL sub(x, *10)
    END IF
  END DO outer
  DO WHILE (x < 3.0d0)
    x = x + 1
  END DO
  SELECT CASE (n)
  CASE (:1)
    x = 1
  CASE (3, 5:7)
    x = 2
  CASE (9:)
    x = 3
  CASE DEFAULT
    x = 4
  END SELECT
  WHERE (w > 0)
    w = 1 / w
  ELSEWHERE
    w = -w
  END WHERE
  OPEN (10, FILE='a"b<c>&.dat', STATUS='OLD', ERR=20)
  READ (10, *, END=10) x, (w(i), i = 1, 3)
  READ (*, 100) n
  READ 100, n
  WRITE (10, FMT=100, REC=3) n, fun(x)
  WRITE (copy, '(I3)') n
  WRITE (*, NML=group)
  PRINT 100, n
  PRINT *, (/ 1, 2, 3 /), (/ (i, i = 1, 3) /), z, .NOT. flag .AND. small .EQV. .TRUE.
  INQUIRE (10, EXIST=flag)
  REWIND 10
  BACKSPACE (10, IOSTAT=stat)
  ENDFILE 10
  CLOSE (10)
  z = (1.0, 2.0) * z ** 2
  text(1:3) = 'it''s' // "é" // text(2:)
  short = 3_1
  PAUSE 'wait'
  IF (x == 1) STOP 5
  ENTRY other(n)
  RETURN 1
100 FORMAT (I5, 'a<b', 2X)
END SUBROUTINE
INTEGER FUNCTION f(n)
  ENTRY g(n)
  f = n
END FUNCTION
BLOCK DATA
  COMMON /blk/ j, k
  DATA j, k /1, 2/
END BLOCK DATA
END
