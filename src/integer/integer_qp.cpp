// Integer quadratic programming: H02CBF (Hessian through the caller's routine), H02CEF (Hessian as a
// dense matrix) and the option routine H02CDF.  Both solvers are H02BBF's tree search with a QP of
// E04NFA at every node; only the node solver and the workspace shares differ.
#include <algorithm>
#include <climits>
#include <cmath>
#include <string>

#include "frame/ifail.h"
#include "frame/output.h"
#include "integer/branch_and_bound.h"
#include "optimisation/qp_driver.h"
#include "zek2/e04.h"
#include "zek2/h02.h"

namespace {

using zek::h02::kNodeHessianFailed;
using zek::h02::kNodeHessianTooBig;

// The QP of a node: E04NFA on the node's bounds, with its options through E04NHF in the store that
// H02WBF prepared.  Children start warm from the working set their parent ended with.
class QpNodeSolver : public zek::h02::NodeSolver {
public:
    QpNodeSolver(int n, int m, const double *a, int lda, const double *cvec, const double *h, int ldh,
                 ZekQpHessian qphess, ZekQpHessianAdaptor adaptor, int *iuser, double *ruser, int *lwsav, int *iwsav,
                 double *rwsav)
        : n_(n), m_(m), a_(a), lda_(lda), cvec_(cvec), h_(h), ldh_(ldh), qphess_(qphess), adaptor_(adaptor),
          iuser_(iuser), ruser_(ruser), lwsav_(lwsav), iwsav_(iwsav), rwsav_(rwsav) {}

    void option(const std::string &text) override {
        const int list = 0;
        int inform = 0;
        E04NHF(text.c_str(), &list, lwsav_, iwsav_, rwsav_, &inform, static_cast<int>(text.size()));
    }
    bool warm_children() const override { return true; }

    int solve(const double *bl, const double *bu, int *istate, double *x, int *iterations, double *objective,
              double *ax, double *clamda, int *iwork, int liwork, double *work, int lwork) override {
        // A branching bound beyond the variable's own is an empty node.  Caught here, it leaves E04NFA's
        // input errors to mean one thing only: the Hessian gave a value that is not finite (the data
        // were checked before the search).
        for (int j = 0; j < n_ + m_; ++j)
            if (!(bl[j] <= bu[j])) return 3;
        int ifail = 1;
        E04NFA(&n_, &m_, a_, &lda_, bl, bu, cvec_, h_, &ldh_, qphess_, adaptor_, istate, x, iterations, objective,
               ax, clamda, iwork, &liwork, work, &lwork, iuser_, ruser_, lwsav_, iwsav_, rwsav_, &ifail);
        if (ifail == 5) return kNodeHessianTooBig;
        if (ifail == 6) return kNodeHessianFailed;
        // Finite data can still overflow the objective (c'x or x'Hx beyond the largest number): no bound
        // of the tree could rest on it.
        if ((ifail == 0 || ifail == 1) && !std::isfinite(*objective)) return kNodeHessianFailed;
        return ifail;
    }

private:
    int n_, m_;
    const double *a_;
    int lda_;
    const double *cvec_, *h_;
    int ldh_;
    ZekQpHessian qphess_;
    ZekQpHessianAdaptor adaptor_;
    int *iuser_;
    double *ruser_;
    int *lwsav_, *iwsav_;
    double *rwsav_;
};

// E04NFA's workspace for N variables and M rows.
zek::h02::NodeWork qp_node_work(int n, int m) {
    zek::h02::NodeWork w;
    if (n < 1 || m < 0 || !zek::qp::layout_fits(n, m)) {
        // Counted so that any LRWORK fails the check: the size arithmetic would overflow.
        w.integers = 2LL * std::max(n, 0) + 3;
        w.reals = static_cast<long long>(INT_MAX) + 1;
        if (n < 1 || m < 0) w.reals = 1;
        return w;
    }
    const zek::qp::RunLayout l = zek::qp::run_layout(n, m, std::max(1, std::min(n, m)), n);
    w.integers = l.liwork;
    w.reals = l.lwork;
    return w;
}

void integer_qp(const char *routine, int *itmax, int msglvl, int n, int m, const double *a, int lda, const double *bl,
                const double *bu, const int *intvar, const double *cvec, const double *h, int ldh, ZekQpHessian qphess,
                ZekQpHessianAdaptor adaptor, int maxnod, int intfst, int maxdpt, double *toliv, double *tolfes,
                double *bigbnd, double *x, double *objmip, int *iwork, int liwork, double *rwork, int lrwork,
                int *iuser, double *ruser, int *lwsav, int *iwsav, double *rwsav, int *ifail) {
    zek::Front front(routine);
    // A null QPHESS makes E04NFA read H itself, so H is then data to check.
    const zek::h02::BranchArguments args{itmax,  msglvl, n,      m,      lda,   a,      bl,    bu,    cvec,
                                         intvar, maxnod, intfst, maxdpt, toliv, tolfes, bigbnd, x,     objmip,
                                         iwork,  liwork, rwork,  lrwork, true,  qphess == nullptr ? h : nullptr,
                                         ldh};
    QpNodeSolver qp(n, m, a, lda, cvec, h, ldh, qphess, adaptor, iuser, ruser, lwsav, iwsav, rwsav);
    qp.option("Nolist");
    qp.option("Problem Type = QP2");
    zek::h02::branch_and_bound(routine, args, qp_node_work(n, m), qp, front.errbuf(), ifail);
    front.finish(*ifail);
}

} // namespace

