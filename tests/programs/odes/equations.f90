module equations
   use real_kinds
   implicit none
   integer, save :: calls_of_peak = 0
contains
   subroutine circle(t, y, slope)
      real(double), intent(in) :: t, y(:)
      real(double), intent(out) :: slope(:)
      slope = (/ y(2), -y(1) /) + 0*t
   end subroutine circle

   ! Two coupled reactions of very different speeds
   subroutine stiff(t, y, slope)
      real(double), intent(in) :: t, y(:)
      real(double), intent(out) :: slope(:)
      slope(1) = -1000*(y(1) - cos(t)) - sin(t)
      slope(2) = y(1) - y(2)
   end subroutine stiff

   ! Bodies 1 and 2 of masses 1 - m and m, the third small, in the turning frame
   subroutine three_bodies(t, y, slope)
      real(double), intent(in) :: t, y(:)
      real(double), intent(out) :: slope(:)
      real(double), parameter :: m = 0.012277471_double, m1 = 1 - m
      real(double) :: d1, d2
      d1 = ((y(1) + m)**2 + y(2)**2)**1.5_double
      d2 = ((y(1) - m1)**2 + y(2)**2)**1.5_double
      slope(1:2) = y(3:4)
      slope(3) = y(1) + 2*y(4) - m1*(y(1) + m)/d1 - m*(y(1) - m1)/d2
      slope(4) = y(2) - 2*y(3) - m1*y(2)/d1 - m*y(2)/d2 + 0*t
   end subroutine three_bodies

   function peak(x) result(y)
      real(double), intent(in) :: x
      real(double) :: y
      calls_of_peak = calls_of_peak + 1
      y = 1/(1.0e-4_double + (x - 0.3_double)**2)
   end function peak

   function bell(x) result(y)
      real(double), intent(in) :: x
      real(double) :: y
      y = exp(-x*x)
   end function bell

   function dome(x, y) result(z)
      real(double), intent(in) :: x, y
      real(double) :: z
      z = sqrt(max(0.0_double, 1 - x*x - y*y))
   end function dome

   function arc(x) result(y)
      real(double), intent(in) :: x
      real(double) :: y
      y = sqrt(1 - x**2)
   end function arc

   function floor_line(x) result(y)
      real(double), intent(in) :: x
      real(double) :: y
      y = 0*x
   end function floor_line
end module equations
