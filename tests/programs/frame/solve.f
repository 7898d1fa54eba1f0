C     FROM THE MODEL TO DISPLACEMENTS.
C
      SUBROUTINE SOLVE (*)
      INCLUDE 'model.inc'
      INTEGER N
      CALL NUMBER
      CALL OUTLIN
      CALL PROFIL
      IF (NSTIF .GT. MXSTIF) RETURN 1
      DO 10 N = 1, NSTIF
         STIF(N) = 0D0
   10 CONTINUE
      DO 20 N = 1, NMEM
         CALL ASSEMB (N)
   20 CONTINUE
      CALL DECOMP (*99)
      DO 30 N = 1, NCASE
         CALL BACKS (DISP(1, N))
         IF (PRTDIS) CALL OUTDIS (N)
         IF (PRTFOR) CALL OUTFOR (N)
   30 CONTINUE
      RETURN
   99 RETURN 1
      END
C
      SUBROUTINE NUMBER
C     NUMBER THE EQUATIONS, AND MOVE LOADS TO THEIR PLACES.  ROTATIONS
C     OF JOINTS WITHOUT BEAMS ARE HELD.
      INCLUDE 'model.inc'
      INTEGER I, J, K, N
      LOGICAL TURNS(MXJNT)
      DO 10 J = 1, NJNT
   10 TURNS(J) = .FALSE.
      DO 30 N = 1, NMEM
         DO 20 K = 1, 2
            IF (KIND(N) .EQ. 1) TURNS(JEND(K, N)) = .TRUE.
   20    CONTINUE
   30 CONTINUE
      NEQN = 0
      DO 60 J = 1, NJNT
         IF (.NOT. TURNS(J)) IEQ(3, J) = 0
         DO 50 K = 1, 3
            IF (IEQ(K, J) .EQ. 0) GO TO 50
            NEQN = NEQN + 1
            IEQ(K, J) = NEQN
            DO 40 I = 1, NCASE
               DISP(NEQN, I) = DISP(3*(J - 1) + K, I)
   40       CONTINUE
   50    CONTINUE
   60 CONTINUE
      END
C
      SUBROUTINE PLACES (N, LOC, C, S, SPAN)
C     THE EQUATIONS OF A MEMBER, ITS DIRECTION AND ITS LENGTH.
      INCLUDE 'model.inc'
      INTEGER N, LOC(6), I, K
      DOUBLE PRECISION C, S, SPAN
      DO 20 I = 1, 2
         DO 10 K = 1, 3
            LOC(3*(I - 1) + K) = IEQ(K, JEND(I, N))
   10    CONTINUE
   20 CONTINUE
      C = X(JEND(2, N)) - X(JEND(1, N))
      S = Y(JEND(2, N)) - Y(JEND(1, N))
      SPAN = SQRT (C**2 + S**2)
      C = C/SPAN
      S = S/SPAN
      END
C
      SUBROUTINE PROFIL
C     THE HEIGHTS OF THE COLUMNS, AND FROM THEM THE DIAGONAL.
      INCLUDE 'model.inc'
      INTEGER I, J, K, N, LOC(6)
      DOUBLE PRECISION C, S, SPAN
      LDIAG(0) = 0
      DO 10 K = 1, NEQN
         LDIAG(K) = 1
   10 CONTINUE
      DO 40 N = 1, NMEM
         CALL PLACES (N, LOC, C, S, SPAN)
         DO 30 J = 1, 6
            IF (LOC(J) .EQ. 0) GO TO 30
            DO 20 I = 1, 6
               IF (LOC(I) .NE. 0) LDIAG(LOC(J)) =
     1            MAX (LDIAG(LOC(J)), LOC(J) - LOC(I) + 1)
   20       CONTINUE
   30    CONTINUE
   40 CONTINUE
      DO 50 K = 1, NEQN
         LDIAG(K) = LDIAG(K) + LDIAG(K - 1)
   50 CONTINUE
      NSTIF = LDIAG(NEQN)
      END
C
      SUBROUTINE LOCAL (N, SPAN, EK)
