C=======================================================================
C     RKFAM - the explicit Runge-Kutta family.
C
C     A method is a table of coefficients (its "tableau") kept in the
C     COMMON block /RKTAB/; RKSEL chooses one by number and RKSTEP does
C     one step of the method chosen last.
C
C        1   Euler                    order 1, 1 stage
C        2   improved Euler (Heun)    order 2, 2 stages
C        3   Kutta's third order      order 3, 3 stages
C        4   classical                order 4, 4 stages
C        5   the 3/8 rule             order 4, 4 stages
C
C     The tables themselves are filled in by BLOCK DATA RKDATA.
C=======================================================================
      BLOCK DATA RKDATA
      INTEGER MAXST, NMETH
      PARAMETER (MAXST = 4, NMETH = 5)
      DOUBLE PRECISION A, B, C
      INTEGER NSTAGE, NORDER, METHOD
      COMMON /RKTAB/ A(MAXST,MAXST,NMETH), B(MAXST,NMETH),
     1               C(MAXST,NMETH), NSTAGE(NMETH), NORDER(NMETH),
     2               METHOD
      CHARACTER*20 TITLE
      COMMON /RKNAME/ TITLE(NMETH)
C
      INTEGER I, J
C
      DATA METHOD /4/
      DATA NSTAGE /1, 2, 3, 2*4/,  NORDER /1, 2, 3, 2*4/
      DATA TITLE /'EULER', 'IMPROVED EULER', 'KUTTA THIRD ORDER',
     1            'CLASSICAL', 'THREE EIGHTHS RULE'/
C     Euler has nothing but one weight.
      DATA ((A(I,J,1), J = 1, MAXST), I = 1, MAXST) /16*0.0D0/
      DATA (B(I,1), I = 1, MAXST) /1.0D0, 3*0.0D0/
      DATA (C(I,1), I = 1, MAXST) /4*0.0D0/
C     Heun
      DATA ((A(I,J,2), J = 1, MAXST), I = 1, MAXST)
     1    /4*0.0D0, 1.0D0, 11*0.0D0/
      DATA (B(I,2), I = 1, MAXST) /2*0.5D0, 2*0.0D0/
      DATA (C(I,2), I = 1, MAXST) /0.0D0, 1.0D0, 2*0.0D0/
C     Kutta
      DATA ((A(I,J,3), J = 1, MAXST), I = 1, MAXST)
     1    /4*0.0D0, 0.5D0, 3*0.0D0, -1.0D0, 2.0D0, 2*0.0D0, 4*0.0D0/
      DATA (B(I,3), I = 1, MAXST)
     1    /0.16666666666666667D0, 0.66666666666666667D0,
     2     0.16666666666666667D0, 0.0D0/
      DATA (C(I,3), I = 1, MAXST) /0.0D0, 0.5D0, 1.0D0, 0.0D0/
C     classical
      DATA ((A(I,J,4), J = 1, MAXST), I = 1, MAXST)
     1    /4*0.0D0,  0.5D0, 3*0.0D0,  0.0D0, 0.5D0, 2*0.0D0,
     2     2*0.0D0, 1.0D0, 0.0D0/
      DATA (B(I,4), I = 1, MAXST)
     1    /0.16666666666666667D0, 2*0.33333333333333333D0,
     2     0.16666666666666667D0/
      DATA (C(I,4), I = 1, MAXST) /0.0D0, 2*0.5D0, 1.0D0/
C     three eighths
      DATA ((A(I,J,5), J = 1, MAXST), I = 1, MAXST)
     1    /4*0.0D0, 0.33333333333333333D0, 3*0.0D0,
     2     -0.33333333333333333D0, 1.0D0, 2*0.0D0,
     3     1.0D0, -1.0D0, 1.0D0, 0.0D0/
      DATA (B(I,5), I = 1, MAXST) /0.125D0, 2*0.375D0, 0.125D0/
      DATA (C(I,5), I = 1, MAXST)
     1    /0.0D0, 0.33333333333333333D0, 0.66666666666666667D0, 1.0D0/
      END
C-----------------------------------------------------------------------
C     RKSEL - select method M.  A number that is none of the table's
C     takes the first alternate return and leaves the choice as it was.
C     RKTITL - the name of the method chosen; RKORD - its order.
C-----------------------------------------------------------------------
      SUBROUTINE RKSEL (M, *)
      INTEGER MAXST, NMETH, M
      PARAMETER (MAXST = 4, NMETH = 5)
      DOUBLE PRECISION A, B, C
      INTEGER NSTAGE, NORDER, METHOD
      COMMON /RKTAB/ A(MAXST,MAXST,NMETH), B(MAXST,NMETH),
     1               C(MAXST,NMETH), NSTAGE(NMETH), NORDER(NMETH),
     2               METHOD
      CHARACTER*20 TITLE
      COMMON /RKNAME/ TITLE(NMETH)
      CHARACTER*(*) NAME
      INTEGER NORD
C
      IF (M .LT. 1 .OR. M .GT. NMETH) RETURN 1
      METHOD = M
      RETURN
C
      ENTRY RKTITL (NAME)
      NAME = TITLE(METHOD)
      RETURN
C
      ENTRY RKORD (NORD)
      NORD = NORDER(METHOD)
      RETURN
      END
