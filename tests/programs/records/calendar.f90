! Dates of the Gregorian calendar, counted in days since 1 January 1 (day 1,
! a Monday), with weeks, feasts and the formats people write.
module calendar
  implicit none
  private

  type, public :: date
    sequence
    integer :: year, month, day
  end type date

  type, public :: clock
    integer :: hour, minute
    real    :: second
  end type clock

  integer, parameter, public :: monday = 1, tuesday = 2, wednesday = 3, thursday = 4, &
    friday = 5, saturday = 6, sunday = 7
  character(len=9), parameter, dimension(12), public :: month_names = (/ &
    'January  ', 'February ', 'March    ', 'April    ', 'May      ', 'June     ', &
    'July     ', 'August   ', 'September', 'October  ', 'November ', 'December ' /)
  character(len=9), parameter, public :: day_names(7) = (/ 'Monday   ', 'Tuesday  ', &
    'Wednesday', 'Thursday ', 'Friday   ', 'Saturday ', 'Sunday   ' /)

  interface operator(+)
    module procedure days_after
  end interface
  interface operator(-)
    module procedure days_between, days_before
  end interface
  interface operator(<)
    module procedure earlier
  end interface
  interface operator(==)
    module procedure same_day
  end interface
  interface operator(.in.)
    module procedure in_list
  end interface
  interface assignment(=)
    module procedure date_from_string, number_from_date, date_from_number
  end interface
  interface weekday
    module procedure weekday_of_date
    module procedure weekday_of_number
  end interface

  public :: operator(+), operator(-), operator(<), operator(==), operator(.in.), &
            assignment(=), weekday
  public :: is_leap, month_length, today, easter, week_of, is_valid, written, &
            print_month, months_after, working_days, time_now, nth_weekday

