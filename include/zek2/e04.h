/* Chapter E04: minimisation and mathematical programming — the option machinery.
 *
 * The comprehensive optimisers (E04DGA, E04MFA, E04NCA, E04NFA, E04UCA, E04USA) take their tolerances
 * and limits as optional parameters: keyword phrases such as "Major Iterations Limit = 100" given one
 * line at a time to the solver's string routine, or read from an options file.  Everything lives in
 * four caller-owned state arrays that must stay untouched between calls:
 *
 *   CWSAV  character array, elements of 80 characters (only its length is checked)
 *   LWSAV  logical array (int, zero is false)
 *   IWSAV  integer array
 *   RWSAV  real array
 *
 * Calling order: E04WBA once for the solver, then any number of option calls, then the solver.  The
 * settings sit in blocks of 30 integers and 30 reals inside IWSAV and RWSAV; -11111 (integer) and
 * -11111.0 (real) mean "not set", and each solver run replaces those by defaults computed from the
 * problem's size without keeping the defaults.
 *
 * A keyword phrase: its words are separated by blanks or any of ":,=()"; case does not matter; a
 * keyword may be abbreviated to any unique prefix; the first number after the first word is the value
 * (0.0 when there is none); everything from a "*" on is a comment; at most 72 characters are read.
 * With the list flag on, each line is echoed and bad lines are reported with lines beginning " XXX  ".
 * INFORM is 0 for an accepted line and 5 for a rejected one (keyword unknown or ambiguous); a rejected
 * line changes nothing.
 *
 * Units.  The file routines read from a unit: the int a host gets by storing the FILE * returned by
 * X04_OPEN_INPUT (chapter X04) in an int.  On a 32-bit ABI that int is the stream's address; on a
 * 64-bit ABI it is the address's low 32 bits, and the library finds the stream among those that
 * X04_OPEN_INPUT opened.  A unit number that names no such stream reads as an empty file.  Successive
 * calls on one unit go on reading where the last one stopped, so one file may hold several option
 * sets, each between BEGIN and END.
 */
#ifndef ZEK2_E04_H
#define ZEK2_E04_H

#include "types.h"

ZEK_BEGIN_DECLS

/* Prepares the state arrays for solver RNAME (upper-cased first): "E04DGA", "E04MFA", "E04NCA",
 * "E04NFA", "E04UCA", "E04USA", or "E04NKF", "E04UFF", "E04UGF", "E04UNA", which are only checked for
 * their lengths.  Minimum lengths (LCWSAV, LLWSAV, LIWSAV, LRWSAV): 1, 120, 610, 475 for the six
 * solvers and E04UNA; 1, 20, 380, 285 for E04NKF; 5, 120, 610, 475 for E04UFF; 1, 20, 550, 550 for
 * E04UGF.  Sets the solver's first-call flags and nothing else.
 * Failures (IFAIL): 1 the name is not one of these; 2 an array is too short. */
ZEK_API void E04WBA(const char *rname, char *cwsav, const int *lcwsav, int *lwsav, const int *llwsav, int *iwsav,
                    const int *liwsav, double *rwsav, const int *lrwsav, int *ifail, int rname_len, int cwsav_len)
    ZEK_SYMBOL("q28832");
/* E04WBA with the name length 6 and the CWSAV element length 80. */
ZEK_API void E04WBA_PLAIN(const char *rname, char *cwsav, const int *lcwsav, int *lwsav, const int *llwsav,
                          int *iwsav, const int *liwsav, double *rwsav, const int *lrwsav, int *ifail)
    ZEK_SYMBOL("q81185");

/* A decoder: applies one option line to the state arrays, writing complaints on UNIT when *LIST is
 * nonzero; INFORM 0 or 5.  Each solver family has one (the *_DECODE routines below). */
typedef void (ZEK_CALLBACK *ZekOptionDecoder)(const char *line, const int *list, const int *unit, int *lwsav, int *iwsav,
                                 double *rwsav, int *inform, int line_len);

/* String routines: one option line, with the list flag by reference.  The first call after E04WBA
 * (and the first after each solver run) opens a new list, headed " Calls to E04xxF" when listing. */
ZEK_API void E04DKF(const char *string, const int *list, int *lwsav, int *iwsav, double *rwsav, int *inform,
                    int string_len) ZEK_SYMBOL("q81032");
ZEK_API void E04MHF(const char *string, const int *list, int *lwsav, int *iwsav, double *rwsav, int *inform,
                    int string_len) ZEK_SYMBOL("q63843");
ZEK_API void E04NEF(const char *string, const int *list, int *lwsav, int *iwsav, double *rwsav, int *inform,
                    int string_len) ZEK_SYMBOL("q92932");
ZEK_API void E04NHF(const char *string, const int *list, int *lwsav, int *iwsav, double *rwsav, int *inform,
                    int string_len) ZEK_SYMBOL("q76668");
ZEK_API void E04UEF(const char *string, const int *list, int *lwsav, int *iwsav, double *rwsav, int *inform,
                    int string_len) ZEK_SYMBOL("q11847");
ZEK_API void E04URF(const char *string, const int *list, int *lwsav, int *iwsav, double *rwsav, int *inform,
                    int string_len) ZEK_SYMBOL("q51703");

/* Plain entries of the string routines: INFORM cleared, then the string routine with the list flag
 * off. */
ZEK_API void E04DKF_PLAIN(const char *string, int *lwsav, int *iwsav, double *rwsav, int *inform, int string_len)
    ZEK_SYMBOL("q17644");
ZEK_API void E04MHF_PLAIN(const char *string, int *lwsav, int *iwsav, double *rwsav, int *inform, int string_len)
    ZEK_SYMBOL("q39888");
ZEK_API void E04NEF_PLAIN(const char *string, int *lwsav, int *iwsav, double *rwsav, int *inform, int string_len)
    ZEK_SYMBOL("q96479");
ZEK_API void E04NHF_PLAIN(const char *string, int *lwsav, int *iwsav, double *rwsav, int *inform, int string_len)
    ZEK_SYMBOL("q83303");
ZEK_API void E04UEF_PLAIN(const char *string, int *lwsav, int *iwsav, double *rwsav, int *inform, int string_len)
    ZEK_SYMBOL("q91004");
ZEK_API void E04URF_PLAIN(const char *string, int *lwsav, int *iwsav, double *rwsav, int *inform, int string_len)
    ZEK_SYMBOL("q83722");

/* File routines: read one option set (BEGIN ... END) from *UNIT (see Units above), the list flag by
 * reference.  E04DGA has none.  INFORM: 0 read; 2 end of file inside the set; 3 end of file before
 * BEGIN; 4 ENDRUN met before BEGIN (nothing changed); 5 a bad record or keyword was seen (the rest of
 * the set is still applied). */
ZEK_API void E04MFA_OPTION_FILE(const int *unit, const int *list, int *lwsav, int *iwsav, double *rwsav,
                                int *inform) ZEK_SYMBOL("q90488");
ZEK_API void E04NCA_OPTION_FILE(const int *unit, const int *list, int *lwsav, int *iwsav, double *rwsav,
                                int *inform) ZEK_SYMBOL("q35172");
ZEK_API void E04NFA_OPTION_FILE(const int *unit, const int *list, int *lwsav, int *iwsav, double *rwsav,
                                int *inform) ZEK_SYMBOL("q64680");
ZEK_API void E04UCA_OPTION_FILE(const int *unit, const int *list, int *lwsav, int *iwsav, double *rwsav,
                                int *inform) ZEK_SYMBOL("q25073");
ZEK_API void E04USA_OPTION_FILE(const int *unit, const int *list, int *lwsav, int *iwsav, double *rwsav,
                                int *inform) ZEK_SYMBOL("q80734");
/* Plain entries of the file routines: INFORM cleared, then the file routine with the list flag off. */
ZEK_API void E04MFA_OPTION_FILE_PLAIN(const int *unit, int *lwsav, int *iwsav, double *rwsav, int *inform)
    ZEK_SYMBOL("q54264");
ZEK_API void E04NCA_OPTION_FILE_PLAIN(const int *unit, int *lwsav, int *iwsav, double *rwsav, int *inform)
    ZEK_SYMBOL("q59728");
ZEK_API void E04NFA_OPTION_FILE_PLAIN(const int *unit, int *lwsav, int *iwsav, double *rwsav, int *inform)
    ZEK_SYMBOL("q51867");
ZEK_API void E04UCA_OPTION_FILE_PLAIN(const int *unit, int *lwsav, int *iwsav, double *rwsav, int *inform)
    ZEK_SYMBOL("q89731");
ZEK_API void E04USA_OPTION_FILE_PLAIN(const int *unit, int *lwsav, int *iwsav, double *rwsav, int *inform)
    ZEK_SYMBOL("q97634");

/* Decoders (ZekOptionDecoder): LINE(1:LINE_LEN) applied to the solver's settings; complaints on *UNIT
 * when *LIST is nonzero.  The first call after E04WBA, and the keyword DEFAULTS, reset every setting of
 * the solver to "not set".  The line "*" only does that first-call reset. */
ZEK_API void E04DGA_DECODE(const char *line, const int *list, const int *unit, int *lwsav, int *iwsav,
                           double *rwsav, int *inform, int line_len) ZEK_SYMBOL("q43323");
ZEK_API void E04MFA_DECODE(const char *line, const int *list, const int *unit, int *lwsav, int *iwsav,
                           double *rwsav, int *inform, int line_len) ZEK_SYMBOL("q57186");
