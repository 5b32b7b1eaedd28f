// Helpers of the integer chapter's tests: a small integer program in dense form and one call of H02BBF
// on it; an integer QP and one call of H02CEF or H02CBF; a call of the MPSX readers with arrays of given
// limits, and fixed-column lines built field by field.  Every call prepares its store with H02WBF and
// takes the documented minimum workspace unless told otherwise.
#ifndef ZEK_TESTS_INTEGER_TEST_SUPPORT_H
#define ZEK_TESTS_INTEGER_TEST_SUPPORT_H

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "frame/host_capture.h"
#include "zek2/h02.h"

namespace zek_test {

using Vec = std::vector<double>;

// The whole content of the file at PATH.
std::string file_text(const std::string &path);

// E04NFA with "Problem Type" TYPE and print level 0 on arrays as given (A with leading dimension LDA, the
// bounds of the columns then the rows), X the start and then the solution; IFAIL.
int qp_solver(const char *type, int n, int m, const double *a, int lda, const double *bl, const double *bu,
              const double *cvec, const double *h, int ldh, Vec &x, double *obj);

// The lines without the blanks that pad them to their record width.
std::vector<std::string> trimmed(std::vector<std::string> lines);

// The store of SOLVER as H02WBF prepares it.
void prepare_store(const char *solver, std::vector<int> &lwsav, std::vector<int> &iwsav, Vec &rwsav);

struct IntegerProgram {
    int n = 0, m = 0;
    Vec a;  // m by n, leading dimension max(1, m)
    Vec bl, bu, cvec;
    Vec h;  // n by n, the Hessian of an integer QP (zero for a linear program)
    std::vector<int> intvar;
    std::vector<char> names;  // from a file: the names of the columns, then of the rows, 8 characters each
    int lda() const { return m > 0 ? m : 1; }
    double &at(int i, int j) { return a[static_cast<std::size_t>((i - 1) + (j - 1) * lda())]; }
    // An empty program of N variables in [lower, upper] (all integer) and M rows in [-1e20, 1e20].
    static IntegerProgram box(int n, int m, double upper, double lower = 0.0);
    // The quadratic objective at X, and whether X lies within the bounds to TOL.
    double objective(const Vec &x) const;
    bool feasible(const Vec &x, double tol) const;
    // The program an MPSX file describes (read by H02BUF, OPTIM "MIN" or "MAX"); false when the reader fails.
    static bool from_file(const std::string &path, IntegerProgram &out, const char *optim = "MIN");
};

struct BranchCall {
    // Arguments; zero or negative tolerances and limits take H02BBF's defaults.
    int itmax = 0, msglvl = 0, maxnod = 0, intfst = 0, maxdpt = 50;
    double toliv = 0.0, tolfes = 0.0, bigbnd = 0.0;
    int extra_iwork = 0;            // integers beyond the minimum LIWORK (a larger tree)
    int liwork = -1, lrwork = -1;   // explicit lengths, when not negative
    int lda = -1;                   // an explicit leading dimension, when not negative
    int ifail_in = 1;
    Vec x0;  // start point, zeros when empty
    // Results.
    Vec x, rwork;
    double objective = 0.0;
    std::vector<int> iwork;
    std::vector<int> lwsav = std::vector<int>(120, 0), iwsav = std::vector<int>(610, 0);
    Vec rwsav = Vec(475, 0.0);
    // Prepares the store with H02WBF and calls H02BBF; returns IFAIL.
    int run(const IntegerProgram &p);
};

// GLPK's optimum of P; false when it finds no integer point.
bool glpk_optimum(const IntegerProgram &p, double *objective);

// The minimum workspace lengths of H02BBF.
long long minimum_liwork(int n, int m, int maxdpt);
long long minimum_lrwork(int n, int m, int maxdpt);

struct IqpCall {
    int itmax = 0, msglvl = 0, maxnod = 0, intfst = 0, maxdpt = 30, n = -99, m = -99, ldh = -1, liwork = -1,
        lrwork = -1;
    double toliv = 0.0, tolfes = 0.0, bigbnd = 0.0, objective = 0.0;
    bool callback = false;             // H02CBF with a Hessian routine, else H02CEF
    std::vector<std::string> options;  // H02CDF lines
    Vec x;                             // in: the start (zeros when empty); out: the solution
    std::vector<int> iuser = {0, 0};   // calls of the Hessian routine; the call from which it returns NaN
    std::string captured;              // the host text, a line each
    static int min_liwork(int n, int m, int s) { return (n + m + 25) * s + 5 * n + m + 4; }
    static int min_lrwork(int n, int m, int s) { return (n + 1) * s + 20 * n + 12 * m + (m > 0 ? 4 : 3) * n * n; }
    int run(const IntegerProgram &p);
};

// One MPSX data line: field 1 from column 2, field 2 from column 5, field 3 from column 15, the number
// of field 4 ending in column 36, field 5 from column 40, the number of field 6 ending in column 61.
std::string mps(const std::string &f1, const std::string &f2, const std::string &f3 = "",
                const std::string &f4 = "", const std::string &f5 = "", const std::string &f6 = "");

struct MpsxRead {
    MpsxRead(int maxm, int maxn) : maxm(maxm), maxn(maxn) {}
    // Reads the stream behind UNIT (by E04MZF, without INTVAR, when CONTINUOUS is set); IFAIL on entry is
    // the caller's.
    int read(int unit, int ifail = 1, bool listing = false);
    // Reads TEXT written to a temporary file.
    int read_text(const std::string &text, int ifail = 1, bool listing = false);

    int maxm, maxn;
    int m = -1, n = -1;
    Vec a = Vec(static_cast<std::size_t>(maxm) * static_cast<std::size_t>(maxn));
    Vec cvec = Vec(static_cast<std::size_t>(maxn)), x = Vec(static_cast<std::size_t>(maxn));
    Vec bl = Vec(static_cast<std::size_t>(maxn + maxm)), bu = Vec(static_cast<std::size_t>(maxn + maxm));
    std::vector<int> intvar = std::vector<int>(static_cast<std::size_t>(maxn));
    std::vector<int> rowtyp = std::vector<int>(static_cast<std::size_t>(maxm));
    std::vector<char> crname = std::vector<char>(static_cast<std::size_t>(8 * (maxn + maxm)), '#');
    std::string problem = "        ", objective = "        ", rhs = "        ", ranges = "        ",
                bounds = "        ";
    std::string optim = "MIN";
    double xbldef = 0.0, xbudef = 1.0e20;
    bool continuous = false;

    double at(int i, int j) const { return a[static_cast<std::size_t>((i - 1) + (j - 1) * maxm)]; }
    std::string name(int k) const { return std::string(crname.data() + 8 * (k - 1), 8); }
};

} // namespace zek_test

#endif
