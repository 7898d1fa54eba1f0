! Data in a small notation:
!    value  = number | string | true | false | none | list | record
!    list   = "[" [ value { "," value } ] "]"
!    record = "{" [ name ":" value { "," name ":" value } ] "}"
! Names are words; strings stand between double quotes, with \", \\, \n in
! them. "#" begins a remark up to the end of its line.
module documents
  use bitsets
  implicit none
  private

  integer, parameter, public :: string_length = 40, name_length = 16
  integer, parameter, public :: v_none = 0, v_truth = 1, v_number = 2, v_string = 3, &
    v_list = 4, v_record = 5

  type, public :: item
    private
    integer :: kind
    logical :: truth
    double precision :: number
    character(len=string_length) :: string
    character(len=name_length) :: name        ! in a record
    type(item), pointer :: first, next        ! members; the next of the same list
  end type item

  ! Where the parser is
  type reader
    integer :: unit
    integer :: line, at, length
    character(len=132) :: text
    logical :: ended, wrong
    character(len=60) :: message
  end type reader

  interface value_of
    module procedure get_number, get_integer, get_string, get_truth
  end interface

  public :: read_document, write_document, discard, value_of, kind_of, at_path, count_of, &
            new_item, append

  type(bit_set), save :: blanks, digits, word_characters
  logical, save :: ready = .false.

