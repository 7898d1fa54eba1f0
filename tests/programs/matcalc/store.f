C        The store: matrices are put one behind the other, and gaps are
C        closed when room is short.
C
      SUBROUTINE EMPTY
      INCLUDE 'store.inc'
      NNAMES = 0
      NUSED = 0
      NMOVES = 0
      END

      INTEGER FUNCTION LOOKUP (NAME)
C        The number of a matrix, 0 if there is none of the name.
      CHARACTER*(*) NAME
      INCLUDE 'store.inc'
      DO 10 LOOKUP = NNAMES, 1, -1
         IF (NAMES(LOOKUP) .EQ. NAME .AND. NROWS(LOOKUP) .GT. 0) RETURN
   10 CONTINUE
      LOOKUP = 0
      END

      INTEGER FUNCTION NEWMAT (NAME, M, N)
C        Room for a matrix, behind all others; an old one with the same
C        name is given up.  0 if there is no room.
      CHARACTER*(*) NAME
      INTEGER M, N, I, LOOKUP
      EXTERNAL LOOKUP
      INCLUDE 'store.inc'
      NEWMAT = 0
      IF (M*N + NUSED .GT. MAXSTO) RETURN
      IF (NNAMES .GE. MAXNAM) RETURN
      I = LOOKUP (NAME)
      IF (I .GT. 0) NROWS(I) = -NROWS(I)
      NNAMES = NNAMES + 1
      NAMES(NNAMES) = NAME
      NROWS(NNAMES) = M
      NCOLS(NNAMES) = N
      IPLACE(NNAMES) = NUSED
      NUSED = NUSED + M*N
      NEWMAT = NNAMES
      END

      SUBROUTINE NAMING (I, NAME)
C        Give matrix I its final name, and an old one of that name up.
      INTEGER I, J, LOOKUP
      CHARACTER*(*) NAME
      INCLUDE 'store.inc'
      J = LOOKUP (NAME)
      IF (J .GT. 0) NROWS(J) = -NROWS(J)
      NAMES(I) = NAME
      END

      SUBROUTINE PACK
C        Close the gaps of matrices that were given up.
      INCLUDE 'store.inc'
      INTEGER I, K, NEW, NPLACE
      NEW = 0
      NPLACE = 0
      DO 20 I = 1, NNAMES
         IF (NROWS(I) .LE. 0) GO TO 20
         NEW = NEW + 1
         NAMES(NEW) = NAMES(I)
         NROWS(NEW) = NROWS(I)
         NCOLS(NEW) = NCOLS(I)
         IF (NPLACE .NE. IPLACE(I)) NMOVES = NMOVES + 1
         DO 10 K = 1, NROWS(I)*NCOLS(I)
            STORE(NPLACE + K) = STORE(IPLACE(I) + K)
   10    CONTINUE
         IPLACE(NEW) = NPLACE
         NPLACE = NPLACE + NROWS(NEW)*NCOLS(NEW)
   20 CONTINUE
      NNAMES = NEW
      NUSED = NPLACE
      END

      SUBROUTINE LIST
      INCLUDE 'store.inc'
      INTEGER I, J
      CHARACTER*9 SHAPE
      WRITE (*, 10) NUSED, NMOVES
      DO 5 I = 1, NNAMES
         J = NROWS(I)
         IF (J .LE. 0) GO TO 5
         WRITE (SHAPE, '(I3, '' X'', I3)') J, NCOLS(I)
         WRITE (*, 20) NAMES(I), SHAPE, IPLACE(I)
    5 CONTINUE
   10 FORMAT (4X, I4, ' numbers in store,', I3, ' moves')
   20 FORMAT (4X, A, A, ' at', I5)
      END

      SUBROUTINE SHOW (N)
      INTEGER N, I, J
      INCLUDE 'store.inc'
      DOUBLE PRECISION ELEM
      ELEM (I, J) = STORE(IPLACE(N) + (J - 1)*NROWS(N) + I)
      DO 10 I = 1, NROWS(N)
         WRITE (*, 20) (ELEM (I, J), J = 1, NCOLS(N))
   10 CONTINUE
   20 FORMAT (4X, 6F10.4)
      END

      SUBROUTINE TIMES (A, B, C, L, M, N)
      INTEGER L, M, N, I, J, K
      DOUBLE PRECISION A(L, M), B(M, N), C(L, N)
      DO 10 J = 1, N
      DO 10 I = 1, L
      C(I, J) = 0
      DO 10 K = 1, M
   10 C(I, J) = C(I, J) + A(I, K)*B(K, J)
      END

      SUBROUTINE COPY (A, B, N)
      INTEGER N, I
      DOUBLE PRECISION A(N), B(N)
      DO 10 I = 1, N
   10 B(I) = A(I)
      END

      SUBROUTINE GAUSS (A, N, B, NB, *)
