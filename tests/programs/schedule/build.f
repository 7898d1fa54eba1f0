C     PLANS THE BUILDING OF A HOUSE, CUTS THE TIMBER, LOADS THE CART
      PROGRAM BUILD
      USE PROJCT
      USE BINPAK
      INTEGER STARTS(MAXJOB), CREW(2)
      TYPE (DATE) FIRST, READY
      REAL TIMBER(12)
      INTEGER BOX(12), WEIGHT(6), WORTH(6)
      LOGICAL TAKE(6)
      CHARACTER*11 QFROM, QTO
      NAMELIST /PLAN/ NDAYS, NLEVEL, CREW
      DATA CREW /3, 1/
      DATA TIMBER /2.4, 3*1.1, 2*0.7, 3.0, 2.2, 1.9, 0.4, 2*1.5/
      DATA WEIGHT, WORTH /12, 2, 1, 1, 4, 7, 4, 2, 2, 1, 10, 6/

      CALL ENTER ('SURVEY', 2, (/1/))
      CALL ENTER ('DIG', 4, (/2, 1/), (/'SURVEY'/))
      CALL ENTER ('ORDER WOOD', 6)
      CALL ENTER ('FOUNDATION', 3, AFTER=(/'DIG'/), NEEDS=(/3/))
      CALL ENTER ('FRAME', 5, (/2, 1/),
     +            (/'FOUNDATION', 'ORDER WOOD'/))
      CALL ENTER ('ROOF', 3, (/2, 1/), (/'FRAME'/))
      CALL ENTER ('WIRING', 4, (/1, 0/), (/'FRAME'/))
      CALL ENTER ('PIPES', 4, (/1, 1/), (/'FRAME'/), STATUS=IBAD)
      CALL ENTER (NAME='PAINT', LENGTH=2, NEEDS=(/2/),
     +            AFTER=(/'ROOF  ', 'WIRING', 'PIPES '/),
     +            STATUS = JBAD)
      IF (IBAD + JBAD .NE. 0) STOP 3
      CALL TIMES (NDAYS)
      CALL LEVEL (CREW, STARTS, NLEVEL)
      CALL GANTT (STARTS)
      WRITE (*, NML=PLAN)
      WRITE (*, '(1X, A, 2F7.1)') 'USED', (FUSED(I, CREW(I), NLEVEL),
     +                                    I = 1, 2)

      FIRST = DATE(1996, 2, 26)
      CALL WORKED (FIRST, NLEVEL, READY)
      QFROM = DTEXT(FIRST)
      QTO = DTEXT(READY)
      PRINT *, 'FROM ', WTEXT(FIRST), QFROM
      PRINT *, 'TO   ', WTEXT(READY), QTO,
     +   DAYNUM(READY) - DAYNUM(1996, 2, 26)

      CALL PACK1 (TIMBER, 4.0, BOX, N)
      WRITE (*, 10) N, SUM(TIMBER)/4.0, BOX
   10 FORMAT (1X, I3, ' BEAMS, AT LEAST', F5.2, ':', 12I3)
      CALL KNAPSK (WEIGHT, WORTH, 15, TAKE, N)
      WRITE (*, 20) N, (I, I = 1, 6)
      WRITE (*, 30) TAKE
   20 FORMAT (' WORTH', I4, ' WITH', 6I2)
   30 FORMAT (T17, 6L2)
      END
