! Checks the words of a text against a list and proposes others.
module spelling
   use matching, only: edit_distance, soundex
   implicit none
   private
   integer, parameter :: longest = 14, most = 200

   character(len=longest), dimension(most), save :: known
   character(len=4), dimension(most), save :: sound
   integer, save :: words = 0

   public :: learn, is_known, propose, check_text, clean_word

contains

   ! Adds the words of a blank-separated list, in alphabetical order.
   subroutine learn(list)
      character(len=*), intent(in) :: list
      integer :: first, last, at
      character(len=longest) :: word

      first = 1
      do
         at = verify(list(first:), ' ')
         if (at == 0) exit
         first = first + at - 1
         last = scan(list(first:) // ' ', ' ') + first - 2
         word = list(first:last)
         first = last + 1
         if (.not. is_known(word) .and. words < most) then
            at = words + 1
            do while (at > 1)
               if (known(at-1) < word) exit
               known(at) = known(at-1)
               sound(at) = sound(at-1)
               at = at - 1
            end do
            known(at) = word
            sound(at) = soundex(word)
            words = words + 1
         end if
         if (first > len(list)) exit
      end do
   end subroutine learn

   logical function is_known(word)
      character(len=*), intent(in) :: word
      integer :: low, high, middle

      low = 1
      high = words
      do while (low <= high)
         middle = (low + high) / 2
         if (known(middle) == word) then
            is_known = .true.
            return
         else if (known(middle) < word) then
            low = middle + 1
         else
            high = middle - 1
         end if
      end do
      is_known = .false.
   end function is_known

   ! The nearest known words: few steps away, rather those that sound alike.
   subroutine propose(word, proposals, n)
      character(len=*), intent(in) :: word
      character(len=*), dimension(:), intent(out) :: proposals
      integer, intent(out) :: n
      real, dimension(words) :: distance
      integer :: i, best

      do i = 1, words
         distance(i) = edit_distance(trim(word), trim(known(i)), insertion=1.0)
      end do
      where (sound(:words) == soundex(word)) distance = distance - 0.5
      proposals = ' '
      n = 0
      do while (n < size(proposals))
         best = sum(minloc(distance, mask=distance <= 1.5 .and. distance >= 0))
         if (best == 0) exit
         if (.not. any(distance <= 1.5)) exit
         n = n + 1
         proposals(n) = known(best)
         distance(best) = huge(distance)
      end do
   end subroutine propose

   ! In small letters and without anything else.
   function clean_word(word) result(clean)
      character(len=*), intent(in) :: word
      character(len=len(word)) :: clean
      integer :: i, n

      clean = ' '
      n = 0
      do i = 1, len(word)
         select case (word(i:i))
         case ('a':'z', '''')
            n = n + 1
            clean(n:n) = word(i:i)
         case ('A':'Z')
            n = n + 1
            clean(n:n) = achar(ior(iachar(word(i:i)), 32))
         end select
      end do
   end function clean_word

   subroutine check_text(text)
      character(len=*), intent(in) :: text
      character(len=longest), dimension(3) :: others
      character(len=longest) :: word
      integer :: first, last, n, i

      first = 1
      do while (first <= len_trim(text))
         last = index(text(first:) // ' ', ' ') + first - 2
         word = clean_word(text(first:last))
         if (word /= ' ' .and. .not. is_known(word)) then
            call propose(word, others, n)
            write (*, '(1x, a, t18)', advance='no') word
            if (n == 0) then
               write (*, '(a)') 'no proposal'
            else
               write (*, '(3(a, :, ", "))') (trim(others(i)), i = 1, n)
            end if
         end if
         first = last + 2
      end do
   end subroutine check_text

end module spelling
