      Module MD_Checkpoint
!
!        The state of a run in an unformatted file, and snapshots of single atoms in a
!        direct access file.
!
         Use MD_Kinds
         Use MD_System, Only : R, V, F, Atoms, Box, Make_Room
         Use MD_Random, Only : Random_State
         Implicit None
         Private
         Public :: Save_State, Load_State, Open_Track, Put_Track, Get_Track, Close_Track

         Character( Len = * ), Parameter :: Magic = 'MDSTATE1'
         Integer, Save :: Track_Unit = -1, Track_Atoms

      Contains

         Function Free_Unit( ) Result( U )
            Integer :: U
            Logical :: Used, There
            Do U = 30, 99
               Inquire ( Unit = U, Exist = There, Opened = Used )
               If ( There .And. .Not. Used ) Return
            End Do
            U = -1
         End Function Free_Unit

         Subroutine Save_State( File, Step, State, Ok )
            Character( Len = * ), Intent( In ) :: File
            Integer, Intent( In ) :: Step
            Type( Random_State ), Intent( In ) :: State
            Logical, Intent( Out ) :: Ok
            Integer :: U, Status
            U = Free_Unit( )
            Open ( Unit = U, File = File, Form = 'UNFORMATTED', Access = 'SEQUENTIAL', &
     &             Status = 'UNKNOWN', Position = 'REWIND', Action = 'WRITE', Iostat = Status )
            If ( Status == 0 ) Then
               Write ( U, Err = 10 ) Magic
               Write ( U, Err = 10 ) Step, Atoms, Box % Length, Box % Cutoff
               Write ( U, Err = 10 ) R, V
               Write ( U, Err = 10 ) F
               Write ( U, Err = 10 ) State % S1, State % S2, State % Has_Spare, State % Spare
               Close ( U, Status = 'KEEP' )
            End If
            Ok = Status == 0
            Return
   10       Close ( U, Status = 'DELETE' )
            Ok = .False.
         End Subroutine Save_State

         Subroutine Load_State( File, Step, State, Ok )
            Character( Len = * ), Intent( In ) :: File
            Integer, Intent( Out ) :: Step
            Type( Random_State ), Intent( Out ) :: State
            Logical, Intent( Out ) :: Ok
            Character( Len = Len( Magic ) ) :: Mark
            Integer( IP ) :: N
            Integer :: U, Status
            Ok = .False.
            Step = 0
            U = Free_Unit( )
            Open ( U, File = File, Form = 'unformatted', Status = 'old', Action = 'read', Iostat = Status )
            If ( Status /= 0 ) Return
            Read ( U, Iostat = Status ) Mark
            If ( Status == 0 .And. Mark == Magic ) Then
               Read ( U, End = 20, Err = 20 ) Step, N
               Backspace U
               If ( N /= Atoms ) Call Make_Room( Int( N ) )
               Read ( U, End = 20, Err = 20 ) Step, N, Box % Length, Box % Cutoff
               Read ( U, End = 20, Err = 20 ) R, V
               Read ( U, End = 20, Err = 20 ) F
               Read ( U, End = 20, Err = 20 ) State % S1, State % S2, State % Has_Spare, State % Spare
               Ok = .True.
            End If
   20       Continue
            Close ( U, Status = 'DELETE' )
         End Subroutine Load_State

         Subroutine Open_Track( Count )
            Integer, Intent( In ) :: Count
            Real( RP ) :: Place( ND )
            Integer :: Length
            Inquire ( Iolength = Length ) Count, Place
            Track_Unit = Free_Unit( )
            Track_Atoms = Count
            Open ( Track_Unit, Status = 'SCRATCH', Access = 'DIRECT', Form = 'UNFORMATTED', Recl = Length )
         End Subroutine Open_Track

         Subroutine Put_Track( Frame )
            Integer, Intent( In ) :: Frame
            Integer :: I
            Do I = 1, Track_Atoms
               Write ( Track_Unit, Rec = ( Frame - 1 ) * Track_Atoms + I ) I, R( :, I )
            End Do
         End Subroutine Put_Track

         Subroutine Get_Track( Frame, Atom, Place )
            Integer, Intent( In ) :: Frame, Atom
            Real( RP ), Intent( Out ) :: Place( ND )
            Integer :: I, Status
            Read ( Track_Unit, Rec = ( Frame - 1 ) * Track_Atoms + Atom, Iostat = Status ) I, Place
            If ( Status /= 0 ) Place = -Huge( Place )
         End Subroutine Get_Track

         Subroutine Close_Track
            If ( Track_Unit > 0 ) Close ( Track_Unit )
            Track_Unit = -1
         End Subroutine Close_Track

      End Module MD_Checkpoint
