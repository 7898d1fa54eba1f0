program galaxy
  ! Stars in rings under their gravity, by a tree and, for comparison, pair by pair.
  use bodies, system => body, total => invariants_of
  use quadtree
  implicit none
  integer, parameter :: stars_in_all = 181, steps = 40
  real(r8), parameter :: step = 0.005_r8, opening = 0.5_r8, softening = 0.02_r8
  type(system), dimension(stars_in_all) :: star
  type(invariants) :: start, now, change
  type(tree) :: t
  type(tree_counts) :: counts
  integer :: i, n, visits
  real(r8) :: pull(dims), potential, worst

  call make_rings(star, rings=6)
  call forces
  start = total(star)
  call plant(t, star)

  ! The accuracy of the tree
  worst = 0
  do i = 1, stars_in_all
     call direct(i, pull, potential)
     worst = max(worst, maxval(abs(pull - star(i)%pull))/sqrt(sum(pull**2) + 1.0e-6_r8))
  end do
  counts = statistics(t)
  print 1000, counts
1000 format (1x, 'leaves', i5, ', inner squares', i5, ', levels', i3, ', mean depth', f6.2)
  print '(1x, a, i8, a, i8)', 'squares visited', visits, ' of pairs', stars_in_all*(stars_in_all - 1)
  print '(1x, a, l2)', 'pulls within a percent:', worst < 0.02_r8
  print *, 'nearest to a corner is the same: ', &
       nearest_star(t, star, (/ 1.5_r8, 1.5_r8 /)) == scan_nearest((/ 1.5_r8, 1.5_r8 /))
  call fell(t)

  print '(a6, 3a14)', 'step', 'energy', 'spin', 'momentum'
  do n = 1, steps
     ! Kick, drift, kick
     do i = 1, stars_in_all
        star(i)%velocity = star(i)%velocity + 0.5_r8*step*star(i)%pull
        star(i)%place = star(i)%place + step*star(i)%velocity
     end do
     call forces
     do i = 1, stars_in_all
        star(i)%velocity = star(i)%velocity + 0.5_r8*step*star(i)%pull
     end do
     if (mod(n, 10) == 0) then
        now = total(star)
        print '(i6, 2f14.8, es14.2)', n, now%kinetic + now%potential, now%spin, maxval(abs(now%momentum))
     end if
  end do
  change = now - start
  if (abs(change%kinetic + change%potential) > 1.0e-3_r8) print *, 'energy is not kept:', change%kinetic
  print '(1x, a, 2f10.6)', 'largest radius', sqrt(maxval(star%place(1)**2 + star%place(2)**2))

contains

  subroutine forces
    integer :: k
    type(tree) :: oak
    visits = 0
    call plant(oak, star)
    do k = 1, size(star)
       call field_at(oak, star, k, opening, softening, pull, potential, visits=visits)
       star(k)%pull = pull; star(k)%potential = potential
    end do
    call fell(oak)
  end subroutine forces

  subroutine direct(who, pull, potential)
    integer, intent(in) :: who
    real(r8), intent(out) :: pull(dims), potential
    real(r8) :: distance(stars_in_all)
    logical :: other(stars_in_all)
    integer :: d, k
    other = (/ (k /= who, k = 1, stars_in_all) /)
    distance = sqrt((star%place(1) - star(who)%place(1))**2 + (star%place(2) - star(who)%place(2))**2 &
         + softening**2)
    do d = 1, dims
       pull(d) = sum(star%mass*(star%place(d) - star(who)%place(d))/distance**3, mask=other)
    end do
    potential = -sum(star%mass/distance, mask=other)
  end subroutine direct

  integer function scan_nearest(place) result(k)
    real(r8), intent(in) :: place(dims)
    integer :: where_least(1)
    where_least = minloc((star%place(1) - place(1))**2 + (star%place(2) - place(2))**2)
    k = where_least(1)
  end function scan_nearest

end program galaxy
