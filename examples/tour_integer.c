/* Chapter H02 in the tour: a small mixed-integer program read from an MPSX file through a unit, solved
 * by branch and bound, its final state copied out and printed under the file's names, every routine
 * bound by its export symbol. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "tour.h"

void tour_integer(void);

typedef void (ZEK_CALLBACK *store_fn)(const char *, char *, const int *, int *, const int *, int *, const int *, double *,
                         const int *, int *, int, int);
typedef void (ZEK_CALLBACK *solver_fn)(int *, const int *, const int *, const int *, const double *, const int *, const double *,
                          const double *, const int *, const double *, const int *, const int *, const int *,
                          double *, double *, double *, double *, double *, int *, const int *, double *,
                          const int *, int *, int *, double *, int *);
typedef void (ZEK_CALLBACK *copy_fn)(const int *, const int *, const int *, const int *, const double *, const int *, int *,
                        double *, double *, double *, int *);

/* Maximise 5 x1 + 4 x2 + 3 y with x1, x2 integer in [0, 3] and y in [0, 2.5], subject to two capacity
 * rows and a demand row.  The LP optimum is fractional; the integer optimum is 14.5 at (2, 0, 1.5). */
static const char kModel[] =
    "* the tour's integer program\n"
    "NAME          TOURINT\n"
    "ROWS\n"
    " N  PROFIT\n"
    " L  CAP1\n"
    " L  CAP2\n"
    " G  DEMAND\n"
    "COLUMNS\n"
    "    MARKER    'MARKER'                 'INTORG'\n"
    "    X1        PROFIT             5.0   CAP1               2.0\n"
    "    X1        CAP2               4.0   DEMAND             1.0\n"
    "    X2        PROFIT             4.0   CAP1               3.0\n"
    "    X2        CAP2               1.0   DEMAND             1.0\n"
    "    MARKER    'MARKER'                 'INTEND'\n"
    "    Y         PROFIT             3.0   CAP1               1.0\n"
    "    Y         CAP2               2.0\n"
    "RHS\n"
    "    RHS       CAP1               5.5   CAP2              11.0\n"
    "    RHS       DEMAND             1.0\n"
    "BOUNDS\n"
    " UP BND       X1                 3.0\n"
    " UP BND       X2                 3.0\n"
    " UP BND       Y                  2.5\n"
    "ENDATA\n";

enum { MAXM = 4, MAXN = 4, MAXDPT = 20, NCT = MAXN + MAXM };
/* Workspace for MAXDPT slots and up to MAXN columns and MAXM rows, with room for a larger tree. */
enum { LIWORK = (NCT + 25) * MAXDPT + NCT + 4 * MAXN + 4 + 500, LRWORK = (MAXN + 1) * MAXDPT + 2 * (16 + 6 * MAXM + 7 * MAXN) };

void tour_integer(void) {
    tour_mpsx_reader h02buf = (tour_mpsx_reader)tour_bind("q35799");
    store_fn h02wbf = (store_fn)tour_bind("q57465");
    solver_fn h02bbf = (solver_fn)tour_bind("q23228");
    copy_fn h02bzf = (copy_fn)tour_bind("q61773");
    tour_solution_printer h02bvf = (tour_solution_printer)tour_bind("q44026");
    static double a[MAXM * MAXN], cvec[MAXN], bl[NCT], bu[NCT], x[MAXN], rwork[LRWORK], rwsav[475];
    static double node_bl[NCT], node_bu[NCT], clamda[NCT];
    static int intvar[MAXN], rowtyp[MAXM], iwork[LIWORK], istate[NCT], lwsav[120], iwsav[610];
    char crname[8 * NCT], cwsav[80];
    char nmprob[8], nmobj[8], nmrhs[8], nmrng[8], nmbnd[8];
    const int maxm = MAXM, maxn = MAXN, listing = 0, lda = MAXM;
    const int lc = 1, ll = 120, li = 610, lr = 475, liwork = LIWORK, lrwork = LRWORK;
    const int msglvl = 1, maxnod = 0, intfst = 0, maxdpt = MAXDPT;
    const double xbldef = 0.0, xbudef = 1.0e20;
    double toliv = 0.0, tolfes = 0.0, bigbnd = 0.0, objective = 0.0;
    char path[] = "/tmp/zek_tour_mip_XXXXXX";
    int m = 0, n = 0, ifail = 1, itmax = 0, unit;
    FILE *stream;

    tour_section("a mixed-integer program from an MPSX file (X04_OPEN_INPUT q35887, H02BUF q35799)");
    stream = tour_open_text(kModel, path, &unit);
    if (stream == NULL) return;
    memset(nmprob, ' ', 8);
    memset(nmobj, ' ', 8);
    memset(nmrhs, ' ', 8);
    memset(nmrng, ' ', 8);
    memset(nmbnd, ' ', 8);
    h02buf(&unit, &m, &n, &maxm, &maxn, a, cvec, bl, bu, intvar, rowtyp, nmprob, nmobj, nmrhs, nmrng, nmbnd, crname,
           x, &xbldef, &xbudef, "MAX", &listing, &ifail, 8, 8, 8, 8, 8, 8, 3);
    fclose(stream);
    remove(path);
    printf("H02BUF: IFAIL = %d, problem %.8s, %d rows, %d columns (%d integer)\n", ifail, nmprob, m, n,
           intvar[0] + intvar[1] + intvar[2]);
    if (ifail != 0) return;

    tour_section("branch and bound (H02WBF q57465, H02BBF q23228), print level 1");
    h02wbf("H02BBF", cwsav, &lc, lwsav, &ll, iwsav, &li, rwsav, &lr, &ifail, 6, 80);
    ifail = -1;
    h02bbf(&itmax, &msglvl, &n, &m, a, &lda, bl, bu, intvar, cvec, &maxnod, &intfst, &maxdpt, &toliv, &tolfes,
           &bigbnd, x, &objective, iwork, &liwork, rwork, &lrwork, lwsav, iwsav, rwsav, &ifail);
    printf("H02BBF: IFAIL = %d, profit = %g at x1 = %g, x2 = %g, y = %g (defaults used: ITMAX %d, TOLIV %g)\n",
           ifail, -objective, x[0], x[1], x[2], itmax, toliv);
    if (ifail != 0) return;

    tour_section("the final state copied out (H02BZF q61773) and printed by name (H02BVF q44026)");
    ifail = 1;
    h02bzf(&n, &m, iwork, &liwork, rwork, &lrwork, istate, node_bl, node_bu, clamda, &ifail);
    printf("H02BZF: IFAIL = %d; bounds of x1 at the solution's node: [%g, %g]\n", ifail, node_bl[0], node_bu[0]);
    h02bvf(&n, &m, a, &lda, crname, x, clamda, istate, node_bl, node_bu, &bigbnd, &ifail, 8);
}
