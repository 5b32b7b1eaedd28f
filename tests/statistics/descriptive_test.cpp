// Descriptive statistics and correlation: Longley's data against reference correlations (computed with
// SciPy, labelled reference below: numpy.corrcoef, scipy.stats.spearmanr and kendalltau, the latter two
// the tie-corrected forms), Kendall's merge count against the quadratic count, one-pass updates on data
// with a large common offset, the Durbin-Watson bounds against the published 5% table and closed forms,
// and the failure exits.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "statistics/descriptive.h"
#include "support.h"
#include "zek2/g01.h"
#include "zek2/messages.h"

namespace {

// Reference (SciPy 1.10): upper triangles by rows, pairs (0,1), (0,2), ..., (5,6).
const double kPearson[] = {0.970898525061056, 0.9835516111796694, 0.5024980838759942, 0.45730739997648173,
                           0.9603905715943756, 0.9713294591921188, 0.9915891780247823, 0.6206333925590964,
                           0.46474418760067454, 0.9791634329774979, 0.9911491900672053, 0.6042609398895579,
                           0.44643679189262647, 0.9910900694584778, 0.9952734837647846, -0.17742062950187834,
                           0.6865515163653121, 0.6682566045621746, 0.364416267189032, 0.41724514983494543,
                           0.9939528462329257};
const double kSpearman[] = {0.9823529411764707, 0.9852941176470588, 0.5647058823529412, 0.22647058823529412,
                            0.976470588235294, 0.976470588235294, 0.9970588235294118, 0.6647058823529411,
                            0.22058823529411767, 0.9970588235294118, 0.9970588235294118, 0.6382352941176471,
                            0.22352941176470587, 0.9941176470588234, 0.9941176470588234, -0.3411764705882353,
                            0.6852941176470588, 0.6852941176470588, 0.22647058823529412, 0.22647058823529412, 1.0};
const double kKendall[] = {0.9166666666666666, 0.9333333333333332, 0.3666666666666667, 0.049999999999999996, 0.9, 0.9,
                           0.9833333333333333, 0.45, 0.03333333333333333, 0.9833333333333333, 0.9833333333333333,
                           0.43333333333333335, 0.049999999999999996, 0.9666666666666667, 0.9666666666666667,
                           -0.21666666666666667, 0.4666666666666666, 0.4666666666666666, 0.049999999999999996,
                           0.049999999999999996, 1.0};

TEST(Correlation, LongleyPearsonSpearmanKendallAgreeWithReference) {
    // Longley: 16 observations of y and x1..x6, the columns in file order.
    std::vector<double> x, y;
    ASSERT_TRUE(read_strd("longley.dat", 6, x, y));
    x.insert(x.begin(), y.begin(), y.end());
    int n = static_cast<int>(y.size()), m = 7;
    std::vector<double> xbar(m), sd(m), v(m * m), r(m * m), corr(m * m);
    int ifail = 1;
    G02BXF("U", &n, &m, x.data(), &n, nullptr, xbar.data(), sd.data(), v.data(), &m, r.data(), &m, &ifail, 1);
    ASSERT_EQ(ifail, 0);
    ZekFail fail{};
    g02brc(n, m, x.data(), n, nullptr, nullptr, corr.data(), m, &fail);
    ASSERT_EQ(fail.code, 0) << fail.message;
    int k = 0;
    for (int i = 0; i < m; ++i) {
        EXPECT_EQ(r[i + i * m], 1.0);
        for (int j = i + 1; j < m; ++j, ++k) {
            EXPECT_NEAR(r[i + j * m], kPearson[k], 2e-15) << i << ", " << j;
            EXPECT_EQ(r[i + j * m], r[j + i * m]);
            EXPECT_NEAR(corr[i + j * m], kKendall[k], 1e-15) << i << ", " << j;
            EXPECT_NEAR(corr[j + i * m], kSpearman[k], 1e-15) << i << ", " << j;
            EXPECT_NEAR(v[i + j * m], r[i + j * m] * sd[i] * sd[j], 1e-13 * std::fabs(v[i + j * m]));
        }
    }
    EXPECT_NEAR(sd[0], 3511.968355969816, 1e-11);
    EXPECT_NEAR(sd[2], 99394.93779528797, 1e-9);
}

TEST(Correlation, RankCorrelationsAverageTiesAndHonourSelections) {
    // Reference (SciPy): tau-b 0.6531972647421809, rho 0.7938120189866947 for the first two columns over
    // the first eight rows; row 9 and column 3 are deselected and would spoil both if used.
    const int n = 9, m = 3;
    const std::vector<double> x = {1, 2, 2, 3, 3, 3, 4, 5, 100, 2, 1, 2, 3, 5, 3, 4, 4, -100, 9, 9, 9, 9, 9, 9, 9, 9, 9};
    const int svar[] = {1, 1, 0}, sobs[] = {1, 1, 1, 1, 1, 1, 1, 1, 0};
    double corr[4] = {};
    ZekFail fail{};
    g02brc(n, m, x.data(), n, svar, sobs, corr, 2, &fail);
    ASSERT_EQ(fail.code, 0) << fail.message;
    EXPECT_NEAR(corr[2], 0.6531972647421809, 1e-15);
    EXPECT_NEAR(corr[1], 0.7938120189866947, 1e-15);
}

TEST(Correlation, KendallMergeCountEqualsThePairCount) {
    // Heavy ties (values from 0..6) at sizes that exercise odd merge widths.
    unsigned state = 7;
    const auto next = [&state] { return (state = state * 1103515245u + 12345u) >> 16; };
    for (int n : {2, 3, 17, 64, 301}) {
        std::vector<double> x(2 * n);
        for (double &v : x) v = static_cast<double>(next() % 7);
        long c = 0, d = 0, tx = 0, ty = 0;
        for (int i = 0; i < n; ++i)
            for (int j = i + 1; j < n; ++j) {
                const double s = (x[i] - x[j]) * (x[n + i] - x[n + j]);
                c += s > 0;
                d += s < 0;
                tx += x[i] == x[j];
                ty += x[n + i] == x[n + j];
            }
        const double n0 = n * (n - 1) / 2.0;
        const double tau = (c - d) / std::sqrt((n0 - tx) * (n0 - ty));
        double corr[4] = {};
        ZekFail fail{};
        g02brc(n, 2, x.data(), n, nullptr, nullptr, corr, 2, &fail);
        if (tx == n0 || ty == n0) {
            EXPECT_EQ(fail.code, ZE_VAR_EQ_ZERO);
            continue;
        }
        ASSERT_EQ(fail.code, 0) << n;
        EXPECT_NEAR(corr[2], tau, 1e-14) << n;
    }
}

TEST(Correlation, OnePassUpdatesKeepTheirDigitsUnderALargeOffset) {
    // x_i = 1e9 + small_i: the sums about the mean are those of the small parts, known to rounding.  The
    // C-style twin follows the same stream and must agree to the bit.
    const double small[][2] = {{0.5, 3.0}, {1.5, 1.0}, {-2.0, 4.0}, {0.25, -1.0}, {3.0, 2.5}, {-1.0, 0.5}};
    const int m = 2, inc = 1;
    double sw = 0.0, xbar[2] = {}, c[3] = {}, sw0 = 0.0, xbar0[2] = {}, c0[3] = {};
    double swc = 0.0, xbarc[2] = {}, cc[3] = {};
    int ifail = 0;
    const auto add = [&](double w, const double x[2], const double s[2]) {
        ZekFail fail{};
        G02BTF("M", &m, &w, x, &inc, &sw, xbar, c, &ifail, 1);
        ASSERT_EQ(ifail, 0);
        G02BTF("M", &m, &w, s, &inc, &sw0, xbar0, c0, &ifail, 1);
        g02btc(Zek_MeanInclude, m, w, x, 1, &swc, xbarc, cc, &fail);
        ASSERT_EQ(fail.code, 0);
        EXPECT_TRUE(sw == swc && std::equal(xbar, xbar + 2, xbarc) && std::equal(c, c + 3, cc));
    };
    for (const auto &s : small) {
        const double x[2] = {1e9 + s[0], -1e9 + s[1]};
        add(1.0, x, s);
    }
    for (int k = 0; k < 3; ++k) EXPECT_NEAR(c[k], c0[k], 1e-15 * 1e9 * std::fabs(c0[k])) << k;
    EXPECT_NEAR(c[0], 15.71875, 1e-6);
    EXPECT_NEAR(xbar[0] - 1e9, xbar0[0], 1e-6);
    // Removal by a negative weight restores the sums of the other five, known from the small parts.
    const double last[2] = {1e9 - 1.0, -1e9 + 0.5};
    add(-1.0, last, small[5]);
    EXPECT_EQ(sw, 5.0);
    for (int k = 0; k < 3; ++k) EXPECT_NEAR(c[k], c0[k], 1e-6 * (1.0 + std::fabs(c0[k]))) << k;
}

TEST(Correlation, WeightedSumsAboutMeanAndZeroMatchRepeatedRows) {
    // Integer weights are frequencies: the weighted sums equal those of the rows repeated.
    const std::vector<double> x = {1, 4, 2, 8, 3, -1, 5, 0}, wt = {2, 1, 0, 4}, rep = {1, 1, 4, 8, 8, 8, 8, 3, 3, -1, 0, 0, 0, 0};
    for (const int mean : {Zek_MeanInclude, Zek_MeanZero}) {
        double sw = 0, swr = 0, wm[2], wmr[2], c[3], cr[3];
        ZekFail f1{}, f2{};
        g02buc(mean, 4, 2, x.data(), 4, wt.data(), &sw, wm, c, &f1);
        g02buc(mean, 7, 2, rep.data(), 7, nullptr, &swr, wmr, cr, &f2);
        ASSERT_EQ(f1.code + f2.code, 0);
        EXPECT_EQ(sw, 7.0);
        for (int k = 0; k < 3; ++k) EXPECT_NEAR(c[k], cr[k], 1e-13) << mean << k;
        EXPECT_NEAR(wm[1], wmr[1], 1e-14);
    }
}

TEST(Summary, MomentsAgreeWithReferenceWithAndWithoutWeights) {
    // Reference (SciPy): sample sd (ddof 1), skew and excess kurtosis of population moments; the weighted
    // case equals the unweighted one of the rows repeated by their weights.
    const std::vector<double> x = {2.1, 3.7, 3.7, 5.0, 9.4, 1.2, 6.6}, wt = {1, 2, 0, 1, 3, 1, 0};
    struct Case { int iwt; double mean, sd, skew, kurt, wsum; int valid; } cases[] = {
                 {0, 4.528571428571428, 2.7867031212015188, 0.6010688113489975, -0.6137313282050472, 7.0, 7},
                 {1, 5.4875, 3.4311337151776193, 0.19073188781869851, -1.5945948356842916, 8.0, 5}};
    for (const Case &c : cases) {
        const int n = 7;
        int iwt = c.iwt, ifail = 1;
        double mean, sd, skew, kurt, lo, hi, ws;
        G01AAF(&n, x.data(), &iwt, wt.data(), &mean, &sd, &skew, &kurt, &lo, &hi, &ws, &ifail);
        ASSERT_EQ(ifail, 0);
        EXPECT_NEAR(mean, c.mean, 1e-15 * 8);
        EXPECT_NEAR(sd, c.sd, 1e-14);
        EXPECT_NEAR(skew, c.skew, 1e-14);
        EXPECT_NEAR(kurt, c.kurt, 1e-14);
        EXPECT_EQ(ws, c.wsum);
        EXPECT_EQ(iwt, c.valid);
        EXPECT_EQ(lo, 1.2);
        EXPECT_EQ(hi, 9.4);
    }
}

TEST(FrequencyTable, ComputedAndUserBoundariesCountEveryValueOnce) {
    const std::vector<double> x = {0.0, 1.0, 2.0, 2.5, 3.0, 4.0, 4.0, 10.0};
    const int n = 8, nclass = 4;
    double cint[3], lo, hi;
    int freq[4], ifail = 1, iclass = 0;
    G01AEF(&n, &nclass, x.data(), &iclass, cint, freq, &lo, &hi, &ifail);
    ASSERT_EQ(ifail, 0);
    EXPECT_EQ(cint[0], 2.5);
    EXPECT_EQ(cint[2], 7.5);
    EXPECT_EQ(std::vector<int>(freq, freq + 4), (std::vector<int>{3, 4, 0, 1}));
    // A value on a boundary belongs to the class above it.
    ZekFail fail{};
    double user[3] = {1.0, 3.0, 4.0};
    g01aec(n, nclass, Zek_ClassBoundaryUser, x.data(), user, freq, &lo, &hi, &fail);
    ASSERT_EQ(fail.code, 0);
    EXPECT_EQ(std::vector<int>(freq, freq + 4), (std::vector<int>{1, 3, 1, 3}));
}

// Residuals (1, t, 0, ..., 0) whose statistic ((t - 1)^2 + t^2) / (1 + t^2) is D.
std::vector<double> residuals_with_statistic(double d, int n) {
    std::vector<double> r(n, 0.0);
    r[0] = 1.0;
    r[1] = (1.0 + std::sqrt(1.0 - (2.0 - d) * (1.0 - d))) / (2.0 - d);
    return r;
}

TEST(DurbinWatson, BoundsMatchTheFivePercentTableAndClosedForms) {
    // Published 5% points for n = 15 with one regressor and the mean: d_L = 1.08, d_U = 1.36 (two
    // decimals).  Reference (SciPy quad over Imhof's integrand, tolerance 1e-13).  For n - ip = 2 the
    // form c1 u1^2 + c2 u2^2 <= 0 is |Cauchy| <= sqrt(-c1/c2): (2/pi) atan of it.
    const double pi = 3.14159265358979323846;
    const auto lambda = [pi](int j, int n) { return 4.0 * std::pow(std::sin(pi * j / (2.0 * n)), 2); };
    const double two = 1.3;
    struct Case { int n, ip; double d, pdl, pdu; } cases[] = {
        {15, 2, 1.08, 0.05075246151477614, 0.010670611983010558},
        {15, 2, 1.36, 0.1577789652858369, 0.049875107960067167},
        {30, 4, 1.5, 0.21813514380561994, 0.01840937216091787},
        {4, 2, two, 2 / pi * std::atan(std::sqrt((two - lambda(1, 4)) / (lambda(2, 4) - two))),
         0.0},  // the upper form has lambda_2, lambda_3 > d
        {3, 2, two, 0.0, 0.0},  // one term: d_L = lambda_1 = 1 < 1.3 and d_U = lambda_2 = 3
    };
    cases[4].pdl = 1.0;
    for (const Case &c : cases) {
        const std::vector<double> res = residuals_with_statistic(c.d, c.n);
        std::vector<double> work(c.n);
        double d = 0, pdl = -1, pdu = -1, dc = 0, pdlc = 0, pduc = 0;
        int ifail = 1;
        ZekFail fail{};
        G02FCF(&c.n, &c.ip, res.data(), &d, &pdl, &pdu, work.data(), &ifail);
        ASSERT_EQ(ifail, 0) << c.n;
        EXPECT_NEAR(d, c.d, 1e-15) << c.n;
        EXPECT_NEAR(pdl, c.pdl, 1e-9) << c.n << " " << c.d;
        EXPECT_NEAR(pdu, c.pdu, 1e-9) << c.n << " " << c.d;
        g02fcc(c.n, c.ip, res.data(), &dc, &pdlc, &pduc, &fail);  // the C-style twin, to the bit
        EXPECT_TRUE(fail.code == 0 && d == dc && pdl == pdlc && pdu == pduc) << c.n;
    }
}

TEST(Descriptive, CStyleUpdateAndDurbinWatsonFailuresChangeNothing) {
    const double obs[3] = {1e8 + 1, 2, -3}, nan3[3] = {1, NAN, 2}, zeros[4] = {};
    const std::vector<double> res = {0.5, -1.0, 0.25, 2.0, -0.75, 1.5, -0.5, 0.1};
    struct Row { const char *what; std::function<void(ZekFail *)> call; int code; };
    double keep = 5.0, out[3] = {-1, -1, -1};
    const Row rows[] = {
        {"update mean", [&](ZekFail *f) { g02btc(0, 3, 1.0, obs, 1, &keep, out, out, f); }, ZE_BAD_PARAM},
        {"update sw nan", [&](ZekFail *f) { double s = NAN; g02btc(Zek_MeanZero, 3, 1.0, obs, 1, &s, out, out, f); }, ZE_REAL_ARG_LT},
        {"update removes too much", [&](ZekFail *f) { g02btc(Zek_MeanInclude, 3, -6.0, obs, 1, &keep, out, out, f); }, ZE_REAL_ARG_CONS},
        {"update x nan", [&](ZekFail *f) { g02btc(Zek_MeanInclude, 3, 1.0, nan3, 1, &keep, out, out, f); }, ZE_BAD_PARAM},
        {"dw n", [&](ZekFail *f) { g02fcc(4, 4, res.data(), out, out, out, f); }, ZE_2_INT_ARG_LE},
        {"dw nan", [&](ZekFail *f) { g02fcc(3, 1, nan3, out, out, out, f); }, ZE_BAD_PARAM},
        {"dw zero", [&](ZekFail *f) { g02fcc(4, 1, zeros, out, out, out, f); }, ZW_RSS_EQ_ZERO},
    };
    for (const Row &r : rows) {
        ZekFail f{};
        r.call(&f);
        EXPECT_EQ(f.code, r.code) << r.what << ": " << f.message;
        EXPECT_EQ(keep, 5.0) << r.what;
        EXPECT_EQ(out[0], -1.0) << r.what;
    }
}

// One failure exit: the worker's IFAIL and ERRBUF line.
struct ExitCase { const char *what; std::function<void(char *, int *)> call; int ifail; const char *errbuf; };

TEST(DescriptiveFailures, ExitsReportTheirNumberAndValues) {
    const double x[] = {1, 2, 3, 4}, same[] = {2, 2, 2, 2}, bad[] = {1, NAN, 3, 4}, negw[] = {1, -1, 1, 1};
    double o[32] = {}, cint[4] = {3, 2, 1, 0}, sw = 0;
    int freq[4], iwt = 1;
    zek::Summary s{};
    const ExitCase cases[] = {
        {"G01AEF n", [&](char *e, int *f) { zek::g01aef_worker(0, 3, x, 0, cint, freq, o, o, e, f); }, 1, "G01AEF     1 99999     1                0"},
        {"G01AEF cint", [&](char *e, int *f) { zek::g01aef_worker(4, 3, x, 1, cint, freq, o, o, e, f); }, 2, "G01AEF     2 99996     2                2   2.00000000e+00"},
        {"G01AEF equal", [&](char *e, int *f) { zek::g01aef_worker(4, 3, same, 0, o, freq, o, o, e, f); }, 4, "G01AEF     4 99994     0"},
        {"G01AAF weight", [&](char *e, int *f) { zek::g01aaf_worker(4, x, &iwt, negw, &s, e, f); }, 2, "G01AAF     2 99997     1                2"},
        {"G01AAF x", [&](char *e, int *f) { int w = 0; zek::g01aaf_worker(4, bad, &w, nullptr, &s, e, f); }, 2, "G01AAF     2 99996     1                2"},
        {"G02BUF mean", [&](char *e, int *f) { zek::g02buf_worker('Q', 'U', 4, 1, x, 4, nullptr, &sw, o, o, e, f); }, 1, "G02BUF     1 99996     1 Q"},
        {"G02BUF zero", [&](char *e, int *f) { const double z[4] = {}; zek::g02buf_worker('M', 'W', 4, 1, x, 4, z, &sw, o, o, e, f); }, 3, "G02BUF     3 99993     0"},
        {"G02BXF ldr", [&](char *e, int *f) { zek::g02bxf_worker('U', 2, 2, x, 2, nullptr, o, o, o, 2, o, 1, e, f); }, 1, "G02BXF     1 99995     2                1                2"},
        {"G02BXF constant", [&](char *e, int *f) { const double d[] = {1, 2, 5, 5}; zek::g02bxf_worker('U', 2, 2, d, 2, nullptr, o, o, o + 4, 2, o + 8, 2, e, f); }, 5, "G02BXF     5 99989     1                2"},
        {"G02BTF remove", [&](char *e, int *f) { double w = 1.0; zek::g02btf_worker('M', 1, -2.0, x, 1, &w, o, o, e, f); }, 3, "G02BTF     3 99995     2  -2.00000000e+00   1.00000000e+00"},
        {"G02FCF n", [&](char *e, int *f) { zek::g02fcf_worker(2, 2, x, o, o, o, o, e, f); }, 1, "G02FCF     1 99998     2                2                2"},
        {"G02FCF zero", [&](char *e, int *f) { const double z[4] = {}; zek::g02fcf_worker(4, 1, z, o, o, o, o + 4, e, f); }, 3, "G02FCF     3 99996     0"},
    };
    for (const ExitCase &c : cases) {
        char errbuf[200];
        int ifail = 1;
        c.call(errbuf, &ifail);
        EXPECT_EQ(ifail, c.ifail) << c.what;
        EXPECT_EQ(std::string(errbuf), c.errbuf) << c.what;
    }
}

} // namespace
