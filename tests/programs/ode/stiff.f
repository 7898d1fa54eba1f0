C=======================================================================
C     STIFF - for equations whose solution has very fast and very slow
C     parts: the implicit trapezoidal rule and the two-step backward
C     differentiation formula, with Newton's method inside.
C
C     The Jacobian is taken by differences and kept as long as Newton
C     converges well; /STFCNT/ counts what was done.
C=======================================================================
      SUBROUTINE STFINI
      COMMON /STFCNT/ NFUN, NJAC, NITER, NFAIL
      NFUN  = 0
      NJAC  = 0
      NITER = 0
      NFAIL = 0
      END
C-----------------------------------------------------------------------
      SUBROUTINE STFBDF (F, N, LD, T, Y, TEND, NSTEP, WJ, W, IPIV, *)
      IMPLICIT DOUBLE PRECISION (A-H,O-Z), INTEGER (I-N)
      EXTERNAL F
      DIMENSION Y(N), WJ(LD,N), W(LD,6), IPIV(N)
      COMMON /STFCNT/ NFUN, NJAC, NITER, NFAIL
      LOGICAL FRESH, FULL
C     W(.,1) previous point   W(.,2) constant part of the equation
C     W(.,3) trial point      W(.,4) derivative    W(.,5) correction
      PARAMETER (MAXIT = 20, TOL = 1.0D-10)
C
      H = (TEND - T)/NSTEP
      T0 = T
      FRESH = .FALSE.
      DO 90 K = 1, NSTEP
         T = T0 + K*H
C        First step: backward Euler.  Later: BDF of order two.
         IF (K - 1) 999, 10, 20
   10       BETA = 1.0D0
            DO 15 I = 1, N
               W(I,2) = Y(I)
               W(I,3) = Y(I)
   15       CONTINUE
            GO TO 30
   20       IF (K .EQ. 2) FRESH = .FALSE.
            BETA = 2.0D0/3.0D0
            DO 25 I = 1, N
               W(I,2) = (4.0D0*Y(I) - W(I,1))/3.0D0
               W(I,3) = 2.0D0*Y(I) - W(I,1)
   25       CONTINUE
   30    CONTINUE
         DO 35 I = 1, N
   35       W(I,1) = Y(I)
C
         FULL = .FALSE.
   40    OLD = 0.0D0
         DO 60 IT = 1, MAXIT
            IF (FULL .OR. .NOT. FRESH) THEN
               CALL STFJAC (F, N, LD, T, W(1,3), BETA*H, WJ, W(1,4),
     1                      W(1,5), W(1,6))
               CALL STFLU (WJ, LD, N, IPIV, *999)
               FRESH = .TRUE.
            END IF
            NITER = NITER + 1
            CALL F (N, T, W(1,3), W(1,4))
            NFUN = NFUN + 1
            DO 45 I = 1, N
   45          W(I,5) = W(I,2) + BETA*H*W(I,4) - W(I,3)
            CALL STFSLV (WJ, LD, N, IPIV, W(1,5))
            SIZE = 0.0D0
            DO 50 I = 1, N
               W(I,3) = W(I,3) + W(I,5)
               SIZE = MAX(SIZE, ABS(W(I,5))/(1.0D0 + ABS(W(I,3))))
   50       CONTINUE
            IF (SIZE .LE. TOL) GO TO 70
            IF (.NOT. FULL .AND. IT .GT. 1 .AND. SIZE .GT. 0.9D0*OLD)
     1         GO TO 65
            OLD = SIZE
   60    CONTINUE
C        No convergence: once more from the last point, now with a new
C        Jacobian in every iteration; if that fails too, give up.
   65    NFAIL = NFAIL + 1
         IF (FULL) RETURN 1
         FULL = .TRUE.
         DO 68 I = 1, N
   68       W(I,3) = W(I,1)
         GO TO 40
   70    DO 80 I = 1, N
   80       Y(I) = W(I,3)
   90 CONTINUE
      RETURN
  999 RETURN 1
      END
C-----------------------------------------------------------------------
C     The matrix I - HB*J, with J by forward differences at Y.
C-----------------------------------------------------------------------
      SUBROUTINE STFJAC (F, N, LD, T, Y, HB, WJ, F0, F1, YP)
      DOUBLE PRECISION T, Y(N), HB, WJ(LD,N), F0(N), F1(N), YP(N)
      DOUBLE PRECISION DEL
      COMMON /STFCNT/ NFUN, NJAC, NITER, NFAIL
      EXTERNAL F
      NJAC = NJAC + 1
      CALL F (N, T, Y, F0)
      DO 10 I = 1, N
   10    YP(I) = Y(I)
      DO 30 J = 1, N
         DEL = 1.0D-7*MAX(1.0D-3, ABS(Y(J)))
         YP(J) = Y(J) + DEL
         CALL F (N, T, YP, F1)
         DO 20 I = 1, N
            WJ(I,J) = -HB*(F1(I) - F0(I))/DEL
            IF (I .EQ. J) WJ(I,J) = WJ(I,J) + 1.0D0
   20    CONTINUE
         YP(J) = Y(J)
   30 CONTINUE
      NFUN = NFUN + N + 1
      END
C-----------------------------------------------------------------------
C     Factors of a small matrix, rows exchanged; *1 if it is singular.
C-----------------------------------------------------------------------
      SUBROUTINE STFLU (A, LD, N, IPIV, *)
      INTEGER LD, N, IPIV(N), I, J, K, IP
      DOUBLE PRECISION A(LD,N), S
      DO 50 K = 1, N
         IP = K
         DO 10 I = K + 1, N
            IF (ABS(A(I,K)) .GT. ABS(A(IP,K))) IP = I
   10    CONTINUE
         IPIV(K) = IP
         IF (A(IP,K) .EQ. 0.0D0) RETURN 1
         IF (IP .NE. K) THEN
            DO 20 J = 1, N
               S = A(K,J)
               A(K,J) = A(IP,J)
               A(IP,J) = S
   20       CONTINUE
         ENDIF
         DO 40 I = K + 1, N
            A(I,K) = A(I,K)/A(K,K)
            DO 30 J = K + 1, N
               A(I,J) = A(I,J) - A(I,K)*A(K,J)
   30       CONTINUE
   40    CONTINUE
   50 CONTINUE
      END
C-----------------------------------------------------------------------
      SUBROUTINE STFSLV (A, LD, N, IPIV, B)
      INTEGER LD, N, IPIV(N), I, J
      DOUBLE PRECISION A(LD,N), B(N), S
      DO 10 I = 1, N
         S = B(IPIV(I))
         B(IPIV(I)) = B(I)
         B(I) = S
   10 CONTINUE
      DO 30 I = 2, N
         DO 20 J = 1, I - 1
   20       B(I) = B(I) - A(I,J)*B(J)
   30 CONTINUE
      DO 50 I = N, 1, -1
         DO 40 J = I + 1, N
   40       B(I) = B(I) - A(I,J)*B(J)
   50    B(I) = B(I)/A(I,I)
      END
