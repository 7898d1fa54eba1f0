c     Quadrature: integrals of one and two variables.
c
c     simps    adaptive Simpson rule, without recursion
c     rombrg   Romberg's scheme
c     gauleg   points and weights of Gauss and Legendre
c     gauher   points and weights of Gauss and Hermite
c     tanhsh   the double exponential rule, for singular ends
c     clencr   Clenshaw and Curtis
c     twodim   product of Gauss rules over a region between two curves
c
c     All in double precision.  The number of evaluations is counted in
c     the common block /qcount/, to which main programs may look.

      double precision function simps (f, a, b, eps, ierr)
      double precision f, a, b, eps
      integer ierr
      external f
      integer neval, maxstk, top
      parameter (maxstk = 60)
      common /qcount/ neval
c     The stack holds intervals to be done: left end, width, the three
c     values of f, Simpson's rule over it, and the tolerance left.
      double precision xl(maxstk), h(maxstk), f1(maxstk), f3(maxstk),
     &    f5(maxstk), s(maxstk), tol(maxstk)
      double precision f2, f4, sl, sr, x, w, e, total, fa, fm, fb, fc,
     &    whole
c     Simpson's rule as a statement function
      double precision rule, u, v, z, t
      rule(u, v, z, t) = t/6.0d0*(u + 4.0d0*v + z)

      ierr = 0
      total = 0.0d0
      neval = neval + 3
      top = 1
      xl(1) = a
      h(1) = b - a
      f1(1) = f(a)
      f3(1) = f(a + 0.5d0*(b - a))
      f5(1) = f(b)
      s(1) = rule(f1(1), f3(1), f5(1), h(1))
      tol(1) = eps

   10 if (top .eq. 0) go to 20
         x = xl(top)
         w = h(top)
         fa = f1(top)
         fm = f3(top)
         fb = f5(top)
         fc = tol(top)
         whole = s(top)
         top = top - 1
         f2 = f(x + 0.25d0*w)
         f4 = f(x + 0.75d0*w)
         neval = neval + 2
         sl = rule(fa, f2, fm, 0.5d0*w)
         sr = rule(fm, f4, fb, 0.5d0*w)
         e = (sl + sr - whole)/15.0d0
         if (abs(e) .le. fc) then
            total = total + sl + sr + e
         else if (top + 2 .gt. maxstk) then
            ierr = ierr + 1
            total = total + sl + sr
         else
            top = top + 1
            xl(top) = x + 0.5d0*w
            h(top) = 0.5d0*w
            f1(top) = fm
            f3(top) = f4
            f5(top) = fb
            s(top) = sr
            tol(top) = 0.5d0*fc
            top = top + 1
            xl(top) = x
            h(top) = 0.5d0*w
            f1(top) = fa
            f3(top) = f2
            f5(top) = fm
            s(top) = sl
            tol(top) = 0.5d0*fc
         end if
      go to 10
   20 simps = total
      return
      end

c----------------------------------------------------------------------
      double precision function rombrg (f, a, b, eps, ierr)
      double precision f, a, b, eps, h, sum, old
      integer ierr, i, j, k, neval, maxk, npts
      parameter (maxk = 18)
      common /qcount/ neval
      double precision t(0:maxk)

      ierr = 0
      h = b - a
      t(0) = 0.5d0*h*(f(a) + f(b))
      neval = neval + 2
      npts = 1
      do 30 k = 1, maxk
         sum = 0.0d0
         do 10 i = 1, npts
   10    sum = sum + f(a + (i - 0.5d0)*h)
         neval = neval + npts
c        A row of the triangle overwrites the one before.
         old = t(0)
         t(0) = 0.5d0*(t(0) + h*sum)
         do 20 j = 1, k
            sum = t(j - 1) + (t(j - 1) - old)/(4.0d0**j - 1.0d0)
            if (j .lt. k) old = t(j)
            t(j) = sum
   20    continue
         h = 0.5d0*h
         npts = 2*npts
         if (k .ge. 4 .and. abs(t(k) - t(k-1)) .le. eps) then
            rombrg = t(k)
            return
         end if
   30 continue
      rombrg = t(maxk)
      ierr = 1
      end

c----------------------------------------------------------------------
c     gauleg - n points x and weights w on (a, b), by Newton's method
c     on the Legendre polynomial.  The entry gauher does the same for
c     the weight exp(-x*x) on the whole line.
      subroutine gauleg (n, a, b, x, w)
      integer n, i, j, it, m
      double precision a, b, x(*), w(*)
      double precision z, z1, p1, p2, p3, dp, half, mid, pi
      logical hermit
      parameter (pi = 3.14159265358979324d0)
      hermit = .false.
      go to 5

      entry gauher (n, x, w)
      hermit = .true.

    5 m = (n + 1)/2
      z = 0.0d0
      do 40 i = 1, m
