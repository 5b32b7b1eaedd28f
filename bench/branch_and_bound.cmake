# H02BBF against GLPK's branch and bound (glp_intopt, presolve and cuts off) in the same process, on the
# MIPLIB models of the shared test data.  One program per bench/branch_and_bound_*.cpp; each prints a
# table of times, node counts and time per node.
find_library(ZEK_GLPK_LIBRARY glpk REQUIRED)
file(GLOB bb_bench_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/branch_and_bound_*.cpp)
foreach(source IN LISTS bb_bench_sources)
  get_filename_component(name ${source} NAME_WE)
  add_executable(bench_${name} ${source} $<TARGET_OBJECTS:zek_objects>)
  target_include_directories(bench_${name} PRIVATE ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(bench_${name} PRIVATE zek_warnings ${ZEK_GLPK_LIBRARY} m)
  set_target_properties(bench_${name} PROPERTIES ENABLE_EXPORTS ON)
  target_compile_definitions(bench_${name} PRIVATE ZEK_SHARED_DATA_DIR="${PROJECT_SOURCE_DIR}/tests/data/collections")
endforeach()
