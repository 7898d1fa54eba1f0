C     SURVEY - tabulates questionnaires.
C
C     A card holds the number of the respondent and the answers to NQ
C     questions, one digit each, blank where there is none.  The program
C     checks the cards, counts the answers, crosses any two questions,
C     computes chi square, and draws histograms.
C
      PROGRAM SURVEY
      INTEGER MAXR, NQ, MAXA
      PARAMETER (MAXR = 500, NQ = 6, MAXA = 5)
      INTEGER NRESP
      INTEGER ANS(NQ, MAXR), IDENT(MAXR), CODES(NQ), NBAD(3), I, J
      LOGICAL REJECT(MAXR)
      CHARACTER TITLE(NQ)*16, ANSWER(MAXA, NQ)*10
      COMMON /RAW/ NRESP, ANS, IDENT, REJECT
      COMMON /CODING/ CODES
      COMMON /CODNAM/ TITLE, ANSWER
      LOGICAL YOUNG, TOWN, WANTED
      EXTERNAL CODBK
      INTEGER LU
      DATA LU /15/, NBAD /3*0/
C     conditions on a respondent, as statement functions
      YOUNG(I) = ANS(2, I) .EQ. 1 .OR. ANS(2, I) .EQ. 2
      TOWN(I) = ANS(3, I) .EQ. 1
      WANTED(I) = .NOT. REJECT(I) .AND. (YOUNG(I) .NEQV. TOWN(I))
C
      OPEN (UNIT = LU, STATUS = 'SCRATCH', FORM = 'FORMATTED')
      CALL DATGEN (LU, 120)
      CALL INPUT (LU, NBAD, *800)
      WRITE (*, 10) NRESP, NBAD
   10 FORMAT ('1SURVEY OF', I5, ' RESPONDENTS' / ' CARDS REFUSED:',
     1   I3, ' NOT A CARD', I3, ' TWICE', I3, ' BAD ANSWER')
      DO 20 J = 1, NQ
         CALL MARGIN (J)
   20 CONTINUE
      CALL CROSS (1, 4)
      CALL CROSS (2, 5)
      I = 0
      DO 30 J = 1, NRESP
         IF (WANTED(J)) I = I + 1
   30 CONTINUE
      WRITE (*, '(''0EITHER YOUNG OR FROM TOWN:'', I5)') I
      CLOSE (LU)
      STOP
  800 WRITE (*, *) 'TOO MANY RESPONDENTS, MOST IS ', MAXR
      END
C
      BLOCK DATA CODBK
C     the code book
      INTEGER NQ, MAXA
      PARAMETER (NQ = 6, MAXA = 5)
      INTEGER CODES(NQ)
      CHARACTER TITLE(NQ)*16, ANSWER(MAXA, NQ)*10
      COMMON /CODING/ CODES
      COMMON /CODNAM/ TITLE, ANSWER
      INTEGER K, L
      DATA CODES /2, 5, 3, 4, 5, 2/
      DATA TITLE /'SEX', 'AGE GROUP', 'HOME', 'READS PAPERS',
     1            'SATISFACTION', 'WOULD ANSWER'/
      DATA (ANSWER(K, 1), K = 1, 2) /'MALE', 'FEMALE'/,
     1     (ANSWER(K, 2), K = 1, 5) /'TO 20', '21-35', '36-50', '51-65',
     2                               'OVER 65'/,
     3     (ANSWER(K, 3), K = 1, 3) /'TOWN', 'SUBURB', 'COUNTRY'/,
     4     (ANSWER(K, 4), K = 1, 4) /'DAILY', 'WEEKLY', 'SELDOM',
     5                               'NEVER'/,
     6     (ANSWER(K, 5), K = 1, 5) /'VERY LOW', 'LOW', 'MIDDLING',
     7                               'HIGH', 'VERY HIGH'/
      DATA (ANSWER(K, 6), K = 1, 2) /'YES', 'NO'/
      DATA (ANSWER(K, 1), K = 3, 5) /3*' '/, (ANSWER(K, 3), K = 4, 5)
     1     /2*' '/, ANSWER(5, 4) /' '/
      DATA ((ANSWER(K, L), K = 3, 5), L = 6, 6) /3*'-'/
      END
