// Condition numbers of the eigenvalues and eigenvectors of a Schur form (F08QLF/DTRSNA, F08QYF/ZTRSNA)
// and the eigenvectors of a complex Schur form (F08QXF/ZTREVC with its one-vector helper F08QXZ).
//
// S(k), the reciprocal condition of an eigenvalue, is |y^H x| / (|x| |y|) for its right and left
// eigenvectors x, y, read from the columns the caller passes (those of F08QKF or F08QXF).  SEP(k), the
// reciprocal condition of the eigenvector, is the separation of the eigenvalue lambda from the rest of
// the spectrum: a copy of T has the eigenvalue moved to the top by the reordering routines, and SEP is
// 1 / ||C^-1||_1 estimated by the 1-norm estimator, with C = T22 - lambda*I the trailing part.  For a
// complex pair of a real Schur form the leading 2 by 2 block is first triangularised by a unitary
// plane rotation, so that C = [conj(lambda) - lambda, b; 0, T22 - lambda*I] is the trailing part of the
// complex Schur form: the real and complex routines then measure the same quantity.
//
// Every solve with C or C^H is a guarded substitution: diagonal pivots below smin are raised to smin,
// and the vector is scaled down (the scale factor kept) before any step that could overflow, so the
// estimate stays finite on any finite input.  The workspace is the caller's: WORK(LDWORK, N+6) reals
// hold the moved copy (columns 1..N) and three complex vectors; WORK(LDWORK, N+1) complex and RWORK(N)
// likewise for the complex routine.
#include <algorithm>
#include <cfloat>
#include <cmath>
#include <complex>
#include <cstddef>
#include <type_traits>

#include "frame/machine.h"
#include "kernels/factor_support.h"
#include "kernels/kernel_types.h"
#include "kernels/norm_estimation.h"
#include "kernels/schur.h"
#include "zek2/f08.h"

namespace {

using Cx = std::complex<double>;

double abs1(Cx z) { return std::fabs(z.real()) + std::fabs(z.imag()); }

// The shifted operator C = [d0, b'; 0, P - mu*I] (the leading row only when `lead`), P of order np the
// block of the moved copy starting at `w`: quasi-triangular for a real element type, triangular for a
// complex one.
template <class E> struct Shifted {
    const E *w;
    std::ptrdiff_t ldw;
    int np;
    Cx mu;
    bool lead;
    Cx d0;
    const Cx *b;

    int size() const { return np + (lead ? 1 : 0); }
    Cx p(int i, int j) const { return i == j ? Cx(w[i + j * ldw]) - mu : Cx(w[i + j * ldw]); }
    bool joined(int i) const { // P(i+1, i) nonzero: rows i, i+1 form a 2 by 2 block
        if constexpr (std::is_same_v<E, double>)
            return i + 1 < np && w[(i + 1) + i * ldw] != 0.0;
        else
            return false;
    }
    double largest() const {
        double big = lead ? abs1(d0) : 0.0;
        for (int j = 0; j < np; ++j) {
            if (lead) big = std::max(big, abs1(b[j]));
            for (int i = 0; i <= std::min(j + 1, np - 1); ++i) big = std::max(big, abs1(p(i, j)));
        }
        return big;
    }
};

// The guarded substitution: solves C x = scale*r (or C^H x = scale*r) in place, 0 < scale <= 1.
class GuardedSolve {
  public:
    GuardedSolve(Cx *x, int n, double wmax, double smin)
        : x_(x), n_(n), smin_(smin), limit_(0.25 * DBL_MAX / std::max(1.0, wmax * (n + 1))) {}

    double scale() const { return scale_; }

    // Keeps |x| below the limit before a product sum.
    void bound() {
        double big = 0.0;
        for (int i = 0; i < n_; ++i) big = std::max(big, abs1(x_[i]));
        if (big > limit_) rescale(limit_ / big);
    }

    // x[i] := x[i] / d with |d| raised to smin and the vector scaled first if the quotient would pass
    // the limit.
    void divide(int i, Cx d) {
        if (abs1(d) < smin_) d = smin_;
        const double num = abs1(x_[i]), den = abs1(d);
        if (den < 1.0 && num > den * limit_) rescale(0.5 * den * limit_ / num);
        x_[i] /= d;
    }

