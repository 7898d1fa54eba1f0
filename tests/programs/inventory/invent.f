C     INVENT - the daily run of the store: movements are read from a
C     sequential file, applied to the stock file, and a journal, a list
C     of the stock and a list of orders are printed, with headings on
C     every page.
      PROGRAM INVENT
      INCLUDE 'stock.inc'
      INTEGER LUMOV
      PARAMETER (LUMOV = 12)
      INTEGER KEY, NQTY, NDATE, IOS, I, N, NERR
      CHARACTER RESULT*14, CARD*80, KIND, NAME*20
      REAL COST, VALUE, TOTAL
      LOGICAL DONE
      DATA TOTAL /0.0/, DONE /.FALSE./, NERR /0/
C
      CALL STOPEN ('stock.dat', .TRUE., *900)
      OPEN (LUMOV, STATUS = 'SCRATCH')
      CALL CARDS (LUMOV)
      REWIND (UNIT = LUMOV)
      CALL PGINIT ('JOURNAL OF MOVEMENTS', 20, 901128)
C
C     Cards:  N code name qty minimum price date     a new article
C             M code qty date                        a movement
C             E                                      end
C
   10 READ (LUMOV, '(A)', END = 100, IOSTAT = IOS) CARD
      KIND = CARD(1:1)
      IF (KIND .EQ. 'N') THEN
         READ (CARD, 20, ERR = 70) KEY, NAME, NQTY, N, COST, NDATE
   20    FORMAT (2X, I5, 1X, A20, 2X, 2I5, F8.2, I7)
         CALL STADD (KEY, NAME, NQTY, N, COST, NDATE, *50, *60)
         CALL PGLINE
         WRITE (LUPRT, 30) KEY, NAME, NQTY, COST
   30    FORMAT (1X, I6, 2X, A, 'NEW', I8, F10.2)
      ELSE IF (KIND .EQ. 'M') THEN
         READ (CARD(2:), *, ERR = 70, END = 70) KEY, NQTY, NDATE
         CALL STMOVE (KEY, NQTY, NDATE, RESULT)
         CALL PGLINE
         WRITE (LUPRT, 40) KEY, ARTNAM, NQTY, RESULT
   40    FORMAT (1X, I6, 2X, A, 3X, SP, I8, SS, 2X, A)
      ELSE IF (KIND .EQ. 'E') THEN
         DONE = .TRUE.
         GO TO 100
      ELSE
         GO TO 70
      END IF
      GO TO 10
   50 CALL PGLINE
      WRITE (LUPRT, 45) KEY, 'IS THERE ALREADY'
   45 FORMAT (1X, I6, 2X, '*** ', A)
      NERR = NERR + 1
      GO TO 10
   60 WRITE (LUPRT, 45) KEY, 'FILE FULL'
      GO TO 100
   70 CALL PGLINE
      WRITE (LUPRT, 75) CARD
   75 FORMAT (' *** BAD CARD: ', A40)
      NERR = NERR + 1
      GO TO 10
C
  100 IF (.NOT. DONE) WRITE (LUPRT, *) 'NO END CARD'
      CLOSE (LUMOV)
C
C     the list of the stock
      CALL PGINIT ('STOCK ON HAND', 12, 901128)
      DO 120 I = 1, NREC
         CALL STREAD (I, *120)
         CALL PGLINE
         IF (PRICE .LT. 0.0) THEN
            WRITE (LUPRT, 110) KODE, ARTNAM, STATE, IONHND
         ELSE
            VALUE = IONHND*PRICE
            TOTAL = TOTAL + VALUE
            WRITE (LUPRT, 110) KODE, ARTNAM, STATE, IONHND, PRICE, VALUE
         END IF
  110    FORMAT (1X, I6, 2X, A, A2, I7, :, F10.2, F12.2)
  120 CONTINUE
      WRITE (LUPRT, 130) TOTAL
  130 FORMAT (T39, 12('-') / T34, 'SUM ', F14.2)
C
C     orders
      CALL PGINIT ('TO BE ORDERED', 12, 901128)
      N = 0
      DO 140 I = NREC, 1, -1
         CALL STREAD (I, *140)
         IF (IORDER .EQ. 0) GO TO 140
         N = N + 1
         CALL PGLINE
         WRITE (LUPRT, '(1X,I6,2X,A,I8)') KODE, ARTNAM, IORDER
  140 CONTINUE
      WRITE (LUPRT, 150) N, NERR
  150 FORMAT ('0', I4, ' ORDERS', I4, ' ERRORS')
      CLOSE (LUSTK, STATUS = 'DELETE')
      STOP
  900 STOP 'NO STOCK FILE'
      END
C
C     Pages: a heading, a number, and a count of lines
      SUBROUTINE PGINIT (TITLE, LINES, IDATE)
      CHARACTER*(*) TITLE
      INTEGER LINES, IDATE, PAGE, LEFT, PERPAG, DATE
      CHARACTER*30 HEAD
      CHARACTER*8 DTEXT
      SAVE PAGE, LEFT, PERPAG, DATE, HEAD
      DATA PAGE /0/
      HEAD = TITLE
      PERPAG = LINES
      DATE = IDATE
      LEFT = 0
      RETURN
      ENTRY PGLINE
      IF (LEFT .EQ. 0) THEN
         PAGE = PAGE + 1
         WRITE (DTEXT, '(2(I2.2,''/''),I2.2)') DATE/10000,
     1      MOD(DATE/100, 100), MOD(DATE, 100)
         WRITE (*, 10) HEAD, DTEXT, PAGE
   10    FORMAT ('1', A, A, T50, 'PAGE', I3 / 1X, 56('='))
         LEFT = PERPAG
      END IF
      LEFT = LEFT - 1
      END
C
      SUBROUTINE CARDS (LU)
C     the input of the day
      INTEGER LU, I, NCARD
      PARAMETER (NCARD = 17)
      CHARACTER*60 DECK(NCARD)
      DATA (DECK(I), I = 1, 8) /
     1   'N 10200 HEX BOLT M8             500  200    0.12 901101',
     2   'N 10100 HEX BOLT M6             800  200    0.09 901101',
     3   'N 20500 BALL BEARING             40   10   12.50 901103',
     4   'N 10150 HEX NUT M6              900  300    0.04 901103',
     5   'N 30000 GEAR WHEEL 40             6    4   48.00 901104',
     6   'N 10200 HEX BOLT AGAIN            1    1    1.00 901104',
     7   'N 40010 SPECIAL OIL              12    5         901105',
     8   'N 40000 GREASE                   20    8    3.75 901105' /
      DATA (DECK(I), I = 9, NCARD) /
     1   'M 10200 -320 901110',
     2   'M 20500 -25, 901111',
     3   'M 30000 -9 901112',
     4   'M 30000 -1 901113',
     5   'M 99999 5 901113',
     6   'X WHAT IS THIS',
     7   'M 10200 100 901120',
     8   'M 40000 -15 ABC',
     9   'E' /
      WRITE (LU, '(A)') (DECK(I), I = 1, NCARD)
      ENDFILE (UNIT = LU)
      END
