! Copies lines from one unit to another and replaces the macros in them.
!    #define NAME=TEXT        #define NAME(A,B)=TEXT       #undef NAME
!    #if NAME   #else   #endif                             #eval EXPRESSION
Module Processor
   Use Macro_Store, Only: Define, Undefine, Expand_Name, Definition, Assignment (=), &
                          Defined => Is_Defined, NAME_LEN, BODY_LEN, Params => MAX_PARAMS
   Implicit None
   Private
   Integer, Parameter, Public :: LINE_LEN = 160
   Integer, Parameter :: MAX_NESTING = 10, MAX_DEPTH = 20
   Integer, Public, Save :: Lines_In, Lines_Out, Faults
   Public Process

   Interface Complain
      Module Procedure Complain_Plain, Complain_About
   End Interface

Contains

   Subroutine Complain_Plain (What)
      Character (Len=*), Intent (In) :: What
      Faults = Faults + 1
      Write (*, '(1X, A, I3.3, 2A)') 'line ', Lines_In, ': ', What
   End Subroutine Complain_Plain

   Subroutine Complain_About (What, Whom)
      Character (Len=*), Intent (In) :: What, Whom
      Call Complain_Plain (What // ' "' // Trim (Whom) // '"')
   End Subroutine Complain_About

   Subroutine Process (From, To)
      Integer, Intent (In) :: From, To
      Logical, Dimension (0 : MAX_NESTING) :: Active
      Integer :: Level, Ios, Blank
      Character (LINE_LEN) :: Line
      Character (NAME_LEN) :: Command
      Type (Definition) :: D
      Integer :: I, Number_Width
      ! digits of a number of lines
      Number_Width (I) = Int (Log10 (Real (Max (1, I)))) + 1

      Lines_In = 0; Lines_Out = 0; Faults = 0
      Level = 0; Active (0) = .True.
      Do
         Read (From, '(A)', Iostat = Ios) Line
         If (Ios /= 0) Exit
         Lines_In = Lines_In + 1
         If (Line (1:1) /= '#') Then
            If (.Not. Skipping ()) Then
               Call Expand (Line, 0)
               Write (To, '(A)') Trim (Line)
               Lines_Out = Lines_Out + 1
            End If
            Cycle
         End If
         Blank = Index (Line, ' ')
         Command = Line (2 : Blank)
         Line = Adjustl (Line (Blank :))
         Select Case (Command)
         Case ('define')
            If (Skipping ()) Cycle
            D = Line
            Call Define (D, *100, *200)
            Cycle
100         Call Complain ('bad name in', Line)
            Cycle
200         Call Complain ('no room')
         Case ('undef')
            If (.Not. Skipping ()) Call Undefine (Line)
         Case ('if', 'ifnot')
            If (Level == MAX_NESTING) Then
               Call Complain ('too deep')
            Else
               Level = Level + 1
               Active (Level) = Defined (Line) .Eqv. Command == 'if'
            End If
         Case ('else')
            If (Level == 0) Then
               Call Complain ('#else without #if')
            Else
               Active (Level) = .Not. Active (Level)
            End If
         Case ('endif')
            If (Level == 0) Call Complain ('#endif without #if')
            Level = Max (Level - 1, 0)
         Case ('eval')
            If (Skipping ()) Cycle
            Call Expand (Line, 0)
            Call Evaluate (Line, I, *300)
            Write (To, *) I
            Lines_Out = Lines_Out + 1
            Cycle
300         Call Complain ('bad expression', Line)
         Case Default
            Call Complain ('command not known', Command)
         End Select
      End Do
      If (Level > 0) Call Complain ('#endif missing')
      If (Number_Width (Lines_In) > 3) Call Complain ('too many lines to count in three digits')

   Contains

      ! Nothing is copied if any of the levels says so.
      Logical Function Skipping ()
         Skipping = .Not. All (Active (0 : Level))
      End Function Skipping

   End Subroutine Process

   ! Replaces macros from the left; what a macro gives is looked at again.
   Recursive Subroutine Expand (Line, Depth)
      Character (*), Intent (InOut) :: Line
      Integer, Intent (In) :: Depth
      Character (Len (Line)) :: Rest
      Character (BODY_LEN) :: Text
      Character (40), Dimension (Params) :: Argument
      Integer :: At, After, Length, N

      If (Depth > MAX_DEPTH) Then
         Call Complain ('macros go round in circles')
         Return
      End If
      At = 1
      Do While (At <= Len_Trim (Line))
         If (.Not. Starts_Name (Line (At:At))) Then
            If (Line (At:At) == '''') Then          ! strings stay as they are
               Length = Index (Line (At+1 :), '''')
               If (Length == 0) Exit
               At = At + Length
            End If
            At = At + 1
            Cycle
         End If
         After = At
         Do
            If (After > Len (Line)) Exit
            If (.Not. (Starts_Name (Line (After:After)) .Or. &
                       (Lge (Line (After:After), '0') .And. Lle (Line (After:After), '9')))) Exit
            After = After + 1
         End Do
         Text = Line (At : After - 1)
         If (Len_Trim (Text) > NAME_LEN .Or. .Not. Defined (Trim (Text))) Then
            At = After
            Cycle
         End If
         Call Collect (Line, After, Argument, N)
         Rest = Line (After :)
         Call Expand_Name (Trim (Text (: NAME_LEN)), Argument (: N), Text, Length)
         Call Expand (Text, Depth + 1)
         Length = Len_Trim (Text)
         Line (At :) = Text (: Length) // Rest
         At = At + Length
      End Do

   Contains

      Logical Function Starts_Name (C)
         Character, Intent (In) :: C
         Select Case (C)
         Case ('A' : 'Z', 'a' : 'z', '_'); Starts_Name = .True.
         Case Default;                     Starts_Name = .False.
         End Select
      End Function Starts_Name

   End Subroutine Expand

   ! The arguments in parentheses at AFTER, which moves behind them.
   Subroutine Collect (Line, After, Argument, N)
      Character (*), Intent (In) :: Line
      Integer, Intent (InOut) :: After
      Character (*), Dimension (:), Intent (Out) :: Argument
      Integer, Intent (Out) :: N
      Integer :: Level, I, From

      N = 0
      If (After > Len (Line)) Return
      If (Line (After:After) /= '(') Return
      Level = 0
      From = After + 1
      Do I = After, Len_Trim (Line)
         Select Case (Line (I:I))
         Case ('(')
            Level = Level + 1
         Case (')', ',')
            If (Line (I:I) == ')') Level = Level - 1
            If (Level == 0 .Or. (Level == 1 .And. Line (I:I) == ',')) Then
               If (N < Size (Argument)) N = N + 1
               Argument (N) = Adjustl (Line (From : I - 1))
               From = I + 1
            End If
            If (Level == 0) Then
               After = I + 1
               Return
            End If
         End Select
      End Do
      Call Complain ('")" missing')
      After = Len_Trim (Line) + 1
   End Subroutine Collect

   ! Sums and products from left to right by two stacks, with priorities.
   Subroutine Evaluate (Line, Value, *)
      Character (*), Intent (In) :: Line
      Integer, Intent (Out) :: Value
      Integer, Parameter :: ROOM = 30
      Integer :: Numbers (ROOM), N, Signs, I, Last
      Character (ROOM) :: Sign
      Logical :: Operand_Next

      N = 0; Signs = 0; I = 1; Value = 0
      Operand_Next = .True.
      Do While (I <= Len_Trim (Line))
         Select Case (Line (I:I))
         Case (' ')
            Continue
         Case ('0' : '9')
            If (.Not. Operand_Next .Or. N == ROOM) Return 1
            Last = I + Verify (Line (I:) // ' ', '0123456789') - 2
            N = N + 1
            Read (Line (I:Last), '(BN, I10)', Err = 99) Numbers (N)
            I = Last
            Operand_Next = .False.
         Case ('(')
            If (.Not. Operand_Next .Or. Signs == ROOM) Return 1
            Signs = Signs + 1
            Sign (Signs:Signs) = '('
         Case (')')
            If (Operand_Next) Return 1
            Do
               If (Signs == 0) Return 1
               If (Sign (Signs:Signs) == '(') Exit
               Call Apply
            End Do
            Signs = Signs - 1
         Case ('+', '-', '*', '/')
            If (Operand_Next) Return 1
            Do
               If (Signs == 0) Exit
               If (Priority (Sign (Signs:Signs)) < Priority (Line (I:I))) Exit
               Call Apply
            End Do
            If (Signs == ROOM) Return 1
            Signs = Signs + 1
            Sign (Signs:Signs) = Line (I:I)
            Operand_Next = .True.
         Case Default
            Return 1
         End Select
         I = I + 1
      End Do
      If (Operand_Next) Return 1
      Do While (Signs > 0)
         If (Sign (Signs:Signs) == '(') Return 1
         Call Apply
      End Do
      Value = Numbers (1)
      Return
99    Return 1

   Contains

      Integer Function Priority (S)
         Character, Intent (In) :: S
         Priority = (Index ('(+-*/', S) + 2) / 2
         If (S == '(') Priority = 0
      End Function Priority

      Subroutine Apply
         N = N - 1
         Select Case (Sign (Signs:Signs))
         Case ('+')
            Numbers (N) = Numbers (N) + Numbers (N+1)
         Case ('-')
            Numbers (N) = Numbers (N) - Numbers (N+1)
         Case ('*')
            Numbers (N) = Numbers (N) * Numbers (N+1)
         Case ('/')
            If (Numbers (N+1) /= 0) Numbers (N) = Numbers (N) / Numbers (N+1)
         End Select
         Signs = Signs - 1
      End Subroutine Apply

   End Subroutine Evaluate

End Module Processor
