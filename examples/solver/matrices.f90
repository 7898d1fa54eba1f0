! Matrices, and their products with vectors and with each other.
module matrices
  use kinds
  use vectors
  implicit none

  type matrix
    integer :: rows, columns
    real(real_kind), pointer :: a(:, :)
  end type matrix

  interface operator(*)
    module procedure matrix_vector, matrix_matrix
  end interface

  interface transposed
    module procedure transposed_matrix
  end interface

  private matrix_vector, matrix_matrix, transposed_matrix

contains

  function new_matrix(rows, columns) result(m)
    integer, intent(in) :: rows, columns
    type(matrix) :: m

    m%rows = rows
    m%columns = columns
    allocate (m%a(rows, columns))
    m%a = 0
  end function new_matrix

  function matrix_vector(m, v) result(r)
    type(matrix), intent(in) :: m
    type(vector), intent(in) :: v
    type(vector) :: r

    r = new_vector(m%rows)
    r%x = matmul(m%a, v%x)
  end function matrix_vector

  function matrix_matrix(m, n) result(r)
    type(matrix), intent(in) :: m, n
    type(matrix) :: r

    r = new_matrix(m%rows, n%columns)
    r%a = matmul(m%a, n%a)
  end function matrix_matrix

  function transposed_matrix(m) result(r)
    type(matrix), intent(in) :: m
    type(matrix) :: r

    r = new_matrix(m%columns, m%rows)
    r%a = transpose(m%a)
  end function transposed_matrix

end module matrices
