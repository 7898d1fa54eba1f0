      program tfile
c
c     Write matrices to files of each kind, read them back, and compare.
c
      integer lda
      parameter (lda = 12)
      include 'units.inc'
      double precision a(lda, lda), b(lda, lda), x(40), scr(lda*lda)
      integer m, n, i, j, k, ierr, nfail
      integer nb, nreads, nwrits
      common /blokdt/ nb, nreads, nwrits
      save /blokdt/
      logical same, isopen, there
      double precision green
      external same, isopen, green
      character*8 names(4), form*11, file*20, line*72
      equivalence (scr(1), b(1, 1))
      data names /'alpha', 'beta', 'gamma', 'delta'/
      data nfail, file /0, 'matfile.tmp'/
c
c        formatted
c
      inquire (file = file, exist = there)
      if (there) then
         open (lutext, file = file, status = 'old')
         close (lutext, status = 'delete')
      end if
      open (unit = lutext, file = file, status = 'new', err = 900,
     $      form = 'formatted', blank = 'null')
      call make (a, lda, 3, 5, 1)
      call puttxt (lutext, names(1), 'FULL', a, lda, 3, 5,
     $             '(5es16.8)', ierr)
      if (ierr .ne. 0) nfail = nfail + 1
      call make (a, lda, 6, 6, 2)
      call puttxt (lutext, names(2), 'LOWER', a, lda, 6, 6,
     $             '(1p, 4d24.16)', ierr)
      if (ierr .ne. 0) nfail = nfail + 1
      call make (a, lda, 12, 9, 3)
      call puttxt (lutext, names(3), 'SPARSE', a, lda, 12, 9,
     $             '(2i4, g25.17)', ierr)
      if (ierr .ne. 0) nfail = nfail + 1
      call puttxt (lutext, names(4), 'STRANGE', a, lda, 12, 9, ' ',
     $             ierr)
      if (ierr .ne. -99) nfail = nfail + 1
      close (lutext)
      open (lutext, file = file, status = 'old', access = 'sequential',
     $      iostat = ierr)
      if (ierr .ne. 0) go to 900
      call dirtxt (lutext, 6)
      do 10 k = 3, 1, -1
         call gettxt (lutext, names(k), b, lda, lda, m, n, ierr)
         if (ierr .ne. 0) then
            write (*, 920) names(k), ierr
            nfail = nfail + 1
            go to 10
         end if
         call make (a, lda, m, n, k)
         if (.not. same (a, b, lda, m, n)) then
            write (*, 930) names(k)
            nfail = nfail + 1
         end if
   10 continue
      call gettxt (lutext, names(4), b, lda, lda, m, n, ierr)
      write (*, 920) names(4), ierr
      call gettxt (lutext, names(3), b, 4, 4, m, n, ierr)
      write (*, 920) names(3), ierr
      close (unit = lutext, status = 'delete')
c
c        unformatted
c
      open (ludata, status = 'scratch', form = 'unformatted')
      if (.not. isopen (ludata, form)) go to 900
      write (*, *) 'Unit', ludata, ' is ', form
      if (isopen (lutext, form)) go to 900
      do 20 k = 1, 3
         call make (a, lda, 2*k, k + 3, k)
         if (k .lt. 3) call putbin (ludata, names(k), a, lda, 2*k, k+3)
   20 continue
      endfile ludata
      rewind ludata
      call appbin (ludata, names(3), a, lda, 6, 6)
      rewind (ludata, iostat = ierr)
      call getbin (ludata, names(3), b, lda, m, n, *910, *910)
      if (.not. same (a, b, lda, m, n)) nfail = nfail + 1
      rewind ludata
      call getbin (ludata, names(1), b, 1, m, n, *910, *30)
      nfail = nfail + 1
   30 call getbin (ludata, names(1), b, lda, m, n, *910, *910)
      call make (a, lda, m, n, 1)
      if (.not. same (a, b, lda, m, n)) nfail = nfail + 1
      call getbin (ludata, names(4), b, lda, m, n, *40, *910)
      nfail = nfail + 1
   40 close (ludata)
