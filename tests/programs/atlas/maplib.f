C***********************************************************************
C     MAPLIB - PROJECTIONS OF THE EARTH ONTO THE PLANE
C
C     CALL MPINIT once, with the ellipsoid's name, then any of
C        MERCAT  cylinder, true angles        MERINV  and back
C        LAMBRT  cone, true angles            LAMINV  and back
C        EQAREA  cylinder, true areas         EQAINV  and back
C     Angles are in degrees, lengths in metres. All are entries of one
C     subroutine, for they share the constants of the ellipsoid.
C***********************************************************************
      BLOCK DATA MPDATA
      IMPLICIT DOUBLE PRECISION (A-H, O-Z)
      PARAMETER (NELL = 4)
      CHARACTER*8 ELNAME
      COMMON /MPELL/ AXES(2, NELL), IELL
      COMMON /MPNAME/ ELNAME(NELL)
      DATA ELNAME /'SPHERE', 'BESSEL', 'CLARKE', 'GRS80'/
C     AXIS AND FLATTENING (AS 1/F; 0 FOR A BALL)
      DATA AXES / 6371000.D0,   0.D0,
     1            6377397.155D0, 299.1528128D0,
     2            6378206.4D0,  294.9786982D0,
     3            6378137.D0,   298.257222101D0 /
      DATA IELL /0/
      END

      SUBROUTINE MPINIT (NAME, IERR)
      IMPLICIT DOUBLE PRECISION (A-H, O-Z)
      CHARACTER*(*) NAME
      PARAMETER (NELL = 4)
      CHARACTER*8 ELNAME
      COMMON /MPELL/ AXES(2, NELL), IELL
      COMMON /MPNAME/ ELNAME(NELL)
      EXTERNAL MPDATA
      IERR = 0
      DO 10 IELL = 1, NELL
         IF (ELNAME(IELL) .EQ. NAME) RETURN
   10 CONTINUE
      IELL = 1
      IERR = 1
      END

      SUBROUTINE MAPPRO
      IMPLICIT DOUBLE PRECISION (A-H, O-Z)
      DOUBLE PRECISION LAT, LON, LAT0, LON0, LAT1, LAT2
      LOGICAL READY
      SAVE
      PARAMETER (PI = 3.141592653589793D0, RAD = PI/180.D0)
      PARAMETER (NELL = 4)
      COMMON /MPELL/ AXES(2, NELL), IELL
      DATA READY /.FALSE./
C     STATEMENT FUNCTIONS FOR ALL PROJECTIONS
      SQ(X) = X*X
      ESIN(P) = E*SIN(P)
      TSMALL(P) = TAN(PI/4 - P/2) /
     1            ((1 - ESIN(P))/(1 + ESIN(P)))**(E/2)
      EM(P) = COS(P)/SQRT(1 - SQ(ESIN(P)))
      STOP 'MAPPRO IS NOT TO BE CALLED'

      ENTRY MPORIG (LAT0, LON0, LAT1, LAT2)
