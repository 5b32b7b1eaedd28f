# Distribution functions and deviates against Boost.Math and GSL's cdf routines (relative error and time
# per call), the generators against GSL's and the C++ library's Mersenne twisters, and the regression
# fit on a 10^5 x 50 design against LAPACK's dgels (loaded at run time, so its BLAS stays its own).
find_package(Boost REQUIRED)
add_executable(bench_statistics ${CMAKE_CURRENT_LIST_DIR}/statistics.cpp $<TARGET_OBJECTS:zek_objects>)
target_include_directories(bench_statistics PRIVATE ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/src)
target_link_libraries(bench_statistics PRIVATE zek_warnings benchmark::benchmark Boost::headers gsl gslcblas
                      ${CMAKE_DL_LIBS} m)
