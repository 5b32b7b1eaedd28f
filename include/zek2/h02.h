/* Chapter H02: integer programming — problem files.
 *
 * H02BUF reads a mixed-integer linear program from an MPSX file in fixed columns (with the integer
 * markers 'MARKER' 'INTORG' / 'INTEND' and the bound types UI, BV, LI) and hands back dense arrays;
 * H02BVF prints a solution under the names the file gave.
 *
 * Units.  The file is read from an integer unit: the int a host gets by storing the FILE * returned by
 * X04_OPEN_INPUT (chapter X04) in an int.  On a 32-bit ABI that int is the stream's address; on a
 * 64-bit ABI it is the address's low 32 bits, and the library finds the stream among those that
 * X04_OPEN_INPUT opened.  A unit number that names no such stream reads as an empty file (IFAIL 10).
 * Files with CR LF line ends read as files with LF ends.  An all-blank line counts as a comment.
 *
 * Names are 8 characters, blank padded.  A blank objective, RHS, RANGES or BOUNDS name on entry selects
 * the first one met in the file and returns it.  Infinite bounds are written as -1e20 and 1e20.
 * Row types (ROWTYP): 1 L (<=), -1 G (>=), 0 E (=), 2 N (free).
 */
#ifndef ZEK2_H02_H
#define ZEK2_H02_H

#include "e04.h"
#include "types.h"

ZEK_BEGIN_DECLS

/* Reads an MPSX file from *INFILE into arrays with room for *MAXN columns and *MAXM rows (objective
 * row included).  Arguments, in order:
 *   INFILE          unit (see above)
 *   M, N            out: rows (without the objective row) and columns read
 *   MAXM, MAXN      limits, at least 1
 *   A(MAXM,MAXN)    out: the constraint matrix, leading dimension MAXM
 *   CVEC(MAXN)      out: the objective, negated when OPTIM is "MAX" (the library minimises)
 *   BL, BU(MAXN+MAXM)  out: bounds of the columns, then of the rows
 *   INTVAR(MAXN)    out: 1 for an integer column, else 0
 *   ROWTYP(MAXM)    out: the type of each row
 *   NMPROB          in/out: problem name (field 3 of the NAME line when blank on entry)
 *   NMOBJ, NMRHS, NMRNG, NMBND  in/out: the names selected (see above)
 *   CRNAME(MAXN+MAXM)  out: column names, then row names
 *   X(MAXN)         out: start point, 0.0 for odd and 1.0 for even indices
 *   XBLDEF, XBUDEF  default lower and upper bound of a column
 *   OPTIM           "MIN" or "MAX" (3 characters, either case)
 *   MPSLST          nonzero: list the file and every error on the advisory unit, reading on after errors
 *   IFAIL           failure control
 * then the hidden lengths of NMPROB, NMOBJ, NMRHS, NMRNG, NMBND, CRNAME (element length) and OPTIM.
 * Failures (IFAIL), the first of the file reported: 1 too many rows; 2 too many columns (M, N then
 * hold the counts reached); 3 no objective row; 4 no rows; 5 bad row type; 6 bad row name; 7 bad
 * column name; 8 bad bound type; 9 bound on an unknown column; 10 end of file before ENDATA; 11 a line
 * that is neither a comment nor valid; 12 unknown row; 13 no columns; 14 a selected RHS, RANGES or BOUNDS
 * name not found, or MAXN < 1, MAXM < 1, XBLDEF > XBUDEF, OPTIM neither MIN nor MAX; 15 misplaced integer
 * marker. */
ZEK_API void H02BUF(const int *infile, int *m, int *n, const int *maxm, const int *maxn, double *a, double *cvec,
                    double *bl, double *bu, int *intvar, int *rowtyp, char *nmprob, char *nmobj, char *nmrhs,
                    char *nmrng, char *nmbnd, char *crname, double *x, const double *xbldef, const double *xbudef,
                    const char *optim, const int *mpslst, int *ifail, int nmprob_len, int nmobj_len, int nmrhs_len,
                    int nmrng_len, int nmbnd_len, int crname_len, int optim_len) ZEK_SYMBOL("q35799");

