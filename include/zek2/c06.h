/* Chapter C06: fast Fourier transforms.
 *
 * A transform of length N is scaled by 1/sqrt(N):
 *     forward   z(k) = 1/sqrt(N) * sum over j of x(j) * exp(-2 pi i j k / N),
 *     backward  x(j) = 1/sqrt(N) * sum over k of z(k) * exp(+2 pi i j k / N),
 * so a forward transform followed by a backward one gives the data back.  DIRECT is 'F' (forward) or
 * 'B' (backward), in either case.
 *
 * Hermitian sequence of length N in N reals (the first engine, C06FAF, C06FBF, C06GBF): X(k+1) holds
 * Re z(k) for k = 0..N/2 and X(N-k+1) holds Im z(k) for k = 1..(N-1)/2.
 * Complex data are pairs (re, im).  M sequences "by sequence" lie one after the other; "by element"
 * element j of all M sequences lies together: element j of sequence p at (p-1) + j*M.
 *
 * Two engines with different factor limits: the first (C06FAF, C06FBF) takes N whose prime factors are
 * at most 19, at most 20 of them; the second (C06P.., C06R..) takes any N (fewer than 31 prime factors).
 *
 * Public routines are two-level fronts: each calls its worker (exported too, scalars by value) with a
 * 200-character ERRBUF, and the failure goes through P01_REPORT.  Failures from argument checks leave X
 * unchanged.  Every routine of the second engine stores in WORK(1) the number of WORK elements it
 * needed, as a real (for a complex WORK, the imaginary part is 0.0).
 */
#ifndef ZEK2_C06_H
#define ZEK2_C06_H

#include "types.h"

ZEK_BEGIN_DECLS

/* ---- Public routines ---- */

/* Forward transform of the real sequence X(N) into Hermitian form, in place; WORK(N).
 * IFAIL 1: a prime factor of N above 19; 2: more than 20 prime factors; 3: N <= 1; 4: internal. */
ZEK_API void C06FAF(double *x, const int *n, double *work, int *ifail) ZEK_SYMBOL("q64883");
/* Backward transform of the Hermitian sequence X(N) into a real one, in place; WORK(N); failures as
 * C06FAF. */
ZEK_API void C06FBF(double *x, const int *n, double *work, int *ifail) ZEK_SYMBOL("q42899");
/* Conjugate of the Hermitian sequence X(N): negates X((N+4)/2 .. N).  IFAIL 1: N < 1. */
ZEK_API void C06GBF(double *x, const int *n, int *ifail) ZEK_SYMBOL("q33150");

/* Transform of one complex sequence X(N) (2N reals), in place; WORK(2N) complex (4N reals).
 * IFAIL 1: N < 1; 2: bad DIRECT; 3: 31 or more prime factors; 4: internal. */
ZEK_API void C06PCF(const char *direct, double *x, const int *n, double *work, int *ifail, int direct_len)
    ZEK_SYMBOL("q98900");
/* Transform along dimension L of the complex array X(ND(1), ..., ND(NDIM)), N = product of ND(I);
 * WORK(LWORK) complex, LWORK at least the need of C06_WORK_NEED_BYREF for L.  IFAIL 1: NDIM < 1;
 * 2: L out of 1..NDIM; 3: bad DIRECT; 4: some ND(I) < 1; 5: N is not the product; 6: LWORK too small;
 * 7: ND(L) with 31 or more prime factors; 8: internal. */
ZEK_API void C06PFF(const char *direct, const int *ndim, const int *l, const int *nd, const int *n, double *x,
                    double *work, const int *lwork, int *ifail, int direct_len) ZEK_SYMBOL("q47926");
/* Transform along every dimension of the complex array X(ND(1), ..., ND(NDIM)); WORK(LWORK) complex,
 * LWORK at least N + sum of the ND(I) > 1 (2N with one such dimension, 1 with none).  IFAIL 1: NDIM < 1;
 * 2: bad DIRECT; 3: some ND(I) < 1; 4: N is not the product; 5: LWORK too small; 6: an ND(I) with 31 or
 * more prime factors; 7: internal. */
ZEK_API void C06PJF(const char *direct, const int *ndim, const int *nd, const int *n, double *x, double *work,
                    const int *lwork, int *ifail, int direct_len) ZEK_SYMBOL("q51489");
