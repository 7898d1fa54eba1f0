c     Sorts a file of made-up records in three ways, checks the order, and
c     merges two sorted files with sums by key (the classic "old master,
c     new master").
      program srtmain
      integer first, last, lines, runs, passes
      logical numrc, down, before
      common /sortky/ first, last, numrc, down
      common /sortct/ lines, runs, passes
      external fsinit
      integer luin, luout, i, k, kase, ios, seed, nbad
      parameter (luin = 51, luout = 52)
      character*80 line, prev
      character*10 towns(5)
      data towns /'oslo', 'lima', 'quito', 'bern', 'cairo'/, seed /99/

      open (luin, status = 'scratch')
      open (luout, status = 'scratch')
      do 10 i = 1, 150
         seed = mod(seed*137 + 4711, 65536)
         k = 1 + mod(seed/7, 5)
         write (luin, 900) towns(k), mod(seed, 1000), i
   10 continue
  900 format (a10, i6, 2x, 'record', i5)
      end file luin

      do 50 kase = 1, 3
         go to (21, 22, 23) kase
   21       first = 1
            last = 16
            go to 30
   22       first = 11
            last = 16
            numrc = .true.
            go to 30
   23       down = .true.
   30    rewind luout
         call fsort (luin, luout, *800)
         end file (luout)
         rewind (luout)
         nbad = 0
         read (luout, '(a)', end = 45) prev
         print 910, kase, prev(1:29)
   40    read (luout, '(a)', end = 45, iostat = ios) line
            if (ios .ne. 0) go to 45
            if (before(line, prev)) nbad = nbad + 1
            prev = line
         go to 40
   45    print 920, prev(1:29), lines, runs, passes, nbad
   50 continue
  910 format (' case', i2, ' from ', a)
  920 format (8x, 'to   ', a / 8x, i4, ' lines', i4, ' runs', i3,
     &   ' passes', i3, ' out of order')

c     the last lines once more, from behind
      do 60 i = 1, 3
         backspace luout
         backspace luout
         read (luout, '(a)') line
         print *, line(1:29)
   60 continue
      call master
      close (luin)
      stop
  800 stop 'sort failed'
      end

      subroutine master
c     Old master and transactions, both in order of key, to a new master.
      integer lom, ltr, lnm, key1, key2, amt1, amt2, top, ios
      parameter (lom = 61, ltr = 62, lnm = 63, top = 99999)
      character act*1
      open (unit = lom, status = 'scratch', form = 'unformatted')
      open (unit = ltr, status = 'scratch', form = 'unformatted')
      open (unit = lnm, status = 'scratch', form = 'unformatted')
      do 10 i = 10, 60, 10
   10 write (lom) i, i*100
      write (ltr) 10, '+', 5
      write (ltr) 10, '+', 6
      write (ltr) 20, 'd', 0
      write (ltr) 25, 'n', 777
      write (ltr) 30, '-', 1
      write (ltr) 45, '+', 1
      write (ltr) 70, 'n', 1
      rewind lom
      rewind ltr
      call next (lom, key1, amt1)
      read (ltr, iostat = ios) key2, act, amt2
      if (ios .lt. 0) key2 = top
   20 if (key1 .eq. top .and. key2 .eq. top) go to 60
         if (key1 .lt. key2) then
            write (lnm) key1, amt1
            call next (lom, key1, amt1)
            go to 20
         end if
         if (act .eq. 'n' .and. key2 .lt. key1) then
            write (lnm) key2, amt2
         else if (key2 .lt. key1) then
            print *, 'no record for transaction ', key2, ' ', act
         else if (act .eq. '+') then
            amt1 = amt1 + amt2
         else if (act .eq. '-') then
            amt1 = amt1 - amt2
         else if (act .eq. 'd') then
            call next (lom, key1, amt1)
         else
            print *, 'bad transaction ', act
         end if
         read (ltr, end = 50) key2, act, amt2
      go to 20
   50 key2 = top
      go to 20
   60 end file lnm
      rewind lnm
   70 read (lnm, end = 80) key1, amt1
      print '(1x, 2i8)', key1, amt1
      go to 70
   80 close (lom)
      close (ltr)
      close (lnm)
      end

      subroutine next (lu, key, amt)
      integer lu, key, amt
      read (lu, end = 10) key, amt
      return
   10 key = 99999
      end