/* The worker behind H02BUF: the same arguments with INFILE, MAXM, MAXN, XBLDEF, XBUDEF and MPSLST by
 * value, then ERRBUF (200 characters, filled with the machine-readable failure line) and IFAIL, then
 * the seven hidden lengths and ERRBUF's length. */
ZEK_API void H02BUF_INNER(int infile, int *m, int *n, int maxm, int maxn, double *a, double *cvec, double *bl,
                          double *bu, int *intvar, int *rowtyp, char *nmprob, char *nmobj, char *nmrhs, char *nmrng,
                          char *nmbnd, char *crname, double *x, double xbldef, double xbudef, const char *optim,
                          int mpslst, char *errbuf, int *ifail, int nmprob_len, int nmobj_len, int nmrhs_len,
                          int nmrng_len, int nmbnd_len, int crname_len, int optim_len, int errbuf_len)
    ZEK_SYMBOL("q23224");

/* The parser behind H02BUF: reads the file into A (objective row still in place, row IOBJ), the bounds,
 * INTVAR, ROWTYP and CRNAME, listing on PRINT_UNIT when MPSLST is nonzero.  Outputs: N and M (the
 * counts reached after IERROR 1 or 2), NINT integer columns, NNZ matrix entries read, IOBJ, NLINE lines
 * read, and the first error: IERROR (0 or an IFAIL value of H02BUF), IVALUE(2) its numbers, CVALUE its
 * name or type text (8 characters), SECTION ("RHS", "RANGES" or "BOUNDS" for IERROR 14).  Hidden
 * lengths: NMPROB, NMOBJ, NMRHS, NMRNG, NMBND, CRNAME (element length), CVALUE, SECTION. */
ZEK_API void H02_MPSX_READ(int infile, int maxn, int maxm, double xbldef, double xbudef, int mpslst, int print_unit,
                           int *n, int *m, double *a, double *bl, double *bu, int *intvar, int *rowtyp, char *nmprob,
                           char *nmobj, char *nmrhs, char *nmrng, char *nmbnd, char *crname, int *nint, int *nnz,
                           int *iobj, int *nline, int *ierror, int *ivalue, char *cvalue, char *section,
                           int nmprob_len, int nmobj_len, int nmrhs_len, int nmrng_len, int nmbnd_len,
                           int crname_len, int cvalue_len, int section_len) ZEK_SYMBOL("q17384");

/* Prints a solution on the advisory unit: one line per column and one per row with name, state
 * ("--" "++" "FR" "LL" "UL" "EQ" "TF" for ISTATE -2 to 4), value, bounds ("None" where |bound| >=
 * BIGBND), multiplier and residual (the distance to the nearer bound).  Arguments, in order: N, M,
 * A(LDA,N), LDA, CRNAME(N+M) (column names, then row names), X(N), CLAMDA(N+M), ISTATE(N+M), BL(N+M),
 * BU(N+M), BIGBND, IFAIL, and the hidden length of CRNAME's elements.  Row values are A*X.
 * Failures (IFAIL 1): N < 1, M < 0, LDA < max(1,M). */
ZEK_API void H02BVF(const int *n, const int *m, const double *a, const int *lda, const char *crname, const double *x,
                    const double *clamda, const int *istate, const double *bl, const double *bu, const double *bigbnd,
                    int *ifail, int crname_len) ZEK_SYMBOL("q44026");

/* ---- Integer linear programming by branch and bound ------------------------------------------------
 *
 * Calling order: H02WBF("H02BBF", ...) once to prepare the option store, then H02BBF, then H02BZF to
 * copy out the final state, which H02BBF leaves at the head of its workspace.  Every LP of the search
 * is solved by E04MFA (chapter E04), whose options H02BBF sets through E04MHF in the same store:
 * after a call the store holds "Print Level = 0", the tolerances, the iteration limit and "Cold Start"
 * (or "Warm Start" and the doubled limit once a node needed more iterations). */

