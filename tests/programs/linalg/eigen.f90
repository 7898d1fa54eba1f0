!> Eigenvalues of symmetric matrices by rotations, and the largest one by iteration.
module eigen
  use kinds, wp => dp
  use norms, only: operator(.dot.), scale_to_unit => normalize, identity
  implicit none
  private
  public :: jacobi_eigen, power_iteration, sort_eigen, tridiagonal_eigenvalues

  integer, parameter :: max_sweeps = 60

contains

  !> All eigenvalues and vectors of a symmetric matrix. The matrix is destroyed.
  subroutine jacobi_eigen(a, d, v, sweeps, info)
    real(wp), intent(inout) :: a(:, :)
    real(wp), intent(out) :: d(:), v(:, :)
    integer, intent(out), optional :: sweeps
    integer(i4), intent(out) :: info
    real(wp) :: off, theta, t, c, s
    integer :: p, q, n, sweep

    n = size(a, 1)
    v = identity(n)
    info = stat_no_convergence
    do sweep = 1, max_sweeps
       off = off_diagonal()
       if (off <= epsilon(off)**2*sum(a**2)) then
          info = stat_ok
          exit
       end if
       do p = 1, n - 1
          do q = p + 1, n
             if (abs(a(p, q)) <= tiny(1.0_wp)) cycle
             theta = (a(q, q) - a(p, p))/(2.0_wp*a(p, q))
             t = sign(1.0_wp, theta)/(abs(theta) + sqrt(theta*theta + 1.0_wp))
             c = 1.0_wp/sqrt(t*t + 1.0_wp)
             s = t*c
             call rotate_columns(a, p, q, c, s)
             call rotate_rows(p, q)
             call rotate_columns(v, p, q, c, s)
          end do
       end do
    end do
    d = (/ (a(p, p), p = 1, n) /)
    if (present(sweeps)) sweeps = sweep - 1

  contains

    ! The sum of the squares off the diagonal
    function off_diagonal() result(total)
      real(wp) :: total
      integer :: i
      total = sum(a**2)
      do i = 1, n
         total = total - a(i, i)**2
      end do
      total = max(total, 0.0_wp)
    end function off_diagonal

    ! Uses the angle of the host
    subroutine rotate_rows(i, j)
      integer, intent(in) :: i, j
      real(wp) :: ri(n)
      ri = a(i, 1:n)
      a(i, 1:n) = c*ri - s*a(j, 1:n)
      a(j, 1:n) = s*ri + c*a(j, 1:n)
    end subroutine rotate_rows

  end subroutine jacobi_eigen

  subroutine rotate_columns(m, i, j, c, s)
    real(wp), intent(inout) :: m(:, :)
    integer, intent(in) :: i, j
    real(wp), intent(in) :: c, s
    real(wp) :: mi(size(m, 1))
    mi = m(:, i)
    m(:, i) = c*mi - s*m(:, j)
    m(:, j) = s*mi + c*m(:, j)
  end subroutine rotate_columns

  !> The eigenvalue of largest modulus, from the start vector x, which becomes its vector.
  subroutine power_iteration(a, x, lambda, tolerance, info)
    real(wp), intent(in) :: a(:, :)
    real(wp), intent(inout) :: x(:)
    real(wp), intent(out) :: lambda
    real(wp), intent(in), optional :: tolerance
    integer(i4), intent(out) :: info
    real(wp) :: y(size(x)), before, tol
    integer :: step

    tol = 10.0_wp*epsilon(1.0_wp)
    if (present(tolerance)) tol = max(tol, tolerance)
    info = stat_no_convergence
    call scale_to_unit(x)
    lambda = 0
    do step = 1, 2000
       y = matmul(a, x)
       before = lambda
       lambda = x .dot. y
       call scale_to_unit(y)
       x = y
       if (abs(lambda - before) <= tol*abs(lambda)) then
          info = stat_ok
          return
       end if
    end do
  end subroutine power_iteration

  !> Sorts eigenvalues in ascending order together with the columns of the vectors.
  subroutine sort_eigen(d, v)
    real(wp), dimension(:), intent(inout) :: d
    real(wp), dimension(:, :), intent(inout) :: v
    integer :: i, k
    integer, dimension(1) :: place
    do i = 1, size(d) - 1
       place = minloc(d(i:))
       k = i + place(1) - 1
       if (k .ne. i) then
          d((/ i, k /)) = d((/ k, i /))
          v(:, (/ i, k /)) = v(:, (/ k, i /))
       end if
    end do
  end subroutine sort_eigen

  !> Eigenvalues of a symmetric tridiagonal matrix by bisection with Sturm sequences.
  function tridiagonal_eigenvalues(diag, sub) result(w)
    real(wp), intent(in) :: diag(:), sub(:)
    real(wp) :: w(size(diag))
    real(wp) :: low, high, radius(size(diag)), a, b, mid
    integer :: k, n
    n = size(diag)
    radius = eoshift((/ abs(sub(1:n-1)), 0.0_wp /), -1) + (/ abs(sub(1:n-1)), 0.0_wp /)
    low = minval(diag - radius)
    high = maxval(diag + radius)
    do k = 1, n
       a = low; b = high
       do
          mid = 0.5_wp*(a + b)
          if (b - a <= 4*spacing(max(abs(a), abs(b))) .or. mid <= a .or. mid >= b) exit
          if (count_below(mid) >= k) then
             b = mid
          else
             a = mid
          end if
       end do
       w(k) = mid
    end do
  contains
    integer function count_below(x)
      real(wp), intent(in) :: x
      real(wp) :: q
      integer :: i
      count_below = 0
      q = diag(1) - x
      if (q < 0) count_below = 1
      do i = 2, n
         if (abs(q) < tiny(q)) q = sign(tiny(q), q)
         q = diag(i) - x - sub(i-1)**2/q
         if (q < 0) count_below = count_below + 1
      end do
    end function count_below
  end function tridiagonal_eigenvalues

end module eigen
