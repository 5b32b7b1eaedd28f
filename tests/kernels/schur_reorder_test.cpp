// Reordering of a real Schur form (F08QFF and its block swap): against reference LAPACK's dtrexc, and
// by invariants (the similarity is kept, eigenvalues move as asked, 2 by 2 blocks stay standard).
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>

#include "factor_test_support.h"
#include "zek2/f08.h"

using namespace zek_test;

namespace {

using Cx = std::complex<double>;

// Eigenvalue of the block containing row i (0-based) of a quasi-triangular T: the one with
// non-negative imaginary part for a pair.
Cx block_eigenvalue(const Mat &t, int i) {
    const int n = t.m;
    int r = i;
    if (r > 0 && t(r, r - 1) != 0.0) --r;
    if (r + 1 < n && t(r + 1, r) != 0.0) {
        const double p = t(r, r), off = std::sqrt(std::fabs(t(r, r + 1))) * std::sqrt(std::fabs(t(r + 1, r)));
        return {p, off};
    }
    return {t(r, r), 0.0};
}

TEST(SchurReorderReference, MovesAgreeWithReferenceLapack) {
    const int n = 14, one = 1, lwork = n;
    const Mat h0 = upper_band(make_matrix(Kind::Random, n, n, 77), 1);
    Mat s = h0, z(n, n);
    std::vector<double> wr(n), wi(n), work(n);
    int info = -9;
    F08PEF("S", "I", &n, &one, &n, s.data(), &s.ld, wr.data(), wi.data(), z.data(), &z.ld, work.data(), &lwork, &info, 1,
           1);
    ASSERT_EQ(info, 0);
    int pairs = 0;
    for (int i = 0; i + 1 < n; ++i) pairs += s(i + 1, i) != 0.0;
    ASSERT_GE(pairs, 2);
    // Every start and end position: forward, backward, onto and off 2 by 2 blocks, first and last rows.
    for (int ifst = 1; ifst <= n; ++ifst)
        for (int ilst = 1; ilst <= n; ilst += 3) {
            SCOPED_TRACE(testing::Message() << ifst << " -> " << ilst);
            Mat t = s, q = z, rt = s, rq = z;
            int f = ifst, l = ilst, rf = ifst, rl = ilst, rinfo = 0;
            F08QFF("V", &n, t.data(), &t.ld, q.data(), &q.ld, &f, &l, work.data(), &info, 1);
            call_lapack("dtrexc", "V", &n, rt.data(), &rt.ld, rq.data(), &rq.ld, &rf, &rl, work.data(),
                        &rinfo, L(1));
            ASSERT_EQ(info, rinfo);
            EXPECT_EQ(f, rf);
            EXPECT_EQ(l, rl);
            for (int i = 0; i < n; ++i) {
                EXPECT_LT(std::abs(block_eigenvalue(t, i) - block_eigenvalue(rt, i)), 1e-10);
                if (i + 1 < n && t(i + 1, i) != 0.0) {
                    EXPECT_EQ(t(i, i), t(i + 1, i + 1));
                    EXPECT_LT(t(i, i + 1) * t(i + 1, i), 0.0);
                }
                for (int k = i + 2; k < n; ++k) EXPECT_EQ(t(k, i), 0.0);
            }
            expect_orthogonal_similarity(h0, q, t, 20.0);
        }
}

TEST(SchurReorder, BadArgumentsGiveMinusThePosition) {
    Mat t(3, 3), q(3, 3);
    std::vector<double> work(3);
    struct Row {
        const char *compq;
        int n, ldt, ldq, ifst, ilst, info;
    };
    for (const Row &r : {Row{"X", 3, 3, 3, 1, 2, -1}, Row{"V", -1, 3, 3, 1, 1, -2}, Row{"V", 3, 2, 3, 1, 2, -4},
                         Row{"V", 3, 3, 2, 1, 2, -6}, Row{"N", 3, 3, 0, 1, 2, -6}, Row{"N", 3, 3, 1, 0, 2, -7},
                         Row{"N", 3, 3, 1, 1, 4, -8}, Row{"N", 0, 1, 1, 1, 1, 0}}) {
        int f = r.ifst, l = r.ilst, info = 9;
        F08QFF(r.compq, &r.n, t.data(), &r.ldt, q.data(), &r.ldq, &f, &l, work.data(), &info, 1);
        EXPECT_EQ(info, r.info) << r.compq << r.n;
    }
}

} // namespace
