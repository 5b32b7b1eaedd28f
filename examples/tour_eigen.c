/* Chapter F08 eigenproblems in the tour: the real Schur form and eigenvalues of a small nonsymmetric
 * Hessenberg matrix (F08PEF), its eigenvectors (F08QKF) and their condition numbers (F08QLF); then
 * the condition numbers of a complex triangular matrix with eigenvectors from the complex helper,
 * all bound by export symbols. */
#include <stdio.h>

#include "tour.h"
#include "zek2/types.h"

typedef void (ZEK_CALLBACK *hseqr)(const char *, const char *, const int *, const int *, const int *, double *,
                                   const int *, double *, double *, double *, const int *, double *, const int *,
                                   int *, int, int);
typedef void (ZEK_CALLBACK *trevc)(const char *, const char *, int *, const int *, const double *, const int *,
                                   double *, const int *, double *, const int *, const int *, int *, double *, int *,
                                   int, int);
typedef void (ZEK_CALLBACK *trsna)(const char *, const char *, const int *, const int *, const double *, const int *,
                                   const double *, const int *, const double *, const int *, double *, double *,
                                   const int *, int *, double *, const int *, void *, int *, int, int);
typedef void (ZEK_CALLBACK *vector_helper)(const int *, const int *, const double *, const int *, const int *,
                                           double *);

void tour_eigen(void) {
    hseqr f08pef = (hseqr)tour_bind("q90698");
    trevc f08qkf = (trevc)tour_bind("q66569");
    trsna f08qlf = (trsna)tour_bind("q24426");
    trsna f08qyf = (trsna)tour_bind("q47142");
    vector_helper f08qxz = (vector_helper)tour_bind("q69383");

    tour_section("Schur form, eigenvectors and condition numbers (q90698 F08PEF, q66569 F08QKF, q24426 F08QLF)");
    enum { N = 4 };
    const int n = N, one = 1, lwork = N, ldwork = N;
    double h[N * N] = {4, 3, 0, 0, -1, 1, 2, 0, 2, 5, 3, 1, 1, 0, -2, 6};
    double wr[N], wi[N], z[N * N], work[N * (N + 6)], vl[N * N], vr[N * N], s[N], sep[N];
    int select[N] = {1, 1, 1, 1}, iwork[2 * N], m = 0, info = 0, i;
    f08pef("S", "I", &n, &one, &n, h, &n, wr, wi, z, &n, work, &lwork, &info, 1, 1);
    printf("F08PEF: INFO = %d\n", info);
    f08qkf("B", "A", select, &n, h, &n, vl, &n, vr, &n, &n, &m, work, &info, 1, 1);
    f08qlf("B", "A", select, &n, h, &n, vl, &n, vr, &n, s, sep, &n, &m, work, &ldwork, iwork, &info, 1, 1);
    printf("F08QLF: INFO = %d\n", info);
    for (i = 0; i < N; ++i)
        printf("  lambda = %10.6f %+10.6f i   S = %8.5f   SEP = %8.5f\n", wr[i], wi[i], s[i], sep[i]);

    tour_section("complex triangular T: eigenvectors (q69383) and condition numbers (q47142, F08QYF)");
    enum { C = 3 };
    const int nc = C;
    double t[2 * C * C] = {1, 1, 0, 0, 0, 0, 2, -1, 2, 0, 0, 0, 1, 0, 0, 3, 2.5, 0};
    double cvl[2 * C * C], cvr[2 * C * C], cwork[2 * C * (C + 1)], cs[C], csep[C], rwork[C];
    int k, left = 1, right = 0;
    for (k = 1; k <= C; ++k) {
        f08qxz(&right, &nc, t, &nc, &k, cvr + 2 * C * (k - 1));
        f08qxz(&left, &nc, t, &nc, &k, cvl + 2 * C * (k - 1));
    }
    f08qyf("B", "A", select, &nc, t, &nc, cvl, &nc, cvr, &nc, cs, csep, &nc, &m, cwork, &nc, rwork, &info, 1, 1);
    printf("F08QYF: INFO = %d\n", info);
    for (i = 0; i < C; ++i)
        printf("  lambda = %6.3f %+6.3f i   S = %8.5f   SEP = %8.5f\n", t[2 * (i + C * i)], t[2 * (i + C * i) + 1], cs[i],
               csep[i]);
}
