! Integers of any size that fits LIMBS digits to the base 10000.
module bigs
  implicit none
  private

  integer, parameter :: limbs = 60, base = 10000, base_digits = 4

  type, public :: big
    private
    integer :: sign                      ! -1, 0 or 1
    integer :: n                         ! limbs in use
    integer, dimension(limbs) :: limb    ! the lowest first
  end type big

  logical, public, save :: big_overflow = .false.

  interface assignment(=)
    module procedure big_from_integer, big_from_string, integer_from_big
  end interface
  interface operator(+)
    module procedure add, add_integer
  end interface
  interface operator(-)
    module procedure subtract, negate, subtract_integer
  end interface
  interface operator(*)
    module procedure multiply, multiply_integer, integer_multiply
  end interface
  interface operator(/)
    module procedure divide, divide_integer
  end interface
  interface operator(.mod.)
    module procedure remainder
  end interface
  interface operator(**)
    module procedure power
  end interface
  interface operator(==)
    module procedure equal, equal_integer
  end interface
  interface operator(<)
    module procedure less
  end interface
  interface operator(>)
    module procedure greater
  end interface
  interface abs
    module procedure big_abs
  end interface
  interface gcd
    module procedure gcd_big, gcd_integer
  end interface
  interface sqrt
    module procedure big_root
  end interface

  public :: assignment(=), operator(+), operator(-), operator(*), operator(/), &
            operator(.mod.), operator(**), operator(==), operator(<), operator(>), &
            abs, gcd, sqrt, digits_of, to_string, factorial, sign_of

