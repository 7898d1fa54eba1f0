! What comes from the other module comes on through this one, part of it under other names.
module report
  use stock, only: wide, pair, operator(+), count => measure, store_total => total, setup, goal, weight, window
  real(wide) :: sum_of = 0
contains
  subroutine show(p)
    type(pair), intent(in) :: p
    print *, p%number
  end subroutine show
end module report
