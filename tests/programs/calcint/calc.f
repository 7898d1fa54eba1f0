      PROGRAM CALC
C     Runs three programs: primes, a recursion by hand, and one with
C     a mistake.
      INTEGER LU, I, N
      PARAMETER (LU = 9)
      CHARACTER*40 SRC(34)
      LOGICAL OPN
      EXTERNAL INTBD
      DATA (SRC(I), I = 1, 18) /
     1   'REM  PRIMES BY THE SIEVE', 'DIM P(50)', 'FOR I = 2 TO 50',
     2   'IF P(I) = 1 THEN 90', 'LET C = C + 1',
     3   'IF I*I > 50 THEN 90', 'LET J = I*I',
     4   '20 LET P(J) = 1', 'LET J = J + I', 'IF J <= 50 THEN 20',
     5   '90 NEXT I', 'PRINT ''PRIMES TO 50:'', C',
     6   'PRINT ''ROOT OF 2'', SQR(2), MAX(3, 2^3)',
     7   'PRINT -2^2, (1+2)*3-4/2, MOD(17,5)',
     8   'FOR K = 10 TO 1 STEP -4', 'PRINT ''K ='', K', 'NEXT K',
     9   'END' /
      DATA (SRC(I), I = 19, 29) /
     1   'LET A = 1071', 'LET B = 462', 'GOSUB 100', 'PRINT ''GCD'', G',
     2   'END', '100 IF B = 0 THEN 120', 'LET T = MOD(A, B)',
     3   'LET A = B', 'LET B = T', 'GOTO 100', '120 LET G = A' /
      DATA (SRC(I), I = 30, 34) /'RETURN', 'LET X = 1/(2 - 2)',
     1   'PRINT X', 'END', 'STRANGE'/
      INQUIRE (UNIT = LU, OPENED = OPN)
      IF (OPN) STOP 1
      OPEN (LU, STATUS = 'SCRATCH')
      DO 20 N = 1, 3
         REWIND LU
         GO TO (11, 12, 13), N
   11    WRITE (LU, 30) (SRC(I), I = 1, 18)
         GO TO 15
   12    WRITE (LU, 30) (SRC(I), I = 19, 30)
         GO TO 15
   13    WRITE (LU, 30) (SRC(I), I = 31, 34)
   15    END FILE LU
         REWIND LU
         CALL LOAD (LU, *90)
         WRITE (*, '('' PROGRAM'',I2)') N
         CALL RUN
   20 CONTINUE
      STOP
   90 WRITE (*, *) 'CANNOT LOAD'
   30 FORMAT (A)
      END
