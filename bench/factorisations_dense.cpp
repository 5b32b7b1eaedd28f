// LU (F07ADF, unblocked and blocked), Cholesky (F07FDF, unblocked and blocked) and the QR factorisation
// F01QCF, side by side with DGETRF, DPOTRF and DGEQRF of reference LAPACK (over reference BLAS) and of
// serial OpenBLAS.  Each peer lives in a link-map namespace of its own.  Compare the times of one size
// across the rows: the ratios are the result.
#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "zek2/f01.h"
#include "zek2/f07.h"

namespace {

using Getrf = void (*)(const int *, const int *, double *, const int *, int *, int *);
using Potrf = void (*)(const char *, const int *, double *, const int *, int *, int);
using Geqrf = void (*)(const int *, const int *, double *, const int *, double *, double *, const int *, int *);

struct Peer {
    Getrf getrf = nullptr;
    Potrf potrf = nullptr;
    Geqrf geqrf = nullptr;
    bool ok() const { return getrf && potrf && geqrf; }
};

// Loads BLAS (when given) and LAPACK into a fresh namespace; LAPACK then binds to that BLAS.
Peer load_peer(const char *blas, const char *lapack) {
    Peer p;
    Lmid_t lmid = LM_ID_NEWLM;
    void *h = nullptr;
    if (blas != nullptr) {
        h = dlmopen(LM_ID_NEWLM, blas, RTLD_NOW | RTLD_LOCAL);
        if (h == nullptr || dlinfo(h, RTLD_DI_LMID, &lmid) != 0) {
            std::fprintf(stderr, "cannot load %s: %s\n", blas, dlerror());
            return p;
        }
    }
    void *l = dlmopen(lmid, lapack, RTLD_NOW | RTLD_LOCAL);
    if (l == nullptr) {
        std::fprintf(stderr, "cannot load %s: %s\n", lapack, dlerror());
        return p;
    }
    p.getrf = reinterpret_cast<Getrf>(dlsym(l, "dgetrf_"));
    p.potrf = reinterpret_cast<Potrf>(dlsym(l, "dpotrf_"));
    p.geqrf = reinterpret_cast<Geqrf>(dlsym(l, "dgeqrf_"));
    return p;
}

const Peer &reference() {
    static const Peer p = load_peer("/usr/lib/x86_64-linux-gnu/blas/libblas.so.3",
                                    "/usr/lib/x86_64-linux-gnu/lapack/liblapack.so.3");
    return p;
}
const Peer &openblas() {
    static const Peer p = load_peer(nullptr, "/usr/lib/x86_64-linux-gnu/openblas-serial/liblapack.so.3");
    return p;
}

std::vector<double> random_matrix(int n, bool spd) {
    std::mt19937_64 engine(42);
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    std::vector<double> a(static_cast<std::size_t>(n) * n);
    for (double &x : a) x = u(engine);
    if (spd) {
        // Diagonally dominant and symmetric: positive definite.
        for (int j = 0; j < n; ++j)
            for (int i = 0; i < j; ++i) a[i + static_cast<std::size_t>(j) * n] = a[j + static_cast<std::size_t>(i) * n];
        for (int i = 0; i < n; ++i) a[i + static_cast<std::size_t>(i) * n] = n;
    }
    return a;
}

void set_block(const char *name, int nb) {
    const int param = 1, set = 1;
    F07_BLOCK_SIZE(&param, name, &nb, &set, 6);
}

enum class Who { Ours, Reference, OpenBlas };

const Peer *peer_of(Who who) { return who == Who::Reference ? &reference() : who == Who::OpenBlas ? &openblas() : nullptr; }

// Each iteration factorises a fresh copy; the copy is outside the timing.
template <class Factor> void run(benchmark::State &state, bool spd, Factor factor) {
    const int n = static_cast<int>(state.range(0));
    const std::vector<double> a = random_matrix(n, spd);
    std::vector<double> w;
    for (auto _ : state) {
        state.PauseTiming();
        w = a;
        state.ResumeTiming();
        factor(n, w.data());
        benchmark::DoNotOptimize(w.data());
    }
    state.counters["n"] = n;
}

void lu(benchmark::State &state, Who who, int nb) {
    const Peer *p = peer_of(who);
    if (p != nullptr && !p->ok()) return state.SkipWithError("peer not loaded");
    set_block("F07ADF", nb);
    std::vector<int> ipiv(state.range(0));
    run(state, false, [&](int n, double *a) {
        int info = 0;
        if (p == nullptr)
            F07ADF(&n, &n, a, &n, ipiv.data(), &info);
        else
            p->getrf(&n, &n, a, &n, ipiv.data(), &info);
    });
    set_block("F07ADF", 1);
}

void cholesky(benchmark::State &state, Who who, int nb, const char *uplo) {
    const Peer *p = peer_of(who);
    if (p != nullptr && !p->ok()) return state.SkipWithError("peer not loaded");
    set_block("F07FDF", nb);
    run(state, true, [&](int n, double *a) {
        int info = 0;
        if (p == nullptr)
            F07FDF(uplo, &n, a, &n, &info, 1);
        else
            p->potrf(uplo, &n, a, &n, &info, 1);
    });
    set_block("F07FDF", 1);
}

void qr(benchmark::State &state, Who who) {
    const Peer *p = peer_of(who);
    if (p != nullptr && !p->ok()) return state.SkipWithError("peer not loaded");
    const int n = static_cast<int>(state.range(0));
    std::vector<double> tau(n), work(static_cast<std::size_t>(n) * 64);
    const int lwork = static_cast<int>(work.size());
    run(state, false, [&](int m, double *a) {
        int info = 0, ifail = 1;
        if (p == nullptr)
            F01QCF(&m, &m, a, &m, tau.data(), &ifail);
        else
            p->geqrf(&m, &m, a, &m, tau.data(), work.data(), &lwork, &info);
    });
}

void sizes(benchmark::internal::Benchmark *b) {
    for (int n : {50, 100, 200, 500, 1000, 2000}) b->Arg(n);
    b->Unit(benchmark::kMillisecond);
}

BENCHMARK_CAPTURE(lu, zek_unblocked, Who::Ours, 1)->Apply(sizes);
BENCHMARK_CAPTURE(lu, zek_nb64, Who::Ours, 64)->Apply(sizes);
BENCHMARK_CAPTURE(lu, reference_lapack, Who::Reference, 1)->Apply(sizes);
BENCHMARK_CAPTURE(lu, openblas_serial, Who::OpenBlas, 1)->Apply(sizes);
BENCHMARK_CAPTURE(cholesky, zek_unblocked_lower, Who::Ours, 1, "L")->Apply(sizes);
BENCHMARK_CAPTURE(cholesky, zek_nb64_lower, Who::Ours, 64, "L")->Apply(sizes);
BENCHMARK_CAPTURE(cholesky, zek_unblocked_upper, Who::Ours, 1, "U")->Apply(sizes);
BENCHMARK_CAPTURE(cholesky, zek_nb64_upper, Who::Ours, 64, "U")->Apply(sizes);
BENCHMARK_CAPTURE(cholesky, reference_lapack_lower, Who::Reference, 1, "L")->Apply(sizes);
BENCHMARK_CAPTURE(cholesky, reference_lapack_upper, Who::Reference, 1, "U")->Apply(sizes);
BENCHMARK_CAPTURE(cholesky, openblas_serial_lower, Who::OpenBlas, 1, "L")->Apply(sizes);
BENCHMARK_CAPTURE(qr, zek_f01qcf, Who::Ours)->Apply(sizes);
BENCHMARK_CAPTURE(qr, reference_lapack, Who::Reference)->Apply(sizes);
BENCHMARK_CAPTURE(qr, openblas_serial, Who::OpenBlas)->Apply(sizes);

} // namespace

BENCHMARK_MAIN();
