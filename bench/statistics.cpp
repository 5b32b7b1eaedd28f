// Tail probabilities and deviates against Boost.Math (double, its default policies but with errors
// returned rather than thrown) and GSL's gsl_cdf_* in one run: the time per call of each, and each one's
// largest relative error against Boost.Math in long double (about 19 digits) over the same arguments,
// spread over the parameter ranges and into the far tails.  Then the generators' numbers per second
// against GSL's and the C++ library's Mersenne twisters, and the regression fit of a 10^5 x 50 design
// against LAPACK's dgels.  A table of ratios (ours over the peer: time, and error) closes the run.
#define BOOST_MATH_DOMAIN_ERROR_POLICY ignore_error
#define BOOST_MATH_POLE_ERROR_POLICY ignore_error
#define BOOST_MATH_OVERFLOW_ERROR_POLICY ignore_error
#define BOOST_MATH_UNDERFLOW_ERROR_POLICY ignore_error
#define BOOST_MATH_EVALUATION_ERROR_POLICY ignore_error
#define BOOST_MATH_ROUNDING_ERROR_POLICY ignore_error

#include <benchmark/benchmark.h>
#include <dlfcn.h>
#include <gsl/gsl_cdf.h>
#include <gsl/gsl_errno.h>
#include <gsl/gsl_rng.h>

#include <boost/math/distributions/beta.hpp>
#include <boost/math/distributions/chi_squared.hpp>
#include <boost/math/distributions/fisher_f.hpp>
#include <boost/math/distributions/gamma.hpp>
#include <boost/math/distributions/normal.hpp>
#include <boost/math/distributions/students_t.hpp>
#include <boost/multiprecision/cpp_bin_float.hpp>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "zek2/g01.h"
#include "zek2/g02.h"
#include "zek2/g05.h"

