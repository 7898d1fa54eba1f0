C     Fourier transforms.
C
      Subroutine FFT (Z, N, Sign)
C
C     Replace the N elements of Z, N being a power of two, by their
C     transform; Sign = -1 forward, +1 backward (without division by N).
C
      Integer N, Sign, I, J, K, Half, Len
      Complex Z(0:N - 1), W, WStep, T
      Real Pi
      Parameter (Pi = 3.14159265)
C        Put the elements into the order of their reversed bits.
      J = 0
      Do 20 I = 0, N - 2
         If (I .Lt. J) Then
            T = Z(I)
            Z(I) = Z(J)
            Z(J) = T
         End If
         K = N/2
   10    If (K .Le. J) Then
            J = J - K
            K = K/2
            Go To 10
         End If
         J = J + K
   20 Continue
C        Butterflies.
      Len = 2
   30 If (Len .Gt. N) Return
      Half = Len/2
      WStep = Cmplx (Cos (Pi/Half), Sign*Sin (Pi/Half))
      W = (1., 0.)
      Do 50 K = 0, Half - 1
         Do 40 I = K, N - 1, Len
            T = W*Z(I + Half)
            Z(I + Half) = Z(I) - T
            Z(I) = Z(I) + T
   40    Continue
         W = W*WStep
   50 Continue
      Len = 2*Len
      Go To 30
      End
C
      Subroutine RFFT (X, N)
C
C     The transform of N real numbers by way of N/2 complex ones.  The
C     caller's array is taken for complex here, as they lie in storage
C     in the same order.  X receives the real part of the frequencies 0
C     and N/2, then real and imaginary parts of 1, 2, ..., N/2 - 1.
C
      Integer N, K
      Real X(2, 0:N/2 - 1), Pi
      Complex Z(0:511), Even, Odd, W
      Real Flat(2, 0:511)
      Equivalence (Z(0), Flat(1, 0))
      Save Pi
      Data Pi /3.14159265/
      If (N/2 .Gt. 512) Stop 'RFFT: too long'
      Do 10 K = 0, N/2 - 1
         Flat(1, K) = X(1, K)
         Flat(2, K) = X(2, K)
   10 Continue
      Call FFT (Z, N/2, -1)
      X(1, 0) = Flat(1, 0) + Flat(2, 0)
      X(2, 0) = Flat(1, 0) - Flat(2, 0)
      Do 20 K = 1, N/2 - 1
         Even = (Z(K) + Conjg (Z(N/2 - K)))/2
         Odd = (Z(K) - Conjg (Z(N/2 - K)))*(0., -.5)
         W = Cexp (Cmplx (0., -2*Pi*K/N))
         Even = Even + W*Odd
         X(1, K) = Real (Even)
         X(2, K) = Aimag (Even)
   20 Continue
      End
C
      Subroutine Convol (A, NA, B, NB, C, Work, NW)
C     The product of two polynomials, or the convolution of two series.
      Integer NA, NB, NW, K
      Real A(NA), B(NB), C(NA + NB - 1)
      Complex Work(NW, 2)
      Do 10 K = 1, NW
         Work(K, 1) = 0.
         Work(K, 2) = 0.
         If (K .Le. NA) Work(K, 1) = A(K)
         If (K .Le. NB) Work(K, 2) = B(K)
   10 Continue
      Call FFT (Work(1, 1), NW, -1)
      Call FFT (Work(1, 2), NW, -1)
      Do 20 K = 1, NW
   20 Work(K, 1) = Work(K, 1)*Work(K, 2)/NW
      Call FFT (Work, NW, +1)
      Do 30 K = 1, Min (NA + NB - 1, NW)
   30 C(K) = Real (Work(K, 1))
      End
