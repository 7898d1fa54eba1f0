module minimizers
  ! Minima of functions of several variables, with derivatives and without.
  use working_precision, r => wp
  implicit none
  private
  public :: simplex_search, quasi_newton, fit_curve, anneal, report, print_report

  type report
     integer :: steps, evaluations
     real(r) :: value
     logical :: converged
     character(len=20) :: reason
  end type report

contains

  !> The downhill simplex. The corners are the columns of s.
  subroutine simplex_search(f, x, size_of_start, outcome, most_steps)
    interface
       function f(x)
         use working_precision
         real(wp), intent(in) :: x(:)
         real(wp) :: f
       end function f
    end interface
    real(r), dimension(:), intent(inout) :: x
    real(r), intent(in) :: size_of_start
    type(report), intent(out) :: outcome
    integer, optional, intent(in) :: most_steps
    real(r), dimension(size(x), size(x) + 1) :: s
    real(r), dimension(size(x) + 1) :: fs
    real(r), dimension(size(x)) :: centre, trial, further
    real(r) :: f_trial, f_further
    integer :: n, k, limit, best, worst, second

    n = size(x)
    limit = 200*n
    if (present(most_steps)) limit = most_steps
    s = spread(x, dim=2, ncopies=n + 1)
    do k = 1, n
       s(k, k + 1) = s(k, k + 1) + size_of_start
    end do
    do k = 1, n + 1
       fs(k) = f(s(:, k))
    end do
    outcome = report(0, n + 1, 0.0_r, .false., 'too many steps')
    do
       best = first_place(fs, -1)
       worst = first_place(fs, +1)
       second = first_of(maxloc(fs, mask=(/ (k /= worst, k = 1, n + 1) /)))
       if (2*abs(fs(worst) - fs(best)) <= 1.0e-14_r*(abs(fs(worst)) + abs(fs(best)) + 1.0e-6_r)) then
          outcome%converged = .true.
          outcome%reason = 'flat simplex'
          exit
       end if
       if (outcome%steps >= limit) exit
       outcome%steps = outcome%steps + 1
       centre = (sum(s, dim=2) - s(:, worst))/n
       call try(-1.0_r, trial, f_trial)
       if (f_trial < fs(best)) then
          call try(-2.0_r, further, f_further)
          if (f_further < f_trial) then
             call accept(further, f_further)
          else
             call accept(trial, f_trial)
          end if
       else if (f_trial < fs(second)) then
          call accept(trial, f_trial)
       else
          if (f_trial < fs(worst)) call accept(trial, f_trial)
          call try(0.5_r, further, f_further)
          if (f_further < fs(worst)) then
             call accept(further, f_further)
          else
             ! Shrink towards the best corner
             s = 0.5_r*(s + spread(s(:, best), 2, n + 1))
             do k = 1, n + 1
                if (k /= best) fs(k) = f(s(:, k))
             end do
             outcome%evaluations = outcome%evaluations + n
          end if
       end if
    end do
    x = s(:, best)
    outcome%value = fs(best)

  contains

    subroutine try(factor, point, value)
      real(r), intent(in) :: factor
      real(r), intent(out) :: point(:), value
      point = centre + factor*(s(:, worst) - centre)
      value = f(point)
      outcome%evaluations = outcome%evaluations + 1
    end subroutine try

    subroutine accept(point, value)
      real(r), intent(in) :: point(:), value
      s(:, worst) = point
      fs(worst) = value
    end subroutine accept

  end subroutine simplex_search

  ! The place of the greatest element (way > 0) or the least
  function first_place(a, way) result(k)
    real(r), intent(in) :: a(:)
    integer, intent(in) :: way
    integer :: k
    if (way > 0) then
       k = first_of(maxloc(a))
    else
       k = first_of(minloc(a))
    end if
  end function first_place

  integer function first_of(places)
    integer, intent(in) :: places(:)
    first_of = places(1)
  end function first_of

  !> Variable metric, with a backtracking line search. The gradient is optional.
  subroutine quasi_newton(f, x, outcome, gradient, tolerance)
    interface
       real(wp) function f(x)
         use working_precision
         real(wp), intent(in) :: x(:)
       end function f
       subroutine gradient(x, g)
         use working_precision, only: wp
         real(wp), dimension(:), intent(in) :: x
         real(wp), dimension(:), intent(out) :: g
       end subroutine gradient
    end interface
    optional :: gradient
    real(r), intent(inout) :: x(:)
    type(report), intent(out) :: outcome
    real(r), intent(in), optional :: tolerance
    real(r), dimension(size(x), size(x)) :: h
    real(r), dimension(size(x)) :: g, g_new, p, x_new, y, hy
    real(r) :: fx, f_new, slope, t, sy, tol
    integer :: i

    tol = 1.0e-9_r
    if (present(tolerance)) tol = tolerance
    outcome = report(0, 0, 0.0_r, .false., 'too many steps')
    fx = value_at(x)
    call gradient_at(x, g)
    h = 0
    do i = 1, size(x)
       h(i, i) = 1.0_r
    end do
    iterations: do
       if (maxval(abs(g)) <= tol) then
          outcome%converged = .true.
          outcome%reason = 'small gradient'
          exit iterations
       end if
       if (outcome%steps >= 200) exit iterations
       outcome%steps = outcome%steps + 1
       p = -matmul(h, g)
       slope = dot_product(p, g)
       if (slope >= 0) then
          p = -g
          slope = -dot_product(g, g)
       end if
       t = 1
       do
          x_new = x + t*p
          f_new = value_at(x_new)
          if (f_new <= fx + 1.0e-4_r*t*slope) exit
          t = 0.5_r*t
          if (t < epsilon(t)) then
             outcome%reason = 'no way down'
             exit iterations
          end if
       end do
       call gradient_at(x_new, g_new)
       p = x_new - x
       y = g_new - g
       sy = dot_product(p, y)
       if (sy > epsilon(sy)*sum(y**2)) then
          hy = matmul(h, y)
          h = h + (1 + dot_product(y, hy)/sy)/sy*outer(p, p) - (outer(hy, p) + outer(p, hy))/sy
       end if
       x = x_new; fx = f_new; g = g_new
    end do iterations
    outcome%value = fx

  contains

    function value_at(point)
      real(r), intent(in) :: point(:)
      real(r) :: value_at
      value_at = f(point)
      outcome%evaluations = outcome%evaluations + 1
    end function value_at

    subroutine gradient_at(point, slope_there)
      real(r), intent(in) :: point(:)
      real(r), intent(out) :: slope_there(:)
      real(r) :: moved(size(point)), step
      integer :: k
      if (present(gradient)) then
         call gradient(point, slope_there)
      else
         moved = point
         do k = 1, size(point)
            step = 6.0e-6_r*max(1.0_r, abs(point(k)))
            moved(k) = point(k) + step
            slope_there(k) = value_at(moved)
            moved(k) = point(k) - step
            slope_there(k) = (slope_there(k) - value_at(moved))/(2*step)
            moved(k) = point(k)
         end do
      end if
    end subroutine gradient_at

    function outer(a, b)
      real(r), dimension(:), intent(in) :: a, b
      real(r), dimension(size(a), size(b)) :: outer
      outer = spread(a, 2, size(b))*spread(b, 1, size(a))
    end function outer

  end subroutine quasi_newton

  !> Damped Gauss-Newton steps: the parameters of a model nearest to the points (t, y)
  subroutine fit_curve(model, t, y, p, outcome, deviation)
    interface
       subroutine model(t, p, value, derivatives)
         use working_precision, only: wp
         real(wp), intent(in) :: t, p(:)
         real(wp), intent(out) :: value, derivatives(:)
       end subroutine model
    end interface
    real(r), intent(in) :: t(:), y(:)
    real(r), intent(inout) :: p(:)
    type(report), intent(out) :: outcome
    real(r), intent(out), optional :: deviation(:)
    real(r) :: jacobian(size(t), size(p)), rest(size(t)), normal(size(p), size(p)), step(size(p))
    real(r) :: damping, before, after, trial(size(p)), value
    integer :: i, k, m
    logical, dimension(size(p), size(p)) :: on_diagonal

    m = size(p)
    on_diagonal = reshape((/ ((i == k, i = 1, m), k = 1, m) /), (/ m, m /))
    damping = 1.0e-3_r
    outcome = report(0, 0, 0.0_r, .false., 'too many steps')
    before = squares(p)
    do while (outcome%steps < 100)
       outcome%steps = outcome%steps + 1
       normal = matmul(transpose(jacobian), jacobian)
       where (on_diagonal) normal = normal*(1 + damping)
       step = solution(normal, matmul(rest, jacobian))
       trial = p + step
       value = squares(trial)
       after = value
       if (after < before) then
          p = trial
          damping = 0.2_r*damping
          if (before - after <= 1.0e-12_r*before) outcome%converged = .true.
          before = after
       else
          damping = 5*damping
          before = squares(p)
          if (damping > 1.0e10_r) outcome%converged = .true.
       end if
       if (outcome%converged) then
          outcome%reason = 'no more progress'
          exit
       end if
    end do
    outcome%value = squares(p)
    if (present(deviation)) deviation = rest(1:min(size(rest), size(deviation)))

  contains

    ! Leaves the jacobian and the differences at q
    function squares(q) result(s)
      real(r), intent(in) :: q(:)
      real(r) :: s, v
      integer :: j
      do j = 1, size(t)
         call model(t(j), q, v, jacobian(j, :))
         rest(j) = y(j) - v
      end do
      outcome%evaluations = outcome%evaluations + 1
      s = dot_product(rest, rest)
    end function squares

  end subroutine fit_curve

  ! Elimination without exchange, for definite systems
  function solution(a, b) result(x)
    real(r), intent(in) :: a(:, :), b(:)
    real(r) :: x(size(b)), w(size(b), size(b) + 1)
    integer :: i, k, n
    n = size(b)
    w(:, :n) = a
    w(:, n + 1) = b
    do k = 1, n
       w(k, k:) = w(k, k:)/w(k, k)
       do i = 1, n
          if (i /= k) w(i, k:) = w(i, k:) - w(i, k)*w(k, k:)
       end do
    end do
    x = w(:, n + 1)
  end function solution

  !> A slow cooling of a function of integers, the moves by a small generator
  subroutine anneal(cost, order, start_temperature, outcome)
    interface
       function cost(order) result(c)
         use working_precision, only: wp
         integer, intent(in) :: order(:)
         real(wp) :: c
       end function cost
    end interface
    integer, intent(inout) :: order(:)
    real(r), intent(in) :: start_temperature
    type(report), intent(out) :: outcome
    integer :: trial(size(order)), best(size(order)), i, k, n, move
    real(r) :: now, next, least, temperature, chance(3)
    integer, save :: state = 12345
    n = size(order)
    outcome = report(0, 1, 0.0_r, .true., 'cooled down')
    now = cost(order)
    best = order; least = now
    temperature = start_temperature
    do while (temperature > 1.0e-3_r*start_temperature)
       do move = 1, 50*n
          call draw
          i = 1 + int(chance(1)*n)
          k = 1 + int(chance(2)*n)
          if (i == k) cycle
          trial = order
          trial(min(i, k):max(i, k)) = trial(max(i, k):min(i, k):-1)     ! a reversed part
          next = cost(trial)
          outcome%evaluations = outcome%evaluations + 1
          if (next < now .or. chance(3) < exp(min(0.0_r, (now - next)/temperature))) then
             order = trial; now = next
             if (now < least) then
                best = order; least = now
             end if
          end if
       end do
       outcome%steps = outcome%steps + 1
       temperature = 0.85_r*temperature
    end do
    order = best
    outcome%value = least
  contains
    subroutine draw
      integer :: j
      do j = 1, 3
         state = mod(state*1103 + 12347, 65536*16)
         chance(j) = real(state, r)/(65536*16)
      end do
    end subroutine draw
  end subroutine anneal

  subroutine print_report(title, outcome, x)
    character(len=*), intent(in) :: title
    type(report), intent(in) :: outcome
    real(r), intent(in), optional :: x(:)
    write (*, '(1x, a, t24, a, i5, " steps,", i7, " values, least", es11.3)') title, &
         outcome%reason(1:16), outcome%steps, outcome%evaluations, max(outcome%value, 1.0e-20_r)
    if (present(x)) write (*, '((t24, 5f10.5))') x
  end subroutine print_report

end module minimizers
