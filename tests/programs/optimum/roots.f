C     Zeros of functions of one variable, of polynomials and of systems.
C
C     All functions are single arguments of double precision; a routine
C     says in its last argument how it ended:
C        0  found     1  no change of sign     2  too many evaluations
C        3  derivative (or Jacobian) zero
C
      SUBROUTINE BISECT (F, A, B, TOL, X, IFLAG)
      IMPLICIT DOUBLE PRECISION (A-H, O-Z)
      EXTERNAL F
      XL = A
      XR = B
      FL = F(XL)
      FR = F(XR)
      IFLAG = 0
      X = XL
      IF (FL .EQ. 0.0D0) RETURN
      X = XR
      IF (FR .EQ. 0.0D0) RETURN
      IF (SIGN(1.0D0, FL) .EQ. SIGN(1.0D0, FR)) THEN
         IFLAG = 1
         RETURN
      END IF
      DO 40 I = 1, 200
         X = XL + 0.5D0*(XR - XL)
         IF (ABS(XR - XL) .LE. TOL) RETURN
         FX = F(X)
C        arithmetic IF on the sign of the product
         IF (FX*FL) 10, 30, 20
   10    XR = X
         GO TO 40
   20    XL = X
         FL = FX
         GO TO 40
   30    RETURN
   40 CONTINUE
      IFLAG = 2
      END
C
      SUBROUTINE SECANT (F, A, B, TOL, X, IFLAG)
C     The "Illinois" kind of false position: the interval is kept, and a
C     value at an end that stays is halved.
      DOUBLE PRECISION F, A, B, TOL, X, FA, FB, FX, P, Q
      INTEGER IFLAG, I, KEPT
      P = A
      Q = B
      FA = F(P)
      FB = F(Q)
      IF (FA*FB .GT. 0) THEN
         IFLAG = 1
         RETURN
      END IF
      KEPT = 0
      DO 10, I = 1, 100
         X = (P*FB - Q*FA)/(FB - FA)
         FX = F(X)
         IF (ABS(FX) .LE. TOL .OR. ABS(Q - P) .LE. TOL) THEN
            IFLAG = 0
            RETURN
         ELSE IF (FX*FB .GT. 0) THEN
            Q = X
            FB = FX
            IF (KEPT .EQ. -1) FA = FA/2
            KEPT = -1
         ELSE
            P = X
            FA = FX
            IF (KEPT .EQ. 1) FB = FB/2
            KEPT = 1
         END IF
   10 CONTINUE
      IFLAG = 2
      END
C
      SUBROUTINE LAGUER (C, N, Z, NIT, *)
C     One zero of the polynomial C(0) + C(1)*Z + ... + C(N)*Z**N with
C     complex coefficients, starting at Z.
      INTEGER N, NIT, J
      COMPLEX C(0:N), Z, B, D, F, G, G2, H, SQ, GP, GM, DZ
      REAL ERR, EPS
      PARAMETER (EPS = 2.0E-7)
      DO 20 NIT = 1, 80
         B = C(N)
         ERR = CABS(B)
         D = (0.0, 0.0)
         F = (0.0, 0.0)
         DO 10 J = N - 1, 0, -1
            F = Z*F + D
            D = Z*D + B
            B = Z*B + C(J)
            ERR = CABS(B) + CABS(Z)*ERR
   10    CONTINUE
         IF (CABS(B) .LE. EPS*ERR) RETURN
         G = D/B
         G2 = G*G
         H = G2 - 2.0*F/B
         SQ = CSQRT((N - 1)*(N*H - G2))
         GP = G + SQ
         GM = G - SQ
         IF (CABS(GP) .LT. CABS(GM)) GP = GM
         IF (CABS(GP) .GT. 0.0) THEN
            DZ = N/GP
         ELSE
            DZ = EXP(CMPLX(LOG(1.0 + CABS(Z)), REAL(NIT)))
         END IF
         IF (Z .EQ. Z - DZ) RETURN
         Z = Z - DZ
   20 CONTINUE
      RETURN 1
      END
C
      SUBROUTINE POLZER (C, N, Z, IFLAG)
C     All zeros, by deflation, each polished on the whole polynomial,
C     and sorted by real part.
      INTEGER N, IFLAG, I, J, NIT, MAXDEG
      PARAMETER (MAXDEG = 30)
      COMPLEX C(0:N), Z(N), W(0:MAXDEG), B, T
      IFLAG = 2
      IF (N .GT. MAXDEG .OR. N .LT. 1) RETURN
      DO 10 J = 0, N
   10    W(J) = C(J)
      DO 30 J = N, 1, -1
         Z(J) = (0.0, 0.0)
         CALL LAGUER (W, J, Z(J), NIT, *90)
         IF (ABS(AIMAG(Z(J))) .LE. 4.0E-7*ABS(REAL(Z(J))))
     1      Z(J) = REAL(Z(J))
         B = W(J)
         DO 20 I = J - 1, 0, -1
            T = W(I)
            W(I) = B
            B = Z(J)*B + T
   20    CONTINUE
   30 CONTINUE
      DO 60 J = 1, N
         CALL LAGUER (C, N, Z(J), NIT, *90)
         T = Z(J)
         DO 40 I = J - 1, 1, -1
            IF (REAL(Z(I)) .LE. REAL(T)) GO TO 50
            Z(I+1) = Z(I)
   40    CONTINUE
         I = 0
   50    Z(I+1) = T
   60 CONTINUE
      IFLAG = 0
   90 RETURN
      END
C
      SUBROUTINE NEWTSY (FUN, N, X, TOL, A, F, IFLAG)
C     Newton's method for N equations.  FUN (N, X, F, A) gives the values
C     F and the Jacobian A(N,N).
      EXTERNAL FUN
      INTEGER N, IFLAG, IT, I, J, K, IP
      DOUBLE PRECISION X(N), TOL, A(N,N), F(N), S, SIZE
      DO 90 IT = 1, 50
         CALL FUN (N, X, F, A)
C        Gauss elimination, right-hand side along
         DO 40 K = 1, N
            IP = K
            DO 10 I = K, N
   10          IF (ABS(A(I,K)) .GT. ABS(A(IP,K))) IP = I
            IF (A(IP,K) .EQ. 0.0D0) THEN
               IFLAG = 3
               RETURN
            END IF
            DO 20 J = K, N
               S = A(K,J)
               A(K,J) = A(IP,J)
   20          A(IP,J) = S
            S = F(K)
            F(K) = F(IP)
            F(IP) = S
            DO 30 I = K + 1, N
               S = A(I,K)/A(K,K)
               F(I) = F(I) - S*F(K)
               DO 30 J = K, N
   30             A(I,J) = A(I,J) - S*A(K,J)
   40    CONTINUE
         SIZE = 0
         DO 60 K = N, 1, -1
            DO 50 J = K + 1, N
   50          F(K) = F(K) - A(K,J)*F(J)
            F(K) = F(K)/A(K,K)
            X(K) = X(K) - F(K)
            SIZE = DMAX1(SIZE, DABS(F(K)))
   60    CONTINUE
         IFLAG = 0
         IF (SIZE .LE. TOL) RETURN
   90 CONTINUE
      IFLAG = 2
      END