ZEK_API void E04NCA_DECODE(const char *line, const int *list, const int *unit, int *lwsav, int *iwsav,
                           double *rwsav, int *inform, int line_len) ZEK_SYMBOL("q97032");
ZEK_API void E04NFA_DECODE(const char *line, const int *list, const int *unit, int *lwsav, int *iwsav,
                           double *rwsav, int *inform, int line_len) ZEK_SYMBOL("q63255");
ZEK_API void E04UCA_DECODE(const char *line, const int *list, const int *unit, int *lwsav, int *iwsav,
                           double *rwsav, int *inform, int line_len) ZEK_SYMBOL("q14067");
ZEK_API void E04USA_DECODE(const char *line, const int *list, const int *unit, int *lwsav, int *iwsav,
                           double *rwsav, int *inform, int line_len) ZEK_SYMBOL("q67350");

/* The options-file reader behind the file routines: reads records of 72 characters from UNIT until
 * END, decoding each with DECODER and writing on PRINT_UNIT while the list flag is on.  INFORM as for
 * the file routines. */
ZEK_API void E04_OPTION_FILE(int unit, int print_unit, ZekOptionDecoder decoder, int list, int *lwsav, int *iwsav,
                             double *rwsav, int *inform) ZEK_SYMBOL("q10146");
ZEK_API void E04_OPTION_FILE_BYREF(const int *unit, const int *print_unit, ZekOptionDecoder decoder,
                                   const int *list, int *lwsav, int *iwsav, double *rwsav, int *inform)
    ZEK_SYMBOL("q94719");

/* Cuts LINE(1:LINE_LEN) (at most 72 characters, nothing from the first "*" on) into tokens at blanks
 * and ":,=()": TOKENS holds MAX_TOKENS slots of TOKEN_LEN characters, each token upper-cased, cut and
 * blank padded, unused slots blank; *NTOKENS is the number found (at most MAX_TOKENS). */
ZEK_API void E04_TOKENISE(const char *line, int max_tokens, int *ntokens, char *tokens, int line_len,
                          int token_len) ZEK_SYMBOL("q75140");
ZEK_API void E04_TOKENISE_BYREF(const char *line, const int *max_tokens, int *ntokens, char *tokens,
                                int line_len, int token_len) ZEK_SYMBOL("q85873");

/* 1 when TOKEN(1:TOKEN_LEN) may be read as a number: digits, "D", "E", "-", "+", "." up to the first
 * blank, with at least one digit, at most one exponent letter, two "-", two "+" and one ".". */
ZEK_API int E04_IS_NUMBER(const char *token, int token_len) ZEK_SYMBOL("q17851");

/* Looks WORD(1:WORD_LEN) up in TABLE, COUNT entries of TABLE_WIDTH characters in ascending order (when
 * ORDERED is nonzero the scan stops at the first entry above the word).  An entry "ITERS:ITERATIONS"
 * is a synonym of the entry ITERATIONS.  *RESULT: the entry's index (one-based) for a unique
 * abbreviation, WORD then replaced by the entry's full keyword; 0 when not found or the word is blank;
 * minus the index of the second candidate when the word is ambiguous. */
ZEK_API void E04_KEY_LOOKUP(int count, const char *table, int ordered, char *word, int *result, int table_width,
                            int word_width) ZEK_SYMBOL("q60812");
ZEK_API void E04_KEY_LOOKUP_BYREF(const int *count, const char *table, const int *ordered, char *word, int *result,
                                  int table_width, int word_width) ZEK_SYMBOL("q61663");

/* ---- Linear programming: the active-set solver ------------------------------------------------ */

/* Minimises CVEC'x (problem type LP, the default) or finds a feasible point (problem type FP) subject
 * to BL <= (x ; A x) <= BU, by a dense active-set method.  Call E04WBA("E04MFA", ...) once, then any
 * E04MHF option calls, then E04MFA.
 *   N >= 1 variables, NCLIN >= 0 general rows; A(LDA, N), LDA >= max(1, NCLIN), is not referenced
 *   when NCLIN = 0; BL, BU (N+NCLIN): bounds of the variables then of the rows, a bound at or beyond
 *   the INFINITE BOUND size (1e20 by default) counts as infinite; CVEC (N) is not referenced for FP.
 *   ISTATE (N+NCLIN): in for a warm start (0 free, 1 at lower bound, 2 at upper, 3 equality; -2, -1
 *   and 4 read as 0), out: -2/-1 violates its lower/upper bound, 0 free, 1/2 in the working set at
 *   its lower/upper bound, 3 equality, 4 held at its value (at most N free variables, NCLIN+1 when
 *   NCLIN < N, are held at once).  X (N): in the start, out the solution.  ITER: iterations taken.
 *   OBJ: the objective at X, or the sum of infeasibilities when no feasible point was found (and
 *   for FP).  AX (NCLIN): A x.  CLAMDA (N+NCLIN): the Lagrange multipliers, 0 outside the working
 *   set.  IWORK (LIWORK >= 2N+3), WORK (LWORK >= 7N + 5 NCLIN + 2 t*t, t = min(N, NCLIN+1), or 7N+1
 *   when NCLIN = 0): workspace; its first three integer cells keep the working set for a later hot
 *   start.  LWSAV, IWSAV, RWSAV: the state arrays of E04WBA.
 * IFAIL (on exit): 0 optimal, or a feasible point found for FP; 1 weak solution (optimal, not
 * unique); 2 unbounded; 3 no feasible point, or the working set cannot be satisfied to the accuracy
 * requested; 4 iteration limit; 6 errors in the input (N, NCLIN, LDA, bounds, ISTATE of a warm
 * start, workspace), all reported with their count; 7 problem type not recognised. */
ZEK_API void E04MFA(const int *n, const int *nclin, const double *a, const int *lda, const double *bl,
                    const double *bu, const double *cvec, int *istate, double *x, int *iter, double *obj,
                    double *ax, double *clamda, int *iwork, const int *liwork, double *work, const int *lwork,
                    int *lwsav, int *iwsav, double *rwsav, int *ifail) ZEK_SYMBOL("q91522");

/* ==== Small minimisers: one dimension, simplex, conjugate gradients, simple bounds ================ */
/*
 * User functions are called through adaptors: a routine takes the user's function and, beside it, the
 * adaptor of its shape (the E04_ADAPT_* routines below); a null adaptor means the library's own.  The
 * adaptor marks the outputs the user is to fill as undefined and calls the user with the addresses of
 * its copies of the scalars.
 *
 * Stop convention of the shapes with IFLAG or MODE: a negative value set by the user ends the run, and
 * IFAIL on return is that value.  A value or gradient that is not finite counts as a failed trial: the
 * step is shortened, and a run that cannot get away from it ends with a failure exit, never IFAIL 0.
 */

/* f(x) of one variable: FC at XC. */
typedef void (ZEK_CALLBACK *ZekE04Funct1)(const double *xc, double *fc, int *iuser, double *ruser);
/* f(x) and f'(x) of one variable. */
typedef void (ZEK_CALLBACK *ZekE04Funct1Grad)(const double *xc, double *fc, double *gc, int *iuser, double *ruser);
/* f(x) of N variables for the simplex method (no user arrays). */
typedef void (ZEK_CALLBACK *ZekE04FunctSimplex)(const int *n, const double *xc, double *fc);
/* Monitor of the simplex method: best and worst value, the simplex SIM(N+1, N) (leading dimension
 * N+1, one vertex per row), N, N+1, and the number of function calls so far. */
typedef void (ZEK_CALLBACK *ZekE04MonitSimplex)(const double *fmin, const double *fmax, const double *sim,
                                               const int *n, const int *is, const int *ncall);
/* Objective and gradient for conjugate gradients: MODE on entry is 2 (value and gradient); a negative
 * MODE on return stops; NSTATE is 1 at the first call. */
typedef void (ZEK_CALLBACK *ZekE04Objfun)(int *mode, const int *n, const double *x, double *objf, double *objgrd,
                                         const int *nstate, int *iuser, double *ruser);
/* f(x) of N variables under bounds: IFLAG on entry 0; negative on return stops. */
typedef void (ZEK_CALLBACK *ZekE04BoundFunct1)(int *iflag, const int *n, const double *xc, double *fc, int *iuser,
                                              double *ruser);
/* f(x) and its gradient GC(N): IFLAG on entry 0 for the value only, 2 for both; negative stops. */
typedef void (ZEK_CALLBACK *ZekE04BoundFunct2)(int *iflag, const int *n, const double *xc, double *fc,
                                              double *gc, int *iuser, double *ruser);
/* Second derivatives at XC: the strict lower triangle by rows in HESLC(LH) (element (i,j), i > j, at
 * (i-1)(i-2)/2 + j) and the diagonal in HESDC(N); GC is the gradient at XC, given.  Negative IFLAG
 * stops. */
typedef void (ZEK_CALLBACK *ZekE04BoundHess2)(int *iflag, const int *n, const double *xc, double *heslc,
                                             const int *lh, double *hesdc, int *iuser, double *ruser);
/* Monitor of the comprehensive bound routines: called every IPRINT iterations (and at the end) with
 * the point, value, gradient, the state of each variable (positive free, -1 on its lower bound, -2
 * on its upper bound, -3 fixed by equal bounds), the iteration and evaluation counts. */
typedef void (ZEK_CALLBACK *ZekE04BoundMonit)(const int *n, const double *xc, const double *fc, const double *gc,
                                             const int *istate, const int *niter, const int *nf, int *iuser,
                                             double *ruser);

