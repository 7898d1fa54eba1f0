! Containers of integers: a stack and a queue of linked cells, a list kept in
! order, and a priority queue (binary heap) in an array that grows.
module queues
  implicit none
  private
  public :: stack, queue, heap, cell
  public :: new, push, pop, top, is_empty, size_of, destroy, insert_sorted
  public :: reverse, for_each, contains_key, to_array

  type cell
    integer :: key
    type(cell), pointer :: next
  end type cell

  type stack
    private
    integer :: depth
    type(cell), pointer :: head
  end type stack

  type queue
    private
    integer :: length
    type(cell), pointer :: front, rear
  end type queue

  ! The smallest priority is at the root, index 1.
  type heap
    private
    integer :: used
    integer, pointer :: keys(:)
    real, pointer    :: priorities(:)
  end type heap

  interface new
    module procedure new_stack, new_queue, new_heap
  end interface
  interface push
    module procedure push_stack, push_queue, push_heap
  end interface
  interface pop
    module procedure pop_stack, pop_queue, pop_heap
  end interface
  interface is_empty
    module procedure stack_is_empty, queue_is_empty, heap_is_empty
  end interface
  interface size_of
    module procedure size_of_stack, size_of_queue, size_of_heap
  end interface
  interface destroy
    module procedure destroy_cells, destroy_stack, destroy_queue, destroy_heap
  end interface

