c     Eigenvalues and eigenvectors of real symmetric matrices, by the
c     method of Jacobi and by tridiagonal reduction followed by the QR
c     iteration with implicit shifts.
c
      subroutine jacobi (job, a, lda, n, d, v, ldv, info)
c
c     job = 'V'  eigenvalues only; v is not used
c     job = 'X'  eigenvectors as well, in the columns of v
c
c     Each rotation makes one pair of elements vanish; both triangles of
c     a are kept up to date, and it is diagonal in the end.  Those that
c     are small beside the average are left for a later sweep.  The
c     eigenvalues are put into d, in ascending order.  info = 1 if there
c     were too many sweeps.
c
      character job*1
      integer lda, n, ldv, info
      double precision a(lda, n), d(n), v(ldv, n)
      include 'limits.inc'
      include 'counts.inc'
      integer i, j, k, sweep
      double precision c, s, t, off, limit, whole, gap, x, y
      logical vec
c     The two new elements of a rotated pair
      double precision p, q, first, second
      first (p, q) = c*p - s*q
      second (p, q) = s*p + c*q
c
      vec = job .eq. jobvec
      info = 0
      if (vec) call ident (v, ldv, n)
      do 60 sweep = 1, maxit
         off = 0d0
         whole = 0d0
         do 10 j = 1, n
            do 10 i = 1, n
               whole = whole + a(i, j)**2
               if (i .ne. j) off = off + a(i, j)**2
   10    continue
         if (off .le. eps**2*whole .or. whole .le. tiny) go to 70
         nsweep = nsweep + 1
         limit = sqrt (off)/(n*2d0**sweep)
         do 50 j = 2, n
            do 40 i = 1, j - 1
               if (abs (a(i, j)) .le. limit) go to 40
               nrot = nrot + 1
               gap = a(j, j) - a(i, i)
               t = 2d0*a(i, j)
               if (gap .lt. 0d0) t = -t
               t = t/(abs (gap) + sqrt (gap**2 + t**2))
               c = 1d0/sqrt (1d0 + t**2)
               s = c*t
c                 columns, then rows
               do 20 k = 1, n
                  x = a(k, i)
                  y = a(k, j)
                  a(k, i) = first (x, y)
                  a(k, j) = second (x, y)
                  if (vec) then
                     x = v(k, i)
                     y = v(k, j)
                     v(k, i) = first (x, y)
                     v(k, j) = second (x, y)
                  end if
   20          continue
               do 30 k = 1, n
                  x = a(i, k)
                  y = a(j, k)
                  a(i, k) = first (x, y)
                  a(j, k) = second (x, y)
   30          continue
               a(i, j) = 0d0
               a(j, i) = 0d0
   40       continue
   50    continue
   60 continue
      info = 1
   70 do 80 i = 1, n
         d(i) = a(i, i)
   80 continue
      call order (d, n, v, ldv, vec)
      end
c
      subroutine trired (a, lda, n, diag, sub, z, ldz)