/* The adaptors, one per shape: the user's function first, then its scalars by value. */
typedef void (ZEK_CALLBACK *ZekE04AdaptFunct1)(ZekE04Funct1 f, double xc, double *fc, int *iuser, double *ruser);
typedef void (ZEK_CALLBACK *ZekE04AdaptFunct1Grad)(ZekE04Funct1Grad f, double xc, double *fc, double *gc,
                                                  int *iuser, double *ruser);
typedef void (ZEK_CALLBACK *ZekE04AdaptSimplex)(ZekE04FunctSimplex f, int n, const double *xc, double *fc);
typedef void (ZEK_CALLBACK *ZekE04AdaptMonitSimplex)(ZekE04MonitSimplex f, double fmin, double fmax,
                                                    const double *sim, int n, int is, int ncall);
typedef void (ZEK_CALLBACK *ZekE04AdaptObjfun)(ZekE04Objfun f, int *mode, int n, const double *x, double *objf,
                                              double *objgrd, int nstate, int *iuser, double *ruser);
typedef void (ZEK_CALLBACK *ZekE04AdaptBound1)(ZekE04BoundFunct1 f, int *iflag, int n, const double *xc,
                                              double *fc, int *iuser, double *ruser);
typedef void (ZEK_CALLBACK *ZekE04AdaptBound2)(ZekE04BoundFunct2 f, int *iflag, int n, const double *xc,
                                              double *fc, double *gc, int *iuser, double *ruser);
typedef void (ZEK_CALLBACK *ZekE04AdaptHess2)(ZekE04BoundHess2 f, int *iflag, int n, const double *xc,
                                             double *heslc, int lh, double *hesdc, int *iuser, double *ruser);
typedef void (ZEK_CALLBACK *ZekE04AdaptBoundMonit)(ZekE04BoundMonit f, int n, const double *xc, double fc,
                                                  const double *gc, const int *istate, int niter, int nf,
                                                  int *iuser, double *ruser);

ZEK_API void E04_ADAPT_FUNCT1(ZekE04Funct1 f, double xc, double *fc, int *iuser, double *ruser)
    ZEK_SYMBOL("E04_ADAPT_FUNCT1");
ZEK_API void E04_ADAPT_FUNCT1_GRAD(ZekE04Funct1Grad f, double xc, double *fc, double *gc, int *iuser,
                                   double *ruser) ZEK_SYMBOL("E04_ADAPT_FUNCT1_GRAD");
ZEK_API void E04_ADAPT_SIMPLEX(ZekE04FunctSimplex f, int n, const double *xc, double *fc)
    ZEK_SYMBOL("E04_ADAPT_SIMPLEX");
ZEK_API void E04_ADAPT_MONIT_SIMPLEX(ZekE04MonitSimplex f, double fmin, double fmax, const double *sim, int n,
                                     int is, int ncall) ZEK_SYMBOL("E04_ADAPT_MONIT_SIMPLEX");
ZEK_API void E04_ADAPT_OBJFUN(ZekE04Objfun f, int *mode, int n, const double *x, double *objf, double *objgrd,
                              int nstate, int *iuser, double *ruser) ZEK_SYMBOL("E04_ADAPT_OBJFUN");
ZEK_API void E04_ADAPT_BOUND1(ZekE04BoundFunct1 f, int *iflag, int n, const double *xc, double *fc, int *iuser,
                              double *ruser) ZEK_SYMBOL("E04_ADAPT_BOUND1");
ZEK_API void E04_ADAPT_BOUND2(ZekE04BoundFunct2 f, int *iflag, int n, const double *xc, double *fc, double *gc,
                              int *iuser, double *ruser) ZEK_SYMBOL("E04_ADAPT_BOUND2");
ZEK_API void E04_ADAPT_HESS2(ZekE04BoundHess2 f, int *iflag, int n, const double *xc, double *heslc, int lh,
                             double *hesdc, int *iuser, double *ruser) ZEK_SYMBOL("E04_ADAPT_HESS2");
ZEK_API void E04_ADAPT_BOUND_MONIT(ZekE04BoundMonit f, int n, const double *xc, double fc, const double *gc,
                                   const int *istate, int niter, int nf, int *iuser, double *ruser)
    ZEK_SYMBOL("E04_ADAPT_BOUND_MONIT");

/* Minimum of f on [A, B] by a safeguarded bracket search with parabolic steps, function values only.
 * E1 relative accuracy of the minimum (below EPS, or 0, means sqrt(EPS)); E2 absolute accuracy (below
 * EPS means sqrt(EPS)); A < B on entry, and on exit the final bracket around X with F = f(X).  MAXCAL
 * at least 3: the most calls of FUNCT, on exit the calls made.
 * IFAIL: 1 A + E2 >= B or MAXCAL < 3; 2 MAXCAL calls made (X the best point so far); 3 no finite
 * function value was met (X, F the last point tried). */
ZEK_API void E04ABF(ZekE04Funct1 funct, ZekE04AdaptFunct1 adapt, double *e1, double *e2, double *a, double *b,
                    int *maxcal, double *x, double *f, int *iuser, double *ruser, int *ifail) ZEK_SYMBOL("q66846");
/* The same with the first derivative: FUNCT gives f and f'.  G = f'(X) on exit.  Same IFAIL values,
 * MAXCAL at least 2. */
ZEK_API void E04BBF(ZekE04Funct1Grad funct, ZekE04AdaptFunct1Grad adapt, double *e1, double *e2, double *a,
                    double *b, int *maxcal, double *x, double *f, double *g, int *iuser, double *ruser, int *ifail)
    ZEK_SYMBOL("q85184");

/* Unconstrained minimum of f(x), x of N variables, by the simplex method.  X (N): the start, on exit
 * the best vertex, FMIN its value.  TOL: the simplex has converged when the root mean square deviation
 * of its function values is at most TOL (TOL at least EPS).  IW must be N+1.  W1 (N), W2 (N), W3 (N),
 * W4 (N), W5 (N+1), W6 (IW*N) workspace; on exit W6 holds the final simplex (vertex per row, leading
 * dimension N+1) and W5 its values.  MONIT (may be null) is called once per cycle.  MAXCAL: most calls
 * of FUNCT, including those of the test that a converged simplex's best vertex must pass: probes along
 * the axes and a quadratic model's Newton step, at most 2(N^2 + N + 7) calls, finding nothing
 * lower by more than TOL (else the search goes on from the lower point).
 * IFAIL: 1 N < 1, TOL < EPS, IW not N+1 or MAXCAL < 1 (no call of FUNCT); 2 MAXCAL calls made; 3 no
 * vertex with a finite value. */
ZEK_API void E04CCF(const int *n, double *x, double *fmin, const double *tol, const int *iw, double *w1,
                    double *w2, double *w3, double *w4, double *w5, double *w6, ZekE04FunctSimplex funct,
                    ZekE04MonitSimplex monit, const int *maxcal, int *ifail) ZEK_SYMBOL("q87255");
/* The simplex core behind E04CCF, with the adaptors of FUNCT and MONIT. */
ZEK_API void E04CC_CORE(const int *n, double *x, double *fmin, const double *tol, const int *iw, double *w1,
                        double *w2, double *w3, double *w4, double *w5, double *w6, ZekE04FunctSimplex funct,
                        ZekE04AdaptSimplex funct_adapt, ZekE04MonitSimplex monit,
                        ZekE04AdaptMonitSimplex monit_adapt, const int *maxcal, int *ifail) ZEK_SYMBOL("q70109");

/* Unconstrained minimum of a smooth f by nonlinear conjugate gradients (memoryless quasi-Newton
 * directions with restarts).  Call E04WBA("E04DGA", ...) once, then any E04DKF option calls, then
 * E04DGA.  ITER: iterations made.  OBJF, OBJGRD (N): value and gradient at X on exit.  X (N): start
 * and solution.  IWORK (N+1), WORK (13N) workspace.
 * IFAIL: 0 optimal; 3 iteration limit; 4 the step bound (Maximum Step Length) is too small; 6 the
 * point cannot be improved upon (also a start where f is not finite); 7 the gradient check failed;
 * 8 the gradient at the start is too small; 9 N < 1; negative: MODE set negative by OBJFUN. */
ZEK_API void E04DGA(const int *n, ZekE04Objfun objfun, ZekE04AdaptObjfun adapt, int *iter, double *objf,
                    double *objgrd, double *x, int *iwork, double *work, int *iuser, double *ruser, int *lwsav,
                    int *iwsav, double *rwsav, int *ifail) ZEK_SYMBOL("q63784");
/* ---- Bound-constrained minimisation ---- */
/*
 * IBOUND says how BL and BU are read: 0 each variable's bounds given in BL(j) <= x(j) <= BU(j); 1 no
 * bounds (BL, BU set to -1e20 and 1e20); 2 x >= 0 (BL 0, BU absent); 3 one pair BL(1) <= x(j) <= BU(1) for
 * every j.  A bound of magnitude 1e20 or more counts as absent.  Equal bounds fix a variable.
 * IW (LIW >= N+2) on exit: IW(j) positive when x(j) is free, -1 on its lower bound, -2 on its upper,
 * -3 fixed by equal bounds; IW(N+1) iterations, IW(N+2) function evaluations.  W (LW) on exit begins with the
 * final second-derivative estimate (its diagonal, N, then the strict lower triangle by rows, at least
 * one cell): the inverse estimate of the quasi-Newton methods, the Hessian of the Newton ones; E04JYF
 * then holds the gradient (N) by differences.
 * IFAIL: 1 bad arguments (N < 1, IBOUND outside 0..3, crossed bounds, short LIW or LW, no evaluation
 * made); 2 evaluation limit reached; 3 no further progress with a gradient not small; 5 to 8 no
 * further progress, graded by the size of the projected gradient (5 best); 9 the function (or gradient)
 * is not finite at the start; 10 the gradient check at the start failed; 11 the Hessian check failed;
 * negative: the user's IFLAG.
 */
