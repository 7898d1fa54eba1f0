C     GRAPHLIB - GRAPHS BY ADJACENCY LISTS IN PLAIN ARRAYS
C
C     A GRAPH OF N NODES AND M ARCS IS KEPT IN "FORWARD STAR" FORM:
C     THE ARCS LEAVING NODE I ARE  FIRST(I) ... FIRST(I+1)-1  AND
C     LEAD TO  TO(K)  WITH WEIGHT  W(K).
C     ERRORS ARE COUNTED IN THE COMMON BLOCK /GRFERR/.
C
      SUBROUTINE GSTAR (N, M, IA, IB, WA, FIRST, TO, W, IERR)
C     SORTS ARCS GIVEN AS PAIRS (IA, IB) INTO FORWARD STAR FORM
      INTEGER N, M, IA(M), IB(M), FIRST(N+1), TO(M), IERR
      DOUBLE PRECISION WA(M), W(M)
      INTEGER I, K, L
      INTEGER NERR, LASTER
      CHARACTER*8 WHERE
      COMMON /GRFERR/ NERR, LASTER, WHERE
      IERR = 0
      DO 10 I = 1, N + 1
   10 FIRST(I) = 0
      DO 20 K = 1, M
         IF (IA(K) .LT. 1 .OR. IA(K) .GT. N .OR.
     1       IB(K) .LT. 1 .OR. IB(K) .GT. N) THEN
            IERR   = K
            NERR   = NERR + 1
            LASTER = K
            WHERE  = 'GSTAR'
            RETURN
         ENDIF
         FIRST(IA(K)) = FIRST(IA(K)) + 1
   20 CONTINUE
      L = 1
      DO 30 I = 1, N + 1
         K = FIRST(I)
         FIRST(I) = L
         L = L + K
   30 CONTINUE
C     FILL FROM THE FRONT, THEN PUT THE POINTERS BACK
      DO 40 K = 1, M
         L = FIRST(IA(K))
         TO(L) = IB(K)
         W(L)  = WA(K)
         FIRST(IA(K)) = L + 1
   40 CONTINUE
      DO 50 I = N, 1, -1
   50 FIRST(I+1) = FIRST(I)
      FIRST(1) = 1
      END

      BLOCK DATA GRFBLK
      INTEGER NERR, LASTER
      CHARACTER*8 WHERE
      COMMON /GRFERR/ NERR, LASTER, WHERE
      DATA NERR, LASTER /2*0/, WHERE /' '/
      END

      INTEGER FUNCTION GERRS (NAME)
C     HOW MANY ERRORS THERE WERE; NAME: THE LAST PLACE
      CHARACTER*(*) NAME
      INTEGER GCLEAR
      CHARACTER*8 WHERE
      COMMON /GRFERR/ NERR, LASTER, WHERE
      EXTERNAL GRFBLK
      NAME = WHERE
      GERRS = NERR
      RETURN
C     FORGET THEM
      ENTRY GCLEAR (NAME)
      GCLEAR = NERR
      NERR = 0
      WHERE = NAME
      END

      SUBROUTINE GSHORT (N, FIRST, TO, W, SOURCE, DIST, PRED, HEAP, POS)
C     SHORTEST PATHS FROM SOURCE, WEIGHTS NOT NEGATIVE: NODES NOT YET
C     FINAL ARE KEPT IN A HEAP. HEAP AND POS ARE WORK SPACE OF SIZE N.
      INTEGER N, FIRST(*), TO(*), SOURCE, PRED(N), HEAP(N), POS(N)
      DOUBLE PRECISION W(*), DIST(N), BIG, D
      PARAMETER (BIG = 1.D30)
      INTEGER SIZE, I, J, K, LAST, CHILD
      INTRINSIC MIN
      DO 10 I = 1, N
         DIST(I) = BIG
         PRED(I) = 0
         POS(I)  = 0
   10 CONTINUE
      DIST(SOURCE) = 0.D0
      HEAP(1) = SOURCE
      POS(SOURCE) = 1
      SIZE = 1