/* Prepares the option store (the communication arrays of E04WBA) for RNAME, upper-cased first:
 * "H02BBF", "H02BFF" (both solve their LPs with E04MFA), "H02CBF" or "H02CEF" (E04NFA).  Arguments,
 * in order: RNAME, CWSAV, LCWSAV, LWSAV, LLWSAV, IWSAV, LIWSAV, RWSAV, LRWSAV, IFAIL, then the hidden
 * lengths of RNAME and of CWSAV's elements.  Minimum lengths for every name: LCWSAV 1, LLWSAV 120,
 * LIWSAV 610, LRWSAV 475 (what E04WBA requires for E04MFA and E04NFA).
 * Failures (IFAIL): 1 the name is none of these; 2 an array is too short. */
ZEK_API void H02WBF(const char *rname, char *cwsav, const int *lcwsav, int *lwsav, const int *llwsav, int *iwsav,
                    const int *liwsav, double *rwsav, const int *lrwsav, int *ifail, int rname_len, int cwsav_len)
    ZEK_SYMBOL("q57465");

/* Copies the final state that H02BBF (or H02CBF, H02CEF) left at the head of IWORK and RWORK (after
 * IFAIL 0 or 9, and 12 of the integer QP routines): for
 * j = 1..N+M, ISTATE(j) = IWORK(j), BL(j) = RWORK(j), BU(j) = RWORK(N+M+j), CLAMDA(j) =
 * RWORK(2(N+M)+j): the states ("--" -2, "++" -1, free 0, at lower 1, at upper 2, equal 3, fixed 4),
 * the bounds of the node where the solution was found and the LP multipliers there.  Arguments, in
 * order: N, M, IWORK, LIWORK, RWORK, LRWORK, ISTATE(N+M), BL(N+M), BU(N+M), CLAMDA(N+M), IFAIL.
 * Failures (IFAIL 1): N < 1, M < 0, LIWORK < N+M, LRWORK < 3(N+M). */
ZEK_API void H02BZF(const int *n, const int *m, const int *iwork, const int *liwork, const double *rwork,
                    const int *lrwork, int *istate, double *bl, double *bu, double *clamda, int *ifail)
    ZEK_SYMBOL("q61773");

/* Solves  minimise CVEC'x  subject to  BL <= ( x ; A x ) <= BU,  x(j) integer where INTVAR(j) = 1,
 * by a tree search over LP relaxations.  Arguments, in order:
 *   ITMAX      in/out: iteration limit of each LP; max(50, 5(N+M)) when not positive.  The value
 *              -11111 is a trace request: MSGLVL becomes 0 (below 5), 15 (5) or 20 (above 5).
 *   MSGLVL     print level: 0 none; 1 parameters and final solution; 2 also the node log; above 2
 *              also the detail of each bad bound; 10 or 20 also the root LP's solution.
 *   N >= 1, M >= 0   variables and general rows
 *   A(LDA,N), LDA >= max(1,M)   the rows
 *   BL, BU(N+M)   bounds of the variables, then of the rows; at or beyond BIGBND means none
 *   INTVAR(N)  1 for an integer variable, 0 for a continuous one
 *   CVEC(N)    the objective
 *   MAXNOD     positive: stop once that many nodes would be reached; otherwise no limit
 *   INTFST     positive: stop at the first integer solution
 *   MAXDPT >= 2   deepest branching and number of pending LPs held at once
 *   TOLIV      in/out: integer tolerance, 1e-5 when not positive
 *   TOLFES     in/out: feasibility tolerance of the LPs, sqrt(machine precision) when not positive
 *   BIGBND     in/out: infinite bound size, 1e20 when not positive
 *   X(N)       in: the start of the first LP; out: the solution
 *   OBJMIP     out: its objective (1/(smallest positive number) when there is none)
 *   IWORK(LIWORK), LIWORK >= (N+M+25) MAXDPT + N+M + 4N + 4; more buys a larger tree
 *   RWORK(LRWORK), LRWORK >= (N+1) MAXDPT + 2 (t*t + 6M + 7N), t = min(N, M+1)
 *   LWSAV, IWSAV, RWSAV   the option store prepared by H02WBF
 *   IFAIL
 * Failures (IFAIL): 1 no integer solution; 2, 3, 4 the first LP is unbounded, infeasible, or stopped
 * by its iteration limit; 6 bad N, M, LDA, INTVAR, MAXDPT, LIWORK, LRWORK or bounds (nothing is
 * changed); 8 the depth limit was reached (X then holds the last LP's solution); 9 the node limit was
 * reached with an integer solution in X; 10 the node limit was reached without one; 11 the tree or the
 * slots ran out. */
