// Helpers of the MPSX reader tests: a call of H02BUF with arrays of the given limits, and fixed-column
// lines built field by field.
#ifndef ZEK_TESTS_MPSX_TEST_SUPPORT_H
#define ZEK_TESTS_MPSX_TEST_SUPPORT_H

#include <string>
#include <vector>

namespace zek_test {

// One MPSX data line: field 1 from column 2, field 2 from column 5, field 3 from column 15, the number
// of field 4 ending in column 36, field 5 from column 40, the number of field 6 ending in column 61.
std::string mps(const std::string &f1, const std::string &f2, const std::string &f3 = "",
                const std::string &f4 = "", const std::string &f5 = "", const std::string &f6 = "");

struct MpsxRead {
    MpsxRead(int maxm, int maxn) : maxm(maxm), maxn(maxn) {}
    // Reads the stream behind UNIT (by E04MZF, without INTVAR, when CONTINUOUS is set); IFAIL on entry is
    // the caller's.
    int read(int unit, int ifail = 1, bool listing = false);
    // Reads TEXT written to a temporary file.
    int read_text(const std::string &text, int ifail = 1, bool listing = false);

    int maxm, maxn;
    int m = -1, n = -1;
    std::vector<double> a = std::vector<double>(static_cast<std::size_t>(maxm) * static_cast<std::size_t>(maxn));
    std::vector<double> cvec = std::vector<double>(static_cast<std::size_t>(maxn));
    std::vector<double> bl = std::vector<double>(static_cast<std::size_t>(maxn + maxm));
    std::vector<double> bu = std::vector<double>(static_cast<std::size_t>(maxn + maxm));
    std::vector<double> x = std::vector<double>(static_cast<std::size_t>(maxn));
    std::vector<int> intvar = std::vector<int>(static_cast<std::size_t>(maxn));
    std::vector<int> rowtyp = std::vector<int>(static_cast<std::size_t>(maxm));
    std::vector<char> crname = std::vector<char>(static_cast<std::size_t>(8 * (maxn + maxm)), '#');
    std::string problem = "        ", objective = "        ", rhs = "        ", ranges = "        ",
                bounds = "        ";
    std::string optim = "MIN";
    double xbldef = 0.0, xbudef = 1.0e20;
    bool continuous = false;

    double at(int i, int j) const { return a[static_cast<std::size_t>((i - 1) + (j - 1) * maxm)]; }
    std::string name(int k) const { return std::string(crname.data() + 8 * (k - 1), 8); }
    int nonzeros() const;  // of A (rows 1..M) and CVEC
};

} // namespace zek_test

#endif