c
c        direct access
c
      n = 35
      call opblok (n, ierr)
      if (ierr .ne. 0) go to 900
      call fill (green)
      call factor (*910)
      do 60 i = 1, n
         x(i) = 0
         do 50 j = 1, n
            x(i) = x(i) + green (i, j)*(n + 1 - j)
   50    continue
   60 continue
      call solve (x)
      do 70 i = 1, n
         if (abs (x(i) - (n + 1 - i)) .gt. 1d-7) nfail = nfail + 1
   70 continue
      write (line, 940) nb, nreads, nwrits
      write (*, '(a)') line
      close (lublok, err = 900)
c
      call vault (nfail)
      if (nfail .eq. 0) then
         write (*, *) 'all matrices came back'
      else
         write (*, *) nfail, ' failures'
      end if
      stop
  900 write (*, *) 'a file could not be opened'
      stop 1
  910 stop 'a matrix was lost'
  920 format (' Matrix ', a, 'gives code', i4)
  930 format (' Matrix ', a, 'has changed')
  940 format (1x, i3, ' rows of blocks,', i6, ' read,', i5, ' written')
      end
c
      double precision function green (i, j)
c     The elements of the large matrix.
      integer i, j
      green = 1d0/(1 + iabs (i - j)**2)
      if (i .eq. j) green = green + 2
      end
c
      subroutine make (a, lda, m, n, kind)
c     Matrices to be written: 1 any, 2 symmetric, 3 with many zeros.
      integer lda, m, n, kind, i, j
      double precision a(lda, n)
      do 30 j = 1, n
         do 20 i = 1, m
            go to (11, 12, 13), kind
   11       a(i, j) = (i - 2)*0.25d0 + j*100d0
            go to 20
   12       a(i, j) = 1d0/(i + j)
            go to 20
   13       a(i, j) = 0d0
            if (mod (i + 2*j, 5) .eq. 0) a(i, j) = sqrt (dble (i*j))
   20    continue
   30 continue
      end
c
      logical function same (a, b, lda, m, n)
      integer lda, m, n, i, j
      double precision a(lda, n), b(lda, n)
      same = .true.
      do 20 j = 1, n
         do 10 i = 1, m
            same = same .and. abs (a(i, j) - b(i, j)) .le.
     $             1d-13*abs (a(i, j))
   10    continue
   20 continue
      end
c
      subroutine vault (nfail)
c
c     A formatted direct access file with records of text: names and
c     norms, written out of order, listed in order, one of them changed.
c
      integer nfail, nrec, i, next
      include 'units.inc'
      character key(5)*8, was*8, state*3
      real value
      logical direct
      data key /'omega', 'psi', 'chi', 'phi', 'tau'/
      open (lutext, access = 'direct', form = 'formatted', recl = 24,
     $      status = 'scratch', err = 90)
      do 10 i = 1, 5
         nrec = mod (3*i, 5) + 1
         write (lutext, '(a8, f10.3, ''  new'')', rec = nrec) key(nrec),
     $      1.5*nrec
   10 continue
      read (lutext, '(8x, f10.0)', rec = 4) value
      write (lutext, 100, rec = 4, err = 90) key(4), 2*value, 'old'
      inquire (lutext, nextrec = next, direct = state)
      direct = state .eq. 'YES'
      if (next .ne. 5 .or. .not. direct) nfail = nfail + 1
      do 20 i = 1, 5
         read (lutext, 100, rec = i) was, value, state
         if (was .ne. key(i)) nfail = nfail + 1
         write (*, 110) i, was, value, state
   20 continue
      close (lutext)
      return
   90 nfail = nfail + 1
  100 format (a8, f10.3, 2x, a3)
  110 format (1x, i2, ': ', a8, f8.2, tr2, a3)
      end
