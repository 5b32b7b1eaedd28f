// The steps of the active-set core: workspace layout, input check, crash, infeasibilities, the
// anti-cycling expansion, the ratio test, the row-error check and the iteration loop.
#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>

#include "frame/output.h"
#include "kernels/level1.h"
#include "kernels/level2.h"
#include "kernels/vector_utilities.h"
#include "optimisation/active_set.h"

namespace zek::active_set {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
// An EXPAND FREQUENCY at this value switches the expansion off.
constexpr int kNoExpansion = 9999999;

inline double arow(const Core &c, int row, int col) { return c.a[row + static_cast<std::ptrdiff_t>(col) * c.lda]; }
inline double value_of(const Core &c, int j) { return j < c.n ? c.x[j] : c.ax[j - c.n]; }
inline double weight(const Core &c, int j) { return c.featlu[j] * c.weight_scale; }

// Pricing by reference weights (devex).  The weight of a working constraint approximates the squared
// length of the edge along which its deletion moves, relative to a reference framework that starts as
// the variables' unit rows and the rows of A scaled to unit length; the deletion chosen maximises
// multiplier**2 / weight.  After an exchange of q for r at a vertex, with mu the multipliers of q's row
// in the new working set: weight(i) := max(weight(i), mu(i)**2 weight(q)) and weight(r) :=
// max(mu(r)**2 weight(q), its reference value).
constexpr double kWeightLimit = 1e8;  // beyond this the reference framework starts again

inline double initial_weight(const Core &c, int j) {
    if (j < c.n) return 1.0;
    const double rn = c.anorm[j - c.n];
    return rn > 0.0 ? 1.0 / (rn * rn) : 1.0;
}

void reset_weights(Core &c) {
    for (int j = 0; j < c.n + c.nclin; ++j) c.weights[j] = initial_weight(c, j);
}

void devex_update(Core &c, int q, int r, bool carry_multipliers) {
    const int n = c.n, nf = c.nfree, na = c.nactiv;
    // Q' times the free part of q's row.
    int qpos = -1;
    if (q < n) {
        for (int k = 0; k < nf; ++k)
            if (c.kx[k] == q) qpos = k;
        if (qpos >= 0) dcopy(nf, c.q + qpos, c.ldq, c.w, 1);
        else vector_load(nf, 0.0, c.w, 1);
    } else {
        for (int k = 0; k < nf; ++k) c.crot[k] = arow(c, q - n, c.kx[k]);
        dgemv("T", nf, nf, 1.0, c.q, c.ldq, c.crot, 1, 0.0, c.w, 1);
    }
    double *mu = c.rwork;
    if (na > 0) {
        dcopy(na, c.w + c.nz, 1, mu, -1);
        dtrsv("U", "N", "N", na, c.t, c.ldt, mu, 1);
    }
    // With mu the multipliers of q's row in the new working set, the gradient's multipliers move as
    // lambda(i) += lambda(q) mu(i), lambda(r) = lambda(q) mu(r).
    const double wq = c.qweight, lq = c.qlambda;
    double largest = 0.0;
    const auto update = [&](int i, double m) {
        double &wi = c.weights[i];
        if (i == r) wi = std::max(m * m * wq, initial_weight(c, i));
        else wi = std::max(wi, m * m * wq);
        largest = std::max(largest, wi);
        if (carry_multipliers) c.clamda[i] = i == r ? lq * m : c.clamda[i] + lq * m;
    };
    for (int k = 0; k < na; ++k) update(n + c.kactiv[k], mu[k]);
    for (int f = nf; f < n; ++f) {
        const int j = c.kx[f];
        double m = j == q ? 1.0 : 0.0;
        if (c.nclin > 0) {
            const double *col = c.a + static_cast<std::ptrdiff_t>(j) * c.lda;
            if (q >= n) m = col[q - n];
            for (int k = 0; k < na; ++k) m -= mu[k] * col[c.kactiv[k]];
        }
        update(j, m);
    }
    if (carry_multipliers && q != r) c.clamda[q] = 0.0;
    if (!(largest <= kWeightLimit)) reset_weights(c);
}

// The bound a working constraint of state s holds.
inline double working_bound(const Core &c, int j, int s) { return s == kAtUpper ? c.bu[j] : c.bl[j]; }

void compute_ax(Core &c) {
    if (c.nclin > 0) dgemv("N", c.nclin, c.n, 1.0, c.a, c.lda, c.x, 1, 0.0, c.ax, 1);
}

// The gradient of the weighted sum of infeasibilities into g; returns the sum.
// The side (-1 below, +1 above, 0 neither) on which a variable held at its value violates a bound.
int held_violation(const Core &c, int j) {
    const double v = c.x[j], tol = featol(c, j), bigbnd = c.set.infinite_bound;
    if (c.bl[j] > -bigbnd && v < c.bl[j] - tol) return -1;
    if (c.bu[j] < bigbnd && v > c.bu[j] + tol) return 1;
    return 0;
}

double sum_gradient(Core &c, double *g) {
    vector_load(c.n, 0.0, g, 1);
    for (int j = 0; j < c.n + c.nclin; ++j) {
        const int s = c.istate[j];
        int side = s == kBelowLower ? -1 : s == kAboveUpper ? 1 : 0;
        if (s == kTemporaryFix) side = held_violation(c, j);
        if (side == 0) continue;
        const double w = side * weight(c, j);
        if (j < c.n) g[j] += w;
        else daxpy(c.n, w, c.a + (j - c.n), c.lda, g, 1);
    }
    return c.suminf;
}

// The direction of the core's own linear step: steepest descent on the null space.
bool linear_direction(const Core &c, const double *gz, double gznorm, double gnorm, double *pz) {
    if (c.nz == 0 || !(gznorm > c.set.e80 * std::max(1.0, gnorm))) return false;
    for (int k = 0; k < c.nz; ++k) pz[k] = -gz[k];
    return true;
}

// The working constraint whose multiplier is most clearly of the wrong sign, or -1.  Fills nopt and
// the worst test value.
int choose_deletion(Core &c, double tolmul, bool weighted) {
    int jbest = -1;
    double best = -1.0;
    c.nopt = 0;
    c.min_multiplier = 0.0;
    for (int j = 0; j < c.n + c.nclin; ++j) {
        const int s = c.istate[j];
        if (s < kAtLower || s == kEquality) continue;
        const double v = wrong_sign_value(c, j);
        // The test value: the multiplier of the row scaled to unit length, that is the multiplier times
        // the row norm.  (Over the row norm, a row of large norm would hide a multiplier of the wrong
        // sign that matters to the objective.)
        double test = v;
        if (j >= c.n) {
            const double rn = c.anorm[j - c.n];
            if (!(rn > 0.0)) continue;
            test *= rn;
        }
        if (!(test == test)) continue;
        c.min_multiplier = std::min(c.min_multiplier, -test);
        if (!(test > tolmul)) continue;
        ++c.nopt;
        const double score = weighted ? v * v / c.weights[j] : test * test;
        if (score > best) {
            best = score;
            jbest = j;
        }
    }
    return jbest;
}

// Frees a place among the free variables by fixing, at its value, the free variable that weighs most
// in the null space.  Needs nz >= 1; at a stationary point the new fix carries no multiplier.
void make_room(Core &c, NullSpaceStep &step) {
    // A variable within its bounds is preferred, by a margin that keeps the choice well conditioned.
    int best = 0;
    double bestnorm = -1.0;
    for (int k = 0; k < c.nfree; ++k) {
        double r = dnrm2(c.nz, c.q + k, c.ldq);
        if (c.istate[c.kx[k]] != kNotInWorkingSet) r *= 0.01;
        if (r > bestnorm) {
            bestnorm = r;
            best = k;
        }
    }
    const int j = c.kx[best];
    fix_variable(c, best, kTemporaryFix, &step);
    c.weights[j] = initial_weight(c, j);
}

struct RatioResult {
    bool unbounded = false;
    bool hit = false;   // a constraint blocks before the step limit
    int jadd = -1;
    bool upper = false; // which bound it reaches
    double alfa = 0.0;
};

// E04_RATIO_TEST on the direction p (natural order) with Ap in ap.
RatioResult ratio_test(Core &c, double alfmax, double pnorm, bool firstv) {
    const double bigbnd = c.set.infinite_bound;
    const double tolpiv = c.set.e33 * c.set.e33 * pnorm;
    const int nctotl = c.n + c.nclin;
    const auto direction_of = [&](int j, double &pivot) {
        const double d = j < c.n ? c.p[j] : c.ap[j - c.n];
        pivot = j < c.n ? std::fabs(d) : std::fabs(d) / (1.0 + c.anorm[j - c.n]);
        return d;
    };

    // Pass one: the longest step to the bounds relaxed by the working tolerances.
    double alfa1 = alfmax, bigpiv = 0.0;
    for (int j = 0; j < nctotl; ++j) {
        const int s = c.istate[j];
        if (s > 0) continue;
        double pivot;
        const double d = direction_of(j, pivot);
        if (!(pivot > tolpiv)) continue;
        const double v = value_of(c, j), tol = featol(c, j);
        if (d < 0.0) {
            if (s == kBelowLower) continue;
            if (s == kAboveUpper) bigpiv = std::max(bigpiv, pivot);
            if (c.bl[j] > -bigbnd) alfa1 = std::min(alfa1, std::max(v - c.bl[j] + tol, 0.0) / -d);
        } else {
            if (s == kAboveUpper) continue;
            if (s == kBelowLower) bigpiv = std::max(bigpiv, pivot);
            if (c.bu[j] < bigbnd) alfa1 = std::min(alfa1, std::max(c.bu[j] + tol - v, 0.0) / d);
        }
    }

    // Pass two: among the bounds reached within alfa1, the largest pivot; for violated constraints
    // the bound that makes them feasible.
    int jadd1 = -1, jadd2 = -1;
    bool up1 = false, up2 = false;
    double piv1 = 0.0, alfa_1 = 0.0;
    double alfa_2 = firstv ? alfmax : 0.0;
    for (int j = 0; j < nctotl; ++j) {
        const int s = c.istate[j];
        if (s > 0) continue;
        double pivot;
        const double d = direction_of(j, pivot);
        if (!(pivot > tolpiv)) continue;
        const double v = value_of(c, j);
        const bool violated_toward = (s == kBelowLower && d > 0.0) || (s == kAboveUpper && d < 0.0);
        if (violated_toward) {
            const double bound = s == kBelowLower ? c.bl[j] : c.bu[j];
            const double step = (bound - v) / d;
            if (step <= alfa1) {
                const bool better = firstv ? step < alfa_2 : (pivot >= 0.001 * bigpiv && step > alfa_2);
                if (better) {
                    alfa_2 = step;
                    jadd2 = j;
                    up2 = s == kAboveUpper;
                }
            }
        }
        // The bound ahead that a feasible constraint, or a violated one beyond its near bound, reaches.
        if (d < 0.0 && s != kBelowLower && c.bl[j] > -bigbnd) {
            const double step = (c.bl[j] - v) / d;
            if (step <= alfa1 && pivot > piv1) {
                piv1 = pivot;
                jadd1 = j;
                alfa_1 = step;
                up1 = false;
            }
        } else if (d > 0.0 && s != kAboveUpper && c.bu[j] < bigbnd) {
            const double step = (c.bu[j] - v) / d;
            if (step <= alfa1 && pivot > piv1) {
                piv1 = pivot;
                jadd1 = j;
                alfa_1 = step;
                up1 = true;
            }
        }
    }

    RatioResult r;
    if (jadd2 >= 0) {
        r.jadd = jadd2;
        r.upper = up2;
        r.alfa = alfa_2;
    } else if (jadd1 >= 0) {
        r.jadd = jadd1;
        r.upper = up1;
        r.alfa = alfa_1;
    } else {
        r.alfa = alfmax;
        r.unbounded = true;
        return r;
    }
    const double bound = r.upper ? c.bu[r.jadd] : c.bl[r.jadd];
    if (std::fabs(bound) >= bigbnd) {
        r.unbounded = true;
        return r;
    }
    r.hit = true;
    // The least acceptable step keeps every step positive while the tolerances grow.
    const double dabs = r.jadd < c.n ? std::fabs(c.p[r.jadd]) : std::fabs(c.ap[r.jadd - c.n]);
    const double alfmin = c.expand.tolinc * c.featlu[r.jadd] / dabs;
    if (alfmin > r.alfa) {
        r.alfa = alfmin;
        ++c.expand.ndegen;
    }
    r.alfa = std::max(r.alfa, 0.0);
    return r;
}

// Classifies the final states of the constraints outside the working set against the user's
// tolerances.
void final_states(Core &c) {
    const double bigbnd = c.set.infinite_bound;
    for (int j = 0; j < c.n + c.nclin; ++j) {
        if (c.istate[j] > 0) continue;
        const double v = value_of(c, j);
        int s = kNotInWorkingSet;
        if (c.bl[j] > -bigbnd && v < c.bl[j] - c.featlu[j]) s = kBelowLower;
        else if (c.bu[j] < bigbnd && v > c.bu[j] + c.featlu[j]) s = kAboveUpper;
        c.istate[j] = s;
    }
}

bool hot_state_valid(Core &c) {
    const int n = c.n, nclin = c.nclin;
    const int unitq = c.iwork[0], nfree = c.iwork[1], nactiv = c.iwork[2];
    if (unitq < 0 || unitq > 1) return false;
    if (nfree < 0 || nfree > std::min(n, c.maxfree)) return false;
    if (nactiv < 0 || nactiv > std::min({nfree, c.maxact, nclin})) return false;
    const double bigbnd = c.set.infinite_bound;
    // KX a permutation with the free variables first, states to match.
    double *seen = c.p;
    vector_load(n, 0.0, seen, 1);
    for (int k = 0; k < n; ++k) {
        const int j = c.kx[k];
        if (j < 0 || j >= n || seen[j] != 0.0) return false;
        seen[j] = 1.0;
        const int s = c.istate[j];
        if (k < nfree ? (s > 0 || s < kBelowLower) : (s < kAtLower || s > kTemporaryFix)) return false;
        if ((s == kAtLower && !(c.bl[j] > -bigbnd)) || (s == kAtUpper && !(c.bu[j] < bigbnd)) ||
            (s == kEquality && c.bl[j] != c.bu[j]))
            return false;
    }
    if (nclin > 0) {
        double *in = c.ap;
        vector_load(nclin, 0.0, in, 1);
        for (int k = 0; k < nactiv; ++k) {
            const int row = c.kactiv[k];
            if (row < 0 || row >= nclin || in[row] != 0.0) return false;
            in[row] = 1.0;
        }
        for (int i = 0; i < nclin; ++i) {
            const int j = n + i, s = c.istate[j];
            if (in[i] != 0.0 ? (s < kAtLower || s > kEquality) : (s > 0 || s < kBelowLower)) return false;
            if ((s == kAtLower && !(c.bl[j] > -bigbnd)) || (s == kAtUpper && !(c.bu[j] < bigbnd)) ||
                (s == kEquality && c.bl[j] != c.bu[j]))
                return false;
        }
    }
    c.unitq = unitq != 0;
    c.nfree = nfree;
    c.nactiv = nactiv;
    c.nz = nfree - nactiv;
    for (int j = 0; j < n + nclin; ++j)
        if (c.istate[j] < 0) c.istate[j] = kNotInWorkingSet;
    factor_diagonals(c);
    return true;
}

} // namespace

