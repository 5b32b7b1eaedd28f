// Reference: the one-dimensional integrator against GSL's adaptive integration with extrapolation, the
// same published strategy, on a battery of singular, oscillatory and peaked integrands.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>

#include "zek2/d01.h"

#if defined(ZEK_HAVE_GSL)
#include <gsl/gsl_errno.h>
#include <gsl/gsl_integration.h>

namespace {

struct Family { const char *label; double (*f)(double, double); double a, b; double params[4]; };

double x_pow_log(double x, double p) { return x > 0 ? std::pow(x, p) * std::log(1 / x) : 0.0; }
double peak(double x, double p) {
    const double w = std::pow(4.0, -p);
    return w / ((x - M_PI / 4) * (x - M_PI / 4) + w * w);
}
double cos_sin(double x, double p) { return std::cos(std::pow(2.0, p) * std::sin(x)); }
double abs_pow(double x, double p) { return std::pow(std::fabs(x - 1.0 / 3), p); }
double step_exp(double x, double p) { return x < p ? std::exp(x) : 0.0; }
double osc(double x, double p) { return std::sin(p * x) * std::exp(-x); }

const Family kFamilies[] = {
    {"x_pow_log", x_pow_log, 0, 1, {-0.9, -0.5, 0.5, 2.0}},
    {"peak", peak, 0, 1, {0, 2, 4, 8}},
    {"cos_sin", cos_sin, 0, M_PI, {0, 2, 4, 6}},
    {"abs_pow", abs_pow, 0, 1, {-0.8, -0.5, 0.5, 1.5}},
    {"step_exp", step_exp, 0, 1, {0.1, 0.3, 0.5, 0.77}},
    {"osc", osc, 0, 10, {1, 10, 30, 60}},
};

struct Bound { double (*f)(double, double); double p; };
double zek_f(double x, void *u) {
    const Bound *b = static_cast<const Bound *>(u);
    return b->f(x, b->p);
}
double gsl_f(double x, void *u) { return zek_f(x, u); }

TEST(QuadratureReference, SameResultsAndCountsAsGsl) {
    gsl_set_error_handler_off();
    gsl_integration_workspace *ws = gsl_integration_workspace_alloc(200);
    int cases = 0, same_count = 0;
    for (const Family &fam : kFamilies) {
        for (double p : fam.params) {
            for (double epsrel : {1e-6, 1e-10}) {
                Bound bound{fam.f, p};
                gsl_function g{gsl_f, &bound};
                double gr = 0, ge = 0;
                const int status = gsl_integration_qags(&g, fam.a, fam.b, 0.0, epsrel, 200, ws, &gr, &ge);
                const int gsl_count = static_cast<int>(42 * ws->size - 21);
                double zr = 0, ze = 0;
                ZekQuadProgress qp{};
                ZekFail fail{};
                d01sjc(zek_f, fam.a, fam.b, 0.0, epsrel, 200, &zr, &ze, &qp, &bound, &fail);
                ++cases;
                same_count += qp.fun_count == gsl_count;
                EXPECT_LE(qp.fun_count, 2 * gsl_count + 42) << fam.label << " " << p;
                if (status == 0 && fail.code == 0) {
                    EXPECT_NEAR(zr, gr, 2 * std::max(ze, ge) + 1e-15 * std::fabs(gr)) << fam.label << " " << p;
                }
                for (double *q : {qp.sub_int_beg_pts, qp.sub_int_end_pts, qp.sub_int_error, qp.sub_int_result}) free(q);
            }
        }
    }
    gsl_integration_workspace_free(ws);
    EXPECT_GE(same_count * 10, cases * 8) << same_count << " of " << cases;
    std::printf("same evaluation count as GSL on %d of %d cases\n", same_count, cases);
}

} // namespace
#endif
