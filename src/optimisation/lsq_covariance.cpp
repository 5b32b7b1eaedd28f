// E04YCF: the covariance matrix of a least-squares solution from the singular values S and right
// singular vectors V of its Jacobian J = U diag(S) V'.
//
// Singular values above 10 EPS S(1) count as accepted, K of them; SIGMA2 = FSUMSQ/(M-K) (0 when K = M)
// estimates the variance of the residuals, and the covariance is SIGMA2 V_K diag(S_K)^-2 V_K', the
// pseudo-inverse of J'J on the accepted directions.  JOB -1 overwrites V (LV by N) with the whole
// matrix; JOB 0 puts its diagonal, the variances, in CJ (N); JOB j in 1..N puts its column j in CJ.
// WORK (LWORK >= N) holds a row of the whole matrix while it is formed.
#include <cmath>

#include "frame/ifail.h"
#include "frame/machine.h"
#include "zek2/e04.h"

namespace {

struct Exit {
    int ifail;
    const char *text;
};
const Exit kN = {1, " ** On entry, N must be at least 1: N =%16ld"};
const Exit kM = {1, " ** On entry, M must be at least N: M =%16ld, N =%16ld"};
const Exit kJob = {1, " ** On entry, JOB must satisfy -1.le.JOB.le.N: JOB =%16ld, N =%16ld"};
const Exit kFsumsq = {1, " ** On entry, FSUMSQ must be at least 0.0: FSUMSQ =%13.5E"};
const Exit kLv = {1, " ** On entry, LV must be at least N: LV =%16ld, N =%16ld"};
const Exit kLwork = {1, " ** On entry, LWORK must be at least N: LWORK =%16ld, N =%16ld"};
const Exit kNone = {2, " ** No singular value is above 10*EPS*S(1): no covariance can be formed."};
const Exit kRank = {3, " ** Only%6ld of the%6ld singular values were accepted: the covariance is that of\n"
                       " ** the accepted directions."};

} // namespace

extern "C" void E04YCF(const int *job_, const int *m_, const int *n_, const double *fsumsq_, const double *s,
                       double *v, const int *lv_, double *cj, double *work, const int *lwork_, int *ifail) {
    zek::FailureExit exit("E04YCF", nullptr, ifail);
    const int job = *job_, m = *m_, n = *n_, lv = *lv_, lwork = *lwork_;
    const double fsumsq = *fsumsq_;
    auto fail = [&](const Exit &e, std::initializer_list<zek::MessageValue> values) {
        exit.fail(e.ifail, 99999 - e.ifail, e.text, values);
    };
    if (n < 1) return fail(kN, {n});
    if (m < n) return fail(kM, {m, n});
    if (job < -1 || job > n) return fail(kJob, {job, n});
    if (!(fsumsq >= 0.0)) return fail(kFsumsq, {fsumsq});
    if (lv < n) return fail(kLv, {lv, n});
    if (lwork < n) return fail(kLwork, {lwork, n});
    const double eps = zek::precision();
    int k = 0;
    if (std::isfinite(s[0]) && s[0] > 0.0)
        while (k < n && s[k] > 10.0 * eps * s[0]) ++k;
    if (k == 0) return fail(kNone, {});
    const double sigma2 = k == m ? 0.0 : fsumsq / (m - k);
    const std::ptrdiff_t ld = lv;
    auto w = [&](int a, int i) { return i < k ? v[a + i * ld] / s[i] : 0.0; };
    if (job == -1) {
        // Row a of the covariance needs rows a..N of W = V diag(1/S): formed into WORK, then stored over
        // row a, which no later row reads.
        for (int a = 0; a < n; ++a) {
            for (int b = a; b < n; ++b) {
                double c = 0.0;
                for (int i = 0; i < k; ++i) c += w(a, i) * w(b, i);
                work[b] = sigma2 * c;
            }
            for (int b = a; b < n; ++b) v[a + b * ld] = work[b];
        }
        for (int a = 0; a < n; ++a)
            for (int b = 0; b < a; ++b) v[a + b * ld] = v[b + a * ld];
    } else {
        for (int a = 0; a < n; ++a) {
            const int b = job == 0 ? a : job - 1;
            double c = 0.0;
            for (int i = 0; i < k; ++i) c += w(a, i) * w(b, i);
            cj[a] = sigma2 * c;
        }
    }
    if (k < n) return fail(kRank, {k, n});
    exit.succeed();
}
