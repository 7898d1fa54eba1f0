c     Time series: smoothing, differences, autocorrelation, an
c     autoregressive model, seasonal indices and forecasts.
c
c     The series itself lies in the common block /series/, whose layout
c     the subprograms see in two ways: as one array of observations, or
c     (after the equivalence) as a table of years and months.

      subroutine tsload (iunit, *, *)
c     Reads a series.  First line: name, number of values.  Then the
c     values, eight to a line.  *1 end of file, *2 something unreadable.
      integer iunit, maxobs
      parameter (maxobs = 240)
      character*16 name
      integer nobs
      real obs(maxobs)
      common /series/ obs, nobs
      common /sernam/ name
      read (iunit, 10, end = 90, err = 95) name, nobs
   10 format (a16, i4)
      if (nobs .lt. 1 .or. nobs .gt. maxobs) return 2
      read (iunit, 20, end = 95, err = 95) (obs(i), i = 1, nobs)
   20 format (8f8.2)
      return
   90 return 1
   95 return 2
      end

      subroutine mavg (x, n, k, y, ny)
c     moving average over k values, centred; running sum
      integer n, k, ny
      real x(*), y(*)
      double precision sum
      ny = n - k + 1
      sum = 0
      do 10 i = 1, k - 1
   10 sum = sum + x(i)
      do 20 i = 1, ny
         sum = sum + x(i + k - 1)
         y(i) = sum/k
         sum = sum - x(i)
   20 continue
      end

      subroutine expsm (x, n, alpha, y)
      real x(n), y(n)
      y(1) = x(1)
      do 10 i = 2, n
   10 y(i) = alpha*x(i) + (1. - alpha)*y(i - 1)
      end

      subroutine autoc (x, n, maxlag, r, mean, var)
      integer n, maxlag, k, i
      real x(n), r(0:maxlag), mean, var
      double precision s
      s = 0
      do 10 i = 1, n
   10 s = s + x(i)
      mean = s/n
      do 30 k = 0, maxlag
         s = 0
         do 20 i = 1, n - k
   20    s = s + dble(x(i) - mean)*dble(x(i + k) - mean)
         r(k) = s/n
   30 continue
      var = r(0)
      do 40 k = maxlag, 0, -1
   40 r(k) = r(k)/r(0)
      end

      subroutine durbin (r, p, phi, pacf, sigma2)
c     Coefficients of the autoregression of order p from the
c     autocorrelations, by recursion; the partial ones on the way.
      integer p, k, j, maxp
      parameter (maxp = 24)
      real r(0:p), phi(p), pacf(p), sigma2
      double precision a(maxp), old(maxp), num, v
      if (p .gt. maxp) stop 'durbin'
      v = 1
      do 40 k = 1, p
         num = r(k)
         do 10 j = 1, k - 1
            num = num - a(j)*r(k - j)
   10    continue
         do 20 j = 1, k - 1
   20    old(j) = a(j)
         a(k) = num/v
         do 30 j = 1, k - 1
   30    a(j) = old(j) - a(k)*old(k - j)
         pacf(k) = a(k)
         v = v*(1 - a(k)**2)
   40 continue
      do 50 k = 1, p
   50 phi(k) = a(k)
      sigma2 = v
      end

      subroutine season (table, nyears, index, trend)
c     Seasonal indices of monthly data: each month's share of the mean
c     of its year, averaged over the years.
      integer nyears, i, j
      real table(12, nyears), index(12), trend(nyears), total
      do 10 i = 1, 12
   10 index(i) = 0
      do 40 j = 1, nyears
         total = 0
         do 20 i = 1, 12
   20    total = total + table(i, j)
         trend(j) = total/12
         do 30 i = 1, 12
   30    index(i) = index(i) + table(i, j)/(trend(j)*nyears)
   40 continue
      end

      subroutine fcast (x, n, mean, phi, p, y, m)
c     m forecasts after the end of the series
      integer n, p, m, i, j
      real x(n), mean, phi(p), y(m), past
      past(i) = x(n + i) - mean
      do 20 i = 1, m
         y(i) = mean
         do 10 j = 1, p
            if (i - j .ge. 1) then
               y(i) = y(i) + phi(j)*(y(i - j) - mean)
            else if (n + i - j .ge. 1) then
               y(i) = y(i) + phi(j)*past(i - j)
            end if
   10    continue
   20 continue
      end
