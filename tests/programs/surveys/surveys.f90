program surveys
   ! A weather survey: readings of some stations by months, some of them missing, are written to a
   ! file, read again and put into tables.
   use descriptive
   use number_models
   implicit none
   integer, parameter :: months = 12, stations = 5, unknown = -9999
   character(len=10), dimension(stations) :: name
   character(len=3), parameter :: month(months) = (/ 'Jan', 'Feb', 'Mar', 'Apr', 'May', 'Jun', &
                                                     'Jul', 'Aug', 'Sep', 'Oct', 'Nov', 'Dec' /)
   real(dp), dimension(months, stations) :: reading
   logical, dimension(months, stations) :: valid
   integer :: height(stations), order(stations), i, lun, status
   character(len=80) :: line
   real(dp), dimension(:), allocatable :: flat
   real(dp) :: x, s, k
   integer, dimension(2) :: place
   type(summary) :: all_of_them

   name = (/ 'Seaside   ', 'Northgate ', 'Highfell  ', 'Midvale   ', 'Brookton  ' /)
   height = (/ 4, 120, 1450, 310, 75 /)

   call write_survey
   call read_survey
   valid = nint(reading) /= unknown

   ! The table, with a rule of dashes by the repeat count of a group
   print 1000, 'month', name
   print 1010
   do i = 1, months
      write (line, 1020) month(i), reading(i, :)
      call blank_out(line)
      print '(a)', trim(line)
   end do
   print 1010
   print 1020, 'mean', mean(reading, dim=1, mask=valid)
   print 1030, 'max', maxval(reading, 1, valid), 'min', minval(reading, 1, valid)
1000 format (/, 1x, a5, 5(2x, a10))
1010 format (1x, 5('-'), 5(2x, 10('-')))
1020 format (1x, a5, 5(2x, f10.2))
1030 format ((1x, a5, 5(2x, f10.2)))

   ! Where and when
   place = maxloc(reading, mask=valid)
   print '(1x, 4a)', 'warmest: ', name(place(2)), ' in ', month(place(1))
   place = minloc(reading, valid)
   print '(1x, 4a)', 'coldest: ', trim(name(place(2))), ' in ', month(place(1))
   print *, 'stations without holes: ', count(all(valid, dim=1)), ' any month without: ', &
      any(count(.not. valid, dim=2) == stations)
   print '(1x, a, 12l2)', 'frost', any(reading < 0 .and. valid, dim=2)

   allocate (flat(count(valid)))
   flat = pack(reading, valid)
   all_of_them = summarize(flat, spread(.true., 1, size(flat)))
   print '(1x, i4, 7f9.3)', all_of_them
   call moments(flat, x, skewness=s, kurtosis=k)
   print '(1x, a, 3f9.3)', 'moments', x, s, k
   print '(1x, a, 8i4)', 'histogram', histogram(flat, 8)
   print '(1x, a, 4i4)', 'by edges ', histogram(flat, (/ 0.0_dp, 10.0_dp, 20.0_dp /))
   deallocate (flat)

   print '(1x, a, f8.4)', 'height and mean', correlation(real(height, dp), mean(reading, 1, valid))
   print '(1x, a, 5f5.1)', 'ranks', ranks(mean(reading, 1, valid))
   print '(1x, a, 10f7.2)', 'running', running_mean(reading(:, 1), 3)
   print '(1x, a, 2f9.4)', 'medians', median(reading(:, 1)), mean(height)
   reading = unpack(pack(reading, valid), valid, field=spread(mean(reading, 1, valid), 1, months))
   print '(1x, a, 5f9.3)', 'variances', variance(reading, 1)
   call sort(name, order)
   print '(1x, 5(a, i5, "m", :, "; "))', (trim(name(i)), height(order(i)), i = 1, stations)
   call sort(height)
   print *, height(stations:1:-1)

   ! The numbers themselves
   call describe(1.0_sp, 6)
   call describe(1.0_dp, unit=6)
   print *, ulps_apart(1.0_sp, nearest(1.0_sp, 1.0_sp)), ulps_apart(2.0_dp, nearest(2.0_dp, 1.0))
   print '(1x, 3f18.14)', (round_to_bits(acos(-1.0_dp), i), i = 4, 12, 4)
   print '(1x, 10i2)', digits_of(huge(1))
   print '(1x, 3i3, 2l2)', integer_kinds, integer_kinds(3) == kind(1), bit_size(1) == 32

contains

   ! Sums of waves and of little numbers stand for readings.
   subroutine write_survey
      integer :: m, n
      real(dp), parameter :: turn = 6.2831853071795865_dp
      lun = 12
      open (unit=lun, file='survey.txt', status='replace', action='write', recl=200, iostat=status)
      if (status /= 0) stop 'surveys: no file can be written'
      do n = 1, stations
         do m = 1, months
            reading(m, n) = 11 - 0.006_dp*height(n) - (6 + n)*cos(turn*(m - 0.5_dp*mod(n, 2))/months) &
               + 0.1_dp*mod(7*m + 3*n, 11)
         end do
      end do
      reading(3, 2) = unknown
      reading((/ 7, 8, 11 /), 4) = unknown
      write (lun, '(a)') '! station, height, twelve readings'
      do n = 1, stations
         write (lun, '(a, 1x, i5, 12(1x, f8.2))', err=10) name(n), height(n), reading(:, n)
      end do
      endfile (lun)
      close (lun)
      return
10    print *, 'the disk is full'
      stop 1
   end subroutine write_survey

   subroutine read_survey
      integer :: n
      character(len=200) :: text
      reading = unknown
      open (lun, file='survey.txt', status='old', action='read', position='rewind')
      n = 0
      do
         read (lun, '(a)', iostat=status) text
         if (status < 0) exit
         if (status > 0 .or. scan(text(1:1), '!#') == 1) cycle
         n = n + 1
         name(n) = text(:10)
         read (text(11:), *, iostat=status) height(n), reading(:, n)
         if (status /= 0) print '(1x, 2a)', 'not understood: ', text(:40)
      end do
      close (lun, status='delete')
   end subroutine read_survey

   ! Missing values become dots.
   subroutine blank_out(text)
      character(len=*), intent(inout) :: text
      integer :: at
      do
         at = index(text, '-9999.00')
         if (at == 0) exit
         text(at:at + 7) = repeat(' ', 5) // '...'
      end do
   end subroutine blank_out

end program surveys
