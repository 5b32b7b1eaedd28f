// s14aac, s14abc and S15_ERFC against the C library's tgamma, lgamma and erfc, over arguments spread
// across each function's range.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

#include "zek2/s.h"

namespace {

std::vector<double> arguments(double lo, double hi) {
    std::vector<double> x(4096);
    std::mt19937_64 gen(99);
    std::uniform_real_distribution<double> uniform(lo, hi);
    for (double &v : x) v = uniform(gen);
    return x;
}

template <class F>
void run(benchmark::State &state, double lo, double hi, F f) {
    const std::vector<double> x = arguments(lo, hi);
    for (auto _ : state) {
        double sum = 0.0;
        for (double v : x) sum += f(v);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(x.size()));
}

void BM_tgamma(benchmark::State &s) { run(s, 0.01, 20.0, [](double x) { return std::tgamma(x); }); }
void BM_s14aac(benchmark::State &s) { run(s, 0.01, 20.0, [](double x) { return s14aac(x, nullptr); }); }
void BM_tgamma_large(benchmark::State &s) { run(s, 20.0, 170.0, [](double x) { return std::tgamma(x); }); }
void BM_s14aac_large(benchmark::State &s) { run(s, 20.0, 170.0, [](double x) { return s14aac(x, nullptr); }); }
void BM_lgamma(benchmark::State &s) { run(s, 0.01, 1000.0, [](double x) { return std::lgamma(x); }); }
void BM_s14abc(benchmark::State &s) { run(s, 0.01, 1000.0, [](double x) { return s14abc(x, nullptr); }); }
void BM_erfc(benchmark::State &s) { run(s, -6.0, 26.0, [](double x) { return std::erfc(x); }); }
void BM_S15_ERFC(benchmark::State &s) { run(s, -6.0, 26.0, [](double x) { return S15_ERFC(x); }); }

} // namespace

BENCHMARK(BM_tgamma);
BENCHMARK(BM_s14aac);
BENCHMARK(BM_tgamma_large);
BENCHMARK(BM_s14aac_large);
BENCHMARK(BM_lgamma);
BENCHMARK(BM_s14abc);
BENCHMARK(BM_erfc);
BENCHMARK(BM_S15_ERFC);
BENCHMARK_MAIN();
