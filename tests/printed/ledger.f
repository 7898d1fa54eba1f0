C     What the printer makes of this program compiles again.
      PROGRAM LEDGER
      INTEGER ACCT(10), I, N, NEXT
      REAL AMOUNT(10), TOTAL, FIRST
      EXTERNAL POST
      N = 0
      TOTAL = 0.0
      ASSIGN 40 TO NEXT
   10 N = N + 1
      READ (*, 100, END = 20) ACCT(N), AMOUNT(N)
      IF (ACCT(N) - 100) 20, 30, 30
   20 N = N - 1
      GO TO 50
   30 GO TO NEXT, (40, 50)
   40 TOTAL = TOTAL + AMOUNT(N)
      IF (N .LT. 10 .AND. TOTAL .GT. -1.0E6) GO TO 10
   50 FIRST = AMOUNT(1)
      DO 60 I = 1, N
         CALL POST(ACCT, AMOUNT, I)
   60 CONTINUE
      IF (N .EQ. 0) THEN
         WRITE (*, *) 'NO ENTRIES'
      ELSE IF (FIRST .GE. 0.0D0) THEN
         WRITE (*, 110) TOTAL, FIRST / TOTAL
      ELSE
         STOP 3
      END IF
  100 FORMAT (I4, F10.2)
  110 FORMAT (' TOTAL', F12.2, ' FIRST ', F6.4)
      END
      SUBROUTINE POST(ACCT, AMOUNT, I)
      INTEGER ACCT(*), I
      REAL AMOUNT(10)
      GO TO (1, 2), MOD(I, 3)
      RETURN
    1 AMOUNT(I) = ABS(AMOUNT(I))
      RETURN
    2 ACCT(I) = ACCT(I) * 2 ** I
      END