double wrong_sign_value(const Core &c, int j) {
    const double lam = c.clamda[j];
    switch (c.istate[j]) {
    case kAtLower: return -lam;
    case kAtUpper: return lam;
    case kTemporaryFix: return std::fabs(lam);
    default: return 0.0;
    }
}

const char *state_code(int s) {
    static const char codes[] = "--++FRLLULEQTF";
    static char pair[3];
    if (s < -2 || s > 4) return "  ";
    pair[0] = codes[2 * (s + 2)];
    pair[1] = codes[2 * (s + 2) + 1];
    pair[2] = '\0';
    return pair;
}

const char *word_text(Word w) {
    switch (w) {
    case Word::Running: return "      ";
    case Word::Feasible: return "feasbl";
    case Word::Optimal: return "optiml";
    case Word::Weak: return "weak  ";
    case Word::Unbounded: return "unbndd";
    case Word::Infeasible: return "infeas";
    case Word::RowError: return "rowerr";
    case Word::IterationLimit: return "itnlim";
    case Word::Errors: return "errors";
    case Word::NoProblem: return "noprob";
    case Word::ResetX: return "resetx";
    case Word::DeadPoint: return "deadpt";
    case Word::Rz2Big: return "Rz2big";
    }
    return "      ";
}

Layout work_layout(int n, int nclin, int maxact, int maxfree) {
    Layout l;
    const std::ptrdiff_t N = std::max(n, 0), M = std::max(nclin, 0);
    l.maxact = maxact;
    l.maxfree = maxfree;
    l.kactiv = 3;
    l.kx = l.kactiv + N;
    l.liwork = l.kx + N;
    l.featlu = 0;
    l.weights = l.featlu + N + M;
    l.anorm = l.weights + N + M;
    l.ap = l.anorm + M;
    l.rwork = l.ap + M;
    l.g = l.rwork + M;
    l.p = l.g + N;
    l.w = l.p + N;
    l.crot = l.w + N;
    l.srot = l.crot + N;
    l.t = l.srot + N;
    const std::ptrdiff_t square = static_cast<std::ptrdiff_t>(maxfree) * maxfree;
    l.q = l.t + (M > 0 ? square : 0);
    l.lwork = l.q + square;
    return l;
}