c        A first guess of the i-th zero, counted from the right
         if (.not. hermit) then
            z = cos(pi*(i - 0.25d0)/(n + 0.5d0))
         else if (i .eq. 1) then
            z = sqrt(2.0d0*n + 1) - 1.85575d0*(2.0d0*n + 1)**(-0.16667)
         else if (i .eq. 2) then
            z = z - 1.14d0*dble(n)**0.426d0/z
         else if (i .eq. 3) then
            z = 1.86d0*z - 0.86d0*x(n)
         else if (i .eq. 4) then
            z = 1.91d0*z - 0.91d0*x(n-1)
         else
            z = 2.0d0*z - x(n+3-i)
         end if
         do 20 it = 1, 60
            p1 = 1.0d0
            if (hermit) p1 = pi**(-0.25d0)
            p2 = 0.0d0
            do 10 j = 1, n
               p3 = p2
               p2 = p1
               if (hermit) then
                  p1 = z*sqrt(2.0d0/j)*p2 - sqrt(dble(j-1)/j)*p3
               else
                  p1 = ((2*j - 1)*z*p2 - (j - 1)*p3)/j
               end if
   10       continue
            if (hermit) then
               dp = sqrt(2.0d0*n)*p2
            else
               dp = n*(z*p1 - p2)/(z*z - 1.0d0)
            end if
            z1 = z
            z = z1 - p1/dp
            if (abs(z - z1) .le. 3.0d-15*(1.0d0 + abs(z))) go to 30
   20    continue
   30    if (hermit) then
            x(n+1-i) = z
            x(i) = -z
            w(i) = 2.0d0/(dp*dp)
         else
            half = 0.5d0*(b - a)
            mid = 0.5d0*(b + a)
            x(i) = mid - half*z
            x(n+1-i) = mid + half*z
            w(i) = 2.0d0*half/((1.0d0 - z*z)*dp*dp)
         end if
         w(n+1-i) = w(i)
   40 continue
      end

c----------------------------------------------------------------------
c     tanhsh - integral over (a, b) of an f that may be infinite at the
c     ends; it is never evaluated there.
      function tanhsh (f, a, b, level)
      double precision tanhsh, f, a, b
      integer level
      integer k, neval
      double precision h, t, u, x, w, sum, d, hpi
      parameter (hpi = 1.57079632679489662d0)
      common /qcount/ neval
      external f
      h = 2.0d0**(-level)
      d = 0.5d0*(b - a)
      sum = hpi*f(a + d)
      neval = neval + 1
      k = 0
   10 k = k + 1
         t = k*h
         u = hpi*sinh(t)
         if (u .gt. 300.0d0) go to 20
         w = hpi*cosh(t)/cosh(u)**2
c        the distance from the end, without cancellation
         x = d*exp(-u)/cosh(u)
         if (w .lt. 1.0d-17 .or. a + x .eq. a .or. b - x .eq. b)
     &      goto 20
         sum = sum + w*(f(a + x) + f(b - x))
         neval = neval + 2
      goto 10
   20 tanhsh = sum*h*d
      end

c----------------------------------------------------------------------
      double precision function clencr (f, a, b, n)
c     Clenshaw-Curtis with n + 1 points, n even and not above 64
      integer n, i, k, neval
      double precision f, a, b, v(0:64), c, pin, sum
      external f
      common /qcount/ neval
      if (mod(n, 2) .ne. 0 .or. n .gt. 64 .or. n .le. 0) then
         clencr = 0.0d0
         return
      endif
      pin = 4.0d0*atan(1.0d0)/n
      do 10 i = 0, n
   10 v(i) = f(0.5d0*((a + b) + (b - a)*cos(i*pin)))
      neval = neval + n + 1
      sum = 0.0d0
      do 30 k = 0, n, 2
         c = 0.5d0*(v(0) + v(n))
         do 20 i = 1, n - 1
   20    c = c + v(i)*cos(k*i*pin)
         if (k .eq. 0 .or. k .eq. n) c = 0.5d0*c
         sum = sum + 2.0d0*c/(1.0d0 - dble(k)**2)
   30 continue
      clencr = sum*(b - a)/n
      end

c----------------------------------------------------------------------
      subroutine twodim (f, ylow, yhigh, a, b, n, result, *)
c     integral of f(x, y) for x in (a, b) and y between two curves
      integer n, maxn, i, j
      parameter (maxn = 40)
      double precision f, ylow, yhigh, a, b, result, sum
      double precision x(maxn), wx(maxn), y(maxn), wy(maxn)
      external f, ylow, yhigh
      if (n .gt. maxn) return 1
      call gauleg (n, a, b, x, wx)
      result = 0
      do 20, i = 1, n
         call gauleg (n, ylow(x(i)), yhigh(x(i)), y, wy)
         sum = 0
         do 10, j = 1, n
            sum = sum + wy(j)*f(x(i), y(j))
   10    continue
         result = result + wx(i)*sum
   20 continue
      end
