module descriptive
   ! Statistics of samples, of one or two dimensions, with holes: a mask tells which values count.
   implicit none
   private
   integer, parameter :: sp = kind(1.0), dp = kind(1.0d0)
   public :: mean, variance, median, quantile, correlation, histogram, ranks, standardize, sort, &
             running_mean, moments, summary, summarize, sp, dp

   type summary
      integer :: n
      real(dp) :: mean, deviation, least, greatest, quartile(3)
   end type summary

   interface mean
      module procedure mean_1_sp, mean_1_dp, mean_2_dp, mean_2_dim_dp, mean_1_int
   end interface

   interface variance
      module procedure variance_1_sp, variance_1_dp, variance_2_dim_dp
   end interface

   interface sort
      module procedure sort_dp, sort_int, sort_text
   end interface

   interface histogram
      module procedure histogram_bins, histogram_edges
   end interface

contains

   real(sp) function mean_1_sp(x, mask) result(m)
      real(sp), intent(in) :: x(:)
      logical, intent(in), optional :: mask(:)
      if (present(mask)) then
         m = sum(x, mask=mask)/max(1, count(mask))
      else
         m = sum(x)/max(1, size(x))
      end if
   end function mean_1_sp

   real(dp) function mean_1_dp(x, mask) result(m)
      real(dp), intent(in) :: x(:)
      logical, intent(in), optional :: mask(:)
      if (present(mask)) then
         m = sum(x, mask=mask)/max(1, count(mask))
      else
         m = sum(x)/max(1, size(x))
      end if
   end function mean_1_dp

   real(dp) function mean_1_int(k) result(m)
      integer, intent(in) :: k(:)
      m = real(sum(k), dp)/max(1, size(k))
   end function mean_1_int

   real(dp) function mean_2_dp(x) result(m)
      real(dp), intent(in) :: x(:, :)
      m = sum(x)/max(1, size(x))
   end function mean_2_dp

   ! Over one dimension; the mask has the shape of x
   function mean_2_dim_dp(x, dim, mask) result(m)
      real(dp), intent(in) :: x(:, :)
      integer, intent(in) :: dim
      logical, intent(in), optional :: mask(:, :)
      real(dp) :: m(size(x, 3 - dim))
      if (present(mask)) then
         m = sum(x, dim, mask)/max(1, count(mask, dim))
      else
         m = sum(x, dim)/size(x, dim)
      end if
   end function mean_2_dim_dp

   function variance_1_sp(x) result(v)
      real(sp), intent(in) :: x(:)
      real(sp) :: v
      v = sum((x - mean(x))**2)/max(1, size(x) - 1)
   end function variance_1_sp

   function variance_1_dp(x, mask) result(v)
      real(dp), intent(in) :: x(:)
      logical, intent(in), optional :: mask(:)
      real(dp) :: v
      if (present(mask)) then
         v = sum((x - mean(x, mask))**2, mask=mask)/max(1, count(mask) - 1)
      else
         v = sum((x - mean(x))**2)/max(1, size(x) - 1)
      end if
   end function variance_1_dp

   function variance_2_dim_dp(x, dim) result(v)
      real(dp), intent(in) :: x(:, :)
      integer, intent(in) :: dim
      real(dp) :: v(size(x, 3 - dim))
      v = sum((x - spread(mean(x, dim), dim, size(x, dim)))**2, dim=dim)/max(1, size(x, dim) - 1)
   end function variance_2_dim_dp

   ! The first moments about the mean, the rest of the arguments are optional
   subroutine moments(x, m, deviation, skewness, kurtosis)
      real(dp), intent(in) :: x(:)
      real(dp), intent(out) :: m
      real(dp), intent(out), optional :: deviation, skewness, kurtosis
      real(dp) :: d(size(x)), s
      m = mean(x)
      d = x - m
      s = sqrt(variance(x))
      if (present(deviation)) deviation = s
      if (s > 0) d = d/s
      if (present(skewness)) skewness = mean(d**3)
      if (present(kurtosis)) kurtosis = mean(d**4) - 3
   end subroutine moments

   recursive subroutine sort_dp(x)
      real(dp), intent(inout) :: x(:)
      real(dp) :: pivot, small(size(x)), large(size(x))
      integer :: n_small, n_large
      if (size(x) < 2) return
      pivot = x((size(x) + 1)/2)
      n_small = count(x < pivot)
      n_large = count(x > pivot)
      small(:n_small) = pack(x, x < pivot)
      large(:n_large) = pack(x, x > pivot)
      call sort_dp(small(:n_small))
      call sort_dp(large(:n_large))
      x(:n_small) = small(:n_small)
      x(n_small+1:size(x)-n_large) = pivot
      x(size(x)-n_large+1:) = large(:n_large)
   end subroutine sort_dp

   subroutine sort_int(k)
      integer, dimension(:), intent(inout) :: k
      integer :: i, j, t
      do i = 2, size(k)
         t = k(i)
         do j = i - 1, 1, -1
            if (k(j) <= t) exit
            k(j + 1) = k(j)
         end do
         k(j + 1) = t
      end do
   end subroutine sort_int

   ! Alphabetically, by the order of ASCII
   subroutine sort_text(words, order)
      character(len=*), intent(inout) :: words(:)
      integer, intent(out), optional :: order(:)
      character(len=len(words)) :: t
      integer :: i, j, o(size(words)), k
      o = (/ (i, i = 1, size(words)) /)
      do i = 2, size(words)
         t = words(i); k = o(i)
         j = i - 1
         do while (j >= 1)
            if (.not. lgt(words(j), t)) exit
            words(j + 1) = words(j); o(j + 1) = o(j)
            j = j - 1
         end do
         words(j + 1) = t; o(j + 1) = k
      end do
      if (present(order)) order = o
   end subroutine sort_text

   function quantile(x, p) result(q)
      real(dp), intent(in) :: x(:), p(:)
      real(dp) :: q(size(p)), s(size(x)), place
      integer :: i, k
      s = x
      call sort(s)
      do i = 1, size(p)
         place = 1 + p(i)*(size(x) - 1)
         k = min(int(place), size(x) - 1)
         q(i) = s(k) + (place - k)*(s(k + 1) - s(k))
      end do
   end function quantile

   real(dp) function median(x)
      real(dp), intent(in) :: x(:)
      real(dp) :: q(1)
      q = quantile(x, (/ 0.5_dp /))
      median = q(1)
   end function median

   real(dp) function correlation(x, y)
      real(dp), dimension(:), intent(in) :: x, y
      correlation = dot_product(standardize(x), standardize(y))/(size(x) - 1)
   end function correlation

   function standardize(x) result(z)
      real(dp), intent(in) :: x(:)
      real(dp), dimension(lbound(x, 1):ubound(x, 1)) :: z
      z = (x - mean(x))/sqrt(variance(x))
   end function standardize

   ! Equal values share the mean of their ranks.
   function ranks(x) result(r)
      real(dp), intent(in) :: x(:)
      real(dp), dimension(size(x)) :: r
      r = count(spread(x, 2, size(x)) > spread(x, 1, size(x)), dim=2) &
        + 0.5_dp*(count(spread(x, 2, size(x)) == spread(x, 1, size(x)), dim=2) + 1)
   end function ranks

   function histogram_bins(x, bins) result(h)
      real(dp), intent(in) :: x(:)
      integer, intent(in) :: bins
      integer :: h(bins), b(size(x)), i
      b = min(bins, 1 + int(bins*(x - minval(x))/(maxval(x) - minval(x))))
      h = (/ (count(b == i), i = 1, bins) /)
   end function histogram_bins

   function histogram_edges(x, edges) result(h)
      real(dp), intent(in) :: x(:), edges(:)
      integer :: h(0:size(edges)), i
      h(0) = count(x < edges(1))
      do i = 1, size(edges) - 1
         h(i) = count(x >= edges(i) .and. x < edges(i + 1))
      end do
      h(size(edges)) = count(x >= edges(size(edges)))
   end function histogram_edges

   ! Over `width` values each, the first complete
   function running_mean(x, width) result(m)
      real(dp), intent(in) :: x(:)
      integer, intent(in) :: width
      real(dp) :: m(size(x) - width + 1)
      integer :: k
      m = 0
      do k = 1, width
         m = m + x(k:size(x) - width + k)
      end do
      m = m/width
   end function running_mean

   function summarize(x, mask) result(s)
      real(dp), intent(in) :: x(:)
      logical, intent(in) :: mask(:)
      type(summary) :: s
      s = summary(count(mask), mean(x, mask), sqrt(variance(x, mask)), minval(x, mask=mask), &
                  maxval(x, mask=mask), quantile(pack(x, mask), (/ 0.25_dp, 0.5_dp, 0.75_dp /)))
   end function summarize

end module descriptive
