! Splits free form source lines into tokens, and tells what kind of statement
! each line begins.
module scanner
  implicit none
  private

  integer, parameter, public :: max_token = 40, max_tokens = 60
  integer, parameter, public :: k_name = 1, k_integer = 2, k_real = 3, k_string = 4, &
    k_operator = 5, k_sign = 6, k_boz = 7, k_bad = 8, kinds = 8

  character(len=8), dimension(kinds), parameter, public :: kind_name = &
    (/ 'name    ', 'integer ', 'real    ', 'string  ', 'operator', 'sign    ', &
       'boz     ', 'bad     ' /)

  type, public :: token
    integer :: kind, column
    character(len=max_token) :: text
  end type token

  type, public :: statement
    integer :: line, label, tokens
    type(token), dimension(max_tokens) :: token
    character(len=12) :: kind
  end type statement

  public :: scan_statement, open_source, next_statement, depth_of

  character(len=*), parameter :: digits = '0123456789'
  character(len=*), parameter :: letters = 'abcdefghijklmnopqrstuvwxyz'
  character(len=2), parameter :: twins(9) = &
    (/ '**', '//', '==', '/=', '<=', '>=', '=>', '::', '(/' /)

  ! the file being read
  integer, save :: unit_now, line_now
  character(len=132), save :: left_over
  logical, save :: some_left

