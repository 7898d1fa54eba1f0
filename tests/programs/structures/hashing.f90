! Hash tables with chains. A table grows when it holds two entries a slot.
module hashing
  implicit none
  private

  integer, parameter :: name_len = 20

  type :: link
    character(len=name_len)  :: name
    real                     :: number
    integer                  :: hash
    type(link), pointer      :: next
  end type link

  ! an array of pointers needs a type around the pointer
  type :: slot
    type(link), pointer :: first
  end type slot

  type :: hash_table
    private
    integer :: entries
    type(slot), dimension(:), pointer :: slots
  end type hash_table

  public :: hash_table, create, store, look_up, forget, statistics, release
  public :: hash_of

  interface store
    module procedure store_real
    module procedure store_integer
  end interface

contains

  ! A hash of the bits of the characters, never negative. Shifts and masks
  ! keep it within 24 bits, so no product overflows.
  integer function hash_of(name) result(h)
    character(len=*), intent(in) :: name
    integer :: i, c

    h = 5381
    do i = 1, len_trim(name)
      c = iachar(name(i:i))
      h = ieor(ishftc(h, 5, 24), c)
      h = iand(h + ishft(h, -7), 2**24 - 1)
    end do
  end function hash_of

  subroutine create(table, slots)
    type(hash_table), intent(out) :: table
    integer, intent(in)           :: slots
    integer :: i

    table % entries = 0
    allocate (table % slots(0:slots - 1))
    do i = 0, slots - 1
      nullify (table % slots(i) % first)
    end do
  end subroutine create

  function chain_entry(table, name, hash) result(p)
    type(hash_table), intent(in) :: table
    character(len=*), intent(in) :: name
    integer, intent(in)          :: hash
    type(link), pointer          :: p

    p => table%slots(mod(hash, size(table%slots)))%first
    do
      if (.not. associated(p)) return
      if (p%hash == hash) then
        if (p%name == name) return
      end if
      p => p%next
    end do
  end function chain_entry

  subroutine store_real(table, name, number)
    type(hash_table), intent(inout) :: table
    character(len=*), intent(in)    :: name
    real, intent(in)                :: number
    type(link), pointer             :: p
    integer                         :: h, k

    h = hash_of(name)
    p => chain_entry(table, name, h)
    if (.not. associated(p)) then
      if (table%entries >= 2 * size(table%slots)) call grow(table)
      allocate (p)
      k = mod(h, size(table%slots))
      p%name = name
      p%hash = h
      p%next => table%slots(k)%first
      table%slots(k)%first => p
      table%entries = table%entries + 1
    end if
    p%number = number
  end subroutine store_real

  subroutine store_integer(table, name, number)
    type(hash_table), intent(inout) :: table
    character(len=*), intent(in)    :: name
    integer, intent(in)             :: number

    call store_real(table, name, real(number))
  end subroutine store_integer

  ! Moves every link to its place in a table of twice as many slots.
  subroutine grow(table)
    type(hash_table), intent(inout)   :: table
    type(slot), dimension(:), pointer :: old
    type(link), pointer :: p, next
    integer :: i, k, n

    old => table%slots
    n = 2 * size(old) + 1
    allocate (table%slots(0:n - 1))
    do i = 0, n - 1
      nullify (table%slots(i)%first)
    end do
    do i = lbound(old, 1), ubound(old, 1)
      p => old(i)%first
      do while (associated(p))
        next => p%next
        k = mod(p%hash, n)
        p%next => table%slots(k)%first
        table%slots(k)%first => p
        p => next
      end do
    end do
    deallocate (old)
  end subroutine grow

  subroutine look_up(table, name, number, found)
    type(hash_table), intent(in) :: table
    character(len=*), intent(in) :: name
    real, intent(out)            :: number
    logical, intent(out)         :: found
    type(link), pointer          :: p

    p => chain_entry(table, name, hash_of(name))
    found = associated(p)
    number = 0
    if (found) number = p%number
  end subroutine look_up

  subroutine forget(table, name)
    type(hash_table), intent(inout) :: table
    character(len=*), intent(in)    :: name
    type(link), pointer :: p, before
    integer :: k

    k = mod(hash_of(name), size(table%slots))
    nullify (before)
    p => table%slots(k)%first
    do while (associated(p))
      if (p%name == name) then
        if (associated(before)) then
          before%next => p%next
        else
          table%slots(k)%first => p%next
        end if
        deallocate (p)
        table%entries = table%entries - 1
        return
      end if
      before => p
      p => p%next
    end do
  end subroutine forget

  subroutine statistics(table, entries, slots, longest, load)
    type(hash_table), intent(in)   :: table
    integer, intent(out), optional :: entries, slots, longest
    real, intent(out), optional    :: load
    integer, dimension(0:size(table%slots)-1) :: lengths
    type(link), pointer :: p
    integer :: i

    lengths = 0
    do i = 0, size(table%slots) - 1
      p => table%slots(i)%first
      do while (associated(p))
        lengths(i) = lengths(i) + 1
        p => p%next
      end do
    end do
    if (present(entries)) entries = table%entries
    if (present(slots)) slots = size(lengths)
    if (present(longest)) longest = maxval(lengths)
    if (present(load)) load = real(sum(lengths)) / size(lengths)
  end subroutine statistics

  subroutine release(table)
    type(hash_table), intent(inout) :: table
    type(link), pointer :: p
    integer :: i

    do i = 0, size(table%slots) - 1
      do
        p => table%slots(i)%first
        if (.not. associated(p)) exit
        table%slots(i)%first => p%next
        deallocate (p)
      end do
    end do
    deallocate (table%slots)
    table%entries = 0
  end subroutine release

end module hashing
