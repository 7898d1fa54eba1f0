c     External sort of a text file: runs are sorted in memory and written
c     to scratch files in turn, which are merged until one run is left.
c
c     The records are lines of at most 80 characters; the key is a part
c     of the line, either text or a number, up or down.
c
      block data fsinit
      integer first, last, lines, runs, passes
      logical numrc, down
      common /sortky/ first, last, numrc, down
      common /sortct/ lines, runs, passes
      data first, last, numrc, down /1, 80, .false., .false./
      data lines, runs, passes /3*0/
      end

      logical function before (a, b)
c     true if line a must come before line b
      character*(*) a, b
      integer first, last
      logical numrc, down
      common /sortky/ first, last, numrc, down
      double precision x, y
      if (numrc) then
         x = 0
         y = 0
         read (a(first:last), '(bn,f20.0)', err = 10) x
   10    read (b(first:last), '(bn,f20.0)', err = 20) y
   20    if (down) then
            before = x .gt. y
         else
            before = x .lt. y
         end if
      else if (down) then
         before = lgt(a(first:last), b(first:last))
      else
         before = llt(a(first:last), b(first:last))
      end if
      end

      subroutine fsort (luin, luout, *)
c     luin is rewound and read to its end; the sorted lines go to luout.
c     *1 is taken when the input cannot be read.
      integer luin, luout, maxmem, lu(4), n, i, ios, which
      integer lines, runs, passes, in, out
      parameter (maxmem = 16)
      character*80 mem(maxmem), buffer
      logical more, opened
      common /sortct/ lines, runs, passes
      save lu
      data lu /71, 72, 73, 74/

      inquire (unit = luin, opened = opened)
      if (.not. opened) return 1
      rewind luin
      do 10 i = 1, 4
         open (lu(i), status = 'scratch', form = 'unformatted')
   10 continue
      lines = 0
      runs = 0
      passes = 0
      more = .true.

c     Runs.  Each ends with a record that says so, and is blank.
   20 if (more) then
         n = 0
   30    if (n .lt. maxmem) then
            read (luin, '(a)', iostat = ios) buffer
            if (ios .gt. 0) return 1
            more = ios .eq. 0
            if (more) then
               n = n + 1
               mem(n) = buffer
               go to 30
            end if
         end if
         if (n .gt. 0) then
            call shell (mem, n)
            which = lu(1 + mod(runs, 2))
            do 40 i = 1, n
   40       write (which) .true., mem(i)
            buffer = ' '
            write (which) .false., buffer
            runs = runs + 1
            lines = lines + n
         end if
         go to 20
      end if
      do 50 i = 1, 2
         endfile lu(i)
         rewind lu(i)
   50 continue

c     Merges, from two files to the other two and back
      in = 1
      out = 3
      n = runs
   60 if (n .gt. 1) then
         passes = passes + 1
         call mrgpas (lu(in), lu(in+1), lu(out), lu(out+1), n)
         i = in
         in = out
         out = i
         go to 60
      end if

      do 70 i = 1, lines
         read (lu(in)) more, buffer
         write (luout, '(a)') buffer
   70 continue
      do 80 i = 1, 4
   80 close (lu(i), status = 'delete')
      end

      subroutine mrgpas (la, lb, lc, ld, n)
c     One pass: the runs of la and lb, in pairs, to lc and ld in turn.
      integer la, lb, lc, ld, n, k, lout
      character*80 a, b
      logical ina, inb, before
      rewind lc
      rewind ld
      do 40 k = 1, (n + 1)/2
         lout = lc
         if (mod(k, 2) .eq. 0) lout = ld
         read (la, end = 5) ina, a
         go to 6
    5    ina = .false.
    6    read (lb, end = 7) inb, b
         go to 10
    7    inb = .false.
   10    if (.not. ina .and. .not. inb) go to 30
         if (.not. inb) go to 20
         if (ina .and. .not. before(b, a)) go to 20
            write (lout) .true., b
            read (lb) inb, b
            go to 10
   20    continue
            write (lout) .true., a
            read (la) ina, a
            go to 10
   30    a = ' '
         write (lout) .false., a
   40 continue
      n = (n + 1)/2
      endfile lc
      endfile ld
      rewind la
      rewind lb
      rewind lc
      rewind ld
      end

      subroutine shell (mem, n)
      integer n, gap, i, j
      character*(*) mem(n)
      character*80 t
      logical before
      gap = 1
   10 gap = 3*gap + 1
      if (gap .lt. n) go to 10
   20 gap = gap/3
      do 50 i = gap + 1, n
         t = mem(i)
         j = i - gap
   30    if (j .ge. 1) then
            if (before(t, mem(j))) then
               mem(j + gap) = mem(j)
               j = j - gap
               go to 30
            end if
         end if
         mem(j + gap) = t
   50 continue
      if (gap .gt. 1) go to 20
      end
