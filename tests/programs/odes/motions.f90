program motions
   use real_kinds, only: double
   use quadrature
   use integrators
   use equations
   implicit none
   real(double) :: t, y(2), orbit(4), value, error, exact
   integer :: n, used, method
   integer, parameter, dimension(3) :: methods = (/ euler, midpoint, classic /)
   character(len=8), dimension(3), parameter :: names = (/ 'euler   ', 'midpoint', 'classic ' /)
   type(statistics_type) :: counts
   type(dense_output) :: path
   logical :: failed

   write (*, '(a)') ' integrals'
   exact = 100*(atan(70.0_double) + atan(30.0_double))
   value = adaptive(peak, 0.0_double, 1.0_double, 1.0e-9_double, evaluations=used)
   write (*, 100) 'adaptive', value, abs(value - exact) < 1.0e-6_double, used
   write (*, '(1x, a, l2)') 'each call counted:', used == calls_of_peak
   call romberg(bell, 0.0_double, 2.0_double, value, error, rows=7)
   write (*, 100) 'romberg', value, error < 1.0e-10_double
   value = gauss(bell, 0.0_double, 2.0_double, points=12)
   write (*, 100) 'gauss', value, .true., 12
   value = to_infinity(bell, 0.0_double)
   write (*, 100) 'half line', value, abs(value - 0.5_double*sqrt(4*atan(1.0_double))) < 1.0e-12_double
   value = plane_integral(dome, -1.0_double, 1.0_double, floor_line, arc, 20)
   write (*, 100) 'half dome', value, abs(value - 4*atan(1.0_double)/3) < 1.0e-3_double
100 format (1x, a10, f16.8, l3, :, i6, ' values')

   write (*, '(/, a)') ' orders of the methods'
   do method = 1, 3
      write (*, '(1x, a, 4es11.2)') names(method), (circle_error(methods(method), 2**n), n = 4, 7)
   end do
   t = 0
   y = (/ 1.0_double, 0.0_double /)
   call adams_steps(circle, t, y, 0.0625_double, 16)
   write (*, '(1x, a, 4es11.2)') 'adams   ', abs(y(1) - cos(1.0_double))

   write (*, '(/, a)') ' an orbit about two bodies'
   allocate (path%t(8), path%y(4, 8))
   path%used = 0
   t = 0
   orbit = (/ 0.994_double, 0.0_double, 0.0_double, -2.00158510637908252_double /)
   call integrate(three_bodies, t, orbit, 17.0652165601579625_double, &
        make_settings(relative=1.0e-10_double, absolute=1.0e-10_double, first_step=1.0e-4_double), counts, path)
   write (*, '(1x, a, 2i6, i8, l2)') 'steps, rejected, calls', counts
   write (*, '(1x, a, 2f10.4)') 'back at', orbit(:2)
   write (*, '(1x, a, i6, 2f9.4)') 'furthest', path%used, minval(path%y(1, :path%used)), &
        maxval(abs(path%y(2, :path%used)))
   deallocate (path%t, path%y)
   t = 1
   y = 1
   call integrate(circle, t, y, 0.0_double, make_settings(most_steps=5), counts)
   if (.not. counts%complete) write (*, *) 'backwards: given up after', counts%accepted + counts%rejected

   write (*, '(/, a)') ' a stiff system'
   t = 0; y = (/ 0.0_double, 0.0_double /)
   call implicit_steps(stiff, t, y, 0.01_double, 200, failed)
   write (*, '(1x, l2, 3f12.6)') failed, t, y
   t = 0; y = 0
   call integrate(stiff, t, y, 2.0_double, make_settings(), counts)
   write (*, '(1x, 2l2, 2f12.6)') counts%accepted > 500, counts%complete, y

contains

   function circle_error(method, steps) result(e)
      integer, intent(in) :: method, steps
      real(double) :: e, t, y(2)
      t = 0
      y = (/ 1, 0 /)
      call fixed_steps(circle, t, y, 1.0_double/steps, steps, method)
      e = sqrt((y(1) - cos(t))**2 + (y(2) + sin(t))**2)
   end function circle_error

end program motions
