! Numbers as text.
module texts
  use kinds, only: real_kind
  implicit none

  interface to_text
    module procedure integer_text, real_text
  end interface

contains

  function integer_text(i) result(text)
    integer, intent(in) :: i
    character(len=12) :: text

    write (text, '(i12)') i
    text = adjustl(text)
  end function integer_text

  function real_text(x, digits) result(text)
    real(real_kind), intent(in) :: x
    integer, intent(in), optional :: digits
    character(len=24) :: text
    character(len=12) :: form
    integer :: d

    d = 6
    if (present(digits)) d = digits
    write (form, '(a, i2, a)') '(es24.', d, ')'
    write (text, form) x
    text = adjustl(text)
  end function real_text

end module texts
