! A stack machine with words of 32 bits: eight bits of operation and twenty-
! four of operand.
module vm
  implicit none
  public

  integer, parameter :: memory_size = 512, stack_size = 64, names = 28
  integer, parameter :: op_halt = 0, op_push = 1, op_load = 2, op_store = 3, op_add = 4,  &
    op_sub = 5, op_mul = 6, op_div = 7, op_mod = 8, op_neg = 9, op_and = 10, op_or = 11,  &
    op_xor = 12, op_shift = 13, op_eq = 14, op_lt = 15, op_gt = 16, op_jump = 17,         &
    op_jumpz = 18, op_call = 19, op_ret = 20, op_print = 21, op_char = 22, op_dup = 23,   &
    op_swap = 24, op_drop = 25, op_index = 26, op_put = 27

  character(len=6), dimension(0:names-1), parameter :: op_name = (/                       &
    'halt  ', 'push  ', 'load  ', 'store ', 'add   ', 'sub   ', 'mul   ', 'div   ',       &
    'mod   ', 'neg   ', 'and   ', 'or    ', 'xor   ', 'shift ', 'eq    ', 'lt    ',       &
    'gt    ', 'jump  ', 'jumpz ', 'call  ', 'ret   ', 'print ', 'char  ', 'dup   ',       &
    'swap  ', 'drop  ', 'index ', 'put   ' /)

  integer, private :: operand_free       ! counts in the next constant
  ! operations that need an operand
  logical, dimension(0:names-1), parameter, private :: wants_operand = (/                 &
    .false., .true., .true., .true., (.false., operand_free = 1, 13), .true., .true.,     &
    .true., (.false., operand_free = 1, 6), .true., .true. /)

  type machine
    integer :: pc, sp, rp, steps
    logical :: running
    character(len=40) :: error
    integer, dimension(0:memory_size-1) :: memory
    integer, dimension(stack_size) :: stack, returns
  end type machine

  interface word
    module procedure word_of_operation
  end interface

contains

  logical function takes_operand(op)
    integer, intent(in) :: op
    takes_operand = wants_operand(op)
  end function takes_operand

  ! Packs an operation and an operand between -2**23 and 2**23 - 1.
  integer function word_of_operation(op, operand) result(w)
    integer, intent(in) :: op
    integer, intent(in), optional :: operand

    w = 0
    call mvbits(op, 0, 8, w, 24)
    if (present(operand)) call mvbits(iand(operand, 16777215), 0, 24, w, 0)
  end function word_of_operation

  subroutine unpack_word(w, op, operand)
    integer, intent(in) :: w
    integer, intent(out) :: op, operand

    op = ibits(w, 24, 8)
    operand = ibits(w, pos=0, len=24)
    if (btest(operand, 23)) operand = ior(operand, not(16777215))
  end subroutine unpack_word

  subroutine reset(m, image)
    type(machine), intent(out) :: m
    integer, dimension(:), intent(in) :: image

    m%memory = word(op_halt)
    m%memory(:size(image)-1) = image
    m%pc = 0
    m%sp = 0
    m%rp = 0
    m%steps = 0
    m%running = .true.
    m%error = ' '
    m%stack = 0
    m%returns = 0
  end subroutine reset

  ! Runs until the machine halts, fails or has done MOST steps.
  subroutine run(m, most, trace)
    type(machine), intent(inout) :: m
    integer, intent(in) :: most
    logical, intent(in), optional :: trace
    logical :: tell
    integer :: op, operand, a, b

    tell = .false.
    if (present(trace)) tell = trace
    fetch: do while (m%running)
      if (m%steps >= most) then
        call fail('too many steps')
        exit fetch
      end if
      if (m%pc < 0 .or. m%pc >= memory_size) then
        call fail('left the memory')
        cycle fetch
      end if
      call unpack_word(m%memory(m%pc), op, operand)
      if (tell) write (*, '(1x, i4.3, 2x, a, i8, 2x, 8i6)') m%pc, op_name(min(op, names-1)), &
        operand, m%stack(max(1, m%sp-7):m%sp)
      m%pc = m%pc + 1
      m%steps = m%steps + 1

      execute: select case (op)
      case (op_halt)
        m%running = .false.
      case (op_push)
        call push(operand)
      case (op_load)
        if (good_address(operand)) call push(m%memory(operand))
      case (op_store)
        call pop(a)
        if (good_address(operand)) m%memory(operand) = a
      case (op_index)
        call pop(a)
        if (good_address(operand + a)) call push(m%memory(operand + a))
      case (op_put)
        call pop(a)
        call pop(b)
        if (good_address(operand + a)) m%memory(operand + a) = b
      case (op_add:op_mod, op_and:op_gt)
        call pop(b)
        call pop(a)
        call push(binary(a, b))
      case (op_neg)
        call pop(a)
        call push(-a)
      case (op_jump)
        m%pc = operand
      case (op_jumpz)
        call pop(a)
        if (a == 0) m%pc = operand
      case (op_call)
        if (m%rp == stack_size) then
          call fail('too many calls')
        else
          m%rp = m%rp + 1
          m%returns(m%rp) = m%pc
          m%pc = operand
        end if
      case (op_ret)
        if (m%rp == 0) then
          call fail('return without call')
        else
          m%pc = m%returns(m%rp)
          m%rp = m%rp - 1
        end if
      case (op_print)
        call pop(a)
        write (*, '(1x, i7)', advance='no') a
      case (op_char)
        call pop(a)
        if (a == 10) then
          write (*, '()')
        else
          write (*, '(a)', advance='no') achar(iand(a, 127))
        end if
      case (op_dup)
        call pop(a)
        call push(a); call push(a)
      case (op_swap)
        call pop(a); call pop(b)
        call push(a); call push(b)
      case (op_drop)
        call pop(a)
      case default execute
        call fail('unknown operation')
      end select execute
    end do fetch

  contains

    subroutine fail(why)
      character(len=*), intent(in) :: why
      m%running = .false.
      if (m%error == ' ') m%error = why
    end subroutine fail

    subroutine push(x)
      integer, intent(in) :: x

      if (m%sp == stack_size) then
        call fail('stack is full')
        return
      end if
      m%sp = m%sp + 1
      m%stack(m%sp) = x
    end subroutine push

    subroutine pop(x)
      integer, intent(out) :: x

      x = 0
      if (m%sp == 0) then
        call fail('stack is empty')
        return
      end if
      x = m%stack(m%sp)
      m%sp = m%sp - 1
    end subroutine pop

    logical function good_address(n)
      integer, intent(in) :: n
      good_address = n >= 0 .and. n < memory_size
      if (.not. good_address) call fail('bad address')
    end function good_address

    integer function binary(x, y) result(z)
      integer, intent(in) :: x, y

      z = 0
      select case (op)
      case (op_add); z = x + y
      case (op_sub); z = x - y
      case (op_mul); z = x * y
      case (op_div, op_mod)
        if (y == 0) then
          call fail('division by zero')
        else if (op == op_div) then
          z = x / y
        else
          z = mod(x, y)
        end if
      case (op_and);   z = iand(x, y)
      case (op_or);    z = ior(x, y)
      case (op_xor);   z = ieor(x, y)
      case (op_shift); z = ishft(x, y)
      case (op_eq); if (x == y) z = 1
      case (op_lt); if (x < y) z = 1
      case (op_gt); if (x > y) z = 1
      end select
    end function binary

  end subroutine run

end module vm
