"""Test problems of Moré, Garbow and Hillstrom (ACM TOMS 7, 1981) as residual vectors, numbered as in the
paper.  Each residual function takes real or complex x, so the Jacobian comes by the complex step: exact
to rounding, and independent of any difference scheme the solvers use."""
import numpy as np


def rosenbrock(x):  # 1
    return np.array([10 * (x[1] - x[0] ** 2), 1 - x[0]])


def freudenstein_roth(x):  # 2
    return np.array([-13 + x[0] + ((5 - x[1]) * x[1] - 2) * x[1], -29 + x[0] + ((x[1] + 1) * x[1] - 14) * x[1]])


def beale(x):  # 5
    return np.array([y - x[0] * (1 - x[1] ** i) for i, y in ((1, 1.5), (2, 2.25), (3, 2.625))])


def jennrich_sampson(x):  # 6
    i = np.arange(1.0, 11.0)
    return 2 + 2 * i - (np.exp(i * x[0]) + np.exp(i * x[1]))


def helical_valley(x):  # 7
    with np.errstate(divide='ignore', invalid='ignore'):  # a search may try x1 = 0
        theta = np.arctan(x[1] / x[0]) / (2 * np.pi) + (0.5 if np.real(x[0]) < 0 else 0.0)
    return np.array([10 * (x[2] - 10 * theta), 10 * (np.sqrt(x[0] ** 2 + x[1] ** 2) - 1), x[2]])


_BARD_Y = np.array([0.14, 0.18, 0.22, 0.25, 0.29, 0.32, 0.35, 0.39, 0.37, 0.58, 0.73, 0.96, 1.34, 2.10, 4.39])


def bard(x):  # 8
    u = np.arange(1.0, 16.0)
    v = 16 - u
    return _BARD_Y - (x[0] + u / (v * x[1] + np.minimum(u, v) * x[2]))


_MEYER_Y = np.array([34780, 28610, 23650, 19630, 16370, 13720, 11540, 9744, 8261, 7030, 6005, 5147, 4427, 3820,
                     3307, 2872], dtype=float)


def meyer(x):  # 10
    t = 45 + 5 * np.arange(1.0, 17.0)
    return x[0] * np.exp(x[1] / (t + x[2])) - _MEYER_Y


def box3(x):  # 12
    t = 0.1 * np.arange(1.0, 11.0)
    return np.exp(-t * x[0]) - np.exp(-t * x[1]) - x[2] * (np.exp(-t) - np.exp(-10 * t))


def powell_singular(x):  # 13
    return np.array([x[0] + 10 * x[1], np.sqrt(5) * (x[2] - x[3]), (x[1] - 2 * x[2]) ** 2,
                     np.sqrt(10) * (x[0] - x[3]) ** 2])


def wood(x):  # 14
    return np.array([10 * (x[1] - x[0] ** 2), 1 - x[0], np.sqrt(90) * (x[3] - x[2] ** 2), 1 - x[2],
                     np.sqrt(10) * (x[1] + x[3] - 2), (x[1] - x[3]) / np.sqrt(10)])


_KOWALIK_Y = np.array([0.1957, 0.1947, 0.1735, 0.1600, 0.0844, 0.0627, 0.0456, 0.0342, 0.0323, 0.0235, 0.0246])
_KOWALIK_U = np.array([4.0, 2.0, 1.0, 0.5, 0.25, 0.167, 0.125, 0.1, 0.0833, 0.0714, 0.0625])


def kowalik_osborne(x):  # 15
    u = _KOWALIK_U
    return _KOWALIK_Y - x[0] * (u * u + u * x[1]) / (u * u + u * x[2] + x[3])


def brown_dennis(x):  # 16
    t = np.arange(1.0, 21.0) / 5
    return (x[0] + t * x[1] - np.exp(t)) ** 2 + (x[2] + x[3] * np.sin(t) - np.cos(t)) ** 2


_OSBORNE1_Y = np.array([0.844, 0.908, 0.932, 0.936, 0.925, 0.908, 0.881, 0.850, 0.818, 0.784, 0.751, 0.718,
                        0.685, 0.658, 0.628, 0.603, 0.580, 0.558, 0.538, 0.522, 0.506, 0.490, 0.478, 0.467,
                        0.457, 0.448, 0.438, 0.431, 0.424, 0.420, 0.414, 0.411, 0.406])


def osborne1(x):  # 17
    t = 10 * np.arange(33.0)
    return _OSBORNE1_Y - (x[0] + x[1] * np.exp(-t * x[3]) + x[2] * np.exp(-t * x[4]))


def watson(x):  # 20, 31 residuals for any n
    t = np.arange(1.0, 30.0)[:, None] / 29
    j = np.arange(len(x))
    s1 = (j[1:] * t ** (j[1:] - 1)) @ x[1:]
    s2 = (t ** j) @ x
    return np.concatenate([s1 - s2 ** 2 - 1, [x[0], x[1] - x[0] ** 2 - 1]])


# name -> (residuals, start)
PROBLEMS = {
    'Rosenbrock': (rosenbrock, [-1.2, 1.0]),
    'FreudensteinRoth': (freudenstein_roth, [0.5, -2.0]),
    'Beale': (beale, [1.0, 1.0]),
    'JennrichSampson': (jennrich_sampson, [0.3, 0.4]),
    'HelicalValley': (helical_valley, [-1.0, 0.0, 0.0]),
    'Bard': (bard, [1.0, 1.0, 1.0]),
    'Meyer': (meyer, [0.02, 4000.0, 250.0]),
    'Box3': (box3, [0.0, 10.0, 20.0]),
    'PowellSingular': (powell_singular, [3.0, -1.0, 0.0, 1.0]),
    'Wood': (wood, [-3.0, -1.0, -3.0, -1.0]),
    'KowalikOsborne': (kowalik_osborne, [0.25, 0.39, 0.415, 0.39]),
    'BrownDennis': (brown_dennis, [25.0, 5.0, -5.0, -1.0]),
    'Osborne1': (osborne1, [0.5, 1.5, -1.0, 0.01, 0.02]),
    'Watson6': (watson, [0.0] * 6),
}


def jacobian(residuals, x):
    """d f_i / d x_j by the complex step: no cancellation, so exact to rounding for these functions."""
    x = np.asarray(x, dtype=float)
    h = 1e-20
    columns = []
    for j in range(x.size):
        z = x.astype(complex)
        z[j] += 1j * h
        columns.append(np.imag(residuals(z)) / h)
    return np.column_stack(columns)


def sum_of_squares(residuals):
    """f = sum r_i^2 and its gradient 2 J'r, for the general minimisers."""
    def value(x):
        r = residuals(np.asarray(x, dtype=float))
        return float(r @ r)

    def gradient(x):
        r = residuals(np.asarray(x, dtype=float))
        return 2 * jacobian(residuals, x).T @ r
    return value, gradient
