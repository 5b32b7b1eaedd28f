# E04MFA against GLPK's simplex, in the same process, on the Netlib models of the shared test data.
# One program per bench/linear_programming_*.cpp; each prints a table of times and iteration counts.
find_library(ZEK_GLPK_LIBRARY glpk REQUIRED)
file(GLOB lp_bench_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/linear_programming_*.cpp)
foreach(source IN LISTS lp_bench_sources)
  get_filename_component(name ${source} NAME_WE)
  add_executable(bench_${name} ${source} $<TARGET_OBJECTS:zek_objects>)
  target_include_directories(bench_${name} PRIVATE ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(bench_${name} PRIVATE zek_warnings ${ZEK_GLPK_LIBRARY} m)
  target_compile_definitions(bench_${name} PRIVATE ZEK_SHARED_DATA_DIR="${PROJECT_SOURCE_DIR}/tests/data/collections")
endforeach()
