// Sine, cosine and quarter-wave transforms of M sequences stored by element (C06RAF to C06RDF).
//
// Each folds its data into one real sequence of length N, runs the multiple real transform on the
// rows (stride 1 over the sequences, no transposition needed), and unfolds the result.  With
// Y = the scaled real transform of the folded rows, a(k) = Re Y(k), b(k) = Im Y(k):
// - sine: w(j) = sin(j pi/N)(x(j) + x(N-j)) + (x(j) - x(N-j))/2 gives y(2k) = -sqrt2 b(k) and the odd
//   results by the running sum y(2k+1) = y(2k-1) + sqrt2 a(k), from y(1) = a(0)/sqrt2;
// - cosine: w(j) = (x(j) + x(N-j))/2 - sin(j pi/N)(x(j) - x(N-j)) gives y(2k) = sqrt2 a(k) and
//   y(2k+1) = y(2k-1) - sqrt2 b(k), y(1) being summed directly during the fold;
// - quarter-wave cosine: the backward form takes the even-indexed values forward and the odd ones
//   backward, transforms, and turns each result by exp(-i pi k / 2N); the forward form is its inverse;
// - quarter-wave sine: the quarter-wave cosine of the reversed data, with alternate signs.
#include <cmath>
#include <cstring>

#include "analysis/fft.h"
#include "analysis/fft_exits.h"
#include "frame/ifail.h"
#include "frame/machine.h"
#include "frame/output.h"
#include "zek2/c06.h"