ZEK_API void E04JYF(const int *n, const int *ibound, ZekE04BoundFunct1 funct1, ZekE04AdaptBound1 adapt, double *bl,
                    double *bu, double *x, double *f, int *iw, const int *liw, double *w, const int *lw, int *iuser,
                    double *ruser, int *ifail) ZEK_SYMBOL("q99096");
ZEK_API void E04KYF(const int *n, const int *ibound, ZekE04BoundFunct2 funct2, ZekE04AdaptBound2 adapt, double *bl,
                    double *bu, double *x, double *f, double *g, int *iw, const int *liw, double *w, const int *lw,
                    int *iuser, double *ruser, int *ifail) ZEK_SYMBOL("q70509");
ZEK_API void E04KZF(const int *n, const int *ibound, ZekE04BoundFunct2 funct2, ZekE04AdaptBound2 adapt, double *bl,
                    double *bu, double *x, double *f, double *g, int *iw, const int *liw, double *w, const int *lw,
                    int *iuser, double *ruser, int *ifail) ZEK_SYMBOL("q21895");
ZEK_API void E04LYF(const int *n, const int *ibound, ZekE04BoundFunct2 funct2, ZekE04AdaptBound2 adapt,
                    ZekE04BoundHess2 hess2, ZekE04AdaptHess2 hadapt, double *bl, double *bu, double *x, double *f,
                    double *g, int *iw, const int *liw, double *w, const int *lw, int *iuser, double *ruser,
                    int *ifail) ZEK_SYMBOL("q43892");
/* The comprehensive forms: IPRINT (monitor every IPRINT iterations, none when negative, 0 only at the
 * end), MAXCAL, ETA (0 <= ETA < 1), XTOL (>= 0), DELTA (difference interval of the Hessian of E04KDF,
 * 0 for the default sqrt(EPS)), STEPMX (>= XTOL), FEST (an estimate of the value at the minimum: when
 * below F at the start it bounds the first step), ICHECK (nonzero: check the derivatives at the start).  HESL (LH >=
 * max(1, N(N-1)/2)) and HESD (N) give back the final estimate; ISTATE (N) the state of each variable;
 * NITER, NF the counts.  IW (LIW >= 1) is not used; W (LW >= 7N + max(1, N(N-1)/2)).  E04KDF is the
 * modified Newton method on differences of the gradient, E04LBF on the user's Hessian. */
ZEK_API void E04KDF(const int *n, ZekE04BoundFunct2 funct2, ZekE04AdaptBound2 adapt, ZekE04BoundMonit monit,
                    ZekE04AdaptBoundMonit madapt, const int *iprint, const int *maxcal, const double *eta,
                    const double *xtol, const double *delta, const double *stepmx, const double *fest,
                    const int *ibound, double *bl, double *bu, double *x, double *hesl, const int *lh, double *hesd,
                    int *istate, double *f, double *g, int *niter, int *nf, const int *icheck, int *iw,
                    const int *liw, double *w, const int *lw, int *iuser, double *ruser, int *ifail)
    ZEK_SYMBOL("q52750");
ZEK_API void E04LBF(const int *n, ZekE04BoundFunct2 funct2, ZekE04AdaptBound2 adapt, ZekE04BoundHess2 hess2,
                    ZekE04AdaptHess2 hadapt, ZekE04BoundMonit monit, ZekE04AdaptBoundMonit madapt,
                    const int *iprint, const int *maxcal, const double *eta, const double *xtol,
                    const double *stepmx, const int *ibound, double *bl, double *bu, double *x, double *hesl,
                    const int *lh, double *hesd, int *istate, double *f, double *g, int *niter, int *nf,
                    const int *icheck, int *iw, const int *liw, double *w, const int *lw, int *iuser,
                    double *ruser, int *ifail) ZEK_SYMBOL("q26255");

/* The cores and checks behind the bound-constrained drivers.  The cores run from X (moved into the
 * bounds) with the bounds as given (magnitude 1e20 or more is absent), keep the estimate in HDIAG (N)
 * and HLOWER (max(1, N(N-1)/2)), and use W (7N, and N(N-1)/2 more, at least one, for the Newton
 * cores) as scratch.  ISTATE (N) as IW of the drivers; NITER, NF the counts.  INFORM: 0 converged, 2
 * evaluation limit, 3 no progress with a large gradient, 5 stalled (the drivers grade 3 and 5), 9 the
 * start is not finite, negative the user's IFLAG.  ETA, XTOL, STEPMX as for E04KDF; DELTA the
 * difference interval of the difference Hessian (0 for sqrt(EPS)).  MONIT is called every IPRINT
 * iterations and at the end when IPRINT >= 0 (may be null). */
ZEK_API void E04JYU(const int *n, ZekE04BoundFunct1 funct1, ZekE04AdaptBound1 adapt, const double *bl,
                    const double *bu, double *x, double *f, double *g, int *istate, double *hdiag, double *hlower,
                    double *w, const int *maxcal, const double *eta, const double *xtol, const double *stepmx,
                    int *iuser, double *ruser, int *niter, int *nf, int *inform) ZEK_SYMBOL("q65709");
/* Quasi-Newton core with the user's gradient (E04KYF's). */
ZEK_API void E04KYY(const int *n, ZekE04BoundFunct2 funct2, ZekE04AdaptBound2 adapt, ZekE04BoundMonit monit,
                    ZekE04AdaptBoundMonit madapt, const int *iprint, const double *bl, const double *bu, double *x,
                    double *f, double *g, int *istate, double *hdiag, double *hlower, double *w, const int *maxcal,
                    const double *eta, const double *xtol, const double *stepmx, int *iuser, double *ruser,
                    int *niter, int *nf, int *inform) ZEK_SYMBOL("q27956");
/* Modified Newton core on a Hessian by differences of the gradient (E04KZF's). */
ZEK_API void E04KZ_CORE(const int *n, ZekE04BoundFunct2 funct2, ZekE04AdaptBound2 adapt, ZekE04BoundMonit monit,
                        ZekE04AdaptBoundMonit madapt, const int *iprint, const double *bl, const double *bu,
                        double *x, double *f, double *g, int *istate, double *hdiag, double *hlower, double *w,
                        const int *maxcal, const double *eta, const double *xtol, const double *stepmx,
                        const double *delta, int *iuser, double *ruser, int *niter, int *nf, int *inform)
    ZEK_SYMBOL("q81515");
/* The same core as E04KZ_CORE (one body under both symbols), under the comprehensive E04KDF. */
ZEK_API void E04KD_CORE(const int *n, ZekE04BoundFunct2 funct2, ZekE04AdaptBound2 adapt, ZekE04BoundMonit monit,
                        ZekE04AdaptBoundMonit madapt, const int *iprint, const double *bl, const double *bu,
                        double *x, double *f, double *g, int *istate, double *hdiag, double *hlower, double *w,
                        const int *maxcal, const double *eta, const double *xtol, const double *stepmx,
                        const double *delta, int *iuser, double *ruser, int *niter, int *nf, int *inform)
    ZEK_SYMBOL("q22228");
/* Modified Newton core with the user's Hessian (E04LYF's). */
ZEK_API void E04LY_CORE(const int *n, ZekE04BoundFunct2 funct2, ZekE04AdaptBound2 adapt, ZekE04BoundHess2 hess2,
                        ZekE04AdaptHess2 hadapt, ZekE04BoundMonit monit, ZekE04AdaptBoundMonit madapt,
                        const int *iprint, const double *bl, const double *bu, double *x, double *f, double *g,
                        int *istate, double *hdiag, double *hlower, double *w, const int *maxcal, const double *eta,
                        const double *xtol, const double *stepmx, int *iuser, double *ruser, int *niter, int *nf,
                        int *inform) ZEK_SYMBOL("q27859");
/* Checks the user's gradient G at X (F the value there) against central differences along one
 * direction; W (3N).  INFORM 0 good, 1 bad, negative the user's IFLAG. */
ZEK_API void E04KYU(const int *n, ZekE04BoundFunct2 funct2, ZekE04AdaptBound2 adapt, const double *x,
                    const double *f, const double *g, double *w, int *iuser, double *ruser, int *inform)
    ZEK_SYMBOL("q64223");
/* Checks the user's Hessian at X (G the gradient there) against differences of the gradient along one
 * direction; HDIAG, HLOWER receive the user's Hessian; W (3N).  INFORM as E04KYU. */
ZEK_API void E04LYZ(const int *n, ZekE04BoundFunct2 funct2, ZekE04AdaptBound2 adapt, ZekE04BoundHess2 hess2,
                    ZekE04AdaptHess2 hadapt, const double *x, const double *g, double *hdiag, double *hlower,
                    double *w, int *iuser, double *ruser, int *inform) ZEK_SYMBOL("q53634");
/* Difference intervals H (N) for gradients by values at X (F its value), within the bounds; W (N).
 * INFORM 0, or the user's negative IFLAG. */
ZEK_API void E04JYZ(const int *n, ZekE04BoundFunct1 funct1, ZekE04AdaptBound1 adapt, const double *bl,
                    const double *bu, const double *x, const double *f, double *h, double *w, int *iuser,
                    double *ruser, int *inform) ZEK_SYMBOL("E04JYZ");

