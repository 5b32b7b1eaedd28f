// Forward-difference interval for one variable (see difference_interval.h).
#include "optimisation/difference_interval.h"

#include <cmath>

namespace zek::fd {

IntervalSearch::IntervalSearch(double fx, double h, double epsrf, double e)
    : fx_(fx), h_(h), h0_(h), fa_(epsrf * (1.0 + std::fabs(fx))), hfac_(0.25 * std::pow(e, -0.16)) {
    // A step that is not a positive finite number, or a value that is not finite, leaves nothing to
    // search: the search ends at once with the step as given.
    if (!(h > 0.0) || !std::isfinite(h) || !std::isfinite(fx) || !(epsrf >= 0.0) || !(e > 0.0 && e < 1.0)) {
        done_ = true;
        info_ = 3;
        hopt_ = h;
        errbnd_ = HUGE_VAL;
    }
}

void IntervalSearch::finish(double h, double sdest, int info) {
    done_ = true;
    info_ = info;
    if (sdest != 0.0 && std::isfinite(sdest)) {
        hopt_ = 2.0 * std::sqrt(fa_) / std::sqrt(std::fabs(sdest));
        errbnd_ = std::fabs(sdest) * hopt_ * 0.5 + 2.0 * fa_ / hopt_;
    } else {
        hopt_ = h;
        errbnd_ = 2.0 * fa_ / std::fabs(h);
    }
}

bool IntervalSearch::cycle(double f1, double f2) {
    if (done_) return true;
    ++itn_;
    const double h = h_;
    if (!std::isfinite(f1) || !std::isfinite(f2)) {
        // The function failed at the trial points: keep the last step that gave values.
        if (prev_h_ > 0.0) finish(prev_h_, prev_sdest_, 3);
        else finish(h, 0.0, 3);
        return true;
    }
    fdest_ = (f1 - fx_) / h;
    sdest_ = (f2 - 2.0 * f1 + fx_) / (h * h);
    cdest_ = (4.0 * f1 - 3.0 * fx_ - f2) / (2.0 * h);
    const double fdcerr = fdest_ != 0.0 ? 2.0 * fa_ / (h * std::fabs(fdest_)) : HUGE_VAL;
    const double sdcerr = sdest_ != 0.0 ? 4.0 * fa_ / (h * h * std::fabs(sdest_)) : HUGE_VAL;

    if (sdcerr >= 0.001 && sdcerr <= 0.1) {
        finish(h, sdest_, 0);
        return true;
    }
    const int want = sdcerr < 0.001 ? -1 : +1;  // shrink a truncation-bound step, grow a cancelled one
    if (moved_ != 0 && want != moved_) {
        // The acceptable range lies between this step and the one before.  Take whichever of the two
        // was truncation-bound: its second difference is the trustworthy one.
        finish(want < 0 ? h : prev_h_, want < 0 ? sdest_ : prev_sdest_, 0);
        return true;
    }
    if (itn_ >= max_cycles) {
        // A constant, linear or flat function gives no curvature to balance against cancellation: the
        // second difference is noise, and an interval drawn from it would be arbitrarily long.  Any
        // interval differences such a function well, so the start step stands.
        if (want < 0) finish(h, sdest_, 3);
        else if (f1 == fx_ && f2 == fx_) finish(h0_, 0.0, 1);
        else if (fdcerr <= 0.1) finish(h0_, 0.0, 2);
        else finish(h0_, 0.0, 4);
        return true;
    }
    prev_h_ = h;
    prev_sdest_ = sdest_;
    moved_ = want;
    h_ = want < 0 ? h / (10.0 * hfac_) : h * hfac_;
    return false;
}

const char *ordinal_suffix(long n) {
    const long last2 = (n < 0 ? -n : n) % 100;
    if (last2 >= 11 && last2 <= 13) return "-th";
    switch (last2 % 10) {
    case 1: return "-st";
    case 2: return "-nd";
    case 3: return "-rd";
    default: return "-th";
    }
}

} // namespace zek::fd