C     TAKE THE NEAREST
  100 IF (SIZE .EQ. 0) RETURN
      I = HEAP(1)
      POS(I) = -1
      LAST = HEAP(SIZE)
      SIZE = SIZE - 1
      IF (SIZE .EQ. 0) GO TO 140
      J = 1
  110 CHILD = 2*J
      IF (CHILD .GT. SIZE) GO TO 130
      IF (CHILD .LT. SIZE) THEN
         IF (DIST(HEAP(CHILD+1)) .LT. DIST(HEAP(CHILD)))
     1      CHILD = CHILD + 1
      END IF
      IF (DIST(LAST) .LE. DIST(HEAP(CHILD))) GOTO 130
      HEAP(J) = HEAP(CHILD)
      POS(HEAP(J)) = J
      J = CHILD
      GO TO 110
  130 HEAP(J) = LAST
      POS(LAST) = J
C     LOOK AT ITS ARCS
  140 DO 200 K = FIRST(I), FIRST(I+1) - 1
         J = TO(K)
         D = DIST(I) + W(K)
         IF (POS(J) .LT. 0 .OR. D .GE. DIST(J)) GOTO 200
         DIST(J) = D
         PRED(J) = I
         IF (POS(J) .EQ. 0) THEN
            SIZE = SIZE + 1
            POS(J) = SIZE
         END IF
         CHILD = POS(J)
  150    LAST = CHILD/2
         IF (LAST .GE. 1) THEN
            IF (DIST(HEAP(LAST)) .GT. D) THEN
               HEAP(CHILD) = HEAP(LAST)
               POS(HEAP(CHILD)) = CHILD
               CHILD = LAST
               GO TO 150
            END IF
         END IF
         HEAP(CHILD) = J
         POS(J) = CHILD
  200 CONTINUE
      GO TO 100
      END

      SUBROUTINE GTREE (N, M, IA, IB, WA, ORDER, UNION, INTREE, TOTAL,
     +                  *)
C     SMALLEST SPANNING TREE: ARCS BY RISING WEIGHT, SETS OF NODES
C     JOINED BY THEIR ROOTS. ALTERNATE RETURN IF THERE IS NO TREE.
      INTEGER N, M, IA(M), IB(M), ORDER(M), UNION(N)
      LOGICAL INTREE(M)
      DOUBLE PRECISION WA(M), TOTAL
      INTEGER I, K, L, GAP, IR, JR, LEFT, GROOT
C     SHELL SORT OF THE ARC NUMBERS
      DO 10 K = 1, M
         ORDER(K) = K
   10 INTREE(K) = .FALSE.
      GAP = M
   20 GAP = GAP/2
      IF (GAP .GT. 0) THEN
         DO 40 K = GAP + 1, M
            L = ORDER(K)
            I = K - GAP
   30       IF (I .LE. 0) GO TO 35
            IF (WA(ORDER(I)) .LE. WA(L)) GO TO 35
            ORDER(I+GAP) = ORDER(I)
            I = I - GAP
            GO TO 30
   35       ORDER(I+GAP) = L
   40    CONTINUE
         GO TO 20
      END IF
      DO 50 I = 1, N
   50 UNION(I) = I
      TOTAL = 0
      LEFT = N - 1
      DO 60 K = 1, M
         IF (LEFT .LE. 0) GO TO 70
         L = ORDER(K)
         IR = GROOT(UNION, IA(L))
         JR = GROOT(UNION, IB(L))
         IF (IR .NE. JR) THEN
            UNION(IR) = JR
            INTREE(L) = .TRUE.
            TOTAL = TOTAL + WA(L)
            LEFT = LEFT - 1
         END IF
   60 CONTINUE
   70 IF (LEFT .GT. 0) RETURN 1
      RETURN
      END

      INTEGER FUNCTION GROOT (UNION, I)
C     ROOT OF THE SET OF NODE I, WITH PATHS HALVED ON THE WAY
      INTEGER UNION(*), I
      GROOT = I
   10 IF (UNION(GROOT) .NE. GROOT) THEN
         UNION(GROOT) = UNION(UNION(GROOT))
         GROOT = UNION(GROOT)
         GOTO 10
      ENDIF
      END

      SUBROUTINE GTOPO (N, FIRST, TO, INDEG, SEQ, NSEQ)
