! Random numbers of several distributions from one small generator.
module chance
  implicit none
  private
  integer, parameter, public :: wp = selected_real_kind(12, 60)

  type, public :: generator
     private
     integer :: state(3)
  end type generator

  interface draw
     module procedure draw_uniform, draw_many, draw_integer
  end interface

  public :: start, draw, exponential, normal, poisson, happens

contains

  subroutine start(g, seed)
    type(generator), intent(out) :: g
    integer, intent(in), optional :: seed

    g%state = (/1234, 5678, 9012/)
    if (present(seed)) g%state = 1 + modulo(seed*(/7, 11, 13/), 30000)
  end subroutine start

  subroutine draw_uniform(g, x)
    type(generator), intent(inout) :: g
    real(wp), intent(out) :: x

    g%state = mod((/171, 172, 170/)*g%state, (/30269, 30307, 30323/))
    x = modulo(sum(g%state/(/30269.0_wp, 30307.0_wp, 30323.0_wp/)), 1.0_wp)
  end subroutine draw_uniform

  subroutine draw_many(g, x)
    type(generator), intent(inout) :: g
    real(wp), dimension(:), intent(out) :: x
    integer :: k
    do k = 1, size(x)
       call draw_uniform(g, x(k))
    end do
  end subroutine draw_many

  subroutine draw_integer(g, k, low, high)
    type(generator), intent(inout) :: g
    integer, intent(out) :: k
    integer, intent(in) :: low, high
    real(wp) :: x
    call draw_uniform(g, x)
    k = low + int(x*(high - low + 1))
  end subroutine draw_integer

  logical function happens(g, probability)
    type(generator), intent(inout) :: g
    real(wp), intent(in) :: probability
    real(wp) :: x
    call draw(g, x)
    happens = x < probability
  end function happens

  subroutine exponential(g, mean, x)
    type(generator), intent(inout) :: g
    real(wp), intent(in) :: mean
    real(wp), intent(out) :: x
    call draw(g, x)
    x = -mean*log(1 - x)
  end subroutine exponential

  ! Two at a time: the second is kept for the next call.
  subroutine normal(g, x, mean, deviation)
    type(generator), intent(inout) :: g
    real(wp), intent(out) :: x
    real(wp), intent(in), optional :: mean, deviation
    real(wp), save :: kept
    logical, save :: have_one = .false.
    real(wp) :: u(2), r

    if (have_one) then
       x = kept
    else
       do
          call draw(g, u)
          u = 2*u - 1
          r = dot_product(u, u)
          if (r < 1 .and. r > 0) exit
       end do
       r = sqrt(-2*log(r)/r)
       x = u(1)*r
       kept = u(2)*r
    end if
    have_one = .not. have_one
    if (present(deviation)) x = x*deviation
    if (present(mean)) x = x + mean
  end subroutine normal

  subroutine poisson(g, mean, k)
    type(generator), intent(inout) :: g
    real(wp), intent(in) :: mean
    integer, intent(out) :: k
    real(wp) :: p, x

    k = -1; p = 1
    do while (p > exp(-mean))
       call draw(g, x)
       p = p*x
       k = k + 1
    end do
  end subroutine poisson

end module chance
