! Weather stations: readings in nested types, tables by sections, and waves as complex numbers.
module station_data
  implicit none

  integer, parameter :: hours = 8, quantities = 3
  integer, parameter :: lg = selected_int_kind(2)          ! small integers for flags
  integer, parameter :: r8 = selected_real_kind(12, 100)
  integer, parameter, dimension(quantities) :: digits_of = (/ 1, 0, 1 /)
  character(len=8), dimension(quantities), parameter :: quantity_names = &
       (/ 'temp    ', 'humid   ', 'wind    ' /)
  real(r8), parameter :: missing = -999.0_r8

  type reading
     real(r8), dimension(quantities) :: value
     integer(lg) :: flags
  end type reading

  type position
     real :: north, east
     integer :: height
  end type position

  type station
     character(len=10) :: name
     type(position) :: at
     type(reading), dimension(hours) :: hour
  end type station

  type station_list
     type(station), dimension(:), pointer :: all
     integer, dimension(:), pointer :: order
  end type station_list

  interface mean
     module procedure mean_of_list, mean_of_table
  end interface

  interface operator(.nearto.)
     module procedure near_to
  end interface

  interface assignment(=)
     module procedure flags_from_logicals, logicals_from_flags
  end interface

contains

  ! Eight logicals fit into one small integer.
  subroutine flags_from_logicals(flags, bits)
    integer(lg), intent(out) :: flags
    logical, dimension(0:), intent(in) :: bits
    integer :: k
    flags = 0_lg
    do k = 0, min(6, ubound(bits, 1))
       if (bits(k)) flags = ibset(flags, k)
    end do
  end subroutine flags_from_logicals

  subroutine logicals_from_flags(bits, flags)
    logical, dimension(0:), intent(out) :: bits
    integer(lg), intent(in) :: flags
    integer :: k
    bits = (/ (btest(flags, k), k = 0, size(bits) - 1) /)
  end subroutine logicals_from_flags

  function mean_of_list(x, mask) result(m)
    real(r8), dimension(:), intent(in) :: x
    logical, dimension(:), intent(in), optional :: mask
    real(r8) :: m
    logical, dimension(size(x)) :: there

    there = x /= missing
    if (present(mask)) there = there .and. mask
    select case (any(there))
    case (.true.)
       m = sum(x, mask=there)/count(there)
    case (.false.)
       m = missing
    end select
  end function mean_of_list

  function mean_of_table(x, dim) result(m)
    real(r8), dimension(:, :), intent(in) :: x
    integer, intent(in) :: dim
    real(r8), dimension(size(x, 3 - dim)) :: m
    integer :: k

    do k = 1, size(m)
       if (dim == 1) then
          m(k) = mean_of_list(x(:, k))
       else
          m(k) = mean_of_list(x(k, :))
       end if
    end do
  end function mean_of_table

  logical function near_to(a, b)
    type(position), intent(in) :: a, b
    near_to = abs(a%north - b%north) < 1.0 .and. abs(a%east - b%east) < 1.0
  end function near_to

  ! Stations from the lines of an internal file, and readings that a daily wave gives.
  subroutine set_up(list, lines)
    type(station_list), intent(out) :: list
    character(len=*), dimension(:), intent(in) :: lines
    integer :: k, h, status
    real(r8) :: phase
    real(r8), parameter :: turn = 6.283185307179586_r8

    allocate (list%all(size(lines)), list%order(size(lines)), stat=status)
    if (status /= 0) stop 3
    do k = 1, size(lines)
       read (lines(k), '(A10, 2F6.2, I5)') list%all(k)%name, list%all(k)%at
       list%order(k) = k
       do h = 1, hours
          phase = turn*(h - 1)/hours
          list%all(k)%hour(h)%value = (/ 15 - list%all(k)%at%height/150.0_r8 - 5*cos(phase), &
               70 + 20*cos(phase), 4 + sin(phase + k) /)
          list%all(k)%hour(h)%flags = (/ h == 1, .false., k == 2 .and. h > 6 /)
          if (btest(list%all(k)%hour(h)%flags, 2)) list%all(k)%hour(h)%value(2:3) = missing
       end do
    end do
  end subroutine set_up

  ! Sorts only the numbers, so that the stations stay where they are.
  subroutine order_by(list, keys)
    type(station_list), intent(inout) :: list
    real(r8), dimension(:), intent(in) :: keys
    integer, dimension(1) :: least
    logical, dimension(size(keys)) :: left
    integer :: k

    left = .true.
    do k = 1, size(keys)
       least = minloc(keys, mask=left)
       list%order(k) = least(1)
       left(least(1)) = .false.
    end do
  end subroutine order_by

  ! The first waves in a series of readings, as complex numbers.
  subroutine waves(series, amplitude)
    real(r8), dimension(0:), intent(in) :: series
    complex(kind=r8), dimension(0:), intent(out) :: amplitude
    complex(r8), parameter :: i_unit = (0.0_r8, 1.0_r8)
    integer :: k, h

    do k = lbound(amplitude, 1), ubound(amplitude, 1)
       amplitude(k) = sum((/ (series(h)*exp(-i_unit*6.283185307179586_r8*k*h/size(series)), &
            h = 0, size(series) - 1) /))/size(series)
    end do
    amplitude(1:) = 2*amplitude(1:)
  end subroutine waves

