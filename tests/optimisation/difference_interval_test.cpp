// Forward-difference intervals for one variable against the second derivatives of known functions.
#include <cmath>
#include <functional>
#include <limits>

#include <gtest/gtest.h>

#include "optimisation/difference_interval.h"

namespace {
using zek::fd::IntervalSearch;
constexpr double kEps = std::numeric_limits<double>::epsilon();

IntervalSearch run(const std::function<double(double)> &f, double x, double h0, double epsrf) {
    IntervalSearch s(f(x), h0, epsrf, kEps);
    for (int k = 0; k <= IntervalSearch::max_cycles && !s.done(); ++k) s.cycle(f(x + s.step()), f(x + 2 * s.step()));
    return s;
}

// f, x, f'(x), f''(x); info expected (0: hopt near 2 sqrt(fa/|f''|) and the bound holds).
TEST(DifferenceInterval, StepAndClassification) {
    const struct {
        std::function<double(double)> f;
        double x, d1, d2, h0;
        int info;
    } rows[] = {
        {[](double t) { return std::exp(t); }, 1.0, std::exp(1.0), std::exp(1.0), 1e-3, 0},
        {[](double t) { return t * t * t * t; }, 2.0, 32.0, 48.0, 1e-8, 0},
        {[](double) { return 3.5; }, 1.0, 0, 0, 1e-8, 1},
        {[](double t) { return 1.0 + 1e-30 * t * t; }, 1.0, 0, 0, 1e-8, 1},
        {[](double t) { return 2 * t + 1; }, 1.0, 2, 0, 1e-8, 2},
        {[](double t) { return t == 1.0 ? 1.0 : std::nan(""); }, 1.0, 0, 0, 1e-4, 3},
    };
    for (const auto &r : rows) {
        const IntervalSearch s = run(r.f, r.x, r.h0, kEps);
        ASSERT_TRUE(s.done());
        EXPECT_EQ(s.info(), r.info) << r.x << ' ' << r.d1;
        EXPECT_TRUE(s.hopt() > 0 && std::isfinite(s.hopt()));
        if (r.info != 0) continue;
        EXPECT_NEAR(s.hopt() / (2 * std::sqrt(kEps * (1 + std::fabs(r.f(r.x))) / std::fabs(r.d2))), 1.0, 0.2);
        EXPECT_LE(std::fabs((r.f(r.x + s.hopt()) - r.f(r.x)) / s.hopt() - r.d1), 2 * s.error_bound());
    }
    EXPECT_TRUE(IntervalSearch(1.0, 0.0, kEps, kEps).done());
}
TEST(DifferenceInterval, OrdinalSuffixes) {
    const long n[] = {1, 2, 3, 4, 11, 12, 13, 21, 22, 111, 1023};
    const char *s[] = {"-st", "-nd", "-rd", "-th", "-th", "-th", "-th", "-st", "-nd", "-th", "-rd"};
    for (int i = 0; i < 11; ++i) EXPECT_STREQ(zek::fd::ordinal_suffix(n[i]), s[i]) << n[i];
}
} // namespace
