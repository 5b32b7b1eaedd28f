// The scalar zero finders of both layers: the bracket refinement by reverse communication (C05AZF,
// c05azc), the bracket search (C05AVF), and the driver C05AGF that runs both around the user's
// function through its adaptor.
#include <algorithm>
#include <cmath>

#include "analysis/roots_scalar.h"
#include "frame/adaptor.h"
#include "frame/ifail.h"
#include "frame/machine.h"
#include "frame/raise.h"
#include "zek2/c05.h"
#include "zek2/frame.h"
#include "zek2/messages.h"

extern "C" double C05_ADAPT_F(ZekC05Function f, double x, int *iuser, double *ruser) {
    return f(&x, iuser, ruser);
}

namespace zek {

namespace {

// The bracket refinement C05AZF.
enum C05azfExit { kAzIndInvalid, kAzTolxNotPositive, kAzIrInvalid, kAzSameSign, kAzTolxTooSmall, kAzPole };
constexpr ExitRow kC05azfExits[] = {
    {2, 99999, " ** On entry, IND .ne. -1, 1, 2, 3, or 4: IND =%16ld."},
    {3, 99998, " ** On entry, TOLX .le. 0.0: TOLX =%12.4E."},
    {3, 99997, " ** On entry, IR .ne. 0, 1, or 2: IR =%16ld."},
    {1, 99996, " ** On entry, f(X) and f(Y) have the same sign with f(X) .ne. 0.0."},
    {5, 99995, " ** The tolerance TOLX has been set too small for the problem\n    being solved. However, the values X "
               "and Y returned may well\n    be good approximations to the zero."},
    {4, 99994, " ** Interval may contain a pole rather than a zero."},
};

} // namespace

bool valid_refine_ind(int ind) { return ind == -1 || (ind >= 1 && ind <= 4); }

// The IFAIL-layer form of the refinement, called without a front (ERRBUF may be null).
void C05AZF_worker(double *x, double *y, double fx, double tolx, int ir, double *c, int *ind, char *errbuf,
                   int *ifail) {
    FailureExit exit("C05AZF", errbuf, ifail);
    if (!valid_refine_ind(*ind)) return void(take(exit, kC05azfExits, kAzIndInvalid, {static_cast<long>(*ind)}));
    if (!(tolx > 0.0)) return void(take(exit, kC05azfExits, kAzTolxNotPositive, {tolx}));
    if (ir < 0 || ir > 2) return void(take(exit, kC05azfExits, kAzIrInvalid, {static_cast<long>(ir)}));
    switch (refine_bracket(x, y, fx, tolx, ir, c, ind)) {
    case ZeroOutcome::SameSign: take(exit, kC05azfExits, kAzSameSign); return;
    case ZeroOutcome::TooSmall: take(exit, kC05azfExits, kAzTolxTooSmall); return;
    case ZeroOutcome::Pole: take(exit, kC05azfExits, kAzPole); return;
    default: exit.succeed();
    }
}

} // namespace zek

extern "C" void c05azc(double *x, double *y, double fx, double tolx, int ir, double c[], int *ind, ZekFail *fail) {
    const char *name = "c05azc";
    zek::clear_fail(fail);
    if (!zek::valid_refine_ind(*ind)) {
        zek::raise_formatted(fail, name, ZE_ARG_INVALID, "ind", static_cast<long>(*ind), "ind", "-1, 1, 2, 3 or 4");
        return;
    }
    if (!(tolx > 0.0)) {
        zek::raise_formatted(fail, name, ZE_REAL_ARG_LE, "tolx", "0.0", "tolx", tolx);
        return;
    }
    if (ir < 0 || ir > 2) {
        zek::raise_formatted(fail, name, ZE_ARG_INVALID, "ir", static_cast<long>(ir), "ir", "0, 1 or 2");
        return;
    }
    switch (zek::refine_bracket(x, y, fx, tolx, ir, c, ind)) {
    case zek::ZeroOutcome::SameSign: zek::raise_plain(fail, name, ZE_FUNC_END_VAL); return;
    case zek::ZeroOutcome::Pole: zek::raise_plain(fail, name, ZE_PROBABLE_POLE); return;
    case zek::ZeroOutcome::TooSmall: zek::raise_plain(fail, name, ZE_XTOL_TOO_SMALL); return;
    default: zek::raise_success(fail, name);
    }
}

