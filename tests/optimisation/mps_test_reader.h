// A small reader of fixed-column MPS files for the LP tests and benchmarks: the ROWS, COLUMNS, RHS,
// RANGES and BOUNDS sections, one objective row (the first free row; later free rows are dropped),
// and the dense arrays E04MFA takes.
#ifndef ZEK_TESTS_MPS_TEST_READER_H
#define ZEK_TESTS_MPS_TEST_READER_H

#include <string>
#include <vector>

namespace zek_test {

struct LpModel {
    std::string name;
    int n = 0;                 // columns
    int m = 0;                 // constraint rows (objective excluded)
    std::vector<double> a;     // m by n, column-major, leading dimension max(1, m)
    std::vector<double> c;     // objective coefficients
    std::vector<double> bl;    // n + m lower bounds (variables, then rows)
    std::vector<double> bu;    // n + m upper bounds
    std::vector<std::string> columns, rows;
    int lda() const { return m > 0 ? m : 1; }
    double at(int i, int j) const { return a[static_cast<std::size_t>(i) + static_cast<std::size_t>(j) * lda()]; }
};

// Reads PATH; infinite bounds become +-infinity.  Returns false (with a reason in *error) on a file it
// cannot read.
bool read_mps(const std::string &path, LpModel &model, double infinity, std::string *error);

} // namespace zek_test

#endif
