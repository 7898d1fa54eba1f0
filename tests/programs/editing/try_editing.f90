program try_editing
   use matching
   use comparing
   use spelling
   use formatting
   implicit none

   call try_matching
   call try_comparing
   call try_spelling
   call try_formatting

contains

   subroutine try_matching
      character(len=*), parameter :: text = 'she sells sea shells by the sea shore'
      character(len=12), dimension(7), parameter :: patterns = (/ &
         's[a-h]*l+   ', '^she        ', 'shore$      ', 'b.\ t       ', &
         '[^a-z ]     ', 'sea shel?ls ', 'x*          ' /)
      integer :: i, first, last

      print *, search(text, 'shore'), search(text, 'sea', from=12), search(text, 'land'), &
         occurrences(text, 'se'), occurrences('aaaa', 'aa')
      print *, wild_match('matching.f90', '*.f90'), wild_match('abc', 'a?c'), &
         wild_match('abc', 'a*b'), wild_match('', '**'), wild_match('mississippi', 'm*si*p?')
      do i = 1, size(patterns)
         call expression_match(text, trim(patterns(i)), first, last)
         if (first == 0) then
            print *, patterns(i), ' no match'
         else
            print *, patterns(i), first, last, ' "', text(first:last), '"'
         end if
      end do
      print *, edit_distance('kitten', 'sitting'), edit_distance('', 'abc'), &
         edit_distance('form', 'from', insertion=1.0), &
         edit_distance('ab', 'b', 2.0, removal=0.5)
      call common_part('interface', 'surfaces', first, last)
      print *, first, last, is_palindrome('A man, a plan, a canal: Panama!'), &
         is_palindrome('not one')
      print *, soundex('Robert'), ' ', soundex('rupert'), ' ', soundex('Ashcraft'), ' ', &
         soundex('Lee')
      print '(1x, f5.3)', similarity('fortran', 'format ')
   end subroutine try_matching

   subroutine try_comparing
      type(page) :: old, new
      type(edit), dimension(:), pointer :: steps
      integer :: n

      old = (/ 'one  ', 'two  ', 'three', 'four ', 'five ', 'six  ', 'seven' /)
      new = (/ 'one  ', 'too  ', 'three', 'four ', 'five ', 'seven' /)
      new = new .with. 'eight'
      call print_changes(old, new)
      call compare_pages(old, new, steps, n)
      print *, n, steps_lead_to(old, steps(:n), new)
      call print_changes(new, old, context=0)
   end subroutine try_comparing

   subroutine try_spelling
      call learn('the a of in to and module procedure variable variables array arrays')
      call learn('character string compiler program their there receive separate')
      call check_text('The compilr, and teh charactor vareables of thier progam: recieve &
                      &seperate xyzzy arrays!')
      print *, is_known('module'), is_known('modul'), ' ', clean_word('Don''t!')
   end subroutine try_spelling

   subroutine try_formatting
      integer :: lines, ios
      character(len=80) :: line

      open (12, status='scratch')
      write (12, '(a)') '.title On columns', 'A line of the text is broken where &
         &the next word would', 'run over the margin,   and the blanks are spread.', '', &
         'Paragraphs end with an empty line.', '.indent 6', '.left', &
         'What is indented starts further to the right, but ends at the same margin.', &
         '.indent 0', '.center', 'in the middle', '.rule', '.nofill', 'a   b   c', &
         'd   e   f', '.nonsense'
      rewind 12
      call start_text(6, width=36)
      do
         read (12, '(a)', iostat=ios) line
         if (ios /= 0) exit
         call format_line(trim(line))
      end do
      call finish_text(lines)
      print *, lines, ' lines'
      close (12)
   end subroutine try_formatting

end program try_editing