std::ptrdiff_t integer_work_needed(int n) { return 2 * static_cast<std::ptrdiff_t>(std::max(n, 0)) + 3; }

std::ptrdiff_t real_work_needed(int n, int nclin) {
    const int maxact = std::max(1, std::min(n, nclin));
    const int maxfree = nclin < n ? nclin + 1 : n;
    return work_layout(n, nclin, maxact, std::max(maxfree, 1)).lwork;
}

void bind(Core &c, const Layout &l, int *iwork, double *work) {
    c.iwork = iwork;
    c.maxact = l.maxact;
    c.maxfree = l.maxfree;
    c.kactiv = iwork + l.kactiv;
    c.kx = iwork + l.kx;
    c.featlu = work + l.featlu;
    c.weights = work + l.weights;
    c.anorm = work + l.anorm;
    c.ap = work + l.ap;
    c.rwork = work + l.rwork;
    c.g = work + l.g;
    c.p = work + l.p;
    c.w = work + l.w;
    c.crot = work + l.crot;
    c.srot = work + l.srot;
    c.t = work + l.t;
    c.q = work + l.q;
    c.ldt = std::max(l.maxfree, 1);
    c.ldq = std::max(l.maxfree, 1);
}

int check_input(const char *start_word, int n, int nclin, int lda, const double *bl, const double *bu,
                const int *istate, Start start, double bigbnd, Records &records) {
    int errors = 0;
    if (n <= 0) {
        ++errors;
        records.add(" ** On entry, N.le.0:");
        records.add(format("    N = %16ld", static_cast<long>(n)));
    }
    if (nclin < 0) {
        ++errors;
        records.add(" ** On entry, NCLIN.lt.0:");
        records.add(format("    NCLIN = %16ld", static_cast<long>(nclin)));
    }
    if (lda < std::max(1, nclin)) {
        ++errors;
        records.add(" ** On entry, LDA.lt.max(1,NCLIN):");
        records.add(format("    LDA = %16ld  NCLIN = %16ld", static_cast<long>(lda), static_cast<long>(nclin)));
    }
    if (n <= 0 || nclin < 0) return errors;
    const int nctotl = n + nclin;
    const auto name_of = [n](int j) {
        return j < n ? format("%5.5s%3ld", "Varbl", static_cast<long>(j + 1))
                     : format("%5.5s%3ld", "L Con", static_cast<long>(j - n + 1));
    };
    for (int j = 0; j < nctotl; ++j) {
        const double l = bl[j], u = bu[j];
        if (l == u && std::fabs(l) >= bigbnd) {
            const std::string name = name_of(j);
            ++errors;
            records.add(format(" ** On entry, the equal bounds on  %8.8s  are infinite (because", name.c_str()));
            records.add(format("    BL = BU = %16.7G  and  BIGBND = %16.7G)", l, bigbnd));
        } else if (!(l <= u)) {
            const std::string name = name_of(j);
            ++errors;
            records.add(format(" ** On entry, the bounds on  %8.8s  are inconsistent:", name.c_str()));
            records.add(format("    BL = %16.7G  BU = %16.7G", l, u));
        }
    }
    if (start != Start::Cold) {
        for (int j = 0; j < nctotl; ++j) {
            if (istate[j] >= kBelowLower && istate[j] <= kTemporaryFix) continue;
            ++errors;
            records.add(format(" ** On entry with a %4.4s Start, ISTATE(%4ld) is out of range:", start_word,
                               static_cast<long>(j + 1)));
            records.add(format("    ISTATE = %16ld", static_cast<long>(istate[j])));
        }
    }
    return errors;
}

