// Hostile arguments for the GLM and robust-regression routines: every row ends in its failure exit or in
// a finite result, in bounded time, and a failure on the arguments leaves the outputs as they were.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <functional>
#include <vector>

#include "zek2/g02.h"
#include "zek2/messages.h"

namespace {

constexpr double kNaN = NAN, kInf = INFINITY;

// The outputs of one call, filled with a sentinel first.
struct Out {
    std::vector<double> b = std::vector<double>(4, -7), se = std::vector<double>(4, -7), cov = std::vector<double>(10, -7),
                        v = std::vector<double>(70, -7), p = std::vector<double>(20, -7);
    double s = 0, dev = -7, df = -7;
    int rank = -7;
    bool finite() const {
        for (const auto *vec : {&b, &se, &cov}) {
            for (double x : *vec) {
                if (!std::isfinite(x)) return false;
            }
        }
        return std::isfinite(dev) && std::isfinite(s);
    }
};

struct Data {
    int n = 10;
    std::vector<double> x = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, y = {2, 1, 3, 4, 3, 6, 5, 8, 7, 9},
                        t = std::vector<double>(10, 10.0), wt, offset;
    int tdv = 10, max_iter = 50;
};

using Call = std::function<void(const Data &, Out &, ZekFail *)>;

const Call kFamilies[] = {
    [](const Data &d, Out &o, ZekFail *f) {
        const int sx[] = {1};
        g02gac(Zek_Identity, Zek_MeanInclude, d.n, d.x.data(), 10, 1, sx, 2, d.y.data(), d.wt.empty() ? nullptr : d.wt.data(),
               d.offset.empty() ? nullptr : d.offset.data(), 1.0, &o.s, &o.dev, &o.df, o.b.data(), &o.rank, o.se.data(),
               o.cov.data(), o.v.data(), d.tdv, o.p.data(), 0.0, d.max_iter, 0.0, f);
    },
    [](const Data &d, Out &o, ZekFail *f) {
        const int sx[] = {1};
        g02gbc(Zek_Logistic, Zek_MeanInclude, d.n, d.x.data(), 10, 1, sx, 2, d.y.data(), d.t.data(),
               d.wt.empty() ? nullptr : d.wt.data(), d.offset.empty() ? nullptr : d.offset.data(), &o.dev, &o.df, o.b.data(),
               &o.rank, o.se.data(), o.cov.data(), o.v.data(), d.tdv, o.p.data(), 0.0, d.max_iter, 0.0, f);
    },
    [](const Data &d, Out &o, ZekFail *f) {
        const int sx[] = {1};
        g02gcc(Zek_Log, Zek_MeanInclude, d.n, d.x.data(), 10, 1, sx, 2, d.y.data(), d.wt.empty() ? nullptr : d.wt.data(),
               d.offset.empty() ? nullptr : d.offset.data(), 1.0, &o.dev, &o.df, o.b.data(), &o.rank, o.se.data(),
               o.cov.data(), o.v.data(), d.tdv, o.p.data(), 0.0, d.max_iter, 0.0, f);
    },
    [](const Data &d, Out &o, ZekFail *f) {
        const int sx[] = {1};
        g02gdc(Zek_Reciprocal, Zek_MeanInclude, d.n, d.x.data(), 10, 1, sx, 2, d.y.data(), d.wt.empty() ? nullptr : d.wt.data(),
               d.offset.empty() ? nullptr : d.offset.data(), 1.0, &o.s, &o.dev, &o.df, o.b.data(), &o.rank, o.se.data(),
               o.cov.data(), o.v.data(), d.tdv, o.p.data(), 0.0, d.max_iter, 0.0, f);
    },
};

struct Row {
    const char *name;
    std::function<void(Data &)> edit;
    bool argument_exit;  // the checks must refuse it, outputs untouched
};

TEST(HostileGlm, EveryFamilyEndsInAResultOrItsExit) {
    const Row rows[] = {
        {"x nan", [](Data &d) { d.x[3] = kNaN; }, true},
        {"x +inf", [](Data &d) { d.x[0] = kInf; }, true},
        {"y -inf", [](Data &d) { d.y[9] = -kInf; }, true},
        {"y nan", [](Data &d) { d.y[2] = kNaN; }, true},
        {"weight nan", [](Data &d) { d.wt.assign(10, 1.0); d.wt[1] = kNaN; }, true},
        {"weight inf", [](Data &d) { d.wt.assign(10, 1.0); d.wt[1] = kInf; }, true},
        {"offset nan", [](Data &d) { d.offset.assign(10, 0.0); d.offset[5] = kNaN; }, true},
        {"n zero", [](Data &d) { d.n = 0; }, true},
        {"n negative", [](Data &d) { d.n = -5; }, true},
        {"tdv one short", [](Data &d) { d.tdv = 9; }, true},
        {"max_iter zero", [](Data &d) { d.max_iter = 0; }, true},
        {"x largest", [](Data &d) { d.x[4] = DBL_MAX; }, false},
        {"x smallest", [](Data &d) { for (double &v : d.x) v *= DBL_MIN; }, false},
        {"y largest", [](Data &d) { d.y[4] = DBL_MAX; d.t.assign(10, DBL_MAX); }, false},
        {"y smallest", [](Data &d) { for (double &v : d.y) v = DBL_MIN; }, false},
        {"offset huge", [](Data &d) { d.offset.assign(10, 1e300); }, false},
        {"weights tiny", [](Data &d) { d.wt.assign(10, DBL_MIN); }, false},
        {"weights huge", [](Data &d) { d.wt.assign(10, 1e300); }, false},
    };
    for (std::size_t k = 0; k < 4; ++k) {
        for (const Row &r : rows) {
            Data d;
            r.edit(d);
            Out o;
            ZekFail fail{};
            kFamilies[k](d, o, &fail);
            if (r.argument_exit) {
                EXPECT_NE(fail.code, 0) << "family " << k << ": " << r.name;
                EXPECT_EQ(o.b[0], -7) << "family " << k << ": " << r.name;
            } else if (fail.code == 0) {
                EXPECT_TRUE(o.finite()) << "family " << k << ": " << r.name;
            }
        }
    }
}

TEST(HostileGlm, ConstraintsAndEstimabilityRefuseBadArguments) {
    std::vector<double> p(12, 0.0), c(3, kNaN), b(3, 1.0), se(3, 1.0), cov(6, 1.0), f = {1, kInf, 0};
    p[0] = 1.0;
    ZekFail fail{};
    g02gkc(3, 1, p.data(), c.data(), 3, b.data(), se.data(), cov.data(), &fail);
    EXPECT_EQ(fail.code, ZE_REAL_ARRAY_CONS);
    g02gkc(3, 1, p.data(), c.data(), 2, b.data(), se.data(), cov.data(), &fail);
    EXPECT_EQ(fail.code, ZE_2_INT_ARG_LT);
    g02gkc(3, 3, p.data(), c.data(), 3, b.data(), se.data(), cov.data(), &fail);
    EXPECT_EQ(fail.code, ZE_2_INT_ARG_GE);
    EXPECT_EQ(b[0], 1.0);
    int est = -1;
    double stat = 0, sestat = 0, z = 0;
    g02gnc(3, 2, b.data(), cov.data(), p.data(), f.data(), &est, &stat, &sestat, &z, 0.0, &fail);
    EXPECT_EQ(fail.code, ZE_REAL_ARRAY_CONS);
    g02gnc(3, 4, b.data(), cov.data(), p.data(), f.data(), &est, &stat, &sestat, &z, 0.0, &fail);
    EXPECT_EQ(fail.code, ZE_2_INT_ARG_GT);
    g02gnc(3, 2, b.data(), cov.data(), p.data(), f.data(), &est, &stat, &sestat, &z, kNaN, &fail);
    EXPECT_EQ(fail.code, ZE_REAL_ARG_LT);
    EXPECT_EQ(est, -1);
}

TEST(HostileRobust, RegressionAndCovarianceEndInAResultOrTheirExit) {
    struct R {
        const char *name;
        std::function<void(std::vector<double> &, std::vector<double> &, int &)> edit;
        bool argument_exit;
    };
    const R rows[] = {
        {"x nan", [](std::vector<double> &x, std::vector<double> &, int &) { x[12] = kNaN; }, true},
        {"y inf", [](std::vector<double> &, std::vector<double> &y, int &) { y[1] = kInf; }, true},
        {"y -inf", [](std::vector<double> &, std::vector<double> &y, int &) { y[1] = -kInf; }, true},
        {"n equal m", [](std::vector<double> &, std::vector<double> &, int &n) { n = 2; }, true},
        {"n negative", [](std::vector<double> &, std::vector<double> &, int &n) { n = -1; }, true},
        {"y largest", [](std::vector<double> &, std::vector<double> &y, int &) { y[3] = DBL_MAX; }, false},
        {"x largest", [](std::vector<double> &x, std::vector<double> &, int &) { x[15] = DBL_MAX; }, false},
        {"y smallest", [](std::vector<double> &, std::vector<double> &y, int &) { for (double &v : y) v *= DBL_MIN; }, false},
    };
    for (const R &r : rows) {
        std::vector<double> x(24), y(12), gw(12, 1.0);
        for (int i = 0; i < 12; ++i) {
            x[i] = 1.0;
            x[12 + i] = i + 0.5 * (i % 3);
            y[i] = 1.0 + 0.5 * i + (i % 4 == 0 ? 3.0 : 0.1 * i);
        }
        int n = 12;
        r.edit(x, y, n);
        for (int regtype : {Zek_MEstimate, Zek_Schweppe}) {
            std::vector<double> theta(2, -7), cov(3, -7), rs(12, -7), wgt(12, -7), t(1, -7), d(12, -7), w(12, -7);
            double sigma = 0, c = 1.345;
            ZekFail fail{};
            g02hac(regtype, Zek_Huber, Zek_SigmaProposal2, n, 2, x.data(), 12, y.data(), gw.data(), &c, 1.5, theta.data(), &sigma,
                   cov.data(), rs.data(), wgt.data(), 0.0, 100, &fail);
            if (r.argument_exit) {
                EXPECT_NE(fail.code, 0) << r.name;
                EXPECT_EQ(theta[0], -7) << r.name;
            } else if (fail.code == 0) {
                EXPECT_TRUE(std::isfinite(theta[0]) && std::isfinite(theta[1]) && std::isfinite(sigma)) << r.name;
            }
            g02hkc(n, 1, x.data() + 12, 12, 0.0, t.data(), cov.data(), d.data(), w.data(), 0.0, 100, &fail);
            if (r.argument_exit && r.name[0] == 'x') {
                EXPECT_NE(fail.code, 0) << r.name;
            }
            if (fail.code == 0) {
                EXPECT_TRUE(std::isfinite(t[0]) && std::isfinite(cov[0])) << r.name;
            }
        }
    }
}

} // namespace
