C     The same questions in double precision, with the complex kind that
C     goes with it: functions of matrices of order two, and a check of
C     the elementary functions by their identities.
C
      Subroutine ZEig2 (A, W, V)
C     Eigenvalues and vectors of a matrix of order two.
      Integer KD
      Parameter (KD = Kind (0D0))
      Complex (Kind=KD) A(2, 2), W(2), V(2, 2), Half, Disc
      Integer K
      Half = (A(1, 1) + A(2, 2))/2
      Disc = Sqrt (((A(1, 1) - A(2, 2))/2)**2 + A(1, 2)*A(2, 1))
      W(1) = Half + Disc
      W(2) = Half - Disc
      Do 10 K = 1, 2
         If (Abs (A(1, 2)) .Ge. Abs (A(2, 1))) Then
            V(1, K) = A(1, 2)
            V(2, K) = W(K) - A(1, 1)
         Else
            V(1, K) = W(K) - A(2, 2)
            V(2, K) = A(2, 1)
         End If
   10 Continue
      End
C
      Subroutine ZFun2 (A, F, B, Ok)
C     B = F(A) for a diagonalizable matrix.
      Complex (Kind (0D0)) A(2, 2), B(2, 2), W(2), V(2, 2), F, Det
      Logical Ok
      Integer I, J
      External F
      Call ZEig2 (A, W, V)
      Det = V(1, 1)*V(2, 2) - V(1, 2)*V(2, 1)
      Ok = Abs (Det) .Gt. 1D-12
      If (.Not. Ok) Return
      W(1) = F (W(1))
      W(2) = F (W(2))
      Do 10 I = 1, 2
         B(I, 1) = (V(I, 1)*W(1)*V(2, 2) - V(I, 2)*W(2)*V(2, 1))/Det
         B(I, 2) = (V(I, 2)*W(2)*V(1, 1) - V(I, 1)*W(1)*V(1, 2))/Det
   10 Continue
      Do 30 J = 1, 2
         Do 20 I = 1, 2
            If (Abs (B(I, J)) .Lt. 1D-14) B(I, J) = (0D0, 0D0)
   20    Continue
   30 Continue
      End
C
      Complex (Kind (0D0)) Function ZRoot (Z)
      Complex (Kind (0D0)) Z
      ZRoot = Sqrt (Z)
      End
C
      Complex (Kind (0D0)) Function ZLogar (Z)
      Complex (Kind (0D0)) Z
      ZLogar = Log (Z)
      End
C
      Double Precision Function Ident (Z)
C     How far from one the squares of sine and cosine are in sum,
C     and from Z the logarithm of its exponential.
      Complex (Kind (0D0)) Z, One
      Parameter (One = (1D0, 0D0))
      Ident = Abs (Sin (Z)**2 + Cos (Z)**2 - One)
      Ident = Max (Ident, Abs (Log (Exp (Z)) - Z),
     1             Abs (Z*Conjg (Z) - Dble (Z)**2 - Aimag (Z)**2))
      End
