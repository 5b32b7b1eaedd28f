/* Chapters F03, F04 and F07 in the tour: a 3 by 3 system factorised with F07ADF (partial pivoting),
 * solved with f04ajc on those factors, and its determinant from F03AAF, all bound by export symbols. */
#include <stdio.h>
#include <string.h>

#include "tour.h"
#include "zek2/types.h"

typedef void (ZEK_CALLBACK *lu_factor)(const int *, const int *, double *, const int *, int *, int *);
typedef void (ZEK_CALLBACK *lu_solve)(int, int, const double *, int, const int *, double *, int, ZekFail *);
typedef void (ZEK_CALLBACK *determinant)(double *, const int *, const int *, double *, double *, int *);

void tour_linear(void) {
    lu_factor f07adf = (lu_factor)tour_bind("q77046");
    lu_solve f04ajc = (lu_solve)tour_bind("f04ajc");
    determinant f03aaf = (determinant)tour_bind("F03AAF");

    /* A (by columns) and b = A*(1, 2, 3)'. */
    const double a[9] = {2.0, 4.0, -2.0, 1.0, -6.0, 7.0, 1.0, 0.0, 2.0};
    double b[3] = {7.0, -8.0, 18.0};
    double lu[9], copy[9], det = 0.0, work[3];
    int ipiv[3], info = 0, ifail = 1;
    const int n = 3;
    ZekFail fail;
    memset(&fail, 0, sizeof fail);

    tour_section("LU factorisation and solve of a 3 by 3 system (q77046, f04ajc)");
    memcpy(lu, a, sizeof lu);
    f07adf(&n, &n, lu, &n, ipiv, &info);
    printf("F07ADF: INFO = %d, pivots %d %d %d, U diagonal %.4f %.4f %.4f\n", info, ipiv[0], ipiv[1], ipiv[2],
           lu[0], lu[4], lu[8]);
    f04ajc(n, 1, lu, n, ipiv, b, n, &fail);
    printf("f04ajc: code %d, x = (%.12f, %.12f, %.12f)\n", (int)fail.code, b[0], b[1], b[2]);

    tour_section("determinant (F03AAF)");
    memcpy(copy, a, sizeof copy);
    f03aaf(copy, &n, &n, &det, work, &ifail);
    printf("F03AAF: IFAIL = %d, det(A) = %.12f\n", ifail, det);
}
