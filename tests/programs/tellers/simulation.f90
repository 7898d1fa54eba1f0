! A day at the counters of a bank: customers come at random, wait in a line,
! and pay in or draw money. The settings come from NAMELIST input.
program simulation
  use accounts
  use bits
  implicit none

  integer, parameter :: max_counters = 6, max_waiting = 100, customers = 12

  type person
    integer :: account
    real    :: came
  end type person

  real    :: closing, mean_gap, mean_service
  integer :: counters, seed
  logical :: verbose
  character(len=16) :: title
  real, dimension(3) :: rates
  namelist /settings/ closing, mean_gap, mean_service, counters, seed, verbose, title, rates

  integer :: served, refused, longest_line
  real    :: mean_wait
  namelist /results/ served, refused, longest_line, mean_wait

  type(bank)    :: b
  type(account) :: a
  integer, dimension(customers) :: numbers
  character(len=owner_length), parameter, dimension(4) :: families = &
    (/ 'Miller              ', 'Baker               ', 'Smith               ', &
       'Weaver              ' /)
  character(len=40) :: line
  character(len=20) :: why
  type(entry), dimension(4) :: last
  integer :: i, n, paid
  logical :: ok

  call read_settings
  call start_bank(b, unit=41, journal=42, ok=ok)
  if (.not. ok) stop 'cannot open the bank'
  do i = 41, 43
    call describe_unit(i, line)
    print *, i, line
  end do

  do i = 1, customers
    call open_account(b, trim(families(mod(i, 4) + 1)) // ' ' // achar(iachar('A') + i), &
                      numbers(i), savings=mod(i, 3) == 0)
    call deposit(b, numbers(i), 5000 * i, ok)
  end do
  print '(a, 12i5)', ' numbers', numbers

  call simulate
  write (*, nml=results)

  call withdraw(b, numbers(3), 10000000, ok, why)
  if (.not. ok) print *, 'refused: ', why
  call withdraw(b, 1234567, 1, ok, why)
  if (.not. ok) print *, 'refused: ', why
  call block_account(b, numbers(5))
  call withdraw(b, numbers(5), 1, ok, why)
  if (.not. ok) print *, 'refused: ', why
  call block_account(b, numbers(5), free_again=.true.)
  call transfer(b, numbers(12), numbers(5), 1234, ok)
  call pay_interest(b, rates(2), paid)
  print *, 'interest', paid

  call print_statement
  call read_journal(b, last, n)
  print '(1x, i4, i5, i8, 1x, a)', (last(i), i = 1, n)
  print *, bit_string(2**20 + 255), checksum(account(1, 2, 3, 'x')) > 0
  print *, ticks_of(b) > customers
  call close_bank(b)

contains

  subroutine read_settings
    integer :: ios

    closing = 60.0; mean_gap = 2.0; mean_service = 5.0
    counters = 2; seed = 4711; verbose = .false.
    title = 'nothing'
    rates = 0.0
    open (40, status='scratch', delim='apostrophe')
    write (40, '(a)') ' &settings closing = 90.0, counters = 3,', &
      '   title = ''A quiet day'', verbose = T, rates = 0.5, 2*1.25 /'
    rewind 40
    read (40, nml=settings, iostat=ios)
    if (ios /= 0) print *, 'bad settings'
    rewind 40
    counters = min(counters, max_counters)
    write (40, nml=settings)
    rewind 40
    read (40, settings)
    close (40)
    print *, title, closing, counters, rates
  end subroutine read_settings

  ! Uniform in 0 to 1, the same on all machines.
  real function random_value()
    seed = mod(seed * 3877 + 29573, 139968)
    random_value = real(seed) / 139968.0
  end function random_value

  real function next_gap(mean)
    real, intent(in) :: mean
    next_gap = -mean * log(1.0 - random_value())
  end function next_gap

  subroutine simulate
    type(person), dimension(0:max_waiting-1) :: waiting
    real, dimension(counters) :: free_at
    real :: now, next_arrival, waited
    integer :: head, count, counter

    served = 0; refused = 0; longest_line = 0
    waited = 0.0
    head = 0; count = 0
    free_at = 0.0
    next_arrival = next_gap(mean_gap)
    events: do
      counter = sum(minloc(free_at))
      if (count > 0 .and. free_at(counter) <= next_arrival) then
        now = max(free_at(counter), waiting(head)%came)
        waited = waited + now - waiting(head)%came
        call serve(waiting(head), now)
        free_at(counter) = now + next_gap(mean_service)
        head = modulo(head + 1, max_waiting)
        count = count - 1
      else if (next_arrival <= closing) then
        now = next_arrival
        if (count < max_waiting) then
          waiting(modulo(head + count, max_waiting)) = &
            person(numbers(1 + int(customers * random_value())), now)
          count = count + 1
          longest_line = max(longest_line, count)
          where (free_at < now) free_at = now
        end if
        next_arrival = now + next_gap(mean_gap)
      else if (count == 0) then
        exit events
      else
        next_arrival = huge(next_arrival)
      end if
    end do events
    mean_wait = waited / max(1, served + refused)
  end subroutine simulate

  subroutine serve(p, now)
    type(person), intent(in) :: p
    real, intent(in) :: now
    integer :: cents
    logical :: done

    cents = 100 * int(400 * random_value()) + 100
    if (random_value() < 0.3) then
      call deposit(b, p%account, cents, done)
    else
      call withdraw(b, p%account, cents, done)
      cents = -cents
    end if
    if (done) then
      served = served + 1
    else
      refused = refused + 1
    end if
    if (verbose .and. served + refused <= 5) print 200, now, p%account, cents / 100.0, done
200 format (f8.2, i6, sp, f10.2, ss, l3)
  end subroutine serve

  subroutine print_statement
    integer :: total, k
    character(len=2) :: sign

    total = 0
    print 300
    do k = 1, accounts_of(b)
      call get_account(b, numbers(k), a, ok)
      if (.not. ok) cycle
      sign = ''
      if (a .has. flag_overdrawn) sign = 'DR'
      print 310, a%number, a%owner, abs(a%cents) / 100.0, sign, a .has. flag_savings
      total = total + a%cents
    end do
    print 320, total / 100.0
300 format (/, t3, 'no.', t9, 'owner', t35, 'balance', tr4, 'savings', /, 1x, 50('-'))
310 format (1x, i5, 2x, a, f13.2, a, l9)
320 format (1x, 50('-'), /, t9, 'total', t29, f13.2)
  end subroutine print_statement

end program simulation
