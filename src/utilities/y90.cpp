// Chapter Y90: random vectors and matrices for testing, matrices with prescribed singular values or
// eigenvalues, conversion to band, packed and coordinate storage, and the comparators that turn a
// computed result into a test ratio.
//
// Random numbers come from the explicit-state generator of chapter G05 on the caller's four-integer
// state (selector 0, the basic generator's recurrence), so a test gets the same matrix on every run and
// never disturbs the process-wide stream.  Normal deviates are by the polar method.
//
// Haar-distributed orthogonal and unitary matrices: the product of the Householder reflectors that
// reduce a Gaussian matrix column by column, with each column multiplied by the phase of the diagonal
// element of R it produced.  Without that correction the Q of a QR factorisation is not Haar
// distributed (its diagonal prefers one sign); with it Q is, and no Gaussian matrix need be stored: the
// reflector of column k depends only on a fresh Gaussian vector of length n - k + 1.
#include <algorithm>
#include <cmath>
#include <complex>
#include <cstddef>

#include "frame/ifail.h"
#include "frame/machine.h"
#include "kernels/householder.h"
#include "zek2/g05.h"
#include "zek2/y90.h"

namespace zek {

namespace {

using std::ptrdiff_t;
using Complex = std::complex<double>;

// The argument exits shared by the family, each routine reporting under its own name.
enum Row { kN, kM, kLd, kDist, kSd, kMode, kCond, kKlKu, kUplo, kRoom, kNotFinite, kSeed };
constexpr ExitRow kExits[] = {
    {1, 99999, " ** On entry, N.lt.0 : N = %16ld"},
    {1, 99998, " ** On entry, M.lt.0 : M = %16ld"},
    {1, 99997, " ** On entry, a leading dimension is too small : LD = %16ld, needed %16ld"},
    {1, 99996, " ** On entry, DIST is not valid : DIST = %1.1s"},
    {1, 99995, " ** On entry, the bounds or standard deviation are not valid : A = %13.5e B = %13.5e"},
    {1, 99994, " ** On entry, MODE is not valid : MODE = %16ld"},
    {1, 99993, " ** On entry, COND.lt.1.0 or DMAX not finite : COND = %13.5e DMAX = %13.5e"},
    {1, 99992, " ** On entry, KL.lt.0 or KU.lt.0 : KL = %16ld KU = %16ld"},
    {1, 99991, " ** On entry, UPLO is not valid : UPLO = %1.1s"},
    {2, 99990, " ** LA is too small for the entries kept : LA = %16ld NNZ = %16ld"},
    {3, 99989, " ** On entry, element %16ld of the data is not finite"},
    {1, 99988, " ** On entry, ISEED is not a valid state of the generator"},
};

// A routine's front and failure exits around its body.
template <class Body>
void with_front(const char *name, int *ifail, Body body) {
    Front front(name);
    FailureExit exit(name, front.errbuf(), ifail);
    body(exit);
    front.finish(*ifail);
}

bool is(char c, char upper) { return c == upper || c == upper + ('a' - 'A'); }

// A state of selector 0 must have its limbs in 0..32767 and not all zero, or the recurrence sticks.
bool valid_seed(const int iseed[]) {
    bool any = false;
    for (int k = 0; k < 4; ++k) {
        if (iseed[k] < 0 || iseed[k] > 32767) return false;
        any = any || iseed[k] != 0;
    }
    return any;
}

double uniform(int iseed[]) { return G05_EXPLICIT_UNIFORM_V(0, iseed); }

// A standard normal deviate by the polar method (at most 64 pairs: the chance of needing more is
// below 1e-43).
double normal(int iseed[]) {
    for (int tries = 0; tries < 64; ++tries) {
        const double u = 2.0 * uniform(iseed) - 1.0, v = 2.0 * uniform(iseed) - 1.0;
        const double s = u * u + v * v;
        if (s > 0.0 && s < 1.0) return u * std::sqrt(-2.0 * std::log(s) / s);
    }
    return 0.0;
}

void fill(char dist, ptrdiff_t n, double a, double b, int iseed[], double x[]) {
    for (ptrdiff_t i = 0; i < n; ++i) {
        if (is(dist, 'N')) {
            x[i] = a + b * normal(iseed);
        } else {
            // a + (b - a) u, formed without overflow for bounds of both signs near the largest number.
            const double u = uniform(iseed);
            x[i] = std::clamp(a * (1.0 - u) + b * u, std::min(a, b), std::max(a, b));
        }
    }
}

bool valid_distribution(char dist, double a, double b) {
    if (is(dist, 'N')) return std::isfinite(a) && std::isfinite(b) && b >= 0.0;
    return std::isfinite(a) && std::isfinite(b);
}

// The Haar orthogonal matrix of order N into Q; WORK(2N).
void haar_orthogonal(int n, int iseed[], double q[], ptrdiff_t ldq, double work[]) {
    for (ptrdiff_t j = 0; j < n; ++j)
        for (ptrdiff_t i = 0; i < n; ++i) q[i + j * ldq] = i == j ? 1.0 : 0.0;
    double *v = work, *w = work + n;
    for (ptrdiff_t k = 0; k < n; ++k) {
        const int len = static_cast<int>(n - k);
        for (ptrdiff_t i = 0; i < len; ++i) v[i] = normal(iseed);
        double tau = 0.0, beta = v[0];
        if (len > 1) larfg(len, &beta, v + 1, 1, &tau);
        v[0] = 1.0;
        // Q(:, k:n) := Q(:, k:n) H_k, then column k takes the sign of R(k,k) = beta.
        if (tau != 0.0) larf('R', n, len, v, 1, tau, q + k * ldq, static_cast<int>(ldq), w);
        if (beta < 0.0)
            for (ptrdiff_t i = 0; i < n; ++i) q[i + k * ldq] = -q[i + k * ldq];
    }
}

// The Haar unitary matrix of order N into Q (complex, LDQ in complex elements); WORK(2N) complex.
void haar_unitary(int n, int iseed[], Complex q[], ptrdiff_t ldq, Complex work[]) {
    for (ptrdiff_t j = 0; j < n; ++j)
        for (ptrdiff_t i = 0; i < n; ++i) q[i + j * ldq] = i == j ? 1.0 : 0.0;
    Complex *v = work, *w = work + n;
    for (ptrdiff_t k = 0; k < n; ++k) {
        const ptrdiff_t len = n - k;
        double norm = 0.0;
        for (ptrdiff_t i = 0; i < len; ++i) {
            v[i] = Complex(normal(iseed), normal(iseed)) * std::sqrt(0.5);
            norm = std::hypot(norm, std::abs(v[i]));
        }
        // H = I - 2 u u* / (u* u) with u = x - beta e1, beta = -phase(x1) |x|, maps x to beta e1.
        const double a0 = std::abs(v[0]);
        const Complex phase = a0 > 0.0 ? v[0] / a0 : Complex(1.0);
        const Complex beta = -phase * norm;
        v[0] -= beta;
        double uu = 0.0;
        for (ptrdiff_t i = 0; i < len; ++i) uu += std::norm(v[i]);
        if (uu > 0.0 && len > 1) {
            // Q(:, k:n) := Q(:, k:n) H: w = Q(:, k:n) u, then Q -= (2/uu) w u*.
            for (ptrdiff_t i = 0; i < n; ++i) w[i] = 0.0;
            for (ptrdiff_t j = 0; j < len; ++j)
                for (ptrdiff_t i = 0; i < n; ++i) w[i] += q[i + (k + j) * ldq] * v[j];
            for (ptrdiff_t j = 0; j < len; ++j) {
                const Complex f = (2.0 / uu) * std::conj(v[j]);
                for (ptrdiff_t i = 0; i < n; ++i) q[i + (k + j) * ldq] -= w[i] * f;
            }
        }
        // Column k takes the phase of R(k,k): beta for a true reflection, x1 itself when len is 1.
        const Complex r = len > 1 ? beta : v[0] + beta;
        const double ar = std::abs(r);
        const Complex d = ar > 0.0 ? r / ar : Complex(1.0);
        for (ptrdiff_t i = 0; i < n; ++i) q[i + k * ldq] *= d;
    }
}

// A = U diag(D) V' (SAME: V = U, so A is symmetric with eigenvalues D); WORK as Y90SVF.
void prescribed(int m, int n, const double d[], int iseed[], double a[], ptrdiff_t lda, double work[], bool same) {
    const ptrdiff_t k = std::min(m, n), mm = static_cast<ptrdiff_t>(m) * m;
    double *u = work, *v = same ? work : work + mm;
    double *scratch = work + mm + (same ? 0 : static_cast<ptrdiff_t>(n) * n);
    haar_orthogonal(m, iseed, u, m, scratch);
    if (!same) haar_orthogonal(n, iseed, v, n, scratch);
    for (ptrdiff_t j = 0; j < n; ++j) {
        for (ptrdiff_t i = 0; i < m; ++i) {
            if (same && i > j) break;  // the lower triangle is mirrored below
            double s = 0.0;
            for (ptrdiff_t l = 0; l < k; ++l) s += u[i + l * m] * d[l] * v[j + l * n];
            a[i + j * lda] = s;
        }
    }
    if (same) {
        for (ptrdiff_t j = 0; j < n; ++j)
            for (ptrdiff_t i = j + 1; i < m; ++i) a[i + j * lda] = a[j + i * lda];  // exactly symmetric
    }
}

// ||A||_1 of an M by N matrix; NaN when an element is NaN.
double one_norm(int m, int n, const double a[], ptrdiff_t lda) {
    double best = 0.0;
    for (ptrdiff_t j = 0; j < n; ++j) {
        double s = 0.0;
        for (ptrdiff_t i = 0; i < m; ++i) s += std::fabs(a[i + j * lda]);
        if (std::isnan(s)) return s;
        best = std::max(best, s);
    }
    return best;
}

// NUMERATOR / (SIZE DENOMINATOR eps), with a NaN anywhere (or an infinite numerator) reported as the
// huge value 1/smallest, so a comparator never hands a test a NaN that compares false.
double ratio(double numerator, double denominator, int size) {
    const double huge = 1.0 / safe_minimum();
    if (std::isnan(numerator) || std::isnan(denominator) || std::isinf(numerator)) return huge;
    if (numerator == 0.0) return 0.0;
    const double scale = std::max(denominator, safe_minimum()) * std::max(size, 1) * precision();
    return std::min(numerator / scale, huge);
}

} // namespace

} // namespace zek

