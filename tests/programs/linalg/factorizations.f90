!> LU, Cholesky and QR factorizations, with the solution of systems by them.
!!
!! The generic names take single and double precision matrices, and one right hand side or several.
module factorizations
  use kinds
  use norms, only: norm2
  implicit none
  private
  public :: lu_factor, lu_solve, cholesky, qr_factor, qr_least_squares, determinant, inverse, &
            rcond_estimate

  interface lu_factor
     module procedure lu_factor_sp, lu_factor_dp
  end interface
  interface lu_solve
     module procedure lu_solve_one_sp, lu_solve_one_dp, lu_solve_many_dp
  end interface
  interface cholesky
     module procedure cholesky_sp, cholesky_dp
  end interface

contains

  !> Gaussian elimination with partial pivoting, in place.
  !! pivot(k) is the row that was exchanged with row k; the sign of the permutation is optional.
  subroutine lu_factor_sp(a, pivot, info, parity)
    real(sp), intent(inout)             :: a(:, :)
    integer, intent(out)                :: pivot(:)
    integer(i4), intent(out)            :: info
    real(sp), optional, intent(out)     :: parity
    real(sp), dimension(size(a, 2))     :: row
    real(sp) :: sgn
    integer :: k, p, n, where_max(1)

    info = stat_ok
    n = size(a, 1)
    if (size(a, 2) /= n .or. size(pivot) < n) then
       info = stat_bad_shape
       return
    end if
    sgn = 1.0_sp
    do k = 1, n
       where_max = maxloc(abs(a(k:n, k)))
       p = where_max(1) + k - 1
       pivot(k) = p
       if (p /= k) then
          row = a(k, :); a(k, :) = a(p, :); a(p, :) = row
          sgn = -sgn
       end if
       if (abs(a(k, k)) <= tiny(1.0_sp)) then
          info = stat_singular
          exit
       end if
       a(k+1:n, k) = a(k+1:n, k)/a(k, k)
       a(k+1:n, k+1:n) = a(k+1:n, k+1:n) - &
            spread(a(k+1:n, k), 2, n - k)*spread(a(k, k+1:n), 1, n - k)
    end do
    if (present(parity)) parity = sgn
  end subroutine lu_factor_sp

  subroutine lu_factor_dp(a, pivot, info, parity)
    real(dp), intent(inout)             :: a(:, :)
    integer, intent(out)                :: pivot(:)
    integer(i4), intent(out)            :: info
    real(dp), optional, intent(out)     :: parity
    real(dp) :: sgn, factor
    integer :: i, k, p, n, where_max(1)

    info = stat_ok
    n = size(a, 1)
    if (size(a, 2) /= n .or. size(pivot) < n) then
       info = stat_bad_shape
       return
    endif
    sgn = 1.0_dp
    columns: do k = 1, n
       where_max = maxloc(abs(a(k:, k)))
       p = where_max(1) + k - 1
       pivot(k) = p
       if (p /= k) then
          a((/ k, p /), :) = a((/ p, k /), :)      ! exchange by a vector subscript
          sgn = -sgn
       endif
       if (abs(a(k, k)) <= tiny(1.0_dp)) then
          info = stat_singular
          exit columns
       endif
       rows: do i = k + 1, n
          factor = a(i, k)/a(k, k)
          a(i, k) = factor
          if (factor == 0.0_dp) cycle rows
          a(i, k+1:) = a(i, k+1:) - factor*a(k, k+1:)
       end do rows
    end do columns
    if (present(parity)) parity = sgn
  end subroutine lu_factor_dp

  subroutine lu_solve_one_sp(lu, pivot, b)
    real(sp), intent(in)    :: lu(:, :)
    integer, intent(in)     :: pivot(:)
    real(sp), intent(inout) :: b(:)
    integer :: k, n
    real(sp) :: t
    n = size(b)
    do k = 1, n
       t = b(pivot(k)); b(pivot(k)) = b(k); b(k) = t
       b(k+1:n) = b(k+1:n) - t*lu(k+1:n, k)
    end do
    do k = n, 1, -1
       b(k) = b(k)/lu(k, k)
       b(1:k-1) = b(1:k-1) - b(k)*lu(1:k-1, k)
    end do
  end subroutine lu_solve_one_sp

  subroutine lu_solve_one_dp(lu, pivot, b)
    real(dp), intent(in)    :: lu(:, :)
    integer, intent(in)     :: pivot(:)
    real(dp), intent(inout) :: b(:)
    integer :: k, n
    real(dp) :: t
    n = size(b)
    do k = 1, n
       t = b(pivot(k)); b(pivot(k)) = b(k); b(k) = t
    end do
    do k = 2, n
       b(k) = b(k) - dot_product(lu(k, 1:k-1), b(1:k-1))
    end do
    do k = n, 1, -1
       b(k) = (b(k) - dot_product(lu(k, k+1:n), b(k+1:n)))/lu(k, k)
    end do
  end subroutine lu_solve_one_dp

  subroutine lu_solve_many_dp(lu, pivot, b)
    real(dp), intent(in)    :: lu(:, :)
    integer, intent(in)     :: pivot(:)
    real(dp), intent(inout) :: b(:, :)
    integer :: column
    do column = lbound(b, 2), ubound(b, 2)
       call lu_solve(lu, pivot, b(:, column))
    end do
  end subroutine lu_solve_many_dp

  !> The lower triangle becomes L with A = L L^T; the upper triangle is set to zero.
  subroutine cholesky_sp(a, info)
    real(sp), intent(inout) :: a(:, :)
    integer(i4), intent(out) :: info
    integer :: j, n
    n = size(a, 1)
    info = merge(stat_ok, stat_bad_shape, n == size(a, 2))
    if (info /= stat_ok) return
    do j = 1, n
       a(j, j) = a(j, j) - sum(a(j, :j-1)**2)
       if (a(j, j) <= 0.0_sp) then
          info = stat_not_definite
          return
       end if
       a(j, j) = sqrt(a(j, j))
       a(j+1:, j) = (a(j+1:, j) - matmul(a(j+1:, :j-1), a(j, :j-1)))/a(j, j)
       a(j, j+1:) = 0.0_sp
    end do
  end subroutine cholesky_sp

  subroutine cholesky_dp(a, info)
    real(dp), intent(inout) :: a(:, :)
    integer(i4), intent(out) :: info
    integer :: j, n
    n = size(a, 1)
    info = merge(stat_ok, stat_bad_shape, n == size(a, 2))
    if (info /= stat_ok) return
    do j = 1, n
       a(j, j) = a(j, j) - sum(a(j, :j-1)**2)
       if (a(j, j) <= 0.0_dp) then
          info = stat_not_definite
          return
       end if
       a(j, j) = sqrt(a(j, j))
       a(j+1:, j) = (a(j+1:, j) - matmul(a(j+1:, :j-1), a(j, :j-1)))/a(j, j)
       a(j, j+1:) = 0.0_dp
    end do
  end subroutine cholesky_dp

  !> Householder QR: R in the upper triangle, the vectors below it, their scales in tau.
  subroutine qr_factor(a, tau)
    real(dp), dimension(:, :), intent(inout) :: a
    real(dp), dimension(:), intent(out) :: tau
    real(dp), dimension(size(a, 1)) :: v
    real(dp) :: alpha
    integer :: k, j, m
    m = size(a, 1)
    do k = 1, min(m - 1, size(a, 2))
       v(k:m) = a(k:m, k)
       alpha = -sign(norm2(v(k:m)), v(k))
       if (alpha == 0.0_dp) then
          tau(k) = 0.0_dp
          cycle
       end if
       v(k) = v(k) - alpha
       tau(k) = -v(k)/alpha
       v(k+1:m) = v(k+1:m)/v(k)
       v(k) = 1.0_dp
       a(k, k) = alpha
       a(k+1:m, k) = v(k+1:m)
       do j = k + 1, size(a, 2)
          a(k:m, j) = a(k:m, j) - tau(k)*dot_product(v(k:m), a(k:m, j))*v(k:m)
       end do
    end do
    if (size(a, 2) >= m) tau(m:) = 0.0_dp
  end subroutine qr_factor

  !> The x that makes |A x - b| least, by the factors of qr_factor.
  function qr_least_squares(qr, tau, b, residual) result(x)
    real(dp), intent(in) :: qr(:, :), tau(:), b(:)
    real(dp), intent(out), optional :: residual
    real(dp) :: x(size(qr, 2))
    real(dp) :: c(size(b))
    real(dp) :: s
    integer :: k, m, n
    m = size(qr, 1)
    n = size(qr, 2)
    c = b
    do k = 1, min(m - 1, n)
       s = tau(k)*(c(k) + dot_product(qr(k+1:m, k), c(k+1:m)))
       c(k) = c(k) - s
       c(k+1:m) = c(k+1:m) - s*qr(k+1:m, k)
    end do
    do k = n, 1, -1
       x(k) = (c(k) - dot_product(qr(k, k+1:n), x(k+1:n)))/qr(k, k)
    end do
    if (present(residual)) residual = norm2(c(n+1:m))
  end function qr_least_squares

  !> The determinant; a singular matrix has 0.
  function determinant(a) result(det)
    real(dp), intent(in) :: a(:, :)
    real(dp) :: det
    real(dp) :: work(size(a, 1), size(a, 2))
    integer :: pivot(size(a, 1)), i
    integer(i4) :: info
    work = a
    call lu_factor(work, pivot, info, parity=det)
    if (info == stat_ok) then
       det = det*product((/ (work(i, i), i = 1, size(a, 1)) /))
    else
       det = 0
    end if
  end function determinant

  !> The inverse, or a matrix of HUGE values where there is none.
  function inverse(a) result(b)
    real(dp), intent(in) :: a(:, :)
    real(dp), dimension(size(a, 1), size(a, 1)) :: b, work
    integer, dimension(size(a, 1)) :: pivot
    integer(i4) :: info
    integer :: i
    work = a
    b = 0.0_dp
    do i = 1, size(a, 1); b(i, i) = 1.0_dp; end do
    call lu_factor(work, pivot, info)
    if (info /= stat_ok) then
       b = huge(b)
    else
       call lu_solve(work, pivot, b)
    end if
  end function inverse

  !> A crude estimate of the reciprocal condition in the maximum norm.
  real(dp) function rcond_estimate(a)
    real(dp), intent(in) :: a(:, :)
    real(dp) :: upper
    upper = maxval(sum(abs(a), dim=2))*maxval(sum(abs(inverse(a)), dim=2))
    rcond_estimate = merge(0.0_dp, 1.0_dp/upper, upper >= 1.0_dp/epsilon(upper))
  end function rcond_estimate

end module factorizations