int check_workspace(long liwork, long lwork, long need_iwork, long need_work, Records &records) {
    if (liwork >= need_iwork && lwork >= need_work) return 0;
    records.add(format(" Workspace provided is     IWORK(%8ld),  WORK(%8ld).", liwork, lwork));
    records.add(format(" To solve problem we need  IWORK(%8ld),  WORK(%8ld).", need_iwork, need_work));
    records.add(" ** Not enough workspace to solve problem.");
    return 1;
}

void print_run_end(const std::function<void(const std::string &)> &say, Core &core, long iterations) {
    say("");
    say(format(" Exit from %2.2s problem after %5ld iterations.", core.set.kind, iterations));
    if (core.set.print_level == 1 || core.set.print_level >= 10) print_solution(core);
    say("");
}

void abandon(const std::function<void(const std::string &)> &say, const char *solver, long errors,
             Records &records) {
    say("");
    say(format(" Exit %s - %7ld errors found in the input parameters.  Problem abandoned.", solver, errors));
    records.add(format(" ** %7ld errors found in the input parameters.  Problem abandoned.", errors));
}

void attach(Core &core, int n, int nclin, const double *a, int lda, const double *bl, const double *bu,
            const Settings &set, int *istate, double *x, double *ax, double *clamda) {
    core.n = n;
    core.nclin = nclin;
    core.a = a;
    core.lda = lda;
    core.bl = bl;
    core.bu = bu;
    core.set = set;
    core.istate = istate;
    core.x = x;
    core.ax = ax;
    core.clamda = clamda;
}

