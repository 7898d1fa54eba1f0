module integrators
   !
   ! Initial value problems y' = f(t, y). The equations are a subroutine with an explicit interface;
   ! the state is a vector of any length.
   !
   use real_kinds, only: wp => double
   implicit none
   private
   public :: settings, statistics_type, integrate, fixed_steps, adams_steps, implicit_steps, dense_output
   public :: euler, midpoint, classic, make_settings

   integer, parameter :: euler = 1, midpoint = 2, classic = 4

   type settings
      real(wp) :: relative, absolute, first_step, longest_step
      integer :: most_steps
   end type settings

   type statistics_type
      integer :: accepted, rejected, calls
      logical :: complete
   end type statistics_type

   type dense_output
      integer :: used
      real(wp), dimension(:), pointer :: t
      real(wp), dimension(:, :), pointer :: y
   end type dense_output

   ! Coefficients of an embedded pair of orders 5 and 4
   real(wp), parameter, dimension(7) :: c = (/ 0.0_wp, 0.2_wp, 0.3_wp, 0.8_wp, 8.0_wp/9.0_wp, 1.0_wp, 1.0_wp /)
   real(wp), parameter :: a2(1) = (/ 0.2_wp /), a3(2) = (/ 3.0_wp, 9.0_wp /)/40.0_wp, &
      a4(3) = (/ 44.0_wp/45, -56.0_wp/15, 32.0_wp/9 /), &
      a5(4) = (/ 19372.0_wp/6561, -25360.0_wp/2187, 64448.0_wp/6561, -212.0_wp/729 /), &
      a6(5) = (/ 9017.0_wp/3168, -355.0_wp/33, 46732.0_wp/5247, 49.0_wp/176, -5103.0_wp/18656 /), &
      a7(6) = (/ 35.0_wp/384, 0.0_wp, 500.0_wp/1113, 125.0_wp/192, -2187.0_wp/6784, 11.0_wp/84 /), &
      error_weights(7) = (/ 71.0_wp/57600, 0.0_wp, -71.0_wp/16695, 71.0_wp/1920, -17253.0_wp/339200, &
                            22.0_wp/525, -1.0_wp/40 /)

