// The second engine's multiple real transforms: C06PPF, the kept-table check and the by-element core
// that the sine, cosine and quarter-wave transforms share.
//
// The core works on M sequences stored by element, so that every pass runs at stride 1 over the
// sequences: the rows are digit-permuted into a buffer, the real passes run there in place, and the
// packed Hermitian result is unpacked into pairs (re, im) of rows.  C06PPF's sequences lie one after
// the other, so they are transposed into the scratch (tiles of 64), transformed, and transposed back.
#include <cmath>
#include <cstring>

#include "analysis/fft.h"
#include "analysis/fft_exits.h"
#include "frame/ifail.h"
#include "frame/machine.h"
#include "frame/output.h"
#include "zek2/c06.h"

namespace zek::fft {

namespace {

// A 2 next to a 3 becomes one pass of 6: the list of C06_FACTOR_LIST holds at most one 2.
int merge_six(const int *factors, int nf, int *merged) {
    int two = -1, three = -1;
    for (int i = 0; i < nf; ++i) {
        if (factors[i] == 2 && two < 0) two = i;
        if (factors[i] == 3 && three < 0) three = i;
    }
    int count = 0;
    for (int i = 0; i < nf; ++i) {
        if (two >= 0 && three >= 0 && i == three) continue;
        merged[count++] = (two >= 0 && three >= 0 && i == two) ? 6 : factors[i];
    }
    return count;
}

double workspace_report(double need) { return integer_guard(need); }

} // namespace

void multiple_real_forward(int m, int n, double *a, double *b, const double *trig, const int *factors, int nf) {
    if (n == 1) {
        for (Index row = 0; row < m; ++row) a[m + row] = 0.0;
        return;
    }
    int merged[kFactorListSize];
    const int count = merge_six(factors, nf, merged);
    digit_permute(m, n, merged, count, a, b);
    C06_REAL_PASS_DRIVER(m, n, b, a, trig, merged, count);
    const double scale = 1.0 / std::sqrt(static_cast<double>(n));
    const Index mm = m;
    for (Index row = 0; row < m; ++row) {
        a[row] = b[row] * scale;
        a[mm + row] = 0.0;
    }
    for (Index k = 1; 2 * k < n; ++k) {
        const double *re = b + k * mm, *im = b + (n - k) * mm;
        double *dst = a + 2 * k * mm;
        for (Index row = 0; row < m; ++row) {
            dst[row] = re[row] * scale;
            dst[mm + row] = im[row] * scale;
        }
    }
    if (n % 2 == 0) {
        const double *re = b + (n / 2) * mm;
        double *dst = a + static_cast<Index>(n) * mm;
        for (Index row = 0; row < m; ++row) {
            dst[row] = re[row] * scale;
            dst[mm + row] = 0.0;
        }
    }
}

void multiple_real_backward(int m, int n, double *a, double *b, const double *trig, const int *factors, int nf) {
    if (n == 1) return;
    int merged[kFactorListSize];
    const int count = merge_six(factors, nf, merged);
    const Index mm = m;
    std::memcpy(b, a, sizeof(double) * static_cast<std::size_t>(m));
    for (Index k = 1; 2 * k < n; ++k) {
        std::memcpy(b + k * mm, a + 2 * k * mm, sizeof(double) * static_cast<std::size_t>(m));
        std::memcpy(b + (n - k) * mm, a + (2 * k + 1) * mm, sizeof(double) * static_cast<std::size_t>(m));
    }
    if (n % 2 == 0) std::memcpy(b + (n / 2) * mm, a + static_cast<Index>(n) * mm, sizeof(double) * static_cast<std::size_t>(m));
    C06_HERMITIAN_PASS_DRIVER(m, n, b, a, trig, merged, count);
    digit_permute_inverse(m, n, merged, count, b, a);
    const double scale = 1.0 / std::sqrt(static_cast<double>(n));
    const Index total = mm * n;
    for (Index i = 0; i < total; ++i) a[i] *= scale;
}

} // namespace zek::fft

using zek::fft::Index;

