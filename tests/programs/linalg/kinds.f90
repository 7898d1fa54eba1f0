!> Kinds and constants that the linear algebra shares.
module kinds
  implicit none
  private
  integer, parameter, public :: sp = selected_real_kind(6, 37)
  integer, parameter, public :: dp = selected_real_kind(p=15, r=307)
  integer, parameter, public :: i1 = selected_int_kind(2)
  integer, parameter, public :: i4 = selected_int_kind(9)

  real(sp), parameter, public :: pi_sp = 3.14159265_sp
  real(dp), parameter, public :: pi_dp = 3.14159265358979323846_dp
  complex(dp), parameter, public :: imag_unit = (0.0_dp, 1.0_dp)

  ! Status codes of the solvers
  integer(i4), parameter, public :: stat_ok = 0_i4, stat_singular = 1_i4, &
                                    stat_not_definite = 2_i4, stat_no_convergence = 3_i4, &
                                    stat_bad_shape = 4_i4

  public :: status_text
contains
  !> The text of a status code, padded to 24 characters.
  function status_text(code) result(text)
    integer(i4), intent(in) :: code
    character(len=24) :: text
    select case (code)
    case (stat_ok)
       text = 'ok'
    case (stat_singular)
       text = 'matrix is singular'
    case (stat_not_definite)
       text = 'not positive definite'
    case (stat_no_convergence)
       text = 'no convergence'
    case (stat_bad_shape)
       text = 'shapes do not conform'
    case default
       write (text, '(a,i6)') 'unknown code ', code
    end select
  end function status_text
end module kinds
