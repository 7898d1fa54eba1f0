      Module MD_Kinds
         Implicit None
         Integer, Parameter :: RP = Selected_Real_Kind( 14 )   ! forces and positions
         Integer, Parameter :: IP = Selected_Int_Kind( 9 )     ! counts of atoms
         Integer, Parameter :: ND = 3                          ! dimensions of space
         Real( RP ), Parameter :: Zero = 0.0_RP, One = 1.0_RP, Half = 0.5_RP
      End Module MD_Kinds