C        Elimination with total pivoting.
      INTEGER N, NB, I, J, K, IP, JP, MAXN
      PARAMETER (MAXN = 50)
      INTEGER IORD(MAXN)
      DOUBLE PRECISION A(N, N), B(N, NB), X(MAXN), T, TINY
      PARAMETER (TINY = 1D-12)
      DO 5 J = 1, N
    5 IORD(J) = J
      DO 60 K = 1, N
         IP = K
         JP = K
         DO 10 J = K, N
            DO 10 I = K, N
               IF (ABS (A(I, J)) .GT. ABS (A(IP, JP))) THEN
                  IP = I
                  JP = J
               END IF
   10    CONTINUE
         IF (ABS (A(IP, JP)) .LT. TINY) RETURN 1
         DO 20 J = 1, N
            T = A(K, J)
            A(K, J) = A(IP, J)
            A(IP, J) = T
   20    CONTINUE
         DO 25 J = 1, NB
            T = B(K, J)
            B(K, J) = B(IP, J)
            B(IP, J) = T
   25    CONTINUE
         DO 30 I = 1, N
            T = A(I, K)
            A(I, K) = A(I, JP)
            A(I, JP) = T
   30    CONTINUE
         I = IORD(K)
         IORD(K) = IORD(JP)
         IORD(JP) = I
         DO 50 I = K + 1, N
            T = A(I, K)/A(K, K)
            IF (T .EQ. 0D0) GO TO 50
            DO 40 J = K, N
   40       A(I, J) = A(I, J) - T*A(K, J)
            DO 45 J = 1, NB
   45       B(I, J) = B(I, J) - T*B(K, J)
   50    CONTINUE
   60 CONTINUE
C        Back substitution, then the unknowns to their places.
      DO 100 J = 1, NB
         DO 80 I = N, 1, -1
            DO 70 K = I + 1, N
               B(I, J) = B(I, J) - A(I, K)*B(K, J)
   70       CONTINUE
            B(I, J) = B(I, J)/A(I, I)
   80    CONTINUE
         DO 90 I = 1, N
            X(IORD(I)) = B(I, J)
   90    CONTINUE
         DO 95 I = 1, N
   95    B(I, J) = X(I)
  100 CONTINUE
      END

      DOUBLE PRECISION FUNCTION DETERM (A, N)
C        The determinant by elimination with one division at the end of
C        each step, on a copy of the matrix.
      INTEGER N, MAXN, I, J, K, LOC
      PARAMETER (MAXN = 20)
      DOUBLE PRECISION A(N*N), W(0:MAXN**2), PRIOR, T
      SAVE W
      LOC (I, J) = (J - 1)*N + I
      DETERM = 0D0
      IF (N .GT. MAXN) RETURN
      CALL COPY (A, W(1), N*N)
      W(0) = 1D0
      PRIOR = 1D0
      DO 50 K = 1, N - 1
         DO 10 I = K, N
            IF (W(LOC (I, K)) .NE. 0D0) GO TO 20
   10    CONTINUE
         RETURN
   20    IF (I .NE. K) THEN
C              an exchange of rows changes the sign
            DO 30 J = 1, N
               T = W(LOC (I, J))
               W(LOC (I, J)) = -W(LOC (K, J))
               W(LOC (K, J)) = T
   30       CONTINUE
         END IF
         DO 40 J = K + 1, N
            DO 40 I = K + 1, N
               W(LOC (I, J)) = (W(LOC (I, J))*W(LOC (K, K)) -
     *                          W(LOC (I, K))*W(LOC (K, J)))/PRIOR
   40    CONTINUE
         PRIOR = W(LOC (K, K))
   50 CONTINUE
      DETERM = W(LOC (N, N))
      END