    // The 2 by 2 system [a11 a12; a21 a22] (x[i], x[j]) = (x[i], x[j]) by elimination with a row
    // interchange, each pivot guarded.
    void solve2(int i, int j, Cx a11, Cx a12, Cx a21, Cx a22) {
        if (abs1(a21) > abs1(a11)) {
            std::swap(a11, a21);
            std::swap(a12, a22);
            std::swap(x_[i], x_[j]);
        }
        const Cx pivot = abs1(a11) < smin_ ? Cx(smin_) : a11;
        const Cx l = a21 / pivot;
        x_[j] -= l * x_[i];
        divide(j, a22 - l * a12);
        bound();
        x_[i] -= a12 * x_[j];
        divide(i, pivot);
        // The unknowns are (x[i], x[j]) in the original order: the interchange was of equations only.
    }

  private:
    void rescale(double f) {
        for (int i = 0; i < n_; ++i) x_[i] *= f;
        scale_ *= f;
    }
    Cx *x_;
    int n_;
    double smin_, limit_, scale_ = 1.0;
};

// C x = scale*r (conj_transpose false) or C^H x = scale*r, x holding r on entry.  Returns the scale.
template <class E> double shifted_solve(const Shifted<E> &c, bool conj_transpose, Cx *x, double smin) {
    const int off = c.lead ? 1 : 0, np = c.np;
    Cx *y = x + off; // the part that belongs to P
    GuardedSolve g(x, c.size(), c.largest(), smin);
    if (!conj_transpose) {
        for (int j = np - 1; j >= 0;) {
            const bool two = j > 0 && c.joined(j - 1);
            const int top = two ? j - 1 : j;
            g.bound();
            for (int r = top; r <= j; ++r) {
                Cx s = 0.0;
                for (int l = j + 1; l < np; ++l) s += c.p(r, l) * y[l];
                y[r] -= s;
            }
            if (two)
                g.solve2(off + top, off + j, c.p(top, top), c.p(top, j), c.p(j, top), c.p(j, j));
            else
                g.divide(off + j, c.p(j, j));
            j = top - 1;
        }
        if (c.lead) {
            g.bound();
            Cx s = 0.0;
            for (int l = 0; l < np; ++l) s += c.b[l] * y[l];
            x[0] -= s;
            g.divide(0, c.d0);
        }
        return g.scale();
    }
    if (c.lead) {
        g.divide(0, std::conj(c.d0));
        g.bound();
        for (int l = 0; l < np; ++l) y[l] -= std::conj(c.b[l]) * x[0];
    }
    for (int j = 0; j < np;) {
        const bool two = c.joined(j);
        const int last = two ? j + 1 : j;
        g.bound();
        for (int r = j; r <= last; ++r) {
            Cx s = 0.0;
            for (int l = 0; l < j; ++l) s += std::conj(c.p(l, r)) * y[l];
            y[r] -= s;
        }
        if (two)
            g.solve2(off + j, off + last, std::conj(c.p(j, j)), std::conj(c.p(last, j)), std::conj(c.p(j, last)),
                     std::conj(c.p(last, last)));
        else
            g.divide(off + j, std::conj(c.p(j, j)));
        j = last + 1;
    }
    return g.scale();
}

// SEP = 1 / ||C^-1||_1 by the estimator; v and x are work vectors of C's order.  Zero when a solve had
// to scale the vector below the representable range.
template <class E> double separation(const Shifted<E> &c, double smin, Cx *v, Cx *x) {
    const int m = c.size();
    const double smlnum = zek::safe_minimum() / zek::precision();
    if (m == 0) return 0.0;
    double est = 0.0, scale = 1.0;
    int kase = 0, isave[3] = {0, 0, 0};
    zek::Complex *vz = reinterpret_cast<zek::Complex *>(v), *xz = reinterpret_cast<zek::Complex *>(x);
    for (int guard = 0; guard < 20; ++guard) {
        zek::estimate_norm(m, vz, xz, isave, &est, &kase);
        if (kase == 0) break;
        const double s = shifted_solve(c, kase == 1, x, smin);
        if (s != 1.0) {
            double xmax = 0.0;
            for (int i = 0; i < m; ++i) xmax = std::max(xmax, abs1(x[i]));
            if (s < xmax * smlnum || s == 0.0) return 0.0;
            for (int i = 0; i < m; ++i) x[i] /= s;
        }
        scale = 1.0;
    }
    return scale / std::max(est, smlnum);
}

bool is_pair_start(const double *t, std::ptrdiff_t ldt, int n, int k) { return k + 1 < n && t[(k + 1) + k * ldt] != 0.0; }

// 1/cond of an eigenvalue from its vector columns: |<y, x>| / (|x| |y|) with x = xr + i xi.
double eigenvalue_rcond(int n, const double *xr, const double *xi, const double *yr, const double *yi) {
    double pr = 0.0, pc = 0.0, nx = 0.0, ny = 0.0;
    for (int i = 0; i < n; ++i) {
        const Cx x(xr[i], xi ? xi[i] : 0.0), y(yr[i], yi ? yi[i] : 0.0);
        const Cx p = std::conj(y) * x;
        pr += p.real();
        pc += p.imag();
        nx = std::hypot(nx, std::abs(x));
        ny = std::hypot(ny, std::abs(y));
    }
    const double den = nx * ny;
    return den > 0.0 ? std::hypot(pr, pc) / den : 0.0;
}

// The checks before SELECT is read; MM (position 13) and LDWORK (16) follow in the callers.
int trsna_arguments(char job, char howmny, int n, int ldt, int ldvl, int ldvr) {
    const bool wants = job == 'E' || job == 'B';
    if (job != 'E' && job != 'V' && job != 'B') return -1;
    if (howmny != 'A' && howmny != 'S') return -2;
    if (n < 0) return -4;
    if (ldt < std::max(1, n)) return -6;
    if (ldvl < 1 || (wants && ldvl < n)) return -8;
    if (ldvr < 1 || (wants && ldvr < n)) return -10;
    return 0;
}

} // namespace

