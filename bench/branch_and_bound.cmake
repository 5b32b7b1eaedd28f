# H02BBF against GLPK's branch and bound (glp_intopt, presolve and cuts off) in the same process, on the
# MIPLIB models of the shared test data.  One program per bench/branch_and_bound_*.cpp; each prints a
# table of times, node counts and time per node.
find_library(ZEK_GLPK_LIBRARY glpk REQUIRED)
zek_add_benchmarks(branch_and_bound_ LIBRARIES ${ZEK_GLPK_LIBRARY} EXPORTS
                   DEFINITIONS ZEK_SHARED_DATA_DIR="${PROJECT_SOURCE_DIR}/tests/data/collections")
