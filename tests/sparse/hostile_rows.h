// The scaffolding of the sparse hostile-input tables: each row calls a public routine with IFAIL -1 on
// a small matrix (or a spoilt copy of it) and names the IFAIL it must end with and the start of its
// first message record; the front's self-check must stay quiet.
#ifndef ZEK_TESTS_SPARSE_HOSTILE_ROWS_H
#define ZEK_TESTS_SPARSE_HOSTILE_ROWS_H

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "frame/host_capture.h"

namespace sparse_test {

inline const double kNaN = std::numeric_limits<double>::quiet_NaN();
inline const double kInf = std::numeric_limits<double>::infinity();

template <class Data> struct HostileRow {
    const char *what;
    std::function<int(Data &)> call;
    int ifail;
    const char *text; // start of the first record, "" for success
};

template <class Data, std::size_t K> void expect_rows(const HostileRow<Data> (&rows)[K]) {
    for (const HostileRow<Data> &row : rows) {
        SCOPED_TRACE(row.what);
        Data d;
        zek_test::OutputCapture capture;
        const int ifail = row.call(d);
        const std::vector<std::string> &host = capture.host();
        EXPECT_EQ(ifail, row.ifail);
        std::string all;
        for (const std::string &piece : host) all += piece + "\n";
        EXPECT_EQ(all.find("MISMATCH"), std::string::npos) << all;
        if (row.ifail == 0) {
            EXPECT_TRUE(host.empty()) << all;
        } else if (host.empty()) {
            ADD_FAILURE() << "no message"; // and the rows after this one still run
        } else {
            EXPECT_EQ(host.front().rfind(row.text, 0), 0u) << host.front();
        }
    }
}

} // namespace sparse_test

#endif