C     STIFFNESS OF A MEMBER IN ITS OWN DIRECTIONS.
      INCLUDE 'model.inc'
      INTEGER N, I, J, M
      DOUBLE PRECISION SPAN, EK(6, 6), EA, EI
      DO 10 J = 1, 6
         DO 10 I = 1, 6
   10 EK(I, J) = 0D0
      M = MAT(N)
      EA = EMOD(M)*AREA(M)/SPAN
      EK(1, 1) = EA
      EK(4, 1) = -EA
      EK(4, 4) = EA
      IF (KIND(N) .EQ. 2) GO TO 20
      EI = EMOD(M)*FLEX(M)/SPAN
      EK(2, 2) = 12D0*EI/SPAN**2
      EK(3, 2) = 6D0*EI/SPAN
      EK(5, 2) = -EK(2, 2)
      EK(6, 2) = EK(3, 2)
      EK(3, 3) = 4D0*EI
      EK(5, 3) = -EK(3, 2)
      EK(6, 3) = 2D0*EI
      EK(5, 5) = EK(2, 2)
      EK(6, 5) = -EK(3, 2)
      EK(6, 6) = EK(3, 3)
   20 DO 30 J = 2, 6
         DO 30 I = 1, J - 1
            EK(I, J) = EK(J, I)
   30 CONTINUE
      END
C
      SUBROUTINE TURN (EK, C, S)
C     T'*EK*T FOR THE ROTATION OF BOTH ENDS.
      DOUBLE PRECISION EK(6, 6), C, S, U, V
      INTEGER I, J
      DO 20 J = 1, 4, 3
         DO 10 I = 1, 6
            U = EK(I, J)
            V = EK(I, J + 1)
            EK(I, J) = C*U - S*V
            EK(I, J + 1) = S*U + C*V
   10    CONTINUE
   20 CONTINUE
      DO 40 I = 1, 4, 3
         DO 30 J = 1, 6
            U = EK(I, J)
            V = EK(I + 1, J)
            EK(I, J) = C*U - S*V
            EK(I + 1, J) = S*U + C*V
   30    CONTINUE
   40 CONTINUE
      END
C
      SUBROUTINE ASSEMB (N)
      INCLUDE 'model.inc'
      INTEGER N, I, J, K, LOC(6)
      DOUBLE PRECISION EK(6, 6), C, S, SPAN
      CALL PLACES (N, LOC, C, S, SPAN)
      CALL LOCAL (N, SPAN, EK)
      CALL TURN (EK, C, S)
      DO 20 J = 1, 6
         DO 10 I = 1, 6
            IF (LOC(I) .EQ. 0 .OR. LOC(I) .GT. LOC(J)) GO TO 10
            K = LDIAG(LOC(J)) - LOC(J) + LOC(I)
            STIF(K) = STIF(K) + EK(I, J)
   10    CONTINUE
   20 CONTINUE
      END
C
      SUBROUTINE DECOMP (*)
C     FACTOR THE SKYLINE.  A PIVOT THAT LOSES TEN DIGITS IS TAKEN FOR
C     ZERO.
      INCLUDE 'model.inc'
      INTEGER I, J, K, LJ, LI, JTOP, ITOP
      DOUBLE PRECISION T, U, WAS
      DO 40 J = 1, NEQN
         LJ = LDIAG(J) - J
         JTOP = LDIAG(J - 1) - LJ + 1
         DO 20 I = JTOP + 1, J - 1
            LI = LDIAG(I) - I
            ITOP = LDIAG(I - 1) - LI + 1
            T = STIF(LJ + I)
            DO 10 K = MAX (ITOP, JTOP), I - 1
               T = T - STIF(LI + K)*STIF(LJ + K)
   10       CONTINUE
            STIF(LJ + I) = T
   20    CONTINUE
         WAS = STIF(LDIAG(J))
         T = WAS
         DO 30 K = JTOP, J - 1
            U = STIF(LJ + K)/STIF(LDIAG(K))
            T = T - U*STIF(LJ + K)
            STIF(LJ + K) = U
   30    CONTINUE
         IF (T .LE. 1D-10*WAS) RETURN 1
         STIF(LDIAG(J)) = T
   40 CONTINUE
      END
C
      SUBROUTINE BACKS (B)
      INCLUDE 'model.inc'
      DOUBLE PRECISION B(*)
      INTEGER J, K, L
      DO 20 J = 2, NEQN
         L = LDIAG(J) - J
         DO 10 K = LDIAG(J - 1) - L + 1, J - 1
   10    B(J) = B(J) - STIF(L + K)*B(K)
   20 CONTINUE
      DO 30 J = 1, NEQN
   30 B(J) = B(J)/STIF(LDIAG(J))
      DO 50 J = NEQN, 2, -1
         L = LDIAG(J) - J
         DO 40 K = LDIAG(J - 1) - L + 1, J - 1
   40    B(K) = B(K) - STIF(L + K)*B(J)
   50 CONTINUE
      END
