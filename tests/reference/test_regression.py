"""g02dac against statsmodels' OLS and WLS on designs made here at a fixed seed: every statistic the
fit returns, and R^2 and F formed from its RSS, degrees of freedom and rank as statsmodels forms them."""
import ctypes
import unittest

import numpy as np
import statsmodels.api as sm

from zek2ref import doubles, ints, ptr, relative_difference, routine

MEAN_INCLUDE, MEAN_ZERO = 1001, 1002


class ZekFail(ctypes.Structure):
    _fields_ = [('code', ctypes.c_int32), ('print', ctypes.c_uint8), ('message', ctypes.c_char * 515),
                ('handler', ctypes.c_void_p), ('errnum', ctypes.c_int32)]


def designs():
    """(name, X, y, weights or None, with mean, tolerance of the fit, agreement asked).  The agreement is
    some hundred times what was measured; on the badly scaled design the difference is statsmodels' own
    error (its coefficients are 2.5e-13 from a 50-digit solution, ours 1e-16)."""
    rng = np.random.default_rng(20)

    def response(x, noise=0.5):
        return x @ rng.uniform(-3, 3, x.shape[1]) + 1.5 + noise * rng.standard_normal(x.shape[0])

    x1 = rng.standard_normal((40, 3))
    x2 = rng.uniform(1, 10, (30, 2))
    x3 = rng.standard_normal((50, 4)) * [1, 10, 100, 0.01]
    t = rng.standard_normal(60)
    # A second column that differs from the first by 1e-6: the condition of R is near 1e6 and both fits
    # lose that many digits in the coefficients, not in what they predict.
    x4 = np.column_stack([t, t + 1e-6 * rng.standard_normal(60), rng.standard_normal(60)])
    x5 = rng.standard_normal((35, 2))
    x5 = np.column_stack([x5, x5[:, 0] - 2 * x5[:, 1]])  # the third column is a combination: rank 3 of 4
    return [
        ('ols_with_mean', x1, response(x1), None, True, 0.0, 1e-12),
        ('ols_through_origin', x2, response(x2), None, False, 0.0, 1e-12),
        ('wls_badly_scaled', x3, response(x3), rng.uniform(0.2, 3.0, 50), True, 0.0, 1e-11),
        ('wls_through_origin', x2, response(x2, 2.0), rng.uniform(0.5, 2.0, 30), False, 0.0, 1e-12),
        ('near_collinear', x4, response(x4), None, True, 0.0, 1e-8),
        ('rank_deficient', x5, response(x5), None, True, 1e-10, 1e-12),
    ]


def ours(x, y, wt, mean, tol):
    n, m = x.shape
    ip = m + mean
    b, se, cov, res, h, q, p = (doubles(np.zeros(size))
                                for size in (ip, ip, ip * (ip + 1) // 2, n, n, (n, ip + 1), 2 * ip + ip * ip))
    rss, df, svd, rank, fail = ctypes.c_double(), ctypes.c_double(), ctypes.c_int(), ctypes.c_int(), ZekFail()
    xs, ys, ws, isx = doubles(x), doubles(y), None if wt is None else doubles(wt), ints(np.ones(m))
    routine('g02dac')(MEAN_INCLUDE if mean else MEAN_ZERO, n, m, ptr(xs), n, ptr(isx), ip, ptr(ys), ptr(ws),
                      ctypes.byref(rss), ctypes.byref(df), ptr(b), ptr(se), ptr(cov), ptr(res), ptr(h), ptr(q), n,
                      ctypes.byref(svd), ctypes.byref(rank), ptr(p), ctypes.c_double(tol), None, ctypes.byref(fail))
    j, i = np.tril_indices(ip)  # the upper triangle packed by columns: (i, j) for j = 0.., i = 0..j
    full = np.zeros((ip, ip))
    full[i, j] = full[j, i] = cov
    return fail.code, dict(b=b, se=se, rss=rss.value, df=df.value, rank=rank.value, svd=svd.value, cov=full,
                           res=res, h=h)


def statistics(y, wt, mean, rss, df, rank):
    """R^2 and F as statsmodels defines them: sums of squares about the weighted mean with a constant
    term, about zero without."""
    w = np.ones_like(y) if wt is None else wt
    centre = np.average(y, weights=w) if mean else 0.0
    tss = float(np.sum(w * (y - centre) ** 2))
    df_model = rank - (1 if mean else 0)
    return 1.0 - rss / tss, ((tss - rss) / df_model) / (rss / df)


class RegressionAgainstStatsmodels(unittest.TestCase):
    def test_every_statistic(self):
        for name, x, y, wt, mean, tol, agree in designs():
            with self.subTest(design=name):
                code, got = ours(x, y, wt, mean, tol)
                self.assertEqual(code, 0)
                design = sm.add_constant(x, prepend=True, has_constant='add') if mean else x
                fit = (sm.OLS(y, design) if wt is None else sm.WLS(y, design, weights=wt)).fit()
                self.assertEqual(got['rank'], fit.model.rank)
                self.assertEqual(got['svd'], int(fit.model.rank < design.shape[1]))
                self.assertEqual(got['df'], fit.df_resid)
                r2, f = statistics(y, wt, mean, got['rss'], got['df'], got['rank'])
                # The hat diagonal of the whitened design, w x'(X'WX)^+ x: statsmodels' influence measure
                # leaves one factor sqrt(w) out for weighted fits.
                leverage = (fit.model.wexog * fit.model.pinv_wexog.T).sum(1)
                scale = max(np.max(np.abs(y)), 1.0)
                pairs = [('b', got['b'], fit.params), ('se', got['se'], fit.bse), ('rss', got['rss'], fit.ssr),
                         ('r2', r2, fit.rsquared), ('f', f, fit.fvalue), ('cov', got['cov'], fit.cov_params()),
                         ('res', got['res'] / scale, fit.resid / scale), ('h', got['h'], leverage)]
                for what, a, b in pairs:
                    self.assertLess(relative_difference(a, b), agree, what)


if __name__ == '__main__':
    unittest.main()
