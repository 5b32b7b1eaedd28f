// The block-size store of F07/F08 and its exported accessor F07_BLOCK_SIZE.
#include "kernels/block_size.h"

#include <cstring>

#include "zek2/f07.h"

namespace zek {
namespace {

// The store lives in writable data for the life of the process.  Parameter 1 is 1 for the four
// factorisations of F07, so they start unblocked; every other entry starts at 0, which the readers
// also take as "unblocked".
int g_store[kBlockIndexCount][kBlockParams] = {};

struct StoreInit {
    StoreInit() {
        g_store[kBlockIndexF07ADF][0] = 1;
        g_store[kBlockIndexF07ARF][0] = 1;
        g_store[kBlockIndexF07FDF][0] = 1;
        g_store[kBlockIndexF07FRF][0] = 1;
    }
};
const StoreInit g_store_init;

char upper(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }

int position(const char *list, char c) {
    if (c == '\0') return -1;
    const char *p = std::strchr(list, c);
    return p == nullptr ? -1 : static_cast<int>(p - list);
}

// The fifth letters of F08 for each fourth letter, in the order of their count (the published
// families: real routines first, then complex).
const char *const kF08Fourth = "ACFJKNPS";
const char *const kF08Fifth[8] = {
    "EFGHJKSTUVWX", // A: QR and LQ
    "EFGHJKSTUVWX", // C: QL and RQ
    "CEFGHJKSTUVW", // F: symmetric tridiagonal reduction
    "CEFGHJKSTUVX", // J: symmetric tridiagonal eigenproblems
    "EFGHJKSTUVWX", // K: bidiagonal reduction
    "BEFGHJSTUVWX", // N: Hessenberg reduction and balancing
    "EFGHJKSTUVWX", // P: Hessenberg eigenproblems
    "EFGHJKSTUVWX", // S: generalised reductions
};

} // namespace

int block_size_index(const char *name, int name_len) {
    if (name == nullptr || name_len < 6) return 0;
    char c[6];
    for (int i = 0; i < 6; ++i) c[i] = upper(name[i]);
    char chapter[3] = {c[0], c[1], c[2]};
    char fourth = c[3], fifth = c[4];
    if (!(c[0] == 'F' && c[1] == '0')) {
        // Chapter in letters 4 to 6: the routine letters are the first two.
        chapter[0] = c[3];
        chapter[1] = c[4];
        chapter[2] = c[5];
        fourth = c[0];
        fifth = c[1];
    }
    if (chapter[0] != 'F' || chapter[1] != '0') return 0;
    if (chapter[2] == '7') {
        const int a = position("ABFHMNT", fourth);
        const int b = position("DJRW", fifth);
        return (a < 0 || b < 0) ? 0 : b + 4 * a + 1;
    }
    if (chapter[2] == '8') {
        const int a = position(kF08Fourth, fourth);
        if (a < 0) return 0;
        const int b = position(kF08Fifth[a], fifth);
        return b < 0 ? 0 : b + 12 * a + 29;
    }
    return 0;
}

int block_size_parameter(int index, int param) {
    if (index < 1 || index >= kBlockIndexCount || param < 1 || param > kBlockParams) return 0;
    return g_store[index][param - 1];
}

void set_block_size_parameter(int index, int param, int value) {
    if (index < 1 || index >= kBlockIndexCount || param < 1 || param > kBlockParams) return;
    g_store[index][param - 1] = value;
}

int block_size_of(const char *name) {
    return block_size_parameter(block_size_index(name, static_cast<int>(std::strlen(name))), 1);
}

} // namespace zek

extern "C" void F07_BLOCK_SIZE(const int *param, const char *name, int *value, const int *set, int name_len) {
    if (*param < 1 || *param > zek::kBlockParams) {
        *value = -1;
        return;
    }
    const int index = zek::block_size_index(name, name_len);
    if (index == 0) {
        *value = -2;
        return;
    }
    if (*set == 0)
        *value = zek::block_size_parameter(index, *param);
    else
        zek::set_block_size_parameter(index, *param, *value);
}
