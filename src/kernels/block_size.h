// The block-size store of chapters F07 and F08: eight integers per routine entry, addressed by a
// routine index made from the routine's name.  The factorisations read their block size here; a
// caller configures it through F07_BLOCK_SIZE.  There is no other tuning.
#ifndef ZEK_KERNELS_BLOCK_SIZE_H
#define ZEK_KERNELS_BLOCK_SIZE_H

namespace zek {

// Entry of a routine name (at least six characters are read; fewer give 0).  F07: fourth letter in
// "ABFHMNT", fifth in "DJRW", index = fifth + 4*fourth + 1 (F07ADF 1, F07ARF 3, F07FDF 9, F07FRF 11).
// F08: fourth letter in "ACFJKNPS", fifth letter from that letter's own list of at most twelve, index =
// fifth + 12*fourth + 29.  A name with its chapter in letters 4 to 6 ("ADF07F") takes its fourth and
// fifth letters from letters 1 and 2.  Anything else is 0: no entry.
int block_size_index(const char *name, int name_len);

constexpr int kBlockIndexF07ADF = 1;
constexpr int kBlockIndexF07ARF = 3;
constexpr int kBlockIndexF07FDF = 9;
constexpr int kBlockIndexF07FRF = 11;
constexpr int kBlockIndexCount = 125;
constexpr int kBlockParams = 8;

// Parameter PARAM (1..8) of entry INDEX (1..124); 0 outside the store.
int block_size_parameter(int index, int param);
// Stores VALUE as parameter PARAM of entry INDEX (ignored outside the store).
void set_block_size_parameter(int index, int param, int value);
// The block size (parameter 1) of a routine known by name.
int block_size_of(const char *name);

} // namespace zek

#endif
