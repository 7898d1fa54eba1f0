module random_numbers
  ! Repeatable random numbers for lattices: scalars, lines and planes by one generic name.
  implicit none
  private
  integer, parameter, public :: rk = kind(1.0d0), ik = selected_int_kind(9)
  public :: start_random, random_real, random_integer, shuffle, use_processor_generator

  interface random_real
     module procedure real_scalar, real_line, real_plane
  end interface

  interface random_integer
     module procedure int_scalar, int_line
  end interface

  integer(ik), save :: state = 1
  logical, save :: by_processor = .false.

contains

  subroutine start_random(seed)
    integer, intent(in) :: seed
    state = max(1, mod(abs(seed), 2147483646))
    by_processor = .false.
  end subroutine start_random

  ! RANDOM_NUMBER of the processor from now on, with a seed made of the one given
  subroutine use_processor_generator(seed)
    integer, intent(in) :: seed
    integer :: length, i
    integer, allocatable :: put(:)
    call random_seed(size=length)
    allocate (put(length))
    put = (/ (seed + 37*i, i = 0, length - 1) /)
    call random_seed(put=put)
    deallocate (put)
    by_processor = .true.
  end subroutine use_processor_generator

  subroutine real_scalar(x)
    real(rk), intent(out) :: x
    integer(ik), parameter :: a = 16807, m = 2147483647, q = m/a, r = mod(m, a)
    integer(ik) :: k
    if (by_processor) then
       call random_number(x)
       return
    end if
    k = state/q
    state = a*(state - k*q) - r*k
    if (state < 0) state = state + m
    x = real(state, rk)/real(m, rk)
  end subroutine real_scalar

  subroutine real_line(x)
    real(rk), dimension(:), intent(out) :: x
    integer :: i
    do i = 1, size(x)
       call real_scalar(x(i))
    end do
  end subroutine real_line

  subroutine real_plane(x)
    real(rk), dimension(:, :), intent(out) :: x
    integer :: j
    do j = lbound(x, 2), ubound(x, 2)
       call real_line(x(:, j))
    end do
  end subroutine real_plane

  ! From low to high, both included
  subroutine int_scalar(n, low, high)
    integer, intent(out) :: n
    integer, intent(in) :: low, high
    real(rk) :: x
    call random_real(x)
    n = min(high, low + int(x*(high - low + 1)))
  end subroutine int_scalar

  subroutine int_line(n, low, high)
    integer, intent(out) :: n(:)
    integer, intent(in) :: low, high
    real(rk) :: x(size(n))
    call random_real(x)
    n = min(high, low + int(x*(high - low + 1)))
  end subroutine int_line

  subroutine shuffle(order)
    integer, intent(inout) :: order(:)
    integer :: i, k
    do i = size(order), 2, -1
       call random_integer(k, 1, i)
       order((/ i, k /)) = order((/ k, i /))
    end do
  end subroutine shuffle

end module random_numbers
