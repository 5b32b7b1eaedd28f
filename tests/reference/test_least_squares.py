"""E04NCA against SciPy's bounded least squares (lsq_linear, BVLS) and non-negative least squares (nnls);
E04NCA and E04NFA under general linear constraints against the closed form of the equality-constrained
optimum and against SLSQP.  Every solution of ours must also meet the first-order conditions with its own
multipliers, which settles who is right where the two disagree."""
import ctypes
import unittest

import numpy as np
from scipy.optimize import linprog, lsq_linear, nnls

from zek2ref import (BIG, FirstOrder, Options, address, doubles, ints, ptr, ref, relative_difference, routine,
                     slsqp, view)

rng = np.random.default_rng(20261124)
summary = []


def matrix(m, n, rank=None):
    """An m by n matrix of RANK (full by default) with singular values spread over [1, 10]."""
    rank = min(m, n) if rank is None else rank
    u = np.linalg.qr(rng.standard_normal((m, rank)))[0]
    v = np.linalg.qr(rng.standard_normal((n, rank)))[0]
    return u @ np.diag(np.linspace(1.0, 10.0, rank)) @ v.T


def spd(n):
    root = matrix(n, n)
    return root @ root.T / 10 + np.eye(n)


def no_rows(n):
    return np.zeros((0, n))


def nca(a, b, c, bl, bu):
    m, n = a.shape
    nclin = c.shape[0]
    options = Options('E04NCA', 'E04NEF', ['Print Level = 0', 'Problem Type = LS1'])
    istate, kx, x, clamda = ints([0] * (n + nclin)), ints([0] * n), doubles(np.zeros(n)), doubles(np.zeros(n + nclin))
    liwork, lwork = 2 * n + 3, 17 * n + 6 * nclin + m + 4 * n * n + max(m, n) * n - (n * n if nclin == 0 else 0)
    iwork, work = ints([0] * liwork), doubles(np.zeros(lwork))
    it, obj, ifail = ctypes.c_int(0), ctypes.c_double(0.0), ctypes.c_int(1)
    routine('E04NCA')(*ref(m, n, nclin, max(1, nclin), m), ptr(doubles(c if nclin else [0.0])), ptr(doubles(bl)),
                      ptr(doubles(bu)), ptr(doubles(np.zeros(n))), ptr(istate), ptr(kx),
                      ptr(x), ptr(doubles(a)), ptr(doubles(b)), ctypes.byref(it), ctypes.byref(obj), ptr(clamda),
                      ptr(iwork), *ref(liwork), ptr(work), *ref(lwork), *options.state(), ctypes.byref(ifail))
    return ifail.value, x, obj.value, a.T @ (a @ x - b), clamda, istate


QPHESS = ctypes.CFUNCTYPE(None, *[ctypes.c_void_p] * 9)


def nfa(h, cvec, c, bl, bu, host_product):
    """E04NFA with H x formed by the library from H, or by a host routine through the exported adaptor."""
    n, nclin = h.shape[0], c.shape[0]

    def product(_n, _j, _h, _ldh, xp, hxp, _nstate, _iu, _ru):
        view(hxp, (n,))[:] = h @ view(xp, (n,))
    qphess = QPHESS(product) if host_product else None
    options = Options('E04NFA', 'E04NHF', ['Print Level = 0'])
    istate, x, ax, clamda = ints([0] * (n + nclin)), doubles(np.zeros(n)), doubles(np.zeros(max(1, nclin))), \
        doubles(np.zeros(n + nclin))
    liwork, lwork = 2 * n + 3, 13 * n + 5 * nclin + 4 * n * n
    iwork, work = ints([0] * liwork), doubles(np.zeros(lwork))
    it, obj, ifail = ctypes.c_int(0), ctypes.c_double(0.0), ctypes.c_int(1)
    routine('E04NFA')(*ref(n, nclin), ptr(doubles(c if nclin else [0.0])), *ref(max(1, nclin)), ptr(doubles(bl)),
                      ptr(doubles(bu)), ptr(doubles(cvec)), ptr(doubles(h)), *ref(n), qphess,
                      address('E04NFA_QPHESS_ADAPTOR') if host_product else None, ptr(istate),
                      ptr(x), ctypes.byref(it), ctypes.byref(obj), ptr(ax), ptr(clamda), ptr(iwork), *ref(liwork),
                      ptr(work), *ref(lwork), None, None, *options.state(), ctypes.byref(ifail))
    return ifail.value, x, obj.value, h @ x + cvec, clamda, istate


