! Small tables in memory: rows of strings and numbers under named columns,
! selected, projected, ordered, grouped and joined.
module relations
  use calendar, only: date, assignment(=), written
  implicit none
  private

  integer, parameter, public :: name_len = 12, cell_len = 20
  integer, parameter, public :: is_string = 1, is_number = 2, is_date = 3

  type, public :: column
    character(len=name_len) :: name
    integer :: kind
  end type column

  type, public :: cell
    character(len=cell_len) :: string
    real                    :: number
    type(date)              :: day
  end type cell

  type, public :: table
    character(len=name_len)         :: name
    integer                         :: rows
    type(column), pointer           :: columns(:)
    type(cell), pointer             :: cells(:, :)        ! column, row
  end type table

  interface select_rows
    module procedure select_by_mask, select_by_string, select_by_range
  end interface

  interface total
    module procedure total_column, total_by_group
  end interface

  public :: create_table, add_row, column_of, select_rows, project, order_by, join, &
            print_table, read_csv, write_csv, total, drop, numbers_of

contains

  ! COLUMNS is like "name:s, born:d, height:n".
  subroutine create_table(t, name, columns)
    type(table), intent(out)     :: t
    character(len=*), intent(in) :: name, columns
    integer :: i, n, from, to, colon

    t%name = name
    t%rows = 0
    n = 1
    do i = 1, len(columns)
      if (columns(i:i) == ',') n = n + 1
    end do
    allocate (t%columns(n), t%cells(n, 8))
    from = 1
    do i = 1, n
      to = index(columns(from:) // ',', ',') + from - 2
      colon = index(columns(from:to), ':') + from - 1
      if (colon < from) colon = to + 1
      t%columns(i)%name = adjustl(columns(from:colon-1))
      t%columns(i)%kind = is_string
      if (colon < to) t%columns(i)%kind = index('snd', columns(colon+1:colon+1))
      from = to + 2
    end do
  end subroutine create_table

  subroutine drop(t)
    type(table), intent(inout) :: t
    deallocate (t%columns, t%cells)
    t%rows = 0
  end subroutine drop

  ! 0 if there is no such column.
  integer function column_of(t, name) result(c)
    type(table), intent(in) :: t
    character(len=*), intent(in) :: name

    do c = 1, size(t%columns)
      if (t%columns(c)%name == name) return
    end do
    c = 0
  end function column_of

  subroutine make_room(t)
    type(table), intent(inout) :: t
    type(cell), dimension(:, :), pointer :: larger

    if (t%rows < size(t%cells, dim=2)) return
    allocate (larger(size(t%columns), 2 * t%rows))
    larger(:, :t%rows) = t%cells
    deallocate (t%cells)
    t%cells => larger
  end subroutine make_room

  function cell_from(text, kind) result(c)
    character(len=*), intent(in) :: text
    integer, intent(in) :: kind
    type(cell) :: c
    integer :: ios

    c = cell(text, 0.0, date(0, 0, 0))
    select case (kind)
    case (is_number)
      read (text, *, iostat=ios) c%number
      if (ios /= 0) c%number = 0
    case (is_date)
      c%day = text
    end select
  end function cell_from

  ! FIELDS are separated by commas; quotes around them keep commas inside.
  subroutine add_row(t, fields, problem)
    type(table), intent(inout)     :: t
    character(len=*), intent(in)   :: fields
    logical, intent(out), optional :: problem
    character(len=cell_len) :: field
    integer :: at, c

    call make_room(t)
    at = 1
    do c = 1, size(t%columns)
      call next_field(fields, at, field)
      t%cells(c, t%rows + 1) = cell_from(field, t%columns(c)%kind)
    end do
    t%rows = t%rows + 1
    if (present(problem)) problem = at <= len_trim(fields)
  end subroutine add_row

  ! Takes a field from LINE at position AT, which moves behind the comma.
  subroutine next_field(line, at, field)
    character(len=*), intent(in)  :: line
    integer, intent(inout)        :: at
    character(len=*), intent(out) :: field
    integer :: n
    logical :: quoted

    field = ' '
    n = 0
    quoted = .false.
    do
      if (at > len(line)) exit
      if (line(at:at) == '"') then
        if (quoted .and. line(at:min(at+1, len(line))) == '""') then
          at = at + 1
          call take('"')
        else
          quoted = .not. quoted
        end if
      else if (line(at:at) == ',' .and. .not. quoted) then
        exit
      else if (n > 0 .or. quoted .or. line(at:at) /= ' ') then
        call take(line(at:at))
      end if
      at = at + 1
    end do
    at = at + 1

  contains

    subroutine take(c)
      character, intent(in) :: c
      n = n + 1
      if (n <= len(field)) field(n:n) = c
    end subroutine take

  end subroutine next_field

  ! ---- queries: all give new tables

  function select_by_mask(t, mask) result(r)
    type(table), intent(in) :: t
    logical, dimension(:), intent(in) :: mask
    type(table) :: r
    integer :: i

    r%name = t%name
    r%rows = count(mask(:t%rows))
    allocate (r%columns(size(t%columns)), r%cells(size(t%columns), max(r%rows, 1)))
    r%columns = t%columns
    do i = 1, size(t%columns)
      r%cells(i, :r%rows) = cells_where(t%cells(i, :t%rows))
    end do

  contains

    function cells_where(row) result(kept)
      type(cell), dimension(:), intent(in) :: row
      type(cell), dimension(r%rows) :: kept
      integer :: k, n
      n = 0
      do k = 1, size(row)
        if (.not. mask(k)) cycle
        n = n + 1
        kept(n) = row(k)
      end do
    end function cells_where

  end function select_by_mask

  function select_by_string(t, name, value) result(r)
    type(table), intent(in) :: t
    character(len=*), intent(in) :: name, value
    type(table) :: r

    r = select_by_mask(t, t%cells(column_of(t, name), :t%rows)%string == value)
  end function select_by_string

  function select_by_range(t, name, low, high) result(r)
    type(table), intent(in) :: t
    character(len=*), intent(in) :: name
    real, intent(in) :: low
    real, intent(in), optional :: high
    type(table) :: r
    real, dimension(t%rows) :: x

    x = numbers_of(t, name)
    if (present(high)) then
      r = select_rows(t, x >= low .and. x <= high)
    else
      r = select_rows(t, x >= low)
    end if
  end function select_by_range

  ! The numbers of a column; the days of a date count as years.
  function numbers_of(t, name) result(x)
    type(table), intent(in) :: t
    character(len=*), intent(in) :: name
    real, dimension(t%rows) :: x
    integer :: c

    x = 0
    c = column_of(t, name)
    if (c == 0) return
    select case (t%columns(c)%kind)
    case (is_number)
      x = t%cells(c, :t%rows)%number
    case (is_date)
      x = t%cells(c, :t%rows)%day%year + (t%cells(c, :t%rows)%day%month - 1) / 12.0
    end select
  end function numbers_of

  ! Only the columns with these numbers, in this order: a vector subscript.
  function project(t, columns) result(r)
    type(table), intent(in) :: t
    integer, dimension(:), intent(in) :: columns
    type(table) :: r

    r%name = t%name
    r%rows = t%rows
    allocate (r%columns(size(columns)), r%cells(size(columns), max(1, t%rows)))
    r%columns = t%columns(columns)
    r%cells(:, :t%rows) = t%cells(columns, :t%rows)
  end function project

  subroutine order_by(t, name, descending)
    type(table), intent(inout) :: t
    character(len=*), intent(in) :: name
    logical, intent(in), optional :: descending
    integer, dimension(t%rows) :: place
    integer :: c, i, j, moving
    logical :: down

    down = .false.
    if (present(descending)) down = descending
    c = column_of(t, name)
    if (c == 0) return
    place = (/ (i, i = 1, t%rows) /)
    do i = 2, t%rows
      moving = place(i)
      j = i - 1
      do while (j >= 1)
        if (down) then
          if (.not. comes_before(t%cells(c, place(j)), t%cells(c, moving))) exit
        else
          if (.not. comes_before(t%cells(c, moving), t%cells(c, place(j)))) exit
        end if
        place(j+1) = place(j)
        j = j - 1
      end do
      place(j+1) = moving
    end do
    t%cells(:, :t%rows) = t%cells(:, place)

  contains

    logical function comes_before(a, b)
      type(cell), intent(in) :: a, b
      integer :: da, db

      select case (t%columns(c)%kind)
      case (is_number)
        comes_before = a%number < b%number
      case (is_date)
        da = a%day
        db = b%day
        comes_before = da < db
      case default
        comes_before = llt(a%string, b%string)
      end select
    end function comes_before

  end subroutine order_by

  ! Every row of A with every row of B that has the same string in ON.
  function join(a, b, on) result(r)
    type(table), intent(in) :: a, b
    character(len=*), intent(in) :: on
    type(table) :: r
    integer, dimension(size(b%columns) - 1) :: others
    integer :: i, j, ca, cb, na

    ca = column_of(a, on)
    cb = column_of(b, on)
    na = size(a%columns)
    others = pack((/ (i, i = 1, size(b%columns)) /), &
                  (/ (i /= cb, i = 1, size(b%columns)) /))
    r%name = trim(a%name) // '+' // b%name
    r%rows = 0
    allocate (r%columns(na + size(others)), r%cells(na + size(others), 4))
    r%columns(:na) = a%columns
    r%columns(na+1:) = b%columns(others)
    do i = 1, a%rows
      do j = 1, b%rows
        if (a%cells(ca, i)%string /= b%cells(cb, j)%string) cycle
        call make_room(r)
        r%rows = r%rows + 1
        r%cells(:na, r%rows) = a%cells(:, i)
        r%cells(na+1:, r%rows) = b%cells(others, j)
      end do
    end do
  end function join

  real function total_column(t, name) result(x)
    type(table), intent(in) :: t
    character(len=*), intent(in) :: name
    x = sum(numbers_of(t, name))
  end function total_column

  ! One row for each value of GROUP, with the sum and number of NAME.
  function total_by_group(t, name, group) result(r)
    type(table), intent(in) :: t
    character(len=*), intent(in) :: name, group
    type(table) :: r
    real, dimension(t%rows) :: x
    logical, dimension(t%rows) :: todo, same
    integer :: g, i

    x = numbers_of(t, name)
    g = column_of(t, group)
    call create_table(r, 'totals', trim(group) // ':s, sum:n, number:n, mean:n')
    todo = .true.
    do i = 1, t%rows
      if (.not. todo(i)) cycle
      same = t%cells(g, :t%rows)%string == t%cells(g, i)%string
      todo = todo .and. .not. same
      call make_room(r)
      r%rows = r%rows + 1
      r%cells(:, r%rows) = cell('', 0.0, date(0, 0, 0))
      r%cells(1, r%rows)%string = t%cells(g, i)%string
      r%cells(2:4, r%rows)%number = (/ sum(x, mask=same), real(count(same)), &
                                       sum(x, mask=same) / count(same) /)
    end do
  end function total_by_group

  ! ---- input and output

  subroutine print_table(t, title)
    type(table), intent(in) :: t
    character(len=*), intent(in), optional :: title
    integer :: c, r
    character(len=name_len) :: heading
    character(len=40) :: day

    if (present(title)) write (*, '(/, 1x, a)') title
    do c = 1, size(t%columns)
      heading = t%columns(c)%name
      if (t%columns(c)%kind == is_number) heading = adjustr(heading)
      write (*, '(1x, a)', advance='no') heading
    end do
    write (*, '(/, 1x, a)') repeat('-', size(t%columns) * (name_len + 1) - 1)
    do r = 1, t%rows
      do c = 1, size(t%columns)
        select case (t%columns(c)%kind)
        case (is_string)
          write (*, '(1x, a)', advance='no') t%cells(c, r)%string(:name_len)
        case (is_number)
          write (*, '(1x, f12.2)', advance='no') t%cells(c, r)%number
        case (is_date)
          day = written(t%cells(c, r)%day, 'D.M.Y')
          write (*, '(1x, a12)', advance='no') day(:name_len)
        end select
      end do
      write (*, *)
    end do
  end subroutine print_table

  subroutine write_csv(t, unit)
    type(table), intent(in) :: t
    integer, intent(in) :: unit
    integer :: c, r

    do r = 1, t%rows
      do c = 1, size(t%columns)
        if (c > 1) write (unit, '(a)', advance='no') ','
        if (scan(t%cells(c, r)%string, ',"') > 0) then
          write (unit, '(3a)', advance='no') '"', trim(doubled(t%cells(c, r)%string)), '"'
        else
          write (unit, '(a)', advance='no') trim(t%cells(c, r)%string)
        end if
      end do
      write (unit, '(a)', advance='yes') ''
    end do

  contains

    ! Quotes doubled, in a field long enough for a cell full of them.
    function doubled(s) result(d)
      character(len=*), intent(in) :: s
      character(len=2*cell_len) :: d
      integer :: i, n

      d = ' '
      n = 0
      do i = 1, len(s)
        n = n + 1
        d(n:n) = s(i:i)
        if (s(i:i) == '"') then
          n = n + 1
          d(n:n) = '"'
        end if
      end do
    end function doubled

  end subroutine write_csv

  subroutine read_csv(t, unit, bad_lines)
    type(table), intent(inout) :: t
    integer, intent(in) :: unit
    integer, intent(out), optional :: bad_lines
    character(len=132) :: line
    logical :: problem
    integer :: length, bad

    bad = 0
    do
      read (unit, '(a)', advance='no', eor=10, end=20, size=length) line
10    continue
      if (length == 0) cycle
      call add_row(t, line(:length), problem)
      if (problem) bad = bad + 1
    end do
20  continue
    if (present(bad_lines)) bad_lines = bad
  end subroutine read_csv

end module relations
