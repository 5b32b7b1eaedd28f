// The matrix printers: exact text for formats, labels, blocks, triangles and widths, and the failure
// exits.  (FORM strings at large are the fuzzer's.)
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "host_capture.h"
#include "zek2/x04.h"

namespace {

using zek_test::OutputCapture;

// Host text, one line per record; failure records come padded to their width.
std::string joined(OutputCapture &out) {
    std::string s;
    for (std::string line : out.host()) s += line.erase(line.find_last_not_of(' ') + 1) + "\n";
    return s;
}

struct Call {
    std::string matrix = "G", diag = "N", form = " ", title = "Example 1", labrow = "I", labcol = "I";
    int m = 2, n = 3, lda = 2, ncols = 80, indent = 0;
    std::vector<double> a{1, 4, 2.5, 5, -3, 6.25};
    std::string rlabs, clabs;
    int label_len = 0;
};

// Prints through the front with IFAIL (1 unless given) and returns (IFAIL, host text).
std::pair<int, std::string> print(const Call &c, int ifail = 1) {
    OutputCapture out;
    X04CDF(c.matrix.c_str(), c.diag.c_str(), &c.m, &c.n, c.a.data(), &c.lda, c.form.c_str(), c.title.c_str(),
           c.labrow.c_str(), c.rlabs.c_str(), c.labcol.c_str(), c.clabs.c_str(), &c.ncols, &c.indent, &ifail,
           static_cast<int>(c.matrix.size()), static_cast<int>(c.diag.size()), static_cast<int>(c.form.size()),
           static_cast<int>(c.title.size()), 1, c.label_len, 1, c.label_len);
    return {ifail, joined(out)};
}

TEST(MatrixPrinter, GeneralDefaultFormatsWidenWithTheData) {
    Call c;
    EXPECT_EQ(print(c), std::make_pair(0, std::string("Example 1\n"
                                                      "         1       2       3\n"
                                                      "1   1.0000  2.5000 -3.0000\n"
                                                      "2   4.0000  5.0000  6.2500\n")));
    c.a[3] = 12345.678, c.title = "";
    EXPECT_EQ(print(c).second, "            1          2          3\n"
                               "1      1.0000     2.5000    -3.0000\n"
                               "2      4.0000 12345.6780     6.2500\n");
    c.a[3] = -1e10, c.labcol = "N";
    EXPECT_EQ(print(c).second, "1    1.0000E+00   2.5000E+00  -3.0000E+00\n"
                               "2    4.0000E+00  -1.0000E+10   6.2500E+00\n");
    c.n = 0, c.title = "T";  // an empty matrix prints only the title
    EXPECT_EQ(print(c).second, "T\n");
}

TEST(MatrixPrinter, UpperTriangleUnitDiagonalInBlocks) {
    Call c;
    c.matrix = c.diag = "u";
    c.m = c.n = c.lda = 4;
    c.a.clear();
    for (int k = 0; k < 16; ++k) c.a.push_back(k + 0.5);
    c.form = "f6.2";
    c.labrow = "N", c.title = "", c.ncols = 15;
    EXPECT_EQ(print(c).second, "     1     2\n  1.00  4.50\n        1.00\n\n     3     4\n"
                               "  8.50 12.50\n  9.50 13.50\n  1.00 14.50\n        1.00\n");
}

TEST(MatrixPrinter, LowerTriangleBlankDiagonalCharacterLabelsIndent) {
    Call c;
    c.matrix = "L", c.diag = "B", c.m = c.n = 3, c.lda = 4;
    c.a = {1, 2, 3, 0, 4, 5, 6, 0, 7, 8, 9, 0};
    c.form = "1PE11.3";
    c.labrow = c.labcol = "C";
    c.rlabs = "Alpha Beta  Gamma ";
    c.clabs = "x     yy    zzz   ";
    c.label_len = 6, c.indent = 4, c.title = "Lower";
    EXPECT_EQ(print(c).second, "    Lower\n                    x         yy        zzz\n    Alpha\n"
                               "    Beta    2.000E+00\n    Gamma   3.000E+00  6.000E+00\n");
}

// NCOLS 200 prints at 80 (ten fields of 8), 132 at 132 (sixteen); INDENT 80 with NCOLS 80 is 0.
TEST(MatrixPrinter, WidthsAndIndents) {
    Call c;
    c.m = c.lda = 1;
    c.n = 12;
    c.a.assign(12, 0.5);
    c.labrow = c.labcol = "N", c.title = "";
    std::string ten;
    for (int k = 0; k < 10; ++k) ten += "  0.5000";
    for (int ncols : {200, 132}) {
        c.ncols = ncols;
        EXPECT_EQ(print(c).second, ten + (ncols == 200 ? "\n\n" : "") + "  0.5000  0.5000\n");
    }
    c.ncols = c.indent = 80;
    EXPECT_EQ(print(c).second, ten + "\n\n  0.5000  0.5000\n");
}

TEST(MatrixPrinter, PackedTriangles) {
    const int n = 3;
    const double packed[] = {1, 2, 3, 4, 5, 6};
    int ifail = 1;
    OutputCapture out;
    X04CCF("U", "N", &n, packed, "Packed", &ifail, 1, 1, 6);
    X04CCF("l", "n", &n, packed, "", &ifail, 1, 1, 0);
    EXPECT_EQ(ifail, 0);
    EXPECT_EQ(joined(out), "Packed\n         1       2       3\n1   1.0000  2.0000  4.0000\n2           3.0000  5.0000\n"
                           "3                   6.0000\n         1       2       3\n1   1.0000\n2   2.0000  4.0000\n"
                           "3   3.0000  5.0000  6.0000\n");
}

TEST(MatrixPrinterFailures, TextAndNothingPrinted) {
    const struct {
        std::function<void(Call &)> change;
        int ifail;
        std::string text;
    } cases[] = {
        {[](Call &c) { c.matrix = "X"; }, 1, " ** On entry, MATRIX is not valid: MATRIX = 'X'.\n"},
        {[](Call &c) { c.matrix = "U", c.diag = "q"; }, 2, " ** On entry, DIAG is not valid: DIAG = 'q'.\n"},
        {[](Call &c) { c.labcol = "Z"; }, 3, " ** On entry, either LABROW or LABCOL is not valid:\n    LABROW = 'I', LABCOL = 'Z'.\n"},
        {[](Call &c) { c.form = " * "; }, 4, " ** FORM=* not supported by this version of X04CDF\n"},
        {[](Call &c) { c.form = "F8.4" + std::string(77, 'x'); }, 5,
         " ** On entry, FORM has more than 80 characters: the first 75 are\n    F8.4" + std::string(71, 'x') + "\n.\n"},
        {[](Call &c) { c.form = "I5"; }, 6, " ** The format specifier in FORM cannot be used to print a number: FORM =\n    I5.\n"},
        {[](Call &c) { c.ncols = 10, c.indent = 5; }, 7,
         " ** On entry, NCOLS-INDENT is not wide enough to hold at least one matrix\n"
         "    column: NCOLS =               10, INDENT =               5.\n"},
    };
    for (const auto &row : cases) {
        Call c;
        row.change(c);
        EXPECT_EQ(print(c, -13), std::make_pair(row.ifail, row.text));
    }
    const int n = 2;
    const double a[] = {1, 2, 3};
    int ifail = -13;
    OutputCapture out;
    X04CCF("G", "N", &n, a, "t", &ifail, 1, 1, 1);
    EXPECT_EQ(ifail, 1);
    EXPECT_EQ(joined(out), " ** On entry, UPLO is not valid: UPLO = 'G'.\n");
}

} // namespace
