C     ******************************************************************
C     FACTORIZATION OF GENERAL AND SYMMETRIC MATRICES, AND THE SOLUTION
C     OF THE SYSTEMS WHOSE MATRICES HAVE BEEN FACTORED.
C
C     A matrix is always passed with LDA, the first dimension of the
C     array that holds it, and N, its order.  INFO is zero upon success.
C     ******************************************************************
      SUBROUTINE GEFACT (A, LDA, N, IPIV, INFO)
C
C     P*A = L*U by Gaussian elimination with partial pivoting.  The unit
C     lower triangle L and the upper triangle U replace A.
C     INFO = K tells that the K-th pivot is exactly zero.
C
      INTEGER LDA, N, IPIV(N), INFO
      DOUBLE PRECISION A(LDA, N)
      INTEGER J, K, L
      DOUBLE PRECISION T
      INTEGER VIMAX
      EXTERNAL VIMAX, VADD, VSCALE, VSWAP
C
      INFO = 0
      DO 60 K = 1, N
         L = VIMAX (N - K + 1, A(K, K), 1) + K - 1
         IPIV(K) = L
         IF (A(L, K) .EQ. 0.0D0) THEN
            IF (INFO .EQ. 0) INFO = K
            GO TO 60
         END IF
         IF (L .NE. K) CALL VSWAP (N, A(L, 1), LDA, A(K, 1), LDA)
         IF (K .EQ. N) GO TO 60
         T = 1.0D0/A(K, K)
         CALL VSCALE (N - K, T, A(K+1, K), 1)
         DO 50 J = K + 1, N
            IF (A(K, J) .EQ. 0.0D0) GO TO 50
            CALL VADD (N - K, -A(K, J), A(K+1, K), 1, A(K+1, J), 1)
   50    CONTINUE
   60 CONTINUE
      RETURN
      END
C
      SUBROUTINE GESOLV (A, LDA, N, IPIV, B, JOB, *)
C
C     Solve A*X = B (JOB = 'N') or A'*X = B (JOB = 'T') with the factors
C     found by GEFACT.  X replaces B.  The alternate return is taken if
C     the matrix is singular, and B is then not touched.
C
      INTEGER LDA, N, IPIV(*)
      DOUBLE PRECISION A(LDA, *), B(*), T
      CHARACTER*(*) JOB
      INTEGER I, K
      DOUBLE PRECISION VDOT
      EXTERNAL VDOT, VADD
C
      DO 10 K = 1, N
         IF (A(K, K) .EQ. 0D0) RETURN 1
   10 CONTINUE
      IF (JOB(1:1) .EQ. 'T' .OR. JOB(1:1) .EQ. 't') GO TO 50
C
C        Forward elimination, then back substitution.
      DO 20 I = 1, N
         IF (IPIV(I) .NE. I) THEN
            T = B(I)
            B(I) = B(IPIV(I))
            B(IPIV(I)) = T
         ENDIF
   20 CONTINUE
      DO 30 K = 1, N - 1
   30    CALL VADD (N - K, -B(K), A(K+1, K), 1, B(K+1), 1)
      DO 40 K = N, 1, -1
         B(K) = B(K)/A(K, K)
         CALL VADD (K - 1, -B(K), A(1, K), 1, B, 1)
   40 CONTINUE
      RETURN
C
C        The transposed system: the triangles in the opposite order.
   50 DO 60 K = 1, N
         B(K) = (B(K) - VDOT (K - 1, A(1, K), 1, B, 1))/A(K, K)
   60 CONTINUE
      DO 70 K = N - 1, 1, -1
         B(K) = B(K) - VDOT (N - K, A(K+1, K), 1, B(K+1), 1)
   70 CONTINUE
      DO 80 I = N, 1, -1
         K = IPIV(I)
         T = B(I)
         B(I) = B(K)
         B(K) = T
   80 CONTINUE
      END
C
      SUBROUTINE GEDET (A, LDA, N, IPIV, DET)
C     The determinant as DET(1) * 10**DET(2), with 1 <= |DET(1)| < 10.
      INTEGER LDA, N, IPIV(N), I
      DOUBLE PRECISION A(LDA, N), DET(2), TEN, X
      PARAMETER (TEN = 1D1)
      DET(1) = 1D0
      DET(2) = 0D0
      DO 10 I = 1, N
         X = DET(1)*A(I, I)
         IF (IPIV(I) .NE. I) X = -X
         DET(1) = X
         IF (X .EQ. 0D0) GO TO 20
