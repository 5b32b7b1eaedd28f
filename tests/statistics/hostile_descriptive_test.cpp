// Hostile arguments for the descriptive statistics and correlation routines: each row ends in its
// failure exit or in finite results, in bounded time.
#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <cmath>
#include <functional>
#include <vector>

#include "zek2/g01.h"
#include "zek2/g02.h"
#include "zek2/messages.h"

namespace {

constexpr double kNaN = NAN, kInf = INFINITY, kMax = DBL_MAX, kMin = DBL_MIN;

struct Row {
    const char *name;
    std::function<int(std::vector<double> &out)> call;  // IFAIL, or the fail code of a C-style routine
    int expected;
};

std::vector<double> column(std::initializer_list<double> v) { return v; }

int summary(std::vector<double> x, std::vector<double> &out, const double *wt = nullptr) {
    const int n = static_cast<int>(x.size());
    int iwt = wt != nullptr ? 1 : 0, ifail = 1;
    G01AAF(&n, x.data(), &iwt, wt, &out[0], &out[1], &out[2], &out[3], &out[4], &out[5], &out[6], &ifail);
    return ifail;
}

int covariance(std::vector<double> x, int m, std::vector<double> &out, const double *wt = nullptr) {
    const int n = static_cast<int>(x.size()) / m;
    int ifail = 1;
    G02BXF(wt != nullptr ? "W" : "U", &n, &m, x.data(), &n, wt, &out[0], &out[m], &out[2 * m], &m, &out[2 * m + m * m], &m,
           &ifail, 1);
    return ifail;
}

int rank_correlation(std::vector<double> x, int m, std::vector<double> &out) {
    ZekFail fail{};
    const int n = static_cast<int>(x.size()) / m;
    g02brc(n, m, x.data(), n, nullptr, nullptr, out.data(), m, &fail);
    return fail.code;
}

int durbin_watson(std::vector<double> r, int ip, std::vector<double> &out) {
    const int n = static_cast<int>(r.size());
    std::vector<double> work(n);
    int ifail = 1;
    G02FCF(&n, &ip, r.data(), &out[0], &out[1], &out[2], work.data(), &ifail);
    return ifail;
}

int update(double wt, std::vector<double> x, double sw, std::vector<double> &out) {
    const int m = static_cast<int>(x.size()), inc = 1;
    int ifail = 1;
    out[0] = sw;
    G02BTF("M", &m, &wt, x.data(), &inc, &out[0], &out[1], &out[1 + m], &ifail, 1);
    return ifail;
}

TEST(HostileDescriptive, EveryRoutineEndsInItsResultOrItsExit) {
    const int big = INT_MAX, two = 2, zero = 0;
    const Row rows[] = {
        {"summary nan", [](auto &o) { return summary(column({1, kNaN, 3}), o); }, 2},
        {"summary -inf weight", [](auto &o) { const double w[] = {1, -kInf, 1}; return summary(column({1, 2, 3}), o, w); }, 2},
        {"summary largest", [](auto &o) { return summary(column({kMax, -kMax, kMax, 0}), o); }, 7},
        {"summary largest one sign", [](auto &o) { return summary(column({kMax, kMax / 2, kMax, 0.75 * kMax}), o); }, 0},
        {"summary smallest", [](auto &o) { return summary(column({kMin, 2 * kMin, 4 * kMin}), o); }, 0},
        {"summary huge weights", [](auto &o) { const double w[] = {kMax, kMax, 1}; return summary(column({1, 2, 3}), o, w); }, 2},
        {"summary largest weight", [](auto &o) { const double w[] = {kMax, 1, 1}; return summary(column({1, 2, 3}), o, w); }, 0},
        {"summary tiny weights", [](auto &o) { const double w[] = {kMin, kMin}; return summary(column({1, 2}), o, w); }, 5},
        {"summary zero n", [](auto &o) { int n = 0, iwt = 0, f = 1; G01AAF(&n, nullptr, &iwt, nullptr, &o[0], &o[1], &o[2], &o[3], &o[4], &o[5], &o[6], &f); return f; }, 1},
        {"table nan", [](auto &o) { int n = 3, k = 2, c = 0, f = 1, fr[2]; const double x[] = {1, kNaN, 2}; G01AEF(&n, &k, x, &c, &o[0], fr, &o[1], &o[2], &f); return f; }, 3},
        {"table largest span", [](auto &o) { int n = 3, k = 4, c = 0, f = 1, fr[4]; const double x[] = {-kMax, 0, kMax}; G01AEF(&n, &k, x, &c, &o[0], fr, &o[3], &o[4], &f); return f; }, 0},
        {"table inf boundary", [](auto &o) { int n = 2, k = 3, c = 1, f = 1, fr[3]; const double x[] = {1, 2}; o[0] = 1, o[1] = kInf; G01AEF(&n, &k, x, &c, &o[0], fr, &o[2], &o[3], &f); return f; }, 2},
        {"table no classes", [&](auto &o) { int n = 1, c = 1, f = 1, fr[1]; const double x[] = {1}; G01AEF(&n, &zero, x, &c, &o[0], fr, &o[1], &o[2], &f); return f; }, 1},
        {"covariance nan", [](auto &o) { return covariance(column({1, 2, kNaN, 4}), 2, o); }, 2},
        {"covariance c huge m", [](auto &o) { ZekFail f{}; g02bxc(2, INT_MAX, o.data(), 2, nullptr, o.data(), o.data(), o.data(), 2, o.data(), 2, &f); return f.code; }, ZE_2_INT_ARG_LT},
        {"covariance largest", [](auto &o) { return covariance(column({kMax, -kMax, kMax, 1, 2, 3}), 2, o); }, 4},
        {"covariance smallest", [](auto &o) { return covariance(column({kMin, 2 * kMin, 3 * kMin, 1, 5, 2}), 2, o); }, 0},
        {"covariance ld huge m", [&](auto &o) { int n = 2, f = 1; G02BXF("U", &n, &big, o.data(), &n, nullptr, o.data(), o.data(), o.data(), &two, o.data(), &two, &f, 1); return f; }, 1},
        {"cross-products zero weights", [](auto &o) { int n = 2, m = 1, f = 1; const double w[] = {0, 0}, x[] = {1, 2}; G02BUF("M", "W", &n, &m, x, &n, w, &o[0], &o[1], &o[2], &f, 1, 1); return f; }, 3},
        {"cross-products inf", [](auto &o) { int n = 2, m = 1, f = 1; const double x[] = {1, -kInf}; G02BUF("Z", "U", &n, &m, x, &n, nullptr, &o[0], &o[1], &o[2], &f, 1, 1); return f; }, 4},
        {"cross-products overflow", [](auto &o) { int n = 2, m = 1, f = 1; const double x[] = {kMax, 1}; G02BUF("Z", "U", &n, &m, x, &n, nullptr, &o[0], &o[1], &o[2], &f, 1, 1); return f; }, 5},
        {"update nan x", [](auto &o) { return update(1.0, column({1, kNaN}), 2.0, o); }, 4},
        {"update inf weight", [](auto &o) { return update(kInf, column({1, 2}), 2.0, o); }, 3},
        {"update largest", [](auto &o) { return update(1.0, column({kMax, 1}), 0.0, o); }, 0},
        {"update overflow", [](auto &o) { update(1.0, column({-kMax, 1}), 0.0, o); const int m = 2, inc = 1; double w = 1.0, x[] = {kMax, 1}; int f = 1; G02BTF("M", &m, &w, x, &inc, &o[0], &o[1], &o[3], &f, 1); return f; }, 5},
        {"ranks nan", [](auto &o) { return rank_correlation(column({1, 2, kNaN, 4, 5, 6}), 2, o); }, ZE_BAD_PARAM},
        {"ranks largest", [](auto &o) { return rank_correlation(column({kMax, -kMax, 0, kMin, 1, -1}), 2, o); }, 0},
        {"ranks one variable", [](auto &o) { ZekFail f{}; const int sv[] = {1, 0}; const double x[] = {1, 2, 3, 4}; g02brc(2, 2, x, 2, sv, nullptr, o.data(), 2, &f); return f.code; }, ZE_SVAR_LOW},
        {"ranks one observation", [](auto &o) { ZekFail f{}; const int so[] = {0, 1}; const double x[] = {1, 2, 3, 4}; g02brc(2, 2, x, 2, nullptr, so, o.data(), 2, &f); return f.code; }, ZE_SOBS_LOW},
        {"ranks constant", [](auto &o) { return rank_correlation(column({1, 1, 1, 2, 3, 4}), 2, o); }, ZE_VAR_EQ_ZERO},
        {"summary c no weight", [](auto &o) { ZekFail f{}; int nv; const double w[] = {0, 0}, x[] = {1, 2}; g01aac(2, x, w, &nv, &o[0], &o[1], &o[2], &o[3], &o[4], &o[5], &o[6], &f); return f.code; }, ZE_CASES_ZERO},
        {"summary c one case", [](auto &o) { ZekFail f{}; int nv; const double w[] = {0, 3}, x[] = {1, 2}; g01aac(2, x, w, &nv, &o[0], &o[1], &o[2], &o[3], &o[4], &o[5], &o[6], &f); return f.code; }, ZE_CASES_ONE},
        {"ranks huge tdc", [](auto &o) { ZekFail f{}; const double x[] = {1, 2, 3, 4}; g02brc(2, 2, x, 2, nullptr, nullptr, o.data(), INT_MIN, &f); return f.code; }, ZE_2_INT_ARG_LT},
        {"dw nan", [](auto &o) { return durbin_watson(column({1, kNaN, 3, 4}), 1, o); }, 2},
        {"dw largest", [](auto &o) { return durbin_watson(column({kMax, -kMax, kMax, -kMax, kMax}), 2, o); }, 0},
        {"dw smallest", [](auto &o) { return durbin_watson(column({kMin, 0, -kMin, kMin, 0, 0}), 2, o); }, 0},
        {"dw huge ip", [](auto &o) { return durbin_watson(column({1, 2, 3}), INT_MAX, o); }, 1},
        {"dw long series", [](auto &o) { std::vector<double> r(400); for (int i = 0; i < 400; ++i) r[i] = std::sin(0.7 * i); return durbin_watson(r, 3, o); }, 0},
    };
    for (const Row &r : rows) {
        std::vector<double> out(64, 0.0);
        EXPECT_EQ(r.call(out), r.expected) << r.name;
        if (r.expected == 0) {
            for (double v : out) ASSERT_TRUE(std::isfinite(v)) << r.name;
        }
    }
}

} // namespace
