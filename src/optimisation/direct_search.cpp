// E04CCF: unconstrained minimum by the simplex method, function values only.
//
// The start simplex is built one axis at a time from a parabola through the current point and its two
// neighbours at unit offsets: its step, forced in magnitude into [0.1, 5], becomes the edge of the
// simplex along that axis.  Then reflection (coefficient 1), expansion (2), contraction (0.5) and
// shrink toward the best vertex (0.5), until the root mean square deviation of the vertex values is at
// most TOL.  A converged simplex is then tested for descent by short steps along the axes from its
// best vertex and, where one descends, rebuilt there with a tenth of the start's edges (at most five
// times, and only while each rebuild lowers the best value by more than TOL).  Values that are not
// finite rank above every finite value.
#include <algorithm>
#include <cmath>

#include "frame/ifail.h"
#include "frame/machine.h"
#include "optimisation/minimiser_support.h"

namespace {

using zek::mini::comparable;

constexpr double kReflect = 1.0, kExpand = 2.0, kContract = 0.5, kShrink = 0.5;
constexpr double kMinEdge = 0.1, kMaxEdge = 5.0;
constexpr double kAxisLimit = 5.0;
constexpr int kRestarts = 5;
constexpr double kRestartEdge = 0.1, kProbe = 1e-3;

class Simplex {
public:
    Simplex(int n, double *x, double *w1, double *w2, double *w3, double *w4, double *w5, double *w6,
            ZekE04FunctSimplex funct, ZekE04AdaptSimplex adapt, int maxcal)
        : n_(n), ld_(n + 1), x_(x), centroid_(w1), trial_(w2), trial2_(w3), point_(w4), values_(w5), sim_(w6),
          funct_(funct), adapt_(adapt), maxcal_(maxcal) {}

    // Returns 0 when the start simplex is built, 2 when the call limit came first.
    int start();
    // One cycle; true when the limit of calls stopped it.
    bool cycle();
    // Whether a step of a thousandth of the start's edge along some axis, either way, lowers the best value
    // (at most 2N calls), leaving the calls for a restart.
    bool descends();
    // A fresh simplex around the best vertex with a tenth of the start's edges; false when the calls
    // would not suffice for it.
    bool restart();
    double deviation() const;
    int best() const;
    int worst() const;
    double value(int i) const { return values_[i]; }
    double *vertex_element(int i, int j) { return sim_ + i + static_cast<std::ptrdiff_t>(j) * ld_; }
    const double *sim() const { return sim_; }
    int calls() const { return calls_; }
    bool limit_reached() const { return calls_ >= maxcal_; }

private:
    double eval(const double *p) {
        double f = 0.0;
        adapt_(funct_, n_, p, &f);
        ++calls_;
        return f;
    }
    void row_to(int i, double *p) {
        for (int j = 0; j < n_; ++j) p[j] = *vertex_element(i, j);
    }
    void row_from(int i, const double *p, double f) {
        for (int j = 0; j < n_; ++j) *vertex_element(i, j) = p[j];
        values_[i] = f;
    }

