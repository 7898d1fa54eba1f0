! Plays a tune into a file, reads it, and finds the notes again by their spectra.
PROGRAM tune
   USE spectrum
   USE sound, bits16 => sample
   IMPLICIT NONE
   CHARACTER(LEN=3), DIMENSION(6), PARAMETER :: notes = (/ 'C4 ', 'E4 ', 'G4 ', 'C5 ', 'A#4', 'Bb4' /)
   INTEGER, PARAMETER :: unit = 40, n = 2048
   INTEGER(bits16), DIMENSION(:), POINTER :: one, all_notes, more, back
   INTEGER :: k, status, peak(1)
   REAL(sp), DIMENSION(n) :: piece
   REAL(sp), DIMENSION(0:n/2) :: p
   REAL(sp) :: found, loud
   TYPE(recursive_filter) :: f
   COMPLEX(sp), DIMENSION(8) :: z
   CHARACTER(LEN=*), PARAMETER :: head = '(1X, A, T8, A, T20, A)'

   ALLOCATE (all_notes(0))
   DO k = 1, SIZE(notes)
      IF (MOD(k, 2) == 0) THEN
         CALL play(flute, notes(k), 0.3, one)
      ELSE
         CALL play(organ, notes(k), 0.3, one, volume=0.8)
      END IF
      ALLOCATE (more(SIZE(all_notes) + SIZE(one)))
      more = all_notes .then. one
      DEALLOCATE (all_notes, one)
      all_notes => more
   END DO
   CALL save_music(unit, 'tune.snd', all_notes, status)
   IF (status /= 0) STOP 'cannot save'
   CALL load_music(unit, 'tune.snd', back, status)
   IF (status /= 0) STOP 'cannot load'
   IF (SIZE(back) /= SIZE(all_notes)) STOP 'length is wrong'
   IF (ANY(back /= all_notes)) PRINT *, 'not the same'

   PRINT head, 'note', 'played', 'heard'
   DO k = 1, SIZE(notes)
      piece = back((k - 1)*2400 + 1:(k - 1)*2400 + n)
      p = power(piece/loudest)
      peak = MAXLOC(p) - 1
      found = REAL(peak(1))*rate/n
      WRITE (*, '(1X, A, T8, F7.2, T20, F7.2, L3)') notes(k), pitch(notes(k)), found, &
         ABS(found - pitch(notes(k))) < 4.0
   END DO

   CALL filter(f, 1000.0/rate)
   piece = REAL(back(:n))
   loud = SUM(piece**2)
   CALL apply(f, piece)
   PRINT *, 'softer: ', SUM(piece**2) < loud, SIZE(convolution(piece, low_pass(15, 0.1))) == n + 30
   z = (/ (CMPLX(k, -k), k = 1, 8) /)
   CALL transform(z)
   CALL transform(z, inverse=.TRUE.)
   WRITE (*, '(4(" (", F4.1, ",", F4.1, ")"))') z
   CALL load_music(unit, 'tune.snd', one, status)
   IF (status == -1 .AND. .NOT. ASSOCIATED(one)) PRINT *, 'gone'
   DEALLOCATE (all_notes)
END PROGRAM tune
