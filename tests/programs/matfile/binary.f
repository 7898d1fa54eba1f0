c     Matrices in unformatted sequential files: a header record, and one
c     record for each column.
c
      subroutine putbin (lun, name, a, lda, m, n)
      integer lun, lda, m, n, i, j
      character*8 name
      double precision a(lda, n)
      write (lun) name, m, n
      do 10 j = 1, n
         write (lun) (a(i, j), i = 1, m)
   10 continue
      end
c
      subroutine getbin (lun, name, a, lda, m, n, *, *)
c     The next matrix of the name; first return: not found; second: too
c     large, and the file stands before it again.
      integer lun, lda, m, n, i, j
      character name*8, found*8
      double precision a(lda, *)
   10 read (lun, end = 80) found, m, n
      if (found .ne. name) then
c           skip its columns
         do 20 j = 1, n
            read (lun, end = 80)
   20    continue
         go to 10
      end if
      if (m .gt. lda) go to 90
      do 30 j = 1, n
         read (lun) (a(i, j), i = 1, m)
   30 continue
      return
   80 return 1
   90 backspace lun
      return 2
      end
c
      subroutine appbin (lun, name, a, lda, m, n)
c     Put a matrix behind the last one, wherever the file stands.
      integer lun, lda, m, n
      character*8 name
      double precision a(lda, n)
   10 read (lun, end = 20)
      go to 10
   20 backspace (unit = lun)
      call putbin (lun, name, a, lda, m, n)
      endfile (unit = lun)
      end
c
      logical function isopen (lun, form)
c     Whether a unit is connected, and for what.
      integer lun
      character*(*) form
      character*11 what
      logical there
      inquire (unit = lun, opened = isopen, exist = there, form = what)
      if (isopen .and. there) then
         form = what
      else
         form = 'none'
      end if
      end
