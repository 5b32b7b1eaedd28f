// The advisory tables of the printing drivers, one per chapter.
#ifndef ZEK_FRAME_ADVISORY_H
#define ZEK_FRAME_ADVISORY_H

namespace zek {

extern const char *const kAdvisoryE04[426];
extern const char *const kAdvisoryG13[42];
extern const char *const kAdvisoryG02[21];
extern const char *const kAdvisoryG03[9];
extern const char *const kAdvisoryH02[90];

} // namespace zek

#endif
