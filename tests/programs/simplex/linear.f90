! Linear programs with names, built row by row and solved by the library.
Module Linear_Programs
  Implicit None
  Private
  Public :: Problem, New_Problem, Add_Row, Solve, Value_Of, Price_Of, Aim_Of, Destroy
  Public :: Solved, Unlimited, Impossible, Too_Long
  Public :: Operator(.atmost.), Operator(.atleast.)

  Integer, Parameter :: dp = Kind(1.0D0)
  Integer, Parameter :: Solved = 0, Unlimited = 1, Impossible = 2, Too_Long = 3


  Type, Public :: Row
     Private
     Real(dp), Pointer, Dimension(:) :: Factors
     Real(dp) :: Limit
  End Type Row

  Type Problem
     Private
     Character(Len=16) :: Name
     Integer :: Rows, Columns, State
     Real(dp), Dimension(:), Pointer :: Aim, Limits, X, Prices
     Real(dp), Dimension(:, :), Pointer :: Factors
     Real(dp) :: Best
  End Type Problem

  Interface Operator(.atmost.)
     Module Procedure At_Most
  End Interface
  Interface Operator(.AtLeast.)
     Module Procedure At_Least
  End Interface
  Interface Add_Row
     Module Procedure Add_Limits
  End Interface

  Interface
     Subroutine LPINIT(M, N, LDT, T, A, LDA, B, C, ROWVAR, COLVAR)
       Integer, Intent(In) :: M, N, LDT, LDA
       Double Precision, Intent(Out) :: T(0:LDT, 0:N)
       Double Precision, Intent(In) :: A(LDA, N), B(M), C(N)
       Integer, Intent(Out) :: ROWVAR(M), COLVAR(N)
     End Subroutine LPINIT
     Subroutine LPSOLV(M, N, LDT, T, ROWVAR, COLVAR, ITMAX, INFO)
       Integer, Intent(In) :: M, N, LDT, ITMAX
       Double Precision, Intent(InOut) :: T(0:LDT, 0:N)
       Integer, Intent(InOut) :: ROWVAR(M), COLVAR(N)
       Integer, Intent(Out) :: INFO
     End Subroutine LPSOLV
     Subroutine LPVALS(M, N, LDT, T, ROWVAR, COLVAR, X, Y)
       Integer, Intent(In) :: M, N, LDT, ROWVAR(M), COLVAR(N)
       Double Precision, Intent(In) :: T(0:LDT, 0:N)
       Double Precision, Intent(Out) :: X(N), Y(M)
     End Subroutine
  End Interface

Contains

  ! The space must be given, for the rows are kept in one matrix.
  Subroutine New_Problem(P, Name, Aim, Most_Rows)
    Type(Problem), Intent(Out) :: P
    Character(Len=*), Intent(In) :: Name
    Real(dp), Intent(In) :: Aim(:)
    Integer, Intent(In) :: Most_Rows

    P % Name = Name
    P % Rows = 0
    P % Columns = Size(Aim)
    P % State = -1
    Allocate (P % Aim(P % Columns), P % X(P % Columns))
    Allocate (P % Limits(Most_Rows), P % Prices(Most_Rows))
    Allocate (P % Factors(Most_Rows, Size(Aim)))
    P % Aim = Aim
  End Subroutine New_Problem

  Function At_Most(Factors, Limit) Result (R)
    Real(dp), Intent(In), Dimension(:) :: Factors
    Real(dp), Intent(In) :: Limit
    Type(Row) :: R
    Allocate (R % Factors(Size(Factors)))
    R % Factors = Factors; R % Limit = Limit
  End Function At_Most

  Function At_Least(Factors, Limit) Result (R)
    Real(dp), Intent(In), Dimension(:) :: Factors
    Real(dp), Intent(In) :: Limit
    Type(Row) :: R
    R = At_Most(-Factors, -Limit)
  End Function At_Least

  Subroutine Add_Limits(P, R)
    Type(Problem), Intent(InOut) :: P
    Type(Row), Intent(In) :: R
    If (P % Rows == Size(P % Limits)) Stop 'Add_Row: no room'
    P % Rows = P % Rows + 1
    P % Factors(P % Rows, :) = R % Factors
    P % Limits(P % Rows) = R % Limit
    P % State = -1
  End Subroutine Add_Limits

  Subroutine Solve(P, State, Steps)
    Type(Problem), Intent(InOut) :: P
    Integer, Intent(Out) :: State
    Integer, Intent(In), Optional :: Steps
    Real(dp), Dimension(0:P % Rows, 0:P % Columns) :: T
    Integer :: Row_Variable(P % Rows), Column_Variable(P % Columns), Most

    Most = 100
    If (Present(Steps)) Most = Steps
    Call LPINIT(P % Rows, P % Columns, P % Rows, T, P % Factors, Size(P % Factors, 1), &
                P % Limits, P % Aim, Row_Variable, Column_Variable)
    Call LPSOLV(P % Rows, P % Columns, P % Rows, T, Row_Variable, Column_Variable, Most, INFO=P % State)
    If (P % State == Solved) Then
       Call LPVALS(P % Rows, P % Columns, P % Rows, T, Row_Variable, Column_Variable, P % X, P % Prices)
       P % Best = T(0, 0)
    End If
    State = P % State
  End Subroutine Solve

  Function Value_Of(P) Result (X)
    Type(Problem), Intent(In) :: P
    Real(dp) :: X(P % Columns)
    X = P % X
  End Function Value_Of

  Function Price_Of(P) Result (Y)
    Type(Problem), Intent(In) :: P
    Real(dp) :: Y(P % Rows)
    Y = P % Prices(:P % Rows)
  End Function Price_Of

  Real(dp) Function Aim_Of(P)
    Type(Problem), Intent(In) :: P
    Aim_Of = P % Best
  End Function Aim_Of

  Subroutine Destroy(P)
    Type(Problem), Intent(InOut) :: P
    Integer :: Status
    Deallocate (P % Aim, P % X, P % Limits, P % Prices, P % Factors, Stat = Status)
    If (Status /= 0) Print *, Trim(P % Name), ' was not there'
  End Subroutine Destroy

End Module Linear_Programs