/* M real (forward) or Hermitian (backward) sequences of length N, by sequence: sequence p in
 * X((p-1)*(N+2)+1 ..), M*(N+2) reals.  Real x(j) at offset j; the transform z(k), k = 0..N/2, as pairs
 * (re, im) at offsets 2k, 2k+1.  WORK((N+2)*M + 2N) (3N for M = 1).
 * IFAIL 1: M < 1; 2: N < 1; 3: bad DIRECT; 4: internal. */
ZEK_API void C06PPF(const char *direct, const int *m, const int *n, double *x, double *work, int *ifail,
                    int direct_len) ZEK_SYMBOL("q88092");
/* M complex sequences of length N stored by sequence, X(N*M) complex; WORK((M+1)*N) complex.
 * IFAIL 1: M < 1; 2: N < 1; 3: bad DIRECT; 4: 31 or more prime factors; 5: internal. */
ZEK_API void C06PRF(const char *direct, const int *m, const int *n, double *x, double *work, int *ifail,
                    int direct_len) ZEK_SYMBOL("q28384");
/* C06PRF for sequences stored by element (element j of sequence p at complex index p-1 + j*M).  The
 * worker form with no front: scalars by value, ERRBUF(200) filled as by every worker. */
ZEK_API void C06PSF(const char *direct, int m, int n, double *x, double *work, char *errbuf, int *ifail,
                    int direct_len, int errbuf_len) ZEK_SYMBOL("q49382");

/* M sine transforms, by element, X(M*(N+2)): x(j), j = 1..N-1, of sequence p at X(p + (j-1)*M), and
 * the results y(k) = sqrt(2/N) sum_j x(j) sin(pi j k / N) in the same places.  Its own inverse.
 * WORK((N+2)*M + 2N).  IFAIL 1: M < 1; 2: N < 1; 3: internal. */
ZEK_API void C06RAF(const int *m, const int *n, double *x, double *work, int *ifail) ZEK_SYMBOL("q88069");
/* M cosine transforms, by element, X(M*(N+2)): x(j), j = 0..N, at X(p + j*M), results
 * y(k) = sqrt(2/N) (x(0)/2 + sum_{j=1}^{N-1} x(j) cos(pi j k / N) + (-1)^k x(N)/2).  Its own inverse.
 * WORK((N+2)*M + 2N).  Failures as C06RAF. */
ZEK_API void C06RBF(const int *m, const int *n, double *x, double *work, int *ifail) ZEK_SYMBOL("q95698");
/* M quarter-wave sine transforms, by element, X(M*(N+2)), x(j), j = 1..N, at X(p + (j-1)*M):
 * 'F': y(k) = 1/sqrt(N) (sum_{j=1}^{N-1} x(j) sin(pi j (2k-1) / 2N) + (-1)^(k-1) x(N)/2),
 * 'B': y(k) = 2/sqrt(N) sum_{j=1}^{N} x(j) sin(pi (2j-1) k / 2N), k = 1..N; each inverts the other.
 * WORK((N+2)*M + 2N).  IFAIL 1: M < 1; 2: N < 1; 3: bad DIRECT; 4: internal. */
ZEK_API void C06RCF(const char *direct, const int *m, const int *n, double *x, double *work, int *ifail,
                    int direct_len) ZEK_SYMBOL("q89524");
/* M quarter-wave cosine transforms, by element, x(j), j = 0..N-1, at X(p + j*M):
 * 'F': y(k) = 1/sqrt(N) (x(0)/2 + sum_{j=1}^{N-1} x(j) cos(pi j (2k+1) / 2N)),
 * 'B': y(k) = 2/sqrt(N) sum_{j=0}^{N-1} x(j) cos(pi (2j+1) k / 2N), k = 0..N-1.  As C06RCF otherwise. */
ZEK_API void C06RDF(const char *direct, const int *m, const int *n, double *x, double *work, int *ifail,
                    int direct_len) ZEK_SYMBOL("q11090");

/* ---- Workers of the fronts: the front's arguments with scalars by value, then ERRBUF, IFAIL and the
 * hidden lengths (ERRBUF's 200 last). ---- */
ZEK_API void C06FAF_WORKER(double *x, int n, double *work, char *errbuf, int *ifail, int errbuf_len)
    ZEK_SYMBOL("q73289");
ZEK_API void C06FBF_WORKER(double *x, int n, double *work, char *errbuf, int *ifail, int errbuf_len)
    ZEK_SYMBOL("q18057");
