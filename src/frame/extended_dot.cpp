// The extended-precision inner product: double-double accumulation by Dekker's product and
// Veltkamp's split.  The build never contracts a*b+c, so every product and sum is rounded once, as
// the error terms require; on SSE2 arithmetic no control-word change is needed for that.
#include <cmath>

#include "frame/raise.h"
#include "zek2/x03.h"

#if defined(_WIN32) && defined(__i386__)
#include <float.h>
#endif

namespace {

// For the length of the extended accumulation: 53-bit precision and rounding to nearest on the x87
// unit, everything else of the control word as it was, and the caller's word restored on the way out.
// The library's own arithmetic is SSE2, but on 32-bit Windows the x87 unit still computes whatever a
// caller or the runtime leaves to it, and a host may run with 64-bit precision set.
#if defined(_WIN32) && defined(__i386__)
class DoubleRounding {
public:
    DoubleRounding() : saved_(_controlfp(0, 0)) { _controlfp(_PC_53 | _RC_NEAR, _MCW_PC | _MCW_RC); }
    ~DoubleRounding() { _controlfp(saved_, 0xFFFFFFFFu); }
    DoubleRounding(const DoubleRounding &) = delete;
    DoubleRounding &operator=(const DoubleRounding &) = delete;

private:
    unsigned int saved_;
};
#else
struct DoubleRounding {};
#endif

constexpr double kSplitter = 134217729.0;  // 2**27 + 1

struct DoubleDouble {
    double high;
    double low;
};

void add_product(DoubleDouble &acc, double a, double b) {
    double t = a * kSplitter;
    const double a1 = t + (a - t), a2 = a - a1;
    t = b * kSplitter;
    const double b1 = t + (b - t), b2 = b - b1;
    const double p = a * b;
    const double r = ((a1 * b1 - p) + a1 * b2 + a2 * b1) + a2 * b2;
    const double s = p + acc.high;
    const double e = std::fabs(acc.high) < std::fabs(p) ? r + ((acc.high + (p - s)) + acc.low)
                                                        : ((p + (acc.high - s)) + r) + acc.low;
    acc.high = e + s;
    acc.low = e + (s - acc.high);
}

} // namespace

extern "C" void x03aac(const double a[], int, const double b[], int, int n, int stepa, int stepb, double c1,
                       double c2, double *d1, double *d2, int sw, ZekFail *fail) {
    zek::clear_fail(fail);
    if (stepa < 1) {
        zek::raise_int_arg(fail, "x03aac", ZE_INT_ARG_LE, "stepa", "0", stepa);
        return;
    }
    if (stepb < 1) {
        zek::raise_int_arg(fail, "x03aac", ZE_INT_ARG_LE, "stepb", "0", stepb);
        return;
    }
    const std::ptrdiff_t sa = stepa, sb = stepb;
    if (sw == 0) {
        double sum = c1;
        for (std::ptrdiff_t k = 0; k < n; ++k) sum += a[k * sa] * b[k * sb];
        *d1 = sum;
        *d2 = 0.0;
    } else {
        [[maybe_unused]] const DoubleRounding rounding{};
        const double s = c1 + c2;
        DoubleDouble acc{s, c2 + (c1 - s)};
        for (std::ptrdiff_t k = 0; k < n; ++k) add_product(acc, a[k * sa], b[k * sb]);
        *d1 = acc.low + acc.high;
        *d2 = (acc.high - *d1) + acc.low;
    }
    if (fail != nullptr && fail->code == 0) zek::raise_success(fail, "x03aac");
}
