# The suite captures host-channel text with the frame suite's capture helper.
target_sources(${target} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/frame/host_capture.cpp)
# The reference tests compare the Fourier transforms with FFTW (libfftw3-dev).
target_link_libraries(${target} PRIVATE fftw3)
# The quadrature reference tests compare the one-dimensional integrator with GSL's adaptive
# integration with extrapolation (libgsl-dev), when it is installed.
find_path(ZEK_GSL_INCLUDE_DIR gsl/gsl_integration.h)
find_library(ZEK_GSL_LIBRARY gsl)
find_library(ZEK_GSL_CBLAS_LIBRARY gslcblas)
if(ZEK_GSL_INCLUDE_DIR AND ZEK_GSL_LIBRARY AND ZEK_GSL_CBLAS_LIBRARY)
  target_include_directories(${target} PRIVATE ${ZEK_GSL_INCLUDE_DIR})
  target_link_libraries(${target} PRIVATE ${ZEK_GSL_LIBRARY} ${ZEK_GSL_CBLAS_LIBRARY})
  target_compile_definitions(${target} PRIVATE ZEK_HAVE_GSL=1)
endif()
