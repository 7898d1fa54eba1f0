! The catalogue of a library, Fortran 90 in fixed form.
!
! Books are held in memory as a list sorted by call number; the file on
! disk is read and written with namelists, so that people can edit it.

      module catalog_data
      implicit none
      integer, parameter :: title_len = 32, name_len = 20
      integer, parameter :: max_copies = 3

      type date
         integer year, month, day
      end type date

      type book
         character (len = 10) :: call_no
         character (len = title_len) :: title
         character (len = name_len) :: author
         integer :: year, copies
         integer, dimension (max_copies) :: lent_to
         type (date) :: due(max_copies)
         type (book), pointer :: next
      end type book

      type (book), pointer, save :: first_book
      integer, save :: books = 0

      interface operator (<)
         module procedure earlier
      end interface
      interface operator (-)
         module procedure days_between
      end interface
      interface assignment (=)
         module procedure date_from_text, text_from_date
      end interface

      contains

      logical function earlier (a, b)
      type (date), intent (in) :: a, b
      earlier = day_number (a) < day_number (b)
      end function earlier

      integer function days_between (a, b)
      type (date), intent (in) :: a, b
      days_between = day_number (a) - day_number (b)
      end function

! Days since the first of March of the year 0
      function day_number (d) result (n)
      type (date), intent (in) :: d
      integer :: n, y, m
      m = mod (d%month + 9, 12)
      y = d%year - m/10
      n = 365*y + y/4 - y/100 + y/400 + (m*306 + 5)/10 + d%day - 1
      end function day_number

      function date_of (n) result (d)
      integer, intent (in) :: n
      type (date) :: d
      integer :: y, r, m
      y = int ((n + 1.478d0)/365.2425d0)
      r = n - (365*y + y/4 - y/100 + y/400)
      if (r < 0) then
         y = y - 1
         r = n - (365*y + y/4 - y/100 + y/400)
      end if
      m = (100*r + 52)/3060
      d = date (y + (m + 2)/12, mod (m + 2, 12) + 1,
     &          r - (m*306 + 5)/10 + 1)
      end function date_of

      subroutine date_from_text (d, text)
      type (date), intent (out) :: d
      character (len = *), intent (in) :: text
      integer :: ios
      read (text, '(i4, 1x, i2, 1x, i2)', iostat = ios) d%year,
     &   d%month, d%day
      if (ios /= 0) d = date (0, 1, 1)
      end subroutine date_from_text

      subroutine text_from_date (text, d)
      character (len = *), intent (out) :: text
      type (date), intent (in) :: d
      write (text, '(i4.4, "-", i2.2, "-", i2.2)') d
      end subroutine text_from_date

! Finds a book by its number. Where it isn't there, the pointer comes
! back disassociated.
      subroutine find_book (call_no, b)
      character (len = *), intent (in) :: call_no
      type (book), pointer :: b
      b => first_book
      do while (associated (b))
         if (b%call_no == call_no) return
         b => b%next
      end do
      end subroutine find_book

      subroutine add_book (call_no, title, author, year, copies, old)
      character (len = *), intent (in) :: call_no, title, author
      integer, intent (in) :: year
      integer, intent (in), optional :: copies
      logical, intent (out) :: old
      type (book), pointer :: b, p, q
      call find_book (call_no, b)
      old = associated (b)
      if (old) return
      allocate (b)
      b%call_no = call_no; b%title = title; b%author = author
      b%year = year
      b%copies = 1
      if (present (copies)) b%copies = min (copies, max_copies)
      b%lent_to = 0
      nullify (q)
      p => first_book
      search: do
         if (.not. associated (p)) exit search
         if (lgt (p%call_no, call_no)) exit search
         q => p
         p => p%next
      end do search
      b%next => p
      if (associated (q)) then
         q%next => b
      else
         first_book => b
      end if
      books = books + 1
      end subroutine add_book

