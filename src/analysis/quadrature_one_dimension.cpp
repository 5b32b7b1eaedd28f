// One-dimensional adaptive quadrature with extrapolation: the 21-point Kronrod rule on each piece,
// bisection of the piece with the largest error, and the epsilon algorithm over the sequence of sums
// whenever the small pieces near a difficult point dominate.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "../frame/machine.h"
#include "../frame/raise.h"
#include "zek2/d01.h"
#include "zek2/frame.h"
#include "zek2/m01.h"

namespace {

// Abscissae of the 21-point Kronrod rule on [-1, 1] (non-negative half, descending; the odd positions
// are the nodes of the 10-point Gauss rule), its weights, and the Gauss weights.
constexpr double kXgk[11] = {0.995657163025808080735527280689003, 0.973906528517171720077964012084452,
                             0.930157491355708226001207180059508, 0.865063366688984510732096688423493,
                             0.780817726586416897063717578345042, 0.679409568299024406234327365114874,
                             0.562757134668604683339000099272694, 0.433395394129247190799265943165784,
                             0.294392862701460198131126603103866, 0.148874338981631210884826001129720,
                             0.0};
constexpr double kWgk[11] = {0.011694638867371874278064396062192, 0.032558162307964727478818972459390,
                             0.054755896574351996031381300244580, 0.075039674810919952767043140916190,
                             0.093125454583697605535065465083366, 0.109387158802297641899210590325805,
                             0.123491976262065851077208814446802, 0.134709217311473325928054001771707,
                             0.142775938577060080797094273138717, 0.147739104901338491374841515972068,
                             0.149445554002916905664936468389821};
constexpr double kWg[5] = {0.066671344308688137593568809893332, 0.149451349150580593145776339657697,
                           0.219086362515982043995534934228163, 0.269266719309996355091226921569469,
                           0.295524224714752870173892994651338};

constexpr int kTableRoom = 52;  // epsilon table: 50 entries and two of scratch
constexpr int kTableLimit = 50;

int ZEK_CALLBACK compare_doubles(const void *x, const void *y) {
    const double u = *static_cast<const double *>(x), v = *static_cast<const double *>(y);
    return (u > v) - (u < v);
}

} // namespace

extern "C" void D01SJ_RULE(ZekQuadFunction f, void *user, double a, double b, double *result, double *abserr,
                           double *resabs, double *resasc, int *nonfinite) {
    const double epmach = zek::precision();
    const double uflow = zek::safe_minimum();
    const double centr = 0.5 * (a + b);
    const double hlgth = 0.5 * (b - a);
    const double dhlgth = std::fabs(hlgth);
    double fv1[10], fv2[10];
    const double fc = f(centr, user);
    double resg = 0.0;
    double resk = kWgk[10] * fc;
    double rabs = std::fabs(resk);
    for (int j = 0; j < 5; ++j) {  // Gauss nodes, shared by both rules
        const int jtw = 2 * j + 1;
        const double absc = hlgth * kXgk[jtw];
        const double f1 = f(centr - absc, user), f2 = f(centr + absc, user);
        fv1[jtw] = f1;
        fv2[jtw] = f2;
        resg += kWg[j] * (f1 + f2);
        resk += kWgk[jtw] * (f1 + f2);
        rabs += kWgk[jtw] * (std::fabs(f1) + std::fabs(f2));
    }
    for (int j = 0; j < 5; ++j) {  // Kronrod nodes only
        const int jtwm1 = 2 * j;
        const double absc = hlgth * kXgk[jtwm1];
        const double f1 = f(centr - absc, user), f2 = f(centr + absc, user);
        fv1[jtwm1] = f1;
        fv2[jtwm1] = f2;
        resk += kWgk[jtwm1] * (f1 + f2);
        rabs += kWgk[jtwm1] * (std::fabs(f1) + std::fabs(f2));
    }
    const double reskh = 0.5 * resk;
    double rasc = kWgk[10] * std::fabs(fc - reskh);
    for (int j = 0; j < 10; ++j) rasc += kWgk[j] * (std::fabs(fv1[j] - reskh) + std::fabs(fv2[j] - reskh));
    *result = resk * hlgth;
    rabs *= dhlgth;
    rasc *= dhlgth;
    double err = std::fabs((resk - resg) * hlgth);
    if (rasc != 0.0 && err != 0.0) err = rasc * std::min(1.0, std::pow(200.0 * err / rasc, 1.5));
    if (rabs > uflow / (50.0 * epmach)) err = std::max(epmach * 50.0 * rabs, err);
    *abserr = err;
    *resabs = rabs;
    *resasc = rasc;
    if (!std::isfinite(*result) || !std::isfinite(rabs) || !std::isfinite(err)) *nonfinite = 1;
}