extern "C" {

void H02CBF(int *itmax, const int *msglvl, const int *n, const int *m, const double *a, const int *lda,
            const double *bl, const double *bu, const int *intvar, const double *cvec, const double *h, const int *ldh,
            ZekQpHessian qphess, ZekQpHessianAdaptor qphess_adaptor, const int *maxnod, const int *intfst,
            const int *maxdpt, double *toliv, double *tolfes, double *bigbnd, double *x, double *objmip, int *iwork,
            const int *liwork, double *rwork, const int *lrwork, int *iuser, double *ruser, int *lwsav, int *iwsav,
            double *rwsav, int *ifail) {
    integer_qp("H02CBF", itmax, *msglvl, *n, *m, a, *lda, bl, bu, intvar, cvec, h, *ldh, qphess, qphess_adaptor,
               *maxnod, *intfst, *maxdpt, toliv, tolfes, bigbnd, x, objmip, iwork, *liwork, rwork, *lrwork, iuser,
               ruser, lwsav, iwsav, rwsav, ifail);
}

void H02CEF(int *itmax, const int *msglvl, const int *n, const int *m, const double *a, const int *lda,
            const double *bl, const double *bu, const int *intvar, const double *cvec, const double *h, const int *ldh,
            const int *maxnod, const int *intfst, const int *maxdpt, double *toliv, double *tolfes, double *bigbnd,
            double *x, double *objmip, int *iwork, const int *liwork, double *rwork, const int *lrwork, int *lwsav,
            int *iwsav, double *rwsav, int *ifail) {
    integer_qp("H02CEF", itmax, *msglvl, *n, *m, a, *lda, bl, bu, intvar, cvec, h, *ldh, nullptr, nullptr, *maxnod,
               *intfst, *maxdpt, toliv, tolfes, bigbnd, x, objmip, iwork, *liwork, rwork, *lrwork, nullptr, nullptr,
               lwsav, iwsav, rwsav, ifail);
}

void H02CDF(const char *string, const int *list, int *lwsav, int *iwsav, double *rwsav, int *inform,
            int string_len) {
    // The nodes' QPs read the store as E04NFA's, so its string routine is this routine.
    E04NHF(string, list, lwsav, iwsav, rwsav, inform, string_len);
}

} // extern "C"
