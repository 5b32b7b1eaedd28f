/* The tour: a small host written in C.  Like the computer-algebra host, it loads libzek2.so at run
 * time, binds routines by their export symbols and receives the library's console text through its
 * own print routine, OldTorviPrintf.  Each chapter adds one worked example. */
#include <dlfcn.h>
#include <stdarg.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "tour.h"
#include "zek2/types.h"

#ifndef ZEK_LIBRARY_PATH
#define ZEK_LIBRARY_PATH "libzek2.so"
#endif

/* The host's print routine: the library finds it in the host and sends all host-channel text here.
 * This host counts the pieces it receives and prints them on its console, stdout. */
static int host_pieces;

__attribute__((visibility("default"))) int OldTorviPrintf(const char *format, ...) {
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

FILE *tour_open_text(const char *text, char *path_template, int *unit) {
    FILE *(*open_input)(const char *) = (FILE * (*)(const char *)) tour_bind("q35887");
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
    void (*banner)(void) = (void (*)(void))tour_bind("q85583");
    int (*report)(int, int, const char *, int, const char *, int, int) =
        (int (*)(int, int, const char *, int, const char *, int, int))tour_bind("q76226");
    double (*machine_precision)(void);

    tour_section("implementation banner (q85583)");
    banner();

    tour_section("soft failure report (q76226, IFAIL = -1)");
    char record[80];
    memset(record, ' ', sizeof record);
    snprintf(record, sizeof record, " ** On entry, N .lt. 1: N =%16ld.", 0L);
    int ifail = report(-1, 1, "C02ALF", 1, record, 6, 80);
    printf("IFAIL on return: %d\n", ifail);

    machine_precision = (double (*)(void))tour_bind("q59345");
    printf("machine precision (q59345): %.16e\n", machine_precision());
}

int main(void) {
    library = dlopen(ZEK_LIBRARY_PATH, RTLD_NOW | RTLD_LOCAL);
    if (library == NULL) {
        fprintf(stderr, "tour: cannot load %s: %s\n", ZEK_LIBRARY_PATH, dlerror());
        return 1;
    }
    tour_frame();
    tour_sorting();
    tour_kernels();
    tour_linear();
    tour_fourier();
    tour_options();
    tour_lp();
    tour_integer();
    tour_statistics();
    tour_roots();
    tour_svd();
    printf("\nThe host's print routine received %d pieces of text.\n", host_pieces);
    dlclose(library);
    return 0;
}
