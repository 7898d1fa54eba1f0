c     Writes two series to a scratch file, reads them back, and reports.
      program tsmain
      integer maxobs, lag, ny, nobs, iu
      parameter (maxobs = 240, lag = 6, iu = 21)
      character*16 name
      real obs(maxobs), table(12, 20), phi(lag), pacf(lag), r(0:lag)
      real mean, y(maxobs), index(12), trend(20), sigma2, next(12)
      equivalence (obs(1), table(1, 1))
      common /series/ obs, nobs
      common /sernam/ name
      character*3 months(12)
      save months
      data months /'jan', 'feb', 'mar', 'apr', 'may', 'jun', 'jul',
     &             'aug', 'sep', 'oct', 'nov', 'dec'/

      open (iu, status = 'scratch', form = 'formatted', err = 900)
      call make (iu)
      rewind iu

  100 call tsload (iu, *800, *900)
      write (*, 10) name, nobs
      call autoc (obs, nobs, lag, r, mean, var)
      call durbin (r, lag, phi, pacf, sigma2)
      write (*, 20) mean, sqrt(var)
      write (*, 30) (k, r(k), pacf(k), k = 1, lag)
      call fcast (obs, nobs, mean, phi, 2, next, 4)
      write (*, 40) 'forecast', (next(k), k = 1, 4)
      if (mod(nobs, 12) .eq. 0 .and. nobs .ge. 48) then
         call season (table, nobs/12, index, trend)
         write (*, 50) (months(k), 100*index(k), k = 1, 12)
         write (*, 40) 'trend', (trend(k), k = 1, nobs/12)
         call mavg (obs, nobs, 12, y, ny)
         write (*, 40) 'smooth', (y(k), k = 1, ny, 12)
      else
         call expsm (obs, nobs, 0.3, y)
         write (*, 40) 'smooth', (y(k), k = 1, nobs, 20)
      end if
      go to 100

  800 print *, 'end of the series'
      close (iu)
      stop
  900 print *, 'bad input'
   10 format (/' series ', a, i5, ' values')
   20 format (' mean', f10.3, '   standard deviation', f10.3)
   30 format (' lag ', i2, 2f9.4)
   40 format (1x, a8, 6f9.2 : / (9x, 6f9.2))
   50 format (1x, 4(a3, f8.1, 2x))
      end

      subroutine make (iu)
c     one series without and one with seasons
      integer iu, i, n
      parameter (n = 120)
      real x(n), e, pi
      integer iseed
      data iseed /4321/, pi /3.14159265/
      x(1) = 20
      x(2) = 20
      do 10 i = 3, n
         iseed = mod(iseed*137 + 4711, 65536)
         e = iseed/65536.0 - 0.5
         x(i) = 20 + 1.2*(x(i-1) - 20) - 0.5*(x(i-2) - 20) + 4*e
   10 continue
      write (iu, 30) 'autoregressive', n - 10, (x(i), i = 11, n)
      do 20 i = 1, 60
         x(i) = (100 + 0.5*i)*(1 + 0.25*sin(pi*i/6))
   20 continue
      write (iu, 30) 'sales', 60, (x(i), i = 1, 60)
   30 format (a16, i4 / (8f8.2))
      end
