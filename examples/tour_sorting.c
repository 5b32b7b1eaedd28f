/* The tour's chapters M01 and S: a vector sorted (m01cac, q43352), ranked stably (M01DAF, q40544) and
 * put in rank order (M01EAF, q30145), then the gamma function through both layers (s14aac, q53827, and
 * S14AAF, q52915), bound by export symbol as the host binds them. */
#include <stdio.h>

#include "tour.h"
#include "zek2/types.h"

void tour_sorting(void);

typedef void (ZEK_CALLBACK *sort_c)(double *, int, int, ZekFail *);
typedef void (ZEK_CALLBACK *rank_ifail)(const double *, const int *, const int *, const char *, int *, int *, int);
typedef void (ZEK_CALLBACK *rearrange_ifail)(double *, const int *, const int *, int *, int *);
typedef double (ZEK_CALLBACK *gamma_c)(double, ZekFail *);
typedef double (ZEK_CALLBACK *gamma_ifail)(const double *, int *);

static void print_vector(const char *title, const double *v, int n) {
    int i;
    printf("%s", title);
    for (i = 0; i < n; ++i) printf(" %6.2f", v[i]);
    printf("\n");
}

void tour_sorting(void) {
    static const double data[8] = {3.5, -1.0, 2.25, 3.5, 0.0, 7.75, -1.0, 2.25};
    double sorted[8], ranked[8];
    int irank[8];
    int i, ifail;
    const int m1 = 1, m2 = 8;
    ZekFail fail;
    sort_c sort = (sort_c)tour_bind("q43352");
    rank_ifail rank = (rank_ifail)tour_bind("q40544");
    rearrange_ifail rearrange = (rearrange_ifail)tour_bind("q30145");
    gamma_c gamma = (gamma_c)tour_bind("q53827");
    gamma_ifail gamma_f = (gamma_ifail)tour_bind("q52915");

    tour_section("sorting descending (m01cac, order 1598)");
    for (i = 0; i < 8; ++i) sorted[i] = ranked[i] = data[i];
    fail.code = 0;
    fail.print = 0;
    fail.handler = 0;
    sort(sorted, 8, 1598, &fail);
    print_vector("input: ", data, 8);
    print_vector("sorted:", sorted, 8);
    printf("fail code %d\n", (int)fail.code);

    tour_section("ranking (M01DAF, ORDER 'A') and rearranging by the ranks (M01EAF)");
    ifail = 1;
    rank(data, &m1, &m2, "A", irank, &ifail, 1);
    printf("ranks: ");
    for (i = 0; i < 8; ++i) printf(" %d", irank[i]);
    printf("   (equal keys keep their input order)\nIFAIL %d\n", ifail);
    rearrange(ranked, &m1, &m2, irank, &ifail);
    print_vector("in rank order:", ranked, 8);

    tour_section("the gamma function (s14aac, S14AAF)");
    {
        static const double xs[5] = {0.5, 4.5, 10.0, -2.5, 171.0};
        double value;
        for (i = 0; i < 5; ++i) {
            value = gamma(xs[i], &fail);
            printf("s14aac(%6.2f) = %.16e   code %d\n", xs[i], value, (int)fail.code);
        }
        printf("%s\n", fail.message);
        for (i = 1; i < 5; i += 3) {
            ifail = 1;
            value = gamma_f(&xs[i], &ifail);
            printf("S14AAF(%6.2f) = %.16e   IFAIL %d\n", xs[i], value, ifail);
        }
    }
}