/* ---- Unconstrained nonlinear least squares ---- */

/* The covariance matrix of a least-squares solution, SIGMA2 V_K diag(S_K)^-2 V_K', from the singular
 * values S (N, descending) and right singular vectors V (LV >= N by N, as columns) of the Jacobian at the
 * solution; K counts the values above 10*EPS*S(1) and SIGMA2 = FSUMSQ/(M-K), 0 when K = M.  JOB -1:
 * V is overwritten with the whole matrix; JOB 0: CJ (N) receives its diagonal (the variances); JOB j,
 * 1 <= j <= N: CJ receives its column j.  WORK (LWORK >= N).
 * Arguments, in order: JOB, M, N, FSUMSQ, S, V, LV, CJ, WORK, LWORK, IFAIL.
 * IFAIL: 1 N < 1, M < N, JOB outside -1..N, FSUMSQ < 0, LV < N or LWORK < N; 2 no value accepted (all
 * zero); 3 only K < N values accepted: the result is formed on the accepted directions. */
ZEK_API void E04YCF(const int *job, const int *m, const int *n, const double *fsumsq, const double *s, double *v,
                    const int *lv, double *cj, double *work, const int *lwork, int *ifail) ZEK_SYMBOL("q39421");

/* Residuals of a least-squares problem: FVEC (M) at XC (N); IFLAG on entry 0 (residuals only) or 2
 * (residuals and Jacobian FJAC (LJ, N), FJAC(i,j) = d f_i / d x_j); a negative IFLAG on return stops. */
typedef void (ZEK_CALLBACK *ZekE04LsqFun)(int *iflag, const int *m, const int *n, const double *xc, double *fvec,
                                         double *fjac, const int *lj, int *iuser, double *ruser);
/* Residuals only, for the routines that difference them. */
typedef void (ZEK_CALLBACK *ZekE04LsqFunDiff)(int *iflag, const int *m, const int *n, const double *xc,
                                             double *fvec, int *iuser, double *ruser);
/* Monitor: the point, residuals, Jacobian, its singular values S (N), IGRADE (the number of singular
 * values taken for the step), the counts. */
typedef void (ZEK_CALLBACK *ZekE04LsqMon)(const int *m, const int *n, const double *xc, const double *fvec,
                                         const double *fjac, const int *lj, const double *s, const int *igrade,
                                         const int *niter, const int *nf, int *iuser, double *ruser);
typedef void (ZEK_CALLBACK *ZekE04AdaptLsq)(ZekE04LsqFun f, int *iflag, int m, int n, const double *xc,
                                           double *fvec, double *fjac, int lj, int *iuser, double *ruser);
typedef void (ZEK_CALLBACK *ZekE04AdaptLsqDiff)(ZekE04LsqFunDiff f, int *iflag, int m, int n, const double *xc,
                                               double *fvec, int *iuser, double *ruser);
typedef void (ZEK_CALLBACK *ZekE04AdaptLsqMon)(ZekE04LsqMon f, int m, int n, const double *xc, const double *fvec,
                                              const double *fjac, int lj, const double *s, int igrade, int niter,
                                              int nf, int *iuser, double *ruser);
ZEK_API void E04_ADAPT_LSQ(ZekE04LsqFun f, int *iflag, int m, int n, const double *xc, double *fvec, double *fjac,
                           int lj, int *iuser, double *ruser) ZEK_SYMBOL("E04_ADAPT_LSQ");
ZEK_API void E04_ADAPT_LSQ_DIFF(ZekE04LsqFunDiff f, int *iflag, int m, int n, const double *xc, double *fvec,
                                int *iuser, double *ruser) ZEK_SYMBOL("E04_ADAPT_LSQ_DIFF");
ZEK_API void E04_ADAPT_LSQ_MON(ZekE04LsqMon f, int m, int n, const double *xc, const double *fvec,
                               const double *fjac, int lj, const double *s, int igrade, int niter, int nf,
                               int *iuser, double *ruser) ZEK_SYMBOL("E04_ADAPT_LSQ_MON");

/* The second-order term of the Hessian of (1/2) sum f_i^2, sum f_i(x) f_i''(x), at XC with the residuals
 * FVEC given: B (LB = N(N+1)/2) its lower triangle by rows (element (i,j), i >= j, at i(i-1)/2 + j).
 * A negative IFLAG stops. */
typedef void (ZEK_CALLBACK *ZekE04LsqHes)(int *iflag, const int *m, const int *n, const double *fvec,
                                         const double *xc, double *b, const int *lb, int *iuser, double *ruser);
typedef void (ZEK_CALLBACK *ZekE04AdaptLsqHes)(ZekE04LsqHes f, int *iflag, int m, int n, const double *fvec,
                                              const double *xc, double *b, int lb, int *iuser, double *ruser);
ZEK_API void E04_ADAPT_LSQ_HES(ZekE04LsqHes f, int *iflag, int m, int n, const double *fvec, const double *xc,
                               double *b, int lb, int *iuser, double *ruser) ZEK_SYMBOL("E04_ADAPT_LSQ_HES");

/* Minimum of the sum of squares of M residuals in N variables, M >= N, by trust-region steps in
 * variables scaled by D, each the largest norm its column of J has had: the radius bounds |D p| and
 * starts at |D x| (1 when that is 0).  The model's Hessian is J'J + S, S standing for the second-order
 * term sum f_i f_i'':
 *   E04FCF  S = 0 (Gauss-Newton), the Jacobian by forward differences of the residuals (interval
 *           sqrt(EPS)(1+|x_j|)); with J D^-1 = U diag(s) V' the step for a shift L is
 *           -D^-1 sum s_i (u_i'f)/(s_i^2 + L) v_i over the singular values above 10 EPS s_1.
 *   E04GBF  S a quasi-Newton estimate, updated after every step by the secant condition
 *           S s = (J_new - J_old)' f_new (sized down when it overstates the curvature along s); each
 *           iteration takes the model, Gauss-Newton or J'J + S, whose prediction of the last
 *           reduction was the closer.  LSQHES (may be null) gives the estimate's start at X; null
 *           starts it at zero, and the first step is Gauss-Newton.
 *   E04GDF  S by differences of J'f (N more Jacobians an iteration);
 *   E04HEF  S from the user's LSQHES every iteration.
 * With S carried the step solves (J'J + S + L D^2) p = -J'f with the least L >= 0 that Cholesky
 * accepts and the radius admits; where that model stalls away from a stationary point, the iteration
 * takes the Gauss-Newton step instead.  Arguments, in order:
 *   E04FCF (29): M, N, LSQFUN, its adaptor, LSQMON, its adaptor, IPRINT, MAXCAL, ETA, XTOL, STEPMX, X,
 *                FSUMSQ, FVEC, FJAC, LJ, S, V, LV, NITER, NF, IGRADE, IW, LIW, W, LW, IUSER, RUSER, IFAIL
 *   E04GDF (29): the same, LSQFUN giving the Jacobian
 *   E04GBF, E04HEF (31): M, N, LSQFUN, its adaptor, LSQHES, its adaptor, and then as E04GDF from LSQMON
 * where
 *   LSQMON (may be null) is called every IPRINT iterations (never when IPRINT <= 0) and at the end
 *   (when IPRINT >= 0).  MAXCAL: most calls of LSQFUN (a Jacobian by differences counts N calls of its
 *   own).  ETA (0 <= ETA < 1) is checked and kept for the interface: the trust region has no line
 *   search for it to tune.  XTOL (>= 0): the run ends when a step is below XTOL times |D (1 + |x|)|
 *   (componentwise 1 + |x_j|) and the point is stationary: f nearly orthogonal to the range of
 *   J D^-1 (|D^-1 J'f| <= 1e-6 s_1 |f|) or the Gauss-Newton step itself that short; the
 *   unrestricted Gauss-Newton step is then taken once more unless f rises beyond rounding.  STEPMX
 *   (>= XTOL): the largest step |p|.  X (N): start and solution.  FSUMSQ,
 *   FVEC (M), FJAC (LJ >= M, N): the sum of squares, residuals and Jacobian at X.  S (N), V (LV >= N,
 *   N): singular values and right singular vectors (as columns) of FJAC itself (not of the scaled
 *   matrix), for E04YCF and the monitor.  NITER, NF:
 *   iterations and calls of LSQFUN.  IGRADE: the grade of FJAC at X, the count of its singular values
 *   above 10 EPS s_1 (the rank E04YCF will use).  IW (LIW) is not used.  W (LW): at least
 *   6N + MN + 2M + N(N-1)/2 (E04FCF), 7N + MN + 2M + N*N (the others); 7 + 3M and 9 + 3M when N = 1.
 *   E04GBF leaves its estimate S (N by N) in W from W(MN + M + 8N - 3) on (W(2M + 6) when N = 1).
 * IFAIL: 1 bad arguments (each with its message; LSQHES null for E04HEF); 2 MAXCAL calls made; 3 no
 * lower point could be found although the gradient is not small; 4 the SVD failed; 5 the residuals (or
 * Jacobian) are not finite at the start; negative: the user's IFLAG. */
