! Counts the words of a text on standard input, and prints them in the order of the alphabet with the number of
! times that each occurred. Letters are taken without regard to case; everything else separates words.
program words
   implicit none

   integer, parameter :: max_word = 30, max_words = 2000
   character(len=max_word) :: table(max_words)
   integer :: counts(max_words), used, i
   character(len=132) :: line
   integer :: status

   used = 0
   do
      read (*, '(a)', iostat=status) line
      if (status /= 0) exit
      call split(line)
   end do
   call sort
   do i = 1, used
      write (*, '(i6, 2x, a)') counts(i), trim(table(i))
   end do

contains

   subroutine split(text)
      character(len=*), intent(in) :: text
      integer :: first, last

      first = 1
      scan_text: do
         do while (first <= len(text))
            if (is_letter(text(first:first))) exit
            first = first + 1
         end do
         if (first > len(text)) exit scan_text
         last = first
         do while (last < len(text))
            if (.not. is_letter(text(last + 1:last + 1))) exit
            last = last + 1
         end do
         call enter(lower_case(text(first:last)))
         first = last + 1
      end do scan_text
   end subroutine split

   logical function is_letter(c)
      character(len=1), intent(in) :: c

      is_letter = (c >= 'a' .and. c <= 'z') .or. (c >= 'A' .and. c <= 'Z')
   end function is_letter

   function lower_case(word) result(lower)
      character(len=*), intent(in) :: word
      character(len=max_word) :: lower
      character(len=26), parameter :: capitals = 'ABCDEFGHIJKLMNOPQRSTUVWXYZ'
      integer :: i, at

      lower = word
      do i = 1, min(len(word), max_word)
         at = index(capitals, lower(i:i))
         if (at > 0) lower(i:i) = achar(iachar('a') + at - 1)
      end do
   end function lower_case

   subroutine enter(word)
      character(len=*), intent(in) :: word
      integer :: i

      do i = 1, used
         if (table(i) == word) then
            counts(i) = counts(i) + 1
            return
         end if
      end do
      if (used == max_words) then
         write (*, '(2a)') 'too many words at ', word
         stop
      end if
      used = used + 1
      table(used) = word
      counts(used) = 1
   end subroutine enter

   ! By insertion: the table is short, and often nearly in order.
   subroutine sort
      character(len=max_word) :: word
      integer :: i, j, n

      do i = 2, used
         word = table(i)
         n = counts(i)
         do j = i - 1, 1, -1
            if (table(j) <= word) exit
            table(j + 1) = table(j)
            counts(j + 1) = counts(j)
         end do
         table(j + 1) = word
         counts(j + 1) = n
      end do
   end subroutine sort

end program words
