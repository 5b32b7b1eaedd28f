// Shared pieces of the small minimisers: calls of the user's functions through their adaptors, the
// treatment of values that are not finite, and simple bounds.
#ifndef ZEK_OPTIMISATION_MINIMISER_SUPPORT_H
#define ZEK_OPTIMISATION_MINIMISER_SUPPORT_H

#include <cmath>
#include <cstddef>

#include "zek2/e04.h"

namespace zek::mini {

// A value that is not finite compares as worse than every finite one.
inline double comparable(double f) { return std::isfinite(f) ? f : HUGE_VAL; }

inline bool all_finite(std::ptrdiff_t n, const double *v) {
    for (std::ptrdiff_t i = 0; i < n; ++i)
        if (!std::isfinite(v[i])) return false;
    return true;
}

// Bounds of magnitude at least this are absent.
constexpr double kAbsentBound = 1e20;

// Euclidean norm, scaled against overflow.
double norm2(std::ptrdiff_t n, const double *v);
double dot(std::ptrdiff_t n, const double *a, const double *b);

} // namespace zek::mini

#endif
