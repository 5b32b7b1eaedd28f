// The first engine: C06FAF, C06FBF and C06GBF.
//
// One real sequence in place with a workspace of N reals.  The factorisation into squares gives the
// passes; the data are put in digit-reversed order (through WORK), the trigonometric table is built
// in WORK, and the real passes join ever longer packed Hermitian transforms until the whole length is
// reached.  The backward transform runs the inverse passes in the opposite order and undoes the
// permutation last.
#include <cmath>
#include <cstring>

#include "analysis/fft.h"
#include "analysis/fft_exits.h"
#include "frame/ifail.h"
#include "zek2/c06.h"
#include "zek2/frame.h"

namespace {

using zek::fft::Index;

int list_length(const int *factors) {
    int count = 0;
    while (factors[count] != 0) ++count;
    return count;
}

zek::fft::RealTable first_engine_table(int n, const double *trig) {
    const int h = (n + 1) / 2;
    return zek::fft::RealTable{trig, trig + (h - 1)};
}

// The table in WORK(N): cosines first, sines behind them.
void fill_first_engine_table(int n, double *work) {
    const int h = (n + 1) / 2;
    zek::fft::fill_real_table(n, work, work + (h - 1));
}

using zek::fft::Check;

// C06FAF and C06FBF end alike; the first engine needs two points at least.
constexpr zek::fft::ExitRow kFirstEngineExitRows[] = {
    {Check::Factors, 1, 99998, " ** At least one prime factor of N is greater than 19.\n    N =%16ld."},
    {Check::Count, 2, 99997, " ** N has more than 20 prime factors.\n    N =%16ld."},
    {Check::N, 3, 99999, " ** On entry, N .le. 1: N =%16ld."},
    {Check::Internal, 4, 99996, " ** Unexpected failure in an internal call."},
};
constexpr zek::fft::ExitTable kFirstEngineExits{kFirstEngineExitRows};

constexpr zek::fft::ExitRow kC06gbfExitRows[] = {
    {Check::N, 1, 99999, " ** On entry, N .lt. 1: N = %16ld."},
};
constexpr zek::fft::ExitTable kC06gbfExits{kC06gbfExitRows};

// Argument check and factorisation shared by both directions; false after a failure exit.
bool check_and_factor(zek::FailureExit &exit, int n, int *factors) {
    if (n <= 1) return kFirstEngineExits.fail(exit, Check::N, {n});
    int code = 0;
    zek::fft::factor_squares(n, zek::fft::kFirstEngineLargestPrime, zek::fft::kFirstEngineLargestMerge, factors,
                             &code);
    switch (code) {
    case 0: return true;
    case 1: return kFirstEngineExits.fail(exit, Check::Factors, {n});
    case 2: return kFirstEngineExits.fail(exit, Check::Count, {n});
    default: return kFirstEngineExits.fail(exit, Check::Internal);
    }
}

// One real sequence either way.  Forward: digit-reversed copy into WORK and back, table, real
// passes.  Backward: table, Hermitian passes, the permutation undone into WORK.  Both scale by
// 1/sqrt(N).
template <bool kForward> void first_engine(const char *name, double *x, int n, double *work, char *errbuf, int *ifail) {
    zek::FailureExit exit(name, errbuf, ifail);
    int factors[zek::fft::kFactorListSize];
    if (!check_and_factor(exit, n, factors)) return;
    const int nf = list_length(factors);
    const double scale = 1.0 / std::sqrt(static_cast<double>(n));
    if constexpr (kForward) {
        zek::fft::digit_permute(1, n, factors, nf, x, work);
        std::memcpy(x, work, sizeof(double) * static_cast<std::size_t>(n));
        fill_first_engine_table(n, work);
        C06_REAL_PASSES(x, n, factors, work);
        for (Index i = 0; i < n; ++i) x[i] *= scale;
    } else {
        fill_first_engine_table(n, work);
        C06_HERMITIAN_PASSES(x, n, factors, work);
        zek::fft::digit_permute_inverse(1, n, factors, nf, x, work);
        // Scaled where it stands, then copied whole: a loop reading WORK and writing X would stall
        // whenever the two arrays lie a multiple of 4096 bytes apart.
        for (Index i = 0; i < n; ++i) work[i] *= scale;
        std::memcpy(x, work, sizeof(double) * static_cast<std::size_t>(n));
    }
    exit.succeed();
}

} // namespace

extern "C" {

void C06_REAL_PASSES(double *x, int n, const int *factors, const double *trig) {
    if (n < 2) return;
    const zek::fft::RealTable t = first_engine_table(n, trig);
    int k = 1;
    for (int f = 0; factors[f] != 0; ++f) {
        if (factors[f] == 1) continue;
        zek::fft::real_pass_forward(factors[f], 1, n, k, x, t, nullptr);
        k *= factors[f];
    }
}

void C06_HERMITIAN_PASSES(double *x, int n, const int *factors, const double *trig) {
    if (n < 2) return;
    const zek::fft::RealTable t = first_engine_table(n, trig);
    int k = n;
    for (int f = list_length(factors) - 1; f >= 0; --f) {
        if (factors[f] == 1) continue;
        k /= factors[f];
        zek::fft::real_pass_backward(factors[f], 1, n, k, x, t, nullptr);
    }
}

void C06FAF_WORKER(double *x, int n, double *work, char *errbuf, int *ifail, int) {
    first_engine<true>("C06FAF", x, n, work, errbuf, ifail);
}

void C06FBF_WORKER(double *x, int n, double *work, char *errbuf, int *ifail, int) {
    first_engine<false>("C06FBF", x, n, work, errbuf, ifail);
}

void C06GBF_WORKER(double *x, int n, char *errbuf, int *ifail, int) {
    zek::FailureExit exit("C06GBF", errbuf, ifail);
    if (!kC06gbfExits.leading(exit, 0, n, nullptr, 0)) return;
    // The imaginary parts stand from X((N+4)/2) (one-based) to the end.
    for (Index i = (n + 4) / 2 - 1; i < n; ++i) x[i] = -x[i];
    exit.succeed();
}

void C06FAF(double *x, const int *n, double *work, int *ifail) {
    zek::Front front("C06FAF");
    ZEK_MARK_REAL_ARRAY(*n, work);
    C06FAF_WORKER(x, *n, work, front.errbuf(), ifail, zek::kErrbufLength);
    front.finish(*ifail);
}

void C06FBF(double *x, const int *n, double *work, int *ifail) {
    zek::Front front("C06FBF");
    ZEK_MARK_REAL_ARRAY(*n, work);
    C06FBF_WORKER(x, *n, work, front.errbuf(), ifail, zek::kErrbufLength);
    front.finish(*ifail);
}

void C06GBF(double *x, const int *n, int *ifail) {
    zek::Front front("C06GBF");
    C06GBF_WORKER(x, *n, front.errbuf(), ifail, zek::kErrbufLength);
    front.finish(*ifail);
}

} // extern "C"