int check_data(int n, int nclin, const double *a, int lda, const double *c, const char *c_name, Records &records) {
    int errors = 0;
    if (n <= 0 || nclin < 0 || lda < std::max(1, nclin)) return errors;
    const std::ptrdiff_t ld = lda;
    bool found = false;
    for (int j = 0; j < n && !found; ++j)
        for (int i = 0; i < nclin && !found; ++i) {
            const double v = a[i + j * ld];
            if (std::isfinite(v)) continue;
            found = true;
            ++errors;
            records.add(format(" ** On entry, A(%4ld,%4ld) is not a finite number:", static_cast<long>(i + 1),
                               static_cast<long>(j + 1)));
            records.add(format("    A = %16.7G", v));
        }
    for (int j = 0; c != nullptr && j < n; ++j) {
        if (std::isfinite(c[j])) continue;
        ++errors;
        records.add(format(" ** On entry, %s(%4ld) is not a finite number:", c_name, static_cast<long>(j + 1)));
        records.add(format("    %s = %16.7G", c_name, c[j]));
        break;
    }
    return errors;
}

void initialise(Core &c) {
    const int nctotl = c.n + c.nclin;
    vector_load(nctotl, c.set.feasibility_tolerance, c.featlu, 1);
    double fmax, fmin;
    abs_max_min(nctotl, c.featlu, 1, &fmax, &fmin);
    c.weight_scale = fmax > 0.0 ? 1.0 / fmax : 1.0;
    for (int i = 0; i < c.nclin; ++i) c.anorm[i] = dnrm2(c.n, c.a + i, c.lda);

    Expand &e = c.expand;
    e = Expand{};
    e.tolz = std::pow(c.set.eps, 0.6);
    e.period = std::min(std::max(c.set.expand_frequency, 1), kNoExpansion);
    e.frozen = e.period >= kNoExpansion;
    e.tolinc = e.frozen ? 0.0 : (e.tolx1 - e.tolx0) / e.period;
    e.next = e.frozen ? INT_MAX : e.period;
    c.tolfactor = e.tolx0;
    for (int j = 0; j < nctotl; ++j) c.weights[j] = initial_weight(c, j);
    c.lambda_valid = false;
    c.itn = 0;
}

Start crash(Core &c, Start start) {
    const int n = c.n, nclin = c.nclin;
    const double bigbnd = c.set.infinite_bound;
    if (start == Start::Hot) {
        if (hot_state_valid(c)) return Start::Hot;
        start = Start::Warm;
    }
    const bool cold = start == Start::Cold;
    // Onto the bounds.
    for (int j = 0; j < n; ++j) {
        if (c.bl[j] > -bigbnd && c.x[j] + featol(c, j) < c.bl[j]) c.x[j] = c.bl[j];
        else if (c.bu[j] < bigbnd && c.x[j] - featol(c, j) > c.bu[j]) c.x[j] = c.bu[j];
    }
    // The states to start from.
    for (int j = 0; j < n + nclin; ++j) {
        const double l = c.bl[j], u = c.bu[j];
        int &s = c.istate[j];
        if (cold) {
            s = l == u ? kEquality : kNotInWorkingSet;
            continue;
        }
        if (s < kNotInWorkingSet || s > kEquality) s = kNotInWorkingSet;
        if ((s == kAtLower && l <= -bigbnd) || (s == kAtUpper && u >= bigbnd) || (s == kEquality && l != u) ||
            (l <= -bigbnd && u >= bigbnd))
            s = kNotInWorkingSet;
    }
    // The working set, in constraint order, while there is room.
    int nfree = n, nactiv = 0;
    for (int j = 0; j < n + nclin; ++j) {
        int &s = c.istate[j];
        if (s <= 0) continue;
        if (nactiv == nfree) {
            s = kNotInWorkingSet;
            continue;
        }
        if (j < n) {
            --nfree;
            c.x[j] = s == kAtUpper ? c.bu[j] : c.bl[j];
        } else {
            c.kactiv[nactiv++] = j - n;
        }
    }
    if (cold) {
        // Variables and then rows close to a bound join until the working set is a vertex.
        const double tolact = c.set.crash_tolerance;
        for (int j = n - 1; j >= 0 && nfree > nactiv; --j) {
            if (c.istate[j] != kNotInWorkingSet) continue;
            const double l = c.bl[j], u = c.bu[j], v = c.x[j];
            if (l > -bigbnd && v - l <= (std::fabs(l) + 1.0) * tolact) {
                c.istate[j] = kAtLower;
                c.x[j] = l;
                --nfree;
            } else if (u < bigbnd && u - v <= (std::fabs(u) + 1.0) * tolact) {
                c.istate[j] = kAtUpper;
                c.x[j] = u;
                --nfree;
            }
        }
        compute_ax(c);
        for (int i = nclin - 1; i >= 0 && nfree > nactiv; --i) {
            const int j = n + i;
            if (c.istate[j] != kNotInWorkingSet) continue;
            const double l = c.bl[j], u = c.bu[j], v = c.ax[i];
            if (l > -bigbnd && v - l <= (std::fabs(l) + 1.0) * tolact) {
                c.istate[j] = kAtLower;
                c.kactiv[nactiv++] = i;
            } else if (u < bigbnd && u - v <= (std::fabs(u) + 1.0) * tolact) {
                c.istate[j] = kAtUpper;
                c.kactiv[nactiv++] = i;
            }
        }
    }
    // No more free variables than the factor holds: the rest are held at their values.
    for (int j = n - 1; j >= 0 && nfree > c.maxfree; --j) {
        if (c.istate[j] != kNotInWorkingSet) continue;
        c.istate[j] = kTemporaryFix;
        --nfree;
    }
    // KX: free variables first.
    int front = 0, back = nfree;
    for (int j = 0; j < n; ++j) {
        if (c.istate[j] <= 0) c.kx[front++] = j;
        else c.kx[back++] = j;
    }
    c.nfree = nfree;
    c.nactiv = nactiv;
    factorise(c);
    return start;
}

