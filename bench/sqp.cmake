# E04UCA against NLopt's SLSQP (Debian package libnlopt-dev) on the Hock-Schittkowski problems of the
# optimisation tests' table, in the same process.
find_library(ZEK_NLOPT_LIBRARY nlopt REQUIRED)
zek_add_benchmarks(sqp_hock_schittkowski LIBRARIES ${ZEK_NLOPT_LIBRARY}
                   SOURCES ${PROJECT_SOURCE_DIR}/tests/optimisation/hs_collection.cpp
                   INCLUDES ${PROJECT_SOURCE_DIR}/tests/optimisation)
