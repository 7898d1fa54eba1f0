*     Discrete Fourier transforms in single precision COMPLEX.
*
*     CFFT2   N a power of two, in place
*     CDFT    any N, by the definition: slow, for tests
*     CFFTB   any N, by the chirp (three transforms of a power of two)
*     RSPEC   amplitudes of a real series
*     CONVOL  convolution of two real series
*
*     DIRECT is -1 for the forward transform, +1 for the inverse, which
*     is divided by N.
*
      SUBROUTINE CFFT2 (X, N, DIRECT, *)
      INTEGER N, DIRECT
      COMPLEX X(0:N-1)
      COMPLEX T, W, STEP
      INTEGER I, J, K, HALF, SPAN
      DOUBLE PRECISION ANG, PI
      PARAMETER (PI = 3.14159265358979324D0)
      LOGICAL POWER2
*
      IF (.NOT. POWER2(N)) RETURN 1
*     reversal of the bits of the index
      J = 0
      DO 20 I = 0, N - 2
         IF (I .LT. J) THEN
            T = X(I)
            X(I) = X(J)
            X(J) = T
         END IF
         K = N/2
   10    IF (K .LE. J) THEN
            J = J - K
            K = K/2
            GO TO 10
         END IF
         J = J + K
   20 CONTINUE
*     butterflies
      SPAN = 1
   30 IF (SPAN .LT. N) THEN
         HALF = SPAN
         SPAN = 2*SPAN
         DO 50 K = 0, HALF - 1
            ANG = DIRECT*PI*K/HALF
            W = CMPLX(REAL(COS(ANG)), REAL(SIN(ANG)))
            DO 40 I = K, N - 1, SPAN
               T = W*X(I + HALF)
               X(I + HALF) = X(I) - T
               X(I) = X(I) + T
   40       CONTINUE
   50    CONTINUE
         GO TO 30
      END IF
      IF (DIRECT .GT. 0) THEN
         STEP = (1.0, 0.0)/N
         DO 60 I = 0, N - 1
            X(I) = X(I)*STEP
   60    CONTINUE
      END IF
      END
*
      LOGICAL FUNCTION POWER2 (N)
      INTEGER N, M
      M = N
      POWER2 = M .GT. 0
      IF (.NOT. POWER2) RETURN
   10 IF (MOD(M, 2) .EQ. 0) THEN
         M = M/2
         GO TO 10
      END IF
      POWER2 = M .EQ. 1
      END
*
      SUBROUTINE CDFT (X, Y, N, DIRECT)
      INTEGER N, DIRECT, J, K
      COMPLEX X(0:*), Y(0:*), S
      REAL TWOPI
      PARAMETER (TWOPI = 6.2831853072)
      DO 20 K = 0, N - 1
         S = (0.0, 0.0)
         DO 10 J = 0, N - 1
*           the product J*K is reduced first, for the sake of accuracy
            S = S + X(J)*EXP((0.0, 1.0)*(DIRECT*TWOPI*MOD(J*K, N)/N))
   10    CONTINUE
         IF (DIRECT .GT. 0) S = S/N
         Y(K) = S
   20 CONTINUE
      END
*
      SUBROUTINE CFFTB (X, N, DIRECT, A, B, M, *)
*     A and B are work of length M, a power of two not below 2*N-1.
      INTEGER N, DIRECT, M, J
      COMPLEX X(0:N-1), A(0:M-1), B(0:M-1), C, CHIRP
      INTEGER K, KK
      REAL PI
      PARAMETER (PI = 3.1415926536)
      CHIRP(KK) = CEXP(CMPLX(0.0, DIRECT*PI*MOD(KK*KK, 2*N)/N))
*
      IF (M .LT. 2*N - 1) RETURN 1
      DO 10 J = 0, M - 1
         A(J) = 0.0
         B(J) = 0.0
   10 CONTINUE
      DO 20 J = 0, N - 1
         C = CHIRP(J)
         A(J) = X(J)*C
         B(J) = CONJG(C)
         IF (J .GT. 0) B(M - J) = CONJG(C)
   20 CONTINUE
      CALL CFFT2 (A, M, -1, *90)
      CALL CFFT2 (B, M, -1, *90)
      DO 30 J = 0, M - 1
   30 A(J) = A(J)*B(J)
      CALL CFFT2 (A, M, +1, *90)
      DO 40 K = 0, N - 1
         X(K) = A(K)*CHIRP(K)
         IF (DIRECT .GT. 0) X(K) = X(K)/N
   40 CONTINUE
      RETURN
   90 RETURN 1
      END
*
      SUBROUTINE RSPEC (R, N, AMP, NAMP)
*     The real series R(1..N) is seen as N/2 complex numbers, one
*     transform of half the length is done, and the halves parted.
*     As R and the complex work share no storage, R is left alone.
      INTEGER N, NAMP, K, H, MAXM
      PARAMETER (MAXM = 1024)
      REAL R(N), AMP(0:*)
      COMPLEX E, O, Z, ZC, W, PACK(0:MAXM-1), SPARE(0:MAXM-1)
      REAL ANG
      COMMON /FFTWRK/ PACK, SPARE
      H = N/2
      IF (H .GT. MAXM) GO TO 90
      NAMP = H
      DO 5 K = 0, H - 1
         PACK(K) = CMPLX(R(2*K+1), R(2*K+2))
    5 CONTINUE
      CALL CFFT2 (PACK, H, -1, *90)
      DO 10 K = 0, H
         Z = PACK(MOD(K, H))
         ZC = CONJG(PACK(MOD(H - K, H)))
         E = 0.5*(Z + ZC)
         O = (0.0, -0.5)*(Z - ZC)
         ANG = -6.2831853*K/N
         W = CMPLX(COS(ANG), SIN(ANG))
         AMP(K) = 2.0*ABS(E + W*O)/N
   10 CONTINUE
      AMP(0) = 0.5*AMP(0)
      AMP(H) = 0.5*AMP(H)
      RETURN
   90 NAMP = -1
      END
*
      SUBROUTINE CONVOL (A, NA, B, NB, C, NC, LIMIT)
*     C = A * B, with NA + NB - 1 terms.  Both series go through one
*     transform, A as the real part and B as the imaginary part.
      INTEGER NA, NB, NC, LIMIT, MAXM, M, I
      PARAMETER (MAXM = 1024)
      REAL A(NA), B(NB), C(LIMIT)
      COMPLEX Z(0:MAXM-1), ZS(0:MAXM-1), P, Q
      COMMON /FFTWRK/ Z, ZS
      NC = NA + NB - 1
      M = 1
   10 IF (M .LT. NC) THEN
         M = M + M
         GO TO 10
      END IF
      IF (M .GT. MAXM .OR. NC .GT. LIMIT) THEN
         NC = 0
         RETURN
      END IF
      DO 20 I = 0, M - 1
         Z(I) = (0.0, 0.0)
         IF (I .LT. NA) Z(I) = A(I+1)
         IF (I .LT. NB) Z(I) = Z(I) + CMPLX(0.0, B(I+1))
   20 CONTINUE
      CALL CFFT2 (Z, M, -1, *90)
      DO 30 I = 0, M - 1
         P = 0.5*(Z(I) + CONJG(Z(MOD(M - I, M))))
         Q = (0.0, -0.5)*(Z(I) - CONJG(Z(MOD(M - I, M))))
         ZS(I) = P*Q
   30 CONTINUE
      CALL CFFT2 (ZS, M, 1, *90)
      DO 40 I = 1, NC
   40 C(I) = REAL(ZS(I-1))
      RETURN
   90 STOP 'CONVOL'
      END