double restore_working_set(Core &c, int passes) {
    const int n = c.n;
    for (int k = c.nfree; k < n; ++k) {
        const int j = c.kx[k], s = c.istate[j];
        if (s >= kAtLower && s <= kEquality) c.x[j] = working_bound(c, j, s);
    }
    double worst = 0.0;
    for (int pass = 0; pass <= passes; ++pass) {
        compute_ax(c);
        worst = 0.0;
        double largest = 0.0;
        for (int k = 0; k < c.nactiv; ++k) {
            const int i = c.kactiv[k], j = n + i;
            const double b = working_bound(c, j, c.istate[j]);
            const double r = b - c.ax[i];
            c.rwork[k] = r;
            worst = std::max(worst, std::fabs(r) / c.featlu[j]);
            largest = std::max(largest, std::fabs(r) / (1.0 + std::fabs(b)));
        }
        if (pass == passes || c.nactiv == 0 || !(largest > c.set.e80)) break;
        // The least-norm correction of the free variables: W dx = r with dx = Y u, R'u = r.
        dtrsv("U", "T", "N", c.nactiv, c.t, c.ldt, c.rwork, 1);
        dgemv("N", c.nfree, c.nactiv, 1.0, c.q + static_cast<std::ptrdiff_t>(c.nz) * c.ldq, c.ldq, c.rwork, -1, 0.0,
              c.srot, 1);
        for (int k = 0; k < c.nfree; ++k) c.x[c.kx[k]] += c.srot[k];
    }
    return worst;
}

void infeasibilities(Core &c) {
    const double bigbnd = c.set.infinite_bound;
    c.ninf = 0;
    c.suminf = 0.0;
    for (int j = 0; j < c.n + c.nclin; ++j) {
        int &s = c.istate[j];
        if (s == kTemporaryFix) {
            // A variable held at its value counts while it violates a bound, so that the feasibility
            // phase gives it a multiplier and frees it.
            const int side = held_violation(c, j);
            if (side != 0) {
                ++c.ninf;
                c.suminf += weight(c, j) * (side < 0 ? c.bl[j] - c.x[j] : c.x[j] - c.bu[j]);
            }
            continue;
        }
        if (s > 0) continue;
        const double v = value_of(c, j), tol = featol(c, j);
        if (c.bl[j] > -bigbnd && v < c.bl[j] - tol) {
            s = kBelowLower;
            ++c.ninf;
            c.suminf += weight(c, j) * (c.bl[j] - v);
        } else if (c.bu[j] < bigbnd && v > c.bu[j] + tol) {
            s = kAboveUpper;
            ++c.ninf;
            c.suminf += weight(c, j) * (v - c.bu[j]);
        } else {
            s = kNotInWorkingSet;
        }
    }
}

int expand(Core &c, ExpandMode mode) {
    Expand &e = c.expand;
    if (mode == ExpandMode::Optimal) {
        if (c.itn == e.itnfix) return -1;
        int &count = e.resets[c.ninf > 0 ? 0 : 1];
        if (count >= 2) return -1;
        ++count;
    }
    if (!e.frozen) {
        e.period += 10;
        e.tolinc = (e.tolx1 - e.tolx0) / e.period;
        e.next = c.itn + e.period;
    } else {
        e.tolinc = 0.0;
    }
    c.tolfactor = e.tolx0;
    e.itnfix = c.itn;
    int moved = 0;
    for (int j = 0; j < c.n + c.nclin; ++j) {
        const int s = c.istate[j];
        if (s < kAtLower || s > kEquality) continue;
        if (std::fabs(value_of(c, j) - working_bound(c, j, s)) > e.tolz) ++moved;
    }
    if (moved > 0 && c.set.print_level > 0)
        say(c, format(" Itn%6ld --%7ld  variables moved to their bounds.", static_cast<long>(c.itn),
                      static_cast<long>(moved)));
    restore_working_set(c, 2);
    infeasibilities(c);
    return moved;
}

