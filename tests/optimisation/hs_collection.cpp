// The problems of hs_collection.h.  Each entry: name, n, equalities, inequalities, start, lower and
// upper bounds, published optimal value, objective, constraints (equalities first, then c(x) >= 0).
#include "hs_collection.h"

#include <algorithm>
#include <initializer_list>

namespace zek_test::hs {

namespace {

constexpr double I = kInf;
const double kSqrt2 = std::sqrt(2.0), kSqrt3 = std::sqrt(3.0);
const double kPi = std::acos(-1.0);

void put(Dual *c, std::initializer_list<Dual> v) { std::copy(v.begin(), v.end(), c); }
// Most problems are one expression for the objective and a list of constraint values: these two
// write them as the functions the table holds.
#define F(...) [](const Dual *x) { return Dual(__VA_ARGS__); }
#define C(...) [](const Dual *x, Dual *c) { put(c, {__VA_ARGS__}); }

Dual rosenbrock(const Dual *x) { return 100.0 * sq(x[1] - sq(x[0])) + sq(1.0 - x[0]); }
// HS053 takes the objective of HS051 and the constraints of HS052.
Dual hs051_objective(const Dual *x) {
    return sq(x[0] - x[1]) + sq(x[1] + x[2] - 2.0) + sq(x[3] - 1.0) + sq(x[4] - 1.0);
}
Dual hs052_objective(const Dual *x) {
    return sq(4.0 * x[0] - x[1]) + sq(x[1] + x[2] - 2.0) + sq(x[3] - 1.0) + sq(x[4] - 1.0);
}
void hs052_constraints(const Dual *x, Dual *c) {
    put(c, {x[0] + 3.0 * x[1], x[2] + x[3] - 2.0 * x[4], x[1] - x[4]});
}
// HS074 and HS075 differ only in the bound a on |x3 - x4| and on x3, x4.
Dual hs074_objective(const Dual *x) {
    return 3.0 * x[0] + 1e-6 * x[0] * x[0] * x[0] + 2.0 * x[1] + (2e-6 / 3.0) * x[1] * x[1] * x[1];
}
template <int A>
void hs074_constraints(const Dual *x, Dual *c) {
    const double a = A / 100.0;
    put(c, {1000.0 * sin(-x[2] - 0.25) + 1000.0 * sin(-x[3] - 0.25) + 894.8 - x[0],
            1000.0 * sin(x[2] - 0.25) + 1000.0 * sin(x[2] - x[3] - 0.25) + 894.8 - x[1],
            1000.0 * sin(x[3] - 0.25) + 1000.0 * sin(x[3] - x[2] - 0.25) + 1294.8, x[3] - x[2] + a,
            x[2] - x[3] + a});
}
// HS080 and HS081 share their constraints.
void hs080_constraints(const Dual *x, Dual *c) {
    put(c, {sq(x[0]) + sq(x[1]) + sq(x[2]) + sq(x[3]) + sq(x[4]) - 10.0, x[1] * x[2] - 5.0 * x[3] * x[4],
            x[0] * x[0] * x[0] + x[1] * x[1] * x[1] + 1.0});
}
// HS104 bounds its own objective.
Dual hs104_objective(const Dual *x) {
    return 0.4 * pow(x[0], 0.67) * pow(x[6], -0.67) + 0.4 * pow(x[1], 0.67) * pow(x[7], -0.67) + 10.0 - x[0] -
           x[1];
}
void hs104_constraints(const Dual *x, Dual *c) {
    const Dual f = hs104_objective(x);
    put(c, {1.0 - 0.0588 * x[4] * x[6] - 0.1 * x[0], 1.0 - 0.0588 * x[5] * x[7] - 0.1 * x[0] - 0.1 * x[1],
            1.0 - 4.0 * x[2] / x[4] - 2.0 * pow(x[2], -0.71) / x[4] - 0.0588 * pow(x[2], -1.3) * x[6],
            1.0 - 4.0 * x[3] / x[5] - 2.0 * pow(x[3], -0.71) / x[5] - 0.0588 * pow(x[3], -1.3) * x[7],
            f - 0.1, 4.2 - f});
}
Dual product(const Dual *x, int n) {
    Dual p = x[0];
    for (int j = 1; j < n; ++j) p = p * x[j];
    return p;
}
// The free energies of HS111 and HS112.
constexpr double kEnergy[10] = {-6.089,  -17.164, -34.054, -5.914,  -24.721,
                                -14.986, -24.1,   -10.708, -26.662, -22.179};

std::vector<double> fill(int n, double v) { return std::vector<double>(static_cast<std::size_t>(n), v); }

} // namespace

const std::vector<Problem> &collection() {
    static const std::vector<Problem> table = {
        {"HS001", 2, 0, 0, {-2, 1}, {-I, -1.5}, {I, I}, 0.0, rosenbrock, nullptr},
        {"HS002", 2, 0, 0, {-2, 1}, {-I, 1.5}, {I, I}, 0.0504261879, rosenbrock, nullptr},
        {"HS003", 2, 0, 0, {10, 1}, {-I, 0}, {I, I}, 0.0, F(x[1] + 1e-5 * sq(x[1] - x[0])), nullptr},
        {"HS004", 2, 0, 0, {1.125, 0.125}, {1, 0}, {I, I}, 8.0 / 3.0,
            F((x[0] + 1.0) * (x[0] + 1.0) * (x[0] + 1.0) / 3.0 + x[1]), nullptr},
        {"HS005", 2, 0, 0, {0, 0}, {-1.5, -3}, {4, 3}, -std::sqrt(3.0) / 2.0 - kPi / 3.0,
            F(sin(x[0] + x[1]) + sq(x[0] - x[1]) - 1.5 * x[0] + 2.5 * x[1] + 1.0), nullptr},
        {"HS006", 2, 1, 0, {-1.2, 1}, {-I, -I}, {I, I}, 0.0, F(sq(1.0 - x[0])), C(10.0 * (x[1] - sq(x[0])))},
        {"HS007", 2, 1, 0, {2, 2}, {-I, -I}, {I, I}, -std::sqrt(3.0), F(log(1.0 + sq(x[0])) - x[1]),
            C(sq(1.0 + sq(x[0])) + sq(x[1]) - 4.0)},
        {"HS008", 2, 2, 0, {2, 1}, {-I, -I}, {I, I}, -1.0, [](const Dual *) { return Dual(-1.0); },
            C(sq(x[0]) + sq(x[1]) - 25.0, x[0] * x[1] - 9.0)},
        {"HS009", 2, 1, 0, {0, 0}, {-I, -I}, {I, I}, -0.5, F(sin(kPi * x[0] / 12.0) * cos(kPi * x[1] / 16.0)),
            C(4.0 * x[0] - 3.0 * x[1])},
        {"HS010", 2, 0, 1, {-10, 10}, {-I, -I}, {I, I}, -1.0, F(x[0] - x[1]),
            C(-3.0 * sq(x[0]) + 2.0 * x[0] * x[1] - sq(x[1]) + 1.0)},
        {"HS011", 2, 0, 1, {4.9, 0.1}, {-I, -I}, {I, I}, -8.498464223, F(sq(x[0] - 5.0) + sq(x[1]) - 25.0),
            C(x[1] - sq(x[0]))},
        {"HS012", 2, 0, 1, {0, 0}, {-I, -I}, {I, I}, -30.0,
            F(0.5 * sq(x[0]) + sq(x[1]) - x[0] * x[1] - 7.0 * x[0] - 7.0 * x[1]),
            C(25.0 - 4.0 * sq(x[0]) - sq(x[1]))},
        {"HS014", 2, 1, 1, {2, 2}, {-I, -I}, {I, I}, 9.0 - 23.0 / 8.0 * std::sqrt(7.0),
            F(sq(x[0] - 2.0) + sq(x[1] - 1.0)), C(x[0] - 2.0 * x[1] + 1.0, 1.0 - sq(x[0]) / 4.0 - sq(x[1]))},
        {"HS015", 2, 0, 2, {-2, 1}, {-I, -I}, {0.5, I}, 306.5, rosenbrock,
            C(x[0] * x[1] - 1.0, x[0] + sq(x[1]))},
        {"HS016", 2, 0, 2, {-2, 1}, {-0.5, -I}, {0.5, 1}, 0.25, rosenbrock,
            C(x[0] + sq(x[1]), sq(x[0]) + x[1])},
        {"HS017", 2, 0, 2, {-2, 1}, {-0.5, -I}, {0.5, 1}, 1.0, rosenbrock,
            C(sq(x[1]) - x[0], sq(x[0]) - x[1])},
        {"HS018", 2, 0, 2, {2, 2}, {2, 0}, {50, 50}, 5.0, F(0.01 * sq(x[0]) + sq(x[1])),
            C(x[0] * x[1] - 25.0, sq(x[0]) + sq(x[1]) - 25.0)},
        {"HS019", 2, 0, 2, {20.1, 5.84}, {13, 0}, {100, 100}, -6961.81381,
            F((x[0] - 10.0) * (x[0] - 10.0) * (x[0] - 10.0) + (x[1] - 20.0) * (x[1] - 20.0) * (x[1] - 20.0)),
            C(sq(x[0] - 5.0) + sq(x[1] - 5.0) - 100.0, 82.81 - sq(x[1] - 5.0) - sq(x[0] - 6.0))},
        {"HS020", 2, 0, 3, {-2, 1}, {-0.5, -I}, {0.5, I}, 83.5 - 25.0 * kSqrt3, rosenbrock,
            C(x[0] + sq(x[1]), sq(x[0]) + x[1], sq(x[0]) + sq(x[1]) - 1.0)},
        {"HS021", 2, 0, 1, {-1, -1}, {2, -50}, {50, 50}, -99.96, F(0.01 * sq(x[0]) + sq(x[1]) - 100.0),
            C(10.0 * x[0] - x[1] - 10.0)},
        {"HS022", 2, 0, 2, {2, 2}, {-I, -I}, {I, I}, 1.0, F(sq(x[0] - 2.0) + sq(x[1] - 1.0)),
            C(2.0 - x[0] - x[1], x[1] - sq(x[0]))},
        {"HS023", 2, 0, 5, {3, 1}, {-50, -50}, {50, 50}, 2.0, F(sq(x[0]) + sq(x[1])),
            C(x[0] + x[1] - 1.0, sq(x[0]) + sq(x[1]) - 1.0, 9.0 * sq(x[0]) + sq(x[1]) - 9.0, sq(x[0]) - x[1],
            sq(x[1]) - x[0])},
        {"HS024", 2, 0, 3, {1, 0.5}, {0, 0}, {I, I}, -1.0,
            F((sq(x[0] - 3.0) - 9.0) * x[1] * x[1] * x[1] / (27.0 * kSqrt3)),
            C(x[0] / kSqrt3 - x[1], x[0] + kSqrt3 * x[1], 6.0 - x[0] - kSqrt3 * x[1])},
        {"HS026", 3, 1, 0, {-2.6, 2, 2}, fill(3, -I), fill(3, I), 0.0,
            F(sq(x[0] - x[1]) + sq(sq(x[1] - x[2]))), C((1.0 + sq(x[1])) * x[0] + sq(sq(x[2])) - 3.0)},
        {"HS027", 3, 1, 0, {2, 2, 2}, fill(3, -I), fill(3, I), 0.04,
            F(0.01 * sq(x[0] - 1.0) + sq(x[1] - sq(x[0]))), C(x[0] + sq(x[2]) + 1.0)},
        {"HS028", 3, 1, 0, {-4, 1, 1}, fill(3, -I), fill(3, I), 0.0, F(sq(x[0] + x[1]) + sq(x[1] + x[2])),
            C(x[0] + 2.0 * x[1] + 3.0 * x[2] - 1.0)},
        {"HS029", 3, 0, 1, {1, 1, 1}, fill(3, -I), fill(3, I), -16.0 * kSqrt2, F(-(x[0] * x[1] * x[2])),
            C(48.0 - sq(x[0]) - 2.0 * sq(x[1]) - 4.0 * sq(x[2]))},
        {"HS030", 3, 0, 1, {1, 1, 1}, {1, -10, -10}, {10, 10, 10}, 1.0, F(sq(x[0]) + sq(x[1]) + sq(x[2])),
            C(sq(x[0]) + sq(x[1]) - 1.0)},
        {"HS031", 3, 0, 1, {1, 1, 1}, {-10, 1, -10}, {10, 10, 1}, 6.0,
            F(9.0 * sq(x[0]) + sq(x[1]) + 9.0 * sq(x[2])), C(x[0] * x[1] - 1.0)},
        {"HS032", 3, 1, 1, {0.1, 0.7, 0.2}, fill(3, 0), fill(3, I), 1.0,
            F(sq(x[0] + 3.0 * x[1] + x[2]) + 4.0 * sq(x[0] - x[1])),
            C(1.0 - x[0] - x[1] - x[2], 6.0 * x[1] + 4.0 * x[2] - x[0] * x[0] * x[0] - 3.0)},
        {"HS033", 3, 0, 2, {0, 0, 3}, {0, 0, 0}, {I, I, 5}, kSqrt2 - 6.0,
            F((x[0] - 1.0) * (x[0] - 2.0) * (x[0] - 3.0) + x[2]),
            C(sq(x[2]) - sq(x[0]) - sq(x[1]), sq(x[0]) + sq(x[1]) + sq(x[2]) - 4.0)},
        {"HS034", 3, 0, 2, {0, 1.05, 2.9}, {0, 0, 0}, {100, 100, 10}, -std::log(std::log(10.0)), F(-x[0]),
            C(x[1] - exp(x[0]), x[2] - exp(x[1]))},
        {"HS035", 3, 0, 1, {0.5, 0.5, 0.5}, fill(3, 0), fill(3, I), 1.0 / 9.0,
            F(9.0 - 8.0 * x[0] - 6.0 * x[1] - 4.0 * x[2] + 2.0 * sq(x[0]) + 2.0 * sq(x[1]) + sq(x[2]) +
            2.0 * x[0] * x[1] + 2.0 * x[0] * x[2]), C(3.0 - x[0] - x[1] - 2.0 * x[2])},
        {"HS036", 3, 0, 1, {10, 10, 10}, fill(3, 0), {20, 11, 42}, -3300.0, F(-(x[0] * x[1] * x[2])),
            C(72.0 - x[0] - 2.0 * x[1] - 2.0 * x[2])},
        {"HS037", 3, 0, 2, {10, 10, 10}, fill(3, 0), fill(3, 42), -3456.0, F(-(x[0] * x[1] * x[2])),
            C(72.0 - x[0] - 2.0 * x[1] - 2.0 * x[2], x[0] + 2.0 * x[1] + 2.0 * x[2])},
        {"HS038", 4, 0, 0, {-3, -1, -3, -1}, fill(4, -10), fill(4, 10), 0.0,
            F(100.0 * sq(x[1] - sq(x[0])) + sq(1.0 - x[0]) + 90.0 * sq(x[3] - sq(x[2])) + sq(1.0 - x[2]) +
            10.1 * (sq(x[1] - 1.0) + sq(x[3] - 1.0)) + 19.8 * (x[1] - 1.0) * (x[3] - 1.0)), nullptr},
        {"HS039", 4, 2, 0, {2, 2, 2, 2}, fill(4, -I), fill(4, I), -1.0, F(-x[0]),
            C(x[1] - x[0] * x[0] * x[0] - sq(x[2]), sq(x[0]) - x[1] - sq(x[3]))},
        {"HS040", 4, 3, 0, fill(4, 0.8), fill(4, -I), fill(4, I), -0.25, F(-product(x, 4)),
            C(x[0] * x[0] * x[0] + sq(x[1]) - 1.0, sq(x[0]) * x[3] - x[2], sq(x[3]) - x[1])},
        {"HS041", 4, 1, 0, fill(4, 2), fill(4, 0), {1, 1, 1, 2}, 52.0 / 27.0, F(2.0 - x[0] * x[1] * x[2]),
            C(x[0] + 2.0 * x[1] + 2.0 * x[2] - x[3])},
        {"HS042", 4, 2, 0, fill(4, 1), fill(4, -I), fill(4, I), 28.0 - 10.0 * kSqrt2,
            F(sq(x[0] - 1.0) + sq(x[1] - 2.0) + sq(x[2] - 3.0) + sq(x[3] - 4.0)),
            C(x[0] - 2.0, sq(x[2]) + sq(x[3]) - 2.0)},
        {"HS043", 4, 0, 3, fill(4, 0), fill(4, -I), fill(4, I), -44.0,
            F(sq(x[0]) + sq(x[1]) + 2.0 * sq(x[2]) + sq(x[3]) - 5.0 * x[0] - 5.0 * x[1] - 21.0 * x[2] +
            7.0 * x[3]),
            C(8.0 - sq(x[0]) - sq(x[1]) - sq(x[2]) - sq(x[3]) - x[0] + x[1] - x[2] + x[3],
            10.0 - sq(x[0]) - 2.0 * sq(x[1]) - sq(x[2]) - 2.0 * sq(x[3]) + x[0] + x[3],
            5.0 - 2.0 * sq(x[0]) - sq(x[1]) - sq(x[2]) - 2.0 * x[0] + x[1] + x[3])},
        {"HS044", 4, 0, 6, fill(4, 0), fill(4, 0), fill(4, I), -15.0,
            F(x[0] - x[1] - x[2] - x[0] * x[2] + x[0] * x[3] + x[1] * x[2] - x[1] * x[3]),
            C(8.0 - x[0] - 2.0 * x[1], 12.0 - 4.0 * x[0] - x[1], 12.0 - 3.0 * x[0] - 4.0 * x[1],
            8.0 - 2.0 * x[2] - x[3], 8.0 - x[2] - 2.0 * x[3], 5.0 - x[2] - x[3])},
        {"HS045", 5, 0, 0, fill(5, 2), fill(5, 0), {1, 2, 3, 4, 5}, 1.0, F(2.0 - product(x, 5) / 120.0),
            nullptr},
        {"HS046", 5, 2, 0, {0.5 * kSqrt2, 1.75, 0.5, 2, 2}, fill(5, -I), fill(5, I), 0.0,
            F(sq(x[0] - x[1]) + sq(x[2] - 1.0) + sq(sq(x[3] - 1.0)) + sq(sq(x[4] - 1.0)) * sq(x[4] - 1.0)),
            C(sq(x[0]) * x[3] + sin(x[3] - x[4]) - 1.0, x[1] + sq(sq(x[2])) * sq(x[3]) - 2.0)},
        {"HS047", 5, 3, 0, {2, kSqrt2, -1, 2 - kSqrt2, 0.5}, fill(5, -I), fill(5, I), 0.0,
            F(sq(x[0] - x[1]) + sq(x[1] - x[2]) * (x[1] - x[2]) + sq(sq(x[2] - x[3])) + sq(sq(x[3] - x[4]))),
            C(x[0] + sq(x[1]) + x[2] * x[2] * x[2] - 3.0, x[1] - sq(x[2]) + x[3] - 1.0, x[0] * x[4] - 1.0)},
        {"HS048", 5, 2, 0, {3, 5, -3, 2, -2}, fill(5, -I), fill(5, I), 0.0,
            F(sq(x[0] - 1.0) + sq(x[1] - x[2]) + sq(x[3] - x[4])),
            C(x[0] + x[1] + x[2] + x[3] + x[4] - 5.0, x[2] - 2.0 * (x[3] + x[4]) + 3.0)},
        {"HS049", 5, 2, 0, {10, 7, 2, -3, 0.8}, fill(5, -I), fill(5, I), 0.0,
            F(sq(x[0] - x[1]) + sq(x[2] - 1.0) + sq(sq(x[3] - 1.0)) + sq(sq(x[4] - 1.0)) * sq(x[4] - 1.0)),
            C(x[0] + x[1] + x[2] + 4.0 * x[3] - 7.0, x[2] + 5.0 * x[4] - 6.0)},
        {"HS050", 5, 3, 0, {35, -31, 11, 5, -5}, fill(5, -I), fill(5, I), 0.0,
            F(sq(x[0] - x[1]) + sq(x[1] - x[2]) + sq(sq(x[2] - x[3])) + sq(x[3] - x[4])),
            C(x[0] + 2.0 * x[1] + 3.0 * x[2] - 6.0, x[1] + 2.0 * x[2] + 3.0 * x[3] - 6.0,
            x[2] + 2.0 * x[3] + 3.0 * x[4] - 6.0)},
        {"HS051", 5, 3, 0, {2.5, 0.5, 2, -1, 0.5}, fill(5, -I), fill(5, I), 0.0, hs051_objective,
            C(x[0] + 3.0 * x[1] - 4.0, x[2] + x[3] - 2.0 * x[4], x[1] - x[4])},
        {"HS052", 5, 3, 0, fill(5, 2), fill(5, -I), fill(5, I), 1859.0 / 349.0, hs052_objective,
            hs052_constraints},
        {"HS053", 5, 3, 0, fill(5, 2), fill(5, -10), fill(5, 10), 176.0 / 43.0, hs051_objective,
            hs052_constraints},
        {"HS056", 7, 4, 0,
            {1, 1, 1, std::asin(std::sqrt(1 / 4.2)), std::asin(std::sqrt(1 / 4.2)),
            std::asin(std::sqrt(1 / 4.2)), std::asin(std::sqrt(5 / 7.2))}, fill(7, -I), fill(7, I), -3.456,
            F(-(x[0] * x[1] * x[2])),
            C(x[0] - 4.2 * sq(sin(x[3])), x[1] - 4.2 * sq(sin(x[4])), x[2] - 4.2 * sq(sin(x[5])),
            x[0] + 2.0 * x[1] + 2.0 * x[2] - 7.2 * sq(sin(x[6])))},
        {"HS060", 3, 1, 0, fill(3, 2), fill(3, -10), fill(3, 10), 0.03256820025,
            F(sq(x[0] - 1.0) + sq(x[0] - x[1]) + sq(sq(x[1] - x[2]))),
            C(x[0] * (1.0 + sq(x[1])) + sq(sq(x[2])) - 4.0 - 3.0 * kSqrt2)},
        {"HS061", 3, 2, 0, fill(3, 0), fill(3, -I), fill(3, I), -143.6461422,
            F(4.0 * sq(x[0]) + 2.0 * sq(x[1]) + 2.0 * sq(x[2]) - 33.0 * x[0] + 16.0 * x[1] - 24.0 * x[2]),
            C(3.0 * x[0] - 2.0 * sq(x[1]) - 7.0, 4.0 * x[0] - sq(x[2]) - 11.0)},
        {"HS062", 3, 1, 0, {0.7, 0.2, 0.1}, fill(3, 0), fill(3, 1), -26272.51448,
            [](const Dual *x) {
                const Dual b1 = x[0] + x[1] + x[2] + 0.03, c1 = 0.09 * x[0] + x[1] + x[2] + 0.03;
                const Dual b2 = x[1] + x[2] + 0.03, c2 = 0.07 * x[1] + x[2] + 0.03;
                const Dual b3 = x[2] + 0.03, c3 = 0.13 * x[2] + 0.03;
                return -32.174 * (255.0 * log(b1 / c1) + 280.0 * log(b2 / c2) + 290.0 * log(b3 / c3));
            },
            C(x[0] + x[1] + x[2] - 1.0)},
        {"HS063", 3, 2, 0, fill(3, 2), fill(3, 0), fill(3, I), 961.7151721,
            F(1000.0 - sq(x[0]) - 2.0 * sq(x[1]) - sq(x[2]) - x[0] * x[1] - x[0] * x[2]),
            C(8.0 * x[0] + 14.0 * x[1] + 7.0 * x[2] - 56.0, sq(x[0]) + sq(x[1]) + sq(x[2]) - 25.0)},
        {"HS064", 3, 0, 1, fill(3, 1), fill(3, 1e-5), fill(3, I), 6299.842428,
            F(5.0 * x[0] + 50000.0 / x[0] + 20.0 * x[1] + 72000.0 / x[1] + 10.0 * x[2] + 144000.0 / x[2]),
            C(1.0 - 4.0 / x[0] - 32.0 / x[1] - 120.0 / x[2])},
        {"HS065", 3, 0, 1, {-5, 5, 0}, {-4.5, -4.5, -5}, {4.5, 4.5, 5}, 0.9535288567,
            F(sq(x[0] - x[1]) + sq(x[0] + x[1] - 10.0) / 9.0 + sq(x[2] - 5.0)),
            C(48.0 - sq(x[0]) - sq(x[1]) - sq(x[2]))},
        {"HS066", 3, 0, 2, {0, 1.05, 2.9}, fill(3, 0), {100, 100, 10}, 0.5181632741,
            F(0.2 * x[2] - 0.8 * x[0]), C(x[1] - exp(x[0]), x[2] - exp(x[1]))},
        {"HS071", 4, 1, 1, {1, 5, 5, 1}, fill(4, 1), fill(4, 5), 17.0140173,
            F(x[0] * x[3] * (x[0] + x[1] + x[2]) + x[2]),
            C(sq(x[0]) + sq(x[1]) + sq(x[2]) + sq(x[3]) - 40.0, product(x, 4) - 25.0)},
        {"HS072", 4, 0, 2, fill(4, 1), fill(4, 0.001), {4e5, 3e5, 2e5, 1e5}, 727.67937,
            F(1.0 + x[0] + x[1] + x[2] + x[3]),
            C(0.0401 - 4.0 / x[0] - 2.25 / x[1] - 1.0 / x[2] - 0.25 / x[3],
            0.010085 - 0.16 / x[0] - 0.36 / x[1] - 0.64 / x[2] - 0.64 / x[3])},
        {"HS073", 4, 1, 2, fill(4, 1), fill(4, 0), fill(4, I), 29.894378,
            F(24.55 * x[0] + 26.75 * x[1] + 39.0 * x[2] + 40.5 * x[3]),
            C(x[0] + x[1] + x[2] + x[3] - 1.0, 2.3 * x[0] + 5.6 * x[1] + 11.1 * x[2] + 1.3 * x[3] - 5.0,
            12.0 * x[0] + 11.9 * x[1] + 41.8 * x[2] + 52.1 * x[3] - 21.0 -
            1.645 * sqrt(0.28 * sq(x[0]) + 0.19 * sq(x[1]) + 20.5 * sq(x[2]) + 0.62 * sq(x[3])))},
        {"HS074", 4, 3, 2, fill(4, 0), {0, 0, -0.55, -0.55}, {1200, 1200, 0.55, 0.55}, 5126.4981,
            hs074_objective, hs074_constraints<55>},
        {"HS075", 4, 3, 2, fill(4, 0), {0, 0, -0.48, -0.48}, {1200, 1200, 0.48, 0.48}, 5174.4129,
            hs074_objective, hs074_constraints<48>},
        {"HS076", 4, 0, 3, fill(4, 0.5), fill(4, 0), fill(4, I), -4.681818181,
            F(sq(x[0]) + 0.5 * sq(x[1]) + sq(x[2]) + 0.5 * sq(x[3]) - x[0] * x[2] + x[2] * x[3] - x[0] -
            3.0 * x[1] + x[2] - x[3]),
            C(5.0 - x[0] - 2.0 * x[1] - x[2] - x[3], 4.0 - 3.0 * x[0] - x[1] - 2.0 * x[2] + x[3],
            x[1] + 4.0 * x[2] - 1.5)},
        {"HS077", 5, 2, 0, fill(5, 2), fill(5, -I), fill(5, I), 0.24150513,
            F(sq(x[0] - 1.0) + sq(x[0] - x[1]) + sq(x[2] - 1.0) + sq(sq(x[3] - 1.0)) +
            sq(sq(x[4] - 1.0)) * sq(x[4] - 1.0)),
            C(sq(x[0]) * x[3] + sin(x[3] - x[4]) - 2.0 * kSqrt2,
            x[1] + sq(sq(x[2])) * sq(x[3]) - 8.0 - kSqrt2)},
        {"HS078", 5, 3, 0, {-2, 1.5, 2, -1, -1}, fill(5, -I), fill(5, I), -2.91970041, F(product(x, 5)),
            hs080_constraints},
        {"HS079", 5, 3, 0, fill(5, 2), fill(5, -I), fill(5, I), 0.0787768209,
            F(sq(x[0] - 1.0) + sq(x[0] - x[1]) + sq(x[1] - x[2]) + sq(sq(x[2] - x[3])) + sq(sq(x[3] - x[4]))),
            C(x[0] + sq(x[1]) + x[2] * x[2] * x[2] - 2.0 - 3.0 * kSqrt2,
            x[1] - sq(x[2]) + x[3] + 2.0 - 2.0 * kSqrt2, x[0] * x[4] - 2.0)},
        {"HS080", 5, 3, 0, {-2, 2, 2, -1, -1}, {-2.3, -2.3, -3.2, -3.2, -3.2}, {2.3, 2.3, 3.2, 3.2, 3.2},
            0.0539498478, F(exp(product(x, 5))), hs080_constraints},
        {"HS081", 5, 3, 0, {-2, 2, 2, -1, -1}, {-2.3, -2.3, -3.2, -3.2, -3.2}, {2.3, 2.3, 3.2, 3.2, 3.2},
            0.0539498478, F(exp(product(x, 5)) - 0.5 * sq(x[0] * x[0] * x[0] + x[1] * x[1] * x[1] + 1.0)),
            hs080_constraints},
        {"HS083", 5, 0, 6, {78, 33, 27, 27, 27}, {78, 33, 27, 27, 27}, {102, 45, 45, 45, 45}, -30665.53867,
            F(5.3578547 * sq(x[2]) + 0.8356891 * x[0] * x[4] + 37.293239 * x[0] - 40792.141),
            [](const Dual *x, Dual *c) {
                const Dual g1 = 85.334407 + 0.0056858 * x[1] * x[4] + 0.0006262 * x[0] * x[3] -
                                0.0022053 * x[2] * x[4];
                const Dual g2 = 80.51249 + 0.0071317 * x[1] * x[4] + 0.0029955 * x[0] * x[1] +
                                0.0021813 * sq(x[2]) - 90.0;
                const Dual g3 = 9.300961 + 0.0047026 * x[2] * x[4] + 0.0012547 * x[0] * x[2] +
                                0.0019085 * x[2] * x[3] - 20.0;
                put(c, {g1, 92.0 - g1, g2, 20.0 - g2, g3, 5.0 - g3});
            }},
        {"HS100", 7, 0, 4, {1, 2, 0, 4, 0, 1, 1}, fill(7, -I), fill(7, I), 680.6300573,
            F(sq(x[0] - 10.0) + 5.0 * sq(x[1] - 12.0) + sq(sq(x[2])) + 3.0 * sq(x[3] - 11.0) +
            10.0 * sq(x[4] * x[4] * x[4]) + 7.0 * sq(x[5]) + sq(sq(x[6])) - 4.0 * x[5] * x[6] - 10.0 * x[5] -
            8.0 * x[6]),
            C(127.0 - 2.0 * sq(x[0]) - 3.0 * sq(sq(x[1])) - x[2] - 4.0 * sq(x[3]) - 5.0 * x[4],
            282.0 - 7.0 * x[0] - 3.0 * x[1] - 10.0 * sq(x[2]) - x[3] + x[4],
            196.0 - 23.0 * x[0] - sq(x[1]) - 6.0 * sq(x[5]) + 8.0 * x[6],
            -4.0 * sq(x[0]) - sq(x[1]) + 3.0 * x[0] * x[1] - 2.0 * sq(x[2]) - 5.0 * x[5] + 11.0 * x[6])},
        {"HS104", 8, 0, 6, {6, 3, 0.4, 0.2, 6, 6, 1, 0.5}, fill(8, 0.1), fill(8, 10), 3.9511634396,
            hs104_objective, hs104_constraints},
        // The book gives 7049.330923 at its x*; its definitions admit the lower value 7049.248020, to which
        // both E04UCA and SLSQP converge, feasible to 1e-9, so that is the optimum recorded here.
        {"HS106", 8, 0, 6, {5000, 5000, 5000, 200, 350, 150, 225, 425}, {100, 1000, 1000, 10, 10, 10, 10, 10},
            {10000, 10000, 10000, 1000, 1000, 1000, 1000, 1000}, 7049.248020, F(x[0] + x[1] + x[2]),
            C(1.0 - 0.0025 * (x[3] + x[5]), 1.0 - 0.0025 * (x[4] + x[6] - x[3]), 1.0 - 0.01 * (x[7] - x[4]),
            x[0] * x[5] - 833.33252 * x[3] - 100.0 * x[0] + 83333.333,
            x[1] * x[6] - 1250.0 * x[4] - x[1] * x[3] + 1250.0 * x[3],
            x[2] * x[7] - 1250000.0 - x[2] * x[4] + 2500.0 * x[4])},
        {"HS108", 9, 0, 13, fill(9, 1), {-I, -I, -I, -I, -I, -I, -I, -I, 0}, fill(9, I), -0.8660254038,
            F(-0.5 * (x[0] * x[3] - x[1] * x[2] + x[2] * x[8] - x[4] * x[8] + x[4] * x[7] - x[5] * x[6])),
            C(1.0 - sq(x[2]) - sq(x[3]), 1.0 - sq(x[8]), 1.0 - sq(x[4]) - sq(x[5]),
            1.0 - sq(x[0]) - sq(x[1] - x[8]), 1.0 - sq(x[0] - x[4]) - sq(x[1] - x[5]),
            1.0 - sq(x[0] - x[6]) - sq(x[1] - x[7]), 1.0 - sq(x[2] - x[4]) - sq(x[3] - x[5]),
            1.0 - sq(x[2] - x[6]) - sq(x[3] - x[7]), 1.0 - sq(x[6]) - sq(x[7] - x[8]),
            x[0] * x[3] - x[1] * x[2], x[2] * x[8], -(x[4] * x[8]), x[4] * x[7] - x[5] * x[6])},
        {"HS110", 10, 0, 0, fill(10, 9), fill(10, 2.001), fill(10, 9.999), -45.77846971,
            [](const Dual *x) {
                Dual s = 0.0;
                for (int j = 0; j < 10; ++j) s = s + sq(log(x[j] - 2.0)) + sq(log(10.0 - x[j]));
                return s - pow(product(x, 10), 0.2);
            },
            nullptr},
        {"HS111", 10, 3, 0, fill(10, -2.3), fill(10, -100), fill(10, 100), -47.76109026,
            [](const Dual *x) {
                Dual total = 0.0;
                for (int j = 0; j < 10; ++j) total = total + exp(x[j]);
                const Dual lt = log(total);
                Dual s = 0.0;
                for (int j = 0; j < 10; ++j) s = s + exp(x[j]) * (kEnergy[j] + x[j] - lt);
                return s;
            },
            C(exp(x[0]) + 2.0 * exp(x[1]) + 2.0 * exp(x[2]) + exp(x[5]) + exp(x[9]) - 2.0,
              exp(x[3]) + 2.0 * exp(x[4]) + exp(x[5]) + exp(x[6]) - 1.0,
              exp(x[2]) + exp(x[6]) + exp(x[7]) + 2.0 * exp(x[8]) + exp(x[9]) - 1.0)},
        {"HS112", 10, 3, 0, fill(10, 0.1), fill(10, 1e-6), fill(10, I), -47.76109026,
            [](const Dual *x) {
                Dual total = 0.0;
                for (int j = 0; j < 10; ++j) total = total + x[j];
                Dual s = 0.0;
                for (int j = 0; j < 10; ++j) s = s + x[j] * (kEnergy[j] + log(x[j] / total));
                return s;
            },
            C(x[0] + 2.0 * x[1] + 2.0 * x[2] + x[5] + x[9] - 2.0, x[3] + 2.0 * x[4] + x[5] + x[6] - 1.0,
              x[2] + x[6] + x[7] + 2.0 * x[8] + x[9] - 1.0)},
        {"HS113", 10, 0, 8, {2, 3, 5, 5, 1, 2, 7, 3, 6, 10}, fill(10, -I), fill(10, I), 24.3062091,
            F(sq(x[0]) + sq(x[1]) + x[0] * x[1] - 14.0 * x[0] - 16.0 * x[1] + sq(x[2] - 10.0) +
            4.0 * sq(x[3] - 5.0) + sq(x[4] - 3.0) + 2.0 * sq(x[5] - 1.0) + 5.0 * sq(x[6]) +
            7.0 * sq(x[7] - 11.0) + 2.0 * sq(x[8] - 10.0) + sq(x[9] - 7.0) + 45.0),
            C(105.0 - 4.0 * x[0] - 5.0 * x[1] + 3.0 * x[6] - 9.0 * x[7],
            -10.0 * x[0] + 8.0 * x[1] + 17.0 * x[6] - 2.0 * x[7],
            8.0 * x[0] - 2.0 * x[1] - 5.0 * x[8] + 2.0 * x[9] + 12.0,
            -3.0 * sq(x[0] - 2.0) - 4.0 * sq(x[1] - 3.0) - 2.0 * sq(x[2]) + 7.0 * x[3] + 120.0,
            -5.0 * sq(x[0]) - 8.0 * x[1] - sq(x[2] - 6.0) + 2.0 * x[3] + 40.0,
            -0.5 * sq(x[0] - 8.0) - 2.0 * sq(x[1] - 4.0) - 3.0 * sq(x[4]) + x[5] + 30.0,
            -sq(x[0]) - 2.0 * sq(x[1] - 2.0) + 2.0 * x[0] * x[1] - 14.0 * x[4] + 6.0 * x[5],
            3.0 * x[0] - 6.0 * x[1] - 12.0 * sq(x[8] - 8.0) + 7.0 * x[9])},
    };
    return table;
}

double evaluate(const Problem &p, const double *x, double *g, double *c, double *jac, int ldj) {
    std::array<Dual, kMaxN> xd;
    for (int j = 0; j < p.n; ++j) {
        xd[j] = Dual(x[j]);
        xd[j].d[j] = 1.0;
    }
    const Dual f = p.f(xd.data());
    if (g != nullptr)
        for (int j = 0; j < p.n; ++j) g[j] = f.d[j];
    const int m = p.me + p.mi;
    if (m > 0 && c != nullptr) {
        std::vector<Dual> cd(static_cast<std::size_t>(m));
        p.c(xd.data(), cd.data());
        for (int i = 0; i < m; ++i) {
            c[i] = cd[i].v;
            if (jac != nullptr)
                for (int j = 0; j < p.n; ++j) jac[i + static_cast<std::ptrdiff_t>(j) * ldj] = cd[i].d[j];
        }
    }
    return f.v;
}

bool solved(const Problem &p, double f, const double *x) {
    return std::fabs(f - p.fstar) / std::max(1.0, std::fabs(p.fstar)) <= 1e-6 && violation(p, x) <= 1e-6;
}

double violation(const Problem &p, const double *x) {
    double v = 0.0;
    for (int j = 0; j < p.n; ++j) {
        if (p.lo[j] > -kInf) v = std::max(v, (p.lo[j] - x[j]) / (1.0 + std::fabs(p.lo[j])));
        if (p.hi[j] < kInf) v = std::max(v, (x[j] - p.hi[j]) / (1.0 + std::fabs(p.hi[j])));
    }
    const int m = p.me + p.mi;
    if (m > 0) {
        std::vector<double> c(static_cast<std::size_t>(m));
        evaluate(p, x, nullptr, c.data(), nullptr, m);
        for (int i = 0; i < m; ++i) v = std::max(v, i < p.me ? std::fabs(c[i]) : -c[i]);
    }
    return v;
}

} // namespace zek_test::hs
