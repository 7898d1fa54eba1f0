! Packs a text in three ways and unpacks it again.
program packing
  use kinds
  use bitstreams, only: bitstream, open_bits, close_bits, length_of, rewind_bits, operator(==)
  use huffman
  use runs
  use dictionary, only: press, unpress
  implicit none
  character(len=*), parameter :: verse = &
       'the cat sat on the mat and the rat sat on the cat;      &
       &the mat was flat........................ the cat was fat'
  character(len=400, kind=ascii) :: room, back
  type(bitstream) :: bits, again
  integer(long) :: n, m
  character(len=*), parameter :: report = "(1X, A, T15, I5, ' of', I6, '  (', F5.1, '%)')"
  integer :: line
  character(len=60), dimension(6) :: picture

  call squeeze_runs(verse, room, n)
  back = expand_runs(room(1:n), room=len(verse))
  call check('run lengths', 8*n, back)

  call open_bits(bits)
  call open_bits(again, expected=1000)
  call encode(verse, bits)
  call encode(verse, again)
  call decode(bits, back, m)
  if (m /= len(verse)) stop 11
  if (.not. (bits == again)) print *, 'not the same bits'
  call check(bits=length_of(bits), text=back, method='huffman')
  call rewind_bits(bits)
  write (unit=*, fmt='(1X, "entropy", F8.4)') entropy(verse)
  call close_bits(bits)
  call close_bits(again)

  call open_bits(bits, 8*len(verse))
  call press(verse, bits)
  call unpress(bits, back, n)
  call check('dictionary', length_of(bits), back)
  call close_bits(bits)

  do line = 1, size(picture)
     picture(line) = repeat('_', 5*line)//'/'//repeat(char(92), 3)//repeat('~', line)
     call squeeze_runs(trim(picture(line)), room, m)
     if (expand_runs(room(:m), 60) /= picture(line)) stop 'runs are wrong'
     write (*, 10) line, len_trim(picture(line)), m
  end do
10 format (1X, 'line', I2.1, ':', 2I4)

contains

  subroutine check(method, bits, text)
    character(len=*), intent(in) :: method, text
    integer, intent(in) :: bits

    write (*, report) method, bits, 8*len(verse), 100.0*bits/(8*len(verse))
    if (text /= verse) write (*, '(1X, A)') 'but: '//text
  end subroutine check
end program packing