ZEK_API void H02BBF(int *itmax, const int *msglvl, const int *n, const int *m, const double *a, const int *lda,
                    const double *bl, const double *bu, const int *intvar, const double *cvec, const int *maxnod,
                    const int *intfst, const int *maxdpt, double *toliv, double *tolfes, double *bigbnd, double *x,
                    double *objmip, int *iwork, const int *liwork, double *rwork, const int *lrwork, int *lwsav,
                    int *iwsav, double *rwsav, int *ifail) ZEK_SYMBOL("q23228");

/* The worker behind H02BBF: the same arguments with MSGLVL, N, M, LDA, MAXNOD, INTFST, MAXDPT, LIWORK
 * and LRWORK by value (ITMAX, TOLIV, TOLFES and BIGBND stay by reference, since they return their
 * defaults), then ERRBUF (200 characters) and IFAIL, then ERRBUF's length. */
ZEK_API void H02BBF_INNER(int *itmax, int msglvl, int n, int m, const double *a, int lda, const double *bl,
                          const double *bu, const int *intvar, const double *cvec, int maxnod, int intfst, int maxdpt,
                          double *toliv, double *tolfes, double *bigbnd, double *x, double *objmip, int *iwork,
                          int liwork, double *rwork, int lrwork, int *lwsav, int *iwsav, double *rwsav, char *errbuf,
                          int *ifail, int errbuf_len) ZEK_SYMBOL("q66240");

/* The tree search behind H02BBF, on workspace already divided (58 words on a 32-bit ABI; the
 * tolerances are doubles by value).  Arguments, in order:
 *   N, M, A, LDA, BL, BU, INTVAR, CVEC            the problem
 *   MAXNOD, INTFST, S (slots = MAXDPT), T (tree nodes), MSGLVL, ITMAX, TOLIV, TOLFES, BIGBND
 *   X (N), OBJMIP                                  in/out as for H02BBF
 *   NODES        out: nodes solved (negated at MSGLVL >= 15)
 *   CODE         out: the IFAIL value the search ends with (0, 1, 2, 3, 4, 8, 9, 10 or 11)
 *   EXIT_KIND    out: 0 optimum, 1 first solution, 2 best solution (a branch was abandoned, or the
 *                node limit)
 *   PARENT, LEFT, RIGHT, BRANCH_VAR, BRANCH_VALUE (T each)   the tree
 *   LINK (S+1), SLOT_BOUND (S, real), SLOT_NODE, SLOT_FLAG, SLOT_NUMBER (S each), SLOT_X (N by S),
 *   SLOT_STATE (N+M by S+1)                        the slots; column S+1 of SLOT_STATE is the incumbent's
 *   WBL, WBU (N+M)                                 the bounds of the current node
 *   BEST_BL, BEST_BU, BEST_CLAMDA (N+M), BEST_X (N)   the incumbent
 *   AX (M), CLAMDA (N+M)                           the LP's row values and multipliers
 *   PATH (S)                                       scratch of the bound rebuild
 *   LP_IWORK, LP_LIWORK, LP_WORK, LP_LWORK         the LP solver's workspace
 *   LWSAV, IWSAV, RWSAV                            the option store
 *   DEPTH        out: depth of the last node
 *   LP_ITERATIONS  out: iterations of all LPs
 *   PRINT_UNIT   unit of the log
 *   ABANDONED    out: branches abandoned because their LP failed
 *   BEST_NODE    out: node number of the integer solution returned, 0 when none */
