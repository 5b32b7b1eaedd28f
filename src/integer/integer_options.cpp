// The integer programming chapter's option store (H02WBF) and the copy of H02BBF's final state
// (H02BZF).
#include <algorithm>
#include <cctype>
#include <cstring>
#include <string>

#include "frame/ifail.h"
#include "frame/output.h"
#include "zek2/e04.h"
#include "zek2/h02.h"

namespace {

// The solvers whose store H02WBF prepares, and the LP or QP solver each hands its nodes to.  The store
// is that solver's, so the lengths are the ones E04WBA asks for it.
struct StoreOwner {
    const char *name;
    const char *lp_solver;
};
const StoreOwner kOwners[] = {
    {"H02BBF", "E04MFA"},
    {"H02BFF", "E04MFA"},
    {"H02CBF", "E04NFA"},
    {"H02CEF", "E04NFA"},
};
constexpr int kLcwsav = 1, kLlwsav = 120, kLiwsav = 610, kLrwsav = 475;

// H02WBF's exits.
enum H02wbfExit { kUnknownRoutine, kStoreTooSmall };
constexpr zek::ExitRow kH02wbfExits[] = {
    {1, 99999, " ** Invalid routine name: %6.6s."},
    {2, 99998,
     " ** One or more of the workspace array lengths is too small.\n"
     "    Supplied values are:\n"
     "    LCWSAV = %6ld, LLWSAV = %6ld.\n"
     "    LIWSAV = %6ld, LRWSAV = %6ld.\n"
     "    Required values are:\n"
     "    LCWSAV = %6ld, LLWSAV = %6ld.\n"
     "    LIWSAV = %6ld, LRWSAV = %6ld."},
};

// H02BZF's exits.
enum H02bzfExit { kNNotPositive, kMNegative, kIworkTooShort, kRworkTooShort };
constexpr zek::ExitRow kH02bzfExits[] = {
    {1, 99999, " ** On entry, N .le. 0:\n    N = %16ld."},
    {1, 99998, " ** On entry, M .lt. 0:\n    M = %16ld."},
    {1, 99997,
     " ** On entry, the dimension of IWORK is too small: LIWORK =%16ld.\n"
     "    IWORK must be of dimension (at least)%16ld."},
    {1, 99996,
     " ** On entry, the dimension of RWORK is too small: LRWORK =%16ld.\n"
     "    RWORK must be of dimension (at least)%16ld."},
};

} // namespace

extern "C" {

void H02WBF(const char *rname, char *cwsav, const int *lcwsav, int *lwsav, const int *llwsav, int *iwsav,
            const int *liwsav, double *rwsav, const int *lrwsav, int *ifail, int rname_len, int cwsav_len) {
    zek::FailureExit exit("H02WBF", nullptr, ifail);
    const std::string given = zek::fixed_string(rname, std::min(rname_len, 6));
    std::string name = given;
    name.resize(6, ' ');
    for (char &c : name) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    const StoreOwner *owner = nullptr;
    for (const StoreOwner &o : kOwners)
        if (name == o.name) owner = &o;
    if (owner == nullptr) return void(zek::take(exit, kH02wbfExits, kUnknownRoutine, {given}));
    const int lc = *lcwsav, ll = *llwsav, li = *liwsav, lr = *lrwsav;
    if (lc < kLcwsav || ll < kLlwsav || li < kLiwsav || lr < kLrwsav) {
        zek::take(exit, kH02wbfExits, kStoreTooSmall, {lc, ll, li, lr, kLcwsav, kLlwsav, kLiwsav, kLrwsav});
        return;
    }
    int inner = 1;
    E04WBA(owner->lp_solver, cwsav, lcwsav, lwsav, llwsav, iwsav, liwsav, rwsav, lrwsav, &inner, 6, cwsav_len);
    exit.succeed();
}

void H02BZF(const int *n, const int *m, const int *iwork, const int *liwork, const double *rwork, const int *lrwork,
            int *istate, double *bl, double *bu, double *clamda, int *ifail) {
    zek::FailureExit exit("H02BZF", nullptr, ifail);
    const int nn = *n, mm = *m;
    if (nn <= 0) return void(zek::take(exit, kH02bzfExits, kNNotPositive, {nn}));
    if (mm < 0) return void(zek::take(exit, kH02bzfExits, kMNegative, {mm}));
    const long long nct = static_cast<long long>(nn) + mm;
    if (*liwork < nct) return void(zek::take(exit, kH02bzfExits, kIworkTooShort, {*liwork, static_cast<long>(nct)}));
    if (*lrwork < 3 * nct)
        return void(zek::take(exit, kH02bzfExits, kRworkTooShort, {*lrwork, static_cast<long>(3 * nct)}));
    const std::size_t k = static_cast<std::size_t>(nct);
    std::memcpy(istate, iwork, sizeof(int) * k);
    std::memcpy(bl, rwork, sizeof(double) * k);
    std::memcpy(bu, rwork + k, sizeof(double) * k);
    std::memcpy(clamda, rwork + 2 * k, sizeof(double) * k);
    exit.succeed();
}

} // extern "C"
