"""The least-squares family (E04GBF with the Jacobian, E04FYF by differences) against SciPy's
Levenberg-Marquardt, and E04YCF's covariance against sigma^2 (J'J)^-1 formed from the exact Jacobian at
the solution."""
import ctypes
import pathlib
import unittest

import numpy as np
from scipy.optimize import least_squares

import mgh
from zek2ref import address, doubles, relative_difference, routine, scalar, view

c_int_p, c_double_p = ctypes.POINTER(ctypes.c_int), ctypes.POINTER(ctypes.c_double)
LSQFUN = ctypes.CFUNCTYPE(None, c_int_p, c_int_p, c_int_p, c_double_p, c_double_p, c_double_p, c_int_p,
                          ctypes.c_void_p, ctypes.c_void_p)
LSQFUN_DIFF = ctypes.CFUNCTYPE(None, c_int_p, c_int_p, c_int_p, c_double_p, c_double_p, ctypes.c_void_p,
                               ctypes.c_void_p)
EPS = np.finfo(float).eps
XTOL = 10 * np.sqrt(EPS)
np.seterr(over='ignore')  # SciPy's trial steps overflow exp in Jennrich-Sampson; harmless

# (problem, compare the covariance).  The covariance is left out where the minimum has zero residuals
# (sigma^2 is 0) or a rank-deficient Jacobian (Jennrich-Sampson's minimum has x1 = x2).
MGH_CASES = [('Rosenbrock', False), ('HelicalValley', False), ('PowellSingular', False), ('Box3', False),
             ('Bard', True), ('KowalikOsborne', True), ('Meyer', True), ('JennrichSampson', False),
             ('BrownDennis', True), ('Osborne1', True), ('Watson6', True)]


def rat43():
    """NIST StRD Rat43, y = b1 / (1 + exp(b2 - b3 x))^(1/b4): residuals, both starts, certified values."""
    lines = (pathlib.Path(__file__).resolve().parents[1] / 'data' / 'strd' / 'nonlinear' / 'rat43.dat').read_text()
    starts, data = [], []
    for line in lines.splitlines():
        words = line.split()
        if not words or words[0] == '#':
            continue
        if words[0] == 'start':
            starts.append([float(w) for w in words[1:]])
        elif words[0] == 'certified':
            certified = np.array([float(w) for w in words[1:]])
        elif words[0] == 'sumsq':
            sumsq = float(words[1])
        else:
            data.append([float(w) for w in words])
    y, x = np.array(data).T

    def residuals(b):
        return b[0] / (1 + np.exp(b[1] - b[2] * x)) ** (1 / b[3]) - y
    return residuals, starts, certified, sumsq


def ours(residuals, start, with_jacobian):
    """Runs E04GBF (with_jacobian) or E04FYF; returns IFAIL, x, the sum of squares, the calls of the
    user's routine and the singular values and right vectors of the final Jacobian."""
    x = doubles(start)
    n, m = x.size, residuals(x).size
    calls = [0]

    def fill(iflag, xc, fvec, fjac, lj):
        calls[0] += 1
        point = view(xc, (n,)).copy()
        view(fvec, (m,))[:] = residuals(point)
        if fjac is not None and iflag[0] == 2:
            view(fjac, (lj[0], n))[:m, :] = mgh.jacobian(residuals, point)

    fsumsq, ifail, mi, ni = scalar(0.0), scalar(1), scalar(m), scalar(n)
    if with_jacobian:
        callback = LSQFUN(lambda iflag, _m, _n, xc, fvec, fjac, lj, _iu, _ru: fill(iflag, xc, fvec, fjac, lj))
        fvec, fjac = doubles(np.zeros(m)), doubles(np.zeros((m, n)))
        s, v = doubles(np.zeros(n)), doubles(np.zeros((n, n)))
        lw = 9 + 3 * m if n == 1 else 7 * n + m * n + 2 * m + n * n
        w, iw = doubles(np.zeros(lw)), np.zeros(1, dtype=np.int32)
        niter, nf, igrade = scalar(0), scalar(0), scalar(0)
        routine('E04GBF')(ctypes.byref(mi), ctypes.byref(ni), callback, address('E04_ADAPT_LSQ'), None, None,
                          None, None, ctypes.byref(scalar(-1)), ctypes.byref(scalar(400 * n)),
                          ctypes.byref(scalar(0.5)), ctypes.byref(scalar(XTOL)), ctypes.byref(scalar(1e5)),
                          x.ctypes, ctypes.byref(fsumsq), fvec.ctypes, fjac.ctypes, ctypes.byref(mi), s.ctypes,
                          v.ctypes, ctypes.byref(ni), ctypes.byref(niter), ctypes.byref(nf), ctypes.byref(igrade),
                          iw.ctypes, ctypes.byref(scalar(1)), w.ctypes, ctypes.byref(scalar(lw)), None, None,
                          ctypes.byref(ifail))
    else:
        callback = LSQFUN_DIFF(lambda iflag, _m, _n, xc, fvec, _iu, _ru: fill(iflag, xc, fvec, None, None))
        lw = 9 + 5 * m if n == 1 else 7 * n + n * n + 2 * m * n + 2 * m + n * (n - 1) // 2
        w = doubles(np.zeros(lw))
        routine('E04FYF')(ctypes.byref(mi), ctypes.byref(ni), callback, address('E04_ADAPT_LSQ_DIFF'), x.ctypes,
                          ctypes.byref(fsumsq), w.ctypes, ctypes.byref(scalar(lw)), None, None,
                          ctypes.byref(ifail))
        # The easy form leaves FVEC, FJAC, S and V at X at the head of W.
        s = w[m + m * n:m + m * n + n].copy()
        v = w[m + m * n + n:m + m * n + n + n * n].reshape((n, n), order='F').copy()
    return ifail.value, x, fsumsq.value, calls[0], s, v


