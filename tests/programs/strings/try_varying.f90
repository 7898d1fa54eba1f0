! Exercises the module of varying strings.
program try_varying
   use varying
   implicit none
   type(text) :: a, b, c
   type(text), pointer, dimension(:) :: words
   character(len=12) :: fixed
   integer :: n, i, ios

   call clear(a); call clear(b); call clear(c)
   a = 'the quick brown fox'
   b = ' jumps over the lazy dog'
   c = a // b
   call put_line(c)
   call check('length', length(c) == 43)
   call check('concatenation', c == 'the quick brown fox jumps over the lazy dog')
   call check('in', ('brown' .in. c) .and. .not. ('red' .in. c))
   call check('text in text', a .in. c)
   call check('starts', c .starts. 'the q')
   fixed = c
   call check('to fixed', fixed == 'the quick br')
   call check('find', find(c, 'the') == 1 .and. find(c, 'the', start=2) == 32)
   call check('find back', find(c, 'the', back=.true.) == 32)
   c = replace(c, 'the', 'THE')
   call put_line(c)
   c = replace(c, old='THE', by='one', once=.true.)
   call put_line(c)
   call put_line(upper(c))
   call put_line(lower(upper(c)))
   call put_line(reversed(a))
   call put_line(insert(a, 5, 'very '))
   call put_line(remove(a, 4, 9))
   call check('order', a > b .and. b < a .and. a >= a .and. b <= a .and. a /= b)
   call check('less', a < 'then')
   call check('times', as_chars(as_text('ab') .times. 3) == 'ababab')

   call split(a, ' ', words, n)
   words_of: do i = 1, n
      write (*, '(1x,i2,a)', advance='no') i, '='
      call put(words(i))
   end do words_of
   write (*, *)
   deallocate (words)

   a = 12345
   call put_line(a // ' ' // as_text(-7, width=5) // ' ' // as_text(.true.))
   call put_char(a, 8, '*')
   call put_line('[' // a // ']')
   call check('trimmed', trimmed(as_text('  x y  ')) == 'x y')
   call check('char at', char_at(a, 3) == '3' .and. char_at(a, 99) == ' ')

   open (unit=11, status='scratch', form='formatted')
   write (11, '(a)') 'short', repeat('long line ', 5), ''
   rewind 11
   n = 0
   lines: do
      call get_line(11, a, ios)
      if (ios < 0) exit lines
      n = n + 1
      print "(' line',i2,' has',i3,' characters')", n, length(a)
   end do lines
   close (11)

contains

   subroutine check(what, good)
      character(len=*), intent(in) :: what
      logical, intent(in)          :: good

      if (.not. good) print *, 'FAILED: ', what
   end subroutine check

end program try_varying
