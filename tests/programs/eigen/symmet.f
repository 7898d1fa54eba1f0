c     Eigenvalues and eigenvectors of real symmetric matrices, by the
c     method of Jacobi and by tridiagonal reduction followed by the QL
c     iteration with implicit shifts.
c
      subroutine jacobi (job, a, lda, n, d, v, ldv, info)
c
c     job = 'V'  eigenvalues only; v is not used
c     job = 'X'  eigenvectors as well, in the columns of v
c
c     The upper triangle of a is destroyed; the eigenvalues are put into
c     d, in ascending order.  info = 1 if there were too many sweeps.
c
      character job*1
      integer lda, n, ldv, info
      double precision a(lda, n), d(n), v(ldv, n)
      include 'limits.inc'
      include 'counts.inc'
      integer i, j, k, sweep
      double precision b(maxn), z(maxn), off, g, h, t, theta, c, s, tau,
     &                 thresh
      logical vec
c     One step of a rotation, on a pair of numbers
      double precision p, q, low, high
      low (p, q) = p - s*(q + p*tau)
      high (p, q) = q + s*(p - q*tau)
c
      vec = job .eq. jobvec
      info = 0
      if (vec) call ident (v, ldv, n)
      do 10 i = 1, n
         d(i) = a(i, i)
         b(i) = d(i)
         z(i) = 0
   10 continue
      do 100 sweep = 1, maxit
         off = 0d0
         do 30 j = 2, n
            do 20 i = 1, j - 1
               off = off + abs (a(i, j))
   20       continue
   30    continue
         if (off .le. tiny) go to 110
         nsweep = nsweep + 1
         thresh = 0d0
         if (sweep .lt. 4) thresh = 0.2d0*off/n**2
         do 80 i = 1, n - 1
            do 70 j = i + 1, n
               g = 100d0*abs (a(i, j))
               if (sweep .gt. 4 .and. abs (d(i)) + g .eq. abs (d(i))
     &             .and. abs (d(j)) + g .eq. abs (d(j))) then
                  a(i, j) = 0d0
               else if (abs (a(i, j)) .gt. thresh) then
                  h = d(j) - d(i)
                  if (abs (h) + g .eq. abs (h)) then
                     t = a(i, j)/h
                  else
                     theta = 0.5d0*h/a(i, j)
                     t = 1d0/(abs (theta) + sqrt (1d0 + theta**2))
                     if (theta .lt. 0d0) t = -t
                  end if
                  c = 1d0/sqrt (1d0 + t**2)
                  s = t*c
                  tau = s/(1d0 + c)
                  h = t*a(i, j)
                  z(i) = z(i) - h
                  z(j) = z(j) + h
                  d(i) = d(i) - h
                  d(j) = d(j) + h
                  a(i, j) = 0d0
                  do 35 k = 1, i - 1
                     g = a(k, i)
                     h = a(k, j)
                     a(k, i) = low (g, h)
                     a(k, j) = high (g, h)
   35             continue
                  do 40 k = i + 1, j - 1
                     g = a(i, k)
                     h = a(k, j)
                     a(i, k) = low (g, h)
                     a(k, j) = high (g, h)
   40             continue
                  do 50 k = j + 1, n
                     g = a(i, k)
                     h = a(j, k)
                     a(i, k) = low (g, h)
                     a(j, k) = high (g, h)
   50             continue
                  if (vec) then
                     do 60 k = 1, n
                        g = v(k, i)
                        h = v(k, j)
                        v(k, i) = low (g, h)
                        v(k, j) = high (g, h)
   60                continue
                  end if
                  nrot = nrot + 1
               end if
   70       continue
   80    continue
         do 90 i = 1, n
            b(i) = b(i) + z(i)
            d(i) = b(i)
            z(i) = 0d0
   90    continue
  100 continue
      info = 1
  110 call order (d, n, v, ldv, vec)
      end
c
      subroutine trired (a, lda, n, d, e)