extern "C" void D01SJ_ORDER(int limit, int last, int *maxerr, double *ermax, const double elist[], int iord[],
                            int *nrmax) {
    // One-based views, as the bookkeeping counts pieces from 1.
    const double *el = elist - 1;
    int *io = iord - 1;
    if (last <= 2) {
        io[1] = 1;
        io[2] = 2;
    } else {
        const double errmax = el[*maxerr];
        // During extrapolation the order above nrmax may have been disturbed: move the bisected piece up.
        for (int i = 1, ido = *nrmax - 1; i <= ido; ++i) {
            const int isucc = io[*nrmax - 1];
            if (errmax <= el[isucc]) break;
            io[*nrmax] = isucc;
            --*nrmax;
        }
        // Only the first jupbn entries need to be kept in order: beyond them no piece can be chosen again
        // before the limit.
        const int jupbn = last > limit / 2 + 2 ? limit + 3 - last : last;
        const double errmin = el[last];
        const int jbnd = jupbn - 1;
        const int ibeg = *nrmax + 1;
        int i = ibeg;
        bool placed = false;
        for (; i <= jbnd; ++i) {
            const int isucc = io[i];
            if (errmax >= el[isucc]) {
                placed = true;
                break;
            }
            io[i - 1] = isucc;
        }
        if (!placed) {
            io[jbnd] = *maxerr;
            io[jupbn] = last;
        } else {
            io[i - 1] = *maxerr;
            int k = jbnd;
            bool inserted = false;
            for (int j = i; j <= jbnd; ++j) {
                const int isucc = io[k];
                if (errmin < el[isucc]) {
                    io[k + 1] = last;
                    inserted = true;
                    break;
                }
                io[k + 1] = isucc;
                --k;
            }
            if (!inserted) io[i] = last;
        }
    }
    *maxerr = io[*nrmax];
    *ermax = el[*maxerr];
}

