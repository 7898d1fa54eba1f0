      Program TComp
C     Exercise the complex routines.
      Integer NMesh, NDeg, NLong
      Parameter (NMesh = 5, NDeg = 6, NLong = 32)
      Real R(NMesh), Cap(NMesh), Ind(NMesh), Omega, Pi
      Complex Volt(NMesh), Zin, A(0:NDeg), Z(NDeg), W(0:NDeg), Zero(4)
      Complex Series(NLong), Work(16, 2)
      Real X(NLong), P(3), Q(4), PQ(6), Worst
      Complex (Kind (0D0)) M(2, 2), B(2, 2), C(2, 2), D
      Double Precision Ident, Far
      Logical Ok, ByReal, ByMod, ByAngl
      External ByReal, ByMod, ByAngl, ZRoot, ZLogar
      Complex (Kind (0D0)) ZRoot, ZLogar
      Integer I, J, K
      Character*6 State
      Parameter (Pi = 3.14159265)
      Data R, Cap, Ind /NMesh*10., NMesh*1E-6, NMesh*1E-3/
      Data Zero /(1., 1.), (1., -1.), (-2., 0.), (0., .5)/
      Data P /1., 2., 3./, Q /4., 5., 6., 7./
C
      Write (*, 100)
      Do 10 I = 2, 5
         Omega = 2*Pi*10.**I
         Call Ladder (Omega, R, Cap, Ind, NMesh, Volt, Zin)
         Write (*, 110) 10**I, 20*Log10 (Cabs (Volt(NMesh))),
     1      Atan2 (Aimag (Volt(NMesh)), Real (Volt(NMesh)))*180/Pi, Zin
   10 Continue
  100 Format (' Hertz', T12, 'Decibel', T24, 'Phase', T36, 'Impedance')
  110 Format (1X, I6, F12.3, F10.1, '  (', F9.2, ' +', F9.2, ' i)')
C
C     Z**6 = 1, and a polynomial made of its roots.
      Do 20 K = 1, NDeg - 1
   20 A(K) = 0.
      A(0) = -1.
      A(NDeg) = 1.
      Call Roots (A, NDeg, Z, W, *90)
      Call SortZ (Z, NDeg, ByAngl)
      Write (*, 120) 'Roots of one:', (Z(K), K = 1, NDeg)
      Call FromRt (Zero, 4, A)
      Call Roots (A, 4, Z, W, *90)
      Call SortZ (Z, 4, ByMod)
      Write (*, 120) 'By modulus:', (Z(K), K = 1, 4)
      Call SortZ (Z, 4, ByReal)
      Write (*, 120) 'By real part:', (Z(K), K = 1, 4)
  120 Format (1X, A, /, (3(:, 2X, '(', SP, F7.4, ',', F7.4, ')', SS)))
C
C     A sum of two waves; its transform has four lines.
      Do 30 K = 1, NLong
         X(K) = Cos (2*Pi*3*(K - 1)/NLong) + .5*Sin (2*Pi*5*(K - 1)
     1          /NLong)
         Series(K) = X(K)
   30 Continue
      Call FFT (Series, NLong, -1)
      Do 40 K = 1, NLong
         If (Cabs (Series(K)) .Gt. 1E-3) Write (*, 130) K - 1, Series(K)
   40 Continue
  130 Format (' Line', I3, 2F8.3)
      Call RFFT (X, NLong)
      Worst = 0.
      Do 50 K = 2, NLong/2
         Worst = Max (Worst, Cabs (Series(K) - Cmplx (X(2*K-1),X(2*K))))
   50 Continue
      Call FFT (Series, NLong, +1)
      If (Worst .Lt. 1E-4 .And. Abs (Series(1)/NLong - 1.) .Lt. 1E-5)
     1   Then
         State = 'agree'
      Else
         State = 'differ'
      End If
      Write (*, *) 'The two transforms ', State
      Call Convol (P, 3, Q, 4, PQ, Work, 16)
      Write (*, '('' Product:'', 6F6.1)') PQ
C
C     Roots and logarithms of matrices.
      M(1, 1) = (2D0, 0D0)
      M(1, 2) = (1D0, 1D0)
      M(2, 1) = (0D0, -1D0)
      M(2, 2) = 3
      Call ZFun2 (M, ZRoot, B, Ok)
      Far = 0
      Do 70 I = 1, 2
         Do 60 J = 1, 2
            D = B(I, 1)*B(1, J) + B(I, 2)*B(2, J)
            Far = Max (Far, Abs (D - M(I, J)))
   60    Continue
   70 Continue
      Write (*, *) 'Square root of a matrix:', Ok .And. Far .Lt. 1D-12
      Call ZFun2 (M, ZLogar, C, Ok)
      D = Exp (C(1, 1) + C(2, 2)) - (M(1, 1)*M(2, 2) - M(1, 2)*M(2, 1))
      Ok = Ok .And. Abs (D) .Lt. 1D-12
      Write (*, *) 'Trace of its logarithm: ', Ok
      Far = 0
      Do 80 I = -2, 2
         Do 80 J = -2, 2
            Far = Max (Far, Ident (Cmplx (I, J, Kind (0D0))))
   80 Continue
      Write (*, '(1X, A, L2)') 'Identities:', Far .Lt. 1D-10
      Stop
   90 Write (*, *) 'no root found'
      End