def covariance(m, fsumsq, s, v):
    """E04YCF's whole covariance matrix (JOB -1) from the singular values and right vectors."""
    n = s.size
    v = doubles(v)
    ifail = scalar(1)
    routine('E04YCF')(ctypes.byref(scalar(-1)), ctypes.byref(scalar(m)), ctypes.byref(scalar(n)),
                      ctypes.byref(scalar(fsumsq)), doubles(s).ctypes, v.ctypes, ctypes.byref(scalar(n)),
                      doubles(np.zeros(n)).ctypes, doubles(np.zeros(n)).ctypes, ctypes.byref(scalar(n)),
                      ctypes.byref(ifail))
    return ifail.value, v


def scipy_fit(residuals, start, with_jacobian=True, tol=1e-15):
    """SciPy's Levenberg-Marquardt with the exact Jacobian or forward differences: to the last digits
    for the minimum, to its default tolerances (1e-8) for the counts."""
    jac = (lambda b: mgh.jacobian(residuals, b)) if with_jacobian else '2-point'
    return least_squares(residuals, start, jac=jac, method='lm', xtol=tol, ftol=tol, gtol=tol, max_nfev=20000)


def reference_covariance(residuals, x, fsumsq):
    """sigma^2 (J'J)^-1 with J at X and sigma^2 = FSUMSQ / (M - N)."""
    jac = mgh.jacobian(residuals, x)
    m, n = jac.shape
    return fsumsq / (m - n) * np.linalg.inv(jac.T @ jac)


class LeastSquares(unittest.TestCase):
    def check(self, label, residuals, start, with_cov):
        """Both routines from START against SciPy; returns E04GBF's solution and sum of squares."""
        best = scipy_fit(residuals, start)
        start_r = residuals(np.asarray(start, dtype=float))
        for name, with_jacobian in (('E04GBF', True), ('E04FYF', False)):
            with self.subTest(problem=label, routine=name):
                theirs = scipy_fit(residuals, start, with_jacobian, 1e-8)
                ifail, x, fsumsq, calls, s, v = ours(residuals, start, with_jacobian)
                if with_jacobian:
                    solution = x, fsumsq
                line = (f'{label:16s} {name} IFAIL {ifail} f {fsumsq:.12e} SciPy {2 * best.cost:.12e}'
                        f' calls {calls} SciPy {theirs.nfev}' + (f'+{theirs.njev}J' if with_jacobian else ''))
                if with_cov:
                    cov_ifail, cov = covariance(best.fun.size, fsumsq, s, v)
                    expected = reference_covariance(residuals, x, fsumsq)
                    err = np.max(np.abs(cov - expected)) / np.max(np.abs(expected))
                    line += f' covariance {err:.1e}'
                print(line)
                self.assertEqual(ifail, 0)
                # 1e-8 relative; at a zero-residual minimum both must reach rounding level of the start.
                self.assertLessEqual(abs(fsumsq - 2 * best.cost),
                                     1e-8 * 2 * best.cost + 1e-20 * (1 + start_r @ start_r))
                if with_cov:
                    self.assertEqual(cov_ifail, 0)
                    # The differenced Jacobian of E04FYF carries errors of order sqrt(EPS) times its
                    # condition; the exact one leaves only rounding.
                    self.assertLess(err, 1e-8 if with_jacobian else 1e-5)
        return solution

    def test_mgh_problems(self):
        for label, with_cov in MGH_CASES:
            residuals, start = mgh.PROBLEMS[label]
            self.check(label, residuals, start, with_cov)

    def test_rat43_certified_values(self):
        residuals, starts, certified, sumsq = rat43()
        for number, start in enumerate(starts, 1):
            x, fsumsq = self.check(f'Rat43 start {number}', residuals, start, True)
            self.assertLess(relative_difference(x, certified), 1e-8)
            self.assertLess(abs(fsumsq - sumsq) / sumsq, 1e-9)


if __name__ == '__main__':
    unittest.main()
