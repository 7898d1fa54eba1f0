program try_orders
   use orders
   implicit none
   integer, parameter :: n = 200
   integer, dimension(n) :: numbers, others
   real, dimension(31) :: reals
   double precision, dimension(20) :: doubles
   character(len=10), dimension(8) :: fruits
   type(person), dimension(5) :: people
   integer :: i, different

   data fruits / 'pear', 'Apple', 'apple', 'fig', 'Quince', 'banana', 'fig', 'date' /

   numbers = (/ (i, i = 1, n) /)
   call shuffle(numbers)
   others = numbers
   call sort(numbers)
   if (.not. .sorted. numbers) stop 'quicksort failed'
   call shuffle(others, seed=99)
   call sort_by_digits(others)
   if (any(others /= numbers)) stop 'sort by digits failed'
   print *, 'found at', position_in(137, numbers), position_in(-1, numbers)
   numbers = numbers / 10
   call unique(numbers, different)
   print '(1x,i3,a/(10i4))', different, ' different:', numbers(:different)

   reals = (/ (sin(real(i * i)), i = 1, size(reals)) /)
   print '(a, f9.5)', ' median ', kth_smallest(reals, (size(reals) + 1) / 2)
   call sort(reals)
   if (.sorted. reals) print '(a, f9.5)', ' median ', reals(16)

   doubles = (/ (cos(dble(i)), i = 1, 20) /)
   call sort(doubles)
   print '(5(1x,f8.5))', doubles

   print '(8(1x,a,i2))', (trim(fruits(i)), sum((/ 0 /)) + i, i = 1, 8)
   print '(a, 8i3)', ' ranks', rank_of(fruits)
   call sort(fruits)
   print '(8(1x,a))', (trim(fruits(i)), i = 1, 8)
   print *, 'Quince is', position_in('Quince', fruits)
   call unique(fruits, different)
   call sort(fruits(:different), descending=.true.)
   print '(8(1x,a))', (trim(fruits(i)), i = 1, different)
   print '(a, 5i2)', ' ranks', rank_of((/ 30, 10, 20, 10, 50 /))

   people = (/ person('Turner', 'Ann', 1961), person('Smith', 'Zoe', 1970), &
               person('Turner', 'Ann', 1938), person('Adams', 'Bill', 1955), &
               person('Smith', 'Bob', 1944) /)
   call sort(people)
   do i = 1, size(people)
      print '(1x, 2a, i6)', people(i)
   end do

end program try_orders
