// M01CAF and m01cac against std::sort on random, sorted, reversed and many-equal inputs of 10^3 to
// 10^7 doubles.  Each iteration copies the same input back before sorting; the copy is timed for all
// three alike.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <vector>

#include "sorting/sorting.h"
#include "zek2/m01.h"

namespace {

enum Shape { kRandom, kSorted, kReversed, kManyEqual };

std::vector<double> input(int shape, std::size_t n) {
    std::vector<double> v(n);
    std::mt19937_64 gen(12345);
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
    const std::vector<double> source = input(static_cast<int>(state.range(0)), static_cast<std::size_t>(state.range(1)));
    std::vector<double> v(source.size());
    for (auto _ : state) {
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
