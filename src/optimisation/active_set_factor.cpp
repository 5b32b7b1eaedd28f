// The TQ factorisation of the working set, kept by plane rotations in the caller's workspace.
//
// With the layout of active_set.h (R upper triangular, row i of R belonging to column nfree-1-i of Q),
// a rotation of rows (i, i+1) of R, x' = c*x + s*y on the upper row, is the rotation of the adjacent
// columns (nfree-2-i, nfree-1-i) of Q with the sine negated; the sequences below are translated between
// the two numberings with that rule.
#include <algorithm>
#include <cmath>

#include "kernels/level1.h"
#include "kernels/level2.h"
#include "kernels/rotations.h"
#include "kernels/vector_utilities.h"
#include "optimisation/active_set.h"

namespace zek::active_set {

namespace {

inline double &qm(Core &c, int i, int k) { return c.q[i + static_cast<std::ptrdiff_t>(k) * c.ldq]; }
inline double &rm(Core &c, int i, int k) { return c.t[i + static_cast<std::ptrdiff_t>(k) * c.ldt]; }
inline double arow(const Core &c, int row, int col) { return c.a[row + static_cast<std::ptrdiff_t>(col) * c.lda]; }

// Rotations kr = first..last (one-based) of rows (kr, kr+1) of R, held in rc, rs, applied in increasing kr,
// carried over to the columns of Q (nf of them): rotation kq = nf - kr of columns (kq, kq+1), applied in
// decreasing kq, sine negated.
void rows_to_q(Core &c, int nf, int first, int last, const double *rc, const double *rs) {
    if (last < first) return;
    for (int kr = first; kr <= last; ++kr) {
        const int kq = nf - kr;
        c.crot[kq - 1] = rc[kr - 1];
        c.srot[kq - 1] = -rs[kr - 1];
    }
    rotation_apply_general('R', 'V', 'B', nf, nf, nf - last, nf - first + 1, c.crot, c.srot, c.q, c.ldq);
    c.unitq = false;
}

} // namespace

void factor_diagonals(Core &c) {
    if (c.nactiv == 0) {
        c.dtmax = c.dtmin = 0.0;
        return;
    }
    abs_max_min(c.nactiv, c.t, c.ldt + 1, &c.dtmax, &c.dtmin);
}

void project(Core &c, const double *g, double *w, int cols) {
    const int nf = c.nfree;
    if (nf == 0 || cols == 0) return;
    double *gf = c.crot;
    for (int k = 0; k < nf; ++k) gf[k] = g[c.kx[k]];
    if (c.unitq) dcopy(cols, gf, 1, w, 1);
    else dgemv("T", nf, cols, 1.0, c.q, c.ldq, gf, 1, 0.0, w, 1);
}

void multipliers(Core &c, const double *g) {
    const int n = c.n;
    double *w = c.w;
    project(c, g, w, c.nfree);
    std::fill(c.clamda, c.clamda + n + c.nclin, 0.0);
    if (c.nactiv > 0) {
        // R lambda = (Y'g) in the row order of R.
        dcopy(c.nactiv, w + c.nz, 1, c.rwork, -1);
        dtrsv("U", "N", "N", c.nactiv, c.t, c.ldt, c.rwork, 1);
        for (int k = 0; k < c.nactiv; ++k) c.clamda[n + c.kactiv[k]] = c.rwork[k];
    }
    // A fixed variable's multiplier: its gradient less its coefficients in the working rows weighted by
    // theirs.
    for (int k = c.nfree; k < n; ++k) {
        const int j = c.kx[k];
        double lam = g[j];
        if (c.nactiv > 0) {
            const double *col = c.a + static_cast<std::ptrdiff_t>(j) * c.lda;
            for (int i = 0; i < c.nactiv; ++i) lam -= c.rwork[i] * col[c.kactiv[i]];
        }
        c.clamda[j] = lam;
    }
}

bool add_general(Core &c, int row, NullSpaceStep *step, double dependence_tol) {
    const int nf = c.nfree, nz = c.nz, na = c.nactiv;
    if (nz == 0) return false;
    double *af = c.srot;
    for (int k = 0; k < nf; ++k) af[k] = arow(c, row, c.kx[k]);
    const double afnorm = dnrm2(nf, af, 1);
    double *w = c.w;
    if (c.unitq) dcopy(nf, af, 1, w, 1);
    else dgemv("T", nf, nf, 1.0, c.q, c.ldq, af, 1, 0.0, w, 1);
    // Gather the null-space part of the row into the last column of Z.
    if (nz > 1) rotation_sequence('V', 'F', nz - 1, &w[nz - 1], w, 1, c.crot, c.srot, kFrozenConstants);
    const double delta = w[nz - 1];
    if (!(std::fabs(delta) > dependence_tol * afnorm) || afnorm == 0.0) return false;
    if (nz > 1) {
        rotation_apply_general('R', 'V', 'F', nf, nz, 1, nz, c.crot, c.srot, c.q, c.ldq);
        c.unitq = false;
        if (step != nullptr) step->z_rotated(c, 1, nz, c.crot, c.srot);
    }
    // The new last column of R: the row's components along Y, and delta on the diagonal.
    dcopy(na + 1, &w[nz - 1], 1, &rm(c, 0, na), -1);
    c.kactiv[na] = row;
    c.nactiv = na + 1;
    c.nz = nz - 1;
    if (step != nullptr) step->z_column_removed(c);
    factor_diagonals(c);
    return true;
}

void fix_variable(Core &c, int pos, int state, NullSpaceStep *step) {
    const int nf = c.nfree, nz = c.nz, na = c.nactiv;
    double *u = c.w;
    dcopy(nf, &qm(c, pos, 0), c.ldq, u, 1);
    // First the row's null-space part into the last column of Z ...
    if (nz > 1) {
        rotation_sequence('V', 'F', nz - 1, &u[nz - 1], u, 1, c.crot, c.srot, kFrozenConstants);
        rotation_apply_general('R', 'V', 'F', nf, nz, 1, nz, c.crot, c.srot, c.q, c.ldq);
        c.unitq = false;
        if (step != nullptr) step->z_rotated(c, 1, nz, c.crot, c.srot);
    }
    // ... then all of it into the last column of Q, which rotates the rows of R into upper Hessenberg
    // form (R bordered by the zero row of that column of Z).
    if (na > 0) {
        rotation_sequence('V', 'F', na, &u[nf - 1], &u[nz - 1], 1, &c.crot[nz - 1], &c.srot[nz - 1],
                          kFrozenConstants);
        rotation_apply_general('R', 'V', 'F', nf, nf, nz, nf, c.crot, c.srot, c.q, c.ldq);
        c.unitq = false;
        double *rc = c.ap, *rs = c.rwork;
        for (int i = 1; i <= na; ++i) {
            const int kr = na + 1 - i;
            rc[kr - 1] = c.crot[nz - 2 + i];
            rs[kr - 1] = -c.srot[nz - 2 + i];
        }
        for (int i = 0; i <= na; ++i) rm(c, i, na) = 0.0;
        triangle_to_hessenberg('L', na + 1, 1, na + 1, rc, rs, c.t, c.ldt);
        // The first row of the Hessenberg matrix belongs to the column of Q that leaves with the
        // variable; the rest, with the subdiagonal in rs, is the new triangle.
        for (int k = 0; k < na; ++k) {
            double *col = &rm(c, 0, k);
            std::copy(col + 1, col + k + 1, col);
            col[k] = rs[k];
            col[k + 1] = 0.0;
        }
    }
    // Row pos of Q is now (0, ..., 0, +-1): drop it with the last column.
    if (pos != nf - 1) {
        dswap(nf, &qm(c, pos, 0), c.ldq, &qm(c, nf - 1, 0), c.ldq);
        std::swap(c.kx[pos], c.kx[nf - 1]);
    }
    c.istate[c.kx[nf - 1]] = state;
    c.nfree = nf - 1;
    c.nz = nz - 1;
    if (step != nullptr) step->z_column_removed(c);
    factor_diagonals(c);
}

void delete_general(Core &c, int k, NullSpaceStep *step) {
    const int nf = c.nfree, na = c.nactiv;
    const int p1 = k + 1;  // one-based column of R that leaves
    double *rc = c.ap, *rs = c.rwork;
    // Shift the later columns left; each brings its diagonal below the new diagonal.
    for (int j = k; j < na - 1; ++j) {
        double *dst = &rm(c, 0, j);
        const double *src = &rm(c, 0, j + 1);
        std::copy(src, src + j + 2, dst);
        rs[j] = dst[j + 1];
        dst[j + 1] = 0.0;
    }
    for (int i = 0; i < na; ++i) rm(c, i, na - 1) = 0.0;
    if (p1 < na) {
        hessenberg_to_triangle('L', na, p1, na, rc, rs, c.t, c.ldt, kFrozenConstants);
        rows_to_q(c, nf, p1, na - 1, rc, rs);
    }
    std::copy(c.kactiv + k + 1, c.kactiv + na, c.kactiv + k);
    c.nactiv = na - 1;
    c.nz += 1;
    if (step != nullptr) step->z_column_added(c);
    factor_diagonals(c);
}

void free_variable(Core &c, int j, NullSpaceStep *step) {
    const int nf = c.nfree, na = c.nactiv;
    int pos = nf;
    while (pos < c.n && c.kx[pos] != j) ++pos;
    if (pos != nf) std::swap(c.kx[pos], c.kx[nf]);
    // Border Q by the new variable, its column placed between Z and Y: the Y columns move right.
    const int nz = c.nz;
    for (int k = nf; k > nz; --k) std::copy_n(&qm(c, 0, k - 1), nf, &qm(c, 0, k));
    for (int k = 0; k <= nf; ++k) qm(c, nf, k) = 0.0;
    for (int i = 0; i < nf; ++i) qm(c, i, nz) = 0.0;
    qm(c, nf, nz) = 1.0;
    // The new column belongs to a new last row of R: the variable's coefficients in the working rows.
    // Folding that row into the triangle leaves it zero, so the column joins Z; the rotations start at
    // the first working row in which the variable appears.
    double *v = c.rwork, *rc = c.ap;
    int k0 = na;
    for (int k = na - 1; k >= 0; --k) {
        v[k] = arow(c, c.kactiv[k], j);
        if (v[k] != 0.0) k0 = k;
    }
    if (k0 < na) {
        triangle_add_row(na - k0, 1.0, &v[k0], 1, &rm(c, k0, k0), c.ldt, &rc[k0], &v[k0], kFrozenConstants);
        // Row k of R belongs to column nf-k of the bordered Q, the folded row to column nz: rotation k
        // is plane (nz, nf-k) of Q, sine negated.
        const int nf1 = nf + 1;
        for (int k = k0; k < na; ++k) {
            const int kq = nf - k;
            c.crot[kq - 1] = rc[k];
            c.srot[kq - 1] = -v[k];
        }
        rotation_apply_general('R', 'T', 'B', nf1, nf1, nz + 1, nf - k0 + 1, c.crot, c.srot, c.q, c.ldq);
        c.unitq = false;
    } else if (na > 0) {
        c.unitq = false;
    }
    c.istate[j] = kNotInWorkingSet;
    c.nfree = nf + 1;
    c.nz += 1;
    if (step != nullptr) step->z_column_added(c);
    factor_diagonals(c);
}

void factorise(Core &c) {
    const int nf = c.nfree;
    for (int k = 0; k < nf; ++k) {
        vector_load(nf, 0.0, &qm(c, 0, k), 1);
        qm(c, k, k) = 1.0;
    }
    c.unitq = true;
    const int listed = c.nactiv;
    c.nactiv = 0;
    c.nz = nf;
    for (int i = 0; i < listed; ++i) {
        const int row = c.kactiv[i];
        if (!add_general(c, row, nullptr, c.set.e50)) c.istate[c.n + row] = kNotInWorkingSet;
    }
    factor_diagonals(c);
}

} // namespace zek::active_set