ZEK_API void E04FCF(const int *m, const int *n, ZekE04LsqFunDiff lsqfun, ZekE04AdaptLsqDiff adapt,
                    ZekE04LsqMon lsqmon, ZekE04AdaptLsqMon madapt, const int *iprint, const int *maxcal,
                    const double *eta, const double *xtol, const double *stepmx, double *x, double *fsumsq,
                    double *fvec, double *fjac, const int *lj, double *s, double *v, const int *lv, int *niter,
                    int *nf, int *igrade, int *iw, const int *liw, double *w, const int *lw, int *iuser,
                    double *ruser, int *ifail) ZEK_SYMBOL("q97527");
ZEK_API void E04GBF(const int *m, const int *n, ZekE04LsqFun lsqfun, ZekE04AdaptLsq adapt, ZekE04LsqHes lsqhes,
                    ZekE04AdaptLsqHes hadapt, ZekE04LsqMon lsqmon, ZekE04AdaptLsqMon madapt, const int *iprint,
                    const int *maxcal, const double *eta, const double *xtol, const double *stepmx, double *x,
                    double *fsumsq, double *fvec, double *fjac, const int *lj, double *s, double *v, const int *lv,
                    int *niter, int *nf, int *igrade, int *iw, const int *liw, double *w, const int *lw,
                    int *iuser, double *ruser, int *ifail) ZEK_SYMBOL("q44667");
ZEK_API void E04GDF(const int *m, const int *n, ZekE04LsqFun lsqfun, ZekE04AdaptLsq adapt, ZekE04LsqMon lsqmon,
                    ZekE04AdaptLsqMon madapt, const int *iprint, const int *maxcal, const double *eta,
                    const double *xtol, const double *stepmx, double *x, double *fsumsq, double *fvec,
                    double *fjac, const int *lj, double *s, double *v, const int *lv, int *niter, int *nf,
                    int *igrade, int *iw, const int *liw, double *w, const int *lw, int *iuser, double *ruser,
                    int *ifail) ZEK_SYMBOL("q34491");
ZEK_API void E04HEF(const int *m, const int *n, ZekE04LsqFun lsqfun, ZekE04AdaptLsq adapt, ZekE04LsqHes lsqhes,
                    ZekE04AdaptLsqHes hadapt, ZekE04LsqMon lsqmon, ZekE04AdaptLsqMon madapt, const int *iprint,
                    const int *maxcal, const double *eta, const double *xtol, const double *stepmx, double *x,
                    double *fsumsq, double *fvec, double *fjac, const int *lj, double *s, double *v, const int *lv,
                    int *niter, int *nf, int *igrade, int *iw, const int *liw, double *w, const int *lw,
                    int *iuser, double *ruser, int *ifail) ZEK_SYMBOL("q57179");
/* The easy forms, one method each: E04FYF as E04FCF, E04GYF as E04GBF (the estimate starting at zero),
 * E04GZF as E04GDF, E04HYF as E04HEF (LSQHES null is IFAIL 1).  MAXCAL 400N (E04FYF), 100N (E04GYF,
 * E04HYF) or 50N(N+1) (E04GZF), XTOL 10 sqrt(EPS), STEPMX 1e5 (1 + |x|).  On exit W holds FVEC (M),
 * FJAC (M by N), S (N) and V (N by N) at X, in that order.  W (LW): at least
 * 7N + N*N + 2MN + 2M + N(N-1)/2 (E04FYF), 8N + 2N*N + 2MN + 3M (the others); 9 + 5M and 11 + 5M when
 * N = 1.  IFAIL as the comprehensive forms. */
ZEK_API void E04FYF(const int *m, const int *n, ZekE04LsqFunDiff lsqfun, ZekE04AdaptLsqDiff adapt, double *x,
                    double *fsumsq, double *w, const int *lw, int *iuser, double *ruser, int *ifail)
    ZEK_SYMBOL("q61699");
ZEK_API void E04GYF(const int *m, const int *n, ZekE04LsqFun lsqfun, ZekE04AdaptLsq adapt, double *x,
                    double *fsumsq, double *w, const int *lw, int *iuser, double *ruser, int *ifail)
    ZEK_SYMBOL("q74490");
ZEK_API void E04GZF(const int *m, const int *n, ZekE04LsqFun lsqfun, ZekE04AdaptLsq adapt, double *x,
                    double *fsumsq, double *w, const int *lw, int *iuser, double *ruser, int *ifail)
    ZEK_SYMBOL("q21132");
ZEK_API void E04HYF(const int *m, const int *n, ZekE04LsqFun lsqfun, ZekE04AdaptLsq adapt, ZekE04LsqHes lsqhes,
                    ZekE04AdaptLsqHes hadapt, double *x, double *fsumsq, double *w, const int *lw, int *iuser,
                    double *ruser, int *ifail) ZEK_SYMBOL("q74721");
/* ---- Quadratic programming and linear least squares ------------------------------------------ */

/* The Hessian routine of E04NFA: HX := H X, X and HX of N elements, with H(LDH, *) the caller's
 * array handed through.  JTHCOL is always 0 (X is a general vector); NSTATE is 1 at the first call of
 * a run and 0 after; IUSER, RUSER are the caller's arrays handed through. */
typedef void (ZEK_CALLBACK *ZekQpHessian)(const int *n, const int *jthcol, const double *h, const int *ldh,
                                          const double *x, double *hx, const int *nstate, int *iuser,
                                          double *ruser);
/* Its adaptor: the scalars by value.  Marks HX (N elements) undefined, then calls QPHESS with the
 * addresses of its copies. */
typedef void (ZEK_CALLBACK *ZekQpHessianAdaptor)(ZekQpHessian qphess, int n, int jthcol, const double *h, int ldh,
                                                 const double *x, double *hx, int nstate, int *iuser,
                                                 double *ruser);
ZEK_API void E04NFA_QPHESS_ADAPTOR(ZekQpHessian qphess, int n, int jthcol, const double *h, int ldh,
                                   const double *x, double *hx, int nstate, int *iuser, double *ruser)
    ZEK_SYMBOL("E04NFA_QPHESS_ADAPTOR");

/* Minimises  CVEC'x + 1/2 x'Hx  (problem types QP2, QP4; QP1, QP3 without the linear term; LP without
 * H; FP a feasible point only) subject to BL <= (x ; A x) <= BU, by an inertia-controlling active-set
 * method: the reduced Hessian is kept positive definite, and a direction of zero or negative curvature
 * is followed to the next constraint, so H may be indefinite.  Call E04WBA("E04NFA", ...) once, then
 * any E04NHF option calls, then E04NFA.  Arguments, in order:
 *   N >= 1, NCLIN >= 0, A(LDA, N) with LDA >= max(1, NCLIN), BL, BU (N+NCLIN), CVEC (N, not read for
 *   FP, QP1, QP3), H(LDH, *): handed to QPHESS; LDH >= 1, and >= N and >= m (m = HESSIAN ROWS) for
 *   the QP types.  QPHESS: the Hessian routine, or null for the library's own product with the leading
 *   m by m part of H (symmetric, upper triangle read).  QPHESS_ADAPTOR: null or E04NFA_QPHESS_ADAPTOR.
 *   ISTATE (N+NCLIN), X (N), ITER, OBJ, AX (NCLIN), CLAMDA (N+NCLIN): as for E04MFA.  IWORK (LIWORK >=
 *   2N+3), WORK (LWORK >= 13N + 5 NCLIN + 4 N*N; N*N fewer when NCLIN = 0): workspace; the first three
 *   cells of IWORK keep the working set for a hot start.  IUSER, RUSER: handed to
 *   QPHESS.  LWSAV, IWSAV, RWSAV: the state arrays of E04WBA.
 * OBJ is CVEC'x + 1/2 x'Hx at a feasible X, else the sum of infeasibilities.
 * IFAIL: 0 optimal (or feasible point for FP); 1 weak (the optimum is not unique: the reduced Hessian
 * is singular, or artificial constraints remain in the working set) or a dead point; 2 unbounded;
 * 3 no feasible point, or the working set cannot be satisfied; 4 iteration limit (FEASIBILITY PHASE
 * plus OPTIMALITY PHASE iterations); 5 the reduced Hessian would exceed MAXIMUM DEGREES; 6 errors in
 * the input (counted), or QPHESS returned a value that is not finite; 7 problem type not recognised. */
ZEK_API void E04NFA(const int *n, const int *nclin, const double *a, const int *lda, const double *bl,
                    const double *bu, const double *cvec, const double *h, const int *ldh, ZekQpHessian qphess,
                    ZekQpHessianAdaptor qphess_adaptor, int *istate, double *x, int *iter, double *obj, double *ax,
                    double *clamda, int *iwork, const int *liwork, double *work, const int *lwork, int *iuser,
                    double *ruser, int *lwsav, int *iwsav, double *rwsav, int *ifail) ZEK_SYMBOL("q98986");

