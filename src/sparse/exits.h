// The structure exits that the sparse routines share: one table of texts, with the IFAIL values and the
// trailing advice that differ by routine.
#ifndef ZEK_SPARSE_EXITS_H
#define ZEK_SPARSE_EXITS_H

#include "frame/ifail.h"
#include "sparse/sparse.h"

namespace zek::sparse {

struct StructureReport {
    int ifail_size;   // IFAIL of statuses 1 to 3 (sizes)
    int ifail_index;  // IFAIL of statuses 4 to 7 (indices, order, duplicates)
    long first_exit;  // exit number of status 1; the others count down from it
    bool symmetric;
    const char *suffix; // advice appended to the index messages, or null
};

// Reports the failed structure check (status 1..7 of cs_check, entry bad) through exit.
void report_structure(FailureExit &exit, const StructureReport &how, int status, int bad, int n, int nnz,
                      const int irow[], const int icol[]);

// Products without checks (n >= 1, nnz >= 0, indices in range).
void apply_product(bool transpose, int n, int nnz, const double a[], const int irow[], const int icol[],
                   const double x[], double y[]);
void apply_product(bool transpose, int n, int nnz, const Complex a[], const int irow[], const int icol[],
                   const Complex x[], Complex y[]);
void apply_symmetric_product(int n, int nnz, const double a[], const int irow[], const int icol[], const double x[],
                             double y[]);
void apply_symmetric_product(int n, int nnz, const Complex a[], const int irow[], const int icol[], const Complex x[],
                             Complex y[]);

// Solves with the factors, without checks.  X must not overlap Y.
template <class T>
void lu_solve(bool transpose, int n, const T a[], const int icol[], const int ipivp[], const int ipivq[],
              const int istr[], const int idiag[], const T y[], T x[]);
template <class T>
void cholesky_solve(int n, const T a[], const int icol[], const int ipiv[], const int istr[], const T y[], T x[]);

// The diagonal of each row of a checked CS or SCS matrix (idiag, one-based entry numbers, may be null).
// Returns 0, or with *row the first row whose diagonal is 1 missing, 2 zero, 3 not real (hermitian).
template <class T>
int find_diagonal(int n, int nnz, const T a[], const int irow[], const int icol[], bool hermitian, int idiag[],
                  int *row);

// One SSOR step x := inverse(M)*v, M = (omega/(2-omega)) (D/omega + L) inverse(D) (D/omega + U): Lower
// solves with the lower factor first (TRANS 'N'), Upper applies the transposed step (TRANS 'T'),
// Hermitian takes U = L^H from an SCS matrix.  idiag (may be null) points at the diagonals.
enum class Sweep { Lower, Upper, Hermitian };
template <class T>
void ssor_apply(Sweep kind, int n, int nnz, const T a[], const int irow[], const int icol[], const int idiag[],
                double omega, const T v[], T x[]);

} // namespace zek::sparse

#endif
