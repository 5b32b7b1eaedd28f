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

ZEK_END_DECLS

#endif
