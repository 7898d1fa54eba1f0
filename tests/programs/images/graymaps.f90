! Gray images in memory and as plain portable graymaps (magic number P2).
module graymaps
  implicit none
  private

  integer, parameter, public :: byte_range = 4
  integer, parameter, public :: gray = selected_int_kind(byte_range)
  integer(gray), parameter, public :: white = 255_gray, black = 0_gray

  type, public :: graymap
     character(len=32) :: title
     integer :: rows, columns
     integer(gray), dimension(:, :), pointer :: pixel
  end type graymap

  interface new_image
     module procedure new_blank, new_from_reals
  end interface

  interface operator(.over.)
     module procedure blend_over
  end interface

  interface operator(-)
     module procedure difference, negative
  end interface

  interface assignment(=)
     module procedure copy_image, fill_image
  end interface

  public :: new_image, dispose, write_pgm, read_pgm, clamp, histogram
  public :: operator(.over.), operator(-), assignment(=), print_picture

contains

  ! Any real value becomes a gray level between black and white.
  function clamp(value) result(level)
    real, intent(in) :: value
    integer(gray) :: level

    level = int(max(0.0, min(255.0, value + 0.5)), gray)
  end function clamp

  subroutine new_blank(image, rows, columns, level, title)
    type(graymap), intent(out) :: image
    integer, intent(in) :: rows, columns
    integer(gray), intent(in), optional :: level
    character(len=*), intent(in), optional :: title
    integer :: status

    image%rows = rows
    image%columns = columns
    image%title = ' '
    if (present(title)) image%title = title
    allocate (image%pixel(rows, columns), stat=status)
    if (status /= 0) stop 'new_image: out of memory'
    if (present(level)) then
       image%pixel = level
    else
       image%pixel = black
    end if
  end subroutine new_blank

  ! The smallest value becomes black and the greatest white.
  subroutine new_from_reals(image, field, title)
    type(graymap), intent(out) :: image
    real, dimension(:, :), intent(in) :: field
    character(len=*), intent(in), optional :: title
    real :: low, span
    integer :: i, j

    call new_blank(image, size(field, 1), size(field, dim=2), title=title)
    low = minval(field)
    span = maxval(field) - low
    if (span <= 0.0) return
    do j = 1, image%columns
       do i = 1, image%rows
          image%pixel(i, j) = clamp(255.0*(field(i, j) - low)/span)
       end do
    end do
  end subroutine new_from_reals

  subroutine dispose(image)
    type(graymap), intent(inout) :: image

    if (associated(image%pixel)) deallocate (image%pixel)
    nullify (image%pixel)
    image%rows = 0; image%columns = 0
  end subroutine dispose

  ! Assignment copies the pixels: two images never share them.
  subroutine copy_image(to, from)
    type(graymap), intent(out) :: to
    type(graymap), intent(in) :: from

    call new_blank(to, from%rows, from%columns, title=from%title)
    to%pixel = from%pixel
  end subroutine copy_image

  subroutine fill_image(to, level)
    type(graymap), intent(inout) :: to
    integer, intent(in) :: level

    to%pixel(:, :) = clamp(real(level))
  end subroutine fill_image

  ! The mean of both, where they overlap; elsewhere the left one.
  function blend_over(upper, lower) result(mixed)
    type(graymap), intent(in) :: upper, lower
    type(graymap) :: mixed
    integer :: m, n

    call copy_image(mixed, upper)
    m = min(upper%rows, lower%rows)
    n = min(upper%columns, lower%columns)
    mixed%pixel(:m, :n) = (upper%pixel(:m, :n) + lower%pixel(:m, :n))/2_gray
  end function blend_over

  function difference(a, b) result(d)
    type(graymap), intent(in) :: a, b
    type(graymap) :: d

    call copy_image(d, a)
    d%pixel = abs(a%pixel - b%pixel)
  end function difference

  function negative(a) result(n)
    type(graymap), intent(in) :: a
    type(graymap) :: n

    call copy_image(n, a)
    n%pixel = white - a%pixel
  end function negative

  ! How many pixels there are of each level, in equal classes.
  function histogram(image, classes) result(counts)
    type(graymap), intent(in) :: image
    integer, intent(in) :: classes
    integer, dimension(classes) :: counts
    integer :: k, low, high

    do k = 1, classes
       low = (k - 1)*256/classes
       high = k*256/classes - 1
       counts(k) = count(image%pixel >= low .and. image%pixel <= high)
    end do
  end function histogram

  subroutine write_pgm(image, unit, name, status)
    type(graymap), intent(in) :: image
    integer, intent(in) :: unit
    character(len=*), intent(in) :: name
    integer, intent(out) :: status
    integer :: i

    open (unit=unit, file=name, status='REPLACE', action='WRITE', form='FORMATTED', iostat=status)
    if (status /= 0) return
    write (unit, '(A)') 'P2'
    if (len_trim(image%title) > 0) write (unit, '("# ", A)') trim(image%title)
    write (unit, '(I6, 1X, I6)') image%columns, image%rows
    write (unit, *) maxval(image%pixel)
    do i = 1, image%rows
       write (unit, '(16(1X, I3))') image%pixel(i, :)
    end do
    close (unit, status='KEEP')
  end subroutine write_pgm

  subroutine read_pgm(image, unit, name, status)
    type(graymap), intent(out) :: image
    integer, intent(in) :: unit
    character(len=*), intent(in) :: name
    integer, intent(out) :: status
    character(len=80) :: line, title
    integer :: rows, columns, top, i

    open (unit, file=name, status='OLD', action='READ', iostat=status)
    if (status /= 0) return
    title = ' '
    read (unit, '(A)', iostat=status) line
    if (status /= 0 .or. line /= 'P2') then
       status = max(status, 1)
       close (unit)
       return
    end if
    comments: do
       read (unit, fmt='(A)', iostat=status) line
       if (status /= 0) return
       if (line(1:1) /= '#') exit comments
       title = adjustl(line(2:))
    end do comments
    read (line, fmt=*, iostat=status) columns, rows
    if (status /= 0) return
    read (unit, *) top
    call new_blank(image, rows, columns, title=title)
    do i = 1, rows
       read (unit, *, err=900, end=900) image%pixel(i, 1:columns)
    end do
    if (top /= white) where (image%pixel > top) image%pixel = int(top, gray)
    close (unit)
    return

900 continue
    status = -1
    call dispose(image)
    close (unit)
  end subroutine read_pgm

  ! A rough view on the terminal: one letter for a cell of pixels.
  subroutine print_picture(image, height, width)
    type(graymap), intent(in) :: image
    integer, intent(in) :: height, width
    character(len=*), parameter :: shades = '@%#*+=-:. '
    character(len=width) :: line
    integer :: i, j, k, r1, r2, c1, c2

    do i = 1, height
       r1 = (i - 1)*image%rows/height + 1
       r2 = max(r1, i*image%rows/height)
       do j = 1, width
          c1 = (j - 1)*image%columns/width + 1
          c2 = max(c1, j*image%columns/width)
          k = sum(int(image%pixel(r1:r2, c1:c2)))/((r2 - r1 + 1)*(c2 - c1 + 1))
          k = 1 + k*len(shades)/256
          line(j:j) = shades(k:k)
       end do
       print '(3X, A)', trim(line)
    end do
  end subroutine print_picture

end module graymaps
