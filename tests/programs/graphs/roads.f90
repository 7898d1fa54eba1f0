! Roads between towns, tasks, pipes, and a school timetable.
program roads
  use networks, number_of => size, tree => spanning_tree
  use graph_interfaces, only: gcolor, gerrs, reset_errors => gclear, gstar, wp => weight
  implicit none

  interface
     integer function backwards(k)
       integer, intent(in) :: k
     end function backwards
  end interface

  type(network) :: map, tasks, pipes
  character(len=name_length) :: path(10)
  character(len=name_length), dimension(:), allocatable :: list
  character(len=8) :: place
  real(wp) :: length
  real(wp), dimension(1) :: w, wa
  integer, dimension(:), pointer :: first, to
  integer, allocatable :: color(:)
  integer :: steps, k, n, ierr, f(3), t(1)
  logical :: ok
  integer :: mate(4)
  logical, parameter :: y = .true., x = .false.
  logical, dimension(4, 4) :: can_teach
  common /walk/ n

  call start(map, capacity=20, both_ways=.true.)
  call connect(map, 'Ashby', 'Barton', 7.0)
  call connect(map, 'Ashby', 'Cowley', 9.0)
  call connect(map, 'Ashby', 'Fenton', 14.0)
  call connect(map, 'Barton', 'Cowley', 10.0)
  call connect(map, 'Barton', 'Denby', 15.0)
  call connect(map, 'Cowley', 'Denby', 11.0)
  call connect(map, 'Cowley', 'Fenton', 2.0)
  call connect(map, 'Denby', 'Epsom', 6.0)
  call connect(map, from='Epsom', to='Fenton', length=9.0)
  call route(map, 'Ashby', 'Epsom', length, path, steps)
  write (*, '(1X, F6.1, 8(1X, A))') length, (trim(path(k)), k = steps, 1, -1)
  call tree(map, length, ok)
  write (*, '(1X, F6.1, L2)') length, ok

  n = number_of(map)
  allocate (color(n))
  call adjacency(map, first, to)
  call gcolor(n, first, to, color, ncol=k, choose=backwards)
  write (*, *) 'colours:', k, '  of', color
  do k = 1, n
     if (any(color(to(first(k):first(k + 1) - 1)) == color(k))) print *, 'same colour next to', k
  end do
  call finish(map)

  call start(tasks, 8)
  call connect(tasks, 'dig', 'walls')
  call connect(tasks, 'walls', 'roof')
  call connect(tasks, 'order', 'walls')
  call connect(tasks, 'walls', 'wiring')
  call connect(tasks, 'roof', 'paint')
  call connect(tasks, 'wiring', 'paint')
  allocate (list(number_of(tasks)))
  do k = 1, number_of(tasks)
     list(k) = node_name(tasks, k)
  end do
  print '(1X, 8A8)', list(in_order(tasks))
  call finish(tasks)

  call start(pipes, 6)
  call connect(pipes, 's', 'a', 16.0); call connect(pipes, 's', 'b', 13.0)
  call connect(pipes, 'a', 'c', 12.0); call connect(pipes, 'b', 'a', 4.0)
  call connect(pipes, 'c', 'b', 9.0);  call connect(pipes, 'b', 'd', 14.0)
  call connect(pipes, 'd', 'c', 7.0);  call connect(pipes, 'c', 't', 20.0)
  call connect(pipes, 'd', 't', 4.0)
  print *, 'flow', greatest_flow(pipes, 's', 't')
  call finish(pipes)

  can_teach = reshape((/y, y, x, x, &
                        y, x, x, x, &
                        x, y, y, x, &
                        x, x, y, y/), (/4, 4/), order=(/2, 1/))
  call matching(can_teach, mate)
  print *, 'teachers', mate

  wa = 1
  call gstar(2, 1, (/3/), (/1/), wa, f, t, w, ierr)
  n = gerrs(place)
  print '(1X, "errors", I3, " at ", A)', n, place
  n = reset_errors('nowhere')
  if (n /= 1 .or. gerrs(place) /= 0) stop 1
  print '(1X, A)', place
end program roads

integer function backwards(k)
  implicit none
  integer, intent(in) :: k
  integer :: n
  common /walk/ n

  backwards = n + 1 - k
end function backwards
