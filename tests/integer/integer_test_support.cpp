#include "integer_test_support.h"

#include <fstream>
#include <sstream>

#include "optimisation/option_test_support.h"
#include "zek2/e04.h"

#if defined(ZEK_HAVE_GLPK)
#include <glpk.h>
#endif

namespace zek_test {

void prepare_store(const char *solver, std::vector<int> &lwsav, std::vector<int> &iwsav, Vec &rwsav) {
    std::vector<char> cwsav(80, ' ');
    const int lc = 1, ll = 120, lis = 610, lrs = 475;
    int ifail = 0;
    H02WBF(solver, cwsav.data(), &lc, lwsav.data(), &ll, iwsav.data(), &lis, rwsav.data(), &lrs, &ifail, 6, 80);
}

std::vector<std::string> trimmed(std::vector<std::string> lines) {
    for (std::string &l : lines) l.erase(l.find_last_not_of(' ') + 1);
    return lines;
}

IntegerProgram IntegerProgram::box(int n, int m, double upper, double lower) {
    IntegerProgram p;
    p.n = n, p.m = m;
    p.a.assign(static_cast<std::size_t>(p.lda()) * static_cast<std::size_t>(n), 0.0);
    p.bl.assign(static_cast<std::size_t>(n), lower);
    p.bl.resize(static_cast<std::size_t>(n + m), -1e20);
    p.bu.assign(static_cast<std::size_t>(n), upper);
    p.bu.resize(static_cast<std::size_t>(n + m), 1e20);
    p.cvec.assign(static_cast<std::size_t>(n), 0.0);
    p.h.assign(static_cast<std::size_t>(n) * static_cast<std::size_t>(n), 0.0);
    p.intvar.assign(static_cast<std::size_t>(n), 1);
    return p;
}

std::string file_text(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

int qp_solver(const char *type, int n, int m, const double *a, int lda, const double *bl, const double *bu,
              const double *cvec, const double *h, int ldh, Vec &x, double *obj) {
    OptionState store("E04NFA");
    option(store, zek::e04::Family::NFA, std::string("Problem Type = ") + type);
    option(store, zek::e04::Family::NFA, "Print Level = 0");
    const int liwork = 2 * n + 3, lwork = 13 * n + 5 * m + 4 * n * n;
    std::vector<int> istate(static_cast<std::size_t>(n + m)), iwork(static_cast<std::size_t>(liwork));
    Vec ax(static_cast<std::size_t>(std::max(m, 1))), clamda(static_cast<std::size_t>(n + m)),
        work(static_cast<std::size_t>(lwork));
    int iter = 0, ifail = 1;
    E04NFA(&n, &m, a, &lda, bl, bu, cvec, h, &ldh, nullptr, nullptr, istate.data(), x.data(), &iter, obj, ax.data(),
           clamda.data(), iwork.data(), &liwork, work.data(), &lwork, nullptr, nullptr, store.lwsav.data(),
           store.iwsav.data(), store.rwsav.data(), &ifail);
    return ifail;
}

bool IntegerProgram::from_file(const std::string &path, IntegerProgram &out, const char *optim) {
    MpsxRead r(400, 400);
    r.optim = optim;
    if (r.read_text(file_text(path)) != 0) return false;
    out = box(r.n, r.m, 0.0);
    for (int j = 1; j <= r.n; ++j)
        for (int i = 1; i <= r.m; ++i) out.at(i, j) = r.at(i, j);
    out.bl.assign(r.bl.begin(), r.bl.begin() + r.n + r.m);
    out.bu.assign(r.bu.begin(), r.bu.begin() + r.n + r.m);
    out.cvec.assign(r.cvec.begin(), r.cvec.begin() + r.n);
    out.intvar.assign(r.intvar.begin(), r.intvar.begin() + r.n);
    out.names.assign(r.crname.begin(), r.crname.begin() + 8 * (r.n + r.m));
    return true;
}

long long minimum_liwork(int n, int m, int maxdpt) {
    const long long nct = static_cast<long long>(n) + m;
    return (nct + 25) * maxdpt + nct + 4LL * n + 4;
}

long long minimum_lrwork(int n, int m, int maxdpt) {
    const long long t = std::min<long long>(n, m + 1);
    return (static_cast<long long>(n) + 1) * maxdpt + 2 * (t * t + 6LL * m + 7LL * n);
}

int BranchCall::run(const IntegerProgram &p) {
    const int li = liwork >= 0 ? liwork : static_cast<int>(minimum_liwork(p.n, p.m, maxdpt) + extra_iwork);
    const int lr = lrwork >= 0 ? lrwork : static_cast<int>(minimum_lrwork(p.n, p.m, maxdpt));
    iwork.assign(static_cast<std::size_t>(std::max(li, 1)), -7);
    rwork.assign(static_cast<std::size_t>(std::max(lr, 1)), -7.0);
    prepare_store("H02BBF", lwsav, iwsav, rwsav);
    x = x0;
    x.resize(std::max(x.size(), static_cast<std::size_t>(std::max(p.n, 1))), 0.0);
    const int ld = lda >= 0 ? lda : p.lda();
    int ifail = ifail_in;
    H02BBF(&itmax, &msglvl, &p.n, &p.m, p.a.data(), &ld, p.bl.data(), p.bu.data(), p.intvar.data(), p.cvec.data(),
           &maxnod, &intfst, &maxdpt, &toliv, &tolfes, &bigbnd, x.data(), &objective, iwork.data(), &li, rwork.data(),
           &lr, lwsav.data(), iwsav.data(), rwsav.data(), &ifail);
    return ifail;
}

double IntegerProgram::objective(const Vec &x) const {
    double f = 0.0;
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) f += x[i] * (0.5 * h[i + j * n] * x[j] + (i == j ? cvec[i] : 0.0));
    return f;
}

bool IntegerProgram::feasible(const Vec &x, double tol) const {
    for (int k = 0; k < n + m; ++k) {
        double v = k < n ? x[k] : 0.0;
        for (int j = 0; k >= n && j < n; ++j) v += a[(k - n) + j * lda()] * x[j];
        if (v < bl[k] - tol || v > bu[k] + tol) return false;
    }
    return true;
}

namespace {

// H X for H02CBF; IUSER[0] counts the calls, and from call IUSER[1] (when positive) every product is NaN.
void ZEK_CALLBACK dense_product(const int *n, const int *, const double *h, const int *ldh, const double *x,
                                double *hx, const int *, int *iuser, double *) {
    ++iuser[0];
    for (int i = 0; i < *n; ++i) {
        hx[i] = iuser[1] > 0 && iuser[0] >= iuser[1] ? NAN : 0.0;
        for (int j = 0; j < *n; ++j) hx[i] += h[i + j * *ldh] * x[j];
    }
}

} // namespace

int IqpCall::run(const IntegerProgram &p) {
    const int nn = n != -99 ? n : p.n, mm = m != -99 ? m : p.m, lda = std::max(p.m, 1);
    const int ld = ldh >= 0 ? ldh : p.n, li = liwork >= 0 ? liwork : min_liwork(nn, mm, maxdpt),
              lr = lrwork >= 0 ? lrwork : min_lrwork(nn, mm, maxdpt), list = 0;
    std::vector<int> iwork(static_cast<std::size_t>(std::max(li, 1))), lwsav(120), iwsav(610);
    Vec rwork(static_cast<std::size_t>(std::max(lr, 1))), rwsav(475);
    prepare_store(callback ? "H02CBF" : "H02CEF", lwsav, iwsav, rwsav);
    int ifail = 0;
    for (const std::string &o : options)
        H02CDF(o.c_str(), &list, lwsav.data(), iwsav.data(), rwsav.data(), &ifail, static_cast<int>(o.size()));
    x.resize(static_cast<std::size_t>(p.n), 0.0);
    ifail = -1;
    OutputCapture capture;
    if (callback)
        H02CBF(&itmax, &msglvl, &nn, &mm, p.a.data(), &lda, p.bl.data(), p.bu.data(), p.intvar.data(), p.cvec.data(),
               p.h.data(), &ld, dense_product, nullptr, &maxnod, &intfst, &maxdpt, &toliv, &tolfes, &bigbnd, x.data(),
               &objective, iwork.data(), &li, rwork.data(), &lr, iuser.data(), nullptr, lwsav.data(), iwsav.data(),
               rwsav.data(), &ifail);
    else
        H02CEF(&itmax, &msglvl, &nn, &mm, p.a.data(), &lda, p.bl.data(), p.bu.data(), p.intvar.data(), p.cvec.data(),
               p.h.data(), &ld, &maxnod, &intfst, &maxdpt, &toliv, &tolfes, &bigbnd, x.data(), &objective,
               iwork.data(), &li, rwork.data(), &lr, lwsav.data(), iwsav.data(), rwsav.data(), &ifail);
    for (const std::string &line : capture.host()) captured += line + "\n";
    return ifail;
}

std::string mps(const std::string &f1, const std::string &f2, const std::string &f3, const std::string &f4,
                const std::string &f5, const std::string &f6) {
    std::string s(61, ' ');
    auto put = [&](std::size_t column, const std::string &text) { s.replace(column - 1, text.size(), text); };
    put(2, f1);
    put(5, f2);
    put(15, f3);
    put(37 - f4.size(), f4);
    put(40, f5);
    put(62 - f6.size(), f6);
    return s.substr(0, s.find_last_not_of(' ') + 1) + "\n";
}

int MpsxRead::read(int unit, int ifail, bool listing) {
    const int lst = listing ? 1 : 0, lp = static_cast<int>(problem.size()), lo = static_cast<int>(objective.size()),
              lh = static_cast<int>(rhs.size()), lg = static_cast<int>(ranges.size()),
              lb = static_cast<int>(bounds.size()), lm = static_cast<int>(optim.size());
    if (continuous)
        E04MZF_BYREF(&unit, &m, &n, &maxm, &maxn, a.data(), cvec.data(), bl.data(), bu.data(), rowtyp.data(),
                     problem.data(), objective.data(), rhs.data(), ranges.data(), bounds.data(), crname.data(),
                     x.data(), &xbldef, &xbudef, optim.data(), &lst, &ifail, lp, lo, lh, lg, lb, 8, lm);
    else
        H02BUF(&unit, &m, &n, &maxm, &maxn, a.data(), cvec.data(), bl.data(), bu.data(), intvar.data(), rowtyp.data(),
               problem.data(), objective.data(), rhs.data(), ranges.data(), bounds.data(), crname.data(), x.data(),
               &xbldef, &xbudef, optim.data(), &lst, &ifail, lp, lo, lh, lg, lb, 8, lm);
    return ifail;
}

int MpsxRead::read_text(const std::string &text, int ifail, bool listing) {
    InputFile file(text);
    return read(file.unit(), ifail, listing);
}

#if defined(ZEK_HAVE_GLPK)
// GLPK's optimum of P; false when it finds no integer point.
bool glpk_optimum(const IntegerProgram &p, double *objective) {
    glp_prob *lp = glp_create_prob();
    if (p.m > 0) glp_add_rows(lp, p.m);
    glp_add_cols(lp, p.n);
    const auto set = [&](int k, auto setter, double l, double u) {
        const int type = l <= -1e20 ? (u >= 1e20 ? GLP_FR : GLP_UP) : u >= 1e20 ? GLP_LO : l == u ? GLP_FX : GLP_DB;
        setter(lp, k, type, l, u);
    };
    std::vector<int> ia(1), ja(1);
    std::vector<double> ar(1);
    for (int j = 1; j <= p.n; ++j) {
        set(j, glp_set_col_bnds, p.bl[j - 1], p.bu[j - 1]);
        glp_set_obj_coef(lp, j, p.cvec[j - 1]);
        glp_set_col_kind(lp, j, p.intvar[j - 1] == 1 ? GLP_IV : GLP_CV);
        for (int i = 1; i <= p.m; ++i) {
            const double v = p.a[(i - 1) + (j - 1) * p.lda()];
            if (v != 0.0) ia.push_back(i), ja.push_back(j), ar.push_back(v);
        }
    }
    for (int i = 1; i <= p.m; ++i) set(i, glp_set_row_bnds, p.bl[p.n + i - 1], p.bu[p.n + i - 1]);
    glp_load_matrix(lp, static_cast<int>(ia.size()) - 1, ia.data(), ja.data(), ar.data());
    glp_iocp parm;
    glp_init_iocp(&parm);
    parm.msg_lev = GLP_MSG_OFF, parm.presolve = GLP_ON;
    const bool solved = glp_intopt(lp, &parm) == 0 && glp_mip_status(lp) == GLP_OPT;
    *objective = glp_mip_obj_val(lp);
    glp_delete_prob(lp);
    return solved;
}
#endif

} // namespace zek_test
