      Module MD_Forces
!
!        Forces between atoms by a shifted 12-6 potential. Boxes of at least three cut-off lengths
!        are divided into cells with chains of atoms; smaller ones are done pair by pair.
!
         Use MD_Kinds
         Use MD_System
         Implicit None
         Private
         Public :: Compute_Forces, Pairs_Within_Cutoff, Method

         Integer, Parameter :: None = 0
         Integer, Allocatable, Save :: Head( :, :, : ), Next( : )
         Integer, Save :: Pairs = 0
         Character( Len = 5 ), Save :: Chosen = 'auto '

      Contains

         Subroutine Method( Name )
            Character( Len = * ), Intent( In ) :: Name
            Chosen = Name
         End Subroutine Method

         Function Pairs_Within_Cutoff( )
            Integer :: Pairs_Within_Cutoff
            Pairs_Within_Cutoff = Pairs
         End Function Pairs_Within_Cutoff

         Subroutine Compute_Forces( Potential, Virial )
            Real( RP ), Intent( Out ) :: Potential, Virial
            Integer, Dimension( ND ) :: Cells
            Logical :: Divide
            Cells = Int( Box % Length / Box % Cutoff )
            F = Zero
            Potential = Zero
            Virial = Zero
            Pairs = 0
            Select Case ( Chosen )
            Case ( 'pairs' )
               Divide = .False.
            Case ( 'cells' )
               Divide = .True.
            Case Default
               Divide = All( Cells > 3 )
            End Select
            If ( Divide .And. All( Cells >= 3 ) ) Then
               Call By_Cells( Cells, Potential, Virial )
            Else
               Call By_Pairs( Potential, Virial )
            End If
         End Subroutine Compute_Forces

         Subroutine By_Pairs( Potential, Virial )
            Real( RP ), Intent( InOut ) :: Potential, Virial
            Integer :: I, J
            Do I = 1, Atoms - 1
               Do J = I + 1, Atoms
                  Call One_Pair( I, J, Potential, Virial )
               End Do
            End Do
         End Subroutine By_Pairs

         Subroutine By_Cells( Cells, Potential, Virial )
            Integer, Intent( In ) :: Cells( : )
            Real( RP ), Intent( InOut ) :: Potential, Virial
            Integer, Parameter :: Neighbours = 13
!           Half of the 26 neighbours, so that each pair of cells is met once
            Integer, Dimension( ND, Neighbours ), Save :: Step
            Data Step / 1, 0, 0,    1, 1, 0,    0, 1, 0,   -1, 1, 0,   &
     &                  1, 0, 1,    1, 1, 1,    0, 1, 1,   -1, 1, 1,   &
     &                  1, 0, -1,   1, 1, -1,   0, 1, -1,  -1, 1, -1,   0, 0, 1 /
            Integer :: C( ND ), N( ND ), I, J, K, X, Y, Z

            Call Make_Chains( Cells )
            Do Z = 0, Cells( 3 ) - 1
               Do Y = 0, Cells( 2 ) - 1
                  Along_X: Do X = 0, Cells( 1 ) - 1
                     C = (/ X, Y, Z /)
                     I = Head( X, Y, Z )
                     Do While ( I /= None )
                        J = Next( I )
                        Do While ( J /= None )
                           Call One_Pair( I, J, Potential, Virial )
                           J = Next( J )
                        End Do
                        Do K = 1, Neighbours
                           N = Modulo( C + Step( :, K ), Cells )
                           J = Head( N( 1 ), N( 2 ), N( 3 ) )
                           Do
                              If ( J == None ) Exit
                              Call One_Pair( I, J, Potential, Virial )
                              J = Next( J )
                           End Do
                        End Do
                        I = Next( I )
                     End Do
                  End Do Along_X
               End Do
            End Do
         End Subroutine By_Cells

         Subroutine Make_Chains( Cells )
            Integer, Intent( In ) :: Cells( ND )
            Integer :: C( ND ), I
            If ( Allocated( Head ) ) Then
               If ( Any( Shape( Head ) /= Cells ) .Or. Size( Next ) /= Atoms ) Deallocate( Head, Next )
            End If
            If ( .Not. Allocated( Head ) ) Then
               Allocate( Head( 0 : Cells( 1 ) - 1, 0 : Cells( 2 ) - 1, 0 : Cells( 3 ) - 1 ) )
               Allocate( Next( Atoms ) )
            End If
            Head = None
            Do I = 1, Atoms
               C = Min( Int( R( :, I ) / Box % Length * Cells ), Cells - 1 )
               Next( I ) = Head( C( 1 ), C( 2 ), C( 3 ) )
               Head( C( 1 ), C( 2 ), C( 3 ) ) = I
            End Do
         End Subroutine Make_Chains

         Subroutine One_Pair( I, J, Potential, Virial )
            Integer, Intent( In ) :: I, J
            Real( RP ), Intent( InOut ) :: Potential, Virial
            Real( RP ) :: D( ND ), R2, S6, Along, Shift
            D = Nearest_Image( R( :, I ) - R( :, J ) )
            R2 = Dot_Product( D, D )
            If ( R2 >= Box % Cutoff ** 2 ) Return
            Pairs = Pairs + 1
            Shift = Box % Cutoff ** ( -6 ); Shift = 4 * Shift * ( Shift - One )
            S6 = R2 ** ( -3 )
            Potential = Potential + 4 * S6 * ( S6 - One ) - Shift
            Along = 24 * S6 * ( 2 * S6 - One ) / R2
            Virial = Virial + Along * R2
            F( :, I ) = F( :, I ) + Along * D
            F( :, J ) = F( :, J ) - Along * D
         End Subroutine One_Pair

      End Module MD_Forces
