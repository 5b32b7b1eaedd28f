# E04UCA against NLopt's SLSQP (Debian package libnlopt-dev) on the Hock-Schittkowski problems of the
# optimisation tests' table, in the same process.
find_library(ZEK_NLOPT_LIBRARY nlopt REQUIRED)
add_executable(bench_sqp_hock_schittkowski ${CMAKE_CURRENT_LIST_DIR}/sqp_hock_schittkowski.cpp
               ${PROJECT_SOURCE_DIR}/tests/optimisation/hs_collection.cpp $<TARGET_OBJECTS:zek_objects>)
target_include_directories(bench_sqp_hock_schittkowski PRIVATE ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/src
                           ${PROJECT_SOURCE_DIR}/tests/optimisation)
target_link_libraries(bench_sqp_hock_schittkowski PRIVATE zek_warnings ${ZEK_NLOPT_LIBRARY} m)
