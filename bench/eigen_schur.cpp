// The real Schur form of a Hessenberg matrix (F08PEF, eigenvalues only and with Schur vectors) and the
// eigenvectors of the Schur form (F08QKF), side by side with DHSEQR and DTREVC of reference LAPACK (over
// reference BLAS) and of serial OpenBLAS.  Compare the times of one size across the rows: the ratios
// are the result.
#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <algorithm>
#include <cstdio>
#include <random>
#include <vector>

#include "zek2/f08.h"

namespace {

using Hseqr = void (*)(const char *, const char *, const int *, const int *, const int *, double *, const int *,
                       double *, double *, double *, const int *, double *, const int *, int *, long, long);
using Trevc = void (*)(const char *, const char *, int *, const int *, const double *, const int *, double *,
                       const int *, double *, const int *, const int *, int *, double *, int *, long, long);

struct Peer {
    Hseqr hseqr = nullptr;
    Trevc trevc = nullptr;
    bool ok() const { return hseqr && trevc; }
};

Peer load_peer(const char *blas, const char *lapack) {
    Peer p;
    Lmid_t lmid = LM_ID_NEWLM;
    if (blas != nullptr) {
        void *h = dlmopen(LM_ID_NEWLM, blas, RTLD_NOW | RTLD_LOCAL);
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
    p.hseqr = reinterpret_cast<Hseqr>(dlsym(l, "dhseqr_"));
    p.trevc = reinterpret_cast<Trevc>(dlsym(l, "dtrevc_"));
    return p;
}

const Peer &peer(int which) {
    static const Peer reference = load_peer("/usr/lib/x86_64-linux-gnu/blas/libblas.so.3",
                                            "/usr/lib/x86_64-linux-gnu/lapack/liblapack.so.3");
    static const Peer openblas = load_peer(nullptr, "/usr/lib/x86_64-linux-gnu/openblas-serial/liblapack.so.3");
    return which == 1 ? reference : openblas;
}

std::vector<double> hessenberg(int n) {
    std::mt19937_64 engine(7);
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    std::vector<double> h(static_cast<std::size_t>(n) * n, 0.0);
    for (int j = 0; j < n; ++j)
        for (int i = 0; i <= std::min(j + 1, n - 1); ++i) h[i + static_cast<std::size_t>(j) * n] = u(engine);
    return h;
}

// which: 0 ours, 1 reference LAPACK, 2 OpenBLAS.  job "E"/"N" or "S"/"I".
void schur(benchmark::State &state, int which, const char *job, const char *compz) {
    const int n = static_cast<int>(state.range(0)), one = 1, lwork = 11 * n;
    if (which != 0 && !peer(which).ok()) {
        state.SkipWithError("peer not loaded");
        return;
    }
    const std::vector<double> h0 = hessenberg(n);
    std::vector<double> h, z(h0.size()), wr(n), wi(n), work(lwork);
    int info = 0;
    for (auto _ : state) {
        state.PauseTiming();
        h = h0;
        state.ResumeTiming();
        if (which == 0)
            F08PEF(job, compz, &n, &one, &n, h.data(), &n, wr.data(), wi.data(), z.data(), &n, work.data(), &lwork,
                   &info, 1, 1);
        else
            peer(which).hseqr(job, compz, &n, &one, &n, h.data(), &n, wr.data(), wi.data(), z.data(), &n, work.data(),
                              &lwork, &info, 1, 1);
        benchmark::DoNotOptimize(h.data());
    }
    if (info != 0) state.SkipWithError("not converged");
}

void vectors(benchmark::State &state, int which) {
    const int n = static_cast<int>(state.range(0)), one = 1, lwork = 11 * n;
    if (which != 0 && !peer(which).ok()) {
        state.SkipWithError("peer not loaded");
        return;
    }
    std::vector<double> t = hessenberg(n), q(t.size()), wr(n), wi(n), work(lwork), vl(t.size()), vr(t.size());
    int info = 0, m = 0;
    std::vector<int> select(n, 1);
    F08PEF("S", "I", &n, &one, &n, t.data(), &n, wr.data(), wi.data(), q.data(), &n, work.data(), &lwork, &info, 1, 1);
    for (auto _ : state) {
        state.PauseTiming();
        vl = q;
        vr = q;
        state.ResumeTiming();
        if (which == 0)
            F08QKF("B", "B", select.data(), &n, t.data(), &n, vl.data(), &n, vr.data(), &n, &n, &m, work.data(), &info,
                   1, 1);
        else
            peer(which).trevc("B", "B", select.data(), &n, t.data(), &n, vl.data(), &n, vr.data(), &n, &n, &m,
                              work.data(), &info, 1, 1);
        benchmark::DoNotOptimize(vr.data());
    }
}

void args(benchmark::internal::Benchmark *b) {
    for (int n : {50, 100, 200, 400}) b->Arg(n);
    b->Unit(benchmark::kMillisecond);
}

} // namespace

BENCHMARK_CAPTURE(schur, eigenvalues_ours, 0, "E", "N")->Apply(args);
BENCHMARK_CAPTURE(schur, eigenvalues_reference, 1, "E", "N")->Apply(args);
BENCHMARK_CAPTURE(schur, eigenvalues_openblas, 2, "E", "N")->Apply(args);
BENCHMARK_CAPTURE(schur, schur_vectors_ours, 0, "S", "I")->Apply(args);
BENCHMARK_CAPTURE(schur, schur_vectors_reference, 1, "S", "I")->Apply(args);
BENCHMARK_CAPTURE(schur, schur_vectors_openblas, 2, "S", "I")->Apply(args);
BENCHMARK_CAPTURE(vectors, ours, 0)->Apply(args);
BENCHMARK_CAPTURE(vectors, reference, 1)->Apply(args);
BENCHMARK_CAPTURE(vectors, openblas, 2)->Apply(args);

BENCHMARK_MAIN();
