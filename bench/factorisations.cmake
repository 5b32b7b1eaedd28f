# Benchmarks of the dense factorisations (F07ADF, F07FDF, F01QCF) against reference LAPACK over
# reference BLAS and against serial OpenBLAS, each peer loaded at run time in a link-map namespace of its
# own so that the three implementations never clash.  One program per bench/factorisations_*.cpp.
file(GLOB factorisation_bench_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/factorisations_*.cpp)
foreach(source IN LISTS factorisation_bench_sources)
  get_filename_component(name ${source} NAME_WE)
  add_executable(bench_${name} ${source} $<TARGET_OBJECTS:zek_objects>)
  target_include_directories(bench_${name} PRIVATE ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(bench_${name} PRIVATE zek_warnings benchmark::benchmark ${CMAKE_DL_LIBS} m)
endforeach()
