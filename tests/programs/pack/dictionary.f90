! Packing with a growing dictionary of phrases, each a phrase known before and a letter.
MODULE dictionary
  USE kinds, code => short
  USE bitstreams, put_in => put, take_out => get
  IMPLICIT NONE

  INTEGER, PARAMETER, PRIVATE :: largest = 4095, code_bits = 12

  TYPE, PRIVATE :: phrase
     SEQUENCE
     INTEGER(code) :: prefix
     INTEGER(code) :: length
     CHARACTER :: letter
  END TYPE phrase

  TYPE(phrase), DIMENSION(0:largest), PRIVATE, SAVE :: phrases
  INTEGER, PRIVATE, SAVE :: known
  PRIVATE clear_table, learn, find, spelt

CONTAINS

  SUBROUTINE clear_table
    INTEGER :: k
    known = 127
    DO k = 0, known
       phrases(k) = phrase(-1_code, 1_code, ACHAR(k))
    END DO
  END SUBROUTINE clear_table

  SUBROUTINE learn(prefix, letter)
    INTEGER, INTENT(IN) :: prefix
    CHARACTER(LEN=1), INTENT(IN) :: letter
    IF (known == largest) RETURN
    known = known + 1
    phrases(known) = phrase(prefix, phrases(prefix)%length + 1, letter)
  END SUBROUTINE learn

  INTEGER FUNCTION find(prefix, letter) RESULT(which)
    INTEGER, INTENT(IN) :: prefix
    CHARACTER(LEN=1), INTENT(IN) :: letter

    DO which = 128, known
       IF (phrases(which)%prefix /= prefix) CYCLE
       IF (phrases(which)%letter == letter) RETURN
    END DO
    which = -1
  END FUNCTION find

  FUNCTION spelt(which) RESULT(text)
    INTEGER, INTENT(IN) :: which
    CHARACTER(LEN=256) :: text
    INTEGER :: k, n

    text = ' '
    k = which
    DO n = phrases(which)%length, 1, -1
       text(n:n) = phrases(k)%letter
       k = phrases(k)%prefix
    END DO
  END FUNCTION spelt

  SUBROUTINE press(text, s)
    CHARACTER(LEN=*), INTENT(IN) :: text
    TYPE(bitstream), INTENT(INOUT) :: s
    INTEGER :: k, here, next

    CALL clear_table
    IF (LEN(text) == 0) RETURN
    here = IACHAR(text(1:1))
    DO k = 2, LEN(text)
       next = find(here, text(k:k))
       IF (next < 0) THEN
          CALL put_in(s, here, n=code_bits)
          CALL learn(here, text(k:k))
          next = IACHAR(text(k:k))
       END IF
       here = next
    END DO
    CALL put_in(s, value=here, n=code_bits)
  END SUBROUTINE press

  SUBROUTINE unpress(s, text, n)
    TYPE(bitstream), INTENT(INOUT) :: s
    CHARACTER(LEN=*), INTENT(OUT) :: text
    INTEGER, INTENT(OUT) :: n
    CHARACTER(LEN=256) :: piece
    INTEGER(long) :: now, before
    LOGICAL :: ended
    INTEGER :: l

    CALL clear_table()
    text = ' '; n = 0
    CALL take_out(s, code_bits, before, ended)
    IF (ended) RETURN
    text(1:1) = ACHAR(before)
    n = 1
    phrases_left: DO
       CALL take_out(s, code_bits, now, ended)
       IF (ended) EXIT phrases_left
       IF (now > known) THEN
          piece = spelt(before)
          CALL learn(before, piece(1:1))
       ELSE
          piece = spelt(now)
          CALL learn(before, piece(1:1))
       END IF
       piece = spelt(now)
       l = phrases(now)%length
       text(n + 1:n + l) = piece(:l)
       n = n + l
       before = now
    END DO phrases_left
  END SUBROUTINE unpress
END MODULE dictionary
