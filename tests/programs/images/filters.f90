! Neighbourhood operations on gray images.
module filters
  use graymaps, level_kind => gray
  implicit none

  integer, parameter, private :: reach = 1

  real, dimension(3, 3), parameter :: box = reshape((/ &
       1.0, 1.0, 1.0, &
       1.0, 1.0, 1.0, &
       1.0, 1.0, 1.0/), (/3, 3/))
  real, dimension(3, 3), parameter :: gauss = reshape((/ &
       1.0, 2.0, 1.0, &
       2.0, 4.0, 2.0, &
       1.0, 2.0, 1.0/), shape=(/3, 3/))
  real, dimension(3, 3), parameter :: sobel_rows = reshape((/ &
       -1.0, 0.0, 1.0, -2.0, 0.0, 2.0, -1.0, 0.0, 1.0/), (/3, 3/))

  private :: mirrored, median_of

contains

  ! The index of the pixel that stands for one beyond the border.
  integer function mirrored(k, n)
    integer, intent(in) :: k, n

    mirrored = k
    if (k < 1) mirrored = 2 - k
    if (k > n) mirrored = 2*n - k
    mirrored = max(1, min(n, mirrored))
  end function mirrored

  ! The weighted sum of each neighbourhood, as reals.
  function convolve(image, kernel) result(field)
    type(graymap), intent(in) :: image
    real, intent(in) :: kernel(-reach:reach, -reach:reach)
    real :: field(image%rows, image%columns)
    integer :: i, j, p, q
    real :: total

    do j = 1, image%columns
       do i = 1, image%rows
          total = 0.0
          do q = -reach, reach
             do p = -reach, reach
                if (kernel(p, q) == 0.0) cycle
                total = total + kernel(p, q)* &
                     image%pixel(mirrored(i + p, image%rows), mirrored(j + q, image%columns))
             end do
          end do
          field(i, j) = total
       end do
    end do
  end function convolve

  subroutine smooth(image, kernel)
    type(graymap), intent(inout) :: image
    real, dimension(:, :), intent(in) :: kernel
    real, dimension(image%rows, image%columns) :: field

    field = convolve(image, kernel)/sum(kernel)
    image%pixel = int(field + 0.5, level_kind)
  end subroutine smooth

  ! The steepness at each pixel from the two slopes; above the threshold it is an edge.
  subroutine find_edges(image, edges, threshold)
    type(graymap), intent(in) :: image
    type(graymap), intent(out) :: edges
    real, intent(in), optional :: threshold
    real, dimension(:, :), allocatable :: across, down

    allocate (across(image%rows, image%columns), down(image%rows, image%columns))
    across = convolve(image, sobel_rows)
    down = convolve(image, transpose(sobel_rows))
    across = sqrt(across**2 + down**2)
    if (present(threshold)) then
       where (across >= threshold)
          across = 255.0
       elsewhere
          across = 0.0
       end where
    end if
    call new_image(edges, across, title='edges')
    deallocate (across, down)
  end subroutine find_edges

  ! Insertion sort is the quickest for nine values.
  function median_of(window) result(middle)
    integer(level_kind), dimension(:), intent(in) :: window
    integer(level_kind) :: middle
    integer(level_kind), dimension(size(window)) :: sorted
    integer(level_kind) :: held
    integer :: i, j

    sorted = window
    do i = 2, size(sorted)
       held = sorted(i)
       j = i - 1
       do
          if (j == 0) exit
          if (sorted(j) <= held) exit
          sorted(j + 1) = sorted(j)
          j = j - 1
       end do
       sorted(j + 1) = held
    end do
    middle = sorted((size(sorted) + 1)/2)
  end function median_of

  subroutine remove_specks(image)
    type(graymap), intent(inout) :: image
    integer(level_kind), allocatable, dimension(:, :) :: padded
    integer :: i, j, m, n

    m = image%rows; n = image%columns
    allocate (padded(0:m + 1, 0:n + 1))
    padded(1:m, 1:n) = image%pixel
    padded((/0, m + 1/), 1:n) = image%pixel((/1, m/), :)
    padded(:, 0) = padded(:, 1)
    padded(:, n + 1) = padded(:, n)
    do j = 1, n
       do i = 1, m
          image%pixel(i, j) = median_of(reshape(padded(i - 1:i + 1, j - 1:j + 1), (/9/)))
       end do
    end do
    deallocate (padded)
  end subroutine remove_specks

  ! Spreads the levels so that all are used about equally often.
  subroutine equalise(image)
    type(graymap), intent(inout) :: image
    integer, dimension(0:255) :: counts
    integer(level_kind), dimension(0:255) :: map
    integer :: k, i, j
    real :: share

    counts = histogram(image, 256)
    do k = 0, 255
       share = real(sum(counts(:k)))/real(max(1, size(image%pixel)))
       map(k) = clamp(255.0*share)
    end do
    do j = 1, image%columns
       image%pixel(:, j) = map(image%pixel(:, j))
    end do
    i = count(counts > 0)
    if (i == 1) image%pixel = white
  end subroutine equalise

  ! One bit a pixel: the error of each goes to the neighbours not yet seen.
  subroutine dither(image)
    type(graymap), intent(inout) :: image
    real :: work(0:image%rows + 1, 0:image%columns + 1), err
    integer :: i, j

    work = 0.0
    work(1:image%rows, 1:image%columns) = image%pixel
    do i = 1, image%rows
       do j = 1, image%columns
          image%pixel(i, j) = merge(white, black, work(i, j) >= 128.0)
          err = work(i, j) - image%pixel(i, j)
          work(i, j + 1) = work(i, j + 1) + err*7.0/16.0
          work(i + 1, j - 1:j + 1) = work(i + 1, j - 1:j + 1) + err*(/3.0, 5.0, 1.0/)/16.0
       end do
    end do
  end subroutine dither

  subroutine flip(image, upside_down)
    type(graymap), intent(inout) :: image
    logical, intent(in), optional :: upside_down
    logical :: vertical

    vertical = .false.
    if (present(upside_down)) vertical = upside_down
    if (vertical) then
       image%pixel = image%pixel(image%rows:1:-1, :)
    else
       image%pixel = image%pixel(:, image%columns:1:-1)
    endif
  end subroutine flip

end module filters
