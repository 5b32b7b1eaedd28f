// The Krylov engines by reverse communication.  A problem's whole state is the record at the head of
// the caller's WORK (100 reals) and the vectors behind it; each solver call unpacks the record into a
// local copy, resumes the method where its last request left it, and packs the record again.  A method
// is written as one resumable routine: every request to the caller stores a resume point and returns,
// and the next call jumps back to that point.  So two problems with two WORK arrays interleave freely.
#include "sparse/sparse.h"

#include "frame/ifail.h"
#include "frame/machine.h"
#include "kernels/level1.h"
#include "zek2/f11.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

namespace zek::sparse {
namespace {

// Record indices (counted from 0).
enum : int {
    kMarkA = 3, kState = 4, kMethod = 5, kNorm = 6, kIterm = 7, kN = 8, kM = 9, kMaxitn = 10, kMonit = 12,
    kLwreq = 13, kLastIn = 14, kIter = 15, kMarkB = 19, kLastOut = 22, kZero = 23, kLwork = 24,
    // engine-private integers
    kPc = 26, kStatus = 27, kTidy = 28, kJ = 29, kI = 30, kFalsePass = 31, kEstStage = 32, kEstIter = 33,
    kEstIndex = 34, kHalf = 35, kCycle = 36, kCc = 37, kEstimateSigma = 38, kSymmetric = 39, kSigcmp = 40,
    kMaxits = 41, kLanczos = 42,
    // reals
    kTol = 50, kAnorm = 52, kSigmax = 53, kStplhs = 54, kStprhs = 55, kBnorm = 56, kXnorm = 57, kRho = 58,
    kAlpha = 60, kBeta = 62, kTau = 64, kTheta = 65, kEta = 66, kEst = 68, kEstOld = 69, kResid = 70, kOmega = 72,
    kSigma = 74, kSigtol = 76, kGbar = 77, kDbar = 78, kRhs1 = 79, kRhs2 = 80, kOldb = 81, kLbeta = 82,
    kLalpha = 83, kPrevAlpha = 84, kPrevBeta = 85,
    // logicals
    kPrecon = 90, kFinished = 93, kFirst = 94,
};
constexpr double kMarkValueA = 1739512.0, kMarkValueB = 840653.0;
constexpr int kRecord = 100;

// The record unpacked: integers rounded, logicals true above 1.0.
struct Record {
    double r[kRecord];
    int i(int k) const { return static_cast<int>(std::lround(r[k])); }
    void set(int k, long v) { r[k] = static_cast<double>(v); }
    bool flag(int k) const { return r[k] > 1.0; }
    void set_flag(int k, bool v) { r[k] = v ? 2.0 : 0.0; }
    template <class T> T scalar(int k) const;
    void put(int k, double v) { r[k] = v; }
    void put(int k, Complex v) { r[k] = v.real(), r[k + 1] = v.imag(); }
};
template <> double Record::scalar<double>(int k) const { return r[k]; }
template <> Complex Record::scalar<Complex>(int k) const { return Complex(r[k], r[k + 1]); }

// F11_STATE_TRANSFER: "Get" copies the record out of WORK, "Put" back.
void state_transfer(const char *how, double *record, double *work) {
    if (how[0] == 'G' || how[0] == 'g') std::memcpy(record, work, kRecord * sizeof(double));
    else std::memcpy(work, record, kRecord * sizeof(double));
}
void state_transfer(const char *how, Record &rec, double *work) { state_transfer(how, rec.r, work); }

// Vector operations over n elements; the inner product conjugates its first argument.
double dot_real(int n, const double *x, const double *y) { return ddot(n, x, 1, y, 1); }
double dot_real(int n, const Complex *x, const Complex *y) {
    double s = 0.0;
    for (int i = 0; i < n; ++i) s += (std::conj(x[i]) * y[i]).real();
    return s;
}
double dot(int n, const double *x, const double *y) { return ddot(n, x, 1, y, 1); }
Complex dot(int n, const Complex *x, const Complex *y) {
    Complex s(0.0);
    for (int i = 0; i < n; ++i) s += std::conj(x[i]) * y[i];
    return s;
}
double norm2(int n, const double *x) { return dnrm2(n, x, 1); }
double norm2(int n, const Complex *x) {
    double scale = 0.0, ssq = 1.0;
    for (int i = 0; i < n; ++i)
        for (double part : {x[i].real(), x[i].imag()}) {
            if (part == 0.0) continue;
            const double a = std::fabs(part);
            if (scale < a) {
                ssq = 1.0 + ssq * (scale / a) * (scale / a);
                scale = a;
            } else {
                ssq += (a / scale) * (a / scale);
            }
        }
    return scale * std::sqrt(ssq);
}
template <class T> void axpy(int n, T a, const T *x, T *y) {
    for (int i = 0; i < n; ++i) y[i] += a * x[i];
}
template <class T> void copy(int n, const T *x, T *y) { std::copy(x, x + n, y); }

// F11_VECTOR_NORM.
template <class T> double vector_norm(int code, int n, const T *x, const double *w) {
    double s = 0.0;
    switch (code) {
    case 0: for (int i = 0; i < n; ++i) s += modulus(x[i]); return s;
    case 1: for (int i = 0; i < n; ++i) s = std::max(s, modulus(x[i])); return s;
    case 3: for (int i = 0; i < n; ++i) s += modulus(w[i] * x[i]); return s;
    case 4: for (int i = 0; i < n; ++i) s = std::max(s, modulus(w[i] * x[i])); return s;
    case 5: {
        double ss = 0.0, big = 0.0;
        for (int i = 0; i < n; ++i) big = std::max(big, modulus(w[i] * x[i]));
        if (big == 0.0 || !std::isfinite(big)) return big;
        for (int i = 0; i < n; ++i) {
            const double t = modulus(w[i] * x[i]) / big;
            ss += t * t;
        }
        return big * std::sqrt(ss);
    }
    default: return norm2(n, x);
    }
}

// Positions of the work vectors behind the record, per method.
template <class T> struct Vectors {
    T *base;
    int n;
    T *at(int k) const { return base + static_cast<Index>(k) * n; }
};

// Resume points: a request stores its point and returns; the switch at the head of the engine jumps
// back into the code that made it.
#define KRYLOV_REQUEST(code, point)                                                                         \
    do {                                                                                                    \
        rec.set(kPc, point);                                                                                \
        *irevcm = (code);                                                                                   \
        return;                                                                                             \
    case point:;                                                                                            \
    } while (0)

template <class T> class Engine {
public:
    Engine(Record &record, T *u, T *v, const double *wgt, T *vectors, int *irevcm)
        : rec(record), u_(u), v_(v), wgt_(wgt), w_{vectors, record.i(kN)}, irevcm(irevcm), n(record.i(kN)) {}
    void run();

private:
    Record &rec;
    T *u_, *v_;
    const double *wgt_;
    Vectors<T> w_;
    int *irevcm;
    int n;

    double norm_of(const T *x) const {
        const int code = rec.i(kNorm);
        return vector_norm(code, n, x, wgt_);
    }
    // The right side of the stopping test for the current x.
    double right_side(const T *x) {
        const double tol = rec.r[kTol];
        if (rec.i(kIterm) == 1) return tol * (rec.r[kBnorm] + rec.r[kAnorm] * norm_of(x));
        return tol * (rec.r[kBnorm] + rec.r[kSigmax] * norm2(n, x));
    }
    void finish_with(int status) {
        rec.set(kStatus, status);
        copy(n, w_.at(0), u_);
        copy(n, w_.at(2), v_);
        rec.set(kPc, 9999);
        *irevcm = 4;
    }
    // The estimator's product: A or its transpose (the infinity norm is the one-norm of A'); a symmetric
    // suite asks only for A.
    int estimate_request(int sign) const {
        if (rec.i(kSymmetric) != 0) return 1;
        return rec.i(kNorm) % 3 == 0 ? sign : -sign;
    }
    // r'inverse(M)r vanished at a fresh residual: converged when r is zero, else M is not definite.
    void finish_settled() {
        rec.r[kStplhs] = norm_of(w_.at(2));
        rec.r[kStprhs] = right_side(w_.at(0));
        finish_with(rec.r[kStplhs] == 0.0 ? 0 : 11);
    }
    void method_gmres();
    void method_cgs();
    void method_bicgstab();
    void method_tfqmr();
    void method_cg();
    void method_symmlq();
    void lanczos_step(double diagonal, double offdiagonal);
};

// Shared vectors: 0 x, 1 b, 2 r.  The rest follow per method.
template <class T> void Engine<T>::run() {
    // A request for immediate termination ends here, whatever the method was doing.
    if (rec.i(kLastIn) == 6) {
        rec.set(kStatus, 8);
        rec.set(kPc, 9999);
        *irevcm = 4;
        return;
    }
    if (rec.i(kSymmetric) != 0) {
        if (rec.i(kMethod) == 1) method_cg();
        else method_symmlq();
        return;
    }
    switch (rec.i(kMethod)) {
    case 1: method_gmres(); break;
    case 2: method_cgs(); break;
    case 3: method_bicgstab(); break;
    default: method_tfqmr(); break;
    }
}

// The common opening of every method: copy x and b, the norms (estimating the matrix norm when asked),
// the zero right-hand side.  Returns through the request macro; a finished problem sets IREVCM 4.
#define KRYLOV_START(first_point)                                                                           \
    case 0:                                                                                                 \
        copy(n, u_, w_.at(0));                                                                              \
        copy(n, v_, w_.at(1));                                                                              \
        rec.set(kIter, 0);                                                                                  \
        rec.set(kFalsePass, 0);                                                                             \
        rec.r[kBnorm] = norm_of(w_.at(1));                                                                  \
        if (!(rec.r[kBnorm] > 0.0)) {                                                                       \
            std::fill(w_.at(0), w_.at(0) + n, T(0.0));                                                      \
            std::fill(w_.at(2), w_.at(2) + n, T(0.0));                                                      \
            if (!(rec.r[kBnorm] == 0.0)) return finish_with(6);                                             \
            return finish_with(0);                                                                          \
        } \
        if (rec.i(kIterm) == 1 && rec.i(kNorm) <= 1 && rec.r[kAnorm] == 0.0) {                         \
            /* Higham's estimate of the one-norm (of A' for the infinity norm). */                          \
            rec.set(kEstIter, 0);                                                                           \
            for (int q = 0; q < n; ++q) u_[q] = T(1.0 / n);                                                 \
            KRYLOV_REQUEST(estimate_request(1), first_point);                                    \
            rec.r[kEst] = vector_norm(0, n, v_, nullptr);                                                   \
            for (;;) {                                                                                      \
                for (int q = 0; q < n; ++q) u_[q] = real_part(v_[q]) >= 0.0 ? T(1.0) : T(-1.0);            \
                KRYLOV_REQUEST(estimate_request(-1), first_point + 1);                           \
                {                                                                                           \
                    int jmax = 0;                                                                           \
                    for (int q = 1; q < n; ++q)                                                             \
                        if (modulus(v_[q]) > modulus(v_[jmax])) jmax = q;                                   \
                    if (rec.i(kEstIter) > 0 && jmax == rec.i(kEstIndex)) break;                             \
                    rec.set(kEstIndex, jmax);                                                               \
                    std::fill(u_, u_ + n, T(0.0));                                                          \
                    u_[jmax] = T(1.0);                                                                      \
                }                                                                                           \
                KRYLOV_REQUEST(estimate_request(1), first_point + 2);                           \
                rec.r[kEstOld] = rec.r[kEst];                                                               \
                rec.r[kEst] = vector_norm(0, n, v_, nullptr);                                               \
                rec.set(kEstIter, rec.i(kEstIter) + 1);                                                     \
                if (rec.r[kEst] <= rec.r[kEstOld] || rec.i(kEstIter) >= 5) break;                          \
            }                                                                                               \
            for (int q = 0; q < n; ++q) u_[q] = T((q % 2 == 0 ? 1.0 : -1.0) * (1.0 + q / (n - 1.0 + 1e-300))); \
            KRYLOV_REQUEST(estimate_request(1), first_point + 3);                               \
            rec.r[kAnorm] = std::max(rec.r[kEst], 2.0 * vector_norm(0, n, v_, nullptr) / (3.0 * n));        \
        }                                                                                                   \

// r := b - A x (into vector 2), through a request; point is the resume point.
#define KRYLOV_RESIDUAL(point)                                                                              \
    copy(n, w_.at(0), u_);                                                                                  \
    KRYLOV_REQUEST(1, point);                                                                               \
    for (int q = 0; q < n; ++q) w_.at(2)[q] = w_.at(1)[q] - v_[q];

// The end of an iteration: test, monitor, continue or finish.  est is the recurred residual norm;
// the test is confirmed on the true residual before convergence is declared.  restart_label is where
// the method starts again from a fresh residual.
#define KRYLOV_TEST(est_expr, point, restart_label)                                                         \
    rec.set(kIter, rec.i(kIter) + 1);                                                                       \
    rec.r[kStplhs] = (est_expr);                                                                            \
    rec.r[kStprhs] = right_side(w_.at(0));                                                                  \
    if (!std::isfinite(rec.r[kStplhs])) return finish_with(6);                                              \
    if (rec.r[kStplhs] <= rec.r[kStprhs]) {                                                                 \
        KRYLOV_RESIDUAL(point);                                                                             \
        rec.r[kStplhs] = rec.i(kIterm) == 1 ? norm_of(w_.at(2)) : norm2(n, w_.at(2));                       \
        rec.r[kStprhs] = right_side(w_.at(0));                                                              \
        if (rec.r[kStplhs] <= rec.r[kStprhs]) return finish_with(0);                                        \
        rec.set(kFalsePass, rec.i(kFalsePass) + 1);                                                         \
        if (rec.i(kFalsePass) >= 3) return finish_with(2);                                                  \
        rec.set(kCc, 1);                                                                                    \
    } else {                                                                                                \
        rec.set(kCc, 0);                                                                                    \
    }                                                                                                       \
    if (rec.i(kTidy) != 0) return finish_with(4);                                                           \
    if (rec.i(kIter) >= rec.i(kMaxitn)) return finish_with(5);                                              \
    if (rec.i(kIter) % rec.i(kMonit) == 0) {                                                                \
        copy(n, w_.at(0), u_);                                                                              \
        copy(n, w_.at(2), v_);                                                                              \
        KRYLOV_REQUEST(3, point + 1);                                                                       \
        if (rec.i(kTidy) != 0) return finish_with(4);                                                       \
    }                                                                                                       \
    if (rec.i(kCc) == 1) goto restart_label;

// Preconditioner request on vector src, result copied into dst (directly when there is none).
#define KRYLOV_PRECONDITION(src, dst, point)                                                                \
    if (rec.flag(kPrecon)) {                                                                                \
        copy(n, src, u_);                                                                                   \
        KRYLOV_REQUEST(2, point);                                                                           \
        copy(n, v_, dst);                                                                                   \
    } else {                                                                                                \
        copy(n, src, dst);                                                                                  \
    }

#define KRYLOV_PRODUCT(src, dst, point)                                                                     \
    copy(n, src, u_);                                                                                       \
    KRYLOV_REQUEST(1, point);                                                                               \
    copy(n, v_, dst);

// Restarted GMRES with right preconditioning.  Vectors: 0 x, 1 b, 2 r, then the basis v_1..v_{m+1}
// (the residual of a restart is built in v_1, so r and v_1 share vector 2), then the Hessenberg matrix
// (m+1 by m), the rotations and the right side of the small least-squares problem.
template <class T> void Engine<T>::method_gmres() {
    const int m = rec.i(kM);
    T *basis = w_.at(2); // the residual of a restart becomes the first basis vector
    T *h = w_.at(3 + m);
    T *cs = h + static_cast<Index>(m + 1) * m;
    T *sn = cs + m;
    T *g = sn + m;
    auto vec = [&](int j) { return basis + static_cast<Index>(j) * n; };
    switch (rec.i(kPc)) {
        KRYLOV_START(10)
    gmres_restart:
        KRYLOV_RESIDUAL(20);
        rec.set(kCycle, rec.i(kCycle) + 1);
        rec.r[kResid] = norm2(n, w_.at(2));
        if (!(rec.r[kResid] > 0.0)) {
            KRYLOV_TEST(rec.r[kResid], 30, gmres_restart)
            goto gmres_restart;
        }
        for (int q = 0; q < n; ++q) vec(0)[q] = w_.at(2)[q] / rec.r[kResid];
        std::fill(g, g + m + 1, T(0.0));
        g[0] = T(rec.r[kResid]);
        rec.set(kJ, 0);
        while (rec.i(kJ) < m) {
            // w := A * inverse(M) * v_j
            KRYLOV_PRECONDITION(vec(rec.i(kJ)), vec(rec.i(kJ) + 1), 40)
            KRYLOV_PRODUCT(vec(rec.i(kJ) + 1), vec(rec.i(kJ) + 1), 41)
            {
                const int j = rec.i(kJ);
                T *wj = vec(j + 1);
                T *hj = h + static_cast<Index>(j) * (m + 1);
                for (int i = 0; i <= j; ++i) {
                    hj[i] = dot(n, vec(i), wj);
                    axpy(n, -hj[i], vec(i), wj);
                }
                const double hn = norm2(n, wj);
                hj[j + 1] = T(hn);
                if (hn > 0.0)
                    for (int q = 0; q < n; ++q) wj[q] /= hn;
                // Each column of the Hessenberg matrix bounds the largest singular value from below.
                if (rec.i(kEstimateSigma) == 1) {
                    double col = 0.0;
                    for (int i = 0; i <= j + 1; ++i) col += modulus(hj[i]) * modulus(hj[i]);
                    rec.r[kSigmax] = std::max(rec.r[kSigmax], std::sqrt(col));
                }
                for (int i = 0; i < j; ++i) {
                    const T t = cs[i] * hj[i] + sn[i] * hj[i + 1];
                    hj[i + 1] = -conjugate(sn[i]) * hj[i] + cs[i] * hj[i + 1];
                    hj[i] = t;
                }
                const double a = modulus(hj[j]), b = modulus(hj[j + 1]);
                const double r = std::hypot(a, b);
                if (!(r > 0.0) || !std::isfinite(r)) return finish_with(6);
                cs[j] = T(a / r);
                sn[j] = a == 0.0 ? T(1.0) : (hj[j] / a) * conjugate(hj[j + 1]) / r;
                hj[j] = a == 0.0 ? hj[j + 1] : (hj[j] / a) * r;
                hj[j + 1] = T(0.0);
                g[j + 1] = -conjugate(sn[j]) * g[j];
                g[j] = cs[j] * g[j];
                rec.r[kResid] = modulus(g[j + 1]);
                rec.set(kJ, j + 1);
            }
            if (rec.r[kResid] <= right_side(w_.at(0)) || rec.i(kJ) == m || rec.i(kTidy) != 0 ||
                rec.i(kIter) + 1 >= rec.i(kMaxitn) || (rec.i(kIter) + 1) % rec.i(kMonit) == 0) {
                // Form the iterate: y from the triangle, x := x + inverse(M) * V y.
                {
                    const int j = rec.i(kJ);
                    for (int i = j - 1; i >= 0; --i) {
                        T s = g[i];
                        for (int k = i + 1; k < j; ++k) s -= h[i + static_cast<Index>(k) * (m + 1)] * g[k];
                        g[i] = s / h[i + static_cast<Index>(i) * (m + 1)];
                    }
                    // V y into vector 2, which is v_1 itself.
                    for (int q = 0; q < n; ++q) vec(0)[q] *= g[0];
                    for (int i = 1; i < j; ++i) axpy(n, g[i], vec(i), vec(0));
                }
                KRYLOV_PRECONDITION(w_.at(2), w_.at(2), 50)
                axpy(n, T(1.0), w_.at(2), w_.at(0));
                KRYLOV_RESIDUAL(51);
                KRYLOV_TEST(rec.i(kIterm) == 1 ? norm_of(w_.at(2)) : norm2(n, w_.at(2)), 60, gmres_restart)
                goto gmres_restart;
            }
            rec.set(kIter, rec.i(kIter) + 1);
        }
        goto gmres_restart;
    default: return finish_with(3);
    }
}

// Conjugate gradients squared, right preconditioning.  Vectors: 0 x, 1 b, 2 r, 3 r~, 4 p, 5 u, 6 q.
template <class T> void Engine<T>::method_cgs() {
    T *rt = w_.at(3), *p = w_.at(4), *uu = w_.at(5), *q = w_.at(6);
    switch (rec.i(kPc)) {
        KRYLOV_START(10)
    cgs_restart:
        KRYLOV_RESIDUAL(20);
        copy(n, w_.at(2), rt);
        std::fill(p, p + n, T(0.0));
        std::fill(q, q + n, T(0.0));
        rec.put(kRho, T(1.0));
        for (;;) {
            {
                const T rho = dot(n, rt, w_.at(2));
                if (is_zero(rho) || !is_finite(rho)) return finish_with(6);
                const T beta = rho / rec.scalar<T>(kRho);
                rec.put(kRho, rho);
                for (int i = 0; i < n; ++i) {
                    uu[i] = w_.at(2)[i] + beta * q[i];
                    p[i] = uu[i] + beta * (q[i] + beta * p[i]);
                }
            }
            KRYLOV_PRECONDITION(p, v_, 30)
            KRYLOV_PRODUCT(v_, v_, 31)
            {
                const T sigma = dot(n, rt, v_);
                if (is_zero(sigma) || !is_finite(sigma)) return finish_with(6);
                const T alpha = rec.scalar<T>(kRho) / sigma;
                rec.put(kAlpha, alpha);
                for (int i = 0; i < n; ++i) {
                    q[i] = uu[i] - alpha * v_[i];
                    uu[i] += q[i];
                }
            }
            KRYLOV_PRECONDITION(uu, uu, 40)
            axpy(n, rec.scalar<T>(kAlpha), uu, w_.at(0));
            KRYLOV_PRODUCT(uu, uu, 41)
            axpy(n, -rec.scalar<T>(kAlpha), uu, w_.at(2));
            KRYLOV_TEST(rec.i(kIterm) == 1 ? norm_of(w_.at(2)) : norm2(n, w_.at(2)), 50, cgs_restart)
        }
    default: return finish_with(3);
    }
}

// BiCGSTAB(l), right preconditioning on the vectors r_0..r_l, u_0..u_l (vectors 4.. and 5+l..) with
// the shadow r~ in 3; tau (l by l), sigma and the three gamma vectors (l each) behind them.
template <class T> void Engine<T>::method_bicgstab() {
    const int l = rec.i(kM);
    T *rt = w_.at(3);
    auto r = [&](int j) { return w_.at(4 + j); };
    auto uv = [&](int j) { return w_.at(5 + l + j); };
    T *tau = w_.at(6 + 2 * l);
    T *sigma = tau + static_cast<Index>(l) * l;
    T *gam = sigma + l, *gam1 = gam + l, *gam2 = gam1 + l;
    switch (rec.i(kPc)) {
        KRYLOV_START(10)
    bicg_restart:
        KRYLOV_RESIDUAL(20);
        copy(n, w_.at(2), r(0));
        copy(n, w_.at(2), rt);
        std::fill(uv(0), uv(0) + n, T(0.0));
        rec.put(kRho, T(1.0));
        rec.put(kAlpha, T(0.0));
        rec.put(kOmega, T(1.0));
        for (;;) {
            rec.put(kRho, -rec.scalar<T>(kOmega) * rec.scalar<T>(kRho));
            for (rec.set(kJ, 0); rec.i(kJ) < l; rec.set(kJ, rec.i(kJ) + 1)) {
                {
                    const int j = rec.i(kJ);
                    const T rho1 = dot(n, rt, r(j));
                    if (is_zero(rec.scalar<T>(kRho)) || !is_finite(rho1)) return finish_with(6);
                    const T beta = rec.scalar<T>(kAlpha) * rho1 / rec.scalar<T>(kRho);
                    rec.put(kRho, rho1);
                    for (int i = 0; i <= j; ++i)
                        for (int q = 0; q < n; ++q) uv(i)[q] = r(i)[q] - beta * uv(i)[q];
                }
                KRYLOV_PRECONDITION(uv(rec.i(kJ)), uv(rec.i(kJ) + 1), 30)
                KRYLOV_PRODUCT(uv(rec.i(kJ) + 1), uv(rec.i(kJ) + 1), 31)
                {
                    const int j = rec.i(kJ);
                    const T gamma = dot(n, rt, uv(j + 1));
                    if (is_zero(gamma) || !is_finite(gamma)) return finish_with(6);
                    const T alpha = rec.scalar<T>(kRho) / gamma;
                    rec.put(kAlpha, alpha);
                    for (int i = 0; i <= j; ++i) axpy(n, -alpha, uv(i + 1), r(i));
                    // x gathers the preconditioned directions: the unpreconditioned u_0 is kept in
                    // vector 2 meanwhile, preconditioned below.
                }
                KRYLOV_PRECONDITION(uv(0), w_.at(2), 32)
                axpy(n, rec.scalar<T>(kAlpha), w_.at(2), w_.at(0));
                KRYLOV_PRECONDITION(r(rec.i(kJ)), r(rec.i(kJ) + 1), 33)
                KRYLOV_PRODUCT(r(rec.i(kJ) + 1), r(rec.i(kJ) + 1), 34)
            }
            {
                // The minimal-residual part: modified Gram-Schmidt on r_1..r_l.
                for (int j = 1; j <= l; ++j) {
                    for (int i = 1; i < j; ++i) {
                        const T t = dot(n, r(i), r(j)) / sigma[i - 1];
                        tau[(i - 1) + static_cast<Index>(j - 1) * l] = t;
                        axpy(n, -t, r(i), r(j));
                    }
                    sigma[j - 1] = T(dot_real(n, r(j), r(j)));
                    if (is_zero(sigma[j - 1]) || !is_finite(sigma[j - 1])) return finish_with(6);
                    gam1[j - 1] = dot(n, r(j), r(0)) / sigma[j - 1];
                }
                gam[l - 1] = gam1[l - 1];
                rec.put(kOmega, gam[l - 1]);
                for (int j = l - 1; j >= 1; --j) {
                    T s = gam1[j - 1];
                    for (int i = j + 1; i <= l; ++i) s -= tau[(j - 1) + static_cast<Index>(i - 1) * l] * gam[i - 1];
                    gam[j - 1] = s;
                }
                for (int j = 1; j < l; ++j) {
                    T s = gam[j];
                    for (int i = j + 1; i < l; ++i) s += tau[(j - 1) + static_cast<Index>(i - 1) * l] * gam[i];
                    gam2[j - 1] = s;
                }
                // r_0 and u_0 updated; the x update gathers gamma_1 r_0 + sum gamma2_j r_j in vector 2.
                for (int q = 0; q < n; ++q) w_.at(2)[q] = gam[0] * r(0)[q];
                axpy(n, -gam1[l - 1], r(l), r(0));
                for (int j = 1; j <= l - 1; ++j) {
                    axpy(n, -gam[j], uv(j + 1), uv(0));
                    axpy(n, gam2[j - 1], r(j), w_.at(2));
                    axpy(n, -gam1[j - 1], r(j), r(0));
                }
                axpy(n, -gam[0], uv(1), uv(0));
            }
            KRYLOV_PRECONDITION(w_.at(2), w_.at(2), 35)
            axpy(n, T(1.0), w_.at(2), w_.at(0));
            copy(n, r(0), w_.at(2));
            KRYLOV_TEST(rec.i(kIterm) == 1 ? norm_of(w_.at(2)) : norm2(n, w_.at(2)), 50, bicg_restart)
        }
    default: return finish_with(3);
    }
}

// Transpose-free QMR, right preconditioning; each half step forms inverse(M)*u and A*inverse(M)*u.
// Vectors: 0 x, 1 b, 2 r (also the preconditioned u of a half step), 3 r~, 4 w, 5 u, 6 A u,
// 7 A u of the previous half step, 8 v, 9 d (in the unpreconditioned space).
template <class T> void Engine<T>::method_tfqmr() {
    T *rt = w_.at(3), *ww = w_.at(4), *uu = w_.at(5), *au = w_.at(6), *aup = w_.at(7), *vv = w_.at(8),
      *d = w_.at(9), *pu = w_.at(2);
    switch (rec.i(kPc)) {
        KRYLOV_START(10)
    tfqmr_restart:
        KRYLOV_RESIDUAL(20);
        copy(n, w_.at(2), rt);
        copy(n, w_.at(2), ww);
        copy(n, w_.at(2), uu);
        std::fill(d, d + n, T(0.0));
        rec.r[kTau] = norm2(n, w_.at(2));
        rec.r[kTheta] = 0.0;
        rec.put(kEta, T(0.0));
        rec.put(kRho, dot(n, rt, w_.at(2)));
        rec.set(kHalf, 0);
        for (;;) {
            KRYLOV_PRECONDITION(uu, pu, 30)
            KRYLOV_PRODUCT(pu, au, 31)
            {
                const int half = rec.i(kHalf);
                if (half % 2 == 0) {
                    if (half > 0) {
                        const T beta = rec.scalar<T>(kBeta);
                        for (int i = 0; i < n; ++i) vv[i] = au[i] + beta * (aup[i] + beta * vv[i]);
                    } else {
                        copy(n, au, vv);
                    }
                    const T sigma = dot(n, rt, vv);
                    if (is_zero(sigma) || !is_finite(sigma)) return finish_with(6);
                    rec.put(kAlpha, rec.scalar<T>(kRho) / sigma);
                }
                const T alpha = rec.scalar<T>(kAlpha);
                axpy(n, -alpha, au, ww);
                const T coef = T(rec.r[kTheta] * rec.r[kTheta]) * rec.scalar<T>(kEta) / alpha;
                for (int i = 0; i < n; ++i) d[i] = pu[i] + coef * d[i];
                const double theta = norm2(n, ww) / rec.r[kTau];
                const double c = 1.0 / std::sqrt(1.0 + theta * theta);
                rec.r[kTheta] = theta;
                rec.r[kTau] = rec.r[kTau] * theta * c;
                const T eta = T(c * c) * alpha;
                rec.put(kEta, eta);
                axpy(n, eta, d, w_.at(0));
                if (half % 2 == 0) {
                    axpy(n, -alpha, vv, uu);
                } else {
                    const T rho = dot(n, rt, ww);
                    if (is_zero(rho) || !is_finite(rho)) return finish_with(6);
                    const T beta = rho / rec.scalar<T>(kRho);
                    rec.put(kRho, rho);
                    rec.put(kBeta, beta);
                    for (int i = 0; i < n; ++i) uu[i] = ww[i] + beta * uu[i];
                    copy(n, au, aup);
                }
                rec.set(kHalf, half + 1);
                rec.r[kResid] = rec.r[kTau] * std::sqrt(static_cast<double>(half + 2));
            }
            if (rec.i(kHalf) % 2 == 0) {
                KRYLOV_TEST(rec.r[kResid], 50, tfqmr_restart)
            }
        }
    default: return finish_with(3);
    }
}

#include "sparse/krylov_symmetric.inc"

} // namespace

// The method name in its 20-character buffer, upper case, blank-padded.
std::string method_buffer(const char *method, int len) {
    char buffer[21];
    std::memset(buffer, ' ', 20);
    buffer[20] = 0;
    std::memcpy(buffer, method, static_cast<std::size_t>(std::clamp(len, 0, 20)));
    for (char &c : buffer) c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
    return std::string(buffer);
}

int method_code(const char *method, int len) {
    const std::string name = method_buffer(method, len);
    if (name == "RGMRES              ") return 1;
    if (name == "CGS                 ") return 2;
    if (name == "BICGSTAB            ") return 3;
    if (name == "TFQMR               ") return 4;
    return 0;
}

// Workspace each method needs (in elements of the suite's WORK).
long work_needed(int method, int n, int m) {
    const long nn = n, mm = m;
    switch (method) {
    case 1: return (mm + 3) * nn + (mm + 5) * mm + 1 + kRecord;
    case 2: return 7 * nn + kRecord;
    case 3: return (2 * mm + 6) * nn + mm * mm + 4 * mm + kRecord;
    default: return 10 * nn + kRecord;
    }
}

constexpr const char *kIllegal = " ** On entry, parameter number %2ld had an illegal value.";

// The set-up routines count their argument checks, and the failing one gives both IFAIL and the exit.
void illegal_setup_argument(FailureExit &exit, int bad) { exit.fail(-bad, 99999 - bad, kIllegal, {bad}); }

// The solver and diagnostic routines of the suites.  The exits that name a routine of the suite stay
// with solve_step and diagnostics, which build those texts.
#define ZEK_ACCURACY " required accuracy could not be obtained.\n ** However, a reasonable accuracy may have been achieved."
#define ZEK_NOT_DEFINITE " appears not to be positive-definite.\n ** The computation cannot continue."
#define ZEK_NOT_CONVERGED " ** The solution has not converged after%7ld iterations."
enum SuiteExit {
    kStepLworkShort, kReentryIrevcm, kReentryLwork, kAccuracyTidy, kAccuracy, kImmediate, kTidyNotConverged, kNotConverged,
    kBreakdown, kMatrixNotDefinite, kPreconditionerNotDefinite, kTidySymmetric, kNotConvergedSymmetric, kDiagnosticsLwork,
    kNotSetUp, kAlreadyCompleted, kOutOfSequence
};
constexpr ExitRow kSuiteExits[] = {
    {-6, 99999, kIllegal},
    {-1, 99997, " ** On %sentry, parameter number %2ld had an illegal value."},
    {-6, 99997, " ** On %sentry, parameter number %2ld had an illegal value."},
    {2, 99995, " ** User-requested termination: the" ZEK_ACCURACY},
    {2, 99995, " ** The" ZEK_ACCURACY},
    {8, 99991, " ** User-requested immediate termination."},
    {4, 99994, " ** User-requested tidy termination.\n" ZEK_NOT_CONVERGED},
    {5, 99993, ZEK_NOT_CONVERGED},
    {6, 99992, " ** Algorithm breakdown at iteration no.%7ld"},
    {4, 99990, " ** The matrix of the coefficients A" ZEK_NOT_DEFINITE},
    {5, 99989, " ** The preconditioner" ZEK_NOT_DEFINITE},
    {6, 99994, " ** User-requested tidy termination.\n" ZEK_NOT_CONVERGED},
    {7, 99993, ZEK_NOT_CONVERGED},
    {-7, 99999, kIllegal},
    // The routine of the suite that these name is pasted in (take_pasting): its name is no ERRBUF value.
    {3, 99998, " ** Either %s was not called before calling this routine\n ** or it has returned an error."},
    {1, 99996, " ** %s has already completed its tasks. You need to set a new problem."},
    {1, 99998, " ** %s has been called out of sequence."},
};
#undef ZEK_ACCURACY
#undef ZEK_NOT_DEFINITE
#undef ZEK_NOT_CONVERGED

// The set-up routine of the general suites.
void setup(const char *name, const char *method, const char *precon, const char *norm, const char *weight, int iterm,
           int n, int m, double tol, int maxitn, double anorm, double sigmax, int monit, int *lwreq, double *work,
           int lwork, char *errbuf, int *ifail, int method_len, int precon_len, int norm_len, int weight_len) {
    FailureExit exit(name, errbuf, ifail);
    if (lwork >= kRecord) {
        std::fill(work, work + kRecord, 0.0);
        work[kMarkA] = kMarkValueA;
        work[kMarkB] = kMarkValueB;
    }
    const int code = method_code(method, method_len);
    const char pc = letter(precon, precon_len), nc = letter(norm, norm_len), wc = letter(weight, weight_len);
    int bad = 0;
    if (code == 0) bad = 1;
    else if (pc != 'N' && pc != 'P') bad = 2;
    else if (nc != '1' && nc != 'I' && nc != '2') bad = 3;
    else if (wc != 'N' && wc != 'W') bad = 4;
    else if (iterm != 1 && (iterm != 2 || code == 4)) bad = 5;
    else if (n < 1) bad = 6;
    else if ((code == 1 && (m < 1 || m > std::min(n, 50))) || (code == 3 && (m < 1 || m > std::min(n, 10)))) bad = 7;
    else if (!(tol < 1.0)) bad = 8;
    else if (maxitn < 1) bad = 9;
    else if (monit > maxitn) bad = 12;
    else if (lwork < kRecord) bad = 15;
    else if (iterm == 1 && nc == '2' && !(anorm > 0.0)) bad = 10;
    else if (iterm == 2 && nc != '2') bad = 5;
    else if (iterm == 2 && wc != 'N') bad = 4;
    else if (iterm == 2 && code != 1 && !(sigmax > 0.0)) bad = 11;
    if (bad != 0) return illegal_setup_argument(exit, bad);
    const double eps = precision();
    const int mm = (code == 1 || code == 3) ? m : 0;
    Record rec;
    std::fill(rec.r, rec.r + kRecord, 0.0);
    rec.set(0, 50), rec.set(1, 40), rec.set(2, 10);
    rec.r[kMarkA] = kMarkValueA;
    rec.r[kMarkB] = kMarkValueB;
    rec.set(kState, 1);
    rec.set(kMethod, code);
    rec.set(kNorm, (nc == '1' ? 0 : nc == 'I' ? 1 : 2) + (wc == 'W' ? 3 : 0));
    rec.set(kIterm, iterm);
    rec.set(kN, n);
    rec.set(kM, mm);
    rec.set(kMaxitn, maxitn);
    rec.set(kMonit, monit > 0 ? monit : maxitn + 4);
    *lwreq = static_cast<int>(std::min<long>(work_needed(code, n, std::max(mm, 1)), 2147483647L));
    rec.set(kLwreq, *lwreq);
    rec.r[kTol] = tol > 0.0 ? std::max(tol, eps) : std::sqrt(eps);
    rec.r[kAnorm] = iterm == 1 ? std::max(anorm, 0.0) : 0.0;
    rec.r[kSigmax] = iterm == 1 ? 0.0 : std::max(sigmax, 0.0);
    rec.set(kEstimateSigma, iterm == 2 && code == 1 && !(sigmax > 0.0) ? 1 : 0);
    rec.set_flag(kPrecon, pc == 'P');
    rec.set_flag(kFirst, true);
    state_transfer("Put", rec, work);
    exit.succeed();
}

// The set-up routine of the symmetric and Hermitian suites: CG or SYMMLQ, with the optional Lanczos
// estimate of the largest singular value (SIGCMP 'S', SIGTOL, MAXITS).
void setup_symmetric(const char *name, const char *method, const char *precon, const char *sigcmp, const char *norm,
                     const char *weight, int iterm, int n, double tol, int maxitn, double anorm, double sigmax,
                     double sigtol, int maxits, int monit, int *lwreq, double *work, int lwork, char *errbuf,
                     int *ifail, int method_len, int precon_len, int sigcmp_len, int norm_len, int weight_len) {
    FailureExit exit(name, errbuf, ifail);
    if (lwork >= kRecord) {
        std::fill(work, work + kRecord, 0.0);
        work[kMarkA] = kMarkValueA;
        work[kMarkB] = kMarkValueB;
    }
    const std::string mname = method_buffer(method, method_len);
    const int code = mname == "CG                  " ? 1 : mname == "SYMMLQ              " ? 2 : 0;
    const char pc = letter(precon, precon_len), sc = letter(sigcmp, sigcmp_len), nc = letter(norm, norm_len),
               wc = letter(weight, weight_len);
    int bad = 0;
    if (code == 0) bad = 1;
    else if (pc != 'N' && pc != 'P') bad = 2;
    else if (sc != 'N' && sc != 'S') bad = 3;
    else if (nc != '1' && nc != 'I' && nc != '2') bad = 4;
    else if (wc != 'N' && wc != 'W') bad = 5;
    else if (iterm != 1 && iterm != 2) bad = 6;
    else if (n < 1) bad = 7;
    else if (!(tol < 1.0)) bad = 8;
    else if (maxitn < 1) bad = 9;
    else if (!(sigtol < 1.0)) bad = 12;
    else if (sc == 'S' && maxits < 1) bad = 13;
    else if (monit > maxitn) bad = 14;
    else if (lwork < kRecord) bad = 17;
    else if (iterm == 1 && nc == '2' && !(anorm > 0.0)) bad = 10;
    else if (iterm == 2 && nc != '2') bad = 6;
    else if (iterm == 2 && wc != 'N') bad = 5;
    else if (iterm == 2 && sc == 'N' && !(sigmax > 0.0)) bad = 11;
    if (bad != 0) return illegal_setup_argument(exit, bad);
    const double eps = precision();
    Record rec;
    std::fill(rec.r, rec.r + kRecord, 0.0);
    rec.set(0, 50), rec.set(1, 40), rec.set(2, 10);
    rec.r[kMarkA] = kMarkValueA;
    rec.r[kMarkB] = kMarkValueB;
    rec.set(kState, 1);
    rec.set(kMethod, code);
    rec.set(kSymmetric, 1);
    rec.set(kNorm, (nc == '1' ? 0 : nc == 'I' ? 1 : 2) + (wc == 'W' ? 3 : 0));
    rec.set(kIterm, iterm);
    rec.set(kN, n);
    rec.set(kMaxitn, maxitn);
    rec.set(kMonit, monit > 0 ? monit : maxitn + 4);
    const long lanczos = sc == 'S' ? 2L * maxits : 0L;
    *lwreq = static_cast<int>(std::min<long>((code == 1 ? 6L : 9L) * n + lanczos + kRecord, 2147483647L));
    rec.set(kLwreq, *lwreq);
    rec.r[kTol] = tol > 0.0 ? std::max(tol, eps) : std::sqrt(eps);
    rec.r[kAnorm] = iterm == 1 ? std::max(anorm, 0.0) : 0.0;
    rec.r[kSigmax] = sc == 'S' ? 0.0 : std::max(sigmax, 0.0);
    rec.set(kSigcmp, sc == 'S' ? 1 : 0);
    rec.set(kMaxits, sc == 'S' ? maxits : 0);
    rec.r[kSigtol] = sigtol > 0.0 ? std::max(sigtol, eps) : std::sqrt(eps);
    rec.set_flag(kPrecon, pc == 'P');
    rec.set_flag(kFirst, true);
    state_transfer("Put", rec, work);
    exit.succeed();
}

// The vectors start at element 100 of WORK: real elements for the real suites, complex elements for
// the complex ones (whose record fills the first 100 reals only).
template <class T> T *vector_base(double *work) { return values<T>(work) + kRecord; }

// F11_SEQUENCE_CHECK: the marks and the sequence state of the record in WORK.  Status 1 when the action
// finds the record out of sequence.
void sequence_check(int action, double *work, int *status) {
    *status = 0;
    if (action == -1 || action == 1) {
        work[kMarkA] = kMarkValueA;
        work[kMarkB] = kMarkValueB;
        work[kState] = action == 1 ? 1.0 : 0.0;
        return;
    }
    const bool marks = work[kMarkA] == kMarkValueA && work[kMarkB] == kMarkValueB;
    const long state = std::lround(work[kState]), returned = std::lround(work[kLastOut]);
    switch (action) {
    case 0: *status = marks ? 0 : 1; return;
    case 2:
        if (!marks || state != 1) *status = 1;
        else work[kState] = 2.0;
        return;
    case 3:
        if (!marks) *status = 1;
        else if (returned == 4) work[kState] = 3.0;
        return;
    case 4: *status = marks && (state == 3 || returned == 3) ? 0 : 1; return;
    default: *status = 1; return;
    }
}

// One call of a method's engine as the solver routine makes it, with the request multiplied: 100 and
// above an immediate stop, 10 and above a tidy one, 0 a fresh start.  STATUS is 0 while requests are
// returned and the final status with IREVCM 4; 3 when WORK holds no record of this method.
template <class T>
void engine_call(int method, bool symmetric, int *irevcm, double *u, double *v, const double *wgt, double *work,
                 int *status) {
    Record rec;
    state_transfer("Get", rec, work);
    int marks = 0;
    sequence_check(0, work, &marks);
    if (marks != 0 || rec.i(kMethod) != method || (rec.i(kSymmetric) != 0) != symmetric) {
        *status = 3;
        return;
    }
    int request = *irevcm;
    if (request >= 100 || request <= -100) {
        rec.set(kLastIn, 6);
    } else {
        if (request >= 10 || request <= -10) {
            request /= 10;
            rec.set(kTidy, 1);
        }
        if (request == 0) {
            rec.set(kPc, 0);
            rec.set(kStatus, 0);
        }
        rec.set(kLastIn, request);
    }
    Engine<T> engine(rec, values<T>(u), values<T>(v), wgt, vector_base<T>(work), irevcm);
    engine.run();
    rec.set(kLastOut, *irevcm);
    state_transfer("Put", rec, work);
    *status = *irevcm == 4 ? rec.i(kStatus) : 0;
}

// The solver routine: one step of the reverse communication.
template <class T>
void solve_step(const char *name, int *irevcm, double *u, double *v, const double *wgt, double *work, int lwork,
                char *errbuf, int *ifail) {
    FailureExit exit(name, errbuf, ifail);
    if (lwork < kRecord) {
        take(exit, kSuiteExits, kStepLworkShort, {6});
        return;
    }
    Record rec;
    state_transfer("Get", rec, work);
    // The set-up routine's name is the solver's with the fifth letter one back (BEF, BDF; GSF, GRF).
    std::string setup_name(name);
    setup_name[4] = static_cast<char>(setup_name[4] - 1);
    auto not_set_up_exit = [&] { take_pasting(exit, kSuiteExits, kNotSetUp, setup_name); };
    if (rec.r[kMarkA] != kMarkValueA || rec.r[kMarkB] != kMarkValueB || rec.i(kState) < 1) return not_set_up_exit();
    const bool first = rec.flag(kFirst);
    auto illegal = [&](int number) {
        take(exit, kSuiteExits, number == 1 ? kReentryIrevcm : kReentryLwork, {first ? "first " : "re-", number});
    };
    if (rec.i(kState) == 3) {
        take_pasting(exit, kSuiteExits, kAlreadyCompleted, name);
        return;
    }
    if (first) {
        if (*irevcm != 0) return illegal(1);
        if (rec.i(kState) != 1) return not_set_up_exit();
        if (lwork < rec.i(kLwreq)) return illegal(6);
        rec.set(kState, 2);
        rec.set(kLwork, lwork);
        rec.set_flag(kFirst, false);
        rec.set(kPc, 0);
        rec.set(kLastIn, 0);
    } else {
        if (lwork < rec.i(kLwreq)) return illegal(6);
        if (*irevcm == 5) {
            rec.set(kTidy, 1);
            rec.set(kLastIn, rec.i(kLastOut));
        } else if (*irevcm == 6) {
            rec.set(kLastIn, 6);
        } else if (*irevcm != rec.i(kLastOut)) {
            // An unexpected value ends the sequence.
            rec.set(kState, 3);
            state_transfer("Put", rec, work);
            return illegal(1);
        } else {
            rec.set(kLastIn, *irevcm);
        }
    }
    Engine<T> engine(rec, values<T>(u), values<T>(v), wgt, vector_base<T>(work), irevcm);
    engine.run();
    rec.set(kLastOut, *irevcm);
    if (*irevcm < 4) {
        state_transfer("Put", rec, work);
        exit.succeed();
        return;
    }
    rec.set(kState, 3);
    rec.set_flag(kFinished, true);
    state_transfer("Put", rec, work);
    const long iterations = rec.i(kIter);
    if (rec.i(kSymmetric) != 0) {
        // The symmetric suites number their exits apart: the definiteness failures take 4 and 5.
        switch (rec.i(kStatus)) {
        case 0: exit.succeed(); return;
        case 2:
        case 6:
            take(exit, kSuiteExits, rec.i(kTidy) ? kAccuracyTidy : kAccuracy);
            return;
        case 10: take(exit, kSuiteExits, kMatrixNotDefinite); return;
        case 11: take(exit, kSuiteExits, kPreconditionerNotDefinite); return;
        case 4: take(exit, kSuiteExits, kTidySymmetric, {iterations}); return;
        case 5: take(exit, kSuiteExits, kNotConvergedSymmetric, {iterations}); return;
        case 8: take(exit, kSuiteExits, kImmediate); return;
        default: return not_set_up_exit();
        }
    }
    switch (rec.i(kStatus)) {
    case 0: exit.succeed(); return;
    case 2:
        take(exit, kSuiteExits, rec.i(kTidy) ? kAccuracyTidy : kAccuracy);
        return;
    case 4:
        take(exit, kSuiteExits, kTidyNotConverged, {iterations});
        return;
    case 5: take(exit, kSuiteExits, kNotConverged, {iterations}); return;
    case 6: take(exit, kSuiteExits, kBreakdown, {iterations}); return;
    case 8: take(exit, kSuiteExits, kImmediate); return;
    default: return not_set_up_exit();
    }
}

void diagnostics(const char *name, int *itn, double *stplhs, double *stprhs, double *anorm, double *sigmax,
                 const double *work, int lwork, char *errbuf, int *ifail) {
    FailureExit exit(name, errbuf, ifail);
    *itn = 0;
    *stplhs = *stprhs = *anorm = *sigmax = 0.0;
    if (lwork < kRecord) {
        take(exit, kSuiteExits, kDiagnosticsLwork, {7});
        return;
    }
    Record rec;
    std::memcpy(rec.r, work, sizeof rec.r);
    int order = 0;
    sequence_check(4, rec.r, &order);
    if (order != 0) {
        take_pasting(exit, kSuiteExits, kOutOfSequence, name);
        return;
    }
    *itn = rec.i(kIter);
    *stplhs = rec.r[kStplhs];
    *stprhs = rec.r[kStprhs];
    *anorm = rec.r[kAnorm];
    *sigmax = rec.r[kSigmax];
    exit.succeed();
}

} // namespace zek::sparse

