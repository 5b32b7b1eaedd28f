// E04CCF: unconstrained minimum by the simplex method, function values only.
//
// The start simplex is built one axis at a time from a parabola through the current point and its two
// neighbours at unit offsets: its step, forced in magnitude into [0.1, 5], becomes the edge of the
// simplex along that axis.  Then reflection (coefficient 1), expansion (2), contraction (0.5) and
// shrink toward the best vertex (0.5), until the root mean square deviation of the vertex values is at
// most TOL.  A converged simplex is then tested for descent from its best vertex: steps of 1e-3 of
// each start edge either way along the axes, then one step to the minimiser of the parabola through
// the axis whose three values predict the largest fall, then the steps along two axes at once that
// complete a quadratic model around the vertex and up to six points along the model's Newton step;
// the same again with steps of 1e-5 (at most 2(N^2 + N + 7) calls).  Where a point along the model's
// step lands lower by more than TOL the test is made again from there at once; where another point
// lower by more than TOL is found, the simplex is rebuilt around it with a tenth of the start's edges
// and runs on.  Convergence is reported only when the test finds no such point; a test that does not
// fit in the calls left ends the run with IFAIL 2, the best vertex returned.  Values that are not
// finite rank above every finite value.
#include <algorithm>
#include <cmath>
#include <new>
#include <vector>

#include "frame/ifail.h"
#include "frame/machine.h"
#include "kernels/modified_cholesky.h"
#include "optimisation/minimiser_support.h"

namespace {

using zek::mini::comparable;

// What the descent test of a converged simplex found: nothing lower by more than TOL, a lower point
// around which the simplex is to be rebuilt, or a lower point to be tested again at once.
enum class Descent { None, Rebuild, Retest };

constexpr double kReflect = 1.0, kExpand = 2.0, kContract = 0.5, kShrink = 0.5;
constexpr double kMinEdge = 0.1, kMaxEdge = 5.0;
constexpr double kAxisLimit = 5.0;
constexpr double kRestartEdge = 0.1;
// Probe lengths, as fractions of the start's edges, of the descent test of a converged simplex.
constexpr double kProbes[] = {1e-3, 1e-5};
// Most points tried along the quadratic model's step in one probe.
constexpr int kLineTrials = 6;

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
    // Whether the best vertex is not a minimum: probes of each length of kProbes.  A lower point
    // found replaces the best vertex.
    Descent descends(double tol);
    // Steps of SCALE times the start's edge either way along each axis, then one step to the
    // minimiser of the parabola through the axis whose parabola falls most, then the quadratic
    // model's step (probe_calls() at most).
    Descent probe(double scale, double tol);
    // The mixed differences of the quadratic model around vertex B and the points along its step.
    Descent model_step(int b, double scale, double below);
    // Most calls of one probe: 2N + 1 along the axes, N(N-1) mixed, kLineTrials along the step.
    std::ptrdiff_t probe_calls() const {
        const std::ptrdiff_t n = n_;
        return 2 * n + 1 + (n > 1 ? n * (n - 1) + kLineTrials : 0);
    }
    // Whether the calls left allow the descent test and a rebuild after it, and the model's storage
    // can be had (the test is not made without it).
    bool can_test();
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
    // The probes' values along the axes (N forward, N backward), then the model's strict lower
    // triangle by rows.
    std::vector<double> model_;
};

bool Simplex::can_test() {
    const std::ptrdiff_t kinds = sizeof kProbes / sizeof kProbes[0];
    if (calls_ + kinds * probe_calls() + n_ > maxcal_) return false;
    if (!model_.empty()) return true;
    try {
        model_.resize(2 * static_cast<std::size_t>(n_) + static_cast<std::size_t>(n_) * (n_ - 1) / 2);
    } catch (const std::bad_alloc &) {
        return false;
    }
    return true;
}

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

Descent Simplex::descends(double tol) {
    for (double scale : kProbes) {
        const Descent d = probe(scale, tol);
        if (d != Descent::None) return d;
    }
    return Descent::None;
}

Descent Simplex::probe(double scale, double tol) {
    const int b = best();
    const double fb = comparable(values_[b]), below = fb - tol;
    // A probe that lands lower settles the question.  Otherwise each axis's three values give a
    // parabola; the axis whose parabola predicts the largest fall is tried at its minimiser.  A
    // probe longer than the width of a narrow valley across the axes rises on both sides though the
    // slope is far from zero (Biggs' exponential fit from its standard start stops at f = 0.18 with
    // a gradient of 0.07 that way), and the parabola sees through it as long as the third
    // derivative does not swamp the slope over the probe: hence a second, shorter probe.
    // In units of the probe along each axis, G holds the differenced slopes and HDIAG the curvatures.
    double *g = centroid_, *hdiag = trial_, *fplus = model_.data(), *fminus = fplus + n_;
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
                return Descent::Rebuild;
            }
        }
        const double slope = 0.5 * (f[1] - f[0]), curvature = f[1] - 2.0 * fb + f[0];
        g[k] = slope;
        hdiag[k] = curvature;
        fplus[k] = f[1];
        fminus[k] = f[0];
        if (!(curvature > 0.0) || !std::isfinite(curvature)) continue;
        const double fall = 0.5 * slope * slope / curvature;
        if (fall > gain) {
            gain = fall;
            move = -slope / curvature * h;
            axis = k;
        }
    }
    if (axis >= 0) {
        row_to(b, point_);
        point_[axis] += move;
        const double v = eval(point_);
        if (comparable(v) < below) {
            row_from(b, point_, v);
            return Descent::Rebuild;
        }
    }
    return n_ > 1 ? model_step(b, scale, below) : Descent::None;
}