namespace {

// The bracket search C05AVF.
enum C05avfExit { kAvBoundsOrder, kAvXOutside, kAvHTooSmall, kAvBothOutside, kAvIndInvalid, kAvNoBracket };
constexpr zek::ExitRow kC05avfExits[] = {
    {1, 99999, " ** On entry, BOUNDU .le. BOUNDL:\n    BOUNDL =%12.4E  BOUNDU =%12.4E"},
    {1, 99998, " ** On entry, X .lt. BOUNDL or X .gt. BOUNDU:\n    X =%12.4E  BOUNDL =%12.4E  BOUNDU =%12.4E"},
    {2, 99997, " ** On entry, H is too small for use as a perturbation of X.\n    X =%12.4E  H =%12.4E"},
    {1, 99996, " ** On entry, X+H and X-H both lie outside the interval [BOUNDL,BOUNDU]:\n    X      =%12.4E  H "
               "=%12.4E  BOUNDL =%12.4E  BOUNDU =%12.4E"},
    {3, 99995, " ** On entry, IND is not equal to -1, 1, 2, or 3: IND =%16ld."},
    {4, 99994, " ** Unable to find an interval containing a simple zero."},
};

// The driver C05AGF.
enum C05agfExit { kAgEpsNotPositive, kAgHTooSmall, kAgNoInterval, kAgInternal, kAgPole, kAgEpsTooSmall };
constexpr zek::ExitRow kC05agfExits[] = {
    {1, 99999, " ** On entry, EPS .le. 0.0: EPS =%12.4E."},
    {1, 99998, " ** On entry, X+H .eq. X:\n    X =%12.4E  H =%12.4E"},
    {2, 99996, " ** An interval containing the zero could not be found."},
    {5, 99997, " ** A serious error occurred in an internal call to an auxiliary routine."},
    {3, 99995, " ** Solution may be a pole rather than a zero."},
    {4, 99994, " ** The tolerance EPS has been set too small for the problem\n    being solved. However, the value X "
               "returned may well\n    be a good approximation to the zero."},
};

void c05avf_worker(double *x, double fx, double *h, double boundl, double boundu, double *y, double *c, int *ind,
                   char *errbuf, int *ifail, int /*errbuf_len*/) {
    zek::FailureExit exit("C05AVF", errbuf, ifail);
    if (*ind != -1 && (*ind < 1 || *ind > 3)) {
        const long bad = *ind;
        *ind = 0;
        return void(zek::take(exit, kC05avfExits, kAvIndInvalid, {bad}));
    }
    if (*ind == 1 || *ind == -1) {
        const double xv = *x, hv = *h;
        bool failed = true;
        if (!(boundu > boundl)) {
            zek::take(exit, kC05avfExits, kAvBoundsOrder, {boundl, boundu});
        } else if (!(xv >= boundl && xv <= boundu)) {
            zek::take(exit, kC05avfExits, kAvXOutside, {xv, boundl, boundu});
        } else if (!std::isfinite(hv) || xv + hv == xv) {
            zek::take(exit, kC05avfExits, kAvHTooSmall, {xv, hv});
        } else if ((xv + hv < boundl || xv + hv > boundu) && (xv - hv < boundl || xv - hv > boundu)) {
            zek::take(exit, kC05avfExits, kAvBothOutside, {xv, hv, boundl, boundu});
        } else {
            failed = false;
        }
        if (failed) {
            *ind = 0;
            return;
        }
    }
    if (zek::search_bracket(x, fx, *h, boundl, boundu, y, c, ind) == zek::ZeroOutcome::NoBracket)
        return void(zek::take(exit, kC05avfExits, kAvNoBracket));
    exit.succeed();
}

void c05agf_worker(double *x, double *h, double eps, double eta, ZekC05Function f, double *a, double *b, int *iuser,
                   double *ruser, char *errbuf, int *ifail, int /*errbuf_len*/) {
    zek::FailureExit exit("C05AGF", errbuf, ifail);
    if (!(eps > 0.0)) return void(zek::take(exit, kC05agfExits, kAgEpsNotPositive, {eps}));
    if (!std::isfinite(*h) || *x + *h == *x) return void(zek::take(exit, kC05agfExits, kAgHTooSmall, {*x, *h}));
    // The bracket, searched over the whole range of numbers from X with the step H.
    const double big = zek::largest();
    double sx = *x, sy = *x, fx = C05_ADAPT_F(f, sx, iuser, ruser);
    double cs[zek::kBracketState] = {};
    int ind = -1;
    zek::ZeroOutcome outcome;
    while ((outcome = zek::search_bracket(&sx, fx, *h, -big, big, &sy, cs, &ind)) == zek::ZeroOutcome::Request)
        fx = C05_ADAPT_F(f, sx, iuser, ruser);
    if (outcome != zek::ZeroOutcome::Found) return void(zek::take(exit, kC05agfExits, kAgNoInterval));
    // Then the zero inside it: fx is f(sx).
    double cz[zek::kRefineState] = {};
    ind = -1;
    if (sx != sy) {
        while ((outcome = zek::refine_bracket(&sx, &sy, fx, eps, 0, cz, &ind)) == zek::ZeroOutcome::Request) {
            fx = C05_ADAPT_F(f, sx, iuser, ruser);
            if (std::fabs(fx) < eta) {
                outcome = zek::ZeroOutcome::Found;
                sy = sx;
                break;
            }
        }
    }
    *x = sx;
    *a = std::min(sx, sy);
    *b = std::max(sx, sy);
    switch (outcome) {
    case zek::ZeroOutcome::Found: exit.succeed(); return;
    case zek::ZeroOutcome::Pole: zek::take(exit, kC05agfExits, kAgPole); return;
    case zek::ZeroOutcome::TooSmall: zek::take(exit, kC05agfExits, kAgEpsTooSmall); return;
    default: zek::take(exit, kC05agfExits, kAgInternal); return;
    }
}

} // namespace

extern "C" void C05AVF(double *x, double *fx, double *h, const double *boundl, const double *boundu, double *y,
                       double *c, int *ind, int *ifail) {
    zek::Front front("C05AVF");
    c05avf_worker(x, *fx, h, *boundl, *boundu, y, c, ind, front.errbuf(), ifail, zek::kErrbufLength);
    if (*ifail != 0 && *ind == 0) front.finish(*ifail);
}

extern "C" void C05AGF(double *x, double *h, const double *eps, const double *eta, ZekC05Function f, double *a,
                       double *b, int *iuser, double *ruser, int *ifail) {
    zek::Front front("C05AGF");
    ZEK_MARK_REAL(a);
    ZEK_MARK_REAL(b);
    c05agf_worker(x, h, *eps, *eta, f, a, b, iuser, ruser, front.errbuf(), ifail, zek::kErrbufLength);
    front.finish(*ifail);
}
