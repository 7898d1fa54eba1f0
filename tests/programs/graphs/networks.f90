! Graphs with named nodes on top of the library: the arrays look after themselves.
module networks
  use graph_interfaces, only: weight, gstar, gshort, gtree, gtopo, gflow
  implicit none
  private

  integer, parameter, public :: name_length = 12

  type arc
     integer :: from, to
     real(weight) :: length
     type(arc), pointer :: next
  end type arc

  type, public :: network
     private
     integer :: nodes, arcs
     logical :: both_ways
     character(len=name_length), dimension(:), pointer :: names
     type(arc), pointer :: head
     ! forward star, made when first needed
     integer, dimension(:), pointer :: first, to
     real(weight), dimension(:), pointer :: w
     logical :: ready
  end type network

  interface connect
     module procedure connect_names, connect_numbers
  end interface

  interface size
     module procedure number_of_nodes
  end interface

  public :: start, finish, connect, size, route, spanning_tree, in_order, greatest_flow, adjacency
  public :: node_name
  public :: matching

contains

  subroutine start(net, capacity, both_ways)
    type(network), intent(out) :: net
    integer, intent(in) :: capacity
    logical, optional, intent(in) :: both_ways

    net%nodes = 0
    net%arcs = 0
    net%both_ways = .false.
    if (present(both_ways)) net%both_ways = both_ways
    allocate (net%names(capacity))
    nullify (net%head, net%first, net%to, net%w)
    net%ready = .false.
  end subroutine start

  subroutine finish(net)
    type(network), intent(inout) :: net
    type(arc), pointer :: gone

    do while (associated(net%head))
       gone => net%head
       net%head => gone%next
       deallocate (gone)
    end do
    deallocate (net%names)
    call forget(net)
  end subroutine finish

  subroutine forget(net)
    type(network), intent(inout) :: net
    integer :: status

    if (.not. net%ready) return
    deallocate (net%first, net%to, net%w, stat=status)
    if (status /= 0) print *, 'network was not built'
    net%ready = .false.
  end subroutine forget

  integer function number_of_nodes(net)
    type(network), intent(in) :: net
    number_of_nodes = net%nodes
  end function number_of_nodes

  function node_name(net, i) result(name)
    type(network), intent(in) :: net
    integer, intent(in) :: i
    character(len=name_length) :: name
    name = net%names(i)
  end function node_name

  ! The number of a name; new names get the next number.
  subroutine look_up(net, name, number)
    type(network), intent(inout) :: net
    character(len=*), intent(in) :: name
    integer, intent(out) :: number

    do number = 1, net%nodes
       if (net%names(number) == name) return
    end do
    if (net%nodes == size(net%names)) stop 'network is full'
    net%nodes = net%nodes + 1
    net%names(net%nodes) = name
    number = net%nodes
  end subroutine look_up

  subroutine connect_numbers(net, i, j, length)
    type(network), intent(inout) :: net
    integer, intent(in) :: i, j
    real(weight), intent(in) :: length
    type(arc), pointer :: new

    call forget(net)
    allocate (new)
    new%from = i; new%to = j; new%length = length
    new%next => net%head
    net%head => new
    net%arcs = net%arcs + 1
  end subroutine connect_numbers

  subroutine connect_names(net, from, to, length)
    type(network), intent(inout) :: net
    character(len=*), intent(in) :: from, to
    real, intent(in), optional :: length
    real(weight) :: d
    integer :: i, j

    d = 1
    if (present(length)) d = length
    call look_up(net, from, i)
    call look_up(net, to, j)
    call connect_numbers(net, i, j, d)
    if (net%both_ways) call connect_numbers(net, j, i, d)
  end subroutine connect_names

  ! The list of arcs as the arrays the library wants.
  subroutine list_arcs(net, ia, ib, wa)
    type(network), intent(in) :: net
    integer, dimension(:), intent(out) :: ia, ib
    real(weight), dimension(:), intent(out) :: wa
    type(arc), pointer :: a
    integer :: k

    a => net%head
    do k = net%arcs, 1, -1
       ia(k) = a%from
       ib(k) = a%to
       wa(k) = a%length
       a => a%next
    end do
  end subroutine list_arcs

  subroutine prepare(net)
    type(network), intent(inout) :: net
    integer, dimension(net%arcs) :: ia, ib
    real(weight) :: wa(net%arcs)
    integer :: ierr

    if (net%ready) return
    call list_arcs(net, ia, ib, wa)
    allocate (net%first(net%nodes + 1), net%to(net%arcs), net%w(net%arcs))
    call gstar(net%nodes, net%arcs, ia, ib, wa, net%first, net%to, net%w, ierr)
    net%ready = ierr == 0
  end subroutine prepare

  subroutine adjacency(net, first, to)
    type(network), intent(inout) :: net
    integer, dimension(:), pointer :: first, to

    call prepare(net)
    first => net%first
    to => net%to(:net%arcs)
  end subroutine adjacency

  ! The way from one node to another: its length, and its nodes from the goal back.
  subroutine route(net, from, goal, length, path, steps)
    type(network), intent(inout) :: net
    character(len=*), intent(in) :: from, goal
    real(weight), intent(out) :: length
    character(len=name_length), dimension(:), intent(out) :: path
    integer, intent(out) :: steps
    real(weight), dimension(net%nodes) :: distance
    integer, dimension(net%nodes) :: before, heap, place
    integer :: i, j

    call prepare(net)
    call look_up(net, from, i)
    call look_up(net, goal, j)
    call gshort(net%nodes, net%first, net%to, net%w, i, distance, before, heap, place)
    length = distance(j)
    steps = 0
    path = ' '
    do
       steps = steps + 1
       path(steps) = net%names(j)
       if (before(j) == 0 .or. steps == size(path)) exit
       j = before(j)
    end do
  end subroutine route

  subroutine spanning_tree(net, total, connected)
    type(network), intent(in) :: net
    real(weight), intent(out) :: total
    logical, intent(out) :: connected
    integer, dimension(net%arcs) :: ia, ib, order
    real(weight), dimension(net%arcs) :: wa
    integer :: sets(net%nodes)
    logical :: chosen(net%arcs)

    connected = .false.
    call list_arcs(net, ia, ib, wa)
    call gtree(net%nodes, net%arcs, ia, ib, wa, order, sets, chosen, total, *100)
    connected = count(chosen) == net%nodes - 1