Descent Simplex::model_step(int b, double scale, double below) {
    // Where a valley runs between the axes the fall along each axis alone can stay below TOL while
    // the function still descends across them.  The mixed differences complete a quadratic model
    // around the best vertex, and the model's Newton step, made downhill by a modified Cholesky
    // factorisation where the model is not convex, follows the valley: its predicted fall
    // 0.5 g'B^-1 g is the fall along the best direction, which any single axis can understate by the
    // condition of the Hessian.  Probes along the simplex's own edges would not do: a collapsed
    // simplex no longer spans the valley's direction.  Each mixed difference takes the points
    // +(h_k, h_l) and -(h_k, h_l), central and so exact for cubics: the one-sided form's error,
    // h times the third derivative, swamped the small curvatures of the valleys it is meant for.
    const double fb = comparable(values_[b]);
    double *g = centroid_, *hdiag = trial_, *step = trial2_, *fplus = model_.data(), *fminus = fplus + n_;
    double *hlower = model_.data() + 2 * n_;
    if (!zek::mini::all_finite(n_, g) || !zek::mini::all_finite(n_, hdiag)) return Descent::None;
    for (int k = 1; k < n_; ++k)
        for (int l = 0; l < k; ++l) {
            double f[2];
            for (int side = 0; side < 2; ++side) {
                const double sign = side == 0 ? 1.0 : -1.0;
                row_to(b, point_);
                point_[k] += sign * scale * x_[k];
                point_[l] += sign * scale * x_[l];
                const double v = eval(point_);
                f[side] = comparable(v);
                if (f[side] < below) {
                    row_from(b, point_, v);
                    return Descent::Rebuild;
                }
            }
            const double mixed = 0.5 * (f[0] + f[1] - fplus[k] - fplus[l] - fminus[k] - fminus[l]) + fb;
            if (!std::isfinite(mixed)) return Descent::None;
            hlower[static_cast<std::ptrdiff_t>(k) * (k - 1) / 2 + l] = mixed;
        }
    zek::modified_cholesky(n_, zek::precision(), hlower, hdiag);
    // Solve L D L' u = -g.
    for (int i = 0; i < n_; ++i) {
        double v = -g[i];
        const double *li = hlower + static_cast<std::ptrdiff_t>(i) * (i - 1) / 2;
        for (int k = 0; k < i; ++k) v -= li[k] * step[k];
        step[i] = v;
    }
    for (int i = 0; i < n_; ++i) step[i] /= hdiag[i];
    for (int i = n_ - 1; i >= 0; --i) {
        double v = step[i];
        for (int k = i + 1; k < n_; ++k) v -= hlower[static_cast<std::ptrdiff_t>(k) * (k - 1) / 2 + i] * step[k];
        step[i] = v;
    }
    // The model's fall is no larger than TOL: no descent worth a rebuild is in sight at this scale.
    const double predicted = -0.5 * zek::mini::dot(n_, g, step);
    if (!(predicted > fb - below)) return Descent::None;
    // The step is in units of the probe; it is kept within the start's edges, the scale on which
    // the simplex itself moves, since the model describes the function only near the best vertex.
    const double length = zek::mini::norm2(n_, step);
    if (!std::isfinite(length)) return Descent::None;
    double t = std::min(1.0, 1.0 / (scale * length));
    // Along the step: shorter by tenths while no point is lower by TOL (the third derivative can
    // make the full step overshoot), then longer by doubling while the values keep falling.
    double *base = fplus;  // the best vertex; the probes' values are no longer needed
    row_to(b, base);
    double lowest = below;
    bool found = false;
    for (int trial = 0; trial < kLineTrials; ++trial) {
        for (int j = 0; j < n_; ++j) point_[j] = base[j] + t * step[j] * scale * x_[j];
        const double v = eval(point_);
        if (comparable(v) < lowest) {
            row_from(b, point_, v);
            lowest = comparable(v);
            found = true;
            t *= 2.0;
        } else if (found) {
            break;
        } else {
            t *= 0.1;
        }
    }
    // A point found along the model's step is tested again at once, a damped Newton iteration: in an
    // ill-conditioned valley that gains far more per call than a rebuilt simplex, which has to learn
    // the valley's direction again (Watson's fit in nine variables went from 1.426e-6 to 1.39987e-6
    // within the same calls, the minimum being 1.39976e-6).
    return found ? Descent::Retest : Descent::None;
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
        // the axes and by a quadratic model; where the test finds a point lower by more than TOL it is
        // tested again from there (along the model's step) or the simplex is rebuilt there, so
        // either ends with the calls at the latest.  The run is converged only when the test finds no
        // descent: a test or rebuild that does not fit in the calls left ends the run at the limit,
        // since the point has not been shown to be a minimum.
        for (;;) {
            if (monit != nullptr)
                monit_adapt(monit, s.value(s.best()), s.value(s.worst()), s.sim(), n, n + 1, s.calls());
            if (s.deviation() <= tol) {
                Descent d = Descent::Retest;
                while (d == Descent::Retest && s.can_test()) d = s.descends(tol);
                if (d == Descent::None) break;
                if (d == Descent::Retest) {
                    code = 2;
                    break;
                }
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
