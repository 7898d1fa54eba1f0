! Puts the containers to work.
module visitors
  implicit none
  integer, save :: total = 0
contains
  subroutine add_up(key)
    integer, intent(in) :: key
    total = total + key
  end subroutine add_up

  subroutine double_value(key, value)
    character(len=*), intent(in) :: key
    integer, intent(inout) :: value
    if (key < 'n') value = 2 * value
  end subroutine double_value
end module visitors

program try_structures
  use queues
  use balanced, plant_tree => plant
  use hashing
  use visitors
  implicit none

  call try_stack_and_queue
  call try_list
  call try_tree
  call try_table
  call try_roads
  call try_jobs

contains

  subroutine try_stack_and_queue
    type(stack) :: s
    type(queue) :: q
    type(heap)  :: h
    integer :: i, key
    real :: p
    logical :: found

    call new(s); call new(q); call new(h, room=2)
    do i = 1, 5
      call push(s, i*i)
      call push(q, i*i)
      call push(h, i, mod(real(i)*7.0, 5.0))
    end do
    print *, 'stack of', size_of(s), ' with top', top(s)
    do
      if (is_empty(s)) exit
      call pop(s, key)
      write (*, '(i4)', advance='no') key
    end do
    write (*, '(a)') ' from the stack'
    do
      call pop(q, key, found)
      if (.not. found) exit
      write (*, '(i4)', advance='no') key
    end do
    print '(a)', ' from the queue'
    do while (.not. is_empty(h))
      call pop(h, key, p)
      write (*, '(i4,f4.1)', advance='no') key, p
    end do
    print '(a)', ' from the heap'
    call destroy(s); call destroy(q); call destroy(h)
  end subroutine try_stack_and_queue

  subroutine try_list
    type(cell), pointer :: list
    integer, pointer :: keys(:)
    integer :: seed, i

    nullify(list)
    seed = 17
    do i = 1, 10
      seed = mod(seed * 29 + 3, 101)
      call insert_sorted(list, seed)
    end do
    keys => to_array(list)
    print '(a, 10i4)', ' ordered:  ', keys
    deallocate(keys)
    call reverse(list)
    keys => to_array(list)
    print '(a, 10i4)', ' backwards:', keys
    call for_each(list, add_up)
    print *, 'total', total, sum(keys) == total, contains_key(list, keys(3)), &
      contains_key(list, 1000)
    deallocate(keys)
    call destroy(list)
  end subroutine try_list

  subroutine try_tree
    type(leaf), pointer :: tree
    character(len=key_length), dimension(12) :: birds = (/ &
      'wren        ', 'robin       ', 'finch       ', 'crow        ', &
      'raven       ', 'owl         ', 'eagle       ', 'hawk        ', &
      'kite        ', 'lark        ', 'swift       ', 'tern        ' /)
    integer :: i
    logical :: done

    call plant_tree(tree)
    do i = 1, size(birds)
      call put(tree, birds(i), i)
    end do
    call print_tree(tree)
    print *, 'height', height_of(tree), ' of', count_of(tree), &
      ' smallest ', trim(smallest(tree))
    call take_out(tree, 'lark', done)
    if (.not. done) print *, 'lark was not there'
    call take_out(tree, 'dodo', done)
    if (done) print *, 'dodo was there'
    call walk_in_order(tree, double_value)
    print *, get(tree, 'crow'), get(tree, 'wren'), get(tree, 'lark'), &
      get(tree, 'dodo', default=99)
    call fell(tree)
  end subroutine try_tree

  subroutine try_table
    type(hash_table) :: table
    character(len=8) :: name
    integer :: i, entries, slots
    real :: x, load
    logical :: found

    call create(table, 3)
    do i = 1, 40
      write (name, '("item", i2.2)') i
      call store(table, name, sqrt(real(i)))
    end do
    call store(table, 'item16', -4)
    call forget(table, 'item25')
    call look_up(table, 'item16', x, found)
    print *, found, x
    call look_up(table, 'item25', x, found)
    print *, found
    call statistics(table, entries, slots=slots, load=load)
    print '(1x,i4,a,i4,a,f6.3)', entries, ' entries in', slots, ' slots, load', load
    call release(table)
  end subroutine try_table

  subroutine try_roads
    use roads
    type(graph) :: g
    integer, dimension(7) :: order
    integer :: n, i
    character(len=60) :: line
    character(len=*), parameter :: names(7) = &
      (/ 'Ashby ', 'Barton', 'Corby ', 'Dover ', 'Ely   ', 'Frome ', 'Goole ' /)

    call make_graph(g, names)
    call build(g, 1, 2, 7.5)
    call build(g, 1, 3, 9.0)
    call build(g, 1, 6, 14.0)
    call build(g, 2, 3, 10.0)
    call build(g, 2, 4, 15.0)
    call build(g, 3, 4, 11.0)
    call build(g, 3, 6, 2.0)
    call build(g, 4, 5, 6.0)
    call build(g, 5, 6, 9.0)
    n = 0
    call depth_first(g, 1, order, n)
    print '(1x,a,7(1x,a))', 'depth:  ', (trim(names(order(i))), i = 1, n)
    call forget_search(g)
    call breadth_first(g, 1, order, n)
    print '(1x,a,7(1x,a))', 'breadth:', (trim(names(order(i))), i = 1, n)
    call shortest_ways(g, start=1)
    do i = 2, g%towns
      if (g%town(i)%distance == far_away) then
        print *, trim(g%town(i)%name), ' cannot be reached'
        cycle
      end if
      line = ''
      call describe(g, i, line)
      print '(f7.1,2x,a)', g%town(i)%distance, trim(line)
    end do
  end subroutine try_roads

  subroutine try_jobs
    use roads, only: graph, make_graph, edge => build, sequence_of
    type(graph) :: jobs
    integer :: order(5), n

    call make_graph(jobs, (/ 'roof ', 'walls', 'floor', 'paint', 'plan ' /))
    call edge(jobs, 5, 3, 1.0, one_way=.true.)
    call edge(jobs, 3, 2, 1.0, one_way=.true.)
    call edge(jobs, 2, 1, 1.0, .true.)
    call edge(jobs, 2, 4, 1.0, .true.)
    call edge(jobs, 1, 4, 1.0, .true.)
    call sequence_of(jobs, order, n)
    print '(1x,5(a,:,", "))', jobs%town(order(:n))%name
    call edge(jobs, from=4, to=5, miles=0.0, one_way=.true.)
    call sequence_of(jobs, order, n)
    if (n < jobs%towns) print *, 'the jobs depend on each other in a circle'
  end subroutine try_jobs

end program try_structures
