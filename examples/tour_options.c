/* The tour's chapters E04 (options) and H02 (problem files): options of the LP solver given as keyword
 * phrases through its string routine, and a small mixed-integer program read from an MPSX file through
 * a unit, all bound by export symbol as the host binds them. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "tour.h"

void tour_options(void);

typedef void (ZEK_CALLBACK *prepare_fn)(const char *, char *, const int *, int *, const int *, int *, const int *, double *,
                           const int *, int *);
typedef void (ZEK_CALLBACK *option_fn)(const char *, const int *, int *, int *, double *, int *, int);

/* A knapsack-like program in fixed columns: two integer columns between the markers, a range on the
 * capacity row, and an upper bound. */
static const char kModel[] =
    "NAME          TOURMIP\n"
    "ROWS\n"
    " N  PROFIT\n"
    " L  CAP\n"
    " G  DEMAND\n"
    "COLUMNS\n"
    "    MARKER    'MARKER'                 'INTORG'\n"
    "    A         PROFIT            -5.0   CAP                3.0\n"
    "    B         PROFIT            -4.0   CAP                2.0\n"
    "    B         DEMAND             1.0\n"
    "    MARKER    'MARKER'                 'INTEND'\n"
    "    C         PROFIT            -1.0   DEMAND             1.0\n"
    "RHS\n"
    "    RHS       CAP               12.0   DEMAND             2.0\n"
    "RANGES\n"
    "    RNG       CAP                8.0\n"
    "BOUNDS\n"
    " UP BND       C                  3.5\n"
    "ENDATA\n";

static void tour_option_strings(void) {
    prepare_fn prepare = (prepare_fn)tour_bind("q81185");
    option_fn e04mhf = (option_fn)tour_bind("q63843");
    static const char *const lines[] = {"Iterations Limit = 40", "Feasibility Tolerance = 1.0E-8",
                                        "Problem Type LP", "Print Level 1", "Infinite Bound Size 1.0E+10",
                                        "Warm Start please"};
    char cwsav[80];
    int lwsav[120], iwsav[610];
    double rwsav[475];
    const int lc = 1, ll = 120, li = 610, lr = 475, list = 1;
    int ifail = 1, inform = 0;
    size_t k;

    tour_section("E04MFA options by keyword phrase (E04WBA q81185, E04MHF q63843)");
    prepare("E04MFA", cwsav, &lc, lwsav, &ll, iwsav, &li, rwsav, &lr, &ifail);
    printf("E04WBA: IFAIL = %d\n", ifail);
    for (k = 0; k < sizeof lines / sizeof lines[0]; ++k)
        e04mhf(lines[k], &list, lwsav, iwsav, rwsav, &inform, (int)strlen(lines[k]));
    printf("the last phrase: INFORM = %d\n", inform);
    e04mhf("Maximize the profit", &list, lwsav, iwsav, rwsav, &inform, 19);
    printf("an unknown keyword: INFORM = %d\n", inform);
    e04mhf("Nolist", &list, lwsav, iwsav, rwsav, &inform, 6);
    e04mhf("Check Frequency 10", &list, lwsav, iwsav, rwsav, &inform, 18);
    printf("after NOLIST the phrases are applied without being listed: INFORM = %d\n", inform);
}

static void tour_problem_file(void) {
    tour_mpsx_reader h02buf = (tour_mpsx_reader)tour_bind("q35799");
    tour_solution_printer h02bvf = (tour_solution_printer)tour_bind("q44026");
    enum { MAXM = 4, MAXN = 4 };
    double a[MAXM * MAXN], cvec[MAXN], bl[MAXN + MAXM], bu[MAXN + MAXM], x[MAXN], clamda[MAXN + MAXM];
    int intvar[MAXN], rowtyp[MAXM], istate[MAXN + MAXM];
    char crname[8 * (MAXN + MAXM)];
    char nmprob[8], nmobj[8], nmrhs[8], nmrng[8], nmbnd[8];
    const int maxm = MAXM, maxn = MAXN, listing = 0, lda = MAXM;
    const double xbldef = 0.0, xbudef = 1.0e20, bigbnd = 1.0e20;
    char path[] = "/tmp/zek_tour_XXXXXX";
    int m = 0, n = 0, ifail = 1, unit, j;
    FILE *stream;

    tour_section("an MPSX file through a unit (X04_OPEN_INPUT q35887, H02BUF q35799)");
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
    printf("H02BUF: IFAIL = %d, problem %.8s, %d rows and %d columns, objective %.8s, RHS %.8s, RANGES %.8s\n",
           ifail, nmprob, m, n, nmobj, nmrhs, nmrng);
    if (ifail != 0) return;
    for (j = 0; j < n; ++j)
        printf("  column %.8s: cost %5.1f (maximised, so negated), bounds [%g, %g]%s\n", crname + 8 * j, cvec[j],
               bl[j], bu[j], intvar[j] ? ", integer" : "");
    for (j = 0; j < m; ++j)
        printf("  row    %.8s: type %2d, bounds [%g, %g]\n", crname + 8 * (n + j), rowtyp[j], bl[n + j], bu[n + j]);

    tour_section("the start point printed under the file's names (H02BVF q44026)");
    for (j = 0; j < n + m; ++j) {
        istate[j] = 0;
        clamda[j] = 0.0;
    }
    h02bvf(&n, &m, a, &lda, crname, x, clamda, istate, bl, bu, &bigbnd, &ifail, 8);
}

void tour_options(void) {
    tour_option_strings();
    tour_problem_file();
}
