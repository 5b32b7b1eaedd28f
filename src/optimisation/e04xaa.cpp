// E04XAA: difference intervals, gradient and Hessian-diagonal estimates for a function of N variables,
// and the by-value entries of the one-variable interval search behind it.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>
#include <type_traits>

#include "frame/ifail.h"
#include "frame/output.h"
#include "optimisation/difference_interval.h"
#include "zek2/e04.h"

namespace {

using zek::fd::IntervalSearch;
static_assert(std::is_trivially_copyable_v<IntervalSearch>, "the search state is carried as plain reals");
static_assert(sizeof(IntervalSearch) <= 20 * sizeof(double), "E04XAZ's state holds 20 reals");

IntervalSearch load(const double *state) {
    IntervalSearch s(0.0, 1.0, 1.0, 1.0);
    std::memcpy(static_cast<void *>(&s), state, sizeof s);
    return s;
}
void store(const IntervalSearch &s, double *state) { std::memcpy(state, static_cast<const void *>(&s), sizeof s); }

// E04XAA's exits.  An argument exit's text is also the line printed at message level 1 and above;
// a stop asked for by the user function takes that function's MODE as IFAIL.
enum E04xaaExit { kNLessThan1, kLhesBelowN, kModeOutOfRange, kLworkBelowN, kUserStop, kNotFinite };
constexpr zek::ExitRow kE04xaaExits[] = {
    {1, 99999, " Error return from E04XAA because N is less than 1"},
    {1, 99999, " Error return from E04XAA because LHES is less than N"},
    {1, 99999, " Error return from E04XAA because MODE is out of range"},
    {1, 99999, " Error return from E04XAA because LWORK is less than N"},
    {0, 99998, " ** User requested termination by setting MODE negative in routine OBJFUN."},
    {2, 99997, " ** The function is not finite at X."},
};

} // namespace

extern "C" void E04XAZ(double fx, double h, double epsrf, double e, double *state) {
    store(IntervalSearch(fx, h, epsrf, e), state);
}

extern "C" void E04XAZN(double f1, double f2, double *state, int *done, double *hnext, int *info, double *hopt,
                        double *errbnd) {
    IntervalSearch s = load(state);
    *done = s.done() || s.cycle(f1, f2) ? 1 : 0;
    store(s, state);
    *hnext = s.step();
    *info = s.info();
    *hopt = s.hopt();
    *errbnd = s.error_bound();
}

