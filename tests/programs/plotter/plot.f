C     Plots on the line printer.
C
C     A plot is a page of characters held in COMMON /PAGE/; the user
C     calls
C        PLINIT (NCOL, NROW)            size of the field
C        PLSCAL (XMIN, XMAX, YMIN, YMAX)  or PLAUTO (X, Y, N)
C        PLPNTS (X, Y, N, SYMBOL)       points
C        PLCURV (F, SYMBOL)             a function
C        PLLINE (X1, Y1, X2, Y2, SYMBOL)  a straight line
C        PLTEXT (X, Y, TEXT)
C        PLEND (LU, TITLE)              prints it with axes
C
      SUBROUTINE PLINIT (NCOL, NROW)
      INTEGER NCOL, NROW, NC, NR, I
      CHARACTER*120 ROW(60)
      REAL XLO, XHI, YLO, YHI
      COMMON /PAGE/ ROW
      COMMON /PLSIZE/ NC, NR, XLO, XHI, YLO, YHI
      NC = MAX(10, MIN(NCOL, 120))
      NR = MAX(5, MIN(NROW, 60))
      DO 10 I = 1, NR
         ROW(I) = ' '
   10 CONTINUE
      END
C
      SUBROUTINE PLSCAL (XA, XB, YA, YB)
      REAL XA, XB, YA, YB, X(N), Y(N)
      INTEGER N, I, NC, NR
      REAL XLO, XHI, YLO, YHI
      COMMON /PLSIZE/ NC, NR, XLO, XHI, YLO, YHI
      XLO = MIN(XA, XB)
      XHI = MAX(XA, XB)
      YLO = MIN(YA, YB)
      YHI = MAX(YA, YB)
      GO TO 20
C
      ENTRY PLAUTO (X, Y, N)
      XLO = X(1)
      XHI = X(1)
      YLO = Y(1)
      YHI = Y(1)
      DO 10 I = 2, N
         XLO = AMIN1(XLO, X(I))
         XHI = AMAX1(XHI, X(I))
         YLO = AMIN1(YLO, Y(I))
         YHI = AMAX1(YHI, Y(I))
   10 CONTINUE
   20 CALL PLNICE (XLO, XHI)
      CALL PLNICE (YLO, YHI)
      END
C
      SUBROUTINE PLNICE (A, B)
C     Widens a range to round numbers: 1, 2 or 5 times a power of ten
      REAL A, B, STEP, P
      INTEGER K
      IF (A .EQ. B) THEN
         A = A - 1.0
         B = B + 1.0
         RETURN
      END IF
      STEP = (B - A)/5.0
      K = INT(LOG10(STEP))
      IF (STEP .LT. 1.0) K = K - 1
      P = 10.0**K
      IF (STEP/P .LE. 1.0) THEN
         STEP = P
      ELSE IF (STEP/P .LE. 2.0) THEN
         STEP = 2.0*P
      ELSE IF (STEP/P .LE. 5.0) THEN
         STEP = 5.0*P
      ELSE
         STEP = 10.0*P
      END IF
      K = INT(A/STEP)
      IF (K*STEP .GT. A) K = K - 1
      A = K*STEP
      K = INT(B/STEP)
      IF (K*STEP .LT. B) K = K + 1
      B = K*STEP
      END
C
      SUBROUTINE PLDOT (X, Y, SYMBOL)
C     One character, if it is in the field
      REAL X, Y
      CHARACTER*1 SYMBOL
      INTEGER I, J, NC, NR
      REAL XLO, XHI, YLO, YHI
      CHARACTER*120 ROW(60)
      COMMON /PAGE/ ROW
      COMMON /PLSIZE/ NC, NR, XLO, XHI, YLO, YHI
      J = 1 + NINT((X - XLO)/(XHI - XLO)*(NC - 1))
      I = NR - NINT((Y - YLO)/(YHI - YLO)*(NR - 1))
      IF (I .LT. 1 .OR. I .GT. NR .OR. J .LT. 1 .OR. J .GT. NC) RETURN
      IF (ROW(I)(J:J) .EQ. ' ' .OR. ROW(I)(J:J) .EQ. SYMBOL) THEN
         ROW(I)(J:J) = SYMBOL
      ELSE
