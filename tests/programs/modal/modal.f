      program modal
c     ------------------------------------------------------------------
c     Vibrations of a beam on springs: lowest frequencies by subspace
c     iteration, checked by Sturm sequences, and the motion after a blow
c     by superposition of modes and by Newmark's method.
c
c     The options are read with NAMELIST from a file written here first.
c     ------------------------------------------------------------------
      implicit none
      include 'beam.inc'
      integer maxmod
      parameter (maxmod = 8)
      integer nmodes, nsteps, luopt, ios, i, k, iter, below, sturm
      logical verbose, good
      character*16 support
      double precision dt, blow, tol, freq(maxmod), shape(maxeq, maxmod)
      double precision x1(maxeq), x2(maxeq), diff, rigid, exact
      double precision pi
      external sturm, exact
      parameter (pi = 3.14159265358979d0, luopt = 12)
      namelist /beam/ nel, span, ei, rho, support
      namelist /run/ nmodes, nsteps, dt, blow, tol, verbose
c
      open (unit=luopt, status='scratch', form='formatted')
      call cards (luopt)
      rewind luopt
  100 continue
c        defaults, for whatever the file does not mention
      nel = 10
      span = 1
      ei = 1
      rho = 1
      support = 'hinged'
      nmodes = 3
      nsteps = 100
      dt = 0.001d0
      blow = 1
      tol = 1d-10
      verbose = .false.
      read (luopt, nml=beam, end=900, iostat=ios)
      if (ios .ne. 0) go to 900
      read (luopt, nml=run, err=910)
      nmodes = min (nmodes, maxmod)
      if (verbose) then
         write (*, 20) nel, span, ei, rho, support
   20    format (/' Beam of', i3, ' elements: length', f7.3,
     &           ', stiffness', f7.3, ', mass', f7.3, ', ', a)
      end if
      call assemb (support, *920)
      if (neq .lt. 2*nmodes + 4) go to 930
      call subspc (nmodes, tol, freq, shape, maxeq, iter, *940)
      do i = 1, nmodes
         write (*, 30) i, sqrt (freq(i))/(2*pi), exact (support, i)
      end do
   30 format (' Mode', i2, ':', f12.4, ' Hertz; smooth beam:', f12.4)
c        Between the last frequency and the next there must be none.
      below = sturm (freq(nmodes)*1.001d0)
      good = below .eq. nmodes
      write (*, *) 'Sturm sequence: ', below, good
      call motion (nmodes, freq, shape, maxeq, nsteps*dt, blow, x1)
      call newmrk (nsteps, dt, blow, x2)
      diff = 0
      rigid = 0
      do k = 1, neq, 2
         diff = max (diff, abs (x1(k) - x2(k)))
         rigid = max (rigid, abs (x2(k)))
      end do
      write (*, '(1x, a, l2)') 'Modes and steps agree:', diff .lt. 0.1d0
     &                                                  *rigid
      go to 100
  900 close (luopt)
      stop
  910 stop 'options'
  920 stop 'support'
  930 stop 'too few elements'
  940 stop 'no convergence'
      end
c
      subroutine cards (lun)
c     The options of two runs.
      implicit none
      integer lun, k
      character*64 text(8)
      data (text(k), k = 1, 4) /
     & ' &beam nel = 20, span = 2.0, ei = 10.0, rho = 0.5,',
     & '       support = ''hinged'' /',
     & ' &run nmodes = 4, nsteps = 400, dt = 2.5d-4,',
     & '      verbose = .true. /'/
      data (text(k), k = 5, 8) /
     & ' &beam nel = 12, support = ''clamped'' /', ' ',
     & ' &run tol = 1.d-9, nsteps = 200, dt = 1.d-3,',
     & '      blow = 0.5, verbose = f /'/
      write (lun, '(a)') text
      end
c
      subroutine assemb (support, *)
