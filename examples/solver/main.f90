! Solves a system in two ways and compares.
program main
  use solvers
  use errors
  implicit none

  interface
    subroutine report(name, x, residual)
      use kinds
      use vectors
      character(len=*), intent(in) :: name
      type(vector), intent(in) :: x
      real(real_kind), intent(in) :: residual
    end subroutine report
  end interface

  integer, parameter :: n = 20
  type(matrix) :: m
  type(vector) :: b, x, y
  type(error_state) :: state
  integer :: i, steps

  m = new_matrix(n, n)
  do i = 1, n
    m%a(i, i) = 2
    if (i > 1) m%a(i, i - 1) = -1
    if (i < n) m%a(i, i + 1) = -1
  end do
  b = new_vector(n)
  b = 1.0_real_kind
  x = new_vector(n)
  y = new_vector(n)

  call clear_error(state)
  call solve(m, b, x, state)
  if (.not. failed(state)) call report('elimination', x, norm(b - m * x))

  call solve(m, b, y, 1.0e-10_real_kind, steps, state)
  if (failed(state)) then
    print *, error_text(state)
  else
    call report('gradients', y, norm(b - m * y))
    print *, 'after', steps, 'steps; difference', norm(x%x - y%x)
  end if
end program main
