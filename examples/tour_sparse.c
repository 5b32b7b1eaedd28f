/* Sparse systems: a Matrix Market matrix sorted into coordinate storage, factorised incompletely,
 * solved by the incomplete-LU driver, then by a reverse-communication loop of our own with a product
 * written here. */
#include "tour.h"

#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum { MAXN = 100, MAXNZ = 400, LA = 4000 };

typedef void (ZEK_CALLBACK *sort_fn)(const int *, int *, double *, int *, int *, const char *, const char *, int *, int *, int *,
                        int, int);
typedef void (ZEK_CALLBACK *ilu_fn)(const int *, const int *, double *, const int *, int *, int *, const int *, const double *,
                       const char *, const char *, int *, int *, int *, int *, int *, int *, int *, const int *,
                       int *, int, int);
typedef void (ZEK_CALLBACK *driver_fn)(const char *, const int *, const int *, const double *, const int *, const int *,
                          const int *, const int *, const int *, const int *, const int *, const double *,
                          const int *, const double *, const int *, double *, double *, int *, double *,
                          const int *, int *, int);
typedef void (ZEK_CALLBACK *setup_fn)(const char *, const char *, const char *, const char *, const int *, const int *,
                         const int *, const double *, const int *, const double *, const double *, const int *,
                         int *, double *, const int *, int *, int, int, int, int);
typedef void (ZEK_CALLBACK *step_fn)(int *, double *, double *, const double *, double *, const int *, int *);
typedef void (ZEK_CALLBACK *diag_fn)(int *, double *, double *, double *, double *, const double *, const int *, int *);
typedef void (ZEK_CALLBACK *solve_fn)(const char *, const int *, const double *, const int *, const int *, const int *,
                         const int *, const int *, const int *, const int *, const char *, const double *, double *,
                         int *, int, int);

static double a[LA], b[MAXN], x[MAXN], u[MAXN], v[MAXN], work[20000];
static int irow[LA], icol[LA], istr[MAXN + 1], idiag[MAXN], ipivp[MAXN], ipivq[MAXN], iwork[7 * MAXN + 2];

/* y := A*x over the first nnz entries. */
static void product(int n, int nnz, const double *xx, double *y) {
    int i;
    for (i = 0; i < n; ++i) y[i] = 0.0;
    for (i = 0; i < nnz; ++i) y[irow[i] - 1] += a[i] * xx[icol[i] - 1];
}

static double residual(int n, int nnz, const double *xx) {
    double r[MAXN], worst = 0.0;
    int i;
    product(n, nnz, xx, r);
    for (i = 0; i < n; ++i) worst = fmax(worst, fabs(b[i] - r[i]));
    return worst;
}

void tour_sparse(void) {
    sort_fn sort = (sort_fn)tour_bind("q17326");
    ilu_fn ilu = (ilu_fn)tour_bind("q10000");
    driver_fn driver = (driver_fn)tour_bind("q81302");
    setup_fn setup = (setup_fn)tour_bind("q57497");
    step_fn step = (step_fn)tour_bind("q20657");
    diag_fn diag = (diag_fn)tour_bind("q18854");
    solve_fn solve = (solve_fn)tour_bind("q81766");
    char line[256];
    int n = 0, cols = 0, nnz = 0, k = 0, ifail = -1, lfill = 1, liwork = 7 * MAXN + 2, la = LA, nnzc = 0, npivm = 0;
    int m = 20, maxitn = 300, itn = 0, lwork = 20000, itn_rc = 0, irevcm = 0, lwreq = 0, iterm = 1, monit = 0, calls;
    double dtol = 0.0, tol = 1e-10, rnorm = 0.0, anorm = 0.0, sigmax = 0.0, lhs = 0.0, rhs = 0.0;
    FILE *in = fopen(ZEK_TOUR_DATA_DIR "/matrices/west0067.mtx", "r");

    tour_section("sparse systems: west0067 (q17326, q10000, q81302, q57497, q20657, q18854)");
    if (in == NULL) {
        printf("matrix file not found\n");
        return;
    }
    while (fgets(line, sizeof line, in) != NULL && line[0] == '%') {
    }
    if (sscanf(line, "%d %d %d", &n, &cols, &nnz) != 3 || n > MAXN || nnz > MAXNZ) {
        fclose(in);
        return;
    }
    for (k = 0; k < nnz && fscanf(in, "%d %d %lf", &irow[k], &icol[k], &a[k]) == 3; ++k) {
    }
    fclose(in);
    /* The file lists entries by column; sort them into rows. */
    sort(&n, &nnz, a, irow, icol, "S", "R", istr, iwork, &ifail, 1, 1);
    for (k = 0; k < n; ++k) b[k] = 1.0 + (double)k / n;
    ilu(&n, &nnz, a, &la, irow, icol, &lfill, &dtol, "C", "N", ipivp, ipivq, istr, idiag, &nnzc, &npivm, iwork,
        &liwork, &ifail, 1, 1);
    printf("n = %d, entries = %d, incomplete LU (level 1, complete pivoting): %d entries, IFAIL = %d\n", n, nnz,
           nnzc, ifail);
    driver("RGMRES", &n, &nnz, a, &la, irow, icol, ipivp, ipivq, istr, idiag, b, &m, &tol, &maxitn, x, &rnorm, &itn,
           work, &lwork, &ifail, 6);
    printf("driver, RGMRES(20): IFAIL = %d, %d iterations, max |b - Ax| = %.2e\n", ifail, itn, residual(n, nnz, x));

    /* The same system by reverse communication with BiCGSTAB(2): our product, the library's factor solve. */
    m = 2;
    setup("BICGSTAB", "P", "I", "N", &iterm, &n, &m, &tol, &maxitn, &anorm, &sigmax, &monit, &lwreq, work, &lwork,
          &ifail, 8, 1, 1, 1);
    memcpy(v, b, sizeof b);
    for (k = 0; k < n; ++k) u[k] = 0.0;
    for (calls = 0; calls < 100000; ++calls) {
        int f = -1;
        step(&irevcm, u, v, NULL, work, &lwork, &ifail);
        if (irevcm == 4) break;
        if (irevcm == 1) product(n, nnz, u, v);
        if (irevcm == -1) {
            int i;
            for (i = 0; i < n; ++i) v[i] = 0.0;
            for (i = 0; i < nnz; ++i) v[icol[i] - 1] += a[i] * u[irow[i] - 1];
        }
        if (irevcm == 2) solve("N", &n, a, &la, irow, icol, ipivp, ipivq, istr, idiag, "N", u, v, &f, 1, 1);
    }
    diag(&itn_rc, &lhs, &rhs, &anorm, &sigmax, work, &lwork, &ifail);
    printf("own loop, BiCGSTAB(2): %d iterations, residual %.2e <= %.2e, estimated ||A||_1 = %.4f, max |b - Ax| = %.2e\n",
           itn_rc, lhs, rhs, anorm, residual(n, nnz, u));
}