namespace {

namespace bm = boost::math;

struct Args { double a, b, c; };
using Fn = std::function<double(const Args &)>;
using RefFn = std::function<long double(const Args &)>;

struct Family {
    std::string name;
    std::vector<Args> args;
    RefFn ref;
    Fn ours, boost, gsl;
};

double pow10(double e) { return std::pow(10.0, e); }

// The offset m = x/a - 1 (negative for the lower tail) at which a (m - log(1 + m)) = y, by bisection:
// the argument at which the gamma factor is about e^-y.
double tail_offset(double a, double y, bool lower) {
    double lo = lower ? -1.0 : 0.0, hi = lower ? 0.0 : 1.0;
    auto phi = [a](double m) { return a * (m - std::log1p(m)); };
    if (!lower) while (phi(hi) < y) hi *= 2.0;
    for (int it = 0; it < 200; ++it) {
        const double mid = 0.5 * (lo + hi);
        if ((phi(mid) < y) == lower) hi = mid;
        else lo = mid;
    }
    return 0.5 * (lo + hi);
}

// The x on the chosen side of the mode a/(a + b) at which x^a (1 - x)^b falls e^-y below its peak.
double beta_tail_point(double a, double b, double y, bool lower) {
    const double x0 = a / (a + b);
    auto drop = [&](double x) { return -(a * std::log(x / x0) + b * std::log1p(-x) - b * std::log1p(-x0)); };
    double lo = lower ? 0.0 : x0, hi = lower ? x0 : 1.0;
    for (int it = 0; it < 200; ++it) {
        const double mid = 0.5 * (lo + hi);
        if ((drop(mid) < y) == lower) hi = mid;
        else lo = mid;
    }
    return 0.5 * (lo + hi);
}

std::vector<Family> families() {
    std::mt19937_64 gen(20261124);
    auto u = [&](double lo, double hi) { return std::uniform_real_distribution<double>(lo, hi)(gen); };
    auto make = [&](auto draw) {
        std::vector<Args> v(2000);
        for (Args &a : v) a = draw();
        return v;
    };
    using LD = long double;
    std::vector<Family> f;
    f.push_back({"normal lower tail, x in [-37, 8]", make([&] { return Args{u(-37.0, 8.0), 0, 0}; }),
                 [](const Args &a) { return bm::cdf(bm::normal_distribution<LD>(), LD(a.a)); },
                 [](const Args &a) { return g01eac(Zek_LowerTail, a.a, nullptr); },
                 [](const Args &a) { return bm::cdf(bm::normal(), a.a); },
                 [](const Args &a) { return gsl_cdf_ugaussian_P(a.a); }});
    f.push_back({"normal deviate, p in [1e-300, 0.5]", make([&] { return Args{pow10(-u(0.3, 300.0)), 0, 0}; }),
                 [](const Args &a) { return bm::quantile(bm::normal_distribution<LD>(), LD(a.a)); },
                 [](const Args &a) { return g01fac(Zek_LowerTail, a.a, nullptr); },
                 [](const Args &a) { return bm::quantile(bm::normal(), a.a); },
                 [](const Args &a) { return gsl_cdf_ugaussian_Pinv(a.a); }});
    f.push_back({"Student t upper tail, df in [1, 1e3], t in [0, 60]",
                 make([&] { return Args{u(0.0, 60.0), pow10(u(0.0, 3.0)), 0}; }),
                 [](const Args &a) { return bm::cdf(bm::complement(bm::students_t_distribution<LD>(a.b), LD(a.a))); },
                 [](const Args &a) { return g01ebc(Zek_UpperTail, a.a, a.b, nullptr); },
                 [](const Args &a) { return bm::cdf(bm::complement(bm::students_t(a.b), a.a)); },
                 [](const Args &a) { return gsl_cdf_tdist_Q(a.a, a.b); }});
    f.push_back({"Student t deviate, p in [1e-100, 0.5]",
                 make([&] { return Args{pow10(-u(0.3, 100.0)), pow10(u(0.0, 3.0)), 0}; }),
                 [](const Args &a) { return bm::quantile(bm::students_t_distribution<LD>(a.b), LD(a.a)); },
                 [](const Args &a) { return g01fbc(Zek_LowerTail, a.a, a.b, nullptr); },
                 [](const Args &a) { return bm::quantile(bm::students_t(a.b), a.a); },
                 [](const Args &a) { return gsl_cdf_tdist_Pinv(a.a, a.b); }});
    f.push_back({"chi-squared upper tail, df in [1, 1e3], x/df in [0.01, 5]", make([&] {
                     const double df = pow10(u(0.0, 3.0));
                     return Args{df * u(0.01, 5.0), df, 0};
                 }),
                 [](const Args &a) { return bm::cdf(bm::complement(bm::chi_squared_distribution<LD>(a.b), LD(a.a))); },
                 [](const Args &a) { return g01ecc(Zek_UpperTail, a.a, a.b, nullptr); },
                 [](const Args &a) { return bm::cdf(bm::complement(bm::chi_squared(a.b), a.a)); },
                 [](const Args &a) { return gsl_cdf_chisq_Q(a.a, a.b); }});
    f.push_back({"chi-squared deviate, p in [1e-10, 1)", make([&] { return Args{pow10(-u(0.0, 10.0)), pow10(u(0.0, 3.0)), 0}; }),
                 [](const Args &a) { return bm::quantile(bm::chi_squared_distribution<LD>(a.b), LD(a.a)); },
                 [](const Args &a) { return g01fcc(a.a, a.b, nullptr); },
                 [](const Args &a) { return bm::quantile(bm::chi_squared(a.b), a.a); },
                 [](const Args &a) { return gsl_cdf_chisq_Pinv(a.a, a.b); }});
    f.push_back({"gamma lower tail, a in [0.1, 1e3], x/a in [0.01, 3]", make([&] {
                     const double a = pow10(u(-1.0, 3.0));
                     return Args{a * u(0.01, 3.0), a, 0};
                 }),
                 [](const Args &a) { return bm::cdf(bm::gamma_distribution<LD>(a.b, 1.0L), LD(a.a)); },
                 [](const Args &a) { return g01efc(Zek_LowerTail, a.a, a.b, 1.0, nullptr); },
                 [](const Args &a) { return bm::cdf(bm::gamma_distribution<>(a.b, 1.0), a.a); },
                 [](const Args &a) { return gsl_cdf_gamma_P(a.a, a.b, 1.0); }});
    f.push_back({"beta lower tail, a, b in [0.1, 1e3]",
                 make([&] { return Args{u(0.0, 1.0), pow10(u(-1.0, 3.0)), pow10(u(-1.0, 3.0))}; }),
                 [](const Args &a) { return bm::cdf(bm::beta_distribution<LD>(a.b, a.c), LD(a.a)); },
                 [](const Args &a) {
                     // A record of its own keeps the underflow warnings of the far tails quiet.
                     ZekFail quiet{};
                     double p = 0, q = 0, pdf = 0;
                     g01eec(a.a, a.b, a.c, 0.0, &p, &q, &pdf, &quiet);
                     return p;
                 },
                 [](const Args &a) { return bm::cdf(bm::beta_distribution<>(a.b, a.c), a.a); },
                 [](const Args &a) { return gsl_cdf_beta_P(a.a, a.b, a.c); }});
    f.push_back({"beta deviate, a, b in [0.1, 100]",
                 make([&] { return Args{u(1e-6, 1.0), pow10(u(-1.0, 2.0)), pow10(u(-1.0, 2.0))}; }),
                 [](const Args &a) { return bm::quantile(bm::beta_distribution<LD>(a.b, a.c), LD(a.a)); },
                 [](const Args &a) { return g01fec(a.a, a.b, a.c, 0.0, nullptr); },
                 [](const Args &a) { return bm::quantile(bm::beta_distribution<>(a.b, a.c), a.a); },
                 [](const Args &a) { return gsl_cdf_beta_Pinv(a.a, a.b, a.c); }});
    // The far tails: the smaller tail at 10^-u, u in [0, 300], where the exponent y of the factor
    // exp(-y) reaches 690, with shapes and degrees of freedom up to 1e6.  C is 1 for the lower tail.
    // Boost.Math's long double is itself off by up to 1e-13 there, so the reference is its 50-digit
    // evaluation.
    using Wide = boost::multiprecision::cpp_bin_float_50;
    f.push_back({"gamma smaller tail to 1e-300, a in [1, 1e6]", make([&] {
                     const double a = pow10(u(0.0, 6.0));
                     const bool lower = u(0.0, 1.0) < 0.5;
                     return Args{a * (1.0 + tail_offset(a, u(0.0, 690.0), lower)), a, lower ? 1.0 : 0.0};
                 }),
                 [](const Args &a) {
                     const Wide p = a.c > 0.0 ? bm::gamma_p(Wide(a.b), Wide(a.a)) : bm::gamma_q(Wide(a.b), Wide(a.a));
                     return p.convert_to<LD>();
                 },
                 [](const Args &a) { return g01efc(a.c > 0.0 ? Zek_LowerTail : Zek_UpperTail, a.a, a.b, 1.0, nullptr); },
                 [](const Args &a) {
                     const bm::gamma_distribution<> d(a.b, 1.0);
                     return a.c > 0.0 ? bm::cdf(d, a.a) : bm::cdf(bm::complement(d, a.a));
                 },
                 [](const Args &a) { return a.c > 0.0 ? gsl_cdf_gamma_P(a.a, a.b, 1.0) : gsl_cdf_gamma_Q(a.a, a.b, 1.0); }});
    f.push_back({"chi-squared smaller tail to 1e-300, df in [1, 1e6]", make([&] {
                     const double df = pow10(u(0.0, 6.0));
                     const bool lower = u(0.0, 1.0) < 0.5;
                     return Args{df * (1.0 + tail_offset(0.5 * df, u(0.0, 690.0), lower)), df, lower ? 1.0 : 0.0};
                 }),
                 [](const Args &a) {
                     const Wide h = Wide(a.b) / 2, x = Wide(a.a) / 2;
                     return (a.c > 0.0 ? bm::gamma_p(h, x) : bm::gamma_q(h, x)).convert_to<LD>();
                 },
                 [](const Args &a) { return g01ecc(a.c > 0.0 ? Zek_LowerTail : Zek_UpperTail, a.a, a.b, nullptr); },
                 [](const Args &a) {
                     const bm::chi_squared d(a.b);
                     return a.c > 0.0 ? bm::cdf(d, a.a) : bm::cdf(bm::complement(d, a.a));
                 },
                 [](const Args &a) { return a.c > 0.0 ? gsl_cdf_chisq_P(a.a, a.b) : gsl_cdf_chisq_Q(a.a, a.b); }});
    f.push_back({"beta smaller tail to 1e-300, a, b in [1, 1e6]", make([&] {
                     const double a = pow10(u(0.0, 6.0)), b = pow10(u(0.0, 6.0));
                     return Args{beta_tail_point(a, b, u(0.0, 690.0), u(0.0, 1.0) < 0.5), a, b};
                 }),
                 [](const Args &a) {
                     const Wide x(a.a), p(a.b), q(a.c);
                     return (a.a < a.b / (a.b + a.c) ? bm::ibeta(p, q, x) : bm::ibetac(p, q, x)).convert_to<LD>();
                 },
                 [](const Args &a) {
                     ZekFail quiet{};
                     double p = 0, q = 0, pdf = 0;
                     g01eec(a.a, a.b, a.c, 0.0, &p, &q, &pdf, &quiet);
                     return a.a < a.b / (a.b + a.c) ? p : q;
                 },
                 [](const Args &a) {
                     const bm::beta_distribution<> d(a.b, a.c);
                     return a.a < a.b / (a.b + a.c) ? bm::cdf(d, a.a) : bm::cdf(bm::complement(d, a.a));
                 },
                 [](const Args &a) {
                     return a.a < a.b / (a.b + a.c) ? gsl_cdf_beta_P(a.a, a.b, a.c) : gsl_cdf_beta_Q(a.a, a.b, a.c);
                 }});
    f.push_back({"F upper tail, df in [1, 1e3], f in [0, 10]",
                 make([&] { return Args{u(0.0, 10.0), pow10(u(0.0, 3.0)), pow10(u(0.0, 3.0))}; }),
                 [](const Args &a) { return bm::cdf(bm::complement(bm::fisher_f_distribution<LD>(a.b, a.c), LD(a.a))); },
                 [](const Args &a) { return g01edc(Zek_UpperTail, a.a, a.b, a.c, nullptr); },
                 [](const Args &a) { return bm::cdf(bm::complement(bm::fisher_f(a.b, a.c), a.a)); },
                 [](const Args &a) { return gsl_cdf_fdist_Q(a.a, a.b, a.c); }});
    return f;
}

// The largest relative error over the arguments whose reference is a normal double.
double max_relative_error(const Family &fam, const Fn &fn, const std::vector<long double> &ref) {
    double worst = 0.0;
    for (std::size_t i = 0; i < fam.args.size(); ++i) {
        const long double r = ref[i];
        if (!(std::fabs(r) >= DBL_MIN) || !(std::fabs(r) <= DBL_MAX)) continue;
        const double v = fn(fam.args[i]);
        const double e = std::isfinite(v) ? static_cast<double>(std::fabs((v - r) / r)) : INFINITY;
        if (e > worst) worst = e;
    }
    return worst;
}

struct Measured { double ns = 0, err = 0; };
std::map<std::string, Measured> g_measured;

void register_distribution_benchmarks() {
    static const std::vector<Family> fams = families();
    for (const Family &fam : fams) {
        std::vector<long double> ref(fam.args.size());
        for (std::size_t i = 0; i < ref.size(); ++i) ref[i] = fam.ref(fam.args[i]);
        const std::pair<const char *, const Fn *> peers[] = {{"zek", &fam.ours}, {"boost", &fam.boost}, {"gsl", &fam.gsl}};
        for (const auto &peer : peers) {
            const std::string name = fam.name + "/" + peer.first;
            const double err = max_relative_error(fam, *peer.second, ref);
            g_measured[name].err = err;
            const Fn *fn = peer.second;
            const Family *fp = &fam;
            benchmark::RegisterBenchmark(name.c_str(), [fn, fp, err](benchmark::State &state) {
                for (auto _ : state) {
                    double sum = 0.0;
                    for (const Args &a : fp->args) sum += (*fn)(a);
                    benchmark::DoNotOptimize(sum);
                }
                state.SetItemsProcessed(state.iterations() * static_cast<long>(fp->args.size()));
                state.counters["max_rel_err"] = err;
            });
        }
    }
}

// ---- generators ------------------------------------------------------------------------------------

template <class F>
void run_generator(benchmark::State &state, F next) {
    for (auto _ : state) {
        double sum = 0.0;
        for (int i = 0; i < 4096; ++i) sum += next();
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * 4096);
}

void BM_uniform_zek_basic(benchmark::State &s) {
    G05_SEED(1762);
    run_generator(s, [] { return G05_UNIFORM(); });
}
void BM_uniform_zek_explicit(benchmark::State &s) {
    int igen = 0, iseed[4] = {1762, 0, 0, 0};
    G05_EXPLICIT_DEFAULT(&igen, iseed);
    run_generator(s, [&] { return G05_EXPLICIT_UNIFORM_V(igen, iseed); });
}
void BM_uniform_gsl_mt19937(benchmark::State &s) {
    gsl_rng *r = gsl_rng_alloc(gsl_rng_mt19937);
    run_generator(s, [r] { return gsl_rng_uniform(r); });
    gsl_rng_free(r);
}
void BM_uniform_std_mt19937_64(benchmark::State &s) {
    std::mt19937_64 gen(1762);
    std::uniform_real_distribution<double> u(0.0, 1.0);
    run_generator(s, [&] { return u(gen); });
}
BENCHMARK(BM_uniform_zek_basic);
BENCHMARK(BM_uniform_zek_explicit);
BENCHMARK(BM_uniform_gsl_mt19937);
BENCHMARK(BM_uniform_std_mt19937_64);

// ---- regression --------------------------------------------------------------------------------------

constexpr int kObs = 100000, kVars = 50;

struct Design {
    std::vector<double> x, y;
    Design() : x(static_cast<std::size_t>(kObs) * kVars), y(kObs) {
        std::mt19937_64 gen(5);
        std::normal_distribution<double> z;
        for (double &v : x) v = z(gen);
        for (int i = 0; i < kObs; ++i) {
            double s = 1.0 + 0.01 * z(gen);
            for (int j = 0; j < kVars; ++j) s += (j + 1) * x[i + static_cast<std::size_t>(j) * kObs] / kVars;
            y[i] = s;
        }
    }
};
const Design &design() {
    static const Design d;
    return d;
}

std::vector<double> g_b_zek, g_b_lapack;

void BM_regression_zek(benchmark::State &state) {
    const Design &d = design();
    const int ip = kVars + 1;
    std::vector<int> sx(kVars, 1);
    std::vector<double> b(ip), se(ip), cov(ip * (ip + 1) / 2), res(kObs), h(kObs),
        q(static_cast<std::size_t>(kObs) * (ip + 1)), p(2 * ip + ip * ip), wk(ip * ip + 5 * ip);
    double rss = 0, df = 0;
    int svd = 0, rank = 0;
    for (auto _ : state) {
        ZekFail fail{};
        g02dac(Zek_MeanInclude, kObs, kVars, d.x.data(), kObs, sx.data(), ip, d.y.data(), nullptr, &rss, &df, b.data(),
               se.data(), cov.data(), res.data(), h.data(), q.data(), kObs, &svd, &rank, p.data(), 0.0, wk.data(), &fail);
        if (fail.code != 0) state.SkipWithError("g02dac failed");
    }
    g_b_zek = b;
}

using Dgels = void (*)(const char *, const int *, const int *, const int *, double *, const int *, double *, const int *,
                       double *, const int *, int *, std::size_t);

void BM_regression_lapack_dgels(benchmark::State &state) {
    void *lib = dlopen("liblapack.so.3", RTLD_NOW | RTLD_LOCAL);
    Dgels dgels = lib ? reinterpret_cast<Dgels>(dlsym(lib, "dgels_")) : nullptr;
    if (dgels == nullptr) {
        state.SkipWithError("liblapack.so.3 not found");
        return;
    }
    const Design &d = design();
    const int m = kObs, n = kVars + 1, nrhs = 1, ld = kObs;
    std::vector<double> a(static_cast<std::size_t>(m) * n), y(m);
    double wq = 0;
    int lwork = -1, info = 0;
    dgels("N", &m, &n, &nrhs, a.data(), &ld, y.data(), &ld, &wq, &lwork, &info, 1);
    lwork = static_cast<int>(wq);
    std::vector<double> work(lwork);
    for (auto _ : state) {
        // The design with its column of ones, and the response: dgels overwrites both.
        std::fill(a.begin(), a.begin() + m, 1.0);
        std::copy(d.x.begin(), d.x.end(), a.begin() + m);
        y = d.y;
        dgels("N", &m, &n, &nrhs, a.data(), &ld, y.data(), &ld, work.data(), &lwork, &info, 1);
    }
    g_b_lapack.assign(y.begin(), y.begin() + n);
}
BENCHMARK(BM_regression_zek)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_regression_lapack_dgels)->Unit(benchmark::kMillisecond)->Iterations(3);

