! A dictionary from strings to integers as a height-balanced tree.
module balanced
  implicit none
  private
  integer, parameter, public :: key_length = 12

  type, public :: leaf
    private
    character(len=key_length) :: key
    integer :: value
    integer :: height
    type(leaf), pointer :: left, right
  end type leaf

  public :: plant, put, get, height_of, count_of, print_tree, fell, take_out, &
            smallest, walk_in_order

contains

  subroutine plant(root)
    type(leaf), pointer :: root
    nullify(root)
  end subroutine plant

  integer function height_of(t) result(h)
    type(leaf), pointer :: t

    if (associated(t)) then
      h = t%height
    else
      h = 0
    endif
  end function height_of

  recursive integer function count_of(t) result(n)
    type(leaf), pointer :: t

    n = 0
    if (associated(t)) n = count_of(t%left) + 1 + count_of(t%right)
  end function count_of

  subroutine correct_height(t)
    type(leaf), pointer :: t
    t%height = 1 + max(height_of(t%left), height_of(t%right))
  end subroutine correct_height

  subroutine rotate_right(t)
    type(leaf), pointer :: t, up

    up => t%left
    t%left => up%right
    up%right => t
    call correct_height(t)
    t => up
    call correct_height(t)
  end subroutine rotate_right

  subroutine rotate_left(t)
    type(leaf), pointer :: t, up

    up => t%right
    t%right => up%left
    up%left => t
    call correct_height(t)
    t => up
    call correct_height(t)
  end subroutine rotate_left

  ! Restores the balance of T after one insertion or removal below it.
  subroutine balance(t)
    type(leaf), pointer :: t

    select case (height_of(t%left) - height_of(t%right))
    case (2:)
      if (height_of(t%left%left) < height_of(t%left%right)) call rotate_left(t%left)
      call rotate_right(t)
    case (:-2)
      if (height_of(t%right%right) < height_of(t%right%left)) then
        call rotate_right(t%right)
      end if
      call rotate_left(t)
    case default
      call correct_height(t)
    end select
  end subroutine balance

  recursive subroutine put(t, key, value)
    type(leaf), pointer          :: t
    character(len=*), intent(in) :: key
    integer, intent(in)          :: value
    character(len=key_length)    :: short

    short = key
    if (.not. associated(t)) then
      allocate(t)
      t%key = short
      t%value = value
      t%height = 1
      nullify(t%left, t%right)
    else if (llt(short, t%key)) then
      call put(t%left, short, value)
      call balance(t)
    else if (lgt(short, t%key)) then
      call put(t%right, short, value)
      call balance(t)
    else
      t%value = value
    end if
  end subroutine put

  ! The value of KEY, or DEFAULT (else -1) if the key is not there.
  function get(t, key, default) result(value)
    type(leaf), pointer          :: t
    character(len=*), intent(in) :: key
    integer, optional            :: default
    integer                      :: value
    type(leaf), pointer          :: p

    value = -1
    if (present(default)) value = default
    p => t
    descend: do while (associated(p))
      if (p%key == key) then
        value = p%value
        exit descend
      end if
      if (key < p%key) then; p => p%left; else; p => p%right; end if
    end do descend
  end function get

  function smallest(t) result(key)
    type(leaf), pointer :: t
    character(len=key_length) :: key
    type(leaf), pointer :: p

    key = ''
    if (.not. associated(t)) return
    p => t
    do while (associated(p%left))
      p => p%left
    end do
    key = p%key
  end function smallest

  recursive subroutine take_out(t, key, done)
    type(leaf), pointer          :: t
    character(len=*), intent(in) :: key
    logical, intent(out)         :: done
    type(leaf), pointer          :: old

    done = .false.
    if (.not. associated(t)) return
    if (key < t%key) then
      call take_out(t%left, key, done)
    else if (key > t%key) then
      call take_out(t%right, key, done)
    else
      done = .true.
      if (.not. associated(t%left)) then
        old => t
        t => old%right
        deallocate(old)
      else if (.not. associated(t%right)) then
        old => t
        t => old%left
        deallocate(old)
      else
        ! the next larger key takes this place
        old => t%right
        do while (associated(old%left))
          old => old%left
        end do
        t%key = old%key
        t%value = old%value
        call take_out(t%right, old%key, done)
      end if
    end if
    if (associated(t)) call balance(t)
  end subroutine take_out

  recursive subroutine walk_in_order(t, visit)
    type(leaf), pointer :: t
    interface
      subroutine visit(key, value)
        character(len=*), intent(in) :: key
        integer, intent(inout)       :: value
      end subroutine visit
    end interface

    if (.not. associated(t)) return
    call walk_in_order(t%left, visit)
    call visit(t%key, t%value)
    call walk_in_order(t%right, visit)
  end subroutine walk_in_order

  ! Draws the tree lying on its side, the root at the left.
  recursive subroutine print_tree(t, level)
    type(leaf), pointer           :: t
    integer, intent(in), optional :: level
    integer :: depth

    depth = 0
    if (present(level)) depth = level
    if (.not. associated(t)) return
    call print_tree(t%right, depth + 1)
    write (*, '(1x,a,a,a,i3.1)') repeat('.   ', depth), trim(t%key), '=', t%value
    call print_tree(t%left, depth + 1)
  end subroutine print_tree

  recursive subroutine fell(t)
    type(leaf), pointer :: t

    if (.not. associated(t)) return
    call fell(t%left); call fell(t%right)
    deallocate(t)
  end subroutine fell

end module balanced
