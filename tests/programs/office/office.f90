! A day at the office: the archive, the books, and the lift.
program office
  use tapes
  use money, only: cents, exact, tax, schedule, change, ways, in_words, coins
  use lifts, rides => step
  implicit none

  integer, parameter :: drive = 50
  type(tape) :: reel
  type(person) :: who
  type(payment) :: due
  character(len=text_length) :: note
  character(len=key_length) :: key
  character(len=4), dimension(60) :: log
  logical :: found
  integer(cents) :: shares(4), total
  integer :: k, n
  type(lift) :: box
  integer, dimension(7) :: counted
  character(len=120) :: cheque

  call mount(reel, drive, 'reel', scratch=.true.)
  call append(reel, 'ada', person('Ada', 1815))
  call append(reel, 'ada', 'wrote about an engine')
  call append(reel, 'charles', person('Charles', 1791))
  call append(reel, 'charles', payment(3, 150.25d0, .false.))
  call append(reel, 'ada', payment(9, 99.5d0, .true.))
  call finish_file(reel)
  call append(reel, 'ada', payment(12, 1.0d0, .true.))

  call find(reel, 'ada', who, found, note)
  print '(1X, A, I5, 1X, A, L2)', trim(who%name), who%born, trim(note), found
  call find(reel, 'charles', who, found)
  print '(1X, A, I5, L2)', who%name(1:7), who%born, found
  call find(reel, 'joseph', who, found)
  print *, found
  rewind drive
  n = 0
  do
     call next_payment(reel, key, due, found)
     if (.not. found) exit
     n = n + 1
     print '(1X, A8, I3, F8.2, L2)', key, due%day, due%amount, due%paid
  end do
  rewind (unit=drive)
  call skip_file(reel, found)
  print *, n, found
  call unmount(reel)

  total = tax(7500000, shares)
  print '(1X, F10.2, " of", 4F10.2)', total/100.0, shares/100.0
  call schedule(debt=1000000, percent=6.0_exact, months=24, every=6)
  counted = change(388)
  print '(7(1X, I1, "*", I3))', (counted(k), coins(k), k = 1, size(coins))
  print *, ways(200)
  cheque = in_words(123456789)
  print '(1X, A)', trim(cheque)
  cheque = in_words(-1700)
  print '(1X, A)', trim(cheque)

  box = new_lift(3)
  call call_lift(box, 8, upward=.false.)
  call call_lift(box, 5, upward=.true.)
  call press(box, (/1, 9/))
  n = 0
  do while (.not. idle(box) .and. n < size(log))
     n = n + 1
     log(n) = state_of(box)
     call rides(box)
  end do
  print '(12(1X, A))', log(:n)
end program office
