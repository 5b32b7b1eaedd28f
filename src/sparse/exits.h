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

// The checks and outcomes the incomplete factorisations (Cholesky and LU) share.
// A one-letter option with the letters it may take and its failure exit.
struct LetterOption {
    char value;          // the option's first letter, upper case
    const char *allowed; // the letters it may take
    long exit_number;
    const char *text; // its message, taking the option as given
    const char *given;
    int given_len;
};
// LA at least 2*NNZ (exit 99999), then DTOL (99998, only when the fill goes by size) and the two letter
// options: all three run and the last one that fails is reported.  False after a failure exit.
bool incomplete_options(FailureExit &exit, int la, int nnz, int lfill, double dtol, const LetterOption &first,
                        const LetterOption &second);
// A user-supplied permutation of 1..N (IFAIL 3): a value out of range ends in exit RANGE_EXIT, a repeated
// one in RANGE_EXIT - 1.  SCRATCH (N) marks the values seen.
bool permutation_valid(FailureExit &exit, int n, const int perm[], int scratch[], long range_exit,
                       const char *range_text, const char *repeat_text);
// LIWORK against the need (IFAIL 1), in exit EXIT_NUMBER.
bool liwork_enough(FailureExit &exit, long liwork, Index need, long exit_number);
// The factorisation's own outcome: 0 success, 1 the fill outgrew LA (IFAIL 4, FILL_EXIT), else an
// internal failure (IFAIL 5, FILL_EXIT - 1).
void incomplete_outcome(FailureExit &exit, int core, long fill_exit, const char *fill_text, const char *serious_text);

} // namespace zek::sparse

#endif
