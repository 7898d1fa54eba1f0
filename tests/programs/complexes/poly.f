C     Roots of polynomials with complex coefficients.
C
C     P(Z) = A(0) + A(1)*Z + ... + A(N)*Z**N
C
      Block Data Policy
      Integer MaxIt
      Real Small
      Logical Trace
      Common /Policy0/ MaxIt, Small, Trace
      Save /Policy0/
      Data MaxIt /80/, Small /1.0E-6/, Trace /.False./
      End
C
      Subroutine Horner (A, N, Z, P, DP, D2P, Bound)
C     Value and two derivatives, and a bound of the rounding error of
C     the value in units of the precision.
      Integer N, K
      Complex A(0:N), Z, P, DP, D2P
      Real Bound, R
      P = A(N)
      DP = (0., 0.)
      D2P = DP
      R = Cabs (Z)
      Bound = Cabs (P)
      Do 10 K = N - 1, 0, -1
         D2P = Z*D2P + DP
         DP = Z*DP + P
         P = Z*P + A(K)
         Bound = R*Bound + Cabs (P)
   10 Continue
      D2P = 2*D2P
      End
C
      Subroutine Laguer (A, N, Z, Ok)
C     From Z to a root, by the method that is exact for a root of
C     multiplicity one beside one of multiplicity N - 1.  A step that
C     does not make the value smaller is turned round and shortened.
      Integer N, Iter
      Complex A(0:N), Z, P, DP, D2P, Disc, Den, Step, Trial, Turn
      Logical Ok
      Real Bound, Size
      Integer MaxIt
      Real Small
      Logical Trace
      Common /Policy0/ MaxIt, Small, Trace
      Save /Policy0/
      Parameter (Turn = (-0.3, 0.2))
      Ok = .True.
      Call Horner (A, N, Z, P, DP, D2P, Bound)
      Do 20 Iter = 1, MaxIt
         Size = Cabs (P)
         If (Size .Le. Small*Bound/4.) Return
         If (Trace) Write (*, 30) Iter, Z, Size
C           with everything multiplied by the value, which may vanish
         Disc = Csqrt (((N - 1)*DP)**2 - N*(N - 1)*P*D2P)
         Den = DP + Disc
         If (Real (Conjg (DP)*Disc) .Lt. 0.) Den = DP - Disc
         If (Den .Eq. (0., 0.)) Then
            Step = Cmplx (1. + Cabs (Z), 1.)
         Else
            Step = -N*P/Den
         End If
   10    Trial = Z + Step
         If (Trial .Eq. Z) Return
         Call Horner (A, N, Trial, P, DP, D2P, Bound)
         If (Cabs (P) .Gt. Size) Then
            Step = Step*Turn
            Go To 10
         End If
         Z = Trial
   20 Continue
      Ok = .False.
   30 Format (1X, I4, 1X, '(', F12.6, ',', F12.6, ')', 1PE12.3)
      End
C
      Subroutine Roots (A, N, Z, Work, *)
C     All roots, by division, each made better with all of A.
      Integer N, K, M
      Complex A(0:N), Z(N), Work(0:N), T, Next
      Logical Ok
      Do 10 K = 0, N
   10 Work(K) = A(K)
      Do 30 M = N, 1, -1
         T = (0., 0.)
         Call Laguer (Work, M, T, Ok)
         If (.Not. Ok) Return 1
         Call Laguer (A, N, T, Ok)
         If (Abs (Aimag (T)) .Lt. 2E-6*Abs (Real (T))) T = Real (T)
         Z(M) = T
         Next = Work(M)
         Do 20 K = M - 1, 0, -1
            T = Work(K)
            Work(K) = Next
            Next = Z(M)*Next + T
   20    Continue
   30 Continue
      Return
      End
C
      Subroutine FromRt (Z, N, A)
C     The coefficients, from the roots.
      Integer N, K, M
      Complex Z(N), A(0:N)
      A(0) = 1
      Do 20 M = 1, N
         A(M) = A(M - 1)
         Do 10 K = M - 1, 1, -1
            A(K) = A(K - 1) - Z(M)*A(K)
   10    Continue
         A(0) = -Z(M)*A(0)
   20 Continue
      End
C
      Subroutine SortZ (Z, N, Before)
C     Sort complex numbers by whatever order Before stands for.
      Integer N, I, J
      Complex Z(N), T
      Logical Before
      External Before
      Do 20 I = 2, N
         T = Z(I)
         Do 10 J = I - 1, 1, -1
            If (.Not. Before (T, Z(J))) Go To 15
            Z(J + 1) = Z(J)
   10    Continue
         J = 0
   15    Z(J + 1) = T
   20 Continue
      End
C
      Logical Function ByReal (U, V)
C     Orders for SortZ: by real part, by modulus, by angle.
      Complex U, V
      Logical ByMod, ByAngl
      Real Tol
      Parameter (Tol = 1E-4)
      If (Abs (Real (U) - Real (V)) .Gt. Tol) Then
         ByReal = Real (U) .Lt. Real (V)
      Else
         ByReal = Aimag (U) .Lt. Aimag (V)
      End If
      Return
      Entry ByMod (U, V)
      If (Abs (Abs (U) - Abs (V)) .Gt. Tol) Then
         ByMod = Abs (U) .Lt. Abs (V)
         Return
      End If
C        no return here: those of one modulus go by angle
      Entry ByAngl (U, V)
      ByAngl = Atan2 (Aimag (U), Real (U)) .Lt.
     1         Atan2 (Aimag (V), Real (V))
      End
