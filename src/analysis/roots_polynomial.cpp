// Zeros of a quartic, real (C02ALF) or complex (C02ANF) coefficients, as the eigenvalues of the
// companion matrix, with error estimates from the eigenvalues' condition numbers.
//
// The companion matrix is upper Hessenberg with ones on the subdiagonal and -d/e, -c/e, -b/e, -a/e in
// its last column.  It is balanced by powers of 2, its eigenvalues found by the QR iteration (double
// shift for real data, so conjugate pairs come out exactly conjugate), and for each zero z the estimate
// is eps * ||H||_1 / s(z), s(z) = |y'x| / (|x| |y|) from the right and left eigenvectors of the
// balanced matrix.  Those vectors come straight from the Hessenberg matrix by substitution: its
// subdiagonal has no zeros, so each is determined by its last (first) component.
#include <cmath>
#include <complex>

#include "frame/ifail.h"
#include "frame/machine.h"
#include "kernels/safe_arithmetic.h"
#include "kernels/schur.h"
#include "zek2/c02.h"
#include "zek2/frame.h"

namespace {

using zek::ComplexD;

// The failure exits of the family: IFAIL, exit number and text for each routine.
struct Exit {
    int ierror;
    long number;
    const char *text;
};
constexpr Exit kC02alfExits[] = {
    {1, 99999, " ** On entry, E .eq. 0.0."},
    {2, 99998, " ** The companion matrix H cannot be formed without overflow."},
    {3, 99997, " ** Failure to converge in F08PEF (SHSEQR/DHSEQR)."},
};
constexpr Exit kC02anfExits[] = {
    {1, 99999, " ** On entry, E .eq. (0.0,0.0)."},
    {2, 99998, " ** The companion matrix H cannot be formed without overflow."},
    {3, 99997, " ** Failure to converge in F08PSF (CHSEQR/ZHSEQR)."},
};

constexpr int kOrder = 4;

// Quotients -coefficient/e through the guarded division; false when one overflowed or is undefined.
bool companion_column(double e, const double (&coef)[kOrder], double *column) {
    for (int i = 0; i < kOrder; ++i) {
        int flag = 0;
        column[i] = -zek::safe_divide(coef[i], e, &flag);
        if (flag != 0 || !std::isfinite(column[i])) return false;
    }
    return true;
}
bool companion_column(ComplexD e, const ComplexD (&coef)[kOrder], ComplexD *column) {
    for (int i = 0; i < kOrder; ++i) {
        int flag = 0;
        const zek::Complex q = zek::complex_safe_divide({coef[i].real(), coef[i].imag()}, {e.real(), e.imag()}, &flag);
        column[i] = -ComplexD(q.re, q.im);
        if (flag != 0 || !std::isfinite(q.re) || !std::isfinite(q.im)) return false;
    }
    return true;
}

double one_norm(const double *h) {
    double best = 0.0;
    for (int j = 0; j < kOrder; ++j) {
        double s = 0.0;
        for (int i = 0; i < kOrder; ++i) s += std::fabs(h[i + j * kOrder]);
        best = std::max(best, s);
    }
    return best;
}
double one_norm(const ComplexD *h) {
    double best = 0.0;
    for (int j = 0; j < kOrder; ++j) {
        double s = 0.0;
        for (int i = 0; i < kOrder; ++i) s += std::abs(h[i + j * kOrder]);
        best = std::max(best, s);
    }
    return best;
}

int eigenvalues(double *h, ComplexD *zeros) {
    double hh[kOrder * kOrder], wr[kOrder], wi[kOrder];
    for (int i = 0; i < kOrder * kOrder; ++i) hh[i] = h[i];
    const int info = zek::hessenberg_qr(false, false, kOrder, 1, kOrder, hh, kOrder, wr, wi, 1, kOrder, nullptr, 1);
    for (int i = 0; i < kOrder; ++i) zeros[i] = ComplexD(wr[i], wi[i]);
    return info;
}
int eigenvalues(ComplexD *h, ComplexD *zeros) {
    ComplexD hh[kOrder * kOrder];
    for (int i = 0; i < kOrder * kOrder; ++i) hh[i] = h[i];
    return zek::hessenberg_qr(false, false, kOrder, 1, kOrder, hh, kOrder, zeros, 1, kOrder, nullptr, 1);
}

// The whole computation for either coefficient type; returns the IFAIL of the exit (0 on success).
template <class T>
int quartic_zeros(T e, const T (&coef)[kOrder], double *zeror, double *zeroi, double *errest) {
    if (e == T(0.0)) return 1;
    T h[kOrder * kOrder] = {};
    for (int i = 1; i < kOrder; ++i) h[i + (i - 1) * kOrder] = 1.0;
    // The last column holds -d/e, -c/e, -b/e, -a/e from the top.
    const T reversed[kOrder] = {coef[3], coef[2], coef[1], coef[0]};
    if (!companion_column(e, reversed, h + (kOrder - 1) * kOrder)) return 2;
    double scale[kOrder];
    zek::balance_scale(kOrder, h, kOrder, scale);
    ComplexD zeros[kOrder];
    if (eigenvalues(h, zeros) != 0) return 3;
    const double norm = one_norm(h), eps = zek::precision();
    ComplexD work[2 * kOrder];
    for (int i = 0; i < kOrder; ++i) {
        zeror[i] = zeros[i].real();
        zeroi[i] = zeros[i].imag();
        if (zeros[i] == ComplexD(0.0)) {
            errest[i] = eps;
            continue;
        }
        const double s = zek::hessenberg_eigenvalue_rcond(kOrder, h, kOrder, zeros[i], work);
        int flag = 0;
        errest[i] = zek::safe_divide(norm, s, &flag) * eps;
    }
    return 0;
}

template <std::size_t N>
void finish(zek::FailureExit &exit, const Exit (&table)[N], int ierror) {
    if (ierror == 0) {
        exit.succeed();
        return;
    }
    for (const Exit &x : table)
        if (x.ierror == ierror) {
            exit.fail(x.ierror, x.number, x.text);
            return;
        }
}

void c02alf_worker(double e, double a, double b, double c, double d, double *zeror, double *zeroi, double *errest,
                   char *errbuf, int *ifail, int /*errbuf_len*/) {
    zek::FailureExit exit("C02ALF", errbuf, ifail);
    const double coef[kOrder] = {a, b, c, d};
    finish(exit, kC02alfExits, quartic_zeros(e, coef, zeror, zeroi, errest));
}

void c02anf_worker(ComplexD e, ComplexD a, ComplexD b, ComplexD c, ComplexD d, double *zeror, double *zeroi,
                   double *errest, char *errbuf, int *ifail, int /*errbuf_len*/) {
    zek::FailureExit exit("C02ANF", errbuf, ifail);
    const ComplexD coef[kOrder] = {a, b, c, d};
    finish(exit, kC02anfExits, quartic_zeros(e, coef, zeror, zeroi, errest));
}

ComplexD pair(const double *z) { return ComplexD(z[0], z[1]); }

} // namespace

extern "C" void C02ALF(const double *e, const double *a, const double *b, const double *c, const double *d,
                       double *zeror, double *zeroi, double *errest, int *ifail) {
    zek::Front front("C02ALF");
    ZEK_MARK_REAL_ARRAY(kOrder, zeror);
    ZEK_MARK_REAL_ARRAY(kOrder, zeroi);
    ZEK_MARK_REAL_ARRAY(kOrder, errest);
    c02alf_worker(*e, *a, *b, *c, *d, zeror, zeroi, errest, front.errbuf(), ifail, zek::kErrbufLength);
    front.finish(*ifail);
}

extern "C" void C02ANF(const double *e, const double *a, const double *b, const double *c, const double *d,
                       double *zeror, double *zeroi, double *errest, int *ifail) {
    zek::Front front("C02ANF");
    ZEK_MARK_REAL_ARRAY(kOrder, zeror);
    ZEK_MARK_REAL_ARRAY(kOrder, zeroi);
    ZEK_MARK_REAL_ARRAY(kOrder, errest);
    c02anf_worker(pair(e), pair(a), pair(b), pair(c), pair(d), zeror, zeroi, errest, front.errbuf(), ifail,
                  zek::kErrbufLength);
    front.finish(*ifail);
}
