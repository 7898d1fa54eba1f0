c     Subspace iteration and the two ways to follow the motion.
c
      subroutine subspc (nmodes, tol, freq, shape, ld, iter, *)
c
c     The lowest eigenvalues of stiff*x = freq*mass*x, and vectors x for
c     which x'*mass*x = 1, with a few vectors more than are wanted.
c
      implicit none
      include 'beam.inc'
      integer nmodes, ld, iter, maxsub
      parameter (maxsub = 12)
      double precision tol, freq(nmodes), shape(ld, nmodes)
      double precision fact(0:nbw, maxeq), x(maxeq, maxsub),
     &   y(maxeq, maxsub), a(maxsub, maxsub), b(maxsub, maxsub),
     &   q(maxsub, maxsub), val(maxsub), old(maxsub), worst, dot
      integer nsub, i, j, k, neg
      external dot
      nsub = min (nmodes + 4, maxsub)
      do 10 j = 1, neq
         do 10 i = 0, nbw
            fact(i, j) = stiff(i, j)
   10 continue
      call bfact (fact, neq, neg, *900)
c        Any vectors, but always the same.
      k = 17
      do 20 j = 1, nsub
         old(j) = 0
         do 20 i = 1, neq
            k = mod (171*k + 11213, 53125)
            x(i, j) = k/53125d0 - 0.5d0
   20 continue
      do 100 iter = 1, 60
         do 40 j = 1, nsub
            call bmul (mass, neq, x(1, j), y(1, j))
            do 30 i = 1, neq
   30       x(i, j) = y(i, j)
            call bsolv (fact, neq, x(1, j))
   40    continue
c           The small problem: a is diagonal only at the end.
         do 60 j = 1, nsub
            do 50 i = 1, nsub
               a(i, j) = dot (x(1, i), y(1, j), neq)
   50       continue
   60    continue
         do 70 j = 1, nsub
            call bmul (mass, neq, x(1, j), y(1, j))
   70    continue
         do 80 j = 1, nsub
            do 80 i = 1, nsub
               b(i, j) = dot (x(1, i), y(1, j), neq)
   80    continue
         call small (a, b, q, val, nsub, maxsub, *900)
         do 95 i = 1, neq
            do 85 j = 1, nsub
               y(i, j) = x(i, j)
   85       continue
            do 90 j = 1, nsub
               x(i, j) = 0
               do 88 k = 1, nsub
                  x(i, j) = x(i, j) + y(i, k)*q(k, j)
   88          continue
   90       continue
   95    continue
         worst = 0
         do 98 j = 1, nsub
            if (j .le. nmodes) worst = max (worst, abs (1 - old(j)
     &                                               /val(j)))
            old(j) = val(j)
   98    continue
         if (worst .lt. tol) go to 200
  100 continue
      return 1
  200 do 220 j = 1, nmodes
         freq(j) = val(j)
         do 210 i = 1, neq
            shape(i, j) = x(i, j)
  210    continue
  220 continue
      return
  900 return 1
      end
c
      double precision function dot (x, y, n)
      implicit none
      integer n, i
      double precision x(n), y(n)
      dot = 0
      do 10 i = 1, n
   10 dot = dot + x(i)*y(i)
      end
c
      subroutine small (a, b, q, val, n, ld, *)
c
c     The small problem a*q = val*b*q: b = l*l', then rotations for
c     inv(l)*a*inv(l'), then q = inv(l')*(rotations), sorted upwards.
c
      implicit none
      integer n, ld, i, j, k, sweep
      double precision a(ld, n), b(ld, n), q(ld, n), val(n)
      double precision t, c, s, off, u, v
      do 30 j = 1, n
         do 20 i = j, n
            do 10 k = 1, j - 1
               b(i, j) = b(i, j) - b(i, k)*b(j, k)
   10       continue
            if (i .eq. j) then
               if (b(j, j) .le. 0d0) return 1
               b(j, j) = sqrt (b(j, j))
            else
               b(i, j) = b(i, j)/b(j, j)
            end if
   20    continue
   30 continue
