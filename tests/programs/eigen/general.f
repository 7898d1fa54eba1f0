c     Eigenvalues of general real matrices: balancing, Hessenberg form,
c     double QR steps, and inverse iteration for a vector.
c
      subroutine balanc (a, lda, n, scale)
c
c     Make corresponding rows and columns of about the same size, with
c     factors that are powers of the base, so that no digit is lost.
c
      integer lda, n
      double precision a(lda, n), scale(n)
      integer i, j
      double precision base, base2, c, r, f, g, s
      parameter (base = 2d0, base2 = base**2)
      logical done
      do 10 i = 1, n
         scale(i) = 1d0
   10 continue
   20 done = .true.
      do 80 i = 1, n
         c = 0d0
         r = 0d0
         do 30 j = 1, n
            if (j .eq. i) go to 30
            c = c + abs (a(j, i))
            r = r + abs (a(i, j))
   30    continue
         if (c .eq. 0d0 .or. r .eq. 0d0) go to 80
         f = 1d0
         s = c + r
         g = r/base
   40    if (c .lt. g) then
            f = f*base
            c = c*base2
            go to 40
         end if
         g = r*base
   50    if (c .gt. g) then
            f = f/base
            c = c/base2
            go to 50
         end if
         if ((c + r)/f .lt. 0.95d0*s) then
            done = .false.
            scale(i) = scale(i)*f
            do 60 j = 1, n
               a(i, j) = a(i, j)/f
   60       continue
            do 70 j = 1, n
               a(j, i) = a(j, i)*f
   70       continue
         end if
   80 continue
      if (.not. done) go to 20
      end
c
      subroutine hessen (a, lda, n, perm)
c
c     Upper Hessenberg form by stabilized elementary transformations.
c     perm(m) is the row that was exchanged with row m.  The multipliers
c     stay below the subdiagonal; hessqr does not look at them.
c
      integer lda, n, perm(n), i, j, m
      double precision a(lda, n), x, y
      do 70 m = 2, n - 1
         x = 0d0
         i = m
         do 10 j = m, n
            if (abs (a(j, m - 1)) .gt. abs (x)) then
               x = a(j, m - 1)
               i = j
            end if
   10    continue
         perm(m) = i
         if (i .ne. m) then
            do 20 j = m - 1, n
               y = a(i, j)
               a(i, j) = a(m, j)
               a(m, j) = y
   20       continue
            do 30 j = 1, n
               y = a(j, i)
               a(j, i) = a(j, m)
               a(j, m) = y
   30       continue
         end if
         if (x .eq. 0d0) go to 70
         do 60 i = m + 1, n
            y = a(i, m - 1)
            if (y .ne. 0d0) then
               y = y/x
               a(i, m - 1) = y
               do 40 j = m, n
                  a(i, j) = a(i, j) - y*a(m, j)
   40          continue
               do 50 j = 1, n
                  a(j, m) = a(j, m) + y*a(j, i)
   50          continue
            end if
   60    continue
   70 continue
      end
c
      subroutine hessqr (h, ldh, n, w, info)
c
c     The eigenvalues of a Hessenberg matrix, as complex numbers held in
c     pairs of elements of w: w(1, k) + i*w(2, k).  (The caller may keep
c     them in an array of single precision complex numbers only if he
c     converts them.)  info = k if the k-th one was not found.
c
      integer ldh, n, info
      double precision h(ldh, n), w(2, n)
      include 'limits.inc'
      include 'counts.inc'
      integer en, i, its, j, k, l, m, last
      double precision norm, p, q, r, s, t, x, y, z, ww
      info = 0
      norm = 0d0
      do 20 i = 1, n
         do 10 j = max (i - 1, 1), n
            norm = norm + abs (h(i, j))
   10    continue
   20 continue
      t = 0d0
      en = n
   30 if (en .lt. 1) return
      its = 0
