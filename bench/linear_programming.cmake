# E04MFA against GLPK's simplex, in the same process, on the Netlib models of the shared test data.
# One program per bench/linear_programming_*.cpp; each prints a table of times and iteration counts.
find_library(ZEK_GLPK_LIBRARY glpk REQUIRED)
zek_add_benchmarks(linear_programming_ LIBRARIES ${ZEK_GLPK_LIBRARY}
                   DEFINITIONS ZEK_SHARED_DATA_DIR="${PROJECT_SOURCE_DIR}/tests/data/collections")
