// Rearranging by ranks and inverting permutations: M01EAF, M01EBF, M01EDF, M01ZAF, M01ZBF (IFAIL
// layer) and m01esc, m01zac (C-style layer).
#include <algorithm>
#include <cstring>
#include <string>

#include "frame/ifail.h"
#include "frame/output.h"
#include "frame/raise.h"
#include "sorting/m01_common.h"
#include "sorting/m01_engines.h"
#include "sorting/sorting.h"
#include "zek2/frame.h"
#include "zek2/m01.h"

namespace zek {

namespace {

// The permutation exits of the rearranging members (IRANK) and of M01ZAF and M01ZBF (IPERM).
enum PermutationExit { kIrankOutOfRange, kIrankRepeated, kIpermOutOfRange, kIpermRepeated };
constexpr ExitRow kPermutationExits[] = {
    {2, 99996, " ** IRANK(M1:M2) does not contain a permutation of the integers M1 to M2.\n"
               "    IRANK(I) contains an out-of-range value:\n    I =%16ld, IRANK(I) =%16ld."},
    {3, 99995, " ** IRANK(M1:M2) does not contain a permutation of the integers M1 to M2.\n"
               "    IRANK contains a repeated value:%16ld."},
    {2, 99996, " ** IPERM(M1:M2) does not contain a permutation of the integers M1 to M2.\n"
               "    IPERM(I) contains an out-of-range value:\n    I =%16ld, IPERM(I) =%16ld."},
    {3, 99995, " ** IPERM(M1:M2) does not contain a permutation of the integers M1 to M2.\n"
               "    IPERM contains a repeated value:%16ld."},
};

// Which array a permutation check reports on.
enum class Permutation { Irank, Iperm };

// Checks P(M1:M2) (IRANK or IPERM, as WHICH says) and leaves it marked on success.  True when a
// failure was reported; P is then as it came.
bool permutation_fails(FailureExit &exit, int *p, int m1, int m2, Permutation which) {
    const std::ptrdiff_t n = static_cast<std::ptrdiff_t>(m2) - m1 + 1;
    const m01::PermutationCheck check = m01::check_and_mark(p, n, m1);
    const bool irank = which == Permutation::Irank;
    if (check.ierror == 2) {
        take(exit, kPermutationExits, irank ? kIrankOutOfRange : kIpermOutOfRange,
             {static_cast<long>(m1 + check.index), check.value});
        return true;
    }
    if (check.ierror == 3) {
        take(exit, kPermutationExits, irank ? kIrankRepeated : kIpermRepeated, {check.value});
        return true;
    }
    return false;
}

// Exchanges two elements of LENGTH bytes through a small buffer on the stack.
void swap_bytes(char *a, char *b, std::size_t length) {
    char chunk[256];
    while (length > 0) {
        const std::size_t piece = std::min(length, sizeof chunk);
        std::memcpy(chunk, a, piece);
        std::memcpy(a, b, piece);
        std::memcpy(b, chunk, piece);
        a += piece;
        b += piece;
        length -= piece;
    }
}

template <class T>
void rearrange_worker(const char *routine, T *v, int m1, int m2, int irank[], char *errbuf, int *ifail) {
    FailureExit exit(routine, errbuf, ifail);
    if (m01::section_fails(exit, m1, m2)) return;
    int *p = irank + (m1 - 1);
    if (permutation_fails(exit, p, m1, m2, Permutation::Irank)) return;
    m01::rearrange_values(v + (m1 - 1), p, static_cast<std::ptrdiff_t>(m2) - m1 + 1, m1);
    exit.succeed();
}

} // namespace

void m01eaf_worker(double rv[], int m1, int m2, int irank[], char *errbuf, int *ifail, int /*errbuf_len*/) {
    rearrange_worker("M01EAF", rv, m1, m2, irank, errbuf, ifail);
}

void M01EBF(int iv[], int m1, int m2, int irank[], int *ifail) {
    rearrange_worker("M01EBF", iv, m1, m2, irank, nullptr, ifail);
}

void m01edf_worker(char ch[], int m1, int m2, int irank[], char *errbuf, int *ifail, int ch_len,
                   int /*errbuf_len*/) {
    FailureExit exit("M01EDF", errbuf, ifail);
    if (m01::section_fails(exit, m1, m2)) return;
    int *p = irank + (m1 - 1);
    if (permutation_fails(exit, p, m1, m2, Permutation::Irank)) return;
    const std::size_t length = static_cast<std::size_t>(std::max(ch_len, 0));
    char *section = ch + static_cast<std::ptrdiff_t>(m1 - 1) * static_cast<std::ptrdiff_t>(length);
    m01::follow_cycles(p, static_cast<std::ptrdiff_t>(m2) - m1 + 1, m1, [&](std::ptrdiff_t i, std::ptrdiff_t k) {
        swap_bytes(section + i * static_cast<std::ptrdiff_t>(length), section + k * static_cast<std::ptrdiff_t>(length),
                   length);
    });
    exit.succeed();
}

namespace {

// Inverts the marked permutation P of first..first+n-1 in place: each cycle is walked once and every
// position receives the index it came from.
void invert_marked(int *p, std::ptrdiff_t n, long first) {
    for (std::ptrdiff_t i = 0; i < n; ++i) {
        if (p[i] >= 0) continue;
        std::ptrdiff_t from = i;
        std::ptrdiff_t j = ~p[i] - first;
        for (;;) {
            const int next = p[j];
            p[j] = static_cast<int>(from + first);
            if (j == i) break;
            from = j;
            j = ~next - first;
        }
    }
}

} // namespace

void m01zaf_worker(int iperm[], int m1, int m2, char *errbuf, int *ifail, int /*errbuf_len*/) {
    FailureExit exit("M01ZAF", errbuf, ifail);
    if (m01::section_fails(exit, m1, m2)) return;
    int *p = iperm + (m1 - 1);
    if (permutation_fails(exit, p, m1, m2, Permutation::Iperm)) return;
    invert_marked(p, static_cast<std::ptrdiff_t>(m2) - m1 + 1, m1);
    exit.succeed();
}

void M01ZBF(int iperm[], int m1, int m2, int *ifail) {
    FailureExit exit("M01ZBF", nullptr, ifail);
    if (m01::section_fails(exit, m1, m2)) return;
    int *p = iperm + (m1 - 1);
    if (permutation_fails(exit, p, m1, m2, Permutation::Iperm)) return;
    for (std::ptrdiff_t k = 0, n = static_cast<std::ptrdiff_t>(m2) - m1 + 1; k < n; ++k) p[k] = m01::unmarked(p[k]);
    exit.succeed();
}

} // namespace zek