extern "C" void D01SJ_EXTRAPOLATE(int *n, double epstab[], double *result, double *abserr, double res3la[],
                                  int *nres) {
    const double epmach = zek::precision();
    const double oflow = zek::largest();
    double *e = epstab - 1;  // one-based
    ++*nres;
    *abserr = oflow;
    *result = e[*n];
    if (*n < 3) {
        *abserr = std::max(*abserr, 5.0 * epmach * std::fabs(*result));
        return;
    }
    e[*n + 2] = e[*n];
    const int newelm = (*n - 1) / 2;
    e[*n] = oflow;
    const int num = *n;
    int k1 = *n;
    bool converged = false;
    for (int i = 1; i <= newelm; ++i) {
        const int k2 = k1 - 1, k3 = k1 - 2;
        double res = e[k1 + 2];
        const double e0 = e[k3], e1 = e[k2], e2 = res;
        const double e1abs = std::fabs(e1);
        const double delta2 = e2 - e1, err2 = std::fabs(delta2);
        const double tol2 = std::max(std::fabs(e2), e1abs) * epmach;
        const double delta3 = e1 - e0, err3 = std::fabs(delta3);
        const double tol3 = std::max(e1abs, std::fabs(e0)) * epmach;
        if (err2 <= tol2 && err3 <= tol3) {
            // e0, e1 and e2 agree to machine accuracy: the table has converged.
            *result = res;
            *abserr = err2 + err3;
            converged = true;
            break;
        }
        const double e3 = e[k1];
        e[k1] = e1;
        const double delta1 = e1 - e3, err1 = std::fabs(delta1);
        const double tol1 = std::max(e1abs, std::fabs(e3)) * epmach;
        double ss = 0.0;
        bool irregular = err1 <= tol1 || err2 <= tol2 || err3 <= tol3;
        if (!irregular) {
            ss = 1.0 / delta1 + 1.0 / delta2 - 1.0 / delta3;
            irregular = !(std::fabs(ss * e1) > 1.0e-4);
        }
        if (irregular) {
            // Two elements are very close: the table is cut to the part before them.
            *n = i + i - 1;
            break;
        }
        res = e1 + 1.0 / ss;
        e[k1] = res;
        k1 -= 2;
        const double error = err2 + std::fabs(res - e2) + err3;
        if (error > *abserr) continue;
        *abserr = error;
        *result = res;
    }
    if (!converged) {
        if (*n == kTableLimit) *n = 2 * (kTableLimit / 2) - 1;
        int ib = (num % 2 == 0) ? 2 : 1;
        const int ie = newelm + 1;
        for (int i = 1; i <= ie; ++i) {
            e[ib] = e[ib + 2];
            ib += 2;
        }
        if (num != *n) {
            int indx = num - *n + 1;
            for (int i = 1; i <= *n; ++i) e[i] = e[indx++];
        }
        if (*nres < 4) {
            res3la[*nres - 1] = *result;
            *abserr = oflow;
        } else {
            *abserr = std::fabs(*result - res3la[2]) + std::fabs(*result - res3la[1]) + std::fabs(*result - res3la[0]);
            res3la[0] = res3la[1];
            res3la[1] = res3la[2];
            res3la[2] = *result;
        }
    }
    *abserr = std::max(*abserr, 5.0 * epmach * std::fabs(*result));
}

