program try_numbers
  use bigs
  use rationals, ratio => rational
  use notations
  implicit none

  call try_bigs
  call try_rationals
  call try_money
  call try_notations

contains

  subroutine try_bigs
    type(big) :: a, b, c, f(3)
    integer :: i

    a = '123456789012345678901234567890'
    b = -987654321
    print *, to_string(a, 40)
    print *, to_string(a * b, 45)
    print *, to_string(a / b, 40)
    print *, to_string(a .mod. b, 40)
    c = (a / b) * b + (a .mod. b)
    if (.not. c == a) print *, 'FAILED: division'
    f(1) = 1; f(2) = 1
    do i = 3, 150
      f(3) = f(1) + f(2)
      f(1:2) = f(2:3)
    end do
    print *, to_string(f(3), 40), digits_of(f(3))
    print *, to_string(factorial(30), 36)
    print *, to_string(gcd(factorial(12), factorial(20) / 7), 16), gcd(84, 36)
    c = 2
    print *, to_string(c ** 127 - 1, 42)
    print *, to_string(sqrt(c ** 200), 42)
    i = c ** 20
    print *, i, sign_of(b), abs(b) > a, big_overflow
    c = (c ** 200) * (c ** 700)
    if (big_overflow) print *, 'overflow noticed', sign_of(c)
    print *, to_string(a, 5)
  end subroutine try_bigs

  subroutine try_rationals
    type(ratio) :: r, terms(6)
    character(len=16) :: shown
    real :: x
    integer :: i

    r = (1 .over. 2) + (1 .over. 3)
    shown = r
    print *, shown
    r = -(7 .over. 3) * (3 .over. 14) - (1 .over. (-4))
    shown = r
    print *, shown
    terms = (/ (1 .over. (i * (i + 1)), i = 1, 6) /)
    shown = sum(terms)
    x = sum(terms)
    print *, shown, x
    r = 2
    do i = 1, 4                       ! towards the square root of 2
      r = (1 .over. 2) * (r + (2 .over. 1) / r)
    end do
    shown = r
    x = r
    print '(1x,a,f10.7,i4,l2)', shown, x, int(r), r == (665857 .over. 470832)
  end subroutine try_rationals

  subroutine try_money
    use money
    type(amount) :: price, total, debt
    type(amount), dimension(3) :: parts
    integer :: i

    price = '1,234.50'
    total = 3 * price
    total = total + (19.0 .percent. total)
    debt = euros(500, 5) - total
    print *, picture(price), picture(total)
    print *, picture(debt), picture(debt, 'credit'), picture(debt, 'brackets')
    parts = share(euros(100), (/ 1, 1, 1 /))
    do i = 1, 3
      print '(1x,a)', picture(parts(i))
    end do
    print *, trim(words_for(price))
    print *, trim(words_for(euros(2017042, 7)))
    print *, trim(words_for(nothing()))
    price = 0.125d0
    if (price < euros(0, 14) .and. price == euros(0, 13)) print *, 'rounded'
  end subroutine try_money

  subroutine try_notations
    integer :: n, i
    logical :: bad
    integer, dimension(6) :: years = (/ 4, 1066, 1492, 1990, 2026, 3888 /)

    print *, in_base(255, 16, 4), in_base(255, 2, 10), in_base(-35, base=36, width=4), &
      in_base(1000, 10, 3)
    call from_base('7FFFFFFF', 16, n, bad)
    print *, n, bad
    call from_base('102', 2, n, bad)
    print *, bad
    do i = 1, size(years)
      print '(1x,i5,2x,a,i5)', years(i), roman(years(i)), arabic(roman(years(i)))
    end do
    print *, arabic('IIII')
  end subroutine try_notations

end program try_numbers
