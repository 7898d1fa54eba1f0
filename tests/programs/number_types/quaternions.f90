module quaternions
   ! Quaternions and the rotations of space that they stand for.
   use constants, only: wp => double, pi
   implicit none

   type quaternion
      real(wp) :: w
      real(wp), dimension(3) :: v
   end type quaternion

   type(quaternion), parameter :: q_one = quaternion(1.0_wp, (/ 0.0_wp, 0.0_wp, 0.0_wp /)), &
                                  q_i = quaternion(0.0_wp, (/ 1.0_wp, 0.0_wp, 0.0_wp /)), &
                                  q_j = quaternion(0.0_wp, (/ 0.0_wp, 1.0_wp, 0.0_wp /)), &
                                  q_k = quaternion(0.0_wp, (/ 0.0_wp, 0.0_wp, 1.0_wp /))

   interface operator(+)
      module procedure q_plus_q
   end interface

   interface operator(-)
      module procedure q_minus_q, minus_q
   end interface

   interface operator(*)
      module procedure q_times_q, r_times_q, q_times_r
   end interface

   interface operator(.x.)
      module procedure cross
   end interface

   interface conjg
      module procedure q_conjg
   end interface

   interface abs
      module procedure q_abs
   end interface

   interface exp
      module procedure q_exp
   end interface

   interface rotate
      module procedure rotate_one, rotate_many
   end interface

   private :: q_plus_q, q_minus_q, minus_q, q_times_q, r_times_q, q_times_r, q_conjg, q_abs, q_exp
   private :: rotate_one, rotate_many, wp, pi

contains

   function cross(a, b) result(c)
      real(wp), dimension(3), intent(in) :: a, b
      real(wp), dimension(3) :: c
      c = cshift(a, 1)*cshift(b, -1) - cshift(a, -1)*cshift(b, 1)
   end function cross

   function q_plus_q(p, q) result(r)
      type(quaternion), intent(in) :: p, q
      type(quaternion) :: r
      r = quaternion(p%w + q%w, p%v + q%v)
   end function q_plus_q

   function q_minus_q(p, q) result(r)
      type(quaternion), intent(in) :: p, q
      type(quaternion) :: r
      r = quaternion(p%w - q%w, p%v - q%v)
   end function q_minus_q

   function minus_q(q) result(r)
      type(quaternion), intent(in) :: q
      type(quaternion) :: r
      r = quaternion(-q%w, -q%v)
   end function minus_q

   function q_times_q(p, q) result(r)
      type(quaternion), intent(in) :: p, q
      type(quaternion) :: r
      r%w = p%w*q%w - dot_product(p%v, q%v)
      r%v = p%w*q%v + q%w*p%v + (p%v .x. q%v)
   end function q_times_q

   function r_times_q(s, q) result(r)
      real(wp), intent(in) :: s
      type(quaternion), intent(in) :: q
      type(quaternion) :: r
      r = quaternion(s*q%w, s*q%v)
   end function r_times_q

   function q_times_r(q, s) result(r)
      type(quaternion), intent(in) :: q
      real(wp), intent(in) :: s
      type(quaternion) :: r
      r = s*q
   end function q_times_r

   function q_conjg(q) result(r)
      type(quaternion), intent(in) :: q
      type(quaternion) :: r
      r = quaternion(q%w, -q%v)
   end function q_conjg

   function q_abs(q) result(s)
      type(quaternion), intent(in) :: q
      real(wp) :: s
      s = sqrt(q%w**2 + sum(q%v**2))
   end function q_abs

   function q_exp(q) result(r)
      type(quaternion), intent(in) :: q
      type(quaternion) :: r
      real(wp) :: angle, factor
      angle = sqrt(sum(q%v**2))
      if (angle < sqrt(epsilon(angle))) then
         factor = 1.0_wp - angle**2/6.0_wp
      else
         factor = sin(angle)/angle
      end if
      r = exp(q%w)*quaternion(cos(angle), factor*q%v)
   end function q_exp

   ! The turn about an axis by an angle in degrees
   function turn(axis, degrees) result(q)
      real(wp), intent(in) :: axis(3), degrees
      type(quaternion) :: q
      real(wp) :: a
      a = degrees*pi/360.0_wp
      q = quaternion(cos(a), sin(a)*axis/sqrt(sum(axis**2)))
   end function turn

   function rotate_one(q, x) result(y)
      type(quaternion), intent(in) :: q
      real(wp), intent(in) :: x(3)
      real(wp) :: y(3)
      type(quaternion) :: image
      image = q*quaternion(0.0_wp, x)*conjg(q)
      y = image%v
   end function rotate_one

   ! The points are the columns of x.
   function rotate_many(q, x) result(y)
      type(quaternion), intent(in) :: q
      real(wp), intent(in) :: x(:, :)
      real(wp) :: y(3, size(x, 2))
      y = matmul(rotation_matrix(q), x)
   end function rotate_many

   function rotation_matrix(q) result(m)
      type(quaternion), intent(in) :: q
      real(wp) :: m(3, 3)
      integer :: k
      do k = 1, 3
         m(:, k) = rotate_one(q, eoshift((/ 1.0_wp, 0.0_wp, 0.0_wp /), shift=1 - k))
      end do
   end function rotation_matrix

   ! The way from p to q at the fraction t, along the shorter arc
   function slerp(p, q, t) result(r)
      type(quaternion), intent(in) :: p, q
      real(wp), intent(in) :: t
      type(quaternion) :: r, target_q
      real(wp) :: c, angle
      c = p%w*q%w + dot_product(p%v, q%v)
      target_q = q
      if (c < 0) then
         target_q = -q
         c = -c
      end if
      if (c > 1 - epsilon(c)) then
         r = p
      else
         angle = acos(c)
         r = (sin((1 - t)*angle)/sin(angle))*p + (sin(t*angle)/sin(angle))*target_q
      end if
   end function slerp

end module quaternions
