// Triangular solves: F07UEF/DTPTRS on packed storage and F07TUZ/ZLATRS.
#include "kernels/triangular_solve.h"

#include <algorithm>
#include <cstddef>

#include <cmath>

#include "frame/machine.h"
#include "kernels/factor_support.h"
#include "kernels/level1.h"
#include "kernels/level2.h"
#include "zek2/f07.h"

namespace zek {

int tptrs(char uplo, char trans, char diag, int n, int nrhs, const double *ap, double *b, int ldb) {
    if (n == 0) return 0;
    if (diag == 'N') {
        // A zero on the diagonal makes T singular: report it before anything is solved.
        std::ptrdiff_t jj = 0;
        for (int j = 1; j <= n; ++j) {
            jj += (uplo == 'U') ? j : (j == 1 ? 1 : n - j + 2);
            if (ap[jj - 1] == 0.0) return j;
        }
    }
    for (int j = 0; j < nrhs; ++j) tpsv(uplo, trans, diag, n, ap, b + static_cast<std::ptrdiff_t>(j) * ldb, 1);
    return 0;
}

namespace {

inline double cabs1(Complex z) { return std::fabs(z.re) + std::fabs(z.im); }
inline double cabs2(Complex z) { return std::fabs(z.re * 0.5) + std::fabs(z.im * 0.5); }
inline Complex scaled(Complex z, double t) { return {z.re * t, z.im * t}; }

} // namespace

int zlatrs(const char *uplo_in, const char *trans_in, const char *diag_in, const char *normin_in, int n,
           const Complex *a, int lda, Complex *x, double *scale, double *cnorm) {
    const char uplo = option_letter(uplo_in), trans = option_letter(trans_in), diag = option_letter(diag_in),
               normin = option_letter(normin_in);
    int info = 0;
    if (uplo != 'U' && uplo != 'L')
        info = -1;
    else if (trans != 'N' && trans != 'T' && trans != 'C')
        info = -2;
    else if (diag != 'U' && diag != 'N')
        info = -3;
    else if (normin != 'Y' && normin != 'N')
        info = -4;
    else if (n < 0)
        info = -5;
    else if (lda < std::max(1, n))
        info = -7;
    if (info != 0) {
        silent_report("F07TUZ/ZLATRS", -info);
        return info;
    }
    *scale = 1.0;
    if (n == 0) return 0;
    const std::ptrdiff_t ld = lda;
    const bool upper = uplo == 'U', notran = trans == 'N', nounit = diag == 'N', conjugate = trans == 'C';
    const double half = 0.5;
    // The threshold below which a quantity counts as negligibly small: the safe minimum over the
    // relative spacing of the numbers (twice the rounding unit).
    const double smlnum = safe_minimum() / (2.0 * precision());
    const double bignum = 1.0 / smlnum;
    auto at = [&](int i, int j) { return a[i + j * ld]; };

    if (normin == 'N') {
        // One-norms (|re| + |im|) of the off-diagonal parts of the columns.
        for (int j = 0; j < n; ++j)
            cnorm[j] = upper ? asum(j, a + j * ld, 1) : asum(n - j - 1, a + j + 1 + j * ld, 1);
    }
    // Scale the column norms when their largest would overflow the growth bounds.
    const double tmax = cnorm[iamax(n, cnorm, 1) - 1];
    double tscal = 1.0;
    if (!(tmax <= bignum * half)) {
        tscal = half / (smlnum * tmax);
        scal(n, tscal, cnorm, 1);
    }

    // A bound on the growth of x in the solve: when it stays safely below overflow, the plain
    // triangular solve of level 2 does the work.
    double xmax = 0.0;
    for (int j = 0; j < n; ++j) xmax = std::max(xmax, cabs2(x[j]));
    double xbnd = xmax, grow = 0.0;
    const int jfirst = (upper == notran) ? n - 1 : 0, jlast = (upper == notran) ? 0 : n - 1,
              jinc = (upper == notran) ? -1 : 1;
    if (tscal == 1.0) {
        if (notran) {
            if (nounit) {
                grow = half / std::max(xbnd, smlnum);
                xbnd = grow;
                bool done = false;
                for (int j = jfirst; !done && j != jlast + jinc; j += jinc) {
                    if (grow <= smlnum) {
                        done = true;
                        break;
                    }
                    const double tjj = cabs1(at(j, j));
                    xbnd = tjj >= smlnum ? std::min(xbnd, std::min(1.0, tjj) * grow) : 0.0;
                    grow = (tjj + cnorm[j] >= smlnum) ? grow * (tjj / (tjj + cnorm[j])) : 0.0;
                }
                if (!done) grow = xbnd;
            } else {
                grow = std::min(1.0, half / std::max(xbnd, smlnum));
                for (int j = jfirst; j != jlast + jinc; j += jinc) {
                    if (grow <= smlnum) break;
                    grow *= 1.0 / (1.0 + cnorm[j]);
                }
            }
        } else {
            if (nounit) {
                grow = half / std::max(xbnd, smlnum);
                xbnd = grow;
                bool done = false;
                for (int j = jfirst; j != jlast + jinc; j += jinc) {
                    if (grow <= smlnum) {
                        done = true;
                        break;
                    }
                    const double xj = 1.0 + cnorm[j];
                    grow = std::min(grow, xbnd / xj);
                    const double tjj = cabs1(at(j, j));
                    if (tjj >= smlnum) {
                        if (xj > tjj) xbnd *= tjj / xj;
                    } else {
                        xbnd = 0.0;
                    }
                }
                if (!done) grow = std::min(grow, xbnd);
            } else {
                grow = std::min(1.0, half / std::max(xbnd, smlnum));
                for (int j = jfirst; j != jlast + jinc; j += jinc) {
                    if (grow <= smlnum) break;
                    grow /= 1.0 + cnorm[j];
                }
            }
        }
    }

    if (grow * tscal > smlnum) {
        trsv(uplo, trans, diag, n, a, lda, x, 1);
    } else {
        // The careful solve: rescale x whenever the next step could overflow.
        if (xmax > bignum * half) {
            *scale = (bignum * half) / xmax;
            scal(n, *scale, x, 1);
            xmax = bignum;
        } else {
            xmax *= 2.0;
        }
        auto rescale = [&](double rec) {
            scal(n, rec, x, 1);
            *scale *= rec;
            xmax *= rec;
        };
        // x(j) := x(j) / tjjs, guarded; XJ is |x(j)| on entry and on return.
        auto divide_guarded = [&](int j, Complex tjjs, double &xj) {
            const double tjj = cabs1(tjjs);
            if (tjj > smlnum) {
                if (tjj < 1.0 && xj > tjj * bignum) rescale(1.0 / xj);
                x[j] = divide(x[j], tjjs);
                xj = cabs1(x[j]);
            } else if (tjj > 0.0) {
                if (xj > tjj * bignum) {
                    double rec = (tjj * bignum) / xj;
                    if (cnorm[j] > 1.0) rec /= cnorm[j];
                    rescale(rec);
                }
                x[j] = divide(x[j], tjjs);
                xj = cabs1(x[j]);
            } else {
                // A(j,j) = 0: x = e(j) solves the singular system A*x = 0 with scale 0.
                for (int i = 0; i < n; ++i) x[i] = {0.0, 0.0};
                x[j] = {1.0, 0.0};
                xj = 1.0;
                *scale = 0.0;
                xmax = 0.0;
            }
        };
        const Complex ctscal{tscal, 0.0};
        if (notran) {
            for (int j = jfirst; j != jlast + jinc; j += jinc) {
                double xj = cabs1(x[j]);
                if (nounit || tscal != 1.0) divide_guarded(j, nounit ? scaled(at(j, j), tscal) : ctscal, xj);
                // Room for adding a multiple of column j.
                if (xj > 1.0) {
                    double rec = 1.0 / xj;
                    if (cnorm[j] > (bignum - xmax) * rec) {
                        rec *= half;
                        scal(n, rec, x, 1);
                        *scale *= rec;
                    }
                } else if (xj * cnorm[j] > bignum - xmax) {
                    scal(n, half, x, 1);
                    *scale *= half;
                }
                const Complex mult = scaled(-x[j], tscal);
                if (upper) {
                    if (j > 0) {
                        axpy(j, mult, a + j * ld, 1, x, 1);
                        xmax = cabs1(x[iamax(j, x, 1) - 1]);
                    }
                } else if (j < n - 1) {
                    axpy(n - j - 1, mult, a + j + 1 + j * ld, 1, x + j + 1, 1);
                    xmax = cabs1(x[j + iamax(n - j - 1, x + j + 1, 1)]);
                }
            }
        } else {
            auto element = [&](int i, int j) { return conjugate ? conj(at(i, j)) : at(i, j); };
            for (int j = jfirst; j != jlast + jinc; j += jinc) {
                double xj = cabs1(x[j]);
                Complex uscal = ctscal;
                double rec = 1.0 / std::max(xmax, 1.0);
                Complex tjjs = ctscal;
                if (cnorm[j] > (bignum - xj) * rec) {
                    rec *= half;
                    tjjs = nounit ? scaled(element(j, j), tscal) : ctscal;
                    const double tjj = cabs1(tjjs);
                    if (tjj > 1.0) {
                        rec = std::min(1.0, rec * tjj);
                        uscal = divide(uscal, tjjs);
                    }
                    if (rec < 1.0) rescale(rec);
                }
                Complex csumj{0.0, 0.0};
                const int lo = upper ? 0 : j + 1, len = upper ? j : n - j - 1;
                if (uscal == Complex{1.0, 0.0}) {
                    csumj = conjugate ? dotc(len, a + lo + j * ld, 1, x + lo, 1) : dot(len, a + lo + j * ld, 1, x + lo, 1);
                } else {
                    for (int i = lo; i < lo + len; ++i) csumj = csumj + (element(i, j) * uscal) * x[i];
                }
                if (uscal == ctscal) {
                    x[j] = x[j] - csumj;
                    xj = cabs1(x[j]);
                    if (nounit || tscal != 1.0) divide_guarded(j, nounit ? scaled(element(j, j), tscal) : ctscal, xj);
                } else {
                    x[j] = divide(x[j], tjjs) - csumj;
                }
                xmax = std::max(xmax, cabs1(x[j]));
            }
        }
        *scale /= tscal;
    }
    if (tscal != 1.0) scal(n, 1.0 / tscal, cnorm, 1);
    return 0;
}

} // namespace zek

extern "C" void F07UEF(const char *uplo, const char *trans, const char *diag, const int *n, const int *nrhs,
                       const double *ap, double *b, const int *ldb, int *info, int, int, int) {
    const char u = zek::option_letter(uplo);
    char t = zek::option_letter(trans);
    const char d = zek::option_letter(diag);
    *info = 0;
    if (u != 'U' && u != 'L')
        *info = -1;
    else if (t != 'N' && t != 'T' && t != 'C')
        *info = -2;
    else if (d != 'U' && d != 'N')
        *info = -3;
    else if (*n < 0)
        *info = -4;
    else if (*nrhs < 0)
        *info = -5;
    else if (*ldb < std::max(1, *n))
        *info = -8;
    if (*info != 0) {
        zek::hard_report("F07UEF/DTPTRS", -*info);
        return;
    }
    if (t == 'C') t = 'T';
    *info = zek::tptrs(u, t, d, *n, *nrhs, ap, b, *ldb);
}
