// What the library asks of Windows when it is the host's zek2.dll: the load entry and the message box.
// Elsewhere this file is empty.
#if defined(_WIN32)
#include <windows.h>

#include "frame/output.h"

// The library needs no start-up of its own: its tables are initialised data and its units hold their
// defaults.  It never looks at threads, so the loader is told not to report them.
extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) DisableThreadLibraryCalls(instance);
    return TRUE;
}

namespace zek {

// A modal box with no owner window and the plain OK button; it returns when the user dismisses it.
void notice(const char *caption, const char *text, NoticeIcon icon) {
    UINT style = MB_OK;
    if (icon == NoticeIcon::Stop) style |= MB_ICONSTOP;
    if (icon == NoticeIcon::Exclamation) style |= MB_ICONEXCLAMATION;
    MessageBoxA(nullptr, text, caption, style);
}

} // namespace zek
#endif
