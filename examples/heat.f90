! The heat equation u_t = u_xx + u_yy on the unit square, by the alternating direction implicit method. The
! temperature is fixed on the boundary; the exact solution of the model problem is known, so the error can
! be shown beside the step sizes.
program heat
   implicit none

   integer, parameter :: dp = kind(1.0d0)
   real(dp), parameter :: pi = 3.14159265358979_dp
   integer, parameter :: levels = 4

   real(dp) :: previous, error_norm
   integer :: level, n

   print '(a)', '     n     steps       error     ratio'
   previous = 0.0_dp
   n = 8
   do level = 1, levels
      call simulate(n, n, error_norm)
      if (previous > 0.0_dp) then
         print '(i6, i10, es12.3, f10.2)', n, n, error_norm, previous / error_norm
      else
         print '(i6, i10, es12.3)', n, n, error_norm
      end if
      previous = error_norm
      n = 2 * n
   end do

contains

   ! Integrates to time 0.1 in the given number of steps, on a grid of n by n cells.
   subroutine simulate(n, steps, error_norm)
      integer, intent(in) :: n, steps
      real(dp), intent(out) :: error_norm

      real(dp), dimension(0:n, 0:n) :: u
      real(dp) :: h, dt
      integer :: i, j, step

      h = 1.0_dp / n
      dt = 0.1_dp / steps
      do j = 0, n
         do i = 0, n
            u(i, j) = exact(i * h, j * h, 0.0_dp)
         end do
      end do

      do step = 1, steps
         call half_step(u, n, h, 0.5_dp * dt)
         u = transpose(u)
         call half_step(u, n, h, 0.5_dp * dt)
         u = transpose(u)
      end do

      error_norm = 0.0_dp
      do j = 0, n
         do i = 0, n
            error_norm = max(error_norm, abs(u(i, j) - exact(i * h, j * h, 0.1_dp)))
         end do
      end do
   end subroutine simulate

   ! Implicit in the first direction, explicit in the second.
   subroutine half_step(u, n, h, dt)
      integer, intent(in) :: n
      real(dp), intent(in) :: h, dt
      real(dp), intent(inout) :: u(0:n, 0:n)

      real(dp) :: r, rhs(1:n - 1), columns(1:n - 1, 1:n - 1)
      integer :: j

      r = dt / h**2
      do j = 1, n - 1
         rhs = u(1:n - 1, j) + r * (u(1:n - 1, j - 1) - 2.0_dp * u(1:n - 1, j) &
                                    + u(1:n - 1, j + 1))
         call tridiagonal(-r, 1.0_dp + 2.0_dp * r, rhs)
         columns(:, j) = rhs
      end do
      u(1:n - 1, 1:n - 1) = columns
   end subroutine half_step

   ! Solves the system with the constant `diagonal` and `off` beside it; the right-hand side becomes the solution.
   subroutine tridiagonal(off, diagonal, x)
      real(dp), intent(in) :: off, diagonal
      real(dp), intent(inout) :: x(:)

      real(dp) :: factor(size(x)), pivot
      integer :: i

      pivot = diagonal
      x(1) = x(1) / pivot
      do i = 2, size(x)
         factor(i) = off / pivot
         pivot = diagonal - off * factor(i)
         x(i) = (x(i) - off * x(i - 1)) / pivot
      end do
      do i = size(x) - 1, 1, -1
         x(i) = x(i) - factor(i + 1) * x(i + 1)
      end do
   end subroutine tridiagonal

   function exact(x, y, t) result(u)
      real(dp), intent(in) :: x, y, t
      real(dp) :: u

      u = exp(-2.0_dp * pi**2 * t) * sin(pi * x) * sin(pi * y)
   end function exact

end program heat
