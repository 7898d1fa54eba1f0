! Searching by chance: annealing and breeding, for round trips and strings of bits.
module search
  implicit none
  private
  public :: anneal, breed, city, trip_length, edit_distance, longest_common

  type city
     sequence
     character(len=8) :: name
     real :: x, y
  end type city

  integer, parameter :: bits = bit_size(1)
  integer, save :: state = 1

contains

  real function chance()
    state = mod(state*1366 + 150889, 714025)
    chance = state/714025.0
  end function chance

  integer function pick(n)
    integer, intent(in) :: n
    pick = 1 + int(n*chance())
  end function pick

  function trip_length(cities, order) result(total)
    type(city), intent(in), dimension(:) :: cities
    integer, intent(in), dimension(:) :: order
    real :: total
    integer, dimension(size(order)) :: after

    after = cshift(order, 1)
    total = sum(sqrt((cities(order)%x - cities(after)%x)**2 + (cities(order)%y - cities(after)%y)**2))
  end function trip_length

  ! Turns pieces of the trip round while that makes it shorter, or by luck while it is hot.
  subroutine anneal(cities, order, hot, cold, cooling, trials)
    type(city), intent(in) :: cities(:)
    integer, intent(inout), dimension(:) :: order
    real, intent(in), optional :: hot, cold, cooling
    integer, intent(in), optional :: trials
    real :: temperature, lowest, factor, gain
    integer :: k, i, j, n, most

    temperature = 10.0; lowest = 0.01; factor = 0.95; most = 200
    if (present(hot)) temperature = hot
    if (present(cold)) lowest = cold
    if (present(cooling)) factor = cooling
    if (present(trials)) most = trials
    n = size(order)
    do while (temperature > lowest)
       do k = 1, most
          i = 1 + pick(n - 2)
          j = i + pick(n - i)
          gain = leg(i - 1, i) + leg(j, mod(j, n) + 1) - leg(i - 1, j) - leg(i, mod(j, n) + 1)
          if (gain < 0.0) then
             if (chance() > exp(gain/temperature)) cycle
          end if
          order(i:j) = order(j:i:-1)
       end do
       temperature = temperature*factor
    end do

  contains

    real function leg(a, b)
      integer, intent(in) :: a, b
      leg = sqrt((cities(order(a))%x - cities(order(b))%x)**2 + &
                 (cities(order(a))%y - cities(order(b))%y)**2)
    end function leg
  end subroutine anneal

  ! Breeds words of bits until the fittest is as fit as it need be.
  subroutine breed(fitness, goal, size_of_herd, best, generations)
    interface
       integer function fitness(genes)
         integer, intent(in) :: genes
       end function fitness
    end interface
    integer, intent(in) :: goal, size_of_herd
    integer, intent(out) :: best
    integer, intent(out) :: generations
    integer, dimension(size_of_herd) :: herd, young, fit
    integer :: k, mother, father, mask, cut, top(1)

    do k = 1, size_of_herd
       herd(k) = ior(ishft(pick(65536) - 1, bits/2), pick(65536) - 1)
    end do
    generations = 0
    do
       do k = 1, size_of_herd
          fit(k) = fitness(herd(k))
       end do
       top = maxloc(fit)
       best = herd(top(1))
       if (fit(top(1)) >= goal .or. generations == 1000) exit
       generations = generations + 1
       young(1) = best
       do k = 2, size_of_herd
          mother = winner()
          father = winner()
          cut = pick(bits - 1)
          mask = ishft(not(0), -cut)
          young(k) = ior(iand(mother, mask), iand(father, not(mask)))
          if (chance() < 0.5) young(k) = ieor(young(k), ishft(1, pick(bits) - 1))
       end do
       herd = young
    end do

  contains

    integer function winner()
      integer :: a, b
      a = pick(size_of_herd)
      b = pick(size_of_herd)
      winner = merge(herd(a), herd(b), fit(a) >= fit(b))
    end function winner
  end subroutine breed

  ! How many letters must be changed, put in or taken out to make a word from another.
  function edit_distance(from, to) result(distance)
    character(len=*), intent(in) :: from, to
    integer :: distance
    integer, dimension(0:len_trim(to)) :: row, previous
    integer :: i, j

    row = (/(j, j = 0, ubound(row, 1))/)
    do i = 1, len_trim(from)
       previous = row
       row(0) = i
       do j = 1, ubound(row, dim=1)
          row(j) = min(previous(j) + 1, row(j - 1) + 1, &
                       previous(j - 1) + merge(0, 1, from(i:i) == to(j:j)))
       end do
    end do
    distance = row(ubound(row, 1))
  end function edit_distance

  ! The longest word that is left of both if letters are crossed out.
  subroutine longest_common(a, b, word)
    character(len=*), intent(in) :: a, b
    character(len=*), intent(out) :: word
    integer, dimension(0:len(a), 0:len(b)) :: best
    integer :: i, j, k

    best(0, :) = 0
    best(:, 0) = 0
    do j = 1, len(b)
       do i = 1, len(a)
          if (a(i:i) == b(j:j)) then
             best(i, j) = best(i - 1, j - 1) + 1
          else
             best(i, j) = max(best(i - 1, j), best(i, j - 1))
          end if
       end do
    end do
    word = ' '
    i = len(a)
    j = len(b)
    do k = best(i, j), 1, -1
       do
          if (best(i - 1, j) == k) then
             i = i - 1
          else if (best(i, j - 1) == k) then
             j = j - 1
          else
             exit
          end if
       end do
       word(k:k) = a(i:i)
       i = i - 1; j = j - 1
    end do
  end subroutine longest_common
end module search
