		* A small mixed-integer program: two integer columns, one continuous, maximised.
NAME          TINYMIP
ROWS
 N  PROFIT
 L  CAP1
 L  CAP2
 G  DEMAND
COLUMNS
    MARKER    'MARKER'                 'INTORG'
    X1        PROFIT             5.0   CAP1               2.0
    X1        CAP2               4.0   DEMAND             1.0
    X2        PROFIT             4.0   CAP1               3.0
    X2        CAP2               1.0   DEMAND             1.0
    MARKER    'MARKER'                 'INTEND'
    Y         PROFIT             3.0   CAP1               1.0
    Y         CAP2               2.0
RHS
    RHS       CAP1               5.5   CAP2              11.0
    RHS       DEMAND             1.0
BOUNDS
 UP BND       X1                 3.0
 UP BND       X2                 3.0
 UP BND       Y                  2.5
ENDATA
