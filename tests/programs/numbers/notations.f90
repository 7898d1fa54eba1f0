! Numbers in other bases and in Roman letters.
module notations
  implicit none
  character(len=36), parameter, private :: symbols = &
    '0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ'
  integer, parameter :: roman_length = 15

contains

  ! N in the given base, right-adjusted in a field of WIDTH characters.
  function in_base(n, base, width) result(text)
    integer, intent(in) :: n, base, width
    character(len=width) :: text
    integer :: rest, i, d

    text = ' '
    rest = abs(n)
    do i = width, 1, -1
      d = mod(rest, base) + 1
      text(i:i) = symbols(d:d)
      rest = rest / base
      if (rest == 0) exit
    end do
    if (rest /= 0 .or. (n < 0 .and. i == 1)) then
      text = repeat('*', width)
    else if (n < 0) then
      text(i-1:i-1) = '-'
    end if
  end function in_base

  subroutine from_base(text, base, n, bad)
    character(len=*), intent(in) :: text
    integer, intent(in) :: base
    integer, intent(out) :: n
    logical, intent(out) :: bad
    integer :: i, d

    n = 0
    bad = .true.
    do i = 1, len_trim(text)
      d = index(symbols(:base), text(i:i)) - 1
      if (d < 0) return
      if (n > (huge(n) - d) / base) return
      n = n * base + d
    end do
    bad = len_trim(text) == 0
  end subroutine from_base

  function roman(n) result(letters)
    integer, intent(in) :: n
    character(len=roman_length) :: letters
    integer, dimension(13), parameter :: worth = &
      (/ 1000, 900, 500, 400, 100, 90, 50, 40, 10, 9, 5, 4, 1 /)
    character(len=2), dimension(13), parameter :: sign = (/ 'M ', 'CM', 'D ', 'CD', &
      'C ', 'XC', 'L ', 'XL', 'X ', 'IX', 'V ', 'IV', 'I ' /)
    integer :: rest, k

    letters = ''
    if (n < 1 .or. n > 3999) return
    rest = n
    k = 1
    do while (rest > 0)
      if (rest >= worth(k)) then
        letters = trim(letters) // sign(k)
        rest = rest - worth(k)
      else
        k = k + 1
      end if
    end do
  end function roman

  ! Zero for what is no Roman number.
  integer function arabic(letters)
    character(len=*), intent(in) :: letters
    integer :: i, this, next

    arabic = 0
    do i = 1, len_trim(letters)
      this = value_of(letters(i:i))
      next = 0
      if (i < len(letters)) next = value_of(letters(i+1:i+1))
      if (this < next) then
        arabic = arabic - this
      else
        arabic = arabic + this
      end if
    end do
    if (roman(arabic) /= letters) arabic = 0

  contains

    integer function value_of(letter)
      character, intent(in) :: letter
      select case (letter)
      case ('I'); value_of = 1
      case ('V'); value_of = 5
      case ('X'); value_of = 10
      case ('L'); value_of = 50
      case ('C'); value_of = 100
      case ('D'); value_of = 500
      case ('M'); value_of = 1000
      case default; value_of = 0
      end select
    end function value_of

  end function arabic

end module notations
