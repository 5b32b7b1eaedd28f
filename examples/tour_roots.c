/* Chapters C02 and C05 in the tour: the zeros of a quartic with their error estimates (C02ALF), and the
 * root of cos(x) = x, once by the driver C05AGF with a user function and once by reverse communication
 * with c05azc, both bound by export symbols. */
#include <math.h>
#include <stdio.h>
#include <string.h>

#include "tour.h"
#include "zek2/types.h"

typedef void (ZEK_CALLBACK *quartic)(const double *, const double *, const double *, const double *, const double *, double *,
                        double *, double *, int *);
typedef double (ZEK_CALLBACK *user_function)(const double *, int *, double *);
typedef void (ZEK_CALLBACK *zero_driver)(double *, double *, const double *, const double *, user_function, double *, double *,
                            int *, double *, int *);
typedef void (ZEK_CALLBACK *zero_reverse)(double *, double *, double, double, int, double *, int *, ZekFail *);

static double ZEK_CALLBACK cos_minus_x(const double *x, int *iuser, double *ruser) {
    (void)ruser;
    ++iuser[0];
    return cos(*x) - *x;
}

void tour_roots(void) {
    quartic c02alf = (quartic)tour_bind("q39576");
    zero_driver c05agf = (zero_driver)tour_bind("q46868");
    zero_reverse c05azc = (zero_reverse)tour_bind("q98413");

    tour_section("zeros of z^4 - 2z^3 + 6z^2 - 8z + 8 (q39576, C02ALF)");
    const double e = 1.0, a = -2.0, b = 6.0, c = -8.0, d = 8.0;
    double zr[4], zi[4], err[4];
    int ifail = 1, i;
    c02alf(&e, &a, &b, &c, &d, zr, zi, err, &ifail);
    printf("C02ALF: IFAIL = %d\n", ifail);
    for (i = 0; i < 4; ++i) printf("  z = %18.14f %+18.14f i   error estimate %.1e\n", zr[i], zi[i], err[i]);

    tour_section("cos(x) = x by the driver (q46868, C05AGF)");
    double x = 0.0, h = 0.1, lo = 0.0, hi = 0.0, ruser[1] = {0.0};
    const double eps = 1e-12, eta = 0.0;
    int iuser[1] = {0};
    ifail = 1;
    c05agf(&x, &h, &eps, &eta, cos_minus_x, &lo, &hi, iuser, ruser, &ifail);
    printf("C05AGF: IFAIL = %d, x = %.14f in [%.14f, %.14f], %d evaluations\n", ifail, x, lo, hi, iuser[0]);

    tour_section("cos(x) = x by reverse communication (q98413, c05azc)");
    double state[17], y = 1.0, fx = 0.0;
    int ind = 1, evaluations = 0;
    ZekFail fail;
    memset(&fail, 0, sizeof fail);
    x = 0.0;
    while (1) {
        c05azc(&x, &y, fx, 1e-12, 0, state, &ind, &fail);
        if (ind == 0 || fail.code != 0) break;
        fx = cos(x) - x;
        ++evaluations;
    }
    printf("c05azc: code %d, x = %.14f, y = %.14f, %d evaluations\n", (int)fail.code, x, y, evaluations);
}
