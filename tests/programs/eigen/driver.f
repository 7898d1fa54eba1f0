      program driver
c
c     Solve a list of eigenvalue problems that is first written to a
c     scratch file, and then read.  A problem is a line with its kind,
c     its order and title, followed by the matrix row by row:
c
c        S  symmetric    G  general    R  rectangular (singular values)
c        E  the end
c
      include 'limits.inc'
      include 'counts.inc'
      double precision a(maxn, maxn), acopy(maxn, maxn), v(maxn, maxn)
      double precision d(maxn), e(maxn), w(2, maxn), prec
      double precision resid, svcond, svnorm, lambda, trace
      integer n, m, i, j, info, rank, svrank, nprob, ios
      real penros
      character kind*1, title*30, line*80
      external resid, svcond, svnorm, svrank
c     The same storage serves the singular values and the workspace.
      double precision s(maxn), wk(maxn*maxn)
      equivalence (s(1), wk(1))
c
      eps = prec ()
      open (lscr, status = 'scratch', form = 'formatted',
     &      access = 'sequential')
      call deck (lscr)
      endfile lscr
      rewind lscr
      nprob = 0
c
  100 read (lscr, 900, end = 800, err = 810, iostat = ios) kind, n, m,
     &   title
      nprob = nprob + 1
      i = index ('SGRE', kind)
      call clear
      go to (200, 300, 400, 800), i
      write (lout, *) 'unknown kind of problem: ', kind
      go to 800
c
c     Symmetric: both methods must agree.
c
  200 read (lscr, 910) ((a(i, j), j = 1, n), i = 1, n)
      call heading (title, n)
      call copy (a, acopy, maxn, n, n)
      call jacobi (jobvec, a, maxn, n, d, v, maxn, info)
      if (info .ne. 0) go to 820
      call values (d, n)
      call vector (v, maxn, n, min (n, 4))
      call work ('Jacobi ')
      call verify ('Jacobi', resid (acopy, maxn, n, d, v))
      call clear
      call copy (acopy, a, maxn, n, n)
      call trired (a, maxn, n, d, e, v, maxn)
      call triqr (n, d, e, v, maxn, *820)
      call work ('QR ')
      call verify ('QR', resid (acopy, maxn, n, d, v))
      call copy (acopy, a, maxn, n, n)
      call jacobi (jobval, a, maxn, n, e, v, maxn, info)
      do 210 i = 1, n
         e(i) = abs (e(i) - d(i))
  210 continue
      call verify ('agreement', e(n))
      go to 100
c
c     General: all eigenvalues, the vector of the last real one, and the
c     sum of all against the trace.
c
  300 read (lscr, 910) ((a(i, j), j = 1, n), i = 1, n)
      call heading (title, n)
      call copy (a, acopy, maxn, n, n)
      trace = 0d0
      do 310 i = 1, n
         trace = trace + a(i, i)
  310 continue
      call evenup (a, maxn, n, e)
      call hessen (a, maxn, n)
      call hessqr (a, maxn, n, w, info)
      if (info .ne. 0) go to 820
      call cvalue (w, n)
      call work ('QR ')
      do 320 i = 1, n
         trace = trace - w(1, i)
  320 continue
      call verify ('trace', abs (trace))
      do 330 i = n, 1, -1
         if (w(2, i) .eq. 0d0) go to 340
  330 continue
      go to 100
  340 do 350 j = 1, n
         d(j) = 1d0/j
  350 continue
      call invit (acopy, maxn, n, w(1, i) + 1d-4, d, a, maxn, lambda,
     &            *830)
      call verify ('inverse iteration', abs (lambda - w(1, i)))
      go to 100
c
c     Rectangular.
c
  400 read (lscr, 910) ((a(i, j), j = 1, n), i = 1, m)
      call heading (title, 0)
      call copy (a, acopy, maxn, m, n)
      call svd (a, maxn, m, n, s, v, maxn, info)
      if (info .ne. 0) goto 820
      write (lout, '(1x, ''Singular values'', /, (1x, 5g14.6))')
     &   (s(i), i = 1, n)
      rank = svrank (s, n, 1d-12)
      write (line, '(''rank'', i3, '', norm'', f10.4)') rank,
     &   svnorm (s, n)
      if (rank .eq. n) write (line(40:), '(''condition'', 1pe12.3)')
     &   svcond (s, n)
      write (lout, '(1x, a)') line
      call pseudo (a, maxn, m, n, s, v, maxn, 1d-12, wk(maxn+1), n)
      call verify ('pseudoinverse', penros (acopy, maxn, m, n,
     &             wk(maxn+1)))
      call work ('SVD ')
      go to 100
