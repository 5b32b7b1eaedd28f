// F04YAF: elements of the variance-covariance matrix of a linear least-squares fit; F04YAY: the
// guarded triangular solve it rests on.
#include <algorithm>
#include <cmath>
#include <cstddef>

#include "kernels/covariance.h"

#include "frame/ifail.h"
#include "frame/machine.h"
#include "kernels/level1.h"
#include "kernels/vector_utilities.h"
#include "zek2/f04.h"

namespace zek {

namespace {

// One step of the substitution: x = num / t unless that would overflow (or t is zero).  A NaN or an
// infinity in the data gives no finite quotient either, and ends the solve the same way.
bool guarded_divide(double num, double t, double *x) {
    const double big = 1.0 / safe_minimum();
    if (std::fabs(t) < 1.0 && !(std::fabs(num) < std::fabs(t) * big)) return false;
    const double q = num / t;
    if (!std::isfinite(q)) return false;
    *x = q;
    return true;
}

} // namespace

int guarded_triangular_solve(int direction, int n, const double *t, int ldt, double *b) {
    const std::ptrdiff_t ld = ldt;
    if (direction >= 0) {
        // T*x = b, back substitution by columns.
        for (int j = n - 1; j >= 0; --j) {
            if (!guarded_divide(b[j], t[j + j * ld], &b[j])) return 1;
            if (b[j] != 0.0) axpy(j, -b[j], t + j * ld, 1, b, 1);
        }
    } else {
        // T'*x = b, forward substitution by inner products with the columns.
        for (int j = 0; j < n; ++j) {
            const double num = b[j] - dot(j, t + j * ld, 1, b, 1);
            if (!guarded_divide(num, t[j + j * ld], &b[j])) return 1;
        }
    }
    return 0;
}

} // namespace zek

extern "C" void F04YAY(const int *direction, const int *n, const double *t, const int *ldt, double *b, int *ifail) {
    *ifail = zek::guarded_triangular_solve(*direction, *n, t, *ldt, b);
}

namespace {

// F04YAF's exits.
enum F04yafExit {
    kPLessThan1,
    kSigmaNegative,
    kJobOutOfRange,
    kIrankOutOfRange,
    kNraBelowIrank,
    kSvdNraBelowP,
    kIrankNotPositive,
    kTriangleNraBelowP,
    kOverflow,
    kSingularValueZero,
};
constexpr zek::ExitRow kF04yafExits[] = {
    {1, 99999, " ** On entry, P .lt. 1: P =%16ld."},
    {1, 99998, " ** On entry, SIGMA .lt. 0.0: SIGMA =%12.4E."},
    {1, 99997, " ** On entry, JOB .lt. -1 or JOB .gt. P:\n    JOB =%16ld and P =%16ld."},
    {1, 99996, " ** On entry, SVD = .TRUE. and (IRANK .lt. 0 or IRANK .gt. P):\n    IRANK =%16ld and P =%16ld."},
    {1, 99995, " ** On entry, SVD = .TRUE., JOB .ge. 0 and NRA .lt. max(1,IRANK):\n    NRA =%16ld and IRANK =%16ld."},
    {1, 99994, " ** On entry, SVD = .TRUE., JOB = -1 and NRA .lt. P:\n    NRA =%16ld and P =%16ld."},
    {1, 99993, " ** On entry, SVD = .TRUE. and IRANK .le. 0:\n    IRANK =%16ld."},
    {1, 99992, " ** On entry, SVD = .FALSE. and NRA .lt. P:\n    NRA =%16ld and P =%16ld."},
    {2, 99991, " ** On entry, SVD = .FALSE. and overflow would occur in calculating\n    the covariance matrix: R is "
               "singular or nearly so."},
    {3, 99990, " ** On entry, SVD = .FALSE. and one of the first IRANK singular\n    values is zero: IRANK =%16ld."},
};

} // namespace

