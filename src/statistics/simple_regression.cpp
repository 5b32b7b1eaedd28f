// Simple linear regression of y on one variable x, with or without a constant term.
#include <cmath>
#include <cstddef>

#include "frame/raise.h"
#include "zek2/g01.h"
#include "zek2/g02.h"

namespace {

struct SimpleFit {
    double a, b, a_serr, b_serr, rsq, rss, df;
    double sw, xbar, sxx;
};

// The fit of g02cac and g02cbc; false after raising the failure under KNAME.
bool simple_fit(const char *kName, int mean, int n, const double x[], const double y[], const double wt[],
                SimpleFit *out, ZekFail *fail) {
    if (mean != Zek_MeanInclude && mean != Zek_MeanZero) return zek::raise_text(fail, kName, ZE_BAD_PARAM, "mean"), false;
    const bool with_mean = mean == Zek_MeanInclude;
    if (n < (with_mean ? 2 : 1)) {
        return zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "n", with_mean ? "2" : "1", n), false;
    }
    double sw = 0.0;
    long positive = 0;
    for (std::ptrdiff_t i = 0; i < n; ++i) {
        const double w = wt != nullptr ? wt[i] : 1.0;
        if (!(w >= 0.0) || std::isinf(w)) {
            return zek::raise_formatted(fail, kName, ZE_REAL_ARRAY_CONS, "wt", static_cast<long>(i), w, "wt[i] >= 0.0"),
                   false;
        }
        if (!std::isfinite(x[i]) || !std::isfinite(y[i])) return zek::raise_text(fail, kName, ZE_BAD_PARAM, "x or y"), false;
        sw += w;
        positive += w > 0.0 ? 1 : 0;
    }
    const long parameters = with_mean ? 2 : 1;
    if (positive < parameters) return zek::raise_plain(fail, kName, ZE_WEIGHTS_NOT_POSITIVE), false;
    // Weighted means first, then sums of products about them: no sum of squares of raw values cancels.
    double xbar = 0.0, ybar = 0.0;
    if (with_mean) {
        for (std::ptrdiff_t i = 0; i < n; ++i) {
            const double w = wt != nullptr ? wt[i] : 1.0;
            xbar += w * x[i];
            ybar += w * y[i];
        }
        xbar /= sw;
        ybar /= sw;
    }
    double sxx = 0.0, sxy = 0.0, syy = 0.0;
    for (std::ptrdiff_t i = 0; i < n; ++i) {
        const double w = wt != nullptr ? wt[i] : 1.0;
        const double dx = x[i] - xbar, dy = y[i] - ybar;
        sxx += w * dx * dx;
        sxy += w * dx * dy;
        syy += w * dy * dy;
    }
    if (!(sxx > 0.0) || !(syy > 0.0)) return zek::raise_plain(fail, kName, ZE_X_OR_Y_IDEN), false;
    const double slope = sxy / sxx;
    const double intercept = ybar - slope * xbar;
    double r = 0.0;
    for (std::ptrdiff_t i = 0; i < n; ++i) {
        const double w = wt != nullptr ? wt[i] : 1.0;
        const double e = y[i] - intercept - slope * x[i];
        r += w * e * e;
    }
    SimpleFit &f = *out;
    f.a = intercept;
    f.b = slope;
    f.rss = r;
    f.df = static_cast<double>(positive - parameters);
    f.rsq = r < syy ? 1.0 - r / syy : 0.0;
    f.sw = sw;
    f.xbar = xbar;
    f.sxx = sxx;
    f.a_serr = f.b_serr = 0.0;
    if (f.df > 0.0) {
        const double s2 = r / f.df;
        f.b_serr = std::sqrt(s2 / sxx);
        f.a_serr = with_mean ? std::sqrt(s2 * (1.0 / sw + xbar * xbar / sxx)) : 0.0;
    }
    return true;
}

} // namespace

extern "C" {

void g02cac(int mean, int n, const double x[], const double y[], const double wt[], double *a, double *b,
            double *a_serr, double *b_serr, double *rsq, double *rss, double *df, ZekFail *fail) {
    zek::clear_fail(fail);
    SimpleFit f{};
    if (!simple_fit("g02cac", mean, n, x, y, wt, &f, fail)) return;
    *a = f.a;
    *b = f.b;
    *a_serr = f.a_serr;
    *b_serr = f.b_serr;
    *rsq = f.rsq;
    *rss = f.rss;
    *df = f.df;
    zek::raise_success(fail, "g02cac");
}

void g02cbc(int mean, int n, const double x[], const double y[], const double wt[], double clm, double clp,
            double yhat[], double yml[], double ymu[], double yl[], double yu[], double h[], double res[], double *rms,
            ZekFail *fail) {
    static const char *const kName = "g02cbc";
    zek::clear_fail(fail);
    if (!(clm > 0.0 && clm < 1.0)) return zek::raise_formatted(fail, kName, ZE_REAL_ARG_CONS, "clm", clm, "0.0 < clm < 1.0");
    if (!(clp > 0.0 && clp < 1.0)) return zek::raise_formatted(fail, kName, ZE_REAL_ARG_CONS, "clp", clp, "0.0 < clp < 1.0");
    SimpleFit f{};
    if (!simple_fit(kName, mean, n, x, y, wt, &f, fail)) return;
    if (f.df < 1.0) return zek::raise_plain(fail, kName, ZE_WEIGHTS_NOT_POSITIVE);
    ZekFail local = zek::clean_fail();
    const double tm = g01fbc(Zek_TwoTailSignif, 1.0 - clm, f.df, &local);
    const double tp = g01fbc(Zek_TwoTailSignif, 1.0 - clp, f.df, &local);
    const double s2 = f.rss / f.df;
    const bool with_mean = mean == Zek_MeanInclude;
    for (std::ptrdiff_t i = 0; i < n; ++i) {
        const double w = wt != nullptr ? wt[i] : 1.0;
        const double dx = x[i] - f.xbar;
        // Leverage without the weight: the variance of the fitted mean at x_i over s^2.
        const double h0 = with_mean ? 1.0 / f.sw + dx * dx / f.sxx : x[i] * x[i] / f.sxx;
        yhat[i] = f.a + f.b * x[i];
        h[i] = w * h0;
        res[i] = y[i] - yhat[i];
        const double em = tm * std::sqrt(s2 * h0), ep = tp * std::sqrt(s2 * (1.0 + h0));
        yml[i] = yhat[i] - em;
        ymu[i] = yhat[i] + em;
        yl[i] = yhat[i] - ep;
        yu[i] = yhat[i] + ep;
    }
    *rms = s2;
    zek::raise_success(fail, kName);
}

} // extern "C"