extern "C" void E04XAA(const int *msglvl_, const int *n_, double *epsrf, const double *e_, double *x, int *mode,
                       ZekE04Objfun objfun, ZekE04AdaptObjfun adaptor, const int *lhes_, double *hforwd,
                       double *hcntrl, double *hesian, int *iwarn, double *work, const int *lwork_, int *iuser,
                       double *ruser, int *info, double *objf, double *objgrd, double *errest, int *nfeval,
                       int *ifail) {
    using zek::format;
    zek::FailureExit exit("E04XAA", nullptr, ifail);
    const int msglvl = *msglvl_, n = *n_, lhes = *lhes_, lwork = *lwork_;
    const auto say = [&](const std::string &line) {
        if (msglvl >= 1) zek::host_line(6, line.c_str(), static_cast<int>(line.size()) + 1);
    };
    const auto reject = [&](E04xaaExit key) {
        say(kE04xaaExits[key].text);
        zek::take(exit, kE04xaaExits, key);
    };
    if (n < 1) return reject(kNLessThan1);
    if (lhes < n) return reject(kLhesBelowN);
    if (*mode != 0 && *mode != 1) return reject(kModeOutOfRange);
    if (lwork < n) return reject(kLworkBelowN);
    const double eps = std::ldexp(1.0, -52);
    if (!(*epsrf >= eps && *epsrf < 1.0)) *epsrf = std::pow(eps, 0.9);
    const double e = *e_ > 0.0 && *e_ < 1.0 ? *e_ : eps;
    if (adaptor == nullptr) adaptor = E04UCA_OBJFUN_ADAPTOR;
    const bool gradient = *mode == 1;
    int nstate = 1;
    // One value at the point in WORK; the gradient argument takes the caller's OBJGRD as scratch.
    auto value = [&](double *f) {
        int m = 0;
        adaptor(objfun, &m, n, work, f, objgrd, nstate, iuser, ruser);
        nstate = 0;
        return m;
    };
    auto stop = [&](int m) {
        *mode = m;
        say(" User requested termination by setting MODE negative in routine OBJFUN.");
        const zek::ExitRow &row = kE04xaaExits[kUserStop];
        exit.fail(m, row.number, row.text);
    };
    std::copy(x, x + n, work);
    int m = value(objf);
    if (m < 0) return stop(m);
    if (!std::isfinite(*objf)) {
        zek::take(exit, kE04xaaExits, kNotFinite);
        return;
    }
    *iwarn = 0;
    for (int j = 0; j < n; ++j) {
        const double xj = x[j], scale = 1.0 + std::fabs(xj);
        const double h0 = hforwd[j] > 0.0 ? hforwd[j] : 2.0 * std::sqrt(*epsrf) * scale;
        IntervalSearch s(*objf, h0, *epsrf, e);
        int evals = 0;
        bool finite = true;
        while (!s.done()) {
            double f1, f2;
            work[j] = xj + s.step();
            if ((m = value(&f1)) < 0) return stop(m);
            work[j] = xj + 2.0 * s.step();
            if ((m = value(&f2)) < 0) return stop(m);
            evals += 2;
            if (!std::isfinite(f1) || !std::isfinite(f2)) {
                finite = false;
                break;
            }
            s.cycle(f1, f2);
        }
        const double hf = finite && s.hopt() > 0.0 && std::isfinite(s.hopt()) ? s.hopt() : h0;
        hforwd[j] = hf;
        // The central interval balances truncation of third order against cancellation.
        hcntrl[j] = hf * std::pow(*epsrf, -1.0 / 6.0);
        errest[j] = finite ? s.error_bound() : 0.0;
        hesian[j + static_cast<std::ptrdiff_t>(j) * lhes] = finite ? s.second_estimate() : 0.0;
        info[j] = finite ? s.info() : 3;
        if (gradient) {
            double fp, fm;
            work[j] = xj + hcntrl[j];
            if ((m = value(&fp)) < 0) return stop(m);
            work[j] = xj - hcntrl[j];
            if ((m = value(&fm)) < 0) return stop(m);
            evals += 2;
            objgrd[j] = (fp - fm) / (2.0 * hcntrl[j]);
        }
        work[j] = xj;
        nfeval[j] = evals;
        if (info[j] != 0) *iwarn = 1;
    }
    if (msglvl >= 1) {
        say("");
        say(" Output from routine E04XAA.");
        say("");
        say(gradient ? "    J      X(J)   F. dif. int.   C. dif. int.     Error est.     Grad. est. Hess diag est. "
                       "fun evals.  info(j)"
                     : "    J      X(J)   F. dif. int.   C. dif. int.     Error est. Hess diag est. fun evals.  info(j)");
        for (int j = 0; j < n; ++j) {
            const double hjj = hesian[j + static_cast<std::ptrdiff_t>(j) * lhes];
            if (gradient)
                say(format("%5ld%10.2E%15.6E%15.6E%15.6E%15.6E%15.6E%9ld%8ld", static_cast<long>(j + 1), x[j], hforwd[j],
                           hcntrl[j], errest[j], objgrd[j], hjj, static_cast<long>(nfeval[j]), static_cast<long>(info[j])));
            else
                say(format("%5ld%10.2E%15.6E%15.6E%15.6E%15.6E%9ld%8ld", static_cast<long>(j + 1), x[j], hforwd[j],
                           hcntrl[j], errest[j], hjj, static_cast<long>(nfeval[j]), static_cast<long>(info[j])));
        }
        if (*iwarn != 0) say(" One or more variables have a nonzero INFO value");
    }
    exit.succeed();
}