extern "C" void D01SJ_WORKER(ZekQuadFunction f, void *user, double a, double b, double epsabs, double epsrel,
                             int limit, double *result, double *abserr, int *neval, int *ier, double alist[],
                             double blist[], double rlist[], double elist[], int iord[], int *last) {
    const double epmach = zek::precision();
    const double uflow = zek::safe_minimum();
    const double oflow = 1.0 / uflow;
    double *al = alist - 1, *bl = blist - 1, *rl = rlist - 1, *el = elist - 1;
    int *io = iord - 1;
    *ier = 0;
    *neval = 0;
    *last = 0;
    *result = 0.0;
    *abserr = 0.0;
    al[1] = a;
    bl[1] = b;
    rl[1] = 0.0;
    el[1] = 0.0;
    if (limit < 1 || (epsabs <= 0.0 && epsrel < std::max(50.0 * epmach, 0.5e-28))) {
        *ier = 6;
        return;
    }
    int nonfinite = 0;
    int ierro = 0;
    double defabs = 0.0, resabs = 0.0;
    D01SJ_RULE(f, user, a, b, result, abserr, &defabs, &resabs, &nonfinite);
    double dres = std::fabs(*result);
    double errbnd = std::max(epsabs, epsrel * dres);
    *last = 1;
    rl[1] = *result;
    el[1] = *abserr;
    io[1] = 1;
    if (nonfinite) {
        *result = std::nan("");
        *ier = 3;
        *neval = 21;
        return;
    }
    if (*abserr <= 100.0 * epmach * defabs && *abserr > errbnd) *ier = 2;
    if (limit == 1) *ier = 1;
    if (*ier != 0 || (*abserr <= errbnd && *abserr != resabs) || *abserr == 0.0) {
        *neval = 42 * *last - 21;
        return;
    }

    double rlist2[kTableRoom + 1];
    double res3la[3] = {0.0, 0.0, 0.0};
    rlist2[0] = *result;
    double errmax = *abserr;
    int maxerr = 1;
    double area = *result;
    double errsum = *abserr;
    *abserr = oflow;
    int nrmax = 1, nres = 0, numrl2 = 2, ktmin = 0;
    bool extrap = false, noext = false;
    int iroff1 = 0, iroff2 = 0, iroff3 = 0;
    const int ksgn = dres >= (1.0 - 50.0 * epmach) * defabs ? 1 : -1;
    double small = 0.0, erlarg = 0.0, ertest = 0.0, correc = 0.0;
    bool sum_pieces = false;  // the result is the sum of the local integrals, not the extrapolated value

    for (*last = 2; *last <= limit; ++*last) {
        const int lst = *last;
        // Bisect the piece with the largest error.
        const double a1 = al[maxerr];
        const double b1 = 0.5 * (al[maxerr] + bl[maxerr]);
        const double a2 = b1, b2 = bl[maxerr];
        const double erlast = errmax;
        double area1, error1, defab1, area2, error2, defab2;
        D01SJ_RULE(f, user, a1, b1, &area1, &error1, &resabs, &defab1, &nonfinite);
        D01SJ_RULE(f, user, a2, b2, &area2, &error2, &resabs, &defab2, &nonfinite);
        if (nonfinite) {
            *result = std::nan("");
            *abserr = oflow;
            *ier = 3;
            *neval = 42 * lst - 21;
            return;
        }
        // Improve the previous approximations to the integral and its error, and test for accuracy.
        const double area12 = area1 + area2;
        const double erro12 = error1 + error2;
        errsum = errsum + erro12 - errmax;
        area = area + area12 - rl[maxerr];
        if (defab1 != error1 && defab2 != error2) {
            if (std::fabs(rl[maxerr] - area12) <= 1.0e-5 * std::fabs(area12) && erro12 >= 0.99 * errmax) {
                if (extrap)
                    ++iroff2;
                else
                    ++iroff1;
            }
            if (lst > 10 && erro12 > errmax) ++iroff3;
        }
        rl[maxerr] = area1;
        rl[lst] = area2;
        errbnd = std::max(epsabs, epsrel * std::fabs(area));
        if (iroff1 + iroff2 >= 10 || iroff3 >= 20) *ier = 2;  // round-off
        if (iroff2 >= 5) ierro = 3;                            // round-off in the extrapolation
        if (lst == limit) *ier = 1;
        // Bad integrand behaviour at a point of the interval: the pieces cannot be halved further.
        if (std::max(std::fabs(a1), std::fabs(b2)) <= (1.0 + 1000.0 * epmach) * (std::fabs(a2) + 1000.0 * uflow))
            *ier = 4;
        // Append the new pieces, the one with the larger error at MAXERR.
        if (error2 > error1) {
            al[maxerr] = a2;
            al[lst] = a1;
            bl[lst] = b1;
            rl[maxerr] = area2;
            rl[lst] = area1;
            el[maxerr] = error2;
            el[lst] = error1;
        } else {
            al[lst] = a2;
            bl[maxerr] = b1;
            bl[lst] = b2;
            el[maxerr] = error1;
            el[lst] = error2;
        }
        D01SJ_ORDER(limit, lst, &maxerr, &errmax, elist, iord, &nrmax);
        if (errsum <= errbnd) {
            sum_pieces = true;
            break;
        }
        if (*ier != 0) break;
        if (lst == 2) {
            small = std::fabs(b - a) * 0.375;
            erlarg = errsum;
            ertest = errbnd;
            rlist2[1] = area;
            continue;
        }
        if (noext) continue;
        erlarg -= erlast;
        if (std::fabs(b1 - a1) > small) erlarg += erro12;
        if (!extrap) {
            // Extrapolate only once the piece to bisect next is small.
            if (std::fabs(bl[maxerr] - al[maxerr]) > small) continue;
            extrap = true;
            nrmax = 2;
        }
        bool large_left = false;
        if (ierro != 3 && erlarg > ertest) {
            // The large pieces still dominate: bisect them before extrapolating again.
            const int id = nrmax;
            const int jupbnd = lst > 2 + limit / 2 ? limit + 3 - lst : lst;
            for (int k = id; k <= jupbnd; ++k) {
                maxerr = io[nrmax];
                errmax = el[maxerr];
                if (std::fabs(bl[maxerr] - al[maxerr]) > small) {
                    large_left = true;
                    break;
                }
                ++nrmax;
            }
        }
        if (large_left) continue;
        // Extrapolate.
        ++numrl2;
        rlist2[numrl2 - 1] = area;
        double reseps, abseps;
        D01SJ_EXTRAPOLATE(&numrl2, rlist2, &reseps, &abseps, res3la, &nres);
        ++ktmin;
        if (ktmin > 5 && *abserr < 1.0e-3 * errsum) *ier = 5;
        if (abseps < *abserr) {
            ktmin = 0;
            *abserr = abseps;
            *result = reseps;
            correc = erlarg;
            ertest = std::max(epsabs, epsrel * std::fabs(reseps));
            if (*abserr <= ertest) break;
        }
        // Prepare bisection of the smallest piece.
        if (numrl2 == 1) noext = true;
        if (*ier == 5) break;
        maxerr = io[1];
        errmax = el[maxerr];
        nrmax = 1;
        extrap = false;
        small *= 0.5;
        erlarg = errsum;
    }
    if (*last > limit) *last = limit;

    if (!sum_pieces) {
        // Choose between the extrapolated value and the sum of the pieces.
        bool done = false;
        if (*abserr == oflow) {
            sum_pieces = true;
        } else if (*ier + ierro != 0) {
            if (ierro == 3) *abserr += correc;
            if (*ier == 0) *ier = 3;
            if (*result != 0.0 && area != 0.0) {
                if (*abserr / std::fabs(*result) > errsum / std::fabs(area)) sum_pieces = true;
            } else if (*abserr > errsum) {
                sum_pieces = true;
            } else if (area == 0.0) {
                done = true;
            }
        }
        if (!sum_pieces && !done) {
            // Test on divergence.
            if (!(ksgn == -1 && std::max(std::fabs(*result), std::fabs(area)) <= defabs * 1.0e-2)) {
                if (1.0e-2 > *result / area || *result / area > 1.0e2 || errsum > std::fabs(area)) *ier = 6;
            }
        }
    }
    if (sum_pieces) {
        double s = 0.0;
        for (int k = 1; k <= *last; ++k) s += rl[k];
        *result = s;
        *abserr = errsum;
    }
    if (*ier > 2) --*ier;
    *neval = 42 * *last - 21;
}