C
      SUBROUTINE INPUT (LU, NBAD, *)
      INTEGER LU, NBAD(3), MAXR, NQ
      PARAMETER (MAXR = 500, NQ = 6)
      INTEGER NRESP, ANS(NQ, MAXR), IDENT(MAXR), CODES(NQ), IOS, I, K
      LOGICAL REJECT(MAXR)
      COMMON /RAW/ NRESP, ANS, IDENT, REJECT
      COMMON /CODING/ CODES
      CHARACTER CARD*80
      REWIND LU
      NRESP = 0
   10 READ (LU, '(A80)', IOSTAT = IOS) CARD
      IF (IOS) 90, 20, 10
   20 IF (NRESP .EQ. MAXR) RETURN 1
      K = NRESP + 1
      READ (CARD, 30, ERR = 70) IDENT(K), (ANS(I, K), I = 1, NQ)
   30 FORMAT (I5, 1X, 10(I1))
      REJECT(K) = .FALSE.
C     the same number twice?
      DO 40 I = 1, NRESP
         IF (IDENT(I) .EQ. IDENT(K)) THEN
            NBAD(2) = NBAD(2) + 1
            GO TO 10
         END IF
   40 CONTINUE
      NRESP = K
      DO 50 I = 1, NQ
         IF (ANS(I, K) .LT. 0 .OR. ANS(I, K) .GT. CODES(I)) GO TO 60
   50 CONTINUE
      GO TO 10
C     kept, but only counted among those rejected
   60 REJECT(K) = .TRUE.
      NBAD(3) = NBAD(3) + 1
      GO TO 10
   70 NBAD(1) = NBAD(1) + 1
      GO TO 10
   90 RETURN
      END
C
      SUBROUTINE MARGIN (J)
C     The answers to one question, with a bar for each
      INTEGER J, MAXR, NQ, MAXA, I, K, N, NONE
      PARAMETER (MAXR = 500, NQ = 6, MAXA = 5)
      INTEGER NRESP, ANS(NQ, MAXR), IDENT(MAXR), CODES(NQ)
      LOGICAL REJECT(MAXR)
      CHARACTER TITLE(NQ)*16, ANSWER(MAXA, NQ)*10, BAR*30
      COMMON /RAW/ NRESP, ANS, IDENT, REJECT
      COMMON /CODING/ CODES
      COMMON /CODNAM/ TITLE, ANSWER
      INTEGER FREQ(0:MAXA)
      REAL PCT
      PARAMETER (BAR = 'XXXXXXXXXXXXXXXXXXXXXXXXXXXXXX')
      DO 10 K = 0, MAXA
         FREQ(K) = 0
   10 CONTINUE
      N = 0
      DO 20 I = 1, NRESP
         IF (REJECT(I)) GO TO 20
         N = N + 1
         FREQ(ANS(J, I)) = FREQ(ANS(J, I)) + 1
   20 CONTINUE
      NONE = FREQ(0)
      WRITE (*, 30) J, TITLE(J), N, NONE
   30 FORMAT ('0QUESTION', I2, ': ', A, I6, ' CARDS,', I4, ' WITHOUT')
      DO 50 K = 1, CODES(J)
         PCT = 100.0*FREQ(K)/MAX(N - NONE, 1)
         L = NINT(PCT*0.3)
         IF (L .EQ. 0) THEN
            WRITE (*, 40) ANSWER(K, J), FREQ(K), PCT
         ELSE
            WRITE (*, 40) ANSWER(K, J), FREQ(K), PCT, BAR(:MIN(L, 30))
         END IF
   40    FORMAT (4X, A10, I6, F7.1, ' %', :, 2X, A)
   50 CONTINUE
      END
