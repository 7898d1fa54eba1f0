C     THE PRINTED RESULTS.
C
      SUBROUTINE PAGE (WHAT)
C     A NEW PAGE WITH A HEADING.  THE OTHER ENTRY, LINE, COUNTS LINES,
C     AND TURNS THE PAGE WHEN IT IS FULL.
      CHARACTER*(*) WHAT
      INCLUDE 'model.inc'
      INTEGER MXLINE, N
      PARAMETER (MXLINE = 40)
      CHARACTER*40 LAST
      SAVE LAST
      DATA LAST /' '/
      LAST = WHAT
   10 NPAGE = NPAGE + 1
      LINES = 4
      WRITE (LPR, 20) TITLE, NPAGE, LAST
   20 FORMAT (/1X, A, T62, 'PAGE', I3, //, 1X, A)
      RETURN
      ENTRY LINE (N)
      LINES = LINES + N
      IF (LINES .GT. MXLINE) GO TO 10
      END
C
      SUBROUTINE OUTLIN
      INCLUDE 'model.inc'
      INTEGER J, K, N
      CHARACTER*5 KINDS(2)
      CHARACTER*1 FREE(0:1)
      DATA KINDS /'BEAM', 'BAR'/, FREE /'*', '-'/
      IF (.NOT. PRTIN) RETURN
      CALL PAGE ('THE STRUCTURE')
      WRITE (LPR, 100) UNITS(1), UNITS(1)
      DO 10 J = 1, NJNT
         CALL LINE (1)
         WRITE (LPR, 110) J, X(J), Y(J),
     1                    (FREE(MIN (IEQ(K, J), 1)), K = 1, 3)
   10 CONTINUE
      WRITE (LPR, 120)
      DO 20 N = 1, NMEM
         CALL LINE (1)
         WRITE (LPR, 130) N, KINDS(KIND(N)), JEND(1, N), JEND(2, N),
     1                    EMOD(MAT(N)), AREA(MAT(N)), FLEX(MAT(N))
   20 CONTINUE
  100 FORMAT (/' JOINT', T13, 'X ', A6, T25, 'Y ', A6, T36, 'HELD')
  110 FORMAT (1X, I5, 2F12.3, 5X, 3A1)
  120 FORMAT (/' MEMBER KIND   FROM TO       E          A          I')
  130 FORMAT (1X, I6, 1X, A5, 2I5, 3(1PE11.3))
      END
C
      SUBROUTINE OUTDIS (NC)
C     DISPLACEMENTS OF ONE CASE.
      INCLUDE 'model.inc'
      INTEGER NC, J, K
      DOUBLE PRECISION D(3), WORST(3)
      INTEGER JWORST(3)
      CHARACTER*40 HEAD
      WRITE (HEAD, '(''DISPLACEMENTS, CASE'', I3)') NC
      CALL PAGE (HEAD)
      WRITE (LPR, 100) UNITS(1), UNITS(1)
      DO 10 K = 1, 3
         WORST(K) = 0D0
         JWORST(K) = 1
   10 CONTINUE
      DO 30 J = 1, NJNT
         DO 20 K = 1, 3
            D(K) = 0D0
            IF (IEQ(K, J) .GT. 0) D(K) = DISP(IEQ(K, J), NC)
            IF (ABS (D(K)) .GT. ABS (WORST(K))) THEN
               WORST(K) = D(K)
               JWORST(K) = J
            END IF
   20    CONTINUE
         CALL LINE (1)
         WRITE (LPR, 110) J, D
   30 CONTINUE
      WRITE (LPR, 120) (WORST(K), JWORST(K), K = 1, 3)
  100 FORMAT (/' JOINT', T12, 'X (', A2, ')', T26, 'Y (', A2, ')', T39,
     1        'ROTATION'/)
  110 FORMAT (1X, I5, 3F14.6)
  120 FORMAT (/' LARGEST', 3(F12.6, ' (', I2, ')', :, ','))
      END
C
      SUBROUTINE OUTFOR (NC)
C     FORCES OF THE MEMBERS, AND WHAT THE SUPPORTS GIVE.
      INCLUDE 'model.inc'
      INTEGER NC, I, J, K, N, LOC(6)
      DOUBLE PRECISION EK(6, 6), C, S, SPAN, D(6), F(6), REACT(3, MXJNT)
      DOUBLE PRECISION TOTAL(3), T
      CHARACTER*40 HEAD
      WRITE (HEAD, '(A, I3)') 'FORCES, CASE', NC
      CALL PAGE (HEAD)
      WRITE (LPR, 100) UNITS(2), UNITS(2), UNITS(3), UNITS(3)
      DO 10 J = 1, NJNT
         DO 10 K = 1, 3
   10 REACT(K, J) = 0D0
      DO 60 N = 1, NMEM
         CALL PLACES (N, LOC, C, S, SPAN)
         DO 20 K = 1, 6
            D(K) = 0D0
            IF (LOC(K) .GT. 0) D(K) = DISP(LOC(K), NC)
   20    CONTINUE
         DO 30 K = 1, 4, 3
            T = D(K)
            D(K) = C*T + S*D(K + 1)
            D(K + 1) = C*D(K + 1) - S*T
   30    CONTINUE
         CALL LOCAL (N, SPAN, EK)
         DO 40 I = 1, 6
            F(I) = 0D0
            DO 40 K = 1, 6
               F(I) = F(I) + EK(I, K)*D(K)
   40    CONTINUE
         CALL LINE (1)
         IF (KIND(N) .EQ. 1) THEN
            WRITE (LPR, 110) N, F(4), F(5), -F(3), F(6)
         ELSE
            WRITE (LPR, 110) N, F(4)
         END IF
         DO 50 I = 1, 2
            J = JEND(I, N)
            K = 3*I - 2
            REACT(1, J) = REACT(1, J) + C*F(K) - S*F(K + 1)
            REACT(2, J) = REACT(2, J) + S*F(K) + C*F(K + 1)
            REACT(3, J) = REACT(3, J) + F(K + 2)
   50    CONTINUE
   60 CONTINUE
      DO 70 K = 1, 3
   70 TOTAL(K) = 0D0
      WRITE (LPR, 120)
      DO 90 J = 1, NJNT
         IF (IEQ(1, J)*IEQ(2, J) .NE. 0) GO TO 90
         DO 80 K = 1, 3
            IF (IEQ(K, J) .NE. 0) REACT(K, J) = 0D0
            IF (ABS (REACT(K, J)) .LT. 1D-9) REACT(K, J) = 0D0
            TOTAL(K) = TOTAL(K) + REACT(K, J)
   80    CONTINUE
         CALL LINE (1)
         WRITE (LPR, 130) J, (REACT(K, J), K = 1, 3)
   90 CONTINUE
      WRITE (LPR, 140) TOTAL(1), TOTAL(2)
  100 FORMAT (/' MEMBER', T12, 'AXIAL ', A3, T24, 'SHEAR ', A3, T36,
     1        'START ', A4, T48, 'END ', A4)
  110 FORMAT (1X, I6, 4F12.3)
  120 FORMAT (/' SUPPORT      X           Y           MOMENT')
  130 FORMAT (1X, I6, 3F12.3)
  140 FORMAT (1X, 'TOTAL ', 2F12.3)
      END
