// The updating routines against fresh fits: every sequence of changes to the factorisation must give
// the estimates, standard errors, covariance and residual sum of squares of g02dac on the changed data
// to 1e-12 relative (to the largest element of each result).  Then the constrained estimates and the
// estimability test on a design of deficient rank (the failure exits are rows of the hostile table).
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "zek2/g02.h"
#include "zek2/messages.h"

namespace {

constexpr int kRows = 12, kVars = 4;

double x_at(int i, int j) { return std::sin(1.3 * i + 0.7 * j + 0.4 * i * j) * (j + 1) + 0.1 * i; }
double y_at(int i) { return 2.0 + std::cos(0.9 * i) + 0.3 * i; }
double w_at(int i) { return 0.5 + (i % 3); }

// A fit by g02dac of the rows listed, on the variables of sx, with the mean and optional weights; Q has
// room for one more column.
struct Model {
    int n, ip;
    std::vector<double> b, se, cov, res, h, q, p;
    double rss = 0, df = 0;
    int svd = -1, rank = -1;
    ZekFail fail{};
    Model(const std::vector<int> &rows, const std::vector<int> &sx, bool weighted, double x3 = 0.0) {
        n = static_cast<int>(rows.size());
        ip = 1;
        for (int s : sx) ip += s > 0;
        std::vector<double> x(n * kVars), y(n), wt(n);
        for (int r = 0; r < n; ++r) {
            for (int j = 0; j < kVars; ++j) x[r + j * n] = x_at(rows[r], j);
            if (x3 != 0.0) x[r + 3 * n] = x[r + 1 * n] + x3 * x[r + 2 * n];  // exact dependence
            y[r] = y_at(rows[r]);
            wt[r] = w_at(rows[r]);
        }
        b.resize(ip + 1);
        se.resize(ip + 1);
        cov.resize((ip + 1) * (ip + 2) / 2);
        res.resize(n);
        h.resize(n);
        q.assign(n * (ip + 2), 0.0);
        p.assign(2 * (ip + 1) + (ip + 1) * (ip + 1), 0.0);
        g02dac(Zek_MeanInclude, n, kVars, x.data(), n, sx.data(), ip, y.data(), weighted ? wt.data() : nullptr, &rss, &df,
               b.data(), se.data(), cov.data(), res.data(), h.data(), q.data(), n, &svd, &rank, p.data(), 0.0, nullptr,
               &fail);
    }
    // Estimates from the factorisation after changes, for nobs observations of ip columns.
    void refit(int nobs, int ncol) {
        ip = ncol;
        g02ddc(nobs, ip, q.data(), n, &rss, &df, b.data(), se.data(), cov.data(), &svd, &rank, p.data(), 0.0, &fail);
    }
    void row(int update, int i, const std::vector<int> &sx, bool weighted) {
        std::vector<double> x(kVars);
        for (int j = 0; j < kVars; ++j) x[j] = x_at(i, j);
        const double w = w_at(i);
        g02dcc(update, Zek_MeanInclude, kVars, sx.data(), ip, x.data(), 1, y_at(i), weighted ? &w : nullptr, q.data(), n,
               &rss, &fail);
    }
};

void expect_same(const std::vector<double> &got, const std::vector<double> &want, std::size_t count, const char *what) {
    double scale = 0.0;
    for (std::size_t i = 0; i < count; ++i) scale = std::fmax(scale, std::fabs(want[i]));
    for (std::size_t i = 0; i < count; ++i) EXPECT_NEAR(got[i], want[i], 1e-12 * scale) << what << " " << i;
}

void expect_same_fit(const Model &got, const Model &want) {
    ASSERT_EQ(got.fail.code, 0) << got.fail.message;
    ASSERT_EQ(want.fail.code, 0) << want.fail.message;
    const std::size_t ip = static_cast<std::size_t>(want.ip);
    expect_same(got.b, want.b, ip, "b");
    expect_same(got.se, want.se, ip, "se");
    expect_same(got.cov, want.cov, ip * (ip + 1) / 2, "cov");
    EXPECT_NEAR(got.rss, want.rss, 1e-12 * want.rss);
    EXPECT_EQ(got.df, want.df);
    EXPECT_EQ(got.rank, want.rank);
}

std::vector<int> all_but(std::initializer_list<int> gone) {
    std::vector<int> rows;
    for (int i = 0; i < kRows; ++i)
        if (std::find(gone.begin(), gone.end(), i) == gone.end()) rows.push_back(i);
    return rows;
}

const std::vector<int> kAll = {1, 1, 1, 1};

TEST(RegressionUpdate, ObservationsAddedAndRemovedMatchFreshFits) {
    for (bool weighted : {false, true}) {
        Model grown({0, 1, 2, 3, 4, 5, 6}, kAll, weighted);
        for (int i = 7; i < kRows; ++i) grown.row(Zek_ObservAdd, i, kAll, weighted);
        grown.refit(kRows, 5);
        expect_same_fit(grown, Model(all_but({}), kAll, weighted));

        Model shrunk(all_but({}), kAll, weighted);
        for (int i : {3, 8, 10}) shrunk.row(Zek_ObservDel, i, kAll, weighted);
        shrunk.refit(kRows - 3, 5);
        expect_same_fit(shrunk, Model(all_but({3, 8, 10}), kAll, weighted));
    }
}

TEST(RegressionUpdate, MixedSequenceMatchesAFreshFit) {
    // Weighted: add variable 4, drop observation 2, delete variable 1 (model column 2), add observation 11.
    Model m(all_but({11}), {1, 1, 1, 0}, true);
    std::vector<double> col(kRows - 1), wt(kRows - 1);
    for (int r = 0; r < kRows - 1; ++r) col[r] = x_at(r, 3), wt[r] = w_at(r);
    g02dec(kRows - 1, 4, m.q.data(), kRows - 1, m.p.data(), wt.data(), col.data(), &m.rss, 0.0, &m.fail);
    ASSERT_EQ(m.fail.code, 0) << m.fail.message;
    m.ip = 5;
    m.row(Zek_ObservDel, 2, kAll, true);
    ASSERT_EQ(m.fail.code, 0) << m.fail.message;
    g02dfc(5, m.q.data(), kRows - 1, 2, &m.rss, &m.fail);
    ASSERT_EQ(m.fail.code, 0) << m.fail.message;
    m.ip = 4;
    m.row(Zek_ObservAdd, 11, {0, 1, 1, 1}, true);
    m.refit(kRows - 1, 4);
    expect_same_fit(m, Model(all_but({2}), {0, 1, 1, 1}, true));
}

TEST(RegressionUpdate, ConstraintsAndEstimabilityOnADeficientDesign) {
    // Variable 4 = variable 2 + 0.5 variable 3: rank 4 of 5.  The constraint b5 = 0 gives the fit without
    // variable 4; the functions along the design's rows are estimable, e5 alone is not.
    Model deficient(all_but({}), kAll, false, 0.5);
    ASSERT_EQ(deficient.fail.code, 0) << deficient.fail.message;
    ASSERT_EQ(deficient.svd, 1);
    ASSERT_EQ(deficient.rank, 4);
    const Model reduced(all_but({}), {1, 1, 1, 0}, false);
    const std::vector<double> c = {0, 0, 0, 0, 1};
    ZekFail fail{};
    g02dkc(5, 1, deficient.p.data(), c.data(), 5, deficient.b.data(), deficient.rss, deficient.df, deficient.se.data(),
           deficient.cov.data(), &fail);
    ASSERT_EQ(fail.code, 0) << fail.message;
    for (int k = 0; k < 4; ++k) {
        EXPECT_NEAR(deficient.b[k], reduced.b[k], 1e-10 * std::fabs(reduced.b[k])) << k;
        EXPECT_NEAR(deficient.se[k], reduced.se[k], 1e-10 * reduced.se[k]) << k;
    }
    EXPECT_NEAR(deficient.b[4], 0.0, 1e-12);
    EXPECT_NEAR(deficient.se[4], 0.0, 1e-12);

    struct Case { std::vector<double> f; int est; };
    const double fitted = reduced.b[0] + reduced.b[1] * x_at(5, 0) + reduced.b[2] * x_at(5, 1) + reduced.b[3] * x_at(5, 2);
    const std::vector<Case> cases = {
        {{1, x_at(5, 0), x_at(5, 1), x_at(5, 2), x_at(5, 1) + 0.5 * x_at(5, 2)}, 1},
        {{0, 0, 0, 0, 1}, 0},
        {{0, 0, 1, 0.5, -1}, 0},
    };
    for (const Case &k : cases) {
        int est = -1;
        double stat = -1, sestat = -1, t = -1;
        g02dnc(5, 4, deficient.b.data(), deficient.cov.data(), deficient.p.data(), k.f.data(), &est, &stat, &sestat, &t,
               0.0, &fail);
        ASSERT_EQ(fail.code, 0) << fail.message;
        EXPECT_EQ(est, k.est);
        if (k.est == 1) {
            EXPECT_NEAR(stat, fitted, 1e-11 * std::fabs(fitted));
            EXPECT_NEAR(t, stat / sestat, 1e-15 * std::fabs(t));
        } else {
            EXPECT_EQ(stat, 0.0);
        }
    }
}

} // namespace