extern "C" {

void C06_REAL_TABLE(int n, double *trig) {
    if (n < 1) return;
    zek::fft::fill_real_table(n, trig, trig + n);
    // The marker of a valid table: N in TRIG(N) and TRIG(2N).
    trig[n - 1] = n;
    trig[2 * static_cast<Index>(n) - 1] = n;
}

void C06_TABLE_CHECK(int m, int n, const char *init, double *trig, int *factors, int *nf, int *code, int init_len) {
    *code = 0;
    if (m < 1) {
        *code = 1;
        return;
    }
    if (n < 1) {
        *code = 2;
        return;
    }
    const char letter = zek::fft::option_letter(init, init_len);
    if (letter != 'I' && letter != 'S' && letter != 'R') {
        *code = 3;
        return;
    }
    *nf = zek::fft::factor_list(n, factors);
    if (*nf > zek::fft::kSecondEngineMostFactors) {
        *code = 4;
        return;
    }
    if (letter == 'I') {
        C06_REAL_TABLE(n, trig);
        return;
    }
    // Nearest integer by adding or subtracting one half and truncating; compared as reals so that
    // rubbish in the table cannot overflow a conversion.
    auto rounded = [](double v) { return v >= 0.0 ? std::trunc(v + 0.5) : std::trunc(v - 0.5); };
    if (rounded(trig[n - 1]) != n || rounded(trig[2 * static_cast<Index>(n) - 1]) != n) *code = 5;
}

void C06_REAL_PASS_DRIVER(int m, int n, double *x, double *tmp, const double *trig, const int *factors, int nf) {
    if (m < 1 || n < 2) return;
    const zek::fft::RealTable t{trig, trig + n};
    int k = 1;
    for (int f = 0; f < nf; ++f) {
        if (factors[f] <= 1) continue;
        zek::fft::real_pass_forward(factors[f], m, n, k, x, t, tmp);
        k *= factors[f];
    }
}

void C06_HERMITIAN_PASS_DRIVER(int m, int n, double *x, double *tmp, const double *trig, const int *factors,
                               int nf) {
    if (m < 1 || n < 2) return;
    const zek::fft::RealTable t{trig, trig + n};
    int k = n;
    for (int f = nf - 1; f >= 0; --f) {
        if (factors[f] <= 1) continue;
        k /= factors[f];
        zek::fft::real_pass_backward(factors[f], m, n, k, x, t, tmp);
    }
}

void C06_MULTIPLE_REAL_FORWARD(int m, int n, double *a, double *b, const double *trig, const int *factors, int nf) {
    if (m < 1 || n < 1) return;
    zek::fft::multiple_real_forward(m, n, a, b, trig, factors, nf);
}

void C06_MULTIPLE_REAL_BACKWARD(int m, int n, double *a, double *b, const double *trig, const int *factors,
                                int nf) {
    if (m < 1 || n < 1) return;
    zek::fft::multiple_real_backward(m, n, a, b, trig, factors, nf);
}

void C06_MULTIPLE_REAL_BLOCK(const char *direct, int m, int n, double *a, double *b, const double *trig,
                             const int *factors, int nf, int direct_len) {
    if (zek::fft::option_letter(direct, direct_len) == 'B')
        C06_MULTIPLE_REAL_BACKWARD(m, n, a, b, trig, factors, nf);
    else
        C06_MULTIPLE_REAL_FORWARD(m, n, a, b, trig, factors, nf);
}

int C06_MULTIPLE_REAL_ONE(const char *direct, int n, double *x, double *work, int direct_len) {
    int factors[zek::fft::kFactorListSize], nf = 0, code = 0;
    C06_TABLE_CHECK(1, n, "I", work, factors, &nf, &code, 1);
    if (code != 0) return code;
    C06_MULTIPLE_REAL_BLOCK(direct, 1, n, x, work + 2 * static_cast<Index>(n), work, factors, nf, direct_len);
    work[0] = zek::fft::workspace_report(3.0 * n);
    return 0;
}

int C06_MULTIPLE_REAL_SEVERAL(const char *direct, int m, int n, double *x, double *work, int direct_len) {
    int factors[zek::fft::kFactorListSize], nf = 0, code = 0;
    C06_TABLE_CHECK(m, n, "I", work, factors, &nf, &code, 1);
    if (code != 0) return code;
    const bool forward = zek::fft::option_letter(direct, direct_len) == 'F';
    const Index rows = static_cast<Index>(n) + 2;
    double *scratch = work + 2 * static_cast<Index>(n);
    int first = 1, last = 0;
    zek::fft::block_split(zek::fft::team_size(), zek::fft::team_rank(), m, &first, &last);
    const int mb = last - first + 1;
    if (mb >= 1) {
        double *xb = x + (first - 1) * rows;
        double *sb = scratch + (first - 1) * rows;
        if (forward) {
            for (Index p = 0; p < mb; ++p) xb[p * rows + n] = xb[p * rows + n + 1] = 0.0;
        }
        zek::fft::transpose(1, static_cast<int>(rows), mb, xb, rows, sb, mb);
        C06_MULTIPLE_REAL_BLOCK(direct, mb, n, sb, xb, work, factors, nf, direct_len);
        zek::fft::transpose(1, mb, static_cast<int>(rows), sb, mb, xb, rows);
    }
    work[0] = zek::fft::workspace_report(static_cast<double>(rows) * m + 2.0 * n);
    return 0;
}

int C06_MULTIPLE_REAL(const char *direct, int m, int n, double *x, double *work, int direct_len) {
    if (m < 1) return 1;
    if (n < 1) return 2;
    const char letter = zek::fft::option_letter(direct, direct_len);
    if (letter != 'F' && letter != 'B') return 3;
    if (n == 1) {
        // A transform of length 1 is the identity; the imaginary part of z(0) is zero.
        for (Index p = 0; p < m; ++p) x[p * 3 + 1] = 0.0;
        work[0] = 1.0;
        return 10;
    }
    return m == 1 ? C06_MULTIPLE_REAL_ONE(direct, n, x, work, direct_len)
                  : C06_MULTIPLE_REAL_SEVERAL(direct, m, n, x, work, direct_len);
}

void C06_REAL_WORK_NEED_BYREF(const int *n, const int *m, const int *k, int *need) {
    double value;
    if (*n == 1)
        value = 1.0;
    else if (*m == 1 || *k == 1)
        value = 3.0 * *n;
    else
        value = (static_cast<double>(*n) + 2.0) * *m + 2.0 * *n;
    *need = value > 2147483647.0 ? -1 : static_cast<int>(value);
}

} // extern "C"