// ---- Real Schur form ------------------------------------------------------------------------------

extern "C" void f08qlf_ENTRY(int, const char *job, const char *howmny, const int *select, const int *n, const double *t,
                             const int *ldt, const double *vl, const int *ldvl, const double *vr, const int *ldvr,
                             double *s, double *sep, const int *mm, int *m, double *work, const int *ldwork, int *,
                             int *info, int, int) {
    const char jb = zek::option_letter(job), hw = zek::option_letter(howmny);
    const int nn = *n;
    const std::ptrdiff_t lt = std::max(*ldt, 0);
    *info = trsna_arguments(jb, hw, nn, *ldt, *ldvl, *ldvr);
    const bool wants = jb == 'E' || jb == 'B', wantsp = jb == 'V' || jb == 'B', some = hw == 'S';
    // The places needed: both of a pair when either SELECT entry asks for it.
    int need = 0;
    if (*info == 0) {
        for (int k = 0; k < nn; ++k) {
            if (is_pair_start(t, lt, nn, k)) {
                if (!some || select[k] != 0 || select[k + 1] != 0) need += 2;
                ++k;
            } else if (!some || select[k] != 0) {
                ++need;
            }
        }
        if (*info == 0) {
            *m = need;
            if (*mm < need) *info = -13;
            else if (*ldwork < 1 || (wantsp && *ldwork < nn)) *info = -16;
        }
    }
    if (*info != 0) {
        zek::silent_report("F08QLF/DTRSNA", -*info);
        return;
    }
    if (nn == 0) return;
    if (nn == 1) {
        if (some && select[0] == 0) return;
        if (wants) s[0] = 1.0;
        if (wantsp) sep[0] = std::fabs(t[0]);
        return;
    }
    const std::ptrdiff_t lw = *ldwork, lvl = *ldvl, lvr = *ldvr;
    const double eps = zek::precision(), smlnum = zek::safe_minimum() / eps;
    Cx *bvec = reinterpret_cast<Cx *>(work + nn * lw), *v = bvec + lw, *x = v + lw;
    int ks = 0;
    for (int k = 0; k < nn; ++k) {
        const bool pair = is_pair_start(t, lt, nn, k);
        if (some && (pair ? select[k] == 0 && select[k + 1] == 0 : select[k] == 0)) {
            if (pair) ++k;
            continue;
        }
        if (wants) {
            const double c = pair ? eigenvalue_rcond(nn, vr + ks * lvr, vr + (ks + 1) * lvr, vl + ks * lvl,
                                                     vl + (ks + 1) * lvl)
                                  : eigenvalue_rcond(nn, vr + ks * lvr, nullptr, vl + ks * lvl, nullptr);
            s[ks] = c;
            if (pair) s[ks + 1] = c;
        }
        if (wantsp) {
            // The copy with the block moved to the top.
            for (int j = 0; j < nn; ++j)
                for (int i = 0; i < nn; ++i) work[i + j * lw] = t[i + j * lt];
            int ifst = k + 1, ilst = 1, ierr = 0;
            f08qff_ENTRY(1, "N", n, work, ldwork, work, ldwork, &ifst, &ilst, nullptr, &ierr, 1);
            double sp = 0.0;
            if (ierr == 0) {
                const bool two = work[1] != 0.0;
                double wmax = 0.0;
                for (int j = 0; j < nn; ++j)
                    for (int i = 0; i <= std::min(j + 1, nn - 1); ++i) wmax = std::max(wmax, std::fabs(work[i + j * lw]));
                const double smin = std::max(eps * wmax, smlnum);
                if (!two) {
                    const Shifted<double> c{work + 1 + lw, lw, nn - 1, Cx(work[0]), false, 0.0, nullptr};
                    sp = separation(c, smin, v, x);
                } else {
                    // Triangularise the standard block [a b; c a]: its eigenvector for
                    // lambda = a + i*beta is (b, i*beta); the second column of the rotation spans the
                    // rest, and its row of the rotated T couples conj(lambda) to T22.
                    const double a = work[0], b = work[lw], cc = work[1];
                    const double beta = std::sqrt(std::fabs(b)) * std::sqrt(std::fabs(cc));
                    const double norm = std::hypot(b, beta);
                    const Cx u10(b / norm), u11(0.0, beta / norm);
                    const Cx u20 = -std::conj(u11), u21 = std::conj(u10);
                    for (int j = 2; j < nn; ++j)
                        bvec[j - 2] = std::conj(u20) * work[j * lw] + std::conj(u21) * work[1 + j * lw];
                    const Cx lambda(a, beta);
                    const Shifted<double> c{work + 2 + 2 * lw, lw, nn - 2, lambda, true, std::conj(lambda) - lambda,
                                            bvec};
                    sp = separation(c, smin, v, x);
                }
            }
            sep[ks] = sp;
            if (pair) sep[ks + 1] = sp;
        }
        ks += pair ? 2 : 1;
        if (pair) ++k;
    }
}

