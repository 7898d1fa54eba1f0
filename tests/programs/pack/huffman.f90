! Huffman coding. The tree is written in front of the text.
module huffman
  use bitstreams
  use kinds, only: long
  implicit none
  private
  public encode, decode, entropy

  type tree
     integer :: weight
     integer :: letter                          ! -1 within the tree
     type(tree), pointer :: left, right
  end type tree

  type tree_place
     type(tree), pointer :: at
  end type tree_place

  integer, parameter :: top = 127
  character(len=*), parameter :: digits = '01'

contains

  function letter_counts(text) result(counts)
    character(len=*), intent(in) :: text
    integer, dimension(0:top) :: counts
    integer :: k, c

    counts = 0
    do k = 1, len(text)
       c = iand(iachar(text(k:k)), top)
       counts(c) = counts(c) + 1
    end do
  end function letter_counts

  function joined(a, b) result(root)
    type(tree), pointer :: a, b, root
    allocate (root)
    root%letter = -1
    root%weight = a%weight + b%weight
    root%left => a
    root%right => b
  end function joined

  function leaf(letter, weight) result(new)
    integer, intent(in) :: letter, weight
    type(tree), pointer :: new
    allocate (new)
    new%letter = letter
    new%weight = weight
    nullify (new%left, new%right)
  end function leaf

  ! Joins the two lightest trees until one is left.
  subroutine build(counts, root)
    integer, intent(in), dimension(0:) :: counts
    type(tree), pointer :: root
    type(tree_place), dimension(size(counts)) :: forest
    integer :: n, c, k(1), one

    n = 0
    do c = 0, ubound(counts, 1)
       if (counts(c) == 0) cycle
       n = n + 1
       forest(n)%at => leaf(c, counts(c))
    end do
    nullify (root)
    if (n == 0) return
    do while (n > 1)
       k = lightest(forest(:n))
       one = k(1)
       root => forest(one)%at
       forest(one) = forest(n)
       n = n - 1
       k = lightest(forest(:n))
       forest(k(1))%at => joined(root, forest(k(1))%at)
    end do
    root => forest(1)%at

  contains

    function lightest(trees) result(place)
      type(tree_place), intent(in) :: trees(:)
      integer :: place(1), weights(size(trees)), i
      do i = 1, size(trees)
         weights(i) = trees(i)%at%weight
      end do
      place = minloc(weights)
    end function lightest
  end subroutine build

  recursive subroutine fell(root)
    type(tree), pointer :: root
    if (.not. associated(root)) return
    call fell(root%left)
    call fell(root%right)
    deallocate (root)
  end subroutine fell

  recursive subroutine list_codes(root, prefix, codes)
    type(tree), intent(in) :: root
    character(len=*), intent(in) :: prefix
    character(len=*), dimension(0:), intent(inout) :: codes

    if (root%letter >= 0) then
       codes(root%letter) = prefix
    else
       call list_codes(root%left, prefix//'0', codes)
       call list_codes(root%right, prefix//'1', codes)
    end if
  end subroutine list_codes

  recursive subroutine put_tree(s, root)
    type(bitstream), intent(inout) :: s
    type(tree), intent(in) :: root
    call put(s, root%letter >= 0)
    if (root%letter >= 0) then
       call put(s, root%letter, 7)
    else
       call put_tree(s, root%left); call put_tree(s, root%right)
    end if
  end subroutine put_tree

  recursive subroutine get_tree(s, root)
    type(bitstream), intent(inout) :: s
    type(tree), pointer :: root
    logical :: at_leaf, ended
    integer :: c

    call get(s, at_leaf, ended)
    if (at_leaf) then
       call get(s, 7, c, ended)
       root => leaf(c, 0)
    else
       root => leaf(-1, 0)
       call get_tree(s, root%left)
       call get_tree(s, root%right)
    end if
  end subroutine get_tree

  subroutine encode(text, s)
    character(len=*), intent(in) :: text
    type(bitstream), intent(inout) :: s
    character(len=top), dimension(0:top) :: codes
    type(tree), pointer :: root
    integer :: k, b, c

    call put(s, len(text), 24)
    call build(letter_counts(text), root)
    if (.not. associated(root)) return
    codes = ' '
    call list_codes(root, '', codes)
    call put_tree(s, root)
    do k = 1, len(text)
       c = iand(iachar(text(k:k)), top)
       do b = 1, len_trim(codes(c))
          call put(s, codes(c)(b:b) == digits(2:2))
       end do
    end do
    call fell(root)
  end subroutine encode

  subroutine decode(s, text, length)
    type(bitstream), intent(inout) :: s
    character(len=*), intent(out) :: text
    integer, intent(out) :: length
    type(tree), pointer :: root, here
    integer(long) :: announced
    logical :: bit, ended

    text = ''
    length = 0
    call get(s, 24, announced, ended)
    if (ended .or. announced == 0) return
    call get_tree(s, root)
    letters: do while (length < min(announced, len(text)))
       here => root
       down: do
          if (here%letter >= 0) exit down
          call get(s, bit, ended)
          if (ended) exit letters
          if (bit) then
             here => here%right
          else
             here => here%left
          endif
       end do down
       length = length + 1
       text(length:length) = achar(here%letter)
    enddo letters
    call fell(root)
  end subroutine decode

  ! Bits a letter that no code of single letters can beat.
  function entropy(text) result(bits)
    use kinds, only: wide
    character(len=*), intent(in) :: text
    real(wide) :: bits
    real(wide), dimension(0:top) :: share

    share = real(letter_counts(text), wide)/len(text)
    where (share > 0) share = -share*log(share)/log(2.0_wide)
    bits = sum(share)
  end function entropy

end module huffman
