/* The tour's chapter F06: a matrix product through the master f06yaf_ENTRY (with its selector) and
 * through its exported stub q78636 (without), bound by export symbol as the host binds them. */
#include <stdio.h>

#include "tour.h"

void tour_kernels(void);

typedef void (ZEK_CALLBACK *product_master)(int, const char *, const char *, int, int, int, double, const double *, int,
                               const double *, int, double, double *, int, int, int);
typedef void (ZEK_CALLBACK *product_stub)(const char *, const char *, int, int, int, double, const double *, int, const double *,
                             int, double, double *, int, int, int);

static void print_matrix(const char *title, const double *c, int m, int n, int ldc) {
    int i, j;
    printf("%s\n", title);
    for (i = 0; i < m; ++i) {
        for (j = 0; j < n; ++j) printf(" %8.3f", c[i + j * ldc]);
        printf("\n");
    }
}

void tour_kernels(void) {
    /* A is 2 by 3 and B is 3 by 2, both column-major. */
    static const double a[6] = {1.0, 4.0, 2.0, 5.0, 3.0, 6.0};
    static const double b[6] = {7.0, 9.0, 11.0, 8.0, 10.0, 12.0};
    double c[4] = {0.0, 0.0, 0.0, 0.0};
    double d[4] = {1.0, 1.0, 1.0, 1.0};
    product_master master = (product_master)tour_bind("f06yaf_ENTRY");
    product_stub stub = (product_stub)tour_bind("q78636");

    tour_section("matrix product C := A*B (f06yaf_ENTRY, selector 1)");
    master(1, "N", "N", 2, 2, 3, 1.0, a, 2, b, 3, 0.0, c, 2, 1, 1);
    print_matrix("A*B =", c, 2, 2, 2);

    tour_section("the same through its alias (q78636): D := 2*A*B - D");
    stub("N", "N", 2, 2, 3, 2.0, a, 2, b, 3, -1.0, d, 2, 1, 1);
    print_matrix("2*A*B - D =", d, 2, 2, 2);
}
