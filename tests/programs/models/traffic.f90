! Cars on a ring road that brake by chance, and queues at counters.
module traffic
  use chance
  implicit none
  private
  public :: ring_road, counters

  integer, parameter :: none = -1, top_speed = 5

  type customer
     real(wp) :: arrived
     type(customer), pointer :: behind
  end type customer

  type line
     type(customer), pointer :: head, tail
     integer :: waiting, served
     real(wp) :: free_at, waited
  end type line

contains

  ! The mean speed after some time, and the road as it then looks.
  subroutine ring_road(g, cells, cars, steps, speed, picture)
    type(generator), intent(inout) :: g
    integer, intent(in) :: cells, cars, steps
    real(wp), intent(out) :: speed
    character(len=*), intent(out), optional :: picture
    integer, dimension(0:cells - 1) :: road, next
    integer :: step, at, gap, v
    integer(selected_int_kind(9)) :: travelled

    road = none
    road(0:cells - 1:cells/cars) = 0
    travelled = 0
    do step = 1, steps
       next = none
       do at = 0, cells - 1
          v = road(at)
          if (v == none) cycle
          do gap = 1, top_speed
             if (road(mod(at + gap, cells)) /= none) exit
          end do
          v = min(v + 1, top_speed, gap - 1)
          if (v > 0) then
             if (happens(g, 0.25_wp)) v = v - 1
          end if
          next(mod(at + v, cells)) = v
          if (step > steps/2) travelled = travelled + v
       end do
       road = next
    end do
    speed = real(travelled, wp)/count(road /= none)/(steps - steps/2)
    if (present(picture)) then
       picture = repeat('.', min(cells, len(picture)))
       do at = 0, min(cells, len(picture)) - 1
          if (road(at) /= none) write (picture(at + 1:at + 1), '(I1)') road(at)
       end do
    end if
  end subroutine ring_road

  ! Customers choose the shortest line. How long they wait on the average.
  subroutine counters(g, lines, between, service, customers, mean_wait, longest)
    type(generator), intent(inout) :: g
    integer, intent(in) :: lines, customers
    real(wp), intent(in) :: between, service
    real(wp), intent(out) :: mean_wait
    integer, intent(out) :: longest
    type(line), dimension(:), allocatable, target :: queue
    type(line), pointer :: q
    type(customer), pointer :: c
    real(wp) :: now, x
    integer :: k, status, shortest(1)

    allocate (queue(lines), stat=status)
    if (status > 0) stop 99
    do k = 1, lines
       nullify (queue(k)%head, queue(k)%tail)
       queue(k)%waiting = 0; queue(k)%served = 0
       queue(k)%free_at = 0; queue(k)%waited = 0
    end do
    now = 0
    longest = 0
    do k = 1, customers
       call exponential(g, between, x)
       now = now + x
       call serve_until(now)
       shortest = minloc(queue%waiting)
       q => queue(shortest(1))
       allocate (c)
       c%arrived = now
       nullify (c%behind)
       if (associated(q%tail)) then
          q%tail%behind => c
       else
          q%head => c
       end if
       q%tail => c
       q%waiting = q%waiting + 1
       longest = max(longest, q%waiting)
    end do
    call serve_until(huge(now))
    mean_wait = sum(queue%waited)/sum(queue%served)
    deallocate (queue)

  contains

    subroutine serve_until(time)
      real(wp), intent(in) :: time
      type(customer), pointer :: first
      real(wp) :: begin
      integer :: i

      do i = 1, size(queue)
         do while (associated(queue(i)%head))
            first => queue(i)%head
            begin = max(queue(i)%free_at, first%arrived)
            if (begin > time) exit
            call exponential(g, service, x)
            queue(i)%free_at = begin + x
            queue(i)%waited = queue(i)%waited + (begin - first%arrived)
            queue(i)%served = queue(i)%served + 1
            queue(i)%waiting = queue(i)%waiting - 1
            queue(i)%head => first%behind
            if (.not. associated(queue(i)%head)) nullify (queue(i)%tail)
            deallocate (first)
         end do
      end do
    end subroutine serve_until
  end subroutine counters
end module traffic
