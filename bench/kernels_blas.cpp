// The F06 kernels side by side with the reference BLAS and serial OpenBLAS, measured in the same run.
// Each benchmark name ends in /zek, /reference or /openblas; compare the three at equal sizes.
//
//   cmake --preset bench -B /tmp/bench-kernels && cmake --build /tmp/bench-kernels -j2
//   /tmp/bench-kernels/bench/bench_kernels_blas --benchmark_filter=dgemm
#include <benchmark/benchmark.h>

#include <dlfcn.h>

#include <cmath>
#include <cstdio>
#include <random>
#include <vector>

#include "kernels/level1.h"
#include "kernels/level2.h"
#include "kernels/level3.h"
#include "kernels/rotations.h"

namespace {

using L = std::size_t;

// The Fortran interface of a peer library.
struct Peer {
    void *handle = nullptr;
    double (*ddot)(const int *, const double *, const int *, const double *, const int *) = nullptr;
    void (*daxpy)(const int *, const double *, const double *, const int *, double *, const int *) = nullptr;
    double (*dnrm2)(const int *, const double *, const int *) = nullptr;
    void (*drot)(const int *, double *, const int *, double *, const int *, const double *, const double *) = nullptr;
    void (*dgemv)(const char *, const int *, const int *, const double *, const double *, const int *, const double *,
                  const int *, const double *, double *, const int *, L) = nullptr;
    void (*dtrsv)(const char *, const char *, const char *, const int *, const double *, const int *, double *,
                  const int *, L, L, L) = nullptr;
    void (*dger)(const int *, const int *, const double *, const double *, const int *, const double *, const int *,
                 double *, const int *) = nullptr;
    void (*dgemm)(const char *, const char *, const int *, const int *, const int *, const double *, const double *,
                  const int *, const double *, const int *, const double *, double *, const int *, L, L) = nullptr;
    void (*dtrsm)(const char *, const char *, const char *, const char *, const int *, const int *, const double *,
                  const double *, const int *, double *, const int *, L, L, L, L) = nullptr;