ZEK_API void H02_TREE_SEARCH(int n, int m, const double *a, int lda, const double *bl, const double *bu,
                             const int *intvar, const double *cvec, int maxnod, int intfst, int slots, int ntree,
                             int msglvl, int itmax, double toliv, double tolfes, double bigbnd, double *x,
                             double *objmip, int *nodes, int *code, int *exit_kind, int *parent, int *left,
                             int *right, int *branch_var, int *branch_value, int *link, double *slot_bound,
                             int *slot_node, int *slot_flag, int *slot_number, double *slot_x, int *slot_state,
                             double *wbl, double *wbu, double *best_bl, double *best_bu, double *best_clamda,
                             double *best_x, double *ax, double *clamda, int *path, int *lp_iwork, int lp_liwork,
                             double *lp_work, int lp_lwork, int *lwsav, int *iwsav, double *rwsav, int *depth,
                             int *lp_iterations, int print_unit, int *abandoned, int *best_node)
    ZEK_SYMBOL("q98717");

/* ---- Integer quadratic programming by branch and bound ---------------------------------------------
 *
 * Solves  minimise CVEC'x + 1/2 x'Hx  subject to  BL <= ( x ; A x ) <= BU,  x(j) integer where
 * INTVAR(j) = 1, with H symmetric, by H02BBF's tree search with a QP of E04NFA at every node.
 *
 * Calling order: H02WBF("H02CBF" or "H02CEF", ...) once, any H02CDF option calls (they reach the
 * nodes' QPs: MAXIMUM DEGREES OF FREEDOM, RANK TOLERANCE, FEASIBILITY PHASE ITERATIONS, ...), then
 * H02CBF or H02CEF, then H02BZF to copy out the final state from the head of the workspace.  The
 * search itself sets, in the same store, "Problem Type = QP2", "Print Level = 0", the feasibility
 * tolerance, the infinite bound size, the iteration limit, "Cold Start" for the first QP and
 * "Warm Start" after it.
 *
 * Search.  As H02BBF's: depth-first while more than half of the MAXDPT slots are in use, best-first
 * otherwise; branching on the first fractional integer variable, the right child (x >= floor+1) solved
 * first.  Each child starts from its parent's solution and working set (a warm start of E04NFA), so a
 * child usually needs few iterations.  Texts, print levels, the node log and the solution blocks are
 * H02BBF's under the routine's own name.
 *
 * Convexity.  A node is pruned when its QP's objective is not below the best integer objective found.
 * That is exact only when H is positive semidefinite: the QP's optimum is then the least value over the
 * node's box, a true bound.  For an indefinite H each QP ends at a local minimiser (or a dead point),
 * whose value bounds nothing; the search still returns an integer-feasible point and its objective,
 * but not necessarily the best one.
 *
 * Nodes whose reduced Hessian outgrows MAXIMUM DEGREES OF FREEDOM (E04NFA's IFAIL 5) are not dropped
 * in silence: the branch is left unsearched, logged at MSGLVL >= 2, and the search ends with IFAIL 12
 * or 13 instead of 0 or 1.
 *
 * Arguments, in order (H02CBF; H02CEF has neither QPHESS, QPHESS_ADAPTOR nor IUSER, RUSER):
 *   ITMAX      in/out: iteration limit of each QP; max(50, 5(N+M)) when not positive; -11111 is the
 *              trace request of H02BBF
 *   MSGLVL     print level, as H02BBF's
 *   N >= 1, M >= 0   variables and general rows
 *   A(LDA,N), LDA >= max(1,M)   the rows
 *   BL, BU(N+M)   bounds of the variables, then of the rows; at or beyond BIGBND means none
 *   INTVAR(N)  1 for an integer variable, 0 for a continuous one
 *   CVEC(N)    the linear term
 *   H(LDH,*), LDH >= N   H02CEF: the N by N Hessian, symmetric, upper triangle read (the leading
 *              HESSIAN ROWS square when that option is set).  H02CBF: handed to QPHESS unread.
 *   QPHESS     H02CBF: the Hessian routine of E04NFA, HX := H X (null: H is read as by H02CEF)
 *   QPHESS_ADAPTOR   H02CBF: null or E04NFA_QPHESS_ADAPTOR
 *   MAXNOD, INTFST, MAXDPT >= 2, TOLIV, TOLFES, BIGBND, X, OBJMIP   as H02BBF's
 *   IWORK(LIWORK), LIWORK >= (N+M+25) MAXDPT + N+M + 2N + 1 + LI, LI = 2N+3 (what E04NFA asks)
 *   RWORK(LRWORK), LRWORK >= (N+1) MAXDPT + 7(N+M) + LR, LR = 13N + 5M + 4N^2 (N^2 less when M = 0),
 *              what E04NFA asks; more IWORK buys a larger tree
 *   IUSER, RUSER   H02CBF: handed to QPHESS
 *   LWSAV, IWSAV, RWSAV   the option store prepared by H02WBF
 *   IFAIL
 * A, CVEC, X (and H for H02CEF or a null QPHESS) must be finite.
 * Failures (IFAIL): as H02BBF's (1 no integer solution; 2, 3, 4 the first QP unbounded, infeasible or
 * stopped by its iteration limit; 6 bad arguments; 8 depth limit; 9, 10 node limit; 11 tree or slots
 * used up), and
 *   5  the first QP's reduced Hessian exceeds MAXIMUM DEGREES OF FREEDOM;
 *   6  also LDH < N, or an element of A, CVEC, X or H that is not finite;
 *   12 the search ended with an integer solution in X, but some branches went unsearched because their
 *      reduced Hessian exceeded MAXIMUM DEGREES OF FREEDOM;
 *   13 as 12 without an integer solution;
 *   14 a QP met a value that is not finite: a product by the Hessian, or an objective beyond the
 *      largest number (X holds the best integer solution found before, if any). */
