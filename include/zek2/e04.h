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

ZEK_END_DECLS

#endif
