/* Chapter C05: a zero of one continuous function f of one variable.
 *
 * C05AGF, the driver: from X and the step H it searches outward (the trial step doubled when f falls,
 * reversed and doubled when it does not) for a sign change, then refines the bracket as c05azc does
 * with TOLX = EPS and both parts of the tolerance (IR 0).  A point with |f| < ETA is accepted at once
 * (ETA may be 0).  On return X is the zero and [A, B] the final bracket; A and B hold the
 * undefined-value marker unless the call gets that far.  F is called through the adaptor C05_ADAPT_F
 * as F(&x, IUSER, RUSER); IUSER and RUSER are the caller's arrays of any length, passed on unchanged
 * and never touched by the library.  IFAIL (host channel): 1 EPS not positive or X+H = X; 2 no sign
 * change found; 3 the bracket closed on a probable pole (or f was not finite there); 4 EPS too small
 * for the arithmetic (X is still the best point found); 5 an internal inconsistency.
 *
 * C05AVF, reverse communication: the bracket search inside [BOUNDL, BOUNDU].  Start with IND 1 (the
 * routine asks for f(X)) or -1 (FX holds f(X)); while IND returns 2 or 3, set FX = f(X) and call again
 * with everything else unchanged.  On IND 0 with IFAIL 0, [X, Y] (in either order) holds a sign change
 * (X = Y for an exact zero).  C(11) is the state; at most 200 trials.  IFAIL: 1 BOUNDU <= BOUNDL, X
 * outside the bounds, or X+H and X-H both outside; 2 X+H = X; 3 a bad IND; 4 no interval found (also on
 * a value of f that is not finite).  The front reports a failure only once IND is 0.
 *
 * c05azc, reverse communication: refines the bracket [x, y] (f(x) and f(y) of opposite signs) to a
 * zero.  Start with ind 1 (asks for f(x), then f(y)) or -1 (fx holds f(x); asks for f(y)); while ind
 * returns 2, 3 or 4 set fx = f(x) and call again.  On ind 0 without error, x is the best point and y
 * the other end of the final bracket, |x - y| not above the tolerance 0.5*tolx*max(|x|*r, a) with
 * (r, a) = (1, 1) for ir 0, (0, 1) for ir 1 and (1, 0) for ir 2; an exact zero gives y = x.  c(17) is
 * the whole state (the library keeps none, so searches may be interleaved), and the caller must not
 * change it, ir or tolx during a search.  Codes: 72 ZE_ARG_INVALID (ind, ir), 6 ZE_REAL_ARG_LE (tolx),
 * 139 ZE_FUNC_END_VAL (no sign change; ind 0), 140 ZE_PROBABLE_POLE (|f| grew beyond 1/sqrt(eps) times
 * its starting values as the bracket closed, or f was not finite), 141 ZE_XTOL_TOO_SMALL (the bracket
 * cannot shrink to tolx in this arithmetic; x and y are still the best bracket).
 */
#ifndef ZEK2_C05_H
#define ZEK2_C05_H

#include "types.h"

ZEK_BEGIN_DECLS

typedef double (ZEK_CALLBACK *ZekC05Function)(const double *x, int *iuser, double *ruser);

ZEK_API void C05AGF(double *x, double *h, const double *eps, const double *eta, ZekC05Function f, double *a, double *b,
                    int *iuser, double *ruser, int *ifail) ZEK_SYMBOL("q46868");
ZEK_API void C05AVF(double *x, double *fx, double *h, const double *boundl, const double *boundu, double *y, double *c,
                    int *ind, int *ifail) ZEK_SYMBOL("q77663");
ZEK_API void c05azc(double *x, double *y, double fx, double tolx, int ir, double c[], int *ind, ZekFail *fail)
    ZEK_SYMBOL("q98413");
/* The adaptor of C05AGF: calls F with the address of its own copy of X. */
ZEK_API double C05_ADAPT_F(ZekC05Function f, double x, int *iuser, double *ruser) ZEK_SYMBOL("q58116");

ZEK_END_DECLS

#endif