namespace {

using zek::fft::Index;

constexpr double kSqrt2 = 1.4142135623730951;
constexpr double kSqrtHalf = 0.7071067811865475;

struct Setup {
    int factors[zek::fft::kFactorListSize];
    int nf = 0;
    double *trig = nullptr;
    double *scratch = nullptr; // (N+2)*M values: the transform's buffer, then two spare rows
    int n = 0;
};

// The table and factor list of length N in WORK; the scratch follows.
bool prepare(int m, int n, double *work, Setup &s) {
    int code = 0;
    C06_TABLE_CHECK(m, n, "I", work, s.factors, &s.nf, &code, 1);
    s.trig = work;
    s.scratch = work + 2 * static_cast<Index>(n);
    s.n = n;
    return code == 0;
}

double need_of(int m, int n) { return (static_cast<double>(n) + 2.0) * m + 2.0 * n; }

void forward_rows(int m, int n, double *x, const Setup &s) {
    zek::fft::multiple_real_forward(m, n, x, s.scratch, s.trig, s.factors, s.nf);
}

void backward_rows(int m, int n, double *x, const Setup &s) {
    zek::fft::multiple_real_backward(m, n, x, s.scratch, s.trig, s.factors, s.nf);
}

double *row(double *x, int m, Index j) { return x + j * m; }

// s + c += v, Neumaier's form: c gathers what the rounding of s loses.
inline void compensated_add(double &s, double &c, double v) {
    const double t = s + v;
    c += std::fabs(s) >= std::fabs(v) ? (s - t) + v : (v - t) + s;
    s = t;
}

// The running sums of the odd results, y(next) = y(previous) + factor * row, carried with a
// compensation per sequence in the two spare rows behind the transform's buffer, so that their
// rounding does not grow with N.
class RunningSum {
public:
    RunningSum(const Setup &s, int m, const double *first) : m_(m) {
        sum_ = spare(s, m);
        carry_ = sum_ + m;
        for (Index p = 0; p < m; ++p) {
            sum_[p] = first[p];
            carry_[p] = 0.0;
        }
    }
    // ROW holds the new term and receives the new sum.
    void add(double *row_values, double factor) {
        for (Index p = 0; p < m_; ++p) {
            compensated_add(sum_[p], carry_[p], factor * row_values[p]);
            row_values[p] = sum_[p] + carry_[p];
        }
    }
    static double *spare(const Setup &s, int m) { return s.scratch + static_cast<Index>(m) * s.n; }

private:
    Index m_;
    double *sum_;
    double *carry_;
};

void sine(int m, int n, double *x, const Setup &s) {
    if (n == 1) return; // no data
    zek::fft::RootStream roots(2 * static_cast<long long>(n), 1, 1); // multiples of pi/N
    for (Index j = 1; 2 * j < n; ++j) {
        double cs, sn;
        roots.next(cs, sn);
        double *a = row(x, m, j - 1), *b = row(x, m, n - j - 1);
        for (Index p = 0; p < m; ++p) {
            const double t = (a[p] + b[p]) * sn, u = (a[p] - b[p]) * 0.5;
            a[p] = u + t;
            b[p] = t - u;
        }
    }
    if (n % 2 == 0) {
        double *mid = row(x, m, n / 2 - 1);
        for (Index p = 0; p < m; ++p) mid[p] *= 2.0;
    }
    // Make room for the zero first row.
    std::memmove(row(x, m, 1), x, sizeof(double) * static_cast<std::size_t>(m) * (n - 1));
    for (Index p = 0; p < m; ++p) x[p] = 0.0;
    forward_rows(m, n, x, s);
    for (Index k = 1; 2 * k < n; ++k) {
        double *dst = row(x, m, 2 * k - 1);
        const double *im = row(x, m, 2 * k + 1);
        for (Index p = 0; p < m; ++p) dst[p] = -kSqrt2 * im[p];
    }
    for (Index p = 0; p < m; ++p) x[p] *= kSqrtHalf;
    RunningSum sum(s, m, x);
    for (Index k = 1; 2 * k + 1 < n; ++k) sum.add(row(x, m, 2 * k), kSqrt2);
}

void cosine(int m, int n, double *x, const Setup &s) {
    // y(1) is summed beside the scratch: the last M values of WORK, which the transform leaves alone.
    double *odd = s.scratch + static_cast<Index>(m) * n;
    {
        const double *first = row(x, m, 0), *last = row(x, m, n);
        for (Index p = 0; p < m; ++p) {
            odd[p] = 0.5 * (first[p] - last[p]);
            odd[m + p] = 0.0;
        }
        double *f0 = row(x, m, 0);
        for (Index p = 0; p < m; ++p) f0[p] = 0.5 * (f0[p] + last[p]);
    }
    zek::fft::RootStream roots(2 * static_cast<long long>(n), 1, 1); // multiples of pi/N
    for (Index j = 1; 2 * j < n; ++j) {
        double cs, sn;
        roots.next(cs, sn);
        double *a = row(x, m, j), *b = row(x, m, n - j);
        for (Index p = 0; p < m; ++p) {
            const double sum = 0.5 * (a[p] + b[p]), diff = a[p] - b[p];
            compensated_add(odd[p], odd[m + p], diff * cs);
            a[p] = sum - sn * diff;
            b[p] = sum + sn * diff;
        }
    }
    forward_rows(m, n, x, s);
    const double odd_scale = std::sqrt(2.0 / n);
    for (Index k = 0; 2 * k <= n; ++k) {
        double *a = row(x, m, 2 * k);
        for (Index p = 0; p < m; ++p) a[p] *= kSqrt2;
    }
    {
        double *y1 = row(x, m, 1);
        for (Index p = 0; p < m; ++p) y1[p] = odd_scale * (odd[p] + odd[m + p]);
    }
    if (n == 1) return;
    RunningSum sum(s, m, row(x, m, 1));
    for (Index k = 1; 2 * k + 1 <= n; ++k) sum.add(row(x, m, 2 * k + 1), -kSqrt2);
}

// Quarter-wave cosine, backward: y(k) = 2/sqrt(N) sum x(j) cos(pi (2j+1) k / 2N).
void quarter_cosine_backward(int m, int n, double *x, const Setup &s) {
    const Index mm = m;
    const std::size_t bytes = sizeof(double) * static_cast<std::size_t>(m);
    double *buf = s.scratch;
    // v(i) = x(2i), v(N-1-i) = x(2i+1)
    for (Index j = 0; j < n; ++j) {
        const Index i = j % 2 == 0 ? j / 2 : n - 1 - j / 2;
        std::memcpy(buf + i * mm, x + j * mm, bytes);
    }
    std::memcpy(x, buf, bytes * static_cast<std::size_t>(n));
    forward_rows(m, n, x, s);
    // y(k) = 2 Re(w(k)), y(N-k) = -2 Im(w(k)), w(k) = exp(-i pi k / 2N) V(k)
    zek::fft::RootStream roots(4 * static_cast<long long>(n), 1, 1); // multiples of pi/2N
    for (Index p = 0; p < m; ++p) buf[p] = 2.0 * x[p];
    for (Index k = 1; 2 * k <= n; ++k) {
        double c, sn;
        roots.next(c, sn);
        const double *re = row(x, m, 2 * k), *im = row(x, m, 2 * k + 1);
        double *lo = buf + k * mm, *hi = buf + (n - k) * mm;
        for (Index p = 0; p < m; ++p) {
            const double wr = c * re[p] + sn * im[p], wi = c * im[p] - sn * re[p];
            lo[p] = 2.0 * wr;
            hi[p] = -2.0 * wi;
        }
    }
    std::memcpy(x, buf, bytes * static_cast<std::size_t>(n));
}

// Quarter-wave cosine, forward: y(k) = 1/sqrt(N) (x(0)/2 + sum_{j>=1} x(j) cos(pi j (2k+1) / 2N)), the
// inverse of the backward form: V(k) = exp(i pi k / 2N) (x(k) - i x(N-k)) / 2, a backward real
// transform, and the even and odd results put back in place.
void quarter_cosine_forward(int m, int n, double *x, const Setup &s) {
    const Index mm = m;
    const std::size_t bytes = sizeof(double) * static_cast<std::size_t>(m);
    double *buf = s.scratch;
    zek::fft::RootStream roots(4 * static_cast<long long>(n), 1, 1); // multiples of pi/2N
    for (Index p = 0; p < m; ++p) {
        buf[p] = 0.5 * x[p];
        buf[mm + p] = 0.0;
    }
    for (Index k = 1; 2 * k <= n; ++k) {
        double c, sn;
        roots.next(c, sn);
        const double *a = row(x, m, k), *b = row(x, m, n - k);
        double *re = buf + 2 * k * mm, *im = re + mm;
        for (Index p = 0; p < m; ++p) {
            // (c + i s)(a - i b) / 2
            re[p] = 0.5 * (c * a[p] + sn * b[p]);
            im[p] = 0.5 * (sn * a[p] - c * b[p]);
        }
    }
    const Index rows = 2 * (static_cast<Index>(n) / 2) + 2;
    std::memcpy(x, buf, bytes * static_cast<std::size_t>(rows));
    backward_rows(m, n, x, s);
    for (Index j = 0; j < n; ++j) {
        const Index i = j % 2 == 0 ? j / 2 : n - 1 - j / 2;
        std::memcpy(buf + j * mm, x + i * mm, bytes);
    }
    std::memcpy(x, buf, bytes * static_cast<std::size_t>(n));
}

void reverse_rows(int m, int n, double *x) {
    for (Index i = 0, j = n - 1; i < j; ++i, --j) {
        double *a = row(x, m, i), *b = row(x, m, j);
        for (Index p = 0; p < m; ++p) {
            const double t = a[p];
            a[p] = b[p];
            b[p] = t;
        }
    }
}

void negate_odd_rows(int m, int n, double *x) {
    for (Index j = 1; j < n; j += 2) {
        double *a = row(x, m, j);
        for (Index p = 0; p < m; ++p) a[p] = -a[p];
    }
}

enum class Kind { Sine, Cosine, QuarterSine, QuarterCosine };

const char *name_of(Kind kind) {
    switch (kind) {
    case Kind::Sine: return "C06RAF";
    case Kind::Cosine: return "C06RBF";
    case Kind::QuarterSine: return "C06RCF";
    default: return "C06RDF";
    }
}

using zek::fft::Check;

// The sine and cosine transforms (C06RAF, C06RBF) take no direction.
constexpr zek::fft::ExitRow kWholeWaveExitRows[] = {
    {Check::M, 1, 99999, " ** On entry, M .lt. 1: M = %16ld."},
    {Check::N, 2, 99998, " ** On entry, N .lt. 1: N = %16ld."},
    {Check::Internal, 3, 99997, " ** Unexpected failure in an internal call."},
};
constexpr zek::fft::ExitTable kWholeWaveExits{kWholeWaveExitRows};

// The quarter-wave transforms (C06RCF, C06RDF).
constexpr zek::fft::ExitRow kQuarterWaveExitRows[] = {
    {Check::M, 1, 99999, " ** On entry, M .lt. 1: M = %16ld."},
    {Check::N, 2, 99998, " ** On entry, N .lt. 1: N = %16ld."},
    {Check::Direct, 3, 99997, " ** %1s is an invalid value of DIRECT."},
    {Check::Internal, 4, 99996, " ** Unexpected failure in an internal call."},
};
constexpr zek::fft::ExitTable kQuarterWaveExits{kQuarterWaveExitRows};

void trig_worker(Kind kind, const char *direct, int direct_len, int m, int n, double *x, double *work,
                 char *errbuf, int *ifail) {
    const bool directed = kind == Kind::QuarterSine || kind == Kind::QuarterCosine;
    zek::FailureExit exit(name_of(kind), errbuf, ifail);
    const zek::fft::ExitTable &exits = directed ? kQuarterWaveExits : kWholeWaveExits;
    if (!exits.leading(exit, m, n, direct, direct_len)) return;
    const char letter = zek::fft::option_letter(direct, direct_len);
    Setup s;
    if (!prepare(m, n, work, s)) {
        exits.fail(exit, zek::fft::Check::Internal);
        return;
    }
    switch (kind) {
    case Kind::Sine: sine(m, n, x, s); break;
    case Kind::Cosine: cosine(m, n, x, s); break;
    case Kind::QuarterCosine:
        if (letter == 'F')
            quarter_cosine_forward(m, n, x, s);
        else
            quarter_cosine_backward(m, n, x, s);
        break;
    case Kind::QuarterSine:
        if (letter == 'F') {
            reverse_rows(m, n, x);
            quarter_cosine_forward(m, n, x, s);
            negate_odd_rows(m, n, x);
        } else {
            negate_odd_rows(m, n, x);
            quarter_cosine_backward(m, n, x, s);
            reverse_rows(m, n, x);
        }
        break;
    }
    work[0] = zek::integer_guard(need_of(m, n));
    exit.succeed();
}

} // namespace

