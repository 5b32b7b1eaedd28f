/* Chapter E04 in the tour: a small linear program solved by E04MFA (q91522) after E04WBA (q28832)
 * prepared its state arrays and E04MHF (q63843) set two options, all bound by export symbols.
 *
 * A workshop makes tables (x1), chairs (x2) and shelves (x3) for profits 30, 20 and 25:
 *     maximise 30 x1 + 20 x2 + 25 x3, that is minimise -(30 x1 + 20 x2 + 25 x3),
 *     subject to  carpentry  4 x1 + 2 x2 + 3 x3 <= 60,
 *                 finishing  2 x1 + 2 x2 + 1 x3 <= 40,
 *                 wood       3 x1 + 1 x2 + 3 x3 <= 45,   0 <= x1, x2, x3 <= 12.
 * With print level 1 the library prints its parameter list and the solution table itself. */
#include <stdio.h>
#include <string.h>

#include "tour.h"

typedef void (ZEK_CALLBACK *e04wba_fn)(const char *, char *, const int *, int *, const int *, int *, const int *, double *,
                          const int *, int *, int, int);
typedef void (ZEK_CALLBACK *e04mhf_fn)(const char *, const int *, int *, int *, double *, int *, int);
typedef void (ZEK_CALLBACK *e04mfa_fn)(const int *, const int *, const double *, const int *, const double *, const double *,
                          const double *, int *, double *, int *, double *, double *, double *, int *, const int *,
                          double *, const int *, int *, int *, double *, int *);

void tour_lp(void) {
    e04wba_fn e04wba = (e04wba_fn)tour_bind("q28832");
    e04mhf_fn e04mhf = (e04mhf_fn)tour_bind("q63843");
    e04mfa_fn e04mfa = (e04mfa_fn)tour_bind("q91522");

    enum { N = 3, NCLIN = 3, T = 3, LIWORK = 2 * N + 3, LWORK = 7 * N + 5 * NCLIN + 2 * T * T };
    const int n = N, nclin = NCLIN, lda = NCLIN, liwork = LIWORK, lwork = LWORK;
    /* A by columns. */
    const double a[NCLIN * N] = {4.0, 2.0, 3.0, 2.0, 2.0, 1.0, 3.0, 1.0, 3.0};
    const double bl[N + NCLIN] = {0.0, 0.0, 0.0, -1e25, -1e25, -1e25};
    const double bu[N + NCLIN] = {12.0, 12.0, 12.0, 60.0, 40.0, 45.0};
    const double cvec[N] = {-30.0, -20.0, -25.0};
    int istate[N + NCLIN] = {0}, iwork[LIWORK], iter = 0, ifail = 1, inform = 0, list = 0;
    double x[N] = {0.0, 0.0, 0.0}, ax[NCLIN], clamda[N + NCLIN], work[LWORK], obj = 0.0;
    char cwsav[80];
    int lwsav[120], iwsav[610];
    double rwsav[475];
    const int lcwsav = 1, llwsav = 120, liwsav = 610, lrwsav = 475;
    const char *options[] = {"Print Level = 1", "Feasibility Tolerance = 1.0e-10"};
    int k;

    tour_section("linear programming with E04MFA (q28832, q63843, q91522)");
    memset(cwsav, ' ', sizeof cwsav);
    e04wba("E04MFA", cwsav, &lcwsav, lwsav, &llwsav, iwsav, &liwsav, rwsav, &lrwsav, &ifail, 6, 80);
    printf("E04WBA: IFAIL = %d\n", ifail);
    for (k = 0; k < 2; ++k) {
        e04mhf(options[k], &list, lwsav, iwsav, rwsav, &inform, (int)strlen(options[k]));
        printf("E04MHF \"%s\": INFORM = %d\n", options[k], inform);
    }
    ifail = -1;
    e04mfa(&n, &nclin, a, &lda, bl, bu, cvec, istate, x, &iter, &obj, ax, clamda, iwork, &liwork, work, &lwork, lwsav,
           iwsav, rwsav, &ifail);
    printf("\nE04MFA: IFAIL = %d after %d iterations\n", ifail, iter);
    printf("  tables %.4f, chairs %.4f, shelves %.4f; profit %.4f\n", x[0], x[1], x[2], -obj);
    printf("  hours used: carpentry %.4f, finishing %.4f, wood %.4f\n", ax[0], ax[1], ax[2]);
    printf("  worth of one more unit (minus the multiplier): carpentry %.4f, finishing %.4f, wood %.4f\n",
           0.0 - clamda[3], 0.0 - clamda[4], 0.0 - clamda[5]);
}
