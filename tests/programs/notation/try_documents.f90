program try_documents
  use bitsets
  use documents
  implicit none

  call try_sets
  call try_good
  call try_bad('[1, 2')
  call try_bad('{a: 1, b 2}')
  call try_bad('{a: 1, a: 2}')
  call try_bad('["abc, 3]')
  call try_bad('[1 2]')
  call try_bad('maybe')
  call try_bad('[1] 5')
  call try_bad('-.-')

contains

  subroutine try_sets
    type(bit_set) :: a, b, vowels
    integer, pointer :: list(:)

    a = (/ 3, 5, 64, 65, 66, 127, 500, -1 /)
    b = range_of(60, 70)
    call print_set(a, 'a')
    call print_set(b, 'b')
    call print_set(a + b, 'a + b')
    call print_set(a * b, 'a * b')
    call print_set(a - b, 'a - b')
    call print_set(a / b, 'a / b')
    call print_set(b - 65 + 1, 'b - 65 + 1')
    print *, size(a), size(-a), 5 .in. a, 6 .in. a, a * b <= b, a == (a - b) + (a * b)
    list => elements(a)
    print '(1x, 8i4)', list
    deallocate (list)
    vowels = 'aeiou'
    print *, ('e' .in. vowels), ('x' .in. vowels), empty() <= vowels
  end subroutine try_sets

  subroutine try_good
    type(item), pointer :: root, again, extra, line
    logical :: ok
    character(len=60) :: message

    open (21, status='scratch')
    write (21, '(a)') '# a drawing', &
      '{ title: "the \"small\" house",  # with quotes', &
      '  size: { width: 210, height: 2.97e2 }, visible: true,', &
      '  points: [ {x: 0, y: 0}, {x: -1.5, y: 20}, {x: 3, y: 4, mark: none} ],', &
      '  empty: [] }'
    rewind 21
    call read_document(21, root, ok, message)
    if (.not. ok) then
      print *, message
      return
    end if
    print *, value_of(root, 'title', 'untitled')
    print '(1x, 2f8.2, i4)', value_of(root, 'size/width', 0.0d0), &
      value_of(root, 'points/2/x', 0.0d0), value_of(root, 'points/3/y', -1)
    print *, value_of(root, 'visible', .false.), value_of(root, 'hidden', .true.), &
      value_of(root, 'title/none', -7), count_of(at_path(root, 'points'))
    extra => new_item(v_list, name='more')
    line => new_item_of('line')
    call append(extra, line)
    call append(root, extra)
    call write_document(6, root)

    rewind 21
    call write_document(21, root)
    rewind 21
    call read_document(21, again, ok)
    print *, ok, kind_of(again) == v_record, count_of(again)
    call discard(root)
    call discard(again)
    close (21)
  end subroutine try_good

  function new_item_of(text) result(p)
    character(len=*), intent(in) :: text
    type(item), pointer :: p
    logical :: ok

    open (22, status='scratch')
    write (22, '(3a)') '"', text, '"'
    rewind 22
    call read_document(22, p, ok)
    close (22)
  end function new_item_of

  subroutine try_bad(text)
    character(len=*), intent(in) :: text
    type(item), pointer :: root
    character(len=60) :: message
    logical :: ok

    open (unit=23, status='scratch')
    write (23, '(a)') text
    rewind (unit=23)
    call read_document(23, root, ok, message)
    print '(1x, a, t16, a)', text, message
    if (ok .or. associated(root)) print *, 'FAILED'
    close (unit=23)
  end subroutine try_bad

end program try_documents
