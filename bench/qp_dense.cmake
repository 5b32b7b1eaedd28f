# E04NFA and E04NCA against Clp's quadratic simplex, in the same process, on random dense convex QPs and
# least-squares problems with general constraints.  One program per bench/qp_*.cpp.
find_package(PkgConfig REQUIRED)
pkg_check_modules(ZEK_CLP REQUIRED IMPORTED_TARGET clp)
file(GLOB qp_bench_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/qp_*.cpp)
foreach(source IN LISTS qp_bench_sources)
  get_filename_component(name ${source} NAME_WE)
  add_executable(bench_${name} ${source} $<TARGET_OBJECTS:zek_objects>)
  target_include_directories(bench_${name} PRIVATE ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(bench_${name} PRIVATE zek_warnings PkgConfig::ZEK_CLP m)
endforeach()
