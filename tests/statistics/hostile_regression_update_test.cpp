// Hostile arguments for the routines that change a fitted model: each row ends in its failure code or in
// success with finite results, in bounded time, and a failure leaves the factorisation as it was.
#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <cmath>
#include <functional>
#include <vector>

#include "zek2/g02.h"
#include "zek2/messages.h"

namespace {

constexpr double kNaN = NAN, kInf = INFINITY;

TEST(HostileRegressionUpdate, EachRowEndsInItsCodeOrAFiniteResult) {
    // A fitted model of 8 observations on the mean and two variables.
    const int n = 8, m = 2, ip = 3;
    std::vector<double> x(n * m), y(n);
    for (int i = 0; i < n; ++i) {
        x[i] = i;
        x[i + n] = std::cos(i);
        y[i] = 1.0 + 0.5 * i - std::sin(i);
    }
    const std::vector<int> sx = {1, 1};
    std::vector<double> b(ip + 1), se(ip + 1), cov(10), res(n), h(n), q(n * (ip + 2)), p(2 * (ip + 1) + 16);
    double rss0 = 0, df = 0;
    int svd = 0, rank = 0;
    ZekFail fit{};
    g02dac(Zek_MeanInclude, n, m, x.data(), n, sx.data(), ip, y.data(), nullptr, &rss0, &df, b.data(), se.data(),
           cov.data(), res.data(), h.data(), q.data(), n, &svd, &rank, p.data(), 0.0, nullptr, &fit);
    ASSERT_EQ(fit.code, 0) << fit.message;
    const std::vector<double> q0 = q;
    const double row_nan[] = {kNaN, 1.0}, row_big[] = {DBL_MAX, DBL_MAX}, row_tiny[] = {DBL_MIN, -DBL_MIN};
    const double w_nan = kNaN, w_inf = kInf, c_nan[] = {kNaN, 0, 0}, f_inf[] = {0, kInf, 0};
    const std::vector<double> col_inf = {1, 2, kInf, 4, 5, 6, 7, 8};
    double rss = rss0;
    double stat = 0, sestat = 0, t = 0;
    int est = 0;
    struct Row {
        const char *name;
        std::function<void(ZekFail *)> call;
        int code;  // 0: success expected
    };
    const Row rows[] = {
        {"bad update", [&](ZekFail *f) { g02dcc(7, Zek_MeanInclude, m, sx.data(), ip, row_tiny, 1, 1.0, nullptr, q.data(), n, &rss, f); }, ZE_BAD_PARAM},
        {"negative sx", [&](ZekFail *f) { const int s[] = {1, -2}; g02dcc(Zek_ObservAdd, Zek_MeanInclude, m, s, ip, row_tiny, 1, 1.0, nullptr, q.data(), n, &rss, f); }, ZE_INT_ARG_LT},
        {"sx against ip", [&](ZekFail *f) { g02dcc(Zek_ObservAdd, Zek_MeanZero, m, sx.data(), ip, row_tiny, 1, 1.0, nullptr, q.data(), n, &rss, f); }, ZE_IP_INCOMP_WITH_SX},
        {"refit no freedom", [&](ZekFail *f) { double r = rss0; g02ddc(ip, ip, q.data(), n, &r, &df, b.data(), se.data(), cov.data(), &svd, &rank, p.data(), 0.0, f); }, ZE_ZERO_DOF_RESID},
        {"constraints as many as ip", [&](ZekFail *f) { g02dkc(ip, ip, p.data(), c_nan, ip, b.data(), 1.0, 1.0, se.data(), cov.data(), f); }, ZE_2_INT_ARG_GE},
        {"estimable rank above ip", [&](ZekFail *f) { g02dnc(ip, ip + 1, b.data(), cov.data(), p.data(), f_inf, &est, &stat, &sestat, &t, 0.0, f); }, ZE_INT_ARG_CONS},
        {"add nan x", [&](ZekFail *f) { g02dcc(Zek_ObservAdd, Zek_MeanInclude, m, sx.data(), ip, row_nan, 1, 1.0, nullptr, q.data(), n, &rss, f); }, ZE_BAD_PARAM},
        {"add inf y", [&](ZekFail *f) { g02dcc(Zek_ObservAdd, Zek_MeanInclude, m, sx.data(), ip, row_tiny, 1, kInf, nullptr, q.data(), n, &rss, f); }, ZE_BAD_PARAM},
        {"add nan weight", [&](ZekFail *f) { g02dcc(Zek_ObservAdd, Zek_MeanInclude, m, sx.data(), ip, row_tiny, 1, 1.0, &w_nan, q.data(), n, &rss, f); }, ZE_REAL_ARG_LT},
        {"add inf weight", [&](ZekFail *f) { g02dcc(Zek_ObservAdd, Zek_MeanInclude, m, sx.data(), ip, row_tiny, 1, 1.0, &w_inf, q.data(), n, &rss, f); }, ZE_REAL_ARG_LT},
        {"add -inf rss", [&](ZekFail *f) { double r = -kInf; g02dcc(Zek_ObservAdd, Zek_MeanInclude, m, sx.data(), ip, row_tiny, 1, 1.0, nullptr, q.data(), n, &r, f); }, ZE_REAL_ARG_LT},
        {"add huge ip", [&](ZekFail *f) { g02dcc(Zek_ObservAdd, Zek_MeanInclude, m, sx.data(), INT_MAX, row_tiny, 1, 1.0, nullptr, q.data(), n, &rss, f); }, ZE_2_INT_ARG_LT},
        {"drop largest row", [&](ZekFail *f) { g02dcc(Zek_ObservDel, Zek_MeanInclude, m, sx.data(), ip, row_big, 1, 1.0, nullptr, q.data(), n, &rss, f); }, ZE_MAT_NOT_UPD},
        {"refit nan rss", [&](ZekFail *f) { double r = kNaN; g02ddc(n, ip, q.data(), n, &r, &df, b.data(), se.data(), cov.data(), &svd, &rank, p.data(), 0.0, f); }, ZE_REAL_ARG_LT},
        {"refit inf tol", [&](ZekFail *f) { double r = rss0; g02ddc(n, ip, q.data(), n, &r, &df, b.data(), se.data(), cov.data(), &svd, &rank, p.data(), kInf, f); }, 0},
        {"add var inf", [&](ZekFail *f) { g02dec(n, ip, q.data(), n, p.data(), nullptr, col_inf.data(), &rss, 0.0, f); }, ZE_BAD_PARAM},
        {"add var nan weight", [&](ZekFail *f) { std::vector<double> w(n, kNaN); g02dec(n, ip, q.data(), n, p.data(), w.data(), x.data(), &rss, 0.0, f); }, ZE_REAL_ARG_LT},
        {"add var dependent", [&](ZekFail *f) { g02dec(n, ip, q.data(), n, p.data(), nullptr, x.data(), &rss, 0.0, f); }, ZE_NVAR_NOT_IND},
        {"add var huge ip", [&](ZekFail *f) { g02dec(n, INT_MAX, q.data(), n, p.data(), nullptr, x.data(), &rss, 0.0, f); }, ZE_2_INT_ARG_LT},
        {"delete var inf rss", [&](ZekFail *f) { double r = kInf; g02dfc(ip, q.data(), n, 1, &r, f); }, ZE_REAL_ARG_LT},
        {"constraints nan", [&](ZekFail *f) { std::vector<double> pp(p.size(), 0.5); g02dkc(ip, 1, pp.data(), c_nan, ip, b.data(), 1.0, 1.0, se.data(), cov.data(), f); }, ZE_BAD_PARAM},
        {"constraints nan df", [&](ZekFail *f) { g02dkc(ip, 1, p.data(), c_nan, ip, b.data(), 1.0, kNaN, se.data(), cov.data(), f); }, ZE_REAL_ARG_LE},
        {"estimable inf", [&](ZekFail *f) { g02dnc(ip, ip, b.data(), cov.data(), p.data(), f_inf, &est, &stat, &sestat, &t, 0.0, f); }, ZE_BAD_PARAM},
        {"estimable zero f", [&](ZekFail *f) { const double z[] = {0, 0, 0}; g02dnc(ip, ip, b.data(), cov.data(), p.data(), z, &est, &stat, &sestat, &t, 0.0, f); }, ZE_STDES_ZERO},
    };
    for (const Row &r : rows) {
        ZekFail fail{};
        r.call(&fail);
        EXPECT_EQ(fail.code, r.code) << r.name << ": " << fail.message;
        EXPECT_EQ(rss, rss0) << r.name;
        if (r.code != 0) {
            EXPECT_EQ(q, q0) << r.name;
        }
        for (double v : b) EXPECT_TRUE(std::isfinite(v)) << r.name;
    }
}

} // namespace
