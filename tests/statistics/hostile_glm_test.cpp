// Hostile arguments for the GLM and robust-regression routines: every row ends in its failure exit or in
// a finite result, in bounded time, and a refused argument leaves the outputs as they were.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <functional>
#include <vector>

#include "support.h"

namespace {

constexpr double kNaN = NAN, kInf = INFINITY;

// Refused rows end in an argument exit with the outputs untouched; the others in an exit or finite values.
TEST(HostileGlm, EveryFamilyEndsInAResultOrItsExit) {
    const struct { const char *name; std::function<void(Glm &)> edit; bool refused; } rows[] = {
        {"x nan", [](Glm &g) { g.x[3] = kNaN; }, true},
        {"x +inf", [](Glm &g) { g.x[0] = kInf; }, true},
        {"y -inf", [](Glm &g) { g.y[9] = -kInf; }, true},
        {"y nan", [](Glm &g) { g.y[2] = kNaN; }, true},
        {"weight nan", [](Glm &g) { g.wt.assign(10, 1.0); g.wt[1] = kNaN; }, true},
        {"weight inf", [](Glm &g) { g.wt.assign(10, 1.0); g.wt[1] = kInf; }, true},
        {"offset nan", [](Glm &g) { g.offset.assign(10, 0.0); g.offset[5] = kNaN; }, true},
        {"n zero", [](Glm &g) { g.n = 0; }, true},
        {"n negative", [](Glm &g) { g.n = -5; }, true},
        {"tdv one short", [](Glm &g) { g.tdv = 9; }, true},
        {"max_iter zero", [](Glm &g) { g.max_iter = 0; }, true},
        {"x largest", [](Glm &g) { g.x[4] = DBL_MAX; }, false},
        {"x smallest", [](Glm &g) { for (double &v : g.x) v *= DBL_MIN; }, false},
        {"y largest", [](Glm &g) { g.y[4] = DBL_MAX; g.t.assign(10, DBL_MAX); }, false},
        {"y smallest", [](Glm &g) { for (double &v : g.y) v = DBL_MIN; }, false},
        {"offset huge", [](Glm &g) { g.offset.assign(10, 1e300); }, false},
        {"weights tiny", [](Glm &g) { g.wt.assign(10, DBL_MIN); }, false},
        {"weights huge", [](Glm &g) { g.wt.assign(10, 1e300); }, false},
    };
    const Glm families[] = {Glm(kNormal, Zek_Identity), Glm(kBinomial, Zek_Logistic), Glm(kPoisson, Zek_Log),
                            Glm(kGamma, Zek_Reciprocal)};
    for (const Glm &family : families) {
        for (const auto &r : rows) {
            Glm g(family.fam, family.link, 10, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, {2, 1, 3, 4, 3, 6, 5, 8, 7, 9});
            g.t.assign(10, 10.0);
            r.edit(g);
            const Fit f = run(g);
            bool finite = std::isfinite(f.dev) && std::isfinite(f.s);
            for (const auto *v : {&f.b, &f.se, &f.cov}) {
                for (double x : *v) finite = finite && std::isfinite(x);
            }
            EXPECT_TRUE(r.refused ? f.fail.code != 0 && f.b[0] == -7 : f.fail.code != 0 || finite) << g.fam << ": " << r.name;
        }
    }
}

TEST(HostileGlm, ConstraintsAndEstimabilityRefuseBadArguments) {
    std::vector<double> p(12, 0.0), c(3, kNaN), b(3, 1.0), se(3, 1.0), cov(6, 1.0), f = {1, kInf, 0};
    p[0] = 1.0;
    int est = -1;
    double st = 0, sst = 0, z = 0;
    const struct {
        int tdc_or_rank, iconst;  // iconst 0: g02gnc
        double tol;
        int code;
    } rows[] = {{3, 1, 0, ZE_REAL_ARRAY_CONS}, {2, 1, 0, ZE_2_INT_ARG_LT}, {3, 3, 0, ZE_2_INT_ARG_GE},
                {2, 0, 0, ZE_REAL_ARRAY_CONS}, {4, 0, 0, ZE_2_INT_ARG_GT}, {2, 0, kNaN, ZE_REAL_ARG_LT}};
    for (const auto &r : rows) {
        ZekFail fail{};
        if (r.iconst > 0) g02gkc(3, r.iconst, p.data(), c.data(), r.tdc_or_rank, b.data(), se.data(), cov.data(), &fail);
        if (r.iconst == 0) g02gnc(3, r.tdc_or_rank, b.data(), cov.data(), p.data(), f.data(), &est, &st, &sst, &z, r.tol, &fail);
        EXPECT_EQ(fail.code, r.code);
    }
    EXPECT_EQ(b[0], 1.0);
    EXPECT_EQ(est, -1);
}

TEST(HostileRobust, RegressionAndCovarianceEndInAResultOrTheirExit) {
    const struct {
        const char *name;
        int at;  // index into x (0..23) or y (24..35); -1 changes n
        double value;
        bool refused;
    } rows[] = {{"x nan", 12, kNaN, true},       {"y inf", 25, kInf, true},        {"y -inf", 25, -kInf, true},
                {"n equal m", -1, 2, true},      {"n negative", -1, -1, true},     {"y largest", 27, DBL_MAX, false},
                {"x largest", 15, DBL_MAX, false}, {"y smallest", 27, DBL_MIN, false}};
    for (const auto &r : rows) {
        std::vector<double> x(24), y(12), gw(12, 1.0);
        for (int i = 0; i < 12; ++i) {
            x[i] = 1.0;
            x[12 + i] = i + 0.5 * (i % 3);
            y[i] = 1.0 + 0.5 * i + (i % 4 == 0 ? 3.0 : 0.1 * i);
        }
        const int n = r.at < 0 ? static_cast<int>(r.value) : 12;
        (r.at >= 24 ? y[r.at - 24] : x[r.at < 0 ? 0 : r.at]) = r.at < 0 ? x[0] : r.value;
        for (int regtype : {Zek_MEstimate, Zek_Schweppe}) {
            std::vector<double> theta(2, -7), cov(3, -7), rs(12), wgt(12), t(1, -7), d(12), w(12);
            double sigma = 0, c = 1.345;
            ZekFail fail{};
            g02hac(regtype, Zek_Huber, Zek_SigmaProposal2, n, 2, x.data(), 12, y.data(), gw.data(), &c, 1.5, theta.data(),
                   &sigma, cov.data(), rs.data(), wgt.data(), 0.0, 100, &fail);
            EXPECT_TRUE(r.refused ? fail.code != 0 && theta[0] == -7
                                  : fail.code != 0 || (std::isfinite(theta[0]) && std::isfinite(theta[1]) && std::isfinite(sigma)))
                << r.name;
            g02hkc(n, 1, x.data() + 12, 12, 0.0, t.data(), cov.data(), d.data(), w.data(), 0.0, 100, &fail);
            EXPECT_TRUE(fail.code != 0 || (std::isfinite(t[0]) && std::isfinite(cov[0]))) << r.name;
        }
    }
}

} // namespace
