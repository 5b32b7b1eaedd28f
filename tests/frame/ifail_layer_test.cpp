// Failure exits of workers, the two-level front and the record builder.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "frame/adaptor.h"
#include "frame/ifail.h"
#include "host_capture.h"
#include "zek2/frame.h"

namespace {

using zek_test::OutputCapture;

std::string padded(const std::string &text, std::size_t width) { return text + std::string(width - 1 - text.size(), ' '); }

// A worker of the usual shape: checks N, fails with a two-value message, or succeeds.
void sample_worker(int n, int m, double *out, char *errbuf, int *ifail, int /*errbuf_len*/) {
    zek::FailureExit exit("C02ALF", errbuf, ifail);
    if (n < 1) exit.fail(1, 99999, " ** On entry, N .lt. 1: N =%16ld.", {n});
    else if (m > n) exit.fail(2, 99998, " ** On entry, M .gt. N:\n    M =%16ld, N =%16ld.", {m, n});
    else out[0] = n + m, exit.succeed();
}

// A worker whose path returns a failure without passing a failure exit: what the front's self-check
// is there to catch.
void unannounced_worker(char *errbuf, int *ifail, int) {
    zek::FailureExit exit("C02ALF", errbuf, ifail);
    *ifail = 5;
}

void sample_front(const int *n, const int *m, double *out, int *ifail, bool announced = true) {
    zek::Front front("C02ALF");
    ZEK_MARK_REAL_ARRAY(2, out);
    if (announced) sample_worker(*n, *m, out, front.errbuf(), ifail, zek::kErrbufLength);
    else unannounced_worker(front.errbuf(), ifail, zek::kErrbufLength);
    front.finish(*ifail);
}

TEST(FailureExit, SuccessLeavesNoneAndFailureWritesErrbufLineAndRecords) {
    char errbuf[zek::kErrbufLength];
    std::memset(errbuf, 'x', sizeof errbuf);
    double out[2];
    int ifail = 13;
    OutputCapture capture;
    sample_worker(3, 2, out, errbuf, &ifail, zek::kErrbufLength);
    EXPECT_TRUE(ifail == 0 && std::string(errbuf) == "NONE");
    ifail = -1;
    sample_worker(2, 5, out, errbuf, &ifail, zek::kErrbufLength);
    EXPECT_EQ(ifail, 2);
    EXPECT_STREQ(errbuf, "C02ALF     2 99998     2                5                2");
    EXPECT_EQ(capture.host(), (std::vector<std::string>{
                                  padded(" ** On entry, M .gt. N:", 80), padded("    M =               5, N =               2.", 80),
                                  " ** ABNORMAL EXIT from ZEK Library routine C02ALF: IFAIL =     2",
                                  " ** ZEK soft failure - control returned"}));
}

TEST(Front, MarksOutputsQuietWhenReportsAgreeAndPrintsAMismatch) {
    const int n = 0, m = 0;
    double out[2] = {1.0, 2.0};
    int ifail = 1;
    {
        OutputCapture capture;
        sample_front(&n, &m, out, &ifail);
        EXPECT_EQ(ifail, 1);
        EXPECT_TRUE(out[0] == -2139062144.0 && out[1] == -2139062144.0);  // never written: the marker shows
        EXPECT_TRUE(capture.host().empty());
    }
    ifail = 1;
    OutputCapture capture;
    sample_front(&n, &m, out, &ifail, /*announced=*/false);
    EXPECT_EQ(ifail, 5);
    EXPECT_EQ(capture.host(), (std::vector<std::string>{" *** IFAIL MISMATCH IN C02ALF: IFAIL = ", " 5", " , IERR =", " 0",
                                                        " , SRNAME =", " NONE"}));
    EXPECT_EQ(capture.stdout_text(), "\n");
}

TEST(RecordBuilder, BuildsPaddedRecords) {
    const struct {
        std::vector<std::string> pieces;
        int width;
        std::vector<std::string> records;
    } cases[] = {
        {{"a =%4ld", " b = %s", " c = %.1f"}, 21, {"a =  42 b = ABC c = ", "2.5                 "}},
        {{"\n", "x"}, 6, {"     ", "x    "}},                  // a leading newline keeps an empty record
        {{"x", "\n", "\n", "y"}, 6, {"x    ", "     ", "y    "}},  // so do two newlines in a row
        {{"100%% of %ld"}, 12, {"100% of 42 "}},
        {{}, 4, {"   "}},
    };
    for (const auto &c : cases) {
        const zek::Records r = zek::build_records(c.pieces, {42L, std::string("ABC"), 2.5}, c.width);
        std::vector<std::string> got;
        for (int i = 0; i < r.count(); ++i) got.emplace_back(r.record(i));
        EXPECT_EQ(got, c.records) << c.pieces.size() << " pieces, width " << c.width;
    }
}

TEST(MessagePieces, SplitsAtNewlinesAndBeforeEachFurtherConversion) {
    EXPECT_EQ(zek::message_pieces(" ** On entry, M1 .gt. M2:\n    M1 =%16ld, M2 =%16ld."),
              (std::vector<std::string>{" ** On entry, M1 .gt. M2:", "\n", "    M1 =%16ld", ", M2 =%16ld."}));
    EXPECT_EQ(zek::message_pieces("50%% done %s"), std::vector<std::string>{"50%% done %s"});
}

TEST(IfailDigits, ReadsUnitsAndTensBySignedRule) {
    EXPECT_TRUE(zek::ifail_digits(11).units == 1 && zek::ifail_digits(11).tens == 1 && zek::ifail_digits(-1).units == 1);
    EXPECT_TRUE(zek::ifail_digits(-21).tens == -2 && zek::ifail_digits(110).tens == 1);
}

// An adaptor of the usual shape and a user function that forgets one of its outputs.
using UserFunction = void(const double *x, double *f, double *jac, const int *ldj);

void sample_adaptor(UserFunction *user, double x, double *f, double *jac, int ldj) {
    zek::mark_vector(1, f);
    zek::mark_matrix(2, ldj, jac);
    user(&x, f, jac, &ldj);
}

void forgetful_user(const double *x, double *f, double *jac, const int *ldj) {
    *f = *x * 2.0;
    jac[0] = 1.0;
    jac[*ldj] = 2.0;  // leaves jac[1] and the padding rows unset
}

TEST(Adaptor, MarksWhatTheUserLeavesUnset) {
    double f = 0.0, jac[6] = {9, 9, 9, 9, 9, 9};
    sample_adaptor(forgetful_user, 1.5, &f, jac, 3);
    EXPECT_TRUE(f == 3.0 && jac[0] == 1.0 && jac[3] == 2.0);
    EXPECT_TRUE(jac[1] == -2139062144.0 && jac[5] == -2139062144.0);
}

} // namespace
