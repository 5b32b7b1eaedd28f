// Reporting illegal parameters of the checked kernels, and the run-time constant set.
#include "kernels/arg_error.h"

#include <cmath>

#include "frame/ifail.h"
#include "kernels/kernel_types.h"
#include "zek2/messages.h"
#include "zek2/p01.h"
#include "zek2/x02.h"

namespace zek {

namespace {
constexpr int kReportNameLength = 13;
}

void arg_error_master(int, const char *srname, int info) { F06_BAD_PARAMETER(srname, info, kReportNameLength); }
void F06_ARG_ERROR(const char *srname, int info) { arg_error_master(1, srname, info); }

void report_bad_argument(Reporter reporter, const KernelNames &names, int info) {
    switch (reporter) {
    case Reporter::Hard:
        F06_ARG_ERROR(names.upper, info);
        break;
    case Reporter::Stream:
        F06_BAD_PARAMETER_STREAM(names.upper, info, kReportNameLength);
        break;
    case Reporter::Enumerated:
        F06_ARG_ERROR_ENUM(names.lower, info);
        break;
    }
}

SafeConstants runtime_constants() {
    SafeConstants k;
    k.eps = X02_PRECISION();
    k.rteps = std::sqrt(k.eps);
    k.rrteps = 1.0 / k.rteps;
    k.small = X02_SAFE_MINIMUM();
    k.flmax = 1.0 / k.small;
    k.half_max = 0.5 * k.flmax;
    return k;
}

Complex divide(Complex a, Complex b) {
    // Smith's quotient: scale by the ratio of the smaller to the larger part of the divisor.
    if (std::fabs(b.re) >= std::fabs(b.im)) {
        const double r = b.im / b.re;
        const double d = b.re + r * b.im;
        return {(a.re + r * a.im) / d, (a.im - r * a.re) / d};
    }
    const double r = b.re / b.im;
    const double d = b.im + r * b.re;
    return {(r * a.re + a.im) / d, (r * a.im - a.re) / d};
}

} // namespace zek
