      Module MD_Random
!
!        A portable generator, so that runs can be repeated on every machine, and be
!        continued from a file.
!
         Use MD_Kinds, Only : RP, IP
         Implicit None
         Private
         Public :: Random_State, Seed, Uniform, Gaussian, Fill

         Type Random_State
            Sequence
            Integer( IP ) :: S1, S2
            Logical :: Has_Spare
            Real( RP ) :: Spare
         End Type Random_State

         Interface Fill
            Module Procedure Fill_Rank_1, Fill_Rank_2
         End Interface

      Contains

         Subroutine Seed( State, Number )
            Type( Random_State ), Intent( Out ) :: State
            Integer( IP ), Intent( In ) :: Number
            State % S1 = Modulo( Number, 2147483562_IP ) + 1_IP
            State % S2 = Modulo( Ieor( Number, 12345678_IP ), 2147483398_IP ) + 1_IP
            State % Has_Spare = .False.
            State % Spare = 0.0_RP
         End Subroutine Seed

!        Two multiplicative generators, combined. Values lie between 0 and 1, neither included.
         Subroutine Uniform( State, X )
            Type( Random_State ), Intent( InOut ) :: State
            Real( RP ), Intent( Out ) :: X
            Integer( IP ) :: K, Z
            K = State % S1 / 53668
            State % S1 = 40014 * ( State % S1 - K * 53668 ) - K * 12211
            If ( State % S1 < 0 ) State % S1 = State % S1 + 2147483563
            K = State % S2 / 52774
            State % S2 = 40692 * ( State % S2 - K * 52774 ) - K * 3791
            If ( State % S2 < 0 ) State % S2 = State % S2 + 2147483399
            Z = State % S1 - State % S2
            If ( Z < 1 ) Z = Z + 2147483562
            X = Z * 4.656613E-10_RP
         End Subroutine Uniform

!        The polar method; every second value was kept from the call before.
         Subroutine Gaussian( State, X )
            Type( Random_State ), Intent( InOut ) :: State
            Real( RP ), Intent( Out ) :: X
            Real( RP ) :: U, V, R2
            If ( State % Has_Spare ) Then
               X = State % Spare
               State % Has_Spare = .False.
               Return
            End If
            Do
               Call Uniform( State, U )
               Call Uniform( State, V )
               U = 2 * U - 1
               V = 2 * V - 1
               R2 = U * U + V * V
               If ( R2 < 1.0_RP .And. R2 > 0.0_RP ) Exit
            End Do
            R2 = Sqrt( -2 * Log( R2 ) / R2 )
            X = U * R2
            State % Spare = V * R2
            State % Has_Spare = .True.
         End Subroutine Gaussian

         Subroutine Fill_Rank_1( State, A, Spread_Of )
            Type( Random_State ), Intent( InOut ) :: State
            Real( RP ), Intent( Out ) :: A( : )
            Real( RP ), Intent( In ), Optional :: Spread_Of
            Integer :: I
            Do I = 1, Size( A )
               Call Gaussian( State, A( I ) )
            End Do
            If ( Present( Spread_Of ) ) A = A * Spread_Of
         End Subroutine Fill_Rank_1

         Subroutine Fill_Rank_2( State, A, Spread_Of )
            Type( Random_State ), Intent( InOut ) :: State
            Real( RP ), Intent( Out ) :: A( :, : )
            Real( RP ), Intent( In ), Optional :: Spread_Of
            Integer :: J
            Do J = 1, Size( A, 2 )
               Call Fill_Rank_1( State, A( :, J ), Spread_Of )
            End Do
         End Subroutine Fill_Rank_2

      End Module MD_Random
