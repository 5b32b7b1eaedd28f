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
  file(GLOB minimiser_bench_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/minimisers_*.cpp)
  foreach(source IN LISTS minimiser_bench_sources)
    get_filename_component(name ${source} NAME_WE)
    add_executable(bench_${name} ${source} $<TARGET_OBJECTS:zek_objects>)
    target_include_directories(bench_${name} PRIVATE ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/src
                               ${PROJECT_SOURCE_DIR}/tests/optimisation)
    target_include_directories(bench_${name} SYSTEM PRIVATE ${ZEK_MINPACK_INCLUDE})
    target_link_libraries(bench_${name} PRIVATE zek_warnings ${ZEK_MINPACK_LIBRARY} ${ZEK_NLOPT_LIBRARY}
                          ${ZEK_GSL_LIBRARY} ${ZEK_GSLCBLAS_LIBRARY} m)
    set_target_properties(bench_${name} PROPERTIES ENABLE_EXPORTS ON)
    target_compile_definitions(bench_${name} PRIVATE ZEK_TEST_DATA_DIR="${PROJECT_SOURCE_DIR}/tests/data")
  endforeach()
endif()
