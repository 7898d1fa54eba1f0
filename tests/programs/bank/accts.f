*     Accounts of a small bank on an unformatted direct-access file.
*     A record is
*        number, state, owner, balance in cents, limit, head and tail of
*        the chain of movements
*     and the movements are on a second file of the same kind, each with
*     the number of the next one.  Balances are integers: no cent may be
*     lost by rounding.
*
      BLOCK DATA BANKBD
      INTEGER LUACC, LUMOV, NACC, NMOV, IRATE
      COMMON /BANK/ LUACC, LUMOV, NACC, NMOV, IRATE
      DATA LUACC, LUMOV /31, 32/
      DATA NACC, NMOV /2*0/
*     interest in hundredths of a percent
      DATA IRATE /375/
      END
*
      SUBROUTINE BKOPEN (*)
      INTEGER LUACC, LUMOV, NACC, NMOV, IRATE, IOS
      COMMON /BANK/ LUACC, LUMOV, NACC, NMOV, IRATE
      LOGICAL FILES
      CHARACTER KIND*11, DIR*7
      OPEN (LUACC, ACCESS='DIRECT', RECL=60, STATUS='SCRATCH',
     $      IOSTAT=IOS, ERR=900)
      OPEN (LUMOV, ACCESS='DIRECT', FORM='UNFORMATTED', RECL=40,
     $      STATUS='SCRATCH', IOSTAT=IOS, ERR=900)
      INQUIRE (LUACC, FORM=KIND, DIRECT=DIR, NAMED=FILES)
      IF (KIND .NE. 'UNFORMATTED') GO TO 900
      IF (FILES) PRINT *, 'A SCRATCH FILE WITH A NAME'
      RETURN
  900 PRINT *, 'BKOPEN: STATUS ', IOS
      RETURN 1
      END
*
      SUBROUTINE ACCNEW (OWNER, LIMIT, NUM)
      CHARACTER*(*) OWNER
      CHARACTER*20 NAME
      INTEGER LIMIT, NUM
      INTEGER LUACC, LUMOV, NACC, NMOV, IRATE
      COMMON /BANK/ LUACC, LUMOV, NACC, NMOV, IRATE
      NACC = NACC + 1
      NUM = NACC
      NAME = OWNER
      WRITE (LUACC, REC=NUM) NUM, .TRUE., NAME, 0, LIMIT, 0, 0
      END
*
      SUBROUTINE POST (NUM, IDATE, IAMT, TEXT, KODE)
*     One movement.  KODE: 0 done, 1 no such account, 2 closed, 3 over
*     the limit
      INTEGER NUM, IDATE, IAMT, KODE
      CHARACTER*(*) TEXT
      CHARACTER NAME*20, REASON*12
      LOGICAL OPEN
      INTEGER N, IBAL, LIMIT, IHEAD, ITAIL, ID, IA, NEXT
      INTEGER LUACC, LUMOV, NACC, NMOV, IRATE
      COMMON /BANK/ LUACC, LUMOV, NACC, NMOV, IRATE
      KODE = 1
      IF (NUM .LT. 1 .OR. NUM .GT. NACC) RETURN
      READ (LUACC, REC=NUM, ERR=900) N, OPEN, NAME, IBAL, LIMIT, IHEAD,
     $   ITAIL
      KODE = 2
      IF (.NOT. OPEN) RETURN
      KODE = 3
      IF (IAMT .LT. 0 .AND. IBAL + IAMT .LT. -LIMIT) RETURN
      KODE = 0
      IBAL = IBAL + IAMT
      NMOV = NMOV + 1
      REASON = TEXT
      WRITE (LUMOV, REC=NMOV) IDATE, IAMT, REASON, 0
      IF (ITAIL .EQ. 0) THEN
         IHEAD = NMOV
      ELSE
*        the movement that was last so far now has a successor
         READ (LUMOV, REC=ITAIL, ERR=900) ID, IA, REASON, NEXT
         WRITE (LUMOV, REC=ITAIL) ID, IA, REASON, NMOV
      END IF
      ITAIL = NMOV
      WRITE (LUACC, REC=NUM) N, OPEN, NAME, IBAL, LIMIT, IHEAD, ITAIL
      RETURN
  900 STOP 'POST: FILE DAMAGED'
      END
*
      SUBROUTINE TRANSF (IFROM, ITO, IDATE, IAMT, KODE)
*     Both movements or none
      INTEGER IFROM, ITO, IDATE, IAMT, KODE
      CHARACTER*12 TEXT
      WRITE (TEXT, '(''TO'',I6)') ITO
      CALL POST (IFROM, IDATE, -IAMT, TEXT, KODE)
      IF (KODE .NE. 0) RETURN
      WRITE (TEXT, '(''FROM'',I6)') IFROM
      CALL POST (ITO, IDATE, IAMT, TEXT, KODE)
      IF (KODE .EQ. 0) RETURN
      CALL POST (IFROM, IDATE, IAMT, 'RETURNED', KODE)
      KODE = 9
      END
*
      SUBROUTINE ACCEND (NUM, IBAL)
*     Closes an account and pays it out.
      INTEGER NUM, IBAL, N, LIMIT, IHEAD, ITAIL
      LOGICAL OPEN
      CHARACTER*20 NAME
      INTEGER LUACC, LUMOV, NACC, NMOV, IRATE
      COMMON /BANK/ LUACC, LUMOV, NACC, NMOV, IRATE
      READ (LUACC, REC=NUM) N, OPEN, NAME, IBAL, LIMIT, IHEAD, ITAIL
      WRITE (LUACC, REC=NUM) N, .FALSE., NAME, 0, LIMIT, IHEAD, ITAIL
      END
*
      INTEGER FUNCTION INTRST (NUM, IYEAR)
*     Interest of a year from the chain of movements, by the "English"
*     way: every movement bears interest from its day to the 31st of
*     December, in days of a year of 360.
      INTEGER NUM, IYEAR, N, IBAL, LIMIT, IHEAD, ITAIL, ID, IA, NEXT
      INTEGER LUACC, LUMOV, NACC, NMOV, IRATE, DAYS
      COMMON /BANK/ LUACC, LUMOV, NACC, NMOV, IRATE
      LOGICAL OPEN
      CHARACTER NAME*20, REASON*12
      DOUBLE PRECISION SUM
      INTEGER IY, IM, IDD
      DAYS(IM, IDD) = 30*(12 - IM) + 30 - MIN(IDD, 30)
      INTRST = 0
      READ (LUACC, REC=NUM, IOSTAT=IY) N, OPEN, NAME, IBAL, LIMIT,
     $   IHEAD, ITAIL
      IF (IY .NE. 0 .OR. .NOT. OPEN) RETURN
      SUM = 0.0D0
      NEXT = IHEAD
   10 IF (NEXT .NE. 0) THEN
         READ (LUMOV, REC=NEXT) ID, IA, REASON, NEXT
         IY = ID/10000
         IF (IY .LT. IYEAR) THEN
            SUM = SUM + DBLE(IA)*360
         ELSE IF (IY .EQ. IYEAR) THEN
            SUM = SUM + DBLE(IA)*DAYS(MOD(ID/100, 100), MOD(ID, 100))
         END IF
         GO TO 10
      END IF
      INTRST = NINT(SUM*IRATE/(360.0D0*10000.0D0))
      END