# (name, A, b, lower, upper): bounds of the variables only.
def bounded_problems():
    t = []
    a = matrix(30, 8)
    t.append(('tall_active', a, 3 * rng.standard_normal(30), [-0.2] * 8, [0.3] * 8))
    a = matrix(30, 8)
    t.append(('tall_inactive', a, a @ rng.uniform(-1, 1, 8) + 1e-3 * rng.standard_normal(30), [-5] * 8, [5] * 8))
    a = matrix(8, 8)
    t.append(('square_mixed', a, 5 * rng.standard_normal(8), [-1, -BIG, 0, -BIG, -0.5, -1, -BIG, 0],
              [0.5, 1, BIG, BIG, 0.5, BIG, 0, 0.2]))
    a = matrix(12, 6)
    t.append(('fixed_variable', a, rng.standard_normal(12), [-1, 0.25, -1, -1, -1, -1], [1, 0.25, 1, 1, 1, 1]))
    a = matrix(20, 8, rank=5)
    t.append(('rank_deficient', a, 2 * rng.standard_normal(20), [-0.5] * 8, [0.5] * 8))
    a = matrix(5, 10)
    t.append(('wide', a, 4 * rng.standard_normal(5), [-1] * 10, [1] * 10))
    a = matrix(20, 8, rank=5)
    t.append(('rank_def_inside', a, a @ np.full(8, 0.1) + 0.1 * rng.standard_normal(20), [-10] * 8, [10] * 8))
    a = matrix(6, 8)
    t.append(('wide_exact', a, a @ rng.uniform(-0.5, 0.5, 8), [-1] * 8, [1] * 8))
    return t


# (name, A, b) for x >= 0.
def nonnegative_problems():
    return [('tall', matrix(25, 10), rng.standard_normal(25)),
            ('square', matrix(10, 10), 3 * rng.standard_normal(10)),
            ('rank_deficient', matrix(25, 10, rank=6), rng.standard_normal(25)),
            ('rank_def_wide', matrix(8, 12, rank=6), 2 * rng.standard_normal(8))]


def face_width(a, x, bl, bu):
    """The width of the set of minimisers {x within bounds : A x = A x*} (the residual is unique), by
    linear programs along random directions; the equations are those of the row space of A, which are
    well conditioned where A itself is rank deficient."""
    _, sv, vt = np.linalg.svd(a, full_matrices=False)
    rows = vt[sv > 1e-10 * sv[0]]
    bounds = [(None if lo <= -BIG else lo, None if hi >= BIG else hi) for lo, hi in zip(bl, bu)]
    width = 0.0
    for d in np.random.default_rng(7).standard_normal((6, x.size)):
        ends = [linprog(s * d, A_eq=rows, b_eq=rows @ x, bounds=bounds) for s in (1, -1)]
        if any(e.status != 0 for e in ends):
            return np.inf
        width = max(width, np.max(np.abs(ends[0].x - ends[1].x)))
    return width


class LeastSquares(FirstOrder):
    def compare(self, table, name, a, b, bl, bu, obj_theirs, x_theirs):
        ifail, x, obj, g, clamda, istate = nca(a, b, no_rows(a.shape[1]), np.array(bl, float), np.array(bu, float))
        # Where the minimisers form a face, "weak" (IFAIL 1) is the honest word and the points may differ.
        unique = face_width(a, x, bl, bu) < 1e-7
        self.assertEqual(ifail, 0 if unique else 1)
        self.assert_first_order(g, np.eye(a.shape[1]), x, bl, bu, clamda, istate)
        self.assertAlmostEqual(obj, 0.5 * np.sum((a @ x - b) ** 2), delta=1e-12 * (1 + obj))
        dobj = abs(obj - obj_theirs) / max(1.0, abs(obj_theirs))
        dx = relative_difference(x, x_theirs) if unique else float('nan')
        self.assertLess(dobj, 1e-10)
        if unique:
            self.assertLess(dx, 1e-8)
        summary.append((table, name, ifail, dobj, dx))

    def test_bounds_against_bvls(self):
        for name, a, b, bl, bu in bounded_problems():
            with self.subTest(problem=name):
                # lsq_linear takes no fixed variables: they move into b.
                lo, hi = np.array(bl, float), np.array(bu, float)
                free = lo < hi
                rest = b - a[:, ~free] @ lo[~free]
                theirs = lsq_linear(a[:, free], rest, bounds=(np.where(lo <= -BIG, -np.inf, lo)[free],
                                    np.where(hi >= BIG, np.inf, hi)[free]), method='bvls', tol=1e-14)
                x = lo.copy()
                x[free] = theirs.x
                self.compare('lsq_linear', name, a, b, bl, bu, theirs.cost, x)

    def test_nonnegative_against_nnls(self):
        for name, a, b in nonnegative_problems():
            with self.subTest(problem=name):
                x, rnorm = nnls(a, b)
                n = a.shape[1]
                self.compare('nnls', name, a, b, [0.0] * n, [BIG] * n, 0.5 * rnorm ** 2, x)


