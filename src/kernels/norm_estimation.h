// The 1-norm estimator of F04YCF and F04ZCF, for condition numbers inside the library.
#ifndef ZEK_KERNELS_NORM_ESTIMATION_H
#define ZEK_KERNELS_NORM_ESTIMATION_H

#include "kernels/kernel_types.h"

namespace zek {

// One step of the reverse-communication estimator of ||A||_1 (N by N): call with *KASE = 0 first; while
// *KASE comes back 1 (replace X by A*X) or 2 (by A'*X, A^H*X for complex), do so and call again.  When
// *KASE is 0, *EST is the estimate and V = A*w with ||V||_1 = EST*||w||_1.  ISAVE holds N+3 integers (3
// for the complex form).
void estimate_norm(int n, double *v, double *x, int *isave, double *est, int *kase);
void estimate_norm(int n, Complex *v, Complex *x, int *isave, double *est, int *kase);

} // namespace zek

#endif