ZEK_API void C06GBF_WORKER(double *x, int n, char *errbuf, int *ifail, int errbuf_len) ZEK_SYMBOL("q22224");
ZEK_API void C06PCF_WORKER(const char *direct, double *x, int n, double *work, char *errbuf, int *ifail,
                           int direct_len, int errbuf_len) ZEK_SYMBOL("q17116");
ZEK_API void C06PFF_WORKER(const char *direct, int ndim, int l, const int *nd, int n, double *x, double *work,
                           int lwork, char *errbuf, int *ifail, int direct_len, int errbuf_len) ZEK_SYMBOL("q52941");
ZEK_API void C06PJF_WORKER(const char *direct, int ndim, const int *nd, int n, double *x, double *work, int lwork,
                           char *errbuf, int *ifail, int direct_len, int errbuf_len) ZEK_SYMBOL("q36050");
ZEK_API void C06PPF_WORKER(const char *direct, int m, int n, double *x, double *work, char *errbuf, int *ifail,
                           int direct_len, int errbuf_len) ZEK_SYMBOL("q85150");
ZEK_API void C06PRF_WORKER(const char *direct, int m, int n, double *x, double *work, char *errbuf, int *ifail,
                           int direct_len, int errbuf_len) ZEK_SYMBOL("q92807");
ZEK_API void C06RAF_WORKER(int m, int n, double *x, double *work, char *errbuf, int *ifail, int errbuf_len)
    ZEK_SYMBOL("q24343");
ZEK_API void C06RBF_WORKER(int m, int n, double *x, double *work, char *errbuf, int *ifail, int errbuf_len)
    ZEK_SYMBOL("q19974");
ZEK_API void C06RCF_WORKER(const char *direct, int m, int n, double *x, double *work, char *errbuf, int *ifail,
                           int direct_len, int errbuf_len) ZEK_SYMBOL("q47373");

/* ---- First engine ---- */

/* The real-to-Hermitian passes over X(N), already in digit-reversed order: FACTORS is the list of
 * C06FAF's factorisation (zero-terminated, 1s skipped); TRIG holds cos(2 pi j/N) at TRIG(j) and
 * sin(2 pi j/N) at TRIG(h+j-1), j = 1..h-1, h = (N+1)/2.  Unscaled. */
ZEK_API void C06_REAL_PASSES(double *x, int n, const int *factors, const double *trig) ZEK_SYMBOL("q85336");
/* The Hermitian-to-real passes, the inverse of C06_REAL_PASSES up to the factor N; the digit-reversed
 * order comes out. */
ZEK_API void C06_HERMITIAN_PASSES(double *x, int n, const int *factors, const double *trig) ZEK_SYMBOL("q83659");

/* ---- Second engine: one complex sequence ---- */

/* Complex passes for the factors 2, 3, 4, 5 on rows of M complex values (M = 1: one sequence): input
 * element (i, r, k) at i + IDO*(r + P*k), output (i, k, j) at i + IDO*(k + L1*j), twiddles TW of the
 * table of C06_COMPLEX_TABLE for this pass. */
ZEK_API void C06_COMPLEX_PASS2(int m, int ido, int l1, const double *cc, double *ch, const double *tw)
    ZEK_SYMBOL("q81798");
ZEK_API void C06_COMPLEX_PASS3(int m, int ido, int l1, const double *cc, double *ch, const double *tw)
    ZEK_SYMBOL("q25885");
ZEK_API void C06_COMPLEX_PASS4(int m, int ido, int l1, const double *cc, double *ch, const double *tw)
    ZEK_SYMBOL("q21807");
ZEK_API void C06_COMPLEX_PASS5(int m, int ido, int l1, const double *cc, double *ch, const double *tw)
    ZEK_SYMBOL("q84332");
/* The general pass, for any odd factor P: TW begins with the roots exp(-2 pi i q/P), q = 1..P-1. */
ZEK_API void C06_COMPLEX_GENERAL_PASS(int p, int m, int ido, int l1, const double *cc, double *ch, const double *tw)
    ZEK_SYMBOL("q87064");
/* Pass driver for one sequence: the forward passes of FACTORS(NF) over X(N) complex, flipping between
 * X and SCRATCH(N), result in X scaled by 1/sqrt(N). */
