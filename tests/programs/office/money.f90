! Loans, interest and taxes, in cents so that nothing is lost.
module money
  implicit none

  integer, parameter :: cents = selected_int_kind(9), exact = selected_real_kind(13)

  type bracket
     integer(cents) :: from
     real(exact) :: share
  end type bracket

  type(bracket), dimension(4), parameter, private :: brackets = (/ &
       bracket(0, 0.0_exact), bracket(1000000, 0.15_exact), &
       bracket(2500000, 0.25_exact), bracket(6000000, 0.40_exact)/)

  integer, dimension(7), parameter :: coins = (/ 200, 100, 50, 20, 10, 5, 1 /)

  interface in_words
     module procedure words_of_cents
  end interface

contains

  ! Each bracket takes its share of the income above its start.
  function tax(income, by_bracket) result(total)
    integer(cents), intent(in) :: income
    integer(cents), intent(out), optional :: by_bracket(:)
    integer(cents) :: total, part, top
    integer :: k

    total = 0
    do k = 1, size(brackets)
       if (k < size(brackets)) then
          top = min(income, brackets(k + 1)%from)
       else
          top = income
       end if
       part = nint(max(0, top - brackets(k)%from)*brackets(k)%share, cents)
       if (present(by_bracket)) by_bracket(k) = part
       total = total + part
    end do
  end function tax

  ! What must be paid back each month, rounded up.
  integer(cents) function instalment(debt, percent, months)
    integer(cents), intent(in) :: debt
    real(exact), intent(in) :: percent
    integer, intent(in) :: months
    real(exact) :: q

    if (percent == 0) then
       instalment = (debt + months - 1)/months
    else
       q = 1 + percent/1200
       instalment = ceiling(debt*(q - 1)/(1 - q**(-months)))
    end if
  end function instalment

  subroutine schedule(debt, percent, months, unit, every)
    integer(cents), intent(in) :: debt
    real(exact), intent(in) :: percent
    integer, intent(in) :: months
    integer, intent(in), optional :: unit
    integer, intent(in), optional :: every
    integer(cents) :: left, pay, interest, paid
    integer :: month, out, step
    character(len=*), parameter :: form = '(1X, I5, 3F12.2)'

    out = 6
    if (present(unit)) out = unit
    step = 1
    if (present(every)) step = every
    left = debt
    pay = instalment(debt, percent, months)
    paid = 0
    write (out, '(1X, A5, 3A12)') 'month', 'interest', 'paid', 'left'
    do month = 1, months
       interest = nint(left*percent/1200)
       pay = min(pay, left + interest)
       left = left + interest - pay
       paid = paid + pay
       if (mod(month, step) == 0 .or. left == 0) write (out, form) month, interest/100.0, pay/100.0, left/100.0
       if (left == 0) exit
    end do
    write (out, '(1X, A, F14.2)') 'in all', paid/100.0_exact
  end subroutine schedule

  ! The fewest coins, which the greedy way gives for these.
  function change(amount) result(numbers)
    integer(cents), intent(in) :: amount
    integer, dimension(size(coins)) :: numbers
    integer(cents) :: left
    integer :: k

    left = amount
    do k = 1, size(coins)
       numbers(k) = left/coins(k)
       left = mod(left, coins(k))
    end do
  end function change

  ! In how many ways the amount can be paid.
  function ways(amount) result(n)
    integer, intent(in) :: amount
    integer :: n
    integer, dimension(0:amount) :: of
    integer :: k, a

    of = 0
    of(0) = 1
    do k = 1, size(coins)
       do a = coins(k), amount
          of(a) = of(a) + of(a - coins(k))
       end do
    end do
    n = of(amount)
  end function ways

  ! An amount as on a cheque.
  function words_of_cents(amount) result(text)
    integer(cents), intent(in) :: amount
    character(len=120) :: text
    character(len=9), dimension(0:19) :: small
    character(len=7), dimension(2:9) :: tens
    integer :: whole
    data small / 'zero', 'one', 'two', 'three', 'four', 'five', 'six', 'seven', 'eight', 'nine', &
         'ten', 'eleven', 'twelve', 'thirteen', 'fourteen', 'fifteen', 'sixteen', 'seventeen', &
         'eighteen', 'nineteen' /
    data tens / 'twenty', 'thirty', 'forty', 'fifty', 'sixty', 'seventy', 'eighty', 'ninety' /

    whole = abs(amount)/100
    text = ' '
    if (amount < 0) text = 'minus'
    if (whole >= 1000000) call say(whole/1000000, 'million')
    if (whole >= 1000) call say(mod(whole/1000, 1000), 'thousand')
    if (mod(whole, 1000) > 0 .or. whole == 0) call say(mod(whole, 1000), ' ')
    text = adjustl(text)

  contains

    subroutine say(n, unit)
      integer, intent(in) :: n
      character(len=*), intent(in) :: unit
      integer :: rest

      rest = n
      if (n == 0 .and. whole /= 0) return
      if (rest >= 100) then
         text = trim(text)//' '//trim(small(rest/100))//' hundred'
         rest = mod(rest, 100)
         if (rest == 0) then
            text = trim(text)//' '//unit
            return
         end if
      end if
      if (rest >= 20) then
         text = trim(text)//' '//tens(rest/10)
         rest = mod(rest, 10)
         if (rest > 0) text = trim(text)//'-'//small(rest)
      else
         text = trim(text)//' '//small(rest)
      end if
      text = trim(text)//' '//unit
    end subroutine say
  end function words_of_cents

end module money
