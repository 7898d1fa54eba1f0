! Planets on their orbits: the equations of motion of a few bodies, integrated with a fixed step by the
! leapfrog method. The force and the energies are internal procedures that share the program's arrays.

program orbit
  implicit none
  integer, parameter :: bodies = 4
  double precision, parameter :: gravity = 39.47841760435743d0 ! astronomical unit, year, solar mass
  double precision, dimension(3, bodies) :: place, speed, force
  double precision :: mass(bodies), step, start_energy, drift, worst
  integer :: i, steps, report_every
  logical :: escaped

  mass = (/ 1.0d0, 1.66d-7, 2.448d-6, 3.003d-6 /)
  call set_circle(2, 0.387d0, 0.0d0)
  call set_circle(3, 0.723d0, 2.1d0)
  call set_circle(4, 1.0d0, 4.0d0)
  call rest_centre

  step = 1.0d0 / 1000
  steps = 5000
  report_every = steps / 5
  start_energy = energy()
  worst = 0
  call compute_force

  run: do i = 1, steps
    speed = speed + 0.5d0 * step * force
    place = place + step * speed
    call compute_force
    speed = speed + 0.5d0 * step * force

    drift = abs((energy() - start_energy) / start_energy)
    worst = max(worst, drift)
    escaped = any(abs(place) > 10)
    if (escaped) exit run
    if (mod(i, report_every) == 0) call report(i * step)
  end do run

  if (escaped) then
    print *, 'a body has left the system'
  else
    print *, 'largest relative change of the energy:', worst
  end if

contains

  ! Puts a body on a circle around the first one.
  subroutine set_circle(body, radius, angle)
    integer, intent(in) :: body
    double precision, intent(in) :: radius, angle
    double precision :: v

    place(:, 1) = 0
    speed(:, 1) = 0
    v = sqrt(gravity * mass(1) / radius)
    place(:, body) = (/ radius * cos(angle), radius * sin(angle), 0.0d0 /)
    speed(:, body) = (/ -v * sin(angle), v * cos(angle), 0.0d0 /)
  end subroutine set_circle

  ! Gives the first body the momentum that keeps the centre of all at rest.
  subroutine rest_centre
    integer :: axis

    do axis = 1, 3
      speed(axis, 1) = -sum(mass(2:) * speed(axis, 2:)) / mass(1)
    end do
  end subroutine rest_centre

  subroutine compute_force
    double precision :: apart(3), distance
    integer :: j, k

    force = 0
    do j = 1, bodies - 1
      do k = j + 1, bodies
        apart = place(:, k) - place(:, j)
        distance = length(apart)
        force(:, j) = force(:, j) + gravity * mass(k) / distance**3 * apart
        force(:, k) = force(:, k) - gravity * mass(j) / distance**3 * apart
      end do
    end do
  end subroutine compute_force

  double precision function length(v)
    double precision, intent(in) :: v(3)

    length = sqrt(dot_product(v, v))
  end function length

  double precision function energy()
    integer :: j, k

    energy = 0
    do j = 1, bodies
      energy = energy + 0.5d0 * mass(j) * dot_product(speed(:, j), speed(:, j))
      do k = j + 1, bodies
        energy = energy - gravity * mass(j) * mass(k) / length(place(:, k) - place(:, j))
      end do
    end do
  end function energy

  subroutine report(time)
    double precision, intent(in) :: time
    integer :: j

    write (*, '(a, f8.3)') ' after ', time
    do j = 2, bodies
      write (*, '(i4, 3f12.6)') j, place(:, j)
    end do
  end subroutine report

end program orbit
