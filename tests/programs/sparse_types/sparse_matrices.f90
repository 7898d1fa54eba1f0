MODULE sparse_matrices
!
!  Sparse matrices in two forms:
!     triplets   a linked list of entries (i, j, value), in which a matrix is assembled
!     csr        compressed rows, in which it is used
!  and the operators between them and with vectors and scalars.
!
  USE precision
  IMPLICIT NONE
  PRIVATE

  TYPE, PUBLIC :: triplets
     PRIVATE
     INTEGER :: rows, columns, count
     TYPE (entry_node), POINTER :: first, last
  END TYPE triplets

  TYPE entry_node
     PRIVATE
     INTEGER :: i, j
     REAL (rk) :: value
     TYPE (entry_node), POINTER :: next
  END TYPE entry_node

  TYPE, PUBLIC :: csr
     INTEGER :: rows, columns
     INTEGER, DIMENSION(:), POINTER :: start       ! start(i) .. start(i+1) - 1 are those of row i
     INTEGER, DIMENSION(:), POINTER :: column
     REAL (rk), DIMENSION(:), POINTER :: value
  END TYPE csr

  INTERFACE ASSIGNMENT (=)
     MODULE PROCEDURE csr_from_triplets, csr_from_dense, dense_from_csr
  END INTERFACE

  INTERFACE OPERATOR (*)
     MODULE PROCEDURE csr_times_vector, vector_times_csr, scalar_times_csr
  END INTERFACE

  INTERFACE OPERATOR (+)
     MODULE PROCEDURE csr_plus_csr
  END INTERFACE

  INTERFACE OPERATOR (-)
     MODULE PROCEDURE csr_negated, csr_minus_csr
  END INTERFACE

  INTERFACE OPERATOR (==)
     MODULE PROCEDURE csr_equal
  END INTERFACE

  INTERFACE transpose
     MODULE PROCEDURE csr_transpose
  END INTERFACE

  INTERFACE matmul
     MODULE PROCEDURE csr_times_csr
  END INTERFACE

  PUBLIC :: ASSIGNMENT (=), OPERATOR (*), OPERATOR (+), OPERATOR (-), OPERATOR (==)
  PUBLIC :: transpose, matmul, open_triplets, add_entry, close_triplets, release, nonzeros, diagonal
  PUBLIC :: show_pattern, bandwidth

CONTAINS

  !---------------------------------------------------------------- assembly

  SUBROUTINE open_triplets (t, rows, columns)
    TYPE (triplets), INTENT (OUT) :: t
    INTEGER, INTENT (IN) :: rows
    INTEGER, INTENT (IN), OPTIONAL :: columns
    t%rows = rows
    t%columns = rows
    IF (PRESENT (columns)) t%columns = columns
    t%count = 0
    NULLIFY (t%first, t%last)
  END SUBROUTINE open_triplets

  ! Entries of the same place are summed up when the matrix is compressed.
  SUBROUTINE add_entry (t, i, j, value)
    TYPE (triplets), INTENT (INOUT) :: t
    INTEGER, INTENT (IN) :: i, j
    REAL (rk), INTENT (IN) :: value
    TYPE (entry_node), POINTER :: node
    IF (i < 1 .OR. i > t%rows .OR. j < 1 .OR. j > t%columns) THEN
       WRITE (*, 100) i, j, t%rows, t%columns