ZEK_API void H02CBF(int *itmax, const int *msglvl, const int *n, const int *m, const double *a, const int *lda,
                    const double *bl, const double *bu, const int *intvar, const double *cvec, const double *h,
                    const int *ldh, ZekQpHessian qphess, ZekQpHessianAdaptor qphess_adaptor, const int *maxnod,
                    const int *intfst, const int *maxdpt, double *toliv, double *tolfes, double *bigbnd, double *x,
                    double *objmip, int *iwork, const int *liwork, double *rwork, const int *lrwork, int *iuser,
                    double *ruser, int *lwsav, int *iwsav, double *rwsav, int *ifail) ZEK_SYMBOL("H02CBF");

ZEK_API void H02CEF(int *itmax, const int *msglvl, const int *n, const int *m, const double *a, const int *lda,
                    const double *bl, const double *bu, const int *intvar, const double *cvec, const double *h,
                    const int *ldh, const int *maxnod, const int *intfst, const int *maxdpt, double *toliv,
                    double *tolfes, double *bigbnd, double *x, double *objmip, int *iwork, const int *liwork,
                    double *rwork, const int *lrwork, int *lwsav, int *iwsav, double *rwsav, int *ifail)
    ZEK_SYMBOL("H02CEF");

/* The option routine of H02CBF and H02CEF: one option line of E04NFA's keywords for the nodes' QPs, in
 * the store H02WBF prepared.  Arguments and INFORM as E04NHF's (STRING, LIST, LWSAV, IWSAV, RWSAV,
 * INFORM, then the hidden length of STRING); it is E04NHF on that store. */
ZEK_API void H02CDF(const char *string, const int *list, int *lwsav, int *iwsav, double *rwsav, int *inform,
                    int string_len) ZEK_SYMBOL("H02CDF");

ZEK_END_DECLS

#endif
