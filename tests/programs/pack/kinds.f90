! The kinds that all of the packers use.
module kinds
  implicit none
  integer, parameter :: ascii = kind('A')
  integer, parameter :: short = selected_int_kind(4), long = selected_int_kind(9)
  integer, parameter :: flag = kind(.false.)
  integer, parameter :: wide = selected_real_kind(p=10, r=100)
end module kinds
