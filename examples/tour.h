/* Shared pieces of the tour: binding by export symbol and section headings. */
#ifndef ZEK_TOUR_H
#define ZEK_TOUR_H

#include <stdio.h>

#include "zek2/types.h"

/* The address of an export symbol of the loaded library; ends the tour if it is missing. */
void *tour_bind(const char *symbol);
/* Prints a section heading. */
void tour_section(const char *title);
/* Writes TEXT to a fresh temporary file named from PATH_TEMPLATE (ending in XXXXXX, rewritten in
 * place), opens it through X04_OPEN_INPUT (q35887) as a host would, and stores in *UNIT the int a host
 * keeps as the unit number.  Returns the stream, or null (with a message) if the file cannot be written. */
FILE *tour_open_text(const char *text, char *path_template, int *unit);

/* H02BUF (q35799), the MPSX reader, and H02BVF (q44026), the solution printer, as the tour binds them. */
typedef void (ZEK_CALLBACK *tour_mpsx_reader)(const int *, int *, int *, const int *, const int *, double *, double *, double *,
                                 double *, int *, int *, char *, char *, char *, char *, char *, char *, double *,
                                 const double *, const double *, const char *, const int *, int *, int, int, int,
                                 int, int, int, int);
typedef void (ZEK_CALLBACK *tour_solution_printer)(const int *, const int *, const double *, const int *, const char *,
                                      const double *, const double *, const int *, const double *, const double *,
                                      const double *, int *, int);

/* One worked example per chapter, each in examples/tour_<name>.c. */
void tour_sorting(void);
void tour_kernels(void);
void tour_linear(void);
void tour_fourier(void);
void tour_options(void);
void tour_lp(void);
void tour_integer(void);
void tour_quadrature(void);
void tour_networks(void);
void tour_minimisers(void);
void tour_sqp(void);
void tour_roots(void);
void tour_svd(void);
void tour_eigen(void);
void tour_sparse(void);
void tour_descriptive(void);
void tour_qp(void);
void tour_statistics(void);
void tour_glm(void);
void tour_iqp(void);

#endif
