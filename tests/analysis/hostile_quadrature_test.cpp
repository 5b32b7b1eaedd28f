// Hostile input to the integrators: bad sizes and tolerances, non-finite limits and integrands, budgets
// one short.  Every row ends in its code or IFAIL, with its text, in bounded time.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "fft_test_support.h"
#include "zek2/d01.h"
#include "zek2/messages.h"

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInf = std::numeric_limits<double>::infinity();

double smooth(double x, void *) { return std::exp(x); }
double oscillating(double x, void *) { return std::sin(1000 * x); }
double nan_mid(double x, void *) { return x > 0.4 && x < 0.6 ? kNaN : 1.0; }
double inf_at(double x, void *) { return x > 0.2 ? 1.0 : kInf; }
double box_smooth(int, const double x[], void *) { return std::cos(x[0]) + x[1]; }
double box_nan(int, const double x[], void *) { return x[0] > 0.3 ? kNaN : 1.0; }

struct OneDimRow { const char *label; ZekQuadFunction f; double a, b, epsabs, epsrel; int limit, code; };

const OneDimRow kOneDim[] = {
    {"limit_zero", smooth, 0, 1, 1e-8, 1e-8, 0, ZE_INT_ARG_LT},
    {"limit_reached", oscillating, 0, 1, 0, 1e-12, 3, ZE_QUAD_MAX_SUBDIV},
    {"a_nan", smooth, kNaN, 1, 1e-8, 1e-8, 10, ZE_REAL},
    {"b_inf", smooth, 0, kInf, 1e-8, 1e-8, 10, ZE_REAL},
    {"epsabs_nan", smooth, 0, 1, kNaN, 1e-8, 10, ZE_REAL},
    {"tolerances_zero", smooth, 0, 1, 0, 0, 10, ZE_REAL},
    {"integrand_nan", nan_mid, 0, 1, 1e-10, 1e-10, 50, ZE_QUAD_BAD_SUBDIV},
    {"integrand_inf", inf_at, 0, 1, 1e-10, 1e-10, 50, ZE_QUAD_BAD_SUBDIV},
    {"empty_interval", smooth, 0.5, 0.5, 0, 1e-8, 10, 0},
};

class HostileOneDimension : public ::testing::TestWithParam<OneDimRow> {};

TEST_P(HostileOneDimension, CodeAndNoNaNOnSuccess) {
    const OneDimRow &r = GetParam();
    double result = 7, abserr = 7;
    ZekQuadProgress qp{};
    ZekFail fail{};
    d01sjc(r.f, r.a, r.b, r.epsabs, r.epsrel, r.limit, &result, &abserr, &qp, nullptr, &fail);
    EXPECT_EQ(fail.code, r.code) << fail.message;
    EXPECT_TRUE(r.code == ZE_QUAD_BAD_SUBDIV ? std::isnan(result) : std::isfinite(result) || r.code != 0);
    for (double *p : {qp.sub_int_beg_pts, qp.sub_int_end_pts, qp.sub_int_error, qp.sub_int_result}) std::free(p);
}

INSTANTIATE_TEST_SUITE_P(Rows, HostileOneDimension, ::testing::ValuesIn(kOneDim),
                         [](const ::testing::TestParamInfo<OneDimRow> &i) { return std::string(i.param.label); });

struct BoxRow {
    const char *label;
    int ndim, minpts, maxpts;
    double eps, bound;
    ZekMultiFunction f;
    int code;
    const char *message;
};

const BoxRow kBox[] = {
    {"minpts_above_maxpts", 2, 500, 400, 1e-6, 1, box_smooth, ZE_2_INT_ARG_GT, "ZE_2_INT_ARG_GT:\n  On entry, minpts = 500 while maxpts = 400. These parameters must satisfy minpts <= maxpts."},
    // 2^2 + 8 + 4 + 1 = 17: one short fails before any evaluation.
    {"maxpts_one_short", 2, 0, 16, 1e-6, 1, box_nan, ZE_INT_ARG_CONS, "ZE_INT_ARG_CONS:\n  On entry, maxpts = 16. \n  This parameter must satisfy maxpts >= pow(2, ndim) + 2*ndim*ndim + 2*ndim + 1."},
    {"maxpts_exact", 2, 0, 17, 0.5, 1, box_smooth, 0, nullptr},
    {"eps_negative", 2, 0, 1000, -1e-6, 1, box_smooth, ZE_REAL_ARG_LT, nullptr},
    {"bound_inf", 2, 0, 1000, 1e-6, kInf, box_smooth, ZE_REAL, nullptr},
    {"integrand_nan", 2, 0, 100000, 1e-6, 1, box_nan, ZE_QUAD_BAD_SUBDIV, nullptr},
    {"eps_zero_budget", 3, 0, 5000, 0.0, 1, box_smooth, ZE_QUAD_MAX_INTEGRAND_EVAL, nullptr},
    {"maxpts_int_max_smooth", 2, 0, 2147483647, 1e-6, 1, box_smooth, 0, nullptr},
};

class HostileBox : public ::testing::TestWithParam<BoxRow> {};

