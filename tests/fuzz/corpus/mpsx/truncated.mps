NAME          RANGED
ROWS
 N  COST
 E  R1
 L  R2
 G  R3
COLUMNS
    X1        COST               1.0   R1                 1.0
    X1        R2                 2.0   R3                -1.0
    X2      