/* Minimises one of (E04NEF's PROBLEM TYPE; "data" is A(LDA, N) with M rows, b is B(M)):
 *   LS1 (default) 1/2 |b - A x|^2          LS2  CVEC'x + 1/2 |b - A x|^2
 *   LS3, LS4      as LS1, LS2 with A upper trapezoidal (only its upper triangle is read)
 *   QP1 1/2 x'Hx   QP2 CVEC'x + 1/2 x'Hx   with H the leading min(M,N) square of A (symmetric, upper
 *                                          triangle read), zero elsewhere
 *   QP3 1/2 |A x|^2   QP4 CVEC'x + 1/2 |A x|^2   with A upper trapezoidal
 *   LP CVEC'x     FP a feasible point
 * subject to BL <= (x ; C x) <= BU.  Arguments, in order:
 *   M >= 1 rows of A, N >= 1, NCLIN >= 0, LDC >= max(1, NCLIN), LDA >= max(1, M), C(LDC, N), BL, BU
 *   (N+NCLIN), CVEC (N), ISTATE (N+NCLIN), KX (N): in for a warm start (a permutation of 1..N), out
 *   the column order of the rank-revealing factorisation of A; X (N), A(LDA, N) and B (M): not changed;
 *   ITER, OBJ, CLAMDA (N+NCLIN); IWORK (LIWORK >= 2N+3), WORK (LWORK >= 17N + 6 NCLIN + M + 4 N*N +
 *   max(M,N)*N; N*N fewer when NCLIN = 0); LWSAV, IWSAV, RWSAV.  The rank of the data (pivoted QR under RANK
 *   TOLERANCE) is printed; a rank below N makes the solution weak where the null space stays open.
 * IFAIL: 0 optimal or feasible point; 1 weak solution; 2 unbounded; 3 the linear constraints cannot be
 * satisfied (no feasible point, or the working set to the accuracy requested); 4 iteration limit;
 * 6 errors in the input (counted), or A'B overflows.  (5 is kept for an iteration limit without any
 * change of X, which the expanding feasibility tolerance rules out.)  HESSIAN YES has no effect: A is not
 * overwritten by a factor.  The iteration limit is FEASIBILITY PHASE plus OPTIMALITY PHASE iterations. */
ZEK_API void E04NCA(const int *m, const int *n, const int *nclin, const int *ldc, const int *lda, const double *c,
                    const double *bl, const double *bu, const double *cvec, int *istate, int *kx, double *x,
                    double *a, double *b, int *iter, double *obj, double *clamda, int *iwork, const int *liwork,
                    double *work, const int *lwork, int *lwsav, int *iwsav, double *rwsav, int *ifail)
    ZEK_SYMBOL("q68352");

/* ---- Sequential quadratic programming, constrained nonlinear least squares ------------------------ */

/* The constraint routine of E04UCA and E04USA: C(NCNLN) and, with MODE 2 on entry, the Jacobian
 * CJAC(LDCJ, N) at X.  MODE on entry is 0 (values only) or 2 (values and Jacobian); NEEDC(NCNLN) is all
 * ones (every constraint is wanted); NSTATE is 1 at the first call of a run, 0 after.  A negative MODE on
 * return stops the run, IFAIL taking that value.  A Jacobian element the routine does not set keeps
 * the value -11111.0 that the solver stores before the first call, and is then estimated by
 * differences at every point. */
typedef void (ZEK_CALLBACK *ZekE04Confun)(int *mode, const int *ncnln, const int *n, const int *ldcj, int *needc,
                                         const double *x, double *c, double *cjac, const int *nstate, int *iuser,
                                         double *ruser);
typedef void (ZEK_CALLBACK *ZekE04ConfunAdaptor)(ZekE04Confun f, int *mode, int ncnln, int n, int ldcj, int *needc,
                                                const double *x, double *c, double *cjac, int nstate, int *iuser,
                                                double *ruser);
/* The objective routine of E04USA: the subfunctions F(M) and, with MODE 2 on entry, their Jacobian
 * FJAC(LDFJ, N), under the rules of the constraint routine. */
typedef void (ZEK_CALLBACK *ZekE04LsqObjfun)(int *mode, const int *m, const int *n, const int *ldfj, const double *x,
                                            double *f, double *fjac, const int *nstate, int *iuser, double *ruser);
typedef void (ZEK_CALLBACK *ZekE04LsqObjfunAdaptor)(ZekE04LsqObjfun f, int *mode, int m, int n, int ldfj,
                                                   const double *x, double *fv, double *fjac, int nstate,
                                                   int *iuser, double *ruser);
/* The adaptors of E04UCA and E04USA (the objective routine of E04UCA has the shape ZekE04Objfun, MODE 0
 * or 2 on entry).  They mark the values (OBJF, F, C) undefined before the call; the gradient and
 * Jacobian arguments are not marked, since the solver reads back what the user left in them. */
ZEK_API void E04UCA_OBJFUN_ADAPTOR(ZekE04Objfun f, int *mode, int n, const double *x, double *objf, double *objgrd,
                                   int nstate, int *iuser, double *ruser) ZEK_SYMBOL("E04UCA_OBJFUN_ADAPTOR");
ZEK_API void E04UCA_CONFUN_ADAPTOR(ZekE04Confun f, int *mode, int ncnln, int n, int ldcj, int *needc,
                                   const double *x, double *c, double *cjac, int nstate, int *iuser, double *ruser)
    ZEK_SYMBOL("E04UCA_CONFUN_ADAPTOR");
ZEK_API void E04USA_OBJFUN_ADAPTOR(ZekE04LsqObjfun f, int *mode, int m, int n, int ldfj, const double *x, double *fv,
                                   double *fjac, int nstate, int *iuser, double *ruser)
    ZEK_SYMBOL("E04USA_OBJFUN_ADAPTOR");

/* Minimises F(x) subject to BL <= ( x ; A x ; c(x) ) <= BU by sequential quadratic programming: each
 * major iteration solves a QP in the step (the library's inertia-controlling QP method) with the
 * quasi-Newton Hessian H = R'R of the Lagrangian, then searches on the augmented Lagrangian merit
 * function; R is updated by damped BFGS with plane rotations.  Call E04WBA("E04UCA", ...), then any
 * E04UEF option calls, then E04UCA.  Arguments, in order (the two adaptors stand right behind their
 * routines; a null adaptor means the library's own):
 *   N >= 1, NCLIN >= 0, NCNLN >= 0, LDA >= max(1,NCLIN), LDCJ >= max(1,NCNLN), LDR >= N,
 *   A(LDA, N), BL, BU (N+NCLIN+NCNLN), CONFUN (not called when NCNLN = 0), CONFUN_ADAPTOR, OBJFUN,
 *   OBJFUN_ADAPTOR, ITER (major iterations), ISTATE (N+NCLIN+NCNLN; read with WARM START), C (NCNLN),
 *   CJAC(LDCJ, N), CLAMDA (N+NCLIN+NCNLN: the multipliers of the last QP; read for the nonlinear rows with
 *   WARM START), OBJF, OBJGRD (N), R(LDR, N) (the upper triangle of the Hessian factor in the natural
 *   variables, whatever HESSIAN says; read with WARM START, replaced when its condition exceeds the
 *   CONDITION bound), X (N), IWORK, LIWORK >= 2N + 3 + NCNLN, WORK, LWORK >= L(N, NCLIN, NCNLN, 1) with
 *   L(n, l, c, k) = max(1,l+c) (n+1) + 3 (k+c) n + 2 (n+l+c) + 8 c + 3 k + 24 n + 5 (l+c) + 4 n n
 *   (3 n n when l+c = 0), IUSER, RUSER (handed to the routines), LWSAV, IWSAV, RWSAV.
 * IFAIL: 0 optimal; 1 optimal but the requested accuracy not achieved; 2 no feasible point for the
 * linear constraints; 3 none for the nonlinear constraints (the linearised constraints stay inconsistent);
 * 4 major iteration limit; 6 the current point cannot be improved upon; 7 large errors in the
 * derivatives (VERIFY level 1 to 3 or 11 to 13); 9 errors in the input (counted; a function value that
 * is not finite at the first point counts as one); negative: the MODE the user set to stop.  The
 * convergence test asks for the nonlinear rows within NONLINEAR FEASIBILITY (relative to 1 + |bound|) and
 * the Lagrangian's gradient (with the multipliers of the last QP) within sqrt(OPTIMALITY TOLERANCE) times
 * 1 + |g|, and the complementarity within that times 1 + |x| (infinity norms).  MAJOR PRINT LEVEL: 1 the
 * result and solution table, 5 short major lines, 10 long lines, 20 a page of values per line, 30 the
 * line-search traces.  Estimated derivatives switch from forward to central differences once the
 * reduced gradient falls to the forward-difference noise (|F - lambda'c| + |F| + 1) EPSRF / h, h the
 * finest forward interval of the estimated columns, or when a line search fails. */
ZEK_API void E04UCA(const int *n, const int *nclin, const int *ncnln, const int *lda, const int *ldcj, const int *ldr,
                    const double *a, const double *bl, const double *bu, ZekE04Confun confun,
                    ZekE04ConfunAdaptor confun_adaptor, ZekE04Objfun objfun, ZekE04AdaptObjfun objfun_adaptor,
                    int *iter, int *istate, double *c, double *cjac, double *clamda, double *objf, double *objgrd,
                    double *r, double *x, int *iwork, const int *liwork, double *work, const int *lwork, int *iuser,
                    double *ruser, int *lwsav, int *iwsav, double *rwsav, int *ifail) ZEK_SYMBOL("q51471");

/* Minimises 1/2 sum (F_i(x) - Y_i)^2 under the constraints of E04UCA, on the same engine (reports as
 * E04USF).  Call E04WBA("E04USA", ...), then any E04URF option calls.  Arguments, in order:
 *   M >= 1, N, NCLIN, NCNLN, LDA, LDCJ, LDFJ >= M, LDR >= N, A, BL, BU, Y (M), CONFUN, CONFUN_ADAPTOR,
 *   OBJFUN, OBJFUN_ADAPTOR, ITER, ISTATE, C, CJAC, F (M), FJAC(LDFJ, N), CLAMDA, OBJF, R, X, IWORK
 *   (LIWORK >= 2N + 3 + NCNLN), WORK (LWORK >= L(N, NCLIN, NCNLN, M) + N), IUSER, RUSER, LWSAV, IWSAV,
 *   RWSAV, IFAIL as E04UCA.  JTJ (default) starts R from the QR factor of FJAC, UNIT from the identity;
 *   every RESET major iterations the factor goes back to that start at the current point. */