extern "C" void F08QLF(const char *job, const char *howmny, const int *select, const int *n, const double *t,
                       const int *ldt, const double *vl, const int *ldvl, const double *vr, const int *ldvr, double *s,
                       double *sep, const int *mm, int *m, double *work, const int *ldwork, int *iwork, int *info,
                       int job_len, int howmny_len) {
    f08qlf_ENTRY(0, job, howmny, select, n, t, ldt, vl, ldvl, vr, ldvr, s, sep, mm, m, work, ldwork, iwork, info,
                 job_len, howmny_len);
}

// ---- Complex Schur form ---------------------------------------------------------------------------

extern "C" void f08qyf_ENTRY(int, const char *job, const char *howmny, const int *select, const int *n, const double *t,
                             const int *ldt, const double *vl, const int *ldvl, const double *vr, const int *ldvr,
                             double *s, double *sep, const int *mm, int *m, double *work, const int *ldwork, double *,
                             int *info, int, int) {
    const char jb = zek::option_letter(job), hw = zek::option_letter(howmny);
    const int nn = *n;
    *info = trsna_arguments(jb, hw, nn, *ldt, *ldvl, *ldvr);
    const bool wants = jb == 'E' || jb == 'B', wantsp = jb == 'V' || jb == 'B', some = hw == 'S';
    if (*info == 0) {
        int need = nn;
        if (some) {
            need = 0;
            for (int k = 0; k < nn; ++k) need += select[k] != 0 ? 1 : 0;
        }
        *m = need;
        if (*mm < need) *info = -13;
        else if (*ldwork < 1 || (wantsp && *ldwork < nn)) *info = -16;
    }
    if (*info != 0) {
        zek::silent_report("F08QYF/ZTRSNA", -*info);
        return;
    }
    if (nn == 0) return;
    const Cx *tc = reinterpret_cast<const Cx *>(t);
    const std::ptrdiff_t lt = *ldt, lw = *ldwork, lvl = *ldvl, lvr = *ldvr;
    if (nn == 1) {
        if (some && select[0] == 0) return;
        if (wants) s[0] = 1.0;
        if (wantsp) sep[0] = std::abs(tc[0]);
        return;
    }
    Cx *wc = reinterpret_cast<Cx *>(work);
    const double eps = zek::precision(), smlnum = zek::safe_minimum() / eps;
    int ks = 0;
    for (int k = 0; k < nn; ++k) {
        if (some && select[k] == 0) continue;
        if (wants) {
            const Cx *x = reinterpret_cast<const Cx *>(vr) + ks * lvr, *y = reinterpret_cast<const Cx *>(vl) + ks * lvl;
            Cx p = 0.0;
            double nx = 0.0, ny = 0.0;
            for (int i = 0; i < nn; ++i) {
                p += std::conj(y[i]) * x[i];
                nx = std::hypot(nx, std::abs(x[i]));
                ny = std::hypot(ny, std::abs(y[i]));
            }
            s[ks] = nx * ny > 0.0 ? std::abs(p) / (nx * ny) : 0.0;
        }
        if (wantsp) {
            for (int j = 0; j < nn; ++j)
                for (int i = 0; i < nn; ++i) wc[i + j * lw] = tc[i + j * lt];
            int ifst = k + 1, ilst = 1, ierr = 0;
            f08qtf_ENTRY(1, "N", n, work, ldwork, work, ldwork, &ifst, &ilst, &ierr, 1);
            double wmax = 0.0;
            for (int j = 0; j < nn; ++j)
                for (int i = 0; i <= j; ++i) wmax = std::max(wmax, abs1(wc[i + j * lw]));
            const double smin = std::max(eps * wmax, smlnum);
            // Column 1 of the copy is free once the block is at the top; column N+1 is the other vector.
            const Shifted<Cx> c{wc + 1 + lw, lw, nn - 1, wc[0], false, 0.0, nullptr};
            sep[ks] = ierr == 0 ? separation(c, smin, wc + nn * lw, wc) : 0.0;
        }
        ++ks;
    }
}

