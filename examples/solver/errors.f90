! The state of the last operation that failed. Everything but the questions is private.
module errors
  implicit none
  private
  public :: error_state, clear_error, set_error, failed, error_text, no_error, singular, bad_shape

  integer, parameter :: no_error = 0, singular = 1, bad_shape = 2
  integer, parameter :: text_length = 40

  type error_state
    private
    integer :: code
    character(len=text_length) :: place
  end type error_state

  character(len=16), parameter :: names(0:2) = (/ 'no error        ', 'singular matrix ', 'shapes differ   ' /)

  interface failed
    module procedure state_failed, code_failed
  end interface

contains

  subroutine clear_error(state)
    type(error_state), intent(out) :: state

    state = error_state(no_error, ' ')
  end subroutine clear_error

  subroutine set_error(state, code, place)
    type(error_state), intent(inout) :: state
    integer, intent(in) :: code
    character(len=*), intent(in) :: place

    if (state_failed(state)) return
    state%code = code
    state%place = place
  end subroutine set_error

  logical function state_failed(state)
    type(error_state), intent(in) :: state

    state_failed = code_failed(state%code)
  end function state_failed

  logical function code_failed(code)
    integer, intent(in) :: code

    code_failed = code /= no_error
  end function code_failed

  function error_text(state) result(text)
    type(error_state), intent(in) :: state
    character(len=text_length + 20) :: text

    text = trim(names(state%code)) // ' in ' // state%place
  end function error_text

end module errors
