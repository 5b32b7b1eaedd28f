"""What the reference scripts share: the built library loaded through ctypes as a host loads it, its
routines bound by the names the public headers give their export symbols, and arrays passed the way a
host passes them (column order, 32-bit integers, scalars by address)."""
import ctypes
import os
import pathlib
import sys
import unittest

import numpy as np
from scipy.optimize import minimize

_root = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(_root / 'cmake'))
from export_table import scan_headers  # noqa: E402

library = ctypes.CDLL(os.environ['ZEK2_LIBRARY'])
_symbols = {name: symbol for _, name, symbol in scan_headers(_root / 'include' / 'zek2')}


def routine(name, restype=None):
    """The library's routine NAME (as the headers name it), bound by its export symbol."""
    function = getattr(library, _symbols[name])
    function.restype = restype
    return function


def address(name):
    """The address of routine NAME, for arguments that take a routine of the library (the adaptors)."""
    return ctypes.cast(getattr(library, _symbols[name]), ctypes.c_void_p)


def doubles(values, shape=None):
    """A column-ordered float64 copy of VALUES that the library may write into."""
    array = np.array(values, dtype=np.float64, order='F')
    return array.reshape(shape, order='F') if shape is not None else array


def ints(values):
    return np.array(values, dtype=np.int32)


def ptr(array):
    """The address of ARRAY's data; None passes a null pointer."""
    return None if array is None else array.ctypes.data_as(ctypes.c_void_p)


def view(address, shape, ctype=ctypes.c_double):
    """The array of SHAPE (column order) at ADDRESS, as a callback receives it, writable in place."""
    return np.ctypeslib.as_array(ctypes.cast(address, ctypes.POINTER(ctype)), shape[::-1]).T


def scalar(value):
    """A scalar passed by address: an int for a Python int, a double for a float."""
    return ctypes.c_int(value) if isinstance(value, int) else ctypes.c_double(value)


def relative_difference(ours, theirs):
    """max |ours - theirs| / max(1, |theirs|) over the elements."""
    ours, theirs = np.asarray(ours, dtype=float), np.asarray(theirs, dtype=float)
    return float(np.max(np.abs(ours - theirs) / np.maximum(1.0, np.abs(theirs))))


def ref(*values):
    """Scalars passed by address (see scalar), in order."""
    return [ctypes.byref(scalar(v)) for v in values]


class Options:
    """The state arrays of comprehensive solver SOLVER ("E04NCA", "E04UCA" ...) as E04WBA leaves them,
    then each of LINES applied through the solver's option routine SETTER ("E04NEF" ...) with the list
    flag off.  state() gives the three arrays the solver takes last before IFAIL."""

    def __init__(self, solver, setter, lines=()):
        self.lwsav, self.iwsav, self.rwsav = ints([0] * 120), ints([0] * 610), doubles([0.0] * 475)
        cwsav, ifail = ctypes.create_string_buffer(80), ctypes.c_int(0)
        routine('E04WBA_PLAIN')(solver.encode(), cwsav, *ref(1), ptr(self.lwsav), *ref(120), ptr(self.iwsav),
                                *ref(610), ptr(self.rwsav), *ref(475), ctypes.byref(ifail))
        assert ifail.value == 0, (solver, ifail.value)
        for line in lines:
            inform = ctypes.c_int(0)
            routine(setter + '_PLAIN')(line.encode(), *self.state(), ctypes.byref(inform), len(line))
            assert inform.value == 0, (line, inform.value)

    def state(self):
        return ptr(self.lwsav), ptr(self.iwsav), ptr(self.rwsav)


BIG = 1e20  # a bound at or beyond the infinite bound size counts as absent


class FirstOrder(unittest.TestCase):
    def assert_first_order(self, gradient, rows, x, bl, bu, clamda, istate, tol=1e-8, values=None):
        """The first-order conditions at X of  min f  s.t.  BL <= VALUES <= BU  with ROWS the gradients of
        the constraint values (VALUES = ROWS x when not given): feasibility, g = ROWS' lambda, lambda >= 0
        only on lower bounds and <= 0 only on upper bounds, and ISTATE 1, 2, 3 naming the bound the row
        sits on."""
        v = rows @ x if values is None else values
        lo, hi = np.where(np.less_equal(bl, -BIG), -np.inf, bl), np.where(np.greater_equal(bu, BIG), np.inf, bu)
        scale, slack = 1.0 + np.max(np.abs(gradient)), tol * (1.0 + np.abs(v))
        self.assertTrue(np.all(v >= lo - slack) and np.all(v <= hi + slack), 'infeasible')
        self.assertLess(np.max(np.abs(gradient - rows.T @ clamda)), tol * scale, 'stationarity')
        self.assertTrue(np.all((v - lo <= slack)[clamda > tol * scale]), 'lower complementarity')
        self.assertTrue(np.all((hi - v <= slack)[clamda < -tol * scale]), 'upper complementarity')
        for j, s in enumerate(istate):
            if s in (1, 2, 3):
                self.assertLess(abs(v[j] - (hi[j] if s == 2 else lo[j])), slack[j], f'ISTATE({j + 1}) = {s}')


def slsqp(f, gradient, x0, bl, bu, rows, jacobian, ftol=1e-15):
    """SciPy's SLSQP on  min f  s.t.  BL <= (x ; rows(x)) <= BU  (bounds as the library takes them),
    rows(x) and jacobian(x) giving the general constraints and their Jacobian."""
    n, cons = len(x0), []
    for i in range(len(bl) - n):
        lo, hi = bl[n + i], bu[n + i]
        for kind, side, sign in (('eq', lo, 1), ) if lo == hi else (('ineq', lo, 1), ('ineq', hi, -1)):
            if abs(side) < BIG:
                cons.append({'type': kind, 'fun': lambda x, i=i, v=side, s=sign: s * (rows(x)[i] - v),
                             'jac': lambda x, i=i, s=sign: s * jacobian(x)[i]})
    finite = lambda v: None if abs(v) >= BIG else v
    return minimize(f, np.array(x0, float), jac=gradient, method='SLSQP', constraints=cons,
                    bounds=[(finite(lo), finite(hi)) for lo, hi in zip(bl[:n], bu[:n])],
                    options={'ftol': ftol, 'maxiter': 1000})
