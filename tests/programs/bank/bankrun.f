*     A year of the bank, with statements of account and a payroll.
      PROGRAM BANKRN
      INTEGER LUACC, LUMOV, NACC, NMOV, IRATE
      COMMON /BANK/ LUACC, LUMOV, NACC, NMOV, IRATE
      INTEGER KODE, I, IBAL, INTRST, IT, NSTAFF
      PARAMETER (NSTAFF = 3)
      INTEGER NUM(0:NSTAFF), HOURS(NSTAFF, 2), WAGE(NSTAFF), GROSS, NET,
     $        TAX, MONTH
      CHARACTER*18 STAFF(0:NSTAFF), WHY(0:3)*20, LINE*52
      EXTERNAL BANKBD
      SAVE WHY
      DATA STAFF /'MILL & SONS', 'ADAMS, J.', 'BAKER, W.', 'CLARK, S.'/
      DATA WHY /'DONE', 'NO SUCH ACCOUNT', 'CLOSED', 'OVER THE LIMIT'/
      DATA HOURS /160, 172, 38, 0, 12, 0/, WAGE /1850, 1600, 2200/
*
      CALL BKOPEN (*900)
      DO 10 I = 0, NSTAFF
         CALL ACCNEW (STAFF(I), MAX(0, 500000 - 450000*MIN(I, 1)),
     $                NUM(I))
   10 CONTINUE
      CALL POST (NUM(0), 900102, 1200000, 'CAPITAL', KODE)
*
*     three months of wages
      DO 40 MONTH = 1, 3
         WRITE (*, 1000) MONTH
         IT = 0
         DO 30 I = 1, NSTAFF
            CALL PAY (HOURS(I, 1), HOURS(I, 2), WAGE(I), GROSS, TAX,
     $                NET)
            IT = IT + TAX
            CALL TRANSF (NUM(0), NUM(I), 900000 + 100*MONTH + 28, NET,
     $                   KODE)
            LINE = STAFF(I)
            CALL CENTS (GROSS, LINE(20:30))
            CALL CENTS (TAX, LINE(31:40))
            CALL CENTS (NET, LINE(41:))
            WRITE (*, '(1X,A,2X,A)') LINE, WHY(KODE)
   30    CONTINUE
         CALL POST (NUM(0), 900000 + 100*MONTH + 30, -IT, 'TAXES', KODE)
   40 CONTINUE
*
*     other movements, some of which must fail
      CALL POST (NUM(1), 900415, -70000000, 'YACHT', KODE)
      PRINT *, 'YACHT: ', WHY(KODE)
      CALL POST (77, 900415, 1, '?', KODE)
      PRINT *, 'ACCOUNT 77: ', WHY(KODE)
      CALL ACCEND (NUM(3), IBAL)
      CALL TRANSF (NUM(0), NUM(3), 900501, 100, KODE)
      IF (KODE .NE. 9) STOP 'MONEY FOR A CLOSED ACCOUNT'
      DO 50 I = 0, NSTAFF
         IT = INTRST(NUM(I), 90)
         IF (IT .NE. 0) CALL POST (NUM(I), 901231, IT, 'INTEREST', KODE)
         CALL STATEM (NUM(I))
   50 CONTINUE
      CLOSE (LUACC)
      CLOSE (LUMOV)
      STOP
  900 STOP 'NO FILES'
 1000 FORMAT ('1WAGES OF MONTH', I3, / '0NAME', T21, '      GROSS',
     $        '       TAX         NET')
      END
*
      SUBROUTINE PAY (NORMAL, NOVER, IWAGE, GROSS, TAX, NET)
*     Overtime is paid half as much again.  Tax goes by brackets.
      INTEGER NORMAL, NOVER, IWAGE, GROSS, TAX, NET, NBRACK, I, REST
      PARAMETER (NBRACK = 4)
      INTEGER UPTO(NBRACK), RATE(NBRACK), FROM
      SAVE UPTO, RATE
      DATA (UPTO(I), RATE(I), I = 1, NBRACK)
     $   /50000, 0, 150000, 20, 300000, 30, 2000000000, 40/
      GROSS = IWAGE*NORMAL + (3*IWAGE*NOVER + 1)/2
      TAX = 0
      FROM = 0
      DO 10 I = 1, NBRACK
         REST = MIN(GROSS, UPTO(I)) - FROM
         IF (REST .LE. 0) GO TO 20
         TAX = TAX + (REST*RATE(I) + 50)/100
         FROM = UPTO(I)
   10 CONTINUE
   20 NET = GROSS - TAX
      END
*
      SUBROUTINE CENTS (N, TEXT)
*     An amount with commas, right adjusted: 1234567 is 12,345.67
      INTEGER N, I, J, L
      CHARACTER*(*) TEXT
      CHARACTER*16 DIGITS
      WRITE (DIGITS, '(I16.3)') ABS(N)
      L = LEN(TEXT)
      TEXT = ' '
      TEXT(L-2:L) = '.' // DIGITS(15:16)
      J = L - 3
      DO 10 I = 14, 1, -1
         IF (DIGITS(I:I) .EQ. ' ') GO TO 20
         IF (I .LT. 14 .AND. MOD(14 - I, 3) .EQ. 0) THEN
            IF (J .LT. 1) GO TO 30
            TEXT(J:J) = ','
            J = J - 1
         END IF
         IF (J .LT. 1) GO TO 30
         TEXT(J:J) = DIGITS(I:I)
         J = J - 1
   10 CONTINUE
   20 IF (N .GE. 0) RETURN
      IF (J .LT. 1) GO TO 30
      TEXT(J:J) = '-'
      RETURN
*     does not fit
   30 DO 40 I = 1, L
   40 TEXT(I:I) = '*'
      END
*
      SUBROUTINE STATEM (NUM)
*     A statement of account
      INTEGER NUM, N, IBAL, LIMIT, IHEAD, ITAIL, ID, IA, NEXT, IRUN
      INTEGER LU1, LU2
      COMMON /BANK/ LU1, LU2, NACC, NMOV, IRATE
      LOGICAL OPEN
      CHARACTER NAME*20, REASON*12, A*12, B*12
      READ (LU1, REC=NUM) N, OPEN, NAME, IBAL, LIMIT, IHEAD, ITAIL
      WRITE (*, 10) N, NAME
   10 FORMAT ('0ACCOUNT', I6, 3X, A)
      IF (.NOT. OPEN) THEN
         WRITE (*, '(A)') ' CLOSED'
         RETURN
      END IF
      IRUN = 0
      NEXT = IHEAD
   20 IF (NEXT .EQ. 0) GO TO 40
         READ (LU2, REC=NEXT) ID, IA, REASON, NEXT
         IRUN = IRUN + IA
         CALL CENTS (IA, A)
         CALL CENTS (IRUN, B)
         WRITE (*, 30) ID/10000, MOD(ID/100, 100), MOD(ID, 100),
     $      REASON, A, B
   30    FORMAT (4X, I2.2, '-', I2.2, '-', I2.2, 2X, 3A)
      GO TO 20
   40 IF (IRUN .NE. IBAL) WRITE (*, *) '*** BALANCE IS', IBAL
      END
