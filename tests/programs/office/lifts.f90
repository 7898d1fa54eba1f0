! A lift controller: calls from the floors and from within, served on the way.
module lifts
  implicit none
  private
  public :: lift, call_lift, press, step, idle, state_of, new_lift

  integer, parameter :: most_floors = 20
  integer, parameter :: up = 1, down = -1, still = 0

  type lift
     private
     integer :: floor, way, doors, travelled
     logical, dimension(most_floors) :: inside
     logical, dimension(most_floors, -1:1) :: outside
  end type lift

contains

  function new_lift(floor) result(l)
    integer, optional :: floor
    type(lift) :: l

    l%floor = 1
    if (present(floor)) l%floor = floor
    l%way = still
    l%doors = 0
    l%travelled = 0
    l%inside = .false.
    l%outside = .false.
  end function new_lift

  subroutine call_lift(l, floor, upward)
    type(lift), intent(inout) :: l
    integer, intent(in) :: floor
    logical, intent(in) :: upward
    l%outside(floor, merge(up, down, upward)) = .true.
  end subroutine call_lift

  subroutine press(l, floors)
    type(lift), intent(inout) :: l
    integer, dimension(:), intent(in) :: floors
    l%inside(floors) = .true.
  end subroutine press

  logical function wanted(l, floor)
    type(lift), intent(in) :: l
    integer, intent(in) :: floor
    wanted = l%inside(floor) .or. any(l%outside(floor, :))
  end function wanted

  logical function idle(l)
    type(lift), intent(in) :: l
    idle = .not. (any(l%inside) .or. any(l%outside)) .and. l%doors == 0
  end function idle

  ! Is there anything to do further on?
  logical function more(l, way)
    type(lift), intent(in) :: l
    integer, intent(in) :: way
    integer :: f

    more = .true.
    if (way == up) then
       do f = l%floor + 1, most_floors
          if (wanted(l, f)) return
       end do
    else
       do f = l%floor - 1, 1, -1
          if (wanted(l, f)) return
       end do
    end if
    more = .false.
  end function more

  ! One unit of time: the doors, or a stop, or one floor.
  subroutine step(l)
    type(lift), intent(inout) :: l
    logical :: stops

    if (l%doors > 0) then
       l%doors = l%doors - 1
       return
    end if
    if (l%way /= still) then
       if (.not. more(l, l%way)) l%way = merge(-l%way, still, more(l, -l%way))
    end if
    if (l%way == still) then
       if (more(l, up)) then
          l%way = up
       else if (more(l, down)) then
          l%way = down
       end if
    end if
    stops = l%inside(l%floor) .or. l%outside(l%floor, l%way) .or. &
         (wanted(l, l%floor) .and. (l%way == still .or. .not. more(l, l%way)))
    if (stops) then
       l%doors = 2
       l%inside(l%floor) = .false.
       l%outside(l%floor, l%way) = .false.
       if (.not. more(l, l%way)) l%outside(l%floor, :) = .false.
    else if (l%way /= still) then
       l%floor = l%floor + l%way
       l%travelled = l%travelled + 1
    end if
  end subroutine step

  function state_of(l) result(text)
    type(lift), intent(in) :: l
    character(len=4) :: text
    character(len=1), dimension(-1:1), parameter :: arrows = (/'v', '-', '^'/)

    text = ' '
    text(1:1) = achar(iachar('0') + l%floor/10)
    text(2:2) = achar(iachar('0') + mod(l%floor, 10))
    text(3:3) = arrows(l%way)
    if (l%doors > 0) text(4:4) = '*'
  end function state_of
end module lifts
