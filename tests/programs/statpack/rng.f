C     RNG - random numbers: one stream of uniform numbers in a COMMON
C     block, and the distributions that are made from it.
C
C     The generator adds two multiplicative ones (Schrage's way, so that
C     no product is over 32 bits), and shuffles.
      BLOCK DATA RNGBD
      INTEGER S1, S2, TAB, NTAB, LAST
      PARAMETER (NTAB = 32)
      LOGICAL READY
      COMMON /RNGCOM/ S1, S2, LAST, TAB(NTAB), READY
      DATA S1, S2 /12345, 67890/, LAST /0/, READY /.FALSE./
      END
C
      SUBROUTINE RNSEED (I, J)
      INTEGER I, J, S1, S2, TAB, NTAB, LAST
      PARAMETER (NTAB = 32)
      LOGICAL READY
      COMMON /RNGCOM/ S1, S2, LAST, TAB(NTAB), READY
      S1 = MAX(1, ABS(I))
      S2 = MAX(1, ABS(J))
      READY = .FALSE.
      RETURN
C     the state, for those who go on another day
      ENTRY RNSTAT (I, J)
      I = S1
      J = S2
      END
C
      REAL FUNCTION UNIFRM ()
      INTEGER S1, S2, TAB, NTAB, LAST, K, J, M1, M2
      PARAMETER (NTAB = 32, M1 = 2147483563, M2 = 2147483399)
      LOGICAL READY
      COMMON /RNGCOM/ S1, S2, LAST, TAB(NTAB), READY
      INTEGER S, A, M, Q, R, STEP
C     A*S modulo M, with M = A*Q + R
      STEP(S, A, Q, R, M) = A*(S - S/Q*Q) - S/Q*R
     1   + M*((1 - SIGN(1, A*(S - S/Q*Q) - S/Q*R))/2)
      IF (.NOT. READY) THEN
         DO 10 K = 1, NTAB
            S1 = STEP(S1, 40014, 53668, 12211, M1)
            TAB(K) = S1
   10    CONTINUE
         LAST = TAB(1)
         READY = .TRUE.
      END IF
      S1 = STEP(S1, 40014, 53668, 12211, M1)
      S2 = STEP(S2, 40692, 52774, 3791, M2)
      J = 1 + LAST/(1 + (M1 - 1)/NTAB)
      LAST = TAB(J) - S2
      IF (LAST .LT. 1) LAST = LAST + M1 - 1
      TAB(J) = S1
      UNIFRM = MIN(REAL(LAST)/REAL(M1), 0.9999999)
      END
C
      REAL FUNCTION RNORML (RMEAN, SDEV)
C     Pairs of normal numbers by the polar method; one is kept.
      REAL RMEAN, SDEV, KEEP, U, V, S
      LOGICAL HAVE
      SAVE HAVE, KEEP
      DATA HAVE /.FALSE./, KEEP /0.0/
      IF (HAVE) THEN
         HAVE = .FALSE.
         RNORML = RMEAN + SDEV*KEEP
         RETURN
      END IF
   10 U = 2.0*UNIFRM() - 1.0
      V = 2.0*UNIFRM() - 1.0
      S = U*U + V*V
      IF (S .GE. 1.0 .OR. S .EQ. 0.0) GO TO 10
      S = SQRT(-2.0*LOG(S)/S)
      KEEP = V*S
      HAVE = .TRUE.
      RNORML = RMEAN + SDEV*U*S
      END
C
      REAL FUNCTION REXPON (RMEAN)
      REXPON = -RMEAN*LOG(1.0 - UNIFRM())
      END
C
      INTEGER FUNCTION NPOISS (RMEAN)
      REAL RMEAN, P, LIM
      LIM = EXP(-RMEAN)
      P = 1.0
      NPOISS = -1
   10 P = P*UNIFRM()
      NPOISS = NPOISS + 1
      IF (P .GT. LIM) GO TO 10
      END
C
      INTEGER FUNCTION NDRAW (LOW, HIGH)
      INTEGER LOW, HIGH
      NDRAW = LOW + INT((HIGH - LOW + 1)*UNIFRM())
      END
C
      SUBROUTINE SHUFFL (IA, N)
      INTEGER IA(*), N, K, NDRAW
      DO 10 I = N, 2, -1
         K = NDRAW(1, I)
         ITEMP = IA(I)
         IA(I) = IA(K)
   10 IA(K) = ITEMP
      END
