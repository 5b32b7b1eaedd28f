// C06PCF, C06PRF, C06FAF, C06FBF, C06PPF and a 2-D C06PJF against FFTW with FFTW_ESTIMATE and
// FFTW_MEASURE plans, one thread.  Our routines build their trigonometric tables on every call, as they
// must; FFTW's plans are made once, outside the timed loop.  Sizes: powers of 2, 3 and 5, mixed and
// prime lengths.
#include <benchmark/benchmark.h>
#include <fftw3.h>

#include <cstring>
#include <random>
#include <vector>

#include "zek2/c06.h"

namespace {

std::vector<double> data(std::size_t count) {
    std::mt19937_64 gen(7);
    std::uniform_real_distribution<double> dist(-1.0, 1.0);
    std::vector<double> v(count);
    for (double &x : v) x = dist(gen);
    return v;
}

const std::vector<long> kComplexSizes = {1024, 65536, 1 << 20, 729, 59049, 625, 78125, 1000, 5040, 1009, 10007};
const std::vector<long> kRealSizes = {1024, 65536, 1 << 20, 729, 59049, 625, 78125, 1000, 5040, 1001, 6859};
const std::vector<long> kManySizes = {256, 1024, 729, 625, 1000, 1009};
constexpr int kSequences = 64;

void args(benchmark::internal::Benchmark *b, const std::vector<long> &sizes) {
    for (long n : sizes) b->Arg(n);
    b->Unit(benchmark::kMicrosecond);
}

// ---- One complex sequence ----

void ZekC06PCF(benchmark::State &state) {
    const int n = static_cast<int>(state.range(0));
    std::vector<double> x = data(2 * n), work(4 * n);
    int ifail = 0;
    for (auto _ : state) {
        C06PCF("F", x.data(), &n, work.data(), &ifail, 1);
        benchmark::DoNotOptimize(x.data());
    }
}

template <unsigned Flags> void FftwComplex(benchmark::State &state) {
    const int n = static_cast<int>(state.range(0));
    fftw_complex *x = fftw_alloc_complex(n);
    fftw_plan plan = fftw_plan_dft_1d(n, x, x, FFTW_FORWARD, Flags);
    const std::vector<double> v = data(2 * n);
    std::memcpy(x, v.data(), sizeof(double) * v.size());
    for (auto _ : state) {
        fftw_execute(plan);
        benchmark::DoNotOptimize(x);
    }
    fftw_destroy_plan(plan);
    fftw_free(x);
}

// ---- Many complex sequences, stored by sequence ----

void ZekC06PRF(benchmark::State &state) {
    const int n = static_cast<int>(state.range(0)), m = kSequences;
    std::vector<double> x = data(2 * static_cast<std::size_t>(n) * m), work(2 * static_cast<std::size_t>(m + 1) * n);
    int ifail = 0;
    for (auto _ : state) {
        C06PRF("F", &m, &n, x.data(), work.data(), &ifail, 1);
        benchmark::DoNotOptimize(x.data());
    }
}

template <unsigned Flags> void FftwMany(benchmark::State &state) {
    const int n = static_cast<int>(state.range(0)), m = kSequences;
    fftw_complex *x = fftw_alloc_complex(static_cast<std::size_t>(n) * m);
    fftw_plan plan = fftw_plan_many_dft(1, &n, m, x, nullptr, 1, n, x, nullptr, 1, n, FFTW_FORWARD, Flags);
    const std::vector<double> v = data(2 * static_cast<std::size_t>(n) * m);
    std::memcpy(x, v.data(), sizeof(double) * v.size());
    for (auto _ : state) {
        fftw_execute(plan);
        benchmark::DoNotOptimize(x);
    }
    fftw_destroy_plan(plan);
    fftw_free(x);
}

// ---- One real sequence, first engine ----

void ZekC06FAF(benchmark::State &state) {
    const int n = static_cast<int>(state.range(0));
    std::vector<double> x = data(n), work(n);
    int ifail = 1;
    for (auto _ : state) {
        C06FAF(x.data(), &n, work.data(), &ifail);
        benchmark::DoNotOptimize(x.data());
    }
}

template <unsigned Flags> void FftwReal(benchmark::State &state) {
    const int n = static_cast<int>(state.range(0));
    double *in = fftw_alloc_real(n);
    fftw_complex *out = fftw_alloc_complex(n / 2 + 1);
    fftw_plan plan = fftw_plan_dft_r2c_1d(n, in, out, Flags);
    const std::vector<double> v = data(n);
    std::memcpy(in, v.data(), sizeof(double) * v.size());
    for (auto _ : state) {
        fftw_execute(plan);
        benchmark::DoNotOptimize(out);
    }
    fftw_destroy_plan(plan);
    fftw_free(in);
    fftw_free(out);
}

// ---- One Hermitian sequence back to real, first engine ----

void ZekC06FBF(benchmark::State &state) {
    const int n = static_cast<int>(state.range(0));
    std::vector<double> x = data(n), work(n);
    int ifail = 1;
    for (auto _ : state) {
        C06FBF(x.data(), &n, work.data(), &ifail);
        benchmark::DoNotOptimize(x.data());
    }
}

// FFTW's backward real transform overwrites its input, as ours does.
template <unsigned Flags> void FftwRealBackward(benchmark::State &state) {
    const int n = static_cast<int>(state.range(0));
    fftw_complex *in = fftw_alloc_complex(n / 2 + 1);
    double *out = fftw_alloc_real(n);
    fftw_plan plan = fftw_plan_dft_c2r_1d(n, in, out, Flags);
    const std::vector<double> v = data(2 * (n / 2 + 1));
    std::memcpy(in, v.data(), sizeof(double) * v.size());
    for (auto _ : state) {
        fftw_execute(plan);
        benchmark::DoNotOptimize(out);
    }
    fftw_destroy_plan(plan);
    fftw_free(in);
    fftw_free(out);
}

// ---- Many real sequences ----

void ZekC06PPF(benchmark::State &state) {
    const int n = static_cast<int>(state.range(0)), m = kSequences;
    std::vector<double> x = data(static_cast<std::size_t>(n + 2) * m), work(static_cast<std::size_t>(n + 2) * m + 2 * n);
    int ifail = 0;
    for (auto _ : state) {
        C06PPF("F", &m, &n, x.data(), work.data(), &ifail, 1);
        benchmark::DoNotOptimize(x.data());
    }
}

template <unsigned Flags> void FftwManyReal(benchmark::State &state) {
    const int n = static_cast<int>(state.range(0)), m = kSequences;
    double *x = fftw_alloc_real(static_cast<std::size_t>(n + 2) * m);
    fftw_plan plan = fftw_plan_many_dft_r2c(1, &n, m, x, nullptr, 1, n + 2, reinterpret_cast<fftw_complex *>(x),
                                            nullptr, 1, n / 2 + 1, Flags);
    const std::vector<double> v = data(static_cast<std::size_t>(n + 2) * m);
    std::memcpy(x, v.data(), sizeof(double) * v.size());
    for (auto _ : state) {
        fftw_execute(plan);
        benchmark::DoNotOptimize(x);
    }
    fftw_destroy_plan(plan);
    fftw_free(x);
}

// ---- Two dimensions, all of them ----

void ZekC06PJF(benchmark::State &state) {
    const int side = static_cast<int>(state.range(0)), nd[2] = {side, side}, ndim = 2, n = side * side;
    const int lwork = n + 2 * side;
    std::vector<double> x = data(2 * static_cast<std::size_t>(n)), work(2 * static_cast<std::size_t>(lwork));
    int ifail = 0;
    for (auto _ : state) {
        C06PJF("F", &ndim, nd, &n, x.data(), work.data(), &lwork, &ifail, 1);
        benchmark::DoNotOptimize(x.data());
    }
}

template <unsigned Flags> void Fftw2D(benchmark::State &state) {
    const int side = static_cast<int>(state.range(0));
    fftw_complex *x = fftw_alloc_complex(static_cast<std::size_t>(side) * side);
    fftw_plan plan = fftw_plan_dft_2d(side, side, x, x, FFTW_FORWARD, Flags);
    const std::vector<double> v = data(2 * static_cast<std::size_t>(side) * side);
    std::memcpy(x, v.data(), sizeof(double) * v.size());
    for (auto _ : state) {
        fftw_execute(plan);
        benchmark::DoNotOptimize(x);
    }
    fftw_destroy_plan(plan);
    fftw_free(x);
}

const std::vector<long> k2DSizes = {256, 243, 625, 500};

BENCHMARK(ZekC06PCF)->Apply([](auto *b) { args(b, kComplexSizes); });
BENCHMARK(FftwComplex<FFTW_ESTIMATE>)->Apply([](auto *b) { args(b, kComplexSizes); });
BENCHMARK(FftwComplex<FFTW_MEASURE>)->Apply([](auto *b) { args(b, kComplexSizes); });
BENCHMARK(ZekC06PRF)->Apply([](auto *b) { args(b, kManySizes); });
BENCHMARK(FftwMany<FFTW_ESTIMATE>)->Apply([](auto *b) { args(b, kManySizes); });
BENCHMARK(FftwMany<FFTW_MEASURE>)->Apply([](auto *b) { args(b, kManySizes); });
BENCHMARK(ZekC06FAF)->Apply([](auto *b) { args(b, kRealSizes); });
BENCHMARK(FftwReal<FFTW_ESTIMATE>)->Apply([](auto *b) { args(b, kRealSizes); });
BENCHMARK(FftwReal<FFTW_MEASURE>)->Apply([](auto *b) { args(b, kRealSizes); });
BENCHMARK(ZekC06FBF)->Apply([](auto *b) { args(b, kRealSizes); });
BENCHMARK(FftwRealBackward<FFTW_ESTIMATE>)->Apply([](auto *b) { args(b, kRealSizes); });
BENCHMARK(FftwRealBackward<FFTW_MEASURE>)->Apply([](auto *b) { args(b, kRealSizes); });
BENCHMARK(ZekC06PPF)->Apply([](auto *b) { args(b, kManySizes); });
BENCHMARK(FftwManyReal<FFTW_ESTIMATE>)->Apply([](auto *b) { args(b, kManySizes); });
BENCHMARK(FftwManyReal<FFTW_MEASURE>)->Apply([](auto *b) { args(b, kManySizes); });
BENCHMARK(ZekC06PJF)->Apply([](auto *b) { args(b, k2DSizes); });
BENCHMARK(Fftw2D<FFTW_ESTIMATE>)->Apply([](auto *b) { args(b, k2DSizes); });
BENCHMARK(Fftw2D<FFTW_MEASURE>)->Apply([](auto *b) { args(b, k2DSizes); });

} // namespace

BENCHMARK_MAIN();
