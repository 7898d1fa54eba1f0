! Runs all the models once.
program models
  use chance
  use living
  use traffic
  use fields, heat => warm
  use integrators, only: leapfrog
  implicit none

  type(generator) :: g
  type(disease) :: flu
  type(plate) :: pan
  real(wp) :: a, b, c, weather(24, 12), wind(24, 12), place(1)
  real(wp), dimension(2, 3) :: x, v
  real(wp), dimension(3) :: mass
  integer :: i, j, k, where_at(2)
  character(len=60) :: road
  logical :: leap
  namelist /results/ a, b, c, i, j, k
  common /bodies/ mass
  interface
     subroutine pull(x, a)
       use chance
       real(wp), intent(in), dimension(:, :) :: x
       real(wp), intent(out), dimension(:, :) :: a
     end subroutine pull
  end interface

  call start(g, seed=17)
  call run_hares(100.0_wp, k, a)
  print '(" hares: ", I3, " cycles, drift below 1e-6: ", L1)', k, a < 1.0e-6_wp

  flu = disease(contacts(3), 7.0_wp, 1000, 3)
  call run_epidemic(flu, a, b, c)
  print '(" epidemic: peak", F7.1, " on day", F6.1, ", spared", F6.1)', a, b, c
  call epidemic_by_chance(flu, g, i, j, k)
  print *, 'by chance, some ill and some spared: ', i > 3, j > 7, k >= 0

  call ring_road(g, 60, 6, 200, speed=a, picture=road)
  call ring_road(g, 60, 30, 200, b)
  print '(1X, A)', repeat('=', 60), road
  print *, 'fewer cars go faster: ', a > 2*b

  call counters(g, 1, 1.0_wp, 0.8_wp, 4000, a, i)
  call counters(g, 2, 1.0_wp, 1.6_wp, 4000, b, j)
  print *, 'lines: ', a > 0, b > 0, i >= j

  call make_plate(pan, 15)
  call heat(pan, (/100.0_wp, 0.0_wp, 100.0_wp, 0.0_wp/), tolerance=1.0e-8_wp, sweeps=k)
  print '(" plate: middle", F8.3, " after", I4, " sweeps")', pan%inner(8, 8), k

  call exchange(90.0_wp, 10.0_wp, 2.0_wp, 50, a, b)
  call exchange(90.0_wp, 10.0_wp, 2.0_wp, 50, hot_out=c, cold_out=place(1), counter=.true.)
  print '(" exchanger:", 2(F8.2, " and", F8.2, :, ","))', a, b, c, place

  weather = 0
  weather(3:5, 4:6) = 1
  wind = 0.5_wp
  call blow(weather, wind, spread(wind(:, 1), 2, 12), steps=10)
  where_at = maxloc(weather)
  print '(" puff at", 2I3, ", total", F7.3)', where_at, sum(weather)

  ! three bodies in a line that turns
  mass = (/1000.0_wp, 1.0_wp, 1.0e-3_wp/)
  x = reshape((/0.0_wp, 0.0_wp, 10.0_wp, 0.0_wp, 20.0_wp, 0.0_wp/), (/2, 3/))
  v = 0
  v(2, 2:) = sqrt(mass(1)/x(1, 2:))
  a = energy()
  call leapfrog(pull, x, v, 0.01_wp, 1000)
  b = energy()/a - 1
  leap = abs(b) < 1.0e-4_wp
  print *, 'energy is kept: ', leap
  a = 1; b = 2; c = 4
  i = 1; j = 2; k = 4
  write (*, results)

contains

  real(wp) function contacts(per_week)
    integer, intent(in) :: per_week
    contacts = per_week/7.0_wp
  end function contacts

  real(wp) function energy()
    integer :: m, n
    energy = 0
    do m = 1, 3
       energy = energy + 0.5_wp*mass(m)*sum(v(:, m)**2)
       do n = 1, m - 1
          energy = energy - mass(m)*mass(n)/sqrt(sum((x(:, m) - x(:, n))**2))
       end do
    end do
  end function energy

end program models

! The pull of each body on the others.
subroutine pull(x, a)
  use chance
  implicit none
  real(wp), intent(in), dimension(:, :) :: x
  real(wp), intent(out), dimension(:, :) :: a
  real(wp) :: mass(3), d(2)
  common /bodies/ mass
  integer :: m, n

  a = 0
  do m = 1, size(x, 2)
     do n = 1, size(x, 2)
        if (m == n) cycle
        d = x(:, n) - x(:, m)
        a(:, m) = a(:, m) + mass(n)*d/sqrt(sum(d**2))**3
     end do
  end do
end subroutine pull