ZEK_API void C06_COMPLEX_DRIVER(int n, double *x, double *scratch, const double *trig, const int *factors, int nf)
    ZEK_SYMBOL("q86346");
/* The complex table of length N for FACTORS(NF) into TRIG(N) complex. */
ZEK_API void C06_COMPLEX_TABLE(int n, const int *factors, int nf, double *trig) ZEK_SYMBOL("q28903");
/* Transform of one complex sequence X(N) with WORK(2N) complex: the entry and the body.  Return 0, or
 * 1 for N < 1, 3 for too many prime factors.  The body stores 2N in WORK(1). */
ZEK_API int C06_COMPLEX_ENTRY(const char *direct, int n, double *x, double *work, int direct_len)
    ZEK_SYMBOL("q94167");
ZEK_API int C06_COMPLEX_BODY(const char *direct, int n, double *x, double *work, int direct_len)
    ZEK_SYMBOL("q67686");

/* ---- Second engine: multiple real sequences ---- */

/* The table of the multiple real transforms in TRIG(2N): cos(2 pi j/N) at TRIG(j), sin at TRIG(N+j),
 * j = 1..(N+1)/2 - 1, and the validity markers TRIG(N) = TRIG(2N) = N. */
ZEK_API void C06_REAL_TABLE(int n, double *trig) ZEK_SYMBOL("q53039");
/* Checks a kept table: INIT 'I' builds it (and FACTORS, NF), 'S' and 'R' require both markers to round
 * to N.  CODE 0, or 1: M < 1; 2: N < 1; 3: bad INIT; 4: too many factors; 5: table not valid for N. */
ZEK_API void C06_TABLE_CHECK(int m, int n, const char *init, double *trig, int *factors, int *nf, int *code,
                             int init_len) ZEK_SYMBOL("q29569");
/* Multiple real transform of M sequences stored by sequence (as C06PPF) with WORK((N+2)*M + 2N): the
 * entry, several sequences, one sequence.  Return 0, 1 (M < 1), 2 (N < 1), 3 (bad DIRECT), 4 (too many
 * factors), or 10 for N = 1 (X's imaginary rows zeroed).  WORK(1) receives the need. */
ZEK_API int C06_MULTIPLE_REAL(const char *direct, int m, int n, double *x, double *work, int direct_len)
    ZEK_SYMBOL("q67932");
ZEK_API int C06_MULTIPLE_REAL_SEVERAL(const char *direct, int m, int n, double *x, double *work, int direct_len)
    ZEK_SYMBOL("q58222");
ZEK_API int C06_MULTIPLE_REAL_ONE(const char *direct, int n, double *x, double *work, int direct_len)
    ZEK_SYMBOL("q20366");
/* The multiple real transform on sequences stored by element in A(M*(N+2)), with a buffer B(M*N) and
 * the table TRIG(2N) and FACTORS(NF) of C06_TABLE_CHECK: by DIRECT, forward, backward. */
ZEK_API void C06_MULTIPLE_REAL_BLOCK(const char *direct, int m, int n, double *a, double *b, const double *trig,
                                     const int *factors, int nf, int direct_len) ZEK_SYMBOL("q64610");
ZEK_API void C06_MULTIPLE_REAL_FORWARD(int m, int n, double *a, double *b, const double *trig, const int *factors,
                                       int nf) ZEK_SYMBOL("q89456");
ZEK_API void C06_MULTIPLE_REAL_BACKWARD(int m, int n, double *a, double *b, const double *trig, const int *factors,
                                        int nf) ZEK_SYMBOL("q36816");
/* Real and Hermitian pass drivers for M sequences stored together, in digit-reversed order, X(M*N),
 * in place; TMP(M*N) serves the general pass of large factors.  Unscaled. */
ZEK_API void C06_REAL_PASS_DRIVER(int m, int n, double *x, double *tmp, const double *trig, const int *factors,
                                  int nf) ZEK_SYMBOL("q80593");
ZEK_API void C06_HERMITIAN_PASS_DRIVER(int m, int n, double *x, double *tmp, const double *trig,
                                       const int *factors, int nf) ZEK_SYMBOL("q65460");

/* ---- Second engine: multiple complex sequences ---- */

/* M complex sequences by sequence X(N*M) / by element, WORK((M+1)*N) complex: the entries (return 0, 1
 * M < 1, 2 N < 1, 3 bad DIRECT, 4 too many factors; WORK(1) receives the need) and the block workers
 * (table in TRIG(N), sequences FIRST..LAST of M, scratch SCRATCH). */