C           the exponent of the product goes over to DET(2)
         DET(2) = DET(2) + FLOOR (LOG10 (ABS (X)))
         DET(1) = X/TEN**FLOOR (LOG10 (ABS (X)))
   10 CONTINUE
      RETURN
   20 DET(2) = 0D0
      END
C
      SUBROUTINE GEINV (A, LDA, N, IPIV, WORK)
C     Replace the factors of A by the inverse.  WORK has N elements.
C     Both triangles are inverted where they are; their product needs
C     row I of the one and column J of the other from MAX (I, J) on, so
C     the result can grow from the upper left corner.
      INTEGER LDA, N, IPIV(N)
      DOUBLE PRECISION A(LDA, N), WORK(N), VDOT
      INTEGER I, J
      EXTERNAL VDOT
      DO 30 J = 1, N
         A(J, J) = 1D0/A(J, J)
         DO 10 I = 1, J - 1
            A(I, J) = -VDOT (J - I, A(I, I), LDA, A(I, J), 1)*A(J, J)
   10    CONTINUE
   30 CONTINUE
      DO 50 J = N - 1, 1, -1
         DO 40 I = N, J + 1, -1
            A(I, J) = -A(I, J) - VDOT (I - J - 1, A(I, J + 1), LDA,
     +                A(J + 1, J), 1)
   40    CONTINUE
   50 CONTINUE
      DO 80 J = 1, N
         DO 60 I = 1, N
            IF (I .LE. J) THEN
               WORK(I) = A(I, J) + VDOT (N - J, A(I, MIN (J + 1, N)),
     +                   LDA, A(MIN (J + 1, N), J), 1)
            ELSE
               WORK(I) = VDOT (N - I + 1, A(I, I), LDA, A(I, J), 1)
            END IF
   60    CONTINUE
         DO 70 I = 1, N
            A(I, J) = WORK(I)
   70    CONTINUE
   80 CONTINUE
C        The columns take the places of the rows that were exchanged.
      DO 90 J = N - 1, 1, -1
         IF (IPIV(J) .NE. J) CALL VSWAP (N, A(1, J), 1, A(1, IPIV(J)),1)
   90 CONTINUE
      END
C
      SUBROUTINE CHFACT (A, LDA, N, INFO)
C
C     Cholesky: A = L*L' for a symmetric positive definite matrix, of
C     which only the lower triangle is used and replaced.  INFO = J if
C     the leading minor of order J is not positive.
C
      INTEGER LDA, N, INFO, I, J
      DOUBLE PRECISION A(LDA, N), S, VDOT
      EXTERNAL VDOT
      INFO = 0
      DO 20 J = 1, N
         S = A(J, J) - VDOT (J - 1, A(J, 1), LDA, A(J, 1), LDA)
         IF (S .LE. 0.0D0) THEN
            INFO = J
            RETURN
         END IF
         A(J, J) = SQRT (S)
         DO 10 I = J + 1, N
            A(I, J) = (A(I, J) - VDOT (J - 1, A(I, 1), LDA, A(J, 1),
     +                 LDA))/A(J, J)
   10    CONTINUE
   20 CONTINUE
      END
C
      SUBROUTINE CHSOLV (A, LDA, N, B, LDB, NB)
C     Solve for NB right hand sides, the columns of B.
      INTEGER LDA, N, LDB, NB
      DOUBLE PRECISION A(LDA, N), B(LDB, NB)
      INTEGER I, J
      DOUBLE PRECISION VDOT
      DO 30 J = 1, NB
         DO 10 I = 1, N
   10    B(I, J) = (B(I, J) - VDOT (I-1, A(I, 1), LDA, B(1, J), 1))
     +             /A(I, I)
         DO 20 I = N, 1, -1
            B(I, J) = B(I, J)/A(I, I)
            CALL VADD (I - 1, -B(I, J), A(I, 1), LDA, B(1, J), 1)
   20    CONTINUE
   30 CONTINUE
      END
C
      SUBROUTINE LDFACT (AP, N, INFO)
C
C     AP = L*D*L' without square roots, for a symmetric matrix packed by
C     rows of its lower triangle: element (I, J) is AP(I*(I-1)/2 + J).
C     No pivoting, so the matrix should be definite, positively or
C     negatively.
C
      INTEGER N, INFO
      DOUBLE PRECISION AP(*)
      INTEGER I, J, K, IJ, IR, JR
      DOUBLE PRECISION S, T
C        Position of an element
      INTEGER LOC
      LOC (I, J) = (I*(I - 1))/2 + J
