      PROGRAM TDENSE
C
C     EXERCISE THE DENSE SOLVERS ON MATRICES WITH KNOWN SOLUTIONS, AND
C     REPORT HOW FAR FROM THEM THE COMPUTED ONES ARE.
C
      INTEGER NMAX, NBAND
      PARAMETER (NMAX = 24, NBAND = 3*3 + 1)
      DOUBLE PRECISION A(NMAX, NMAX), ACOPY(NMAX, NMAX), B(NMAX),
     1                 X(NMAX), WORK(2*NMAX), ABD(NBAND, NMAX),
     2                 AP(NMAX*(NMAX + 1)/2), DET(2), ANORM, RCOND
      DOUBLE PRECISION XD(NMAX), YD(NMAX), COEF(0:4), RES, WFIT(400)
      INTEGER IPIV(NMAX), INFO, I, J, K, N, IPOS, INEG, NBAD
      INTEGER SIZES(4), IWFIT(0:4)
      CHARACTER*12 NAME(5)
      DOUBLE PRECISION VASUM, ERRMAX, HILBRT, MINIJ, FRANK, LEHMER,
     1                 WILSON
      EXTERNAL VASUM, ERRMAX, HILBRT, MINIJ, FRANK, LEHMER, WILSON
C     Work arrays that are never in use at the same time share storage.
      EQUIVALENCE (ACOPY(1, 1), ABD(1, 1)), (ACOPY(1, 12), AP(1))
      COMMON /TALLY/ NBAD, NTEST
      SAVE /TALLY/
      DATA SIZES /1, 3, 10, 24/
      DATA (NAME(I), I = 1, 5) /'minimum', 'Frank', 'Lehmer',
     1                          'hilly', 'Wilson'/
C
      NTEST = 0
      NBAD = 0
      WRITE (*, 900)
      DO 100 K = 1, 4
         N = SIZES(K)
         CALL TRYLU (MINIJ, NAME(1), A, ACOPY, NMAX, N, B, IPIV, WORK)
         CALL TRYLU (FRANK, NAME(2), A, ACOPY, NMAX, N, B, IPIV, WORK)
         CALL TRYLU (LEHMER, NAME(3), A, ACOPY, NMAX, N, B, IPIV, WORK)
  100 CONTINUE
      CALL TRYLU (HILBRT, NAME(4), A, ACOPY, NMAX, 6, B, IPIV, WORK)
      CALL TRYLU (WILSON, NAME(5), A, ACOPY, NMAX, 4, B, IPIV, WORK)
C
C     A singular matrix must be noticed.
      DO 120 J = 1, 3
         DO 110 I = 1, 3
  110    A(I, J) = DBLE (I)*DBLE (J)
  120 CONTINUE
      CALL GEFACT (A, NMAX, 3, IPIV, INFO)
      B(1) = 1D0
      CALL GESOLV (A, NMAX, 3, IPIV, B, 'N', *130)
      CALL RECORD ('singular', 1D0)
      GO TO 140
  130 CALL RECORD ('singular', 0D0)
C
C     Cholesky and LDL'.
  140 N = 12
      CALL BUILD (LEHMER, A, NMAX, N)
      DO 160 I = 1, N
         B(I) = 0D0
         DO 150 J = 1, N
            B(I) = B(I) + A(I, J)*DBLE (J)
  150    CONTINUE
         X(I) = B(I)
         DO 160 J = 1, I
            AP(I*(I - 1)/2 + J) = A(I, J)
  160 CONTINUE
      CALL CHFACT (A, NMAX, N, INFO)
      IF (INFO .NE. 0) STOP 'Cholesky failed'
      CALL CHSOLV (A, NMAX, N, B, NMAX, 1)
      CALL RECORD ('Cholesky', ERRMAX (B, N))
      CALL LDFACT (AP, N, INFO)
      IF (INFO .NE. 0) STOP 17
      CALL LDSOLV (AP, N, X)
      CALL RECORD ('LDL', ERRMAX (X, N))
      CALL LDSIGN (AP, N, IPOS, INEG)
      CALL RECORD ('inertia', DBLE (N - IPOS + INEG))
