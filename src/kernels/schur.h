// Schur forms of Hessenberg matrices and the pieces around them: the real double-shift and the complex
// single-shift QR iterations, balancing by diagonal scaling, and reciprocal condition numbers of the
// eigenvalues of an unreduced Hessenberg matrix.  No argument checking: the callers check.
//
// Indices ILO, IHI, ILOZ, IHIZ are one-based as in the published interfaces; matrices column-major.
#ifndef ZEK_KERNELS_SCHUR_H
#define ZEK_KERNELS_SCHUR_H

#include <complex>

namespace zek {

using ComplexD = std::complex<double>;

// The sweep limit: 30 sweeps for each row of the active part (at least 10 rows' worth).
constexpr int kSchurSweepsPerRow = 30;

// Real Schur form of the upper Hessenberg H, rows and columns ILO..IHI active (H already triangular
// outside).  WANTT: H becomes T with standard 2 by 2 blocks (equal diagonal, off-diagonal elements of
// opposite sign) for complex pairs; otherwise only the eigenvalues are found.  WANTZ: the rotations
// go to rows ILOZ..IHIZ of Z.  WR, WI (indices ILO..IHI, one-based positions minus one) receive the
// eigenvalues, pairs with positive imaginary part first.  Returns 0, or the one-based index i when the
// sweep limit was reached with the values i+1..IHI found.
int hessenberg_qr(bool wantt, bool wantz, int n, int ilo, int ihi, double *h, int ldh, double *wr, double *wi,
                  int iloz, int ihiz, double *z, int ldz);

// The complex form: T upper triangular, W the eigenvalues.
int hessenberg_qr(bool wantt, bool wantz, int n, int ilo, int ihi, ComplexD *h, int ldh, ComplexD *w, int iloz,
                  int ihiz, ComplexD *z, int ldz);

// Schur factorisation of the real 2 by 2 [a b; c d] = [cs -sn; sn cs] [aa bb; cc dd] [cs sn; -sn cs] in
// standard form; (rt1r, rt1i), (rt2r, rt2i) the eigenvalues.
void standardise_2x2(double *a, double *b, double *c, double *d, double *rt1r, double *rt1i, double *rt2r,
                     double *rt2i, double *cs, double *sn);

// Balancing ("F08NHF/DGEBAL", "F08NVF/ZGEBAL"): JOB 'N' nothing, 'P' permutations isolating
// eigenvalues, 'S' scaling by powers of 2, 'B' both.  A := D^-1 P' A P D is upper triangular outside
// rows and columns ILO..IHI (one-based; ILO = 1, IHI = N unless permuted).  SCALE(j) is the index of
// the row exchanged with j for j outside ILO..IHI (exchanges made from N down to IHI+1, then from 1 up
// to ILO-1) and the factor of D inside.
void balance(char job, int n, double *a, int lda, int *ilo, int *ihi, double *scale);
void balance(char job, int n, ComplexD *a, int lda, int *ilo, int *ihi, double *scale);

// Scaling alone over the whole matrix: balance with JOB 'S'.
void balance_scale(int n, double *a, int lda, double *scale);
void balance_scale(int n, ComplexD *a, int lda, double *scale);

// 1/cond of the eigenvalue LAMBDA of the unreduced upper Hessenberg H (subdiagonal free of zeros):
// |y'x| / (|x| |y|) with x, y its right and left eigenvectors, found by substitution; WORK(2N) complex.
double hessenberg_eigenvalue_rcond(int n, const double *h, int ldh, ComplexD lambda, ComplexD *work);
double hessenberg_eigenvalue_rcond(int n, const ComplexD *h, int ldh, ComplexD lambda, ComplexD *work);

// "F08QXF/ZTREVC": eigenvectors of the complex upper triangular T (SIDE 'R', 'L', 'B'; HOWMNY 'A', 'B'
// back-transformed by the Q that VL/VR hold, 'S' as SELECT chooses), one complex column each, each
// normalised so that its largest component has |re| + |im| = 1.  WORK(4N) reals for HOWMNY 'B'.
// Returns INFO (-position of a bad argument, reported through the silent route).
int F08QXF(char side, char howmny, int *select, int n, const double *t, int ldt, double *vl, int ldvl, double *vr,
           int ldvr, int mm, int *m, double *work);

} // namespace zek

#endif
