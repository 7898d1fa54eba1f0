! A survey of a field: hull of the marks, area, triangles, and the part within the map's sheet.
program survey
  use polygons, cut_to => clip
  use points, real_kind => coordinate
  implicit none

  integer, parameter :: n = 12
  type(point), dimension(n) :: marks, star
  type(point), dimension(:), pointer :: hull
  type(point), dimension(40) :: part
  type(box) :: sheet
  integer, dimension(3, n) :: triangles
  integer, dimension(2, n) :: raw
  logical, dimension(n) :: kept
  integer :: k, m
  complex :: z
  real(real_kind) :: total
  real(real_kind), parameter :: pi = 3.141592653589793_real_kind
  data raw /0,0, 4,1, 8,0, 9,3, 6,4, 9,7, 5,9, 3,6, 1,8, 2,4, 0,5, -1,2/

  do k = 1, n
     marks(k) = raw(:, k)
  end do
  print 100, 'area', area(marks), 'circumference', length(marks, closed=.true.)

  call convex_hull(marks, hull)
  print '(1X, A, 12(" (", F4.1, ",", F4.1, ")"))', 'hull', hull
  print 100, 'area', area(hull), 'circumference', length(hull, .true.)

  call triangulate(marks, triangles, m)
  total = 0
  do k = 1, m
     total = total + area(marks(triangles(:, k)))
  end do
  print '(1X, I3, " triangles, together", F8.3)', m, total
  print '(4(2X, 3I3))', triangles(:, 1:m)

  sheet = box(point(1.0d0, 1.0d0), point(7.0d0, 6.0d0))
  call cut_to(marks, window=sheet, result=part, n=m)
  print 100, 'sheet', area(part(:m)), 'corners', real(m, real_kind)
  print *, inside(marks, point(5.0d0, 5.0d0)), inside(marks, point(7.5d0, 4.0d0)), inside(hull, origin + marks(5))

  do k = 1, n
     z = 2.0*exp(cmplx(0.0, 2.0*real(pi)*k/n))
     if (mod(k, 2) == 0) z = 0.5*z
     star(k) = z
  end do
  print 100, 'star', area(star), 'edge', length(star)
  call simplify(star, 0.75_real_kind, kept)
  print *, kept
  call sort_points(star)
  z = star(1)
  print '(1X, 2F7.3, L2)', z, star(1) == star(2)
  if (any(star(2:)%x < star(:n - 1)%x)) print *, 'not sorted'
  deallocate (hull)

100 format (1X, A, F9.3, ', ', A, F9.3)
end program survey
