# The incomplete-LU GMRES driver against Eigen's GMRES with its incomplete LU (header-only, from
# libeigen3-dev) in the same run, on grid Laplacians and the Matrix Market matrices of the tests.
# One program per bench/sparse_*.cpp; each prints a table of times, iteration counts and ratios.
find_path(ZEK_EIGEN_INCLUDE Eigen/Sparse PATH_SUFFIXES eigen3)
if(ZEK_EIGEN_INCLUDE)
  file(GLOB sparse_bench_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/sparse_*.cpp)
  foreach(source IN LISTS sparse_bench_sources)
    get_filename_component(name ${source} NAME_WE)
    add_executable(bench_${name} ${source} $<TARGET_OBJECTS:zek_objects>)
    target_include_directories(bench_${name} PRIVATE ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/src)
    target_include_directories(bench_${name} SYSTEM PRIVATE ${ZEK_EIGEN_INCLUDE})
    target_link_libraries(bench_${name} PRIVATE zek_warnings m)
    target_compile_definitions(bench_${name} PRIVATE ZEK_TEST_DATA_DIR="${PROJECT_SOURCE_DIR}/tests/data")
  endforeach()
endif()
