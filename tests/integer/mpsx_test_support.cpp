#include "mpsx_test_support.h"

#include "optimisation/option_test_support.h"
#include "zek2/e04.h"
#include "zek2/h02.h"

namespace zek_test {

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
    const int lst = listing ? 1 : 0;
    if (continuous) {
        E04MZF_BYREF(&unit, &m, &n, &maxm, &maxn, a.data(), cvec.data(), bl.data(), bu.data(), rowtyp.data(),
                     problem.data(), objective.data(), rhs.data(), ranges.data(), bounds.data(), crname.data(),
                     x.data(), &xbldef, &xbudef, optim.data(), &lst, &ifail, static_cast<int>(problem.size()),
                     static_cast<int>(objective.size()), static_cast<int>(rhs.size()),
                     static_cast<int>(ranges.size()), static_cast<int>(bounds.size()), 8,
                     static_cast<int>(optim.size()));
        return ifail;
    }
    H02BUF(&unit, &m, &n, &maxm, &maxn, a.data(), cvec.data(), bl.data(), bu.data(), intvar.data(), rowtyp.data(),
           problem.data(), objective.data(), rhs.data(), ranges.data(), bounds.data(), crname.data(), x.data(),
           &xbldef, &xbudef, optim.data(), &lst, &ifail, static_cast<int>(problem.size()),
           static_cast<int>(objective.size()), static_cast<int>(rhs.size()), static_cast<int>(ranges.size()),
           static_cast<int>(bounds.size()), 8, static_cast<int>(optim.size()));
    return ifail;
}

int MpsxRead::read_text(const std::string &text, int ifail, bool listing) {
    InputFile file(text);
    return read(file.unit(), ifail, listing);
}

int MpsxRead::nonzeros() const {
    int count = 0;
    for (int j = 1; j <= n; ++j) {
        count += cvec[static_cast<std::size_t>(j - 1)] != 0.0;
        for (int i = 1; i <= m; ++i) count += at(i, j) != 0.0;
    }
    return count;
}

} // namespace zek_test
