module line_searches
  ! Roots and minima of functions of one variable.
  use working_precision
  implicit none
  private
  public :: bracket_minimum, golden_section, parabolic_minimum, find_root, root_info

  type root_info
     real(wp) :: root, value
     integer :: evaluations
     logical :: found
  end type root_info

  ! Each routine takes the function to be examined as its first argument.
  interface
     ! A stop criterion shared by the searches; it is an external procedure
     logical function close_enough(a, b, tolerance)
       use working_precision
       real(wp), intent(in) :: a, b, tolerance
     end function close_enough
  end interface

contains

  !> From a and b downhill to a triple a, b, c with f(b) below f(a) and f(c).
  subroutine bracket_minimum(f, a, b, c, fb)
    interface
       function f(x)
         use working_precision, only: wp
         real(wp) :: f
         real(wp), intent(in) :: x
       end function f
    end interface
    real(wp), intent(inout) :: a, b
    real(wp), intent(out) :: c
    real(wp), intent(out), optional :: fb
    real(wp) :: fa, f_b, fc, t
    fa = f(a)
    f_b = f(b)
    if (f_b > fa) then
       t = a;  a = b;  b = t
       t = fa; fa = f_b; f_b = t
    end if
    do
       c = b + (b - a)/golden*(1.0_wp - golden)
       fc = f(c)
       if (fc >= f_b .or. abs(c) > sqrt(huge(c))) exit
       a = b; fa = f_b
       b = c; f_b = fc
    end do
    if (present(fb)) fb = f_b
  end subroutine bracket_minimum

  function golden_section(f, a, c, tolerance) result(x)
    interface
       function f(x)
         use working_precision, only: wp
         real(wp) :: f
         real(wp), intent(in) :: x
       end function f
    end interface
    real(wp), intent(in) :: a, c
    real(wp), intent(in), optional :: tolerance
    real(wp) :: x, low, high, x1, x2, f1, f2, tol
    tol = root_eps
    if (present(tolerance)) tol = max(tol, tolerance)
    low = min(a, c)
    high = max(a, c)
    x1 = low + golden*(high - low)
    x2 = high - golden*(high - low)
    f1 = f(x1)
    f2 = f(x2)
    do while (.not. close_enough(low, high, tol))
       if (f1 < f2) then
          high = x2; x2 = x1; f2 = f1
          x1 = low + golden*(high - low)
          f1 = f(x1)
       else
          low = x1; x1 = x2; f1 = f2
          x2 = high - golden*(high - low)
          f2 = f(x2)
       end if
    end do
    x = merge(x1, x2, f1 < f2)
  end function golden_section

  !> Parabolas through three points, with a golden section where they go astray
  subroutine parabolic_minimum(f, a, b, c, x, fx, steps)
    interface
       function f(x)
         use working_precision, only: wp
         real(wp) :: f
         real(wp), intent(in) :: x
       end function f
    end interface
    real(wp), intent(in) :: a, b, c
    real(wp), intent(out) :: x, fx
    integer, intent(out), optional :: steps
    real(wp) :: low, high, w, v, fw, fv, p, q, r, d, e, u, fu, middle, tol
    integer :: step
    low = min(a, c); high = max(a, c)
    x = b; w = b; v = b
    fx = f(x); fw = fx; fv = fx
    d = 0.0_wp; e = 0.0_wp
    do step = 1, 100
       middle = 0.5_wp*(low + high)
       tol = root_eps*abs(x) + 1.0e-12_wp
       if (abs(x - middle) <= 2*tol - 0.5_wp*(high - low)) exit
       p = 0; q = 0; r = 0
       if (abs(e) > tol) then
          r = (x - w)*(fx - fv)
          q = (x - v)*(fx - fw)
          p = (x - v)*q - (x - w)*r
          q = 2*(q - r)
          if (q > 0) p = -p
          q = abs(q)
          r = e
          e = d
       end if
       if (abs(p) < abs(0.5_wp*q*r) .and. p > q*(low - x) .and. p < q*(high - x)) then
          d = p/q
       else
          e = merge(low, high, x >= middle) - x
          d = golden*e
       end if
       u = x + merge(d, sign(tol, d), abs(d) >= tol)
       fu = f(u)
       if (fu <= fx) then
          if (u >= x) then; low = x; else; high = x; endif
          v = w; fv = fw; w = x; fw = fx; x = u; fx = fu
       else
          if (u < x) then; low = u; else; high = u; endif
          if (fu <= fw .or. w == x) then
             v = w; fv = fw; w = u; fw = fu
          else if (fu <= fv .or. v == x .or. v == w) then
             v = u; fv = fu
          end if
       end if
    end do
    if (present(steps)) steps = step
  end subroutine parabolic_minimum

  !> A root between a and b, where f has different signs: secants, kept in the bracket.
  function find_root(f, a, b, tolerance) result(info)
    interface
       function f(x)
         use working_precision, only: wp
         real(wp) :: f
         real(wp), intent(in) :: x
       end function f
    end interface
    real(wp), intent(in) :: a, b, tolerance
    type(root_info) :: info
    real(wp) :: low, high, f_low, f_high, x, fx
    integer :: side
    low = a;  high = b
    f_low = f(low);  f_high = f(high)
    info = root_info(low, f_low, 2, .false.)
    if (f_low*f_high > 0) return
    side = 0
    do
       x = (f_low*high - f_high*low)/(f_low - f_high)
       fx = f(x)
       info%evaluations = info%evaluations + 1
       if (close_enough(low, high, tolerance) .or. abs(fx) <= tiny(fx) .or. info%evaluations > 200) exit
       if (fx*f_high > 0) then
          high = x; f_high = fx
          if (side == -1) f_low = 0.5_wp*f_low
          side = -1
       else
          low = x; f_low = fx
          if (side == +1) f_high = 0.5_wp*f_high
          side = +1
       end if
       if (abs(fx) < tolerance*tolerance) exit
    end do
    info%root = x
    info%value = fx
    info%found = info%evaluations <= 200
  end function find_root

end module line_searches

logical function close_enough(a, b, tolerance)
  use working_precision
  implicit none
  real(wp), intent(in) :: a, b, tolerance
  close_enough = abs(a - b) <= tolerance*max(1.0_wp, abs(a), abs(b))
end function close_enough
