MODULE splines
  ! Cubic splines through points, with natural, clamped or periodic ends, and closed curves.
  USE plane_geometry, ONLY: wp => rp, point, polygon
  IMPLICIT NONE
  PRIVATE
  PUBLIC spline, make_spline, periodic_spline, value, slope, integral, curve, curve_through, place_on

  TYPE spline
    PRIVATE
    INTEGER :: n
    REAL(wp), POINTER, DIMENSION(:) :: x, y, m       ! m: the second derivatives
  END TYPE spline

  TYPE curve
    TYPE(spline) :: of_x, of_y
    REAL(wp) :: length
  END TYPE curve

  INTERFACE value
    MODULE PROCEDURE value_scalar, value_vector
  END INTERFACE

CONTAINS

  SUBROUTINE fill(s, x, y)
    TYPE(spline), INTENT(OUT) :: s
    REAL(wp), INTENT(IN) :: x(:), y(:)
    s%n = MIN(SIZE(x), SIZE(y))
    ALLOCATE (s%x(s%n), s%y(s%n), s%m(s%n))
    s%x = x(:s%n); s%y = y(:s%n); s%m = 0
  END SUBROUTINE fill

  ! Natural ends where no slope is given
  FUNCTION make_spline(x, y, first_slope, last_slope) RESULT(s)
    REAL(wp), DIMENSION(:), INTENT(IN) :: x, y
    REAL(wp), INTENT(IN), OPTIONAL :: first_slope, last_slope
    TYPE(spline) :: s
    REAL(wp), DIMENSION(SIZE(x)) :: low, diag, up, rhs
    REAL(wp) :: h(SIZE(x) - 1), d(SIZE(x) - 1)
    INTEGER :: n
    CALL fill(s, x, y)
    n = s%n
    h = x(2:) - x(:n-1)
    d = (y(2:) - y(:n-1))/h
    low = (/ 0.0_wp, h(:n-2), 0.0_wp /)
    up = (/ 0.0_wp, h(2:), 0.0_wp /)
    diag = 1
    diag(2:n-1) = 2*(h(1:n-2) + h(2:n-1))
    rhs = 0
    rhs(2:n-1) = 6*(d(2:) - d(:n-2))
    IF (PRESENT(first_slope)) THEN
      diag(1) = 2*h(1); up(1) = h(1); rhs(1) = 6*(d(1) - first_slope)
    END IF
    IF (PRESENT(last_slope)) THEN
      diag(n) = 2*h(n-1); low(n) = h(n-1); rhs(n) = 6*(last_slope - d(n-1))
    END IF
    s%m = tridiagonal(low, diag, up, rhs)
  END FUNCTION make_spline

  ! y(1) and y(n) are alike. The corners of the system are taken off and put right afterwards.
  FUNCTION periodic_spline(x, y) RESULT(s)
    REAL(wp), INTENT(IN) :: x(:), y(:)
    TYPE(spline) :: s
    REAL(wp), DIMENSION(SIZE(x) - 1) :: h, d, diag, rhs, u, z, w
    REAL(wp) :: g, f
    INTEGER :: n
    CALL fill(s, x, y)
    n = SIZE(h)
    h = x(2:) - x(:n)
    d = (y(2:) - y(:n))/h
    diag = 2*(h + CSHIFT(h, -1))
    rhs = 6*(d - CSHIFT(d, -1))
    g = -diag(1)
    diag(1) = diag(1) - g
    diag(n) = diag(n) - h(n)**2/g
    u = 0; u(1) = g; u(n) = h(n)
    z = tridiagonal(CSHIFT(h, -1), diag, h, rhs)
    w = tridiagonal(CSHIFT(h, -1), diag, h, u)
    f = (z(1) + h(n)*z(n)/g)/(1 + w(1) + h(n)*w(n)/g)
    s%m(:n) = z - f*w
    s%m(n+1) = s%m(1)
  END FUNCTION periodic_spline

  FUNCTION tridiagonal(low, diag, up, rhs) RESULT(x)
    REAL(wp), DIMENSION(:), INTENT(IN) :: low, diag, up, rhs
    REAL(wp), DIMENSION(SIZE(rhs)) :: x, c
    REAL(wp) :: pivot
    INTEGER :: i
    pivot = diag(1)
    x(1) = rhs(1)/pivot
    DO i = 2, SIZE(rhs)
      c(i) = up(i-1)/pivot
      pivot = diag(i) - low(i)*c(i)
      x(i) = (rhs(i) - low(i)*x(i-1))/pivot
    END DO
    DO i = SIZE(rhs) - 1, 1, -1
      x(i) = x(i) - c(i+1)*x(i+1)
    END DO
  END FUNCTION tridiagonal

  INTEGER FUNCTION interval(s, t) RESULT(low)
    TYPE(spline), INTENT(IN) :: s
    REAL(wp), INTENT(IN) :: t
    INTEGER :: high, middle
    low = 1; high = s%n
    DO WHILE (high - low > 1)
      middle = (low + high)/2
      IF (s%x(middle) > t) THEN
        high = middle
      ELSE
        low = middle
      END IF
    END DO
  END FUNCTION interval

  FUNCTION value_scalar(s, t) RESULT(v)
    TYPE(spline), INTENT(IN) :: s
    REAL(wp), INTENT(IN) :: t
    REAL(wp) :: v, h, a, b
    INTEGER :: k
    k = interval(s, t)
    h = s%x(k+1) - s%x(k)
    a = (s%x(k+1) - t)/h
    b = 1 - a
    v = a*s%y(k) + b*s%y(k+1) + ((a**3 - a)*s%m(k) + (b**3 - b)*s%m(k+1))*h**2/6
  END FUNCTION value_scalar

  FUNCTION value_vector(s, t) RESULT(v)
    TYPE(spline), INTENT(IN) :: s
    REAL(wp), INTENT(IN) :: t(:)
    REAL(wp) :: v(SIZE(t))
    INTEGER :: i
    v = (/ (value_scalar(s, t(i)), i = 1, SIZE(t)) /)
  END FUNCTION value_vector

  REAL(wp) FUNCTION slope(s, t)
    TYPE(spline), INTENT(IN) :: s
    REAL(wp), INTENT(IN) :: t
    REAL(wp) :: h, a, b
    INTEGER :: k
    k = interval(s, t)
    h = s%x(k+1) - s%x(k)
    a = (s%x(k+1) - t)/h; b = 1 - a
    slope = (s%y(k+1) - s%y(k))/h + ((3*b**2 - 1)*s%m(k+1) - (3*a**2 - 1)*s%m(k))*h/6
  END FUNCTION slope

  REAL(wp) FUNCTION integral(s)
    TYPE(spline), INTENT(IN) :: s
    REAL(wp), DIMENSION(s%n - 1) :: h
    h = s%x(2:) - s%x(:s%n-1)
    integral = SUM(0.5_wp*h*(s%y(2:) + s%y(:s%n-1)) - h**3/24*(s%m(2:) + s%m(:s%n-1)))
  END FUNCTION integral

  ! A closed curve through the corners of a polygon; the parameter goes from 0 to length.
  SUBROUTINE curve_through(p, c)
    TYPE(polygon), INTENT(IN) :: p
    TYPE(curve), INTENT(OUT) :: c
    REAL(wp), DIMENSION(p%corners + 1) :: t, x, y
    INTEGER :: i
    x = (/ p%p%x, p%p(1)%x /)
    y = (/ p%p%y, p%p(1)%y /)
    t(1) = 0
    DO i = 2, SIZE(t)
      t(i) = t(i-1) + SQRT((x(i) - x(i-1))**2 + (y(i) - y(i-1))**2)
    END DO
    c%of_x = periodic_spline(t, x)
    c%of_y = periodic_spline(t, y)
    c%length = t(SIZE(t))
  END SUBROUTINE curve_through

  FUNCTION place_on(c, t) RESULT(p)
    TYPE(curve), INTENT(IN) :: c
    REAL(wp), INTENT(IN) :: t
    TYPE(point) :: p
    p = point(value(c%of_x, MODULO(t, c%length)), value(c%of_y, MODULO(t, c%length)))
  END FUNCTION place_on

END MODULE splines
