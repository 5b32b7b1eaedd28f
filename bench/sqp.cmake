# E04UCA against NLopt's SLSQP (Debian package libnlopt-dev) on the Hock-Schittkowski problems of the
# optimisation tests' table, in the same process.
# The table's option helpers report through GoogleTest's assertions.
find_library(ZEK_NLOPT_LIBRARY nlopt REQUIRED)
find_package(GTest REQUIRED)
zek_add_benchmarks(sqp_hock_schittkowski LIBRARIES ${ZEK_NLOPT_LIBRARY} GTest::gtest
                   SOURCES ${PROJECT_SOURCE_DIR}/tests/optimisation/hs_collection.cpp
                           ${PROJECT_SOURCE_DIR}/tests/optimisation/option_test_support.cpp
                   INCLUDES ${PROJECT_SOURCE_DIR}/tests/optimisation)
