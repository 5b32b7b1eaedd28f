# Benchmarks of the F06 kernels against the reference BLAS and serial OpenBLAS, both loaded at run time
# by full path so that the three implementations never clash.  One program per bench/kernels_*.cpp.
file(GLOB kernel_bench_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/kernels_*.cpp)
foreach(source IN LISTS kernel_bench_sources)
  get_filename_component(name ${source} NAME_WE)
  add_executable(bench_${name} ${source} $<TARGET_OBJECTS:zek_objects>)
  target_include_directories(bench_${name} PRIVATE ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(bench_${name} PRIVATE zek_warnings benchmark::benchmark ${CMAKE_DL_LIBS} m)
endforeach()
