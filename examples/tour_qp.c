/* Chapter E04 in the tour: quadratic programming and linear least squares, bound by export symbols.
 *
 * E04NFA (q98986) with a Hessian routine written here in C: a portfolio of three assets with expected
 * returns 0.10, 0.07, 0.03 and a diagonal covariance 0.04, 0.02, 0.001 chooses weights w (0 <= w <= 1,
 * sum w = 1) that minimise  1/2 w'Hw - 0.1 * returns'w  (risk against return).
 *
 * E04NCA (q68352): the straight line y = p + q t closest in least squares to four measured points,
 * with the slope constrained to q >= 0.5. */
#include <stdio.h>
#include <string.h>

#include "tour.h"

typedef void (ZEK_CALLBACK *e04wba_fn)(const char *, char *, const int *, int *, const int *, int *, const int *, double *,
                          const int *, int *, int, int);
typedef void (ZEK_CALLBACK *e04option_fn)(const char *, const int *, int *, int *, double *, int *, int);
typedef void (ZEK_CALLBACK *qphess_fn)(const int *, const int *, const double *, const int *, const double *, double *,
                          const int *, int *, double *);
typedef void (ZEK_CALLBACK *e04nfa_fn)(const int *, const int *, const double *, const int *, const double *, const double *,
                          const double *, const double *, const int *, qphess_fn, void *, int *, double *, int *,
                          double *, double *, double *, int *, const int *, double *, const int *, int *, double *,
                          int *, int *, double *, int *);
typedef void (ZEK_CALLBACK *e04nca_fn)(const int *, const int *, const int *, const int *, const int *, const double *,
                          const double *, const double *, const double *, int *, int *, double *, double *, double *,
                          int *, double *, double *, int *, const int *, double *, const int *, int *, int *,
                          double *, int *);

/* HX := H X for the diagonal covariance in H's first column; IUSER(1) counts the calls. */
static void ZEK_CALLBACK covariance_product(const int *n, const int *jthcol, const double *h, const int *ldh, const double *x,
                               double *hx, const int *nstate, int *iuser, double *ruser) {
    int i;
    (void)jthcol, (void)ldh, (void)nstate, (void)ruser;
    for (i = 0; i < *n; ++i) hx[i] = h[i] * x[i];
    ++iuser[0];
}

static void prepare(e04wba_fn e04wba, const char *name, char *cwsav, int *lwsav, int *iwsav, double *rwsav) {
    const int lcwsav = 1, llwsav = 120, liwsav = 610, lrwsav = 475;
    int ifail = 1;
    memset(cwsav, ' ', 80);
    e04wba(name, cwsav, &lcwsav, lwsav, &llwsav, iwsav, &liwsav, rwsav, &lrwsav, &ifail, 6, 80);
}

void tour_qp(void) {
    e04wba_fn e04wba = (e04wba_fn)tour_bind("q28832");
    e04option_fn e04nhf = (e04option_fn)tour_bind("q76668");
    e04nfa_fn e04nfa = (e04nfa_fn)tour_bind("q98986");
    e04nca_fn e04nca = (e04nca_fn)tour_bind("q68352");
    void *adaptor = tour_bind("E04NFA_QPHESS_ADAPTOR");
    char cwsav[80];
    int lwsav[120], iwsav[610], inform = 0, list = 0;
    double rwsav[475];

    /* The portfolio. */
    enum { N = 3, NCLIN = 1, LIWORK = 2 * N + 3, LWORK = 13 * N + 5 * NCLIN + 4 * N * N };
    const int n = N, nclin = NCLIN, lda = 1, ldh = N, liwork = LIWORK, lwork = LWORK;
    const double a[N] = {1.0, 1.0, 1.0};
    const double bl[N + NCLIN] = {0.0, 0.0, 0.0, 1.0}, bu[N + NCLIN] = {1.0, 1.0, 1.0, 1.0};
    const double cvec[N] = {-0.010, -0.007, -0.003};
    const double h[N * N] = {0.04, 0.02, 0.001, 0, 0, 0, 0, 0, 0};
    int istate[N + NCLIN] = {0}, iwork[LIWORK], iter = 0, ifail = -1, iuser[1] = {0};
    double x[N] = {1.0, 0.0, 0.0}, ax[NCLIN], clamda[N + NCLIN], work[LWORK], obj = 0.0, ruser[1] = {0.0};

    tour_section("quadratic programming with E04NFA (q98986) and a Hessian routine in C");
    prepare(e04wba, "E04NFA", cwsav, lwsav, iwsav, rwsav);
    e04nhf("Print Level = 1", &list, lwsav, iwsav, rwsav, &inform, 15);
    e04nfa(&n, &nclin, a, &lda, bl, bu, cvec, h, &ldh, covariance_product, adaptor, istate, x, &iter, &obj, ax, clamda,
           iwork, &liwork, work, &lwork, iuser, ruser, lwsav, iwsav, rwsav, &ifail);
    printf("\nE04NFA: IFAIL = %d after %d iterations, %d Hessian products\n", ifail, iter, iuser[0]);
    printf("  weights %.6f %.6f %.6f, objective %.6e\n", x[0], x[1], x[2], obj);

    {
        /* The line through (0, 1.1), (1, 1.4), (2, 2.2), (3, 2.3), slope at least 0.5. */
        enum { M = 4, NL = 2, LIW = 2 * NL + 3, LW = 17 * NL + M + 4 * NL * NL + M * NL };
        const int m = M, nl = NL, nc = 0, ldc = 1, ldd = M, liw = LIW, lw = LW;
        double data[M * NL] = {1, 1, 1, 1, 0, 1, 2, 3}, b[M] = {1.1, 1.4, 2.2, 2.3};
        const double c[1] = {0.0}, lbl[NL] = {-1e25, 0.5}, lbu[NL] = {1e25, 1e25}, lcvec[NL] = {0.0, 0.0};
        int lstate[NL] = {0}, kx[NL], liwk[LIW], liter = 0, lifail = -1;
        double lx[NL] = {0.0, 0.0}, lclamda[NL], lwk[LW], lobj = 0.0;

        tour_section("constrained least squares with E04NCA (q68352)");
        prepare(e04wba, "E04NCA", cwsav, lwsav, iwsav, rwsav);
        e04nca(&m, &nl, &nc, &ldc, &ldd, c, lbl, lbu, lcvec, lstate, kx, lx, data, b, &liter, &lobj, lclamda, liwk,
               &liw, lwk, &lw, lwsav, iwsav, rwsav, &lifail);
        printf("E04NCA: IFAIL = %d; line y = %.6f + %.6f t, half the squared residual %.6f\n", lifail, lx[0], lx[1],
               lobj);
    }
}
