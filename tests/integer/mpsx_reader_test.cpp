// H02BUF on a crafted model that has every row type, ranges, markers and bound types, and the rules of
// the format one by one.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "frame/host_capture.h"
#include "frame/input_units.h"
#include "frame/output.h"
#include "integer/problem_files.h"
#include "mpsx_test_support.h"
#include "optimisation/option_test_support.h"
#include "zek2/x04.h"

namespace {

using zek_test::mps;
using zek_test::MpsxRead;
using zek_test::OutputCapture;
constexpr double kInf = 1.0e20;

std::string tiny_path() { return std::string(ZEK_TEST_DATA_DIR) + "/mps/tiny.mps"; }

std::string file_text(const std::string &path) {
    std::string text;
    std::FILE *f = std::fopen(path.c_str(), "rb");
    for (int c; f != nullptr && (c = std::fgetc(f)) != EOF;) text += static_cast<char>(c);
    if (f != nullptr) std::fclose(f);
    return text;
}

TEST(MpsxReader, ReadsTheCraftedModel) {
    for (const bool windows : {false, true}) {
        MpsxRead r(10, 10);
        const std::string text = file_text(tiny_path());
        ASSERT_FALSE(text.empty());
        EXPECT_EQ(r.read_text(windows ? zek_test::crlf(text) : text), 0);
        ASSERT_EQ(r.m, 5);
        ASSERT_EQ(r.n, 4);
        EXPECT_EQ(r.problem, "TINY    ");
        EXPECT_EQ(r.objective, "COST    ");
        EXPECT_EQ(r.rhs, "RHS     ");
        EXPECT_EQ(r.ranges, "RNG     ");
        EXPECT_EQ(r.bounds, "BND     ");
        const std::vector<std::string> names = {"X1", "X2", "X3", "X4", "LIM1", "LIM2", "MYEQN", "FREE", "RNG"};
        for (std::size_t k = 0; k < names.size(); ++k) {
            std::string expected = names[k];
            expected.resize(8, ' ');
            EXPECT_EQ(r.name(static_cast<int>(k) + 1), expected);
        }
        EXPECT_EQ(r.rowtyp[0], 1);
        EXPECT_EQ(r.rowtyp[1], -1);
        EXPECT_EQ(r.rowtyp[2], 0);
        EXPECT_EQ(r.rowtyp[3], 2);
        EXPECT_EQ(r.rowtyp[4], -1);
        const std::vector<std::vector<double>> a = {
            {1, 1, 0, 0}, {1, 0, 0, 0}, {0, -1, 1, 0}, {0, 0, 3, 0}, {0, 0, 1, 1}};
        for (int i = 1; i <= 5; ++i)
            for (int j = 1; j <= 4; ++j) EXPECT_EQ(r.at(i, j), a[i - 1][j - 1]) << i << "," << j;
        EXPECT_EQ((std::vector<double>(r.cvec.begin(), r.cvec.begin() + 4)), (std::vector<double>{1, 2, -1, 1}));
        // Columns: X1 UP 4; X2 default; X3 LI 1 then UP 9; X4 MI.  Rows: L 4 with range 2.5, G 1,
        // E 7 with range -3, N free, G 2 with range 4.  The objective row's right-hand side is gone.
        const std::vector<double> bl = {0, 0, 1, -kInf, 1.5, 1, 4, -kInf, 2};
        const std::vector<double> bu = {4, kInf, 9, 0, 4, kInf, 7, kInf, 6};
        EXPECT_EQ(std::vector<double>(r.bl.begin(), r.bl.begin() + 9), bl);
        EXPECT_EQ(std::vector<double>(r.bu.begin(), r.bu.begin() + 9), bu);
        EXPECT_EQ(std::vector<int>(r.intvar.begin(), r.intvar.begin() + 4), (std::vector<int>{0, 1, 1, 0}));
        EXPECT_EQ(std::vector<double>(r.x.begin(), r.x.begin() + 4), (std::vector<double>{0, 1, 0, 1}));
    }
}

TEST(MpsxReader, ListsTheFileAndTheNamesSelected) {
    MpsxRead r(10, 10);
    OutputCapture out;
    EXPECT_EQ(r.read_text(file_text(tiny_path()), 1, true), 0);
    const std::vector<std::string> &host = out.host();
    ASSERT_GE(host.size(), 10u);
    EXPECT_EQ(host[0], " MPSX INPUT LISTING");
    EXPECT_EQ(host[1], " ------------------");
    EXPECT_EQ(host[2], " * A small mixed-integer program: every row type, ranges, markers and bound types");
    EXPECT_EQ(host[3], " NAME          TINY");
    const std::vector<std::string> tail(host.end() - 7, host.end());
    const std::vector<std::string> expected = {
        "           NUMBER OF INTEGER VARIABLES =   2", " NAMES SELECTED", " --------------",
        " OBJECTIVE      COST    ", " RHS            RHS     ", " RANGES         RNG     ", " BOUNDS         BND     "};
    EXPECT_EQ(tail, expected);
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
    struct Case {
        std::string line;
        double lo, up;
        int integer;
    };
    const std::vector<Case> cases = {
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
    for (const Case &c : cases) {
        MpsxRead r(5, 5);
        r.xbudef = kInf;
        EXPECT_EQ(r.read_text(model("", "", "", c.line)), 0) << c.line;
        EXPECT_EQ(r.bl[0], c.lo) << c.line;
        EXPECT_EQ(r.bu[0], c.up) << c.line;
        EXPECT_EQ(r.intvar[0], c.integer) << c.line;
    }
}

TEST(MpsxReader, RangesOnEachRowType) {
    struct Case {
        std::string range;
        double lo[3], up[3];  // R1 (L, rhs 4), R2 (G, rhs 1), R3 (E, rhs 2)
    };
    const std::string rhs = mps("", "RHS", "R1", "4.0", "R2", "1.0") + mps("", "RHS", "R3", "2.0");
    const std::vector<Case> cases = {
        {mps("", "RNG", "R1", "1.5", "R2", "-2.0"), {2.5, 1, 2}, {4, 3, 2}},
        {mps("", "RNG", "R3", "5.0"), {-kInf, 1, 2}, {4, kInf, 7}},
        {mps("", "RNG", "R3", "-5.0"), {-kInf, 1, -3}, {4, kInf, 2}},
        {mps("", "RNG", "R3", "0.0"), {-kInf, 1, 2}, {4, kInf, 2}},
        {mps("", "RNG", "COST", "3.0"), {-kInf, 1, 2}, {4, kInf, 2}},
    };
    for (const Case &c : cases) {
        MpsxRead r(5, 5);
        EXPECT_EQ(r.read_text(model("", rhs, c.range)), 0) << c.range;
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(r.bl[static_cast<std::size_t>(2 + i)], c.lo[i]) << c.range << " row " << i + 1;
            EXPECT_EQ(r.bu[static_cast<std::size_t>(2 + i)], c.up[i]) << c.range << " row " << i + 1;
        }
    }
}

TEST(MpsxReader, SetSelectionAndDefaults) {
    const std::string rhs = mps("", "FIRST", "R1", "4.0") + mps("", "SECOND", "R1", "8.0") + mps("", "FIRST", "R2", "1.0");
    MpsxRead first(5, 5);
    first.xbldef = -1.0;
    first.xbudef = 3.0;
    EXPECT_EQ(first.read_text(model("", rhs)), 0);
    EXPECT_EQ(first.rhs, "FIRST   ");
    EXPECT_EQ(first.bu[2], 4.0);
    EXPECT_EQ(first.bl[3], 1.0);
    EXPECT_EQ(first.bl[0], -1.0);  // no BOUNDS: the defaults
    EXPECT_EQ(first.bu[1], 3.0);
    EXPECT_EQ(first.ranges, "        ");
    MpsxRead second(5, 5);
    second.rhs = "SECOND  ";
    EXPECT_EQ(second.read_text(model("", rhs)), 0);
    EXPECT_EQ(second.bu[2], 8.0);
    EXPECT_EQ(second.bl[3], 0.0);
}

TEST(MpsxReader, ColumnRules) {
    // A column that comes back after another is a second column of the same name; a marker line's
    // second pair is not read; a later entry for a cell replaces an earlier one; "$" comments.
    const std::string extra = mps("", "X1", "R3", "5.0") + mps("", "MARK", "'MARKER'", "", "'INTORG'", "9.0") +
                              mps("", "X3", "R1", "1.0", "R1", "2.0") + mps("", "MARK", "'MARKER'", "", "'INTEND'") +
                              mps("", "X5", "R2", "6.0", "$R3", "7.0");
    MpsxRead r(5, 6);
    EXPECT_EQ(r.read_text(model(extra)), 0);
    ASSERT_EQ(r.n, 5);
    EXPECT_EQ(r.name(3), "X1      ");
    EXPECT_EQ(r.at(3, 3), 5.0);   // row R3 of the second X1
    EXPECT_EQ(r.at(1, 1), 1.0);   // the first X1 keeps its entry
    EXPECT_EQ(r.at(1, 4), 2.0);   // X3: the later pair wins
    EXPECT_EQ(r.intvar[3], 1);
    EXPECT_EQ(r.intvar[4], 0);
    EXPECT_EQ(r.at(2, 5), 6.0);
    EXPECT_EQ(r.at(3, 5), 0.0);  // the pair behind "$" is a comment
}

TEST(MpsxReader, UnreadableNumbersKeepTheLastValueAndMaximisationNegates) {
    // Field 4 of the second X2 line is not a number: the value of the line before stands.
    const std::string extra = mps("", "X3", "R1", "2.0") + mps("", "X3", "R2", "abc");
    MpsxRead r(5, 5);
    r.optim = "max";
    EXPECT_EQ(r.read_text(model(extra)), 0);
    EXPECT_EQ(r.at(2, 3), 2.0);
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
    EXPECT_EQ(r.name(3), "COST    ");  // another N row stays as a free row
    EXPECT_EQ(r.name(4), "R2      ");
    EXPECT_EQ(r.bl[2], -kInf);
    EXPECT_EQ(r.at(2, 1), 3.0);
    EXPECT_EQ(r.problem, "        ");
}

TEST(ProblemFileServices, NameValidity) {
    struct Case {
        const char *name;
        bool valid;
    };
    for (const Case &c : {Case{"ROW1    ", true}, Case{"A$*:+-. ", true}, Case{" ROW1   ", false},
                          Case{"ROW/1   ", false}, Case{"ROW_1   ", false}, Case{"R(1)    ", false},
                          Case{"r1      ", true}, Case{"        ", false}})
        EXPECT_EQ(zek::h02::name_valid(c.name, 8), c.valid) << c.name;
}

TEST(ProblemFileServices, CyclicNameSearch) {
    const std::string table = "AAAAAAAABBBBBBBBCCCCCCCCDDDDDDDD";
    int cursor = 1;
    EXPECT_EQ(zek::h02::name_search("CCCCCCCC", table.data(), 8, 1, 4, &cursor), 3);
    EXPECT_EQ(cursor, 3);
    EXPECT_EQ(zek::h02::name_search("BBBBBBBB", table.data(), 8, 1, 4, &cursor), 2);  // wraps round
    EXPECT_EQ(zek::h02::name_search("DDDDDDDD", table.data(), 8, 1, 3, &cursor), 0);  // outside the range
    EXPECT_EQ(cursor, 1);
    EXPECT_EQ(zek::h02::name_search("BBBBBBBB", table.data(), 8, 3, 4, &cursor), 0);
    EXPECT_EQ(cursor, 3);
    EXPECT_EQ(zek::h02::name_search("AAAAAAAA", table.data(), 8, 1, 0, &cursor), 0);  // empty range
}

} // namespace

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
    EXPECT_EQ(r.n, 1);
    EXPECT_EQ(r.m, 0);
}