ZEK_API void E04USA(const int *m, const int *n, const int *nclin, const int *ncnln, const int *lda, const int *ldcj,
                    const int *ldfj, const int *ldr, const double *a, const double *bl, const double *bu,
                    const double *y, ZekE04Confun confun, ZekE04ConfunAdaptor confun_adaptor,
                    ZekE04LsqObjfun objfun, ZekE04LsqObjfunAdaptor objfun_adaptor, int *iter, int *istate,
                    double *c, double *cjac, double *f, double *fjac, double *clamda, double *objf, double *r,
                    double *x, int *iwork, const int *liwork, double *work, const int *lwork, int *iuser,
                    double *ruser, int *lwsav, int *iwsav, double *rwsav, int *ifail) ZEK_SYMBOL("q34222");

/* Steps of the SQP engine, exported for the host's table.  All but E04_HESSIAN_UPDATE act on the run
 * state that only E04UCA and E04USA build (STATE), so they have no use outside the library:
 * the whole run after the input check (E04UCA's; q19873 the same for E04USA), the QP subproblem, the line
 * search from the saved point with the upper step, merit value, slope and curvature.
 * E04_HESSIAN_UPDATE is self-contained: the BFGS update of the upper triangle R(LDR, N) with the step S
 * and the gradient change Y (damped in place so that S'Y >= 0.2 S'HS), WORK of 2N reals; INFORM 0
 * updated, 1 skipped (no usable curvature), -1 N < 1 or LDR < N. */
ZEK_API void E04_NP_MAJOR(void *state, int *inform) ZEK_SYMBOL("q94846");
ZEK_API void E04_NL_MAJOR(void *state, int *inform) ZEK_SYMBOL("q19873");
ZEK_API void E04_QP_SUBPROBLEM(void *state, const int *first, int *inform) ZEK_SYMBOL("q49086");
ZEK_API void E04_LINE_SEARCH(void *state, const double *alfmax, const double *merit, const double *slope,
                             const double *curvature, int *inform) ZEK_SYMBOL("q12390");
/* The two step-length searches that E04_LINE_SEARCH dispatches to (with every derivative given, the
 * first; with some estimated, the second), from the saved point with the upper step, merit value and
 * slope; INFORM as E04_LINE_SEARCH's.  The host's table gives them no symbol. */
ZEK_API void E04_SEARCH_WITH_GRADIENT(void *state, const double *alfmax, const double *merit, const double *slope,
                                      int *inform) ZEK_SYMBOL("E04_SEARCH_WITH_GRADIENT");
ZEK_API void E04_SEARCH_NO_GRADIENT(void *state, const double *alfmax, const double *merit, const double *slope,
                                    int *inform) ZEK_SYMBOL("E04_SEARCH_NO_GRADIENT");
ZEK_API void E04_NP_CHECKS(void *state, int *inform) ZEK_SYMBOL("q18954");
ZEK_API void E04_HESSIAN_UPDATE(const int *n, double *r, const int *ldr, const double *s, double *y, double *work,
                                int *inform) ZEK_SYMBOL("q64600");

/* ---- Difference intervals ----------------------------------------------------------------------- */

/* The one-variable interval search by reverse communication, scalars by value.  E04XAZ starts it at
 * f(x) = FX with the first step H, the function's relative accuracy EPSRF and the accuracy E that fixes
 * the step factor 0.25 E^-0.16; STATE holds 20 reals.  Then evaluate f(x+h) and f(x+2h) at the step h
 * (first H, then HNEXT) and hand both to E04XAZN until DONE is 1; HOPT is then the forward interval,
 * ERRBND its error bound, INFO 0 normal, 1 constant, 2 linear or odd, 3 too nonlinear, 4 small
 * derivative. */
ZEK_API void E04XAZ(double fx, double h, double epsrf, double e, double *state) ZEK_SYMBOL("q70602");
ZEK_API void E04XAZN(double f1, double f2, double *state, int *done, double *hnext, int *info, double *hopt,
                     double *errbnd) ZEK_SYMBOL("q72011");

/* Forward and central difference intervals, and estimates of the Hessian's diagonal (and with MODE 1 of
 * the gradient), for the function of OBJFUN (MODE 0 on entry, its gradient argument unused).  Arguments,
 * in order: MSGLVL (0 silent, 1 the table and the messages), N >= 1, EPSRF (relative accuracy of f;
 * outside [eps, 1) it becomes eps^0.9 and is returned), E (the accuracy that fixes the step factor;
 * outside (0, 1) the machine precision), X (N), MODE (0, or 1 for the gradient; out: the negative value
 * the user set to stop), OBJFUN, OBJFUN_ADAPTOR (null: E04UCA_OBJFUN_ADAPTOR), LHES >= N, HFORWD (N; in:
 * positive values are the first steps; out: the forward intervals), HCNTRL (N, out: the central intervals,
 * HFORWD * EPSRF^(-1/6)), HESIAN(LHES, N) (the diagonal is set), IWARN (1 when some INFO is nonzero),
 * WORK (LWORK >= N), LWORK, IUSER, RUSER, INFO (N: as E04XAZN's), OBJF (f at X), OBJGRD (N; the central
 * gradient estimate with MODE 1, scratch otherwise), ERREST (N, the error bounds), NFEVAL (N, the values
 * spent per variable), IFAIL: 0, 1 an argument out of range, 2 f not finite at X, negative the user's
 * stop. */
ZEK_API void E04XAA(const int *msglvl, const int *n, double *epsrf, const double *e, double *x, int *mode,
                    ZekE04Objfun objfun, ZekE04AdaptObjfun objfun_adaptor, const int *lhes, double *hforwd,
                    double *hcntrl, double *hesian, int *iwarn, double *work, const int *lwork, int *iuser,
                    double *ruser, int *info, double *objf, double *objgrd, double *errest, int *nfeval, int *ifail)
    ZEK_SYMBOL("q41425");

/* ---- Problem files of LP and QP --------------------------------------------------------------------
 *
 * E04MZF reads a linear program from an MPSX file in fixed columns, the grammar of H02BUF (chapter
 * H02) without its integer items: an 'MARKER' line is a bad line (IFAIL 11) and the bound types UI, BV
 * and LI are illegal (IFAIL 8).  It hands back what E04MFA and E04NFA take: N, NCLIN = M, A(LDA = MAXM,
 * N), BL, BU (N+M, columns then rows, contiguous) and CVEC, with a start point X.  A QP adds its
 * Hessian to these, through E04NFA's H or QPHESS: the file format has no section for it.
 *
 * Arguments, in order (the by-reference front E04MZF_BYREF takes every scalar by reference and has no
 * ERRBUF):
 *   INFILE          unit of the file (as for H02BUF)
 *   M, N            out: rows (without the objective row) and columns read
 *   MAXM, MAXN      limits, at least 1 (MAXM counts the objective row)
 *   A(MAXM,MAXN)    out: the constraint rows
 *   CVEC(MAXN)      out: the objective, negated when OPTIM is "MAX" (the solvers minimise)
 *   BL, BU(MAXN+MAXM)  out: bounds of the columns, then of the rows; -1e20 and 1e20 stand for none
 *   ROWTYP(MAXM)    out: 1 L, -1 G, 0 E, 2 N (free) for each row
 *   NMPROB, NMOBJ, NMRHS, NMRNG, NMBND  in/out: names (8 characters; blank selects the first met)
 *   CRNAME(MAXN+MAXM)  out: column names, then row names
 *   X(MAXN)         out: start point, 0.0 for odd and 1.0 for even indices
 *   XBLDEF, XBUDEF  default bounds of a column
 *   OPTIM           "MIN" or "MAX"
 *   MPSLST          nonzero: list the file and each error on the advisory unit
 *   ERRBUF          (E04MZF only) 200 characters: the machine-readable failure line
 *   IFAIL
 * then the hidden lengths of NMPROB, NMOBJ, NMRHS, NMRNG, NMBND, CRNAME (element length) and OPTIM,
 * and for E04MZF that of ERRBUF.  Failures (IFAIL) and their texts are H02BUF's, under the name E04MZF;
 * 15 cannot occur. */
ZEK_API void E04MZF(int infile, int *m, int *n, int maxm, int maxn, double *a, double *cvec, double *bl, double *bu,
                    int *rowtyp, char *nmprob, char *nmobj, char *nmrhs, char *nmrng, char *nmbnd, char *crname,
                    double *x, double xbldef, double xbudef, const char *optim, int mpslst, char *errbuf, int *ifail,
                    int nmprob_len, int nmobj_len, int nmrhs_len, int nmrng_len, int nmbnd_len, int crname_len,
                    int optim_len, int errbuf_len) ZEK_SYMBOL("q28553");
ZEK_API void E04MZF_BYREF(const int *infile, int *m, int *n, const int *maxm, const int *maxn, double *a,
                          double *cvec, double *bl, double *bu, int *rowtyp, char *nmprob, char *nmobj, char *nmrhs,
                          char *nmrng, char *nmbnd, char *crname, double *x, const double *xbldef,
                          const double *xbudef, const char *optim, const int *mpslst, int *ifail, int nmprob_len,
                          int nmobj_len, int nmrhs_len, int nmrng_len, int nmbnd_len, int crname_len, int optim_len)
    ZEK_SYMBOL("q30278");

ZEK_END_DECLS

#endif
