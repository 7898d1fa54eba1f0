! Looks at things as bits.
module bits
  implicit none
contains

  function words_of(text) result(words)
    character(len=*), intent(in) :: text
    integer, dimension((len(text) + 3) / 4) :: words

    words = transfer(text // '   ', words)
  end function words_of

  ! The bits of N, the highest first, in groups of eight.
  function bit_string(n) result(line)
    integer, intent(in) :: n
    character(len=bit_size(n) + bit_size(n)/8 - 1) :: line
    integer :: i, k

    line = ' '
    k = 0
    do i = bit_size(n) - 1, 0, -1
      k = k + 1
      line(k:k) = achar(iachar('0') + ibits(n, i, 1))
      if (mod(i, 8) == 0) k = k + 1
    end do
  end function bit_string

end module bits

! Accounts of a bank in a direct access file, one record each, with a journal
! of what happened in a sequential unformatted file.
module accounts
  implicit none
  private

  integer, parameter, public :: owner_length = 20

  type, public :: account
    sequence
    integer                     :: number
    integer                     :: cents
    integer                     :: flags
    character(len=owner_length) :: owner
  end type account

  type, public :: entry
    integer :: tick, account, cents
    character :: kind                ! D(eposit), W(ithdrawal), I(nterest), T(ransfer)
  end type entry

  ! Bits of the flags
  integer, parameter, public :: flag_open = 0, flag_blocked = 1, flag_savings = 2, &
    flag_overdrawn = 3

  type, public :: bank
    private
    integer :: unit, journal
    integer :: count, tick
    logical :: ready
  end type bank

  interface operator(.has.)
    module procedure has_flag
  end interface

  public :: start_bank, close_bank, open_account, deposit, withdraw, transfer, &
            get_account, block_account, pay_interest, accounts_of, ticks_of, &
            read_journal, operator(.has.), checksum, describe_unit

contains

  subroutine start_bank(b, unit, journal, ok)
    type(bank), intent(out) :: b
    integer, intent(in)     :: unit, journal
    logical, intent(out)    :: ok
    type(account) :: sample
    integer :: length, ios
    logical :: busy(2)

    inquire (unit=unit, opened=busy(1))
    inquire (unit=journal, opened=busy(2))
    ok = .not. any(busy)
    b = bank(unit, journal, 0, 0, .false.)
    if (.not. ok) return
    sample = account(0, 0, 0, ' ')
    inquire (iolength=length) sample
    open (unit, status='scratch', access='direct', form='unformatted', recl=length, &
          iostat=ios)
    if (ios == 0) open (journal, status='scratch', form='unformatted', iostat=ios)
    ok = ios == 0
    b%ready = ok
  end subroutine start_bank

  subroutine close_bank(b)
    type(bank), intent(inout) :: b

    if (.not. b%ready) return
    close (b%unit)
    close (unit=b%journal, status='delete')
    b%ready = .false.
  end subroutine close_bank

  logical function has_flag(a, bit)
    type(account), intent(in) :: a
    integer, intent(in)       :: bit
    has_flag = btest(a%flags, bit)
  end function has_flag

  integer function accounts_of(b)
    type(bank), intent(in) :: b
    accounts_of = b%count
  end function accounts_of

  integer function ticks_of(b)
    type(bank), intent(in) :: b
    ticks_of = b%tick
  end function ticks_of

  ! Numbers carry a check digit at the end.
  function full_number(record) result(number)
    integer, intent(in) :: record
    integer :: number, rest, weight

    rest = record
    weight = 2
    number = 0
    do while (rest > 0)
      number = number + weight * mod(rest, 10)
      rest = rest / 10
      weight = 3 - weight
    end do
    number = 10 * record + modulo(-number, 10)
  end function full_number

  ! The record of an account, 0 if the number is wrong.
  integer function record_of(b, number) result(record)
    type(bank), intent(in) :: b
    integer, intent(in) :: number

    record = number / 10
    if (record < 1 .or. record > b%count) then
      record = 0
    else if (full_number(record) /= number) then
      record = 0
    end if
  end function record_of

  subroutine open_account(b, owner, number, savings)
    type(bank), intent(inout)     :: b
    character(len=*), intent(in)  :: owner
    integer, intent(out)          :: number
    logical, intent(in), optional :: savings
    type(account) :: a

    b%count = b%count + 1
    number = full_number(b%count)
    a%number = number
    a%owner = owner
    a%cents = 0
    a%flags = ibset(0, flag_open)
    if (present(savings)) then
      if (savings) a%flags = ibset(a%flags, flag_savings)
    end if
    write (b%unit, rec=b%count) a
  end subroutine open_account

  subroutine get_account(b, number, a, found)
    type(bank), intent(in)     :: b
    integer, intent(in)        :: number
    type(account), intent(out) :: a
    logical, intent(out)       :: found
    integer :: ios

    a = account(0, 0, 0, '')
    found = record_of(b, number) > 0
    if (.not. found) return
    read (unit=b%unit, rec=record_of(b, number), iostat=ios, err=99) a
    return
99  found = .false.
  end subroutine get_account

  ! Changes the balance and notes it; the only place that writes either.
  subroutine change(b, a, cents, kind)
    type(bank), intent(inout) :: b
    type(account), intent(inout) :: a
    integer, intent(in) :: cents
    character, intent(in) :: kind

    a%cents = a%cents + cents
    if (a%cents < 0) then
      a%flags = ibset(a%flags, flag_overdrawn)
    else
      a%flags = ibclr(a%flags, flag_overdrawn)
    end if
    write (b%unit, rec=a%number/10) a
    b%tick = b%tick + 1
    write (b%journal) b%tick, a%number, cents, kind
  end subroutine change

  subroutine deposit(b, number, cents, ok)
    type(bank), intent(inout) :: b
    integer, intent(in)  :: number, cents
    logical, intent(out) :: ok
    type(account) :: a

    call get_account(b, number, a, ok)
    ok = ok .and. cents > 0 .and. .not. (a .has. flag_blocked)
    if (ok) call change(b, a, cents, 'D')
  end subroutine deposit

  ! Savings must not be overdrawn, other accounts by 500.00 at most.
  subroutine withdraw(b, number, cents, ok, why)
    type(bank), intent(inout) :: b
    integer, intent(in)  :: number, cents
    logical, intent(out) :: ok
    character(len=*), intent(out), optional :: why
    type(account) :: a
    integer :: limit
    character(len=20) :: reason

    call get_account(b, number, a, ok)
    limit = -50000
    if (a .has. flag_savings) limit = 0
    reason = ' '
    if (.not. ok) then
      reason = 'no such account'
    else if (a .has. flag_blocked) then
      reason = 'account is blocked'
    else if (a%cents - cents < limit) then
      reason = 'not enough money'
    end if
    ok = reason == ' '
    if (ok) call change(b, a, -cents, 'W')
    if (present(why)) why = reason
  end subroutine withdraw

  subroutine transfer(b, from, to, cents, ok)
    type(bank), intent(inout) :: b
    integer, intent(in)  :: from, to, cents
    logical, intent(out) :: ok
    type(account) :: target_account
    logical :: found

    call get_account(b, to, target_account, found)
    ok = found .and. from /= to
    if (.not. ok) return
    call withdraw(b, from, cents, ok)
    if (ok) call change(b, target_account, cents, 'T')
  end subroutine transfer

  subroutine block_account(b, number, free_again)
    type(bank), intent(inout) :: b
    integer, intent(in) :: number
    logical, intent(in), optional :: free_again
    type(account) :: a
    logical :: found, free

    call get_account(b, number, a, found)
    if (.not. found) return
    free = .false.
    if (present(free_again)) free = free_again
    if (free) then
      a%flags = ibclr(a%flags, flag_blocked)
    else
      a%flags = ibset(a%flags, flag_blocked)
    end if
    write (b%unit, rec=number/10) a
  end subroutine block_account

  ! RATE percent to savings, twice that from overdrawn accounts.
  subroutine pay_interest(b, rate, paid)
    type(bank), intent(inout) :: b
    real, intent(in)     :: rate
    integer, intent(out) :: paid
    type(account) :: a
    integer :: record, cents

    paid = 0
    all_accounts: do record = 1, b%count
      read (b%unit, rec=record) a
      if (a .has. flag_savings) then
        cents = nint(a%cents * rate / 100)
      else if (a .has. flag_overdrawn) then
        cents = nint(a%cents * 2 * rate / 100)
      else
        cycle all_accounts
      end if
      if (cents == 0) cycle all_accounts
      call change(b, a, cents, 'I')
      paid = paid + cents
    end do all_accounts
  end subroutine pay_interest

  ! The last entries of the journal, read backwards.
  subroutine read_journal(b, last, n)
    type(bank), intent(in) :: b
    type(entry), dimension(:), intent(out) :: last
    integer, intent(out) :: n
    integer :: i

    n = min(size(last), b%tick)
    endfile (b%journal)
    backspace (b%journal)
    do i = 1, n
      backspace (b%journal)
      read (b%journal) last(i)%tick, last(i)%account, last(i)%cents, last(i)%kind
      backspace (b%journal)
    end do
    ! back to the end, where the next entry goes
    do
      read (b%journal, end=10)
    end do
10  backspace (b%journal)
  end subroutine read_journal

  ! A sum over the bits of an account, whatever they mean. The intrinsic
  ! function TRANSFER is out of reach here, since a procedure of this module
  ! has its name; see module BITS.
  integer function checksum(a) result(s)
    use bits, only: words_of
    type(account), intent(in) :: a
    integer, dimension(3) :: head
    integer :: i

    head = (/ a%number, a%cents, a%flags /)
    s = 0
    do i = 1, size(head)
      s = ieor(ishftc(s, 3), head(i))
    end do
    head(1:1) = words_of(a%owner(1:4))
    s = iand(ieor(s, head(1)), 65535)
  end function checksum

  ! What the run-time system says of a unit.
  subroutine describe_unit(unit, line)
    integer, intent(in) :: unit
    character(len=*), intent(out) :: line
    character(len=12) :: access, form, direct, sequential, action, blank
    logical :: open, named, exists
    integer :: length

    line = ' '
    inquire (unit, exist=exists, opened=open, named=named, access=access, form=form, &
             direct=direct, sequential=sequential, action=action, blank=blank)
    if (.not. exists) then
      line = 'there is no such unit'
    else if (.not. open) then
      line = 'not connected'
    else if (access == 'DIRECT') then
      inquire (unit, recl=length)
      write (line, '(3a, i4)') 'direct, ', trim(form), ', record length', length
    else
      line = trim(access) // ', ' // trim(form) // ', ' // action
      if (named) line = trim(line) // ', named'
    end if
  end subroutine describe_unit

end module accounts