contains

  ! ---- stacks

  subroutine new_stack(s)
    type(stack), intent(out) :: s
    s%depth = 0
    nullify(s%head)
  end subroutine

  subroutine push_stack(s, key)
    type(stack), intent(inout) :: s
    integer, intent(in) :: key
    type(cell), pointer :: c

    allocate(c)
    c = cell(key, s%head)
    s%head => c
    s%depth = s%depth + 1
  end subroutine

  subroutine pop_stack(s, key, found)
    type(stack), intent(inout) :: s
    integer, intent(out) :: key
    logical, intent(out), optional :: found
    type(cell), pointer :: c

    if (present(found)) found = associated(s%head)
    key = 0
    if (.not. associated(s%head)) return
    c => s%head
    key = c%key
    s%head => c%next
    deallocate(c)
    s%depth = s%depth - 1
  end subroutine

  function top(s) result(key)
    type(stack), intent(in) :: s
    integer :: key
    key = s%head%key
  end function

  logical function stack_is_empty(s)
    type(stack), intent(in) :: s
    stack_is_empty = s%depth == 0
  end function

  integer function size_of_stack(s)
    type(stack), intent(in) :: s
    size_of_stack = s%depth
  end function

  subroutine destroy_stack(s)
    type(stack), intent(inout) :: s
    call destroy_cells(s%head)
    s%depth = 0
  end subroutine

  ! ---- queues

  subroutine new_queue(q)
    type(queue), intent(out) :: q
    q%length = 0
    nullify(q%front, q%rear)
  end subroutine

  subroutine push_queue(q, key)
    type(queue), intent(inout) :: q
    integer, intent(in) :: key
    type(cell), pointer :: c

    allocate(c)
    c%key = key
    nullify(c%next)
    if (associated(q%rear)) then
      q%rear%next => c
    else
      q%front => c
    end if
    q%rear => c
    q%length = q%length + 1
  end subroutine

  subroutine pop_queue(q, key, found)
    type(queue), intent(inout) :: q
    integer, intent(out) :: key
    logical, intent(out), optional :: found
    type(cell), pointer :: c

    if (present(found)) found = q%length > 0
    key = 0
    if (q%length == 0) return
    c => q%front
    key = c%key
    q%front => c%next
    if (.not. associated(q%front)) nullify(q%rear)
    deallocate(c)
    q%length = q%length - 1
  end subroutine

  logical function queue_is_empty(q)
    type(queue), intent(in) :: q
    queue_is_empty = .not. associated(q%front)
  end function

  integer function size_of_queue(q)
    type(queue), intent(in) :: q
    size_of_queue = q%length
  end function

  subroutine destroy_queue(q)
    type(queue), intent(inout) :: q
    call destroy(q%front)
    call new(q)
  end subroutine

  ! ---- heaps

  subroutine new_heap(h, room)
    type(heap), intent(out) :: h
    integer, intent(in), optional :: room
    integer :: n

    n = 4
    if (present(room)) n = room
    h%used = 0
    allocate(h%keys(n), h%priorities(n))
  end subroutine

  subroutine double(h)
    type(heap), intent(inout) :: h
    integer, pointer, dimension(:) :: keys
    real, pointer, dimension(:) :: priorities
    integer :: n

    n = h%used
    allocate(keys(2*n), priorities(2*n))
    keys(:n) = h%keys
    priorities(:n) = h%priorities
    deallocate(h%keys, h%priorities)
    h%keys => keys
    h%priorities => priorities
  end subroutine

  subroutine push_heap(h, key, priority)
    type(heap), intent(inout) :: h
    integer, intent(in) :: key
    real, intent(in) :: priority
    integer :: child, parent

    if (h%used == size(h%keys)) call double(h)
    h%used = h%used + 1
    child = h%used
    sift_up: do
      parent = child / 2
      if (parent == 0) exit
      if (h%priorities(parent) <= priority) exit sift_up
      h%keys(child) = h%keys(parent)
      h%priorities(child) = h%priorities(parent)
      child = parent
    end do sift_up
    h%keys(child) = key
    h%priorities(child) = priority
  end subroutine

  subroutine pop_heap(h, key, priority, found)
    type(heap), intent(inout) :: h
    integer, intent(out) :: key
    real, intent(out) :: priority
    logical, intent(out), optional :: found
    integer :: hole, child
    real :: last

    key = 0; priority = 0.0
    if (present(found)) found = h%used > 0
    if (h%used == 0) return
    key = h%keys(1); priority = h%priorities(1)
    last = h%priorities(h%used)
    hole = 1
    do
      child = 2 * hole
      if (child > h%used - 1) exit
      if (child < h%used - 1) then
        if (h%priorities(child + 1) < h%priorities(child)) child = child + 1
      end if
      if (h%priorities(child) >= last) exit
      h%keys(hole) = h%keys(child)
      h%priorities(hole) = h%priorities(child)
      hole = child
    end do
    h%keys(hole) = h%keys(h%used)
    h%priorities(hole) = last
    h%used = h%used - 1
  end subroutine

  logical function heap_is_empty(h)
    type(heap), intent(in) :: h
    heap_is_empty = h%used == 0
  end function

  integer function size_of_heap(h)
    type(heap), intent(in) :: h
    size_of_heap = h%used
  end function

  subroutine destroy_heap(h)
    type(heap), intent(inout) :: h
    deallocate(h%keys, h%priorities)
    h%used = 0
  end subroutine

  ! ---- bare lists of cells

  ! Puts KEY where it belongs; "hole" walks along the links themselves.
  recursive subroutine insert_sorted(list, key)
    type(cell), pointer :: list
    integer, intent(in) :: key
    type(cell), pointer :: c

    if (associated(list)) then
      if (list%key < key) then
        call insert_sorted(list%next, key)
        return
      end if
    end if
    allocate(c)
    c%key = key
    c%next => list
    list => c
  end subroutine

  subroutine reverse(list)
    type(cell), pointer :: list
    type(cell), pointer :: done, rest

    nullify(done)
    do while (associated(list))
      rest => list%next
      list%next => done
      done => list
      list => rest
    end do
    list => done
  end subroutine

  logical function contains_key(list, key) result(yes)
    type(cell), pointer :: list
    integer, intent(in) :: key
    type(cell), pointer :: walk

    yes = .true.
    walk => list
    do
      if (.not. associated(walk)) exit
      if (walk%key == key) return
      walk => walk%next
    end do
    yes = .false.
  end function

  ! Calls ACTION with every key in turn.
  subroutine for_each(list, action)
    type(cell), pointer :: list
    interface
      subroutine action(key)
        integer, intent(in) :: key
      end subroutine action
    end interface
    type(cell), pointer :: walk

    walk => list
    do while (associated(walk))
      call action(walk%key)
      walk => walk%next
    end do
  end subroutine

  ! The keys of the list as an array of their number.
  function to_array(list) result(keys)
    type(cell), pointer :: list, walk
    integer, dimension(:), pointer :: keys
    integer :: n

    n = 0
    walk => list
    do while (associated(walk))
      n = n + 1; walk => walk%next
    end do
    allocate(keys(n))
    walk => list
    n = 0
    do while (associated(walk))
      n = n + 1; keys(n) = walk%key; walk => walk%next
    end do
  end function

  subroutine destroy_cells(list)
    type(cell), pointer :: list, next

    do while (associated(list))
      next => list%next
      deallocate(list)
      list => next
    end do
  end subroutine

end module queues
