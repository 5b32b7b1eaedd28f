// M01CAF and m01cac against std::sort on random, sorted, reversed and many-equal inputs of 10^3 to
// 10^7 doubles.  Each iteration copies an input back before sorting; the copy is timed for all three
// alike.  Small sizes cycle through several inputs drawn with different seeds: sorting one input over
// and over lets the branch predictor learn a deterministic sort's every branch, which would flatter the
// sorts with fixed pivots against m01cac, whose pivot word moves on from call to call.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <vector>

#include "sorting/sorting.h"
#include "zek2/m01.h"

namespace {

enum Shape { kRandom, kSorted, kReversed, kManyEqual };

std::vector<double> input(int shape, std::size_t n, unsigned seed) {
    std::vector<double> v(n);
    std::mt19937_64 gen(seed);
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    for (std::size_t i = 0; i < n; ++i) {
        switch (shape) {
        case kRandom: v[i] = uniform(gen); break;
        case kSorted: v[i] = static_cast<double>(i); break;
        case kReversed: v[i] = static_cast<double>(n - i); break;
        default: v[i] = static_cast<double>(gen() % 16); break;
        }
    }
    return v;
}

template <class Sort>
void run(benchmark::State &state, Sort sort) {
    const std::size_t n = static_cast<std::size_t>(state.range(1));
    const std::size_t variants = std::min<std::size_t>(16, std::max<std::size_t>(1, 1000000 / n));
    std::vector<std::vector<double>> sources;
    for (std::size_t k = 0; k < variants; ++k)
        sources.push_back(input(static_cast<int>(state.range(0)), n, 12345u + static_cast<unsigned>(k)));
    std::vector<double> v(n);
    std::size_t next = 0;
    for (auto _ : state) {
        const std::vector<double> &source = sources[next];
        next = (next + 1) % variants;
        std::copy(source.begin(), source.end(), v.begin());
        sort(v);
        benchmark::DoNotOptimize(v.data());
    }
    state.SetItemsProcessed(state.iterations() * state.range(1));
}

void BM_std_sort(benchmark::State &state) {
    run(state, [](std::vector<double> &v) { std::sort(v.begin(), v.end()); });
}

void BM_M01CAF(benchmark::State &state) {
    run(state, [](std::vector<double> &v) {
        int ifail = 1;
        zek::M01CAF(v.data(), 1, static_cast<int>(v.size()), "A", &ifail, 1);
    });
}

void BM_m01cac(benchmark::State &state) {
    run(state, [](std::vector<double> &v) {
        ZekFail fail{};
        m01cac(v.data(), static_cast<int>(v.size()), Zek_Ascending, &fail);
    });
}

void shapes(benchmark::internal::Benchmark *b) {
    for (int shape : {kRandom, kSorted, kReversed, kManyEqual})
        for (long n : {1000L, 10000L, 100000L, 1000000L, 10000000L}) b->Args({shape, n});
    b->ArgNames({"shape", "n"});
    b->Unit(benchmark::kMicrosecond);
}

} // namespace

BENCHMARK(BM_std_sort)->Apply(shapes);
BENCHMARK(BM_M01CAF)->Apply(shapes);
BENCHMARK(BM_m01cac)->Apply(shapes);
BENCHMARK_MAIN();
