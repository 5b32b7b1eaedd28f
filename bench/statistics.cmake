# Distribution functions and deviates against Boost.Math and GSL's cdf routines (relative error and time
# per call), the generators against GSL's and the C++ library's Mersenne twisters, and the regression
# fit on a 10^5 x 50 design against LAPACK's dgels (loaded at run time, so its BLAS stays its own).
find_package(Boost REQUIRED)
zek_add_benchmarks(statistics LIBRARIES benchmark::benchmark Boost::headers gsl gslcblas ${CMAKE_DL_LIBS})