C     ORIGIN AND THE TWO PARALLELS THAT KEEP THEIR LENGTH
      A = AXES(1, IELL)
      IF (AXES(2, IELL) .GT. 0) THEN
         F = 1/AXES(2, IELL)
         E = SQRT(2*F - F*F)
      ELSE
         E = 0
      END IF
      P0 = LAT0*RAD
      Q0 = LON0*RAD
      P1 = LAT1*RAD
      P2 = LAT2*RAD
      IF (LAT1 .EQ. LAT2) THEN
         CONE = SIN(P1)
      ELSE
         CONE = (LOG(EM(P1)) - LOG(EM(P2))) /
     1          (LOG(TSMALL(P1)) - LOG(TSMALL(P2)))
      END IF
      IF (CONE .NE. 0) THEN
         FSCALE = EM(P1)/(CONE*TSMALL(P1)**CONE)
         RHO0 = A*FSCALE*TSMALL(P0)**CONE
      END IF
      READY = .TRUE.
      RETURN

      ENTRY MERCAT (LAT, LON, X, Y)
      IF (.NOT. READY) GO TO 900
      X = A*TURNED(LON*RAD - Q0)
      Y = -A*LOG(TSMALL(LAT*RAD))
      RETURN

      ENTRY MERINV (X, Y, LAT, LON)
      IF (.NOT. READY) GO TO 900
      T = EXP(-Y/A)
      LAT = TLAT(T, E)/RAD
      LON = TURNED(X/A + Q0)/RAD
      RETURN

      ENTRY LAMBRT (LAT, LON, X, Y)
      IF (.NOT. READY) GOTO 900
      RHO = A*FSCALE*TSMALL(LAT*RAD)**CONE
      THETA = CONE*TURNED(LON*RAD - Q0)
      X = RHO*SIN(THETA)
      Y = RHO0 - RHO*COS(THETA)
      RETURN

      ENTRY LAMINV (X, Y, LAT, LON)
      IF (.NOT. READY) GOTO 900
      RHO = SIGN(SQRT(SQ(X) + SQ(RHO0 - Y)), CONE)
      THETA = ATAN2(X, RHO0 - Y)
      T = (RHO/(A*FSCALE))**(1/CONE)
      LAT = TLAT(T, E)/RAD
      LON = TURNED(THETA/CONE + Q0)/RAD
      RETURN

      ENTRY EQAREA (LAT, LON, X, Y)
      IF (.NOT. READY) GOTO 900
C     ON THE BALL OF THE SAME AXIS
      X = A*COS(P1)*TURNED(LON*RAD - Q0)
      Y = A*SIN(LAT*RAD)/COS(P1)
      RETURN

      ENTRY EQAINV (X, Y, LAT, LON)
      IF (.NOT. READY) GOTO 900
      LAT = ASIN(Y*COS(P1)/A)/RAD
      LON = TURNED(X/(A*COS(P1)) + Q0)/RAD
      RETURN

  900 WRITE (*, *) 'MAPLIB: CALL MPORIG FIRST'
      END

      DOUBLE PRECISION FUNCTION TURNED (ANGLE)
C     THE ANGLE BETWEEN -PI AND PI
      DOUBLE PRECISION ANGLE, PI
      PARAMETER (PI = 3.141592653589793D0)
      TURNED = ANGLE - 2*PI*ANINT(ANGLE/(2*PI))
      END

      DOUBLE PRECISION FUNCTION TLAT (T, E)
C     LATITUDE BY REPEATED INSERTION
      DOUBLE PRECISION T, E, PI, P, PNEW
      PARAMETER (PI = 3.141592653589793D0)
      INTEGER I
      P = PI/2 - 2*ATAN(T)
      DO 10 I = 1, 20
         PNEW = PI/2 - 2*ATAN(T*((1 - E*SIN(P))/(1 + E*SIN(P)))**(E/2))
         IF (ABS(PNEW - P) .LT. 1.D-14) GO TO 20
         P = PNEW
   10 CONTINUE
   20 TLAT = PNEW
      END

      DOUBLE PRECISION FUNCTION GCDIST (LAT1, LON1, LAT2, LON2)
C     GREAT CIRCLE DISTANCE ON THE BALL
      IMPLICIT DOUBLE PRECISION (A-Z)
      PARAMETER (RAD = 3.141592653589793D0/180, RADIUS = 6371000.D0)
      HAV(T) = SIN(0.5D0*T)**2
      H = HAV((LAT2 - LAT1)*RAD) +
     1    COS(LAT1*RAD)*COS(LAT2*RAD)*HAV((LON2 - LON1)*RAD)
      GCDIST = 2*RADIUS*ASIN(MIN(1.D0, SQRT(H)))
      RETURN
      ENTRY COURSE (LAT1, LON1, LAT2, LON2)
C     IN WHICH DIRECTION TO SET OUT, IN DEGREES FROM NORTH
      DLON = (LON2 - LON1)*RAD
      COURSE = ATAN2(SIN(DLON)*COS(LAT2*RAD),
     1   COS(LAT1*RAD)*SIN(LAT2*RAD) -
     2   SIN(LAT1*RAD)*COS(LAT2*RAD)*COS(DLON))/RAD
      COURSE = MOD(COURSE + 360.D0, 360.D0)
      END
