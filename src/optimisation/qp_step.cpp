// The quadratic objective on the active-set core: reduced Hessian, inertia control and the direction.
#include <algorithm>
#include <cmath>
#include <limits>

#include "kernels/level1.h"
#include "kernels/level2.h"
#include "kernels/rotations.h"
#include "kernels/vector_utilities.h"
#include "optimisation/qp.h"

namespace zek::qp {

using active_set::Core;
using active_set::Word;

namespace {
constexpr double kInfinity = std::numeric_limits<double>::infinity();

bool all_finite(int n, const double *v) {
    for (int i = 0; i < n; ++i)
        if (!std::isfinite(v[i])) return false;
    return true;
}
} // namespace

std::ptrdiff_t step_work_needed(int n, int maxfree) {
    const std::ptrdiff_t mf = std::max(maxfree, 1);
    return 2 * mf * mf + 2 * static_cast<std::ptrdiff_t>(std::max(n, 1)) + 4 * mf;
}

QuadraticStep::QuadraticStep(int n, int maxfree, const double *cvec, Hessian *hessian, double *work,
                             double rank_tol, int max_degrees)
    : n_(n), maxfree_(std::max(maxfree, 1)), cvec_(cvec), hessian_(hessian), rank_tol_(rank_tol),
      max_degrees_(max_degrees), refresh_period_(std::max(100, n)) {
    const std::ptrdiff_t mf = maxfree_;
    m_ = work;
    r_ = m_ + mf * mf;
    hv_ = r_ + mf * mf;
    v_ = hv_ + std::max(n, 1);
    u_ = v_ + std::max(n, 1);
    used_ = u_ + 2 * mf;  // u_ holds two nz-vectors
}

double QuadraticStep::objective(const Core &c, double *g) {
    double f = 0.0;
    if (hessian_ != nullptr && !failed_) {
        if (!hessian_->product(c.x, hv_) || !all_finite(n_, hv_)) {
            failed_ = true;
        } else {
            dcopy(n_, hv_, 1, g, 1);
            f = 0.5 * ddot(n_, hv_, 1, c.x, 1);
        }
    }
    if (hessian_ == nullptr || failed_) vector_load(n_, 0.0, g, 1);
    if (cvec_ != nullptr) {
        daxpy(n_, 1.0, cvec_, 1, g, 1);
        f += ddot(n_, cvec_, 1, c.x, 1);
    }
    return f;
}

void QuadraticStep::scatter_z(const Core &c, const double *colz, double *v) const {
    vector_load(n_, 0.0, v, 1);
    for (int k = 0; k < c.nfree; ++k) v[c.kx[k]] = colz[k];
}

// mk := Z'H z_k for column k of Z, by one product with H.
bool QuadraticStep::reduced_column(const Core &c, int k, double *mk) {
    if (hessian_ == nullptr) {
        vector_load(c.nz, 0.0, mk, 1);
        return true;
    }
    scatter_z(c, c.q + static_cast<std::ptrdiff_t>(k) * c.ldq, v_);
    if (!hessian_->product(v_, hv_) || !all_finite(n_, hv_)) {
        failed_ = true;
        return false;
    }
    for (int f = 0; f < c.nfree; ++f) v_[f] = hv_[c.kx[f]];
    dgemv("T", c.nfree, c.nz, 1.0, c.q, c.ldq, v_, 1, 0.0, mk, 1);
    return true;
}

// M := Z'HZ for the current null space, by one product per column of Z.
bool QuadraticStep::refactorise(const Core &c) {
    const int nz = c.nz;
    const std::ptrdiff_t ld = maxfree_;
    m_ready_ = r_valid_ = false;
    for (int k = 0; k < nz; ++k)
        if (!reduced_column(c, k, m_ + k * ld)) return false;
    for (int j = 0; j < nz; ++j)
        for (int i = 0; i < j; ++i) {
            const double s = 0.5 * (m_[i + j * ld] + m_[j + i * ld]);
            m_[i + j * ld] = s;
            m_[j + i * ld] = s;
        }
    m_ready_ = true;
    updates_ = 0;
    ++refreshes_;
    return true;
}

// Z has become Z G: M := G'MG, and R := Q R G with rotations Q from the left that keep R triangular.
void QuadraticStep::z_rotated(const Core &c, int k1, int k2, const double *cs, const double *sn) {
    dirty_ = true;
    if (!m_ready_) return;
    const int nz = c.nz;
    const int ld = maxfree_;
    ++updates_;
    rotation_apply_general('L', 'V', 'F', nz, nz, k1, k2, cs, sn, m_, ld);
    rotation_apply_general('R', 'V', 'F', nz, nz, k1, k2, cs, sn, m_, ld);
    if (!r_valid_) return;
    // Rotating adjacent columns in increasing order leaves R upper Hessenberg in columns k1..k2.
    rotation_apply_general('R', 'V', 'F', nz, nz, k1, k2, cs, sn, r_, ld);
    double *rc = u_, *rs = u_ + maxfree_;
    for (int k = k1; k < k2; ++k) {
        double &below = r_[k + static_cast<std::ptrdiff_t>(k - 1) * ld];
        rs[k - 1] = below;
        below = 0.0;
    }
    hessenberg_to_triangle('L', nz, k1, k2, rc, rs, r_, ld);
}

// The last column of Z has gone: M and R lose their last row and column, R staying the factor of M.
void QuadraticStep::z_column_removed(const Core &) { dirty_ = true; }

// A new last column of Z: one product with H gives the new row and column of M, and R grows by one
// Cholesky step when the new pivot keeps M positive definite.
void QuadraticStep::z_column_added(const Core &c) {
    dirty_ = true;
    grown_ = true;
    if (!m_ready_ || failed_) return;
    const int nz = c.nz, k = nz - 1;
    const std::ptrdiff_t ld = maxfree_;
    ++updates_;
    double *mk = m_ + k * ld;
    if (!reduced_column(c, k, mk)) {
        m_ready_ = r_valid_ = false;
        return;
    }
    for (int i = 0; i < k; ++i) m_[k + i * ld] = mk[i];
    if (!r_valid_) return;
    double *col = r_ + k * ld;
    dcopy(k, mk, 1, col, 1);
    dtrsv("U", "T", "N", k, r_, ld, col, 1);
    const double d = mk[k] - ddot(k, col, 1, col, 1);
    double scale = 0.0;
    for (int j = 0; j < nz; ++j) scale = std::max(scale, std::fabs(m_[j + j * ld]));
    if (!(d > rank_tol_ * scale && d > 0.0)) {
        r_valid_ = false;
        return;
    }
    col[k] = std::sqrt(d);
    for (int j = 0; j < k; ++j) r_[k + j * ld] = 0.0;
}

// True when every pivot of the carried factor still passes the test the factorisation applies.
bool QuadraticStep::factor_still_definite(int nz) const {
    const std::ptrdiff_t ld = maxfree_;
    double scale = 0.0;
    for (int k = 0; k < nz; ++k) scale = std::max(scale, std::fabs(m_[k + k * ld]));
    const double tol = rank_tol_ * scale;
    for (int k = 0; k < nz; ++k) {
        const double d = r_[k + k * ld] * r_[k + k * ld];
        if (!(d > tol && d > 0.0)) return false;
    }
    return true;
}

bool QuadraticStep::direction(const Core &c, const double *gz, double gznorm, double gnorm, double *pz,
                              double *natural) {
    const int nz = c.nz;
    const std::ptrdiff_t ld = maxfree_;
    *natural = kInfinity;
    if (failed_) return false;
    if (nz > max_degrees_) {
        too_big_ = true;
        return false;
    }
    const bool changed = dirty_, grown = grown_;
    if (!m_ready_ || updates_ >= refresh_period_) {
        if (!refactorise(c)) return false;
    }
    dirty_ = false;
    grown_ = false;
    // A full step to the minimiser on an unchanged working set leaves a stationary point.
    if (!changed && last_newton_) {
        last_newton_ = false;
        return false;
    }
    last_newton_ = false;
    if (nz == 0) {
        rank_ = singular_ = 0;
        indefinite_ = false;
        return false;
    }

    // Cholesky with inertia control into the compact factor R (rank by rank, columns S = the used
    // columns of M in order).  used_[k]: 1 taken, -(r+1) skipped while the factor had rank r.
    double scale = 0.0;
    for (int k = 0; k < nz; ++k) scale = std::max(scale, std::fabs(m_[k + k * ld]));
    const double tol = rank_tol_ * scale;
    int rank = 0;
    double *slot = u_ + nz;  // S, in the second half of u_
    const auto pos = [slot](int j) { return static_cast<int>(slot[j]); };
    double *y = v_;
    indefinite_ = false;
    singular_ = 0;
    double *vdir = hv_;  // a direction of zero or negative curvature, over the nz columns
    bool curved = false;
    const auto conjugate_direction = [&](int k, int r, double *v) {
        // v = e_k - M_SS^{-1} M(S,k) over the first r used columns; y holds R^{-T} M(S,k).
        vector_load(nz, 0.0, v, 1);
        for (int j = 0; j < r; ++j) y[j] = m_[pos(j) + k * ld];
        dtrsv("U", "T", "N", r, r_, ld, y, 1);
        dtrsv("U", "N", "N", r, r_, ld, y, 1);
        for (int j = 0; j < r; ++j) v[pos(j)] = -y[j];
        v[k] = 1.0;
    };
    if (r_valid_ && factor_still_definite(nz)) {
        // The carried factor: every column taken, in order.
        rank = nz;
        for (int k = 0; k < nz; ++k) {
            slot[k] = k;
            used_[k] = 1.0;
        }
    } else {
        r_valid_ = false;
        ++factorisations_;
    }
    for (int k = rank; k < nz && !curved; ++k) {
        for (int j = 0; j < rank; ++j) y[j] = m_[pos(j) + k * ld];
        dtrsv("U", "T", "N", rank, r_, ld, y, 1);
        const double d = m_[k + k * ld] - ddot(rank, y, 1, y, 1);
        if (d > tol && d > 0.0) {
            double *col = r_ + rank * ld;
            dcopy(rank, y, 1, col, 1);
            col[rank] = std::sqrt(d);
            slot[rank] = k;
            used_[k] = 1.0;
            ++rank;
            continue;
        }
        used_[k] = -(rank + 1.0);
        conjugate_direction(k, rank, vdir);
        const double vnorm = dnrm2(nz, vdir, 1);
        const double gv = ddot(nz, gz, 1, vdir, 1);
        if (d < -tol) {
            curved = true;
            indefinite_ = true;
        } else if (std::fabs(gv) > c.set.e50 * gznorm * vnorm) {
            curved = true;
        } else {
            ++singular_;
        }
    }
    // A skipped column with M v not zero: M is indefinite.
    for (int k = 0; k < nz && !curved && singular_ > 0; ++k) {
        if (used_[k] > 0.0) continue;
        const int r = static_cast<int>(-used_[k]) - 1;
        conjugate_direction(k, r, vdir);
        double *mv = u_;
        dsymv("U", nz, 1.0, m_, ld, vdir, 1, 0.0, mv, 1);
        const double mvn = dnrm2(nz, mv, 1), vn = dnrm2(nz, vdir, 1);
        if (!(mvn > c.set.e50 * std::max(scale, c.set.eps) * vn)) continue;
        // u = v - a M v has curvature v'Mv - 2a|Mv|^2 + a^2 (Mv)'M(Mv) < 0.
        dsymv("U", nz, 1.0, m_, ld, mv, 1, 0.0, y, 1);
        const double cm = ddot(nz, mv, 1, y, 1);
        const double a = cm > 0.0 ? mvn * mvn / cm : 1.0;
        daxpy(nz, -a, mv, 1, vdir, 1);
        curved = true;
        indefinite_ = true;
        --singular_;
    }
    rank_ = rank;
    if (!r_valid_ && rank == nz) {
        // A full factor is carried through the next changes of Z: clear what lies below its diagonal.
        for (int j = 0; j < nz; ++j) vector_load(nz - j - 1, 0.0, r_ + j + 1 + j * ld, 1);
        r_valid_ = true;
    }
    rmax_ = rmin_ = 0.0;
    for (int j = 0; j < rank; ++j) {
        const double dj = std::fabs(r_[j + j * ld]);
        rmax_ = j == 0 ? dj : std::max(rmax_, dj);
        rmin_ = j == 0 ? dj : std::min(rmin_, dj);
    }
    if (!grown && !(gznorm > c.set.e80 * std::max(1.0, gnorm)) && !indefinite_) return false;
    if (curved) {
        const double gv = ddot(nz, gz, 1, vdir, 1);
        dcopy(nz, vdir, 1, pz, 1);
        if (gv > 0.0) dscal(nz, -1.0, pz, 1);
        return true;
    }
    // The minimiser on the working set: R'R pz_S = -gz_S, zero on the singular directions.
    for (int j = 0; j < rank; ++j) y[j] = -gz[pos(j)];
    dtrsv("U", "T", "N", rank, r_, ld, y, 1);
    dtrsv("U", "N", "N", rank, r_, ld, y, 1);
    vector_load(nz, 0.0, pz, 1);
    for (int j = 0; j < rank; ++j) pz[pos(j)] = y[j];
    if (!all_finite(nz, pz)) {
        // Curvature too small for the gradient to be divided by it: a descent step limited by the
        // constraints alone.
        for (int k = 0; k < nz; ++k) pz[k] = -gz[k];
        return true;
    }
    if (!(dnrm2(nz, pz, 1) > 0.0)) return false;
    *natural = 1.0;
    last_newton_ = true;
    return true;
}

bool QuadraticStep::unique_on_null_space(const Core &c) const {
    return !failed_ && !indefinite_ && singular_ == 0 && rank_ == c.nz;
}

Word QuadraticStep::interrupt(const Core &) const {
    if (failed_) return Word::Errors;
    if (too_big_) return Word::Rz2Big;
    return Word::Running;
}

} // namespace zek::qp
