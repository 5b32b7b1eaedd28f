# Sorting against std::sort and the special functions against the C library's tgamma, lgamma and erfc,
# measured in the same run.  One program per bench/sorting_*.cpp.
file(GLOB sorting_bench_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/sorting_*.cpp)
foreach(source IN LISTS sorting_bench_sources)
  get_filename_component(name ${source} NAME_WE)
  add_executable(bench_${name} ${source} $<TARGET_OBJECTS:zek_objects>)
  target_include_directories(bench_${name} PRIVATE ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(bench_${name} PRIVATE zek_warnings benchmark::benchmark m)
endforeach()
