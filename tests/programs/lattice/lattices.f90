program lattices
  use random_numbers, only: rk, start_random, random_real, random_integer, shuffle
  use ising
  use lattice_gas, gas_momentum => momentum
  implicit none

  call start_random(4711)
  call magnets
  call gas
  call percolation
  call integrals

contains

  subroutine magnets
    type(spins) :: iron
    integer, parameter :: n = 24, warm_up = 60, measured = 120
    real(rk), parameter :: temperatures(3) = (/ 1.5_rk, 2.269_rk, 4.0_rk /)
    real(rk) :: e(measured), m(measured), c(0:6)
    integer :: k, step, changed, turned, total
    print '(a12, 4a12, a10)', 'temperature', 'energy', 'heat', 'magnetiz.', 'suscept.', 'domains'
    do k = 1, size(temperatures)
       call set_up(iron, n, temperatures(k), hot=temperatures(k) > 2.0_rk)
       total = 0
       do step = 1 - warm_up, measured
          call sweep(iron, changed)
          total = total + changed
          if (mod(step, 5) == 0) call grow_cluster(iron, turned)
          if (step < 1) cycle
          e(step) = energy(iron)
          m(step) = abs(magnetization(iron))
       end do
       print '(f12.3, 4f12.5, i10)', temperatures(k), mean(e), variance(e)*n**2/temperatures(k)**2, &
            mean(m), variance(m)*n**2/temperatures(k), domains(iron)
       c = correlation(iron, ubound(c, 1))
       if (any(c > 1 + epsilon(c))) print *, 'a correlation over 1'
       call clear(iron)
    end do
  end subroutine magnets

  function mean(x)
    real(rk), intent(in) :: x(:)
    real(rk) :: mean
    mean = sum(x)/max(1, size(x))
  end function mean

  function variance(x) result(v)
    real(rk), intent(in) :: x(:)
    real(rk) :: v
    v = sum((x - mean(x))**2)/max(1, size(x) - 1)
  end function variance

  ! A drop in a box spreads.
  subroutine gas
    integer, parameter :: nx = 40, ny = 16
    integer :: site(nx, ny), step, start
    real(rk) :: x(8, 8, 4)
    integer :: b
    site = 0
    call walls_around(site)
    do b = 1, 4
       call random_real(x(:, :, b))
       site(5:12, 5:12) = site(5:12, 5:12) + merge(2**(b - 1), 0, x(:, :, b) < 0.8_rk)
    end do
    start = particles(site)
    print *, 'momentum at the start ', gas_momentum(site)
    do step = 1, 60
       call collide(site)
       call stream(site)
    end do
    call picture(site)
    print '(1x, a, i5, a, l2)', 'particles', start, ' all there:', particles(site) == start
    print '(1x, a, (t12, 10f6.2))', 'across:', density_profile(site, 1), density_profile(site, 2)
  end subroutine gas

  ! The share of open places at which a way leads from one side to the other
  subroutine percolation
    integer, parameter :: n = 32, trials = 12
    integer :: order(n*n), trial, k, low, high
    real(rk) :: share(trials)
    logical :: open(n, n)
    order = (/ (k, k = 1, n*n) /)
    do trial = 1, trials
       call shuffle(order)
       low = 0
       high = n*n
       do while (high - low > 1)
          k = (low + high)/2
          open = .false.
          call open_up(open, order(:k))
          if (connected(open)) then
             high = k
          else
             low = k
          end if
       end do
       share(trial) = real(high, rk)/real(n*n, rk)
    end do
    print '(1x, a, f7.3, " +-", f7.3)', 'percolation at', mean(share), sqrt(variance(share))
  end subroutine percolation

  subroutine open_up(open, numbers)
    logical, intent(inout) :: open(:, :)
    integer, intent(in) :: numbers(:)
    integer :: k, n
    n = size(open, 1)
    do k = 1, size(numbers)
       open(mod(numbers(k) - 1, n) + 1, (numbers(k) - 1)/n + 1) = .true.
    end do
  end subroutine open_up

  function connected(open) result(yes)
    logical, intent(in) :: open(:, :)
    logical :: yes
    logical, dimension(size(open, 1), size(open, 2)) :: wet, before
    wet = .false.
    wet(:, 1) = open(:, 1)
    do
       before = wet
       wet = wet .or. (open .and. (eoshift(wet, 1, .false., 1) .or. eoshift(wet, -1, .false., 1) .or. &
            eoshift(wet, 1, boundary=.false., dim=2) .or. eoshift(wet, -1, dim=2)))
       if (all(wet .eqv. before)) exit
    end do
    yes = any(wet(:, size(wet, 2)))
  end function connected

  ! The volume of balls by random points
  subroutine integrals
    integer, parameter :: points = 4000
    real(rk), dimension(points, 5) :: x
    integer :: d, inside
    call random_real(x)
    do d = 2, 5
       inside = count(sum((2*x(:, :d) - 1)**2, dim=2) <= 1)
       print '(1x, a, i2, f9.4)', 'ball in dimensions', d, 2.0_rk**d*inside/points
    end do
  end subroutine integrals

end program lattices