    explicit Peer(const char *path) {
        handle = dlopen(path, RTLD_NOW | RTLD_LOCAL);
        if (handle == nullptr) {
            std::fprintf(stderr, "cannot load %s: %s\n", path, dlerror());
            return;
        }
        bind(ddot, "ddot_");
        bind(daxpy, "daxpy_");
        bind(dnrm2, "dnrm2_");
        bind(drot, "drot_");
        bind(dgemv, "dgemv_");
        bind(dtrsv, "dtrsv_");
        bind(dger, "dger_");
        bind(dgemm, "dgemm_");
        bind(dtrsm, "dtrsm_");
    }
    template <class F> void bind(F &f, const char *name) { f = reinterpret_cast<F>(dlsym(handle, name)); }
};

const Peer &reference() {
    static const Peer peer("/usr/lib/x86_64-linux-gnu/blas/libblas.so.3");
    return peer;
}
const Peer &openblas() {
    static const Peer peer("/usr/lib/x86_64-linux-gnu/openblas-serial/libblas.so.3");
    return peer;
}

enum Impl { kZek, kReference, kOpenBlas };

const Peer *peer_of(Impl impl) { return impl == kReference ? &reference() : impl == kOpenBlas ? &openblas() : nullptr; }

std::vector<double> random_vector(std::size_t n, unsigned seed = 1) {
    std::mt19937_64 engine(seed);
    std::uniform_real_distribution<double> dist(-1.0, 1.0);
    std::vector<double> v(n);
    for (double &x : v) x = dist(engine);
    return v;
}

// A well-conditioned lower triangle: small off-diagonal entries, diagonal near 2.
std::vector<double> lower_triangle(int n) {
    std::vector<double> a = random_vector(static_cast<std::size_t>(n) * n, 2);
    for (int j = 0; j < n; ++j) {
        for (int i = 0; i < n; ++i) a[i + static_cast<std::size_t>(j) * n] /= n;
        a[j + static_cast<std::size_t>(j) * n] = 2.0;
    }
    return a;
}

bool skip_missing(benchmark::State &state, Impl impl) {
    if (impl != kZek && peer_of(impl)->handle == nullptr) {
        state.SkipWithError("peer library not installed");
        return true;
    }
    return false;
}

void flops(benchmark::State &state, double per_iteration) {
    state.counters["GFlops"] = benchmark::Counter(per_iteration * 1e-9 * static_cast<double>(state.iterations()),
                                                  benchmark::Counter::kIsRate);
}

void ddot(benchmark::State &state, Impl impl) {
    if (skip_missing(state, impl)) return;
    const int n = static_cast<int>(state.range(0)), one = 1;
    const std::vector<double> x = random_vector(n, 1), y = random_vector(n, 2);
    for (auto _ : state) {
        const double r = impl == kZek ? zek::ddot(n, x.data(), 1, y.data(), 1)
                                      : peer_of(impl)->ddot(&n, x.data(), &one, y.data(), &one);
        benchmark::DoNotOptimize(r);
    }
    flops(state, 2.0 * n);
}

void daxpy(benchmark::State &state, Impl impl) {
    if (skip_missing(state, impl)) return;
    const int n = static_cast<int>(state.range(0)), one = 1;
    const std::vector<double> x = random_vector(n, 1);
    std::vector<double> y = random_vector(n, 2);
    const double alpha = 1e-9;
    for (auto _ : state) {
        if (impl == kZek)
            zek::daxpy(n, alpha, x.data(), 1, y.data(), 1);
        else
            peer_of(impl)->daxpy(&n, &alpha, x.data(), &one, y.data(), &one);
        benchmark::ClobberMemory();
    }
    flops(state, 2.0 * n);
}

void dnrm2(benchmark::State &state, Impl impl) {
    if (skip_missing(state, impl)) return;
    const int n = static_cast<int>(state.range(0)), one = 1;
    const std::vector<double> x = random_vector(n, 1);
    for (auto _ : state) {
        const double r = impl == kZek ? zek::dnrm2(n, x.data(), 1) : peer_of(impl)->dnrm2(&n, x.data(), &one);
        benchmark::DoNotOptimize(r);
    }
    flops(state, 2.0 * n);
}

void dgemv(benchmark::State &state, Impl impl, const char *trans) {
    if (skip_missing(state, impl)) return;
    const int n = static_cast<int>(state.range(0)), one = 1;
    const std::vector<double> a = random_vector(static_cast<std::size_t>(n) * n, 1), x = random_vector(n, 2);
    std::vector<double> y = random_vector(n, 3);
    const double alpha = 1.0, beta = 0.5;
    for (auto _ : state) {
        if (impl == kZek)
            zek::dgemv(trans, n, n, alpha, a.data(), n, x.data(), 1, beta, y.data(), 1);
        else
            peer_of(impl)->dgemv(trans, &n, &n, &alpha, a.data(), &n, x.data(), &one, &beta, y.data(), &one, 1);
        benchmark::ClobberMemory();
    }
    flops(state, 2.0 * n * n);
}

void dtrsv(benchmark::State &state, Impl impl, const char *trans) {
    if (skip_missing(state, impl)) return;
    const int n = static_cast<int>(state.range(0)), one = 1;
    const std::vector<double> a = lower_triangle(n), x0 = random_vector(n, 2);
    std::vector<double> x = x0;
    for (auto _ : state) {
        if (impl == kZek)
            zek::dtrsv("L", trans, "N", n, a.data(), n, x.data(), 1);
        else
            peer_of(impl)->dtrsv("L", trans, "N", &n, a.data(), &n, x.data(), &one, 1, 1, 1);
        benchmark::ClobberMemory();
        // The right-hand side is restored inside the timing, at the same cost for every library.
        x = x0;
    }
    flops(state, 1.0 * n * n);
}

void dger(benchmark::State &state, Impl impl) {
    if (skip_missing(state, impl)) return;
    const int n = static_cast<int>(state.range(0)), one = 1;
    std::vector<double> a = random_vector(static_cast<std::size_t>(n) * n, 1);
    const std::vector<double> x = random_vector(n, 2), y = random_vector(n, 3);
    const double alpha = 1e-9;
    for (auto _ : state) {
        if (impl == kZek)
            zek::dger(n, n, alpha, x.data(), 1, y.data(), 1, a.data(), n);
        else
            peer_of(impl)->dger(&n, &n, &alpha, x.data(), &one, y.data(), &one, a.data(), &n);
        benchmark::ClobberMemory();
    }
    flops(state, 2.0 * n * n);
}

void dgemm(benchmark::State &state, Impl impl, const char *ta, const char *tb) {
    if (skip_missing(state, impl)) return;
    const int n = static_cast<int>(state.range(0));
    const std::vector<double> a = random_vector(static_cast<std::size_t>(n) * n, 1);
    const std::vector<double> b = random_vector(static_cast<std::size_t>(n) * n, 2);
    std::vector<double> c = random_vector(static_cast<std::size_t>(n) * n, 3);
    const double alpha = 1.0, beta = 0.5;
    for (auto _ : state) {
        if (impl == kZek)
            zek::dgemm(ta, tb, n, n, n, alpha, a.data(), n, b.data(), n, beta, c.data(), n);
        else
            peer_of(impl)->dgemm(ta, tb, &n, &n, &n, &alpha, a.data(), &n, b.data(), &n, &beta, c.data(), &n, 1, 1);
        benchmark::ClobberMemory();
    }
    flops(state, 2.0 * n * n * n);
}

void dtrsm(benchmark::State &state, Impl impl, const char *side, const char *trans) {
    if (skip_missing(state, impl)) return;
    const int n = static_cast<int>(state.range(0));
    const std::vector<double> a = lower_triangle(n), b0 = random_vector(static_cast<std::size_t>(n) * n, 2);
    std::vector<double> b = b0;
    const double alpha = 1.0;
    for (auto _ : state) {
        if (impl == kZek)
            zek::dtrsm(side, "L", trans, "N", n, n, alpha, a.data(), n, b.data(), n);
        else
            peer_of(impl)->dtrsm(side, "L", trans, "N", &n, &n, &alpha, a.data(), &n, b.data(), &n, 1, 1, 1, 1);
        benchmark::ClobberMemory();
        b = b0;
    }
    flops(state, 1.0 * n * n * n);
}

// A sequence of n-1 rotations in planes (k, k+1) applied from the left to an n by n matrix: one call of
// the general application here, n-1 row rotations through DROT for the peers.
void rotation_sequence(benchmark::State &state, Impl impl) {
    if (skip_missing(state, impl)) return;
    const int n = static_cast<int>(state.range(0));
    std::vector<double> a = random_vector(static_cast<std::size_t>(n) * n, 1);
    std::vector<double> c(static_cast<std::size_t>(n)), s(static_cast<std::size_t>(n));
    const std::vector<double> t = random_vector(n, 2);
    for (int k = 0; k < n; ++k) {
        c[k] = 1.0 / std::sqrt(1.0 + t[k] * t[k]);
        s[k] = c[k] * t[k];
    }
    for (auto _ : state) {
        if (impl == kZek) {
            zek::rotation_apply_general('L', 'V', 'F', n, n, 1, n, c.data(), s.data(), a.data(), n);
        } else {
            for (int k = 0; k < n - 1; ++k)
                peer_of(impl)->drot(&n, a.data() + k, &n, a.data() + k + 1, &n, &c[k], &s[k]);
        }
        benchmark::ClobberMemory();
    }
    flops(state, 6.0 * (n - 1) * n);
}

#define ZEK_BENCH_THREE(fn, sizes)                                                             \
    BENCHMARK_CAPTURE(fn, zek, kZek)->sizes;                                                   \
    BENCHMARK_CAPTURE(fn, reference, kReference)->sizes;                                       \
    BENCHMARK_CAPTURE(fn, openblas, kOpenBlas)->sizes
#define ZEK_BENCH_THREE_WITH(fn, tag, sizes, ...)                                              \
    BENCHMARK_CAPTURE(fn, tag##_zek, kZek, __VA_ARGS__)->sizes;                                \
    BENCHMARK_CAPTURE(fn, tag##_reference, kReference, __VA_ARGS__)->sizes;                    \
    BENCHMARK_CAPTURE(fn, tag##_openblas, kOpenBlas, __VA_ARGS__)->sizes

#define VECTOR_SIZES Arg(10)->Arg(100)->Arg(1000)->Arg(2000)
#define MATRIX_SIZES Arg(10)->Arg(100)->Arg(500)->Arg(2000)
#define CUBIC_SIZES Arg(10)->Arg(100)->Arg(500)->Arg(1000)->Arg(2000)->Unit(benchmark::kMillisecond)

ZEK_BENCH_THREE(ddot, VECTOR_SIZES);
ZEK_BENCH_THREE(daxpy, VECTOR_SIZES);
ZEK_BENCH_THREE(dnrm2, VECTOR_SIZES);
ZEK_BENCH_THREE_WITH(dgemv, N, MATRIX_SIZES, "N");
ZEK_BENCH_THREE_WITH(dgemv, T, MATRIX_SIZES, "T");
ZEK_BENCH_THREE_WITH(dtrsv, N, MATRIX_SIZES, "N");
ZEK_BENCH_THREE_WITH(dtrsv, T, MATRIX_SIZES, "T");
ZEK_BENCH_THREE(dger, MATRIX_SIZES);
ZEK_BENCH_THREE_WITH(dgemm, NN, CUBIC_SIZES, "N", "N");
ZEK_BENCH_THREE_WITH(dgemm, TN, CUBIC_SIZES, "T", "N");
ZEK_BENCH_THREE_WITH(dtrsm, LLN, CUBIC_SIZES, "L", "N");
ZEK_BENCH_THREE_WITH(dtrsm, RLN, CUBIC_SIZES, "R", "N");
ZEK_BENCH_THREE(rotation_sequence, MATRIX_SIZES);

} // namespace

BENCHMARK_MAIN();
