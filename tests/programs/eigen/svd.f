c     The singular value decomposition by rotations of pairs of columns,
c     and what it is good for.
c
      subroutine svd (a, lda, m, n, s, v, ldv, info)
c
c     a = u*diag(s)*v' where m >= n: u replaces a, and the columns of v
c     are the right singular vectors.  s is in descending order.
c
      integer lda, m, n, ldv, info
      double precision a(lda, n), s(n), v(ldv, n)
      include 'limits.inc'
      include 'counts.inc'
      integer i, j, k, sweep, nr
      double precision alpha, beta, gamma, zeta, t, c, sn, x
      call ident (v, ldv, n)
      info = 0
      do 60 sweep = 1, maxit
         nr = 0
         do 50 i = 1, n - 1
            do 40 j = i + 1, n
               alpha = 0d0
               beta = 0d0
               gamma = 0d0
               do 10 k = 1, m
                  alpha = alpha + a(k, i)**2
                  beta = beta + a(k, j)**2
                  gamma = gamma + a(k, i)*a(k, j)
   10          continue
               if (abs (gamma) .le. eps*sqrt (alpha*beta)) go to 40
               if (gamma .eq. 0d0) goto 40
               nr = nr + 1
               zeta = (beta - alpha)/(2*gamma)
               t = sign (1d0, zeta)/(abs (zeta) + sqrt (1 + zeta**2))
               c = 1/sqrt (1 + t**2)
               sn = c*t
               do 20 k = 1, m
                  x = a(k, i)
                  a(k, i) = c*x - sn*a(k, j)
                  a(k, j) = sn*x + c*a(k, j)
   20          continue
               do 30 k = 1, n
                  x = v(k, i)
                  v(k, i) = c*x - sn*v(k, j)
                  v(k, j) = sn*x + c*v(k, j)
   30          continue
   40       continue
   50    continue
         nrot = nrot + nr
         nsweep = nsweep + 1
         if (nr .eq. 0) go to 70
   60 continue
      info = 1
   70 do 90 j = 1, n
         x = 0d0
         do 80 k = 1, m
            x = x + a(k, j)**2
   80    continue
         s(j) = sqrt (x)
   90 continue
      do 140 j = 1, n
         i = j
         do 100 k = j + 1, n
            if (s(k) .gt. s(i)) i = k
  100    continue
         if (i .ne. j) then
            x = s(i)
            s(i) = s(j)
            s(j) = x
            do 110 k = 1, m
               x = a(k, i)
               a(k, i) = a(k, j)
               a(k, j) = x
  110       continue
            do 120 k = 1, n
               x = v(k, i)
               v(k, i) = v(k, j)
               v(k, j) = x
  120       continue
         end if
         if (s(j) .gt. 0d0) then
            do 130 k = 1, m
               a(k, j) = a(k, j)/s(j)
  130       continue
         end if
  140 continue
      end
c
      integer function svrank (s, n, tol)
c     How many singular values are not negligible; and, by its entries,
c     svcond, the ratio of the extreme ones, and svnorm, the largest.
      integer n, k
      double precision s(n), tol, svcond, svnorm
c     (the functions of different types do not share their values)
      do 10 k = 1, n
         if (s(k) .le. tol*s(1)) go to 20
   10 continue
   20 svrank = k - 1
      return
      entry svcond (s, n)
      if (s(n) .gt. 0d0) then
         svcond = s(1)/s(n)
      else
         svcond = -1d0
      end if
      return
      entry svnorm (s, n)
      svnorm = s(1)
      return
      end
c
      subroutine pseudo (u, ldu, m, n, s, v, ldv, tol, x, ldx)
c     The pseudoinverse, an array of n rows and m columns.
      integer ldu, m, n, ldv, ldx, i, j, k, r
      double precision u(ldu, n), s(n), v(ldv, n), tol, x(ldx, m), t
      integer svrank
      external svrank
      r = svrank (s, n, tol)
      do 30 j = 1, m
         do 20 i = 1, n
            t = 0d0
            do 10 k = 1, r
               t = t + v(i, k)*u(j, k)/s(k)
   10       continue
            x(i, j) = t
   20    continue
   30 continue
      end
