// E04ABF and E04BBF: the minimum of a function of one variable on an interval.
//
// Both keep a bracket [a, b] that holds the best point x, the two points w and v met before it, and
// take a parabolic (E04ABF) or secant-on-the-slope (E04BBF) step when it falls well inside the bracket
// and shrinks the steps, a golden-section or bisection step otherwise.  The search stops when x lies
// within 2*tol - (b-a)/2 of the bracket's middle, tol = E1*|x| + E2: then both ends are within 2*tol of
// x.  A value that is not finite ranks above every finite one, so the bracket moves away from it.
#include <algorithm>
#include <cmath>

#include "frame/ifail.h"
#include "frame/machine.h"
#include "optimisation/minimiser_support.h"

namespace {

using zek::mini::comparable;

struct Tolerances {
    double rel, abs;
};

// E1 and E2 as the search uses them: each at least sqrt(EPS) when given below EPS.
Tolerances tolerances(double e1, double e2) {
    const double eps = zek::precision();
    const double rt = std::sqrt(eps);
    return {std::isfinite(e1) && e1 >= eps ? e1 : rt, std::isfinite(e2) && e2 >= eps ? e2 : rt};
}

// Failure exits: no records (these routines report through IFAIL alone).
int finish(const char *name, int *ifail, int code) {
    zek::FailureExit exit(name, nullptr, ifail);
    if (code == 0) return exit.succeed();
    return exit.fail_with_records(code, 99999 - code, zek::Records{});
}

// The point kept by the searches: position, value as ranked, value as returned, slope.
struct Point {
    double x = 0.0, rank = HUGE_VAL, f = 0.0, g = 0.0;
};

// What both searches keep: the bracket [a, b] around the best point x, the two points w and v met
// before it, the tolerance t at x, the calls made and the outcome.
struct Bracket {
    double a, b;
    Tolerances tol;
    int limit;
    Point x{}, w{}, v{};
    double t = 0.0, t2 = 0.0;
    int calls = 0, code = 0;

    double middle() const { return 0.5 * (a + b); }
    // The test at the head of each cycle: x within 2t - (b-a)/2 of the middle, so that both ends are
    // within 2t of it; or the calls spent (IFAIL 2).
    bool stop() {
        t = tol.rel * std::fabs(x.x) + tol.abs;
        t2 = 2.0 * t;
        if (std::fabs(x.x - middle()) <= t2 - 0.5 * (b - a)) return true;
        if (calls < limit) return false;
        code = 2;
        return true;
    }
    // x + D, the step at least t long.
    double trial(double d) const { return x.x + (std::fabs(d) >= t ? d : (d > 0.0 ? t : -t)); }
    // U becomes the best point (the old one an end of the bracket), or an end itself.  RANKED keeps
    // as w and v the two best points met besides x; otherwise the two latest.
    void take(const Point &u, bool ranked) {
        if (u.rank <= x.rank) {
            (u.x < x.x ? b : a) = x.x;
            v = w;
            w = x;
            x = u;
            return;
        }
        (u.x < x.x ? a : b) = u.x;
        if (!ranked || u.rank <= w.rank || w.x == x.x) {
            v = w;
            w = u;
        } else if (u.rank <= v.rank || v.x == x.x || v.x == w.x) {
            v = u;
        }
    }
    // The results into the caller's arguments; IFAIL 3 when no finite value was met.
    void report(const char *name, double *a_, double *b_, double *x_, double *f_, int *maxcal, int *ifail) {
        *a_ = a;
        *b_ = b;
        *x_ = x.x;
        *f_ = x.f;
        *maxcal = calls;
        if (!std::isfinite(x.f)) code = 3;
        finish(name, ifail, code);
    }
};

} // namespace

