/* Chapter C06 in the tour: a short complex sequence transformed forward and back through C06PCF, and a
 * real sequence through the first engine, C06FAF and C06FBF, all bound by their export symbols. */
#include <stdio.h>

#include "tour.h"

typedef void (ZEK_CALLBACK *complex_transform)(const char *, double *, const int *, double *, int *, int);
typedef void (ZEK_CALLBACK *real_transform)(double *, const int *, double *, int *);

static void print_pairs(const char *label, const double *x, int n) {
    printf("%s", label);
    for (int i = 0; i < n; ++i) printf(" (%7.4f,%7.4f)", x[2 * i], x[2 * i + 1]);
    printf("\n");
}

static void print_reals(const char *label, const double *x, int n) {
    printf("%s", label);
    for (int i = 0; i < n; ++i) printf(" %8.4f", x[i]);
    printf("\n");
}

void tour_fourier(void) {
    complex_transform c06pcf = (complex_transform)tour_bind("q98900");
    real_transform c06faf = (real_transform)tour_bind("q64883");
    real_transform c06fbf = (real_transform)tour_bind("q42899");

    tour_section("complex transform of 6 points and back (q98900, C06PCF)");
    double z[12] = {0.34907, -0.37168, 0.54890, -0.35669, 0.74776, -0.31175,
                    0.94459, -0.23702, 1.13850, -0.13274, 1.32850, 0.00074};
    double work[24];
    const int n = 6;
    int ifail = 1;
    print_pairs("data:    ", z, n);
    c06pcf("F", z, &n, work, &ifail, 1);
    print_pairs("forward: ", z, n);
    printf("IFAIL = %d, workspace used (WORK(1)) = %.1f\n", ifail, work[0]);
    c06pcf("B", z, &n, work, &ifail, 1);
    print_pairs("back:    ", z, n);

    tour_section("real transform of 8 points into Hermitian form and back (q64883, q42899)");
    double x[8] = {0.34907, 0.54890, 0.74776, 0.94459, 1.13850, 1.32850, 1.51370, 1.69330};
    double rwork[8];
    const int m = 8;
    print_reals("data:      ", x, m);
    c06faf(x, &m, rwork, &ifail);
    print_reals("Hermitian: ", x, m);
    c06fbf(x, &m, rwork, &ifail);
    print_reals("back:      ", x, m);

    tour_section("a length the first engine refuses: N = 23 (IFAIL = 1, soft and silent)");
    double y[23] = {0};
    double ywork[23];
    const int bad = 23;
    ifail = 1;
    c06faf(y, &bad, ywork, &ifail);
    printf("IFAIL = %d (a prime factor above 19)\n", ifail);
}
