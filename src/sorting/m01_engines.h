// The algorithms of chapter M01 as templates over the element and its comparison, so that the double,
// integer, string and user-typed members share one body each (and the tests can count comparisons).
#ifndef ZEK_SORTING_M01_ENGINES_H
#define ZEK_SORTING_M01_ENGINES_H

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <utility>

namespace zek::m01 {

// Subfiles of at most this many elements are left to the closing insertion pass.
constexpr std::ptrdiff_t kSubfile = 15;
// Entries of the quicksort's stack.  The larger part is stacked only while the smaller one still
// exceeds kSubfile, so the depth stays below log2(n / 16) + 1: 40 covers every length an int holds.
constexpr int kStackEntries = 40;

// The pivot draw of M01CAF: three small multiplicative generators (Wichmann and Hill), seeded afresh
// at each call so that a sort is reproducible.  Each step is a*x mod m computed as a*x - m*(x/q),
// which cannot overflow 32 bits, with a negative result raised by m.
class WichmannHill {
public:
    std::ptrdiff_t offset(std::ptrdiff_t span) {
        x_ = 171 * x_ - 30269 * (x_ / 177);
        if (x_ < 0) x_ += 30269;
        y_ = 172 * y_ - 30307 * (y_ / 176);
        if (y_ < 0) y_ += 30307;
        z_ = 170 * z_ - 30323 * (z_ / 178);
        if (z_ < 0) z_ += 30323;
        const double u = std::fmod(x_ / 30269.0 + y_ / 30307.0 + z_ / 30323.0, 1.0);
        return static_cast<std::ptrdiff_t>(u * static_cast<double>(span));
    }
    // The m01cac form does, and M01CAF does not, pass an unbalanced subfile's flag on to its larger
    // child.
    static constexpr bool kInheritFlag = false;

private:
    int x_ = 15223, y_ = 17795, z_ = 28707;
};

// The pivot draw of m01cac: a 32-bit linear congruential word that keeps running from call to call.
class Congruential {
public:
    explicit Congruential(std::uint32_t &word) : word_(word) {}
    std::ptrdiff_t offset(std::ptrdiff_t span) {
        word_ = word_ * 2147001325u + 715136305u;
        return static_cast<std::ptrdiff_t>(static_cast<double>(span) * static_cast<double>(word_ / 2u) *
                                           4.656612873077393e-10);
    }
    static constexpr bool kInheritFlag = true;

private:
    std::uint32_t &word_;
};

// Quicksort of a[0..n-1] into ascending order by LESS, then one insertion pass.
//
// Each subfile above kSubfile elements is split about the median of its ends and middle, which are
// put in order first so that the ends serve as sentinels of the two scans.  The scans stop on keys
// equal to the pivot, so runs of equal keys are split evenly instead of degrading the sort.  The
// smaller part is followed at once and the larger stacked; a larger part of more than five times the
// smaller plus 25 is flagged, and a flagged subfile first swaps random elements into its ends, which
// defeats inputs built against the median of three.  Comparisons that are all false (NaN) only stop
// the scans early, so the indices never leave the subfile.
template <class T, class Less, class Random>
void quicksort(T *a, std::ptrdiff_t n, Less less, Random &random) {
    if (n < 2) return;
    std::ptrdiff_t stack_l[kStackEntries], stack_r[kStackEntries];
    bool stack_flag[kStackEntries];
    int top = 0;
    std::ptrdiff_t l = 0, r = n - 1;
    bool flagged = false;
    for (;;) {
        while (r - l >= kSubfile) {
            const bool parent_flagged = flagged;
            if (flagged) {
                flagged = false;
                const std::ptrdiff_t k = random.offset(r - l);
                std::swap(a[l], a[l + k]);
                std::swap(a[r - k], a[r]);
            }
            const std::ptrdiff_t m = l + (r - l) / 2;
            T t = a[m];
            if (less(t, a[l])) {
                a[m] = a[l];
                a[l] = t;
                t = a[m];
            }
            if (less(a[r], t)) {
                a[m] = a[r];
                a[r] = t;
                t = a[m];
                if (less(t, a[l])) {
                    a[m] = a[l];
                    a[l] = t;
                    t = a[m];
                }
            }
            std::ptrdiff_t i = l, j = r;
            for (;;) {
                do --j;
                while (less(t, a[j]));
                const T tj = a[j];
                do ++i;
                while (less(a[i], t));
                if (i > j) break;
                a[j] = a[i];
                a[i] = tj;
            }
            // Left part l..j, right part i..r, both strictly inside l..r.
            const std::ptrdiff_t left = j - l + 1, right = r - i + 1;
            const bool left_smaller = left <= right;
            const std::ptrdiff_t small = left_smaller ? left : right;
            const std::ptrdiff_t large = left_smaller ? right : left;
            const bool large_flag = large > 5 * small + 25 || (Random::kInheritFlag && parent_flagged);
            const std::ptrdiff_t large_l = left_smaller ? i : l, large_r = left_smaller ? r : j;
            if (small > kSubfile) {
                if (top == kStackEntries) std::abort(); // unreachable: see kStackEntries
                stack_l[top] = large_l;
                stack_r[top] = large_r;
                stack_flag[top] = large_flag;
                ++top;
                if (left_smaller) r = j;
                else l = i;
            } else {
                l = large_l;
                r = large_r;
                flagged = large_flag;
            }
        }
        if (top == 0) break;
        --top;
        l = stack_l[top];
        r = stack_r[top];
        flagged = stack_flag[top];
    }
    // Every element now lies within kSubfile places of its final position.
    for (std::ptrdiff_t i = 1; i < n; ++i) {
        T v = a[i];
        std::ptrdiff_t j = i;
        while (j > 0 && less(v, a[j - 1])) {
            a[j] = a[j - 1];
            --j;
        }
        a[j] = v;
    }
}

// Stable ranking by a natural list merge, in the caller's link array and nothing else.
//
// Elements are numbered 1..n and link(e) is an int lvalue for element e; the links finally hold the
// ranks FIRST, FIRST+1, ... .  LESS(e, f) compares elements e and f strictly.
//
// Chains are sorted linked lists; a link 0 or negative ends a chain, a negative one naming the head of
// the next chain of the same sequence.  Chains are dealt alternately into two sequences, so that each
// merge pass takes one chain from each, merges them and deals the result alternately again, without
// ever searching for a chain's start.  The scan builds a chain by appending keys not below its tail and
// prepending keys below its head; other keys are inserted by a walk from the head only within
// kInsertReach places of the chain's start, which bounds the walk.  Equal keys always go behind the
// ones already there, and merges prefer the earlier chain on ties: the ranks are stable.  DESCENDING
// reverses the final chain group by group, a group being a run of equal keys, so equal keys keep
// their input order in the descending ranks too.
constexpr std::ptrdiff_t kInsertReach = 10;

template <class Link, class Less>
void merge_rank(std::ptrdiff_t n, Link link, Less less, bool descending, int first) {
    if (n <= 0) return;
    using Index = int;
    Index head_of[2] = {0, 0}, tail_of[2] = {0, 0};
    int dealt = 0;
    auto deal = [&](Index head, Index tail) {
        const int k = dealt & 1;
        if (tail_of[k] != 0) link(tail_of[k]) = -head;
        else head_of[k] = head;
        tail_of[k] = tail;
        link(tail) = 0;
        ++dealt;
    };

    // The scan.
    Index head = 1, tail = 1, start = 1;
    link(1) = 0;
    for (Index e = 2; e <= static_cast<Index>(n); ++e) {
        if (!less(e, tail)) {
            link(tail) = e;
            link(e) = 0;
            tail = e;
        } else if (less(e, head)) {
            link(e) = head;
            head = e;
        } else if (e - start <= kInsertReach) {
            Index p = head;
            while (link(p) != 0 && !less(e, link(p))) p = link(p);
            link(e) = link(p);
            link(p) = e;
        } else {
            deal(head, tail);
            head = tail = start = e;
            link(e) = 0;
        }
    }
    deal(head, tail);

    // Merge passes until one chain is left.
    while (head_of[1] != 0) {
        Index a = head_of[0], b = head_of[1];
        head_of[0] = head_of[1] = tail_of[0] = tail_of[1] = 0;
        dealt = 0;
        while (a != 0 && b != 0) {
            // x is the last element placed; y the first not yet placed of the other chain.  A run of
            // one chain is followed without touching its links.
            Index merged, x, y;
            bool in_a = !less(b, a);
            if (in_a) merged = x = a, y = b;
            else merged = x = b, y = a;
            Index next_a = 0, next_b = 0;
            for (;;) {
                const Index nx = link(x);
                if (nx <= 0) {
                    (in_a ? next_a : next_b) = -nx;
                    link(x) = y;
                    Index z = y;
                    while (link(z) > 0) z = link(z);
                    (in_a ? next_b : next_a) = -link(z);
                    deal(merged, z);
                    break;
                }
                if (in_a ? !less(y, nx) : less(nx, y)) {
                    x = nx;
                    continue;
                }
                link(x) = y;
                x = y;
                y = nx;
                in_a = !in_a;
            }
            a = next_a;
            b = next_b;
        }
        if (a != 0) {
            // The last chain of the first sequence has no partner; it ends with 0 already and nothing
            // is dealt behind it, so its tail is not needed.
            const int k = dealt & 1;
            if (tail_of[k] != 0) link(tail_of[k]) = -a;
            else head_of[k] = a;
        }
    }

    Index p = head_of[0];
    if (descending) {
        Index reversed = 0;
        while (p != 0) {
            Index group_end = p;
            while (link(group_end) != 0 && !less(p, link(group_end))) group_end = link(group_end);
            const Index next = link(group_end);
            link(group_end) = reversed;
            reversed = p;
            p = next;
        }
        p = reversed;
    }
    int rank = first;
    while (p != 0) {
        const Index next = link(p);
        link(p) = rank++;
        p = next;
    }
}

// The check shared by the rearranging and inverting routines, on p[0..n-1] holding a permutation of
// first..first+n-1.  First every value is tested against the range; then each target is marked by
// storing ~v (negative for every v >= 0, so zero-based ranks can be marked too) in place of the value
// v found at it, a target found marked already being a repeated value.  On success every value is left
// marked, and the caller's walk unmarks them; on a failure the values are as they came.
struct PermutationCheck {
    int ierror = 0;           // 0, 2 (out of range) or 3 (repeated)
    std::ptrdiff_t index = 0; // zero-based position of an out-of-range value
    long value = 0;           // the offending value
};

inline int unmarked(int v) { return v < 0 ? ~v : v; }

inline PermutationCheck check_and_mark(int *p, std::ptrdiff_t n, long first) {
    PermutationCheck result;
    const long last = first + static_cast<long>(n) - 1;
    for (std::ptrdiff_t i = 0; i < n; ++i) {
        if (p[i] < first || p[i] > last) {
            result.ierror = 2;
            result.index = i;
            result.value = p[i];
            return result;
        }
    }
    for (std::ptrdiff_t i = 0; i < n; ++i) {
        const long v = unmarked(p[i]);
        int &target = p[v - first];
        if (target < 0) {
            for (std::ptrdiff_t k = 0; k < n; ++k) p[k] = unmarked(p[k]);
            result.ierror = 3;
            result.value = v;
            return result;
        }
        target = ~target;
    }
    return result;
}

// Rearranges by marked ranks (after check_and_mark): element i moves to position rank(i) - first.
// Each cycle is walked from its smallest position i, which holds the element in transit: SWAP_WITH(i, k)
// exchanges positions i and k, so the element from i lands at its rank and the one displaced waits at
// i for the next step.  Each visited rank is unmarked on the way.
template <class SwapWith>
void follow_cycles(int *p, std::ptrdiff_t n, long first, SwapWith swap_with) {
    for (std::ptrdiff_t i = 0; i < n; ++i) {
        if (p[i] >= 0) continue;
        p[i] = ~p[i];
        std::ptrdiff_t k = p[i] - first;
        while (k != i) {
            swap_with(i, k);
            p[k] = ~p[k];
            k = p[k] - first;
        }
    }
}

// The same walk for elements that fit a variable: the element in transit is held in one, not at i.
template <class T>
void rearrange_values(T *a, int *p, std::ptrdiff_t n, long first) {
    for (std::ptrdiff_t i = 0; i < n; ++i) {
        if (p[i] >= 0) continue;
        p[i] = ~p[i];
        std::ptrdiff_t k = p[i] - first;
        T held = a[i];
        while (k != i) {
            const T displaced = a[k];
            a[k] = held;
            held = displaced;
            p[k] = ~p[k];
            k = p[k] - first;
        }
        a[i] = held;
    }
}

} // namespace zek::m01

#endif
