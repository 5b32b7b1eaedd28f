// Helpers of the LP tests: a problem in the arrays E04MFA takes, one call of E04MFA with its state
// arrays and workspace, and independent checks of a solution (feasibility, optimality conditions).
#ifndef ZEK_TESTS_LP_TEST_SUPPORT_H
#define ZEK_TESTS_LP_TEST_SUPPORT_H

#include <limits>
#include <string>
#include <vector>

#include "mps_test_reader.h"

namespace zek_test {

constexpr double kInf = std::numeric_limits<double>::infinity();

// minimise c'x subject to bl <= (x ; A x) <= bu; A is m by n, column-major, leading dimension max(1, m).
struct LpProblem {
    int n = 0, m = 0;
    std::vector<double> a, bl, bu, c;
    int lda() const { return m > 0 ? m : 1; }
    double at(int i, int j) const { return a[static_cast<std::size_t>(i) + static_cast<std::size_t>(j) * lda()]; }
    static LpProblem from(const LpModel &model);
    // A dense problem from rows: A given row by row.
    static LpProblem dense(const std::vector<std::vector<double>> &rows, std::vector<double> bl, std::vector<double> bu,
                           std::vector<double> c);
};

struct LpResult {
    int ifail = -99;
    int iter = -1;
    double obj = 0.0;
    std::vector<int> istate;
    std::vector<double> x, ax, clamda;
};

// E04MFA with its own state arrays: E04WBA once, then options, then any number of runs that share the
// arrays (so a warm or hot start sees the last run's workspace).
class LpSession {
public:
    LpSession();
    // One E04MHF line; returns INFORM.
    int option(const std::string &line);
    // Solves from X0 (zeros when empty) and ISTATE0 (zeros when empty).  A negative LIWORK or LWORK
    // asks for the documented minimum.
    LpResult solve(const LpProblem &p, std::vector<double> x0 = {}, std::vector<int> istate0 = {}, int ifail = 1,
                   int liwork = -1, int lwork = -1);
    std::vector<int> &iwsav() { return iwsav_; }
    std::vector<int> &iwork() { return iwork_; }

private:
    std::vector<char> cwsav_ = std::vector<char>(80, ' ');
    std::vector<int> lwsav_ = std::vector<int>(120, 0), iwsav_ = std::vector<int>(610, 0);
    std::vector<double> rwsav_ = std::vector<double>(475, 0.0);
    std::vector<int> iwork_;
    std::vector<double> work_;
};

// The documented minimum workspace.
int minimum_liwork(int n);
int minimum_lwork(int n, int m);

// Largest bound violation of (x ; A x) recomputed from the data.
double max_violation(const LpProblem &p, const std::vector<double> &x);
// Largest violation of the optimality conditions: |c - lambda_bounds - A' lambda_rows| (relative to
// max(1, |c|)), and the largest multiplier of the wrong sign for its state (relative to the same scale).
double stationarity_error(const LpProblem &p, const LpResult &r);
double multiplier_sign_error(const LpProblem &p, const LpResult &r);
double objective(const LpProblem &p, const std::vector<double> &x);

} // namespace zek_test

#endif
