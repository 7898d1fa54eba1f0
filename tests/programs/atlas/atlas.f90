! Distances between towns and their places on several maps.
program atlas
  use angles
  implicit none

  interface
     subroutine mpinit(name, ierr)
       character(len=*) :: name
       integer :: ierr
     end subroutine mpinit
     subroutine mporig(lat0, lon0, lat1, lat2)
       double precision :: lat0, lon0, lat1, lat2
     end subroutine mporig
     double precision function gcdist(lat1, lon1, lat2, lon2)
       double precision :: lat1, lon1, lat2, lon2
     end function gcdist
     double precision function course(lat1, lon1, lat2, lon2)
       double precision :: lat1, lon1, lat2, lon2
     end function course
  end interface
  external mercat, merinv, lambrt, laminv, eqarea, eqainv

  integer, parameter :: n = 4
  character(len=10), dimension(n), parameter :: towns = (/'Berlin    ', 'Lisbon    ', 'Reykjavik ', 'Helsinki  '/)
  character(len=12), dimension(2, n) :: places
  type(angle), dimension(2, n) :: given
  type(angle) :: a
  real(dp) :: at(2, n), table(n, n)
  integer :: i, j, ierr
  character(len=14) :: north, east

  data places / '52 31 12N', '13 24 18E', '38 42 50N', '9 8 22W', &
       '64 8N', '21 56W', '60 10 10N', '24 56E' /

  do j = 1, n
     do i = 1, 2
        given(i, j) = places(i, j)
        at(i, j) = given(i, j)
     end do
     north = written(given(1, j), 'NS')
     east = written(given(2, j), 'EW')
     print '(1X, A, 2X, A, 2X, A, 2F10.4)', towns(j), north, east, at(:, j)
  end do

  do i = 1, n
     do j = 1, n
        table(i, j) = gcdist(at(1, i), at(2, i), at(1, j), lon2=at(2, j))
     end do
     write (*, '(1X, A, 4F9.1, " km")') towns(i), convert(table(i, :), to='km')
  end do
  write (*, '(1X, A, F8.2, A)') 'Berlin to Lisbon', convert(table(1, 2), 'm', 'nmi'), ' nautical miles'
  a = course(at(1, 1), at(2, 1), at(1, 2), at(2, 2))
  north = written(a, '  ')
  print *, 'course', north

  call mpinit('GRS80', ierr)
  if (ierr /= 0) stop 'no such ellipsoid'
  call mporig(lat0=52.0_dp, lon0=10.0_dp, lat1=35.0_dp, lat2=65.0_dp)
  call try('Mercator', mercat, merinv)
  call try('Lambert', lambrt, laminv)
  call try('equal area', eqarea, eqainv)
  call mpinit('MARS', ierr)
  if (ierr == 1) print *, 'Mars is not there'

contains

  ! All towns there and back: the places and the greatest error.
  subroutine try(name, there, back)
    character(len=*), intent(in) :: name
    external there, back
    real(dp) :: x, y, lat, lon, worst
    integer :: k

    worst = 0
    do k = 1, n
       call there(at(1, k), at(2, k), x, y)
       call back(x, y, lat, lon)
       worst = max(worst, abs(lat - at(1, k)), abs(lon - at(2, k)))
       print '(1X, A, 2F11.3)', towns(k), convert(x, to='km'), convert(y, to='km')
    end do
    print '(1X, A, L2)', name, worst < 1.0e-9_dp
  end subroutine try

end program atlas
