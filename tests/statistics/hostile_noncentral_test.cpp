// Hostile arguments for the non-central and bivariate normal distributions: NaN, infinities, the largest and smallest
// numbers and a huge MAXIT end in the failure or in a probability, in bounded time.
#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <cmath>

#include "zek2/g01.h"

namespace {

constexpr double kNaN = NAN, kInf = INFINITY;

TEST(HostileNonCentral, EachRowEndsInAProbabilityOrItsFailure) {
    struct Row { const char *name; double (*call)(ZekFail *); bool fails; };
    const Row rows[] = {
        {"t nan", [](ZekFail *f) { return g01gbc(kNaN, 2.0, 1.0, 0.0, 100, f); }, true},
        {"t inf delta", [](ZekFail *f) { return g01gbc(1.0, 2.0, kInf, 0.0, 100, f); }, true},
        {"t largest", [](ZekFail *f) { return g01gbc(DBL_MAX, 2.0, 1.0, 0.0, 100, f); }, false},
        {"t huge df", [](ZekFail *f) { return g01gbc(1.0, DBL_MAX, 1.0, 0.0, 100, f); }, false},
        {"t smallest df", [](ZekFail *f) { return g01gbc(1.0, DBL_MIN, 1.0, 0.0, 100, f); }, false},
        {"t huge delta, huge maxit", [](ZekFail *f) { return g01gbc(1.0, 2.0, 1e8, 0.0, INT_MAX, f); }, true},
        {"chi nan", [](ZekFail *f) { return g01gcc(kNaN, 2.0, 1.0, 0.0, 100, f); }, true},
        {"chi inf x", [](ZekFail *f) { return g01gcc(kInf, 2.0, 1.0, 0.0, 100, f); }, false},
        {"chi inf lambda", [](ZekFail *f) { return g01gcc(1.0, 2.0, kInf, 0.0, 100, f); }, true},
        {"chi largest lambda", [](ZekFail *f) { return g01gcc(1.0, 2.0, DBL_MAX, 0.0, INT_MAX, f); }, true},
        {"chi nan tol", [](ZekFail *f) { return g01gcc(1.0, 2.0, 1.0, kNaN, 100, f); }, false},
        {"F inf", [](ZekFail *f) { return g01gdc(kInf, 2.0, 3.0, 1.0, 0.0, 100, f); }, false},
        {"F nan df2", [](ZekFail *f) { return g01gdc(1.0, 2.0, kNaN, 1.0, 0.0, 100, f); }, true},
        {"F largest df2", [](ZekFail *f) { return g01gdc(1.0, 2.0, DBL_MAX, 1.0, 0.0, 100, f); }, false},
        {"beta nan", [](ZekFail *f) { return g01gec(kNaN, 2.0, 3.0, 1.0, 0.0, 100, f); }, true},
        {"beta smallest a", [](ZekFail *f) { return g01gec(0.5, DBL_MIN, 3.0, 1.0, 0.0, 100, f); }, false},
        {"bivariate nan rho", [](ZekFail *f) { return g01hac(0.0, 0.0, kNaN, f); }, true},
        {"bivariate largest", [](ZekFail *f) { return g01hac(DBL_MAX, -DBL_MAX, 0.7, f); }, false},
        {"bivariate -inf", [](ZekFail *f) { return g01hac(-kInf, 1.0, -0.3, f); }, false},
        {"bivariate smallest, rho near 1", [](ZekFail *f) { return g01hac(DBL_MIN, -DBL_MIN, 1.0 - DBL_EPSILON, f); }, false},
        {"bivariate far tail, rho near -1", [](ZekFail *f) { return g01hac(-30.0, 30.0, -1.0 + DBL_EPSILON, f); }, false},
        {"dw nan d", [](ZekFail *) { const int m = 2; const double l[] = {1, 3}, d = kNaN; return H_DW_TAIL(&m, l, &d); }, false},
        {"dw largest", [](ZekFail *) { const int m = 2; const double l[] = {-DBL_MAX, DBL_MAX}, d = 0.0; return H_DW_TAIL(&m, l, &d); }, false},
        {"beta ends", [](ZekFail *f) { return g01gec(1.0, 2.0, 3.0, 1.0, 0.0, 100, f); }, false},
    };
    for (const Row &r : rows) {
        ZekFail fail{};
        const double v = r.call(&fail);
        EXPECT_EQ(fail.code != 0, r.fails) << r.name << ": " << fail.message;
        EXPECT_TRUE(v >= 0.0 && v <= 1.0) << r.name << " " << v;
    }
}

} // namespace
