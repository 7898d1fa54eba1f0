! Strings of bits, written and read from the left, in words of 31 bits.
module bitstreams
  use kinds, only: word => long, flag
  implicit none
  private
  public :: bitstream, open_bits, close_bits, put, get, length_of, rewind_bits, operator(==)

  integer, parameter :: word_bits = bit_size(0_word) - 1

  type bitstream
     private
     integer(word), pointer :: words(:)
     integer :: written, read
  end type bitstream

  interface put
     module procedure put_bit, put_bits, put_string
  end interface

  interface get
     module procedure get_bit
     module procedure get_bits
  end interface

  interface operator(==)
     module procedure same_bits
  end interface

contains

  subroutine open_bits(s, expected)
    type(bitstream), intent(out) :: s
    integer, intent(in), optional :: expected
    integer :: n

    n = 4
    if (present(expected)) n = max(n, expected/word_bits + 1)
    allocate (s%words(n))
    s%words = 0_word
    s%written = 0
    s%read = 0
  end subroutine open_bits

  subroutine close_bits(s)
    type(bitstream), intent(inout) :: s
    if (associated(s%words)) deallocate (s%words)
    nullify (s%words)
  end subroutine close_bits

  subroutine rewind_bits(s)
    type(bitstream), intent(inout) :: s
    s%read = 0
  end subroutine rewind_bits

  integer function length_of(s)
    type(bitstream), intent(in) :: s
    length_of = s%written
  end function length_of

  subroutine grow(s)
    type(bitstream), intent(inout) :: s
    integer(word), dimension(:), pointer :: larger
    integer :: n, status

    n = size(s%words)
    allocate (larger(2*n), stat=status)
    if (status /= 0) stop 'bitstreams: no memory'
    larger(:n) = s%words
    larger(n + 1:) = 0
    deallocate (s%words)
    s%words => larger
  end subroutine grow

  subroutine put_bit(s, bit)
    type(bitstream), intent(inout) :: s
    logical(flag), intent(in) :: bit
    integer :: w, b

    w = s%written/word_bits + 1
    b = mod(s%written, word_bits)
    if (w > size(s%words)) call grow(s)
    if (bit) s%words(w) = ibset(s%words(w), b)
    s%written = s%written + 1
  end subroutine put_bit

  ! The lowest n bits of value, the highest of them first.
  subroutine put_bits(s, value, n)
    type(bitstream), intent(inout) :: s
    integer(word), intent(in) :: value
    integer, intent(in) :: n
    integer :: k

    do k = n - 1, 0, -1
       call put_bit(s, btest(value, k))
    end do
  end subroutine put_bits

  subroutine put_string(s, text)
    type(bitstream), intent(inout) :: s
    character(len=*), intent(in) :: text
    integer :: k
    do k = 1, len(text)
       call put_bits(s, int(iachar(text(k:k)), word), 8)
    end do
  end subroutine put_string

  subroutine get_bit(s, bit, ended)
    type(bitstream), intent(inout) :: s
    logical(flag), intent(out) :: bit, ended

    ended = s%read >= s%written
    bit = .false.
    if (ended) return
    bit = btest(s%words(s%read/word_bits + 1), mod(s%read, word_bits))
    s%read = s%read + 1
  end subroutine get_bit

  subroutine get_bits(s, n, value, ended)
    type(bitstream), intent(inout) :: s
    integer, intent(in) :: n
    integer(word), intent(out) :: value
    logical(flag), intent(out) :: ended
    logical(flag) :: bit
    integer :: k

    value = 0
    do k = 1, n
       call get_bit(s, bit, ended)
       if (ended) return
       value = ior(ishft(value, 1), merge(1_word, 0_word, bit))
    end do
  end subroutine get_bits

  logical function same_bits(a, b)
    type(bitstream), intent(in) :: a, b
    integer :: whole

    same_bits = a%written == b%written
    if (.not. same_bits) return
    whole = (a%written + word_bits - 1)/word_bits
    same_bits = all(a%words(:whole) == b%words(:whole))
  end function same_bits

end module bitstreams