    int n_;
    std::ptrdiff_t ld_;
    double *x_, *centroid_, *trial_, *trial2_, *point_, *values_, *sim_;
    ZekE04FunctSimplex funct_;
    ZekE04AdaptSimplex adapt_;
    int maxcal_;
    int calls_ = 0;
};

int Simplex::start() {
    const double f0 = eval(x_);
    row_from(0, x_, f0);
    for (int k = 0; k < n_; ++k) {
        if (calls_ + 2 > maxcal_) return 2;
        for (int j = 0; j < n_; ++j) point_[j] = x_[j];
        const double xk = x_[k];
        point_[k] = xk - 1.0;
        const double fm = comparable(eval(point_));
        point_[k] = xk + 1.0;
        const double fp = comparable(eval(point_));
        const double f = comparable(f0);
        // Parabola through offsets -1, 0, 1: slope (fp-fm)/2, curvature fp - 2f + fm.
        const double curvature = fp - 2.0 * f + fm;
        double step = 0.0;
        if (curvature > 0.0 && std::isfinite(curvature)) {
            step = -0.5 * (fp - fm) / curvature;
        } else {
            // No positive curvature: walk downhill one unit at a time, within the axis limit.
            const double dir = fp < fm ? 1.0 : (fm < fp ? -1.0 : 0.0);
            double here = dir > 0.0 ? fp : fm;
            if (dir != 0.0 && here < f) {
                step = dir;
                while (std::fabs(step + dir) <= kAxisLimit && calls_ < maxcal_) {
                    point_[k] = xk + step + dir;
                    const double next = comparable(eval(point_));
                    if (!(next < here)) break;
                    here = next;
                    step += dir;
                }
            }
        }
        if (!std::isfinite(step) || step == 0.0) step = kMinEdge;
        else if (std::fabs(step) < kMinEdge) step = std::copysign(kMinEdge, step);
        else if (std::fabs(step) > kMaxEdge) step = std::copysign(kMaxEdge, step);
        for (int j = 0; j < n_; ++j) point_[j] = x_[j];
        point_[k] = xk + step;
        row_from(k + 1, point_, 0.0);
    }
    // The start is in row 0 from here on: X keeps the edges for a restart.
    for (int k = 0; k < n_; ++k) x_[k] = *vertex_element(k + 1, k) - *vertex_element(0, k);
    // The vertices' values, each evaluated once at its place.
    for (int i = 1; i <= n_; ++i) {
        if (calls_ >= maxcal_) return 2;
        row_to(i, point_);
        values_[i] = eval(point_);
    }
    return 0;
}

bool Simplex::descends() {
    if (calls_ + 3 * n_ > maxcal_) return false;
    const int b = best();
    const double fb = comparable(values_[b]);
    for (int k = 0; k < n_; ++k)
        for (double side : {-1.0, 1.0}) {
            row_to(b, point_);
            point_[k] += side * kProbe * x_[k];
            if (comparable(eval(point_)) < fb) return true;
        }
    return false;
}

bool Simplex::restart() {
    if (calls_ + n_ > maxcal_) return false;
    const int b = best();
    row_to(b, point_);
    int k = 0;
    for (int i = 0; i <= n_; ++i) {
        if (i == b) continue;
        for (int j = 0; j < n_; ++j) *vertex_element(i, j) = point_[j];
        *vertex_element(i, k) += kRestartEdge * x_[k];
        ++k;
    }
    for (int i = 0; i <= n_; ++i) {
        if (i == b) continue;
        row_to(i, trial_);
        values_[i] = eval(trial_);
    }
    return true;
}

int Simplex::best() const {
    int b = 0;
    for (int i = 1; i <= n_; ++i)
        if (comparable(values_[i]) < comparable(values_[b])) b = i;
    return b;
}

int Simplex::worst() const {
    int w = 0;
    for (int i = 1; i <= n_; ++i)
        if (comparable(values_[i]) > comparable(values_[w])) w = i;
    return w;
}

double Simplex::deviation() const {
    double mean = 0.0;
    for (int i = 0; i <= n_; ++i) mean += comparable(values_[i]);
    mean /= n_ + 1;
    double s = 0.0;
    for (int i = 0; i <= n_; ++i) {
        const double d = comparable(values_[i]) - mean;
        s += d * d;
    }
    return std::sqrt(s / (n_ + 1));
}

bool Simplex::cycle() {
    const int h = worst(), l = best();
    // Second worst.
    int s = l;
    for (int i = 0; i <= n_; ++i)
        if (i != h && comparable(values_[i]) > comparable(values_[s])) s = i;
    for (int j = 0; j < n_; ++j) {
        double c = 0.0;
        for (int i = 0; i <= n_; ++i)
            if (i != h) c += *vertex_element(i, j);
        centroid_[j] = c / n_;
    }
    const double fh = comparable(values_[h]), fl = comparable(values_[l]), fs = comparable(values_[s]);
    for (int j = 0; j < n_; ++j) trial_[j] = centroid_[j] + kReflect * (centroid_[j] - *vertex_element(h, j));
    const double fr = eval(trial_);
    const double rr = comparable(fr);
    if (rr < fl) {
        if (limit_reached()) {
            row_from(h, trial_, fr);
            return true;
        }
        for (int j = 0; j < n_; ++j) trial2_[j] = kExpand * trial_[j] - centroid_[j];
        const double fe = eval(trial2_);
        if (comparable(fe) < rr) row_from(h, trial2_, fe);
        else row_from(h, trial_, fr);
        return false;
    }
    if (rr < fs) {
        row_from(h, trial_, fr);
        return false;
    }
    if (limit_reached()) return true;
    // Contraction: outside when the reflected point beats the worst, inside otherwise.
    const bool outside = rr < fh;
    for (int j = 0; j < n_; ++j) {
        const double far = outside ? trial_[j] : *vertex_element(h, j);
        trial2_[j] = centroid_[j] + kContract * (far - centroid_[j]);
    }
    const double fc = eval(trial2_);
    if (comparable(fc) < std::min(rr, fh)) {
        row_from(h, trial2_, fc);
        return false;
    }
    if (outside) row_from(h, trial_, fr);
    // Shrink toward the best vertex.
    for (int i = 0; i <= n_; ++i) {
        if (i == l) continue;
        if (limit_reached()) return true;
        for (int j = 0; j < n_; ++j) {
            double *v = vertex_element(i, j);
            *v = *vertex_element(l, j) + kShrink * (*v - *vertex_element(l, j));
            point_[j] = *v;
        }
        values_[i] = eval(point_);
    }
    return false;
}

} // namespace

