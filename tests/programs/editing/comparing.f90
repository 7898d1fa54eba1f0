! Lines of text and what changed between two versions of them.
module comparing
   implicit none
   integer, parameter :: line_length = 60

   type page
      integer :: lines
      character(len=line_length), dimension(:), pointer :: line
   end type page

   ! One step from the old page to the new one
   type edit
      character :: action           ! '=', '-' or '+'
      integer   :: old, new         ! lines concerned
   end type edit

   interface operator(.with.)
      module procedure page_with_line
   end interface

   interface assignment(=)
      module procedure page_from_array
   end interface

contains

   subroutine page_from_array(p, lines)
      type(page), intent(out) :: p
      character(len=*), dimension(:), intent(in) :: lines

      p%lines = size(lines)
      allocate (p%line(p%lines))
      p%line = lines
   end subroutine page_from_array

   function page_with_line(p, line) result(q)
      type(page), intent(in) :: p
      character(len=*), intent(in) :: line
      type(page) :: q

      q%lines = p%lines + 1
      allocate (q%line(q%lines))
      q%line(:p%lines) = p%line(:p%lines)
      q%line(q%lines) = line
   end function page_with_line

   ! The steps with the fewest lines taken out and put in, from the table of
   ! the lengths of common subsequences.
   subroutine compare_pages(old, new, steps, n)
      type(page), intent(in)            :: old, new
      type(edit), dimension(:), pointer :: steps
      integer, intent(out)              :: n
      integer, dimension(0:old%lines, 0:new%lines) :: length
      integer :: i, j

      length = 0
      do j = new%lines - 1, 0, -1
         do i = old%lines - 1, 0, -1
            if (old%line(i+1) == new%line(j+1)) then
               length(i, j) = length(i+1, j+1) + 1
            else
               length(i, j) = max(length(i+1, j), length(i, j+1))
            end if
         end do
      end do

      allocate (steps(old%lines + new%lines))
      n = 0
      i = 0
      j = 0
      do
         if (i == old%lines .and. j == new%lines) exit
         n = n + 1
         if (i == old%lines) then
            j = j + 1
            steps(n) = edit('+', i, j)
         else if (j == new%lines) then
            i = i + 1
            steps(n) = edit('-', i, j)
         else if (old%line(i+1) == new%line(j+1)) then
            i = i + 1
            j = j + 1
            steps(n) = edit('=', i, j)
         else if (length(i+1, j) >= length(i, j+1)) then
            i = i + 1
            steps(n) = edit('-', i, j)
         else
            j = j + 1
            steps(n) = edit('+', i, j)
         end if
      end do
   end subroutine compare_pages

   ! Prints the changes with CONTEXT lines around them.
   subroutine print_changes(old, new, context)
      type(page), intent(in) :: old, new
      integer, intent(in), optional :: context
      type(edit), pointer :: steps(:)
      integer :: n, i, k, around, nearest
      logical :: gap

      around = 1
      if (present(context)) around = context
      call compare_pages(old, new, steps, n)
      gap = .false.
      each_step: do i = 1, n
         select case (steps(i)%action)
         case ('=')
            nearest = minval(abs((/ (k, k = 1, n) /) - i), &
                             mask=steps(:n)%action /= '=')
            if (nearest > around) then
               gap = .true.
               cycle each_step
            end if
            if (gap) write (*, '(1x, a)') '...'
            gap = .false.
            write (*, 100) ' ', steps(i)%old, steps(i)%new, trim(old%line(steps(i)%old))
         case ('-')
            write (*, 110) '-', steps(i)%old, trim(old%line(steps(i)%old))
         case ('+')
            write (*, 120) '+', steps(i)%new, trim(new%line(steps(i)%new))
         end select
      end do each_step
      print '(1x, i3, " taken out,", i3, " put in")', count(steps(:n)%action == '-'), &
         count(steps(:n)%action == '+')
      deallocate (steps)
100   format (1x, a, i4, i4, ' |', a)
110   format (1x, a, i4, 4x, ' |', a)
120   format (1x, a, 4x, i4, ' |', a)
   end subroutine print_changes

   ! What the page becomes by the steps; a check that they are right.
   logical function steps_lead_to(old, steps, new) result(right)
      type(page), intent(in) :: old, new
      type(edit), dimension(:), intent(in) :: steps
      character(len=line_length), dimension(size(steps)) :: made
      integer :: i, n

      n = 0
      do i = 1, size(steps)
         if (steps(i)%action == '-') cycle
         n = n + 1
         if (steps(i)%action == '=') made(n) = old%line(steps(i)%old)
         if (steps(i)%action == '+') made(n) = new%line(steps(i)%new)
      end do
      right = n == new%lines
      if (right) right = all(made(:n) == new%line)
   end function steps_lead_to

end module comparing
