C     READING OF CARDS.  EACH ROUTINE TAKES ONE CARD, AND THE ALTERNATE
C     RETURN IF IT IS NOT GOOD.
C
      SUBROUTINE RDMAT (CARD, *)
      CHARACTER*80 CARD
      INCLUDE 'model.inc'
      INTEGER N
      REAL E, A, F
      READ (CARD, 10, ERR=90) N, E, A, F
   10 FORMAT (10X, I10, 3E10.0)
      IF (N .LT. 1 .OR. N .GT. MXMAT) RETURN 1
      IF (E .LE. 0. .OR. A .LE. 0.) RETURN 1
      EMOD(N) = DBLE (E)
      AREA(N) = DBLE (A)
      FLEX(N) = DBLE (F)
      NMAT = MAX0 (NMAT, N)
      RETURN
   90 RETURN 1
      END
C
      SUBROUTINE RDJNT (CARD, *)
      CHARACTER*80 CARD
      INCLUDE 'model.inc'
      INTEGER N
      DOUBLE PRECISION XN, YN
      READ (CARD, '(10X, BZ, I10, BN, 2F10.0)', ERR=90) N, XN, YN
C     (BLANKS IN THE NUMBER WOULD BE ZEROS: IT IS WRITTEN RIGHTMOST)
      IF (N .LT. 1 .OR. N .GT. MXJNT) RETURN 1
      X(N) = XN
      Y(N) = YN
      NJNT = MAX (N, NJNT)
      RETURN
   90 RETURN 1
      END
C
      SUBROUTINE RDHOLD (CARD, *)
      CHARACTER CARD*80, CODE*3
      INCLUDE 'model.inc'
      INTEGER N, K, L
      READ (CARD, '(10X, I10, 7X, A3)', ERR=90) N, CODE
      IF (N .LT. 1 .OR. N .GT. NJNT) RETURN 1
      DO 10 K = 1, 3
         L = INDEX ('01', CODE(K:K))
         IF (L .EQ. 0) GO TO 90
         IF (L .EQ. 2) IEQ(K, N) = 0
   10 CONTINUE
      RETURN
   90 RETURN 1
      END
C
      SUBROUTINE RDMEM (CARD, ITYPE, *)
C     ITYPE = 1: BEAM; 2: BAR
      CHARACTER*80 CARD
      INTEGER ITYPE
      INCLUDE 'model.inc'
      INTEGER N, F(4), I
      EQUIVALENCE (N, F(1))
      LOGICAL BAD
      INTEGER LOW, HIGH
      BAD (I, LOW, HIGH) = F(I) .LT. LOW .OR. F(I) .GT. HIGH
      READ (CARD, '(10X, 4I10)', ERR=90) F
      IF (BAD (1, 1, MXMEM) .OR. BAD (2, 1, NJNT) .OR. BAD (3, 1, NJNT)
     1    .OR. BAD (4, 1, NMAT)) RETURN 1
      IF (F(2) .EQ. F(3)) RETURN 1
      JEND(1, N) = F(2)
      JEND(2, N) = F(3)
      MAT(N) = F(4)
      KIND(N) = ITYPE
      NMEM = MAX (NMEM, N)
      RETURN
   90 RETURN 1
      END
C
      SUBROUTINE RDLOAD (CARD, *)
C     LOADS ARE KEPT BY JOINTS UNTIL THE EQUATIONS HAVE NUMBERS.
      CHARACTER*80 CARD
      INCLUDE 'model.inc'
      INTEGER NC, N, K
      DOUBLE PRECISION P(3)
      READ (CARD, '(10X, 2I10, 3F10.0)', ERR=90) NC, N, P
      IF (NC .LT. 1 .OR. NC .GT. MXCASE) RETURN 1
      IF (N .LT. 1 .OR. N .GT. NJNT) RETURN 1
      DO 10 K = 1, 3
   10 DISP(3*(N - 1) + K, NC) = DISP(3*(N - 1) + K, NC) + P(K)
      NCASE = MAX (NCASE, NC)
      RETURN
   90 RETURN 1
      END
C
      SUBROUTINE EXMPLS (LUN)
