"""E04ABF and E04BBF against SciPy's bounded Brent search on unimodal functions of one variable."""
import ctypes
import math
import unittest

from scipy.optimize import minimize_scalar

from zek2ref import address, routine, scalar

FUNCT1 = ctypes.CFUNCTYPE(None, ctypes.POINTER(ctypes.c_double), ctypes.POINTER(ctypes.c_double),
                          ctypes.c_void_p, ctypes.c_void_p)
FUNCT1_GRAD = ctypes.CFUNCTYPE(None, ctypes.POINTER(ctypes.c_double), ctypes.POINTER(ctypes.c_double),
                               ctypes.POINTER(ctypes.c_double), ctypes.c_void_p, ctypes.c_void_p)

# (name, f, f', a, b): each has one minimum inside [a, b].
PROBLEMS = [
    ('quadratic', lambda x: (x - 0.3) ** 2, lambda x: 2 * (x - 0.3), -1.0, 2.0),
    ('cosine', math.cos, lambda x: -math.sin(x), 2.0, 4.5),
    ('exp_plus_line', lambda x: math.exp(x) - 2 * x, lambda x: math.exp(x) - 2, -3.0, 3.0),
    ('quartic_flat', lambda x: (x - 1) ** 4 + 0.1 * (x - 1) ** 2, lambda x: 4 * (x - 1) ** 3 + 0.2 * (x - 1), 0.0, 5.0),
    ('log_barrier', lambda x: x - math.log(x), lambda x: 1 - 1 / x, 0.1, 10.0),
    ('sin_over_x', lambda x: math.sin(x) / x, lambda x: (x * math.cos(x) - math.sin(x)) / x ** 2, 3.0, 6.0),
]


def ours(f, df, a, b, with_derivative):
    e1, e2 = scalar(0.0), scalar(0.0)
    lo, hi, maxcal = scalar(a), scalar(b), scalar(100)
    x, fx, gx, ifail = scalar(0.0), scalar(0.0), scalar(0.0), scalar(1)
    if with_derivative:
        def body(xc, fc, gc, _iuser, _ruser):
            fc[0], gc[0] = f(xc[0]), df(xc[0])
        callback = FUNCT1_GRAD(body)
        routine('E04BBF')(callback, address('E04_ADAPT_FUNCT1_GRAD'), ctypes.byref(e1), ctypes.byref(e2),
                          ctypes.byref(lo), ctypes.byref(hi), ctypes.byref(maxcal), ctypes.byref(x),
                          ctypes.byref(fx), ctypes.byref(gx), None, None, ctypes.byref(ifail))
    else:
        def body(xc, fc, _iuser, _ruser):
            fc[0] = f(xc[0])
        callback = FUNCT1(body)
        routine('E04ABF')(callback, address('E04_ADAPT_FUNCT1'), ctypes.byref(e1), ctypes.byref(e2),
                          ctypes.byref(lo), ctypes.byref(hi), ctypes.byref(maxcal), ctypes.byref(x),
                          ctypes.byref(fx), None, None, ctypes.byref(ifail))
    return ifail.value, x.value, fx.value, maxcal.value


class LineMinimum(unittest.TestCase):
    def test_same_minimum_as_brent(self):
        for name, f, df, a, b in PROBLEMS:
            theirs = minimize_scalar(f, bounds=(a, b), method='bounded', options={'xatol': 1e-10})
            for with_derivative in (False, True):
                with self.subTest(problem=name, derivative=with_derivative):
                    ifail, x, fx, calls = ours(f, df, a, b, with_derivative)
                    self.assertEqual(ifail, 0)
                    # Both stop at about sqrt(eps) relative in x, so agreement is to that order; the
                    # values agree far more closely because the minimum is flat.
                    self.assertLess(abs(x - theirs.x), 1e-6 * (1 + abs(theirs.x)))
                    self.assertLessEqual(fx, theirs.fun + 1e-12 * (1 + abs(theirs.fun)))
                    self.assertLessEqual(calls, 2 * theirs.nfev + 5)


if __name__ == '__main__':
    unittest.main()
