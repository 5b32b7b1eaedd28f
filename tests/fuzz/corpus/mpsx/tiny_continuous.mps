* A small mixed-integer program: every row type, ranges, markers and bound types
NAME          TINY
ROWS
 N  COST
 L  LIM1
  G LIM2
 E  MYEQN
 N  FREE
 G  RNG
COLUMNS
    X1        COST               1.0   LIM1               1.0
    X1        LIM2               1.0
    MARKER    'MARKER'                 'INTORG'
    X2        COST               2.0   LIM1               1.0
    X2        MYEQN             -1.0
    MARKER    'MARKER'                 'INTEND'
    X3        COST              -1.0   MYEQN              1.0
    X3        RNG                1.0   FREE               3.0
    X4        COST               1.0   RNG                1.0
RHS
    RHS       COST              10.0   LIM1               4.0
    RHS       LIM2               1.0   MYEQN              7.0
    RHS       RNG                2.0
RANGES
    RNG       LIM1               2.5   MYEQN             -3.0
    RNG       RNG                4.0
BOUNDS
 UP BND       X1                 4.0
 LI BND       X3                 1.0
 UP BND       X3                 9.0
 MI BND       X4
ENDATA
