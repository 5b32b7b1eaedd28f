# Fourier transforms against FFTW (libfftw3-dev), measured in the same run.
file(GLOB fourier_bench_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/fourier_*.cpp)
foreach(source IN LISTS fourier_bench_sources)
  get_filename_component(name ${source} NAME_WE)
  add_executable(bench_${name} ${source} $<TARGET_OBJECTS:zek_objects>)
  target_include_directories(bench_${name} PRIVATE ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(bench_${name} PRIVATE zek_warnings benchmark::benchmark fftw3 m)
endforeach()