contains

  subroutine big_from_integer(b, i)
    type(big), intent(out) :: b
    integer, intent(in)    :: i
    integer :: rest

    b%limb = 0
    b%n = 0
    b%sign = sign(1, i)
    rest = i
    do while (rest /= 0)
      b%n = b%n + 1
      b%limb(b%n) = abs(mod(rest, base))
      rest = rest / base
    end do
    if (b%n == 0) b%sign = 0
  end subroutine big_from_integer

  ! Blanks, a sign and digits; anything else counts as zero.
  subroutine big_from_string(b, s)
    type(big), intent(out) :: b
    character(len=*), intent(in) :: s
    character(len=len(s)) :: t
    integer :: first, last, from

    b%limb = 0
    b%n = 0
    b%sign = 1
    t = adjustl(s)
    first = 1
    if (scan(t(1:1), '+-') == 1) then
      first = 2
      if (t(1:1) == '-') b%sign = -1
    end if
    last = len_trim(t)
    if (verify(t(first:last), '0123456789') == 0) then
      do
        if (last < first) exit
        from = max(first, last - base_digits + 1)
        b%n = b%n + 1
        read (t(from:last), '(bn, i4)') b%limb(b%n)
        last = from - 1
      end do
    end if
    call strip(b)
  end subroutine big_from_string

  subroutine integer_from_big(i, b)
    integer, intent(out) :: i
    type(big), intent(in) :: b
    integer :: k

    i = 0
    do k = b%n, 1, -1
      if (i > (huge(i) - b%limb(k)) / base) then
        big_overflow = .true.
        exit
      end if
      i = i * base + b%limb(k)
    end do
    i = i * b%sign
  end subroutine integer_from_big

  ! Drops zeros above the highest limb and gives zero no sign.
  subroutine strip(b)
    type(big), intent(inout) :: b

    do
      if (b%n == 0) exit
      if (b%limb(b%n) /= 0) exit
      b%n = b%n - 1
    end do
    if (b%n == 0) b%sign = 0
  end subroutine strip

  integer function sign_of(b)
    type(big), intent(in) :: b
    sign_of = b%sign
  end function sign_of

  ! Compares without the signs: -1, 0, 1.
  integer function compare(a, b) result(c)
    type(big), intent(in) :: a, b
    integer :: k

    c = 0
    if (a%n /= b%n) then
      c = sign(1, a%n - b%n)
    else
      do k = a%n, 1, -1
        if (a%limb(k) /= b%limb(k)) then
          c = sign(1, a%limb(k) - b%limb(k))
          exit
        end if
      end do
    end if
  end function compare

  logical function equal(a, b)
    type(big), intent(in) :: a, b
    equal = a%sign == b%sign .and. compare(a, b) == 0
  end function equal

  logical function equal_integer(a, i)
    type(big), intent(in) :: a
    integer, intent(in) :: i
    type(big) :: b
    b = i
    equal_integer = a == b
  end function equal_integer

  logical function less(a, b)
    type(big), intent(in) :: a, b

    if (a%sign /= b%sign) then
      less = a%sign < b%sign
    else
      less = a%sign * compare(a, b) < 0
    end if
  end function less

  logical function greater(a, b)
    type(big), intent(in) :: a, b
    greater = b < a
  end function greater

  function big_abs(a) result(b)
    type(big), intent(in) :: a
    type(big) :: b
    b = big(abs(a%sign), a%n, a%limb)
  end function big_abs

  function negate(a) result(b)
    type(big), intent(in) :: a
    type(big) :: b
    b = big(-a%sign, a%n, a%limb)
  end function negate

  function add(a, b) result(c)
    type(big), intent(in) :: a, b
    type(big) :: c
    integer :: k, carry

    if (b%sign == 0) then
      c = big(a%sign, a%n, a%limb)
    else if (a%sign == 0) then
      c = big(b%sign, b%n, b%limb)
    else if (a%sign == b%sign) then
      c = 0
      c%sign = a%sign
      c%n = min(limbs, max(a%n, b%n) + 1)
      carry = 0
      do k = 1, c%n
        carry = carry + a%limb(k) + b%limb(k)
        c%limb(k) = mod(carry, base)
        carry = carry / base
      end do
      if (carry /= 0) big_overflow = .true.
      call strip(c)
    else if (compare(a, b) >= 0) then
      c = larger_minus_smaller(a, b)
    else
      c = larger_minus_smaller(b, a)
    end if
  end function add

  function larger_minus_smaller(a, b) result(c)
    type(big), intent(in) :: a, b
    type(big) :: c
    integer :: k, borrow

    c = 0
    c%sign = a%sign
    c%n = a%n
    borrow = 0
    do k = 1, a%n
      c%limb(k) = a%limb(k) - b%limb(k) - borrow
      borrow = 0
      if (c%limb(k) < 0) then
        c%limb(k) = c%limb(k) + base
        borrow = 1
      end if
    end do
    call strip(c)
  end function larger_minus_smaller

  function add_integer(a, i) result(c)
    type(big), intent(in) :: a
    integer, intent(in) :: i
    type(big) :: b, c
    b = i
    c = a + b
  end function add_integer

  function subtract(a, b) result(c)
    type(big), intent(in) :: a, b
    type(big) :: c
    c = a + (-b)
  end function subtract

  function subtract_integer(a, i) result(c)
    type(big), intent(in) :: a
    integer, intent(in) :: i
    type(big) :: b, c
    b = i
    c = a - b
  end function subtract_integer

  function multiply(a, b) result(c)
    type(big), intent(in) :: a, b
    type(big) :: c
    integer :: i, j, carry

    c = 0
    c%sign = a%sign * b%sign
    if (c%sign == 0) return
    if (a%n + b%n > limbs) then
      big_overflow = .true.
      c%sign = 0
      return
    end if
    c%n = a%n + b%n
    do i = 1, a%n
      carry = 0
      do j = 1, b%n
        carry = carry + c%limb(i+j-1) + a%limb(i) * b%limb(j)
        c%limb(i+j-1) = mod(carry, base)
        carry = carry / base
      end do
      c%limb(i+b%n) = carry
    end do
    call strip(c)
  end function multiply

  function multiply_integer(a, i) result(c)
    type(big), intent(in) :: a
    integer, intent(in) :: i
    type(big) :: b, c
    b = i
    c = a * b
  end function multiply_integer

  function integer_multiply(i, a) result(c)
    integer, intent(in) :: i
    type(big), intent(in) :: a
    type(big) :: c
    c = a * i
  end function integer_multiply

  ! Long division; each digit of the quotient is found by halving.
  subroutine divide_with_rest(a, b, quotient, rest)
    type(big), intent(in)  :: a, b
    type(big), intent(out) :: quotient, rest
    type(big) :: divisor, trial
    integer :: k, low, high, middle

    quotient = 0
    rest = 0
    if (b%sign == 0) then
      big_overflow = .true.
      return
    end if
    divisor = abs(b)
    quotient%n = a%n
    do k = a%n, 1, -1
      rest%limb(2:rest%n+1) = rest%limb(1:rest%n)
      rest%limb(1) = a%limb(k)
      rest%n = rest%n + 1
      rest%sign = 1
      call strip(rest)
      low = 0
      high = base - 1
      do while (low < high)
        middle = (low + high + 1) / 2
        trial = divisor * middle
        if (compare(trial, rest) > 0) then
          high = middle - 1
        else
          low = middle
        end if
      end do
      quotient%limb(k) = low
      rest = rest - divisor * low
    end do
    quotient%sign = a%sign * b%sign
    if (rest%sign /= 0) rest%sign = a%sign
    call strip(quotient)
  end subroutine divide_with_rest

  function divide(a, b) result(c)
    type(big), intent(in) :: a, b
    type(big) :: c, rest
    call divide_with_rest(a, b, c, rest)
  end function divide

  function divide_integer(a, i) result(c)
    type(big), intent(in) :: a
    integer, intent(in) :: i
    type(big) :: b, c
    b = i
    c = a / b
  end function divide_integer

  function remainder(a, b) result(c)
    type(big), intent(in) :: a, b
    type(big) :: c, quotient
    call divide_with_rest(a, b, quotient, rest=c)
  end function remainder

  ! Squares and multiplies by the bits of the exponent.
  function power(a, n) result(c)
    type(big), intent(in) :: a
    integer, intent(in) :: n
    type(big) :: c, square
    integer :: bit

    c = 1
    square = a
    do bit = 0, bit_size(n) - 2
      if (btest(n, bit)) c = c * square
      if (ishft(n, -bit) <= 1) exit
      square = square * square
    end do
  end function power

  recursive function gcd_big(a, b) result(c)
    type(big), intent(in) :: a, b
    type(big) :: c
    if (b%sign == 0) then
      c = abs(a)
    else
      c = gcd(b, a .mod. b)
    end if
  end function gcd_big

  recursive function gcd_integer(i, j) result(k)
    integer, intent(in) :: i, j
    integer :: k
    if (j == 0) then
      k = abs(i)
    else
      k = gcd_integer(j, mod(i, j))
    end if
  end function gcd_integer

  ! The largest integer whose square is not larger than A (Newton).
  function big_root(a) result(x)
    type(big), intent(in) :: a
    type(big) :: x, y

    x = 0
    if (a%sign <= 0) return
    x%sign = 1
    x%n = a%n / 2 + 1
    x%limb(x%n) = base - 1
    do
      y = (x + a / x) / 2
      if (.not. y < x) exit
      x = y
    end do
  end function big_root

  function factorial(n) result(b)
    integer, intent(in) :: n
    type(big) :: b
    integer :: i

    b = 1
    do i = 2, n
      b = b * i
    end do
  end function factorial

  integer function digits_of(b) result(n)
    type(big), intent(in) :: b
    character(len=base_digits) :: highest

    n = 1
    if (b%n == 0) return
    write (highest, '(i4)') b%limb(b%n)
    n = len_trim(adjustl(highest)) + base_digits * (b%n - 1)
  end function digits_of

  ! In a field of WIDTH characters, stars if it is too narrow.
  function to_string(b, width) result(s)
    type(big), intent(in) :: b
    integer, intent(in)   :: width
    character(len=width)  :: s
    character(len=limbs*base_digits + 1) :: t
    integer :: k, first

    write (t, '(1x, 60i4.4)') (b%limb(k), k = limbs, 1, -1)
    first = max(2, verify(t, ' 0'))
    if (b%n == 0) first = len(t)
    if (b%sign < 0) then
      first = first - 1
      t(first:first) = '-'
    end if
    if (len(t) - first + 1 > width) then
      s = repeat('*', width)
    else
      s = t(first:)
      s = adjustr(s)
    end if
  end function to_string

end module bigs