extern "C" void E04ABF(ZekE04Funct1 funct, ZekE04AdaptFunct1 adapt, double *e1, double *e2, double *a_, double *b_,
                       int *maxcal, double *x_, double *f_, int *iuser, double *ruser, int *ifail) {
    if (adapt == nullptr) adapt = E04_ADAPT_FUNCT1;
    double a = *a_, b = *b_;
    const int limit = *maxcal;
    if (!(a + *e2 < b) || limit < 3 || funct == nullptr) {
        finish("E04ABF", ifail, 1);
        return;
    }
    Bracket k{a, b, tolerances(*e1, *e2), limit};
    const double c = 0.5 * (3.0 - std::sqrt(5.0));
    auto eval = [&](double x) {
        Point p;
        p.x = x;
        adapt(funct, x, &p.f, iuser, ruser);
        ++k.calls;
        p.rank = comparable(p.f);
        return p;
    };
    k.x = k.w = k.v = eval(a + c * (b - a));
    double d = 0.0, e = 0.0;
    while (!k.stop()) {
        const Point &x = k.x, &w = k.w, &v = k.v;
        const double m = k.middle();
        bool parabolic = false;
        if (std::fabs(e) > k.t) {
            double r = (x.x - w.x) * (x.rank - v.rank);
            double q = (x.x - v.x) * (x.rank - w.rank);
            double p = (x.x - v.x) * q - (x.x - w.x) * r;
            q = 2.0 * (q - r);
            if (q > 0.0) p = -p;
            else q = -q;
            r = e;
            e = d;
            if (std::fabs(p) < std::fabs(0.5 * q * r) && p > q * (k.a - x.x) && p < q * (k.b - x.x)) {
                d = p / q;
                const double u = x.x + d;
                if (u - k.a < k.t2 || k.b - u < k.t2) d = x.x < m ? k.t : -k.t;
                parabolic = true;
            }
        }
        if (!parabolic) {
            e = (x.x < m ? k.b : k.a) - x.x;
            d = c * e;
        }
        k.take(eval(k.trial(d)), true);
    }
    k.report("E04ABF", a_, b_, x_, f_, maxcal, ifail);
}

extern "C" void E04BBF(ZekE04Funct1Grad funct, ZekE04AdaptFunct1Grad adapt, double *e1, double *e2, double *a_,
                       double *b_, int *maxcal, double *x_, double *f_, double *g_, int *iuser, double *ruser,
                       int *ifail) {
    if (adapt == nullptr) adapt = E04_ADAPT_FUNCT1_GRAD;
    double a = *a_, b = *b_;
    const int limit = *maxcal;
    if (!(a + *e2 < b) || limit < 2 || funct == nullptr) {
        finish("E04BBF", ifail, 1);
        return;
    }
    Bracket k{a, b, tolerances(*e1, *e2), limit};
    auto eval = [&](double x) {
        Point p;
        p.x = x;
        adapt(funct, x, &p.f, &p.g, iuser, ruser);
        ++k.calls;
        p.rank = std::isfinite(p.g) ? comparable(p.f) : HUGE_VAL;
        if (!std::isfinite(p.g)) p.g = 0.0;
        return p;
    };
    // The first point is the end with the lower value; the slope there says where to go.
    k.x = eval(a);
    {
        const Point y = eval(b);
        if (y.rank < k.x.rank) {
            k.w = k.x;
            k.x = y;
        } else {
            k.w = y;
        }
        k.v = k.w;
    }
    double d = 0.0, e = b - a;
    while (!k.stop()) {
        const Point &x = k.x;
        // An end whose slope points out of the interval is the minimum on it.  A zero slope inside is
        // a stationary point below both ends; at an end it may be a maximum or an inflection (x^2 (4x-9)
        // at 0), so the search goes on into the interval.
        const bool at_a = x.x <= k.a, at_b = x.x >= k.b;
        if ((at_a && x.g > 0.0) || (at_b && x.g < 0.0) || (x.g == 0.0 && !at_a && !at_b)) break;
        const bool right = at_a || (!at_b && x.g < 0.0);
        // The slope puts the minimum between x and that end: when it is that close, x is accurate.
        const double end = right ? k.b : k.a;
        if (std::fabs(end - x.x) <= k.t2) break;
        bool secant = false;
        if (std::fabs(e) > k.t) {
            // Secant steps on the slope through w and through v; take the smaller one that goes
            // downhill, stays inside the bracket and at most halves the step before last.
            double best = HUGE_VAL;
            for (const Point *o : {&k.w, &k.v}) {
                if (o->x == x.x || o->g == x.g) continue;
                const double s = x.g * (o->x - x.x) / (x.g - o->g);
                const double u = x.x + s;
                if ((right ? s > 0.0 : s < 0.0) && u > k.a && u < k.b && std::fabs(s) < std::fabs(best)) best = s;
            }
            if (std::fabs(best) < 0.5 * std::fabs(e)) {
                e = d;
                d = best;
                const double u = x.x + d;
                if (u - k.a < k.t2 || k.b - u < k.t2) d = right ? k.t : -k.t;
                secant = true;
            }
        }
        if (!secant) {
            e = end - x.x;
            d = 0.5 * e;
        }
        double trial = k.trial(d);
        if (!(trial > k.a && trial < k.b)) trial = x.x + 0.5 * (end - x.x);
        k.take(eval(trial), false);
    }
    *g_ = k.x.g;
    k.report("E04BBF", a_, b_, x_, f_, maxcal, ifail);
}