c        Look for a small element next to the diagonal.
   40 do 50 l = en, 2, -1
         s = abs (h(l - 1, l - 1)) + abs (h(l, l))
         if (s .eq. 0d0) s = norm
         if (abs (h(l, l - 1)) .le. eps*s) then
            h(l, l - 1) = 0d0
            go to 60
         end if
   50 continue
      l = 1
   60 x = h(en, en)
      if (l .eq. en) then
c           one root
         w(1, en) = x + t
         w(2, en) = 0d0
         en = en - 1
         go to 30
      end if
      y = h(en - 1, en - 1)
      ww = h(en, en - 1)*h(en - 1, en)
      if (l .eq. en - 1) then
c           two roots
         p = 0.5d0*(y - x)
         q = p**2 + ww
         z = sqrt (abs (q))
         x = x + t
         if (q .ge. 0d0) then
            z = p + sign (z, p)
            w(1, en - 1) = x + z
            w(1, en) = w(1, en - 1)
            if (z .ne. 0d0) w(1, en) = x - ww/z
            w(2, en - 1) = 0d0
            w(2, en) = 0d0
         else
            w(1, en - 1) = x + p
            w(1, en) = x + p
            w(2, en - 1) = z
            w(2, en) = -z
         end if
         en = en - 2
         go to 30
      end if
      if (its .eq. maxit) then
         info = en
         return
      end if
c        An exceptional shift now and then.
      if (mod (its, 10) .eq. 9) then
         t = t + x
         do 70 i = 1, en
            h(i, i) = h(i, i) - x
   70    continue
         s = abs (h(en, en - 1)) + abs (h(en - 1, en - 2))
         x = 0.75d0*s
         y = x
         ww = -0.4375d0*s**2
         nreset = nreset + 1
      end if
      its = its + 1
      nqr = nqr + 1
c        The row to begin with.
      do 80 m = en - 2, l, -1
         z = h(m, m)
         r = x - z
         s = y - z
         p = (r*s - ww)/h(m + 1, m) + h(m, m + 1)
         q = h(m + 1, m + 1) - z - r - s
         r = h(m + 2, m + 1)
         s = abs (p) + abs (q) + abs (r)
         p = p/s
         q = q/s
         r = r/s
         if (m .eq. l) go to 90
         if (abs (h(m, m - 1))*(abs (q) + abs (r)) .le. eps*abs (p)*
     &       (abs (h(m - 1, m - 1)) + abs (z) + abs (h(m + 1, m + 1))))
     &       go to 90
   80 continue
   90 do 100 i = m + 2, en
         h(i, i - 2) = 0d0
         if (i .ne. m + 2) h(i, i - 3) = 0d0
  100 continue
c        The double step.
      do 150 k = m, en - 1
         last = min (k + 3, en)
         if (k .ne. m) then
            p = h(k, k - 1)
            q = h(k + 1, k - 1)
            r = 0d0
            if (k .ne. en - 1) r = h(k + 2, k - 1)
            x = abs (p) + abs (q) + abs (r)
            if (x .eq. 0d0) go to 150
            p = p/x
            q = q/x
            r = r/x
         end if
         s = sign (sqrt (p**2 + q**2 + r**2), p)
         if (k .ne. m) then
            h(k, k - 1) = -s*x
         else if (l .ne. m) then
            h(k, k - 1) = -h(k, k - 1)
         end if
         p = p + s
         x = p/s
         y = q/s
         z = r/s
         q = q/p
         r = r/p
         do 120 j = k, en
            p = h(k, j) + q*h(k + 1, j)
            if (k .ne. en - 1) then
               p = p + r*h(k + 2, j)
               h(k + 2, j) = h(k + 2, j) - p*z
            end if
            h(k + 1, j) = h(k + 1, j) - p*y
            h(k, j) = h(k, j) - p*x
  120    continue
         do 130 i = l, last
            p = x*h(i, k) + y*h(i, k + 1)
            if (k .ne. en - 1) then
               p = p + z*h(i, k + 2)
               h(i, k + 2) = h(i, k + 2) - p*r
            end if
            h(i, k + 1) = h(i, k + 1) - p*q
            h(i, k) = h(i, k) - p
  130    continue
  150 continue
      go to 40
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
