#!/usr/bin/env python3
"""Rational minimax fits for the inverse of the standard normal distribution.

The deviate x(p), with q = p - 1/2 and m = min(p, 1 - p), is taken in three fitted ranges:

  central  |q| <= 0.3           x = q * P(q^2) / Q(q^2),          degree 5/5 in q^2
  middle   0.3 < |q| <= 0.42    x = sign(q) * P(t) / Q(t),        t = |q| - 0.3, degree 5/5
  tail     m down to DBL_MIN    x = sign(q) * (r + P(r) / Q(r)),   r = sqrt(-log m), degree 6/6

Each fit minimises the largest relative error of x by a Remez exchange on a dense grid, started from a
linearised least-squares fit.  The deviates on the grid come from mpmath at 50 digits.  The script
prints the coefficients as C++ initialisers (constant term first, denominators with a leading 1) and
each fit's largest relative error; `--check LIB` then measures the library's g01fac against mpmath at
log-spaced probabilities from 1e-300 to 1 - 1e-16.

Usage: nice -n 10 python3 tools/normal_deviate_fit.py [--check build/default/libzek2.so]
"""
import math
import sys

import mpmath as mp

mp.mp.dps = 50
DBL_MIN = mp.mpf(2) ** -1022


def upper_deviate_from_log(log_m):
    """The x > 0 with log Q(x) = log_m, Q the upper normal tail (Newton in log Q, quadratic)."""
    x = mp.sqrt(-2 * log_m)
    x = x - (mp.log(x) + mp.log(2 * mp.pi) / 2) / x
    for _ in range(100):
        lq = mp.log(mp.erfc(x / mp.sqrt(2)) / 2)
        dlq = -mp.npdf(x) / (mp.erfc(x / mp.sqrt(2)) / 2)
        step = (lq - log_m) / dlq
        x -= step
        if abs(step) < mp.mpf(10) ** (-45) * x:
            break
    return x


def deviate_of_q(q):
    return mp.sqrt(2) * mp.erfinv(2 * q)


def cheb_grid(a, b, n):
    return [(a + b) / 2 + (b - a) / 2 * mp.cos(mp.pi * k / (n - 1)) for k in range(n - 1, -1, -1)]


class Fit:
    """Weighted rational fit P/Q of degree (n, m) to f on a grid, in v = (x - c) / h."""

    def __init__(self, xs, fs, ws, n, m):
        self.c = (xs[0] + xs[-1]) / 2
        self.h = (xs[-1] - xs[0]) / 2
        self.xs, self.vs, self.fs, self.ws, self.n, self.m = xs, [(x - self.c) / self.h for x in xs], fs, ws, n, m

    @staticmethod
    def poly(coef, v):
        s = mp.mpf(0)
        for a in reversed(coef):
            s = s * v + a
        return s

    def value(self, p, q, v):
        return self.poly(p, v) / self.poly(q, v)

    def errors(self, p, q):
        return [w * (self.value(p, q, v) - f) for v, f, w in zip(self.vs, self.fs, self.ws)]

    def least_squares(self):
        # Linearised fit w (P - f Q) / Q_previous, iterated so that the weights approach 1 / Q.
        n, m = self.n, self.m
        q = [mp.mpf(1)] + [mp.mpf(0)] * m
        p = None
        for _ in range(12):
            rows, rhs = [], []
            for v, f, w in zip(self.vs, self.fs, self.ws):
                s = w / self.poly(q, v)
                rows.append([s * v ** j for j in range(n + 1)] + [-s * f * v ** j for j in range(1, m + 1)])
                rhs.append(s * f)
            sol, _ = mp.qr_solve(mp.matrix(rows), mp.matrix(rhs))
            p = [sol[j] for j in range(n + 1)]
            q = [mp.mpf(1)] + [sol[n + 1 + j] for j in range(m)]
        return p, q

    def reference_solve(self, idx, e0):
        # P(v_i) - f_i Q(v_i) = s_i E Q(v_i) / w_i, solved with E inside the product fixed and iterated.
        n, m = self.n, self.m
        e = e0
        p = q = None
        for _ in range(60):
            rows, rhs = [], []
            for k, i in enumerate(idx):
                v, f, w, s = self.vs[i], self.fs[i], self.ws[i], (-1) ** k
                g = f + s * e / w
                rows.append([v ** j for j in range(n + 1)] + [-g * v ** j for j in range(1, m + 1)] + [-s / w])
                rhs.append(f)
            sol = mp.lu_solve(mp.matrix(rows), mp.matrix(rhs))
            p = [sol[j] for j in range(n + 1)]
            q = [mp.mpf(1)] + [sol[n + 1 + j] for j in range(m)]
            new_e = sol[n + m + 1]
            if abs(new_e - e) <= mp.mpf(10) ** -30 * abs(new_e):
                e = new_e
                break
            e = new_e
        return p, q, e

    @staticmethod
    def alternating_extrema(err):
        runs = []
        for i, e in enumerate(err):
            if runs and (e >= 0) == (err[runs[-1]] >= 0):
                if abs(e) > abs(err[runs[-1]]):
                    runs[-1] = i
            else:
                runs.append(i)
        return runs

    def remez(self, iterations=40):
        k = self.n + self.m + 2
        p, q = self.least_squares()
        e = mp.mpf(0)
        for _ in range(iterations):
            err = self.errors(p, q)
            idx = self.alternating_extrema(err)
            while len(idx) > k:
                # Drop the smallest extremum; inside the list its neighbours then share a sign and merge.
                j = min(range(len(idx)), key=lambda t: abs(err[idx[t]]))
                if 0 < j < len(idx) - 1:
                    keep = idx[j - 1] if abs(err[idx[j - 1]]) >= abs(err[idx[j + 1]]) else idx[j + 1]
                    idx = idx[:j - 1] + [keep] + idx[j + 2:]
                else:
                    idx.pop(j)
            if len(idx) < k:
                raise RuntimeError("error curve alternates only %d times (need %d)" % (len(idx), k))
            emax = max(abs(x) for x in err)
            emin = min(abs(err[i]) for i in idx)
            if emax - emin <= mp.mpf("1e-4") * emax:
                break
            p, q, e = self.reference_solve(idx, e)
        return p, q, max(abs(x) for x in self.errors(p, q))

    def monomials(self, coef, shift=None):
        """Coefficients in (x - shift) of the polynomial given in v = (x - c) / h."""
        shift = self.c if shift is None else shift
        # v = (y + shift - c) / h with y = x - shift.
        a, b = (shift - self.c) / self.h, 1 / self.h
        out = [mp.mpf(0)] * len(coef)
        for j, cj in enumerate(coef):
            for i in range(j + 1):
                out[i] += cj * mp.binomial(j, i) * a ** (j - i) * b ** i
        return out


