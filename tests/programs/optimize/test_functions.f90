module test_functions
  use working_precision
  implicit none
  real(wp), dimension(2, 12), save :: towns
contains
  function banana(x) result(f)
    real(wp), intent(in) :: x(:)
    real(wp) :: f
    f = sum(100*(x(2:) - x(:size(x)-1)**2)**2 + (1 - x(:size(x)-1))**2)
  end function banana

  subroutine banana_gradient(x, g)
    real(wp), dimension(:), intent(in) :: x
    real(wp), dimension(:), intent(out) :: g
    integer :: n
    n = size(x)
    g = 0
    g(:n-1) = -400*x(:n-1)*(x(2:) - x(:n-1)**2) - 2*(1 - x(:n-1))
    g(2:) = g(2:) + 200*(x(2:) - x(:n-1)**2)
  end subroutine banana_gradient

  real(wp) function himmel(x)
    real(wp), intent(in) :: x(:)
    himmel = (x(1)**2 + x(2) - 11)**2 + (x(1) + x(2)**2 - 7)**2
  end function himmel

  function cubic(x)
    real(wp) :: cubic
    real(wp), intent(in) :: x
    cubic = (x - 2)*x*(x + 3) - 1
  end function cubic

  function valley(x)
    real(wp) :: valley
    real(wp), intent(in) :: x
    valley = cosh(x - 1.5_wp) + 0.1_wp*x
  end function valley

  ! p(1) exp(-p(2) t) + p(3)
  subroutine decay(t, p, value, derivatives)
    real(wp), intent(in) :: t, p(:)
    real(wp), intent(out) :: value, derivatives(:)
    real(wp) :: e
    e = exp(-p(2)*t)
    value = p(1)*e + p(3)
    derivatives = (/ e, -p(1)*t*e, 1.0_wp /)
  end subroutine decay

  function tour_length(order) result(c)
    integer, intent(in) :: order(:)
    real(wp) :: c
    c = sum(sqrt(sum((towns(:, order) - towns(:, cshift(order, 1)))**2, dim=1)))
  end function tour_length
end module test_functions
