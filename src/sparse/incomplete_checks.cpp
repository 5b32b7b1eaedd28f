// Argument checks and outcomes that the incomplete Cholesky and incomplete LU factorisations share; the
// texts that differ stay with each routine.
#include "sparse/exits.h"

#include <algorithm>
#include <cstring>

namespace zek::sparse {
namespace {

// The exits whose numbers the two factorisations share; the others take their numbers and texts from
// the factorisation that raises them.
enum IncompleteExit { kLaShort, kDtolNegative };
constexpr ExitRow kIncompleteExits[] = {
    {1, 99999, " ** On entry, LA .lt. 2*NNZ:\n    LA =%16ld NNZ =%16ld."},
    {1, 99998, " ** On entry, DTOL .lt. 0.0: DTOL =%12.4E."},
};

} // namespace

bool incomplete_options(FailureExit &exit, int la, int nnz, int lfill, double dtol, const LetterOption &first,
                        const LetterOption &second) {
    if (static_cast<Index>(la) < 2 * static_cast<Index>(nnz)) {
        take(exit, kIncompleteExits, kLaShort, {la, nnz});
        return false;
    }
    const LetterOption *fault = nullptr;
    bool dtol_fault = lfill < 0 && !(dtol >= 0.0);
    for (const LetterOption *o : {&first, &second})
        if (o->value == '\0' || std::strchr(o->allowed, o->value) == nullptr) {
            fault = o;
            dtol_fault = false;
        }
    if (dtol_fault) {
        take(exit, kIncompleteExits, kDtolNegative, {dtol});
        return false;
    }
    if (fault != nullptr) {
        exit.fail(1, fault->exit_number, fault->text, {letter_text(fault->given, fault->given_len)});
        return false;
    }
    return true;
}

bool permutation_valid(FailureExit &exit, int n, const int perm[], int scratch[], long range_exit,
                       const char *range_text, const char *repeat_text) {
    std::fill(scratch, scratch + n, 0);
    for (int i = 0; i < n; ++i) {
        const int v = perm[i];
        if (v < 1 || v > n) {
            exit.fail(3, range_exit, range_text);
            return false;
        }
        if (scratch[v - 1] != 0) {
            exit.fail(3, range_exit - 1, repeat_text);
            return false;
        }
        scratch[v - 1] = 1;
    }
    return true;
}

bool liwork_enough(FailureExit &exit, long liwork, Index need, long exit_number) {
    if (liwork >= need) return true;
    exit.fail(1, exit_number,
              " ** On entry, LIWORK is too small: LIWORK =%16ld.\n    Minimum required value of LIWORK =%16ld.",
              {liwork, static_cast<long>(need)});
    return false;
}

void incomplete_outcome(FailureExit &exit, int core, long fill_exit, const char *fill_text, const char *serious_text) {
    if (core == 0)
        exit.succeed();
    else if (core == 1)
        exit.fail(4, fill_exit, fill_text);
    else
        exit.fail(5, fill_exit - 1, serious_text);
}

} // namespace zek::sparse
