// E04MFA on the Netlib models of the shared test data, read by H02BUF: the published optimum to 1e-8
// relative, the point feasible to the tolerance, the multipliers satisfying the optimality conditions.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <sstream>

#include "lp_test_support.h"

namespace {

double published_optimum(const std::string &name) {
    std::ifstream in(std::string(ZEK_SHARED_DATA_DIR) + "/lp/optima.tsv");
    std::string line, model;
    double value = 0.0;
    while (std::getline(in, line))
        if (std::istringstream(line) >> model >> value && model == name) return value;
    ADD_FAILURE() << "no published optimum for " << name;
    return 0.0;
}

class NetlibModel : public testing::TestWithParam<std::string> {};

TEST_P(NetlibModel, SolvesToThePublishedOptimum) {
    const double optimum = published_optimum(GetParam());
    const zek_test::LpProblem p = zek_test::LpProblem::netlib(GetParam());
    ASSERT_GT(p.n, 0);
    zek_test::LpSession session;
    const zek_test::LpResult r = session.solve(p);
    const zek_test::Kkt kkt(p, r);
    EXPECT_TRUE(r.ifail == 0 || r.ifail == 1) << r.ifail;
    EXPECT_NEAR(r.obj, optimum, 1e-8 * std::fabs(optimum)) << r.iter << " iterations";
    EXPECT_NEAR(kkt.objective, r.obj, 1e-9 * std::fabs(optimum));
    EXPECT_LE(kkt.violation, 1e-7);
    EXPECT_LE(kkt.stationarity, 1e-9);
    EXPECT_LE(kkt.sign, 1e-7);
}

INSTANTIATE_TEST_SUITE_P(Netlib, NetlibModel,
                         testing::Values("afiro", "sc50a", "sc50b", "adlittle", "blend", "kb2", "sc105", "share2b",
                                         "stocfor1"),
                         [](const testing::TestParamInfo<std::string> &info) { return info.param; });

} // namespace
