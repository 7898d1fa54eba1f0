! Two solvers of linear systems under one generic name, chosen by their arguments.
module solvers
  use errors, only: error_state, set_error, failed, singular, bad_shape
  use matrices
  implicit none

  interface solve
    module procedure solve_directly, solve_by_gradients
  end interface

  integer, private, parameter :: most_steps = 1000

contains

  ! Elimination with a search for the largest pivot.
  subroutine solve_directly(m, b, x, state)
    type(matrix), intent(in) :: m
    type(vector), intent(in) :: b
    type(vector), intent(inout) :: x
    type(error_state), intent(inout) :: state
    real(real_kind) :: work(m%rows, m%columns + 1), row(m%columns + 1)
    integer :: i, k, place(1), pivot, n

    n = m%rows
    if (n /= m%columns .or. n /= b%n) then
      call set_error(state, bad_shape, 'solve_directly')
      return
    end if
    work(:, 1:n) = m%a
    work(:, n + 1) = b%x
    do k = 1, n
      place = maxloc(abs(work(k:n, k)))
      pivot = place(1) + k - 1
      if (abs(work(pivot, k)) < tiny_pivot) then
        call set_error(state, singular, 'solve_directly')
        return
      end if
      row = work(pivot, :)
      work(pivot, :) = work(k, :)
      work(k, :) = row / row(k)
      do i = k + 1, n
        work(i, k:) = work(i, k:) - work(i, k) * work(k, k:)
      end do
    end do
    x = work(:, n + 1)
    do k = n - 1, 1, -1
      x%x(k) = x%x(k) - dot_product(work(k, k + 1:n), x%x(k + 1:n))
    end do
  end subroutine solve_directly

  ! Conjugate gradients, for a symmetric matrix with a positive spectrum.
  subroutine solve_by_gradients(m, b, x, accuracy, steps, state)
    type(matrix), intent(in) :: m
    type(vector), intent(in) :: b
    type(vector), intent(inout) :: x
    real(real_kind), intent(in) :: accuracy
    integer, intent(out) :: steps
    type(error_state), intent(inout) :: state
    type(vector) :: r, p, q
    real(real_kind) :: rho, last_rho, alpha

    r = b - m * x
    p = r
    rho = r .dot. r
    do steps = 1, most_steps
      if (sqrt(rho) <= accuracy) return
      q = m * p
      alpha = rho / (p .dot. q)
      x = x + alpha * p
      r = r - alpha * q
      last_rho = rho
      rho = r .dot. r
      p = r + (rho / last_rho) * p
    end do
    call set_error(state, singular, 'solve_by_gradients')
  end subroutine solve_by_gradients

end module solvers
