// H02BUF's failures: each error code of the parser on a small crafted file with its failure record,
// the argument checks, and a listing run that reports several errors.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

#include "frame/host_capture.h"
#include "mpsx_test_support.h"
#include "zek2/h02.h"

namespace {

// Records as the host receives them, without the blanks that pad them to their width.
std::vector<std::string> trimmed(std::vector<std::string> lines) {
    for (std::string &l : lines) l.erase(l.find_last_not_of(' ') + 1);
    return lines;
}

using zek_test::mps;
using zek_test::MpsxRead;
using zek_test::OutputCapture;

const std::string kRows = "NAME          BAD\nROWS\n" + mps("N", "COST") + mps("L", "R1");
const std::string kColumns = "COLUMNS\n" + mps("", "X1", "COST", "1.0", "R1", "1.0");

// LINE with an "x" in column COLUMN (the line padded with blanks up to it).
std::string with_text_at(std::string line, std::size_t column) {
    line.pop_back();
    if (line.size() < column) line.resize(column, ' ');
    line[column - 1] = 'x';
    return line + "\n";
}

struct ErrorCase {
    const char *what;
    std::string text;
    int ifail;
    std::vector<std::string> records;
    int maxm = 5, maxn = 5;
    const char *rhs = "        ";
    int m = -1, n = -1;  // the counts reached, when the case checks them
};

class ParserErrors : public testing::TestWithParam<ErrorCase> {};

TEST_P(ParserErrors, ReportTheFirstErrorWithItsRecord) {
    const ErrorCase &c = GetParam();
    MpsxRead r(c.maxm, c.maxn);
    r.rhs = c.rhs;
    OutputCapture out;
    EXPECT_EQ(r.read_text(c.text, -13), c.ifail) << c.what;
    EXPECT_EQ(out.host(), c.records) << c.what;
    if (c.m >= 0) {
        EXPECT_EQ(r.m, c.m) << c.what;
    }
    if (c.n >= 0) {
        EXPECT_EQ(r.n, c.n) << c.what;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Files, ParserErrors,
    testing::Values(
        ErrorCase{"too many rows", kRows + mps("G", "R2") + kColumns + "ENDATA\n", 1,
                  {" ** Too many rows. Limit is    2, but the actual number required is", "    3."}, 2, 5, "        ", 3},
        ErrorCase{"too many columns",
                  kRows + kColumns + mps("", "X2", "R1", "1.0") + mps("", "X3", "R1", "1.0") + mps("", "X3", "COST", "2.0") +
                      mps("", "X4", "R1", "1.0") + "ENDATA\n",
                  2, {" ** Too many columns. Limit is    2, but the actual number required is", "    4."}, 5, 2,
                  "        ", -1, 4},
        ErrorCase{"too many columns counted up to text in columns 1 to 4",
                  kRows + kColumns + mps("", "X2", "R1", "1.0") + mps("", "X3", "R1", "1.0") + " X  X4\n" +
                      mps("", "X5", "R1", "1.0") + "ENDATA\n",
                  2, {" ** Too many columns. Limit is    1, but the actual number required is", "    3."}, 5, 1,
                  "        ", -1, 3},
        ErrorCase{"no objective", "NAME\nROWS\n" + mps("L", "R1") + kColumns + "ENDATA\n", 3,
                  {" ** No objective function found."}},
        ErrorCase{"no rows", "NAME\nROWS\n" + kColumns + "ENDATA\n", 4, {" ** No rows specified."}},
        ErrorCase{"bad row type", kRows + mps("X", "R2") + kColumns + "ENDATA\n", 5,
                  {" ** Illegal constraint type -- (  X  )."}},
        ErrorCase{"row type in columns 2 to 3", kRows + " LE R2\n" + kColumns + "ENDATA\n", 5,
                  {" ** Illegal constraint type -- (  LE )."}},
        ErrorCase{"bad row name", kRows + mps("G", "R#2") + kColumns + "ENDATA\n", 6,
                  {" ** Row name with leading blank or non-alphanumeric character  R#2     ."}},
        ErrorCase{"row name with a leading blank", kRows + mps("G", " R2") + kColumns + "ENDATA\n", 6,
                  {" ** Row name with leading blank or non-alphanumeric character   R2     ."}},
        ErrorCase{"bad column name", kRows + kColumns + mps("", "X/2", "R1", "1.0") + "ENDATA\n", 7,
                  {" ** Column name with leading blank or non-alphanumeric character  X/2     ."}},
        ErrorCase{"bad bound type", kRows + kColumns + "BOUNDS\n" + mps("XX", "B", "X1", "1.0") + "ENDATA\n", 8,
                  {" ** Illegal bound type ( XX )."}},
        ErrorCase{"bound on an unknown column", kRows + kColumns + "BOUNDS\n" + mps("UP", "B", "X9", "1.0") + "ENDATA\n",
                  9, {" ** Column name (X9      ) is not defined in the COLUMNS section."}},
        ErrorCase{"no ENDATA", kRows + kColumns, 10, {" ** The last line must be the ENDATA indicator line."}},
        ErrorCase{"empty file", "", 10, {" ** The last line must be the ENDATA indicator line."}},
        ErrorCase{"no NAME", "* comment\nROWS\n", 11, {" ** Line    2   is not a comment nor a valid line."}},
        ErrorCase{"text between the fields", kRows + kColumns + with_text_at(mps("", "X2", "R1", "1.0"), 24) + "ENDATA\n",
                  11, {" ** Line    7   is not a comment nor a valid line."}},
        ErrorCase{"text in column 72", kRows + kColumns + with_text_at(mps("", "X2", "R1", "1.0"), 72) + "ENDATA\n",
                  11, {" ** Line    7   is not a comment nor a valid line."}},
        ErrorCase{"text in columns 1 to 4 of COLUMNS", kRows + kColumns + " X  X2        R1\nENDATA\n", 11,
                  {" ** Line    7   is not a comment nor a valid line."}},
        ErrorCase{"sections out of order", kRows + kColumns + "BOUNDS\nRHS\nENDATA\n", 11,
                  {" ** Line    8   is not a comment nor a valid line."}},
        ErrorCase{"unknown row", kRows + kColumns + mps("", "X2", "R7", "1.0") + "ENDATA\n", 12,
                  {" ** Row name  R7       not defined in ROWS section."}},
        ErrorCase{"unknown row in RHS", kRows + kColumns + "RHS\n" + mps("", "RHS", "R1", "1.0", "R8", "1.0") + "ENDATA\n",
                  12, {" ** Row name  R8       not defined in ROWS section."}},
        ErrorCase{"no columns", kRows + "COLUMNS\nENDATA\n", 13, {" ** No columns specified."}},
        ErrorCase{"RHS set not found", kRows + kColumns + "RHS\n" + mps("", "RHS", "R1", "1.0") + "ENDATA\n", 14,
                  {" ** RHS name was not found  OTHER   "}, 5, 5, "OTHER   "},
        ErrorCase{"INTEND outside a block",
                  kRows + kColumns + mps("", "M", "'MARKER'", "", "'INTEND'") + "ENDATA\n", 15,
                  {" ** Integer marker is not in a correct position."}},
        ErrorCase{"INTORG inside a block",
                  kRows + kColumns + mps("", "M", "'MARKER'", "", "'INTORG'") + mps("", "M", "'MARKER'", "", "'INTORG'") +
                      "ENDATA\n",
                  15, {" ** Integer marker is not in a correct position."}}),
    [](const testing::TestParamInfo<ErrorCase> &info) {
        std::string name;
        for (const char *p = info.param.what; *p; ++p) name += std::isalnum(static_cast<unsigned char>(*p)) ? *p : '_';
        return name;
    });

TEST(ArgumentErrors, AreCheckedInOrderAndTouchNoFile) {
    struct Case {
        int maxm, maxn;
        double xbldef, xbudef;
        const char *optim;
        std::vector<std::string> records;
    };
    const std::vector<Case> cases = {
        {5, 0, 0, 1, "MIN", {" ** On entry, MAXN .lt. 1:", "    MAXN =                0."}},
        {0, 0, 0, 1, "MIN", {" ** On entry, MAXN .lt. 1:", "    MAXN =                0."}},
        {-1, 5, 0, 1, "MIN", {" ** On entry, MAXM .lt. 1:", "    MAXM =               -1."}},
        {5, 5, 2, 1, "MIN", {" ** On entry, XBLDEF .gt. XBUDEF:", "    XBLDEF =                2, XBUDEF =                1."}},
        {5, 5, 0, 1, "AVG", {" ** On entry, OPTIM does not equal MIN or MAX:", "    OPTIM = AVG."}},
        {5, 5, 0, 1, "MI", {" ** On entry, OPTIM does not equal MIN or MAX:", "    OPTIM =  MI."}},
    };
    for (const Case &c : cases) {
        MpsxRead r(std::max(c.maxm, 1), std::max(c.maxn, 1));
        r.maxm = c.maxm;
        r.maxn = c.maxn;
        r.xbldef = c.xbldef;
        r.xbudef = c.xbudef;
        r.optim = c.optim;
        OutputCapture out;
        EXPECT_EQ(r.read_text(mps("N", "COST"), -13), 14) << c.optim;
        EXPECT_EQ(trimmed(out.host()), c.records) << c.optim;
    }
}

TEST(Listing, ReportsEveryErrorAndKeepsTheFirst) {
    const std::string text = kRows + mps("X", "R2") + mps("L", "R1") + kColumns + mps("", "X2", "R9", "1.0") +
                             "BOUNDS\n" + mps("UP", "B", "X7", "1.0") + "ENDATA\n";
    MpsxRead r(5, 5);
    OutputCapture out;
    EXPECT_EQ(r.read_text(text, 1, true), 5);
    const std::vector<std::string> &host = out.host();
    auto has = [&](const std::string &line) { return std::find(host.begin(), host.end(), line) != host.end(); };
    EXPECT_TRUE(has(" ** Illegal constraint type -- (  X  )."));
    EXPECT_TRUE(has(" ** duplicate row name  R1        - ignored"));
    EXPECT_TRUE(has(" ** row name  R9       not defined in ROWS section"));
    EXPECT_TRUE(has(" ** column name (X7      ) is not defined in the COLUMNS section"));
    EXPECT_TRUE(has(" NAMES SELECTED"));
    EXPECT_EQ(r.n, 2);
}

TEST(Listing, TooManyRowsSkipsToColumnsAndReadsOn) {
    const std::string text = kRows + mps("G", "R2") + mps("G", "R3") + kColumns + mps("", "X2", "R3", "1.0") + "ENDATA\n";
    MpsxRead r(2, 5);
    OutputCapture out;
    EXPECT_EQ(r.read_text(text, 1, true), 1);
    EXPECT_EQ(r.m, 3);
    EXPECT_EQ(r.n, 2);
    const std::vector<std::string> &host = out.host();
    EXPECT_NE(std::find(host.begin(), host.end(), " ** row name  R3       not defined in ROWS section"), host.end());
}

TEST(Front, MarksOutputsAndReportsNoMismatch) {
    MpsxRead r(3, 3);
    OutputCapture out;
    EXPECT_EQ(r.read_text("NAME\nROWS\n", 1), 10);
    EXPECT_TRUE(out.host().empty());  // no " *** IFAIL MISMATCH" line
    EXPECT_EQ(r.x[0], -2139062144.0);  // never reached: still marked
    EXPECT_EQ(r.intvar[2], static_cast<int>(0x80808080u));
}

TEST(Units, AUnitWithoutAStreamIsAnEmptyFile) {
    MpsxRead r(3, 3);
    EXPECT_EQ(r.read(12345, 1), 10);
}

} // namespace
