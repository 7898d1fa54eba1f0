MODULE krylov
!  Iterative solvers. The preconditioner is a procedure of the caller.
  USE precision, ONLY: wp => rk
  USE sparse_matrices, ONLY: csr, OPERATOR (*), diagonal
  IMPLICIT NONE
  PRIVATE
  PUBLIC conjugate_gradients, bicgstab, gauss_seidel, jacobi_scaling

CONTAINS

  SUBROUTINE conjugate_gradients (a, b, x, precondition, tolerance, steps, converged)
    TYPE (csr), INTENT (IN) :: a
    REAL (wp), DIMENSION (:), INTENT (IN) :: b
    REAL (wp), DIMENSION (:), INTENT (INOUT) :: x
    INTERFACE
       FUNCTION precondition (matrix, r) RESULT (z)
         USE precision
         USE sparse_matrices
         TYPE (csr), INTENT (IN) :: matrix
         REAL (rk), INTENT (IN) :: r(:)
         REAL (rk) :: z(SIZE (r))
       END FUNCTION precondition
    END INTERFACE
    REAL (wp), INTENT (IN) :: tolerance
    INTEGER, INTENT (INOUT) :: steps        ! the most allowed, then those done
    LOGICAL, INTENT (OUT) :: converged
    REAL (wp), DIMENSION (SIZE (b)) :: r, z, p, q
    REAL (wp) :: rho, rho_old, goal
    INTEGER :: k

    r = b - a*x
    goal = tolerance * SQRT (SUM (b**2))
    converged = .TRUE.
    rho_old = 1
    p = 0
    DO k = 1, steps
       IF (SQRT (DOT_PRODUCT (r, r)) <= goal) THEN
          steps = k - 1
          RETURN
       END IF
       z = precondition (a, r)
       rho = DOT_PRODUCT (r, z)
       p = z + (rho/rho_old)*p
       q = a*p
       rho_old = rho
       rho = rho / DOT_PRODUCT (p, q)
       x = x + rho*p
       r = r - rho*q
    END DO
    converged = SQRT (DOT_PRODUCT (r, r)) <= goal
  END SUBROUTINE conjugate_gradients

  SUBROUTINE bicgstab (a, b, x, tolerance, steps, converged)
    TYPE (csr), INTENT (IN) :: a
    REAL (wp), INTENT (IN) :: b(:), tolerance
    REAL (wp), INTENT (INOUT) :: x(:)
    INTEGER, INTENT (INOUT) :: steps
    LOGICAL, INTENT (OUT) :: converged
    REAL (wp), DIMENSION (SIZE (x)) :: r, shadow, p, v, s, t
    REAL (wp) :: rho, rho_old, alpha, omega, goal
    INTEGER :: k
    r = b - a*x
    shadow = r
    rho_old = 1; alpha = 1; omega = 1
    p = 0; v = 0
    goal = tolerance*SQRT (DOT_PRODUCT (b, b))
    converged = .FALSE.
    iterate: DO k = 1, steps
       rho = DOT_PRODUCT (shadow, r)
       IF (ABS (rho) < TINY (rho)) EXIT iterate
       p = r + (rho/rho_old)*(alpha/omega)*(p - omega*v)
       v = a*p
       alpha = rho/DOT_PRODUCT (shadow, v)
       s = r - alpha*v
       t = a*s
       IF (ALL (t == 0)) THEN
          omega = 0
       ELSE
          omega = DOT_PRODUCT (t, s)/DOT_PRODUCT (t, t)
       END IF
       x = x + alpha*p + omega*s
       r = s - omega*t
       IF (SQRT (SUM (r*r)) <= goal) THEN
          converged = .TRUE.
          EXIT iterate
       END IF
       rho_old = rho
    END DO iterate
    steps = MIN (k, steps)
  END SUBROUTINE bicgstab

  SUBROUTINE gauss_seidel (a, b, x, sweeps, relaxation)
    TYPE (csr), INTENT (IN) :: a
    REAL (wp), INTENT (IN) :: b(:)
    REAL (wp), INTENT (INOUT) :: x(:)
    INTEGER, INTENT (IN) :: sweeps
    REAL (wp), INTENT (IN), OPTIONAL :: relaxation
    REAL (wp) :: d(SIZE (b)), w, s
    INTEGER :: i, n
    w = 1
    IF (PRESENT (relaxation)) w = relaxation
    d = diagonal (a)
    DO n = 1, sweeps
       DO i = 1, a%rows
          row_length: SELECT CASE (a%start(i + 1) - a%start(i))
          CASE (:0)
             CYCLE
          CASE DEFAULT
             s = DOT_PRODUCT (a%value(a%start(i):a%start(i+1)-1), x(a%column(a%start(i):a%start(i+1)-1)))
             x(i) = x(i) + w*(b(i) - s)/d(i)
          END SELECT row_length
       END DO
    END DO
  END SUBROUTINE gauss_seidel

  FUNCTION jacobi_scaling (matrix, r) RESULT (z)
    TYPE (csr), INTENT (IN) :: matrix
    REAL (wp), INTENT (IN) :: r(:)
    REAL (wp) :: z(SIZE (r))
    z = r / diagonal (matrix)
  END FUNCTION jacobi_scaling

END MODULE krylov