C
C     A band matrix with two diagonals below and one above, stored with
C     its largest elements on the diagonal or below.
      N = 20
      DO 200 J = 1, N
         DO 190 I = MAX (1, J - 1), MIN (N, J + 2)
            ABD(4 + I - J, J) = 1D0/DBLE (1 + ABS (I - J))
            IF (I .EQ. J + MOD (J, 3)) ABD(4 + I - J, J) = 4D0
  190    CONTINUE
  200 X(J) = DBLE (J)
      CALL BDMULT (ABD, NBAND, N, 2, 1, X, B)
      CALL BDFACT (ABD, NBAND, N, 2, 1, IPIV, INFO)
      CALL BDSOLV (ABD, NBAND, N, 2, 1, IPIV, B)
      CALL RECORD ('band', ERRMAX (B, N))
      CALL TRYTRI (N, B, WORK, ACOPY)
C
C     Least squares: points of a quartic without noise, then a rank
C     deficient set of columns.
      DO 220 I = 1, NMAX
         XD(I) = (I - 12)/6D0
         YD(I) = (((5*XD(I) + 4)*XD(I) + 3)*XD(I) + 2)*XD(I) + 1
  220 CONTINUE
      CALL POLFIT (NMAX, XD, YD, 4, COEF, RES, WFIT, IWFIT)
      CALL RECORD ('quartic', ERRMAX (COEF, 5))
      CALL RECORD ('residual', RES)
      DO 240 I = 1, 8
         A(I, 1) = 1D0
         A(I, 2) = DBLE (I)
         A(I, 3) = A(I, 1) + 2*A(I, 2)
  240 CONTINUE
      CALL QRFACT (A, NMAX, 8, 3, X, IPIV, WORK, 1D-10, I)
      CALL RECORD ('rank', DBLE (I - 2))
C
C     Condition of a matrix known to be bad.
      CALL BUILD (HILBRT, A, NMAX, 5)
      ANORM = 0D0
      DO 260 J = 1, 5
  260 ANORM = MAX (ANORM, VASUM (5, A(1, J), 1))
      CALL GEFACT (A, NMAX, 5, IPIV, INFO)
      CALL GECOND (A, NMAX, 5, IPIV, ANORM, WORK, RCOND)
      WRITE (*, 920) 'Condition of Hilbert 5:', 1D0/RCOND
      CALL GEDET (A, NMAX, 5, IPIV, DET)
      WRITE (*, 930) 'Its determinant:', DET(1), INT (DET(2))
      CALL GEINV (A, NMAX, 5, IPIV, WORK)
      WRITE (*, 940) ((A(I, J), J = 1, 5), I = 1, 5)
      WRITE (*, 990) NTEST, NBAD
  900 FORMAT (1X, 'Dense solvers', /, 1X, 13('='), //,
     1        1X, 'Test', T18, 'N', T24, 'Error', /)
  920 FORMAT (/1X, A, 1PE12.4)
  930 FORMAT (1X, A, F8.5, ' E', SP, I4.3, SS)
  940 FORMAT (' Its inverse:' / (1X, 5F12.2))
  990 FORMAT (/, 1X, I3, ' tests,', I3, ' failures')
      END
C
      DOUBLE PRECISION FUNCTION ERRMAX (X, N)
C     The solutions of all the tests are 1, 2, 3, ...
      INTEGER N, I
      DOUBLE PRECISION X(N)
      ERRMAX = 0D0
      DO 10 I = 1, N
   10 ERRMAX = MAX (ERRMAX, ABS (X(I) - I))
      END
C
      SUBROUTINE RECORD (NAME, ERR)
C     Count a test, and report it; RECORN, for one with an order.
      CHARACTER*(*) NAME
      DOUBLE PRECISION ERR, TOL
      INTEGER NBAD, NTEST, N
      CHARACTER*4 MARK
      COMMON /TALLY/ NBAD, NTEST
      PARAMETER (TOL = 1D-8)
      INTEGER LAST
      SAVE LAST
      DATA LAST /0/
      LAST = 0
      GO TO 10
      ENTRY RECORN (NAME, N, ERR)
      LAST = N
   10 NTEST = NTEST + 1
      MARK = ' '
      IF (ERR .GT. TOL) THEN
         NBAD = NBAD + 1
         MARK = '<---'
      END IF
      IF (LAST .NE. 0) THEN
         WRITE (*, 20) NAME, LAST, ERR .LE. TOL, MARK
      ELSE
         WRITE (*, 30) NAME, ERR .LE. TOL, MARK
      END IF
   20 FORMAT (1X, A, T16, I3, 4X, L1, 1X, A)
   30 FORMAT (1X, A, T23, L1, 1X, A)
      END
C
      SUBROUTINE BUILD (ELEM, A, LDA, N)
      INTEGER LDA, N, I, J
      DOUBLE PRECISION ELEM, A(LDA, *)
      DO 10 J = 1, N
         DO 10 I = 1, N
            A(I, J) = ELEM (I, J, N)
   10 CONTINUE
      END
