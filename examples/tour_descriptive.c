/* The tour's descriptive statistics: the summary of one variable (G01AAF), the means, deviations and
 * Pearson correlation matrix of a small data set (G02BXF), its Kendall and Spearman rank correlations
 * (g02brc), and the Durbin-Watson statistic of a residual series with its bounds (G02FCF), bound by
 * export symbol as the host binds them. */
#include <stdio.h>

#include "tour.h"
#include "zek2/types.h"

typedef void (ZEK_CALLBACK *summary_fn)(const int *, const double *, int *, const double *, double *, double *, double *,
                                        double *, double *, double *, double *, int *);
typedef void (ZEK_CALLBACK *correlation_fn)(const char *, const int *, const int *, const double *, const int *,
                                            const double *, double *, double *, double *, const int *, double *,
                                            const int *, int *, int);
typedef void (ZEK_CALLBACK *ranks_fn)(int, int, const double *, int, const int *, const int *, double *, int, ZekFail *);
typedef void (ZEK_CALLBACK *durbin_watson_fn)(const int *, const int *, const double *, double *, double *, double *,
                                              double *, int *);

void tour_descriptive(void) {
    summary_fn summary = (summary_fn)tour_bind("G01AAF");
    correlation_fn correlation = (correlation_fn)tour_bind("G02BXF");
    ranks_fn ranks = (ranks_fn)tour_bind("g02brc");
    durbin_watson_fn durbin_watson = (durbin_watson_fn)tour_bind("G02FCF");
    /* Height (cm), weight (kg) and age (years) of ten people, by columns. */
    static const double data[30] = {172, 181, 165, 158, 190, 176, 169, 184, 161, 177,
                                    70,  84,  61,  55,  95,  77,  68,  81,  57,  74,
                                    34,  45,  29,  52,  41,  38,  27,  60,  33,  47};
    static const char *names[3] = {"height", "weight", "age"};
    static const double residuals[12] = {0.8, 1.1, 0.9, 0.2, -0.4, -1.0, -1.3, -0.6, 0.1, 0.7, 1.2, 0.5};
    const int n = 10, m = 3, ld = 3, nres = 12, ip = 2;
    double xbar[3], sd[3], v[9], r[9], corr[9], mean, s2, s3, s4, lo, hi, wsum, d, pdl, pdu, work[12];
    int i, j, iwt = 0, ifail = 1;
    ZekFail fail;

    tour_section("summary of the heights (G01AAF)");
    summary(&n, data, &iwt, 0, &mean, &s2, &s3, &s4, &lo, &hi, &wsum, &ifail);
    printf("IFAIL %d  mean %.4f  sd %.4f  skewness %.4f  excess kurtosis %.4f  range %.0f..%.0f\n", ifail, mean, s2,
           s3, s4, lo, hi);

    tour_section("means, standard deviations and Pearson correlations (G02BXF)");
    ifail = 1;
    correlation("U", &n, &m, data, &n, 0, xbar, sd, v, &ld, r, &ld, &ifail, 1);
    printf("IFAIL %d\n", ifail);
    for (i = 0; i < m; ++i) {
        printf(" %-7s mean %8.3f  sd %7.3f  r:", names[i], xbar[i], sd[i]);
        for (j = 0; j < m; ++j) printf(" %7.4f", r[i + j * ld]);
        printf("\n");
    }

    tour_section("Kendall's tau-b above the diagonal, Spearman's rho below (g02brc)");
    fail.code = 0;
    fail.print = 0;
    fail.handler = 0;
    ranks(n, m, data, n, 0, 0, corr, ld, &fail);
    printf("code %d\n", (int)fail.code);
    for (i = 0; i < m; ++i) {
        printf(" %-7s", names[i]);
        for (j = 0; j < m; ++j) printf(" %7.4f", corr[i + j * ld]);
        printf("\n");
    }

    tour_section("Durbin-Watson statistic of a residual series, mean and one regressor (G02FCF)");
    ifail = 1;
    durbin_watson(&nres, &ip, residuals, &d, &pdl, &pdu, work, &ifail);
    printf("IFAIL %d  d = %.4f  P(d_L <= d) = %.3e  P(d_U <= d) = %.3e\n", ifail, d, pdl, pdu);
}
