/* Chapter E04 in the tour: a constrained nonlinear program with user functions in C, bound by export
 * symbols.
 *
 * E04UCA (q51471) on problem 71 of the Hock-Schittkowski collection:
 *     minimise x1 x4 (x1 + x2 + x3) + x3
 *     subject to x1 x2 x3 x4 >= 25,  x1^2 + x2^2 + x3^2 + x4^2 = 40,  1 <= x <= 5,
 * from (1, 5, 5, 1); the optimum is 17.0140173 at (1, 4.7429994, 3.8211503, 1.3794082).  Then the same
 * run with "Verify Level = 1" and a planted mistake in the third gradient element: the check finds it
 * and the run stops with IFAIL 7 before any major iteration. */
#include <stdio.h>
#include <string.h>

#include "tour.h"

typedef void (ZEK_CALLBACK *e04wba_fn)(const char *, char *, const int *, int *, const int *, int *, const int *,
                                       double *, const int *, int *, int, int);
typedef void (ZEK_CALLBACK *e04option_fn)(const char *, const int *, int *, int *, double *, int *, int);
typedef void (ZEK_CALLBACK *objfun_fn)(int *, const int *, const double *, double *, double *, const int *, int *,
                                       double *);
typedef void (ZEK_CALLBACK *confun_fn)(int *, const int *, const int *, const int *, int *, const double *, double *,
                                       double *, const int *, int *, double *);
typedef void (ZEK_CALLBACK *e04uca_fn)(const int *, const int *, const int *, const int *, const int *, const int *,
                                       const double *, const double *, const double *, confun_fn, void *, objfun_fn,
                                       void *, int *, int *, double *, double *, double *, double *, double *, double *,
                                       double *, int *, const int *, double *, const int *, int *, double *, int *,
                                       int *, double *, int *);

/* IUSER(1) = 1 plants the mistake in the third gradient element. */
static void ZEK_CALLBACK hs71_objective(int *mode, const int *n, const double *x, double *objf, double *objgrd,
                                        const int *nstate, int *iuser, double *ruser) {
    (void)n, (void)nstate, (void)ruser;
    *objf = x[0] * x[3] * (x[0] + x[1] + x[2]) + x[2];
    if (*mode == 2) {
        objgrd[0] = x[3] * (2 * x[0] + x[1] + x[2]);
        objgrd[1] = x[0] * x[3];
        objgrd[2] = x[0] * x[3] + (iuser[0] == 1 ? 2.0 : 1.0);
        objgrd[3] = x[0] * (x[0] + x[1] + x[2]);
    }
}

static void ZEK_CALLBACK hs71_constraints(int *mode, const int *ncnln, const int *n, const int *ldcj, int *needc,
                                          const double *x, double *c, double *cjac, const int *nstate, int *iuser,
                                          double *ruser) {
    int j;
    (void)ncnln, (void)n, (void)needc, (void)nstate, (void)iuser, (void)ruser;
    c[0] = x[0] * x[1] * x[2] * x[3];
    c[1] = x[0] * x[0] + x[1] * x[1] + x[2] * x[2] + x[3] * x[3];
    if (*mode == 2) {
        cjac[0] = x[1] * x[2] * x[3];
        cjac[*ldcj] = x[0] * x[2] * x[3];
        cjac[2 * *ldcj] = x[0] * x[1] * x[3];
        cjac[3 * *ldcj] = x[0] * x[1] * x[2];
        for (j = 0; j < 4; ++j) cjac[1 + j * *ldcj] = 2 * x[j];
    }
}

void tour_sqp(void) {
    e04wba_fn e04wba = (e04wba_fn)tour_bind("q28832");
    e04option_fn e04uef = (e04option_fn)tour_bind("q11847");
    e04uca_fn e04uca = (e04uca_fn)tour_bind("q51471");
    enum { N = 4, NCNLN = 2, NT = N + NCNLN, LIWORK = 2 * N + 3 + NCNLN };
    /* max(1,l+c)(n+1) + 3(k+c)n + 2(n+l+c) + 8c + 3k + 24n + 5(l+c) + 4n^2 with l = 0, c = 2, k = 1 */
    enum { LWORK = 2 * (N + 1) + 3 * 3 * N + 2 * NT + 16 + 3 + 24 * N + 10 + 4 * N * N };
    const int n = N, nclin = 0, ncnln = NCNLN, lda = 1, ldcj = NCNLN, ldr = N, liwork = LIWORK, lwork = LWORK;
    const int lcwsav = 1, llwsav = 120, liwsav = 610, lrwsav = 475, list = 0;
    const double a[1] = {0.0};
    const double bl[NT] = {1, 1, 1, 1, 25, 40}, bu[NT] = {5, 5, 5, 5, 1e20, 40};
    int pass;
    tour_section("E04: a nonlinear program by sequential quadratic programming");
    for (pass = 0; pass < 2; ++pass) {
        char cwsav[80];
        int lwsav[120], iwsav[610], istate[NT], iwork[LIWORK], iuser[1], iter = 0, inform = 0, ifail = 1;
        double rwsav[475], c[NCNLN], cjac[NCNLN * N], clamda[NT], objf = 0, objgrd[N], r[N * N], work[LWORK];
        double x[N] = {1, 5, 5, 1}, ruser[1] = {0};
        memset(cwsav, ' ', sizeof cwsav);
        e04wba("E04UCA", cwsav, &lcwsav, lwsav, &llwsav, iwsav, &liwsav, rwsav, &lrwsav, &ifail, 6, 80);
        if (pass == 1) e04uef("Verify Level = 1", &list, lwsav, iwsav, rwsav, &inform, 16);
        iuser[0] = pass;
        ifail = 1;
        e04uca(&n, &nclin, &ncnln, &lda, &ldcj, &ldr, a, bl, bu, hs71_constraints, NULL, hs71_objective, NULL, &iter,
               istate, c, cjac, clamda, &objf, objgrd, r, x, iwork, &liwork, work, &lwork, iuser, ruser, lwsav, iwsav,
               rwsav, &ifail);
        if (pass == 0)
            printf("HS071: IFAIL %d after %d major iterations, F = %.7f at (%.7f, %.7f, %.7f, %.7f)\n"
                   "       multipliers of the two constraints %.6f, %.6f\n",
                   ifail, iter, objf, x[0], x[1], x[2], x[3], clamda[N], clamda[N + 1]);
        else
            printf("HS071 with a wrong third gradient element and Verify Level 1: IFAIL %d (7: large errors found "
                   "in the derivatives)\n", ifail);
    }
}
