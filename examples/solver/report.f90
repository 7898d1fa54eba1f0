! A line about a solution. An external procedure: its callers declare its interface.
subroutine report(name, x, residual)
  use texts
  use vectors, only: vector
  use kinds, wp => real_kind
  implicit none
  character(len=*), intent(in) :: name
  type(vector), intent(in) :: x
  real(wp), intent(in) :: residual
  integer :: i

  print '(5a)', ' ', name, ' (', trim(to_text(x%n)), ' unknowns)'
  do i = 1, min(x%n, 4)
    print '(4a)', '   x', trim(to_text(i)), ' = ', trim(to_text(x%x(i), 4))
  end do
  print '(2a)', '   residual ', trim(to_text(residual, digits=1))
end subroutine report
