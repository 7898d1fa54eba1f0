! Finding and comparing strings: search, wild cards, simple regular
! expressions, edit distance, the longest common part, words that sound alike.
module matching
   implicit none
   private
   public :: search, wild_match, expression_match, edit_distance, soundex, &
             common_part, occurrences, is_palindrome, similarity

   integer, parameter :: last_code = 127

   interface edit_distance
      module procedure plain_distance, weighted_distance
   end interface edit_distance

contains

   ! Where PATTERN first occurs in TEXT (0 if nowhere), by the rule of the
   ! bad character: compare from the right, skip as far as the text allows.
   integer function search(text, pattern, from) result(at)
      character(len=*), intent(in)  :: text, pattern
      integer, intent(in), optional :: from
      integer, dimension(0:last_code) :: skip
      integer :: m, i, k, last

      m = len(pattern)
      last = 0
      if (present(from)) last = from - 1
      at = last + 1
      if (m == 0) return
      skip = m
      do i = 1, m - 1
         skip(iachar(pattern(i:i))) = m - i
      end do
      last = last + m
      slide: do
         if (last > len(text)) exit slide
         k = 0
         compare: do
            if (k == m) then
               at = last - m + 1
               return
            end if
            if (text(last-k:last-k) /= pattern(m-k:m-k)) exit compare
            k = k + 1
         end do compare
         last = last + skip(iachar(text(last:last)))
      end do slide
      at = 0
   end function search

   ! How often PATTERN occurs; occurrences may share characters.
   function occurrences(text, pattern) result(n)
      character(len=*), intent(in) :: text, pattern
      integer :: n, from

      n = 0
      from = 1
      do
         from = search(text, pattern, from)
         if (from == 0) exit
         n = n + 1
         from = from + 1
      end do
   end function occurrences

   ! "*" is any number of characters, "?" exactly one. No recursion: a star
   ! once passed never needs to be tried again when a later one is reached.
   logical function wild_match(text, pattern) result(fits)
      character(len=*), intent(in) :: text, pattern
      integer :: t, p, star, mark

      t = 1; p = 1; star = 0; mark = 0
      fits = .false.
      walk: do while (t <= len(text))
         if (p <= len(pattern)) then
            select case (pattern(p:p))
            case ('*')
               star = p
               mark = t
               p = p + 1
               cycle walk
            case ('?')
               p = p + 1; t = t + 1
               cycle walk
            case default
               if (pattern(p:p) == text(t:t)) then
                  p = p + 1; t = t + 1
                  cycle walk
               end if
            end select
         end if
         if (star == 0) return
         mark = mark + 1
         t = mark
         p = star + 1
      end do walk
      fits = verify(pattern(min(p, len(pattern)+1):), '*') == 0
   end function wild_match

   ! Looks for an expression made of characters, ".", "[...]" and "[^...]"
   ! sets with ranges, each perhaps followed by "*", "+" or "?", and "^" and
   ! "$" at the ends. FIRST and LAST tell the leftmost longest match.
   subroutine expression_match(text, pattern, first, last)
      character(len=*), intent(in) :: text, pattern
      integer, intent(out)         :: first, last
      integer :: start, begin
      logical :: anchored

      begin = 1
      anchored = .false.
      if (len(pattern) > 0) anchored = pattern(1:1) == '^'
      if (anchored) begin = 2
      do start = 1, len(text) + 1
         last = match_here(begin, start)
         if (last >= 0) then
            first = start
            return
         end if
         if (anchored) exit
      end do
      first = 0
      last = -1

   contains

      ! The end of the match of PATTERN(P:) at TEXT(T:), -1 if there is none.
      recursive function match_here(p, t) result(finish)
         integer, intent(in) :: p, t
         integer :: finish
         integer :: next, count, least, most, k

         finish = -1
         if (p > len(pattern)) then
            finish = t - 1
            return
         end if
         if (pattern(p:) == '$' .and. p == len(pattern)) then
            if (t > len(text)) finish = t - 1
            return
         end if

         next = p + item_length(p)
         least = 1; most = 1
         if (next <= len(pattern)) then
            select case (pattern(next:next))
            case ('*')
               least = 0; most = len(text)
            case ('+')
               most = len(text)
            case ('?')
               least = 0
            end select
            if (scan(pattern(next:next), '*+?') > 0) next = next + 1
         end if

         count = 0
         do while (count < most .and. t + count <= len(text))
            if (.not. item_fits(p, text(t+count:t+count))) exit
            count = count + 1
         end do
         do k = count, least, -1
            finish = match_here(next, t + k)
            if (finish >= 0) return
         end do
      end function match_here

      integer function item_length(p)
         integer, intent(in) :: p

         item_length = 1
         if (pattern(p:p) == '[') then
            item_length = index(pattern(p+1:), ']') + 1
            if (item_length == 1) item_length = len(pattern) - p + 1
         else if (pattern(p:p) == '\' .and. p < len(pattern)) then
            item_length = 2
         end if
      end function item_length

      logical function item_fits(p, c)
         integer, intent(in) :: p
         character(len=1), intent(in) :: c
         integer :: i, last_in
         logical :: negated

         select case (pattern(p:p))
         case ('.')
            item_fits = .true.
         case ('\')
            item_fits = pattern(p+1:p+1) == c
         case ('[')
            last_in = p + item_length(p) - 2
            i = p + 1
            negated = pattern(i:i) == '^'
            if (negated) i = i + 1
            item_fits = .false.
            do while (i <= last_in)
               if (i + 2 <= last_in .and. pattern(i+1:i+1) == '-') then
                  if (lge(c, pattern(i:i)) .and. lle(c, pattern(i+2:i+2))) &
                     item_fits = .true.
                  i = i + 3
               else
                  if (c == pattern(i:i)) item_fits = .true.
                  i = i + 1
               end if
            end do
            item_fits = item_fits .neqv. negated
         case default
            item_fits = pattern(p:p) == c
         end select
      end function item_fits

   end subroutine expression_match

   ! The fewest insertions, removals and changes that make B of A.
   integer function plain_distance(a, b) result(d)
      character(len=*), intent(in) :: a, b
      integer, dimension(0:len(b)) :: row
      integer :: i, j, corner, above

      row = (/ (j, j = 0, len(b)) /)
      do i = 1, len(a)
         corner = row(0)
         row(0) = i
         do j = 1, len(b)
            above = row(j)
            if (a(i:i) /= b(j:j)) corner = corner + 1
            row(j) = min(above + 1, row(j-1) + 1, corner)
            corner = above
         end do
      end do
      d = row(len(b))
   end function plain_distance

   ! The same with a price for each kind of step, and neighbours that change
   ! places at the price of one change.
   real function weighted_distance(a, b, insertion, removal, change) result(d)
      character(len=*), intent(in) :: a, b
      real, intent(in) :: insertion
      real, intent(in), optional :: removal, change
      real, dimension(0:len(a), 0:len(b)) :: cost
      real :: out, other
      integer :: i, j

      out = insertion
      if (present(removal)) out = removal
      other = max(insertion, out)
      if (present(change)) other = change
      cost(:, 0) = out * (/ (real(i), i = 0, len(a)) /)
      cost(0, :) = insertion * (/ (real(j), j = 0, len(b)) /)
      do j = 1, len(b)
         do i = 1, len(a)
            cost(i, j) = min(cost(i-1, j) + out, cost(i, j-1) + insertion, &
                             cost(i-1, j-1) + merge(0.0, other, a(i:i) == b(j:j)))
            if (i == 1 .or. j == 1) cycle
            if (a(i-1:i) == b(j:j) // b(j-1:j-1)) &
               cost(i, j) = min(cost(i, j), cost(i-2, j-2) + other)
         end do
      end do
      d = cost(len(a), len(b))
   end function weighted_distance

   function similarity(a, b) result(part)
      character(len=*), intent(in) :: a, b
      real :: part
      integer :: longer

      longer = max(len_trim(a), len_trim(b))
      part = 1.0
      if (longer > 0) part = 1.0 - real(edit_distance(trim(a), trim(b))) / longer
   end function similarity

   ! The longest stretch that A and B share.
   subroutine common_part(a, b, in_a, length)
      character(len=*), intent(in) :: a, b
      integer, intent(out) :: in_a, length
      integer, dimension(len(a), 0:1) :: run
      integer :: i, j, now

      run = 0
      in_a = 0
      length = 0
      do j = 1, len(b)
         now = mod(j, 2)
         do i = 1, len(a)
            run(i, now) = 0
            if (a(i:i) == b(j:j)) then
               run(i, now) = 1
               if (i > 1) run(i, now) = run(i-1, 1-now) + 1
            end if
         end do
         if (maxval(run(:, now)) > length) then
            length = maxval(run(:, now))
            in_a = sum(maxloc(run(:, now))) - length + 1
         end if
      end do
   end subroutine common_part

   logical function is_palindrome(line) result(yes)
      character(len=*), intent(in) :: line
      character(len=len(line)) :: letters
      integer :: i, n

      n = 0
      letters = ' '
      do i = 1, len_trim(line)
         select case (line(i:i))
         case ('a':'z')
            n = n + 1
            letters(n:n) = line(i:i)
         case ('A':'Z')
            n = n + 1
            letters(n:n) = achar(iachar(line(i:i)) + 32)
         end select
      end do
      yes = .true.
      do i = 1, n / 2
         yes = yes .and. letters(i:i) == letters(n+1-i:n+1-i)
      end do
   end function is_palindrome

   ! A letter and three digits that stand for groups of consonants.
   character(len=4) function soundex(word)
      character(len=*), intent(in) :: word
      !                                       abcdefghijklmnopqrstuvwxyz
      character(len=26), parameter :: code = '01230120022455012623010202'
      character :: digit, before
      integer :: i, k, n

      soundex = '0000'
      n = 0
      before = '0'
      do i = 1, len_trim(word)
         k = iachar(word(i:i))
         if (k >= iachar('A') .and. k <= iachar('Z')) k = k + 32
         k = k - iachar('a') + 1
         if (k < 1 .or. k > 26) cycle
         digit = code(k:k)
         if (n == 0) then
            soundex(1:1) = achar(iachar('A') + k - 1)
            n = 1
         else if (digit /= '0' .and. digit /= before) then
            n = n + 1
            soundex(n:n) = digit
            if (n == 4) exit
         end if
         if (index('hw', achar(k + iachar('a') - 1)) == 0) before = digit
      end do
   end function soundex

end module matching
