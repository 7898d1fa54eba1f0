! Angles as people write them, and units of length.
module angles
  implicit none
  private

  integer, parameter, public :: dp = kind(0.0d0)

  type, public :: angle
     private
     integer :: degrees, minutes
     real(dp) :: seconds
     logical :: negative
  end type angle

  interface assignment(=)
     module procedure from_degrees, to_degrees, from_text
  end interface
  public :: assignment(=)

  interface convert
     module procedure convert_one, convert_many
  end interface

  type unit_entry
     character(len=8) :: name
     real(dp) :: metres
  end type unit_entry

  integer, parameter :: n_units = 7
  type(unit_entry), dimension(n_units), parameter :: units = (/ &
       unit_entry('m       ', 1.0_dp), unit_entry('km      ', 1000.0_dp), &
       unit_entry('mile    ', 1609.344_dp), unit_entry('nmi     ', 1852.0_dp), &
       unit_entry('ft      ', 0.3048_dp), unit_entry('inch    ', 0.0254_dp), &
       unit_entry('fathom  ', 1.8288_dp) /)

  public :: written, convert

contains

  subroutine from_degrees(a, x)
    type(angle), intent(out) :: a
    real(dp), intent(in) :: x
    real(dp) :: rest

    a%negative = x < 0
    rest = abs(x)
    a%degrees = int(rest)
    rest = 60*(rest - a%degrees)
    a%minutes = int(rest)
    a%seconds = 60*(rest - a%minutes)
  end subroutine from_degrees

  subroutine to_degrees(x, a)
    real(dp), intent(out) :: x
    type(angle), intent(in) :: a

    x = a%degrees + (a%minutes + a%seconds/60)/60
    if (a%negative) x = -x
  end subroutine to_degrees

  ! Reads 52 31 12N, 13 24W and the like.
  subroutine from_text(a, text)
    type(angle), intent(out) :: a
    character(len=*), intent(in) :: text
    character(len=len(text)) :: figures
    integer :: last, status

    last = scan(text, 'NSEWnsew')
    if (last == 0) last = len(text) + 1
    figures = text(:last - 1)
    a = angle(0, 0, 0.0_dp, .false.)
    read (figures, *, iostat=status) a%degrees, a%minutes, a%seconds
    if (status /= 0) then
       a%minutes = 0
       a%seconds = 0
       read (figures, *, iostat=status) a%degrees, a%minutes
       if (status /= 0) read (figures, *, iostat=status) a%degrees
    end if
    if (last <= len(text)) a%negative = scan(text(last:last), 'SWsw') == 1
  end subroutine from_text

  function written(a, signs) result(text)
    type(angle), intent(in) :: a
    character(len=2), intent(in) :: signs
    character(len=14) :: text
    integer :: s

    s = 1
    if (a%negative) s = 2
    write (text, '(I3, 1X, I2.2, 1X, F5.2, A1)') a%degrees, a%minutes, a%seconds, signs(s:s)
  end function written

  real(dp) function factor_of(name)
    character(len=*), intent(in) :: name
    integer :: k

    factor_of = 0
    do k = 1, size(units)
       if (units(k)%name == name) then
          factor_of = units(k)%metres
          exit
       end if
    end do
    if (k > n_units) stop 'no such unit'
  end function factor_of

  function convert_one(value, from, to) result(y)
    real(dp), intent(in) :: value
    character(len=*), intent(in), optional :: from, to
    real(dp) :: y

    y = value
    if (present(from)) y = y*factor_of(from)
    if (present(to)) y = y/factor_of(to)
  end function convert_one

  function convert_many(values, from, to) result(y)
    real(dp), intent(in), dimension(:) :: values
    character(len=*), intent(in), optional :: from, to
    real(dp), dimension(size(values)) :: y
    integer :: k

    do k = 1, size(y)
       y(k) = convert_one(values(k), from, to)
    end do
  end function convert_many

end module angles