C
      INFO = 0
      DO 40 I = 1, N
         IR = LOC (I, 0)
         DO 20 J = 1, I - 1
            JR = LOC (J, 0)
            S = AP(IR + J)
            DO 10 K = 1, J - 1
               S = S - AP(IR + K)*AP(JR + K)
   10       CONTINUE
C              this is L(I,J)*D(J) as yet
            AP(IR + J) = S
   20    CONTINUE
         S = AP(IR + I)
         DO 30 K = 1, I - 1
            IJ = LOC (K, K)
            T = AP(IR + K)/AP(IJ)
            S = S - T*AP(IR + K)
            AP(IR + K) = T
   30    CONTINUE
         IF (S .EQ. 0.0D0) THEN
            INFO = I
            RETURN
         END IF
         AP(IR + I) = S
   40 CONTINUE
      RETURN
      END
C
      SUBROUTINE LDSOLV (AP, N, B)
C     Solve with the factors of LDFACT; X replaces B.
      INTEGER N, I, J, IR
      DOUBLE PRECISION AP(*), B(N)
      IR = 0
      DO 20 I = 1, N
         DO 10 J = 1, I - 1
   10    B(I) = B(I) - AP(IR + J)*B(J)
         IR = IR + I
   20 CONTINUE
      IR = 0
      DO 30 I = 1, N
         IR = IR + I
         B(I) = B(I)/AP(IR)
   30 CONTINUE
      DO 50 I = N, 1, -1
         IR = IR - I
         DO 40 J = 1, I - 1
            B(J) = B(J) - AP(IR + J)*B(I)
   40    CONTINUE
   50 CONTINUE
      END
C
      SUBROUTINE LDSIGN (AP, N, IPOS, INEG)
C     The inertia: how many pivots are positive, and how many negative.
      INTEGER N, IPOS, INEG
      DOUBLE PRECISION AP(N*(N + 1)/2)
      INTEGER I
      IPOS = 0
      INEG = 0
      DO 40 I = 1, N
         IF (AP(I*(I + 1)/2)) 10, 40, 20
   10    INEG = INEG + 1
         GO TO 40
   20    IPOS = IPOS + 1
   40 CONTINUE
      END
C
      SUBROUTINE GECOND (A, LDA, N, IPIV, ANORM, V, RCOND)
C
C     Estimate the reciprocal condition number in the 1-norm, given the
C     factors and ANORM, the norm of the matrix itself.  The norm of the
C     inverse is looked for by a few steps uphill, each with a solution
C     of both systems; V is a work vector of 2*N elements.
C
      INTEGER LDA, N, IPIV(N)
      DOUBLE PRECISION A(LDA, N), ANORM, V(N, 2), RCOND
      INTEGER I, J, JLAST, ITER
      DOUBLE PRECISION EST, SLOPE, VASUM
      INTEGER VIMAX
      EXTERNAL VASUM, VIMAX
      LOGICAL UPHILL
C
      RCOND = 0.0D0
      IF (ANORM .EQ. 0.0D0) RETURN
      DO 10 I = 1, N
   10 V(I, 1) = 1.0D0/DBLE (N)
      JLAST = 0
      EST = 0.0D0
      DO 40 ITER = 1, 5
         CALL GESOLV (A, LDA, N, IPIV, V(1, 1), 'N', *90)
         EST = MAX (EST, VASUM (N, V(1, 1), 1))
         DO 20 I = 1, N
            V(I, 2) = SIGN (1.0D0, V(I, 1))
   20    CONTINUE
         CALL GESOLV (A, LDA, N, IPIV, V(1, 2), 'Transposed', *90)
         J = VIMAX (N, V(1, 2), 1)
C           The slope along the present vector, a column of the unit
C           matrix but for the first time.
         IF (JLAST .NE. 0) THEN
            SLOPE = V(JLAST, 2)
         ELSE
            SLOPE = 0.0D0
            DO 25 I = 1, N
               SLOPE = SLOPE + V(I, 2)/DBLE (N)
   25       CONTINUE
         END IF
         UPHILL = J .NE. JLAST .AND. ABS (V(J, 2)) .GT. SLOPE
         IF (.NOT. UPHILL) GO TO 50
         JLAST = J
         DO 30 I = 1, N
            V(I, 1) = 0.0D0
   30    CONTINUE
         V(J, 1) = 1.0D0
   40 CONTINUE
   50 RCOND = 1.0D0/(ANORM*EST)
   90 END
