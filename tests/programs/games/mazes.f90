! Digs a maze by depth-first search with a linked stack, then finds the way through.
program mazes
  use dice
  implicit none

  type place
     integer :: row, column
     type(place), pointer :: below
  end type place

  integer, parameter :: rows = 8, columns = 18
  integer, parameter :: north = 0, east = 1, south = 2, west = 3
  integer, dimension(north:west), parameter :: down = (/-1, 0, 1, 0/), right = (/0, 1, 0, -1/)
  integer, dimension(0:rows + 1, 0:columns + 1) :: open_sides, distance
  logical, dimension(0:rows + 1, 0:columns + 1) :: dug
  integer :: steps

  call reseed(2024)
  call dig()
  call flood(1, 1)
  steps = distance(rows, columns)
  call draw
  print '(" way out after", I4, " steps, longest", I4)', steps, maxval(distance)

contains

  subroutine push(stack, row, column)
    type(place), pointer :: stack
    integer, intent(in) :: row, column
    type(place), pointer :: top

    allocate (top)
    top = place(row, column, stack)
    stack => top
  end subroutine push

  subroutine pop(stack)
    type(place), pointer :: stack
    type(place), pointer :: gone

    gone => stack
    stack => gone%below
    deallocate (gone)
  end subroutine pop

  subroutine dig
    type(place), pointer :: stack
    integer :: order(4), k, way, i, j

    open_sides = 0
    dug = .true.
    dug(1:rows, 1:columns) = .false.
    nullify (stack)
    call push(stack, 1, 1)
    dug(1, 1) = .true.
    do while (associated(stack))
       order = (/north, east, south, west/)
       call shuffle(order)
       try: do k = 1, 4
          way = order(k)
          i = stack%row + down(way); j = stack%column + right(way)
          if (dug(i, j)) cycle try
          open_sides(stack%row, stack%column) = ibset(open_sides(stack%row, stack%column), way)
          open_sides(i, j) = ibset(open_sides(i, j), mod(way + 2, 4))
          dug(i, j) = .true.
          call push(stack, i, j)
          exit try
       end do try
       if (k > 4) call pop(stack)
    end do
  end subroutine dig

  ! Breadth first, with a queue in an array that grows.
  subroutine flood(row, column)
    integer, intent(in) :: row, column
    integer, dimension(:, :), pointer :: queue, longer
    integer :: head, tail, way, i, j, r, c

    allocate (queue(2, 4))
    distance = -1
    distance(row, column) = 0
    queue(:, 1) = (/row, column/)
    head = 1; tail = 1
    do
       if (head > tail) exit
       r = queue(1, head)
       c = queue(2, head)
       head = head + 1
       do way = north, west
          if (.not. btest(open_sides(r, c), way)) cycle
          i = r + down(way)
          j = c + right(way)
          if (distance(i, j) >= 0) cycle
          distance(i, j) = distance(r, c) + 1
          if (tail == ubound(queue, 2)) then
             allocate (longer(2, 2*tail))
             longer(:, :tail) = queue
             deallocate (queue)
             queue => longer
          end if
          tail = tail + 1
          queue(1:2, tail) = (/i, j/)
       end do
    end do
    deallocate (queue)
  end subroutine flood

  subroutine draw
    character(len=2*columns + 1) :: wall, room
    integer :: i, j, p

    write (*, '(1X, A)') repeat('+-', columns)//'+'
    do i = 1, rows
       room = '|'
       wall = '+'
       do j = 1, columns
          p = 2*j
          room(p:p) = ' '
          if (distance(i, j) > 0 .and. mod(distance(i, j), 10) == 0) room(p:p) = '*'
          room(p + 1:p + 1) = '|'
          if (btest(open_sides(i, j), east)) room(p + 1:p + 1) = ' '
          wall(p:p + 1) = '-+'
          if (btest(open_sides(i, j), south)) wall(p:p) = ' '
       end do
       write (*, '(1X, A)') room, wall
    end do
  end subroutine draw
end program mazes