C        two curves meet
         ROW(I)(J:J) = '#'
      END IF
      END
C
      SUBROUTINE PLPNTS (X, Y, N, SYMBOL)
      REAL X(*), Y(*)
      CHARACTER*(*) SYMBOL
      INTEGER N, I, K
      DO 10 I = 1, N
         K = 1 + MOD(I - 1, LEN(SYMBOL))
         CALL PLDOT (X(I), Y(I), SYMBOL(K:K))
   10 CONTINUE
      END
C
      SUBROUTINE PLCURV (F, SYMBOL)
      REAL F, X
      CHARACTER SYMBOL
      INTEGER J, NC, NR
      REAL XLO, XHI, YLO, YHI
      EXTERNAL F
      COMMON /PLSIZE/ NC, NR, XLO, XHI, YLO, YHI
      DO 10 J = 1, NC
         X = XLO + (J - 1)*(XHI - XLO)/(NC - 1)
         CALL PLDOT (X, F(X), SYMBOL)
   10 CONTINUE
      END
C
      SUBROUTINE PLLINE (X1, Y1, X2, Y2, SYMBOL)
      CHARACTER SYMBOL
      INTEGER J, NC, NR, M
      COMMON /PLSIZE/ NC, NR, XLO, XHI, YLO, YHI
      M = NC + NR
      DO 10 J = 0, M
         T = REAL(J)/M
   10 CALL PLDOT (X1 + T*(X2 - X1), Y1 + T*(Y2 - Y1), SYMBOL)
      END
C
      SUBROUTINE PLTEXT (X, Y, TEXT)
      REAL X, Y, DX
      CHARACTER*(*) TEXT
      INTEGER K, NC, NR
      REAL XLO, XHI, YLO, YHI
      COMMON /PLSIZE/ NC, NR, XLO, XHI, YLO, YHI
      DX = (XHI - XLO)/(NC - 1)
      DO 10 K = 1, LEN(TEXT)
         CALL PLDOT (X + (K - 1)*DX, Y, TEXT(K:K))
   10 CONTINUE
      END
C
      SUBROUTINE PLEND (LU, TITLE)
C     Numbers at every fifth row and under every twentieth column
      INTEGER LU, I, J, NC, NR, NTICK
      REAL XLO, XHI, YLO, YHI, Y
      CHARACTER*(*) TITLE
      CHARACTER*120 ROW(60), AXIS
      CHARACTER FMT*40
      COMMON /PAGE/ ROW
      COMMON /PLSIZE/ NC, NR, XLO, XHI, YLO, YHI
      WRITE (LU, 10) TITLE
   10 FORMAT (/ T15, A)
      DO 40 I = 1, NR
         IF (MOD(NR - I, 5) .EQ. 0) THEN
            Y = YLO + (NR - I)*(YHI - YLO)/(NR - 1)
            WRITE (LU, 20) Y, '+', ROW(I)(1:NC)
   20       FORMAT (1X, 1P, G11.3, 1X, A, A, '|')
         ELSE
            WRITE (LU, 30) '|', ROW(I)(1:NC)
   30       FORMAT (13X, A, A, '|')
         END IF
   40 CONTINUE
      AXIS = ' '
      NTICK = (NC - 1)/20 + 1
      DO 50 J = 1, NC
         AXIS(J:J) = '-'
         IF (MOD(J - 1, 20) .EQ. 0) AXIS(J:J) = '+'
   50 CONTINUE
      WRITE (LU, '(14X,A)') AXIS(:NC)
C     a format that is made up at run time
      WRITE (FMT, 60) NTICK
   60 FORMAT ('(4X,', I2, '(F12.3,8X))')
      WRITE (LU, FMT) (XLO + 20*J*(XHI - XLO)/(NC - 1), J = 0, NTICK-1)
      END