void row_error(Core &c) {
    compute_ax(c);
    int count = 0, worst_j = -1;
    double worst = 0.0;
    for (int j = 0; j < c.n + c.nclin; ++j) {
        const int s = c.istate[j];
        if (s < kAtLower || s > kEquality) continue;
        const double err = std::fabs(value_of(c, j) - working_bound(c, j, s));
        if (err > featol(c, j)) {
            ++count;
            if (err > worst) {
                worst = err;
                worst_j = j;
            }
        }
    }
    if (count == 0) return;
    if (c.set.print_level > 0)
        say(c, format(" XXX  Iterative refinement.  The max violation is %10.2E in constraint%5ld", worst,
                      static_cast<long>(worst_j + 1)));
    restore_working_set(c, 2);
    infeasibilities(c);
}

double LinearStep::objective(const Core &c, double *g) {
    if (cvec_ == nullptr) {
        vector_load(c.n, 0.0, g, 1);
        return 0.0;
    }
    dcopy(c.n, cvec_, 1, g, 1);
    return ddot(c.n, cvec_, 1, c.x, 1);
}

bool LinearStep::direction(const Core &c, const double *gz, double gznorm, double gnorm, double *pz,
                           double *natural) {
    *natural = kInfinity;
    return linear_direction(c, gz, gznorm, gnorm, pz);
}

Word iterate(Core &c, NullSpaceStep &step) {
    const int n = c.n, nclin = c.nclin;
    c.page_lines = 0;
    for (;;) {
        const bool feasible = c.ninf == 0;
        if (feasible && c.set.feasible_point_only) return Word::Feasible;
        c.objective = feasible ? step.objective(c, c.g) : sum_gradient(c, c.g);
        c.gnorm = n > 0 ? std::fabs(c.g[idamax(n, c.g, 1) - 1]) : 0.0;
        project(c, c.g, c.w, c.nz);
        c.gznorm = dnrm2(c.nz, c.w, 1);
        // Multipliers carried from the last vertex serve only for a gradient that stays the same.
        const bool carried = feasible && step.constant_gradient();
        if (!carried) c.lambda_valid = false;
        c.jdel = 0;
        c.del_kind = ' ';
        c.qdel = -1;

        // The direction, after a deletion when the point is stationary on the working set.
        double natural = kInfinity;
        double *pz = c.crot;
        const auto find_direction = [&]() {
            if (c.nz == 0) return false;
            if (feasible) return step.direction(c, c.w, c.gznorm, c.gnorm, pz, &natural);
            natural = kInfinity;
            return linear_direction(c, c.w, c.gznorm, c.gnorm, pz);
        };
        const bool stationary = !find_direction();
        if (const Word stop = step.interrupt(c); stop != Word::Running) return stop;
        if (stationary) {
            const double tolmul = c.set.optimality_tolerance * std::max(1.0, c.gnorm);
            int jdel = -1;
            // The reference weights describe the edges of a linear objective: a curved one (in its own
            // phase) chooses by the test values alone.
            const bool weighted = !feasible || step.constant_gradient();
            if (c.lambda_valid && c.nz == 0) jdel = choose_deletion(c, tolmul, weighted);
            if (jdel < 0) {
                // Afresh, and always before the point is declared optimal.
                multipliers(c, c.g);
                c.lambda_valid = carried && c.nz == 0;
                jdel = choose_deletion(c, tolmul, weighted);
            }
            if (jdel < 0) return feasible ? Word::Optimal : Word::Infeasible;
            const int s = c.istate[jdel];
            c.jdel = jdel + 1;
            c.qdel = jdel;
            c.qweight = c.weights[jdel];
            c.qlambda = c.clamda[jdel];
            c.del_kind = s == kAtLower ? 'L' : s == kAtUpper ? 'U' : s == kEquality ? 'E' : 'F';
            if (jdel < n) {
                if (c.nfree == c.maxfree) {
                    if (c.nz == 0) return feasible ? Word::Optimal : Word::Infeasible;
                    make_room(c, step);
                    c.lambda_valid = false;
                }
                free_variable(c, jdel, &step);
            } else {
                int k = 0;
                while (c.kactiv[k] != jdel - n) ++k;
                delete_general(c, k, &step);
                c.istate[jdel] = kNotInWorkingSet;
            }
            project(c, c.g, c.w, c.nz);
            c.gznorm = dnrm2(c.nz, c.w, 1);
            const bool stuck = !find_direction();
            if (const Word stop = step.interrupt(c); stop != Word::Running) return stop;
            if (stuck) {
                // Nothing to gain along the freed direction: the point stands.
                if (!(c.gznorm > 0.0)) return feasible ? Word::Optimal : Word::Infeasible;
                for (int k = 0; k < c.nz; ++k) pz[k] = -c.w[k];
                natural = kInfinity;
            }
        }

        // p = Z pz on the free variables, zero on the fixed ones; Ap from the free columns.
        double *pf = c.srot;
        dgemv("N", c.nfree, c.nz, 1.0, c.q, c.ldq, pz, 1, 0.0, pf, 1);
        const double pnorm = dnrm2(c.nfree, pf, 1);
        vector_load(n, 0.0, c.p, 1);
        if (nclin > 0) vector_load(nclin, 0.0, c.ap, 1);
        for (int k = 0; k < c.nfree; ++k) {
            const int j = c.kx[k];
            c.p[j] = pf[k];
            if (nclin > 0) daxpy(nclin, pf[k], c.a + static_cast<std::ptrdiff_t>(j) * c.lda, 1, c.ap, 1);
        }
        if (!(pnorm > 0.0)) return feasible ? Word::Optimal : Word::Infeasible;

        const double alfmax = std::min(natural, c.set.infinite_step / pnorm);
        const RatioResult r = ratio_test(c, alfmax, pnorm, false);
        if (r.unbounded && !(natural < kInfinity)) return Word::Unbounded;
        const double alfa = r.unbounded ? natural : r.alfa;

        daxpy(n, alfa, c.p, 1, c.x, 1);
        if (nclin > 0) daxpy(nclin, alfa, c.ap, 1, c.ax, 1);
        c.tolfactor += c.expand.tolinc;
        c.step = alfa;
        c.jadd = 0;
        c.add_kind = ' ';
        if (r.hit) {
            const int j = r.jadd;
            const int state = c.bl[j] == c.bu[j] ? kEquality : r.upper ? kAtUpper : kAtLower;
            bool added = true;
            if (j < n) {
                int pos = 0;
                while (c.kx[pos] != j) ++pos;
                fix_variable(c, pos, state, &step);
            } else {
                added = add_general(c, j - n, &step, 0.0);
                if (added) c.istate[j] = state;
            }
            if (added) {
                if (c.qdel >= 0 && c.nz == 0) {
                    devex_update(c, c.qdel, j, c.lambda_valid);
                } else {
                    c.weights[j] = initial_weight(c, j);
                    c.lambda_valid = false;
                }
                c.jadd = j + 1;
                c.add_kind = state == kEquality ? 'E' : state == kAtUpper ? 'U' : 'L';
                if (c.dtmin > 0.0 && c.dtmax / c.dtmin > c.set.condition_limit && !c.warned_condition &&
                    c.set.print_level > 0) {
                    c.warned_condition = true;
                    say(c, format(" XXX  Serious ill-conditioning in the working set after adding constraint %5ld",
                                  static_cast<long>(j + 1)));
                    say(c, " XXX  Overflow may occur in subsequent iterations.");
                }
            }
        }
        if (!r.hit || c.jadd == 0) c.lambda_valid = false;
        ++c.itn;
        infeasibilities(c);
        if (c.ninf > 0 || c.itn % std::max(c.set.check_frequency, 1) == 0) c.lambda_valid = false;
        if (c.set.print_level >= 5 || c.set.monitor_unit >= 0) {
            c.objective = c.ninf > 0 ? c.suminf : c.set.feasible_point_only ? 0.0 : step.objective(c, c.g);
            print_iteration(c);
        }
        if (c.set.check_frequency > 0 && c.itn % c.set.check_frequency == 0) row_error(c);
        if (c.itn >= c.expand.next) {
            const int ninf0 = c.ninf;
            expand(c, ExpandMode::EndOfCycle);
            if (ninf0 == 0 && c.ninf > 0) return Word::ResetX;
        }
        if (c.itn >= c.set.iteration_limit) return Word::IterationLimit;
    }
}

