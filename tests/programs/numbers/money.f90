! Amounts of money as whole numbers of cents, held in double precision because
! default integers are too short, with rounding as a clerk would do it, and the
! ways in which amounts are printed.
module money
  implicit none
  private
  ! exact up to 10,000,000,000,000.00
  integer, parameter, public :: cents = selected_real_kind(p=15)
  integer, parameter :: picture_length = 22

  type, public :: amount
    private
    real(kind=cents) :: value
  end type amount

  interface assignment(=)
    module procedure amount_from_double, amount_from_string
  end interface
  interface operator(+)
    module procedure plus
  end interface
  interface operator(-)
    module procedure minus, minus_one
  end interface
  interface operator(*)
    module procedure times_integer, integer_times
  end interface
  interface operator(<)
    module procedure less_than
  end interface
  interface operator(==)
    module procedure equals
  end interface
  interface operator(.percent.)
    module procedure percent_of
  end interface
  public :: assignment(=), operator(+), operator(-), operator(*), operator(<), &
            operator(==), operator(.percent.)
  public :: picture, words_for, share, nothing, euros

  character(len=9), parameter :: small(0:19) = (/ 'zero     ', 'one      ', &
    'two      ', 'three    ', 'four     ', 'five     ', 'six      ', 'seven    ', &
    'eight    ', 'nine     ', 'ten      ', 'eleven   ', 'twelve   ', 'thirteen ', &
    'fourteen ', 'fifteen  ', 'sixteen  ', 'seventeen', 'eighteen ', 'nineteen ' /)
  character(len=7), dimension(2:9), parameter :: tens = (/ 'twenty ', 'thirty ', &
    'forty  ', 'fifty  ', 'sixty  ', 'seventy', 'eighty ', 'ninety ' /)

