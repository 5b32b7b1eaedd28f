// Helpers of the branch and bound tests: a small integer program in dense form, and one call of
// H02BBF on it with an option store prepared by H02WBF and workspace of the minimum lengths (or more).
#ifndef ZEK_TESTS_BRANCH_AND_BOUND_TEST_SUPPORT_H
#define ZEK_TESTS_BRANCH_AND_BOUND_TEST_SUPPORT_H

#include <string>
#include <vector>

namespace zek_test {

struct IntegerProgram {
    int n = 0, m = 0;
    std::vector<double> a;  // m by n, leading dimension max(1, m)
    std::vector<double> bl, bu, cvec;
    std::vector<int> intvar;
    int lda() const { return m > 0 ? m : 1; }
    double &at(int i, int j) { return a[static_cast<std::size_t>((i - 1) + (j - 1) * lda())]; }
    // An empty program of N variables in [0, upper] (all integer) and M rows in [-1e20, 1e20].
    static IntegerProgram box(int n, int m, double upper);
    std::vector<char> names;  // from a file: the names of the columns, then of the rows, 8 characters each
    // The program an MPSX file describes (read by H02BUF, OPTIM "MIN" or "MAX"); false when the reader
    // fails.
    static bool from_file(const std::string &path, IntegerProgram &out, const char *optim = "MIN");
};

struct BranchCall {
    // Arguments; zero or negative tolerances and limits take H02BBF's defaults.
    int itmax = 0, msglvl = 0, maxnod = 0, intfst = 0, maxdpt = 50;
    double toliv = 0.0, tolfes = 0.0, bigbnd = 0.0;
    int extra_iwork = 0;  // integers beyond the minimum LIWORK (a larger tree)
    int liwork = -1, lrwork = -1;  // explicit lengths, when not negative
    int lda = -1;                  // an explicit leading dimension, when not negative
    int ifail_in = 1;
    std::vector<double> x0;  // start point, zeros when empty

    // Results.
    std::vector<double> x;
    double objective = 0.0;
    int ifail = -99;
    std::vector<int> iwork;
    std::vector<double> rwork;
    std::vector<int> lwsav = std::vector<int>(120, 0);
    std::vector<int> iwsav = std::vector<int>(610, 0);
    std::vector<double> rwsav = std::vector<double>(475, 0.0);

    // Prepares the store with H02WBF and calls H02BBF; returns IFAIL.
    int run(const IntegerProgram &p);
};

// The minimum workspace lengths of H02BBF.
long long minimum_liwork(int n, int m, int maxdpt);
long long minimum_lrwork(int n, int m, int maxdpt);

// The lines without their trailing blanks (failure records come blank padded).
std::vector<std::string> trimmed(const std::vector<std::string> &lines);

// The best objective of P over all integer points of its box (every variable integer), by
// enumeration; false when no point is feasible.  The box must be small.
bool enumerate_optimum(const IntegerProgram &p, double *best);

} // namespace zek_test

#endif
