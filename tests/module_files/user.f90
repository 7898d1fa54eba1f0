! Uses all of both modules.
program main
  use stock
  use report
  type(pair) :: p = pair(2, (/ 5, 6 /))
  type(part), pointer :: q
  type(handle) :: keep
  real :: a(3, 0:4) = 1.0
  interface
    real function scaled(y)
      real, intent(in) :: y
    end function scaled
  end interface
  integer :: values(5) = (/ 1, 2, 3, 1, 1 /), n
  n = p + p .with. origin
  print *, window(a, 'abcdef', p, values), spelled('ab', pairs)
  print *, measure(p), count(current), measure('x'), weight(3), weight()
  call outside(cells, scaled, *10)
  call leave(n, show, *10)
  call leave_now(n, *10)
10 write (*, setup)
  q => link_of(current)
  keep = open_one
  allocate (pool(2, 3))
  store_total = total + first + last + goal + long_one(3) + sparse(2) + real(z) + sum_of
  if (flag) print *, title, sizes(2), q%extent, q%weights, shape(pool), pairs(2)%extent(1)
end program main
