module transforms
   ! Fast Fourier transforms of arrays whose length has small prime factors, of rank 1 and 2, and the
   ! transforms for real series that are made of them.
   use polynomials, only: rk => pr
   implicit none
   private
   public :: fft, inverse_fft, spectrum, convolve, sine_transform, chebyshev, wave_numbers, factors_of, rk

   real(rk), parameter :: two_pi = 6.28318530717958647693_rk
   complex(rk), parameter :: i_unit = (0, 1)

   interface fft
      module procedure fft_line, fft_plane, fft_real_line
   end interface

   interface inverse_fft
      module procedure inverse_line, inverse_plane
   end interface

   interface convolve
      module procedure convolve_real, convolve_complex
   end interface

contains

   function factors_of(n) result(f)
      integer, intent(in) :: n
      integer, dimension(32) :: f
      integer :: rest, p, k
      f = 1
      rest = n
      p = 2
      k = 0
      do while (rest > 1)
         if (mod(rest, p) == 0) then
            k = k + 1
            f(k) = p
            rest = rest/p
         else
            p = p + 1
         end if
      end do
   end function factors_of

   function fft_line(x) result(y)
      complex(rk), intent(in) :: x(:)
      complex(rk) :: y(size(x))
      y = mixed(x, -1)
   end function fft_line

   function inverse_line(x) result(y)
      complex(rk), dimension(:), intent(in) :: x
      complex(rk), dimension(size(x)) :: y
      y = mixed(x, +1)/size(x)
   end function inverse_line

   ! Splits off the smallest factor p of n: p transforms of n/p elements, joined by n roots of one
   recursive function mixed(x, way) result(y)
      complex(rk), intent(in) :: x(0:)
      integer, intent(in) :: way
      complex(rk) :: y(0:size(x) - 1)
      complex(rk), allocatable :: part(:, :)
      complex(rk) :: root
      integer :: n, m, p, k, q, f(32)

      n = size(x)
      if (n <= 1) then
         y = x
         return
      end if
      f = factors_of(n)
      p = f(1)
      m = n/p
      allocate (part(0:m - 1, 0:p - 1))
      do q = 0, p - 1
         part(:, q) = mixed(x(q::p), way)
      end do
      if (p == 2) then
         part(:, 1) = part(:, 1)*exp(i_unit*(way*two_pi/n)*(/ (k, k = 0, m - 1) /))
         y(:m - 1) = part(:, 0) + part(:, 1)
         y(m:) = part(:, 0) - part(:, 1)
      else
         do k = 0, n - 1
            root = exp(i_unit*(way*two_pi*k)/n)
            y(k) = part(mod(k, m), p - 1)
            do q = p - 2, 0, -1
               y(k) = y(k)*root + part(mod(k, m), q)
            end do
         end do
      end if
      deallocate (part)
   end function mixed

   function fft_plane(x) result(y)
      complex(rk), intent(in) :: x(:, :)
      complex(rk), dimension(size(x, 1), size(x, 2)) :: y
      integer :: i, j
      do j = 1, size(x, 2)
         y(:, j) = fft(x(:, j))
      end do
      do i = 1, size(x, 1)
         y(i, :) = fft(y(i, :))
      end do
   end function fft_plane

   function inverse_plane(x) result(y)
      complex(rk), intent(in) :: x(:, :)
      complex(rk), dimension(size(x, 1), size(x, 2)) :: y
      y = conjg(fft(conjg(x)))/size(x)
   end function inverse_plane

   ! The half of the transform of a real series of even length, elements 0 to n/2
   function fft_real_line(x) result(y)
      real(rk), intent(in) :: x(:)
      complex(rk) :: y(0:size(x)/2)
      complex(rk), dimension(0:size(x)/2) :: z, mirrored
      integer :: k, h
      h = size(x)/2
      z(:h - 1) = mixed(cmplx(x(1::2), x(2::2), rk), -1)
      z(h) = z(0)
      mirrored = conjg(z(h:0:-1))
      y = 0.5_rk*(z + mirrored) - 0.5_rk*i_unit*(z - mirrored) &
          *exp(-i_unit*(two_pi/(2*h))*(/ (k, k = 0, h) /))
   end function fft_real_line

   ! The power in each frequency, with a window against leaks if wanted
   function spectrum(x, windowed) result(power)
      real(rk), intent(in) :: x(:)
      logical, intent(in), optional :: windowed
      real(rk) :: power(0:size(x)/2)
      real(rk) :: w(size(x))
      integer :: k, n
      n = size(x)
      w = 1
      if (present(windowed)) then
         if (windowed) w = (/ (0.5_rk*(1 - cos(two_pi*k/n)), k = 0, n - 1) /)
      end if
      power = abs(fft(w*x))**2/sum(w)**2
      power(1:n/2 - 1) = 2*power(1:n/2 - 1)
   end function spectrum

   function convolve_complex(a, b) result(c)
      complex(rk), intent(in) :: a(:), b(:)
      complex(rk) :: c(size(a))
      c = inverse_fft(fft(a)*fft(b))
   end function convolve_complex

   function convolve_real(a, b) result(c)
      real(rk), intent(in) :: a(:), b(:)
      real(rk) :: c(size(a))
      c = real(convolve(cmplx(a, kind=rk), cmplx(b, kind=rk)), rk)
   end function convolve_real

   ! Sine series of values inside of an interval, whose ends are zero
   function sine_transform(f) result(s)
      real(rk), intent(in) :: f(:)
      real(rk) :: s(size(f))
      complex(rk) :: odd(2*(size(f) + 1))
      integer :: n
      n = size(f)
      odd = (0.0_rk, 0.0_rk)
      odd(2:n + 1) = f
      odd(2*n + 2:n + 3:-1) = -f
      odd = fft(odd)
      s = -0.5_rk*aimag(odd(2:n + 1))
   end function sine_transform

   ! The coefficients of the Chebyshev series through the values at cos(pi k / n), k = 0 to n
   function chebyshev(values) result(c)
      real(rk), intent(in) :: values(0:)
      real(rk) :: c(0:size(values) - 1)
      complex(rk) :: even(2*(size(values) - 1))
      integer :: n
      n = ubound(values, 1)
      even = cmplx((/ values, values(n - 1:1:-1) /), kind=rk)
      even = fft(even)
      c = real(even(:n + 1), rk)/n
      c((/ 0, n /)) = 0.5_rk*c((/ 0, n /))
   end function chebyshev

   function wave_numbers(n) result(k)
      integer, intent(in) :: n
      integer :: k(n), j
      k = cshift((/ (j, j = -((n - 1)/2), n/2) /), (n - 1)/2)
   end function wave_numbers

end module transforms
