      program runoff
*     Formats a letter that is written to a scratch file first, then
*     lists its words.
      integer lui, luo, n, i, ios
      parameter (lui = 41, luo = 6, n = 24)
      character*72 text(n), line
      data (text(i), i = 1, 13) /
     +'.he The Mill on the River',
     +'.ll 48',
     +'.ce 2',
     +'.ul 1',
     +'A SHORT REPORT',
     +'by the miller',
     +'.sp',
     +'The wheel turns well.  The stones were dressed in the spring,',
     +'and the flour is fine; the farmers come from as far as the',
     +'hills. It is said that the river will be low in summer, but',
     +'it was said last year as well, and it wasn''t so.',
     +'.in +4',
     +'.nj'/
      data (text(i), i = 14, n) /
     +'Those who bring corn are asked to bring sacks, as sacks are',
     +'dear this year. The price of grinding is',
     +'.nf',
     +'   wheat   2 pence',
     +'   rye     1 penny',
     +'.fi',
     +'.in 0',
     +'.ti 3',
     +'.ju',
     +'Nothing else is new, and the miller remains the servant of',
     +'all who eat bread.'/
      open (unit = lui, status = 'scratch', access = 'sequential',
     +      form = 'formatted', blank = 'null')
      do 10 i = 1, n
   10 write (unit = lui, fmt = '(a)') text(i)
      rewind lui
      call fmtini
      call wclear
   20 read (unit = lui, fmt = 30, end = 40, iostat = ios) line
   30 format (a)
      call fmtlin (line, luo)
      if (line(1:1) .ne. '.') call wadd (line, *90)
      go to 20
   40 call fmtbrk (luo)
      call fmtpag (luo)
      write (luo, *) 'words'
      call wlist (luo, 12)
      close (lui)
      stop
   90 stop 'too many words'
      end
