C     The stock file: opening, reading, writing, looking up, moving.
C
      SUBROUTINE STOPEN (FNAME, NEW, *)
      CHARACTER*(*) FNAME
      LOGICAL NEW, EXIST, ISOPEN
      INCLUDE 'stock.inc'
      CHARACTER*16 STAT
      INTEGER IOS, L
C
      INQUIRE (FILE = FNAME, EXIST = EXIST, OPENED = ISOPEN)
      IF (ISOPEN) RETURN
      STAT = 'OLD'
      IF (NEW) STAT = 'NEW'
      IF (NEW .AND. EXIST) THEN
         OPEN (LUSTK, FILE = FNAME, STATUS = 'OLD', IOSTAT = IOS)
         CLOSE (LUSTK, STATUS = 'DELETE', ERR = 90)
      END IF
      OPEN (UNIT = LUSTK, FILE = FNAME, STATUS = STAT, ERR = 90,
     1      ACCESS = 'DIRECT', FORM = 'FORMATTED', RECL = LREC,
     2      IOSTAT = IOS)
      IF (NEW) THEN
         NREC = 0
         WRITE (LUSTK, '(A8,I6)', REC = 1) 'STOCK1', NREC
      ELSE
         READ (LUSTK, 10, REC = 1, ERR = 90) STAT, NREC
   10    FORMAT (A8, I6)
         IF (STAT .NE. 'STOCK1') GO TO 90
      END IF
      INQUIRE (UNIT = LUSTK, RECL = L, NEXTREC = K)
      IF (L .NE. LREC) GO TO 90
      RETURN
   90 WRITE (LUPRT, *) 'CANNOT OPEN ', FNAME, IOS
      RETURN 1
      END
C
      SUBROUTINE STREAD (I, *)
C     Reads article I, counted from 1, into the common record.
      INTEGER I, IOS
      INCLUDE 'stock.inc'
      CHARACTER*9 PRTEXT
      IF (I .LT. 1 .OR. I .GT. NREC) RETURN 1
      READ (LUSTK, 10, REC = I + 1, IOSTAT = IOS) KODE, STATE, ARTNAM,
     1   IONHND, IORDER, MINQTY, PRTEXT, LASTDT
      IF (IOS .NE. 0) THEN
         WRITE (LUPRT, 20) I, IOS
         RETURN 1
      ENDIF
C     the price is kept as text, so that blanks can mean "not known"
      IF (PRTEXT .EQ. ' ') THEN
         PRICE = -1.0
      ELSE
         READ (PRTEXT, '(F9.2)', ERR = 30) PRICE
      END IF
      RETURN
C
      ENTRY STWRIT (I, *)
      IF (I .LT. 1 .OR. I .GT. NREC) RETURN 1
      PRTEXT = ' '
      IF (PRICE .GE. 0.0) WRITE (PRTEXT, '(F9.2)') PRICE
      WRITE (LUSTK, 10, REC = I + 1) KODE, STATE, ARTNAM, IONHND,
     1   IORDER, MINQTY, PRTEXT, LASTDT
      RETURN
C
   30 WRITE (LUPRT, *) 'PRICE IS NO NUMBER: ', PRTEXT
      PRICE = -1.0
   10 FORMAT (I6, A1, A20, 3I6, A9, I8)
   20 FORMAT (' ARTICLE', I5, ' CANNOT BE READ, STATUS', I5)
      END
C
      INTEGER FUNCTION LOCART (KEY)
C     The number of the article with code KEY by binary search, the
C     articles being in order; 0 if there is none.  Minus the place where
C     it would stand is in COMMON /STKLOC/.
      INTEGER KEY, LOW, HIGH, MID, MISSED
      INCLUDE 'stock.inc'
      COMMON /STKLOC/ MISSED
      LOW = 1
      HIGH = NREC
   10 IF (LOW .LE. HIGH) THEN
         MID = (LOW + HIGH)/2
         CALL STREAD (MID, *90)
         IF (KODE - KEY) 20, 30, 40
   20    LOW = MID + 1
         GO TO 10
   30    LOCART = MID
         RETURN
   40    HIGH = MID - 1
         GO TO 10
      END IF
      MISSED = LOW
   90 LOCART = 0
      END
C
      SUBROUTINE STADD (KEY, TEXT, QTY, MINIM, COST, DATE, *, *)
C     A new article: those behind it move up by one record.
C     *1 it is there already, *2 the file is full
      INTEGER KEY, QTY, MINIM, DATE, LOCART, I, MISSED
      REAL COST
      CHARACTER*(*) TEXT
      INCLUDE 'stock.inc'
      COMMON /STKLOC/ MISSED
      IF (LOCART(KEY) .NE. 0) RETURN 1
      IF (NREC .GE. MAXREC) RETURN 2
      NREC = NREC + 1
      DO 10 I = NREC, MISSED + 1, -1
         CALL STREAD (I - 1, *20)
         CALL STWRIT (I, *20)
   10 CONTINUE
   20 KODE = KEY
      ARTNAM = TEXT
      STATE = 'A'
      IONHND = QTY
      IORDER = 0
      MINQTY = MINIM
      PRICE = COST
      LASTDT = DATE
      CALL STWRIT (MISSED, *30)
      WRITE (LUSTK, '(A8,I6)', REC = 1) 'STOCK1', NREC
   30 RETURN
      END
C
      SUBROUTINE STMOVE (KEY, QTY, DATE, RESULT)
C     QTY pieces come in (QTY > 0) or go out.  RESULT says what happened.
      INTEGER KEY, QTY, DATE, I, LOCART
      CHARACTER*(*) RESULT
      INCLUDE 'stock.inc'
      I = LOCART(KEY)
      IF (I .EQ. 0) THEN
         RESULT = 'UNKNOWN'
      ELSE IF (STATE .EQ. 'B') THEN
         RESULT = 'BLOCKED'
      ELSE IF (IONHND + QTY .LT. 0) THEN
         RESULT = 'SHORT'
         STATE = 'S'
      ELSE
         IONHND = IONHND + QTY
         IF (QTY .GT. 0) IORDER = MAX(0, IORDER - QTY)
         LASTDT = DATE
         RESULT = 'DONE'
         STATE = 'A'
         IF (IONHND .LT. MINQTY .AND. IORDER .EQ. 0) THEN
            IORDER = 2*MINQTY
            RESULT = 'DONE, ORDERED'
         END IF
      END IF
      IF (I .NE. 0) CALL STWRIT (I, *90)
   90 RETURN
      END
