! Graphs of towns and roads held by pointers: search by depth and breadth,
! shortest ways, and an order of jobs that depend on each other.
module roads
  use queues, only: queue, heap, new, push, pop, is_empty, destroy
  implicit none

  type road
    integer :: to
    real    :: miles
    type(road), pointer :: next
  end type road

  type town
    character(len=10) :: name
    logical :: seen
    integer :: from
    real    :: distance
    type(road), pointer :: roads
  end type town

  type graph
    integer :: towns
    type(town), dimension(:), pointer :: town
  end type graph

  real, parameter :: far_away = huge(1.0)

contains

  subroutine make_graph(g, names)
    type(graph), intent(out) :: g
    character(len=*), dimension(:), intent(in) :: names
    integer :: i

    g%towns = size(names)
    allocate(g%town(g%towns))
    g%town%name = names
    g%town%seen = .false.
    g%town%from = 0
    g%town%distance = far_away
    do i = 1, g%towns
      nullify(g%town(i)%roads)
    end do
  end subroutine make_graph

  subroutine build(g, from, to, miles, one_way)
    type(graph), intent(inout) :: g
    integer, intent(in) :: from, to
    real, intent(in) :: miles
    logical, intent(in), optional :: one_way
    logical :: both

    both = .true.
    if (present(one_way)) both = .not. one_way
    call add(from, to)
    if (both) call add(to, from)

  contains
    subroutine add(a, b)
      integer, intent(in) :: a, b
      type(road), pointer :: r

      allocate(r)
      r%to = b
      r%miles = miles
      r%next => g%town(a)%roads
      g%town(a)%roads => r
    end subroutine add
  end subroutine build

  subroutine forget_search(g)
    type(graph), intent(inout) :: g

    g%town(:)%seen = .false.
    g%town%from = 0
    g%town%distance = far_away
  end subroutine forget_search

  ! The towns in the order in which a walk meets them.
  recursive subroutine depth_first(g, start, order, n)
    type(graph), intent(inout) :: g
    integer, intent(in) :: start
    integer, dimension(:), intent(inout) :: order
    integer, intent(inout) :: n
    type(road), pointer :: r

    g%town(start)%seen = .true.
    n = n + 1
    order(n) = start
    r => g%town(start)%roads
    do while (associated(r))
      if (.not. g%town(r%to)%seen) call depth_first(g, r%to, order, n)
      r => r%next
    end do
  end subroutine depth_first

  subroutine breadth_first(g, start, order, n)
    type(graph), intent(inout) :: g
    integer, intent(in) :: start
    integer, dimension(:), intent(out) :: order
    integer, intent(out) :: n
    type(queue) :: waiting
    type(road), pointer :: r
    integer :: here

    call new(waiting)
    call push(waiting, start)
    g%town(start)%seen = .true.
    n = 0
    do
      if (is_empty(waiting)) exit
      call pop(waiting, here)
      n = n + 1
      order(n) = here
      r => g%town(here)%roads
      do
        if (.not. associated(r)) exit
        if (.not. g%town(r%to)%seen) then
          g%town(r%to)%seen = .true.
          call push(waiting, r%to)
        end if
        r => r%next
      end do
    end do
  end subroutine breadth_first

  ! Sets the distances from START and the towns one comes from.
  subroutine shortest_ways(g, start)
    type(graph), intent(inout) :: g
    integer, intent(in) :: start
    type(heap) :: border
    type(road), pointer :: r
    integer :: here
    real :: miles

    call forget_search(g)
    call new(border)
    g%town(start)%distance = 0.0
    call push(border, start, 0.0)
    settle: do while (.not. is_empty(border))
      call pop(border, here, miles)
      if (g%town(here)%seen) cycle settle      ! an older, longer way
      g%town(here)%seen = .true.
      r => g%town(here)%roads
      neighbours: do while (associated(r))
        if (miles + r%miles < g%town(r%to)%distance) then
          g%town(r%to)%distance = miles + r%miles
          g%town(r%to)%from = here
          call push(border, key=r%to, priority=miles + r%miles)
        end if
        r => r%next
      end do neighbours
    end do settle
    call destroy(border)
  end subroutine shortest_ways

  ! "A > B > C" for the way to a town after SHORTEST_WAYS.
  recursive subroutine describe(g, to, line)
    type(graph), intent(in) :: g
    integer, intent(in) :: to
    character(len=*), intent(inout) :: line

    if (g%town(to)%from /= 0) then
      call describe(g, g%town(to)%from, line)
      line = trim(line) // ' > ' // g%town(to)%name
    else
      line = g%town(to)%name
    end if
  end subroutine describe

  ! An order in which every town comes before those its one-way roads lead
  ! to; N is smaller than the number of towns if there is a circle.
  subroutine sequence_of(g, order, n)
    type(graph), intent(in) :: g
    integer, intent(out) :: order(:), n
    integer, dimension(g%towns) :: before
    type(road), pointer :: r
    integer :: i, done

    before = 0
    do i = 1, g%towns
      r => g%town(i)%roads
      do while (associated(r))
        before(r%to) = before(r%to) + 1
        r => r%next
      end do
    end do
    n = 0
    do i = 1, g%towns
      if (before(i) == 0) then
        n = n + 1; order(n) = i
      end if
    end do
    done = 0
    do
      done = done + 1
      if (done > n) exit
      r => g%town(order(done))%roads
      do while (associated(r))
        before(r%to) = before(r%to) - 1
        if (before(r%to) == 0) then
          n = n + 1; order(n) = r%to
        end if
        r => r%next
      end do
    end do
  end subroutine sequence_of

end module roads
