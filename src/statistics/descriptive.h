// Workers and shared pieces of the descriptive statistics and correlation routines.
#ifndef ZEK_STATISTICS_DESCRIPTIVE_H
#define ZEK_STATISTICS_DESCRIPTIVE_H

#include <cstddef>
#include <initializer_list>

#include "frame/ifail.h"

namespace zek {

// 2^-e for the exponent e of LARGEST_MAGNITUDE (1 for zero or a value not finite): scaling data by it
// is exact and brings its largest element into [1, 2).
double power_of_two_scale(double largest_magnitude);

struct Summary {
    double mean, sd, skew, kurt, xmin, xmax, wsum;
};

void g01aef_worker(int n, int nclass, const double x[], int iclass, double cint[], int ifreq[], double *xmin,
                   double *xmax, char *errbuf, int *ifail);
// *IWT: 0 or 1 on entry, the count of positive weights on exit when the summary is computed.
void g01aaf_worker(int n, const double x[], int *iwt, const double wt[], Summary *s, char *errbuf, int *ifail);

void g02buf_worker(char mean, char weight, int n, int m, const double x[], int ldx, const double wt[], double *sw,
                   double wmean[], double c[], char *errbuf, int *ifail);
void g02bxf_worker(char weight, int n, int m, const double x[], int ldx, const double wt[], double xbar[],
                   double std_dev[], double v[], int ldv, double r[], int ldr, char *errbuf, int *ifail);
void g02btf_worker(char mean, int m, double wt, const double x[], int incx, double *sw, double xbar[], double c[],
                   char *errbuf, int *ifail);
void g02fcf_worker(int n, int ip, const double res[], double *d, double *pdl, double *pdu, double work[], char *errbuf,
                   int *ifail);

} // namespace zek

#endif
