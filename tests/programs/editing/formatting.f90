! Fills paragraphs, with commands in lines that begin with a point:
!   .width N   .indent N   .center   .fill   .nofill   .justify   .left
!   .skip N    .rule       .title TEXT
module formatting
   implicit none
   private
   integer, parameter :: max_width = 72

   type, public :: style
      integer :: width, indent
      logical :: fill, justify, center
   end type style

   type(style), save   :: now
   character(max_width), save :: pending
   integer, save       :: used, gap_side, out_unit, lines_written

   public :: start_text, format_line, finish_text

contains

   subroutine start_text(unit, width)
      integer, intent(in) :: unit
      integer, optional, intent(in) :: width

      now = style(50, 0, .true., .true., .false.)
      if (present(width)) now%width = min(width, max_width)
      out_unit = unit
      used = 0
      gap_side = 0
      lines_written = 0
      pending = ' '
   end subroutine start_text

   subroutine finish_text(lines)
      integer, intent(out), optional :: lines
      call flush_line(.false.)
      if (present(lines)) lines = lines_written
   end subroutine finish_text

   subroutine put(line)
      character(len=*), intent(in) :: line
      write (out_unit, '(a)') repeat(' ', now%indent) // trim(line)
      lines_written = lines_written + 1
   end subroutine put

   subroutine format_line(line)
      character(len=*), intent(in) :: line
      integer :: first, last

      if (line == ' ') then
         call flush_line(.false.)
         call put(' ')
      else if (line(1:1) == '.') then
         call command(line(2:))
      else if (.not. now%fill) then
         call put(line)
      else
         first = 1
         words: do
            last = verify(line(first:), ' ')
            if (last == 0) exit words
            first = first + last - 1
            last = index(line(first:), ' ')
            if (last == 0) then
               last = len(line)
            else
               last = first + last - 2
            end if
            call add_word(line(first:last))
            if (last == len(line)) exit words
            first = last + 1
         end do words
      end if
   end subroutine format_line

   subroutine add_word(word)
      character(len=*), intent(in) :: word
      integer :: room

      room = now%width - now%indent
      if (used > 0 .and. used + 1 + len(word) > room) call flush_line(now%justify)
      if (used > 0) used = used + 1
      pending(used+1:) = word
      used = min(used + len(word), max_width)
   end subroutine add_word

   ! Writes the line collected so far, spread over the width if wished: the
   ! wide gaps are on the right in one line and on the left in the next.
   subroutine flush_line(spread_out)
      logical, intent(in) :: spread_out
      character(max_width) :: line
      integer :: gaps, extra, i, k, g, blanks

      if (used == 0) return
      line = pending
      if (now%center) then
         line = repeat(' ', (now%width - now%indent - used) / 2) // pending(:used)
      else if (spread_out) then
         gaps = 0
         do i = 1, used
            if (pending(i:i) == ' ') gaps = gaps + 1
         end do
         extra = now%width - now%indent - used
         if (gaps > 0 .and. extra > 0) then
            line = ' '
            k = 0
            g = 0
            do i = 1, used
               k = k + 1
               line(k:k) = pending(i:i)
               if (pending(i:i) /= ' ') cycle
               g = g + 1
               blanks = extra / gaps
               if (gap_side == 0 .and. g > gaps - mod(extra, gaps)) blanks = blanks + 1
               if (gap_side == 1 .and. g <= mod(extra, gaps)) blanks = blanks + 1
               k = k + blanks
            end do
            gap_side = 1 - gap_side
         end if
      end if
      call put(line)
      used = 0
      pending = ' '
   end subroutine flush_line

   subroutine command(line)
      character(len=*), intent(in) :: line
      integer :: blank, n, ios, i
      character(len=8) :: name

      call flush_line(.false.)
      blank = index(line // ' ', ' ')
      name = line(:blank-1)
      n = 0
      if (blank < len_trim(line)) then
         read (line(blank+1:), *, iostat=ios) n
         if (ios /= 0) n = 0
      end if
      select case (name)
      case ('width')
         if (n > now%indent + 10) now%width = min(n, max_width)
      case ('indent')
         now%indent = max(0, min(n, now%width - 10))
      case ('center')
         now%center = .true.
      case ('left')
         now%center = .false.;  now%justify = .false.
      case ('justify')
         now%center = .false.;  now%justify = .true.
      case ('fill', 'nofill')
         now%fill = name == 'fill'
      case ('skip')
         do i = 1, max(1, n)
            call put(' ')
         end do
      case ('rule')
         call put(repeat('-', now%width - now%indent))
      case ('title')
         call put(line(blank+1:))
         call put(repeat('=', len_trim(line(blank+1:))))
      case default
         call put('?? ' // line)
      end select
   end subroutine command

end module formatting
