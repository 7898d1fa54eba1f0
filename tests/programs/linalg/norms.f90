!> Norms, inner and outer products of vectors and matrices, generic in kind and rank.
module norms
  use kinds, only: sp, dp
  implicit none
  private
  public :: norm1, norm2, norm_inf, frobenius, outer, operator(.dot.), operator(.outer.), &
            normalize, trace, identity

  interface norm1
     module procedure norm1_vec_sp, norm1_vec_dp, norm1_mat_sp, norm1_mat_dp
  end interface

  interface norm2
     module procedure norm2_sp, norm2_dp, norm2_cdp
  end interface

  interface norm_inf
     module procedure norm_inf_vec_sp
     module procedure norm_inf_vec_dp
     module procedure norm_inf_mat_sp
     module procedure norm_inf_mat_dp
  end interface

  interface frobenius
     module procedure frobenius_sp, frobenius_dp
  end interface

  interface outer
     module procedure outer_sp, outer_dp
  end interface

  interface operator (.dot.)
     module procedure dot_sp, dot_dp, dot_cdp
  end interface

  interface operator(.outer.)
     module procedure outer_sp, outer_dp
  end interface

  interface normalize
     module procedure normalize_sp, normalize_dp
  end interface

  interface trace
     module procedure trace_sp, trace_dp
  end interface

contains

  ! ---- sums of absolute values -------------------------------------------

  function norm1_vec_sp(x) result(s)
    real(sp), dimension(:), intent(in) :: x
    real(sp) :: s
    s = sum(abs(x))
  end function norm1_vec_sp

  function norm1_vec_dp(x) result(s)
    real(dp), dimension(:), intent(in) :: x
    real(dp) :: s
    s = sum(abs(x))
  end function norm1_vec_dp

  ! The largest sum of a column
  function norm1_mat_sp(a) result(s)
    real(sp), dimension(:,:), intent(in) :: a
    real(sp) :: s
    s = maxval(sum(abs(a), dim=1))
  end function norm1_mat_sp

  function norm1_mat_dp(a) result(s)
    real(dp), dimension(:,:), intent(in) :: a
    real(dp) :: s
    s = maxval(sum(abs(a), dim=1))
  end function norm1_mat_dp

  ! ---- euclidean norms, scaled against overflow ----------------------------

  function norm2_sp(x) result(s)
    real(sp), intent(in) :: x(:)
    real(sp) :: s, big
    big = maxval(abs(x))
    if (size(x) == 0 .or. big <= tiny(big)) then
       s = 0.0_sp
    else
       s = big*sqrt(sum((x/big)**2))
    end if
  end function norm2_sp

  function norm2_dp(x) result(s)
    real(dp), intent(in) :: x(:)
    real(dp) :: s, big
    big = maxval(abs(x))
    if (size(x) == 0 .or. big <= tiny(big)) then
       s = 0.0_dp
    else
       s = big*sqrt(sum((x/big)**2))
    end if
  end function norm2_dp

  function norm2_cdp(z) result(s)
    complex(dp), intent(in) :: z(:)
    real(dp) :: s
    s = sqrt(sum(real(z, dp)**2 + aimag(z)**2))
  end function norm2_cdp

  ! ---- maximum norms -------------------------------------------------------

  function norm_inf_vec_sp(x) result(s)
    real(sp), intent(in) :: x(:)
    real(sp) :: s
    s = maxval(abs(x))
  end function norm_inf_vec_sp

  function norm_inf_vec_dp(x) result(s)
    real(dp), intent(in) :: x(:)
    real(dp) :: s
    s = maxval(abs(x))
  end function norm_inf_vec_dp

  function norm_inf_mat_sp(a) result(s)
    real(sp), intent(in) :: a(:, :)
    real(sp) :: s
    s = maxval(sum(abs(a), 2))
  end function norm_inf_mat_sp

  function norm_inf_mat_dp(a) result(s)
    real(dp), intent(in) :: a(:, :)
    real(dp) :: s
    s = maxval(sum(abs(a), 2))
  end function norm_inf_mat_dp

  function frobenius_sp(a) result(s)
    real(sp), intent(in) :: a(:, :)
    real(sp) :: s
    s = sqrt(sum(a*a))
  end function frobenius_sp

  function frobenius_dp(a) result(s)
    real(dp), intent(in) :: a(:, :)
    real(dp) :: s
    s = sqrt(sum(a*a))
  end function frobenius_dp

  ! ---- products --------------------------------------------------------------

  function outer_sp(u, v) result(a)
    real(sp), intent(in) :: u(:), v(:)
    real(sp), dimension(size(u), size(v)) :: a
    a = spread(u, dim=2, ncopies=size(v))*spread(v, dim=1, ncopies=size(u))
  end function outer_sp

  function outer_dp(u, v) result(a)
    real(dp), intent(in) :: u(:), v(:)
    real(dp), dimension(size(u), size(v)) :: a
    a = spread(u, dim=2, ncopies=size(v))*spread(v, dim=1, ncopies=size(u))
  end function outer_dp

  function dot_sp(x, y) result(s)
    real(sp), intent(in) :: x(:), y(:)
    real(sp) :: s
    s = dot_product(x, y)
  end function dot_sp

  function dot_dp(x, y) result(s)
    real(dp), intent(in) :: x(:), y(:)
    real(dp) :: s
    s = dot_product(x, y)
  end function dot_dp

  ! The first argument is conjugated, as DOT_PRODUCT does.
  function dot_cdp(x, y) result(s)
    complex(dp), intent(in) :: x(:), y(:)
    complex(dp) :: s
    s = dot_product(x, y)
  end function dot_cdp

  subroutine normalize_sp(x, length)
    real(sp), intent(inout) :: x(:)
    real(sp), intent(out), optional :: length
    real(sp) :: s
    s = norm2(x)
    if (s > 0.0) x = x/s
    if (present(length)) length = s
  end subroutine normalize_sp

  subroutine normalize_dp(x, length)
    real(dp), intent(inout) :: x(:)
    real(dp), intent(out), optional :: length
    real(dp) :: s
    s = norm2(x)
    if (s > 0.0_dp) x = x/s
    if (present(length)) length = s
  end subroutine normalize_dp

  function trace_sp(a) result(t)
    real(sp), intent(in) :: a(:, :)
    real(sp) :: t
    integer :: i
    t = sum((/ (a(i, i), i = 1, min(size(a, 1), size(a, 2))) /))
  end function trace_sp

  function trace_dp(a) result(t)
    real(dp), intent(in) :: a(:, :)
    real(dp) :: t
    integer :: i
    t = sum((/ (a(i, i), i = 1, min(size(a, 1), size(a, 2))) /))
  end function trace_dp

  !> The unit matrix of order n, in double precision.
  function identity(n) result(e)
    integer, intent(in) :: n
    real(dp) :: e(n, n)
    e = reshape((/ 1.0_dp, spread(0.0_dp, 1, n) /), shape=(/ n, n /), &
                pad=(/ 1.0_dp, spread(0.0_dp, 1, n) /))
  end function identity

end module norms
