c     Simulation by events: a heap of future events, queues as rings, and
c     statistics weighted by time.
c
c     Event notes live in parallel arrays; the heap holds their numbers.
c     Free notes are chained through "link".

      subroutine evinit
      integer maxev, nheap, heap, kind, who, link, ifree
      parameter (maxev = 200)
      real clock, when
      common /simclk/ clock
      common /events/ when(maxev), nheap, heap(maxev),
     &                kind(maxev), who(maxev), link(maxev), ifree
      save /events/, /simclk/
      clock = 0.0
      nheap = 0
      do 10 i = 1, maxev - 1
   10 link(i) = i + 1
      link(maxev) = 0
      ifree = 1
      end

      subroutine schedl (delay, ikind, iwho)
c     An event of a kind for a customer, after a delay
      real delay
      integer ikind, iwho, i, j, note
      integer maxev, nheap, heap, kind, who, link, ifree
      parameter (maxev = 200)
      real clock, when
      common /simclk/ clock
      common /events/ when(maxev), nheap, heap(maxev),
     &                kind(maxev), who(maxev), link(maxev), ifree
      save /events/, /simclk/
      if (ifree .eq. 0) stop 'schedl: no room'
      if (delay .lt. 0.0) stop 'schedl: into the past'
      note = ifree
      ifree = link(note)
      when(note) = clock + delay
      kind(note) = ikind
      who(note) = iwho
      nheap = nheap + 1
      i = nheap
   10 j = i/2
      if (j .ge. 1) then
         if (when(heap(j)) .gt. when(note)) then
            heap(i) = heap(j)
            i = j
            go to 10
         end if
      end if
      heap(i) = note
      end

      subroutine nextev (ikind, iwho, *)
c     The earliest event; the clock moves to it.  *1 if there is none.
      integer ikind, iwho, i, j, last, note
      integer maxev, nheap, heap, kind, who, link, ifree
      parameter (maxev = 200)
      real clock, when
      common /simclk/ clock
      common /events/ when(maxev), nheap, heap(maxev),
     &                kind(maxev), who(maxev), link(maxev), ifree
      save /events/, /simclk/
      if (nheap .eq. 0) return 1
      note = heap(1)
      clock = when(note)
      ikind = kind(note)
      iwho = who(note)
      link(note) = ifree
      ifree = note
      last = heap(nheap)
      nheap = nheap - 1
      i = 1
   10 j = 2*i
      if (j .le. nheap) then
         if (j .lt. nheap) then
            if (when(heap(j+1)) .lt. when(heap(j))) j = j + 1
         end if
         if (when(heap(j)) .lt. when(last)) then
            heap(i) = heap(j)
            i = j
            go to 10
         end if
      end if
      heap(i) = last
      end

      subroutine queues (nq)
c     Several queues in one pool of rings.  The entries
c        qput (iq, item, *)   at the end; *1 if it is full
c        qget (iq, item, *)   from the front; *1 if it is empty
c        qstat (iq, mean, most, n)  mean length over time, greatest, now
      integer nq, iq, item, maxq, ring, most, n, k
      real mean
      parameter (maxq = 8, ring = 64)
      integer slot(0:ring-1, maxq), head(maxq), count(maxq), peak(maxq)
      real area(maxq), since(maxq), clock
      common /simclk/ clock
      save
      do 10 k = 1, nq
         head(k) = 0
         count(k) = 0
         peak(k) = 0
         area(k) = 0.0
         since(k) = clock
   10 continue
      return

      entry qput (iq, item, *)
      if (count(iq) .eq. ring) return 1
      area(iq) = area(iq) + count(iq)*(clock - since(iq))
      since(iq) = clock
      slot(mod(head(iq) + count(iq), ring), iq) = item
      count(iq) = count(iq) + 1
      peak(iq) = max(peak(iq), count(iq))
      return

      entry qget (iq, item, *)
      if (count(iq) .eq. 0) return 1
      area(iq) = area(iq) + count(iq)*(clock - since(iq))
      since(iq) = clock
      item = slot(head(iq), iq)
      head(iq) = mod(head(iq) + 1, ring)
      count(iq) = count(iq) - 1
      return

      entry qstat (iq, mean, most, n)
      mean = 0.0
      if (clock .gt. 0.0) mean = (area(iq)
     &   + count(iq)*(clock - since(iq)))/clock
      most = peak(iq)
      n = count(iq)
      end