using zek::ptrdiff_t;

extern "C" {

void Y90RVF(const char *dist, const int *n, const double *a, const double *b, int iseed[], double x[], int *ifail,
            int dist_len) {
    zek::with_front("Y90RVF", ifail, [&](zek::FailureExit &exit) {
    const char d = dist_len > 0 ? dist[0] : ' ';
    if (*n < 0) return void(zek::take(exit, zek::kExits, zek::kN, {*n}));
    if (!zek::is(d, 'U') && !zek::is(d, 'N')) return void(zek::take(exit, zek::kExits, zek::kDist, {std::string(1, d)}));
    if (!zek::valid_distribution(d, *a, *b)) return void(zek::take(exit, zek::kExits, zek::kSd, {*a, *b}));
    if (!zek::valid_seed(iseed)) return void(zek::take(exit, zek::kExits, zek::kSeed));
    zek::fill(d, *n, *a, *b, iseed, x);
    exit.succeed();
    });
}

void Y90RGF(const char *dist, const int *m, const int *n, const double *a, const double *b, int iseed[], double x[],
            const int *ldx, int *ifail, int dist_len) {
    zek::with_front("Y90RGF", ifail, [&](zek::FailureExit &exit) {
    const char d = dist_len > 0 ? dist[0] : ' ';
    if (*m < 0) return void(zek::take(exit, zek::kExits, zek::kM, {*m}));
    if (*n < 0) return void(zek::take(exit, zek::kExits, zek::kN, {*n}));
    if (*ldx < std::max(*m, 1)) return void(zek::take(exit, zek::kExits, zek::kLd, {*ldx, std::max(*m, 1)}));
    if (!zek::is(d, 'U') && !zek::is(d, 'N')) return void(zek::take(exit, zek::kExits, zek::kDist, {std::string(1, d)}));
    if (!zek::valid_distribution(d, *a, *b)) return void(zek::take(exit, zek::kExits, zek::kSd, {*a, *b}));
    if (!zek::valid_seed(iseed)) return void(zek::take(exit, zek::kExits, zek::kSeed));
    for (ptrdiff_t j = 0; j < *n; ++j) zek::fill(d, *m, *a, *b, iseed, x + j * *ldx);
    exit.succeed();
    });
}

void Y90ROF(const int *n, int iseed[], double q[], const int *ldq, double work[], int *ifail) {
    zek::with_front("Y90ROF", ifail, [&](zek::FailureExit &exit) {
    if (*n < 0) return void(zek::take(exit, zek::kExits, zek::kN, {*n}));
    if (*ldq < std::max(*n, 1)) return void(zek::take(exit, zek::kExits, zek::kLd, {*ldq, std::max(*n, 1)}));
    if (!zek::valid_seed(iseed)) return void(zek::take(exit, zek::kExits, zek::kSeed));
    zek::haar_orthogonal(*n, iseed, q, *ldq, work);
    exit.succeed();
    });
}

void Y90RUF(const int *n, int iseed[], double q[], const int *ldq, double work[], int *ifail) {
    zek::with_front("Y90RUF", ifail, [&](zek::FailureExit &exit) {
    if (*n < 0) return void(zek::take(exit, zek::kExits, zek::kN, {*n}));
    if (*ldq < std::max(*n, 1)) return void(zek::take(exit, zek::kExits, zek::kLd, {*ldq, std::max(*n, 1)}));
    if (!zek::valid_seed(iseed)) return void(zek::take(exit, zek::kExits, zek::kSeed));
    zek::haar_unitary(*n, iseed, reinterpret_cast<zek::Complex *>(q), *ldq, reinterpret_cast<zek::Complex *>(work));
    exit.succeed();
    });
}

void Y90CDF(const int *mode, const int *n, const double *cond, const double *dmax, int iseed[], double d[],
            int *ifail) {
    zek::with_front("Y90CDF", ifail, [&](zek::FailureExit &exit) {
    const int md = std::abs(*mode), nn = *n;
    if (md < 1 || md > 5) return void(zek::take(exit, zek::kExits, zek::kMode, {*mode}));
    if (nn < 0) return void(zek::take(exit, zek::kExits, zek::kN, {nn}));
    if (!(*cond >= 1.0) || std::isinf(*cond) || !std::isfinite(*dmax)) {
        return void(zek::take(exit, zek::kExits, zek::kCond, {*cond, *dmax}));
    }
    if (md == 5 && !zek::valid_seed(iseed)) return void(zek::take(exit, zek::kExits, zek::kSeed));
    const double small = 1.0 / *cond, last = std::max(nn - 1, 1);
    for (ptrdiff_t i = 0; i < nn; ++i) {
        const double t = static_cast<double>(i) / last;  // 0 at the first value, 1 at the last
        double v = 1.0;
        switch (md) {
        case 1: v = i == 0 ? 1.0 : small; break;
        case 2: v = i == nn - 1 && nn > 1 ? small : 1.0; break;
        case 3: v = std::pow(*cond, -t); break;
        case 4: v = 1.0 - t * (1.0 - small); break;
        default:
            // Log-uniform between the two ends, which are kept so the condition is exact.
            v = i == 0 ? 1.0 : i == nn - 1 ? small : std::pow(*cond, -zek::uniform(iseed));
            break;
        }
        d[i] = *dmax * v;
    }
    if (*mode < 0) std::reverse(d, d + nn);
    exit.succeed();
    });
}

void Y90SVF(const int *m, const int *n, const double d[], int iseed[], double a[], const int *lda, double work[],
            int *ifail) {
    zek::with_front("Y90SVF", ifail, [&](zek::FailureExit &exit) {
    if (*m < 0) return void(zek::take(exit, zek::kExits, zek::kM, {*m}));
    if (*n < 0) return void(zek::take(exit, zek::kExits, zek::kN, {*n}));
    if (*lda < std::max(*m, 1)) return void(zek::take(exit, zek::kExits, zek::kLd, {*lda, std::max(*m, 1)}));
    for (ptrdiff_t i = 0; i < std::min(*m, *n); ++i) {
        if (!std::isfinite(d[i])) return void(zek::take(exit, zek::kExits, zek::kNotFinite, {static_cast<long>(i + 1)}));
    }
    if (!zek::valid_seed(iseed)) return void(zek::take(exit, zek::kExits, zek::kSeed));
    zek::prescribed(*m, *n, d, iseed, a, *lda, work, false);
    exit.succeed();
    });
}

void Y90EVF(const int *n, const double d[], int iseed[], double a[], const int *lda, double work[], int *ifail) {
    zek::with_front("Y90EVF", ifail, [&](zek::FailureExit &exit) {
    if (*n < 0) return void(zek::take(exit, zek::kExits, zek::kN, {*n}));
    if (*lda < std::max(*n, 1)) return void(zek::take(exit, zek::kExits, zek::kLd, {*lda, std::max(*n, 1)}));
    for (ptrdiff_t i = 0; i < *n; ++i) {
        if (!std::isfinite(d[i])) return void(zek::take(exit, zek::kExits, zek::kNotFinite, {static_cast<long>(i + 1)}));
    }
    if (!zek::valid_seed(iseed)) return void(zek::take(exit, zek::kExits, zek::kSeed));
    zek::prescribed(*n, *n, d, iseed, a, *lda, work, true);
    exit.succeed();
    });
}

void Y90BNF(const int *m, const int *n, const int *kl, const int *ku, const double a[], const int *lda, double ab[],
            const int *ldab, int *ifail) {
    zek::with_front("Y90BNF", ifail, [&](zek::FailureExit &exit) {
    if (*m < 0) return void(zek::take(exit, zek::kExits, zek::kM, {*m}));
    if (*n < 0) return void(zek::take(exit, zek::kExits, zek::kN, {*n}));
    if (*kl < 0 || *ku < 0) return void(zek::take(exit, zek::kExits, zek::kKlKu, {*kl, *ku}));
    if (*lda < std::max(*m, 1)) return void(zek::take(exit, zek::kExits, zek::kLd, {*lda, std::max(*m, 1)}));
    const long need = static_cast<long>(*kl) + *ku + 1;
    if (*ldab < need) return void(zek::take(exit, zek::kExits, zek::kLd, {*ldab, need}));
    const ptrdiff_t la = *lda, lb = *ldab;
    for (ptrdiff_t j = 0; j < *n; ++j) {
        for (ptrdiff_t r = 0; r < need; ++r) {
            const ptrdiff_t i = j - *ku + r;  // row of band row r in column j
            ab[r + j * lb] = i >= 0 && i < *m ? a[i + j * la] : 0.0;
        }
    }
    exit.succeed();
    });
}

void Y90PKF(const char *uplo, const int *n, const double a[], const int *lda, double ap[], int *ifail, int uplo_len) {
    zek::with_front("Y90PKF", ifail, [&](zek::FailureExit &exit) {
    const char u = uplo_len > 0 ? uplo[0] : ' ';
    if (!zek::is(u, 'U') && !zek::is(u, 'L')) return void(zek::take(exit, zek::kExits, zek::kUplo, {std::string(1, u)}));
    if (*n < 0) return void(zek::take(exit, zek::kExits, zek::kN, {*n}));
    if (*lda < std::max(*n, 1)) return void(zek::take(exit, zek::kExits, zek::kLd, {*lda, std::max(*n, 1)}));
    ptrdiff_t k = 0;
    for (ptrdiff_t j = 0; j < *n; ++j) {
        const ptrdiff_t lo = zek::is(u, 'U') ? 0 : j, hi = zek::is(u, 'U') ? j : *n - 1;
        for (ptrdiff_t i = lo; i <= hi; ++i) ap[k++] = a[i + j * *lda];
    }
    exit.succeed();
    });
}

void Y90SPF(const int *m, const int *n, const double a[], const int *lda, const double *drop, const int *la, int *nnz,
            double val[], int irow[], int icol[], int *ifail) {
    zek::with_front("Y90SPF", ifail, [&](zek::FailureExit &exit) {
    if (*m < 0) return void(zek::take(exit, zek::kExits, zek::kM, {*m}));
    if (*n < 0) return void(zek::take(exit, zek::kExits, zek::kN, {*n}));
    if (*lda < std::max(*m, 1)) return void(zek::take(exit, zek::kExits, zek::kLd, {*lda, std::max(*m, 1)}));
    const double t = std::isnan(*drop) ? 0.0 : std::fabs(*drop);
    // Row by row, columns ascending within a row: the order the coordinate routines of F11 expect.
    long count = 0;
    for (ptrdiff_t i = 0; i < *m; ++i) {
        for (ptrdiff_t j = 0; j < *n; ++j) {
            const double v = a[i + j * *lda];
            if (!(std::fabs(v) > t) && !std::isnan(v)) continue;
            if (count < *la) {
                val[count] = v;
                irow[count] = static_cast<int>(i + 1);
                icol[count] = static_cast<int>(j + 1);
            }
            ++count;
        }
    }
    *nnz = count > 2147483647L ? 2147483647 : static_cast<int>(count);
    if (count > *la) return void(zek::take(exit, zek::kExits, zek::kRoom, {*la, count}));
    exit.succeed();
    });
}

double Y90DRF(const int *m, const int *n, const double a[], const int *lda, const double b[], const int *ldb) {
    if (*m < 0 || *n < 0 || *lda < std::max(*m, 1) || *ldb < std::max(*m, 1)) return -1.0;
    double diff = 0.0;
    for (ptrdiff_t j = 0; j < *n; ++j) {
        double s = 0.0;
        for (ptrdiff_t i = 0; i < *m; ++i) s += std::fabs(a[i + j * *lda] - b[i + j * *ldb]);
        diff = std::isnan(s) ? s : std::max(diff, s);
        if (std::isnan(diff)) break;
    }
    return zek::ratio(diff, zek::one_norm(*m, *n, a, *lda), std::max(*m, *n));
}

double Y90ORF(const int *m, const int *n, const double q[], const int *ldq) {
    if (*m < 0 || *n < 0 || *ldq < std::max(*m, 1)) return -1.0;
    double worst = 0.0;
    for (ptrdiff_t j = 0; j < *n; ++j) {
        double s = 0.0;
        for (ptrdiff_t i = 0; i < *n; ++i) {
            double dot = 0.0;
            for (ptrdiff_t k = 0; k < *m; ++k) dot += q[k + i * *ldq] * q[k + j * *ldq];
            s += std::fabs((i == j ? 1.0 : 0.0) - dot);
        }
        worst = std::isnan(s) ? s : std::max(worst, s);
        if (std::isnan(worst)) break;
    }
    return zek::ratio(worst, 1.0, *m);
}

double Y90QRF(const int *m, const int *n, const int *k, const double a[], const int *lda, const double q[],
              const int *ldq, const double r[], const int *ldr) {
    if (*m < 0 || *n < 0 || *k < 0 || *lda < std::max(*m, 1) || *ldq < std::max(*m, 1) || *ldr < std::max(*k, 1)) {
        return -1.0;
    }
    double worst = 0.0;
    for (ptrdiff_t j = 0; j < *n; ++j) {
        double s = 0.0;
        for (ptrdiff_t i = 0; i < *m; ++i) {
            double qr = 0.0;
            for (ptrdiff_t l = 0; l < *k; ++l) qr += q[i + l * *ldq] * r[l + j * *ldr];
            s += std::fabs(a[i + j * *lda] - qr);
        }
        worst = std::isnan(s) ? s : std::max(worst, s);
        if (std::isnan(worst)) break;
    }
    return zek::ratio(worst, zek::one_norm(*m, *n, a, *lda), std::max(*m, *n));
}

double Y90RRF(const int *n, const int *nrhs, const double a[], const int *lda, const double x[], const int *ldx,
              const double b[], const int *ldb) {
    if (*n < 0 || *nrhs < 0 || *lda < std::max(*n, 1) || *ldx < std::max(*n, 1) || *ldb < std::max(*n, 1)) return -1.0;
    const double anorm = zek::one_norm(*n, *n, a, *lda);
    const double huge = 1.0 / zek::safe_minimum();
    double worst = 0.0;
    for (ptrdiff_t j = 0; j < *nrhs; ++j) {
        double s = 0.0, xn = 0.0;
        for (ptrdiff_t i = 0; i < *n; ++i) {
            double ax = 0.0;
            for (ptrdiff_t l = 0; l < *n; ++l) ax += a[i + l * *lda] * x[l + j * *ldx];
            s += std::fabs(b[i + j * *ldb] - ax);
            xn += std::fabs(x[i + j * *ldx]);
        }
        const double rj = zek::ratio(s, anorm * xn, *n);
        worst = std::max(worst, rj);
        if (rj >= huge) break;
    }
    return worst;
}

} // extern "C"
