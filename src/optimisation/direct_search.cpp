// E04CCF: unconstrained minimum by the simplex method, function values only.
//
// The start simplex is built one axis at a time from a parabola through the current point and its two
// neighbours at unit offsets: its step, forced in magnitude into [0.1, 5], becomes the edge of the
// simplex along that axis.  Then reflection (coefficient 1), expansion (2), contraction (0.5) and
// shrink toward the best vertex (0.5), until the root mean square deviation of the vertex values is at
// most TOL.  A converged simplex is then tested for descent from its best vertex: steps of 1e-3 of
// each start edge either way along the axes, then one step to the minimiser of the parabola through
// the axis whose three values predict the largest fall; the same again with steps of 1e-5 (at most
// 2(2N + 1) calls).  Where a point lower by more than TOL is found, the simplex is rebuilt around it
// with a tenth of the start's edges and runs on.  Convergence is reported only when the test finds
// no such point; a test that does not fit in the calls left ends the run with IFAIL 2, the best
// vertex returned.  Values that are not finite rank above every finite value.
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
constexpr double kRestartEdge = 0.1;
// Probe lengths, as fractions of the start's edges, of the descent test of a converged simplex.
constexpr double kProbes[] = {1e-3, 1e-5};

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
    // Whether the best vertex is not a minimum along some axis: probes of each length of kProbes
    // (at most 2(2N + 1) calls, leaving the calls for a restart).  A lower point found replaces the
    // best vertex.
    bool descends(double tol);
    // Steps of SCALE times the start's edge either way along each axis, then one step to the
    // minimiser of the parabola through the axis whose parabola falls most (2N + 1 calls at most).
    bool probe(double scale, double tol);
    // Whether the calls left allow the descent test and a rebuild after it.
    bool can_test() const { return calls_ + 5 * n_ + 2 <= maxcal_; }
    // A fresh simplex around the best vertex with a tenth of the start's edges (N calls).
    void restart();
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

bool Simplex::descends(double tol) {
    for (double scale : kProbes)
        if (probe(scale, tol)) return true;
    return false;
}

bool Simplex::probe(double scale, double tol) {
    const int b = best();
    const double fb = comparable(values_[b]), below = fb - tol;
    // A probe that lands lower settles the question.  Otherwise each axis's three values give a
    // parabola; the axis whose parabola predicts the largest fall is tried at its minimiser.  A
    // probe longer than the width of a narrow valley across the axes rises on both sides though the
    // slope is far from zero (Biggs' exponential fit from its standard start stops at f = 0.18 with
    // a gradient of 0.07 that way), and the parabola sees through it as long as the third
    // derivative does not swamp the slope over the probe: hence a second, shorter probe.
    double gain = 0.0, move = 0.0;
    int axis = -1;
    for (int k = 0; k < n_; ++k) {
        const double h = scale * x_[k];
        double f[2];
        for (int side = 0; side < 2; ++side) {
            row_to(b, point_);
            point_[k] += side == 0 ? -h : h;
            const double v = eval(point_);
            f[side] = comparable(v);
            if (f[side] < below) {
                row_from(b, point_, v);
                return true;
            }
        }
        const double slope = 0.5 * (f[1] - f[0]), curvature = f[1] - 2.0 * fb + f[0];
        if (!(curvature > 0.0) || !std::isfinite(curvature)) continue;
        const double fall = 0.5 * slope * slope / curvature;
        if (fall > gain) {
            gain = fall;
            move = -slope / curvature * h;
            axis = k;
        }
    }
    if (axis < 0) return false;
    row_to(b, point_);
    point_[axis] += move;
    const double v = eval(point_);
    if (!(comparable(v) < below)) return false;
    row_from(b, point_, v);
    return true;
}

void Simplex::restart() {
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
        // A simplex can collapse onto a subspace, or into a valley narrower than its edges, and
        // converge away from any minimum.  Once converged, the best vertex is tested for descent along
        // the axes; where one descends by more than TOL the simplex is rebuilt there and runs on, so
        // the rebuilds end with the calls at the latest.  The run is converged only when no axis
        // descends: a test or rebuild that does not fit in the calls left ends the run at the limit,
        // since the point has not been shown to be a minimum.
        for (;;) {
            if (monit != nullptr)
                monit_adapt(monit, s.value(s.best()), s.value(s.worst()), s.sim(), n, n + 1, s.calls());
            if (s.deviation() <= tol) {
                if (!s.can_test()) {
                    code = 2;
                    break;
                }
                if (!s.descends(tol)) break;
                s.restart();
                continue;
            }
            if (s.limit_reached() || s.cycle()) {
                code = 2;
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
