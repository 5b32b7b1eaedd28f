/* Integer quadratic programming in the tour: a small convex QP in three integer variables solved by
 * H02CEF (Hessian as a matrix) and by H02CBF (Hessian through a routine in C), with the relaxation
 * (no integer variables) beside it to show that rounding its optimum is not the integer optimum.  Every
 * routine is bound by its export symbol. */
#include <math.h>
#include <stdio.h>
#include <string.h>

#include "tour.h"

typedef void (ZEK_CALLBACK *store_fn)(const char *, char *, const int *, int *, const int *, int *, const int *, double *,
                                      const int *, int *, int, int);
typedef void (ZEK_CALLBACK *option_fn)(const char *, const int *, int *, int *, double *, int *, int);
typedef void (ZEK_CALLBACK *dense_fn)(int *, const int *, const int *, const int *, const double *, const int *,
                                      const double *, const double *, const int *, const double *, const double *,
                                      const int *, const int *, const int *, const int *, double *, double *, double *,
                                      double *, double *, int *, const int *, double *, const int *, int *, int *,
                                      double *, int *);
typedef void (ZEK_CALLBACK *hess_fn)(const int *, const int *, const double *, const int *, const double *, double *,
                                     const int *, int *, double *);
typedef void (ZEK_CALLBACK *routine_fn)(int *, const int *, const int *, const int *, const double *, const int *,
                                        const double *, const double *, const int *, const double *, const double *,
                                        const int *, hess_fn, void *, const int *, const int *, const int *, double *,
                                        double *, double *, double *, double *, int *, const int *, double *,
                                        const int *, int *, double *, int *, int *, double *, int *);

enum { N = 3, M = 1, MAXDPT = 20 };
/* The documented minimum workspace: (N+M+25) MAXDPT + 5N + M + 4 integers and
 * (N+1) MAXDPT + 20N + 12M + 4N^2 reals. */
enum { LIWORK = (N + M + 25) * MAXDPT + 5 * N + M + 4 + 200, LRWORK = (N + 1) * MAXDPT + 20 * N + 12 * M + 4 * N * N };

/* minimise 1/2 x'Hx + c'x over integers x in [0, 5] with x1 + x2 + x3 <= 4.  H couples x1 and x2
 * strongly, so the level sets are long thin ellipses and the nearest integer point to the relaxed
 * optimum is not the best one. */
static const double kH[N * N] = {2.0, 1.8, 0.0, 1.8, 2.0, 0.0, 0.0, 0.0, 1.0};
static const double kC[N] = {-3.1, -3.3, -1.4};

static double objective(const double *x) {
    double f = 0.0;
    for (int i = 0; i < N; ++i) {
        f += kC[i] * x[i];
        for (int j = 0; j < N; ++j) f += 0.5 * x[i] * kH[i + j * N] * x[j];
    }
    return f;
}

/* The Hessian routine of H02CBF: HX := H X, H in the array handed through. */
static void ZEK_CALLBACK product(const int *n, const int *jthcol, const double *h, const int *ldh, const double *x,
                                 double *hx, const int *nstate, int *iuser, double *ruser) {
    (void)jthcol;
    (void)nstate;
    (void)ruser;
    ++iuser[0];
    for (int i = 0; i < *n; ++i) {
        hx[i] = 0.0;
        for (int j = 0; j < *n; ++j) hx[i] += h[i + j * *ldh] * x[j];
    }
}

