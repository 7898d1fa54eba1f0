module quadtree
  ! A tree of squares over the stars. A leaf has one star, or several where the tree would get too
  ! deep; they are chained by `next_in_leaf`.
  use bodies
  implicit none
  private
  public :: tree, plant, fell, field_at, statistics, tree_counts, nearest_star

  integer, parameter :: deepest = 24

  type square
     real(r8), dimension(dims) :: centre, weight_centre
     real(r8) :: half_side, mass
     integer :: stars, first_star, depth
     type(square_pointer), dimension(:), pointer :: quarter
  end type square

  type square_pointer
     type(square), pointer :: to
  end type square_pointer

  type tree
     private
     type(square), pointer :: root
     integer, dimension(:), pointer :: next_in_leaf
  end type tree

  type tree_counts
     integer :: leaves, inner, deepest_level
     real :: mean_depth
  end type tree_counts

contains

  subroutine plant(t, stars)
    type(tree), intent(out) :: t
    type(body), intent(in) :: stars(:)
    real(r8), dimension(dims) :: low, high
    integer :: i
    low = (/ minval(stars%place(1)), minval(stars%place(2)) /)
    high = (/ maxval(stars%place(1)), maxval(stars%place(2)) /)
    allocate (t%next_in_leaf(size(stars)))
    t%next_in_leaf = 0
    call new_square(t%root, 0.5_r8*(low + high), 0.5_r8*maxval(high - low) + epsilon(low), 0)
    do i = 1, size(stars)
       call insert(t%root, i)
    end do
    call weigh(t%root)

  contains

    recursive subroutine insert(s, star)
      type(square), pointer :: s
      integer, intent(in) :: star
      integer :: old
      if (associated(s%quarter)) then
         call insert(s%quarter(quarter_of(s, stars(star)%place))%to, star)
      else if (s%stars == 0 .or. s%depth == deepest) then
         t%next_in_leaf(star) = s%first_star
         s%first_star = star
      else
         old = s%first_star
         s%first_star = 0
         call split(s)
         call insert(s%quarter(quarter_of(s, stars(old)%place))%to, old)
         call insert(s%quarter(quarter_of(s, stars(star)%place))%to, star)
      end if
      s%stars = s%stars + 1
    end subroutine insert

    recursive subroutine weigh(s)
      type(square), pointer :: s
      integer :: k
      s%mass = 0
      s%weight_centre = 0
      if (associated(s%quarter)) then
         do k = 1, 4
            call weigh(s%quarter(k)%to)
            s%mass = s%mass + s%quarter(k)%to%mass
            s%weight_centre = s%weight_centre + s%quarter(k)%to%mass*s%quarter(k)%to%weight_centre
         end do
      else
         k = s%first_star
         do while (k /= 0)
            s%mass = s%mass + stars(k)%mass
            s%weight_centre = s%weight_centre + stars(k)%mass*stars(k)%place
            k = t%next_in_leaf(k)
         end do
      end if
      if (s%mass > 0) s%weight_centre = s%weight_centre/s%mass
    end subroutine weigh

  end subroutine plant

  integer function quarter_of(s, place) result(k)
    type(square), intent(in) :: s
    real(r8), intent(in) :: place(dims)
    logical :: upper(dims)
    upper = place >= s%centre
    k = 1 + count(upper(1:1)) + 2*count(upper(2:2))
  end function quarter_of

  subroutine new_square(s, centre, half_side, depth)
    type(square), pointer :: s
    real(r8), dimension(dims), intent(in) :: centre
    real(r8), intent(in) :: half_side
    integer, intent(in) :: depth
    allocate (s)
    s%centre = centre
    s%half_side = half_side
    s%mass = 0
    s%stars = 0
    s%first_star = 0
    s%depth = depth
    nullify (s%quarter)
  end subroutine new_square

  subroutine split(s)
    type(square), intent(inout) :: s
    integer :: k
    real(r8) :: h
    real(r8), parameter :: direction(dims, 4) = &
         reshape((/ -1.0_r8, -1.0_r8, 1.0_r8, -1.0_r8, -1.0_r8, 1.0_r8, 1.0_r8, 1.0_r8 /), (/ dims, 4 /))
    h = 0.5_r8*s%half_side
    allocate (s%quarter(4))
    do k = 1, 4
       call new_square(s%quarter(k)%to, s%centre + h*direction(:, k), h, s%depth + 1)
    end do
  end subroutine split

  subroutine fell(t)
    type(tree), intent(inout) :: t
    call cut(t%root)
    deallocate (t%next_in_leaf)
  contains
    recursive subroutine cut(s)
      type(square), pointer :: s
      integer :: k
      if (associated(s%quarter)) then
         do k = 1, size(s%quarter)
            call cut(s%quarter(k)%to)
         end do
         deallocate (s%quarter)
      end if
      deallocate (s)
    end subroutine cut
  end subroutine fell

  ! The pull and the potential at a star. A square is one mass where it looks smaller than `opening`.
  subroutine field_at(t, stars, who, opening, softening, pull, potential, visits)
    type(tree), intent(in) :: t
    type(body), intent(in) :: stars(:)
    integer, intent(in) :: who
    real(r8), intent(in) :: opening, softening
    real(r8), intent(out) :: pull(dims), potential
    integer, intent(inout), optional :: visits
    pull = 0
    potential = 0
    call walk(t%root)
  contains
    recursive subroutine walk(s)
      type(square), intent(in) :: s
      real(r8) :: d(dims), distance
      integer :: k
      if (s%stars == 0) return
      if (present(visits)) visits = visits + 1
      d = s%weight_centre - stars(who)%place
      distance = sqrt(dot_product(d, d))
      if (.not. associated(s%quarter)) then
         k = s%first_star
         chain: do
            if (k == 0) exit chain
            if (k /= who) call attract(stars(k)%place - stars(who)%place, stars(k)%mass)
            k = t%next_in_leaf(k)
         end do chain
      else if (2*s%half_side < opening*distance) then
         call attract(d, s%mass)
      else
         do k = 1, 4
            call walk(s%quarter(k)%to)
         end do
      end if
    end subroutine walk

    subroutine attract(d, mass)
      real(r8), intent(in) :: d(:), mass
      real(r8) :: r
      r = sqrt(sum(d**2) + softening**2)
      pull = pull + mass/r**3*d
      potential = potential - mass/r
    end subroutine attract
  end subroutine field_at

  function statistics(t) result(c)
    type(tree), intent(in) :: t
    type(tree_counts) :: c
    integer :: total
    c%leaves = 0; c%inner = 0; c%deepest_level = 0
    total = 0
    call visit(t%root)
    c%mean_depth = real(total)/real(max(c%leaves, 1))
  contains
    recursive subroutine visit(s)
      type(square), intent(in) :: s
      integer :: k
      c%deepest_level = max(c%deepest_level, s%depth)
      if (associated(s%quarter)) then
         c%inner = c%inner + 1
         do k = 1, 4
            call visit(s%quarter(k)%to)
         end do
      else if (s%stars > 0) then
         c%leaves = c%leaves + 1
         total = total + s%depth
      end if
    end subroutine visit
  end function statistics

  ! The star nearest to a place, by descent into the squares that may have a nearer one
  function nearest_star(t, stars, place) result(best)
    type(tree), intent(in) :: t
    type(body), intent(in) :: stars(:)
    real(r8), intent(in) :: place(dims)
    integer :: best
    real(r8) :: best_distance
    best = 0
    best_distance = huge(best_distance)
    call search(t%root)
  contains
    recursive subroutine search(s)
      type(square), intent(in) :: s
      integer :: k
      real(r8) :: gap(dims), distance
      if (s%stars == 0) return
      gap = max(abs(place - s%centre) - s%half_side, 0.0_r8)
      if (sum(gap**2) >= best_distance) return
      if (associated(s%quarter)) then
         do k = 1, 4
            call search(s%quarter(k)%to)
         end do
         return
      end if
      k = s%first_star
      do while (k .gt. 0)
         distance = sum((stars(k)%place - place)**2)
         if (distance < best_distance) then
            best = k
            best_distance = distance
         end if
         k = t%next_in_leaf(k)
      end do
    end subroutine search
  end function nearest_star

end module quadtree
