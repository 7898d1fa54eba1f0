c     Eigenvalues of general real matrices: scaling, Hessenberg form,
c     double QR steps, and inverse iteration for a vector.
c
      subroutine evenup (a, lda, n, scale)
c
c     Give corresponding rows and columns about equal size, by factors
c     that are powers of two, so that no digit is lost.
c
      integer lda, n
      double precision a(lda, n), scale(n)
      integer i, j, pass, kpow
      double precision row, col, f
      logical done
      do 10 i = 1, n
         scale(i) = 1d0
   10 continue
      do 50 pass = 1, 20
         done = .true.
         do 40 i = 1, n
            row = -abs (a(i, i))
            col = row
            do 20 j = 1, n
               row = row + abs (a(i, j))
               col = col + abs (a(j, i))
   20       continue
            if (min (row, col) .le. 0d0) go to 40
            kpow = nint (log (row/col)/log (4d0))
            if (kpow .eq. 0) go to 40
            done = .false.
            f = 2d0**kpow
            scale(i) = scale(i)*f
            do 30 j = 1, n
               a(i, j) = a(i, j)/f
   30       continue
            do 35 j = 1, n
               a(j, i) = a(j, i)*f
   35       continue
   40    continue
         if (done) return
   50 continue
      end
c
      subroutine mirror (m, x, u, beta)
c     The reflection 1 - beta*u*u' of m elements that takes x to a
c     multiple of the first unit vector.
      integer m, i
      double precision x(m), u(m), beta, norm, big
      big = 0d0
      do 10 i = 1, m
         u(i) = x(i)
         big = max (big, abs (x(i)))
   10 continue
      beta = 0d0
      if (big .eq. 0d0) return
      norm = 0d0
      do 20 i = 1, m
         u(i) = u(i)/big
         norm = norm + u(i)**2
   20 continue
      u(1) = u(1) + sign (sqrt (norm), u(1))
      norm = 0d0
      do 30 i = 1, m
         norm = norm + u(i)**2
   30 continue
      beta = 2d0/norm
      end
c
      subroutine reflec (h, ldh, m, n, u, beta)
