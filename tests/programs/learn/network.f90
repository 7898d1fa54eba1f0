! Feed-forward networks of neurons whose layers hold their own arrays.
module network
  implicit none
  private

  integer, parameter, public :: rk = selected_real_kind(6, 30)
  integer, parameter :: name_len = 10

  type layer
     integer :: inputs, outputs
     real(rk), dimension(:, :), pointer :: weight, change
     real(rk), dimension(:), pointer :: bias, activity, blame
  end type layer

  type, public :: net
     private
     integer :: layers
     character(name_len) :: name
     type(layer), dimension(:), pointer :: at
  end type net

  interface create
     module procedure create_from_sizes
  end interface

  interface operator(.of.)
     module procedure answer
  end interface

  public :: create, train, operator(.of.), save_net, load_net, drop, set_rate
  real(rk), save :: rate = 0.5_rk, momentum = 0.8_rk
  integer, save :: seed = 4711

contains

  subroutine set_rate(new_rate, new_momentum)
    real(rk), intent(in), optional :: new_rate, new_momentum
    if (present(new_rate)) rate = new_rate
    if (present(new_momentum)) momentum = new_momentum
  end subroutine set_rate

  function random_weights(m, n) result(w)
    integer, intent(in) :: m, n
    real(rk), dimension(m, n) :: w
    integer :: i, j

    do j = 1, n
       do i = 1, m
          seed = mod(seed*421 + 1663, 7875)
          w(i, j) = 2*real(seed, rk)/7875 - 1
       end do
    end do
  end function random_weights

  subroutine create_from_sizes(n, name, sizes)
    type(net), intent(out) :: n
    character(len=*), intent(in) :: name
    integer, dimension(:), intent(in) :: sizes
    integer :: k, p, q

    n%name = name
    n%layers = size(sizes) - 1
    allocate (n%at(n%layers))
    do k = 1, n%layers
       p = sizes(k + 1); q = sizes(k)
       n%at(k)%inputs = q
       n%at(k)%outputs = p
       allocate (n%at(k)%weight(p, q), n%at(k)%change(p, q))
       allocate (n%at(k)%bias(p), n%at(k)%activity(p), n%at(k)%blame(p))
       n%at(k)%weight = random_weights(p, q)
       n%at(k)%change = 0
       n%at(k)%bias = 0
    end do
  end subroutine create_from_sizes

  subroutine drop(n)
    type(net), intent(inout) :: n
    integer :: k, bad(2)

    do k = 1, n%layers
       deallocate (n%at(k)%weight, n%at(k)%change, stat=bad(1))
       deallocate (n%at(k)%bias, n%at(k)%activity, n%at(k)%blame, stat=bad(2))
       if (any(bad /= 0)) write (*, *) 'layer', k, 'of ', n%name, ' was lost'
    end do
    deallocate (n%at)
    n%layers = 0
  end subroutine drop

  function sigmoid(x) result(y)
    real(rk), dimension(:), intent(in) :: x
    real(rk) :: y(size(x))
    y = 1/(1 + exp(-x))
  end function sigmoid

  subroutine forward(n, input)
    type(net), intent(inout) :: n
    real(rk), intent(in) :: input(:)
    integer :: k

    n%at(1)%activity = sigmoid(matmul(n%at(1)%weight, input) + n%at(1)%bias)
    do k = 2, n%layers
       n%at(k)%activity = sigmoid(matmul(n%at(k)%weight, n%at(k - 1)%activity) + n%at(k)%bias)
    end do
  end subroutine forward

  function answer(n, input) result(y)
    type(net), intent(in) :: n
    real(rk), dimension(:), intent(in) :: input
    real(rk), dimension(n%at(n%layers)%outputs) :: y
    type(net) :: working

    working = n
    call forward(working, input)
    y = working%at(working%layers)%activity
  end function answer

  ! One pass over all examples, one in each column. The error before the pass comes back.
  function train(n, inputs, targets) result(error)
    type(net), intent(inout) :: n
    real(rk), dimension(:, :), intent(in) :: inputs, targets
    real(rk) :: error
    type(layer), pointer :: this, next
    integer :: e, k

    error = 0.0
    examples: do e = 1, size(inputs, 2)
       call forward(n, inputs(:, e))
       this => n%at(n%layers)
       this%blame = (targets(:, e) - this%activity)*this%activity*(1 - this%activity)
       error = error + sum((targets(:, e) - this%activity)**2)
       do k = n%layers - 1, 1, -1
          next => this
          this => n%at(k)
          this%blame = matmul(next%blame, next%weight)*this%activity*(1 - this%activity)
       end do
       do k = 1, n%layers
          this => n%at(k)
          if (k == 1) then
             call correct(this, inputs(:, e))
          else
             call correct(this, n%at(k - 1)%activity)
          end if
       end do
    end do examples

  contains

    subroutine correct(l, input)
      type(layer), intent(inout) :: l
      real(rk), intent(in) :: input(:)

      l%change = momentum*l%change + rate*spread(l%blame, 2, size(input))*spread(input, 1, size(l%blame))
      l%weight = l%weight + l%change
      l%bias = l%bias + rate*l%blame
    end subroutine correct
  end function train

  subroutine save_net(n, unit)
    type(net), intent(in) :: n
    integer, intent(in) :: unit
    integer :: k

    write (unit) n%name, n%layers
    write (unit) n%at(1)%inputs, (n%at(k)%outputs, k=1, n%layers)
    do k = 1, n%layers
       write (unit) n%at(k)%weight, n%at(k)%bias
    end do
  end subroutine save_net

  subroutine load_net(n, unit, status)
    type(net), intent(out) :: n
    integer, intent(in) :: unit
    integer, intent(out) :: status
    character(name_len) :: name
    integer :: layers, k
    integer, allocatable, dimension(:) :: sizes

    status = 0
    read (unit, end=99, err=99) name, layers
    allocate (sizes(0:layers))
    read (unit, err=99) sizes
    call create(n, name, sizes)
    do k = 1, layers
       read (unit, iostat=status) n%at(k)%weight, n%at(k)%bias
       if (status /= 0) exit
    end do
    deallocate (sizes)
    return
99  status = 1
  end subroutine load_net
end module network
