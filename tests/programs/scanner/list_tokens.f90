! Shows the tokens and statements of a piece of source.
program list_tokens
  use scanner
  implicit none
  integer, parameter :: lun = 17
  type(statement) :: s
  logical :: done
  integer, dimension(kinds) :: count_of
  integer :: i, depth, statements

  open (unit=lun, status='scratch', form='formatted', action='readwrite')
  write (lun, '(a)') &
    '! a comment', &
    'program Test', &
    '  implicit none', &
    '  integer :: i, do10i  ! twins', &
    '  real(kind=8), dimension(3) :: x = (/ 1.5, 2.e-3_8, .25d0 /)', &
    '  if = 3; do10i = 1.eq.2', &
    '  outer: do i = 1, 10', &
    '    if (x(i) >= 0.5 .and. .not. i .myop. b''101'') call sub(''it''''s'', "a!b")', &
    '    print *, "long & ', &
    '          &string", i**2 // &', &
    '', &
    '      & ''end''', &
    '    if (i == 5) then', &
    '       p => q(:)%next', &
    '    end if', &
    '20  continue', &
    '  end do outer', &
    '  x = y # 3', &
    'end program Test'
  call open_source(lun)

  count_of = 0
  depth = 0
  statements = 0
  read_all: do
    call next_statement(s, done)
    if (done) exit read_all
    if (s%tokens == 0) cycle read_all
    statements = statements + 1
    if (depth_of(s) < 0) depth = depth - 1
    write (*, '(1x, i3, 1x, a12, a)', advance='no') s%line, s%kind, repeat('  ', depth)
    if (s%label /= 0) write (*, '(i5, 1x)', advance='no') s%label
    do i = 1, s%tokens
      write (*, '(a, 1x)', advance='no') trim(s%token(i)%text)
      count_of(s%token(i)%kind) = count_of(s%token(i)%kind) + 1
    end do
    write (*, '(1x)')
    if (any(s%token(:s%tokens)%kind == k_bad)) then
      do i = 1, s%tokens
        if (s%token(i)%kind == k_bad) exit
      end do
      write (*, '(1x, 2a, i4)') '    *** bad token "', trim(s%token(i)%text) // '" in column', &
        s%token(i)%column
    end if
    if (depth_of(s) > 0) depth = depth + 1
  end do read_all
  close (lun)

  print '(/, 1x, i3, a)', statements, ' statements'
  print '(1x, a8, i6)', (kind_name(i), count_of(i), i = 1, kinds)
  if (depth /= 0) print *, 'unbalanced by', depth
end program list_tokens