C
      SUBROUTINE TRYLU (ELEM, NAME, A, ACOPY, LDA, N, B, IPIV, WORK)
C     Solve both systems with one matrix, then multiply by its inverse.
      EXTERNAL ELEM
      DOUBLE PRECISION ELEM
      CHARACTER NAME*(*)
      INTEGER LDA, N, IPIV(*), I, J, K, INFO
      DOUBLE PRECISION A(LDA, *), ACOPY(LDA, *), B(*), WORK(*), S, ERR
      DOUBLE PRECISION VDOT, ERRMAX
      CALL BUILD (ELEM, A, LDA, N)
      CALL BUILD (ELEM, ACOPY, LDA, N)
      CALL GEFACT (A, LDA, N, IPIV, INFO)
      IF (INFO .NE. 0) THEN
         CALL RECORN (NAME, N, 1D0)
         RETURN
      END IF
      DO 10 I = 1, N
         WORK(I) = DBLE (I)
   10 CONTINUE
      DO 20 I = 1, N
   20 B(I) = VDOT (N, ACOPY(I, 1), LDA, WORK, 1)
      CALL GESOLV (A, LDA, N, IPIV, B, 'N', *60)
      ERR = ERRMAX (B, N)
      DO 30 I = 1, N
   30 B(I) = VDOT (N, ACOPY(1, I), 1, WORK, 1)
      CALL GESOLV (A, LDA, N, IPIV, B, 't', *60)
      ERR = MAX (ERR, ERRMAX (B, N))
      CALL GEINV (A, LDA, N, IPIV, WORK)
      DO 50 J = 1, N
         DO 50 I = 1, N
            S = 0D0
            DO 40 K = 1, N
               S = S + A(I, K)*ACOPY(K, J)
   40       CONTINUE
            IF (I .EQ. J) S = S - 1D0
            ERR = MAX (ERR, ABS (S)/10)
   50 CONTINUE
      CALL RECORN (NAME, N, ERR)
      RETURN
   60 CALL RECORN (NAME, N, 2D0)
      END
C
      SUBROUTINE TRYTRI (N, B, D, T)
C     A tridiagonal system, and one with corners.
      INTEGER N, I
      DOUBLE PRECISION B(N), D(N), T(N, 4), ERRMAX
      DO 10 I = 1, N
         T(I, 1) = -1D0
         T(I, 2) = -0.5D0
         D(I) = 4D0
         B(I) = 4*I - (I - 1) - (I + 1)/2D0
   10 CONTINUE
      B(N) = 4*N - (N - 1)
      CALL TRIDI (T(1, 1), D, T(1, 2), B, N, *40)
      CALL RECORN ('tridiagonal', N, ERRMAX (B, N))
      DO 20 I = 1, N
         D(I) = 4D0
         B(I) = 4*I - (I - 1) - (I + 1)/2D0
   20 CONTINUE
      B(1) = 4D0 - N - 1D0
      B(N) = 4*N - (N - 1) - 0.5D0
      CALL CYCTRI (T(1, 1), D, T(1, 2), B, N, T(1, 3), *40)
      CALL RECORN ('cyclic', N, ERRMAX (B, N))
      RETURN
   40 STOP 'zero pivot'
      END
C
      DOUBLE PRECISION FUNCTION MINIJ (I, J, N)
C     The elements of the matrices, one entry point for each.
      INTEGER I, J, N
      DOUBLE PRECISION FRANK, LEHMER, HILBRT, WILSON
      INTEGER W(4, 4)
      SAVE W
      DATA W /10, 7, 8, 7, 7, 5, 6, 5, 8, 6, 10, 9, 7, 5, 9, 10/
      MINIJ = DBLE (MIN (I, J))
      RETURN
      ENTRY FRANK (I, J, N)
      IF (J .LT. I - 1) THEN
         FRANK = 0D0
      ELSE IF (J .EQ. I - 1) THEN
         FRANK = DBLE (N - J)
      ELSE
         FRANK = DBLE (N + 1 - J)
      END IF
C     (of the usual matrix only a mild form is wanted)
      IF (I .EQ. J) FRANK = FRANK + N
      RETURN
      ENTRY LEHMER (I, J, N)
      LEHMER = DBLE (MIN (I, J))/DBLE (MAX (I, J))
      RETURN
      ENTRY HILBRT (I, J, N)
      HILBRT = 1D0/DBLE (I + J - 1)
      RETURN
      ENTRY WILSON (I, J, N)
      WILSON = W(I, J)
      END
