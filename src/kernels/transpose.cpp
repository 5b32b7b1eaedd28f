// f01crc: in-place transposition of a rectangular matrix.
#include <cstddef>
#include <cstring>

#include "frame/raise.h"
#include "zek2/f01.h"
#include "zek2/frame.h"

extern "C" void f01crc(double *a, int m, int n, ZekFail *fail) {
    const char *name = "f01crc";
    zek::clear_fail(fail);
    if (m < 1) {
        zek::raise_int_arg(fail, name, ZE_INT_ARG_LT, "m", "1", m);
        return;
    }
    if (n < 1) {
        zek::raise_int_arg(fail, name, ZE_INT_ARG_LT, "n", "1", n);
        return;
    }
    const std::ptrdiff_t size = static_cast<std::ptrdiff_t>(m) * n;
    void *marks = ZEK_ALLOCATE(static_cast<std::size_t>(size));
    if (marks == nullptr) {
        zek::raise_plain(fail, name, ZE_ALLOC_FAIL);
        return;
    }
    if (m > 1 && n > 1) {
        const std::ptrdiff_t ld = m;
        if (m == n) {
            for (std::ptrdiff_t j = 0; j < n; ++j)
                for (std::ptrdiff_t i = j + 1; i < m; ++i) {
                    const double t = a[i + j * ld];
                    a[i + j * ld] = a[j + i * ld];
                    a[j + i * ld] = t;
                }
        } else {
            // Element k of the column-major M by N matrix belongs at k*N mod (M*N - 1) of the N by M
            // transpose; the first and last elements stay.  Each cycle of that permutation is followed
            // once, a mark per position telling which have moved.
            unsigned char *moved = static_cast<unsigned char *>(marks);
            std::memset(moved, 0, static_cast<std::size_t>(size));
            const std::ptrdiff_t last = size - 1;
            for (std::ptrdiff_t start = 1; start < last; ++start) {
                if (moved[start]) continue;
                double carried = a[start];
                std::ptrdiff_t k = start;
                do {
                    const std::ptrdiff_t next = (k * n) % last;
                    const double t = a[next];
                    a[next] = carried;
                    carried = t;
                    moved[k] = 1;
                    k = next;
                } while (k != start);
            }
        }
    }
    ZEK_RELEASE(&marks);
    zek::raise_success(fail, name);
}