extern "C" void d01sjc(ZekQuadFunction f, double a, double b, double epsabs, double epsrel, int max_num_subint,
                       double *result, double *abserr, ZekQuadProgress *qp, void *user, ZekFail *fail) {
    static const char kName[] = "d01sjc";
    zek::clear_fail(fail);
    if (qp != nullptr) {
        qp->num_subint = 0;
        qp->fun_count = 0;
        qp->sub_int_beg_pts = qp->sub_int_end_pts = qp->sub_int_error = qp->sub_int_result = nullptr;
    }
    if (!std::isfinite(a)) {
        zek::raise_formatted(fail, kName, ZE_REAL, "a", a, "a must be finite");
        return;
    }
    if (!std::isfinite(b)) {
        zek::raise_formatted(fail, kName, ZE_REAL, "b", b, "b must be finite");
        return;
    }
    if (std::isnan(epsabs)) {
        zek::raise_formatted(fail, kName, ZE_REAL, "epsabs", epsabs, "epsabs must not be NaN");
        return;
    }
    if (std::isnan(epsrel)) {
        zek::raise_formatted(fail, kName, ZE_REAL, "epsrel", epsrel, "epsrel must not be NaN");
        return;
    }
    if (max_num_subint < 1) {
        zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "max_num_subint", "1", max_num_subint);
        return;
    }
    const std::size_t n = static_cast<std::size_t>(max_num_subint);
    double *arrays[4] = {nullptr, nullptr, nullptr, nullptr};
    int *iord = nullptr;
    bool ok = true;
    for (double *&p : arrays) {
        p = static_cast<double *>(ZEK_ALLOCATE(n * sizeof(double)));
        ok = ok && p != nullptr;
    }
    iord = static_cast<int *>(ZEK_ALLOCATE(n * sizeof(int)));
    if (!ok || iord == nullptr) {
        for (double *&p : arrays) ZEK_RELEASE(reinterpret_cast<void **>(&p));
        ZEK_RELEASE(reinterpret_cast<void **>(&iord));
        zek::raise_plain(fail, kName, ZE_ALLOC_FAIL);
        return;
    }
    double *alist = arrays[0], *blist = arrays[1], *elist = arrays[2], *rlist = arrays[3];
    int neval = 0, ier = 0, last = 0;
    D01SJ_WORKER(f, user, a, b, std::fabs(epsabs), std::fabs(epsrel), max_num_subint, result, abserr, &neval, &ier,
                 alist, blist, rlist, elist, iord, &last);
    ZEK_RELEASE(reinterpret_cast<void **>(&iord));
    // Entries behind the pieces in use hold 0.0 (all of them when the tolerances asked for nothing).
    for (std::size_t i = static_cast<std::size_t>(ier < 6 ? last : 0); i < n; ++i)
        alist[i] = blist[i] = elist[i] = rlist[i] = 0.0;
    if (ier < 6 && last >= 1) {
        // Hand the pieces back in ascending order of their left ends (reversed limits: descending
        // order of the bisection is undone the same way, by the left end of each piece as stored).
        if (last > 1) {
            int *ranks = static_cast<int *>(ZEK_ALLOCATE(static_cast<std::size_t>(last) * sizeof(int)));
            if (ranks == nullptr) {
                for (double *&p : arrays) ZEK_RELEASE(reinterpret_cast<void **>(&p));
                zek::raise_plain(fail, kName, ZE_ALLOC_FAIL);
                return;
            }
            ZekFail local = zek::clean_fail();
            m01dsc(alist, last, static_cast<int>(sizeof(double)), compare_doubles, Zek_Ascending, ranks, &local);
            for (double *p : arrays) {
                if (local.code != 0) break;
                m01esc(p, last, static_cast<int>(sizeof(double)), static_cast<int>(sizeof(double)), ranks, &local);
            }
            ZEK_RELEASE(reinterpret_cast<void **>(&ranks));
        }
    }
    if (qp != nullptr) {
        qp->num_subint = last;
        qp->fun_count = neval;
        qp->sub_int_beg_pts = alist;
        qp->sub_int_end_pts = blist;
        qp->sub_int_error = elist;
        qp->sub_int_result = rlist;
    } else {
        for (double *&p : arrays) ZEK_RELEASE(reinterpret_cast<void **>(&p));
    }
    switch (ier) {
    case 0: zek::raise_success(fail, kName); break;
    case 1: zek::raise_formatted(fail, kName, ZE_QUAD_MAX_SUBDIV, "max_num_subint", static_cast<long>(max_num_subint)); break;
    case 2: zek::raise_plain(fail, kName, ZE_QUAD_ROUNDOFF_TOL); break;
    case 3: zek::raise_plain(fail, kName, ZE_QUAD_BAD_SUBDIV); break;
    case 4: zek::raise_plain(fail, kName, ZE_QUAD_ROUNDOFF_EXTRAPL); break;
    case 5: zek::raise_plain(fail, kName, ZE_QUAD_NO_CONV); break;
    default:
        zek::raise_formatted(fail, kName, ZE_REAL, "epsrel", std::fabs(epsrel),
                             "epsabs > 0.0 or epsrel >= 50 times the machine precision");
        break;
    }
}
