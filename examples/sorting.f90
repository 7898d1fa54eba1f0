! Sorting and searching: a heap sort and a merge sort with an index, a binary search, and a hash table
! with open addressing. The driver sorts pseudo-random numbers and looks each of them up again.

program sorting
  implicit none
  integer, parameter :: n = 1000, table_size = 2003
  integer :: keys(n), copy(n), order(n), table(0:table_size - 1)
  integer :: i, place, seed, misses

  seed = 12345
  do i = 1, n
    keys(i) = next_random(seed)
  end do

  copy = keys
  call heap_sort(copy, n)
  call merge_order(keys, order, n)

  misses = 0
  check: do i = 1, n
    if (copy(i) /= keys(order(i))) then
      misses = misses + 1
      cycle check
    end if
    place = binary_search(copy, n, keys(i))
    if (place == 0) misses = misses + 1
  end do check
  print *, 'sorted, differences:', misses

  table = -1
  do i = 1, n
    call insert(table, keys(i))
  end do
  if (all(lookup_all(keys))) then
    print *, 'all keys are in the table, which is', 100 * count(table >= 0) / table_size, '% full'
  end if

contains

  integer function next_random(seed)
    integer, intent(inout) :: seed
    integer, parameter :: a = 16807, m = 2147483647, q = 127773, r = 2836
    integer :: high, low

    high = seed / q
    low = mod(seed, q)
    seed = a * low - r * high
    if (seed <= 0) seed = seed + m
    next_random = seed / 1000
  end function next_random

  subroutine heap_sort(a, n)
    integer, intent(in) :: n
    integer, intent(inout) :: a(n)
    integer :: i, last

    do i = n / 2, 1, -1
      call sift_down(a, i, n)
    end do
    do last = n, 2, -1
      call swap(a(1), a(last))
      call sift_down(a, 1, last - 1)
    end do
  end subroutine heap_sort

  subroutine sift_down(a, root, last)
    integer, intent(inout) :: a(:)
    integer, intent(in) :: root, last
    integer :: parent, child

    parent = root
    do
      child = 2 * parent
      if (child > last) exit
      if (child < last) then
        if (a(child + 1) > a(child)) child = child + 1
      end if
      if (a(parent) >= a(child)) exit
      call swap(a(parent), a(child))
      parent = child
    end do
  end subroutine sift_down

  subroutine swap(x, y)
    integer, intent(inout) :: x, y
    integer :: t

    t = x
    x = y
    y = t
  end subroutine swap

  ! The order in which the keys are sorted; equal keys keep theirs.
  subroutine merge_order(keys, order, n)
    integer, intent(in) :: n, keys(n)
    integer, intent(out) :: order(n)
    integer :: other(n), width, low, i

    order = (/ (i, i = 1, n) /)
    width = 1
    do while (width < n)
      do low = 1, n, 2 * width
        call merge_runs(keys, order, other, low, min(low + width, n + 1), min(low + 2 * width, n + 1))
      end do
      order = other
      width = 2 * width
    end do
  end subroutine merge_order

  subroutine merge_runs(keys, from, to, low, middle, high)
    integer, intent(in) :: keys(:), from(:), low, middle, high
    integer, intent(inout) :: to(:)
    integer :: i, j, k
    logical :: take_left

    i = low
    j = middle
    do k = low, high - 1
      if (i >= middle) then
        take_left = .false.
      else if (j >= high) then
        take_left = .true.
      else
        take_left = keys(from(i)) <= keys(from(j))
      end if
      if (take_left) then
        to(k) = from(i)
        i = i + 1
      else
        to(k) = from(j)
        j = j + 1
      end if
    end do
  end subroutine merge_runs

  integer function binary_search(a, n, key) result(place)
    integer, intent(in) :: n, a(n), key
    integer :: low, high

    low = 1
    high = n
    place = 0
    do while (low <= high)
      place = (low + high) / 2
      select case (sign(1, key - a(place)) * min(1, abs(key - a(place))))
      case (0)
        return
      case (1:)
        low = place + 1
      case default
        high = place - 1
      end select
    end do
    place = 0
  end function binary_search

  subroutine insert(table, key)
    integer, intent(inout) :: table(0:)
    integer, intent(in) :: key
    integer :: slot

    slot = mod(key, size(table))
    do while (table(slot) /= -1 .and. table(slot) /= key)
      slot = mod(slot + 1, size(table))
    end do
    table(slot) = key
  end subroutine insert

  function lookup_all(keys) result(found)
    integer, intent(in) :: keys(:)
    logical :: found(size(keys))
    integer :: i, slot

    do i = 1, size(keys)
      slot = mod(keys(i), table_size)
      do while (table(slot) /= -1 .and. table(slot) /= keys(i))
        slot = mod(slot + 1, table_size)
      end do
      found(i) = table(slot) == keys(i)
    end do
  end function lookup_all

end program sorting
