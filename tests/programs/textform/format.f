      subroutine fmtini
*     A text formatter.  Text is filled into lines of a given width and
*     justified; lines that begin with a dot are commands:
*
*        .br       break             .sp n    n empty lines
*        .ce n     centre n lines    .in n    indent
*        .ll n     line length       .pl n    page length
*        .ti n     indent one line   .he text heading
*        .nf .fi   fill or not       .ju .nj  justify or not
*        .ul n     underline n lines .bp      new page
*
*     The state of the formatter is in /FORMST/ and /FORMCH/.
      include 'form.inc'
      fill = .true.
      justif = .true.
      width = 60
      indent = 0
      tindnt = 0
      pagel = 20
      lineno = 0
      pageno = 0
      centre = 0
      under = 0
      nout = 0
      nwords = 0
      outbuf = ' '
      header = ' '
      right = .true.
      end

      subroutine fmtlin (line, lu)
*     One line of input
      character*(*) line
      integer lu, i, l, lentrm
      include 'form.inc'
      l = lentrm(line)
      if (l .gt. 0 .and. line(1:1) .eq. '.') then
         call fmtcmd (line(:l), lu)
      else if (centre .gt. 0) then
         call fmtbrk (lu)
         i = max(0, (width - l)/2)
         call fmtput (line, l, i, lu)
         centre = centre - 1
      else if (.not. fill) then
         call fmtput (line, l, indent, lu)
      else if (l .eq. 0) then
         call fmtbrk (lu)
         call fmtput (' ', 0, 0, lu)
      else
         if (line(1:1) .eq. ' ') call fmtbrk (lu)
         call fmtwds (line(:l), lu)
      end if
      end

      subroutine fmtwds (line, lu)
*     puts the words of a line into the output line
      character*(*) line
      integer lu, i, j, l
      include 'form.inc'
      l = len(line)
      i = 1
   10 if (i .le. l) then
         if (line(i:i) .eq. ' ') then
            i = i + 1
            go to 10
         end if
         j = index(line(i:), ' ')
         if (j .eq. 0) j = l - i + 2
         j = i + j - 2
         call fmtwrd (line(i:j), lu)
         i = j + 2
         go to 10
      end if
      end

      subroutine fmtwrd (word, lu)
      character*(*) word
      integer lu, room, need
      include 'form.inc'
      room = width - max(indent, 0) - tindnt
      need = len(word)
      if (nout .gt. 0) need = need + 1
      if (nout + need .gt. room .and. nout .gt. 0) then
         if (justif) call fmtjus (room)
         call fmtbrk (lu)
      end if
      if (nout .gt. 0) nout = nout + 1
      outbuf(nout+1:) = word
      nout = nout + len(word)
      nwords = nwords + 1
*     after the end of a sentence comes a second blank
      if (index('.!?', word(len(word):)) .gt. 0) nout = nout + 1
      end

      subroutine fmtjus (room)
*     Spreads the words of the output line, beginning at the right and at
*     the left in turn, so that no river runs down the page.
      integer room, extra, holes, i, j, nb, lentrm
      include 'form.inc'
      character*132 old
      nout = lentrm(outbuf)
      extra = room - nout
      if (extra .le. 0 .or. nwords .le. 1) return
      old = outbuf
      outbuf = ' '
      holes = nwords - 1
      right = .not. right
      j = room
      do 10 i = nout, 1, -1
         outbuf(j:j) = old(i:i)
         if (old(i:i) .eq. ' ' .and. holes .gt. 0) then
            if (i .gt. 1) then
               if (old(i-1:i-1) .eq. ' ') go to 5
            end if
            if (extra .eq. 0) then
               nb = 0
            else if (right) then
               nb = (extra - 1)/holes + 1
            else
               nb = extra/holes
            end if
            extra = extra - nb
            holes = holes - 1
            j = j - nb
         end if
    5    j = j - 1
         if (j .lt. 1) go to 20
   10 continue
   20 nout = room
      end

      subroutine fmtbrk (lu)
