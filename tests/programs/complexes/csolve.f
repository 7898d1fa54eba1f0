C     Linear systems with complex matrices, in single precision, and the
C     response of an electric network with them.
C
      Subroutine CFactr (A, Lda, N, IPiv, Det)
C     LU factors with partial pivoting by Crout's order of operations,
C     the sums being formed in double precision.
      Integer Lda, N, IPiv(N), I, J, K, L
      Complex A(Lda, N), Det, T
      Double Precision SumR, SumI
C     A norm without square root
      Real Abs1
      Complex Z
      Abs1 (Z) = Abs (Real (Z)) + Abs (Aimag (Z))
C
      Det = (1.0, 0.0)
      Do 60 K = 1, N
C        The column of L.
         L = K
         Do 20 I = K, N
            SumR = Real (A(I, K))
            SumI = Aimag (A(I, K))
            Do 10 J = 1, K - 1
               SumR = SumR - Dprod (Real (A(I, J)), Real (A(J, K)))
     1              + Dprod (Aimag (A(I, J)), Aimag (A(J, K)))
               SumI = SumI - Dprod (Real (A(I, J)), Aimag (A(J, K)))
     1              - Dprod (Aimag (A(I, J)), Real (A(J, K)))
   10       Continue
            A(I, K) = Cmplx (SumR, SumI)
            If (Abs1 (A(I, K)) .Gt. Abs1 (A(L, K))) L = I
   20    Continue
         IPiv(K) = L
         If (L .Ne. K) Then
            Do 30 J = 1, N
               T = A(L, J)
               A(L, J) = A(K, J)
               A(K, J) = T
   30       Continue
            Det = -Det
         End If
         Det = Det*A(K, K)
         If (A(K, K) .Eq. (0.0, 0.0)) Return
C        The row of U.
         Do 50 J = K + 1, N
            T = A(K, J)
            Do 40 I = 1, K - 1
               T = T - A(K, I)*A(I, J)
   40       Continue
            A(K, J) = T/A(K, K)
   50    Continue
   60 Continue
      End
C
      Subroutine CSubst (A, Lda, N, IPiv, B)
C     With the factors, L*U*X = B, U having the unit diagonal.
      Integer Lda, N, IPiv(*), I, J
      Complex A(Lda, *), B(*), T
      Do 20 I = 1, N
         T = B(IPiv(I))
         B(IPiv(I)) = B(I)
         Do 10 J = 1, I - 1
            T = T - A(I, J)*B(J)
   10    Continue
         B(I) = T/A(I, I)
   20 Continue
      Do 40 I = N - 1, 1, -1
         Do 30 J = I + 1, N
            B(I) = B(I) - A(I, J)*B(J)
   30    Continue
   40 Continue
      End
C
      Subroutine Ladder (Omega, R, Cap, Ind, N, Volt, Zin)
C
C     A ladder of N meshes, each with resistance and inductance along
C     and a capacitor across: the voltages at its nodes at the angular
C     frequency Omega when one volt is applied, and the impedance seen.
C
      Integer N, Max, I, J
      Parameter (Max = 12)
      Real Omega, R(N), Cap(N), Ind(N)
      Complex Volt(N), Zin, Y(Max, Max), Ys(0:Max), Yc, Det
      Integer IPiv(Max)
      Ys(N) = 0
      Do 10 I = 1, N
         Ys(I - 1) = 1.0/Cmplx (R(I), Omega*Ind(I))
   10 Continue
      Do 30 I = 1, N
         Do 20 J = 1, N
            Y(I, J) = (0.0, 0.0)
   20    Continue
         Yc = Cmplx (0.0, Omega*Cap(I))
         Y(I, I) = Ys(I - 1) + Ys(I) + Yc
         If (I .Gt. 1) Y(I, I - 1) = -Ys(I - 1)
         If (I .Lt. N) Y(I, I + 1) = -Ys(I)
         Volt(I) = (0., 0.)
   30 Continue
      Volt(1) = Ys(0)
      Call CFactr (Y, Max, N, IPiv, Det)
      Call CSubst (Y, Max, N, IPiv, Volt)
      Zin = 1./(Ys(0)*(1. - Volt(1)))
      End