ZEK_API int C06_MULTIPLE_COMPLEX_BY_SEQUENCE(const char *direct, int m, int n, double *x, double *work,
                                             int direct_len) ZEK_SYMBOL("q92496");
ZEK_API void C06_MULTIPLE_COMPLEX_SEQUENCE_BLOCK(int backward, int m, int n, int first, int last, double *x,
                                                 double *scratch, const double *trig, const int *factors, int nf)
    ZEK_SYMBOL("q90212");
ZEK_API int C06_MULTIPLE_COMPLEX_BY_ELEMENT(const char *direct, int m, int n, double *x, double *work,
                                            int direct_len) ZEK_SYMBOL("q91251");
ZEK_API void C06_MULTIPLE_COMPLEX_ELEMENT_BLOCK(int backward, int m, int n, int first, int last, double *x,
                                                double *scratch, const double *trig, const int *factors, int nf)
    ZEK_SYMBOL("q93419");
/* Forward and backward pass drivers on rows of M complex values X(M*N), SCRATCH(M*N), result in X
 * scaled by 1/sqrt(N). */
ZEK_API void C06_MULTIPLE_COMPLEX_FORWARD(int m, int n, double *x, double *scratch, const double *trig,
                                          const int *factors, int nf) ZEK_SYMBOL("q40385");
ZEK_API void C06_MULTIPLE_COMPLEX_BACKWARD(int m, int n, double *x, double *scratch, const double *trig,
                                           const int *factors, int nf) ZEK_SYMBOL("q87595");

/* ---- Multi-dimensional transforms ---- */

/* Transform along dimension L of X(ND(1..NDIM)) complex, N elements, WORK of the need of dimension L.
 * Returns 0, or 7 when ND(L) has too many prime factors. */
ZEK_API int C06_ONE_DIMENSION(const char *direct, int ndim, int l, const int *nd, int n, double *x, double *work,
                              int direct_len) ZEK_SYMBOL("q80371");
/* Workspace rules (complex elements), by reference: for dimension L (0: all) of NDIM dimensions ND;
 * -1 for arguments out of range and for all dimensions of more than three. */
ZEK_API void C06_WORK_NEED_BYREF(const int *ndim, const int *nd, const int *l, int *need) ZEK_SYMBOL("q98431");
/* The same for all dimensions (L = 0). */
ZEK_API void C06_WORK_NEED_ALL_BYREF(const int *ndim, const int *nd, int *need) ZEK_SYMBOL("q20649");
/* The multiple real transforms' rule (reals): 1 for N = 1; 3N when M or K (the sequences in one
 * worker's block) is 1; otherwise (N+2)*M + 2N. */
ZEK_API void C06_REAL_WORK_NEED_BYREF(const int *n, const int *m, const int *k, int *need) ZEK_SYMBOL("q72294");

/* ---- Transposition and the team seam ---- */

/* B(N,M) = transpose of A(M,N), out of place, in tiles of 64; WORDS 1 for reals, 2 for complex. */
ZEK_API void C06_TRANSPOSE(int words, int m, int n, const double *a, double *b) ZEK_SYMBOL("q21969");
/* Real and complex forms with leading dimensions, and the transposition of one tile. */
ZEK_API void C06_TRANSPOSE_REAL(int m, int n, const double *a, int lda, double *b, int ldb) ZEK_SYMBOL("q33631");
ZEK_API void C06_TRANSPOSE_REAL_TILE(int m, int n, const double *a, int lda, double *b, int ldb)
    ZEK_SYMBOL("q41985");
ZEK_API void C06_TRANSPOSE_COMPLEX(int m, int n, const double *a, int lda, double *b, int ldb)
    ZEK_SYMBOL("q61504");
ZEK_API void C06_TRANSPOSE_COMPLEX_TILE(int m, int n, const double *a, int lda, double *b, int ldb)
    ZEK_SYMBOL("q13921");
/* Worker RANK of a team of TEAM takes COUNT/TEAM sequences, one more for the first COUNT mod TEAM
 * workers: FIRST..LAST, one-based (LAST < FIRST for none). */
ZEK_API void C06_BLOCK_SPLIT(int team, int rank, int count, int *first, int *last) ZEK_SYMBOL("q57709");

ZEK_END_DECLS

#endif
