// The second engine's complex transforms: one sequence (C06PCF), many sequences by sequence (C06PRF)
// and by element (C06PSF), and the multi-dimensional members (C06PFF, C06PJF) with their workspace rule.
#include <climits>
#include <cmath>

#include "analysis/fft.h"
#include "analysis/fft_exits.h"
#include "frame/ifail.h"
#include "frame/machine.h"
#include "frame/output.h"
#include "zek2/c06.h"
#include "zek2/frame.h"

namespace {

using zek::fft::Index;

bool valid_direct(const char *direct, int len) {
    const char c = zek::fft::option_letter(direct, len);
    return c == 'F' || c == 'B';
}

using zek::fft::Check;
using zek::fft::ExitRow;
using zek::fft::ExitTable;

constexpr ExitRow kC06pcfExitRows[] = {
    {Check::N, 1, 99999, " ** On entry, N .lt. 1: N = %16ld."},
    {Check::Direct, 2, 99998, " ** %1s is an invalid value of DIRECT."},
    {Check::Factors, 3, 99997, " ** N must have less than 31 prime factors: N = %16ld."},
    {Check::Internal, 4, 99996, " ** Unexpected failure in an internal call."},
};
constexpr ExitTable kC06pcfExits{kC06pcfExitRows};

constexpr ExitRow kC06prfExitRows[] = {
    {Check::M, 1, 99999, " ** On entry, M .lt. 1: M = %16ld."},
    {Check::N, 2, 99998, " ** On entry, N .lt. 1: N = %16ld."},
    {Check::Direct, 3, 99997, " ** %1s is an invalid value of DIRECT."},
    {Check::Factors, 4, 99996, " ** N must have less than 31 prime factors: N = %16ld."},
    {Check::Internal, 5, 99995, " ** Unexpected failure in an internal call."},
};
constexpr ExitTable kC06prfExits{kC06prfExitRows};

constexpr ExitRow kC06psfExitRows[] = {
    {Check::M, 1, 99999, " ** M .lt. 1: M = %16ld."},
    {Check::N, 2, 99998, " ** N .lt. 1: N = %16ld."},
    {Check::Direct, 3, 99997, " ** %1s is an invalid value of DIRECT."},
    {Check::Factors, 4, 99996, " ** N must have less than 31 prime factors: N = %16ld."},
    {Check::Internal, 5, 99995, " ** Unexpected failure in an internal call."},
};
constexpr ExitTable kC06psfExits{kC06psfExitRows};

constexpr ExitRow kC06pffExitRows[] = {
    {Check::Ndim, 1, 99999, " ** On entry, NDIM .lt. 1: NDIM = %16ld."},
    {Check::L, 2, 99998, " ** On entry, L .lt. 1 or L .gt. NDIM: L = %16ld."},
    {Check::Direct, 3, 99997, " ** %1s is an invalid value of DIRECT."},
    {Check::Nd, 4, 99996, " ** ND(I) .lt. 1: ND(I) = %12ld for I = %12ld."},
    {Check::Product, 5, 99995, " ** N must = product of the ND(I): N = %12ld, product = %12ld."},
    {Check::Lwork, 6, 99994, " ** LWORK, = %16ld, must be at least %16ld."},
    {Check::Factors, 7, 99993, " ** ND(L) must have < 31 prime factors: ND(L) = %16ld."},
    {Check::Internal, 8, 99992, " ** Unexpected failure in an internal call."},
};
constexpr ExitTable kC06pffExits{kC06pffExitRows};

// C06PJF's records are 180 characters wide.
constexpr ExitRow kC06pjfExitRows[] = {
    {Check::Ndim, 1, 99999, " ** NDIM .lt. 1: NDIM = %16ld."},
    {Check::Direct, 2, 99998, " ** %1s is an invalid value of DIRECT."},
    {Check::Nd, 3, 99997, " ** ND(I) .lt. 1: ND(I) = %16ld for I = %12ld."},
    {Check::Product, 4, 99996, " ** N = the product of the ND(I): N = %12ld, product = %12ld."},
    {Check::Lwork, 5, 99995, " ** LWORK, = %16ld, must be at least %16ld."},
    {Check::Factors, 6, 99994, " ** ND(I) must have < 31 prime factors: for I = %12ld, ND(I) = %12ld."},
    {Check::Internal, 7, 99993, " ** Unexpected failure in an internal call."},
};
constexpr ExitTable kC06pjfExits{kC06pjfExitRows, 180};

// Each ND(I) at least 1 and their product N (held at INT_MAX + 1 once it passes INT_MAX, so that the
// product neither overflows nor matches by wrapping).
bool dimensions_multiply(zek::FailureExit &exit, const ExitTable &exits, int ndim, const int *nd, int n) {
    long long product = 1;
    for (int i = 0; i < ndim; ++i) {
        if (nd[i] < 1) return exits.fail(exit, Check::Nd, {nd[i], i + 1});
        product *= nd[i];
        if (product > INT_MAX) product = static_cast<long long>(INT_MAX) + 1;
    }
    if (product != n) return exits.fail(exit, Check::Product, {n, static_cast<long>(product)});
    return true;
}

// WORK(1) as a complex element: the need as a real, imaginary part 0.
void report_complex(double *work, double need) {
    work[0] = zek::integer_guard(need);
    work[1] = 0.0;
}

void negate_imaginary(int m, Index ld, int n, double *x) {
    for (Index j = 0; j < n; ++j)
        for (Index row = 0; row < m; ++row) x[2 * (j * ld + row) + 1] = -x[2 * (j * ld + row) + 1];
}

// The workspace rule of the multi-dimensional members, in complex elements; -1 for arguments out of
// range and for all dimensions of more than three.
long long work_need(int ndim, const int *nd, int l) {
    if (ndim < 1 || l < 0 || l > ndim) return -1;
    int nontrivial = 0;
    for (int i = 0; i < ndim; ++i) {
        if (nd[i] < 1) return -1;
        if (nd[i] > 1) ++nontrivial;
    }
    if (nontrivial == 0) return 1;
    if (l > 0) {
        const long long ndl = nd[l - 1];
        if (ndl == 1) return 1;
        if (ndim == 1) return 2 * ndl;
        if (ndim == 2) return l == 1 ? (nd[1] + 1LL) * nd[0] : (nd[0] + 1LL) * nd[1];
        long long p = 1, q = 1;
        for (int i = 0; i < l - 1; ++i) p *= nd[i];
        for (int i = l; i < ndim; ++i) q *= nd[i];
        return p != 1 ? (p + 1) * ndl : (q + p) * ndl;
    }
    const long long n1 = nd[0], n2 = ndim >= 2 ? nd[1] : 1, n3 = ndim >= 3 ? nd[2] : 1;
    switch (ndim) {
    case 1: return n1 == ndim ? 1 : 2 * n1;
    case 2: return nontrivial == 1 ? 2 * n1 * n2 : (n2 + 1) * n1 + n2;
    case 3:
        if (nontrivial == 1) return 2 * n1 * n2 * n3;
        if (nontrivial == 2) return (n1 * n2 + 1) * n3 + n1 + n2 - 1;
        return (n1 * n2 + 1) * n3 + n1 + n2;
    default: return -1;
    }
}

// C06PJF's need for any number of dimensions: the scratch of N elements and the table of the longest
// dimension transformed after it; the same as the rule above for up to three dimensions.  The third
// argument (the one dimension of the rule above) has no part here.
long long all_dimensions_need(int ndim, const int *nd, int) {
    if (ndim <= 3) return work_need(ndim, nd, 0);
    long long n = 1, sum = 0;
    int nontrivial = 0;
    for (int i = 0; i < ndim; ++i) {
        n *= nd[i];
        if (nd[i] > 1) {
            sum += nd[i];
            ++nontrivial;
        }
    }
    if (nontrivial == 0) return 1;
    return nontrivial == 1 ? 2 * n : n + sum;
}

// The checks of the multi-dimensional members in their order: NDIM, L (where the routine takes one),
// DIRECT, the dimensions against N, LWORK against the workspace rule NEED (asked only once the
// dimensions are known to multiply to N, so that its products cannot overflow).
bool dimensions_valid(zek::FailureExit &exit, const ExitTable &exits, int ndim, int l, const int *nd, int n,
                      const char *direct, int direct_len, int lwork, long long (*need_of)(int, const int *, int)) {
    if (ndim < 1) return exits.fail(exit, Check::Ndim, {ndim});
    if (l < 1 || l > ndim) return exits.fail(exit, Check::L, {l});
    if (!exits.leading(exit, 0, 0, direct, direct_len)) return false;
    if (!dimensions_multiply(exit, exits, ndim, nd, n)) return false;
    const long long need = need_of(ndim, nd, l);
    if (lwork < need) return exits.fail(exit, Check::Lwork, {lwork, static_cast<long>(need)});
    return true;
}

int clamp_need(long long need) { return need > INT_MAX ? INT_MAX : static_cast<int>(need); }

} // namespace

