! The kinds of numbers that all modules use.
module kinds
  implicit none
  integer, parameter :: real_kind = kind(1.0d0)
  integer, parameter :: index_kind = selected_int_kind(9)
  real(real_kind), parameter :: tiny_pivot = 1.0e-12_real_kind
end module kinds
