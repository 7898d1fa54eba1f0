! A walk in steps of equal length, each turned by the same angle: how far from the start does it end?
program walk
    use polar, where_to => cartesian
    implicit none
    integer, parameter :: steps = 12
    real, parameter :: pi = 3.1415927
    type(point) :: here, start
    type(polar_point) :: seen
    integer :: i

    start = point(0.0, 0.0)
    here = start
    do i = 1, steps
        here = here + where_to(1.0, i * pi / 7)
        seen = here
        print '(i3, 2f8.3, a, f8.3)', i, here%x, here%y, '  far ', seen%radius
    end do
    if (distance(start, here) > 2.0) then
        print *, 'the walk ends far off'
    else
        print *, 'the walk ends near its start'
    end if
end program walk