extern "C" void F08QYF(const char *job, const char *howmny, const int *select, const int *n, const double *t,
                       const int *ldt, const double *vl, const int *ldvl, const double *vr, const int *ldvr, double *s,
                       double *sep, const int *mm, int *m, double *work, const int *ldwork, double *rwork, int *info,
                       int job_len, int howmny_len) {
    f08qyf_ENTRY(0, job, howmny, select, n, t, ldt, vl, ldvl, vr, ldvr, s, sep, mm, m, work, ldwork, rwork, info,
                 job_len, howmny_len);
}

// ---- Eigenvectors of a complex Schur form ---------------------------------------------------------

extern "C" void F08QXZ(const int *left, const int *n, const double *t, const int *ldt, const int *k, double *x) {
    const int nn = *n, kk = *k - 1;
    if (nn <= 0 || kk < 0 || kk >= nn || *ldt < nn) return;
    const Cx *tc = reinterpret_cast<const Cx *>(t);
    const std::ptrdiff_t lt = *ldt;
    Cx *xc = reinterpret_cast<Cx *>(x);
    const Cx lambda = tc[kk + kk * lt];
    const double smin = std::max(zek::precision() * abs1(lambda), zek::safe_minimum() / zek::precision());
    std::fill(xc, xc + nn, Cx(0.0));
    double scale = 1.0;
    if (*left == 0) {
        // T11 x1 = lambda x1 - T(1:k-1, k): (T11 - lambda I) x1 = -T(1:k-1, k) * 1.
        for (int i = 0; i < kk; ++i) xc[i] = -tc[i + kk * lt];
        const Shifted<Cx> c{tc, lt, kk, lambda, false, 0.0, nullptr};
        scale = shifted_solve(c, false, xc, smin);
        xc[kk] = scale;
    } else {
        // (T22 - lambda I)^H u2 = -conj(T(k, k+1:n)).
        Cx *u = xc + kk + 1;
        for (int i = 0; i < nn - kk - 1; ++i) u[i] = -std::conj(tc[kk + (kk + 1 + i) * lt]);
        const Shifted<Cx> c{tc + (kk + 1) * (lt + 1), lt, nn - kk - 1, lambda, false, 0.0, nullptr};
        scale = shifted_solve(c, true, u, smin);
        xc[kk] = scale;
    }
    double big = 0.0;
    for (int i = 0; i < nn; ++i) big = std::max(big, abs1(xc[i]));
    if (big > 0.0)
        for (int i = 0; i < nn; ++i) xc[i] /= big;
}

