c     A post office with three counters: stamps (two clerks), parcels (one
c     clerk) and savings (one).  Customers arrive at random, some go from
c     one counter to another, and some leave when the queue is too long.
      program office
      implicit none
      integer nqueue, arrive, close, maxcus
      parameter (nqueue = 3, arrive = 1, close = 3, maxcus = 400)
      integer clerks(nqueue), busy(nqueue), where(maxcus)
      integer ncust, nlost, nserve, kind, who, q, most, left, other
      real since(maxcus), clock, mean, draw, expon, mserv(nqueue)
      real total, worst, work(nqueue), t
      logical open
      character*8 name(nqueue)
      common /simclk/ clock
      data clerks /2, 1, 1/, busy /nqueue*0/, mserv /2.0, 4.0, 5.0/
      data name /'STAMPS', 'PARCELS', 'SAVINGS'/, work /nqueue*0.0/
      data ncust, nlost, nserve, total, worst /3*0, 2*0.0/

      call evinit
      call queues (nqueue)
      open = .true.
      call schedl (480.0, close, 0)
      call schedl (expon(1.5), arrive, 0)

  100 call nextev (kind, who, *800)
      go to (200, 300, 400), kind
      stop 'unknown event'

c     an arrival, and the next one is planned
  200 if (.not. open) go to 100
      call schedl (expon(1.5), arrive, 0)
      if (ncust .eq. maxcus) go to 100
      ncust = ncust + 1
      since(ncust) = clock
      t = draw()
      q = 1
      if (t .gt. 0.6) q = 2
      if (t .gt. 0.85) q = 3
      call qstat (q, mean, most, left)
      if (left .gt. 8) then
         nlost = nlost + 1
         go to 100
      end if
      where(ncust) = q
      call qput (q, ncust, *900)
      call start (q, clerks, busy, mserv, work)
      go to 100

c     a service ends; one in ten goes to another counter
  300 q = where(who)
      busy(q) = busy(q) - 1
      if (draw() .lt. 0.1) then
         other = 1 + mod(q, nqueue)
         where(who) = other
         call qput (other, who, *900)
         call start (other, clerks, busy, mserv, work)
      else
         nserve = nserve + 1
         t = clock - since(who)
         total = total + t
         worst = max(worst, t)
      end if
      call start (q, clerks, busy, mserv, work)
      go to 100

c     the doors are shut, those inside are served
  400 open = .false.
      go to 100

  800 print 10, clock, ncust, nserve, nlost, total/max(nserve, 1), worst
      do 810 q = 1, nqueue
         call qstat (q, mean, most, left)
         print 20, name(q), mean, most, left,
     &      100.0*work(q)/(clock*clerks(q))
  810 continue
      if (nserve + nlost .ne. ncust) stop 'customers vanished'
      stop
  900 stop 'queue too long'
   10 format (' CLOSED AT', f7.1 / ' CUSTOMERS', i5, '  SERVED', i5,
     &   '  LOST', i4 / ' TIME INSIDE, MEAN', f7.2, ' LONGEST', f7.2 /
     &   / ' COUNTER  MEAN  MOST  LEFT  BUSY')
   20 format (1x, a8, f6.2, 2i5, f7.1, ' %')
      end

      subroutine start (q, clerks, busy, mserv, work)
c     begins services while a clerk is free and someone waits
      implicit none
      integer q, clerks(*), busy(*), who
      real mserv(*), work(*), t, expon
      integer endsrv
      parameter (endsrv = 2)
   10 if (busy(q) .lt. clerks(q)) then
         call qget (q, who, *20)
         busy(q) = busy(q) + 1
         t = 0.3 + expon(mserv(q) - 0.3)
         work(q) = work(q) + t
         call schedl (t, endsrv, who)
         go to 10
      end if
   20 return
      end

      real function draw ()
      implicit none
      integer s
      save s
      data s /20401/
      s = mod(s*137 + 4711, 65536)
      draw = (s + 0.5)/65536.0
      end

      real function expon (mean)
      implicit none
      real mean, draw
      expon = -mean*alog(draw())
      end
