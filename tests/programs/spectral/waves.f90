program waves
   use transforms
   use polynomials, only: polynomial, poly, legendre, display, roots, derivative, primitive, degree, &
      assignment(=), operator(+), operator(-), operator(*), operator(/), operator(**), operator(.mod.), &
      operator(.of.), operator(==), discard
   implicit none
   real(rk), parameter :: pi = 3.14159265358979323846_rk

   print '(a)', ' Fourier'
   call check_transforms((/ 16, 30, 49, 64 /))
   call real_series
   call korteweg
   call heat_in_a_bar
   print '(a)', ' polynomials'
   call algebra
   call orthogonality

contains

   subroutine check_transforms(lengths)
      integer, intent(in) :: lengths(:)
      integer :: i, k
      complex(rk), dimension(:), allocatable :: x, y
      complex(rk) :: plane(6, 10), slow
      real(rk) :: error
      do i = 1, size(lengths)
         allocate (x(lengths(i)), y(lengths(i)))
         x = (/ (cmplx(sin(0.3_rk*k*k), cos(1.7_rk*k), rk), k = 1, lengths(i)) /)
         y = fft(x)
         slow = sum(x*exp((0.0_rk, -1.0_rk)*2*pi*3*(/ (k, k = 0, size(x) - 1) /)/size(x)))
         error = max(abs(y(4) - slow), maxval(abs(inverse_fft(y) - x)))
         print '(1x, a, i4, a, l2, a, (8i3))', 'length', size(x), ':', error < 1.0e-11_rk, &
            ' factors', pack(factors_of(size(x)), factors_of(size(x)) > 1)
         deallocate (x, y)
      end do
      plane = reshape((/ (cmplx(k, mod(k*k, 7), rk), k = 1, 60) /), shape(plane))
      print *, 'plane: ', maxval(abs(inverse_fft(fft(plane)) - plane)) < 1.0e-12_rk
      print '(1x, a, 9i3)', 'wave numbers', wave_numbers(8)
   end subroutine check_transforms

   subroutine real_series
      integer, parameter :: n = 64
      real(rk) :: x(n), p(0:n/2), kernel(n)
      integer :: k, place(1)
      x = (/ (3*cos(2*pi*5*k/n) + sin(2*pi*12*k/n) + 0.5_rk, k = 0, n - 1) /)
      p = spectrum(x)
      print '(1x, a, 4f9.4)', 'power', p((/ 0, 5, 6, 12 /))
      p = spectrum(x, windowed=.true.)
      place = maxloc(p(1:))
      print *, 'strongest: ', place(1)
      kernel = 0
      kernel((/ 1, 2, n /)) = (/ 0.5_rk, 0.25_rk, 0.25_rk /)
      print *, 'smoothing: ', all(abs(convolve(x, kernel) - &
         (0.5_rk*x + 0.25_rk*(cshift(x, 1) + cshift(x, -1)))) < 1.0e-12_rk)
      x(1:9) = (/ (exp(cos(pi*k/8)), k = 0, 8) /)
      print '(1x, a, 5es12.4)', 'Chebyshev', chebyshev(x(1:9:2))
   end subroutine real_series

   ! A solitary wave keeps its form: the linear part is exact in the spectrum, the other by leapfrog.
   subroutine korteweg
      integer, parameter :: n = 64, steps = 400
      real(rk), parameter :: length = 40.0_rk, dt = 0.005_rk, speed = 1.0_rk
      real(rk), dimension(n) :: x, u, k
      complex(rk), dimension(n) :: v, v_old, v_new, phase
      integer :: i
      integer :: top(1)
      x = (/ (length*(i - 1)/n, i = 1, n) /)
      k = 2*pi/length*wave_numbers(n)
      u = 0.5_rk*speed/cosh(0.5_rk*sqrt(speed)*(x - 15))**2
      v = fft(cmplx(u, kind=rk))
      phase = exp((0.0_rk, 1.0_rk)*k**3*dt)
      v_old = (v - dt*slope(v, k))/phase
      do i = 1, steps
         v_new = phase*(phase*v_old + 2*dt*slope(v, k))
         v_old = v
         v = v_new
      end do
      u = real(inverse_fft(v), rk)
      top = maxloc(u)
      print '(1x, a, f7.3, a, f8.3, a, l2)', 'crest', maxval(u), ' near', x(top(1)), ' form kept', &
         maxval(abs(u - 0.5_rk*speed/cosh(0.5_rk*sqrt(speed)*(x - 15 - speed*dt*steps))**2)) < 0.02_rk
   end subroutine korteweg

   ! -3 (u**2)' of a wave from its spectrum, without the frequencies that fold over
   function slope(v, k) result(s)
      complex(rk), intent(in) :: v(:)
      real(rk), intent(in) :: k(:)
      complex(rk) :: s(size(v))
      s = (0.0_rk, -3.0_rk)*k*fft(cmplx(real(inverse_fft(v), rk)**2, kind=rk))
      where (abs(k) > 0.667_rk*maxval(k)) s = 0
   end function slope

   subroutine heat_in_a_bar
      integer, parameter :: n = 15
      real(rk) :: t(n), s(n)
      integer :: k
      t = (/ (real(min(k, n + 1 - k), rk), k = 1, n) /)
      s = sine_transform(t)
      s = s*exp(-0.05_rk*(/ (k**2, k = 1, n) /))
      t = sine_transform(s)*2/(n + 1)
      print '(1x, a, 5f9.5)', 'bar', t(1:n:3)
   end subroutine heat_in_a_bar

   subroutine algebra
      type(polynomial) :: p, q, r
      complex(rk) :: z(4)
      real(rk) :: c(6)
      integer :: k
      p = poly((/ -24, 50, -35, 10, -1 /))
      q = poly((/ -1, 1 /))
      call display('p', p)
      call display('p / q', p/q)
      call display('p mod q**2', p .mod. q**2)
      call roots(p, z)
      do k = 1, degree(p)
         print '(1x, "root", 2f10.6)', z(k)
      end do
      r = p .of. (q + 1.0_rk)
      print *, 'composition: ', r == p, (derivative(primitive(p, 7.0_rk)) == p)
      print '(1x, a, 5f8.2)', 'values', p .of. (/ (0.5_rk*k, k = 0, 4) /)
      c = derivative(p, order=2)
      print '(1x, a, 6f8.2)', 'second derivative', c
      call discard(r)
      r = c(2:3)
      call display('r', r - 2.0_rk*q)
   end subroutine algebra

   subroutine orthogonality
      integer, parameter :: n = 5
      type(polynomial) :: l(0:n), f
      real(rk) :: products(0:n, 0:n)
      integer :: i, j
      l = legendre_table(n)
      call display('P5', l(5))
      do i = 0, n
         do j = 0, n
            f = primitive(l(i)*l(j))
            products(i, j) = (f .of. 1.0_rk) - (f .of. (-1.0_rk))
            call discard(f)
         end do
      end do
      print '(6f9.5)', products
   end subroutine orthogonality

   ! legendre gives the memory itself; assigned element by element, as the assignment of polynomials is
   ! for scalars
   function legendre_table(n) result(table)
      integer, intent(in) :: n
      type(polynomial) :: table(0:n)
      table = legendre(n)
   end function legendre_table

end program waves
