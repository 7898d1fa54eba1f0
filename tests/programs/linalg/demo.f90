! Exercises the dense linear algebra and prints what can be checked by eye.
program demo
  use kinds
  use norms
  use factorizations
  use eigen
  implicit none
  integer, parameter :: n = 6
  real(dp) :: hilbert(n, n), a(n, n), b(n), x(n), d(n), v(n, n), lambda
  real(sp) :: small(3, 3), rhs(3)
  integer :: i, j, pivot(n), pivot3(3), sweeps
  integer(i4) :: info
  integer(i1) :: failures
  character(len=*), parameter :: row_format = '(1x, a12, 6(1x, es10.3))'

  failures = 0_i1
  hilbert = reshape((/ ((1.0_dp/real(i + j - 1, dp), i = 1, n), j = 1, n) /), (/ n, n /))

  ! A system with a known solution
  x = (/ (real(i, dp), i = 1, n) /)
  b = matmul(hilbert, x)
  a = hilbert
  call lu_factor(a, pivot, info)
  call lu_solve(a, pivot, b)
  print row_format, 'solution', b
  call expect(maxval(abs(b - x)) < 1.0e-8_dp, 'LU of the Hilbert matrix')

  ! Single precision
  small = reshape((/ 4.0, 1.0, 0.0, 1.0, 4.0, 1.0, 0.0, 1.0, 4.0 /), (/ 3, 3 /))
  rhs = matmul(small, (/ 1.0_sp, -1.0_sp, 2.0_sp /))
  call lu_factor(small, pivot3, info)
  call lu_solve(small, pivot3, rhs)
  call expect(all(abs(rhs - (/ 1.0, -1.0, 2.0 /)) < 1.0e-5), 'LU in single precision')

  ! Cholesky
  a = hilbert
  call cholesky(a, info)
  call expect(info == stat_ok .and. frobenius(matmul(a, transpose(a)) - hilbert) < 1.0e-14_dp, &
       'Cholesky of the Hilbert matrix')
  a = -hilbert
  call cholesky(a, info)
  call expect(info == stat_not_definite, 'a negative matrix: ' // trim(status_text(info)))

  ! Determinant and inverse
  a = identity(n) + outer(x, x)
  call expect(abs(determinant(a) - (1 + (x .dot. x))) < 1.0e-10_dp, 'determinant lemma')
  call expect(norm_inf(matmul(inverse(a), a) - identity(n)) < 1.0e-12_dp, 'inverse')
  print '(a, es10.3)', ' reciprocal condition of the Hilbert matrix about ', rcond_estimate(hilbert)

  ! Eigenvalues
  a = hilbert
  call jacobi_eigen(a, d, v, sweeps=sweeps, info=info)
  call sort_eigen(d, v)
  print row_format, 'eigenvalues', d
  print *, 'sweeps of rotations: ', sweeps
  call expect(abs(sum(d) - trace(hilbert)) < 1.0e-13_dp, 'the trace is the sum of eigenvalues')
  call expect(frobenius(matmul(hilbert, v) - v*spread(d, 1, n)) < 1.0e-13_dp, 'eigenvectors')
  x = 1.0_dp
  call power_iteration(hilbert, x, lambda, info=info)
  call expect(info == stat_ok .and. abs(lambda - d(n)) < 1.0e-10_dp, 'power iteration')
  d = tridiagonal_eigenvalues((/ (2.0_dp, i = 1, n) /), (/ (-1.0_dp, i = 1, n - 1) /))
  call expect(maxval(abs(d - (/ (2 - 2*cos(i*pi_dp/(n + 1)), i = 1, n) /))) < 1.0e-13_dp, &
       'eigenvalues of a chain')

  call fit_a_line
  if (norm2((/ (3.0_dp, 4.0_dp), imag_unit /)) - sqrt(26.0_dp) > 1.0e-14_dp) failures = failures + 1_i1

  write (*, '(1x, a, i3)') 'failures:', failures
contains
  subroutine expect(holds, what)
    logical, intent(in) :: holds
    character(len=*), intent(in) :: what
    write (*, '(1x, a, t50, a)') what, merge('passed', 'FAILED', holds)
    if (.not. holds) failures = failures + 1_i1
  end subroutine expect

  ! Least squares: points on y = 2 - 0.5 t with small alternating errors
  subroutine fit_a_line
    integer, parameter :: m = 20
    real(dp) :: design(m, 2), y(m), tau(2), coefficients(2), rest
    integer :: k
    do k = 1, m
       design(k, :) = (/ 1.0_dp, 0.1_dp*k /)
       y(k) = 2.0_dp - 0.05_dp*k + 0.001_dp*(-1)**k
    end do
    call qr_factor(design, tau)
    coefficients = qr_least_squares(design, tau, y, rest)
    write (*, '(1x, "fit: ", 2f10.5, " residual ", es9.2)') coefficients, rest
    call expect(abs(coefficients(1) - 2.0_dp) < 1.0e-3_dp, 'least squares')
  end subroutine fit_a_line
end program demo
