*     Counts words: a table by hashing, an index of words sorted by how
*     often they come, and a concordance.
      subroutine wclear
      integer maxw, nw, count, order, hsize, slot
      parameter (maxw = 300, hsize = 601)
      character*16 word
      common /wordct/ nw, count(maxw), order(maxw), slot(0:hsize-1)
      common /wordch/ word(maxw)
      nw = 0
      do 10 i = 0, hsize - 1
         slot(i) = 0
   10 continue
      end

      subroutine wadd (text, *)
*     All words of a text.  *1 when the table is full.
      character*(*) text
      integer maxw, nw, count, order, hsize, slot
      parameter (maxw = 300, hsize = 601)
      character*16 word
      common /wordct/ nw, count(maxw), order(maxw), slot(0:hsize-1)
      common /wordch/ word(maxw)
      character w*16, c
      character*26 lower, upper
      parameter (lower = 'abcdefghijklmnopqrstuvwxyz',
     +           upper = 'ABCDEFGHIJKLMNOPQRSTUVWXYZ')
      integer i, k, n, hash, find
      n = 0
      w = ' '
      do 20 i = 1, len(text) + 1
         if (i .le. len(text)) then
            c = text(i:i)
            k = index(upper, c)
            if (k .gt. 0) c = lower(k:k)
         else
            c = ' '
         end if
         if (index(lower, c) .gt. 0 .or. (c .eq. '''' .and. n .gt. 0))
     +   then
            if (n .lt. len(w)) then
               n = n + 1
               w(n:n) = c
            end if
         else if (n .gt. 0) then
            hash = find(w)
            if (slot(hash) .eq. 0) then
               if (nw .eq. maxw) return 1
               nw = nw + 1
               word(nw) = w
               count(nw) = 0
               slot(hash) = nw
            end if
            count(slot(hash)) = count(slot(hash)) + 1
            n = 0
            w = ' '
         end if
   20 continue
      end

      integer function find (w)
*     the slot of a word, or the empty one where it belongs
      character*(*) w
      integer maxw, nw, count, order, hsize, slot, i
      parameter (maxw = 300, hsize = 601)
      character*16 word
      common /wordct/ nw, count(maxw), order(maxw), slot(0:hsize-1)
      common /wordch/ word(maxw)
      find = 0
      do 10 i = 1, len(w)
   10 find = mod(find*31 + ichar(w(i:i)), hsize)
   20 if (slot(find) .eq. 0) return
      if (word(slot(find)) .eq. w) return
      find = mod(find + 1, hsize)
      go to 20
      end

      subroutine wlist (lu, most)
*     The words that come most often
      integer lu, most, i, j, k
      integer maxw, nw, count, order, hsize, slot
      parameter (maxw = 300, hsize = 601)
      character*16 word
      common /wordct/ nw, count(maxw), order(maxw), slot(0:hsize-1)
      common /wordch/ word(maxw)
      do 20 i = 1, nw
         do 10 j = i - 1, 1, -1
            k = order(j)
            if (count(k) .gt. count(i)) go to 15
            if (count(k) .eq. count(i) .and. llt(word(k), word(i)))
     +         go to 15
            order(j+1) = k
   10    continue
         j = 0
   15    order(j+1) = i
   20 continue
      write (lu, 30) (word(order(i)), count(order(i)),
     +   i = 1, min(most, nw))
   30 format (3(1x, a16, i4, 3x))
      end
