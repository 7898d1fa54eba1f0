c     Matrices in formatted files.
c
c     A matrix is preceded by a header line,
c
c        MATRIX name  kind  rows  columns  elements   format
c
c     where kind is FULL (by rows), LOWER (the lower triangle of a
c     symmetric matrix), or SPARSE (row, column and value on each line).
c
      subroutine puttxt (lun, name, kind, a, lda, m, n, fmt, ierr)
      integer lun, lda, m, n, ierr
      character*(*) name, kind, fmt
      double precision a(lda, n)
      integer i, j, k, last
      character header*8, what*6
      parameter (header = 'MATRIX')
      ierr = 0
      if (kind .eq. 'FULL') then
         k = m*n
      else if (kind .eq. 'LOWER') then
         if (m .ne. n) go to 90
         k = (n*(n + 1))/2
      else if (kind .eq. 'SPARSE') then
         k = 0
         do 10 j = 1, n
            do 10 i = 1, m
               if (a(i, j) .ne. 0d0) k = k + 1
   10    continue
      else
         go to 90
      end if
c        from the left of its field
      what = kind
      write (lun, 100, err = 80, iostat = ierr) header, name, what, m,
     $   n, k, fmt
      if (kind .eq. 'SPARSE') then
         do 20 i = 1, m
            do 20 j = 1, n
               if (a(i, j) .ne. 0d0) write (lun, fmt = fmt, err = 80,
     $            iostat = ierr) i, j, a(i, j)
   20    continue
      else
         last = n
         do 30 i = 1, m
            if (kind .eq. 'LOWER') last = i
            write (lun, fmt, err = 80, iostat = ierr)
     $         (a(i, j), j = 1, last)
   30    continue
      end if
      return
   80 return
   90 ierr = -99
  100 format (a8, a8, 1x, a6, 3i6, 2x, a)
      end
c
      subroutine gettxt (lun, name, a, lda, maxcol, m, n, ierr)
c
c     Look for a matrix, from where the file stands to its end, and once
c     more from its beginning.  ierr is
c
c        0  found           1  not there         2  too large
c       -1  end of file    >2  status of the failing statement + 100
c
      integer lun, lda, maxcol, m, n, ierr
      character*(*) name
      double precision a(lda, maxcol), t
      character line*80, what*8, found*8, kind*6, fmt*30
      integer i, j, k, l, pass, ios
      do 20 pass = 1, 2
   10    read (lun, '(a)', end = 15, err = 80, iostat = ios) line
         if (line(1:6) .ne. 'MATRIX') go to 10
         read (line, 100, err = 80, iostat = ios) what, found, kind, m,
     $      n, k, fmt
         if (found .eq. name) go to 30
         go to 10
   15    rewind lun
   20 continue
      ierr = 1
      return
   30 ierr = 2
      if (m .gt. lda .or. n .gt. maxcol) return
      if (kind .eq. 'FULL') then
         do 40 i = 1, m
            read (lun, fmt, end = 70, err = 80, iostat = ios)
     $         (a(i, j), j = 1, n)
   40    continue
      else if (kind .eq. 'LOWER') then
         do 50 i = 1, m
            read (lun, fmt, end = 70, err = 80, iostat = ios)
     $         (a(i, j), j = 1, i)
            do 45 j = 1, i - 1
               a(j, i) = a(i, j)
   45       continue
   50    continue
      else
         do 55 j = 1, n
            do 55 i = 1, m
               a(i, j) = 0d0
   55    continue
         do 60 l = 1, k
            read (lun, fmt, end = 70, err = 80, iostat = ios) i, j, t
            a(i, j) = t
   60    continue
      end if
      ierr = 0
      return
   70 ierr = -1
      return
   80 ierr = ios + 100
  100 format (a8, a8, 1x, a6, 3i6, 2x, a30)
      end
c
      subroutine dirtxt (lun, lpr)
c     List the headers.
      integer lun, lpr, num
      character line*80
      rewind (lun)
      num = 0
   10 read (lun, '(a)', end = 20) line
      if (index (line, 'MATRIX') .eq. 1) then
         num = num + 1
         write (lpr, '(1x, i3, ''. '', a)') num, line(9:60)
      end if
      go to 10
   20 rewind lun
      end