contains

   function make_settings(relative, absolute, first_step, longest_step, most_steps) result(s)
      real(wp), intent(in), optional :: relative, absolute, first_step, longest_step
      integer, intent(in), optional :: most_steps
      type(settings) :: s
      s = settings(1.0e-6_wp, 1.0e-9_wp, 0.01_wp, huge(1.0_wp), 10000)
      if (present(relative)) s%relative = relative
      if (present(absolute)) s%absolute = absolute
      if (present(first_step)) s%first_step = first_step
      if (present(longest_step)) s%longest_step = longest_step
      if (present(most_steps)) s%most_steps = most_steps
   end function make_settings

   ! Steps of chosen length from t to t_end. `output` takes the points that were reached.
   subroutine integrate(f, t, y, t_end, control, counts, output)
      interface
         subroutine f(t, y, slope)
            use real_kinds
            real(double), intent(in) :: t, y(:)
            real(double), intent(out) :: slope(:)
         end subroutine f
      end interface
      real(wp), intent(inout) :: t, y(:)
      real(wp), intent(in) :: t_end
      type(settings), intent(in) :: control
      type(statistics_type), intent(out) :: counts
      type(dense_output), intent(inout), optional :: output
      real(wp), dimension(size(y), 7) :: k
      real(wp), dimension(size(y)) :: y_new, error, allowed
      real(wp) :: h, ratio, way
      logical :: last

      counts = statistics_type(0, 0, 1, .false.)
      way = sign(1.0_wp, t_end - t)
      h = way*min(control%first_step, abs(t_end - t))
      call f(t, y, k(:, 1))
      if (present(output)) call remember(output, t, y)
      steps: do
         if (counts%accepted + counts%rejected >= control%most_steps) exit steps
         last = way*(t + 1.01_wp*h - t_end) >= 0
         if (last) h = t_end - t
         call stage(2, a2)
         call stage(3, a3)
         call stage(4, a4)
         call stage(5, a5)
         call stage(6, a6)
         call stage(7, a7)          ! y_new is the result of order 5
         error = abs(h*matmul(k, error_weights))
         allowed = control%absolute + control%relative*max(abs(y), abs(y_new))
         ratio = maxval(error/allowed)
         if (ratio <= 1.0_wp) then
            t = merge(t_end, t + h, last)
            y = y_new
            k(:, 1) = k(:, 7)
            counts%accepted = counts%accepted + 1
            if (present(output)) call remember(output, t, y)
            if (last) then
               counts%complete = .true.
               exit steps
            end if
         else
            counts%rejected = counts%rejected + 1
         end if
         h = h*min(5.0_wp, max(0.2_wp, 0.9_wp*max(ratio, 1.0e-10_wp)**(-0.2_wp)))
         h = sign(min(abs(h), control%longest_step), h)
         if (abs(h) < 4*spacing(t)) exit steps
      end do steps

   contains

      subroutine stage(number, a)
         integer, intent(in) :: number
         real(wp), dimension(:), intent(in) :: a
         y_new = y + h*matmul(k(:, :number-1), a)
         call f(t + c(number)*h, y_new, k(:, number))
         counts%calls = counts%calls + 1
      end subroutine stage

   end subroutine integrate

   subroutine remember(output, t, y)
      type(dense_output), intent(inout) :: output
      real(wp), intent(in) :: t, y(:)
      real(wp), dimension(:), pointer :: more_t
      real(wp), dimension(:, :), pointer :: more_y
      integer :: room
      room = size(output%t)
      if (output%used == room) then
         allocate (more_t(2*room), more_y(size(y), 2*room))
         more_t(:room) = output%t
         more_y(:, :room) = output%y
         deallocate (output%t, output%y)
         output%t => more_t
         output%y => more_y
      end if
      output%used = output%used + 1
      output%t(output%used) = t
      output%y(:, output%used) = y
   end subroutine remember

   ! Methods of one step with a fixed length
   subroutine fixed_steps(f, t, y, h, n, method)
      interface
         subroutine f(t, y, slope)
            use real_kinds
            real(double), intent(in) :: t, y(:)
            real(double), intent(out) :: slope(:)
         end subroutine f
      end interface
      real(wp), intent(inout) :: t, y(:)
      real(wp), intent(in) :: h
      integer, intent(in) :: n, method
      real(wp), dimension(size(y)) :: k1, k2, k3, k4
      integer :: i
      do i = 1, n
         call f(t, y, k1)
         select case (method)
         case (euler)
            y = y + h*k1
         case (midpoint)
            call f(t + h/2, y + h/2*k1, k2)
            y = y + h*k2
         case (classic)
            call f(t + h/2, y + h/2*k1, k2)
            call f(t + h/2, y + h/2*k2, k3)
            call f(t + h, y + h*k3, k4)
            y = y + h/6*(k1 + 2*(k2 + k3) + k4)
         case default
            stop 'integrators: there is no such method'
         end select
         t = t + h
      end do
   end subroutine fixed_steps

   ! Predictor and corrector of order 4, started by the classic method
   subroutine adams_steps(f, t, y, h, n)
      interface
         subroutine f(t, y, slope)
            use real_kinds
            real(double), intent(in) :: t, y(:)
            real(double), intent(out) :: slope(:)
         end subroutine f
      end interface
      real(wp), intent(inout) :: t, y(:)
      real(wp), intent(in) :: h
      integer, intent(in) :: n
      real(wp), dimension(size(y), 0:3) :: history
      real(wp), dimension(size(y)) :: guess, slope
      real(wp), parameter :: predict(0:3) = (/ 55, -59, 37, -9 /)/24.0_wp, &
                             correct(0:3) = (/ 9.0_wp, 19.0_wp, -5.0_wp, 1.0_wp /)/24.0_wp
      integer :: i
      do i = 1, n
         if (i <= 3) then
            call f(t, y, history(:, 4 - i))
            call fixed_steps(f, t, y, h, 1, classic)
         else
            call f(t, y, history(:, 0))
            guess = y + h*matmul(history, predict)
            t = t + h
            call f(t, guess, slope)
            y = y + h*(correct(0)*slope + matmul(history(:, 0:2), correct(1:3)))
            history = eoshift(history, -1, dim=2)
         end if
      end do
   end subroutine adams_steps

   ! The implicit method of one step, by Newton steps with a numerical jacobian, for stiff systems
   recursive subroutine implicit_steps(f, t, y, h, n, failed)
      interface
         subroutine f(t, y, slope)
            use real_kinds
            real(double), intent(in) :: t, y(:)
            real(double), intent(out) :: slope(:)
         end subroutine f
      end interface
      real(wp), intent(inout) :: t, y(:)
      real(wp), intent(in) :: h
      integer, intent(in) :: n
      logical, intent(out) :: failed
      real(wp), dimension(size(y)) :: z, slope, moved, change
      real(wp), dimension(size(y), size(y)) :: m
      integer :: i, j, newton
      failed = .true.
      do i = 1, n
         z = y
         do newton = 1, 12
            call f(t + h, z, slope)
            do j = 1, size(y)
               moved = z
               moved(j) = z(j) + sqrt(epsilon(z))*max(1.0_wp, abs(z(j)))
               call f(t + h, moved, m(:, j))
               m(:, j) = -h*(m(:, j) - slope)/(moved(j) - z(j))
               m(j, j) = m(j, j) + 1
            end do
            change = y + h*slope - z
            call eliminate(m, change)
            z = z + change
            if (maxval(abs(change)) < 1.0e-10_wp*(1 + maxval(abs(z)))) exit
         end do
         if (newton > 12) then
            call implicit_steps(f, t, y, h/2, 2, failed)       ! two halves instead
            if (failed) return
         else
            y = z
            t = t + h
         end if
      end do
      failed = .false.
   end subroutine implicit_steps

   subroutine eliminate(m, b)
      real(wp), intent(inout) :: m(:, :), b(:)
      integer :: k, i, p(1)
      do k = 1, size(b)
         p = maxloc(abs(m(k:, k))) + k - 1
         if (p(1) /= k) then
            m((/ k, p(1) /), :) = m((/ p(1), k /), :)
            b((/ k, p(1) /)) = b((/ p(1), k /))
         end if
         b(k) = b(k)/m(k, k)
         m(k, k:) = m(k, k:)/m(k, k)
         do i = 1, size(b)
            if (i == k) cycle
            b(i) = b(i) - m(i, k)*b(k)
            m(i, k:) = m(i, k:) - m(i, k)*m(k, k:)
         end do
      end do
   end subroutine eliminate

end module integrators
