/* The tour's small minimisers of chapter E04: Rosenbrock's function under simple bounds with its
 * gradient (E04KYF), and the minimum of a function of one variable on an interval (E04ABF), bound by
 * export symbol as the host binds them.  User functions pass through the library's own adaptors (a
 * null adaptor argument). */
#include <math.h>
#include <stdio.h>

#include "tour.h"

void tour_minimisers(void);

typedef void (*bound_funct2)(int *, const int *, const double *, double *, double *, int *, double *);
typedef void (*kyf_fn)(const int *, const int *, bound_funct2, void *, double *, double *, double *, double *,
                       double *, int *, const int *, double *, const int *, int *, double *, int *);
typedef void (*funct1)(const double *, double *, int *, double *);
typedef void (*abf_fn)(funct1, void *, double *, double *, double *, double *, int *, double *, double *, int *,
                       double *, int *);

static void rosenbrock(int *iflag, const int *n, const double *x, double *f, double *g, int *iuser, double *ruser) {
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

static void one_dim(const double *x, double *f, int *iuser, double *ruser) {
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
}
