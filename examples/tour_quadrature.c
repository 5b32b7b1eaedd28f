/* Chapter D01 in the tour: an integral with a singularity at an end and the record of its subintervals
 * (d01sjc), an integral over a triangle by the extrapolated ladder (D01PAF) and its table printed by
 * X04CDF, all bound by export symbol. */
#include <math.h>
#include <stdio.h>
#include <stdlib.h>

#include "tour.h"
#include "zek2/d01.h"

typedef void (ZEK_CALLBACK *one_dimension)(ZekQuadFunction, double, double, double, double, int, double *, double *,
                              ZekQuadProgress *, void *, ZekFail *);
typedef void (ZEK_CALLBACK *matrix_printer)(const char *, const char *, const int *, const int *, const double *, const int *,
                               const char *, const char *, const char *, const char *, const char *, const char *,
                               const int *, const int *, int *, int, int, int, int, int, int, int, int);
typedef void (ZEK_CALLBACK *simplex_ladder)(const int *, double *, const int *, const int *, ZekD01Function, int *, const int *,
                               double *, double *, int *, double *, int *);

static double ZEK_CALLBACK log_over_sqrt(double x, void *user) {
    (void)user;
    return x > 0.0 ? log(x) / sqrt(x) : 0.0;
}

static double ZEK_CALLBACK exp_sum(const int *ndim, const double x[], int iuser[], double ruser[]) {
    (void)iuser;
    (void)ruser;
    double s = 0.0;
    for (int i = 0; i < *ndim; ++i) s += x[i];
    return exp(s);
}

void tour_quadrature(void) {
    one_dimension d01sjc_ = (one_dimension)tour_bind("q76630");
    simplex_ladder d01paf_ = (simplex_ladder)tour_bind("q79439");

    tour_section("log(x)/sqrt(x) over [0, 1], exactly -4 (q76630, d01sjc)");
    double result = 0.0, abserr = 0.0;
    ZekQuadProgress qp = {0};
    ZekFail fail = {0};
    d01sjc_(log_over_sqrt, 0.0, 1.0, 0.0, 1e-10, 50, &result, &abserr, &qp, NULL, &fail);
    printf("result = %.12f, error estimate = %.2e, code = %d\n", result, abserr, (int)fail.code);
    printf("%d subintervals, %d evaluations:\n", (int)qp.num_subint, (int)qp.fun_count);
    for (int i = 0; i < qp.num_subint; ++i)
        printf("  [%.3e, %.3e]  integral %12.9f  error %.1e\n", qp.sub_int_beg_pts[i], qp.sub_int_end_pts[i],
               qp.sub_int_result[i], qp.sub_int_error[i]);
    free(qp.sub_int_beg_pts);
    free(qp.sub_int_end_pts);
    free(qp.sub_int_error);
    free(qp.sub_int_result);

    tour_section("exp(x + y) over the triangle (0,0), (2,0), (0,2), exactly 1 + e^2 (q79439, D01PAF)");
    const int ndim = 2, iv1 = 3, iv2 = 6;
    double vert[18] = {0.0, 2.0, 0.0, 0.0, 0.0, 2.0};
    double finvls[6], esterr[6];
    int minord = 0, maxord = 6, ifail = 1;
    d01paf_(&ndim, vert, &iv1, &iv2, exp_sum, &minord, &maxord, finvls, esterr, NULL, NULL, &ifail);
    printf("IFAIL = %d, estimate %.12f (exact %.12f), last change %.1e, %g evaluations\n", ifail, finvls[0],
           1.0 + exp(2.0), esterr[maxord - 1], vert[1 + 5 * iv1]);

    tour_section("the ladder's extrapolation table and its changes (X04CDF)");
    matrix_printer x04cdf_ = (matrix_printer)tour_bind("X04CDF");
    double table[12];
    for (int k = 0; k < 6; ++k) {
        table[2 * k] = finvls[k];
        table[2 * k + 1] = esterr[k];
    }
    const int rows = 2, cols = 6, ld = 2, ncols = 80, indent = 2;
    x04cdf_("G", " ", &rows, &cols, table, &ld, "1PE12.4", "FINVLS (row 1) and ESTERR (row 2) by order", "C",
            "FINVLSESTERR", "I", " ", &ncols, &indent, &ifail, 1, 1, 7, 43, 1, 6, 1, 1);
}

typedef void (ZEK_CALLBACK *transport)(const int *, const int *, const int *, const int *, const int *, int *, const int *, int *,
                          int *, int *, int *, int *, double *, int *, int *, int *);
typedef void (ZEK_CALLBACK *shortest_path)(const int *, const int *, const int *, const int *, const int *, double *, int *, int *,
                              double *, int *, int *, double *, int *);

void tour_networks(void) {
    transport h03abf_ = (transport)tour_bind("q18670");
    shortest_path h03adf_ = (shortest_path)tour_bind("q49251");

    tour_section("three plants, four markets: the cheapest shipment (q18670, H03ABF)");
    const int cost[12] = {19, 70, 40, 30, 30, 8, 50, 40, 70, 10, 60, 20};
    int amounts[7] = {7, 9, 18, 5, 8, 7, 14};
    const int ma = 3, mb = 4, m = 7, maxit = 100;
    int numit, src[7], dst[7], flow[6], kost[6], w1[7], w2[7], ifail = 1;
    double z;
    h03abf_(cost, &ma, &ma, &mb, &m, amounts, &maxit, &numit, src, dst, flow, kost, &z, w1, w2, &ifail);
    printf("IFAIL = %d after %d iterations, total cost %.0f\n", ifail, numit, z);
    for (int k = 0; k < m - 1; ++k)
        printf("  plant %d -> market %d: %2d units at %2d\n", src[k], dst[k], flow[k], kost[k]);

    tour_section("shortest path from 1 to 6 in an undirected network (q49251, H03ADF)");
    const int n = 6, ns = 1, ne = 6, direct = 0, nnz = 9;
    double d[9] = {7, 9, 14, 10, 15, 11, 2, 6, 9};
    int irow[9] = {1, 1, 1, 2, 2, 3, 3, 4, 5};
    int icol[9] = {2, 3, 6, 3, 4, 4, 6, 5, 6};
    int path[6], iwork[3 * 6 + 2 + 9];
    double work[12], length;
    ifail = 1;
    h03adf_(&n, &ns, &ne, &direct, &nnz, d, irow, icol, &length, path, iwork, work, &ifail);
    printf("IFAIL = %d, length %.1f, path:", ifail, length);
    for (int i = 0; i < n && path[i] != 0; ++i) printf(" %d", path[i]);
    printf("\n");
}
