		NAME          RANGED
ROWS
 N  COST
 E  R1
 L  R2
 G  R3
COLUMNS
    X1        COST               1.0   R1                 1.0
    X1        R2                 2.0   R3                -1.0
    X2        COST              -2.5   R2                 1.0
    X3        R1                 1.0   R3                 4.0
RHS
    RHS       R1                 2.0   R2                 8.0
    RHS       R3                -1.0   COST               3.0
RANGES
    RNG       R1                 1.5   R2                 2.0
    RNG       R3                -4.0
BOUNDS
 MI BND       X1
 PL BND       X2
 FR BND       X3
 LO BND       X2                -1.0
 FX BND       X3                 0.5
 BV BND       X1
ENDATA
