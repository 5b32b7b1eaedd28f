// Tail probabilities and deviates of the standard distributions in both layers.  The C-style routines
// check their arguments in declared order and raise the first failure; the cores are in
// distribution_cores.cpp.
#include <cmath>
#include <cstdio>

#include "frame/ifail.h"
#include "frame/machine.h"
#include "frame/raise.h"
#include "statistics/distributions.h"
#include "zek2/g01.h"
#include "zek2/s.h"

namespace zek {

namespace {

constexpr double kBetaLimit = 1.0e6;
constexpr double kDegreesLimit = 2.0e7;

bool valid_tail(int tail, bool two_sided) {
    return tail == Zek_LowerTail || tail == Zek_UpperTail ||
           (two_sided && (tail == Zek_TwoTailSignif || tail == Zek_TwoTailConfid));
}

// Raises the tail failure; true when the tail is good.
bool check_tail(ZekFail *fail, const char *routine, int tail, bool two_sided) {
    if (valid_tail(tail, two_sided)) return true;
    raise_text(fail, routine, ZE_BAD_PARAM, "tail");
    return false;
}

// A probability strictly inside (0, 1).
bool check_probability(ZekFail *fail, const char *routine, double p) {
    if (!(p > 0.0)) {
        raise_real_arg(fail, routine, ZE_REAL_ARG_LE, "p", "0.0", p);
        return false;
    }
    if (!(p < 1.0)) {
        raise_real_arg(fail, routine, ZE_REAL_ARG_GE, "p", "1.0", p);
        return false;
    }
    return true;
}

// A real argument that must exceed (strict) or reach BOUND; NaN fails.
bool check_above(ZekFail *fail, const char *routine, double v, const char *name, double bound, const char *text,
                 bool strict) {
    if (strict ? v > bound : v >= bound) return true;
    raise_real_arg(fail, routine, strict ? ZE_REAL_ARG_LE : ZE_REAL_ARG_LT, name, text, v);
    return false;
}

bool check_range(ZekFail *fail, const char *routine, double v, const char *name, bool ok, const char *constraint) {
    if (ok) return true;
    raise_formatted(fail, routine, ZE_REAL_ARG_CONS, name, v, constraint);
    return false;
}

// The normal tails of x.
double normal_tail(int tail, double x) {
    switch (tail) {
    case Zek_LowerTail: return S15_UPPER_TAIL(x);
    case Zek_UpperTail: return S15_LOWER_TAIL(x);
    case Zek_TwoTailSignif: return 2.0 * S15_LOWER_TAIL(std::fabs(x));
    default: return std::fabs(x) < 0.5 ? S15_ERF(std::fabs(x) * 0.70710678118654757) : 1.0 - 2.0 * S15_LOWER_TAIL(std::fabs(x));
    }
}

// F tails (lower, upper) of f >= 0.
dist::Tails f_tails(double f, double df1, double df2) {
    if (f <= 0.0) return {0.0, 1.0};
    if (std::isinf(f)) return {1.0, 0.0};
    if (df1 <= kDegreesLimit && df2 <= kDegreesLimit) {
        // x = r/(1 + r) with r = df1 f / df2, in logarithms that do not overflow.
        const double r = df1 / df2 * f;
        const double x = r / (1.0 + r), y = 1.0 / (1.0 + r);
        const dist::BetaTails bt = dist::incomplete_beta(0.5 * df1, 0.5 * df2, x, y, -std::log1p(1.0 / r), -std::log1p(r));
        return {bt.p, bt.q};
    }
    if (df1 <= kDegreesLimit) {
        double p = 0.0, q = 0.0;
        s14bac(0.5 * df1, 0.5 * df1 * f, 0.0, &p, &q, nullptr);
        return {p, q};
    }
    const double h1 = 2.0 / (9.0 * df1), h2 = 2.0 / (9.0 * df2);
    const double c = std::cbrt(f);
    const double z = ((1.0 - h2) * c - (1.0 - h1)) / std::sqrt(h2 * c * c + h1);
    return {S15_UPPER_TAIL(z), S15_LOWER_TAIL(z)};
}

// The failure exits of G01EEF.
enum G01eefExit { kXOutside01, kANotPositive, kATooLarge, kProbabilityAtLimit, kNoAccuracy };
constexpr ExitRow kG01eefExits[] = {
    {1, 99999, " ** On entry X.lt.0.0 or X.gt.1.0: X = %13.5e"},
    {2, 99998, " ** On entry A.le.0.0 or B.le.0.0: A = %13.5e B = %13.5e"},
    {3, 99997, " ** On entry A or B is too large: A = %13.5e B = %13.5e"},
    {4, 99996, " ** Probability too close to 0.0 or 1.0."},
    {5, 99995, " ** Required accuracy not achieved"},
};

// The failure exits of G01EAF.
enum G01eafExit { kTailInvalid, kXNaN };
constexpr ExitRow kG01eafExits[] = {
    {1, 99999, " ** On entry, TAIL is an invalid character : TAIL = %1.1s"},
    {2, 99998, " ** On entry, X is NaN."},
};

// The IFAIL worker of G01EEF, also called by g01eec.
void g01eef_worker(double x, double a, double b, double /*tol*/, double *p, double *q, double *pdf, int *ifail) {
    FailureExit exit("G01EEF", nullptr, ifail, Channel::Stream);
    if (!(x >= 0.0 && x <= 1.0)) return void(take(exit, kG01eefExits, kXOutside01, {x}));
    if (!(a > 0.0 && b > 0.0)) return void(take(exit, kG01eefExits, kANotPositive, {a, b}));
    if (a > kBetaLimit || b > kBetaLimit) return void(take(exit, kG01eefExits, kATooLarge, {a, b}));
    const dist::BetaTails t = dist::incomplete_beta(a, b, x);
    *p = t.p;
    *q = t.q;
    *pdf = t.pdf;
    if (x > 0.0 && x < 1.0 && (t.p <= 0.0 || t.q <= 0.0)) return void(take(exit, kG01eefExits, kProbabilityAtLimit));
    if (!t.converged) return void(take(exit, kG01eefExits, kNoAccuracy));
    exit.succeed();
}

} // namespace

} // namespace zek

