/* Shared pieces of the tour: binding by export symbol and section headings. */
#ifndef ZEK_TOUR_H
#define ZEK_TOUR_H

/* The address of an export symbol of the loaded library; ends the tour if it is missing. */
void *tour_bind(const char *symbol);
/* Prints a section heading. */
void tour_section(const char *title);

/* One worked example per chapter, each in examples/tour_<name>.c. */
void tour_sorting(void);
void tour_kernels(void);
void tour_linear(void);
void tour_fourier(void);
void tour_options(void);
void tour_lp(void);
void tour_integer(void);

#endif