extern "C" {

void M01EAF(double rv[], const int *m1, const int *m2, int irank[], int *ifail) {
    zek::Front front("M01EAF");
    zek::m01eaf_worker(rv, *m1, *m2, irank, front.errbuf(), ifail, zek::kErrbufLength);
    front.finish(*ifail);
}

void M01EDF(char ch[], const int *m1, const int *m2, int irank[], int *ifail, int ch_len) {
    zek::Front front("M01EDF");
    zek::m01edf_worker(ch, *m1, *m2, irank, front.errbuf(), ifail, ch_len, zek::kErrbufLength);
    front.finish(*ifail);
}

void M01ZAF(int iperm[], const int *m1, const int *m2, int *ifail) {
    zek::Front front("M01ZAF");
    zek::m01zaf_worker(iperm, *m1, *m2, front.errbuf(), ifail, zek::kErrbufLength);
    front.finish(*ifail);
}

// Marks "not yet visited" by bit 30, above every valid rank (n is at most 0xFFFFFFF).
void m01zac(int ranks[], int n, ZekFail *fail) {
    static const char *const kName = "m01zac";
    constexpr int kMark = 0x40000000;
    zek::clear_fail(fail);
    if (!zek::m01::length_ok(fail, kName, n, 0)) return;
    if (n == 0) {
        zek::raise_success(fail, kName);
        return;
    }
    if (ranks == nullptr) {
        zek::raise_text(fail, kName, ZE_NULL_ARRAY, "ranks");
        return;
    }
    for (int i = 0; i < n; ++i) {
        if (ranks[i] < 0 || ranks[i] >= n) {
            for (int k = 0; k < i; ++k) ranks[k] &= ~kMark;
            zek::raise_text(fail, kName, ZE_BAD_RANK, "rank");
            return;
        }
        ranks[i] |= kMark;
    }
    // Walk each cycle from its first marked element, storing at every element the index it was reached
    // from.  In a permutation the walk comes back to its start, which is then the last element unmarked;
    // a start still marked means two elements share a rank.
    bool permutation = true;
    for (int i = 0; i < n && permutation; ++i) {
        if ((ranks[i] & kMark) == 0) continue;
        int from = i;
        int j = ranks[i] & ~kMark;
        while ((ranks[j] & kMark) != 0) {
            const int next = ranks[j] & ~kMark;
            ranks[j] = from;
            from = j;
            j = next;
        }
        permutation = (ranks[i] & kMark) == 0;
    }
    if (!permutation) {
        for (int k = 0; k < n; ++k) ranks[k] &= ~kMark;
        zek::raise_text(fail, kName, ZE_BAD_RANK, "rank");
        return;
    }
    zek::raise_success(fail, kName);
}

void m01esc(void *vec, int n, int size, int stride, int ranks[], ZekFail *fail) {
    static const char *const kName = "m01esc";
    zek::clear_fail(fail);
    if (!zek::m01::length_ok(fail, kName, n, 0)) return;
    if (size < 1) {
        zek::raise_int_arg(fail, kName, ZE_INT_ARG_LT, "size", "1", size);
        return;
    }
    // Every element's address must stay within the range of an int of bytes.
    const long bound = n > 0 ? 0x7FFFFFFFL / n : 0x7FFFFFFFL;
    if (size > bound) {
        zek::raise_int_arg(fail, kName, ZE_INT_ARG_GT, "size", zek::format("%d", static_cast<int>(bound)).c_str(),
                           size);
        return;
    }
    const long magnitude = stride < 0 ? -static_cast<long>(stride) : stride;
    if (magnitude < size) {
        zek::raise_formatted(fail, kName, ZE_2_INT_ARG_LT, "abs(stride)", magnitude, "size",
                             static_cast<long>(size), "abs(stride)", "size");
        return;
    }
    if (magnitude > bound) {
        zek::raise_int_arg(fail, kName, ZE_INT_ARG_GT, "abs(stride)",
                           zek::format("%d", static_cast<int>(bound)).c_str(), magnitude);
        return;
    }
    if (n == 0) {
        zek::raise_success(fail, kName);
        return;
    }
    if (vec == nullptr || ranks == nullptr) {
        zek::raise_text(fail, kName, ZE_NULL_ARRAY, vec == nullptr ? "vec" : "ranks");
        return;
    }
    void *buffer = ZEK_ALLOCATE(static_cast<std::size_t>(size));
    if (buffer == nullptr) {
        zek::raise_plain(fail, kName, ZE_ALLOC_FAIL);
        return;
    }
    if (zek::m01::check_and_mark(ranks, n, 0).ierror != 0) {
        ZEK_RELEASE(&buffer);
        zek::raise_text(fail, kName, ZE_BAD_RANK, "rank");
        return;
    }
    char *base = static_cast<char *>(vec);
    const std::ptrdiff_t step = stride;
    const std::size_t bytes = static_cast<std::size_t>(size);
    zek::m01::follow_cycles(ranks, n, 0, [&](std::ptrdiff_t i, std::ptrdiff_t k) {
        char *a = base + i * step;
        char *b = base + k * step;
        std::memcpy(buffer, a, bytes);
        std::memcpy(a, b, bytes);
        std::memcpy(b, buffer, bytes);
    });
    ZEK_RELEASE(&buffer);
    zek::raise_success(fail, kName);
}

} // extern "C"
