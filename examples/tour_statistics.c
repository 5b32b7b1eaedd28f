/* The tour's statistics chapters: a seeded stream of the basic generator reproduced twice (q29740,
 * q23445), a normal and a Student's t deviate (q17488), then a table of tail probabilities and
 * deviates (g01eac q83792, g01ebc q75436, g01ecc q45320, g01fac q79765, g01fbc q16948), and the median
 * with its absolute deviation (g07dac, q47095), a weighted regression (G02DAF, q15184) with one variable
 * deleted from its factorisation and refitted (g02dfc q70114, g02ddc q91616) beside the fresh fit
 * without it, and a non-central chi-squared tail (g01gcc, q64715), bound by export symbol as the host
 * binds them. */
#include <stdio.h>

#include "tour.h"
#include "zek2/types.h"

void tour_statistics(void);

typedef void (ZEK_CALLBACK *seed_fn)(int);
typedef double (ZEK_CALLBACK *uniform_fn)(void);
typedef double (ZEK_CALLBACK *normal_fn)(double, double);
typedef double (ZEK_CALLBACK *tail_fn)(int, double, ZekFail *);
typedef double (ZEK_CALLBACK *tail_df_fn)(int, double, double, ZekFail *);
typedef void (ZEK_CALLBACK *fit_fn)(const char *, const char *, const int *, const double *, const int *, const int *, const int *,
                       const int *, const double *, const double *, double *, int *, double *, double *, double *,
                       double *, double *, double *, const int *, int *, int *, double *, const double *, double *,
                       int *, int, int);
typedef void (ZEK_CALLBACK *drop_fn)(int, double *, int, int, double *, ZekFail *);
typedef void (ZEK_CALLBACK *refit_fn)(int, int, const double *, int, double *, double *, double *, double *, double *,
                                      int *, int *, double *, double, ZekFail *);
typedef double (ZEK_CALLBACK *noncentral_fn)(double, double, double, double, int, ZekFail *);
typedef void (ZEK_CALLBACK *median_fn)(int, const double *, double *, double *, double *, double *, ZekFail *);

void tour_statistics(void) {
    seed_fn seed = (seed_fn)tour_bind("q29740");
    uniform_fn uniform = (uniform_fn)tour_bind("q23445");
    normal_fn normal = (normal_fn)tour_bind("q17488");
    tail_fn normal_tail = (tail_fn)tour_bind("q83792");
    tail_df_fn t_tail = (tail_df_fn)tour_bind("q75436");
    tail_df_fn chi_tail = (tail_df_fn)tour_bind("q45320");
    tail_fn normal_deviate = (tail_fn)tour_bind("q79765");
    tail_df_fn t_deviate = (tail_df_fn)tour_bind("q16948");
    median_fn median = (median_fn)tour_bind("q47095");
    fit_fn fit = (fit_fn)tour_bind("q15184");
    drop_fn drop = (drop_fn)tour_bind("q70114");
    refit_fn refit = (refit_fn)tour_bind("q91616");
    noncentral_fn chi_noncentral = (noncentral_fn)tour_bind("q64715");
    double df;
    static const double design[24] = {3, 1, 2, 5, 0, 4, 1, 6, 1, 4, 2, -1, 3, 0, 1, 2, -2, 0, 5, 1, 2, -1, 1, 3};
    static const double response[8] = {7, 3, 11, 6, 5, 4, 2, 15};
    static const double weights[8] = {1, 2, 0, 1, 3, 1, 0.5, 1};
    int isx[3] = {1, 1, 1}, ip, idf, svd, irank, ifail, k;
    const int n = 8, m = 3, ld = 8;
    const double tol = 0.0;
    double rss, b[4], se[4], cov[10], res[8], h[8], q[40], p[24], wk[36];
    static const double xs[4] = {1.0, 3.0, 10.0, 37.0};
    double sample[9], sorted[9], xme, xmd, xsd;
    int run, i;
    ZekFail fail;

    tour_section("basic generator seeded with 1762543, twice (q29740, q23445)");
    for (run = 0; run < 2; ++run) {
        seed(1762543);
        for (i = 0; i < 5; ++i) printf(" %.15f", uniform());
        printf("\n");
    }
    printf("a normal deviate of mean 10 and deviation 2 (q17488): %.12f\n", normal(10.0, 2.0));

    tour_section("upper tails: normal (g01eac), t on 3 (g01ebc), chi-squared on 5 (g01ecc)");
    fail.code = 0;
    fail.print = 0;
    fail.handler = 0;
    for (i = 0; i < 4; ++i) {
        printf(" x = %5.1f  %.15e  %.15e  %.15e\n", xs[i], normal_tail(1330, xs[i], &fail),
               t_tail(1330, xs[i], 3.0, &fail), chi_tail(1330, xs[i], 5.0, &fail));
    }
    printf("deviates of two-tailed 0.05: normal %.15f, t on 10 %.15f (g01fac, g01fbc)\n",
           normal_deviate(1331, 0.05, &fail), t_deviate(1331, 0.05, 10.0, &fail));
    printf("a probability of 1.5 (g01fac): code %d\n%s\n", (normal_deviate(1329, 1.5, &fail), (int)fail.code), fail.message);

    tour_section("median and absolute deviation of nine normal deviates (g07dac)");
    seed(7);
    for (i = 0; i < 9; ++i) sample[i] = normal(0.0, 1.0);
    median(9, sample, sorted, &xme, &xmd, &xsd, &fail);
    printf("median %.12f  mad %.12f  scale %.12f  code %d\n", xme, xmd, xsd, (int)fail.code);

    tour_section("weighted regression with a mean on three variables, then the second dropped (G02DAF)");
    for (run = 0; run < 2; ++run) {
        ip = run == 0 ? 4 : 3;
        isx[1] = run == 0 ? 1 : 0;
        ifail = -1;
        fit("M", "W", &n, design, &ld, &m, isx, &ip, response, weights, &rss, &idf, b, se, cov, res, h, q, &ld, &svd,
            &irank, p, &tol, wk, &ifail, 1, 1);
        printf("IFAIL %d, rank %d, RSS %.10f on %d degrees of freedom\n", ifail, irank, rss, idf);
        for (k = 0; k < ip; ++k) printf("  b%d = %13.9f  (se %.9f)\n", k, b[k], se[k]);
        if (run == 0) {
            /* The same model less variable 2 (model column 3), from the factorisation alone: seven
             * observations carry weight. */
            drop(4, q, ld, 3, &rss, &fail);
            refit(7, 3, q, ld, &rss, &df, b, se, cov, &svd, &irank, p, 0.0, &fail);
            printf("variable 2 deleted from Q and refitted (g02dfc, g02ddc): code %d, RSS %.10f on %.0f\n",
                   (int)fail.code, rss, df);
            for (k = 0; k < 3; ++k) printf("  b%d = %13.9f  (se %.9f)\n", k, b[k], se[k]);
            printf("the fresh fit without it:\n");
        }
    }
    printf("non-central chi-squared on 4 with lambda 8, P(X <= 10) (g01gcc): %.15f\n",
           chi_noncentral(10.0, 4.0, 8.0, 0.0, 1000, &fail));
}