extern "C" void E04CC_CORE(const int *n_, double *x, double *fmin, const double *tol_, const int *iw_, double *w1,
                           double *w2, double *w3, double *w4, double *w5, double *w6, ZekE04FunctSimplex funct,
                           ZekE04AdaptSimplex funct_adapt, ZekE04MonitSimplex monit,
                           ZekE04AdaptMonitSimplex monit_adapt, const int *maxcal_, int *ifail) {
    zek::FailureExit exit("E04CCF", nullptr, ifail);
    const int n = *n_, iw = *iw_, maxcal = *maxcal_;
    const double tol = *tol_;
    if (n < 1 || !(tol >= zek::precision()) || iw != n + 1 || maxcal < 1 || funct == nullptr) {
        exit.fail_with_records(1, 99999, zek::Records{});
        return;
    }
    if (funct_adapt == nullptr) funct_adapt = E04_ADAPT_SIMPLEX;
    if (monit_adapt == nullptr) monit_adapt = E04_ADAPT_MONIT_SIMPLEX;
    Simplex s(n, x, w1, w2, w3, w4, w5, w6, funct, funct_adapt, maxcal);
    int code = s.start();
    const bool built = code == 0;
    if (code == 0) {
        // A simplex can collapse onto a subspace and converge away from any minimum.  Once converged,
        // short steps along the axes from its best vertex test for descent; where one descends the
        // simplex is rebuilt around that vertex.  The run ends when no axis descends or a rebuilt
        // simplex no longer lowers the best value by more than TOL; a check that runs out of calls
        // still ends the run converged.
        double converged_at = HUGE_VAL;
        for (int restarts = 0;;) {
            if (monit != nullptr)
                monit_adapt(monit, s.value(s.best()), s.value(s.worst()), s.sim(), n, n + 1, s.calls());
            if (s.deviation() <= tol) {
                const double f = comparable(s.value(s.best()));
                const bool improved = !(f >= converged_at - tol);
                converged_at = f;
                if (!improved || restarts == kRestarts || !s.descends() || !s.restart()) break;
                ++restarts;
                continue;
            }
            if (s.limit_reached() || s.cycle()) {
                code = converged_at < HUGE_VAL ? 0 : 2;
                break;
            }
        }
    }
    const int b = built ? s.best() : 0;
    for (int j = 0; j < n; ++j) x[j] = *s.vertex_element(b, j);
    *fmin = s.value(b);
    if (!std::isfinite(*fmin)) code = 3;
    if (code == 0) exit.succeed();
    else exit.fail_with_records(code, 99999 - code, zek::Records{});
}

extern "C" void E04CCF(const int *n, double *x, double *fmin, const double *tol, const int *iw, double *w1,
                       double *w2, double *w3, double *w4, double *w5, double *w6, ZekE04FunctSimplex funct,
                       ZekE04MonitSimplex monit, const int *maxcal, int *ifail) {
    E04CC_CORE(n, x, fmin, tol, iw, w1, w2, w3, w4, w5, w6, funct, nullptr, monit, nullptr, maxcal, ifail);
}
