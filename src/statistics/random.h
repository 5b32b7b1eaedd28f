// The basic generator for the library's own callers.
#ifndef ZEK_STATISTICS_RANDOM_H
#define ZEK_STATISTICS_RANDOM_H

#include <cstdint>

namespace zek {

// The next uniform of the process-wide stream, as G05_UNIFORM.
double basic_uniform();
// A normal deviate from the same stream, as G05_NORMAL.
double basic_normal(double xmu, double sd);

namespace random_detail {
constexpr int kLanes = 63;
constexpr int kWichmannHillSets = 273;
// x <- m x mod 2^60 on four 15-bit limbs, least significant first.
void multiply_mod_2_60(const std::uint32_t m[4], std::uint32_t x[4]);
} // namespace random_detail

} // namespace zek

#endif
