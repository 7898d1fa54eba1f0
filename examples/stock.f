C     A stock of parts in a direct-access file: the file is made from
C     DATA tables, changed by a list of movements, and printed as a
C     report through a scratch file and an internal file.
      PROGRAM STOCK
      INTEGER LU, LREC
      PARAMETER (LU = 11, LREC = 48)
      INTEGER NPARTS, MAXP
      PARAMETER (MAXP = 50)
      CHARACTER*20 NAME(MAXP)
      INTEGER QTY(MAXP)
      REAL PRICE(MAXP)
      COMMON /PARTS/ NPARTS, QTY, PRICE
      COMMON /NAMES/ NAME
      INTEGER NOPEN, NREAD, NWRITE
      COMMON /COUNTS/ NOPEN, NREAD, NWRITE
      LOGICAL THERE
      INTEGER IOS, I
C
      INQUIRE (FILE='stock.dat', EXIST=THERE)
      OPEN (UNIT=LU, FILE='stock.dat', ACCESS='DIRECT', RECL=LREC,
     1      FORM='UNFORMATTED', STATUS='UNKNOWN', IOSTAT=IOS)
      IF (IOS .NE. 0) THEN
         WRITE (*, *) 'CANNOT OPEN THE FILE, CODE', IOS
         STOP 1
      ENDIF
      NOPEN = NOPEN + 1
      IF (.NOT. THERE) THEN
         DO 10 I = 1, NPARTS
            CALL PUTREC(LU, I, NAME(I), QTY(I), PRICE(I))
   10    CONTINUE
      ENDIF
      CALL MOVES(LU)
      CALL REPORT(LU)
      CLOSE (LU, STATUS='DELETE')
      WRITE (*, '(1X,A,3I5)') 'OPENED, READ, WRITTEN:',
     1   NOPEN, NREAD, NWRITE
      END
C
      BLOCK DATA INITS
      INTEGER NPARTS, MAXP
      PARAMETER (MAXP = 50)
      CHARACTER*20 NAME(MAXP)
      INTEGER QTY(MAXP)
      REAL PRICE(MAXP)
      COMMON /PARTS/ NPARTS, QTY, PRICE
      COMMON /NAMES/ NAME
      INTEGER NOPEN, NREAD, NWRITE
      COMMON /COUNTS/ NOPEN, NREAD, NWRITE
      INTEGER I
      DATA NPARTS /6/
      DATA (NAME(I), I = 1, 6) /'BOLT M6', 'BOLT M8', 'NUT M6',
     1   'NUT M8', 'WASHER 6', 'WASHER 8'/
      DATA (NAME(I), I = 7, MAXP) /44*' '/
      DATA (QTY(I), I = 1, 6) /2*500, 2*650, 900, 850/, (QTY(I),
     1   I = 7, MAXP) /44*0/
      DATA (PRICE(I), I = 1, 6) /0.12, 0.18, 2*0.05, 0.02, 0.03/
      DATA (PRICE(I), I = 7, MAXP) /44*0.0/
      DATA NOPEN, NREAD, NWRITE /3*0/
      END
C
C     One record of the file.
      SUBROUTINE PUTREC(LU, IREC, NAME, QTY, PRICE)
      INTEGER LU, IREC, QTY
      CHARACTER*(*) NAME
      CHARACTER*20 BUF
      REAL PRICE
      INTEGER NOPEN, NREAD, NWRITE
      COMMON /COUNTS/ NOPEN, NREAD, NWRITE
      BUF = NAME
      WRITE (LU, REC=IREC, ERR=900) BUF, QTY, PRICE
      NWRITE = NWRITE + 1
      RETURN
  900 STOP 'WRITE FAILED'
      END
C
      SUBROUTINE GETREC(LU, IREC, NAME, QTY, PRICE, *)
      INTEGER LU, IREC, QTY, IOS
      CHARACTER*20 NAME
      REAL PRICE
      INTEGER NOPEN, NREAD, NWRITE
      COMMON /COUNTS/ NOPEN, NREAD, NWRITE
      READ (UNIT=LU, REC=IREC, IOSTAT=IOS) NAME, QTY, PRICE
      IF (IOS .NE. 0) RETURN 1
      NREAD = NREAD + 1
      END
C
C     The movements: a part and a difference, in one table.
      SUBROUTINE MOVES(LU)
      INTEGER LU, NM, I, IP, ID, QTY
      PARAMETER (NM = 5)
      INTEGER MOVE(2, NM), PART(NM), DIFF(NM), FLAT(2 * NM)
      CHARACTER*20 NAME
      REAL PRICE
      EQUIVALENCE (MOVE(1, 1), FLAT(1))
      DATA MOVE /1, -120, 3, -120, 5, -240, 2, 60, 9, 10/
C
      DO 10 I = 1, NM
         PART(I) = FLAT(2 * I - 1)
         DIFF(I) = FLAT(2 * I)
   10 CONTINUE
      DO 20 I = 1, NM
         IP = PART(I)
         ID = DIFF(I)
         CALL GETREC(LU, IP, NAME, QTY, PRICE, *90)
         QTY = QTY + ID
         CALL PUTREC(LU, IP, NAME, QTY, PRICE)
         GO TO 20
   90    WRITE (*, 1000) IP
   20 CONTINUE
 1000 FORMAT (1X, 'THERE IS NO PART', I4)
      END
C
C     A line for each part goes to a scratch file first; the sum of
C     all is then added to each line.
      SUBROUTINE REPORT(LU)
      INTEGER LU, LS, I, QTY, N
      PARAMETER (LS = 12)
      CHARACTER*20 NAME
      CHARACTER*60 LINE
      CHARACTER*8 SHARE
      REAL PRICE, VALUE, TOTAL
C
      OPEN (LS, STATUS='SCRATCH', FORM='FORMATTED')
      TOTAL = 0.0
      N = 0
      DO 10 I = 1, 50
         CALL GETREC(LU, I, NAME, QTY, PRICE, *20)
         VALUE = QTY * PRICE
         TOTAL = TOTAL + VALUE
         WRITE (LS, 1000) I, NAME, QTY, PRICE, VALUE
         N = N + 1
   10 CONTINUE
   20 ENDFILE (LS)
      REWIND (LS)
      DO 30 I = 1, N
         READ (LS, '(A)', END=40) LINE
         READ (LINE(47:56), '(F10.2)') VALUE
         WRITE (SHARE, '(F6.1,'' %'')') 100.0 * VALUE / TOTAL
         WRITE (*, '(1X,A,A)') LINE(1:56), SHARE
   30 CONTINUE
   40 BACKSPACE (LS)
      CLOSE (LS)
      WRITE (*, 1010) TOTAL
 1000 FORMAT (I4, 2X, A20, I8, F12.2, F10.2)
 1010 FORMAT (35X, 'TOTAL', 6X, F11.2)
      END