C-----------------------------------------------------------------------
C     RKSTEP - one step of length H from T.
C        F      SUBROUTINE F (N, T, Y, DY), the right-hand side
C        Y      the solution at T; at T+H on return
C        W      work, N by MAXST+1
C-----------------------------------------------------------------------
      SUBROUTINE RKSTEP (F, N, T, Y, H, W)
      EXTERNAL F
      INTEGER N, MAXST, NMETH
      PARAMETER (MAXST = 4, NMETH = 5)
      DOUBLE PRECISION T, Y(N), H, W(N,*)
      DOUBLE PRECISION A, B, C
      INTEGER NSTAGE, NORDER, METHOD
      COMMON /RKTAB/ A(MAXST,MAXST,NMETH), B(MAXST,NMETH),
     1               C(MAXST,NMETH), NSTAGE(NMETH), NORDER(NMETH),
     2               METHOD
      INTEGER I, J, K, LAST
      DOUBLE PRECISION SUM
C
      LAST = MAXST + 1
      DO 40 J = 1, NSTAGE(METHOD)
         DO 20 I = 1, N
            SUM = 0.0D0
            DO 10 K = 1, J - 1
               IF (A(J,K,METHOD) .EQ. 0.0D0) GO TO 10
               SUM = SUM + A(J,K,METHOD)*W(I,K)
   10       CONTINUE
            W(I,LAST) = Y(I) + H*SUM
   20    CONTINUE
         CALL F (N, T + C(J,METHOD)*H, W(1,LAST), W(1,J))
   40 CONTINUE
      DO 60 J = 1, NSTAGE(METHOD)
         DO 60 I = 1, N
   60       Y(I) = Y(I) + H*B(J,METHOD)*W(I,J)
      T = T + H
      RETURN
      END
C-----------------------------------------------------------------------
C     RKGO - from T to TEND in NSTEP equal steps.  IERR is 0, or 1 when
C     the request makes no sense.
C-----------------------------------------------------------------------
      SUBROUTINE RKGO (F, N, T, Y, TEND, NSTEP, W, IERR)
      EXTERNAL F
      INTEGER N, NSTEP, IERR, I
      DOUBLE PRECISION T, Y(N), TEND, W(N,*), H, T0
      IERR = 1
      IF (N .LE. 0 .OR. NSTEP .LE. 0) RETURN
      IERR = 0
      T0 = T
      H = (TEND - T)/NSTEP
      DO 10 I = 1, NSTEP
         CALL RKSTEP (F, N, T, Y, H, W)
C        The product gathers no rounding, the sum would.
         T = T0 + I*H
   10 CONTINUE
      T = TEND
      END
C-----------------------------------------------------------------------
C     RKMERS - Merson's method with error control, from T to TEND.
C        TOL    tolerated error per unit of the largest component
C        HINIT  first step to try
C        ISTAT  (1) steps taken  (2) steps refused  (3) evaluations
C     Alternate returns: *1 the step became too small, *2 too many steps
C-----------------------------------------------------------------------
      SUBROUTINE RKMERS (F, N, T, Y, TEND, TOL, HINIT, W, ISTAT, *, *)
      IMPLICIT DOUBLE PRECISION (A-H, O-Z)
      EXTERNAL F
      PARAMETER (MAXTRY = 20000, TINY = 1.0D-13)
      DIMENSION Y(N), W(N,6)
      INTEGER ISTAT(3)
      LOGICAL LAST
      SCALE(U) = MAX(1.0D0, ABS(U))
C
      DO 5 I = 1, 3
    5    ISTAT(I) = 0
      IF (T .EQ. TEND) RETURN
      H = SIGN(ABS(HINIT), TEND - T)
      LAST = .FALSE.
C
      DO 100 ITRY = 1, MAXTRY
         IF (ABS(H) .GE. ABS(TEND - T)) THEN
            H = TEND - T
            LAST = .TRUE.
         END IF
         H3 = H/3.0D0
         CALL F (N, T, Y, W(1,1))
         DO 10 I = 1, N
   10       W(I,6) = Y(I) + H3*W(I,1)
         CALL F (N, T + H3, W(1,6), W(1,2))
         DO 20 I = 1, N
   20       W(I,6) = Y(I) + 0.5D0*H3*(W(I,1) + W(I,2))
         CALL F (N, T + H3, W(1,6), W(1,3))
         DO 30 I = 1, N
   30       W(I,6) = Y(I) + 0.375D0*H3*(W(I,1) + 3.0D0*W(I,3))
         CALL F (N, T + 0.5D0*H, W(1,6), W(1,4))
         DO 40 I = 1, N
   40       W(I,6) = Y(I) + 1.5D0*H3*(W(I,1) - 3.0D0*W(I,3)
     1                                        + 4.0D0*W(I,4))
         CALL F (N, T + H, W(1,6), W(1,5))
         ISTAT(3) = ISTAT(3) + 5
C        The estimate of the local error.
         ERR = 0.0D0
         DO 50 I = 1, N
            E = H3*(W(I,1) - 4.5D0*W(I,3) + 4.0D0*W(I,4)
     1              - 0.5D0*W(I,5))/5.0D0
            ERR = MAX(ERR, ABS(E)/SCALE(Y(I)))
   50    CONTINUE
         IF (ERR .GT. TOL) THEN
            ISTAT(2) = ISTAT(2) + 1
            H = 0.5D0*H
            LAST = .FALSE.
            IF (ABS(H) .LT. TINY*SCALE(T)) RETURN 1
         ELSE
            ISTAT(1) = ISTAT(1) + 1
            DO 60 I = 1, N
   60          Y(I) = Y(I) + 0.5D0*H3*(W(I,1) + 4.0D0*W(I,4) + W(I,5))
            T = T + H
            IF (LAST) GO TO 110
            IF (64.0D0*ERR .LE. TOL) H = 2.0D0*H
         END IF
  100 CONTINUE
      RETURN 2
  110 T = TEND
      RETURN
      END