namespace {

using zek::fft::Check;

constexpr zek::fft::ExitRow kC06ppfExitRows[] = {
    {Check::M, 1, 99999, " ** On entry, M .lt. 1: M = %16ld."},
    {Check::N, 2, 99998, " ** On entry, N .lt. 1: N = %16ld."},
    {Check::Direct, 3, 99997, " ** %1s is an invalid value of DIRECT."},
    {Check::Internal, 4, 99996, " ** Unexpected failure in an internal call."},
};
constexpr zek::fft::ExitTable kC06ppfExits{kC06ppfExitRows};

} // namespace

extern "C" {

void C06PPF_WORKER(const char *direct, int m, int n, double *x, double *work, char *errbuf, int *ifail,
                   int direct_len, int errbuf_len) {
    (void)errbuf_len;
    zek::FailureExit exit("C06PPF", errbuf, ifail);
    if (!kC06ppfExits.leading(exit, m, n, direct, direct_len)) return;
    int code;
    if (zek::fft::replacement_present("PP")) {
        zek::fft::replacement_entry();
        code = 0;
    } else {
        code = C06_MULTIPLE_REAL(direct, m, n, x, work, direct_len);
    }
    if (code != 0 && code != 10) {
        kC06ppfExits.fail(exit, zek::fft::Check::Internal);
        return;
    }
    exit.succeed();
}

void C06PPF(const char *direct, const int *m, const int *n, double *x, double *work, int *ifail, int direct_len) {
    zek::Front front("C06PPF");
    C06PPF_WORKER(direct, *m, *n, x, work, front.errbuf(), ifail, direct_len, zek::kErrbufLength);
    front.finish(*ifail);
}

} // extern "C"