*     Writes what is in the output line.
      integer lu
      include 'form.inc'
      if (nout .eq. 0) return
      call fmtput (outbuf, nout, indent + tindnt, lu)
      nout = 0
      nwords = 0
      tindnt = 0
      outbuf = ' '
      end

      subroutine fmtput (text, l, margin, lu)
*     Prints a line, with a heading before it where a page begins
      character*(*) text
      character*132 line
      integer l, margin, lu, i, need
      include 'form.inc'
      need = 1
      go to 1

      entry fmtpag (lu)
*     Fills the page up.
      need = 0
    1 if (lineno .eq. 0) then
         if (need .eq. 0) return
         pageno = pageno + 1
         write (lu, '(''1'',a,t50,''page'',i4/)') header, pageno
         lineno = 2
      end if
      if (need .eq. 0) then
         lineno = 0
         return
      end if
      line = ' '
      if (l .gt. 0) line(margin+1:) = text(:l)
      write (lu, '(1x,a)') line(:margin + max(l, 1))
      if (under .gt. 0) then
         do 10 i = 1, margin + l
            if (line(i:i) .ne. ' ') line(i:i) = '_'
   10    continue
         write (lu, '(''+'',a)') line(:margin + max(l, 1))
         under = under - 1
      end if
      lineno = lineno + 1
      if (lineno .ge. pagel) lineno = 0
      end

      subroutine fmtcmd (line, lu)
      character*(*) line
      integer lu, n, ncmd, k, i, ios
      parameter (ncmd = 13)
      character*2 names(ncmd), cmd
      logical relatv
      integer lsign
      include 'form.inc'
      save names
      data names /'br', 'sp', 'ce', 'in', 'll', 'pl', 'ti', 'he', 'nf',
     +            'fi', 'ju', 'nj', 'ul'/
      cmd = line(2:min(3, len(line)))
      do 10 k = 1, ncmd
         if (cmd .eq. names(k)) go to 20
   10 continue
      if (cmd .eq. 'bp') then
         call fmtbrk (lu)
         call fmtpag (lu)
      else
         write (lu, '('' ?? '',a)') line
      end if
      return
*     a number behind the command; with a sign it is a change
   20 n = 1
      relatv = .false.
      if (len(line) .ge. 4 .and. cmd .ne. 'he') then
         read (line(4:), '(bn,i10)', iostat = ios) n
         if (ios .ne. 0) n = 1
         relatv = lsign(line(4:)) .ne. 0
      end if
      go to (100, 200, 300, 400, 500, 600, 700, 800, 900, 1000, 1100,
     +       1200, 1300), k
  100 call fmtbrk (lu)
      return
  200 call fmtbrk (lu)
      do 210 i = 1, n
  210 call fmtput (' ', 0, 0, lu)
      return
  300 call fmtbrk (lu)
      centre = n
      return
  400 call fmtbrk (lu)
      if (relatv) n = indent + n
      indent = min(max(n, 0), width/2)
      return
  500 if (relatv) n = width + n
      width = min(max(n, 20), 132)
      return
  600 pagel = max(n, 5)
      return
  700 call fmtbrk (lu)
      tindnt = n
      return
  800 header = line(min(5, len(line)):)
      return
  900 call fmtbrk (lu)
      fill = .false.
      return
 1000 fill = .true.
      return
 1100 justif = .true.
      return
 1200 justif = .false.
      return
 1300 under = n
      end

      integer function lsign (s)
      character*(*) s
      lsign = max(index(s, '+'), index(s, '-'))
      end

      integer function lentrm (s)
*     the length without trailing blanks
      character*(*) s
      do 10 lentrm = len(s), 1, -1
         if (s(lentrm:lentrm) .ne. ' ') return
   10 continue
      lentrm = 0
      end