100    FORMAT (' add_entry: (', I6, ',', I6, ') is not in a matrix of ', I6, ' by ', I6)
       RETURN
    END IF
    ALLOCATE (node)
    node%i = i
    node%j = j
    node%value = value
    NULLIFY (node%next)
    IF (ASSOCIATED (t%last)) THEN
       t%last%next => node
    ELSE
       t%first => node
    END IF
    t%last => node
    t%count = t%count + 1
  END SUBROUTINE add_entry

  SUBROUTINE close_triplets (t)
    TYPE (triplets), INTENT (INOUT) :: t
    TYPE (entry_node), POINTER :: node, next
    node => t%first
    DO WHILE (ASSOCIATED (node))
       next => node%next
       DEALLOCATE (node)
       node => next
    END DO
    NULLIFY (t%first, t%last)
    t%count = 0
  END SUBROUTINE close_triplets

  !---------------------------------------------------------------- conversions

  SUBROUTINE csr_from_triplets (a, t)
    TYPE (csr), INTENT (OUT) :: a
    TYPE (triplets), INTENT (IN) :: t
    TYPE (entry_node), POINTER :: node
    INTEGER, DIMENSION(t%rows + 1) :: next
    INTEGER :: i, k

    CALL allocate_csr (a, t%rows, t%columns, t%count)
    next = 0
    node => t%first
    DO
       IF (.NOT. ASSOCIATED (node)) EXIT
       next(node%i + 1) = next(node%i + 1) + 1
       node => node%next
    END DO
    next(1) = 1
    DO i = 1, t%rows
       next(i + 1) = next(i) + next(i + 1)
    END DO
    a%start = next
    node => t%first
    DO
       IF (.NOT. ASSOCIATED (node)) EXIT
       k = next(node%i)
       a%column(k) = node%j
       a%value(k) = node%value
       next(node%i) = k + 1
       node => node%next
    END DO
    CALL sort_rows (a)
    CALL merge_duplicates (a)
  END SUBROUTINE csr_from_triplets

  SUBROUTINE csr_from_dense (a, d)
    TYPE (csr), INTENT (OUT) :: a
    REAL (rk), DIMENSION(:, :), INTENT (IN) :: d
    INTEGER :: i, j, first, last
    CALL allocate_csr (a, SIZE (d, 1), SIZE (d, 2), COUNT (d /= 0))
    a%start(1) = 1
    DO i = 1, a%rows
       first = a%start(i)
       last = first + COUNT (d(i, :) /= 0) - 1
       a%start(i + 1) = last + 1
       a%column(first:last) = PACK ((/ (j, j = 1, a%columns) /), d(i, :) /= 0)
       a%value(first:last) = PACK (d(i, :), MASK = d(i, :) /= 0)
    END DO
  END SUBROUTINE csr_from_dense

  SUBROUTINE dense_from_csr (d, a)
    REAL (rk), DIMENSION(:, :), INTENT (OUT) :: d
    TYPE (csr), INTENT (IN) :: a
    INTEGER :: i
    d = 0.0_rk
    DO i = 1, a%rows
       d(i, a%column(a%start(i) : a%start(i + 1) - 1)) = a%value(a%start(i) : a%start(i + 1) - 1)
    END DO
  END SUBROUTINE dense_from_csr

  !---------------------------------------------------------------- operators

  FUNCTION csr_times_vector (a, x) RESULT (y)
    TYPE (csr), INTENT (IN) :: a
    REAL (rk), INTENT (IN) :: x(:)
    REAL (rk) :: y(a%rows)
    INTEGER :: i
    DO i = 1, a%rows
       y(i) = DOT_PRODUCT (a%value(a%start(i):a%start(i + 1) - 1), &
            &              x(a%column(a%start(i):a%start(i + 1) - 1)))
    END DO
  END FUNCTION csr_times_vector

  FUNCTION vector_times_csr (x, a) RESULT (y)
    REAL (rk), INTENT (IN) :: x(:)
    TYPE (csr), INTENT (IN) :: a
    REAL (rk) :: y(a%columns)
    INTEGER :: i, k
    y = 0
    DO i = 1, a%rows
       DO k = a%start(i), a%start(i + 1) - 1
          y(a%column(k)) = y(a%column(k)) + x(i) * a%value(k)
       END DO
    END DO
  END FUNCTION vector_times_csr

  FUNCTION scalar_times_csr (s, a) RESULT (b)
    REAL (rk), INTENT (IN) :: s
    TYPE (csr), INTENT (IN) :: a
    TYPE (csr) :: b
    b = copy (a)
    b%value = s * b%value
  END FUNCTION scalar_times_csr

  FUNCTION csr_negated (a) RESULT (b)
    TYPE (csr), INTENT (IN) :: a
    TYPE (csr) :: b
    b = copy (a)
    b%value = -b%value
  END FUNCTION csr_negated

  FUNCTION csr_plus_csr (a, b) RESULT (c)
    TYPE (csr), INTENT (IN) :: a, b
    TYPE (csr) :: c
    c = combine (a, b, 1.0_rk)
  END FUNCTION csr_plus_csr

  FUNCTION csr_minus_csr (a, b) RESULT (c)
    TYPE (csr), INTENT (IN) :: a, b
    TYPE (csr) :: c
    c = combine (a, b, -1.0_rk)
  END FUNCTION csr_minus_csr

  LOGICAL FUNCTION csr_equal (a, b)
    TYPE (csr), INTENT (IN) :: a, b
    csr_equal = .FALSE.
    IF (a%rows /= b%rows .OR. a%columns /= b%columns) RETURN
    IF (ANY (a%start /= b%start)) RETURN
    csr_equal = ALL (a%column == b%column) .AND. ALL (a%value == b%value)
  END FUNCTION csr_equal

  FUNCTION csr_transpose (a) RESULT (b)
    TYPE (csr), INTENT (IN) :: a
    TYPE (csr) :: b
    TYPE (triplets) :: t
    INTEGER :: i, k
    CALL open_triplets (t, a%columns, a%rows)
    DO i = 1, a%rows
       DO k = a%start(i), a%start(i + 1) - 1
          CALL add_entry (t, a%column(k), i, a%value(k))
       END DO
    END DO
    CALL csr_from_triplets (b, t)
    CALL close_triplets (t)
  END FUNCTION csr_transpose

  ! Row by row: each row of the product is summed up in a dense row.
  FUNCTION csr_times_csr (a, b) RESULT (c)
    TYPE (csr), INTENT (IN) :: a, b
    TYPE (csr) :: c
    TYPE (triplets) :: t
    REAL (rk) :: row(b%columns)
    LOGICAL :: used(b%columns)
    INTEGER :: i, j, k, l
    CALL open_triplets (t, a%rows, b%columns)
    DO i = 1, a%rows
       row = 0
       used = .FALSE.
       DO k = a%start(i), a%start(i + 1) - 1
          l = a%column(k)
          DO j = b%start(l), b%start(l + 1) - 1
             row(b%column(j)) = row(b%column(j)) + a%value(k) * b%value(j)
             used(b%column(j)) = .TRUE.
          END DO
       END DO
       DO j = 1, b%columns
          IF (used(j)) CALL add_entry (t, i, j, row(j))
       END DO
    END DO
    CALL csr_from_triplets (c, t)
    CALL close_triplets (t)
  END FUNCTION csr_times_csr

  !---------------------------------------------------------------- inquiry

  INTEGER FUNCTION nonzeros (a)
    TYPE (csr), INTENT (IN) :: a
    nonzeros = a%start(a%rows + 1) - 1
  END FUNCTION nonzeros

  FUNCTION diagonal (a) RESULT (d)
    TYPE (csr), INTENT (IN) :: a
    REAL (rk) :: d(MIN (a%rows, a%columns))
    INTEGER :: i, first, last
    DO i = 1, SIZE (d)
       first = a%start(i)
       last = a%start(i + 1) - 1
       d(i) = SUM (a%value(first:last), MASK = a%column(first:last) == i)
    END DO
  END FUNCTION diagonal

  FUNCTION bandwidth (a) RESULT (width)
    TYPE (csr), INTENT (IN) :: a
    INTEGER, DIMENSION(2) :: width        ! below and above the diagonal
    INTEGER :: i, k
    width = 0
    DO i = 1, a%rows
       DO k = a%start(i), a%start(i + 1) - 1
          width = MAX (width, (/ i - a%column(k), a%column(k) - i /))
       END DO
    END DO
  END FUNCTION bandwidth

  SUBROUTINE show_pattern (a, unit)
    TYPE (csr), INTENT (IN) :: a
    INTEGER, INTENT (IN) :: unit
    CHARACTER (LEN = a%columns) :: line
    INTEGER :: i, k
    DO i = 1, a%rows
       line = REPEAT ('.', a%columns)
       DO k = a%start(i), a%start(i + 1) - 1
          line(a%column(k):a%column(k)) = '*'
       END DO
       WRITE (UNIT = unit, FMT = '(3X, A)') line
    END DO
  END SUBROUTINE show_pattern

  !---------------------------------------------------------------- helpers

  SUBROUTINE allocate_csr (a, rows, columns, entries)
    TYPE (csr), INTENT (OUT) :: a
    INTEGER, INTENT (IN) :: rows, columns, entries
    INTEGER :: failed
    a%rows = rows
    a%columns = columns
    ALLOCATE (a%start(rows + 1), a%column(entries), a%value(entries), STAT = failed)
    IF (failed /= 0) STOP 'sparse_matrices: out of memory'
  END SUBROUTINE allocate_csr

  SUBROUTINE release (a)
    TYPE (csr), INTENT (INOUT) :: a
    IF (ASSOCIATED (a%start)) DEALLOCATE (a%start, a%column, a%value)
    a%rows = 0; a%columns = 0
  END SUBROUTINE release

  FUNCTION copy (a) RESULT (b)
    TYPE (csr), INTENT (IN) :: a
    TYPE (csr) :: b
    CALL allocate_csr (b, a%rows, a%columns, SIZE (a%value))
    b%start = a%start
    b%column = a%column
    b%value = a%value
  END FUNCTION copy

  ! a + s b by assembly
  FUNCTION combine (a, b, s) RESULT (c)
    TYPE (csr), INTENT (IN) :: a, b
    REAL (rk), INTENT (IN) :: s
    TYPE (csr) :: c
    TYPE (triplets) :: t
    INTEGER :: i, k
    CALL open_triplets (t, rows = a%rows, columns = a%columns)
    DO i = 1, a%rows
       DO k = a%start(i), a%start(i + 1) - 1
          CALL add_entry (t, i, a%column(k), a%value(k))
       END DO
       DO k = b%start(i), b%start(i + 1) - 1
          CALL add_entry (t, i, b%column(k), s * b%value(k))
       END DO
    END DO
    CALL csr_from_triplets (c, t)
    CALL close_triplets (t)
  END FUNCTION combine

  ! Insertion sort of each row: rows are short.
  SUBROUTINE sort_rows (a)
    TYPE (csr), INTENT (INOUT) :: a
    INTEGER :: i, k, l, j
    REAL (rk) :: v
    DO i = 1, a%rows
       DO k = a%start(i) + 1, a%start(i + 1) - 1
          j = a%column(k); v = a%value(k)
          l = k - 1
          DO
             IF (l < a%start(i)) EXIT
             IF (a%column(l) <= j) EXIT
             a%column(l + 1) = a%column(l)
             a%value(l + 1) = a%value(l)
             l = l - 1
          END DO
          a%column(l + 1) = j
          a%value(l + 1) = v
       END DO
    END DO
  END SUBROUTINE sort_rows

  SUBROUTINE merge_duplicates (a)
    TYPE (csr), INTENT (INOUT) :: a
    INTEGER, POINTER, DIMENSION(:) :: column
    REAL (rk), POINTER :: value(:)
    INTEGER :: i, k, last, row_start
    last = 0
    DO i = 1, a%rows
       row_start = last + 1
       DO k = a%start(i), a%start(i + 1) - 1
          IF (last >= row_start) THEN
             IF (a%column(last) == a%column(k)) THEN
                a%value(last) = a%value(last) + a%value(k)
                CYCLE
             END IF
          END IF
          last = last + 1
          a%column(last) = a%column(k)
          a%value(last) = a%value(k)
       END DO
       a%start(i) = row_start
    END DO
    a%start(a%rows + 1) = last + 1
    IF (last < SIZE (a%value)) THEN
       ALLOCATE (column(last), value(last))
       column = a%column(:last)
       value = a%value(:last)
       DEALLOCATE (a%column, a%value)
       a%column => column
       a%value => value
    END IF
  END SUBROUTINE merge_duplicates

END MODULE sparse_matrices
