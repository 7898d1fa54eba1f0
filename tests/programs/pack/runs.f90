module runs
  ! Run lengths: a run of four or more becomes an escape, a count and the letter.  Counts are written as
  ! characters from the blank on.
  implicit none
  private
  public :: squeeze_runs, expand_runs
  character, parameter :: escape = '~'
  integer, parameter :: longest = 94, shortest = 4, base = 32

contains

  subroutine squeeze_runs(text, packed, n)
    character(len=*), intent(in) :: text
    character(len=*), intent(out) :: packed
    integer, intent(out) :: n
    integer :: k, r

    n = 0
    k = 1
    packed = ' '
    do while (k <= len(text))
       r = 1
       do
          if (k + r > len(text) .or. r >= longest) exit
          if (text(k + r:k + r) /= text(k:k)) exit
          r = r + 1
       end do
       if (r >= shortest .or. text(k:k) == escape) then
          call add(escape//char(base + r)//text(k:k))
       else
          call add(repeat(text(k:k), r))
       end if
       k = k + r
    end do
  contains
    subroutine add(piece)
      character(*), intent(in) :: piece
      packed(n + 1:n + len(piece)) = piece
      n = n + len(piece)
    end subroutine add
  end subroutine squeeze_runs

  function expand_runs(packed, room) result(text)
    character(len=*), intent(in) :: packed
    integer, intent(in) :: room
    character(len=room) :: text
    integer :: k, n, r

    k = 1; n = 0; text = ' '
    do
       if (k > len(packed)) exit
       if (packed(k:k) == escape) then
          r = ichar(packed(k + 1:k + 1)) - base
          text(n + 1:n + r) = repeat(packed(k + 2:k + 2), r)
          k = k + 3
       else
          r = 1
          text(n + 1:n + 1) = packed(k:k)
          k = k + 1
       end if
       n = n + r
    end do
  end function expand_runs
end module runs
