// The MPSX readers H02BUF and E04MZF: a crafted model with every row type, ranges, markers and bound
// types; the rules of the format one by one; each error code with its record; the Netlib and MIPLIB
// models against GLPK's MPS reader; a Netlib model solved to its published optimum.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "frame/host_capture.h"
#include "frame/input_units.h"
#include "integer_test_support.h"
#include "optimisation/option_test_support.h"
#include "zek2/x04.h"

#if defined(ZEK_HAVE_GLPK)
#include <glpk.h>
#endif

namespace {

using zek_test::file_text;
using zek_test::mps;
using zek_test::MpsxRead;
using zek_test::OutputCapture;
constexpr double kInf = 1.0e20;

template <class T>
std::vector<T> head(const std::vector<T> &v, int n) { return std::vector<T>(v.begin(), v.begin() + n); }

TEST(MpsxReader, ReadsTheCraftedModelAndListsIt) {
    const std::string text = file_text(std::string(ZEK_TEST_DATA_DIR) + "/mps/tiny.mps");
    ASSERT_FALSE(text.empty());
    for (const bool windows : {false, true}) {
        MpsxRead r(10, 10);
        OutputCapture out;
        EXPECT_EQ(r.read_text(windows ? zek_test::crlf(text) : text, 1, windows), 0);
        ASSERT_TRUE(r.m == 5 && r.n == 4);
        EXPECT_EQ(r.problem + r.objective + r.rhs + r.ranges + r.bounds, "TINY    COST    RHS     RNG     BND     ");
        EXPECT_EQ(std::string(r.crname.data(), 72), "X1      X2      X3      X4      LIM1    LIM2    MYEQN   FREE    RNG     ");
        EXPECT_EQ(head(r.rowtyp, 5), (std::vector<int>{1, -1, 0, 2, -1}));
        const std::vector<double> a = {1, 1, 0, 0, 0, 1, 0, -1, 0, 0, 0, 0, 1, 3, 1, 0, 0, 0, 0, 1};  // by columns
        for (int k = 0; k < 20; ++k) EXPECT_EQ(r.at(k % 5 + 1, k / 5 + 1), a[k]) << k;
        EXPECT_EQ(head(r.cvec, 4), (std::vector<double>{1, 2, -1, 1}));
        // Columns: X1 UP 4; X2 default; X3 LI 1 then UP 9; X4 MI.  Rows: L 4 with range 2.5, G 1,
        // E 7 with range -3, N free, G 2 with range 4.  The objective row's right-hand side is gone.
        EXPECT_EQ(head(r.bl, 9), (std::vector<double>{0, 0, 1, -kInf, 1.5, 1, 4, -kInf, 2}));
        EXPECT_EQ(head(r.bu, 9), (std::vector<double>{4, kInf, 9, 0, 4, kInf, 7, kInf, 6}));
        EXPECT_EQ(head(r.intvar, 4), (std::vector<int>{0, 1, 1, 0}));
        EXPECT_EQ(head(r.x, 4), (std::vector<double>{0, 1, 0, 1}));
        if (!windows) continue;
        const std::vector<std::string> &host = out.host();
        ASSERT_GE(host.size(), 10u);
        EXPECT_EQ(head(host, 4), (std::vector<std::string>{
                                     " MPSX INPUT LISTING", " ------------------",
                                     " * A small mixed-integer program: every row type, ranges, markers and bound types",
                                     " NAME          TINY"}));
        EXPECT_EQ(std::vector<std::string>(host.end() - 7, host.end()),
                  (std::vector<std::string>{"           NUMBER OF INTEGER VARIABLES =   2", " NAMES SELECTED",
                                            " --------------", " OBJECTIVE      COST    ", " RHS            RHS     ",
                                            " RANGES         RNG     ", " BOUNDS         BND     "}));
    }
}

// A model around one section under test: rows N COST, L R1, G R2, E R3 and columns X1, X2.
std::string model(const std::string &columns_extra, const std::string &rhs = "", const std::string &ranges = "",
                  const std::string &bounds = "") {
    std::string s = "NAME          EDGE\nROWS\n" + mps("N", "COST") + mps("L", "R1") + mps("G", "R2") + mps("E", "R3") +
                    "COLUMNS\n" + mps("", "X1", "COST", "1.0", "R1", "1.0") + mps("", "X2", "R2", "2.0", "R3", "3.0") +
                    columns_extra;
    if (!rhs.empty()) s += "RHS\n" + rhs;
    if (!ranges.empty()) s += "RANGES\n" + ranges;
    if (!bounds.empty()) s += "BOUNDS\n" + bounds;
    return s + "ENDATA\n";
}

TEST(MpsxReader, BoundTypes) {
    const struct {
        std::string line;
        double lo, up;
        int integer;
    } cases[] = {
        {mps("UP", "B", "X1", "5.0"), 0, 5, 0},      {mps("UP", "B", "X1", "0.0"), -kInf, 0, 0},
        {mps("UP", "B", "X1", "-1.0"), 0, -1, 0},    {mps("UI", "B", "X1", "3.0"), 0, 3, 1},
        {mps("BV", "B", "X1", "7.0"), 0, 1, 1},      {mps("LO", "B", "X1", "-2.0"), -2, kInf, 0},
        {mps("LI", "B", "X1", "2.0"), 2, kInf, 1},   {mps("FX", "B", "X1", "2.5"), 2.5, 2.5, 0},
        {mps("FR", "B", "X1"), -kInf, kInf, 0},      {mps("MI", "B", "X1"), -kInf, 0, 0},
        {mps("PL", "B", "X1"), 0, kInf, 0},
        // Two bound lines on one column; a line of another set is passed over.
        {mps("LO", "B", "X1", "-3.0") + mps("UP", "B", "X1", "0.0"), -kInf, 0, 0},
        {mps("LO", "B", "X1", "-3.0") + mps("UP", "OTHER", "X1", "4.0"), -3, kInf, 0},
        {mps("BV", "B", "X1") + mps("UI", "B", "X1", "4.0"), 0, 4, 1},
    };
    for (const auto &c : cases) {
        MpsxRead r(5, 5);
        r.xbudef = kInf;
        EXPECT_EQ(r.read_text(model("", "", "", c.line)), 0) << c.line;
        EXPECT_TRUE(r.bl[0] == c.lo && r.bu[0] == c.up && r.intvar[0] == c.integer) << c.line;
    }
}

TEST(MpsxReader, RangesOnEachRowType) {
    const struct {
        std::string range;
        std::vector<double> bounds;  // BL then BU of R1 (L, rhs 4), R2 (G, rhs 1), R3 (E, rhs 2)
    } cases[] = {
        {mps("", "RNG", "R1", "1.5", "R2", "-2.0"), {2.5, 1, 2, 4, 3, 2}},
        {mps("", "RNG", "R3", "5.0"), {-kInf, 1, 2, 4, kInf, 7}},
        {mps("", "RNG", "R3", "-5.0"), {-kInf, 1, -3, 4, kInf, 2}},
        {mps("", "RNG", "R3", "0.0"), {-kInf, 1, 2, 4, kInf, 2}},
        {mps("", "RNG", "COST", "3.0"), {-kInf, 1, 2, 4, kInf, 2}},
    };
    for (const auto &c : cases) {
        MpsxRead r(5, 5);
        EXPECT_EQ(r.read_text(model("", mps("", "RHS", "R1", "4.0", "R2", "1.0") + mps("", "RHS", "R3", "2.0"), c.range)), 0);
        std::vector<double> got(r.bl.begin() + 2, r.bl.begin() + 5);
        got.insert(got.end(), r.bu.begin() + 2, r.bu.begin() + 5);
        EXPECT_EQ(got, c.bounds) << c.range;
    }
}

TEST(MpsxReader, SetSelectionDefaultsAndColumnRules) {
    const std::string rhs = mps("", "FIRST", "R1", "4.0") + mps("", "SECOND", "R1", "8.0") + mps("", "FIRST", "R2", "1.0");
    MpsxRead first(5, 5), second(5, 5);
    first.xbldef = -1.0, first.xbudef = 3.0;
    EXPECT_EQ(first.read_text(model("", rhs)), 0);
    EXPECT_EQ(first.rhs + first.ranges, "FIRST           ");
    EXPECT_TRUE(first.bu[2] == 4.0 && first.bl[3] == 1.0);
    EXPECT_TRUE(first.bl[0] == -1.0 && first.bu[1] == 3.0);  // no BOUNDS: the defaults
    second.rhs = "SECOND  ";
    EXPECT_EQ(second.read_text(model("", rhs)), 0);
    EXPECT_TRUE(second.bu[2] == 8.0 && second.bl[3] == 0.0);
    // A column that comes back after another is a second column of the same name; a marker line's
    // second pair is not read; a later entry for a cell replaces an earlier one; "$" comments; a field
    // that is not a number leaves the value of the line before; maximisation negates the objective.
    const std::string extra = mps("", "X1", "R3", "5.0") + mps("", "MARK", "'MARKER'", "", "'INTORG'", "9.0") +
                              mps("", "X3", "R1", "1.0", "R1", "2.0") + mps("", "MARK", "'MARKER'", "", "'INTEND'") +
                              mps("", "X5", "R2", "6.0", "$R3", "7.0") + mps("", "X6", "R1", "2.0") +
                              mps("", "X6", "R2", "abc");
    MpsxRead r(5, 6);
    r.optim = "max";
    EXPECT_EQ(r.read_text(model(extra)), 0);
    ASSERT_EQ(r.n, 6);
    EXPECT_EQ(r.name(3), "X1      ");
    EXPECT_TRUE(r.at(3, 3) == 5.0 && r.at(1, 1) == 1.0 && r.at(1, 4) == 2.0 && r.at(2, 5) == 6.0 && r.at(3, 5) == 0.0);
    EXPECT_EQ(head(r.intvar, 5), (std::vector<int>{0, 0, 0, 1, 0}));
    EXPECT_EQ(r.at(2, 6), 2.0);
    EXPECT_EQ(r.cvec[0], -1.0);
}

TEST(MpsxReader, ObjectiveChosenByName) {
    // A "$" in column 15 makes the rest of the line a comment, which would otherwise break the fields.
    const std::string text = "NAME\nROWS\n" + mps("L", "R1") + mps("N", "COST") + mps("N", "PROFIT") +
                             mps("G", "R2", "$ a comment running over the fields") + "COLUMNS\n" +
                             mps("", "X1", "R1", "1.0", "PROFIT", "5.0") + mps("", "X1", "COST", "3.0") + "ENDATA\n";
    MpsxRead r(5, 5);
    r.objective = "PROFIT  ";
    EXPECT_EQ(r.read_text(text), 0);
    EXPECT_EQ(r.cvec[0], 5.0);
    ASSERT_EQ(r.m, 3);
    EXPECT_EQ(r.name(3) + r.name(4), "COST    R2      ");  // another N row stays as a free row
    EXPECT_TRUE(r.bl[2] == -kInf && r.at(2, 1) == 3.0);
    EXPECT_EQ(r.problem, "        ");
}

TEST(MpsxReader, FileWithOnlyTheObjectiveRowHasNoConstraints) {
    // Found by fuzzing: an objective row alone, one column whose value field does not read, and an
    // ENDATA line ("EN" is enough) followed by bytes that are not text.  Once the objective is taken
    // out no row is left: M = 0 is a clean outcome.
    const std::string text("NAME          RANGED\r\nROWS\r\n N  COST\r\n\n* G  R1\r\nCOLUMNS\r\n"
                           "    X1        COST        X1\r\nEN\xff\xff~\xfez2\xb9\x00" "DATA\r\n",
                           103);
    MpsxRead r(5, 5);
    r.xbudef = 10.0;
    EXPECT_EQ(r.read_text(text), 0);
    EXPECT_TRUE(r.n == 1 && r.m == 0);
}

const std::string kRows = "NAME          BAD\nROWS\n" + mps("N", "COST") + mps("L", "R1");
const std::string kColumns = "COLUMNS\n" + mps("", "X1", "COST", "1.0", "R1", "1.0");

// LINE with an "x" in column COLUMN (the line padded with blanks up to it).
std::string with_text_at(std::string line, std::size_t column) {
    line.pop_back();
    line.resize(std::max(line.size(), column), ' ');
    line[column - 1] = 'x';
    return line + "\n";
}

TEST(MpsxReader, ErrorsReportTheFirstWithItsRecord) {
    const std::string x2 = mps("", "X2", "R1", "1.0"), x3 = mps("", "X3", "R1", "1.0"), end = "ENDATA\n";
    const std::string intorg = mps("", "M", "'MARKER'", "", "'INTORG'"), line11 = " ** Line    7   is not a comment nor a valid line.";
    const std::string rows = " ** Row name with leading blank or non-alphanumeric character ";
    const std::string columns = " ** Column name with leading blank or non-alphanumeric character ";
    // Each row: the file, IFAIL and the records; then MAXM, MAXN, the RHS set asked for, and the rows
    // (IFAIL 1) or columns (IFAIL 2) counted, when the row checks them.
    const struct {
        std::string text;
        int ifail;
        std::vector<std::string> records;
        int maxm = 5, maxn = 5;
        const char *rhs = "        ";
        int count = -1;
    } cases[] = {
        {kRows + mps("G", "R2") + kColumns + end, 1,
         {" ** Too many rows. Limit is    2, but the actual number required is", "    3."}, 2, 5, "        ", 3},
        {kRows + kColumns + x2 + x3 + mps("", "X3", "COST", "2.0") + mps("", "X4", "R1", "1.0") + end, 2,
         {" ** Too many columns. Limit is    2, but the actual number required is", "    4."}, 5, 2, "        ", 4},
        // Columns are counted up to text in columns 1 to 4.
        {kRows + kColumns + x2 + x3 + " X  X4\n" + mps("", "X5", "R1", "1.0") + end, 2,
         {" ** Too many columns. Limit is    1, but the actual number required is", "    3."}, 5, 1, "        ", 3},
        {"NAME\nROWS\n" + mps("L", "R1") + kColumns + end, 3, {" ** No objective function found."}},
        {"NAME\nROWS\n" + kColumns + end, 4, {" ** No rows specified."}},
        {kRows + mps("X", "R2") + kColumns + end, 5, {" ** Illegal constraint type -- (  X  )."}},
        {kRows + " LE R2\n" + kColumns + end, 5, {" ** Illegal constraint type -- (  LE )."}},
        {kRows + mps("G", "R#2") + kColumns + end, 6, {rows + " R#2     ."}},
        {kRows + mps("G", " R2") + kColumns + end, 6, {rows + "  R2     ."}},
        {kRows + kColumns + mps("", "X/2", "R1", "1.0") + end, 7, {columns + " X/2     ."}},
        {kRows + kColumns + mps("", "X_2", "R1", "1.0") + end, 7, {columns + " X_2     ."}},
        {kRows + kColumns + "BOUNDS\n" + mps("XX", "B", "X1", "1.0") + end, 8, {" ** Illegal bound type ( XX )."}},
        {kRows + kColumns + "BOUNDS\n" + mps("UP", "B", "X9", "1.0") + end, 9,
         {" ** Column name (X9      ) is not defined in the COLUMNS section."}},
        {kRows + kColumns, 10, {" ** The last line must be the ENDATA indicator line."}},
        {"", 10, {" ** The last line must be the ENDATA indicator line."}},
        {"* comment\nROWS\n", 11, {" ** Line    2   is not a comment nor a valid line."}},
        {kRows + kColumns + with_text_at(x2, 24) + end, 11, {line11}},  // text between the fields
        {kRows + kColumns + with_text_at(x2, 72) + end, 11, {line11}},
        {kRows + kColumns + " X  X2        R1\n" + end, 11, {line11}},  // text in columns 1 to 4 of COLUMNS
        {kRows + kColumns + "BOUNDS\nRHS\n" + end, 11, {" ** Line    8   is not a comment nor a valid line."}},
        {kRows + kColumns + mps("", "X2", "R7", "1.0") + end, 12, {" ** Row name  R7       not defined in ROWS section."}},
        {kRows + kColumns + "RHS\n" + mps("", "RHS", "R1", "1.0", "R8", "1.0") + end, 12,
         {" ** Row name  R8       not defined in ROWS section."}},
        {kRows + "COLUMNS\n" + end, 13, {" ** No columns specified."}},
        {kRows + kColumns + "RHS\n" + mps("", "RHS", "R1", "1.0") + end, 14, {" ** RHS name was not found  OTHER   "}, 5, 5,
         "OTHER   "},
        {kRows + kColumns + mps("", "M", "'MARKER'", "", "'INTEND'") + end, 15,
         {" ** Integer marker is not in a correct position."}},
        {kRows + kColumns + intorg + intorg + end, 15, {" ** Integer marker is not in a correct position."}},
    };
    for (const auto &c : cases) {
        MpsxRead r(c.maxm, c.maxn);
        r.rhs = c.rhs;
        OutputCapture out;
        EXPECT_EQ(r.read_text(c.text, -13), c.ifail) << c.text;
        EXPECT_EQ(out.host(), c.records) << c.text;
        if (c.count >= 0) { EXPECT_EQ(c.ifail == 1 ? r.m : r.n, c.count) << c.text; }
    }
}

TEST(MpsxReaderFailures, ArgumentsAreCheckedInOrderAndTouchNoFile) {
    const struct {
        int maxm, maxn;
        double xbldef;
        const char *optim;
        std::vector<std::string> records;
    } cases[] = {
        {0, 0, 0, "MIN", {" ** On entry, MAXN .lt. 1:", "    MAXN =                0."}},
        {-1, 5, 0, "MIN", {" ** On entry, MAXM .lt. 1:", "    MAXM =               -1."}},
        {5, 5, 2, "MIN", {" ** On entry, XBLDEF .gt. XBUDEF:", "    XBLDEF =                2, XBUDEF =                1."}},
        {5, 5, 0, "AVG", {" ** On entry, OPTIM does not equal MIN or MAX:", "    OPTIM = AVG."}},
        {5, 5, 0, "MI", {" ** On entry, OPTIM does not equal MIN or MAX:", "    OPTIM =  MI."}},
    };
    for (const auto &c : cases) {
        MpsxRead r(std::max(c.maxm, 1), std::max(c.maxn, 1));
        r.maxm = c.maxm, r.maxn = c.maxn, r.xbldef = c.xbldef, r.xbudef = 1.0, r.optim = c.optim;
        OutputCapture out;
        EXPECT_EQ(r.read_text(mps("N", "COST"), -13), 14) << c.optim;
        EXPECT_EQ(zek_test::trimmed(out.host()), c.records) << c.optim;
    }
    // A unit without a stream is an empty file.
    MpsxRead r(3, 3);
    EXPECT_EQ(r.read(12345, 1), 10);
    // The front marks the outputs it never reached and prints no " *** IFAIL MISMATCH" line.
    MpsxRead fresh(3, 3);
    OutputCapture out;
    EXPECT_EQ(fresh.read_text("NAME\nROWS\n", 1), 10);
    EXPECT_TRUE(out.host().empty());
    EXPECT_EQ(fresh.x[0], -2139062144.0);
    EXPECT_EQ(fresh.intvar[2], static_cast<int>(0x80808080u));
}

TEST(MpsxReaderFailures, ListingReportsEveryErrorAndKeepsTheFirst) {
    const std::string text = kRows + mps("X", "R2") + mps("L", "R1") + kColumns + mps("", "X2", "R9", "1.0") +
                             "BOUNDS\n" + mps("UP", "B", "X7", "1.0") + "ENDATA\n";
    // Too many rows skips to COLUMNS and reads on.
    const std::string rows = kRows + mps("G", "R2") + mps("G", "R3") + kColumns + mps("", "X2", "R3", "1.0") + "ENDATA\n";
    const struct {
        std::string text;
        int maxm, ifail, m;
        std::vector<std::string> lines;
    } cases[] = {
        {text, 5, 5, -1,
         {" ** Illegal constraint type -- (  X  ).", " ** duplicate row name  R1        - ignored",
          " ** row name  R9       not defined in ROWS section",
          " ** column name (X7      ) is not defined in the COLUMNS section", " NAMES SELECTED"}},
        {rows, 2, 1, 3, {" ** row name  R3       not defined in ROWS section"}},
    };
    for (const auto &c : cases) {
        MpsxRead r(c.maxm, 5);
        OutputCapture out;
        EXPECT_EQ(r.read_text(c.text, 1, true), c.ifail);
        EXPECT_TRUE(r.n == 2 && (c.m < 0 || r.m == c.m));
        for (const std::string &line : c.lines)
            EXPECT_NE(std::find(out.host().begin(), out.host().end(), line), out.host().end()) << line;
    }
}

TEST(E04mzf, RefusesTheIntegerItemsThatH02bufReads) {
    const struct {
        std::string line;
        bool in_columns;
        int ifail;
    } cases[] = {
        {mps("", "MARKER", "'MARKER'", "", "'INTORG'"), true, 11}, {mps("UI", "BND", "X1", "3.0"), false, 8},
        {mps("BV", "BND", "X1"), false, 8},                       {mps("LI", "BND", "X1", "1.0"), false, 8},
        {mps("UP", "BND", "X1", "3.0"), false, 0},
    };
    for (const auto &c : cases) {
        const std::string text = "NAME          T\nROWS\n N  COST\n L  LIM\nCOLUMNS\n" + (c.in_columns ? c.line : "") +
                                 mps("", "X1", "COST", "1.0", "LIM", "1.0") + "RHS\n" + mps("", "RHS", "LIM", "4.0") +
                                 "BOUNDS\n" + (c.in_columns ? "" : c.line) + "ENDATA\n";
        MpsxRead r(5, 5), h(5, 5);
        r.continuous = true;
        EXPECT_EQ(r.read_text(text), c.ifail) << c.line;
        EXPECT_EQ(h.read_text(text), 0) << c.line;
    }
}

TEST(E04mzf, NetlibModelSolvedByTheQpSolverReachesItsOptimum) {
    MpsxRead r(40, 40);
    r.continuous = true;
    ASSERT_EQ(r.read_text(file_text(std::string(ZEK_TEST_DATA_DIR) + "/lp/afiro.mps")), 0);
    ASSERT_TRUE(r.n == 32 && r.m == 27);
    // E04NFA takes the arrays as they are: A with leading dimension MAXM, the bounds of columns and rows
    // contiguous.
    const double hess = 0.0;
    double obj = 0.0;
    const int ifail = zek_test::qp_solver("LP", r.n, r.m, r.a.data(), r.maxm, r.bl.data(), r.bu.data(),
                                          r.cvec.data(), &hess, 1, r.x, &obj);
    ASSERT_LE(ifail, 1);
    EXPECT_NEAR(obj, -4.6475314286e+02, 1e-8 * 464.75);
}

#if defined(ZEK_HAVE_GLPK)
// The Netlib LP and MIPLIB models of the shared test data (fixed columns, CR LF line ends), read through
// a unit as a host does, hold the same data as GLPK's MPS reader finds in them: names, matrix, objective,
// bounds, integer columns.  (GLPK keeps the objective row's right-hand side as a constant term and gives
// integer columns without bounds the bounds 0 and 1; those two differences are left out.)
TEST(Collections, AgreeWithGlpk) {
    glp_term_out(GLP_OFF);
    int models = 0;
    for (const std::string collection : {"lp", "mip"}) {
        std::ifstream tsv(std::string(ZEK_SHARED_DATA_DIR) + "/" + collection + "/optima.tsv");
        for (std::string line; std::getline(tsv, line);) {
            if (line.empty() || line[0] == '#') continue;
            std::istringstream fields(line);
            std::string name, optimum;
            int rows = 0, columns = 0;
            fields >> name >> optimum >> rows >> columns;
            const std::string path = std::string(ZEK_SHARED_DATA_DIR) + "/" + collection + "/" + name + ".mps";
            MpsxRead r(rows, columns);
            std::FILE *stream = X04_OPEN_INPUT(path.c_str());
            EXPECT_EQ(r.read(zek::input_unit_number(stream), 1), 0) << name;
            zek::forget_input_stream(stream);
            std::fclose(stream);
            ++models;
            glp_prob *p = glp_create_prob();
            ASSERT_EQ(glp_read_mps(p, GLP_MPS_DECK, nullptr, path.c_str()), 0) << name;
            ASSERT_TRUE(glp_get_num_cols(p) == r.n && glp_get_num_rows(p) == r.m && r.m + 1 == rows) << name;
            // Name (and, when BOUNDS, bounds) of entry K (columns, then rows) against GLPK's.
            const auto differs = [&](int k, const char *name, bool bounds, int type, double lb, double ub) {
                const std::string own = r.name(k);
                return own.substr(0, own.find_last_not_of(' ') + 1) != name ||
                       (bounds && (r.bl[k - 1] != (type == GLP_FR || type == GLP_UP ? -1e20 : lb) ||
                                   r.bu[k - 1] != (type == GLP_FR || type == GLP_LO ? 1e20 : ub)));
            };
            std::vector<int> ind(static_cast<std::size_t>(r.n) + 1);
            std::vector<double> val(static_cast<std::size_t>(r.n) + 1);
            int mismatches = 0;
            for (int j = 1; j <= r.n; ++j) {
                const bool integer = glp_get_col_kind(p, j) != GLP_CV;  // GLP_IV, or GLP_BV for 0-1 columns
                mismatches += r.cvec[j - 1] != glp_get_obj_coef(p, j) || r.intvar[j - 1] != (integer ? 1 : 0);
                mismatches += differs(j, glp_get_col_name(p, j), !integer, glp_get_col_type(p, j), glp_get_col_lb(p, j),
                                      glp_get_col_ub(p, j));
            }
            for (int i = 1; i <= r.m; ++i) {
                mismatches += differs(r.n + i, glp_get_row_name(p, i), true, glp_get_row_type(p, i), glp_get_row_lb(p, i),
                                      glp_get_row_ub(p, i));
                std::vector<double> row(static_cast<std::size_t>(r.n), 0.0);
                const int len = glp_get_mat_row(p, i, ind.data(), val.data());
                for (int k = 1; k <= len; ++k) row[ind[k] - 1] = val[k];
                for (int j = 1; j <= r.n; ++j) mismatches += r.at(i, j) != row[j - 1];
            }
            EXPECT_EQ(mismatches, 0) << name;
            glp_delete_prob(p);
        }
    }
    EXPECT_EQ(models, 12);
}

#endif

} // namespace
