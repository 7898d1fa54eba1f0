      Module MD_System
!
!        Atoms in a periodic box: their state, its set-up and what can be measured.
!
         Use MD_Kinds
         Use MD_Random
         Implicit None

         Type Box_Type
            Real( RP ), Dimension( ND ) :: Length
            Real( RP ) :: Cutoff
         End Type Box_Type

         Type Observables
            Real( RP ) :: Kinetic, Potential, Virial, Temperature, Pressure
         End Type Observables

         Type( Box_Type ), Save :: Box
         Real( RP ), Dimension( :, : ), Allocatable, Save :: R, V, F     ! ( ND, atoms )
         Integer( IP ), Save :: Atoms = 0
         Private :: Remove_Drift

      Contains

!        A face centred cubic crystal of Cells**3 cells with 4 atoms each
         Subroutine Build_Crystal( Cells, Density, Temperature, State )
            Integer, Intent( In ) :: Cells
            Real( RP ), Intent( In ) :: Density, Temperature
            Type( Random_State ), Intent( InOut ) :: State
            Real( RP ), Parameter :: Basis( ND, 4 ) = Reshape( (/ 0.0_RP, 0.0_RP, 0.0_RP, &
     &           0.5_RP, 0.5_RP, 0.0_RP,   0.5_RP, 0.0_RP, 0.5_RP,   0.0_RP, 0.5_RP, 0.5_RP /), (/ ND, 4 /) )
            Real( RP ) :: A
            Integer :: I, J, K, L, M

            Call Make_Room( 4 * Cells ** 3 )
            A = ( 4.0_RP / Density ) ** ( One / 3 )
            Box % Length = A * Cells
            Box % Cutoff = Min( 2.5_RP, Half * Minval( Box % Length ) )
            M = 0
            Do I = 0, Cells - 1; Do J = 0, Cells - 1; Do K = 0, Cells - 1
               Do L = 1, 4
                  M = M + 1
                  R( :, M ) = A * ( (/ I, J, K /) + Basis( :, L ) )
               End Do
            End Do; End Do; End Do
            Call Fill( State, V, Spread_Of = Sqrt( Temperature ) )
            Call Remove_Drift
            F = Zero
         End Subroutine Build_Crystal

         Subroutine Make_Room( N )
            Integer, Intent( In ) :: N
            Integer :: Failed
            If ( Allocated( R ) ) Deallocate( R, V, F )
            Allocate( R( ND, N ), V( ND, N ), F( ND, N ), Stat = Failed )
            If ( Failed /= 0 ) Then
               Write ( *, '( 1X, A, I8 )' ) 'no room for atoms: ', N
               Stop 1
            End If
            Atoms = N
         End Subroutine Make_Room

         Subroutine Remove_Drift
            V = V - Spread( Sum( V, Dim = 2 ) / Atoms, Dim = 2, Ncopies = Int( Atoms ) )
         End Subroutine Remove_Drift

!        Distances to the nearest image
         Function Nearest_Image( D ) Result( Image )
            Real( RP ), Intent( In ) :: D( ND )
            Real( RP ) :: Image( ND )
            Image = D - Box % Length * Anint( D / Box % Length )
         End Function Nearest_Image

         Subroutine Wrap
            Integer :: K
            Do K = 1, ND
               R( K, : ) = Modulo( R( K, : ), Box % Length( K ) )
            End Do
         End Subroutine Wrap

         Function Measure( Potential, Virial ) Result( O )
            Real( RP ), Intent( In ) :: Potential, Virial
            Type( Observables ) :: O
            O % Kinetic = Half * Sum( V ** 2 )
            O % Temperature = 2 * O % Kinetic / ( ND * ( Atoms - 1 ) )
            O % Potential = Potential
            O % Virial = Virial
            O % Pressure = ( Atoms * O % Temperature + Virial / ND ) / Product( Box % Length )
         End Function Measure

!        Scales the velocities to a temperature
         Subroutine Set_Temperature( Goal )
            Real( RP ), Intent( In ) :: Goal
            Real( RP ) :: Now
            Now = Sum( V * V ) / ( ND * ( Atoms - 1 ) )
            If ( Now > Zero ) V = V * Sqrt( Goal / Now )
         End Subroutine Set_Temperature

!        The numbers of pairs by distance, up to the half of the box
         Function Pair_Histogram( Bins ) Result( Counts )
            Integer, Intent( In ) :: Bins
            Integer, Dimension( Bins ) :: Counts
            Real( RP ) :: Distance, Width
            Integer :: I, J, B
            Counts = 0
            Width = Half * Minval( Box % Length ) / Bins
            Do I = 1, Atoms - 1
               Do J = I + 1, Atoms
                  Distance = Sqrt( Sum( Nearest_Image( R( :, I ) - R( :, J ) ) ** 2 ) )
                  B = Int( Distance / Width ) + 1
                  If ( B <= Bins ) Counts( B ) = Counts( B ) + 1
               End Do
            End Do
         End Function Pair_Histogram

      End Module MD_System
