      PROGRAM OPDEMO
C     Every routine of ROOTS and MINIM on a problem or two.
      DOUBLE PRECISION X(4), STEP(4), P(4,8), V(8), H(4,4), G(4),
     1   W(4,4), FMIN, XMIN, A, B, C, WEIGHT
      DOUBLE PRECISION CUBIC, WELL, BANANA, POWELL
      EXTERNAL CUBIC, WELL, BANANA, POWELL, CIRPAR
      INTEGER IFLAG, I, NEVAL, LEVEL, KASE
      COMPLEX CO(0:6), Z(6)
      COMMON /MINCNT/ NEVAL, LEVEL
      COMMON /PENWGT/ WEIGHT
      DATA CO /(-6.0,0.0), (11.0,0.0), (-6.0,0.0), (1.0,0.0), 3*(0.,0.)/
      NEVAL = 0
      LEVEL = 1
      WEIGHT = 0.0D0
C
      PRINT *, 'ROOTS OF ONE EQUATION'
      CALL BISECT (CUBIC, 2.0D0, 3.0D0, 1.0D-10, XMIN, IFLAG)
      PRINT 10, 'BISECT', XMIN, IFLAG
      CALL BISECT (CUBIC, 3.0D0, 4.0D0, 1.0D-10, XMIN, IFLAG)
      PRINT 10, 'NONE', XMIN, IFLAG
      CALL SECANT (CUBIC, 2.0D0, 3.0D0, 1.0D-12, XMIN, IFLAG)
      PRINT 10, 'SECANT', XMIN, IFLAG
   10 FORMAT (1X, A10, F16.10, I4)
C
      PRINT *, 'POLYNOMIALS'
      DO 40 KASE = 1, 3
         GO TO (21, 22, 23), KASE
   21    N = 3
         GO TO 30
C        z**5 - 1
   22    DO 25 I = 1, 4
   25       CO(I) = 0.0
         CO(0) = -1.0
         CO(5) = 1.0
         N = 5
         GO TO 30
C        (z**2 + 1)(z - i), which has i twice
   23    CO(0) = (0.0, -1.0)
         CO(1) = (1.0, 0.0)
         CO(2) = (0.0, -1.0)
         CO(3) = (1.0, 0.0)
         N = 3
   30    CALL POLZER (CO, N, Z, IFLAG)
         WRITE (*, 35) KASE, IFLAG, (Z(I), I = 1, N)
   35    FORMAT (1X, 2I3, 3(F12.6,',',F9.6) / (7X,3(F12.6,',',F9.6)))
   40 CONTINUE
C
      PRINT *, 'A SYSTEM OF TWO EQUATIONS'
      X(1) = 1.0D0
      X(2) = 2.0D0
      CALL NEWTSY (CIRPAR, 2, X, 1.0D-13, H, G, IFLAG)
      PRINT 50, X(1), X(2), IFLAG
   50 FORMAT (1X, 2F16.12, I4)
C
      PRINT *, 'MINIMA'
      A = 0.0D0
      B = 0.3D0
      CALL BRACKT (WELL, A, B, C, *900)
      CALL GOLDEN (WELL, MIN(A, C), MAX(A, C), 1.0D-7, XMIN, FMIN)
      PRINT '(1X, A10, F12.6, F14.8)', 'GOLDEN', XMIN, FMIN
      X(1) = -1.2D0
      X(2) = 1.0D0
      STEP(1) = 0.5D0
      STEP(2) = 0.5D0
      CALL SIMPLX (BANANA, 2, X, STEP, 1.0D-12, 2000, P, V, FMIN, IFLAG)
      PRINT 60, (X(I), I = 1, 2)
      X(1) = -1.2D0
      X(2) = 1.0D0
      CALL QNEWTN (BANANA, 2, X, 1.0D-6, H, G, W, FMIN, IFLAG)
      PRINT 60, (X(I), I = 1, 2)
      X(1) = 3.0D0
      X(2) = -1.0D0
      X(3) = 0.0D0
      X(4) = 1.0D0
      CALL QNEWTN (POWELL, 4, X, 1.0D-7, H, G, W, FMIN, IFLAG)
      PRINT '(1X,4F8.3)', (ABS(X(I)), I = 1, 4)
      LEVEL = 0
      X(1) = 0.0D0
      X(2) = 0.0D0
      STEP(1) = 1.0D0
      STEP(2) = 1.0D0
      CALL PENALT (2, X, STEP, 1.0D-12, P, V, FMIN, IFLAG)
      PRINT 60, (X(I), I = 1, 2)
   60 FORMAT (1X, 4F12.4)
      STOP
  900 STOP 1
      END
C
      DOUBLE PRECISION FUNCTION CUBIC (X)
      DOUBLE PRECISION X, WELL
      CUBIC = (X*X - 2.0D0)*X - 5.0D0
      RETURN
      ENTRY WELL (X)
      WELL = (X - 2.5D0)**2*(1.0D0 + 0.1D0*X) - COS(X)
      END
C
      DOUBLE PRECISION FUNCTION BANANA (N, X)
      DOUBLE PRECISION X(N)
      BANANA = 100.0D0*(X(2) - X(1)**2)**2 + (1.0D0 - X(1))**2
      END
C
      DOUBLE PRECISION FUNCTION POWELL (N, X)
      DOUBLE PRECISION X(N)
      POWELL = (X(1) + 10.0D0*X(2))**2 + 5.0D0*(X(3) - X(4))**2
     1       + (X(2) - 2.0D0*X(3))**4 + 10.0D0*(X(1) - X(4))**4
      END
C
      DOUBLE PRECISION FUNCTION OBJPEN (N, X)
C     nearest point to (3,2) in the unit disc, above the line y = 0.8
      DOUBLE PRECISION X(N), WEIGHT, C1, C2
      COMMON /PENWGT/ WEIGHT
      C1 = MAX(0.0D0, X(1)**2 + X(2)**2 - 1.0D0)
      C2 = MAX(0.0D0, 0.8D0 - X(2))
      OBJPEN = (X(1) - 3.0D0)**2 + (X(2) - 2.0D0)**2
     1       + WEIGHT*(C1**2 + C2**2)
      END
C
      SUBROUTINE CIRPAR (N, X, F, A)
C     a circle of radius 2 and a parabola
      INTEGER N
      DOUBLE PRECISION X(N), F(N), A(N,N)
      F(1) = X(1)**2 + X(2)**2 - 4.0D0
      F(2) = X(2) - X(1)**2
      A(1,1) = 2.0D0*X(1)
      A(1,2) = 2.0D0*X(2)
      A(2,1) = -2.0D0*X(1)
      A(2,2) = 1.0D0
      END