c
c     z'*a*z is tridiagonal: diag is its diagonal, and sub(k) stands
c     between diag(k) and diag(k + 1).  Column by column, a reflection
c     (1 - beta*u*u') clears what is below the subdiagonal; a receives
c     a - u*w' - w*u', and z is multiplied from the right.
c
      integer lda, n, ldz
      double precision a(lda, n), diag(n), sub(n), z(ldz, n)
      include 'limits.inc'
      integer i, j, k
      double precision u(maxn), w(maxn), beta, norm, t
      call ident (z, ldz, n)
      do 90 k = 1, n - 2
         norm = 0d0
         do 10 i = k + 1, n
            u(i) = a(i, k)
            norm = norm + u(i)**2
   10    continue
         norm = sqrt (norm)
         if (norm .eq. 0d0) go to 90
         if (u(k + 1) .gt. 0d0) norm = -norm
         beta = 1d0/(norm*(norm - u(k + 1)))
         u(k + 1) = u(k + 1) - norm
         a(k + 1, k) = norm
c           w = beta*a*u, less its part along u by half
         t = 0d0
         do 30 i = k + 1, n
            w(i) = 0d0
            do 20 j = k + 1, n
               w(i) = w(i) + beta*a(i, j)*u(j)
   20       continue
            t = t + beta*w(i)*u(i)/2
   30    continue
         do 40 i = k + 1, n
            w(i) = w(i) - t*u(i)
   40    continue
         do 60 j = k + 1, n
            do 50 i = k + 1, n
               a(i, j) = a(i, j) - u(i)*w(j) - w(i)*u(j)
   50       continue
   60    continue
         do 80 i = 1, n
            t = 0d0
            do 70 j = k + 1, n
               t = t + z(i, j)*u(j)
   70       continue
            do 75 j = k + 1, n
               z(i, j) = z(i, j) - beta*t*u(j)
   75       continue
   80    continue
   90 continue
      do 100 k = 1, n
         diag(k) = a(k, k)
         sub(k) = 0d0
         if (k .lt. n) sub(k) = a(k + 1, k)
  100 continue
      end
c
      subroutine triqr (n, d, e, z, ldz, *)
c
c     QR steps for what trired leaves, each a chase of one element from
c     the top to the bottom.  The alternate return is for an eigenvalue
c     that takes too many steps.
c
      integer n, ldz
      double precision d(n), e(n), z(ldz, n)
      include 'limits.inc'
      include 'counts.inc'
      integer i, k, low, high, tries
      double precision c, s, f, g, r, shift, half, x, y, hypot2
      external hypot2
      tries = 0
      high = n
c        From low to high the matrix holds together.
   10 if (high .le. 1) go to 90
      do 20 low = high - 1, 1, -1
         if (abs (e(low)) .le. eps*(abs (d(low)) + abs (d(low + 1))))
     &      go to 30
   20 continue
      low = 0
   30 low = low + 1
      if (low .eq. high) then
         high = high - 1
         tries = 0
         go to 10
      end if
      tries = tries + 1
      if (tries .gt. maxit) return 1
      nqr = nqr + 1
c        The shift: of the last two by two, the eigenvalue near its end.
      half = (d(high - 1) - d(high))/2
      r = e(high - 1)
      shift = d(high)
      if (r .ne. 0d0) shift = shift - r*(r/(half + sign (hypot2 (half,
     &                        r), half)))
      f = d(low) - shift
      g = e(low)
      do 50 i = low, high - 1
         r = hypot2 (f, g)
         c = 1d0
         s = 0d0
         if (r .ne. 0d0) then
            c = f/r
            s = g/r
         end if
         if (i .gt. low) e(i - 1) = r
         x = d(i)
         y = d(i + 1)
         f = 2*c*s*e(i)
         d(i) = c**2*x + f + s**2*y
         d(i + 1) = s**2*x - f + c**2*y
         f = c*s*(y - x) + (c**2 - s**2)*e(i)
         e(i) = f
         if (i .lt. high - 1) then
            g = s*e(i + 1)
            e(i + 1) = c*e(i + 1)
         end if
         do 40 k = 1, n
            x = z(k, i)
            z(k, i) = c*x + s*z(k, i + 1)
            z(k, i + 1) = c*z(k, i + 1) - s*x
   40    continue
   50 continue
      go to 10
   90 call order (d, n, z, ldz, .true.)
      return
      end
c
      double precision function hypot2 (a, b)
      double precision a, b, p, q
      p = max (abs (a), abs (b))
      q = min (abs (a), abs (b))
      if (p .eq. 0d0) then
         hypot2 = 0d0
      else
         hypot2 = p*sqrt (1d0 + (q/p)**2)
      endif
      end
c
      subroutine order (d, n, v, ldv, vec)
c     Sort eigenvalues upwards, and with them the columns of v.
      integer n, ldv, i, j, k
      double precision d(n), v(ldv, *), t
      logical vec
      do 30 i = 1, n - 1
         k = i
         do 10 j = i + 1, n
            if (d(j) .lt. d(k)) k = j
   10    continue
         if (k .eq. i) go to 30
         t = d(i)
         d(i) = d(k)
         d(k) = t
         if (.not. vec) go to 30
         do 20 j = 1, n
            t = v(j, i)
            v(j, i) = v(j, k)
            v(j, k) = t
   20    continue
   30 continue
      return
      end
c
      subroutine ident (v, ldv, n)
      integer ldv, n, i, j
      double precision v(ldv, n)
      do 20 j = 1, n
         do 10 i = 1, n
            v(i, j) = 0d0
   10    continue
         v(j, j) = 1d0
   20 continue
      end
