! An archive on "tape": records of several sorts one after the other, found by reading on and going back.
module tapes
  implicit none
  private

  integer, parameter, public :: key_length = 8, text_length = 40
  integer, parameter :: mark = 0

  type, public :: person
     character(len=text_length) :: name
     integer :: born
  end type person

  type, public :: payment
     integer :: day
     double precision :: amount
     logical :: paid
  end type payment

  type, public :: tape
     private
     integer :: unit, records
     logical :: writing, at_end
  end type tape

  interface append
     module procedure append_person, append_payment, append_note
  end interface

  ! The sorts of records; each begins with its sort and its key.
  integer, parameter :: person_sort = 1, payment_sort = 2, note_sort = 3

  public :: mount, unmount, append, find, next_payment, finish_file, skip_file

contains

  subroutine mount(t, unit, name, scratch, old)
    type(tape), intent(out) :: t
    integer, intent(in) :: unit
    character(len=*), intent(in) :: name
    logical, intent(in), optional :: scratch, old
    logical :: keep, reading, opened
    integer :: status

    keep = .true.
    reading = .false.
    if (present(scratch)) keep = .not. scratch
    if (present(old)) reading = old
    inquire (unit=unit, opened=opened)
    if (opened) close (unit)
    if (.not. keep) then
       open (unit, status='scratch', form='unformatted', iostat=status)
    else if (reading) then
       open (unit, file=name, status='old', form='unformatted', action='read', &
            position='rewind', iostat=status)
    else
       open (unit, file=name, status='unknown', form='unformatted', position='append', iostat=status)
    end if
    if (status /= 0) then
       print '(2A)', ' cannot mount ', name
       stop 2
    end if
    t = tape(unit, 0, .not. reading, .false.)
  end subroutine mount

  subroutine unmount(t, destroy)
    type(tape), intent(inout) :: t
    logical, intent(in), optional :: destroy

    if (t%writing .and. .not. t%at_end) endfile t%unit
    if (present(destroy)) then
       if (destroy) then
          close (t%unit, status='delete')
          return
       end if
    end if
    close (unit=t%unit)
  end subroutine unmount

  subroutine append_person(t, key, what)
    type(tape), intent(inout) :: t
    character(len=*), intent(in) :: key
    type(person), intent(in) :: what
    character(len=key_length) :: k
    k = key
    write (t%unit) person_sort, k, what%name, what%born
    t%records = t%records + 1
  end subroutine append_person

  subroutine append_payment(t, key, what)
    type(tape), intent(inout) :: t
    character(len=*), intent(in) :: key
    type(payment), intent(in) :: what
    character(len=key_length) :: k
    k = key
    write (t%unit) payment_sort, k, what
    t%records = t%records + 1
  end subroutine append_payment

  subroutine append_note(t, key, what)
    type(tape), intent(inout) :: t
    character(len=*), intent(in) :: key
    character(len=*), intent(in) :: what
    character(len=key_length) :: k
    k = key
    write (t%unit) note_sort, k, len_trim(what), trim(what)
    t%records = t%records + 1
  end subroutine append_note

  ! A mark, behind which another file begins.
  subroutine finish_file(t)
    type(tape), intent(inout) :: t
    write (t%unit) mark, repeat('*', key_length)
  end subroutine finish_file

  subroutine skip_file(t, ended)
    type(tape), intent(in) :: t
    logical, intent(out) :: ended
    integer :: sort

    ended = .false.
    do
       read (t%unit, end=10) sort
       if (sort == mark) return
    end do
10  ended = .true.
  end subroutine skip_file

  ! Reads on to a person, with a note if one follows.
  subroutine find(t, key, who, found, note)
    type(tape), intent(inout) :: t
    character(len=*), intent(in) :: key
    type(person), intent(out) :: who
    logical, intent(out) :: found
    character(len=*), intent(out), optional :: note
    character(len=key_length) :: k
    character(len=text_length) :: name
    integer :: sort, n, born

    found = .false.
    if (present(note)) note = ' '
    rewind (t%unit)
    records: do
       read (t%unit, end=20, err=30) sort, k
       if (sort == mark) exit records
       if (sort == person_sort .and. k == key) then
          backspace (t%unit)
          read (t%unit) sort, k, name, born
          who = person(name, born)
          found = .true.
       else if (sort == note_sort .and. k == key .and. present(note)) then
          backspace t%unit
          read (t%unit) sort, k, n, note(:min(n, len(note)))
          exit records
       end if
    end do records
    return
20  backspace (t%unit)
    return
30  print *, 'tape is damaged'
  end subroutine find

  subroutine next_payment(t, key, what, found)
    type(tape), intent(inout) :: t
    character(len=key_length), intent(out) :: key
    type(payment), intent(out) :: what
    logical, intent(out) :: found
    integer :: sort, status

    do
       read (t%unit, iostat=status) sort, key
       found = status == 0
       if (.not. found) return
       if (sort == payment_sort) exit
    end do
    backspace (t%unit, iostat=status)
    read (t%unit) sort, key, what
  end subroutine next_payment

end module tapes