end module station_data

program stations
  use station_data, tell_mean => mean
  implicit none

  type(station_list), target :: list
  type(station), dimension(:), pointer :: high
  real(r8), dimension(:), pointer :: noon
  real(r8), dimension(hours, quantities) :: table
  real(r8), allocatable, dimension(:) :: packed
  complex(r8), dimension(0:2) :: wave
  logical, dimension(0:2) :: bits
  integer :: h, k, q
  character(len=27), dimension(4) :: lines
  character(len=80) :: form
  character(len=12), dimension(3) :: report
  integer, dimension(2) :: chosen
  real :: limit
  logical :: quiet
  namelist /options/ limit, chosen, quiet

  data lines / 'Harbour   53.55  9.98    4', 'Summit    51.80 10.62 1142', &
       'Valley    51.83 10.40  530', 'Island    54.18  7.89   44' /

  call set_up(list, lines)
  limit = 500.0; chosen = (/ 2, 3 /); quiet = .true.
  open (12, status='scratch')
  write (12, options)
  limit = 0; chosen(:) = 0
  rewind 12
  read (12, nml=options, iostat=k)
  close (12)
  print *, k, limit, chosen, quiet

  ! a table of one station, then its means over the hours
  do q = 1, quantities
     table(:, q) = list%all(2)%hour%value(q)
  end do
  write (form, 10) (quantity_names(q), digits_of(q), q = 1, quantities)
10 format ("(1X", 3(", ' ", A, "', F8.", I1), ")")
  print form, tell_mean(table, dim=1)
  print form, table(hours/2 + 1, :)

  ! all temperatures at noon are a section of a section
  noon => list%all(:)%hour(hours/2 + 1)%value(1)
  call order_by(list, noon)
  print '(4(1X, A))', list%all(list%order)%name
  noon = noon + 0.5_r8
  high => list%all(2:3)
  print *, associated(high), count(high%at%height > limit), high(1)%at .nearto. high(2)%at

  bits = list%all(2)%hour(7)%flags
  print *, bits, transfer(transfer(1.5_r8, (/ 0_lg /)), 0.0_r8) == 1.5_r8
  call waves(high(2)%hour%value(1), wave)
  print '(3(" (", F7.3, ",", F7.3, ")"))', wave
  print '(3F8.3)', abs(wave)
  wave = conjg(wave)*(/ (1.0_r8, 0.0_r8), (0.0_r8, 1.0_r8), (0.0_r8, -1.0_r8) /)
  print '(2F8.3)', aimag(wave(1)), real(wave(1), r8)

  ! what is there, without the gaps, and put back
  k = count(table(:, 2) /= missing)
  allocate (packed(k))
  packed = pack(table(:, 2), table(:, 2) /= missing)
  print '(8F6.1)', unpack(packed, table(:, 2) /= missing, field=table(:, 1))
  table(:, 2) = merge(table(:, 2), tell_mean(packed), table(:, 2) /= missing)
  print *, all(table > missing), tell_mean(packed, mask=packed > 1000) == missing
  deallocate (packed)

  do h = 1, 3
     write (report(h), '(A, I3.2)') 'hour', h*3
  end do
  print '(3A12)', report((/ 3, 1, 2 /))
  print '(1X, 3A6)', (report(h)(6:), h = 3, 1, -1)
  if (quiet) stop
  print *, nearest(1.0_r8, 1.0) - 1 == epsilon(1.0_r8), exponent(8.0), fraction(8.0), &
       scale(1.0, 3), spacing(1.0) == epsilon(1.0), set_exponent(1.0, 1)
end program stations