contains

  subroutine open_source(unit)
    integer, intent(in) :: unit
    unit_now = unit
    line_now = 0
    some_left = .false.
    rewind (unit)
  end subroutine open_source

  ! Reads a statement with its continuation lines.
  subroutine next_statement(s, at_end)
    type(statement), intent(out) :: s
    logical, intent(out) :: at_end
    character(len=1000) :: whole
    character(len=132)  :: line
    integer :: used, last, ios, cut
    logical :: continued
    character :: quote

    whole = ' '
    used = 0
    at_end = .false.
    continued = .false.
    quote = ' '
    s%line = line_now + 1
    gather: do
      if (some_left) then
        line = left_over
        some_left = .false.
      else
        read (unit_now, '(a)', iostat=ios) line
        if (ios /= 0) then
          at_end = used == 0
          exit gather
        end if
        line_now = line_now + 1
        if (used == 0) s%line = line_now
      end if
      call find_end(line, quote, last, cut)
      if (last == 0) cycle gather
      if (cut > 0) then
        left_over = line(cut+1:)
        some_left = left_over /= ' '
        last = cut - 1
      end if
      if (continued) then
        line(:last) = adjustl(line(:last))
        last = len_trim(line(:last))
        if (last == 0) cycle gather
        if (line(1:1) == '&') then
          line = line(2:last)
          last = last - 1
        end if
      end if
      continued = .false.
      if (last > 0) continued = line(last:last) == '&'
      if (continued) last = last - 1
      whole(used+1:) = line(:last)
      used = used + last
      if (.not. continued) exit gather
    end do gather
    if (.not. at_end) call scan_statement(whole(:used), s)
  end subroutine next_statement

  ! LAST is the last character before a remark, CUT a semicolon; QUOTE tells
  ! whether a string goes on from one line to the next.
  subroutine find_end(line, quote, last, cut)
    character(len=*), intent(in) :: line
    character, intent(inout) :: quote
    integer, intent(out) :: last, cut
    integer :: i

    last = len_trim(line)
    cut = 0
    do i = 1, last
      if (quote /= ' ') then
        if (line(i:i) == quote) quote = ' '
      else
        select case (line(i:i))
        case ('''', '"')
          quote = line(i:i)
        case ('!')
          last = len_trim(line(:i-1))
          return
        case (';')
          cut = i
          return
        end select
      end if
    end do
  end subroutine find_end

  subroutine scan_statement(text, s)
    character(len=*), intent(in) :: text
    type(statement), intent(inout) :: s
    character(len=len(text)+2) :: t
    integer :: at, last

    call to_lower(text, t)
    s%tokens = 0
    s%label = 0
    at = verify(t, ' ')
    if (at > 0) then
      if (index(digits, t(at:at)) > 0) then
        last = at + verify(t(at:), digits) - 2
        read (t(at:last), '(bn, i5)') s%label
        at = last + 1
      end if
    end if
    do
      if (at <= 0) exit
      last = verify(t(at:), ' ')
      if (last == 0) exit
      at = at + last - 1
      call take_token(t, at, s)
    end do
    s%kind = kind_of(s)
  end subroutine scan_statement

  ! Letters outside strings become small.
  subroutine to_lower(text, t)
    character(len=*), intent(in)  :: text
    character(len=*), intent(out) :: t
    character :: quote
    integer :: i, k

    quote = ' '
    t = text
    do i = 1, len(text)
      if (quote /= ' ') then
        if (text(i:i) == quote) quote = ' '
        cycle
      end if
      if (scan(text(i:i), '''"') > 0) quote = text(i:i)
      k = iachar(text(i:i))
      if (k >= 65 .and. k <= 90) t(i:i) = achar(k + 32)
    end do
  end subroutine to_lower

  subroutine take_token(t, at, s)
    character(len=*), intent(in) :: t
    integer, intent(inout) :: at
    type(statement), intent(inout) :: s
    integer :: last, kind, k

    select case (t(at:at))
    case ('a':'z')
      last = at + verify(t(at:), letters // digits // '_') - 2
      kind = k_name
      if (last == at .and. scan(t(at:at), 'bozx') == 1 .and. &
          scan(t(at+1:at+1), '''"') == 1) then
        last = end_of_string(at + 1)
        kind = k_boz
      end if
    case ('0':'9')
      call number(last, kind)
    case ('.')
      if (index(digits, t(at+1:at+1)) > 0) then
        call number(last, kind)
      else
        last = at + index(t(at+1:), '.')
        kind = k_operator
        if (last == at .or. verify(t(at+1:last-1), letters) > 0) kind = k_bad
      end if
    case ('''', '"')
      last = end_of_string(at)
      kind = k_string
    case ('+', '-', '*', '/', '=', '<', '>', ':')
      last = at
      kind = k_operator
      do k = 1, size(twins)
        if (t(at:at+1) == twins(k)) last = at + 1
      end do
      if (t(at:at+1) == '/)') last = at + 1
    case ('(', ')', ',', '%', '&', ';')
      last = at
      if (t(at:at+1) == '(/') last = at + 1
      kind = k_sign
    case default
      last = at
      kind = k_bad
    end select

    if (s%tokens < max_tokens) then
      s%tokens = s%tokens + 1
      s%token(s%tokens) = token(kind, at, t(at:last))
    end if
    at = last + 1

  contains

    integer function end_of_string(start) result(e)
      integer, intent(in) :: start
      integer :: n

      e = start
      do
        n = index(t(e+1:), t(start:start))
        if (n == 0) then
          e = len_trim(t)
          kind = k_bad
          return
        end if
        e = e + n
        if (e == len(t)) return
        if (t(e+1:e+1) /= t(start:start)) return
        e = e + 1
      end do
    end function end_of_string

    subroutine number(e, what)
      integer, intent(out) :: e, what
      integer :: n

      what = k_integer
      e = at + verify(t(at:), digits) - 2
      if (t(e+1:e+1) == '.') then
        ! not in 1.eq.2
        n = verify(t(e+2:), letters)
        if (n <= 1 .or. t(e+1+n:e+1+n) /= '.') then
          what = k_real
          e = e + verify(t(e+2:), digits)
        end if
      end if
      if (scan(t(e+1:e+1), 'ed') == 1) then
        n = e + 2
        if (scan(t(n:n), '+-') == 1) n = n + 1
        if (verify(t(n:n), digits) == 0) then
          what = k_real
          e = n + verify(t(n:), digits) - 2
        end if
      end if
      if (t(e+1:e+1) == '_') e = e + verify(t(e+1:), '_' // letters // digits) - 1
    end subroutine number

  end subroutine take_token

  ! Keywords are no reserved words: an equals sign outside parentheses makes
  ! an assignment of what looks like something else, except in DO.
  function kind_of(s) result(kind)
    type(statement), intent(in) :: s
    character(len=12) :: kind
    integer :: i, level, equals, comma
    character(len=max_token) :: first, second

    kind = 'unknown'
    if (s%tokens == 0) then
      kind = 'empty'
      return
    end if
    level = 0
    equals = 0
    comma = 0
    do i = 1, s%tokens
      select case (s%token(i)%text)
      case ('(', '(/')
        level = level + 1
      case (')', '/)')
        level = level - 1
      case ('=')
        if (level == 0 .and. equals == 0) equals = i
      case ('=>')
        if (level == 0 .and. equals == 0 .and. i > 1) then
          if (s%token(1)%text /= 'use') kind = 'pointing'
        end if
      case (',')
        if (level == 0 .and. equals > 0) comma = i
      case ('::')
        if (level == 0) kind = 'declaration'
      end select
    end do
    if (kind /= 'unknown') return
    first = s%token(1)%text
    second = ' '
    if (s%tokens > 1) second = s%token(2)%text
    if (second == ':') then
      kind = 'construct'
      return
    end if
    if (equals > 0 .and. .not. (first == 'do' .and. comma > 0)) then
      kind = 'assignment'
      if (first /= 'if' .or. second /= '(') return
    end if
    select case (first)
    case ('if')
      kind = 'if'
      if (s%token(s%tokens)%text == 'then') kind = 'block if'
    case ('do')
      kind = 'loop'
    case ('end', 'enddo', 'endif')
      kind = 'end'
    case ('call', 'return', 'stop', 'exit', 'cycle', 'goto', 'continue')
      kind = 'control'
    case ('read', 'write', 'print', 'open', 'close', 'inquire', 'rewind')
      kind = 'i/o'
    case ('integer', 'real', 'logical', 'character', 'complex', 'implicit', 'type', 'save', &
          'dimension', 'parameter')
      kind = 'declaration'
      do i = 2, s%tokens
        if (s%token(i)%text == 'function') kind = 'begin'
      end do
    case ('program', 'module', 'subroutine', 'function', 'recursive', 'interface')
      kind = 'begin'
    case ('select', 'where', 'case', 'else', 'elseif')
      kind = 'construct'
    case ('use', 'contains')
      kind = first
    end select
  end function kind_of

  ! How the nesting of constructs changes by the statement.
  integer function depth_of(s) result(change)
    type(statement), intent(in) :: s

    change = 0
    select case (s%kind)
    case ('block if', 'loop', 'begin')
      change = 1
    case ('end')
      change = -1
    case ('construct')
      if (s%token(1)%text == 'select' .or. s%token(2)%text == ':') change = 1
    end select
  end function depth_of

end module scanner
