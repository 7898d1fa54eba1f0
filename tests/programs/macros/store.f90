! The definitions of a macro processor, packed one after another into one long
! string, as is done where memory counts: a definition is a start and a length.
Module Macro_Store
   Implicit None
   Include 'limits.inc'

   Private
   Public :: Define, Expand_Name, Undefine, Is_Defined, Used_Space, Definition, &
             Assignment (=), Operator (.Is.), Start_Store, NAME_LEN, BODY_LEN, MAX_PARAMS

   Integer, Parameter :: POOL_LEN = 2000
   Character (Len = POOL_LEN) Pool
   Integer Pool_Used, Macros
   Dimension Names (MAX_MACROS), Starts (MAX_MACROS), Lengths (MAX_MACROS)
   Character*(NAME_LEN) Names
   Integer Starts, Lengths
   Save Pool, Pool_Used, Macros, Names, Starts, Lengths
   Integer, Private :: Loop_
   Data Pool_Used, Macros / 0, 0 /, (Lengths (Loop_), Loop_ = 1, MAX_MACROS) / MAX_MACROS * 0 /

   ! What a line "name(params)=body" says
   Type Definition
      Sequence
      Character (NAME_LEN) :: Name
      Integer :: Params
      Character (NAME_LEN), Dimension (MAX_PARAMS) :: Param
      Character (BODY_LEN) :: Body
   End Type Definition

   Interface Assignment (=)
      Module Procedure Definition_From_Line
   End Interface

   Interface Operator (.Is.)
      Module Procedure Name_Is
   End Interface

Contains

   Subroutine Start_Store
      Pool_Used = 0; Macros = 0; Pool = ' '
   End Subroutine Start_Store

   Logical Function Name_Is (D, Name)
      Type (Definition), Intent (In) :: D
      Character*(*), Intent (In) :: Name
      Name_Is = D % Name .Eq. Name
   End Function

   Subroutine Definition_From_Line (D, Line)
      Type (Definition), Intent (Out) :: D
      Character (Len = *), Intent (In) :: Line
      Integer Equals, Open_, Close_, From, Comma
      Character (Len = Len (Line)) List

      D % Params = 0
      D % Param = ' '
      Equals = Index (Line, '=')
      D % Name = ' '
      If (Equals .Le. 1) Return
      D % Body = Line (Equals + 1 :)
      Open_ = Index (Line (: Equals - 1), '(')
      Close_ = Index (Line (: Equals - 1), ')', Back = .True.)
      If (Open_ .Eq. 0 .Or. Close_ .Lt. Open_) Then
         D % Name = Adjustl (Line (: Equals - 1))
         Return
      End If
      D % Name = Adjustl (Line (: Open_ - 1))
      List = Line (Open_ + 1 : Close_ - 1)
      From = 1
      Do
         If (List (From :) .Eq. ' ' .Or. D % Params .Eq. MAX_PARAMS) Exit
         Comma = Scan (List (From :) // ',', ',')
         D % Params = D % Params + 1
         D % Param (D % Params) = Adjustl (List (From : From + Comma - 2))
         From = From + Comma
         If (From .Gt. Len (List)) Exit
      End Do
   End Subroutine Definition_From_Line

   ! The number of a macro, 0 if there is none. The second entry looks for
   ! an older definition of the same name, below a number.
   Integer Function Number_Of (Name)
      Integer Older_Number
      Character (*), Intent (In) :: Name
      Integer, Intent (In) :: Below
      Integer I, First

      First = Macros
      Go To 5
      Entry Older_Number (Name, Below)
      First = Below - 1
5     Continue
      Do 10 I = First, 1, -1
         If (Names (I) .Eq. Name) Go To 20
10    Continue
20    Number_Of = Max (0, I)
   End Function Number_Of

   Logical Function Is_Defined (Name)
      Character (Len = *), Intent (In) :: Name
      Is_Defined = Number_Of (Name) .Ne. 0
   End Function Is_Defined

   Integer Function Used_Space ()
      Used_Space = Sum (Lengths (1 : Macros))
   End Function Used_Space

   ! Parameters in a body are kept as characters 1 to 9 of the code. Takes
   ! the first alternate return if the name is bad, the second if it is full.
   Subroutine Define (D, *, *)
      Type (Definition), Intent (In) :: D
      Character (BODY_LEN) :: Coded
      Integer :: I, At, Word_End, N
      Character (Len = *), Parameter :: LETTERS = 'abcdefghijklmnopqrstuvwxyz_&
         &ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789'

      If (D .Is. ' ') Return 1
      If (Verify (Trim (D % Name), LETTERS) .Ne. 0) Return 1
      Coded = ' '
      N = 0
      At = 1
      Words: Do
         If (At .Gt. Len_Trim (D % Body)) Exit Words
         If (Scan (D % Body (At : At), LETTERS) .Eq. 0) Then
            N = N + 1
            Coded (N : N) = D % Body (At : At)
            At = At + 1
            Cycle Words
         End If
         Word_End = Verify (D % Body (At :), LETTERS) + At - 2
         If (Word_End .Lt. At) Word_End = Len (D % Body)
         Do I = 1, D % Params
            If (D % Param (I) .Eq. D % Body (At : Word_End)) Exit
         End Do
         If (I .Le. D % Params) Then
            N = N + 1
            Coded (N : N) = Char (I)
         Else
            Coded (N + 1 :) = D % Body (At : Word_End)
            N = N + Word_End - At + 1
         End If
         At = Word_End + 1
      End Do Words
      If (Macros .Eq. MAX_MACROS .Or. Pool_Used + N .Gt. POOL_LEN) Return 2

      Macros = Macros + 1
      Names (Macros) = D % Name
      Starts (Macros) = Pool_Used + 1
      Lengths (Macros) = N
      Pool (Pool_Used + 1 : Pool_Used + N) = Coded (: N)
      Pool_Used = Pool_Used + N
   End Subroutine Define

   ! Forgets the newest definition, so that an older one is seen again.
   Subroutine Undefine (Name, Restored)
      Character (*), Intent (In) :: Name
      Logical, Optional, Intent (Out) :: Restored
      Integer K, I

      K = Number_Of (Name)
      If (Present (Restored)) Restored = K .Ne. 0
      If (K .Eq. 0) Return
      If (Present (Restored)) Restored = Older_Number (Name, K) .Ne. 0
      Do I = K, Macros - 1
         Names (I) = Names (I + 1)
         Starts (I) = Starts (I + 1)
         Lengths (I) = Lengths (I + 1)
      End Do
      Macros = Macros - 1
   End Subroutine Undefine

   ! The body of a macro with its arguments put in.
   Subroutine Expand_Name (Name, Arguments, Result_, Length)
      Character (*), Intent (In) :: Name, Arguments (:)
      Character (*), Intent (Out) :: Result_
      Integer, Intent (Out) :: Length
      Integer :: I, K, Code
      Character (1) :: C

      Length = 0
      Result_ = ' '
      K = Number_Of (Name)
      If (K .Eq. 0) Return
      Do I = Starts (K), Starts (K) + Lengths (K) - 1
         C = Pool (I : I)
         Code = Ichar (C)
         If (Code .Ge. 1 .And. Code .Le. MAX_PARAMS) Then
            If (Code .Gt. Size (Arguments)) Cycle
            Result_ (Length + 1 :) = Arguments (Code)
            Length = Length + Len_Trim (Arguments (Code))
         Else
            Length = Length + 1
            Result_ (Length : Length) = C
         End If
         If (Length .Ge. Len (Result_)) Exit
      End Do
   End Subroutine Expand_Name

End Module Macro_Store
