// Forward-difference interval for one variable, by reverse communication.
//
// The caller holds f(x) and asks for a step h that makes (f(x+h)-f(x))/h a good derivative estimate
// when f is known only to a relative accuracy epsrf.  Each cycle the caller evaluates f(x+h) and
// f(x+2h) at the step step() reports and hands both to cycle(); when cycle() returns true the
// interval hopt() and its error bound are final.
//
// With fa = epsrf*(1+|f(x)|) the absolute error of a value, a cycle forms
//     fdest = (f1-f)/h,  sdest = (f2-2 f1+f)/h^2,  cdest = (4 f1-3 f-f2)/(2h)   (one-sided, second order)
// and the cancellation errors  fdcerr = 2 fa/(h |fdest|),  sdcerr = 4 fa/(h^2 |sdest|).  A step whose
// sdcerr lies in [0.001, 0.1] estimates the second derivative with neither cancellation nor truncation
// dominating: it is taken.  Below the range h is too large (truncation) and is divided by 10*hfac, above
// it h is too small and is multiplied by hfac, hfac = 0.25 e^-0.16 fixed at the first cycle from the
// second accuracy e.  When the direction of the moves turns, the truncation-bound one of the last two
// steps is taken; after
// six cycles the search stops with the last step.  The final interval is
//     hopt = 2 sqrt(fa/|sdest|),  error bound |sdest| hopt/2 + 2 fa/hopt,
// and with sdest = 0 the last step stands, bound 2 fa/h.
//
// info(): 0 found; 1 f did not change over the steps (constant); 2 the second difference vanished while
// the first did not (linear or odd about x); 3 still truncation-dominated at the smallest step (too
// nonlinear); 4 the first difference itself cancels at the largest step (small derivative).
#ifndef ZEK_OPTIMISATION_DIFFERENCE_INTERVAL_H
#define ZEK_OPTIMISATION_DIFFERENCE_INTERVAL_H

namespace zek::fd {

class IntervalSearch {
public:
    static constexpr int max_cycles = 6;

    // fx = f(x), h the first step (positive), epsrf the relative accuracy of f, e the accuracy that
    // fixes the step factor (the machine precision when the caller has nothing better).
    IntervalSearch(double fx, double h, double epsrf, double e);

    double step() const { return h_; }
    // f1 = f(x+step()), f2 = f(x+2 step()).  True when the search has finished.
    bool cycle(double f1, double f2);

    bool done() const { return done_; }
    int info() const { return info_; }
    int cycles() const { return itn_; }
    double hopt() const { return hopt_; }
    double error_bound() const { return errbnd_; }
    double forward_estimate() const { return fdest_; }
    double central_estimate() const { return cdest_; }
    double second_estimate() const { return sdest_; }

private:
    void finish(double h, double sdest, int info);

    double fx_, h_, h0_, fa_, hfac_;
    double fdest_ = 0, sdest_ = 0, cdest_ = 0;
    double prev_h_ = 0, prev_sdest_ = 0;
    int itn_ = 0, moved_ = 0, info_ = 0;  // moved_: +1 after growing h, -1 after shrinking it
    bool done_ = false;
    double hopt_ = 0, errbnd_ = 0;
};

// Ordinal suffix of n for message texts: "-st", "-nd", "-rd", "-th" (11, 12, 13 modulo 100 take "-th").
const char *ordinal_suffix(long n);

} // namespace zek::fd

#endif
