      Program Argon
!
!        Melts a small crystal, saves the state in the middle of the run, goes on, and then
!        repeats the second half from the file: both must end alike.
!
         Use MD_Kinds
         Use MD_Random
         Use MD_System
         Use MD_Forces, Forces => Compute_Forces
         Use MD_Checkpoint
         Implicit None

         Integer, Parameter :: Cells = 5, Half_Run = 15
         Real( RP ), Parameter :: Dt = 0.004_RP
         Character( Len = * ), Parameter :: File = 'argon.state'
         Type( Random_State ) :: State
         Type( Observables ) :: O
         Real( RP ) :: U, W, U2, W2, Start, First_End( ND ), Place( ND ), Later( ND )
         Integer :: Step, Counts( 12 ), I
         Logical :: Ok

         Call Seed( State, 20011_IP )
         Call Build_Crystal( Cells, Density = 0.8_RP, Temperature = 1.4_RP, State = State )
         Call Set_Temperature( 1.2_RP )

         Call Method( 'pairs' )
         Call Forces( U2, W2 )
         I = Pairs_Within_Cutoff( )
         Call Method( 'cells' )
         Call Forces( U, W )
         Write ( *, 20 ) Atoms, I, Abs( U - U2 ) < 1.0E-8_RP, I == Pairs_Within_Cutoff( )
   20    Format ( 1X, I5, ' atoms, ', I6, ' pairs, the same by cells:', 2L2 )

         Write ( *, 30 )
   30    Format ( // 1X, 'step', 3X, 'temperature', 4X, 'pressure', 3X, 'energy per atom' / 1X, 48( '-' ) )
         O = Measure( U, W )
         Start = O % Kinetic + O % Potential
         Call Open_Track( 10 )
         Call Run( 1, Half_Run )
         Call Save_State( File, Half_Run, State, Ok )
         If ( .Not. Ok ) Print *, 'the state could not be saved'
         Call Run( Half_Run + 1, 2 * Half_Run )
         First_End = R( :, Atoms / 2 )

         Call Load_State( File, Step, State, Ok )
         Print *, 'loaded: ', Ok, ' step ', Step
         Call Run( Step + 1, 2 * Half_Run )
         Print *, 'the same end: ', All( First_End == R( :, Atoms / 2 ) )
         Print '( 1X, A, L2 )', 'energy kept:', Abs( O % Kinetic + O % Potential - Start ) < 0.05_RP * Atoms

         Call Get_Track( 1, 7, Place )
         Call Get_Track( 2 * Half_Run / 5, 7, Later )
         Print '( 1X, A, 3F9.4 )', 'atom 7 moved by', Nearest_Image( Later - Place )
         Call Close_Track
         Counts = Pair_Histogram( Size( Counts ) )
         Print '( 1X, 12I6 )', Counts

      Contains

!        Velocity form of the leapfrog
         Subroutine Run( First, Last )
            Integer, Intent( In ) :: First, Last
            Integer :: N
            Do N = First, Last
               V = V + Half * Dt * F
               R = R + Dt * V
               Call Wrap
               Call Forces( U, W )
               V = V + Half * Dt * F
               If ( Mod( N, 5 ) /= 0 ) Cycle
               O = Measure( U, W )
               Write ( *, '( 1X, I4, 2F14.5, F16.6 )' ) N, O % Temperature, O % Pressure, &
     &                ( O % Kinetic + O % Potential ) / Atoms
               Call Put_Track( N / 5 )
            End Do
         End Subroutine Run

      End Program Argon
