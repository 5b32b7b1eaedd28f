/* Chapter F07: LU and Cholesky factorisations of dense matrices, and triangular solves.
 *
 * Every routine has a published operation behind the slash of its name ("F07ADF/DGETRF") and follows
 * it in argument order and meaning.  Arguments arrive by reference (the masters f07xxf_ENTRY take one
 * leading selector by value that changes nothing); a character option is decided on its first letter,
 * in either case, and its hidden length follows all visible arguments.  Matrices are column-major with a
 * leading dimension; complex arrays are interleaved doubles, 16 bytes an element.
 *
 * INFO on return: 0 success; -i the i-th argument was illegal; i > 0 a numerical outcome described
 * for each routine.  Illegal arguments are reported in one of two ways:
 * - silently, through the empty hook q23865 (ZEK_SILENT_HOOK): INFO is the only trace.  This is the way
 *   of F07ADF, F07ADG, F07ARF, F07FDF, F07FRF and F07FRZ;
 * - through the hard illegal-parameter route: " ** On entry to F07GDF/DPPTRF parameter number  2 had
 *   an illegal value" on the host channel, then the process ends (exit status 0) whatever the caller
 *   wanted.  This is the way of F07FDZ (q53776), F07GDF and F07UEF.
 *
 * Block sizes.  The factorisations read their block size from the store of F07_BLOCK_SIZE (parameter 1
 * of the routine's entry).  It starts at 1 for F07ADF, F07ARF, F07FDF and F07FRF, so they start
 * unblocked; a caller who wants the blocked algorithm sets a block size with F07_BLOCK_SIZE.
 */
#ifndef ZEK2_F07_H
#define ZEK2_F07_H

#include "types.h"

ZEK_BEGIN_DECLS

/* "F07ADF/DGETRF": A = P*L*U of the M by N matrix A (LDA >= max(1,M)) with partial pivoting; L unit
 * lower trapezoidal, U upper trapezoidal, both stored over A.  IPIV(1..min(M,N)): row i was
 * interchanged with row IPIV(i).  INFO = i > 0: U(i,i) is exactly zero (the first such column); the
 * factorisation is still complete, but U is singular.  Blocked when the block size nb of the store
 * satisfies 1 < nb < min(M,N). */
ZEK_API void F07ADF(const int *m, const int *n, double *a, const int *lda, int *ipiv, int *info)
    ZEK_SYMBOL("q77046");
ZEK_API void f07adf_ENTRY(int selector, const int *m, const int *n, double *a, const int *lda, int *ipiv,
                          int *info) ZEK_SYMBOL("f07adf_ENTRY");

/* LU factorisation for callers that keep pivots in real workspace, in Crout form: A = P*L*U with L
 * lower trapezoidal carrying the diagonal and U unit upper trapezoidal, both over A.  PIV(1..min(M,N))
 * holds the interchanged rows as reals.  Blocked with the block size of F07ADF.  INFO = i > 0: L(i,i)
 * is exactly zero (the first such column); the loop goes on, but with a zero pivot the row of U beside
 * it stays unscaled. */
ZEK_API void F07ADG(const int *m, const int *n, double *a, const int *lda, double *piv, int *info)
    ZEK_SYMBOL("q62559");

/* "F07ARF/ZGETRF": F07ADF for a complex M by N matrix A (pivots chosen by |re| + |im|). */
ZEK_API void F07ARF(const int *m, const int *n, double *a, const int *lda, int *ipiv, int *info)
    ZEK_SYMBOL("q89333");
ZEK_API void f07arf_ENTRY(int selector, const int *m, const int *n, double *a, const int *lda, int *ipiv,
                          int *info) ZEK_SYMBOL("f07arf_ENTRY");

/* "F07FDF/DPOTRF": Cholesky factorisation of the symmetric positive definite N by N matrix A
 * (LDA >= max(1,N)): A = U'*U for UPLO 'U' (U over the upper triangle), A = L*L' for 'L' (L over the
 * lower triangle); the other triangle is not referenced.  INFO = i > 0: the leading minor of order i is
 * not positive definite and the factorisation stopped there (columns before i are factorised).  Two
 * export symbols, one body. */
ZEK_API void F07FDF(const char *uplo, const int *n, double *a, const int *lda, int *info, int uplo_len)
    ZEK_SYMBOL("q43569");
ZEK_API void F07FDF_STUB(const char *uplo, const int *n, double *a, const int *lda, int *info, int uplo_len)
    ZEK_SYMBOL("q43261");

/* "F07FDZ/DPOTF2": the unblocked form of F07FDF, same arguments and INFO.  This export reports an
 * illegal argument through the hard route (the process ends). */
ZEK_API void F07FDZ(const char *uplo, const int *n, double *a, const int *lda, int *info, int uplo_len)
    ZEK_SYMBOL("q53776");

/* "F07FRF/ZPOTRF": Cholesky factorisation A = U^H*U or L*L^H of a complex Hermitian positive definite
 * N by N matrix; as F07FDF.  The imaginary parts of the diagonal are not referenced and are returned
 * as zero. */
ZEK_API void F07FRF(const char *uplo, const int *n, double *a, const int *lda, int *info, int uplo_len)
    ZEK_SYMBOL("q85313");
ZEK_API void f07frf_ENTRY(int selector, const char *uplo, const int *n, double *a, const int *lda, int *info,
                          int uplo_len) ZEK_SYMBOL("f07frf_ENTRY");
/* "F07FRZ/ZPOTF2": the unblocked form of F07FRF. */
ZEK_API void F07FRZ(const char *uplo, const int *n, double *a, const int *lda, int *info, int uplo_len)
    ZEK_SYMBOL("q75265");

/* "F07GDF/DPPTRF": Cholesky factorisation of a symmetric positive definite matrix in packed storage:
 * AP(1..N*(N+1)/2) holds the triangle UPLO column by column, and is overwritten by the factor in the
 * same storage.  INFO = i > 0: the leading minor of order i is not positive definite.  Illegal
 * arguments take the hard route. */
ZEK_API void F07GDF(const char *uplo, const int *n, double *ap, int *info, int uplo_len) ZEK_SYMBOL("q19717");

/* "F07UEF/DTPTRS": solves op(T)*X = B for a packed triangular N by N matrix T (AP as in F07GDF), op
 * 'N', 'T' or 'C' (= 'T'), DIAG 'U' (unit) or 'N'; B is N by NRHS (LDB >= max(1,N)) and is
 * overwritten by X.  INFO = i > 0: T(i,i) is exactly zero and nothing is solved.  Illegal arguments
 * take the hard route. */
ZEK_API void F07UEF(const char *uplo, const char *trans, const char *diag, const int *n, const int *nrhs,
                    const double *ap, double *b, const int *ldb, int *info, int uplo_len, int trans_len,
                    int diag_len) ZEK_SYMBOL("q81770");

/* The block-size store.  NAME is a routine name of six or more characters ("F07ADF", "F08AGF"),
 * PARAM a parameter number from 1 to 8 (1 is the block size).  SET = 0: *VALUE receives the stored
 * value; SET != 0: the store receives *VALUE, for the rest of the process.  PARAM out of range gives
 * *VALUE = -1, a name without an entry *VALUE = -2; the store is then unchanged.  Entries exist for
 * names F07xy. with x in A B F H M N T and y in D J R W, and for F08xy. with x in A C F J K N P S and
 * a fifth letter from that x's list (see the chapter's documentation). */
ZEK_API void F07_BLOCK_SIZE(const int *param, const char *name, int *value, const int *set, int name_len)
    ZEK_SYMBOL("q78298");

ZEK_END_DECLS

#endif
