! A correct program. The marks "!@" are the places where mistakes.txt puts lines.
module orders
   integer, parameter :: limit = 10
   !@module
   type item
      character(8) :: name
      integer :: count(3), grid(2, 2)
      real :: weight
      !@type
   end type item
end module orders

subroutine ship(list, n, rate, note, proc)
   use orders
   !@implicit
   integer, intent(in) :: n
   type(item), intent(inout) :: list(n)
   real :: rate
   character(*) :: note
   optional :: proc
   !@spec
   external proc
   !@names
   real :: prices(limit), total
   logical :: done
   integer :: i, k
   total = 0.0
   prices = 1.5
   done = .false.
   do i = 1, n
      if (list(i)%count(1) > 0) then
         k = min(i, limit)
         !@exec
         total = total + prices(k) * rate
      else
         list(i)%name = note
      end if
   end do
   !@after
   if (total > 100.0) done = .true.
   if (done) print *, 'shipped', total
   if (present(proc)) call proc(total)
   call tally
contains
   subroutine tally
      !@inner
      total = total + list(1)%weight
   end subroutine tally
end subroutine ship

block data defaults
   common /settings/ width, depth
   !@data
   data width, depth /80.0, 24.0/
end block data defaults