contains

  subroutine prepare
    if (ready) return
    blanks = ' ' // achar(9)
    digits = range_of(iachar('0'), iachar('9'))
    word_characters = digits + range_of(iachar('a'), iachar('z')) + &
                      range_of(iachar('A'), iachar('Z')) + iachar('_')
    ready = .true.
  end subroutine prepare

  function new_item(kind, name) result(p)
    integer, intent(in) :: kind
    character(len=*), intent(in), optional :: name
    type(item), pointer :: p

    allocate (p)
    p%kind = kind
    p%truth = .false.
    p%number = 0
    p%string = ''
    p%name = ''
    if (present(name)) p%name = name
    nullify (p%first, p%next)
  end function new_item

  subroutine append(list, new)
    type(item), pointer :: list, new, last

    if (.not. associated(list%first)) then
      list%first => new
      return
    end if
    last => list%first
    do while (associated(last%next))
      last => last%next
    end do
    last%next => new
  end subroutine append

  recursive subroutine discard(p)
    type(item), pointer :: p, member, next

    if (.not. associated(p)) return
    member => p%first
    do while (associated(member))
      next => member%next
      call discard(member)
      member => next
    end do
    deallocate (p)
  end subroutine discard

  ! ---- reading

  subroutine read_document(unit, root, ok, message)
    integer, intent(in) :: unit
    type(item), pointer :: root
    logical, intent(out) :: ok
    character(len=*), intent(out), optional :: message
    type(reader) :: r

    call prepare
    r = reader(unit, 0, 1, 0, ' ', .false., .false., ' ')
    call read_value(r, root)
    if (.not. r%wrong) then
      call skip(r)
      if (.not. r%ended) call complain(r, 'text behind the value')
    end if
    ok = .not. r%wrong
    if (present(message)) message = r%message
    if (r%wrong) call discard(root)
  end subroutine read_document

  subroutine complain(r, what)
    type(reader), intent(inout) :: r
    character(len=*), intent(in) :: what

    if (r%wrong) return
    r%wrong = .true.
    write (r%message, '("line", i3, ", column", i3, ": ", a)') r%line, r%at, what
  end subroutine complain

  ! Moves to the next character that matters, perhaps lines below.
  subroutine skip(r)
    type(reader), intent(inout) :: r
    integer :: ios

    do
      do while (r%at <= r%length)
        if (r%text(r%at:r%at) == '#') then
          r%at = r%length + 1
        else if (r%text(r%at:r%at) .in. blanks) then
          r%at = r%at + 1
        else
          return
        end if
      end do
      read (r%unit, '(a)', iostat=ios) r%text
      if (ios /= 0) then
        r%ended = .true.
        return
      end if
      r%line = r%line + 1
      r%at = 1
      r%length = len_trim(r%text)
    end do
  end subroutine skip

  character function peek(r)
    type(reader), intent(inout) :: r

    call skip(r)
    peek = ' '
    if (.not. r%ended) peek = r%text(r%at:r%at)
  end function peek

  logical function accept(r, sign)
    type(reader), intent(inout) :: r
    character, intent(in) :: sign

    accept = peek(r) == sign
    if (accept) r%at = r%at + 1
  end function accept

  recursive subroutine read_value(r, p)
    type(reader), intent(inout) :: r
    type(item), pointer :: p
    character(len=name_length) :: word

    nullify (p)
    select case (peek(r))
    case ('{')
      call read_members(r, p, v_record, '}')
    case ('[')
      call read_members(r, p, v_list, ']')
    case ('"')
      p => new_item(v_string)
      call read_string(r, p%string)
    case ('-', '0':'9')
      p => new_item(v_number)
      call read_number(r, p%number)
    case ('a':'z', 'A':'Z')
      call read_word(r, word)
      p => new_item(v_truth)
      select case (word)
      case ('true');  p%truth = .true.
      case ('false'); p%truth = .false.
      case ('none');  p%kind = v_none
      case default
        call complain(r, 'word not known: ' // word)
      end select
    case default
      p => new_item(v_none)
      call complain(r, 'value expected')
    end select
  end subroutine read_value

  recursive subroutine read_members(r, p, kind, closing)
    type(reader), intent(inout) :: r
    type(item), pointer :: p, member
    integer, intent(in) :: kind
    character(len=1), intent(in) :: closing
    character(len=name_length) :: name

    p => new_item(kind)
    r%at = r%at + 1
    if (accept(r, closing)) return
    members: do
      name = ''
      if (kind == v_record) then
        if (.not. (peek(r) .in. word_characters - digits)) then
          call complain(r, 'name expected')
          exit members
        end if
        call read_word(r, name)
        member => member_of(p, name)
        if (associated(member)) call complain(r, 'name given twice')
        if (.not. accept(r, ':')) call complain(r, '":" expected')
      end if
      call read_value(r, member)
      member%name = name
      call append(p, member)
      if (r%wrong) exit members
      if (accept(r, closing)) exit members
      if (.not. accept(r, ',')) then
        call complain(r, '"," or "' // closing // '" expected')
        exit members
      end if
    end do members
  end subroutine read_members

  subroutine read_word(r, word)
    type(reader), intent(inout) :: r
    character(len=*), intent(out) :: word
    integer :: start

    start = r%at
    do while (r%at <= r%length)
      if (.not. (r%text(r%at:r%at) .in. word_characters)) exit
      r%at = r%at + 1
    end do
    word = r%text(start:r%at-1)
  end subroutine read_word

  subroutine read_number(r, x)
    type(reader), intent(inout) :: r
    double precision, intent(out) :: x
    integer :: start, ios

    start = r%at
    r%at = start + verify(r%text(start:), '0123456789+-.eE') - 1
    read (r%text(start:r%at-1), '(f40.0)', iostat=ios) x
    if (ios == 0) return
    x = 0
    call complain(r, 'bad number')
  end subroutine read_number

  subroutine read_string(r, string)
    type(reader), intent(inout) :: r
    character(len=*), intent(out) :: string
    character :: c
    integer :: n

    string = ''
    n = 0
    do
      r%at = r%at + 1
      if (r%at > r%length) then
        call complain(r, 'string without end')
        return
      end if
      c = r%text(r%at:r%at)
      if (c == '"') exit
      if (c == '\') then
        r%at = r%at + 1
        c = r%text(r%at:r%at)
        if (c == 'n') c = achar(10)
      end if
      n = n + 1
      if (n <= len(string)) string(n:n) = c
    end do
    r%at = r%at + 1
  end subroutine read_string

  ! ---- asking

  function member_of(p, name) result(q)
    type(item), pointer :: p, q
    character(len=*), intent(in) :: name

    q => p%first
    do while (associated(q))
      if (q%name == name) return
      q => q%next
    end do
  end function member_of

  function element_of(p, n) result(q)
    type(item), pointer :: p, q
    integer, intent(in) :: n
    integer :: i

    q => p%first
    do i = 2, n
      if (.not. associated(q)) return
      q => q%next
    end do
  end function element_of

  ! PATH is like "points/2/x"; the result is disassociated if it leads nowhere.
  recursive function at_path(p, path) result(q)
    type(item), pointer :: p, q
    character(len=*), intent(in) :: path
    integer :: slash, n, ios

    if (.not. associated(p) .or. path == ' ') then
      q => p
      return
    end if
    slash = index(path, '/')
    if (slash == 0) slash = len(path) + 1
    if (p%kind == v_list) then
      read (path(:slash-1), '(bn, i8)', iostat=ios) n
      nullify (q)
      if (ios == 0) q => element_of(p, n)
    else
      q => member_of(p, path(:slash-1))
    end if
    if (slash < len(path)) q => at_path(q, path(slash+1:))
  end function at_path

  integer function kind_of(p)
    type(item), pointer :: p
    kind_of = v_none
    if (associated(p)) kind_of = p%kind
  end function kind_of

  integer function count_of(p)
    type(item), pointer :: p, q

    count_of = 0
    if (.not. associated(p)) return
    q => p%first
    do while (associated(q))
      count_of = count_of + 1
      q => q%next
    end do
  end function count_of

  ! The last argument is what to give if the path leads to nothing fitting.

  function get_number(p, path, else) result(x)
    type(item), pointer :: p, q
    character(len=*), intent(in) :: path
    double precision, intent(in) :: else
    double precision :: x
    x = else
    q => at_path(p, path)
    if (kind_of(q) == v_number) x = q%number
  end function get_number

  function get_integer(p, path, else) result(i)
    type(item), pointer :: p
    character(len=*), intent(in) :: path
    integer, intent(in) :: else
    integer :: i
    i = nint(get_number(p, path, dble(else)))
  end function get_integer

  function get_string(p, path, else) result(s)
    type(item), pointer :: p, q
    character(len=*), intent(in) :: path, else
    character(len=string_length) :: s
    s = else
    q => at_path(p, path)
    if (kind_of(q) == v_string) s = q%string
  end function get_string

  function get_truth(p, path, else) result(l)
    type(item), pointer :: p, q
    character(len=*), intent(in) :: path
    logical, intent(in) :: else
    logical :: l
    l = else
    q => at_path(p, path)
    if (kind_of(q) == v_truth) l = q%truth
  end function get_truth

  ! ---- writing

  recursive subroutine write_document(unit, p, level)
    integer, intent(in) :: unit
    type(item), pointer :: p
    integer, intent(in), optional :: level
    type(item), pointer :: member
    integer :: depth, i
    character(len=24) :: digits_of_number
    character(len=2) :: brackets

    depth = 0
    if (present(level)) depth = level
    if (p%name /= '') write (unit, '(2a)', advance='no') trim(p%name), ': '
    select case (p%kind)
    case (v_none)
      write (unit, '(a)', advance='no') 'none'
    case (v_truth)
      write (unit, '(a)', advance='no') trim(merge('true ', 'false', p%truth))
    case (v_number)
      if (p%number == aint(p%number) .and. abs(p%number) < 1.0d9) then
        write (digits_of_number, '(i12)') int(p%number)
      else
        write (digits_of_number, '(es24.15e3)') p%number
      end if
      write (unit, '(a)', advance='no') trim(adjustl(digits_of_number))
    case (v_string)
      write (unit, '(a)', advance='no') '"'
      do i = 1, len_trim(p%string)
        select case (p%string(i:i))
        case ('"', '\')
          write (unit, '(2a)', advance='no') '\', p%string(i:i)
        case (achar(10))
          write (unit, '(a)', advance='no') '\n'
        case default
          write (unit, '(a)', advance='no') p%string(i:i)
        end select
      end do
      write (unit, '(a)', advance='no') '"'
    case (v_list, v_record)
      brackets = '[]'
      if (p%kind == v_record) brackets = '{}'
      write (unit, '(a)', advance='no') brackets(1:1)
      member => p%first
      do while (associated(member))
        write (unit, '(/, a)', advance='no') repeat('  ', depth + 1)
        call write_document(unit, member, depth + 1)
        member => member%next
        if (associated(member)) write (unit, '(a)', advance='no') ','
      end do
      if (associated(p%first)) write (unit, '(/, a)', advance='no') repeat('  ', depth)
      write (unit, '(a)', advance='no') brackets(2:2)
    end select
    if (.not. present(level)) write (unit, '(a)') ''
  end subroutine write_document

end module documents