TEST_P(HostileBox, CodeInBoundedTime) {
    const BoxRow &r = GetParam();
    std::vector<double> a(16, 0.0), b(16, 1.0);
    b[1] = r.bound;
    int minpts = r.minpts;
    double finest = 3, acc = 3;
    ZekFail fail{};
    d01wcc(r.ndim, r.f, a.data(), b.data(), &minpts, r.maxpts, r.eps, &finest, &acc, nullptr, &fail);
    EXPECT_EQ(fail.code, r.code) << fail.message;
    EXPECT_STREQ(r.message ? fail.message : "", r.message ? r.message : "");
    // A result (or the best found) within the budget, else a NaN for a bad integrand, else untouched.
    const bool result = r.code == 0 || r.code == ZE_QUAD_MAX_INTEGRAND_EVAL;
    EXPECT_TRUE(result ? std::isfinite(finest) && minpts <= r.maxpts
                       : r.code == ZE_QUAD_BAD_SUBDIV ? std::isnan(finest) : finest == 3);
}

INSTANTIATE_TEST_SUITE_P(Rows, HostileBox, ::testing::ValuesIn(kBox),
                         [](const ::testing::TestParamInfo<BoxRow> &i) { return std::string(i.param.label); });

// ---- IFAIL layer: exact records and ERRBUF lines ----

int g_calls = 0;
double counted(const int *, const double[], int[], double[]) {
    ++g_calls;
    return 1.0;
}
double nan_ball(const int *, const double x[], int[], double[]) { return x[0] > 0.5 ? kNaN : 1.0; }

struct IfailRow {
    const char *label;
    std::function<void(char *errbuf, int *ifail)> call;
    int ierror;
    const char *errbuf;
    const char *message;
};

void ball(int ndim, double radius, int method, int icoord, double eps, char *e, int *f, ZekD01Function fn = counted) {
    double result, esterr;
    int nevals;
    D01JAF_WORKER(fn, ndim, radius, eps, eps, method, icoord, &result, &esterr, &nevals, nullptr, nullptr, e, f, 200);
}

void simplex(int ndim, int iv1, int iv2, int minord, int maxord, const std::vector<double> &rows, char *e, int *f) {
    std::vector<double> vert(static_cast<std::size_t>(iv1 > 0 ? iv1 : 1) * (iv2 > 0 ? iv2 : 1) + 64, 0.0);
    for (std::size_t i = 0; i < rows.size(); ++i) vert[i] = rows[i];
    std::vector<double> finvls(16), esterr(16);
    D01PAF_WORKER(ndim, vert.data(), iv1, iv2, counted, &minord, maxord, finvls.data(), esterr.data(), nullptr, nullptr,
                  e, f, 200);
}

const IfailRow kIfail[] = {
    {"ball_ndim_5", [](char *e, int *f) { ball(5, 1, 0, 0, 1e-3, e, f); }, 4, "D01JAF     4 99999     1                5", " ** On entry, NDIM .gt. 4: NDIM =               5."},
    {"ball_method0_icoord2", [](char *e, int *f) { ball(2, 1, 0, 2, 1e-3, e, f); }, 4, "D01JAF     4 99991     1                0", " ** On entry, METHOD .ne. 3 or 4, but ICOORD .eq. 2:\n    METHOD =               0."},
    {"ball_nan_integrand", [](char *e, int *f) { ball(3, 1, 0, 0, 1e-3, e, f, nan_ball); }, 1, "D01JAF     1 99989     0", " ** The required accuracy could not be achieved.\n    Try setting METHOD .eq. 3 or 4."},
    {"simplex_iv2_one_short", [](char *e, int *f) { simplex(2, 3, 5, 0, 2, {}, e, f); }, 1, "D01PAF     1 99997     2                5                2", " ** On entry, IV2 .lt. 2*NDIM+2:\n    IV2 =               5, NDIM =               2."},
    {"simplex_maxord", [](char *e, int *f) { simplex(2, 3, 6, 2, 2, {}, e, f); }, 1, "D01PAF     1 99995     2                2                2", " ** On entry, MAXORD .le. MINORD:\n    MAXORD =               2, MINORD =               2."},
    // Three vertices on one line.
    {"simplex_flat", [](char *e, int *f) { simplex(2, 3, 6, 0, 3, {0, 1, 2, 0, 1, 2}, e, f); }, 2, "D01PAF     2 99994     0", " ** The volume of the simplex integration region is too\n    large or too small to be represented on the machine."},
    // A resumed ladder whose count of evaluations is close to the largest integer.
    {"simplex_count_overflow", [](char *e, int *f) { std::vector<double> rows(18, 0.0); rows[15] = 0.5; rows[16] = 2147483000.0; simplex(2, 3, 6, 1, 60, rows, e, f); }, 3, "D01PAF     3 99993     1", nullptr},
};

class HostileIfail : public ::testing::TestWithParam<IfailRow> {};

TEST_P(HostileIfail, RecordsAndErrbuf) {
    const IfailRow &r = GetParam();
    char errbuf[200];
    int ifail = -13;
    g_calls = 0;
    const std::string text = fft_test::host_text([&] { r.call(errbuf, &ifail); });
    EXPECT_EQ(ifail, r.ierror);
    EXPECT_EQ(std::string(errbuf).substr(0, std::string(r.errbuf).size()), r.errbuf);
    if (r.message) {
        EXPECT_EQ(text, r.message);
    }
    // Argument exits, and a flat simplex, end before any evaluation.
    if (r.ierror == 4 || (std::string(r.label).rfind("simplex_", 0) == 0 && r.ierror != 3)) {
        EXPECT_EQ(g_calls, 0);
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, HostileIfail, ::testing::ValuesIn(kIfail),
                         [](const ::testing::TestParamInfo<IfailRow> &i) { return std::string(i.param.label); });

} // namespace