def emit(name, p, q):
    lead = q[0]
    p = [x / lead for x in p]
    q = [x / lead for x in q]
    fmt = lambda cs: ", ".join(mp.nstr(c, 17, min_fixed=0, max_fixed=0) for c in cs)
    print("constexpr double %sP[] = {%s};" % (name, fmt(p)))
    print("constexpr double %sQ[] = {%s};" % (name, fmt(q)))
    return [float(x) for x in p], [float(x) for x in q]


def main():
    fits = {}
    # Central range: x / q as a function of s = q^2 on [0, 0.09]; x / q -> sqrt(2 pi) at 0.
    ss = cheb_grid(mp.mpf(0), mp.mpf("0.09"), 1200)
    fs = [mp.sqrt(2 * mp.pi) if s == 0 else deviate_of_q(mp.sqrt(s)) / mp.sqrt(s) for s in ss]
    f = Fit(ss, fs, [1 / v for v in fs], 5, 5)
    p, q, e = f.remez()
    print("// central: largest relative error %s" % mp.nstr(e, 3))
    fits["central"] = emit("kCentral", f.monomials(p, 0), f.monomials(q, 0))

    # Middle range: x as a function of t = |q| - 0.3 on [0, 0.12].
    ts = cheb_grid(mp.mpf(0), mp.mpf("0.12"), 1200)
    fs = [deviate_of_q(t + mp.mpf("0.3")) for t in ts]
    f = Fit(ts, fs, [1 / v for v in fs], 5, 5)
    p, q, e = f.remez()
    print("// middle: largest relative error %s" % mp.nstr(e, 3))
    fits["middle"] = emit("kMiddle", f.monomials(p, 0), f.monomials(q, 0))

    # Tail range: x - r as a function of r = sqrt(-log m), m from 0.08 down to DBL_MIN, relative to x.
    r0, r1 = mp.sqrt(-mp.log(mp.mpf("0.08"))), mp.sqrt(-mp.log(DBL_MIN))
    rs = cheb_grid(r0, r1, 1500)
    xs = [upper_deviate_from_log(-r * r) for r in rs]
    f = Fit(rs, [x - r for x, r in zip(xs, rs)], [1 / x for x in xs], 6, 6)
    p, q, e = f.remez()
    print("// tail: largest relative error %s" % mp.nstr(e, 3))
    fits["tail"] = emit("kTail", f.monomials(p, 0), f.monomials(q, 0))
    return fits


def check(lib):
    import ctypes

    z = ctypes.CDLL(lib)
    g01fac = z.q79765
    g01fac.restype = ctypes.c_double
    g01fac.argtypes = [ctypes.c_int, ctypes.c_double, ctypes.c_void_p]
    worst = {"central": (0.0, 0.5)}
    n = 3000
    # Log-spaced in m = min(p, 1 - p) from 1e-300 to 0.5, both sides, and evenly spaced p.
    logs = [10.0 ** (-300.0 + 300.0 * k / n * (1 - math.log10(2) / 300)) for k in range(n + 1)]
    even = [k / 1000.0 + 1e-4 for k in range(1000)]
    for m in logs + even:
        for p in (m, 1.0 - m):
            if p >= 1.0 or p > 1 - 1e-16:
                continue
            pm = mp.mpf(p)
            if abs(pm - mp.mpf(0.5)) <= mp.mpf("0.42"):
                exact = deviate_of_q(pm - mp.mpf(0.5))
            else:
                lo = min(pm, 1 - pm)
                exact = upper_deviate_from_log(mp.log(lo)) * (1 if pm > 0.5 else -1)
            got = g01fac(1329, p, None)
            rel = float(abs((got - exact) / exact)) if exact != 0 else abs(got)
            key = "central" if abs(p - 0.5) <= 0.3 else ("middle" if abs(p - 0.5) <= 0.42 else "tail")
            if rel > worst.get(key, (0.0, 0.0))[0]:
                worst[key] = (rel, p)
    for key, (rel, p) in sorted(worst.items()):
        print("%-8s largest relative error %.3g at p = %.17g" % (key, rel, p))


if __name__ == "__main__":
    if len(sys.argv) == 3 and sys.argv[1] == "--check":
        check(sys.argv[2])
    else:
        main()