! Lends a copy until some day, or returns one.
      integer function lend (call_no, reader, until) result (code)
      character (len = *), intent (in) :: call_no
      integer, intent (in) :: reader
      type (date), intent (in) :: until
      type (book), pointer :: b
      integer :: k
      code = -1
      call find_book (call_no, b)
      if (.not. associated (b)) return
      code = 0
      do k = 1, b%copies
         if (b%lent_to(k) == reader) return
      end do
      do k = 1, b%copies
         if (b%lent_to(k) == 0) then
            b%lent_to(k) = reader
            b%due(k) = until
            code = k
            exit
         end if
      end do
      end function lend

      subroutine give_back (call_no, reader, today, days_late, found)
      character (len = *), intent (in) :: call_no
      integer, intent (in) :: reader
      type (date), intent (in) :: today
      integer, intent (out) :: days_late
      logical, intent (out) :: found
      type (book), pointer :: b
      integer :: k
      found = .false.
      days_late = 0
      call find_book (call_no, b)
      if (.not. associated (b)) return
      do k = 1, b%copies
         if (b%lent_to(k) /= reader) cycle
         found = .true.
         if (b%due(k) < today) days_late = today - b%due(k)
         b%lent_to(k) = 0
      end do
      end subroutine give_back
      end module catalog_data

      module catalog_files
      use catalog_data, only: book, first_book, title_len, name_len,
     &   put => add_book, max_copies
      implicit none
      private
      public save_catalog, load_catalog, print_catalog, search

      contains

      subroutine save_catalog (unit, count)
      integer, intent (in) :: unit
      integer, intent (out) :: count
      character (len = 10) :: call_no
      character (len = title_len) :: title
      character (len = name_len) :: author
      integer :: year, copies
      namelist /entry/ call_no, title, author, year, copies
      type (book), pointer :: b
      count = 0
      b => first_book
      do
         if (.not. associated (b)) exit
         call_no = b%call_no
         title = b%title
         author = b%author
         year = b%year
         copies = b%copies
         write (unit, nml = entry)
         count = count + 1
         b => b%next
      end do
      end subroutine save_catalog

      subroutine load_catalog (unit, count, skipped)
      integer, intent (in) :: unit
      integer, intent (out) :: count, skipped
      character (len = 10) :: call_no
      character (len = title_len) :: title
      character (len = name_len) :: author
      integer :: year, copies, ios
      logical :: old
      namelist /entry/ call_no, title, author, year, copies
      count = 0
      skipped = 0
      rewind (unit)
      do
         author = 'anonymous'
         copies = 1
         read (unit, nml = entry, iostat = ios, end = 10)
         if (ios > 0) then
            skipped = skipped + 1
            cycle
         end if
         call put (call_no, title, author, year, copies, old)
         if (old) then
            skipped = skipped + 1
         else
            count = count + 1
         end if
      end do
   10 continue
      end subroutine load_catalog

      subroutine print_catalog (unit, page_length)
      integer, intent (in) :: unit
      integer, intent (in), optional :: page_length
      type (book), pointer :: b
      integer :: line, per_page, page
      per_page = 50
      if (present (page_length)) per_page = page_length
      page = 0
      line = per_page
      b => first_book
      do while (associated (b))
         if (line >= per_page) then
            page = page + 1
            write (unit, 20) 'CATALOGUE', page
            line = 0
         end if
         write (unit, 30) b%call_no, b%title, b%author, b%year,
     &      count (b%lent_to(:b%copies) == 0), b%copies
         line = line + 1
         b => b%next
      end do
   20 format ('1', a, t66, 'page', i3)
   30 format (1x, a, 1x, a, a, i5, i3, '/', i1)
      end subroutine print_catalog

! All books whose title or author has a word in it; the case of the
! letters does not matter.
      function search (word) result (hits)
      character (len = *), intent (in) :: word
      integer :: hits
      type (book), pointer :: b
      hits = 0
      b => first_book
      do while (associated (b))
         if (index (small (b%title), small (word)) > 0 .or.
     &       index (small (b%author), small (word)) > 0) then
            hits = hits + 1
            print '(3x, a, 1x, a)', b%call_no, trim (b%title)
         end if
         b => b%next
      end do

      contains

      function small (text)
      character (len = *), intent (in) :: text
      character (len = len (text)) :: small
      integer :: i
      do i = 1, len (text)
         select case (text(i:i))
         case ('A':'Z')
            small(i:i) = achar (iachar (text(i:i)) + 32)
         case default
            small(i:i) = text(i:i)
         end select
      end do
      end function small
      end function search
      end module catalog_files
