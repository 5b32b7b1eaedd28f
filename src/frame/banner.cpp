// The implementation banner.
#include <cstring>

#include "frame/output.h"
#include "zek2/a00.h"

extern "C" void A00_BANNER(void) {
    // Twenty records are kept; the details of how the library was created (8 to 19) are not printed.
    static const char *const kBanner[20] = {
        " *** Start of ZEK Library implementation details ***",
        " ",
        " Implementation title: Generalised Base Version",
        "            Precision: FORTRAN double precision",
        "         Product Code: QXMOD07D",
        "                 Mark: 03C",
        " ",
        " Created using:",
        "     hardware -   Intel Pentium II 400MHz",
        "     op. sys. -   RedHat Linux 7.2",
        "     compiler -   zekf2c/gcc",
        " ",
        " ",
        " ",
        " Applicable to:",
        "     hardware -   Intel x86",
        "     op. sys. -   Intel Linux (glibc2.1+)",
        "     compiler -   gcc 2.96",
        " ",
        " *** End of ZEK Library implementation details ***",
    };
    const int unit = zek::advisory_unit();
    for (int i : {0, 1, 2, 3, 4, 5, 6, 19})
        zek::host_line(unit, kBanner[i], static_cast<int>(std::strlen(kBanner[i])));
}
