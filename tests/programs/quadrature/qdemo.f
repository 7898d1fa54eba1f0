c     A driver of the quadrature routines: every integrand with every
c     method that suits it, and the error of each.
      program qdemo
      implicit double precision (a-h, o-z)
      integer neval, ierr, i, n
      common /qcount/ neval
      external f1, f2, f3, f4, g2, circlo, circhi
      dimension x(40), w(40)
      pi = 4*atan(1d0)

      print 100
      neval = 0
      v = simps(f1, 0d0, 1d0, 1d-10, ierr)
      call show ('simpson  exp', v, exp(1d0) - 1, ierr)
      v = simps(f2, -1d0, 1d0, 1d-9, ierr)
      call show ('simpson  runge', v, 0.4d0*atan(5d0), ierr)
      v = simps(f4, 0d0, 1d0, 1d-6, ierr)
      call show ('simpson  sqrt', v, 2d0/3, ierr)
      v = rombrg(f1, 0d0, 1d0, 1d-12, ierr)
      call show ('romberg  exp', v, exp(1d0) - 1, ierr)
      v = rombrg(f2, -1d0, 1d0, 1d-10, ierr)
      call show ('romberg  runge', v, 0.4d0*atan(5d0), ierr)
      do 5 i = 2, 6, 2
         v = tanhsh(f3, 0d0, 1d0, i)
         call show ('tanh-sinh 1/sqrt', v, 2d0, 0)
    5 continue
      n = 4
   10 v = clencr(f1, 0d0, 1d0, n)
      call show ('clenshaw exp', v, exp(1d0) - 1, 0)
      n = n + 4
      if (n - 16) 10, 10, 20
   20 continue

c     Gauss rules directly
      do 40 n = 2, 10, 4
         call gauleg (n, 0d0, 1d0, x, w)
         v = 0
         do 30 i = 1, n
   30    v = v + w(i)*f1(x(i))
         neval = neval + n
         call show ('legendre exp', v, exp(1d0) - 1, 0)
   40 continue
      n = 12
      call gauher (n, x, w)
      v = 0
      do 50 i = 1, n
   50 v = v + w(i)*cos(x(i))
      call show ('hermite  cos', v, sqrt(pi)*exp(-0.25d0), 0)
      write (*, '(1x,''points '',3f14.10/1x,''weights'',3e14.6)')
     &   (x(i), i = 7, 9), (w(i), i = 7, 9)

      call twodim (g2, circlo, circhi, -1d0, 1d0, 40, v, *90)
      call show ('disc area', v, pi, 0)
      call twodim (g2, circlo, circhi, -1d0, 1d0, 50, v, *90)
      stop 'the limit was not seen'
   90 print *, 'too many points were refused, rightly'
  100 format (' method              value             error    calls'/)
      end

      subroutine show (title, value, exact, ierr)
      character title*(*)
      double precision value, exact
      integer ierr, neval
      common /qcount/ neval
      character mark
      mark = ' '
      if (ierr .gt. 0) mark = '*'
      print 10, title, value, value - exact, neval, mark
   10 format (1x, a16, f16.12, 1pd12.2, i9, 1x, a)
      neval = 0
      end

      double precision function f1 (x)
      double precision x
      f1 = exp(x)
      end

      double precision function f2 (x)
      double precision x
      f2 = 1d0/(1d0 + 25d0*x*x)
      end

      double precision function f3 (x)
      double precision x
      f3 = 1d0/sqrt(x)
      end

      double precision function f4 (x)
      double precision x
      f4 = sqrt(x)
      end

      double precision function g2 (x, y)
      double precision x, y
      g2 = 1d0 + 0d0*(x + y)
      end

      double precision function circlo (x)
      double precision x, circhi, s
      s = -1
      go to 1
      entry circhi (x)
      s = 1
    1 circlo = s*sqrt(1 - x*x)
      end
