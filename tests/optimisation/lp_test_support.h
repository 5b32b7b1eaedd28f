// Helpers of the LP tests: a problem in the arrays E04MFA takes (built densely or read from the shared
// Netlib files by H02BUF), calls of E04MFA on state arrays that persist between runs, and independent
// checks of a result.
#ifndef ZEK_TESTS_LP_TEST_SUPPORT_H
#define ZEK_TESTS_LP_TEST_SUPPORT_H

#include <limits>
#include <string>
#include <vector>

#include "option_test_support.h"

namespace zek_test {

constexpr double kInf = std::numeric_limits<double>::infinity();

// minimise c'x subject to bl <= (x ; A x) <= bu; A is m by n, column-major, leading dimension max(1, m).
struct LpProblem {
    int n = 0, m = 0;
    std::vector<double> a, bl, bu, c;
    int lda() const { return m > 0 ? m : 1; }
    double at(int i, int j) const { return a[i + static_cast<std::size_t>(j) * lda()]; }
    // A given row by row.
    static LpProblem dense(const std::vector<std::vector<double>> &rows, std::vector<double> bl, std::vector<double> bu,
                           std::vector<double> c);
    // A model of the shared Netlib collection.
    static LpProblem netlib(const std::string &name);
};

struct LpResult {
    int ifail = -99, iter = -1;
    double obj = 0.0;
    std::vector<int> istate;
    std::vector<double> x, ax, clamda;
};

// E04WBA once, then E04MHF lines, then runs of E04MFA that share the state arrays and the workspace.
class LpSession {
public:
    int option(const std::string &line);  // INFORM
    // From X0 and ISTATE0 (zeros when empty); LIWORK, LWORK below 0 ask for the documented minimum.
    LpResult solve(const LpProblem &p, std::vector<double> x0 = {}, std::vector<int> istate0 = {}, int ifail = 1,
                   int liwork = -1, int lwork = -1, int lda = -1);
    std::vector<int> &iwsav() { return state_.iwsav; }
    std::vector<int> &iwork() { return iwork_; }

private:
    OptionState state_{"E04MFA"};
    std::vector<int> iwork_;
    std::vector<double> work_;
};

// Independent measures of a result: the largest bound violation of (x ; A x) recomputed from the data;
// |c - lambda_bounds - A' lambda_rows| and the largest multiplier of the wrong sign for its state, both
// relative to max(1, |c|).
struct Kkt {
    Kkt(const LpProblem &p, const LpResult &r);
    double violation = 0.0, stationarity = 0.0, sign = 0.0, objective = 0.0;
};

// R is an optimum of P (IFAIL 0 or 1) with objective OBJ to RTOL relative to max(1, |OBJ|), its OBJ
// agreeing with c'x to CTOL relative, (x ; A x) feasible and the multipliers of the right sign to FTOL,
// and stationary to STOL.
void expect_optimum(const LpProblem &p, const LpResult &r, double obj, double rtol, double ctol, double ftol,
                    double stol, const std::string &what = "");

} // namespace zek_test

#endif