# (name, C, lower, upper (of x, then of C x)): general linear rows, with bounds on x in the last.
def constrained_problems(n):
    c_eq = rng.standard_normal((2, n))
    c_in = rng.standard_normal((3, n))
    big = [BIG] * n
    return [
        ('equalities', c_eq, [-BIG] * n + [1.0, -0.5], big + [1.0, -0.5]),
        ('simplex', np.ones((1, n)), [0.0] * n + [1.0], big + [1.0]),
        ('mixed_rows', np.vstack([c_eq[:1], c_in]), [-1.0] * n + [0.5, -BIG, -0.3, -BIG],
         [1.0] * n + [0.5, 0.4, BIG, 0.2]),
    ]


def equality_optimum(hessian, linear, c, d):
    """The minimiser of linear'x + x'Hx/2 on C x = d, from the KKT system."""
    k = c.shape[0]
    kkt = np.block([[hessian, c.T], [c, np.zeros((k, k))]])
    return np.linalg.solve(kkt, np.concatenate([-linear, d]))[:hessian.shape[0]]


class LinearRows(FirstOrder):
    def against(self, table, name, ours, theirs, f, closed):
        ifail, x, obj, g, clamda, istate = ours
        self.assertEqual(ifail, 0)
        self.assertLess(abs(obj - f(x)), 1e-12 * (1 + abs(obj)))
        dobj = abs(obj - theirs.fun) / max(1.0, abs(theirs.fun))
        dx = relative_difference(x, theirs.x if closed is None else closed)
        # SLSQP stops on the change in f, so its point is good to about the root of its tolerance.
        self.assertLess(dobj, 1e-9)
        self.assertLess(dx, 1e-8 if closed is not None else 1e-5)
        summary.append((table, name, ifail, dobj, dx))
        return x, g, clamda, istate

    def test_least_squares_rows(self):
        n, m = 7, 25
        for name, c, bl, bu in constrained_problems(n):
            with self.subTest(problem=name):
                a, b = matrix(m, n), 2 * rng.standard_normal(m)
                bl, bu = np.array(bl, float), np.array(bu, float)
                f = lambda x: 0.5 * np.sum((a @ x - b) ** 2)
                theirs = slsqp(f, lambda x: a.T @ (a @ x - b), np.zeros(n), bl, bu, lambda x: c @ x, lambda x: c)
                closed = equality_optimum(a.T @ a, -a.T @ b, c, bl[n:]) if name == 'equalities' else None
                ours = nca(a, b, c, bl, bu)
                x, g, clamda, istate = self.against('E04NCA', name, ours, theirs, f, closed)
                self.assert_first_order(g, np.vstack([np.eye(n), c]), x, bl, bu, clamda, istate)

    def test_convex_qp(self):
        n = 6
        for name, c, bl, bu in constrained_problems(n):
            h, cvec = spd(n), 3 * rng.standard_normal(n)
            bl, bu = np.array(bl, float), np.array(bu, float)
            f = lambda x: cvec @ x + 0.5 * x @ h @ x
            theirs = slsqp(f, lambda x: h @ x + cvec, np.zeros(n), bl, bu, lambda x: c @ x, lambda x: c)
            closed = equality_optimum(h, cvec, c, bl[n:]) if name == 'equalities' else None
            for host in (False, True):
                with self.subTest(problem=name, host_product=host):
                    ours = nfa(h, cvec, c, bl, bu, host)
                    x, g, clamda, istate = self.against('E04NFA' + ' host' * host, name, ours, theirs, f, closed)
                    self.assert_first_order(g, np.vstack([np.eye(n), c]), x, bl, bu, clamda, istate)


def tearDownModule():
    print('\n%-11s %-15s %5s %10s %10s' % ('against', 'problem', 'IFAIL', 'rel obj', 'rel x'))
    for row in summary:
        print('%-11s %-15s %5d %10.1e %10.1e' % row)


if __name__ == '__main__':
    unittest.main()