namespace zek {

int F08QXF(char side, char howmny, int *select, int n, const double *t, int ldt, double *vl, int ldvl, double *vr,
           int ldvr, int mm, int *m, double *work) {
    const bool rightv = side == 'R' || side == 'B', leftv = side == 'L' || side == 'B';
    const bool back = howmny == 'B', some = howmny == 'S';
    int info = 0;
    if (!rightv && !leftv) info = -1;
    else if (howmny != 'A' && !back && !some) info = -2;
    else if (n < 0) info = -4;
    else if (ldt < std::max(1, n)) info = -6;
    else if (ldvl < 1 || (leftv && ldvl < n)) info = -8;
    else if (ldvr < 1 || (rightv && ldvr < n)) info = -10;
    if (info == 0) {
        *m = n;
        if (some) {
            *m = 0;
            for (int k = 0; k < n; ++k) *m += select[k] != 0 ? 1 : 0;
        }
        if (mm < *m) info = -11;
    }
    if (info != 0) {
        silent_report("F08QXF/ZTREVC", -info);
        return info;
    }
    Cx *x = reinterpret_cast<Cx *>(work), *y = x + n;
    for (int pass = 0; pass < 2; ++pass) {
        const int isleft = pass;
        if (isleft != 0 ? !leftv : !rightv) continue;
        Cx *out = reinterpret_cast<Cx *>(isleft != 0 ? vl : vr);
        const std::ptrdiff_t lo = isleft != 0 ? ldvl : ldvr;
        // Right vectors from the last eigenvalue backwards and left ones forwards: back-transformation
        // of vector k reads Q's columns 1..k (right) or k..N (left), none of them overwritten yet.
        int col = isleft != 0 ? 0 : *m - 1;
        for (int step = 0; step < n; ++step) {
            const int k = isleft != 0 ? step : n - 1 - step;
            if (some && select[k] == 0) continue;
            const int kk = k + 1;
            Cx *dst = out + (some ? col : k) * lo;
            col += isleft != 0 ? 1 : -1;
            if (!back) {
                F08QXZ(&isleft, &n, t, &ldt, &kk, reinterpret_cast<double *>(dst));
                continue;
            }
            F08QXZ(&isleft, &n, t, &ldt, &kk, reinterpret_cast<double *>(x));
            std::fill(y, y + n, Cx(0.0));
            const int first = isleft != 0 ? k : 0, last = isleft != 0 ? n - 1 : k;
            for (int l = first; l <= last; ++l)
                for (int i = 0; i < n; ++i) y[i] += out[i + l * lo] * x[l];
            double big = 0.0;
            for (int i = 0; i < n; ++i) big = std::max(big, ::abs1(y[i]));
            for (int i = 0; i < n; ++i) dst[i] = big > 0.0 ? y[i] / big : y[i];
        }
    }
    return 0;
}

} // namespace zek
