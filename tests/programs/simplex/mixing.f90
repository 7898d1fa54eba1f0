! What to make of wood and work, what to feed, and two problems without answer.
Program Mixing
  Use Linear_Programs, Unbounded => Unlimited, Answers => Value_Of
  Implicit None
  External LPBLK
  Integer, Parameter :: dp = Kind(0.0D0), Rows = 3
  Type(Problem) :: P
  Integer :: State, I
  Character(Len=10), Dimension(0:3) :: Words
  Real(dp), Dimension(3, Rows) :: Needs
  Real(dp) :: Stock(Rows)
  Integer :: First, Second
  Double Precision :: Tiny
  Common /LPSTAT/ First, Second, Tiny
  Data Words / 'solved', 'unlimited', 'impossible', 'too long' /
  Data ((Needs(I, State), I = 1, 3), State = 1, 3) / 8, 6, 1, 4, 2, 1.5D0, 2, 1.5D0, 0.5D0 /
  Data Stock / 48, 20, 8 /

  Call New_Problem(P, 'furniture', (/60.0_dp, 30.0_dp, 20.0_dp/), Most_Rows=5)
  Do I = 1, Rows
     Call Add_Row(P, Needs(:, I) .AtMost. Stock(I))
  End Do
  Call Add_Row(P, (/0.0_dp, 1.0_dp, 0.0_dp/) .atmost. 5.0_dp)
  Call Solve(P, State)
  Call Report('furniture')

  ! Least cost: the aim is its negative
  Call New_Problem(P, 'feed', -(/0.30_dp, 0.90_dp/), 4)
  Call Add_Row(P, (/1.0_dp, 1.0_dp/) .AtLeast. 800.0_dp)
  Call Add_Row(P, (/0.21_dp, -0.30_dp/) .AtMost. 0.0_dp)
  Call Add_Row(P, (/0.03_dp, -0.01_dp/) .ATLEAST. 0.0_dp)
  Call Solve(P, State, Steps=50)
  Call Report('feed')
  Print *, 'steps', First > 0, Second > 0

  Call New_Problem(P, 'endless', (/1.0_dp, 1.0_dp/), 1)
  Call Add_Row(P, (/1.0_dp, -1.0_dp/) .AtMost. 1.0_dp)
  Call Solve(P, State)
  If (State == Unbounded) Print *, 'no limit'
  Call Report('endless')

  Call New_Problem(P, 'nothing', (/1.0_dp/), 2)
  Call Add_Row(P, (/1.0_dp/) .AtLeast. 3.0_dp)
  Call Add_Row(P, (/1.0_dp/) .AtMost. 2.0_dp)
  Call Solve(P, State)
  Call Report(Name='nothing')

Contains

  Subroutine Report(Name)
    Character(*), Intent(In) :: Name

    Write (*, '(1X, 2A12)') Name, Words(State)
    If (State == Solved) Then
       Write (*, '(3X, A, T12, F12.4)') 'aim', Aim_Of(P)
       Write (*, '(3X, A, T12, 5F12.4)') 'values', Answers(P)
       Write (*, '(3X, A, T12, 5F12.4)') 'prices', Price_Of(P)
    Else If (Any(State == (/Impossible, Too_Long/))) Then
       Write (*, '(3X, A)') 'change it'
    End If
    Call Destroy(P)
  End Subroutine Report
End Program Mixing
