// H02BBF on the MIPLIB models of the shared test data: each solves to its published optimum.
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <fstream>
#include <string>

#include "branch_and_bound_test_support.h"

namespace {

using zek_test::BranchCall;
using zek_test::IntegerProgram;

TEST(BranchAndBoundMiplib, ModelsSolveToTheirOptima) {
    const std::string dir = std::string(ZEK_SHARED_DATA_DIR) + "/mip/";
    std::ifstream table(dir + "optima.tsv");
    ASSERT_TRUE(table.good());
    std::string line;
    int models = 0;
    while (std::getline(table, line)) {
        if (line.empty() || line[0] == '#') continue;
        const std::string name = line.substr(0, line.find('\t'));
        const double optimum = std::stod(line.substr(line.find('\t') + 1));
        IntegerProgram p;
        ASSERT_TRUE(IntegerProgram::from_file(dir + name + ".mps", p)) << name;
        BranchCall call;
        call.maxdpt = 200;
        call.extra_iwork = 200000;
        const auto t0 = std::chrono::steady_clock::now();
        EXPECT_EQ(call.run(p), 0) << name;
        const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
        EXPECT_NEAR(call.objective, optimum, 1e-6 * std::max(1.0, std::fabs(optimum))) << name;
        std::printf("%s: %.9g in %.3f s\n", name.c_str(), call.objective, seconds);
        ++models;
    }
    EXPECT_GE(models, 3);
}

} // namespace
