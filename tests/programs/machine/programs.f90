! Assembles some programs and runs them.
program programs
  use vm
  use assembling
  implicit none

  character(len=line_len), dimension(60) :: source
  integer :: n

  call begin
  call line('; primes below 60')
  call line('        .equ limit 60')
  call line('        push 2')
  call line('        store n')
  call line('next:   load n')
  call line('        push limit')
  call line('        lt')
  call line('        jumpz done')
  call line('        load n')
  call line('        index sieve')
  call line('        jumpz prime')
  call line('step:   load n')
  call line('        push 1')
  call line('        add')
  call line('        store n')
  call line('        jump next')
  call line('prime:  load n')
  call line('        print')
  call line('        load n')
  call line('        store k')
  call line('strike: load k      ; cross out its multiples')
  call line('        push limit')
  call line('        lt')
  call line('        jumpz step')
  call line('        push 1')
  call line('        load k')
  call line('        put sieve')
  call line('        load k')
  call line('        load n')
  call line('        add')
  call line('        store k')
  call line('        jump strike')
  call line('done:   push 10')
  call line('        char')
  call line('        halt')
  call line('n:      .word 0')
  call line('k:      .word 0')
  call line('sieve:  .space 60')
  call assemble_and_run(show=.true.)

  call begin
  call line('.macro inc           ; inc NAME')
  call line('  load %1')
  call line('  push 1')
  call line('  add')
  call line('  store %1')
  call line('.end')
  call line('.macro times         ; times COUNT ROUTINE')
  call line('  push %1')
  call line('m%0: dup')
  call line('  jumpz e%0')
  call line('  call %2')
  call line('  push 1')
  call line('  sub')
  call line('  jump m%0')
  call line('e%0: drop')
  call line('.end')
  call line('  times 3 greet')
  call line('  times 5 star')
  call line('  load count')
  call line('  print')
  call line('  push 10')
  call line('  char')
  call line('  halt')
  call line('greet: push ''h''')
  call line('  char')
  call line('  push $69')
  call line('  char')
  call line('  push 32')
  call line('  char')
  call line('  inc count')
  call line('  ret')
  call line('star: push ''*''')
  call line('  char')
  call line('  inc count')
  call line('  ret')
  call line('count: .word 0')
  call assemble_and_run

  call begin
  call line('  push')
  call line('  jump nowhere')
  call line('  frobnicate 3')
  call line('  push 12x')
  call line('a: add 3')
  call assemble_and_run

  call begin
  call line('  push 6')
  call line('loop: dup')
  call line('  print')
  call line('  push 1')
  call line('  sub')
  call line('  dup')
  call line('  push 3')
  call line('  swap')
  call line('  div')
  call line('  drop')
  call line('  jump loop')
  call assemble_and_run

contains

  subroutine begin
    n = 0
    source = ''
  end subroutine begin

  subroutine line(text)
    character(len=*), intent(in) :: text
    n = n + 1
    source(n) = text
  end subroutine line

  subroutine assemble_and_run(show)
    logical, intent(in), optional :: show
    integer, dimension(:), pointer :: image
    type(machine) :: m
    integer :: errors

    call assemble(source(:n), image, errors)
    if (.not. associated(image)) then
      print '(1x, i3, a)', errors, ' mistakes'
      return
    end if
    if (present(show)) then
      if (show) call disassemble(image, last=9)
    end if
    call reset(m, image)
    call run(m, most=5000)
    if (m%error /= ' ') print '(/, 1x, 2a, i4)', trim(m%error), ' at', m%pc - 1
    print '(1x, i6, a, i4, a)', m%steps, ' steps,', size(image), ' words'
    deallocate (image)
  end subroutine assemble_and_run

end program programs
