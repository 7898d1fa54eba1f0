! Words in a tree of letters, kept in arrays: each node has a first child and a
! next brother. Answers what begins with some letters, and what words can be
! made of a handful of letters or fit into the gaps of a crossword.
MODULE lexicon
   IMPLICIT NONE
   PRIVATE
   PUBLIC :: add_word, find_word, begins_with, made_of, fits, words_known, longest_word, &
             save_words, load_words
   INTEGER, PARAMETER, PUBLIC :: word_length = 16
   INTEGER, PARAMETER :: node_count = 2000, root = 1
   CHARACTER(LEN=26), PARAMETER, PUBLIC :: alphabet = 'abcdefghijklmnopqrstuvwxyz'

   CHARACTER, DIMENSION(node_count) :: letter
   INTEGER, DIMENSION(node_count)   :: child, brother, meaning
   INTEGER :: nodes, words_known
   SAVE
   DATA nodes /root/, child(root), brother(root), meaning(root) /3*0/, words_known /0/

   INTERFACE find_word
      MODULE PROCEDURE find_exact, find_in_list
   END INTERFACE

CONTAINS

   ! The child of NODE with the letter C, 0 if there is none.
   INTEGER FUNCTION child_of(node, c)
      INTEGER, INTENT(IN) :: node
      CHARACTER, INTENT(IN) :: c

      child_of = child(node)
      DO WHILE (child_of /= 0)
         IF (letter(child_of) == c) EXIT
         child_of = brother(child_of)
      END DO
   END FUNCTION child_of

   SUBROUTINE add_word(word, number, status)
      CHARACTER(LEN=*), INTENT(IN)   :: word
      INTEGER, INTENT(IN), OPTIONAL  :: number
      INTEGER, INTENT(OUT), OPTIONAL :: status
      INTEGER :: node, next, i

      IF (PRESENT(status)) status = 0
      IF (VERIFY(TRIM(word), alphabet) /= 0 .OR. LEN_TRIM(word) > word_length) THEN
         IF (PRESENT(status)) status = 1
         RETURN
      END IF
      node = root
      letters: DO i = 1, LEN_TRIM(word)
         next = child_of(node, word(i:i))
         IF (next == 0) THEN
            IF (nodes == node_count) THEN
               IF (PRESENT(status)) status = 2
               EXIT letters
            END IF
            nodes = nodes + 1
            next = nodes
            letter(next) = word(i:i)
            child(next) = 0
            meaning(next) = 0
            CALL link_in_order
         END IF
         node = next
      END DO letters
      IF (i <= LEN_TRIM(word)) RETURN
      IF (meaning(node) == 0) words_known = words_known + 1
      meaning(node) = words_known
      IF (PRESENT(number)) meaning(node) = number

   CONTAINS

      ! Brothers stand in alphabetical order.
      SUBROUTINE link_in_order
         INTEGER :: before

         IF (child(node) == 0) THEN
            brother(next) = 0
            child(node) = next
         ELSE IF (letter(child(node)) > letter(next)) THEN
            brother(next) = child(node)
            child(node) = next
         ELSE
            before = child(node)
            DO
               IF (brother(before) == 0) EXIT
               IF (letter(brother(before)) > letter(next)) EXIT
               before = brother(before)
            END DO
            brother(next) = brother(before)
            brother(before) = next
         END IF
      END SUBROUTINE link_in_order

   END SUBROUTINE add_word

   INTEGER FUNCTION node_of(prefix) RESULT(node)
      CHARACTER(LEN=*), INTENT(IN) :: prefix
      INTEGER :: i

      node = root
      DO i = 1, LEN_TRIM(prefix)
         node = child_of(node, prefix(i:i))
         IF (node == 0) RETURN
      END DO
   END FUNCTION node_of

   ! The number of a word, 0 if it isn't known.
   INTEGER FUNCTION find_exact(word)
      CHARACTER(LEN=*), INTENT(IN) :: word
      find_exact = node_of(word)
      IF (find_exact /= 0) find_exact = meaning(find_exact)
   END FUNCTION find_exact

   FUNCTION find_in_list(list) RESULT(numbers)
      CHARACTER(LEN=*), DIMENSION(:), INTENT(IN) :: list
      INTEGER, DIMENSION(SIZE(list)) :: numbers
      INTEGER :: i
      DO i = 1, SIZE(list)
         numbers(i) = find_word(list(i))
      END DO
   END FUNCTION find_in_list

   ! Collects the words below a node that ALLOWED lets pass.
   SUBROUTINE begins_with(prefix, found, n)
      CHARACTER(LEN=*), INTENT(IN) :: prefix
      CHARACTER(LEN=*), DIMENSION(:), INTENT(OUT) :: found
      INTEGER, INTENT(OUT) :: n
      INTEGER :: start

      n = 0
      found = ' '
      start = node_of(prefix)
      IF (start /= 0) CALL walk(start, TRIM(prefix))

   CONTAINS

      RECURSIVE SUBROUTINE walk(node, word)
         INTEGER, INTENT(IN) :: node
         CHARACTER(LEN=*), INTENT(IN) :: word
         INTEGER :: next

         IF (meaning(node) /= 0 .AND. n < SIZE(found)) THEN
            n = n + 1
            found(n) = word
         END IF
         next = child(node)
         DO
            IF (next == 0) EXIT
            CALL walk(next, word // letter(next))
            next = brother(next)
         END DO
      END SUBROUTINE walk

   END SUBROUTINE begins_with

   ! Words made of some of the letters, each used once; "?" is any letter.
   SUBROUTINE made_of(letters, found, n, least)
      CHARACTER(LEN=*), INTENT(IN) :: letters
      CHARACTER(LEN=*), DIMENSION(:), INTENT(OUT) :: found
      INTEGER, INTENT(OUT) :: n
      INTEGER, INTENT(IN), OPTIONAL :: least
      INTEGER, DIMENSION(IACHAR('a'):IACHAR('z')) :: supply
      INTEGER :: jokers, shortest, i

      shortest = 1
      IF (PRESENT(least)) shortest = least
      supply = 0
      jokers = 0
      DO i = 1, LEN_TRIM(letters)
         IF (letters(i:i) == '?') THEN
            jokers = jokers + 1
         ELSE IF (INDEX(alphabet, letters(i:i)) > 0) THEN
            supply(IACHAR(letters(i:i))) = supply(IACHAR(letters(i:i))) + 1
         END IF
      END DO
      n = 0
      found = ''
      CALL spend(root, '')

   CONTAINS

      RECURSIVE SUBROUTINE spend(node, word)
         INTEGER, INTENT(IN) :: node
         CHARACTER(*), INTENT(IN) :: word
         INTEGER :: next, code

         IF (meaning(node) /= 0 .AND. LEN(word) >= shortest .AND. n < SIZE(found)) THEN
            n = n + 1
            found(n) = word
         END IF
         next = child(node)
         choose: DO WHILE (next /= 0)
            code = IACHAR(letter(next))
            IF (supply(code) > 0) THEN
               supply(code) = supply(code) - 1
               CALL spend(next, word // letter(next))
               supply(code) = supply(code) + 1
            ELSE IF (jokers > 0) THEN
               jokers = jokers - 1
               CALL spend(next, word // letter(next))
               jokers = jokers + 1
            END IF
            next = brother(next)
         END DO choose
      END SUBROUTINE spend

   END SUBROUTINE made_of

   ! The words that fit a pattern with "." for letters not known yet.
   FUNCTION fits(pattern, most) RESULT(found)
      CHARACTER(LEN=*), INTENT(IN) :: pattern
      INTEGER, INTENT(IN) :: most
      CHARACTER(LEN=LEN(pattern)), DIMENSION(most) :: found
      CHARACTER(LEN=LEN(pattern)) :: word
      INTEGER :: n

      found = ' '
      n = 0
      word = ' '
      CALL fill(root, 1)

   CONTAINS

      RECURSIVE SUBROUTINE fill(node, at)
         INTEGER, INTENT(IN) :: node, at
         INTEGER :: next

         IF (at > LEN_TRIM(pattern)) THEN
            IF (meaning(node) == 0 .OR. n == most) RETURN
            n = n + 1
            found(n) = word
            RETURN
         END IF
         IF (pattern(at:at) == '.') THEN
            next = child(node)
            DO WHILE (next /= 0)
               word(at:at) = letter(next)
               CALL fill(next, at + 1)
               next = brother(next)
            END DO
            word(at:) = ' '
         ELSE
            next = child_of(node, pattern(at:at))
            IF (next == 0) RETURN
            word(at:at) = letter(next)
            CALL fill(next, at + 1)
         END IF
      END SUBROUTINE fill

   END FUNCTION fits

   INTEGER FUNCTION longest_word() RESULT(length)
      length = depth_below(root) - 1
   END FUNCTION longest_word

   RECURSIVE FUNCTION depth_below(node) RESULT(depth)
      INTEGER, INTENT(IN) :: node
      INTEGER :: depth, next

      depth = 0
      next = child(node)
      DO WHILE (next /= 0)
         depth = MAX(depth, depth_below(next))
         next = brother(next)
      END DO
      depth = depth + 1
   END FUNCTION depth_below

   ! The whole tree in one unformatted record behind a head.
   SUBROUTINE save_words(unit)
      INTEGER, INTENT(IN) :: unit
      INTEGER :: i
      WRITE (unit) 'LEX', nodes, words_known
      WRITE (unit) (letter(i), child(i), brother(i), meaning(i), i = root, nodes)
   END SUBROUTINE save_words

   SUBROUTINE load_words(unit, ok)
      INTEGER, INTENT(IN) :: unit
      LOGICAL, INTENT(OUT) :: ok
      CHARACTER(LEN=3) :: head
      INTEGER :: i, ios

      READ (unit, IOSTAT=ios) head, nodes, words_known
      ok = ios == 0
      IF (ok) ok = head == 'LEX'
      IF (ok) READ (unit, IOSTAT=ios) (letter(i), child(i), brother(i), meaning(i), &
                                       i = root, nodes)
      ok = ok .AND. ios == 0
   END SUBROUTINE load_words

END MODULE lexicon
