/* The tour: a small host written in C.  Like the computer-algebra host, it loads the library at run
 * time, binds routines by their export symbols and receives the library's console text through the
 * host's print routine, OldTorviPrintf.  Each chapter adds one worked example.
 *
 * On Linux the tour loads libzek2.so with dlopen and defines OldTorviPrintf itself.  On 32-bit Windows
 * it loads zek2.dll with LoadLibrary and binds the decorated names ("_q39576@36") with GetProcAddress,
 * as the host does; OldTorviPrintf then lives in torvic.dll, which zek2.dll imports. */
#include <stdarg.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "tour.h"
#include "zek2/types.h"

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include "tour_exports.h" /* the library's export names, decorated, from its module definition */

#ifndef ZEK_LIBRARY_PATH
#define ZEK_LIBRARY_PATH "zek2.dll"
#endif

static HMODULE library;

/* The decorated export name of SYMBOL: "_" SYMBOL "@" bytes for a routine, SYMBOL for a data word. */
static const char *decorated_name(const char *symbol) {
    const size_t n = strlen(symbol);
    for (size_t i = 0; i < sizeof tour_export_names / sizeof tour_export_names[0]; ++i) {
        const char *name = tour_export_names[i];
        if (strcmp(name, symbol) == 0) return name;
        if (name[0] == '_' && strncmp(name + 1, symbol, n) == 0 && name[n + 1] == '@') return name;
    }
    return symbol;
}

void *tour_bind(const char *symbol) {
    const char *name = decorated_name(symbol);
    void *address = (void *)(uintptr_t)GetProcAddress(library, name);
    if (address == NULL) {
        fprintf(stderr, "tour: symbol %s (%s) not found\n", symbol, name);
        exit(1);
    }
    return address;
}

static int load_library(void) {
    /* Lines end in a bare newline, as the library writes them, so the console text reads the same on
     * every platform. */
    _setmode(_fileno(stdout), _O_BINARY);
    library = LoadLibraryA(ZEK_LIBRARY_PATH);
    if (library == NULL) fprintf(stderr, "tour: cannot load %s\n", ZEK_LIBRARY_PATH);
    return library != NULL;
}

/* The stand-in torvic.dll counts the pieces of text it received. */
static int host_pieces_received(void) {
    int (*pieces)(void) = (int (*)(void))(uintptr_t)GetProcAddress(GetModuleHandleA("torvic.dll"), "TorviPieces");
    return pieces != NULL ? pieces() : -1;
}

static void unload_library(void) { FreeLibrary(library); }

#else
#include <dlfcn.h>

#ifndef ZEK_LIBRARY_PATH
#define ZEK_LIBRARY_PATH "libzek2.so"
#endif

/* The host's print routine: the library finds it in the host and sends all host-channel text here.
 * This host counts the pieces it receives and prints them on its console, stdout. */
static int host_pieces;

__attribute__((visibility("default"), format(printf, 1, 2))) int OldTorviPrintf(const char *format, ...) {
    va_list args;
    ++host_pieces;
    va_start(args, format);
    int n = vprintf(format, args);
    va_end(args);
    return n;
}

static void *library;

void *tour_bind(const char *symbol) {
    void *address = dlsym(library, symbol);
    if (address == NULL) {
        fprintf(stderr, "tour: symbol %s not found: %s\n", symbol, dlerror());
        exit(1);
    }
    return address;
}

static int load_library(void) {
    library = dlopen(ZEK_LIBRARY_PATH, RTLD_NOW | RTLD_LOCAL);
    if (library == NULL) fprintf(stderr, "tour: cannot load %s: %s\n", ZEK_LIBRARY_PATH, dlerror());
    return library != NULL;
}

static int host_pieces_received(void) { return host_pieces; }

static void unload_library(void) { dlclose(library); }
#endif

FILE *tour_open_text(const char *text, char *path_template, int *unit) {
    FILE *(ZEK_CALLBACK *open_input)(const char *) = (FILE * (ZEK_CALLBACK *)(const char *)) tour_bind("q35887");
    const size_t length = strlen(text);
    FILE *stream;
    int fd = mkstemp(path_template);
    if (fd < 0 || write(fd, text, length) != (ssize_t)length) {
        printf("cannot write a temporary file\n");
        if (fd >= 0) close(fd);
        return NULL;
    }
    close(fd);
    stream = open_input(path_template);
    *unit = (int)(unsigned int)(uintptr_t)stream; /* a host keeps the stream in an int: its unit */
    return stream;
}

void tour_section(const char *title) { printf("\n== %s ==\n", title); }

/* The frame: the implementation banner and a soft failure report. */
static void tour_frame(void) {
    void (ZEK_CALLBACK *banner)(void) = (void (ZEK_CALLBACK *)(void))tour_bind("q85583");
    int (ZEK_CALLBACK *report)(int, int, const char *, int, const char *, int, int) =
        (int (ZEK_CALLBACK *)(int, int, const char *, int, const char *, int, int))tour_bind("q76226");
    double (ZEK_CALLBACK *machine_precision)(void);

    tour_section("implementation banner (q85583)");
    banner();

    tour_section("soft failure report (q76226, IFAIL = -1)");
    char record[80];
    memset(record, ' ', sizeof record);
    snprintf(record, sizeof record, " ** On entry, N .lt. 1: N =%16ld.", 0L);
    int ifail = report(-1, 1, "C02ALF", 1, record, 6, 80);
    printf("IFAIL on return: %d\n", ifail);

    machine_precision = (double (ZEK_CALLBACK *)(void))tour_bind("q59345");
    printf("machine precision (q59345): %.16e\n", machine_precision());
}

int main(void) {
    if (!load_library()) return 1;
    tour_frame();
    tour_sorting();
    tour_kernels();
    tour_linear();
    tour_fourier();
    tour_options();
    tour_lp();
    tour_integer();
    tour_quadrature();
    tour_networks();
    tour_minimisers();
    tour_roots();
    tour_svd();
    tour_eigen();
    tour_sparse();
    tour_qp();
    tour_sqp();
    tour_statistics();
    tour_glm();
    tour_iqp();
    tour_descriptive();
    printf("\nThe host's print routine received %d pieces of text.\n", host_pieces_received());
    unload_library();
    return 0;
}