contains

  logical function is_leap(year)
    integer, intent(in) :: year
    is_leap = (modulo(year, 4) == 0 .and. modulo(year, 100) /= 0) &
              .or. modulo(year, 400) == 0
  end function is_leap

  integer function month_length(year, month) result(days)
    integer, intent(in) :: year, month

    select case (month)
    case (4, 6, 9, 11)
      days = 30
    case (2)
      days = merge(29, 28, is_leap(year))
    case default
      days = 31
    end select
  end function month_length

  logical function is_valid(d)
    type(date), intent(in) :: d

    is_valid = d%year >= 1 .and. d%month >= 1 .and. d%month <= 12 .and. d%day >= 1
    if (is_valid) is_valid = d%day <= month_length(d%year, d%month)
  end function is_valid

  ! Years are taken to begin in March, so that leap days come last.
  integer function day_number(d) result(n)
    type(date), intent(in) :: d
    integer :: year, month

    year = d%year
    month = d%month - 3
    if (month < 0) then
      month = month + 12
      year = year - 1
    end if
    n = 365*year + year/4 - year/100 + year/400 + (153*month + 2)/5 + d%day - 306
  end function day_number

  function date_of(number) result(d)
    integer, intent(in) :: number
    type(date) :: d
    integer :: rest, year, month

    rest = number + 305
    year = (10000 * (rest / 100) + 14780) / 36525     ! near enough
    do
      month = rest - (365*year + year/4 - year/100 + year/400)
      if (month >= 0) exit
      year = year - 1
    end do
    if (month > 365 .or. (month == 365 .and. .not. is_leap(year + 1))) then
      year = year + 1
      month = rest - (365*year + year/4 - year/100 + year/400)
    end if
    rest = month
    month = (5*rest + 2) / 153
    d = date(year, month + 3, rest - (153*month + 2)/5 + 1)
    if (d%month > 12) d = date(year + 1, d%month - 12, d%day)
  end function date_of

  subroutine number_from_date(n, d)
    integer, intent(out) :: n
    type(date), intent(in) :: d
    n = day_number(d)
  end subroutine number_from_date

  subroutine date_from_number(d, n)
    type(date), intent(out) :: d
    integer, intent(in) :: n
    d = date_of(n)
  end subroutine date_from_number

  ! Takes 1990-03-21, 21.3.1990 and 21 March 1990; year 0 if it is no date.
  subroutine date_from_string(d, s)
    type(date), intent(out) :: d
    character(len=*), intent(in) :: s
    integer :: first, second, ios
    character(len=len(s)) :: t
    character(len=9) :: month

    d = date(0, 0, 0)
    t = adjustl(s)
    if (verify(trim(t), '0123456789-') == 0) then
      read (t, '(i4, 2(1x, i2))', iostat=ios) d
    else if (verify(trim(t), '0123456789.') == 0) then
      first = index(t, '.')
      second = index(t, '.', back=.true.)
      if (second <= first) return
      read (t(:first-1), '(bn, i2)', iostat=ios) d%day
      if (ios == 0) read (t(first+1:second-1), '(i2)', iostat=ios) d%month
      if (ios == 0) read (t(second+1:), '(bn, i4)', iostat=ios) d%year
    else
      read (t, *, iostat=ios) d%day, month, d%year
      if (ios == 0) then
        do first = 12, 1, -1
          if (index(month_names(first), trim(month)) == 1) exit
        end do
        d%month = first
      end if
    end if
    if (ios /= 0) d%year = 0
    if (.not. is_valid(d)) d = date(0, 0, 0)
  end subroutine date_from_string

  function days_after(d, n) result(later)
    type(date), intent(in) :: d
    integer, intent(in) :: n
    type(date) :: later
    later = date_of(day_number(d) + n)
  end function days_after

  function days_before(d, n) result(before)
    type(date), intent(in) :: d
    integer, intent(in) :: n
    type(date) :: before
    before = d + (-n)
  end function days_before

  integer function days_between(a, b)
    type(date), intent(in) :: a, b
    days_between = day_number(a) - day_number(b)
  end function days_between

  logical function earlier(a, b)
    type(date), intent(in) :: a, b
    earlier = a - b < 0
  end function earlier

  logical function same_day(a, b)
    type(date), intent(in) :: a, b
    same_day = a%year == b%year .and. a%month == b%month .and. a%day == b%day
  end function same_day

  logical function in_list(d, list)
    type(date), intent(in) :: d
    type(date), dimension(:), intent(in) :: list
    in_list = any(list%year == d%year .and. list%month == d%month .and. &
                  list%day == d%day)
  end function in_list

  ! The same day N months later, or the last one of a shorter month.
  function months_after(d, n) result(later)
    type(date), intent(in) :: d
    integer, intent(in) :: n
    type(date) :: later
    integer :: months

    months = 12*d%year + d%month - 1 + n
    later%year = months / 12
    later%month = mod(months, 12) + 1
    later%day = min(d%day, month_length(later%year, later%month))
  end function months_after

  integer function weekday_of_number(n)
    integer, intent(in) :: n
    weekday_of_number = modulo(n - 1, 7) + 1
  end function weekday_of_number

  integer function weekday_of_date(d)
    type(date), intent(in) :: d
    weekday_of_date = weekday(day_number(d))
  end function weekday_of_date

  ! The N-th Monday (or another day) of a month; the last one if N is -1.
  function nth_weekday(year, month, day, n) result(d)
    integer, intent(in) :: year, month, day, n
    type(date) :: d

    if (n > 0) then
      d = date(year, month, 1)
      d%day = 1 + modulo(day - weekday(d), 7) + 7*(n - 1)
    else
      d = date(year, month, month_length(year, month))
      d%day = d%day - modulo(weekday(d) - day, 7) + 7*(n + 1)
    end if
  end function nth_weekday

  ! Week 1 is the one with the first Thursday of the year.
  subroutine week_of(d, week, year)
    type(date), intent(in) :: d
    integer, intent(out) :: week
    integer, intent(out), optional :: year
    type(date) :: thursday_of_week

    thursday_of_week = d + (thursday - weekday(d))
    week = (thursday_of_week - date(thursday_of_week%year, 1, 1)) / 7 + 1
    if (present(year)) year = thursday_of_week%year
  end subroutine week_of

  ! Easter Sunday, from the golden number, the century and the moon's age.
  function easter(year) result(d)
    integer, intent(in) :: year
    type(date) :: d
    integer :: golden, century, leap_skip, moon_shift, sunday_shift, epact, n

    golden = mod(year, 19) + 1
    century = year / 100 + 1
    leap_skip = 3*century / 4 - 12
    moon_shift = (8*century + 5) / 25 - 5
    sunday_shift = 5*year / 4 - leap_skip - 10
    epact = modulo(11*golden + 20 + moon_shift - leap_skip, 30)
    if ((epact == 25 .and. golden > 11) .or. epact == 24) epact = epact + 1
    n = 44 - epact
    if (n < 21) n = n + 30
    n = n + 7 - mod(sunday_shift + n, 7)
    if (n > 31) then
      d = date(year, 4, n - 31)
    else
      d = date(year, 3, n)
    end if
  end function easter

  integer function working_days(from, to, holidays) result(n)
    type(date), intent(in) :: from, to
    type(date), dimension(:), intent(in), optional :: holidays
    integer :: i
    type(date) :: d

    n = 0
    do i = 0, to - from
      d = from + i
      if (weekday(d) >= saturday) cycle
      if (present(holidays)) then
        if (d .in. holidays) cycle
      end if
      n = n + 1
    end do
  end function working_days

  function today() result(d)
    type(date) :: d
    integer, dimension(8) :: values

    call date_and_time(values=values)
    d = date(values(1), values(2), values(3))
  end function today

  function time_now(zone) result(t)
    character(len=*), intent(out), optional :: zone
    type(clock) :: t
    character(len=10) :: digits
    character(len=5) :: difference

    call date_and_time(time=digits, zone=difference)
    read (digits, '(i2, i2, f6.3)') t%hour, t%minute, t%second
    if (present(zone)) zone = difference
  end function time_now

  ! The parts of FORM are replaced: Y M D by numbers, m by the name of the
  ! month, w by the weekday; everything else stays.
  function written(d, form) result(line)
    type(date), intent(in) :: d
    character(len=*), intent(in) :: form
    character(len=40) :: line
    integer :: i, n

    line = ''
    n = 0
    do i = 1, len(form)
      select case (form(i:i))
      case ('Y')
        call add(number(d%year, 4))
      case ('M')
        call add(number(d%month, 2))
      case ('D')
        call add(number(d%day, 2))
      case ('d')
        call add(trim(adjustl(number(d%day, 0))))
      case ('m')
        call add(trim(month_names(d%month)))
      case ('w')
        call add(day_names(weekday(d))(1:3))
      case default
        call add(form(i:i))
      end select
    end do

  contains

    subroutine add(piece)
      character(len=*), intent(in) :: piece
      line(n+1:) = piece
      n = n + len(piece)
    end subroutine add

    ! K with leading zeros up to DIGITS digits, blanks around it cut off.
    function number(k, digits) result(text)
      integer, intent(in) :: k, digits
      character(len=max(digits, 2)) :: text
      character(len=8) :: form_of_number

      write (form_of_number, '("(i", i1, ".", i1, ")")') len(text), max(1, digits)
      write (text, form_of_number) k
    end function number

  end function written

  subroutine print_month(year, month)
    integer, intent(in) :: year, month
    integer :: first, day, column

    write (*, '(1x, t6, a, 1x, i4)') trim(month_names(month)), year
    write (*, '(1x, 7(1x, a2))') (day_names(day)(1:2), day = monday, sunday)
    first = weekday(date(year, month, 1))
    write (*, '(1x, a)', advance='no') repeat('   ', first - 1)
    column = first
    do day = 1, month_length(year, month)
      write (*, '(i3)', advance='no') day
      if (column == sunday) then
        write (*, '(a)') ' '
        write (*, '(1x)', advance='no')
        column = 0
      end if
      column = column + 1
    end do
    write (*, *)
  end subroutine print_month

end module calendar