C     THE EXAMPLES: A CANTILEVER, A PORTAL, A TRUSS, ONE THAT MOVES, AND
C     ONE WITH MISTAKES.
      INTEGER LUN, I, J, K
      DOUBLE PRECISION H
      WRITE (LUN, 10) 'TITLE', 'CANTILEVER OF FOUR PARTS'
      WRITE (LUN, 20) 'MATERIAL', 1, 2.1E8, 0.01, 1.0E-4
      WRITE (LUN, 30) ('JOINT', I, 0.5D0*(I - 1), 0D0, I = 1, 5)
      WRITE (LUN, 40) 'HOLD', 1, '111'
      WRITE (LUN, 50) ('BEAM', I, I, I + 1, 1, I = 1, 4)
      WRITE (LUN, 60) 'LOAD', 1, 5, 0.0, -10.0, 0.0
      WRITE (LUN, 60) 'LOAD', 2, 5, 100.0, 0.0, 0.0
      WRITE (LUN, 70) 'PRINT', 'ALL'
      WRITE (LUN, 70) 'SOLVE'
C
      WRITE (LUN, 10) 'TITLE', 'PORTAL WITH A SIDE LOAD'
      WRITE (LUN, 10) 'UNITS', 'CM        KP        KPCM'
      WRITE (LUN, 20) 'MATERIAL', 1, 2.1E6, 50., 4.0E3, 'MATERIAL', 2,
     1                2.1E6, 80., 12.0E3
      WRITE (LUN, 30) 'JOINT', 1, 0D0, 0D0, 'JOINT', 2, 0D0, 4D2,
     1                'JOINT', 3, 6D2, 4D2, 'JOINT', 4, 6D2, 0D0
      WRITE (LUN, 40) 'HOLD', 1, '111', 'HOLD', 4, '110'
      WRITE (LUN, 50) 'BEAM', 1, 1, 2, 1, 'BEAM', 2, 2, 3, 2,
     1                'BEAM', 3, 4, 3, 1
      WRITE (LUN, 60) 'LOAD', 1, 2, 1000., 0., 0.
      WRITE (LUN, 70) 'PRINT', 'DISP FORCES'
      WRITE (LUN, 70) 'SOLVE'
C
C     A TRUSS OF SIX PANELS.
      WRITE (LUN, 10) 'TITLE', 'TRUSS'
      WRITE (LUN, 10) 'UNITS', 'M         KN        KNM'
      WRITE (LUN, 20) 'MATERIAL', 1, 2.0E8, 2E-3, 0.
      K = 0
      DO 100 I = 0, 6
         DO 90 J = 0, 1
            K = K + 1
            H = 2D0*J
            WRITE (LUN, 30) 'JOINT', K, 2D0*I, H
            WRITE (LUN, 40) 'HOLD', K, '001'
   90    CONTINUE
  100 CONTINUE
      WRITE (LUN, 40) 'HOLD', 1, '110', 'HOLD', 13, '010'
      K = 0
      DO 110 I = 1, 11, 2
         WRITE (LUN, 50) 'BAR', K + 1, I, I + 2, 1, 'BAR', K + 2,
     1      I + 1, I + 3, 1, 'BAR', K + 3, I, I + 1, 1
         IF (I .LT. 6) THEN
            WRITE (LUN, 50) 'BAR', K + 4, I + 1, I + 2, 1
         ELSE
            WRITE (LUN, 50) 'BAR', K + 4, I, I + 3, 1
         ENDIF
         K = K + 4
  110 CONTINUE
      WRITE (LUN, 50) 'BAR', K + 1, 13, 14, 1
      DO 120 I = 3, 11, 2
  120 WRITE (LUN, 60) 'LOAD', 1, I, 0., -20., 0.
      WRITE (LUN, 70) 'PRINT', 'FORCES'
      WRITE (LUN, 70) 'SOLVE'
C
      WRITE (LUN, 10) 'TITLE', 'MECHANISM'
      WRITE (LUN, 20) 'MATERIAL', 1, 2.0E8, 2E-3, 0.
      WRITE (LUN, 30) ('JOINT', I, DBLE (I), 0D0, I = 1, 2)
      WRITE (LUN, 40) 'HOLD', 1, '110'
      WRITE (LUN, 50) 'BAR', 1, 1, 2, 1
      WRITE (LUN, 60) 'LOAD', 1, 2, 1., 1., 0.
      WRITE (LUN, 70) 'SOLVE'
      WRITE (LUN, 70) 'JIONT'
      WRITE (LUN, 50) 'BEAM', 1, 7, 8, 9
      WRITE (LUN, 70) 'SOLVE'
      WRITE (LUN, 70) 'END'
   10 FORMAT (A, T11, A)
   20 FORMAT (A, T11, I10, 1P, 3E10.3)
   30 FORMAT (A, T11, I10, 2F10.3)
   40 FORMAT (A, T11, I10, 7X, A3)
   50 FORMAT (A, T11, 4I10)
   60 FORMAT (A, T11, 2I10, 3F10.2)
   70 FORMAT (A, T11, A)
      END
