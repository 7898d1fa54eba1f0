! Strings whose length changes at run time.
!
! The characters live in an allocated array behind a private pointer
! component; a string that has never been set must be cleared first with
! CLEAR, since a pointer is undefined until it is nullified or assigned.
module varying
   implicit none
   private

   public :: text, assignment(=), operator(//), operator(==), operator(/=)
   public :: operator(<), operator(<=), operator(>), operator(>=)
   public :: operator(.in.), operator(.starts.), operator(.times.)
   public :: clear, length, as_text, as_chars, char_at, put_char
   public :: extract, insert, remove, replace, find, split, upper, lower
   public :: trimmed, reversed, get_line, put, put_line, compare_text

   type text
      private
      integer :: used
      character(len=1), dimension(:), pointer :: chars
   end type text

   integer, parameter :: chunk = 16

   interface assignment(=)
      module procedure text_from_chars, chars_from_text, text_from_text
      module procedure text_from_integer
   end interface

   interface operator(//)
      module procedure text_cat_text, text_cat_chars, chars_cat_text
   end interface

   interface operator(==)
      module procedure text_eq_text, text_eq_chars, chars_eq_text
   end interface

   interface operator(/=)
      module procedure text_ne_text, text_ne_chars
   end interface

   interface operator(<)
      module procedure text_lt_text, text_lt_chars
   end interface

   interface operator(<=)
      module procedure text_le_text
   end interface

   interface operator(>)
      module procedure text_gt_text
   end interface

   interface operator(>=)
      module procedure text_ge_text
   end interface

   interface operator(.in.)
      module procedure chars_in_text, text_in_text
   end interface

   interface operator(.starts.)
      module procedure text_starts_chars
   end interface

   interface operator(.times.)
      module procedure text_times
   end interface

   interface as_text
      module procedure text_of_chars, text_of_integer, text_of_logical
   end interface

   interface find
      module procedure find_chars, find_text
   end interface

   interface put
      module procedure put_default, put_unit
   end interface

contains

   ! Makes S a valid empty string without looking at what it was.
   subroutine clear(s)
      type(text), intent(out) :: s

      nullify(s%chars)
      s%used = 0
   end subroutine clear

   integer function length(s)
      type(text), intent(in) :: s
      length = s%used
   end function length

   ! Room for at least N characters; the old ones are kept.
   subroutine reserve(s, n)
      type(text), intent(inout) :: s
      integer, intent(in)       :: n
      character(len=1), pointer :: larger(:)
      integer :: room

      if (associated(s%chars)) then
         if (size(s%chars) >= n) return
      end if
      room = ((n + chunk - 1) / chunk) * chunk
      allocate (larger(max(room, chunk)))
      if (associated(s%chars)) then
         larger(:s%used) = s%chars(:s%used)
         deallocate (s%chars)
      end if
      s%chars => larger
   end subroutine reserve

   subroutine text_from_chars(s, c)
      type(text), intent(inout)    :: s
      character(len=*), intent(in) :: c
      integer :: i

      call reserve(s, len(c))
      do i = 1, len(c)
         s%chars(i) = c(i:i)
      end do
      s%used = len(c)
   end subroutine text_from_chars

   subroutine chars_from_text(c, s)
      character(len=*), intent(out) :: c
      type(text), intent(in)        :: s
      integer :: i

      c = ' '
      do i = 1, min(len(c), s%used)
         c(i:i) = s%chars(i)
      end do
   end subroutine chars_from_text

   ! A copy of its own: the two never share characters.
   subroutine text_from_text(s, t)
      type(text), intent(inout) :: s
      type(text), intent(in)    :: t

      call reserve(s, t%used)
      if (t%used > 0) s%chars(1:t%used) = t%chars(1:t%used)
      s%used = t%used
   end subroutine text_from_text

   subroutine text_from_integer(s, n)
      type(text), intent(inout) :: s
      integer, intent(in)       :: n
      character(len=20) :: digits

      write (unit=digits, fmt='(i20)') n
      call text_from_chars(s, trim(adjustl(digits)))
   end subroutine text_from_integer

   function text_of_chars(c) result(s)
      character(len=*), intent(in) :: c
      type(text) :: s

      call clear(s)
      call text_from_chars(s, c)
   end function text_of_chars

   function text_of_integer(n, width) result(s)
      integer, intent(in)           :: n
      integer, intent(in), optional :: width
      type(text) :: s
      character(len=40) :: buffer

      write (buffer, '(i40)') n
      buffer = adjustl(buffer)
      call clear(s)
      if (present(width)) then
         s = repeat(' ', max(0, width - len_trim(buffer))) // trim(buffer)
      else
         s = trim(buffer)
      end if
   end function text_of_integer

   function text_of_logical(l) result(s)
      logical, intent(in) :: l
      type(text) :: s

      call clear(s)
      if (l) then
         s = 'true'
      else
         s = 'false'
      end if
   end function text_of_logical

   ! The characters of S; the length comes from the argument itself.
   function as_chars(s) result(c)
      type(text), intent(in)  :: s
      character(len=s%used) :: c
      integer :: i

      do i = 1, s%used
         c(i:i) = s%chars(i)
      end do
   end function as_chars

   character function char_at(s, i)
      type(text), intent(in) :: s
      integer, intent(in)    :: i

      char_at = ' '
      if (i >= 1 .and. i <= s%used) char_at = s%chars(i)
   end function char_at

   subroutine put_char(s, i, c)
      type(text), intent(inout) :: s
      integer, intent(in) :: i
      character, intent(in) :: c

      if (i > s%used) then
         call reserve(s, i)
         s%chars(s%used + 1:i) = ' '
         s%used = i
      end if
      s%chars(i) = c
   end subroutine put_char

   function text_cat_text(a, b) result(s)
      type(text), intent(in) :: a, b
      type(text) :: s

      call clear(s)
      call reserve(s, a%used + b%used)
      if (a%used > 0) s%chars(:a%used) = a%chars(:a%used)
      if (b%used > 0) s%chars(a%used+1 : a%used+b%used) = b%chars(:b%used)
      s%used = a%used + b%used
   end function text_cat_text

   function text_cat_chars(a, b) result(s)
      type(text), intent(in) :: a
      character(len=*), intent(in) :: b
      type(text) :: s

      call clear(s)
      s = text_cat_text(a, text_of_chars(b))
   end function text_cat_chars

   function chars_cat_text(a, b) result(s)
      character(len=*), intent(in) :: a
      type(text), intent(in) :: b
      type(text) :: s

      call clear(s)
      s = text_cat_text(text_of_chars(a), b)
   end function chars_cat_text

   ! -1, 0 or 1 as A comes before, with or after B; no padding with blanks.
   integer function compare_text(a, b) result(order)
      type(text), intent(in) :: a, b
      integer :: i

      order = 0
      do i = 1, min(a%used, b%used)
         if (a%chars(i) == b%chars(i)) cycle
         if (llt(a%chars(i), b%chars(i))) then
            order = -1
         else
            order = 1
         end if
         return
      end do
      if (a%used < b%used) order = -1
      if (a%used > b%used) order = 1
   end function compare_text

   logical function text_eq_text(a, b) result(same)
      type(text), intent(in) :: a, b
      same = a%used == b%used
      if (same .and. a%used > 0) same = all(a%chars(:a%used) == b%chars(:b%used))
   end function text_eq_text

   logical function text_eq_chars(a, b) result(same)
      type(text), intent(in) :: a
      character(*), intent(in) :: b
      same = text_eq_text(a, text_of_chars(b))
   end function text_eq_chars

   logical function chars_eq_text(a, b) result(same)
      character(*), intent(in) :: a
      type(text), intent(in) :: b
      same = text_eq_chars(b, a)
   end function chars_eq_text

   logical function text_ne_text(a, b) result(differ)
      type(text), intent(in) :: a, b
      differ = .not. text_eq_text(a, b)
   end function text_ne_text

   logical function text_ne_chars(a, b) result(differ)
      type(text), intent(in) :: a
      character(*), intent(in) :: b
      differ = .not. text_eq_chars(a, b)
   end function text_ne_chars

   logical function text_lt_text(a, b)
      type(text), intent(in) :: a, b
      text_lt_text = compare_text(a, b) < 0
   end function text_lt_text

   logical function text_lt_chars(a, b)
      type(text), intent(in) :: a
      character(*), intent(in) :: b
      text_lt_chars = compare_text(a, text_of_chars(b)) < 0
   end function text_lt_chars

   logical function text_le_text(a, b)
      type(text), intent(in) :: a, b
      text_le_text = compare_text(a, b) <= 0
   end function text_le_text

   logical function text_gt_text(a, b)
      type(text), intent(in) :: a, b
      text_gt_text = compare_text(a, b) > 0
   end function text_gt_text

   logical function text_ge_text(a, b)
      type(text), intent(in) :: a, b
      text_ge_text = compare_text(a, b) >= 0
   end function text_ge_text

   logical function chars_in_text(c, s) result(inside)
      character(len=*), intent(in) :: c
      type(text), intent(in) :: s
      inside = find_chars(s, c) > 0
   end function chars_in_text

   logical function text_in_text(c, s) result(inside)
      type(text), intent(in) :: c, s
      inside = find_text(s, c) > 0
   end function text_in_text

   logical function text_starts_chars(s, c) result(starts)
      type(text), intent(in) :: s
      character(len=*), intent(in) :: c

      starts = .false.
      if (s%used >= len(c)) starts = as_chars(extract(s, 1, len(c))) == c
   end function text_starts_chars

   function text_times(s, n) result(t)
      type(text), intent(in) :: s
      integer, intent(in) :: n
      type(text) :: t

      call clear(t)
      t = repeat(as_chars(s), n)
   end function text_times

   ! Characters FIRST to LAST; bounds outside the string are drawn in.
   function extract(s, first, last) result(part)
      type(text), intent(in)        :: s
      integer, intent(in), optional :: first, last
      type(text) :: part
      integer    :: from, to

      from = 1;  to = s%used
      if (present(first)) from = max(1, first)
      if (present(last)) to = min(s%used, last)
      call clear(part)
      if (from > to) return
      call reserve(part, to - from + 1)
      part%used = to - from + 1
      part%chars(1:part%used) = s%chars(from:to)
   end function extract

   function insert(s, before, what) result(t)
      type(text), intent(in) :: s
      integer, intent(in)    :: before
      character(len=*), intent(in) :: what
      type(text) :: t

      call clear(t)
      t = extract(s, last=before - 1) // what // extract(s, first=before)
   end function insert

   function remove(s, first, last) result(t)
      type(text), intent(in) :: s
      integer, intent(in)    :: first, last
      type(text) :: t

      call clear(t)
      if (first > last) then
         t = s // ''
      else
         t = extract(s, last=first - 1) // extract(s, first=last + 1)
      end if
   end function remove

   ! Puts BY in the place of every occurrence of OLD (or of the first one).
   function replace(s, old, by, once) result(t)
      type(text), intent(in)       :: s
      character(len=*), intent(in) :: old, by
      logical, optional            :: once
      type(text) :: t
      integer    :: from, at
      logical    :: single

      single = .false.
      if (present(once)) single = once
      call clear(t)
      from = 1
      scan_all: do
         at = find(s, old, start=from)
         if (at == 0) exit scan_all
         t = t // extract(s, from, at - 1) // by
         from = at + len(old)
         if (single) exit scan_all
      end do scan_all
      t = t // extract(s, first=from)
   end function replace

   ! Where C begins in S, at START or later; backwards if BACK.
   integer function find_chars(s, c, start, back) result(at)
      type(text), intent(in)        :: s
      character(len=*), intent(in)  :: c
      integer, intent(in), optional :: start
      logical, intent(in), optional :: back
      integer :: from

      at = 0
      from = 1
      if (present(start)) from = start
      if (from > s%used .or. len(c) == 0) return
      if (present(back)) then
         at = index(as_chars(extract(s, first=from)), c, back)
      else
         at = index(as_chars(extract(s, first=from)), c)
      end if
      if (at > 0) at = at + from - 1
   end function find_chars

   integer function find_text(s, c, start, back) result(at)
      type(text), intent(in)        :: s, c
      integer, intent(in), optional :: start
      logical, intent(in), optional :: back

      at = find_chars(s, as_chars(c), start, back)
   end function find_text

   ! The pieces of S between the characters of SET, in a new array.
   subroutine split(s, set, pieces, n)
      type(text), intent(in)         :: s
      character(len=*), intent(in)   :: set
      type(text), pointer            :: pieces(:)
      integer, intent(out), optional :: n
      integer :: i, from, count, pass

      do pass = 1, 2
         count = 0
         from = 1
         do i = 1, s%used + 1
            if (i <= s%used) then
               if (scan(s%chars(i), set) == 0) cycle
            end if
            count = count + 1
            if (pass == 2) pieces(count) = extract(s, from, i - 1)
            from = i + 1
         end do
         if (pass == 1) then
            allocate (pieces(count))
            do i = 1, count
               call clear(pieces(i))
            end do
         end if
      end do
      if (present(n)) n = count
   end subroutine split

   function upper(s) result(t)
      type(text), intent(in) :: s
      type(text) :: t
      integer :: i, k

      call clear(t)
      t = s
      do i = 1, t%used
         k = iachar(t%chars(i))
         if (k >= iachar('a') .and. k <= iachar('z')) t%chars(i) = achar(k - 32)
      end do
   end function upper

   function lower(s) result(t)
      type(text), intent(in) :: s
      type(text) :: t
      integer :: i
      character(len=*), parameter :: big = 'ABCDEFGHIJKLMNOPQRSTUVWXYZ'
      character(len=26), parameter :: small = 'abcdefghijklmnopqrstuvwxyz'

      call clear(t)
      t = s
      do i = 1, t%used
         if (index(big, t%chars(i)) /= 0) &
            t%chars(i) = small(index(big, t%chars(i)):index(big, t%chars(i)))
      end do
   end function lower

   ! Without blanks at the ends.
   function trimmed(s) result(t)
      type(text), intent(in) :: s
      type(text) :: t

      call clear(t)
      t = trim(adjustl(as_chars(s)))
   end function trimmed

   function reversed(s) result(t)
      type(text), intent(in) :: s
      type(text) :: t

      call clear(t)
      call reserve(t, s%used)
      if (s%used > 0) t%chars(1:s%used) = s%chars(s%used:1:-1)
      t%used = s%used
   end function reversed

   ! Reads one record whatever its length, a piece at a time.
   subroutine get_line(unit, s, iostat)
      integer, intent(in)    :: unit
      type(text), intent(inout) :: s
      integer, intent(out)   :: iostat
      character(len=8) :: piece
      integer :: got

      s = ''
      do
         read (unit, '(a)', advance='no', size=got, eor=10, end=20, iostat=iostat) piece
         if (iostat /= 0) exit
         s = s // piece
      end do
      return
10    s = s // piece(:got)
      iostat = 0
      return
20    continue
   end subroutine get_line

   subroutine put_default(s)
      type(text), intent(in) :: s
      write (*, '(a)', advance='no') as_chars(s)
   end subroutine put_default

   subroutine put_unit(unit, s)
      integer, intent(in) :: unit
      type(text), intent(in) :: s
      write (unit, '(a)', advance='no') as_chars(s)
   end subroutine put_unit

   subroutine put_line(s)
      type(text), intent(in) :: s
      integer :: i
      print '(256a1)', (s%chars(i), i = 1, s%used)
   end subroutine put_line

end module varying
