module precision
  implicit none
  integer, parameter :: rk = kind(1.0d0)
end module precision