extern "C" {

double g01eac(int tail, double x, ZekFail *fail) {
    static const char *const kName = "g01eac";
    zek::clear_fail(fail);
    if (!zek::check_tail(fail, kName, tail, true)) return 0.0;
    if (std::isnan(x)) {
        zek::raise_text(fail, kName, ZE_BAD_PARAM, "x");
        return 0.0;
    }
    const double r = zek::normal_tail(tail, x);
    zek::raise_success(fail, kName);
    return r;
}

double G01EAF(const char *tail, const double *x, int *ifail, int tail_len) {
    zek::FailureExit exit("G01EAF", nullptr, ifail);
    const char c = tail_len > 0 ? tail[0] : ' ';
    int code = 0;
    switch (c) {
    case 'L': case 'l': code = Zek_LowerTail; break;
    case 'U': case 'u': code = Zek_UpperTail; break;
    case 'S': case 's': code = Zek_TwoTailSignif; break;
    case 'C': case 'c': code = Zek_TwoTailConfid; break;
    default: break;
    }
    if (code == 0) {
        const char text[2] = {c, '\0'};
        zek::take(exit, zek::kG01eafExits, zek::kTailInvalid, {text});
        return 0.0;
    }
    if (std::isnan(*x)) {
        zek::take(exit, zek::kG01eafExits, zek::kXNaN);
        return 0.0;
    }
    exit.succeed();
    return zek::normal_tail(code, *x);
}

double g01ebc(int tail, double t, double df, ZekFail *fail) {
    static const char *const kName = "g01ebc";
    zek::clear_fail(fail);
    if (!zek::check_tail(fail, kName, tail, true)) return 0.0;
    if (std::isnan(t)) {
        zek::raise_text(fail, kName, ZE_BAD_PARAM, "t");
        return 0.0;
    }
    if (!zek::check_above(fail, kName, df, "df", 1.0, "1.0", false)) return 0.0;
    const zek::dist::Tails r = zek::dist::student_t(t, df);  // lower/upper of |t|
    double v = 0.0;
    switch (tail) {
    case Zek_LowerTail: v = t < 0.0 ? r.upper : r.lower; break;
    case Zek_UpperTail: v = t < 0.0 ? r.lower : r.upper; break;
    case Zek_TwoTailSignif: v = 2.0 * r.upper; break;
    default: v = 1.0 - 2.0 * r.upper; break;
    }
    zek::raise_success(fail, kName);
    return v;
}

double g01ecc(int tail, double x, double df, ZekFail *fail) {
    static const char *const kName = "g01ecc";
    zek::clear_fail(fail);
    if (!zek::check_tail(fail, kName, tail, false)) return 0.0;
    if (!zek::check_above(fail, kName, x, "x", 0.0, "0.0", false)) return 0.0;
    if (!zek::check_above(fail, kName, df, "df", 0.0, "0.0", true)) return 0.0;
    double p = 1.0, q = 0.0;
    if (!std::isinf(x)) s14bac(0.5 * df, 0.5 * x, 0.0, &p, &q, nullptr);
    zek::raise_success(fail, kName);
    return tail == Zek_LowerTail ? p : q;
}

double g01edc(int tail, double f, double df1, double df2, ZekFail *fail) {
    static const char *const kName = "g01edc";
    zek::clear_fail(fail);
    if (!zek::check_tail(fail, kName, tail, false)) return 0.0;
    if (!zek::check_above(fail, kName, f, "f", 0.0, "0.0", false)) return 0.0;
    if (!zek::check_above(fail, kName, df1, "df1", 0.0, "0.0", true)) return 0.0;
    if (!zek::check_above(fail, kName, df2, "df2", 0.0, "0.0", true)) return 0.0;
    const zek::dist::Tails r = zek::f_tails(f, df1, df2);
    zek::raise_success(fail, kName);
    return tail == Zek_LowerTail ? r.lower : r.upper;
}

void G01EEF(const double *x, const double *a, const double *b, const double *tol, double *p, double *q, double *pdf,
            int *ifail) {
    zek::g01eef_worker(*x, *a, *b, *tol, p, q, pdf, ifail);
}

void g01eec(double x, double a, double b, double tol, double *p, double *q, double *pdf, ZekFail *fail) {
    static const char *const kName = "g01eec";
    zek::clear_fail(fail);
    if (!zek::check_range(fail, kName, x, "x", x >= 0.0 && x <= 1.0, "0.0 <= x <= 1.0")) return;
    if (!zek::check_range(fail, kName, a, "a", a > 0.0 && a <= zek::kBetaLimit, "0.0 < a <= 1.0e6")) return;
    if (!zek::check_range(fail, kName, b, "b", b > 0.0 && b <= zek::kBetaLimit, "0.0 < b <= 1.0e6")) return;
    int ifail = 1;
    zek::g01eef_worker(x, a, b, tol, p, q, pdf, &ifail);
    if (ifail == 4) zek::raise_plain(fail, kName, ZE_PROBAB_CLOSE_TO_TAIL);
    else if (ifail == 5) zek::raise_plain(fail, kName, ZE_NOT_REQ_ACC);
    else zek::raise_success(fail, kName);
}

double g01efc(int tail, double g, double a, double b, ZekFail *fail) {
    static const char *const kName = "g01efc";
    zek::clear_fail(fail);
    if (!zek::check_tail(fail, kName, tail, false)) return 0.0;
    if (!zek::check_above(fail, kName, g, "g", 0.0, "0.0", false)) return 0.0;
    if (!zek::check_above(fail, kName, a, "a", 0.0, "0.0", true)) return 0.0;
    if (!zek::check_above(fail, kName, b, "b", 0.0, "0.0", true)) return 0.0;
    double p = 1.0, q = 0.0;
    const double x = g / b;
    if (!std::isinf(x)) s14bac(a, x, 0.0, &p, &q, nullptr);
    zek::raise_success(fail, kName);
    return tail == Zek_LowerTail ? p : q;
}

double G01FAZ(const double *p) {
    if (!(*p > 0.0 && *p < 1.0)) return 0.0;
    return zek::dist::normal_deviate(*p);
}

double g01fac(int tail, double p, ZekFail *fail) {
    static const char *const kName = "g01fac";
    zek::clear_fail(fail);
    if (!zek::check_tail(fail, kName, tail, true)) return 0.0;
    if (!zek::check_probability(fail, kName, p)) return 0.0;
    double x = 0.0;
    switch (tail) {
    case Zek_LowerTail: x = zek::dist::normal_deviate(p); break;
    case Zek_UpperTail: x = -zek::dist::normal_deviate(p); break;
    case Zek_TwoTailSignif: x = -zek::dist::normal_deviate(0.5 * p); break;
    default: x = -zek::dist::normal_deviate(0.5 * (1.0 - p)); break;
    }
    zek::raise_success(fail, kName);
    return x;
}

double g01fbc(int tail, double p, double df, ZekFail *fail) {
    static const char *const kName = "g01fbc";
    zek::clear_fail(fail);
    if (!zek::check_tail(fail, kName, tail, true)) return 0.0;
    if (!zek::check_probability(fail, kName, p)) return 0.0;
    if (!zek::check_above(fail, kName, df, "df", 1.0, "1.0", false)) return 0.0;
    double t = 0.0;
    switch (tail) {
    case Zek_TwoTailSignif: t = zek::dist::student_t_deviate(p, 1.0 - p, df); break;
    case Zek_TwoTailConfid: t = zek::dist::student_t_deviate(1.0 - p, p, df); break;
    default: {
        // One tail: |t| has the two-sided significance 2 min(p, 1 - p); its sign follows the tail.
        const double small = p < 0.5 ? p : 1.0 - p;
        const double a = zek::dist::student_t_deviate(2.0 * small, p < 0.5 ? 1.0 - 2.0 * p : 2.0 * p - 1.0, df);
        t = (tail == Zek_LowerTail) == (p < 0.5) ? -a : a;
        break;
    }
    }
    zek::raise_success(fail, kName);
    return t;
}

double g01ffc(double p, double a, double b, double /*tol*/, ZekFail *fail) {
    static const char *const kName = "g01ffc";
    zek::clear_fail(fail);
    if (!zek::check_probability(fail, kName, p)) return 0.0;
    if (!zek::check_range(fail, kName, a, "a", a > 0.0 && a <= zek::kBetaLimit, "0.0 < a <= 1.0e6")) return 0.0;
    if (!zek::check_above(fail, kName, b, "b", 0.0, "0.0", true)) return 0.0;
    bool converged = false;
    const double g = zek::dist::gamma_deviate(p, a, &converged) * b;
    if (!converged) zek::raise_plain(fail, kName, ZE_NOT_REQ_ACC);
    else zek::raise_success(fail, kName);
    return g;
}

double g01fcc(double p, double df, ZekFail *fail) {
    static const char *const kName = "g01fcc";
    zek::clear_fail(fail);
    if (!zek::check_probability(fail, kName, p)) return 0.0;
    if (!zek::check_range(fail, kName, df, "df", df > 0.0 && df <= 2.0 * zek::kBetaLimit, "0.0 < df <= 2.0e6"))
        return 0.0;
    bool converged = false;
    const double x = 2.0 * zek::dist::gamma_deviate(p, 0.5 * df, &converged);
    if (!converged) zek::raise_plain(fail, kName, ZE_NOT_REQ_ACC);
    else zek::raise_success(fail, kName);
    return x;
}

double g01fec(double p, double a, double b, double /*tol*/, ZekFail *fail) {
    static const char *const kName = "g01fec";
    zek::clear_fail(fail);
    if (!zek::check_probability(fail, kName, p)) return 0.0;
    if (!zek::check_range(fail, kName, a, "a", a > 0.0 && a <= zek::kBetaLimit, "0.0 < a <= 1.0e6")) return 0.0;
    if (!zek::check_range(fail, kName, b, "b", b > 0.0 && b <= zek::kBetaLimit, "0.0 < b <= 1.0e6")) return 0.0;
    const zek::dist::BetaDeviate d = zek::dist::beta_deviate(p, a, b);
    if (!d.converged) zek::raise_plain(fail, kName, ZE_NOT_REQ_ACC);
    else zek::raise_success(fail, kName);
    return d.x;
}

double g01fdc(double p, double df1, double df2, ZekFail *fail) {
    static const char *const kName = "g01fdc";
    zek::clear_fail(fail);
    if (!zek::check_probability(fail, kName, p)) return 0.0;
    if (!zek::check_above(fail, kName, df1, "df1", 0.0, "0.0", true)) return 0.0;
    if (!zek::check_above(fail, kName, df2, "df2", 0.0, "0.0", true)) return 0.0;
    bool converged = true;
    double f = 0.0;
    if (df1 <= zek::kDegreesLimit && df2 <= zek::kDegreesLimit) {
        const zek::dist::BetaDeviate d = zek::dist::beta_deviate(p, 0.5 * df1, 0.5 * df2);
        converged = d.converged;
        f = d.y > 0.0 ? (df2 / df1) * (d.x / d.y) : zek::largest();
    } else if (df1 <= zek::kDegreesLimit) {
        f = 2.0 * zek::dist::gamma_deviate(p, 0.5 * df1, &converged) / df1;
    } else {
        const double z = zek::dist::normal_deviate(p);
        f = std::exp(z * std::sqrt(2.0 / df1 + 2.0 / df2));
    }
    if (!converged) zek::raise_plain(fail, kName, ZE_NOT_REQ_ACC);
    else zek::raise_success(fail, kName);
    return f;
}

} // extern "C"