c     h := (1 - beta*u*u')*h, where h has m rows and n columns; from the
c     right, with n elements in u, by the entry reflcr.
      integer ldh, m, n, i, j
      double precision h(ldh, *), u(*), beta, t
      do 30 j = 1, n
         t = 0d0
         do 10 i = 1, m
            t = t + u(i)*h(i, j)
   10    continue
         t = beta*t
         do 20 i = 1, m
            h(i, j) = h(i, j) - t*u(i)
   20    continue
   30 continue
      return
c
      entry reflcr (h, ldh, m, n, u, beta)
      do 60 i = 1, m
         t = 0d0
         do 40 j = 1, n
            t = t + h(i, j)*u(j)
   40    continue
         t = beta*t
         do 50 j = 1, n
            h(i, j) = h(i, j) - t*u(j)
   50    continue
   60 continue
      end
c
      subroutine hessen (a, lda, n)
c
c     Upper Hessenberg form by reflections of whole columns.
c
      integer lda, n, i, k
      double precision a(lda, n), beta
      include 'limits.inc'
      double precision u(maxn)
      do 20 k = 1, n - 2
         call mirror (n - k, a(k + 1, k), u, beta)
         if (beta .eq. 0d0) go to 20
         call reflec (a(k + 1, k), lda, n - k, n - k + 1, u, beta)
         call reflcr (a(1, k + 1), lda, n, n - k, u, beta)
         do 10 i = k + 2, n
            a(i, k) = 0d0
   10    continue
   20 continue
      end
c
      subroutine hessqr (h, ldh, n, w, info)
c
c     The eigenvalues of a Hessenberg matrix, as complex numbers kept in
c     pairs of elements of w: w(1, k) + i*w(2, k).  Two shifts at a time
c     are applied, which keeps the arithmetic real: their first column
c     makes a bulge of three rows, and reflections push it down and out.
c     info = k if the k-th one was not found.
c
      integer ldh, n, info
      double precision h(ldh, n), w(2, n)
      include 'limits.inc'
      include 'counts.inc'
      integer i, k, m, low, high, tries, left, last
      double precision sum, prod, x(3), u(3), beta, mean, root, wild
      info = 0
      high = n
      tries = 0
   10 if (high .lt. 1) return
c        From low to high no element below the diagonal is small.
      do 20 low = high, 2, -1
         if (abs (h(low, low - 1)) .le. eps*(abs (h(low, low)) +
     &       abs (h(low - 1, low - 1)))) then
            h(low, low - 1) = 0d0
            go to 30
         end if
   20 continue
      low = 1
   30 if (low .eq. high) then
         w(1, high) = h(high, high)
         w(2, high) = 0d0
         high = high - 1
         tries = 0
         go to 10
      end if
c        Sum and product of the eigenvalues at the end
      sum = h(high - 1, high - 1) + h(high, high)
      prod = h(high - 1, high - 1)*h(high, high) -
     &       h(high - 1, high)*h(high, high - 1)
      if (low .eq. high - 1) then
         mean = sum/2
         root = ((h(high - 1, high - 1) - h(high, high))/2)**2
     &        + h(high - 1, high)*h(high, high - 1)
         w(1, high - 1) = mean
         w(1, high) = mean
         w(2, high - 1) = 0d0
         w(2, high) = 0d0
         if (root .lt. 0d0) then
            w(2, high - 1) = sqrt (-root)
            w(2, high) = -sqrt (-root)
         else
            w(1, high - 1) = mean + sign (sqrt (root), mean)
            w(1, high) = mean - sign (sqrt (root), mean)
            if (w(1, high - 1) .ne. 0d0) w(1, high) =
     &         prod/w(1, high - 1)
         end if
         high = high - 2
         tries = 0
         go to 10
      end if
      tries = tries + 1
      if (tries .gt. maxit) then
         info = high
         return
      end if
      nqr = nqr + 1
      if (mod (tries, 8) .eq. 0) then
c           a different shift, to break a cycle
         wild = abs (h(high, high - 1)) + abs (h(high - 1, high - 2))
         sum = 1.4d0*wild
         prod = wild**2
         nreset = nreset + 1
      end if
      x(1) = h(low, low)*(h(low, low) - sum) + prod
     &     + h(low, low + 1)*h(low + 1, low)
      x(2) = h(low + 1, low)*(h(low, low) + h(low + 1, low + 1) - sum)
      x(3) = h(low + 1, low)*h(low + 2, low + 1)
      do 60 k = low, high - 1
         m = min (3, high - k + 1)
         left = max (k - 1, low)
         if (k .gt. low) then
            do 40 i = 1, m
               x(i) = h(k + i - 1, k - 1)
   40       continue
         end if
         call mirror (m, x, u, beta)
         if (beta .eq. 0d0) go to 60
         last = min (k + 3, high)
         call reflec (h(k, left), ldh, m, high - left + 1, u, beta)
         call reflcr (h(low, k), ldh, last - low + 1, m, u, beta)
         if (k .gt. low) then
            do 50 i = k + 1, k + m - 1
               h(i, k - 1) = 0d0
   50       continue
         end if
   60 continue
      go to 10
      end
c
      subroutine invit (a, lda, n, shift, x, work, ldw, lambda, *)
c
c     Inverse iteration with a fixed shift.  x begins with whatever the
c     caller puts in, and lambda is the Rayleigh quotient.
c
      integer lda, n, ldw
      double precision a(lda, n), shift, x(n), work(ldw, *), lambda
      include 'limits.inc'
      include 'counts.inc'
      integer i, j, k, l, iter
      double precision s, t, old, y(maxn)
      lambda = 0d0
      do 200 iter = 1, maxit
         old = lambda
         do 20 j = 1, n
            do 10 i = 1, n
               work(i, j) = a(i, j)
   10       continue
            work(j, j) = work(j, j) - shift
            y(j) = x(j)
   20    continue
         do 90 k = 1, n
            l = k
            do 30 i = k + 1, n
               if (abs (work(i, k)) .gt. abs (work(l, k))) l = i
   30       continue
            if (l .ne. k) then
               do 40 j = k, n
                  t = work(k, j)
                  work(k, j) = work(l, j)
                  work(l, j) = t
   40          continue
               t = y(k)
               y(k) = y(l)
               y(l) = t
            end if
            if (work(k, k) .eq. 0d0) work(k, k) = eps*(abs (shift) +1d0)
            do 60 i = k + 1, n
               t = work(i, k)/work(k, k)
               if (t .eq. 0d0) go to 60
               do 50 j = k + 1, n
                  work(i, j) = work(i, j) - t*work(k, j)
   50          continue
               y(i) = y(i) - t*y(k)
   60       continue
   90    continue
         s = 0d0
         do 110 i = n, 1, -1
            t = y(i)
            do 100 j = i + 1, n
               t = t - work(i, j)*y(j)
  100       continue
            y(i) = t/work(i, i)
            s = s + y(i)**2
  110    continue
         s = sqrt (s)
         if (s .eq. 0d0) return 1
         do 120 i = 1, n
            x(i) = y(i)/s
  120    continue
         lambda = 0d0
         do 140 i = 1, n
            t = 0d0
            do 130 j = 1, n
               t = t + a(i, j)*x(j)
  130       continue
            lambda = lambda + t*x(i)
  140    continue
         if (abs (lambda - old) .le. 1d3*eps*max (abs (lambda), 1d0))
     &      return
  200 continue
      return 1
      end