extern "C" void F04YAF(const int *job, const int *p, const double *sigma, double *a, const int *nra, const int *svd,
                       const int *irank, const double *sv, double *cj, double *work, int *ifail) {
    zek::FailureExit exit("F04YAF", nullptr, ifail);
    const long j = *job, np = *p, nr = *nra, ir = *irank;
    if (*p < 1) {
        zek::take(exit, kF04yafExits, kPLessThan1, {np});
        return;
    }
    if (!(*sigma >= 0.0)) {  // a NaN is refused with the negative values
        zek::take(exit, kF04yafExits, kSigmaNegative, {*sigma});
        return;
    }
    if (*job < -1 || *job > *p) {
        zek::take(exit, kF04yafExits, kJobOutOfRange, {j, np});
        return;
    }
    if (*svd) {
        if (*irank < 0 || *irank > *p) {
            zek::take(exit, kF04yafExits, kIrankOutOfRange, {ir, np});
            return;
        }
        if (*job >= 0 && *nra < std::max(1, *irank)) {
            zek::take(exit, kF04yafExits, kNraBelowIrank, {nr, ir});
            return;
        }
        if (*job == -1 && *nra < *p) {
            zek::take(exit, kF04yafExits, kSvdNraBelowP, {nr, np});
            return;
        }
        if (*irank <= 0) {
            zek::take(exit, kF04yafExits, kIrankNotPositive, {ir});
            return;
        }
    } else if (*nra < *p) {
        zek::take(exit, kF04yafExits, kTriangleNraBelowP, {nr, np});
        return;
    }

    const int n = *p;
    const std::ptrdiff_t ld = *nra;
    const double s2 = *sigma * *sigma;
    if (*svd) {
        const int r = *irank;
        for (int i = 0; i < r; ++i) {
            if (sv[i] == 0.0) {
                zek::take(exit, kF04yafExits, kSingularValueZero, {ir});
                return;
            }
        }
        // C = sigma**2 * V * S**-2 * V' with the rows of A(1:r, :) the right singular vectors.
        auto weighted_column = [&](int col) {
            for (int i = 0; i < r; ++i) work[i] = a[i + col * ld] / (sv[i] * sv[i]);
        };
        if (*job == 0) {
            for (int k = 0; k < n; ++k) {
                weighted_column(k);
                cj[k] = s2 * zek::dot(r, a + k * ld, 1, work, 1);
            }
        } else if (*job > 0) {
            weighted_column(*job - 1);
            for (int k = 0; k < n; ++k) cj[k] = s2 * zek::dot(r, a + k * ld, 1, work, 1);
        } else {
            // Columns from the last: column jc of C needs columns 1..jc of the vectors only, so it may
            // overwrite column jc once that column has been copied out.
            for (int jc = n - 1; jc >= 0; --jc) {
                weighted_column(jc);
                for (int k = 0; k < jc; ++k) a[k + jc * ld] = s2 * zek::dot(r, a + k * ld, 1, work, 1);
                double diag = 0.0;
                for (int i = 0; i < r; ++i) diag += work[i] * work[i] * sv[i] * sv[i];
                a[jc + jc * ld] = s2 * diag;
                cj[jc] = a[jc + jc * ld];
            }
        }
        exit.succeed();
        return;
    }

    // C = sigma**2 * (R'*R)^-1 with R the upper triangle of A(1:p, 1:p).
    if (*job >= 0) {
        const int first = *job == 0 ? 0 : *job - 1, last = *job == 0 ? n - 1 : *job - 1;
        for (int jc = first; jc <= last; ++jc) {
            // w = R'^-1 e_j, then column j of (R'R)^-1 is R^-1 w and its diagonal element is w'w.
            zek::vector_load(n, 0.0, work, 1);
            work[jc] = 1.0;
            if (zek::guarded_triangular_solve(-1, n, a, *nra, work) != 0) {
                zek::take(exit, kF04yafExits, kOverflow);
                return;
            }
            if (*job == 0) {
                const double w = zek::dnrm2(n, work, 1);
                cj[jc] = s2 * w * w;
            } else {
                if (zek::guarded_triangular_solve(1, n, a, *nra, work) != 0) {
                    zek::take(exit, kF04yafExits, kOverflow);
                    return;
                }
                zek::scaled_copy(n, s2, work, 1, cj, 1);
            }
        }
        exit.succeed();
        return;
    }
    // JOB = -1.  First R^-1 in place, from the last column: column jc of R^-1 needs columns 1..jc of R.
    for (int jc = n - 1; jc >= 0; --jc) {
        zek::vector_load(jc + 1, 0.0, work, 1);
        work[jc] = 1.0;
        if (zek::guarded_triangular_solve(1, jc + 1, a, *nra, work) != 0) {
            zek::take(exit, kF04yafExits, kOverflow);
            return;
        }
        zek::copy(jc + 1, work, 1, a + jc * ld, 1);
    }
    // Then C = R^-1 * R^-T on the upper triangle, row by row from the top: C(i,k) for k >= i needs rows i
    // and k of R^-1 from column k on, and row i is replaced only once all of its elements are formed.
    for (int i = 0; i < n; ++i) {
        for (int k = i; k < n; ++k) work[k] = s2 * zek::dot(n - k, a + i + k * ld, *nra, a + k + k * ld, *nra);
        zek::copy(n - i, work + i, 1, a + i + i * ld, *nra);
        cj[i] = a[i + i * ld];
    }
    exit.succeed();
}
