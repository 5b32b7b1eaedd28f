// Argument checks of the checked kernels (level 2 and 3): who reports an illegal parameter, and how.
#ifndef ZEK_KERNELS_ARG_ERROR_H
#define ZEK_KERNELS_ARG_ERROR_H

namespace zek {

// The hard route for an illegal parameter INFO of a kernel named by a 13-character SRNAME such as
// "F06PAF/DGEMV ": a hard failure on the host channel, whatever the caller asked for.
void F06_ARG_ERROR(const char *srname, int info);
// Its master: the selector changes nothing.
void arg_error_master(int selector, const char *srname, int info);

// Which reporter a form of a checked kernel uses: the masters and aliases the hard route, the copies
// the exported stream form (which returns), the enumerated forms the catalogue code 71 on a clean
// fail record (which returns).
enum class Reporter { Hard, Stream, Enumerated };

// A kernel's two report names: "F06PAF/DGEMV " for the character forms, "f06pac/dgemv" for the
// enumerated form.
struct KernelNames {
    const char *upper;
    const char *lower;
};

// Reports illegal parameter INFO through the route of REPORTER.
void report_bad_argument(Reporter reporter, const KernelNames &names, int info);

// A leading dimension must be at least max(1, rows).
inline bool bad_leading_dimension(int ld, int rows) { return rows > 1 ? ld < rows : ld < 1; }

} // namespace zek

#endif
