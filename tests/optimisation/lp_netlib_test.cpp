// E04MFA on the Netlib models of the shared test data: the published optimum to 1e-8 relative, the
// point feasible to the feasibility tolerance, and the multipliers satisfying the optimality conditions.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <map>
#include <sstream>

#include "lp_test_support.h"

namespace {

using zek_test::LpModel;
using zek_test::LpProblem;
using zek_test::LpResult;
using zek_test::LpSession;

std::string lp_dir() { return std::string(ZEK_SHARED_DATA_DIR) + "/lp/"; }

std::map<std::string, double> published_optima() {
    std::map<std::string, double> optima;
    std::ifstream in(lp_dir() + "optima.tsv");
    std::string line;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream fields(line);
        std::string name;
        double value;
        if (fields >> name >> value) optima[name] = value;
    }
    return optima;
}

LpProblem netlib(const std::string &name) {
    LpModel model;
    std::string error;
    EXPECT_TRUE(zek_test::read_mps(lp_dir() + name + ".mps", model, zek_test::kInf, &error)) << error;
    return LpProblem::from(model);
}

class NetlibModel : public testing::TestWithParam<std::string> {};

TEST_P(NetlibModel, SolvesToThePublishedOptimum) {
    const std::string name = GetParam();
    const auto optima = published_optima();
    ASSERT_TRUE(optima.count(name)) << name;
    const double optimum = optima.at(name);
    const LpProblem p = netlib(name);
    LpSession session;
    const LpResult r = session.solve(p);
    EXPECT_TRUE(r.ifail == 0 || r.ifail == 1) << name << " IFAIL " << r.ifail;
    EXPECT_NEAR(r.obj, optimum, 1e-8 * std::fabs(optimum)) << name << " after " << r.iter << " iterations";
    EXPECT_NEAR(zek_test::objective(p, r.x), r.obj, 1e-9 * std::max(1.0, std::fabs(optimum)));
    EXPECT_LE(zek_test::max_violation(p, r.x), 1e-7) << name;
    EXPECT_LE(zek_test::stationarity_error(p, r), 1e-9) << name;
    EXPECT_LE(zek_test::multiplier_sign_error(p, r), 1e-7) << name;
}

INSTANTIATE_TEST_SUITE_P(Netlib, NetlibModel,
                         testing::Values("afiro", "sc50a", "sc50b", "adlittle", "blend", "kb2", "sc105", "share2b",
                                         "stocfor1"),
                         [](const testing::TestParamInfo<std::string> &info) { return info.param; });

} // namespace