void tour_iqp(void) {
    store_fn h02wbf = (store_fn)tour_bind("q57465");
    option_fn h02cdf = (option_fn)tour_bind("H02CDF");
    dense_fn h02cef = (dense_fn)tour_bind("H02CEF");
    routine_fn h02cbf = (routine_fn)tour_bind("H02CBF");
    static double rwork[LRWORK], rwsav[475];
    static int iwork[LIWORK], lwsav[120], iwsav[610];
    char cwsav[80];
    const int lc = 1, ll = 120, li = 610, lr = 475, n = N, m = M, lda = 1, ldh = N, liwork = LIWORK, lrwork = LRWORK;
    const int maxnod = 0, intfst = 0, maxdpt = MAXDPT, msglvl = 0, list = 0;
    const double a[M * N] = {1.0, 1.0, 1.0};
    const double bl[N + M] = {0.0, 0.0, 0.0, -1e20}, bu[N + M] = {5.0, 5.0, 5.0, 4.0};
    const int none[N] = {0, 0, 0}, all[N] = {1, 1, 1};
    double x[N], relaxed[N], toliv, tolfes, bigbnd, obj;
    int itmax, ifail, inform = 0, iuser[1] = {0};

    tour_section("integer QP by branch and bound (H02CEF, H02CBF, H02CDF)");
    /* The relaxation: H02CEF with no integer variable is one QP. */
    ifail = 0;
    h02wbf("H02CEF", cwsav, &lc, lwsav, &ll, iwsav, &li, rwsav, &lr, &ifail, 6, 80);
    memset(relaxed, 0, sizeof relaxed);
    itmax = 0;
    toliv = tolfes = bigbnd = 0.0;
    ifail = -1;
    h02cef(&itmax, &msglvl, &n, &m, a, &lda, bl, bu, none, kC, kH, &ldh, &maxnod, &intfst, &maxdpt, &toliv, &tolfes,
           &bigbnd, relaxed, &obj, iwork, &liwork, rwork, &lrwork, lwsav, iwsav, rwsav, &ifail);
    printf("relaxed optimum  x = (%.4f, %.4f, %.4f)  f = %.6f  (IFAIL %d)\n", relaxed[0], relaxed[1], relaxed[2],
           obj, ifail);
    for (int j = 0; j < N; ++j) x[j] = floor(relaxed[j] + 0.5);
    printf("rounded          x = (%.0f, %.0f, %.0f)  f = %.6f\n", x[0], x[1], x[2], objective(x));

    /* The integer problem, Hessian as a matrix. */
    ifail = 0;
    h02wbf("H02CEF", cwsav, &lc, lwsav, &ll, iwsav, &li, rwsav, &lr, &ifail, 6, 80);
    memset(x, 0, sizeof x);
    itmax = 0;
    toliv = tolfes = bigbnd = 0.0;
    ifail = -1;
    h02cef(&itmax, &msglvl, &n, &m, a, &lda, bl, bu, all, kC, kH, &ldh, &maxnod, &intfst, &maxdpt, &toliv, &tolfes,
           &bigbnd, x, &obj, iwork, &liwork, rwork, &lrwork, lwsav, iwsav, rwsav, &ifail);
    printf("H02CEF integer   x = (%.0f, %.0f, %.0f)  f = %.6f  (IFAIL %d)\n", x[0], x[1], x[2], obj, ifail);

    /* The same through a Hessian routine, with an option for the nodes' QPs set by H02CDF. */
    ifail = 0;
    h02wbf("H02CBF", cwsav, &lc, lwsav, &ll, iwsav, &li, rwsav, &lr, &ifail, 6, 80);
    h02cdf("Rank Tolerance = 1.0e-12", &list, lwsav, iwsav, rwsav, &inform, 24);
    memset(x, 0, sizeof x);
    itmax = 0;
    toliv = tolfes = bigbnd = 0.0;
    ifail = -1;
    h02cbf(&itmax, &msglvl, &n, &m, a, &lda, bl, bu, all, kC, kH, &ldh, product, NULL, &maxnod, &intfst, &maxdpt,
           &toliv, &tolfes, &bigbnd, x, &obj, iwork, &liwork, rwork, &lrwork, iuser, NULL, lwsav, iwsav, rwsav,
           &ifail);
    printf("H02CBF integer   x = (%.0f, %.0f, %.0f)  f = %.6f  (IFAIL %d, %d Hessian products)\n", x[0], x[1], x[2],
           obj, ifail, iuser[0]);
}