Word solve(Core &c, NullSpaceStep &step, Start start) {
    initialise(c);
    if (c.nclin > 0) vector_load(c.nclin, 0.0, c.ax, 1);
    crash(c, start);
    const double err = restore_working_set(c, 3);
    infeasibilities(c);
    Word word = Word::Running;
    if (!(err <= 1.0)) {
        word = Word::RowError;
    } else {
        // Each pass ends in a final word, after which at most a few resets send it round again.
        for (int guard = 0; guard < 16; ++guard) {
            word = iterate(c, step);
            if (word == Word::ResetX) continue;
            if (word != Word::Optimal && word != Word::Infeasible && word != Word::Feasible) break;
            const int ninf0 = c.ninf;
            const double sum0 = c.suminf;
            const int moved = expand(c, ExpandMode::Optimal);
            if (moved < 0) break;
            if (moved == 0 && c.ninf == ninf0 && c.suminf == sum0) break;
            if (c.itn >= c.set.iteration_limit) {
                word = Word::IterationLimit;
                break;
            }
        }
    }

    // Multipliers at the final point, for the objective when feasible, else for the sum.
    compute_ax(c);
    const bool feasible = c.ninf == 0;
    if (feasible && c.set.feasible_point_only) {
        vector_load(c.n, 0.0, c.g, 1);
        c.objective = 0.0;
    } else {
        c.objective = feasible ? step.objective(c, c.g) : sum_gradient(c, c.g);
    }
    multipliers(c, c.g);
    final_states(c);

    if (word == Word::Optimal) {
        bool fixed_temporarily = false;
        for (int j = 0; j < c.n; ++j) fixed_temporarily = fixed_temporarily || c.istate[j] == kTemporaryFix;
        if ((c.nz > 0 && !step.unique_on_null_space(c)) || fixed_temporarily) word = Word::Weak;
    }
    if (word == Word::Unbounded && c.ninf > 0) word = Word::Infeasible;
    c.iwork[0] = c.unitq ? 1 : 0;
    c.iwork[1] = c.nfree;
    c.iwork[2] = c.nactiv;
    return word;
}

} // namespace zek::active_set