namespace zek::fft {
// The worker of C06RDF, the one front of the chapter whose worker has no export of its own.
void c06rdf_worker(const char *direct, int m, int n, double *x, double *work, char *errbuf, int *ifail,
                   int direct_len) {
    trig_worker(Kind::QuarterCosine, direct, direct_len, m, n, x, work, errbuf, ifail);
}
} // namespace zek::fft

extern "C" {

void C06RAF_WORKER(int m, int n, double *x, double *work, char *errbuf, int *ifail, int) {
    trig_worker(Kind::Sine, nullptr, 0, m, n, x, work, errbuf, ifail);
}

void C06RBF_WORKER(int m, int n, double *x, double *work, char *errbuf, int *ifail, int) {
    trig_worker(Kind::Cosine, nullptr, 0, m, n, x, work, errbuf, ifail);
}

void C06RCF_WORKER(const char *direct, int m, int n, double *x, double *work, char *errbuf, int *ifail,
                   int direct_len, int) {
    trig_worker(Kind::QuarterSine, direct, direct_len, m, n, x, work, errbuf, ifail);
}

void C06RAF(const int *m, const int *n, double *x, double *work, int *ifail) {
    zek::Front front("C06RAF");
    C06RAF_WORKER(*m, *n, x, work, front.errbuf(), ifail, zek::kErrbufLength);
    front.finish(*ifail);
}

void C06RBF(const int *m, const int *n, double *x, double *work, int *ifail) {
    zek::Front front("C06RBF");
    C06RBF_WORKER(*m, *n, x, work, front.errbuf(), ifail, zek::kErrbufLength);
    front.finish(*ifail);
}

void C06RCF(const char *direct, const int *m, const int *n, double *x, double *work, int *ifail, int direct_len) {
    zek::Front front("C06RCF");
    C06RCF_WORKER(direct, *m, *n, x, work, front.errbuf(), ifail, direct_len, zek::kErrbufLength);
    front.finish(*ifail);
}

void C06RDF(const char *direct, const int *m, const int *n, double *x, double *work, int *ifail, int direct_len) {
    zek::Front front("C06RDF");
    zek::fft::c06rdf_worker(direct, *m, *n, x, work, front.errbuf(), ifail, direct_len);
    front.finish(*ifail);
}

} // extern "C"
