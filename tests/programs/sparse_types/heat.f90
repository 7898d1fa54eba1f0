PROGRAM heat
!  The steady temperature of a square plate, and a flow through it, on a grid of m by m points.
  USE precision
  USE sparse_matrices
  USE krylov
  IMPLICIT NONE
  INTEGER, PARAMETER :: m = 12, n = m*m
  TYPE (csr) :: laplace, flow, sum_of_both, small, product_of_small
  REAL (rk) :: b(n), x(n), y(n), dense(3, 3)
  LOGICAL :: converged
  INTEGER :: steps, i
  INTEGER, PARAMETER :: out = 6

  CALL assemble_laplace (laplace)
  CALL assemble_flow (flow, speed = 0.4_rk)
  WRITE (out, *) 'entries:', nonzeros (laplace), nonzeros (flow)

  b = 1.0_rk / REAL (m + 1, rk)**2
  x = 0
  steps = 500
  CALL conjugate_gradients (laplace, b, x, jacobi_scaling, 1.0e-10_rk, steps, converged)
  WRITE (out, '(1X, A, L2, A, I4, A, F9.6)') 'conjugate gradients', converged, ' steps', steps, &
       ' largest', MAXVAL (x)

  sum_of_both = laplace + flow
  y = x
  steps = 500
  CALL bicgstab (sum_of_both, b, y, 1.0e-10_rk, steps, converged)
  WRITE (out, '(1X, A, L2, A, F9.6)') 'with flow', converged, ' largest', MAXVAL (y)
  WRITE (out, '(1X, A, ES8.1)') 'residual below ', 10.0_rk**CEILING (LOG10 (MAXVAL (ABS (b - sum_of_both*y))))

  x = 0
  CALL gauss_seidel (laplace, b, x, sweeps = 200, relaxation = 1.5_rk)
  WRITE (out, '(1X, A, F9.6)') 'relaxation: largest', MAXVAL (x)
  WRITE (out, *) 'symmetric: ', laplace == transpose (laplace), sum_of_both == transpose (sum_of_both)
  WRITE (out, *) 'bandwidth: ', bandwidth (laplace)

  ! Small matrices, to and from the dense form
  dense = RESHAPE ((/ 1, 0, 2, 0, 3, 0, 4, 0, 5 /), (/ 3, 3 /))
  small = dense
  product_of_small = matmul (small, transpose (small))
  small = product_of_small - (2.0_rk*small)
  dense = small
  DO i = 1, 3
     WRITE (out, '(3F8.2)') dense(i, :)
  END DO
  CALL show_pattern (small, out)
  small = -small
  WRITE (out, '(" weights ", 3F8.2)') (/ 1.0_rk, 1.0_rk, 1.0_rk /)*small
  CALL release (small)
  CALL release (laplace)

CONTAINS

  INTEGER FUNCTION point (i, j)
    INTEGER, INTENT (IN) :: i, j
    point = i + (j - 1)*m
  END FUNCTION point

  SUBROUTINE assemble_laplace (a)
    TYPE (csr), INTENT (OUT) :: a
    TYPE (triplets) :: t
    INTEGER :: i, j
    CALL open_triplets (t, n)
    DO j = 1, m
       DO i = 1, m
          CALL add_entry (t, point (i, j), point (i, j), 4.0_rk)
          IF (i > 1) CALL add_entry (t, point (i, j), point (i - 1, j), -1.0_rk)
          IF (i < m) CALL add_entry (t, point (i, j), point (i + 1, j), -1.0_rk)
          IF (j > 1) CALL add_entry (t, point (i, j), point (i, j - 1), -1.0_rk)
          IF (j < m) CALL add_entry (t, point (i, j), point (i, j + 1), -1.0_rk)
       END DO
    END DO
    a = t
    CALL close_triplets (t)
  END SUBROUTINE assemble_laplace

  SUBROUTINE assemble_flow (a, speed)
    TYPE (csr), INTENT (OUT) :: a
    REAL (rk), INTENT (IN) :: speed
    TYPE (triplets) :: t
    INTEGER :: i, j
    CALL open_triplets (t, n)
    DO j = 1, m
       DO i = 1, m
          CALL add_entry (t, point (i, j), point (i, j), speed)
          IF (i > 1) CALL add_entry (t, point (i, j), point (i - 1, j), -speed)
       END DO
    END DO
    a = t
    CALL close_triplets (t)
  END SUBROUTINE assemble_flow

END PROGRAM heat
