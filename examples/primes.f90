! Primes in a list that grows: each node holds a block of them, allocated when it is needed.
program primes
  implicit none
  type block_of_primes
    integer, pointer :: values(:)
    integer used
    type(block_of_primes), pointer :: next
  end type block_of_primes
  integer, parameter :: block_size = 100
  type(block_of_primes), pointer :: first, last, b
  logical, allocatable :: composite(:)
  integer limit, i, j, status, total
  data limit /10000/, total /0/

  allocate (composite(2:limit), stat=status)
  if (status /= 0) stop 'no room for the sieve'
  composite = .false.
  nullify (first, last)

  do i = 2, limit
    if (composite(i)) cycle
    do j = i * i, limit, i
      composite(j) = .true.
      if (i > 100) exit
    end do
    call add(i)
  end do
  deallocate (composite)

  do while (associated(first))
    total = total + first%used
    b => first
    first => first%next
    deallocate (b%values)
    deallocate (b)
  end do
  print *, total, 'primes up to', limit

contains

  subroutine add(prime)
    integer, intent(in) :: prime
    logical full
    full = .true.
    if (associated(last)) full = last%used == block_size
    if (full) then
      allocate (b)
      allocate (b%values(block_size))
      nullify (b%next)
      b%used = 0
      if (associated(last)) then
        last%next => b
      else
        first => b
      end if
      last => b
    end if
    last%used = last%used + 1
    last%values(last%used) = prime
  end subroutine add

end program primes
