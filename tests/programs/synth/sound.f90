! Sounds: notes by their names, instruments by their overtones, files by blocks of direct access.
MODULE sound
   USE spectrum, ONLY: real_kind => sp
   IMPLICIT NONE

   INTEGER, PARAMETER :: sample = SELECTED_INT_KIND(4)
   INTEGER, PARAMETER :: rate = 8000, block_length = 256
   INTEGER(sample), PARAMETER :: loudest = HUGE(0_sample)

   TYPE instrument
      CHARACTER(LEN=12) :: name
      REAL(real_kind) :: overtones(4)
      REAL(real_kind) :: attack, decay
   END TYPE instrument

   TYPE, PRIVATE :: file_head
      SEQUENCE
      INTEGER :: rate, samples, blocks
   END TYPE file_head

   TYPE(instrument), PARAMETER :: &
      flute = instrument('flute', (/1.0, 0.1, 0.05, 0.0/), 0.08, 0.5), &
      organ = instrument('organ', (/1.0, 0.6, 0.4, 0.3/), 0.01, 10.0)

   INTERFACE OPERATOR(.then.)
      MODULE PROCEDURE joined
   END INTERFACE

   PRIVATE :: joined, block_record_length

CONTAINS

   ! The frequency of a note such as A4 or C#5; silence is 0.
   REAL(real_kind) FUNCTION pitch(note)
      CHARACTER(LEN=*), INTENT(IN) :: note
      INTEGER :: step, octave, at
      CHARACTER(LEN=*), PARAMETER :: keys = 'C D EF G A B'

      pitch = 0
      step = INDEX(keys, note(1:1))
      IF (step == 0 .OR. note == ' ') RETURN
      at = 2
      SELECT CASE (note(2:2))
      CASE ('#'); step = step + 1; at = 3
      CASE ('b'); step = step - 1; at = 3
      END SELECT
      octave = IACHAR(note(at:at)) - IACHAR('0')
      pitch = 440.0*2.0**((step - 10)/12.0 + (octave - 4))
   END FUNCTION pitch

   SUBROUTINE play(what, note, seconds, music, volume)
      TYPE(instrument), INTENT(IN) :: what
      CHARACTER(LEN=*), INTENT(IN) :: note
      REAL(real_kind), INTENT(IN) :: seconds
      INTEGER(sample), DIMENSION(:), POINTER :: music
      REAL(real_kind), INTENT(IN), OPTIONAL :: volume
      REAL(real_kind) :: t, f, level, strength
      REAL(real_kind), PARAMETER :: twopi = 6.2831853
      INTEGER :: k, n, h

      strength = 0.5
      IF (PRESENT(volume)) strength = volume
      n = NINT(seconds*rate)
      ALLOCATE (music(n))
      f = pitch(note)
      DO k = 1, n
         t = REAL(k - 1)/rate
         level = MIN(1.0, t/what%attack)*EXP(-t/what%decay)
         music(k) = INT(loudest*strength*level/SUM(what%overtones)* &
            SUM((/(what%overtones(h)*SIN(twopi*MOD(h*f*t, 1.0)), h = 1, 4)/)), sample)
      END DO
   END SUBROUTINE play

   FUNCTION joined(first, second) RESULT(both)
      INTEGER(sample), DIMENSION(:), INTENT(IN) :: first, second
      INTEGER(sample), DIMENSION(SIZE(first) + SIZE(second)) :: both
      both = (/ first, second /)
   END FUNCTION joined

   INTEGER FUNCTION block_record_length()
      INTEGER(sample), DIMENSION(block_length) :: block
      block = 0
      INQUIRE (IOLENGTH=block_record_length) block
   END FUNCTION block_record_length

   ! The first record tells the length, the rest are blocks of samples.
   SUBROUTINE save_music(unit, name, music, status)
      INTEGER, INTENT(IN) :: unit
      CHARACTER(LEN=*), INTENT(IN) :: name
      INTEGER(sample), DIMENSION(:), INTENT(IN) :: music
      INTEGER, INTENT(OUT) :: status
      INTEGER(sample), DIMENSION(block_length) :: block
      TYPE(file_head) :: head
      INTEGER :: k, from, to, length

      length = block_record_length()
      OPEN (UNIT=unit, FILE=name, ACCESS='DIRECT', RECL=length, FORM='UNFORMATTED', &
         STATUS='REPLACE', ACTION='READWRITE', IOSTAT=status)
      IF (status /= 0) RETURN
      head = file_head(rate, SIZE(music), (SIZE(music) + block_length - 1)/block_length)
      ! from the end, because it makes no difference
      DO k = head%blocks, 1, -1
         from = (k - 1)*block_length + 1
         to = MIN(k*block_length, SIZE(music))
         block = 0
         block(1:to - from + 1) = music(from:to)
         WRITE (unit, REC=k + 1, ERR=100) block
      END DO
      WRITE (unit, REC=1, IOSTAT=status) head
      CLOSE (unit)
      RETURN
100   status = 100
      CLOSE (unit, STATUS='DELETE')
   END SUBROUTINE save_music

   SUBROUTINE load_music(unit, name, music, status)
      INTEGER, INTENT(IN) :: unit
      CHARACTER(LEN=*), INTENT(IN) :: name
      INTEGER(sample), DIMENSION(:), POINTER :: music
      INTEGER, INTENT(OUT) :: status
      INTEGER(sample), DIMENSION(:), POINTER :: part
      TYPE(file_head) :: head
      INTEGER :: k, next, length
      LOGICAL :: there
      CHARACTER(LEN=10) :: access

      NULLIFY (music)
      INQUIRE (FILE=name, EXIST=there)
      status = -1
      IF (.NOT. there) RETURN
      length = block_record_length()
      OPEN (unit, FILE=name, ACCESS='DIRECT', RECL=length, STATUS='OLD', IOSTAT=status)
      IF (status > 0) RETURN
      INQUIRE (unit, ACCESS=access, NEXTREC=next)
      IF (access /= 'DIRECT' .OR. next /= 1) STOP 'load_music: wrong file'
      READ (unit, REC=1) head
      ALLOCATE (music(head%blocks*block_length))
      DO k = 1, head%blocks
         part => music((k - 1)*block_length + 1:k*block_length)
         READ (unit, REC=k + 1, IOSTAT=status) part
         IF (status /= 0) EXIT
      END DO
      part => music(:head%samples)
      music => part
      CLOSE (unit, STATUS='DELETE')
   END SUBROUTINE load_music

END MODULE sound
