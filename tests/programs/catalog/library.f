! A day in the library.
      program library
      use catalog_data
      use catalog_files
      implicit none
      integer, parameter :: unit = 17
      type (date) :: today, back
      character (len = 10) :: text
      integer :: i, n, bad, late, code
      logical :: ok, old
      character (len = 46), dimension (4) :: cards = (/
     & '&entry call_no="PH 120", title="On Light",    ',
     & '  author="Huygens", year=1690, copies=2 /     ',
     & '&entry call_no="PO 7", title="Old Ballads",   ',
     & '  year=1802 /                                 ' /)

      nullify (first_book)
      today = '1991-02-26'
      text = date_of (day_number (today) + 28)
      print *, 'today ', today%year, ', due ', text
      if (date_of (day_number (today)) - today /= 0) stop 'calendar'

      open (unit, file = 'books.txt', status = 'replace',
     &      delim = 'quote', action = 'readwrite', position = 'rewind')
      write (unit, '(a)') cards
      call load_catalog (unit, n, bad)
      print '(1x, a, 2i3)', 'loaded', n, bad
      call add_book ('MA 12', 'Elements of Geometry', 'Euclid',
     &   1482, 3, old)
      call add_book ('MA 34', 'Letters on Algebra', 'Euler',
     &   year = 1770, old = old)
      call add_book (title = 'Light again', call_no = 'PH 120',
     &   author = 'Nobody', year = 1900, old = old)
      if (.not. old) stop 'a number twice'

! lending
      back = date_of (day_number (today) + 28)
      do i = 1, 4
         code = lend ('MA 12', 100 + i, until = back)
         print '(1x, "reader", i4, " gets copy", i3)', 100 + i, code
      end do
      if (lend ('XX 1', 1, back) /= -1) stop 'no such book'
      call print_catalog (6, page_length = 3)
      call give_back ('MA 12', 102, date (1991, 4, 1), late, ok)
      print '(1x, "back", l2, ", late", i3)', ok, late
      call give_back ('MA 12', 102, date (1991, 4, 1), late, ok)
      print '(1x, "back", l2, ", late", i3)', ok, late

! searching
      print *, 'search: ', search_text ('light')
      n = search ('LIGHT')
      n = search ('eu')
      print '(1x, i2, a)', n, ' hits'

! out and in again
      rewind unit
      call save_catalog (unit, n)
      nullify (first_book)
      books = 0
      call load_catalog (unit, i, bad)
      print '(1x, a, 3i3)', 'again', i, bad, books
      if (i /= n) stop 'lost books'
      close (unit, status = 'delete')

      contains
      function search_text (w)
      character (*), intent (in) :: w
      character (len (w) + 2) :: search_text
      search_text = '"' // w // '"'
      end function search_text
      end program library
