c     What the driver prints.
c
      subroutine clear
c     Clear the counters of work; work prints them.
      include 'limits.inc'
      include 'counts.inc'
      character*(*) title
      integer lead
      nrot = 0
      nqr = 0
      nsweep = 0
      nreset = 0
      return
      entry work (title)
c        only the figures that are not zero
      lead = index (title // ' ', ' ') - 1
      write (lout, 10) title(1:lead)
      if (nsweep .ne. 0) write (lout, 20) 'sweeps', nsweep
      if (nrot .ne. 0) write (lout, 20) 'rotations', nrot
      if (nqr .ne. 0) write (lout, 20) 'QR steps', nqr
      if (nreset .ne. 0) write (lout, 20) 'resets', nreset
   10 format (3x, 'Work of ', a, ':')
   20 format (5x, a, t17, i6)
      end
c
      block data machin0
c     The precision is found by the driver; these are cautious values.
      include 'counts.inc'
      data nrot, nqr, nsweep, nreset /4*0/
      data eps, tiny /1.0d-14, 1.0d-290/
      end
c
      subroutine heading (title, n)
      character*(*) title
      character under*60
      integer n, k
      include 'limits.inc'
      under = ' '
      do 10, k = 1, min (len (title), len (under))
         under(k:k) = '-'
   10 continue
      if (n .gt. 0) then
         write (lout, '(/1x, a, '' of order'', i3/1x, a/)') title, n,
     &      under(:len (title))
      else
         write (lout, '(/1x, a/1x, a/)') title, under(:len (title))
      end if
      end
c
      subroutine values (d, n)
c     Real eigenvalues, five on a line; and complex ones (cvalue).
      integer n, k
      double precision d(n), w(2, n)
      include 'limits.inc'
      write (lout, 20) (d(k), k = 1, n)
      return
      entry cvalue (w, n)
      do 10 k = 1, n
         if (w(2, k) .eq. 0d0) then
            write (lout, 30) k, w(1, k)
         else
            write (lout, 40) k, w(1, k), w(2, k)
         end if
   10 continue
   20 format ((1x, 5f13.6))
   30 format (1x, i4, 2x, f14.6)
   40 format (1x, i4, 2x, f14.6, sp, f14.6, ' i', ss)
      end
c
      subroutine vector (v, ldv, n, ncol)
c     The columns of a matrix, in strips of at most six.
      integer ldv, n, ncol, i, j, first, last
      double precision v(ldv, *)
      include 'limits.inc'
      do 20 first = 1, ncol, 6
         last = min (first + 5, ncol)
         write (lout, 30) (j, j = first, last)
         do 10 i = 1, n
            write (lout, 40) i, (v(i, j), j = first, last)
   10    continue
   20 continue
   30 format (/8x, 6(i6, 5x))
   40 format (1x, i4, 2x, 6f11.6)
      end
c
      subroutine verify (what, err)
      character*(*) what
      double precision err
      include 'limits.inc'
      character*8 word
      logical good
      good = err .lt. 1d-9
      word = 'WRONG'
      if (good) word = 'good'
      write (lout, 10) what, word
   10 format (3x, 'Check of ', a, ': ', a)
      end
