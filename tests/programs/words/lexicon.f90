! A list of words kept in pages, with lookups by pattern.
module lexicon
  implicit none
  private

  integer, parameter, public :: ck = kind('a'), lk = kind(.false.)
  integer, parameter, public :: longest = 12
  character(kind=ck, len=*), parameter, public :: letters = ck_'abcdefghijklmnopqrstuvwxyz'
  character(kind=ck), parameter, public :: blank = ck_'.'

  type, public :: word
     character(kind=ck, len=longest) :: text
     integer :: size
     logical(lk) :: used
  end type word

  type page
     type(word), dimension(8) :: entry
     integer :: filled
     type(page), pointer :: next
  end type page

  type, public :: lexikon
     private
     type(page), pointer :: first, last
     integer :: total
     integer, dimension(longest) :: by_size
  end type lexikon

  interface operator(.fits.)
     module procedure fits_word, fits_text
  end interface

  interface operator(//)
     module procedure add_to_lexicon, add_words
  end interface

  interface assignment(=)
     module procedure word_from_text, words_from_texts
  end interface

  interface count_of
     module procedure count_all, count_size
  end interface

  public :: empty, read_words, matches, release, count_of, mark_used, lowered, raised
  public :: operator(.fits.), operator(//), assignment(=)

contains

  subroutine word_from_text(w, text)
    type(word), intent(out) :: w
    character(len=*), intent(in) :: text
    w%text = lowered(adjustl(text))
    w%size = len_trim(w%text)
    w%used = .false._lk
  end subroutine word_from_text

  subroutine words_from_texts(w, texts)
    type(word), dimension(:), intent(out) :: w
    character(len=*), dimension(:), intent(in) :: texts
    integer :: k
    do k = 1, min(size(w), size(texts))
       w(k) = texts(k)
    end do
  end subroutine words_from_texts

  ! Both ways of writing letters share the loop, not the way.
  function lowered(text) result(low)
    character(len=*), intent(in) :: text
    character(len=len(text)) :: low, high
    integer :: k, shift

    shift = iachar('a') - iachar('A')
    low = text
    do k = 1, len(text)
       if (lge(text(k:k), 'A') .and. lle(text(k:k), 'Z')) low(k:k) = achar(iachar(text(k:k)) + shift)
    end do
    return

    entry raised(text) result(high)
    shift = iachar('A') - iachar('a')
    high = text
    do k = 1, len(text)
       if (verify(text(k:k), letters) == 0) high(k:k) = achar(iachar(text(k:k)) + shift)
    end do
  end function lowered

  function empty() result(lex)
    type(lexikon) :: lex
    nullify (lex%first, lex%last)
    lex%total = 0
    lex%by_size(:) = 0
  end function empty

  function add_to_lexicon(lex, text) result(more)
    type(lexikon), intent(in) :: lex
    character(len=*), intent(in) :: text
    type(lexikon) :: more
    type(page), pointer :: p

    more = lex
    if (associated(more%last)) then
       p => more%last
       if (p%filled == size(p%entry)) then
          allocate (p%next)
          p => p%next
          p%filled = 0
          nullify (p%next)
          more%last => p
       end if
    else
       allocate (p)
       p%filled = 0
       nullify (p%next)
       more%first => p
       more%last => p
    end if
    p%filled = p%filled + 1
    p%entry(p%filled) = text
    more%total = more%total + 1
    known_size: if (p%entry(p%filled)%size > 0) then
       more%by_size(p%entry(p%filled)%size) = more%by_size(p%entry(p%filled)%size) + 1
    end if known_size
  end function add_to_lexicon

  function add_words(lex, texts) result(more)
    type(lexikon), intent(in) :: lex
    character(len=*), intent(in) :: texts(:)
    type(lexikon) :: more
    integer :: k
    more = lex
    do k = lbound(texts, 1), ubound(texts, 1)
       more = more//texts(k)
    end do
  end function add_words

  ! Reads words from the lines of a file, letter by letter so that lines may be of any length.
  subroutine read_words(unit, lex, lines)
    integer, intent(in) :: unit
    type(lexikon), intent(inout) :: lex
    integer, intent(out), optional :: lines
    character(len=longest) :: now
    character(len=1) :: c
    integer :: n, count_lines, got

    count_lines = 0
    n = 0
    now = ' '
    letters_of_file: do
       read (unit, '(A1)', advance='no', size=got, eor=10, end=20) c
       if (got == 1 .and. index(letters, c) > 0) then
          n = n + 1
          if (n <= longest) now(n:n) = c
          cycle letters_of_file
       end if
       call finish_word
       cycle letters_of_file
10     count_lines = count_lines + 1
       call finish_word
    end do letters_of_file
20  call finish_word
    if (present(lines)) lines = count_lines

  contains

    subroutine finish_word
      if (n > 0 .and. n <= longest) lex = lex//now(:n)
      n = 0
      now = ' '
    end subroutine finish_word
  end subroutine read_words

  logical(lk) function fits_text(text, pattern)
    character(len=*), intent(in) :: text, pattern
    integer :: k

    fits_text = len_trim(text) == len_trim(pattern)
    do k = 1, len_trim(text)
       if (.not. fits_text) return
       fits_text = pattern(k:k) == blank .or. pattern(k:k) == text(k:k)
    end do
  end function fits_text

  logical(lk) function fits_word(w, pattern)
    type(word), intent(in) :: w
    character(len=*), intent(in) :: pattern
    fits_word = .not. w%used .and. (w%text .fits. pattern)
  end function fits_word

  ! The next word that fits, from the number after the given one; used words too if they may come again.
  subroutine matches(lex, pattern, number, text, again)
    type(lexikon), intent(in) :: lex
    character(len=*), intent(in) :: pattern
    integer, intent(inout) :: number
    character(len=*), intent(out) :: text
    logical(lk), intent(in), optional :: again
    type(page), pointer :: p
    integer :: k, n
    logical(lk) :: fit, repeated

    repeated = .false.
    if (present(again)) repeated = again
    n = 0
    p => lex%first
    do while (associated(p))
       if (n + p%filled > number) then
          do k = max(1, number - n + 1), p%filled
             if (repeated) then
                fit = p%entry(k)%text .fits. pattern
             else
                fit = p%entry(k) .fits. pattern
             end if
             if (fit) then
                number = n + k
                text = p%entry(k)%text
                return
             end if
          end do
       end if
       n = n + p%filled
       p => p%next
    end do
    number = 0
    text = ' '
  end subroutine matches

  subroutine mark_used(lex, number, used)
    type(lexikon), intent(in) :: lex
    integer, intent(in) :: number
    logical(kind=lk), intent(in) :: used
    type(page), pointer :: p
    integer :: n

    n = number
    p => lex%first
    do
       if (n <= p%filled) exit
       n = n - p%filled
       p => p%next
    end do
    p%entry(n)%used = used
  end subroutine mark_used

  integer function count_all(lex)
    type(lexikon), intent(in) :: lex
    count_all = lex%total
  end function count_all

  integer function count_size(lex, size)
    type(lexikon), intent(in) :: lex
    integer, intent(in) :: size
    count_size = lex%by_size(size)
  end function count_size

  subroutine release(lex)
    type(lexikon), intent(inout) :: lex
    type(page), pointer :: p
    do
       p => lex%first
       if (.not. associated(p)) exit
       lex%first => p%next
       deallocate (p)
    end do
    lex = empty()
  end subroutine release

end module lexicon
