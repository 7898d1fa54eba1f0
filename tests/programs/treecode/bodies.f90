module bodies
  ! Stars as records, with the sums that a system of them keeps.
  implicit none
  integer, parameter :: r8 = selected_real_kind(15, 100), dims = 2

  type body
     sequence
     real(r8), dimension(dims) :: place, velocity, pull
     real(r8) :: mass, potential
     integer :: number, spare
  end type body

  type invariants
     real(r8) :: kinetic, potential, spin
     real(r8), dimension(dims) :: momentum
  end type invariants

  interface operator (-)
     module procedure drift
  end interface

contains

  function invariants_of(stars) result(sums)
    type(body), dimension(:), intent(in) :: stars
    type(invariants) :: sums
    integer :: d
    sums%kinetic = 0
    do d = 1, dims
       sums%kinetic = sums%kinetic + 0.5_r8*sum(stars%mass*stars%velocity(d)**2)
       sums%momentum(d) = dot_product(stars%mass, stars%velocity(d))
    end do
    sums%potential = 0.5_r8*sum(stars%mass*stars%potential)
    sums%spin = sum(stars%mass*(stars%place(1)*stars%velocity(2) - stars%place(2)*stars%velocity(1)))
  end function invariants_of

  function drift(now, before)
    type(invariants), intent(in) :: now, before
    type(invariants) :: drift
    drift = invariants(now%kinetic - before%kinetic, now%potential - before%potential, &
                       now%spin - before%spin, now%momentum - before%momentum)
  end function drift

  ! Rings of stars about the origin, in nearly circular orbits
  subroutine make_rings(stars, rings)
    type(body), intent(out), target :: stars(:)
    integer, intent(in) :: rings
    real(r8) :: radius, angle, speed, inside
    integer :: i, ring, in_ring, per_ring
    type(body), pointer :: star
    per_ring = (size(stars) - 1)/rings
    stars(1) = body((/ 0.0_r8, 0.0_r8 /), 0.0_r8, 0.0_r8, 1.0_r8, 0.0_r8, 1, 0)
    do i = 2, size(stars)
       star => stars(i)
       ring = min((i - 2)/per_ring + 1, rings)
       in_ring = mod(i - 2, per_ring)
       radius = 0.3_r8*ring
       angle = 6.283185307179586_r8*(real(in_ring, r8)/per_ring + 0.1_r8*ring)
       inside = 1.0_r8 + 0.1_r8*(ring - 1)/rings
       speed = sqrt(inside/radius)
       star%place = radius*(/ cos(angle), sin(angle) /)
       star%velocity = speed*(/ -sin(angle), cos(angle) /)
       star%pull = 0.0_r8
       star%mass = 0.1_r8/(size(stars) - 1)
       star%potential = 0.0_r8
       star%number = i
       star%spare = 0
    end do
  end subroutine make_rings

end module bodies