c
c     Reduce to tridiagonal form by reflections, which are kept in a;
c     finally a is replaced by their product.  d is the diagonal and
c     e(2), ..., e(n) are next to it.
c
      integer lda, n
      double precision a(lda, n), d(n), e(n)
      integer i, j, k, l
      double precision f, g, h, hh, scale
      do 80 i = n, 2, -1
         l = i - 1
         h = 0d0
         scale = 0d0
         do 10 k = 1, l
            scale = scale + abs (a(i, k))
   10    continue
         if (l .eq. 1 .or. scale .eq. 0d0) then
            e(i) = a(i, l)
            go to 70
         end if
         do 20 k = 1, l
            a(i, k) = a(i, k)/scale
            h = h + a(i, k)**2
   20    continue
         f = a(i, l)
         g = -sign (sqrt (h), f)
         e(i) = scale*g
         h = h - f*g
         a(i, l) = f - g
         f = 0d0
         do 50 j = 1, l
            a(j, i) = a(i, j)/h
            g = 0d0
            do 30 k = 1, j
   30       g = g + a(j, k)*a(i, k)
            do 40 k = j + 1, l
   40       g = g + a(k, j)*a(i, k)
            e(j) = g/h
            f = f + e(j)*a(i, j)
   50    continue
         hh = f/(h + h)
         do 60 j = 1, l
            f = a(i, j)
            g = e(j) - hh*f
            e(j) = g
            do 55 k = 1, j
               a(j, k) = a(j, k) - f*e(k) - g*a(i, k)
   55       continue
   60    continue
   70    d(i) = h
   80 continue
c        The product of the reflections.
      d(1) = 0d0
      e(1) = 0d0
      do 130 i = 1, n
         l = i - 1
         if (d(i) .ne. 0d0) then
            do 110 j = 1, l
               g = 0d0
               do 90 k = 1, l
                  g = g + a(i, k)*a(k, j)
   90          continue
               do 100 k = 1, l
                  a(k, j) = a(k, j) - g*a(k, i)
  100          continue
  110       continue
         end if
         d(i) = a(i, i)
         a(i, i) = 1d0
         do 120 j = 1, l
            a(i, j) = 0d0
            a(j, i) = 0d0
  120    continue
  130 continue
      end
c
      subroutine triql (n, d, e, z, ldz, *)
c
c     QL iteration for what trired leaves.  The alternate return is for
c     an eigenvalue that takes too many iterations.
c
      integer n, ldz
      double precision d(n), e(n), z(ldz, n)
      include 'limits.inc'
      include 'counts.inc'
      integer i, k, l, m, iter
      double precision b, c, dd, f, g, p, r, s, hypot2
      external hypot2
      do 10 i = 2, n
         e(i - 1) = e(i)
   10 continue
      e(n) = 0d0
      do 100 l = 1, n
         iter = 0
   20    do 30 m = l, n - 1
            dd = abs (d(m)) + abs (d(m + 1))
            if (abs (e(m)) .le. eps*dd) go to 40
   30    continue
         m = n
   40    if (m .eq. l) go to 100
         if (iter .eq. maxit) return 1
         iter = iter + 1
         nqr = nqr + 1
         g = (d(l + 1) - d(l))/(2d0*e(l))
         r = hypot2 (g, 1d0)
         g = d(m) - d(l) + e(l)/(g + sign (r, g))
         s = 1d0
         c = 1d0
         p = 0d0
         do 60 i = m - 1, l, -1
            f = s*e(i)
            b = c*e(i)
            r = hypot2 (f, g)
            e(i + 1) = r
            if (r .eq. 0d0) then
c                 underflow: the matrix falls into two
               d(i + 1) = d(i + 1) - p
               e(m) = 0d0
               nreset = nreset + 1
               go to 20
            end if
            s = f/r
            c = g/r
            g = d(i + 1) - p
            r = (d(i) - g)*s + 2d0*c*b
            p = s*r
            d(i + 1) = g + p
            g = c*r - b
            do 50 k = 1, n
               f = z(k, i + 1)
               z(k, i + 1) = s*z(k, i) + c*f
               z(k, i) = c*z(k, i) - s*f
   50       continue
   60    continue
         d(l) = d(l) - p
         e(l) = g
         e(m) = 0d0
         go to 20
  100 continue
      call order (d, n, z, ldz, .true.)
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