// Keeps the CPU time per item of every run for the closing table.
class Recorder : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run> &runs) override {
        for (const Run &r : runs) g_measured[r.benchmark_name()].ns = r.GetAdjustedCPUTime();
        ConsoleReporter::ReportRuns(runs);
    }
};

void print_ratios() {
    std::printf("\n%-58s %12s %12s %12s %12s %10s %10s\n", "ours over the peer", "err zek", "err boost", "err gsl",
                "time/boost", "time/gsl", "");
    for (const Family &fam : families()) {
        const Measured z = g_measured[fam.name + "/zek"], b = g_measured[fam.name + "/boost"],
                       g = g_measured[fam.name + "/gsl"];
        std::printf("%-58s %12.2e %12.2e %12.2e %12.2f %10.2f\n", fam.name.c_str(), z.err, b.err, g.err, z.ns / b.ns,
                    z.ns / g.ns);
    }
    const Measured rz = g_measured["BM_regression_zek/iterations:3"], rl = g_measured["BM_regression_lapack_dgels/iterations:3"];
    if (rl.ns > 0) std::printf("\nregression 1e5 x 50: time g02dac / dgels = %.2f\n", rz.ns / rl.ns);
    double diff = 0;
    for (std::size_t i = 0; i < g_b_zek.size() && i < g_b_lapack.size(); ++i) {
        diff = std::fmax(diff, std::fabs(g_b_zek[i] - g_b_lapack[i]) / std::fmax(std::fabs(g_b_lapack[i]), 1e-300));
    }
    std::printf("largest relative difference of the coefficients: %.2e\n", diff);
}

} // namespace

int main(int argc, char **argv) {
    gsl_set_error_handler_off();
    register_distribution_benchmarks();
    benchmark::Initialize(&argc, argv);
    Recorder recorder;
    benchmark::RunSpecifiedBenchmarks(&recorder);
    print_ratios();
    benchmark::Shutdown();
    return 0;
}