contains

  function nothing() result(a)
    type(amount) :: a
    a%value = 0.0_cents
  end function nothing

  function euros(whole, part) result(a)
    integer, intent(in) :: whole
    integer, intent(in), optional :: part
    type(amount) :: a

    a%value = 100.0_cents * whole
    if (present(part)) a%value = a%value + sign(part, whole)
  end function euros

  subroutine amount_from_double(a, x)
    type(amount), intent(out) :: a
    double precision, intent(in) :: x
    a%value = aint(abs(x) * 100.0d0 + 0.5d0, kind=cents)
    if (x < 0.0d0) a%value = -a%value
  end subroutine amount_from_double

  ! Takes "1,234.56", "-12" and the like.
  subroutine amount_from_string(a, s)
    type(amount), intent(out) :: a
    character(len=*), intent(in) :: s
    integer :: i, decimals
    logical :: negative

    a%value = 0
    decimals = -1
    negative = .false.
    do i = 1, len_trim(s)
      select case (s(i:i))
      case ('0':'9')
        if (decimals >= 2) cycle
        a%value = 10 * a%value + (iachar(s(i:i)) - iachar('0'))
        if (decimals >= 0) decimals = decimals + 1
      case ('.')
        decimals = 0
      case ('-', '(')
        negative = .true.
      case (',', ' ', '+', ')')
        continue
      case default
        a%value = 0
        return
      end select
    end do
    a%value = a%value * 10.0_cents ** (2 - max(decimals, 0))
    if (negative) a%value = -a%value
  end subroutine amount_from_string

  function plus(a, b) result(c)
    type(amount), intent(in) :: a, b
    type(amount) :: c
    c%value = a%value + b%value
  end function plus

  function minus(a, b) result(c)
    type(amount), intent(in) :: a, b
    type(amount) :: c
    c%value = a%value - b%value
  end function minus

  function minus_one(a) result(c)
    type(amount), intent(in) :: a
    type(amount) :: c
    c%value = -a%value
  end function minus_one

  function times_integer(a, n) result(c)
    type(amount), intent(in) :: a
    integer, intent(in) :: n
    type(amount) :: c
    c%value = a%value * n
  end function times_integer

  function integer_times(n, a) result(c)
    integer, intent(in) :: n
    type(amount), intent(in) :: a
    type(amount) :: c
    c = times_integer(a, n)
  end function integer_times

  logical function less_than(a, b)
    type(amount), intent(in) :: a, b
    less_than = a%value < b%value
  end function less_than

  logical function equals(a, b)
    type(amount), intent(in) :: a, b
    equals = a%value == b%value
  end function equals

  ! P percent of A; half a cent goes to the even side.
  function percent_of(p, a) result(c)
    real, intent(in) :: p
    type(amount), intent(in) :: a
    type(amount) :: c
    real(cents) :: scaled, half
    logical :: odd

    scaled = a%value * nint(p * 100.0)
    c%value = aint(scaled / 10000)
    half = 2 * (scaled - 10000 * c%value)
    odd = mod(c%value, 2.0_cents) /= 0
    if (abs(half) > 10000 .or. (abs(half) == 10000 .and. odd)) then
      c%value = c%value + sign(1.0_cents, scaled)
    end if
  end function percent_of

  ! Divides A into parts in the proportion of WEIGHTS without losing a cent.
  function share(a, weights) result(parts)
    type(amount), intent(in) :: a
    integer, dimension(:), intent(in) :: weights
    type(amount), dimension(size(weights)) :: parts
    real(cents) :: rest
    integer :: i

    parts%value = aint(a%value * weights / sum(weights))
    rest = a%value - sum(parts%value)
    do i = 1, int(abs(rest))
      parts(i)%value = parts(i)%value + sign(1.0_cents, rest)
    end do
  end function share

  ! The amount with commas; STYLE is 'minus', 'credit' or 'brackets'.
  function picture(a, style) result(p)
    type(amount), intent(in) :: a
    character(len=*), intent(in), optional :: style
    character(len=picture_length) :: p
    character(len=picture_length) :: digits
    character(len=8) :: how
    integer :: i, k

    how = 'minus'
    if (present(style)) how = style
    write (digits(:20), '(f20.0)') aint(abs(a%value) / 100)
    write (digits(21:), '(i2.2)') int(mod(abs(a%value), 100.0_cents))
    p = ' '
    p(20:20) = '.'
    p(21:22) = digits(21:22)
    k = 19
    do i = 19, 1, -1
      if (digits(i:i) == ' ') exit
      if (mod(19 - i, 3) == 0 .and. i < 19) then
        p(k:k) = ','
        k = k - 1
      end if
      p(k:k) = digits(i:i)
      k = k - 1
    end do
    if (a%value >= 0) return
    select case (how)
    case ('credit')
      p = p(3:) // 'CR'
    case ('brackets')
      p(k:k) = '('
      p = p(2:) // ')'
    case default
      p(k:k) = '-'
    end select
  end function picture

  ! As on a cheque.
  function words_for(a) result(line)
    type(amount), intent(in) :: a
    character(len=120) :: line
    real(cents) :: whole

    line = ' '
    whole = aint(abs(a%value) / 100)
    if (whole >= 1000000) then
      call add(trim(below_thousand(int(whole / 1000000))) // ' million')
      whole = mod(whole, 1000000.0_cents)
    end if
    if (whole >= 1000) then
      call add(trim(below_thousand(int(whole / 1000))) // ' thousand')
      whole = mod(whole, 1000.0_cents)
    end if
    if (whole > 0 .or. line == ' ') call add(below_thousand(int(whole)))
    write (line(len_trim(line) + 2:), '("and ", i2.2, "/100")') &
      int(mod(abs(a%value), 100.0_cents))

  contains

    subroutine add(piece)
      character(len=*), intent(in) :: piece
      if (line == ' ') then
        line = piece
      else
        line = trim(line) // ' ' // piece
      end if
    end subroutine add

  end function words_for

  function below_thousand(n) result(w)
    integer, intent(in) :: n
    character(len=40) :: w
    integer :: rest

    w = ' '
    rest = n
    if (rest >= 100) then
      w = trim(small(rest / 100)) // ' hundred'
      rest = mod(rest, 100)
      if (rest == 0) return
      w = trim(w) // ' and'
    end if
    if (rest < 20) then
      w = adjustl(trim(w) // ' ' // small(rest))
    else
      w = adjustl(trim(w) // ' ' // tens(rest / 10))
      if (mod(rest, 10) > 0) w = trim(w) // '-' // small(mod(rest, 10))
    end if
  end function below_thousand

end module money
