/* The tour's small minimisers of chapter E04: Rosenbrock's function under simple bounds with its
 * gradient (E04KYF), the minimum of a function of one variable on an interval (E04ABF), and a curve
 * fit with the covariance of its parameters (E04GYF, E04YCF), bound by
 * export symbol as the host binds them.  User functions pass through the library's own adaptors (a
 * null adaptor argument). */
#include <math.h>
#include <stdio.h>

#include "tour.h"

void tour_minimisers(void);
void tour_curve_fit(void);

typedef void (ZEK_CALLBACK *bound_funct2)(int *, const int *, const double *, double *, double *, int *, double *);
typedef void (ZEK_CALLBACK *kyf_fn)(const int *, const int *, bound_funct2, void *, double *, double *, double *, double *,
                       double *, int *, const int *, double *, const int *, int *, double *, int *);
typedef void (ZEK_CALLBACK *funct1)(const double *, double *, int *, double *);
typedef void (ZEK_CALLBACK *abf_fn)(funct1, void *, double *, double *, double *, double *, int *, double *, double *, int *,
                       double *, int *);

static void ZEK_CALLBACK rosenbrock(int *iflag, const int *n, const double *x, double *f, double *g, int *iuser, double *ruser) {
    const double a = x[1] - x[0] * x[0], b = 1.0 - x[0];
    (void)n;
    (void)iuser;
    (void)ruser;
    *f = 100.0 * a * a + b * b;
    if (*iflag == 2) {
        g[0] = -400.0 * x[0] * a - 2.0 * b;
        g[1] = 200.0 * a;
    }
}

static void ZEK_CALLBACK one_dim(const double *x, double *f, int *iuser, double *ruser) {
    (void)iuser;
    (void)ruser;
    *f = sin(*x) / *x;
}

void tour_minimisers(void) {
    kyf_fn e04kyf = (kyf_fn)tour_bind("q70509");
    abf_fn e04abf = (abf_fn)tour_bind("q66846");
    {
        /* x1 in [-2, 0.5], x2 in [-1, 2]: the minimum lies on the upper bound of x1. */
        const int n = 2, ibound = 0, liw = 4, lw = 21;
        double bl[2] = {-2.0, -1.0}, bu[2] = {0.5, 2.0}, x[2] = {-1.2, 1.0}, f = 0.0, g[2], w[21], ruser = 0.0;
        int iw[4], iuser = 0, ifail = 1;
        tour_section("Rosenbrock's function under bounds (E04KYF q70509)");
        e04kyf(&n, &ibound, rosenbrock, NULL, bl, bu, x, &f, g, iw, &liw, w, &lw, &iuser, &ruser, &ifail);
        printf("IFAIL = %d after %d evaluations\n", ifail, iw[n + 1]);
        printf("x = (%.6f, %.6f), f = %.6e, state of x1 %d (-2: on its upper bound)\n", x[0], x[1], f, iw[0]);
    }
    {
        double e1 = 0.0, e2 = 0.0, a = 3.5, b = 5.0, x = 0.0, f = 0.0, ruser = 0.0;
        int maxcal = 40, iuser = 0, ifail = 1;
        tour_section("one variable: sin(x)/x on [3.5, 5] (E04ABF q66846)");
        e04abf(one_dim, NULL, &e1, &e2, &a, &b, &maxcal, &x, &f, &iuser, &ruser, &ifail);
        printf("IFAIL = %d, x = %.8f, f = %.8f, %d calls, bracket [%.8f, %.8f]\n", ifail, x, f, maxcal, a, b);
    }
    tour_curve_fit();
}

/* A nonlinear curve fit y = b1 (1 - exp(-b2 x)) by E04GYF (q74490), then the standard deviations of b1
 * and b2 from the covariance matrix (E04YCF q39421), whose inputs E04GYF leaves in its workspace. */
typedef void (ZEK_CALLBACK *lsqfun)(int *, const int *, const int *, const double *, double *, double *, const int *, int *,
                       double *);
typedef void (ZEK_CALLBACK *gyf_fn)(const int *, const int *, lsqfun, void *, double *, double *, double *, const int *, int *,
                       double *, int *);
typedef void (ZEK_CALLBACK *ycf_fn)(const int *, const int *, const int *, const double *, const double *, double *, const int *,
                       double *, double *, const int *, int *);

static const double fit_x[] = {77.6, 114.9, 141.1, 190.8, 239.9, 289.0, 332.8, 378.4, 434.8, 477.3, 536.8, 593.1, 689.1, 760.0};
static const double fit_y[] = {10.07, 14.73, 17.94, 23.93, 29.61, 35.18, 40.02, 44.82, 50.76, 55.05, 61.01, 66.40, 75.47, 81.78};

static void ZEK_CALLBACK curve(int *iflag, const int *m, const int *n, const double *b, double *f, double *j, const int *lj,
                  int *iuser, double *ruser) {
    int i;
    (void)n;
    (void)iuser;
    (void)ruser;
    for (i = 0; i < *m; ++i) {
        const double e = exp(-b[1] * fit_x[i]);
        f[i] = b[0] * (1.0 - e) - fit_y[i];
        if (*iflag == 2) {
            j[i] = 1.0 - e;
            j[i + *lj] = b[0] * fit_x[i] * e;
        }
    }
}

void tour_curve_fit(void) {
    gyf_fn e04gyf = (gyf_fn)tour_bind("q74490");
    ycf_fn e04ycf = (ycf_fn)tour_bind("q39421");
    enum { M = 14, N = 2, LW = 8 * N + 2 * N * N + 2 * M * N + 3 * M };
    const int m = M, n = N, lw = LW, job = 0, lv = N;
    double b[2] = {500.0, 1e-4}, fsumsq = 0.0, w[LW], cj[2], work[2], ruser = 0.0;
    int iuser = 0, ifail = 1;
    tour_section("a curve fit and its covariance (E04GYF q74490, E04YCF q39421)");
    e04gyf(&m, &n, curve, NULL, b, &fsumsq, w, &lw, &iuser, &ruser, &ifail);
    printf("IFAIL = %d, b1 = %.10g, b2 = %.10g, sum of squares = %.10g\n", ifail, b[0], b[1], fsumsq);
    /* W holds FVEC (M), FJAC (M*N), S (N), V (N*N) */
    ifail = 1;
    e04ycf(&job, &m, &n, &fsumsq, w + M + M * N, w + M + M * N + N, &lv, cj, work, &n, &ifail);
    printf("IFAIL = %d, standard deviations %.6g and %.6g\n", ifail, sqrt(cj[0]), sqrt(cj[1]));
}