c
  800 write (lout, 920) nprob
      close (lscr)
      stop
  810 write (lout, '(a, i6)') ' error in the list of problems', ios
      stop 1
  820 write (lout, *) 'no convergence in problem', nprob
      stop 2
  830 write (lout, *) 'inverse iteration failed in problem', nprob
      stop 3
  900 format (a1, 2i4, 1x, a30)
  910 format (6f10.4)
  920 format (/1x, i2, ' problems', :, ' solved')
      end
c
      subroutine deck (lun)
c     Write the problems.
      integer lun
      integer i, j, k, nrow, ncol
      character*6 coef(6), all*36
      equivalence (coef(1), all)
      real merge0
      real sym(4, 4), gen(5, 5), rect(6, 3), comp(6, 6)
      data ((sym(i, j), i = 1, j), j = 1, 4) /4., 1., 3., -2., 0., 2.,
     &   2., 1., -2., -1./
      data gen /4*0., 2*1., 5*0., 1., 5*0., 1., 5*0., 1., 0.5/
      data all /'  -720  1764 -1624   735  -175    21'/
      data ((rect(i, j), i = 1, 3), j = 1, 3) /9*1.0/
      data ((rect(i, j), i = 4, 6), j = 1, 3) /1., 2., 3., 4., 5., 6.,
     &   7., 8., 10./
      do 20 j = 1, 4
         do 10 i = j + 1, 4
            sym(i, j) = sym(j, i)
   10    continue
   20 continue
      nrow = 4
      ncol = 4
      write (lun, 900) 'S', ncol, nrow, 'A symmetric matrix'
      write (lun, 910) ((sym(i, j), j = 1, ncol), i = 1, nrow)
      write (lun, 900) 'S', 6, 6, 'Second differences'
      write (lun, 910) ((merge0 (i, j), j = 1, 6), i = 1, 6)
      write (lun, 900) 'G', 5, 5, 'A cyclic shift with a twist'
      write (lun, 910) ((gen(i, j), j = 1, 5), i = 1, 5)
c     The companion matrix of (x-1)(x-2)(x-3)(x-4)(x-5)(x-6)
      do 40 j = 1, 6
         do 30 i = 1, 6
            comp(i, j) = 0.
   30    continue
         if (j .gt. 1) comp(j - 1, j) = 1.
   40 continue
      do 50 k = 1, 6
      read (coef(k), '(f6.0)') comp(6, k)
   50 continue
      write (lun, 900) 'G', 6, 6, 'A companion matrix'
      write (lun, 910) ((comp(i, j), j = 1, 6), i = 1, 6)
      write (lun, 900) 'R', 3, 6, 'Six rows of three'
      write (lun, 910) ((rect(i, j), j = 1, 3), i = 1, 6)
      write (lun, 900) 'R', 2, 3, 'Columns in proportion'
      write (lun, 910) 1., 2., 2., 4., 3., 6.
      write (lun, 900) 'E', 0, 0, 'end'
  900 format (a1, i4, i4, 1x, a)
  910 format (6f10.4)
      end
c
      real function merge0 (i, j)
      integer i, j
      if (abs (i - j) - 1) 10, 20, 30
   10 merge0 = 2.
      return
   20 merge0 = -1.
      return
   30 merge0 = 0.
      end
c
      double precision function prec ()
c     The distance from one to the next larger number, by halving.
      double precision one, x, y
      one = 1d0
      x = one
   10 y = one + x/2
      call store (y)
      if (y .gt. one) then
         x = x/2
         goto 10
      endif
      prec = x
      end
c
      subroutine store (x)
c     Nothing happens here, but the optimizer does not know.
      double precision x, sink
      save sink
      sink = x
      end
c
      subroutine copy (a, b, ld, m, n)
      integer ld, m, n, i, j
      double precision a(ld, n), b(ld, n)
      do 10 j = 1, n
      do 10 i = 1, m
   10 b(i, j) = a(i, j)
      end
c
      double precision function resid (a, ld, n, d, v)
c     The largest element of A*V - V*D.
      integer ld, n, i, j, k
      double precision a(ld, n), d(n), v(ld, n), t
      resid = 0d0
      do 30 j = 1, n
         do 20 i = 1, n
            t = -d(j)*v(i, j)
            do 10 k = 1, n
               t = t + a(i, k)*v(k, j)
   10       continue
            resid = dmax1 (resid, dabs (t))
   20    continue
   30 continue
      end
c
      function penros (a, ld, m, n, x)
c     How badly A*X*A = A is violated, in single precision.
      integer ld, m, n, i, j, k, l
      double precision a(ld, n), x(n, m), t
      penros = 0.
      do 40 j = 1, n
         do 30 i = 1, m
            t = -a(i, j)
            do 20 k = 1, m
               do 10 l = 1, n
                  t = t + a(i, l)*x(l, k)*a(k, j)
   10          continue
   20       continue
            penros = amax1 (penros, real (abs (t)))
   30    continue
   40 continue
      end
