/* Chapter F02 in the tour: the singular values of a 4 by 4 upper bidiagonal matrix by the implicit QR
 * iteration F02SYZ (q12041), with its right singular vectors, and a check of B*v = sigma*u. */
#include <stdio.h>

#include "tour.h"

typedef void (ZEK_CALLBACK *bidiagonal_qr)(const int *, double *, double *, const int *, double *, const int *, const int *,
                              double *, const int *, const int *, double *, const int *, double *, int *);

void tour_svd(void) {
    bidiagonal_qr f02syz = (bidiagonal_qr)tour_bind("q12041");
    const int n = 4, zero = 0;
    const double d0[4] = {4.0, 3.0, 2.0, 1.0}, e0[3] = {1.0, 1.0, 1.0};
    double d[4], e[3], y[16] = {0}, z[16] = {0}, work[12], dummy = 0.0;
    int i, ifail = 1;
    for (i = 0; i < 4; ++i) d[i] = d0[i], y[i + 4 * i] = 1.0, z[i + 4 * i] = 1.0;
    for (i = 0; i < 3; ++i) e[i] = e0[i];

    tour_section("singular values of a bidiagonal matrix (q12041, F02SYZ)");
    f02syz(&n, d, e, &zero, &dummy, &n, &n, y, &n, &n, z, &n, work, &ifail);
    printf("F02SYZ: IFAIL = %d, sigma = %.12f %.12f %.12f %.12f\n", ifail, d[0], d[1], d[2], d[3]);
    /* B*v(1) = sigma(1)*u(1): v(1) is the first row of Z, u(1) the first column of Y. */
    double worst = 0.0;
    for (i = 0; i < 4; ++i) {
        double bv = d0[i] * z[4 * i];
        if (i < 3) bv += e0[i] * z[4 * (i + 1)];
        const double r = bv - d[0] * y[i];
        worst = r > worst ? r : -r > worst ? -r : worst;
    }
    printf("largest |B*v - sigma*u| for the first pair: %.1e\n", worst);
}
