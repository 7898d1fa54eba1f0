! Sorting of integers, reals, strings and dated records: one generic name
! for each thing to do, and the same algorithms written once per type where
! the language asks for it.
module orders
   implicit none
   private

   integer, parameter :: dp = kind(1.0d0)

   type, public :: person
      sequence
      character(len=16) :: family
      character(len=12) :: given
      integer           :: born
   end type person

   interface operator(.before.)
      module procedure person_before, string_before
   end interface

   interface operator(.sorted.)
      module procedure integers_sorted, reals_sorted, strings_sorted
   end interface

   interface sort
      module procedure quick_integers, heap_reals, merge_doubles, &
                       shell_strings, insert_persons
   end interface

   interface rank_of
      module procedure rank_integers
      module procedure rank_strings
   end interface

   interface swap
      module procedure swap_integers, swap_reals, swap_strings
   end interface

   interface position_in
      module procedure search_integers, search_strings
   end interface

   interface unique
      module procedure unique_integers, unique_strings
   end interface

   public :: operator(.before.), operator(.sorted.), sort, rank_of, swap, position_in, &
             unique, kth_smallest, sort_by_digits, shuffle

contains

   ! ---- what comes before what

   logical function person_before(a, b) result(before)
      type(person), intent(in) :: a, b

      if (a%family /= b%family) then
         before = llt(a%family, b%family)
      else if (a%given /= b%given) then
         before = llt(a%given, b%given)
      else
         before = a%born < b%born
      end if
   end function person_before

   ! As in a dictionary: capitals count only between words otherwise alike.
   logical function string_before(a, b) result(before)
      character(len=*), intent(in) :: a, b
      character(len=max(len(a), len(b))) :: x, y

      x = lower(a)
      y = lower(b)
      if (x == y) then
         before = llt(a, b)
      else
         before = llt(x, y)
      end if
   end function string_before

   function lower(c) result(small)
      character(len=*), intent(in) :: c
      character(len=len(c))        :: small
      integer :: i

      small = c
      do i = 1, len(c)
         select case (c(i:i))
         case ('A':'Z')
            small(i:i) = achar(iachar(c(i:i)) + iachar('a') - iachar('A'))
         end select
      end do
   end function lower

   logical function integers_sorted(a)
      integer, dimension(:), intent(in) :: a
      integers_sorted = all(a(1:size(a)-1) <= a(2:size(a)))
   end function integers_sorted

   logical function reals_sorted(a)
      real, dimension(:), intent(in) :: a
      reals_sorted = all(a(:size(a)-1) <= a(2:))
   end function reals_sorted

   logical function strings_sorted(a) result(yes)
      character(len=*), dimension(:), intent(in) :: a
      integer :: i
      yes = .true.
      do i = 2, size(a)
         if (a(i) .before. a(i-1)) yes = .false.
      end do
   end function strings_sorted

   ! ---- exchanges

   subroutine swap_integers(a, b)
      integer, intent(inout) :: a, b
      integer :: t
      t = a; a = b; b = t
   end subroutine swap_integers

   subroutine swap_reals(a, b)
      real, intent(inout) :: a, b
      real :: t
      t = a; a = b; b = t
   end subroutine swap_reals

   subroutine swap_strings(a, b)
      character(len=*), intent(inout) :: a, b
      character(len=len(a)) :: t
      t = a; a = b; b = t
   end subroutine swap_strings

   ! ---- sorting

   ! Quicksort with the median of three; short stretches by insertion.
   recursive subroutine quick_integers(a)
      integer, dimension(:), intent(inout) :: a
      integer :: low, high, pivot, i, j, n

      n = size(a)
      if (n <= 12) then
         do i = 2, n
            pivot = a(i)
            j = i - 1
            do while (j >= 1)
               if (a(j) <= pivot) exit
               a(j+1) = a(j)
               j = j - 1
            end do
            a(j+1) = pivot
         end do
         return
      end if

      if (a(n/2) < a(1)) call swap(a(n/2), a(1))
      if (a(n) < a(1)) call swap(a(n), a(1))
      if (a(n) < a(n/2)) call swap(a(n), a(n/2))
      pivot = a(n/2)
      low = 1
      high = n
      partition: do
         do while (a(low) < pivot)
            low = low + 1
         end do
         do while (a(high) > pivot)
            high = high - 1
         end do
         if (low > high) exit partition
         call swap(a(low), a(high))
         low = low + 1
         high = high - 1
         if (low > high) exit partition
      end do partition
      call quick_integers(a(:high))
      call quick_integers(a(low:))
   end subroutine quick_integers

   subroutine heap_reals(a)
      real, intent(inout) :: a(:)
      integer :: i, last

      do i = size(a) / 2, 1, -1
         call sift(i, size(a))
      end do
      do last = size(a), 2, -1
         call swap(a(1), a(last))
         call sift(1, last - 1)
      end do

   contains

      ! Lets A(ROOT) sink to its level in the heap A(1:BOTTOM).
      subroutine sift(root, bottom)
         integer, intent(in) :: root, bottom
         integer :: parent, child
         real    :: value

         parent = root
         value = a(root)
         do
            child = 2 * parent
            if (child > bottom) exit
            if (child < bottom) then
               if (a(child + 1) > a(child)) child = child + 1
            end if
            if (a(child) <= value) exit
            a(parent) = a(child)
            parent = child
         end do
         a(parent) = value
      end subroutine sift

   end subroutine heap_reals

   ! Merging from the bottom up, back and forth between A and a copy.
   subroutine merge_doubles(a)
      real(dp), dimension(:), intent(inout) :: a
      real(dp), dimension(size(a)) :: b
      integer :: width, from, middle, last, i, j, k

      width = 1
      do while (width < size(a))
         do from = 1, size(a), 2*width
            middle = min(from + width, size(a) + 1)
            last = min(from + 2*width, size(a) + 1)
            i = from; j = middle
            do k = from, last - 1
               if (j >= last) then
                  b(k) = a(i); i = i + 1
               else if (i >= middle) then
                  b(k) = a(j); j = j + 1
               else if (a(j) < a(i)) then
                  b(k) = a(j); j = j + 1
               else
                  b(k) = a(i); i = i + 1
               end if
            end do
         end do
         a = b
         width = 2*width
      end do
   end subroutine merge_doubles

   ! Shell's sort in the order of dictionaries.
   subroutine shell_strings(a, descending)
      character(len=*), dimension(:), intent(inout) :: a
      logical, intent(in), optional :: descending
      integer, dimension(6), parameter :: gaps = (/ 301, 132, 57, 23, 10, 4 /)
      integer :: g, gap, i, j
      character(len=len(a)) :: moving

      do g = 1, size(gaps) + 1
         gap = 1
         if (g <= size(gaps)) gap = gaps(g)
         do i = gap + 1, size(a)
            moving = a(i)
            j = i
            do
               if (j <= gap) exit
               if (.not. (moving .before. a(j - gap))) exit
               a(j) = a(j - gap)
               j = j - gap
            end do
            a(j) = moving
         end do
      end do
      if (.not. present(descending)) return
      if (descending) a = a(size(a):1:-1)
   end subroutine shell_strings

   ! By insertion into the place that halving finds.
   subroutine insert_persons(a)
      type(person), dimension(:), intent(inout) :: a
      type(person) :: moving
      integer :: i, low, high, middle

      do i = 2, size(a)
         moving = a(i)
         low = 1
         high = i
         do while (low < high)
            middle = (low + high) / 2
            if (moving .before. a(middle)) then
               high = middle
            else
               low = middle + 1
            end if
         end do
         a(low+1:i) = a(low:i-1)
         a(low) = moving
      end do
   end subroutine insert_persons

   ! Non-negative integers byte by byte, without comparing any two.
   subroutine sort_by_digits(a)
      integer, dimension(:), intent(inout) :: a
      integer, dimension(size(a)) :: b
      integer, dimension(0:255)   :: count, start
      integer :: shift, i, d

      do shift = 0, bit_size(a) - 8, 8
         count = 0
         do i = 1, size(a)
            d = ibits(a(i), shift, 8)
            count(d) = count(d) + 1
         end do
         if (count(0) == size(a)) exit
         start(0) = 1
         do d = 1, 255
            start(d) = start(d-1) + count(d-1)
         end do
         do i = 1, size(a)
            d = ibits(a(i), shift, 8)
            b(start(d)) = a(i)
            start(d) = start(d) + 1
         end do
         a = b
      end do
   end subroutine sort_by_digits

   ! ---- ranks, searches, selections

   function rank_integers(a) result(rank)
      integer, dimension(:), intent(in) :: a
      integer, dimension(size(a)) :: rank
      integer :: i

      do i = 1, size(a)
         rank(i) = count(a < a(i)) + count(a(:i) == a(i))
      end do
   end function rank_integers

   function rank_strings(a) result(rank)
      character(len=*), dimension(:), intent(in) :: a
      integer, dimension(size(a)) :: rank
      integer :: i, j

      rank = 1
      do i = 2, size(a)
         do j = 1, i - 1
            if (a(i) .before. a(j)) then
               rank(j) = rank(j) + 1
            else
               rank(i) = rank(i) + 1
            end if
         end do
      end do
   end function rank_strings

   integer function search_integers(x, a) result(at)
      integer, intent(in) :: x, a(:)
      integer :: low, high

      low = 1; high = size(a)
      do
         if (low > high) exit
         at = (low + high) / 2
         if (a(at) == x) return
         if (a(at) < x) then
            low = at + 1
         else
            high = at - 1
         end if
      end do
      at = 0
   end function search_integers

   integer function search_strings(x, a) result(at)
      character(len=*), intent(in) :: x, a(:)
      integer :: low, high

      low = 1; high = size(a)
      do while (low <= high)
         at = (low + high) / 2
         if (a(at) == x) return
         if (a(at) .before. x) then
            low = at + 1
         else
            high = at - 1
         end if
      end do
      at = 0
   end function search_strings

   ! How many different values the sorted A has; they come first.
   subroutine unique_integers(a, n)
      integer, intent(inout), dimension(:) :: a
      integer, intent(out) :: n
      logical, dimension(size(a)) :: keep

      if (size(a) > 0) keep(1) = .true.
      keep(2:) = a(2:) /= a(:size(a)-1)
      n = count(keep)
      a(:n) = pack(a, keep)
   end subroutine unique_integers

   subroutine unique_strings(a, n)
      character(len=*), intent(inout), dimension(:) :: a
      integer, intent(out) :: n
      integer :: i

      n = min(1, size(a))
      do i = 2, size(a)
         if (a(i) == a(n)) cycle
         n = n + 1
         a(n) = a(i)
      end do
   end subroutine unique_strings

   ! The K-th smallest value, by partitions of a copy.
   function kth_smallest(values, k) result(x)
      real, dimension(:), intent(in) :: values
      integer, intent(in)            :: k
      real :: x
      real, dimension(size(values)) :: a
      integer :: left, right, i, j

      a = values
      left = 1
      right = size(a)
      do while (left < right)
         x = a(k)
         i = left
         j = right
         do
            do while (a(i) < x)
               i = i + 1
            end do
            do while (x < a(j))
               j = j - 1
            end do
            if (i <= j) then
               call swap(a(i), a(j))
               i = i + 1
               j = j - 1
            end if
            if (i > j) exit
         end do
         if (j < k) left = i
         if (k < i) right = j
      end do
      x = a(k)
   end function kth_smallest

   ! A mix that is the same at every run.
   subroutine shuffle(a, seed)
      integer, dimension(:), intent(inout) :: a
      integer, intent(in), optional :: seed
      integer :: i, s

      s = 12345
      if (present(seed)) s = seed
      do i = size(a), 2, -1
         s = modulo(s * 421 + 1663, 7875)
         call swap(a(i), a(1 + modulo(s, i)))
      end do
   end subroutine shuffle

end module orders