C     NODES IN AN ORDER THAT RESPECTS ALL ARCS; NSEQ .LT. N: A CYCLE
      IMPLICIT INTEGER (A - Z)
      DIMENSION FIRST(*), TO(*), INDEG(N), SEQ(N)
      DO 10 I = 1, N
   10 INDEG(I) = 0
      DO 20 K = 1, FIRST(N+1) - 1
   20 INDEG(TO(K)) = INDEG(TO(K)) + 1
      NSEQ = 0
      DO 30 I = 1, N
         IF (INDEG(I) .GT. 0) GO TO 30
         NSEQ = NSEQ + 1
         SEQ(NSEQ) = I
   30 CONTINUE
      HEAD = 1
   40 IF (HEAD .GT. NSEQ) RETURN
      I = SEQ(HEAD)
      DO 50, K = FIRST(I), FIRST(I+1) - 1
         J = TO(K)
         INDEG(J) = INDEG(J) - 1
         IF (INDEG(J) .NE. 0) GO TO 50
         NSEQ = NSEQ + 1
         SEQ(NSEQ) = J
   50 CONTINUE
      HEAD = HEAD + 1
      GO TO 40
      END

      SUBROUTINE GFLOW (N, LDC, CAP, FLOW, S, T, VALUE, QUEUE, PRED)
C     GREATEST FLOW FROM S TO T BY SHORTEST AUGMENTING PATHS;
C     CAPACITIES AND FLOWS ARE SQUARE MATRICES
      INTEGER N, LDC, CAP(LDC,N), FLOW(LDC,N), S, T, VALUE
      INTEGER QUEUE(N), PRED(N), HEAD, TAIL, I, J, BOTTLE, ROOM
C     WHAT IS LEFT ON THE WAY FROM I TO J
      ROOM(I, J) = CAP(I, J) - FLOW(I, J)
      DO 10 J = 1, N
      DO 10 I = 1, N
   10 FLOW(I, J) = 0
      VALUE = 0
   20 DO 30 I = 1, N
         PRED(I) = 0
   30 CONTINUE
      PRED(S) = S
      QUEUE(1) = S
      HEAD = 1
      TAIL = 1
   40 IF (HEAD .GT. TAIL) RETURN
      I = QUEUE(HEAD)
      HEAD = HEAD + 1
      DO 50 J = 1, N
         IF (PRED(J) .EQ. 0 .AND. ROOM(I, J) .GT. 0) THEN
            PRED(J) = I
            TAIL = TAIL + 1
            QUEUE(TAIL) = J
         END IF
   50 CONTINUE
      IF (PRED(T) .EQ. 0) GO TO 40
      BOTTLE = 2147483647
      J = T
   60 IF (J .NE. S) THEN
         BOTTLE = MIN0(BOTTLE, ROOM(PRED(J), J))
         J = PRED(J)
         GOTO 60
      END IF
      J = T
   70 IF (J .NE. S) THEN
         I = PRED(J)
         FLOW(I, J) = FLOW(I, J) + BOTTLE
         FLOW(J, I) = FLOW(J, I) - BOTTLE
         J = I
         GOTO 70
      END IF
      VALUE = VALUE + BOTTLE
      GO TO 20
      END

      SUBROUTINE GCOLOR (N, FIRST, TO, COLOR, NCOL, CHOOSE)
C     COLOURS ONE NODE AFTER THE OTHER WITH THE LOWEST FREE COLOUR;
C     CHOOSE(K) SAYS WHICH NODE IS THE K-TH (A FUNCTION OF THE CALLER)
      INTEGER N, FIRST(*), TO(*), COLOR(N), NCOL, CHOOSE, I, K, L, C
      EXTERNAL CHOOSE
      NCOL = 0
      DO 10 I = 1, N
   10 COLOR(I) = 0
      DO 40 L = 1, N
         I = CHOOSE(L)
         C = 0
   20    C = C + 1
         DO 30 K = FIRST(I), FIRST(I+1) - 1
            IF (COLOR(TO(K)) - C) 30, 20, 30
   30    CONTINUE
         COLOR(I) = C
         NCOL = MAX(NCOL, C)
   40 CONTINUE
      END