c     Stiffness and consistent masses.  Supports are strong springs, so
c     that no equation disappears.
      implicit none
      include 'beam.inc'
      character*(*) support
      integer n, i, j, ib
      double precision h, ke(4, 4), me(4, 4), ck, cm, strong
      parameter (strong = 1d9)
      integer kpat(4, 4), mpat(4, 4), power(4)
      save kpat, mpat, power
      data kpat /12, 6, -12, 6,  6, 4, -6, 2,
     &           -12, -6, 12, -6,  6, 2, -6, 4/
      data mpat /156, 22, 54, -13,  22, 4, 13, -3,
     &           54, 13, 156, -22,  -13, -3, -22, 4/
      data power /0, 1, 0, 1/
      neq = 2*(nel + 1)
      h = span/nel
      ck = ei/h**3
      cm = rho*h/420
      do 10 j = 1, neq
         do 10 i = 0, nbw
            stiff(i, j) = 0
            mass(i, j) = 0
   10 continue
      do 40 n = 1, nel
         do 30 j = 1, 4
            do 20 i = j, 4
               ke(i, j) = ck*kpat(i, j)*h**(power(i) + power(j))
               me(i, j) = cm*mpat(i, j)*h**(power(i) + power(j))
               ib = 2*(n - 1) + j
               stiff(i - j, ib) = stiff(i - j, ib) + ke(i, j)
               mass(i - j, ib) = mass(i - j, ib) + me(i, j)
   20       continue
   30    continue
   40 continue
      select case (support)
      case ('hinged')
         stiff(0, 1) = stiff(0, 1) + strong*ck
         stiff(0, neq - 1) = stiff(0, neq - 1) + strong*ck
      case ('clamped')
         do 50 i = 0, 1
            stiff(0, 1 + i) = stiff(0, 1 + i) + strong*ck*h**(2*i)
            stiff(0, neq - i) = stiff(0, neq - i)
     &                        + strong*ck*h**(2 - 2*i)
   50    continue
      case default
         return 1
      end select
      end
c
      double precision function exact (support, mode)
c     The frequency of the continuous beam.
      implicit none
      include 'beam.inc'
      character*(*) support
      integer mode
      double precision pi, root
      parameter (pi = 3.14159265358979d0)
      if (support .eq. 'hinged') then
         root = mode*pi
      else
c           cosh (x)*cos (x) = 1
         root = (mode + 0.5d0)*pi
         root = root - (-1)**mode*2*exp (-root)
      end if
      exact = (root/span)**2*sqrt (ei/rho)/(2*pi)
      end
c
      subroutine bmul (b, n, x, y)
c     y := b*x for a symmetric band matrix.
      implicit none
      include 'beam.inc'
      integer n, i, j
      double precision b(0:nbw, n), x(n), y(n)
      do 10 i = 1, n
   10 y(i) = b(0, i)*x(i)
      do 30 j = 1, n
         do 20 i = j + 1, min (n, j + nbw)
            y(i) = y(i) + b(i - j, j)*x(j)
            y(j) = y(j) + b(i - j, j)*x(i)
   20    continue
   30 continue
      end
c
      subroutine bfact (b, n, neg, *)
c     b = l*d*l'; neg is the number of negative elements of d.
      implicit none
      include 'beam.inc'
      integer n, neg, i, j, k
      double precision b(0:nbw, n), t
      neg = 0
      do 40 k = 1, n
         if (b(0, k) .eq. 0d0) return 1
         if (b(0, k) .lt. 0d0) neg = neg + 1
         do 20 i = min (n, k + nbw), k + 1, -1
            t = b(i - k, k)/b(0, k)
            do 10 j = k + 1, i
               b(i - j, j) = b(i - j, j) - t*b(j - k, k)
   10       continue
            b(i - k, k) = t
   20    continue
   40 continue
      end
c
      subroutine bsolv (b, n, x)
      implicit none
      include 'beam.inc'
      integer n, i, j
      double precision b(0:nbw, n), x(n)
      do 10 j = 1, n
         do 10 i = j + 1, min (n, j + nbw)
   10 x(i) = x(i) - b(i - j, j)*x(j)
      do 30 j = n, 1, -1
         x(j) = x(j)/b(0, j)
         do 20 i = j + 1, min (n, j + nbw)
            x(j) = x(j) - b(i - j, j)*x(i)
   20    continue
   30 continue
      end
c
      integer function sturm (shift)
c     The number of eigenvalues less than the shift.
      implicit none
      include 'beam.inc'
      double precision shift, work(0:nbw, maxeq)
      integer i, j, neg
      do 10 j = 1, neq
         do 10 i = 0, nbw
            work(i, j) = stiff(i, j) - shift*mass(i, j)
   10 continue
      call bfact (work, neq, neg, *20)
   20 sturm = neg
      end
