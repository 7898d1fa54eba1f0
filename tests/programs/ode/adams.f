C=======================================================================
C     ADAMS - predictor-corrector of order four (Adams-Bashforth to
C     predict, Adams-Moulton to correct, one evaluation after each).
C
C     The history of derivatives is a ring of four columns, so that no
C     column is ever copied: IR(1) is the newest, IR(4) the oldest.
C=======================================================================
      SUBROUTINE ADPC (F, N, T, Y, TEND, NSTEP, HIST, W, EST)
      EXTERNAL F
      INTEGER N, NSTEP
      DOUBLE PRECISION T, Y(N), TEND, HIST(N,0:3), W(N,*), EST
      INTEGER IR(4), I, K, KEEP
      DOUBLE PRECISION H, T0, P, BASH(4), MOUL(4)
      DATA BASH / 55.0D0, -59.0D0, 37.0D0, -9.0D0/,
     +     MOUL /  9.0D0,  19.0D0, -5.0D0,  1.0D0/
      SAVE BASH, MOUL
C
      EST = 0.0D0
      IF (NSTEP .LT. 4) STOP 77
      H = (TEND - T)/NSTEP
      T0 = T
C     Three steps of the classical method give the first values.
      CALL RKSEL (4, *900)
      CALL F (N, T, Y, HIST(1,3))
      DO 10 K = 1, 3
         CALL RKSTEP (F, N, T, Y, H, W)
         CALL F (N, T, Y, HIST(1,3-K))
   10 CONTINUE
      DO 15 K = 1, 4
   15    IR(K) = K - 1
C
      DO 60 K = 4, NSTEP
         T = T0 + K*H
         DO 20 I = 1, N
            W(I,1) = Y(I) + H/24.0D0*
     +         (BASH(1)*HIST(I,IR(1)) + BASH(2)*HIST(I,IR(2)) +
     +          BASH(3)*HIST(I,IR(3)) + BASH(4)*HIST(I,IR(4)))
   20    CONTINUE
         CALL F (N, T, W(1,1), W(1,2))
         DO 30 I = 1, N
            P = Y(I) + H/24.0D0*
     +         (MOUL(1)*W(I,2)         + MOUL(2)*HIST(I,IR(1)) +
     +          MOUL(3)*HIST(I,IR(2))  + MOUL(4)*HIST(I,IR(3)))
C           Milne's device: the two formulas differ by 270/19 errors.
            EST = MAX(EST, ABS(P - W(I,1))*19.0D0/270.0D0)
            Y(I) = P
   30    CONTINUE
C        turn the ring
         KEEP = IR(4)
         DO 40 I = 4, 2, -1
   40       IR(I) = IR(I-1)
         IR(1) = KEEP
         CALL F (N, T, Y, HIST(1,KEEP))
   60 CONTINUE
      RETURN
C
  900 PRINT *, 'ADPC: NO SUCH STARTING METHOD'
      STOP
      END
C-----------------------------------------------------------------------
C     ADCOEF - the coefficients of the Adams formulas of order K from
C     their generating function: backward differences GAMMA(0..K-1) of
C     the explicit formula, or of the implicit one when IMPLCT.
C-----------------------------------------------------------------------
      SUBROUTINE ADCOEF (K, IMPLCT, G)
      INTEGER K, I, J
      LOGICAL IMPLCT
      DOUBLE PRECISION G(0:K-1), S
      G(0) = 1.0D0
      DO 20 I = 1, K - 1
         S = 0.0D0
         DO 10 J = 0, I - 1
            S = S + G(J)/DBLE(I - J + 1)
   10    CONTINUE
         IF (IMPLCT) THEN
            G(I) = -S
         ELSE
            G(I) = 1.0D0 - S
         END IF
   20 CONTINUE
      END
