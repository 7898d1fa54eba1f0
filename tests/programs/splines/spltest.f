! Tests of the splines and of the older interpolation.
      program spltest
      use spline_types, only: wp, spline, point, operator (+),
     &                        operator (*)
      use spline_work, fit => spline_fit, at => spline_value
      implicit none
      interface
         function aitken (x, y, n, t, err)
            integer n
            double precision x(n), y(n), t, err, aitken
         end function aitken
         double precision function hermit (x0, y0, s0, x1, y1, s1, t)
            double precision x0, y0, s0, x1, y1, s1, t
         end function hermit
         function lookup (t)
            real t, lookup
         end function lookup
      end interface
      real bilin
      external divdif, divval, bilin

      integer, parameter :: n = 13
      real (wp), parameter :: pi = 3.14159265358979324_wp
      type (spline) :: s
      real (wp) :: x(n), y(n), d(n), err, v, t
      real :: table(4, 3)
      type (point) :: p, q
      character (24) :: why
      integer :: i, bad

      bad = 0
      x = (/ (2*pi*(i - 1)/(n - 1), i = 1, n) /)
      y = sin (x)
      y(n) = y(1)

      call fit (s, x, y)
      call report ('natural', 2.0e-3_wp)
      call spline_free (s)
      call fit (s, x, y, left = 1.0_wp, right = 1.0_wp)
      call report ('clamped', 1.0e-3_wp)
      call spline_free (s)
      call fit (s, x, y, period = .true.)
      call report ('periodic', 1.0e-3_wp)
      print '(1x, a, 2f12.8)', 'slope, area', spline_slope (s, 0.0_wp),
     &   spline_area (s)
      call spline_free (s)

! Fits that must fail
      call fit (s, x(1:2), y(1:2))
      if (spline_ok (why)) bad = bad + 1
      print *, trim (why)
      call fit (s, x(n:1:-1), y)
      if (spline_ok (why)) bad = bad + 1
      print *, trim (why)

! The older routines
      v = aitken (x(1:7), y(1:7), 7, 0.7_wp, err)
      print 20, 'aitken', v, v - sin (0.7_wp)
      call divdif (x, y, 7, d)
      call divval (x, 7, d, 0.7_wp, v)
      print 20, 'divided', v, v - sin (0.7_wp)
      t = pi/4
      v = hermit (0.0_wp, 0.0_wp, 1.0_wp, pi/2, 1.0_wp, 0.0_wp, t)
      print 20, 'hermite', v, v - sin (t)
      do i = 1, 4
         table(i, :) = (/ 1.0*i, 2.0*i, 3.0*i /)
      end do
      print 20, 'table', bilin (table, 4, 4, 3, 1.0, 1.0, 1.0, 1.0,
     &   2.5, 1.5), bilin (table, 4, 4, 3, 1.0, 1.0, 1.0, 1.0, 4., 3.)
      print 20, 'water', lookup (15.0), lookup (100.0)
   20 format (1x, a10, f14.9, es12.3)

! A curve between two points: weights and points in expressions
      p = point (0.0_wp, 1.0_wp)
      q = point (4.0_wp, 3.0_wp)
      p = 0.25_wp*p + 0.75_wp*q
      print '(1x, 2f8.3)', p
      if (bad /= 0) stop 'fits that must fail did not'

      contains

      subroutine report (kind_of_ends, limit)
      character (*), intent (in) :: kind_of_ends
      real (wp), intent (in) :: limit
      real (wp) :: xs(101), worst
      integer :: k
      xs = (/ (2*pi*(k - 1)/100, k = 1, 101) /)
      worst = maxval (abs (at (s, xs) - sin (xs)))
      write (*, '(1x, a, t12, es10.2, l3)') kind_of_ends, worst,
     &   worst < limit
      if (.not. spline_ok ()) bad = bad + 1
      if (abs (at (s, x(4)) - y(4)) > 1.0e-12_wp) bad = bad + 1
      end subroutine report
      end program spltest
