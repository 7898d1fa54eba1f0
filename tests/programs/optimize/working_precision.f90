module working_precision
  integer, parameter :: wp = selected_real_kind(15, 200)
  real(kind=wp), parameter :: golden = 0.38196601125010515_wp
  real(kind=wp), parameter :: root_eps = 1.4901161193847656e-8_wp   ! about sqrt(epsilon)
end module working_precision