extern "C" {

// ---- One sequence ----

int C06_COMPLEX_BODY(const char *direct, int n, double *x, double *work, int direct_len) {
    if (n < 1) return 1;
    if (n == 1) {
        report_complex(work, 1.0);
        return 0;
    }
    int factors[zek::fft::kFactorListSize];
    const int nf = zek::fft::factor_list(n, factors);
    if (nf > zek::fft::kSecondEngineMostFactors) return 3;
    double *scratch = work + 2 * static_cast<Index>(n);
    zek::fft::fill_complex_table(n, factors, nf, work, scratch);
    const double scale = 1.0 / std::sqrt(static_cast<double>(n));
    if (zek::fft::option_letter(direct, direct_len) == 'B') {
        // The conjugate of the forward transform of the conjugate.
        negate_imaginary(1, 1, n, x);
        zek::fft::complex_passes(1, 1, n, factors, nf, work, x, scratch, scale, -scale);
    } else {
        C06_COMPLEX_DRIVER(n, x, scratch, work, factors, nf);
    }
    report_complex(work, 2.0 * n);
    return 0;
}

int C06_COMPLEX_ENTRY(const char *direct, int n, double *x, double *work, int direct_len) {
    if (n < 1) return 1;
    if (zek::fft::replacement_present("PC")) {
        zek::fft::replacement_entry();
        return 0;
    }
    return C06_COMPLEX_BODY(direct, n, x, work, direct_len);
}

void C06PCF_WORKER(const char *direct, double *x, int n, double *work, char *errbuf, int *ifail, int direct_len,
                   int) {
    zek::FailureExit exit("C06PCF", errbuf, ifail);
    if (!kC06pcfExits.leading(exit, 0, n, direct, direct_len)) return;
    kC06pcfExits.outcome(exit, C06_COMPLEX_ENTRY(direct, n, x, work, direct_len), 3, {n});
}

void C06PCF(const char *direct, double *x, const int *n, double *work, int *ifail, int direct_len) {
    zek::Front front("C06PCF");
    C06PCF_WORKER(direct, x, *n, work, front.errbuf(), ifail, direct_len, zek::kErrbufLength);
    front.finish(*ifail);
}

// ---- Many sequences ----

void C06_MULTIPLE_COMPLEX_SEQUENCE_BLOCK(int backward, int m, int n, int first, int last, double *x,
                                         double *scratch, const double *trig, const int *factors, int nf) {
    const int mb = last - first + 1;
    if (mb < 1 || first < 1 || last > m || n < 1) return;
    double *xb = x + 2 * static_cast<Index>(first - 1) * n;
    double *sb = scratch + 2 * static_cast<Index>(first - 1) * n;
    // By element in the scratch, so that the passes run at stride 1 over the sequences; X is their
    // second buffer.
    zek::fft::transpose(2, n, mb, xb, n, sb, mb);
    const double scale = 1.0 / std::sqrt(static_cast<double>(n));
    if (backward) negate_imaginary(mb, mb, n, sb);
    zek::fft::complex_passes(mb, mb, n, factors, nf, trig, sb, xb, scale, backward ? -scale : scale);
    zek::fft::transpose(2, mb, n, sb, mb, xb, n);
}

void C06_MULTIPLE_COMPLEX_ELEMENT_BLOCK(int backward, int m, int n, int first, int last, double *x,
                                        double *scratch, const double *trig, const int *factors, int nf) {
    const int mb = last - first + 1;
    if (mb < 1 || first < 1 || last > m || n < 1) return;
    double *xb = x + 2 * static_cast<Index>(first - 1);
    double *sb = scratch + 2 * static_cast<Index>(first - 1) * n;
    const double scale = 1.0 / std::sqrt(static_cast<double>(n));
    if (backward) negate_imaginary(mb, m, n, xb);
    zek::fft::complex_passes(mb, m, n, factors, nf, trig, xb, sb, scale, backward ? -scale : scale);
}

namespace {

using BlockWorker = void (ZEK_CALLBACK *)(int, int, int, int, int, double *, double *, const double *, const int *, int);

int multiple_complex(BlockWorker worker, const char *direct, int m, int n, double *x, double *work, int direct_len) {
    if (m < 1) return 1;
    if (n < 1) return 2;
    if (!valid_direct(direct, direct_len)) return 3;
    if (n == 1) {
        report_complex(work, 1.0);
        return 0;
    }
    int factors[zek::fft::kFactorListSize];
    const int nf = zek::fft::factor_list(n, factors);
    if (nf > zek::fft::kSecondEngineMostFactors) return 4;
    zek::fft::fill_complex_table(n, factors, nf, work, work + 2 * static_cast<Index>(n));
    int first = 1, last = 0;
    zek::fft::block_split(zek::fft::team_size(), zek::fft::team_rank(), m, &first, &last);
    const int backward = zek::fft::option_letter(direct, direct_len) == 'B';
    worker(backward, m, n, first, last, x, work + 2 * static_cast<Index>(n), work, factors, nf);
    report_complex(work, (static_cast<double>(m) + 1.0) * n);
    return 0;
}

} // namespace

int C06_MULTIPLE_COMPLEX_BY_SEQUENCE(const char *direct, int m, int n, double *x, double *work, int direct_len) {
    return multiple_complex(C06_MULTIPLE_COMPLEX_SEQUENCE_BLOCK, direct, m, n, x, work, direct_len);
}

int C06_MULTIPLE_COMPLEX_BY_ELEMENT(const char *direct, int m, int n, double *x, double *work, int direct_len) {
    return multiple_complex(C06_MULTIPLE_COMPLEX_ELEMENT_BLOCK, direct, m, n, x, work, direct_len);
}

namespace {

void multiple_complex_worker(const char *name, bool by_element, const char *direct, int m, int n, double *x,
                             double *work, char *errbuf, int *ifail, int direct_len) {
    zek::FailureExit exit(name, errbuf, ifail);
    const zek::fft::ExitTable &exits = by_element ? kC06psfExits : kC06prfExits;
    if (!exits.leading(exit, m, n, direct, direct_len)) return;
    const int code = by_element ? C06_MULTIPLE_COMPLEX_BY_ELEMENT(direct, m, n, x, work, direct_len)
                                : C06_MULTIPLE_COMPLEX_BY_SEQUENCE(direct, m, n, x, work, direct_len);
    exits.outcome(exit, code, 4, {n});
}

} // namespace

void C06PRF_WORKER(const char *direct, int m, int n, double *x, double *work, char *errbuf, int *ifail,
                   int direct_len, int errbuf_len) {
    (void)errbuf_len;
    multiple_complex_worker("C06PRF", false, direct, m, n, x, work, errbuf, ifail, direct_len);
}

void C06PRF(const char *direct, const int *m, const int *n, double *x, double *work, int *ifail, int direct_len) {
    zek::Front front("C06PRF");
    C06PRF_WORKER(direct, *m, *n, x, work, front.errbuf(), ifail, direct_len, zek::kErrbufLength);
    front.finish(*ifail);
}

void C06PSF(const char *direct, int m, int n, double *x, double *work, char *errbuf, int *ifail, int direct_len,
            int errbuf_len) {
    (void)errbuf_len;
    multiple_complex_worker("C06PSF", true, direct, m, n, x, work, errbuf, ifail, direct_len);
}

// ---- Multi-dimensional arrays ----

int C06_ONE_DIMENSION(const char *direct, int ndim, int l, const int *nd, int n, double *x, double *work,
                      int direct_len) {
    (void)n;
    const int length = nd[l - 1];
    if (length == 1) {
        report_complex(work, 1.0);
        return 0;
    }
    int factors[zek::fft::kFactorListSize];
    const int nf = zek::fft::factor_list(length, factors);
    if (nf > zek::fft::kSecondEngineMostFactors) return 7;
    long long before = 1, after = 1;
    for (int i = 0; i < l - 1; ++i) before *= nd[i];
    for (int i = l; i < ndim; ++i) after *= nd[i];
    double *scratch = work + 2 * static_cast<Index>(length);
    zek::fft::fill_complex_table(length, factors, nf, work, scratch);
    const int backward = zek::fft::option_letter(direct, direct_len) == 'B';
    if (before == 1) {
        // The sequences along the first dimension lie one after the other.
        C06_MULTIPLE_COMPLEX_SEQUENCE_BLOCK(backward, static_cast<int>(after), length, 1, static_cast<int>(after), x,
                                            scratch, work, factors, nf);
    } else {
        // Each slab behind dimension L holds BEFORE sequences stored by element.
        const Index slab = 2 * static_cast<Index>(before) * length;
        for (long long q = 0; q < after; ++q)
            C06_MULTIPLE_COMPLEX_ELEMENT_BLOCK(backward, static_cast<int>(before), length, 1, static_cast<int>(before),
                                               x + q * slab, scratch, work, factors, nf);
    }
    report_complex(work, static_cast<double>(work_need(ndim, nd, l)));
    return 0;
}

void C06_WORK_NEED_BYREF(const int *ndim, const int *nd, const int *l, int *need) {
    *need = clamp_need(work_need(*ndim, nd, *l));
}

void C06_WORK_NEED_ALL_BYREF(const int *ndim, const int *nd, int *need) { *need = clamp_need(work_need(*ndim, nd, 0)); }

void C06PFF_WORKER(const char *direct, int ndim, int l, const int *nd, int n, double *x, double *work, int lwork,
                   char *errbuf, int *ifail, int direct_len, int) {
    zek::FailureExit exit("C06PFF", errbuf, ifail);
    if (!dimensions_valid(exit, kC06pffExits, ndim, l, nd, n, direct, direct_len, lwork, work_need)) return;
    kC06pffExits.outcome(exit, C06_ONE_DIMENSION(direct, ndim, l, nd, n, x, work, direct_len), 7, {nd[l - 1]});
}

void C06PFF(const char *direct, const int *ndim, const int *l, const int *nd, const int *n, double *x, double *work,
            const int *lwork, int *ifail, int direct_len) {
    zek::Front front("C06PFF");
    ZEK_MARK_COMPLEX_ARRAY(*lwork, work);
    C06PFF_WORKER(direct, *ndim, *l, nd, *n, x, work, *lwork, front.errbuf(), ifail, direct_len, zek::kErrbufLength);
    front.finish(*ifail);
}

void C06PJF_WORKER(const char *direct, int ndim, const int *nd, int n, double *x, double *work, int lwork,
                   char *errbuf, int *ifail, int direct_len, int) {
    zek::FailureExit exit("C06PJF", errbuf, ifail);
    if (!dimensions_valid(exit, kC06pjfExits, ndim, 1, nd, n, direct, direct_len, lwork, all_dimensions_need)) return;
    const long long need = all_dimensions_need(ndim, nd, 0);
    int factors[zek::fft::kFactorListSize];
    for (int i = 0; i < ndim; ++i) {
        if (zek::fft::factor_list(nd[i], factors) > zek::fft::kSecondEngineMostFactors) {
            kC06pjfExits.fail(exit, Check::Factors, {i + 1, nd[i]});
            return;
        }
    }
    for (int l = 1; l <= ndim; ++l) {
        if (C06_ONE_DIMENSION(direct, ndim, l, nd, n, x, work, direct_len) != 0) {
            kC06pjfExits.fail(exit, Check::Internal);
            return;
        }
    }
    report_complex(work, static_cast<double>(need));
    exit.succeed();
}

void C06PJF(const char *direct, const int *ndim, const int *nd, const int *n, double *x, double *work,
            const int *lwork, int *ifail, int direct_len) {
    zek::Front front("C06PJF");
    ZEK_MARK_COMPLEX_ARRAY(*lwork, work);
    C06PJF_WORKER(direct, *ndim, nd, *n, x, work, *lwork, front.errbuf(), ifail, direct_len, zek::kErrbufLength);
    front.finish(*ifail);
}

} // extern "C"
