program try_records
  use calendar
  use relations
  implicit none

  interface
    subroutine print_report(values, flags, phases)
      real, dimension(:), intent(in)    :: values
      logical, dimension(:), intent(in) :: flags
      complex, intent(in)               :: phases(2)
    end subroutine print_report
  end interface

  call try_calendar
  call try_relations
  call print_report((/ 3.14159, -0.000271828, 12345.67, 0.0, 1.0e10 /), &
                    (/ .true., .false., .true., .true., .false. /), &
                    (/ (1.0, -2.5), cmplx(0.25, 4) /))

contains

  subroutine try_calendar
    type(date) :: d, e, feasts(2)
    type(clock) :: t
    integer :: n, week, year

    d = '1990-03-21'
    e = '5.11.1605'
    print *, trim(written(d, 'w d m Y')), ' ', trim(written(e, 'D/M/Y')), ' ', d - e
    d = '24 December 1999'
    print '(1x, a)', written(d + 8, 'w Y-M-D')
    print '(1x, a)', written(months_after(date(2000, 1, 31), 1), 'd m Y')
    n = date(1, 1, 1)
    print *, n, weekday(n), is_leap(1900), is_leap(2000)
    do n = 1, 800000, 9973
      d = n
      year = d
      if (year /= n .or. .not. is_valid(d)) print *, 'FAILED', n, d
    end do
    do year = 1996, 2000, 2
      d = easter(year)
      call week_of(date(year, 12, 31), week)
      print *, year, trim(written(d, 'w d m')), week
    end do
    call print_month(1992, 2)
    feasts = (/ date(1998, 12, 25), date(1999, 1, 1) /)
    print *, working_days(date(1998, 12, 21), date(1999, 1, 3)), &
      working_days(date(1998, 12, 21), date(1999, 1, 3), holidays=feasts)
    print *, trim(written(nth_weekday(2001, 11, thursday, 4), 'D.M.')), ' ', &
      trim(written(nth_weekday(2001, 10, sunday, -1), 'D.M.'))
    d = '30.2.1999'
    e = 'never'
    print *, is_valid(d), is_valid(e)
    t = time_now()
    if (today() < date(1990, 1, 1) .or. t%hour > 23) print *, 'the clock is wrong'
  end subroutine try_calendar

  subroutine try_relations
    type(table) :: people, places, found, copy
    integer :: bad

    call create_table(people, 'people', 'name:s, town:s, born:d, pay:n')
    call add_row(people, 'Abel, Oslo, 12.5.1961, 410.50')
    call add_row(people, 'Niels, Oslo, 5.8.1952, 380')
    call add_row(people, '"Gauss, C.F.", Celle, 30.4.1977, 999.99')
    call add_row(people, 'Ada, London, 10.12.1965, 700.25')
    call add_row(people, 'Emmy, "Er""langen", 1982-03-23, 650')
    call add_row(people, 'George, London, 2.11.1965, 512.125')
    call create_table(places, 'places', 'town, country')
    call add_row(places, 'Oslo, Norway')
    call add_row(places, 'London, England')

    call order_by(people, 'born')
    call print_table(people, 'by age')
    found = select_rows(people, 'town', 'London')
    call print_table(project(found, (/ 1, 4 /)), title='in London')
    print '(1x, a, f9.2)', 'they earn', total(found, 'pay')
    found = total(people, 'pay', 'town')
    call order_by(found, 'sum', descending=.true.)
    call print_table(found)
    found = join(select_rows(people, 'pay', 400.0, high=800.0), places, 'town')
    call print_table(found, 'joined')
    call print_table(select_rows(people, numbers_of(people, 'born') < 1963.0), 'older')

    open (31, status='scratch', access='sequential')
    call write_csv(people, unit=31)
    write (31, '(a)') 'Too, many, 1.1.1990, 1, fields'
    rewind (31)
    call create_table(copy, 'copy', 'name:s, town:s, born:d, pay:n')
    call read_csv(copy, 31, bad)
    print *, copy%rows, bad, all(copy%cells(2, :6)%string == people%cells(2, :6)%string)
    close (31, status='delete')
    call drop(copy)
  end subroutine try_relations

end program try_records
