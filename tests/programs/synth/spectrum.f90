! Fast Fourier transforms, windows and digital filters.
MODULE spectrum
   IMPLICIT NONE
   PRIVATE
   PUBLIC :: transform, power, window, filter, low_pass, apply, convolution

   INTEGER, PARAMETER, PUBLIC :: sp = KIND(1.0)
   REAL(sp), PARAMETER :: pi = 3.14159265_sp

   TYPE, PUBLIC :: recursive_filter
      PRIVATE
      REAL(sp), DIMENSION(0:2) :: b
      REAL(sp), DIMENSION(1:2) :: a
      REAL(sp), DIMENSION(2) :: x_before, y_before
   END TYPE recursive_filter

   INTERFACE transform
      MODULE PROCEDURE transform_complex, transform_real
   END INTERFACE

   INTERFACE apply
      MODULE PROCEDURE apply_one, apply_all
   END INTERFACE

   INTERFACE filter
      MODULE PROCEDURE new_filter
   END INTERFACE

CONTAINS

   ! In place; SIZE(z) is a power of two. The inverse is scaled.
   RECURSIVE SUBROUTINE transform_complex(z, inverse)
      COMPLEX(sp), DIMENSION(0:), INTENT(INOUT) :: z
      LOGICAL, INTENT(IN), OPTIONAL :: inverse
      COMPLEX(sp), DIMENSION(0:SIZE(z)/2 - 1) :: even, odd, turns
      REAL(sp) :: sign_of
      INTEGER :: n, k

      n = SIZE(z)
      IF (n <= 1) RETURN
      IF (IAND(n, n - 1) /= 0) STOP 'transform: not a power of two'
      sign_of = -1
      IF (PRESENT(inverse)) THEN
         IF (inverse) sign_of = 1
      END IF
      even = z(0::2)
      odd = z(1::2)
      CALL transform_complex(even, inverse)
      CALL transform_complex(odd, inverse)
      turns = EXP(CMPLX(0.0, sign_of*2*pi*(/(k, k = 0, n/2 - 1)/)/n))
      z(:n/2 - 1) = even + turns*odd
      z(n/2:) = even - turns*odd
      IF (sign_of > 0) z = z/2
   END SUBROUTINE transform_complex

   SUBROUTINE transform_real(x, z)
      REAL(sp), DIMENSION(:), INTENT(IN) :: x
      COMPLEX(sp), DIMENSION(:), INTENT(OUT) :: z
      z = x
      CALL transform_complex(z)
   END SUBROUTINE transform_real

   FUNCTION power(x) RESULT(p)
      REAL(sp), INTENT(IN) :: x(:)
      REAL(sp) :: p(0:SIZE(x)/2)
      COMPLEX(sp) :: z(0:SIZE(x) - 1)
      CALL transform(window(SIZE(x), 'hann')*x, z)
      p = ABS(z(:SIZE(x)/2))**2/SIZE(x)
   END FUNCTION power

   FUNCTION window(n, name) RESULT(w)
      INTEGER, INTENT(IN) :: n
      CHARACTER(LEN=*), INTENT(IN) :: name
      REAL(sp), DIMENSION(n) :: w
      INTEGER :: k
      REAL(sp) :: t

      DO k = 1, n
         t = 2*pi*(k - 1)/REAL(n - 1, sp)
         SELECT CASE (name)
         CASE ('hann', 'Hann', 'HANN')
            w(k) = 0.5 - 0.5*COS(t)
         CASE ('hamming')
            w(k) = 0.54 - 0.46*COS(t)
         CASE ('triangle')
            w(k) = 1.0 - ABS(t/pi - 1.0)
         CASE DEFAULT
            w(k) = 1.0
         END SELECT
      END DO
   END FUNCTION window

   FUNCTION convolution(x, y) RESULT(z)
      REAL(sp), INTENT(IN), DIMENSION(:) :: x, y
      REAL(sp), DIMENSION(SIZE(x) + SIZE(y) - 1) :: z
      INTEGER :: k
      z = 0
      DO k = 1, SIZE(y)
         z(k:k + SIZE(x) - 1) = z(k:k + SIZE(x) - 1) + x*y(k)
      END DO
   END FUNCTION convolution

   SUBROUTINE new_filter(f, cutoff, quality, high)
      TYPE(recursive_filter), INTENT(OUT) :: f
      REAL(sp), INTENT(IN) :: cutoff              ! as a part of the sampling rate
      REAL(sp), INTENT(IN), OPTIONAL :: quality
      LOGICAL, INTENT(IN), OPTIONAL :: high
      REAL(sp) :: omega, alpha, c, q

      q = 0.7071068
      IF (PRESENT(quality)) q = quality
      omega = 2*pi*cutoff
      c = COS(omega)
      alpha = SIN(omega)/(2*q)
      f%b = (/ 1 - c, 2*(1 - c), 1 - c /)/2
      IF (PRESENT(high)) THEN
         IF (high) f%b = (/ 1 + c, -2*(1 + c), 1 + c /)/2
      END IF
      f%b = f%b/(1 + alpha)
      f%a = (/ -2*c, 1 - alpha /)/(1 + alpha)
      f%x_before = 0
      f%y_before = 0
   END SUBROUTINE new_filter

   FUNCTION low_pass(taps, cutoff) RESULT(h)
      INTEGER, INTENT(IN) :: taps
      REAL(sp), INTENT(IN) :: cutoff
      REAL(sp), DIMENSION(-taps:taps) :: h
      INTEGER :: k
      h(0) = 2*cutoff
      DO k = 1, taps
         h(k) = SIN(2*pi*cutoff*k)/(pi*k)
         h(-k) = h(k)
      END DO
      h = h*window(2*taps + 1, 'hamming')
      h = h/SUM(h)
   END FUNCTION low_pass

   SUBROUTINE apply_one(f, x, y)
      TYPE(recursive_filter), INTENT(INOUT) :: f
      REAL(sp), INTENT(IN) :: x
      REAL(sp), INTENT(OUT) :: y
      y = f%b(0)*x + DOT_PRODUCT(f%b(1:), f%x_before) - DOT_PRODUCT(f%a, f%y_before)
      f%x_before = (/ x, f%x_before(1) /)
      f%y_before = EOSHIFT(f%y_before, -1, y)
   END SUBROUTINE apply_one

   SUBROUTINE apply_all(f, x)
      TYPE(recursive_filter), INTENT(INOUT) :: f
      REAL(sp), DIMENSION(:), INTENT(INOUT) :: x
      INTEGER :: k
      REAL(sp) :: y
      DO k = 1, SIZE(x)
         CALL apply_one(f, x(k), y)
         x(k) = y
      END DO
   END SUBROUTINE apply_all

END MODULE spectrum
