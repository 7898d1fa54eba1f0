! Whole arrays: statistics, matrices, masks, shifts and packing, tables of constants made by constructors, and
! the functions of characters.

program arrays
  implicit none
  integer :: i
  integer, parameter :: months(12) = (/ 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31 /)
  integer, parameter :: squares(10) = (/ (i * i, i = 1, 10) /)
  integer, parameter :: identity(3, 3) = reshape((/ 1, 0, 0, 0, 1, 0, 0, 0, 1 /), (/ 3, 3 /))
  character(len=3), parameter :: names(12) = (/ 'jan', 'feb', 'mar', 'apr', 'may', 'jun', &
                                                'jul', 'aug', 'sep', 'oct', 'nov', 'dec' /)
  real :: rain(12), smooth(12), a(3, 3), b(3, 3), c(3, 3), v(3)
  integer :: starts(12), wettest(1), order(12)
  logical :: above(12)
  character(len=40) :: text

  rain = (/ 55.2, 40.1, 47.9, 39.8, 51.3, 62.0, 70.4, 66.6, 58.8, 60.2, 63.7, 59.9 /)

  ! sums, means and masks
  print '(1x, a, 2f8.2)', 'mean and deviation', mean(rain), deviation(rain)
  above = rain > mean(rain)
  print *, count(above), 'months are above the mean:', pack(names, above)
  wettest = maxloc(rain)
  print *, 'the wettest is ', names(wettest(1)), ', the driest of the others', &
    minval(rain, mask=above)
  smooth = (cshift(rain, -1) + 2 * rain + cshift(rain, 1)) / 4
  print '(1x, a, 12f6.1)', 'smoothed', smooth
  print *, 'largest change', maxval(abs(eoshift(rain, 1, boundary=rain(12)) - rain))

  ! running sums by a mask in two dimensions
  starts = sum(spread(months, 2, 12), dim=1, mask=lower(12)) + 1
  print '(1x, 12i4)', starts
  order = merge((/ (i, i = 1, 12) /), 0, mod(starts, 2) == 1)
  print '(1x, 12i4)', unpack(squares(1:count(order > 0)), order > 0, order)

  ! matrices
  a = reshape((/ 4.0, 1.0, 0.0, 1.0, 3.0, 1.0, 0.0, 1.0, 2.0 /), shape(a))
  b = transpose(a) - a
  if (all(b == 0)) print *, 'the matrix is symmetric'
  c = matmul(a, real(identity)) + 0.5 * identity
  v = matmul(c, (/ 1.0, 2.0, 3.0 /))
  print '(1x, a, 3f8.3)', 'product', v
  print *, 'trace', sum(pack(c, identity == 1)), 'norm', sqrt(dot_product(v, v))
  print *, 'columns', sum(c, dim=1), 'any row above 5:', any(sum(c, dim=2) > 5)

  ! characters
  text = '  three blind mice  '
  print *, '[', trim(adjustl(text)), ']', len_trim(text), index(text, 'blind'), scan(text, 'aeiou')
  print *, repeat('ab', 3), ' ', upper(trim(text)), verify('12345x', '0123456789')
  print *, (achar(iachar('a') + i), i = 0, 5), ' ', lge('b', 'a')
  print *, transfer('abcd', 1) == transfer((/ 'ab', 'cd' /), 1)

contains

  real function mean(x)
    real, intent(in) :: x(:)

    mean = sum(x) / size(x)
  end function mean

  real function deviation(x)
    real, intent(in) :: x(:)

    deviation = sqrt(sum((x - mean(x))**2) / (size(x) - 1))
  end function deviation

  ! Whether the row is before the column.
  function lower(n)
    integer, intent(in) :: n
    logical :: lower(n, n)
    integer :: row

    do row = 1, n
      lower(row, :) = (/ (row < i, i = 1, n) /)
    end do
  end function lower

  function upper(s)
    character(len=*), intent(in) :: s
    character(len=len(s)) :: upper
    integer :: k

    upper = s
    do k = 1, len(s)
      if (lle('a', s(k:k)) .and. lle(s(k:k), 'z')) then
        upper(k:k) = char(ichar(s(k:k)) - 32)
      end if
    end do
  end function upper

end program arrays
