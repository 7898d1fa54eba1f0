c     Large symmetric matrices in a direct access file, by blocks, and
c     their factors L*L', which are found with four blocks in storage.
c
c     Record 1 is the directory.  Block (i, j), j <= i, is record
c     ndir + (i*(i - 1))/2 + j.
c
      subroutine opblok (n, ierr)
c     A scratch file for a matrix of order n.
      integer n, ierr
      include 'units.inc'
      double precision b(nblk, nblk)
      integer nb, nreads, nwrits
      common /blokdt/ nb, nreads, nwrits
      save /blokdt/
      integer i, k, length
      inquire (iolength = length) b
      open (lublok, status = 'scratch', access = 'direct',
     &      form = 'unformatted', recl = length, iostat = ierr)
      if (ierr .ne. 0) return
      nb = (n + nblk - 1)/nblk
      if (nb*(nb + 1)/2 + ndir .gt. maxrec) then
         ierr = -1
         return
      end if
      nreads = 0
      nwrits = 0
      write (lublok, rec = 1) n, nb
      do 10 k = 1, nblk
         do 10 i = 1, nblk
            b(i, k) = 0d0
   10 continue
      do 20 k = 1, nb*(nb + 1)/2
         write (lublok, rec = ndir + k) b
   20 continue
      end
c
      subroutine rdblok (i, j, b)
c     One block in, or out by the entry wrblok.
      integer i, j, irec
      include 'units.inc'
      double precision b(nblk*nblk)
      integer nb, nreads, nwrits
      common /blokdt/ nb, nreads, nwrits
      save /blokdt/
      irec (i, j) = ndir + (i*(i - 1))/2 + j
      read (lublok, rec = irec (i, j), err = 10) b
      nreads = nreads + 1
      return
      entry wrblok (i, j, b)
      write (unit = lublok, rec = irec (i, j), err = 10) b
      nwrits = nwrits + 1
      return
   10 stop 'rdblok: no such block'
      end
c
      subroutine fill (elem)
c     Write the whole matrix; elem (i, j) is its element.  Beyond the
c     order of the matrix, ones on the diagonal.
      double precision elem
      external elem
      include 'units.inc'
      double precision b(nblk, nblk)
      integer n, nb, ib, jb, i, j, ii, jj
      read (lublok, rec = 1) n, nb
      do 40 ib = 1, nb
         do 30 jb = 1, ib
            do 20 j = 1, nblk
               jj = (jb - 1)*nblk + j
               do 10 i = 1, nblk
                  ii = (ib - 1)*nblk + i
                  if (max (ii, jj) .le. n) then
                     b(i, j) = elem (ii, jj)
                  else if (ii .eq. jj) then
                     b(i, j) = 1d0
                  else
                     b(i, j) = 0d0
                  end if
   10          continue
   20       continue
            call wrblok (ib, jb, b)
   30    continue
   40 continue
      end
c
      subroutine factor (*)
c     The factors replace the matrix in the file.
      include 'units.inc'
      double precision a(nblk, nblk), b(nblk, nblk), c(nblk, nblk)
      integer n, nb, ib, jb, kb, i, j, k
      read (lublok, rec = 1) n, nb
      do 100 jb = 1, nb
         do 90 ib = jb, nb
            call rdblok (ib, jb, a)
            do 40 kb = 1, jb - 1
               call rdblok (ib, kb, b)
               call rdblok (jb, kb, c)
               do 30 j = 1, nblk
                  do 20 k = 1, nblk
                     do 10 i = 1, nblk
                        a(i, j) = a(i, j) - b(i, k)*c(j, k)
   10                continue
   20             continue
   30          continue
   40       continue
            if (ib .eq. jb) then
c                 the diagonal block
               do 60 j = 1, nblk
                  do 55 i = j, nblk
                     do 50 k = 1, j - 1
                        a(i, j) = a(i, j) - a(i, k)*a(j, k)
   50                continue
                     if (i .gt. j) then
                        a(i, j) = a(i, j)/a(j, j)
                     else if (a(j, j) .gt. 0d0) then
                        a(j, j) = sqrt (a(j, j))
                     else
                        return 1
                     end if
   55             continue
   60          continue
            else
c                 a block below it
               call rdblok (jb, jb, c)
               do 80 j = 1, nblk
                  do 80 i = 1, nblk
                     do 70 k = 1, j - 1
                        a(i, j) = a(i, j) - a(i, k)*c(j, k)
   70                continue
                     a(i, j) = a(i, j)/c(j, j)
   80          continue
            end if
            call wrblok (ib, jb, a)
   90    continue
  100 continue
      end
c
      subroutine solve (x)
c     Forward and back substitution; x has room for whole blocks.
      include 'units.inc'
      double precision x(nblk, *), a(nblk, nblk)
      integer n, nb, ib, jb, i, j
      read (lublok, rec = 1) n, nb
      do 10 i = n + 1, nb*nblk
         x(i - (nb - 1)*nblk, nb) = 0d0
   10 continue
      do 50 ib = 1, nb
         do 30 jb = 1, ib - 1
            call rdblok (ib, jb, a)
            do 20 j = 1, nblk
               do 20 i = 1, nblk
   20             x(i, ib) = x(i, ib) - a(i, j)*x(j, jb)
   30    continue
         call rdblok (ib, ib, a)
         do 40 i = 1, nblk
            do 35 j = 1, i - 1
               x(i, ib) = x(i, ib) - a(i, j)*x(j, ib)
   35       continue
            x(i, ib) = x(i, ib)/a(i, i)
   40    continue
   50 continue
      do 90 ib = nb, 1, -1
         do 70 jb = ib + 1, nb
            call rdblok (jb, ib, a)
            do 60 j = 1, nblk
               do 60 i = 1, nblk
   60             x(j, ib) = x(j, ib) - a(i, j)*x(i, jb)
   70    continue
         call rdblok (ib, ib, a)
         do 80 i = nblk, 1, -1
            do 75 j = i + 1, nblk
               x(i, ib) = x(i, ib) - a(j, i)*x(j, ib)
   75       continue
            x(i, ib) = x(i, ib)/a(i, i)
   80    continue
   90 continue
      end
