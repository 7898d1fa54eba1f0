! Fills a small crossword, looks for words in a square of letters, and counts the letters of a text.
program crossword
  use lexicon, fitting => matches
  implicit none

  type slot
     integer :: row, column, size
     logical :: across
  end type slot

  type letter_count
     character(len=1) :: letter
     integer :: times
  end type letter_count

  integer, parameter :: side = 5, most_slots = 20, unit = 17
  character(len=1), dimension(side, side), target :: grid
  character(len=1), dimension(:), pointer :: line
  type(slot), dimension(most_slots) :: slots
  type(lexikon) :: lex
  type(letter_count), dimension(26) :: tally
  integer :: n, k, lines, tried
  logical(lk) :: done
  character(len=side*side) :: picture
  character(len=1) :: cells(side*side)
  equivalence (picture, cells)
  integer, dimension(8), parameter :: down_step = (/-1, -1, 0, 1, 1, 1, 0, -1/), &
                                      right_step = (/0, 1, 1, 1, 0, -1, -1, -1/)

  open (unit, status='scratch', action='readwrite')
  write (unit, '(A)') 'heart ember abuse resin trend', &
       'the cat, sat upon: a mat; stone notes onset seton tones', 'hat ten era rat  tar art', ''
  rewind unit
  lex = empty()
  call read_words(unit, lex, lines)
  close (unit)
  lex = lex//'HORSE'//(/'net ', 'rope', 'opal', 'seal', 'pear', 'else', 'arts'/)
  print '(1X, I3, " words in", I2, " lines,", I3, " of five letters")', count_of(lex), lines, count_of(lex, 5)

  picture = repeat(blank, side*side)
  grid = reshape(cells, (/side, side/), order=(/2, 1/))
  call find_slots
  tried = 0
  call fill(1, done)
  print *, done, tried > 0, n
  do k = 1, side
     line => grid(k, :)
     write (*, '(1X, 5(A1, 1X))') line
  end do
  nullify (line)

  call look_for('cat', 'tacocatxxactattcaccoctaat')
  call look_for('taca', 'tacocatxxactattcaccoctaat')

  tally = counted('Sphinx of black quartz, judge my vow: letter by letter')
  write (*, '(13(1X, A1, I2))') tally
  k = sum(tally%times)
  write (*, '(1X, I3, 2(1X, A))') k, raised('done'), lowered('DONE')
  if (any(tally(:)%times == 0)) print *, 'not all letters'
  call release(lex)

contains

  subroutine find_slots
    integer :: i
    n = 0
    do i = 1, side
       n = n + 1
       slots(n) = slot(i, 1, side, .true.)
    end do
    do i = 1, side
       n = n + 1
       slots(n) = slot(1, i, side, .false.)
    end do
  end subroutine find_slots

  subroutine place(s, cells)
    type(slot), intent(in) :: s
    character(len=1), dimension(:), pointer :: cells
    if (s%across) then
       cells => grid(s%row, s%column:s%column + s%size - 1)
    else
       cells => grid(s%row:s%row + s%size - 1, s%column)
    end if
  end subroutine place

  function gathered(cells) result(text)
    character(len=1), dimension(:), intent(in) :: cells
    character(len=longest) :: text
    integer :: i
    text = ' '
    do i = 1, size(cells)
       text(i:i) = cells(i)
    end do
  end function gathered

  recursive subroutine fill(which, success)
    integer, intent(in) :: which
    logical(lk), intent(out) :: success
    character(len=1), dimension(:), pointer :: cells
    character(len=1) :: before(side)
    character(len=longest) :: found
    integer :: number, i, crossing

    success = which > n
    if (success) return
    call place(slots(which), cells)
    before(:size(cells)) = cells
    number = 0
    do
       call fitting(lex, gathered(before(:size(cells))), number, found, again=.not. slots(which)%across)
       if (number == 0) exit
       tried = tried + 1
       do i = 1, size(cells)
          cells(i) = found(i:i)
       end do
       call mark_used(lex, number, .true._lk)
       do crossing = which + 1, n
          if (.not. possible(slots(crossing))) exit
       end do
       if (crossing > n) then
          call fill(which + 1, success)
          if (success) return
       end if
       call mark_used(lex, number, used=.false._lk)
       cells = before(:size(cells))
    end do
  end subroutine fill

  logical function possible(s)
    type(slot), intent(in) :: s
    character(len=1), dimension(:), pointer :: cells
    character(len=longest) :: found
    integer :: number
    call place(s, cells)
    number = 0
    if (all(cells /= blank)) then
       possible = .true.
    else
       call fitting(lex, gathered(cells), number, found, .true._lk)
       possible = number > 0
    end if
  end function possible

  ! All eight ways from each cell.
  subroutine look_for(what, square)
    character(len=*), intent(in) :: what
    character(len=side*side), intent(in) :: square
    character(len=1), dimension(0:side + 1, 0:side + 1) :: field
    integer :: i, j, way, l, hits

    field = '#'
    field(1:side, 1:side) = reshape((/(square(l:l), l = 1, len(square))/), (/side, side/), order=(/2, 1/))
    hits = 0
    do way = 1, size(down_step)
       do j = 1, side
          start: do i = 1, side
             do l = 1, len(what)
                if (i + (l - 1)*down_step(way) > side + 1 .or. i + (l - 1)*down_step(way) < 0) cycle start
                if (j + (l - 1)*right_step(way) > side + 1 .or. j + (l - 1)*right_step(way) < 0) cycle start
                if (field(i + (l - 1)*down_step(way), j + (l - 1)*right_step(way)) /= what(l:l)) cycle start
             end do
             hits = hits + 1
          end do start
       end do
    end do
    write (*, fmt='(1X, A, ":", I3)') what, hits
  end subroutine look_for

  function counted(text) result(counts)
    character(len=*), intent(in) :: text
    type(letter_count), dimension(26) :: counts
    character(len=len(text)) :: low
    integer :: i, j

    low = lowered(text)
    do i = 1, 26
       counts(i) = letter_count(letters(i:i), 0)
       do j = 1, len(low)
          if (low(j:j) == counts(i)%letter) counts(i)%times = counts(i)%times + 1
       end do
    end do
  end function counted

end program crossword
