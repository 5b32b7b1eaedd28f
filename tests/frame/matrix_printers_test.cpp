// The matrix printers: exact text for formats, labels, blocks, triangles and widths, the failure exits,
// and FORM strings from a fuzzer.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "host_capture.h"
#include "zek2/x04.h"

namespace {

using zek_test::OutputCapture;

std::string joined(OutputCapture &out) {
    std::string s;
    // Failure records come padded to their width; printed lines are already trimmed.
    for (std::string line : out.host()) s += line.erase(line.find_last_not_of(' ') + 1) + "\n";
    return s;
}

struct Call {
    std::string matrix = "G", diag = "N", form = " ", title = "", labrow = "I", labcol = "I";
    int m = 0, n = 0, lda = 0, ncols = 80, indent = 0;
    std::vector<double> a;
    std::string rlabs, clabs;
    int label_len = 1;
};

// Prints through the front with IFAIL 1 and returns (IFAIL, host text).
std::pair<int, std::string> print(const Call &c) {
    int ifail = 1;
    OutputCapture out;
    X04CDF(c.matrix.c_str(), c.diag.c_str(), &c.m, &c.n, c.a.data(), &c.lda, c.form.c_str(), c.title.c_str(),
           c.labrow.c_str(), c.rlabs.c_str(), c.labcol.c_str(), c.clabs.c_str(), &c.ncols, &c.indent, &ifail,
           static_cast<int>(c.matrix.size()), static_cast<int>(c.diag.size()), static_cast<int>(c.form.size()),
           static_cast<int>(c.title.size()), static_cast<int>(c.labrow.size()), c.label_len,
           static_cast<int>(c.labcol.size()), c.label_len);
    return {ifail, joined(out)};
}

Call general_2x3() {
    Call c;
    c.m = 2;
    c.n = 3;
    c.lda = 2;
    c.a = {1, 4, 2.5, 5, -3, 6.25};
    c.title = "Example 1";
    return c;
}

TEST(MatrixPrinter, GeneralDefaultFormatWithIndexLabels) {
    auto [ifail, text] = print(general_2x3());
    EXPECT_EQ(ifail, 0);
    EXPECT_EQ(text,
              "Example 1\n"
              "         1       2       3\n"
              "1   1.0000  2.5000 -3.0000\n"
              "2   4.0000  5.0000  6.2500\n");
}

TEST(MatrixPrinter, DefaultFormatWidensWithTheData) {
    Call c = general_2x3();
    c.a[3] = 12345.678;
    EXPECT_EQ(print(c).second,
              "Example 1\n"
              "            1          2          3\n"
              "1      1.0000     2.5000    -3.0000\n"
              "2      4.0000 12345.6780     6.2500\n");
}

TEST(MatrixPrinter, UpperTriangleUnitDiagonalInBlocks) {
    Call c;
    c.matrix = "u";
    c.diag = "u";
    c.m = c.n = c.lda = 4;
    for (int k = 0; k < 16; ++k) c.a.push_back(k + 0.5);
    c.form = "f6.2";
    c.labrow = "N";
    c.ncols = 15;
    EXPECT_EQ(print(c).second,
              "     1     2\n"
              "  1.00  4.50\n"
              "        1.00\n"
              "\n"
              "     3     4\n"
              "  8.50 12.50\n"
              "  9.50 13.50\n"
              "  1.00 14.50\n"
              "        1.00\n");
}

TEST(MatrixPrinter, LowerTriangleBlankDiagonalCharacterLabelsIndent) {
    Call c;
    c.matrix = "L";
    c.diag = "B";
    c.m = c.n = 3;
    c.lda = 4;
    c.a = {1, 2, 3, 0, 4, 5, 6, 0, 7, 8, 9, 0};
    c.form = "1PE11.3";
    c.labrow = "C";
    c.labcol = "C";
    c.rlabs = "Alpha Beta  Gamma ";
    c.clabs = "x     yy    zzz   ";
    c.label_len = 6;
    c.indent = 4;
    c.title = "Lower";
    EXPECT_EQ(print(c).second,
              "    Lower\n"
              "                    x         yy        zzz\n"
              "    Alpha\n"
              "    Beta    2.000E+00\n"
              "    Gamma   3.000E+00  6.000E+00\n");
}

TEST(MatrixPrinter, WidthsAndIndents) {
    Call c;
    c.m = 1;
    c.n = 12;
    c.lda = 1;
    c.a.assign(12, 0.5);
    c.labrow = c.labcol = "N";
    c.ncols = 200;  // taken as 80: ten fields of 8
    const std::string ten = "  0.5000  0.5000  0.5000  0.5000  0.5000  0.5000  0.5000  0.5000  0.5000  0.5000\n";
    EXPECT_EQ(print(c).second, ten + "\n  0.5000  0.5000\n");
    c.ncols = 132;  // sixteen fields fit
    EXPECT_EQ(print(c).second, ten.substr(0, ten.size() - 1) + "  0.5000  0.5000\n");
    c.ncols = 80;
    c.indent = 80;  // taken as 0
    EXPECT_EQ(print(c).second, ten + "\n  0.5000  0.5000\n");
}

TEST(MatrixPrinter, EmptyMatrixPrintsOnlyTheTitle) {
    Call c = general_2x3();
    c.n = 0;
    EXPECT_EQ(print(c), std::make_pair(0, std::string("Example 1\n")));
}

TEST(MatrixPrinter, PackedTriangles) {
    const int n = 3;
    const double upper[] = {1, 2, 3, 4, 5, 6};  // a11 a12 a22 a13 a23 a33
    int ifail = 1;
    OutputCapture out;
    X04CCF("U", "N", &n, upper, "Packed", &ifail, 1, 1, 6);
    X04CCF("l", "n", &n, upper, "", &ifail, 1, 1, 0);  // a11 a21 a31 a22 a32 a33
    EXPECT_EQ(ifail, 0);
    EXPECT_EQ(joined(out),
              "Packed\n"
              "         1       2       3\n"
              "1   1.0000  2.0000  4.0000\n"
              "2           3.0000  5.0000\n"
              "3                   6.0000\n"
              "         1       2       3\n"
              "1   1.0000\n"
              "2   2.0000  4.0000\n"
              "3   3.0000  5.0000  6.0000\n");
}

struct FailureRow {
    const char *label;
    std::function<void(Call &)> change;
    int ifail;
    std::string text;
};

const FailureRow kFailures[] = {
    {"matrix", [](Call &c) { c.matrix = "X"; }, 1, " ** On entry, MATRIX is not valid: MATRIX = 'X'.\n"},
    {"diag", [](Call &c) { c.matrix = "U"; c.diag = "q"; }, 2, " ** On entry, DIAG is not valid: DIAG = 'q'.\n"},
    {"form_star", [](Call &c) { c.form = " * "; }, 4, " ** FORM=* not supported by this version of X04CDF\n"},
    {"form_long", [](Call &c) { c.form = "F8.4" + std::string(77, 'x'); }, 5,
     " ** On entry, FORM has more than 80 characters: the first 75 are\n"
     "    F8.4" + std::string(71, 'x') + "\n.\n"},
    {"form_integer", [](Call &c) { c.form = "I5"; }, 6,
     " ** The format specifier in FORM cannot be used to print a number: FORM =\n    I5.\n"},
    {"columns", [](Call &c) { c.ncols = 10; c.indent = 5; }, 7,
     " ** On entry, NCOLS-INDENT is not wide enough to hold at least one matrix\n"
     "    column: NCOLS =               10, INDENT =               5.\n"},
};

class MatrixPrinterFailures : public ::testing::TestWithParam<FailureRow> {};

TEST_P(MatrixPrinterFailures, TextAndNothingPrinted) {
    Call c = general_2x3();
    GetParam().change(c);
    int ifail = -13;
    OutputCapture out;
    X04CDF(c.matrix.c_str(), c.diag.c_str(), &c.m, &c.n, c.a.data(), &c.lda, c.form.c_str(), c.title.c_str(),
           c.labrow.c_str(), nullptr, c.labcol.c_str(), nullptr, &c.ncols, &c.indent, &ifail, 1, 1,
           static_cast<int>(c.form.size()), 9, 1, 0, 1, 0);
    EXPECT_EQ(ifail, GetParam().ifail);
    EXPECT_EQ(joined(out), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Rows, MatrixPrinterFailures, ::testing::ValuesIn(kFailures),
                         [](const ::testing::TestParamInfo<FailureRow> &i) { return std::string(i.param.label); });

TEST(MatrixPrinterFailures, PackedUploIsNamed) {
    const int n = 2;
    const double a[] = {1, 2, 3};
    int ifail = -13;
    OutputCapture out;
    X04CCF("G", "N", &n, a, "t", &ifail, 1, 1, 1);
    EXPECT_EQ(ifail, 1);
    EXPECT_EQ(joined(out), " ** On entry, UPLO is not valid: UPLO = 'G'.\n");
}

// FORM strings made of the descriptor alphabet: every one prints or fails with 5 or 6, and a printed
// line never holds more than the width.
TEST(MatrixPrinterFuzz, FormStringsAreBounded) {
    std::mt19937 gen(17);
    const std::string alphabet = "FEDGSPIA1P0123456789.,()* %-+xE";
    Call c = general_2x3();
    for (int trial = 0; trial < 3000; ++trial) {
        const int len = std::uniform_int_distribution<int>(0, 90)(gen);
        c.form.clear();
        for (int k = 0; k < len; ++k) c.form += alphabet[std::uniform_int_distribution<std::size_t>(0, alphabet.size() - 1)(gen)];
        if (trial % 3 == 0 && len > 4) c.form.replace(0, 4, "1PE1");
        auto [ifail, text] = print(c);
        ASSERT_TRUE(ifail == 0 || ifail == 4 || ifail == 5 || ifail == 6 || ifail == 7) << c.form << " " << ifail;
        if (ifail == 0) {
            std::size_t start = 0;
            while (start < text.size()) {
                const std::size_t end = text.find('\n', start);
                EXPECT_LE(end - start, 80u) << c.form;
                start = end + 1;
            }
        }
    }
}

} // namespace
