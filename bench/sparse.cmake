# The incomplete-LU GMRES driver against Eigen's GMRES with its incomplete LU (header-only, from
# libeigen3-dev) in the same run, on grid Laplacians and the Matrix Market matrices of the tests.
# One program per bench/sparse_*.cpp; each prints a table of times, iteration counts and ratios.
find_path(ZEK_EIGEN_INCLUDE Eigen/Sparse PATH_SUFFIXES eigen3)
if(ZEK_EIGEN_INCLUDE)
  zek_add_benchmarks(sparse_ SYSTEM_INCLUDES ${ZEK_EIGEN_INCLUDE}
                     DEFINITIONS ZEK_TEST_DATA_DIR="${PROJECT_SOURCE_DIR}/tests/data")
endif()
