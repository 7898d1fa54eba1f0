! Counts the words of a text and prints them by falling frequency, with the
! help of the module of varying strings for the text itself.
program words
   use varying, only: text, clear, as_chars, length, assignment(=), &
                      operator(//), cut => extract, small => lower
   implicit none

   integer, parameter :: max_words = 100, word_length = 16
   character(len=*), parameter :: letters = &
      'abcdefghijklmnopqrstuvwxyz''-'

   type entry_type
      character(len=word_length) :: word
      integer :: count
      integer :: first         ! position of its first occurrence
   end type entry_type

   type(entry_type), dimension(max_words) :: table
   type(text) :: whole
   integer    :: known, start, finish, offset, i

   call clear(whole)
   whole = 'It was the best of times, it was the worst of times, &
          &it was the age of wisdom, it was the age of foolishness; '
   whole = whole // 'it''s a well-known text.'
   whole = small(whole)

   known = 0
   start = 1
   next_word: do
      offset = scan(as_chars(cut(whole, first=start)), letters)
      if (offset == 0) exit next_word
      start = start + offset - 1
      offset = verify(as_chars(cut(whole, first=start)), letters)
      if (offset == 0) then
         finish = length(whole)
      else
         finish = start + offset - 2
      end if
      call note(as_chars(cut(whole, start, finish)), start)
      start = finish + 1
   end do next_word

   call sort_by_count
   do i = 1, known
      print '(1x, a, t20, i3, 2x, "first at", i4, :, 2x, a)', &
         table(i) % word, table(i) % count, table(i) % first, &
         repeat('*', table(i) % count)
   end do
   print '(/,1x,a,i4,/,1x,a,i4)', 'words in all:      ', sum(table(:known)%count), &
      'different words:   ', known
   print '(1x,a,f6.2)', 'mean word length:  ', &
      real(sum(len_trim(table(:known)%word) * table(:known)%count)) / &
      real(sum(table(:known)%count))

contains

   subroutine note(word, position)
      character(len=*), intent(in) :: word
      integer, intent(in) :: position
      integer :: k

      do k = 1, known
         if (table(k)%word == word) then
            table(k)%count = table(k)%count + 1
            return
         end if
      end do
      if (known == max_words) stop 'too many words'
      known = known + 1
      table(known) = entry_type(word, 1, position)
   end subroutine note

   ! Insertion keeps words of the same count in the order of the text.
   subroutine sort_by_count
      type(entry_type) :: moving
      integer :: j, k

      do j = 2, known
         moving = table(j)
         k = j - 1
         do
            if (k < 1) exit
            if (table(k)%count >= moving%count) exit
            table(k + 1) = table(k)
            k = k - 1
         end do
         table(k + 1) = moving
      end do
   end subroutine sort_by_count

end program words
