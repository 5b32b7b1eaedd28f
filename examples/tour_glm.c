/* The tour's generalised linear models and robust regression: a Poisson log-linear model of Dobson's
 * three-by-three table (g02gcc), then a straight line through data with three gross outliers, fitted by
 * least squares (g02gac, normal errors with the identity link) and by a bisquare M-estimate with the
 * MAD scale (g02hac), all bound by their exported names. */
#include <stdio.h>

#include "tour.h"
#include "zek2/types.h"

void tour_glm(void);

typedef void (ZEK_CALLBACK *glm_fn)(int, int, int, const double *, int, int, const int *, int, const double *, const double *,
                                    const double *, double, double *, double *, double *, int *, double *, double *,
                                    double *, int, double *, double, int, double, ZekFail *);
typedef void (ZEK_CALLBACK *robust_fn)(int, int, int, int, int, const double *, int, const double *, const double *,
                                       const double *, double, double *, double *, double *, double *, double *, double,
                                       int, ZekFail *);

/* The enumerations of zek2/g02.h, as a host would write them down. */
enum { MEAN_INCLUDE = 1001, LINK_IDENTITY = 1802, LINK_LOG = 1803, M_ESTIMATE = 1811, BISQUARE = 1823, SIGMA_MAD = 1832 };

void tour_glm(void) {
    glm_fn poisson = (glm_fn)tour_bind("g02gcc");
    robust_fn robust = (robust_fn)tour_bind("g02hac");
    /* g02gac has the Poisson routine's arguments with the scale *s after the link exponent. */
    typedef void (ZEK_CALLBACK *normal_fn)(int, int, int, const double *, int, int, const int *, int, const double *,
                                           const double *, const double *, double, double *, double *, double *, double *,
                                           int *, double *, double *, double *, int, double *, double, int, double,
                                           ZekFail *);
    normal_fn normal = (normal_fn)tour_bind("g02gac");

    tour_section("Poisson log-linear model of a 3 x 3 table (g02gcc)");
    static const double counts[9] = {18, 17, 15, 20, 10, 20, 25, 13, 12};
    static const double factors[36] = {0, 1, 0, 0, 1, 0, 0, 1, 0, 0, 0, 1, 0, 0, 1, 0, 0, 1,
                                       0, 0, 0, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1};
    static const char *const names[5] = {"mean", "outcome 2", "outcome 3", "treatment 2", "treatment 3"};
    const int sx[4] = {1, 1, 1, 1};
    double dev, df, b[5], se[5], cov[15], v[63], p[30];
    int rank, j;
    ZekFail fail = {0};
    poisson(LINK_LOG, MEAN_INCLUDE, 9, factors, 9, 4, sx, 5, counts, NULL, NULL, 1.0, &dev, &df, b, &rank, se, cov, v, 9, p,
            0.0, 50, 0.0, &fail);
    printf("code %d, deviance %.6f on %.0f degrees of freedom, rank %d\n", fail.code, dev, df, rank);
    for (j = 0; j < 5; ++j) printf("  %-12s %10.5f  (se %.5f)\n", names[j], b[j], se[j]);

    tour_section("a line through data with three gross outliers: least squares (g02gac) against bisquare (g02hac)");
    double x[30], y[15], s = 0.0, lb[2], lse[2], lcov[3], lv[105], lp[6], theta[2], sigma, rcov[3], rs[15], wgt[15];
    const double c = 4.685;
    const int one[1] = {1};
    int i;
    for (i = 0; i < 15; ++i) {
        x[i] = 1.0;
        x[15 + i] = i;
        y[i] = 1.0 + 2.0 * i + 0.3 * ((i * 7) % 5 - 2);
    }
    y[3] = 40.0;
    y[8] = -20.0;
    y[12] = 70.0;
    normal(LINK_IDENTITY, MEAN_INCLUDE, 15, x + 15, 15, 1, one, 2, y, NULL, NULL, 1.0, &s, &dev, &df, lb, &rank, lse, lcov,
           lv, 15, lp, 0.0, 10, 0.0, &fail);
    printf("least squares: y = %.4f + %.4f x   (code %d, residual variance %.3f)\n", lb[0], lb[1], fail.code, s);
    robust(M_ESTIMATE, BISQUARE, SIGMA_MAD, 15, 2, x, 15, y, NULL, &c, 0.0, theta, &sigma, rcov, rs, wgt, 0.0, 100, &fail);
    printf("bisquare:      y = %.4f + %.4f x   (code %d, sigma %.4f)\n", theta[0], theta[1], fail.code, sigma);
    printf("weights of the outliers: %.3f %.3f %.3f; of a clean point: %.3f\n", wgt[3], wgt[8], wgt[12], wgt[0]);
}
