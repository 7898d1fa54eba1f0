module fractals
  use graymaps
  implicit none
  private
  public escape_times, koch_length, newton_basins

  integer, parameter :: limit = 64

contains

  ! Escape times of z -> z**2 + c. Without seed each point is its own c.
  subroutine escape_times(image, rows, columns, corner, width, seed)
    type(graymap), intent(out) :: image
    integer, intent(in) :: rows, columns
    complex, intent(in) :: corner
    real, intent(in) :: width
    complex, intent(in), optional :: seed
    real, dimension(rows, columns) :: times
    complex :: z, c
    integer :: i, j, n
    real :: pitch

    pitch = width/columns
    do j = 1, columns
       do i = 1, rows
          z = corner + pitch*cmplx(j - 1, i - 1)
          if (present(seed)) then
             c = seed
          else
             c = z
          end if
          do n = 1, limit
             z = z*z + c
             if (real(z)**2 + aimag(z)**2 > 4.0) exit
          end do
          times(i, j) = real(n)
       end do
    end do
    call new_image(image, times, 'escape times')
  end subroutine escape_times

  ! Which root of z**3 = 1 Newton's method reaches from each point.
  subroutine newton_basins(image, n)
    type(graymap), intent(out) :: image
    integer, intent(in) :: n
    complex, dimension(3) :: roots
    complex :: z
    real, dimension(3) :: gap
    integer :: i, j, k
    integer, dimension(1) :: place

    roots = (/(1.0, 0.0), (-0.5, 0.8660254), (-0.5, -0.8660254)/)
    call new_image(image, n, n, title='basins')
    do j = 1, n
       points: do i = 1, n
          z = cmplx(2*j - n - 1, 2*i - n - 1)/n
          do k = 1, limit
             if (abs(z) < 1.0e-6) cycle points
             z = z - (z**3 - (1.0, 0.0))/(3.0*z**2)
          end do
          gap = abs(z - roots)
          place = minloc(gap)
          image%pixel(i, j) = int(80*place(1), gray)
       end do points
    end do
  end subroutine newton_basins

  ! Length of the flake's edge after so many divisions, found by walking it.
  function koch_length(depth) result(total)
    integer, intent(in) :: depth
    real :: total

    total = 0.0
    call side((0.0, 0.0), (1.0, 0.0), depth)
    total = 3.0*total

  contains

    recursive subroutine side(a, b, level)
      complex, intent(in) :: a, b
      integer, intent(in) :: level
      complex :: third, p, q, tip
      complex, parameter :: turn = (0.5, 0.8660254)

      if (level <= 0) then
         total = total + abs(b - a)
         return
      end if
      third = (b - a)/3.0
      p = a + third; q = b - third
      tip = p + third*turn
      call side(a, p, level - 1)
      call side(p, tip, level - 1)
      call side(tip, q, level - 1)
      call side(q, b, level - 1)
    end subroutine side
  end function koch_length

end module fractals