100 continue
  end subroutine spanning_tree

  function in_order(net) result(sequence)
    type(network), intent(inout) :: net
    integer, dimension(net%nodes) :: sequence
    integer :: degree(net%nodes), n

    call prepare(net)
    call gtopo(net%nodes, net%first, net%to, degree, sequence, nseq=n)
    sequence(n + 1:) = 0
  end function in_order

  integer function greatest_flow(net, from, goal)
    type(network), intent(inout) :: net
    character(len=*), intent(in) :: from, goal
    integer, allocatable, dimension(:, :) :: capacity, flow
    integer, dimension(net%nodes) :: queue, pred
    type(arc), pointer :: a
    integer :: s, t, n

    n = net%nodes
    allocate (capacity(n, n), flow(n, n))
    capacity = 0
    a => net%head
    do
       if (.not. associated(a)) exit
       capacity(a%from, a%to) = capacity(a%from, a%to) + nint(a%length)
       a => a%next
    end do
    call look_up(net, from, s)
    call look_up(net, goal, t)
    call gflow(n, ubound(capacity, 1), capacity, flow, s, t, greatest_flow, queue, pred)
    deallocate (capacity, flow)
  end function greatest_flow

  ! Pairs rows with columns where allowed is true: mate(j) is the row of column j or 0.
  subroutine matching(allowed, mate)
    logical, dimension(:, :), intent(in) :: allowed
    integer, dimension(:), intent(out) :: mate
    logical, dimension(size(allowed, 2)) :: seen
    integer :: i
    logical :: found

    mate = 0
    do i = 1, size(allowed, 1)
       seen = .false.
       call seek(i, found)
    end do

  contains

    recursive subroutine seek(row, found)
      integer, intent(in) :: row
      logical, intent(out) :: found
      integer :: j

      found = .true.
      do j = 1, size(mate)
         if (.not. allowed(row, j) .or. seen(j)) cycle
         seen(j) = .true.
         if (mate(j) == 0) then
            mate(j) = row
            return
         end if
         call seek(mate(j), found)
         if (found) then
            mate(j) = row
            return
         end if
      end do
      found = .false.
    end subroutine seek
  end subroutine matching

end module networks
