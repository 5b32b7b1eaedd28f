# The minimisers against their peers in the same run: the least-squares family against MINPACK's lmder
# and lmdif (minpack-dev) on the Moré-Garbow-Hillstrom problems and the StRD nonlinear regression
# problems of the tests' data; the bound-constrained, simplex and one-variable minimisers against NLopt
# (libnlopt-dev) and GSL's Brent minimiser (libgsl-dev).  One program per bench/minimisers_*.cpp; each
# prints its tables of problems solved, evaluations and, for the fits, certified digits.
find_library(ZEK_MINPACK_LIBRARY minpack)
find_path(ZEK_MINPACK_INCLUDE minpack.h)
find_library(ZEK_NLOPT_LIBRARY nlopt)
find_library(ZEK_GSL_LIBRARY gsl)
find_library(ZEK_GSLCBLAS_LIBRARY gslcblas)
if(ZEK_MINPACK_LIBRARY AND ZEK_MINPACK_INCLUDE AND ZEK_NLOPT_LIBRARY AND ZEK_GSL_LIBRARY AND ZEK_GSLCBLAS_LIBRARY)
  zek_add_benchmarks(minimisers_ EXPORTS
                     LIBRARIES ${ZEK_MINPACK_LIBRARY} ${ZEK_NLOPT_LIBRARY} ${ZEK_GSL_LIBRARY} ${ZEK_GSLCBLAS_LIBRARY}
                     INCLUDES ${PROJECT_SOURCE_DIR}/tests/optimisation SYSTEM_INCLUDES ${ZEK_MINPACK_INCLUDE}
                     DEFINITIONS ZEK_TEST_DATA_DIR="${PROJECT_SOURCE_DIR}/tests/data")
endif()
