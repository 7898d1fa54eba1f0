! Two passes over the lines of an assembly program. A line is
!    [LABEL:] [OPERATION [OPERAND]] [; REMARK]
! Operands are numbers (decimal, $hexadecimal, 'c'), labels, or label+number.
! Pseudo-operations: .word N [N ...], .space N, .equ NAME VALUE.
! Macros: .macro NAME ... .end, with %1 to %3 for what stands after the name.
module assembling
  use vm
  implicit none
  private

  integer, parameter, public :: line_len = 64
  integer, parameter :: label_len = 10, max_labels = 50, max_macros = 8, max_body = 10

  type label
    character(len=label_len) :: name
    integer :: value
  end type label

  type macro
    character(len=label_len) :: name
    integer :: lines
    character(len=line_len), dimension(max_body) :: body
  end type macro

  type(label), dimension(max_labels), save :: labels
  type(macro), dimension(max_macros), save :: macros
  integer, save :: label_count, macro_count, here, pass, mistakes, expansions
  integer, dimension(0:memory_size-1), save :: code

  public :: assemble, disassemble

contains

  ! IMAGE points to the words of the program, and to nothing if there were
  ! mistakes, which are printed.
  subroutine assemble(lines, image, errors)
    character(len=*), dimension(:), intent(in) :: lines
    integer, dimension(:), pointer             :: image
    integer, intent(out), optional             :: errors
    integer :: i

    label_count = 0
    mistakes = 0
    passes: do pass = 1, 2
      here = 0
      macro_count = 0
      expansions = 0
      i = 1
      do while (i <= size(lines))
        if (index(adjustl(lines(i)), '.macro') == 1) then
          call define_macro(lines, i)
        else
          call do_line(lines(i), i, 0)
        end if
        i = i + 1
      end do
    end do passes
    if (present(errors)) errors = mistakes
    nullify(image)
    if (mistakes > 0) return
    allocate(image(here))
    image = code(0:here-1)
  end subroutine assemble

  subroutine complain(number, what, about)
    integer, intent(in) :: number
    character(len=*), intent(in) :: what
    character(len=*), intent(in), optional :: about

    if (pass == 1) return
    mistakes = mistakes + 1
    write (*, '(" line", i4, ": ", a)', advance='no') number, what
    if (present(about)) write (*, '(3a)', advance='no') ' "', trim(about), '"'
    write (*, '(a)') ''
  end subroutine complain

  ! Takes the lines up to ".end"; I is left at that line.
  subroutine define_macro(lines, i)
    character(len=*), dimension(:), intent(in) :: lines
    integer, intent(inout) :: i
    character(len=line_len) :: rest, first

    rest = lines(i)
    call next_part(rest, first)
    call next_part(rest, first)
    macro_count = macro_count + 1
    macros(macro_count)%name = first
    macros(macro_count)%lines = 0
    do
      i = i + 1
      if (i > size(lines)) then
        call complain(i, 'macro without end', first)
        exit
      end if
      if (adjustl(lines(i)) == '.end') exit
      macros(macro_count)%lines = macros(macro_count)%lines + 1
      macros(macro_count)%body(macros(macro_count)%lines) = lines(i)
    end do
  end subroutine define_macro

  ! Cuts the first part off REST.
  subroutine next_part(rest, part)
    character(len=*), intent(inout) :: rest
    character(len=*), intent(out)   :: part
    integer :: stop_at

    rest = adjustl(rest)
    if (rest(1:1) == '''') then
      stop_at = index(rest(2:), '''') + 2
    else
      stop_at = scan(rest, ' ;')
    end if
    if (rest(1:1) == ';') then
      part = ' '
      rest = ' '
      return
    end if
    if (stop_at == 0) stop_at = len(rest)
    part = rest(:stop_at-1)
    rest = rest(stop_at:)
  end subroutine next_part

  recursive subroutine do_line(line, number, depth)
    character(len=*), intent(in) :: line
    integer, intent(in) :: number, depth
    character(len=line_len) :: rest, part
    integer :: op, k, value

    rest = line
    call next_part(rest, part)
    k = index(part, ':')
    if (k > 1) then
      call define(part(:k-1), here)
      call next_part(rest, part)
    end if

    select case (part)
    case (' ')
      return
    case ('.equ')
      call next_part(rest, part)
      call define(part, value_of(rest))
    case ('.word')
      do
        call next_part(rest, part)
        if (part == ' ') exit
        call emit(value_of(part))
      end do
    case ('.space')
      do k = 1, value_of(rest)
        call emit(0)
      end do
    case default
      operations: do op = 0, names - 1
        if (op_name(op) == part) exit operations
      end do operations
      if (op < names) then
        value = 0
        if (takes_operand(op)) then
          call next_part(rest, part)
          if (part == ' ') call complain(number, 'operand missing')
          value = value_of(part)
        end if
        call next_part(rest, part)
        if (part /= ' ') call complain(number, 'too much', part)
        call emit(word(op, value))
      else
        call expand
      end if
    end select

  contains

    subroutine emit(w)
      integer, intent(in) :: w
      if (here == memory_size) then
        call complain(number, 'memory is full')
      else
        code(here) = w
        here = here + 1
      end if
    end subroutine emit

    subroutine define(name, what)
      character(len=*), intent(in) :: name
      integer, intent(in) :: what
      integer :: i

      do i = 1, label_count
        if (labels(i)%name == name) exit
      end do
      if (pass == 2) then
        if (labels(i)%value /= what) call complain(number, 'label defined twice', name)
        return
      end if
      if (i <= label_count) return
      label_count = i
      labels(i) = label(name, what)
    end subroutine define

    recursive integer function value_of(text) result(v)
      character(len=*), intent(in) :: text
      character(len=line_len) :: t
      integer :: plus, ios, i

      v = 0
      t = adjustl(text)
      plus = scan(t(2:), '+-') + 1
      ios = 0
      select case (t(1:1))
      case ('0':'9', '-')
        read (t, '(bn, i12)', iostat=ios) v
      case ('$')
        read (t(2:), '(bn, z8)', iostat=ios) v
      case ('''')
        v = iachar(t(2:2))
      case default
        if (plus > 1) then
          v = value_of(t(:plus-1)) + value_of(t(plus+merge(1, 0, t(plus:plus) == '+'):))
          return
        end if
        do i = 1, label_count
          if (labels(i)%name == t) then
            v = labels(i)%value
            return
          end if
        end do
        call complain(number, 'label not defined', t)
      end select
      if (ios /= 0) call complain(number, 'bad number', t)
    end function value_of

    ! PART may be the name of a macro. "%0" makes labels of its own.
    subroutine expand
      character(len=line_len), dimension(0:3) :: arguments
      character(len=line_len) :: made
      integer :: m, n, i, at, d

      do m = 1, macro_count
        if (macros(m)%name == part) exit
      end do
      if (m > macro_count .or. depth > 10) then
        call complain(number, 'not an operation', part)
        return
      end if
      expansions = expansions + 1
      write (arguments(0), '(i3.3)') expansions
      do n = 1, 3
        call next_part(rest, arguments(n))
      end do
      do i = 1, macros(m)%lines
        made = macros(m)%body(i)
        do
          at = index(made, '%')
          if (at == 0 .or. at == len(made)) exit
          d = index('0123', made(at+1:at+1)) - 1
          if (d < 0) exit
          made = made(:at-1) // trim(arguments(d)) // made(at+2:)
        end do
        call do_line(made, number, depth + 1)
      end do
    end subroutine expand

  end subroutine do_line

  subroutine disassemble(image, first, last)
    integer, dimension(0:), intent(in) :: image
    integer, optional :: first, last
    integer :: from, to, i, op, operand

    from = 0
    to = ubound(image, dim=1)
    if (present(first)) from = first
    if (present(last)) to = last
    do i = from, to
      call unpack_word(image(i), op, operand)
      if (op < 0 .or. op >= names) then
        write (*, 90) i, image(i), '.word'
      else if (takes_operand(op)) then
        write (*, 90) i, image(i), op_name(op), operand
      else
        write (*, 90) i, image(i), op_name(op)
      end if
    end do
90  format (1x, i3.3, 2x, z8.8, 2x, a, :, t25, i8)
  end subroutine disassemble

end module assembling