C
      SUBROUTINE CROSS (JROW, JCOL)
C     A table of two questions with percentages of the rows
      INTEGER JROW, JCOL, MAXR, NQ, MAXA, I, K, L, M, N
      PARAMETER (MAXR = 500, NQ = 6, MAXA = 5)
      INTEGER NRESP, ANS(NQ, MAXR), IDENT(MAXR), CODES(NQ)
      LOGICAL REJECT(MAXR)
      CHARACTER TITLE(NQ)*16, ANSWER(MAXA, NQ)*10
      COMMON /RAW/ NRESP, ANS, IDENT, REJECT
      COMMON /CODING/ CODES
      COMMON /CODNAM/ TITLE, ANSWER
      INTEGER TAB(0:MAXA, 0:MAXA), LASTR, LASTC
      EQUIVALENCE (TAB(0, 0), TABSUM)
      INTEGER TABSUM
      REAL CHI, E
      DO 10 L = 0, MAXA
      DO 10 K = 0, MAXA
   10 TAB(K, L) = 0
      M = 0
      N = 0
      DO 20 I = 1, NRESP
         K = ANS(JROW, I)
         L = ANS(JCOL, I)
         IF (REJECT(I) .OR. K*L .EQ. 0) GO TO 20
         TAB(K, L) = TAB(K, L) + 1
         TAB(0, L) = TAB(0, L) + 1
         TAB(K, 0) = TAB(K, 0) + 1
         TABSUM = TABSUM + 1
   20 CONTINUE
      LASTR = CODES(JROW)
      LASTC = CODES(JCOL)
      WRITE (*, 30) TITLE(JROW), TITLE(JCOL),
     1   (ANSWER(L, JCOL), L = 1, LASTC)
   30 FORMAT ('0', A, ' BY ', A / 14X, 5A11)
      CHI = 0.0
      DO 50 K = 1, LASTR
         WRITE (*, 40) ANSWER(K, JROW), (TAB(K, L), 100.0*TAB(K, L)
     1      /MAX(TAB(K, 0), 1), L = 1, LASTC)
   40    FORMAT (3X, A10, 5(I4, F6.1, '%'))
         DO 50 L = 1, LASTC
            E = REAL(TAB(K, 0))*REAL(TAB(0, L))/REAL(TABSUM)
            IF (E .GT. 0.0) CHI = CHI + (TAB(K, L) - E)**2/E
   50 CONTINUE
      WRITE (*, 60) (TAB(0, L), L = 1, LASTC)
   60 FORMAT (3X, 'ALL', 4X, 5I11)
      WRITE (*, 70) CHI, (LASTR - 1)*(LASTC - 1)
   70 FORMAT ('   CHI SQUARE', F9.2, ' WITH', I3, ' DEGREES')
      END
C
      SUBROUTINE DATGEN (LU, N)
C     Cards as they might come from the field, a few of them bad
      INTEGER LU, N, I, K, ISEED, A(6), MOST(6)
      DATA ISEED /777/, MOST /2, 5, 3, 4, 5, 2/
      DO 20 I = 1, N
         DO 10 K = 1, 6
            ISEED = MOD(ISEED*137 + 4711, 65536)
            A(K) = MIN(MOST(K), (ISEED*(MOST(K) + 1))/65536)
   10    CONTINUE
         IF (A(1) .EQ. 1 .AND. A(4) .GT. 2) A(4) = A(4) - 1
         IF (MOD(I, 40) .EQ. 7) A(3) = 8
         WRITE (LU, '(I5.5, 1X, 6I1)') I*3, A
   20 CONTINUE
      WRITE (LU, '(I5.5, 1X, 6I1)') 3, A
      WRITE (LU, '(A)') 'END OF THE BOX'
      END FILE LU
      END
