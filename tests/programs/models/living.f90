! Equations of living things: foxes and hares, and an epidemic with its counterpart by chance.
module living
  use integrators
  use chance
  implicit none
  private
  public :: run_hares, run_epidemic, epidemic_by_chance

  type, public :: disease
     real(wp) :: contacts          ! a day
     real(wp) :: days_ill
     integer :: people, first_ill
  end type disease

  type(disease), save :: present_disease
  real(wp), parameter :: births = 1.1_wp, hunts = 0.4_wp, deaths = 0.4_wp, gains = 0.1_wp

contains

  function hares_and_foxes(t, y) result(dy)
    real(wp), intent(in) :: t, y(:)
    real(wp) :: dy(size(y))

    dy(1) = births*y(1) - hunts*y(1)*y(2)
    dy(2) = gains*y(1)*y(2) - deaths*y(2)
    if (t < 0) dy = 0
  end function hares_and_foxes

  function infection(t, y) result(dy)
    real(wp), intent(in) :: t, y(:)
    real(wp) :: dy(size(y))
    real(wp) :: new, healed

    outbreak: if (t >= 0) then
       new = present_disease%contacts*y(1)*y(2)/present_disease%people
       healed = y(2)/present_disease%days_ill
    else
       new = 0; healed = 0
    end if outbreak
    dy = (/-new, new - healed, healed/)
  end function infection

  ! What stays the same along a cycle tells how exact the steps are.
  subroutine run_hares(years, cycles, drift)
    real(wp), intent(in) :: years
    integer, intent(out) :: cycles
    real(wp), intent(out) :: drift
    type(trajectory) :: path
    type(sample), pointer :: p
    real(wp) :: y(2), t, invariant, slope_before
    logical :: rising

    path%length = 0
    y = (/10.0_wp, 5.0_wp/)
    t = 0
    invariant = charge(y)
    do while (t < years)
       call record_point(path, t, y)
       call runge_kutta(hares_and_foxes, t, y, h=0.01_wp)
    end do
    drift = abs(charge(y)/invariant - 1)
    ! maxima of the hares
    cycles = 0
    rising = .false.
    slope_before = path%first%values(1)
    p => path%first%next
    do while (associated(p))
       if (rising .and. p%values(1) < slope_before) cycles = cycles + 1
       rising = p%values(1) > slope_before
       slope_before = p%values(1)
       p => p%next
    end do
    call forget(path)

  contains

    function charge(y)
      real(wp), intent(in) :: y(2)
      real(wp) :: charge
      charge = gains*y(1) - deaths*log(y(1)) + hunts*y(2) - births*log(y(2))
    end function charge
  end subroutine run_hares

  subroutine run_epidemic(d, peak, peak_day, spared)
    type(disease), intent(in) :: d
    real(wp), intent(out) :: peak, peak_day, spared
    real(wp), dimension(3) :: y
    real(wp) :: t

    present_disease = d
    y = (/real(d%people - d%first_ill, wp), real(d%first_ill, wp), 0.0_wp/)
    t = 0
    peak = 0
    do
       call runge_kutta(infection, t, y, 0.1_wp)
       if (y(2) > peak) then
          peak = y(2)
          peak_day = t
       end if
       if (y(2) < 0.5_wp .or. t > 1000) exit
    end do
    spared = y(1)
  end subroutine run_epidemic

  ! Persons one by one on a ring, meeting their neighbours and now and then somebody far away.
  subroutine epidemic_by_chance(d, g, peak, days, spared)
    type(disease), intent(in) :: d
    type(generator), intent(inout) :: g
    integer, intent(out) :: peak, days, spared
    integer, parameter :: well = 0, ill = 1, immune = 2
    integer, dimension(d%people) :: health, next
    integer :: person, other, meetings, k

    health = well
    health(:d%first_ill) = ill
    peak = d%first_ill
    days = 0
    do while (any(health == ill))
       days = days + 1
       next = health
       do person = 1, d%people
          if (health(person) /= ill) cycle
          call poisson(g, d%contacts, meetings)
          do k = 1, meetings
             if (happens(g, 0.3_wp)) then
                call draw(g, other, low=1, high=d%people)
             else
                call draw(g, other, -3, 3)
                other = 1 + modulo(person + other - 1, d%people)
             end if
             if (next(other) == well) next(other) = ill
          end do
          if (happens(g, 1/d%days_ill)) next(person) = immune
       end do
       health = next
       peak = max(peak, count(health == ill))
    end do
    spared = count(health == well)
  end subroutine epidemic_by_chance
end module living
