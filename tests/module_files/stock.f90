! The first of two modules with all that a module file can hold. check_module_files damages both files.
module stock
  integer, parameter :: wide = kind(1.0d0)
  integer, parameter :: sizes(3) = (/ 2, 3, 4 /)
  character(*), parameter :: title = 'parts'
  type pair
    sequence
    integer :: number
    integer :: extent(2)
  end type pair
  type part
    integer :: number
    character(8) :: label
    integer :: extent(2)
    real, pointer :: weights(:)
    type(part), pointer :: next
  end type part
  type, private :: hidden
    integer :: key
  end type hidden
  type handle
    private
    type(hidden) :: h
  end type handle
  type(pair), parameter :: origin = pair(0, (/ 1, 2 /))
  type(pair) :: pairs(2) = pair(1, (/ 3, 4 /))
  type(part) :: current
  type(handle) :: open_one
  common /store/ total, cells
  real :: total, cells(10)
  real :: first, both(2), last
  equivalence (first, both), (both(2), last)
  complex(wide) :: z = (1.0, 2.0)
  logical :: flag = .true.
  real :: long_one(40) = 0.0
  integer :: sparse(9)
  data sparse(2), sparse(4:8:2) / 1, 3 * 2 /
  real, allocatable :: pool(:, :)
  real, target, save :: goal
  namelist /setup/ total, first, sparse
  interface
    subroutine outside(x, f, *)
      real, intent(inout) :: x(*)
      interface
        function f(y)
          real :: f
          real, intent(in) :: y
        end function f
      end interface
    end subroutine outside
    function weight(n) result(w)
      integer, optional :: n
      double precision :: w(3)
    end function weight
  end interface
  interface measure
    function measure_text(text) result(m)
      character(*), intent(in) :: text
      integer :: m
    end function measure_text
    module procedure measure_pair, measure_list
  end interface
  interface operator(.with.)
    module procedure with
  end interface
  interface operator(+)
    module procedure with
  end interface
  interface assignment(=)
    module procedure from_pair
  end interface
contains
  function window(a, c, k, list) result(w)
    real, intent(in) :: a(:, 0:)
    character(*), intent(in) :: c
    type(pair), intent(in) :: k
    integer, intent(in) :: list(5)
    real :: w(size(a, 1), k%extent(1):len(c(2:5)) + ichar(c(1:1)), size(list(2:4:2)), &
              size((/ (n, n = 1, k%number) /)), sizes(list(1)))
    w = a(1, 1)
  end function window
  function spelled(c, k) result(s)
    character(*), intent(in) :: c
    type(pair), intent(in) :: k(:)
    character(len(c) + k(2)%extent(1) + sizes(2)) :: s
    s = c
  end function spelled
  integer function measure_pair(p)
    type(pair), intent(in) :: p
    measure_pair = p%number
  end function measure_pair
  recursive function measure_list(p) result(n)
    type(part), intent(in) :: p
    n = p%number
  end function measure_list
  function with(a, b)
    type(pair), intent(in) :: a, b
    type(pair) :: with
    with = pair(a%number + b%number, b%extent + int(total) * 0)
  end function with
  subroutine from_pair(n, p)
    integer, intent(out) :: n
    type(pair), intent(in) :: p
    n = p%number
  end subroutine from_pair
  subroutine leave(n, f, *)
    integer :: n
    external f
    entry leave_now(n, *)
    call f
    return 1
  end subroutine leave
  function link_of(p) result(q)
    type(part), target :: p
    type(part), pointer :: q
    q => p%next
  end function link_of
end module stock
