PROGRAM try_lexicon
   USE lexicon
   USE sparse, ONLY: sparse_set, put, OPERATOR(.has.), forget_all => clear, take, members
   IMPLICIT NONE
   CHARACTER(LEN=word_length), DIMENSION(12) :: found
   CHARACTER(LEN=5) :: fitting(6)
   INTEGER :: n, status, i
   LOGICAL :: ok

   CALL learn('art cart care car race acre scare star stare rate tear treat')
   CALL learn('state taste trace crate stone stare notes')
   CALL add_word('no number', status=status)
   PRINT *, words_known, status, longest_word()
   PRINT *, find_word('car'), find_word('ca'), find_word((/ 'star ', 'stare', 'stars' /))
   CALL begins_with('car', found, n)
   PRINT '(1X, I2, A, 12(1X, A))', n, ':', (TRIM(found(i)), i = 1, n)
   CALL made_of('tracee', found, n, least=4)
   PRINT '(1X, I2, A, 12(1X, A))', n, ':', (TRIM(found(i)), i = 1, n)
   CALL made_of('ste?', found, n)
   PRINT '(1X, I2, A, 12(1X, A))', n, ':', (TRIM(found(i)), i = 1, n)
   fitting = fits('s.a.e', SIZE(fitting))
   PRINT *, fitting(:COUNT(fitting /= ' '))

   OPEN (61, STATUS='SCRATCH', FORM='UNFORMATTED')
   CALL save_words(61)
   REWIND 61
   CALL load_words(61, ok)
   PRINT *, ok, find_word('notes') > 0
   CLOSE (61)
   CALL try_sparse

CONTAINS

   SUBROUTINE learn(list)
      CHARACTER(LEN=*), INTENT(IN) :: list
      CHARACTER(LEN=LEN(list)) :: rest
      INTEGER :: blank

      rest = ADJUSTL(list)
      DO WHILE (rest /= ' ')
         blank = INDEX(rest // ' ', ' ')
         CALL add_word(rest(:blank - 1), status=status)
         IF (status /= 0) WRITE (*, *) 'cannot learn ', rest(:blank - 1), status
         rest = ADJUSTL(rest(blank:))
      END DO
   END SUBROUTINE learn

   SUBROUTINE try_sparse
      TYPE(sparse_set) :: s

      CALL forget_all(s)
      CALL put(s, (/ 7, 3, 500, 3, 42 /))
      CALL put(s, 999)
      CALL take(s, 3)
      PRINT *, s .has. 7, s .has. 3, s .has. (/ 42, 500 /), s .has. 1000
      PRINT '(1X, 10I5)', members(s)
   END SUBROUTINE try_sparse

END PROGRAM try_lexicon