c        Divide by l from the left, then by l' from the right.
      do 60 j = 1, n
         do 50 i = 1, n
            do 40 k = 1, i - 1
               a(i, j) = a(i, j) - b(i, k)*a(k, j)
   40       continue
            a(i, j) = a(i, j)/b(i, i)
   50    continue
   60 continue
      do 90 i = 1, n
         do 80 j = 1, n
            do 70 k = 1, j - 1
               a(i, j) = a(i, j) - a(i, k)*b(j, k)
   70       continue
            a(i, j) = a(i, j)/b(j, j)
            q(i, j) = 0
   80    continue
         q(i, i) = 1
   90 continue
      do 150 sweep = 1, 40
         off = 0
         do 140 i = 1, n - 1
            do 130 j = i + 1, n
               off = max (off, abs (a(i, j))/sqrt (abs (a(i, i)
     &                    *a(j, j))))
               if (a(i, j) .eq. 0d0) go to 130
               t = (a(j, j) - a(i, i))/(2*a(i, j))
               t = sign (1d0, t)/(abs (t) + sqrt (1 + t**2))
               c = 1/sqrt (1 + t**2)
               s = t*c
               do 100 k = 1, n
                  u = a(k, i)
                  v = a(k, j)
                  a(k, i) = c*u - s*v
                  a(k, j) = s*u + c*v
                  u = q(k, i)
                  v = q(k, j)
                  q(k, i) = c*u - s*v
                  q(k, j) = s*u + c*v
  100          continue
               do 110 k = 1, n
                  u = a(i, k)
                  v = a(j, k)
                  a(i, k) = c*u - s*v
                  a(j, k) = s*u + c*v
  110          continue
  130       continue
  140    continue
         if (off .lt. 1d-13) go to 160
  150 continue
  160 do 190 j = 1, n
c           back to the old coordinates
         do 180 i = n, 1, -1
            do 170 k = i + 1, n
               q(i, j) = q(i, j) - b(k, i)*q(k, j)
  170       continue
            q(i, j) = q(i, j)/b(i, i)
  180    continue
         val(j) = a(j, j)
  190 continue
c        In ascending order, vectors and all.
      do 230 i = 1, n - 1
         k = i
         do 200 j = i + 1, n
            if (val(j) .lt. val(k)) k = j
  200    continue
         if (k .eq. i) cycle
         t = val(i)
         val(i) = val(k)
         val(k) = t
         do 210 j = 1, n
            t = q(j, i)
            q(j, i) = q(j, k)
            q(j, k) = t
  210    continue
  230 continue
      end
c
      subroutine motion (nmodes, freq, shape, ld, time, blow, x)
c     A blow in the middle: each mode begins with its share of velocity.
      implicit none
      include 'beam.inc'
      integer nmodes, ld, i, j, mid
      double precision freq(nmodes), shape(ld, nmodes), time, blow
      double precision x(neq), omega, share
c
      mid = 2*(nel/2) + 1
      do 10 i = 1, neq
         x(i) = 0
   10 continue
      do 30 j = 1, nmodes
         omega = sqrt (freq(j))
         share = blow*shape(mid, j)
         do 20 i = 1, neq
            x(i) = x(i) + shape(i, j)*share*sin (omega*time)/omega
   20    continue
   30 continue
      end
c
      subroutine newmrk (nsteps, dt, blow, x)
c     The rule of constant average acceleration.
      implicit none
      include 'beam.inc'
      integer nsteps, step, i, j, mid, neg
      double precision dt, blow, x(neq), v(maxeq), acc(maxeq),
     &   p(maxeq), r(maxeq), eff(0:nbw, maxeq), a0, anew
      a0 = 4/dt**2
      mid = 2*(nel/2) + 1
      do 20 i = 1, neq
         x(i) = 0
         v(i) = 0
         acc(i) = 0
   20 continue
c        The velocities after the blow: mass*v = blow.
      v(mid) = blow
      do 30 j = 1, neq
         do 30 i = 0, nbw
            eff(i, j) = mass(i, j)
   30 continue
      call bfact (eff, neq, neg, *90)
      call bsolv (eff, neq, v)
      do 40 j = 1, neq
         do 40 i = 0, nbw
            eff(i, j) = stiff(i, j) + a0*mass(i, j)
   40 continue
      call bfact (eff, neq, neg, *90)
      do 80 step = 1, nsteps
         do 50 i = 1, neq
            p(i) = a0*x(i) + 4/dt*v(i) + acc(i)
   50    continue
         call bmul (mass, neq, p, r)
         call bsolv (eff, neq, r)
         do 60 i = 1, neq
            anew = a0*r(i) - p(i)
            v(i) = v(i) + dt/2*(acc(i) + anew)
            acc(i) = anew
            x(i) = r(i)
   60    continue
   80 continue
      return
   90 stop 'newmrk'
      end
