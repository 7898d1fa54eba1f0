! Sets of small integers, one bit each, in as many words as they need.
module bitsets
  implicit none
  private

  integer, parameter :: word_bits = bit_size(0)
  integer, parameter, public :: set_words = 4
  integer, parameter, public :: last_member = set_words * word_bits - 1

  type, public :: bit_set
    private
    integer, dimension(0:set_words-1) :: word
  end type bit_set

  interface assignment(=)
    module procedure set_from_array, set_from_characters
  end interface
  interface operator(+)                 ! union
    module procedure union_of, with_member
  end interface
  interface operator(*)                 ! what both have
    module procedure common_of
  end interface
  interface operator(-)                 ! what the first has and the second not
    module procedure difference_of, without_member, complement_of
  end interface
  interface operator(/)                 ! what only one has
    module procedure either_of
  end interface
  interface operator(.in.)
    module procedure is_member, is_character_member
  end interface
  interface operator(<=)
    module procedure is_subset
  end interface
  interface operator(==)
    module procedure is_same
  end interface
  interface size
    module procedure members
  end interface

  public :: assignment(=), operator(+), operator(*), operator(-), operator(/), &
            operator(.in.), operator(<=), operator(==), size
  public :: empty, range_of, elements, next_member, print_set

contains

  function empty() result(s)
    type(bit_set) :: s
    s%word = 0
  end function empty

  subroutine set_from_array(s, list)
    type(bit_set), intent(out) :: s
    integer, dimension(:), intent(in) :: list
    integer :: i, w

    s%word = 0
    do i = 1, size(list)
      if (list(i) < 0 .or. list(i) > last_member) cycle
      w = list(i) / word_bits
      s%word(w) = ibset(s%word(w), modulo(list(i), word_bits))
    end do
  end subroutine set_from_array

  subroutine set_from_characters(s, c)
    type(bit_set), intent(out) :: s
    character(len=*), intent(in) :: c
    integer :: i
    s = (/ (iachar(c(i:i)), i = 1, len(c)) /)
  end subroutine set_from_characters

  ! All of LOW to HIGH, from masks and not one by one.
  function range_of(low, high) result(s)
    integer, intent(in) :: low, high
    type(bit_set) :: s
    integer :: w, from, to

    s%word = 0
    do w = 0, set_words - 1
      from = max(low - w * word_bits, 0)
      to = min(high - w * word_bits, word_bits - 1)
      if (from > to) cycle
      call mvbits(not(0), 0, to - from + 1, s%word(w), from)
    end do
  end function range_of

  function union_of(a, b) result(s)
    type(bit_set), intent(in) :: a, b
    type(bit_set) :: s
    s%word = ior(a%word, b%word)
  end function union_of

  function with_member(a, n) result(s)
    type(bit_set), intent(in) :: a
    integer, intent(in) :: n
    type(bit_set) :: s
    s = (/ n /)
    s%word = ior(s%word, a%word)
  end function with_member

  function common_of(a, b) result(s)
    type(bit_set), intent(in) :: a, b
    type(bit_set) :: s
    s%word = iand(a%word, b%word)
  end function common_of

  function difference_of(a, b) result(s)
    type(bit_set), intent(in) :: a, b
    type(bit_set) :: s
    s%word = iand(a%word, not(b%word))
  end function difference_of

  function without_member(a, n) result(s)
    type(bit_set), intent(in) :: a
    integer, intent(in) :: n
    type(bit_set) :: s

    s%word = a%word
    if (n >= 0 .and. n <= last_member) &
      s%word(n/word_bits) = ibclr(s%word(n/word_bits), mod(n, word_bits))
  end function without_member

  function complement_of(a) result(s)
    type(bit_set), intent(in) :: a
    type(bit_set) :: s
    s%word = not(a%word)
  end function complement_of

  function either_of(a, b) result(s)
    type(bit_set), intent(in) :: a, b
    type(bit_set) :: s
    s%word = ieor(a%word, b%word)
  end function either_of

  logical function is_member(n, s)
    integer, intent(in) :: n
    type(bit_set), intent(in) :: s
    is_member = .false.
    if (n >= 0 .and. n <= last_member) &
      is_member = btest(s%word(n/word_bits), mod(n, word_bits))
  end function is_member

  logical function is_character_member(c, s)
    character(len=1), intent(in) :: c
    type(bit_set), intent(in) :: s
    is_character_member = is_member(iachar(c), s)
  end function is_character_member

  logical function is_subset(a, b)
    type(bit_set), intent(in) :: a, b
    is_subset = all(iand(a%word, not(b%word)) == 0)
  end function is_subset

  logical function is_same(a, b)
    type(bit_set), intent(in) :: a, b
    is_same = all(a%word == b%word)
  end function is_same

  ! Each step takes the lowest bit of a word away.
  integer function members(s)
    type(bit_set), intent(in) :: s
    integer :: w, rest

    members = 0
    do w = 0, set_words - 1
      rest = s%word(w)
      do while (rest /= 0)
        members = members + ibits(rest, 0, 1)
        rest = ishft(rest, -1)
      end do
    end do
  end function members

  ! The first member behind N, or -1.
  integer function next_member(s, n)
    type(bit_set), intent(in) :: s
    integer, intent(in) :: n

    do next_member = n + 1, last_member
      if (next_member .in. s) return
    end do
    next_member = -1
  end function next_member

  function elements(s) result(list)
    type(bit_set), intent(in) :: s
    integer, dimension(:), pointer :: list
    integer :: i

    allocate (list(size(s)))
    if (size(list) == 0) return
    list(1) = next_member(s, -1)
    do i = 2, size(list)
      list(i) = next_member(s, list(i-1))
    end do
  end function elements

  subroutine print_set(s, name)
    type(bit_set), intent(in) :: s
    character(len=*), intent(in) :: name
    integer :: first, last

    write (*, '(1x, 2a)', advance='no') name, ' = {'
    first = next_member(s, -1)
    ranges: do while (first >= 0)
      last = first
      do
        if (next_member(s, last) /= last + 1) exit
        last = last + 1
      end do
      if (last == first) then
        write (*, '(i4)', advance='no') first
      else
        write (*, '(i4, a, i3)', advance='no') first, '..', last
      end if
      first = next_member(s, last)
    end do ranges
    write (*, '(a)') ' }'
  end subroutine print_set

end module bitsets