using zek::sparse::Complex;

extern "C" {

#define SOLVER_AND_DIAGNOSTIC(STEP, STEP_W, DIAG, DIAG_W, TYPE)                                             \
    void STEP_W(int *irevcm, double u[], double v[], const double wgt[], double work[], int lwork, char *errbuf,    \
                int *ifail, int errbuf_len) {                                                                       \
        (void)errbuf_len;                                                                                           \
        zek::sparse::solve_step<TYPE>(#STEP, irevcm, u, v, wgt, work, lwork, errbuf, ifail);                       \
    }                                                                                                               \
    void STEP(int *irevcm, double u[], double v[], const double wgt[], double work[], const int *lwork,           \
              int *ifail) {                                                                                         \
        zek::Front front(#STEP);                                                                                    \
        STEP_W(irevcm, u, v, wgt, work, *lwork, front.errbuf(), ifail, zek::kErrbufLength);                        \
        if (*irevcm == 4) front.finish(*ifail);                                                                     \
    }                                                                                                               \
    void DIAG_W(int *itn, double *stplhs, double *stprhs, double *anorm, double *sigmax, const double work[],       \
                int lwork, char *errbuf, int *ifail, int errbuf_len) {                                              \
        (void)errbuf_len;                                                                                           \
        zek::sparse::diagnostics(#DIAG, itn, stplhs, stprhs, anorm, sigmax, work, lwork, errbuf, ifail);            \
    }                                                                                                               \
    void DIAG(int *itn, double *stplhs, double *stprhs, double *anorm, double *sigmax, const double work[],         \
              const int *lwork, int *ifail) {                                                                       \
        zek::Front front(#DIAG);                                                                                    \
        DIAG_W(itn, stplhs, stprhs, anorm, sigmax, work, *lwork, front.errbuf(), ifail, zek::kErrbufLength);       \
        front.finish(*ifail);                                                                                       \
    }

#define SUITE(SET, SET_W, STEP, STEP_W, DIAG, DIAG_W, TYPE)                                                        \
    void SET_W(const char *method, const char *precon, const char *norm, const char *weight, int iterm, int n, int m, \
               double tol, int maxitn, double anorm, double sigmax, int monit, int *lwreq, double work[], int lwork, \
               char *errbuf, int *ifail, int method_len, int precon_len, int norm_len, int weight_len,             \
               int errbuf_len) {                                                                                    \
        (void)errbuf_len;                                                                                           \
        zek::sparse::setup(#SET, method, precon, norm, weight, iterm, n, m, tol, maxitn, anorm, sigmax, monit,     \
                           lwreq, work, lwork, errbuf, ifail, method_len, precon_len, norm_len, weight_len);        \
    }                                                                                                               \
    void SET(const char *method, const char *precon, const char *norm, const char *weight, const int *iterm,       \
             const int *n, const int *m, const double *tol, const int *maxitn, const double *anorm,                \
             const double *sigmax, const int *monit, int *lwreq, double work[], const int *lwork, int *ifail,      \
             int method_len, int precon_len, int norm_len, int weight_len) {                                       \
        zek::Front front(#SET);                                                                                     \
        SET_W(method, precon, norm, weight, *iterm, *n, *m, *tol, *maxitn, *anorm, *sigmax, *monit, lwreq, work,   \
              *lwork, front.errbuf(), ifail, method_len, precon_len, norm_len, weight_len, zek::kErrbufLength);     \
        front.finish(*ifail);                                                                                       \
    }                                                                                                               \
    SOLVER_AND_DIAGNOSTIC(STEP, STEP_W, DIAG, DIAG_W, TYPE)

#define SYMMETRIC_SUITE(SET, SET_W, STEP, STEP_W, DIAG, DIAG_W, TYPE)                                              \
    void SET_W(const char *method, const char *precon, const char *sigcmp, const char *norm, const char *weight,     \
               int iterm, int n, double tol, int maxitn, double anorm, double sigmax, double sigtol, int maxits,     \
               int monit, int *lwreq, double work[], int lwork, char *errbuf, int *ifail, int method_len,           \
               int precon_len, int sigcmp_len, int norm_len, int weight_len, int errbuf_len) {                       \
        (void)errbuf_len;                                                                                           \
        zek::sparse::setup_symmetric(#SET, method, precon, sigcmp, norm, weight, iterm, n, tol, maxitn, anorm,     \
                                     sigmax, sigtol, maxits, monit, lwreq, work, lwork, errbuf, ifail, method_len, \
                                     precon_len, sigcmp_len, norm_len, weight_len);                                 \
    }                                                                                                               \
    void SET(const char *method, const char *precon, const char *sigcmp, const char *norm, const char *weight,       \
             const int *iterm, const int *n, const double *tol, const int *maxitn, const double *anorm,            \
             const double *sigmax, const double *sigtol, const int *maxits, const int *monit, int *lwreq,          \
             double work[], const int *lwork, int *ifail, int method_len, int precon_len, int sigcmp_len,          \
             int norm_len, int weight_len) {                                                                        \
        zek::Front front(#SET);                                                                                     \
        SET_W(method, precon, sigcmp, norm, weight, *iterm, *n, *tol, *maxitn, *anorm, *sigmax, *sigtol, *maxits,  \
              *monit, lwreq, work, *lwork, front.errbuf(), ifail, method_len, precon_len, sigcmp_len, norm_len,    \
              weight_len, zek::kErrbufLength);                                                                      \
        front.finish(*ifail);                                                                                       \
    }                                                                                                               \
    SOLVER_AND_DIAGNOSTIC(STEP, STEP_W, DIAG, DIAG_W, TYPE)

SUITE(F11BDF, F11BDF_WORKER, F11BEF, F11BEF_WORKER, F11BFF, F11BFF_WORKER, double)
SUITE(F11BRF, F11BRF_WORKER, F11BSF, F11BSF_WORKER, F11BTF, F11BTF_WORKER, Complex)
SYMMETRIC_SUITE(F11GDF, F11GDF_WORKER, F11GEF, F11GEF_WORKER, F11GFF, F11GFF_WORKER, double)
SYMMETRIC_SUITE(F11GRF, F11GRF_WORKER, F11GSF, F11GSF_WORKER, F11GTF, F11GTF_WORKER, Complex)

// The engines, one per method and scalar type.
#define ENGINE(NAME, TYPE, METHOD, SYMMETRIC)                                                                       \
    void NAME(int *irevcm, double u[], double v[], const double wgt[], double work[], int *status) {                \
        zek::sparse::engine_call<TYPE>(METHOD, SYMMETRIC, irevcm, u, v, wgt, work, status);                        \
    }
ENGINE(F11_RGMRES_ENGINE, double, 1, false)
ENGINE(F11_CGS_ENGINE, double, 2, false)
ENGINE(F11_BICGSTAB_ENGINE, double, 3, false)
ENGINE(F11_TFQMR_ENGINE, double, 4, false)
ENGINE(F11_RGMRES_ENGINE_COMPLEX, Complex, 1, false)
ENGINE(F11_CGS_ENGINE_COMPLEX, Complex, 2, false)
ENGINE(F11_BICGSTAB_ENGINE_COMPLEX, Complex, 3, false)
ENGINE(F11_TFQMR_ENGINE_COMPLEX, Complex, 4, false)
ENGINE(F11_CG_ENGINE, double, 1, true)
ENGINE(F11_SYMMLQ_ENGINE, double, 2, true)
ENGINE(F11_CG_ENGINE_HERMITIAN, Complex, 1, true)
ENGINE(F11_SYMMLQ_ENGINE_HERMITIAN, Complex, 2, true)

void F11_STATE_TRANSFER(const char *how, double record[], double work[], int how_len) {
    // The first letter decides, in either case; anything but "Get" puts.
    zek::sparse::state_transfer(how_len >= 1 ? how : "P", record, work);
}

void F11_SEQUENCE_CHECK(int action, double work[], int *status) { zek::sparse::sequence_check(action, work, status); }

double F11_VECTOR_NORM(int code, int wide, int n, const double x[], const double w[]) {
    if (n < 1) return 0.0;
    if (code == 2 && wide != 0) return std::sqrt(zek::ddot(n, x, 1, x, 1));
    return zek::sparse::vector_norm(code, n, x, w);
}

} // extern "C"
