# Benchmarks of the Schur forms and eigenvectors (F08PEF, F08QKF) against DHSEQR and DTREVC of reference
# LAPACK over reference BLAS and of serial OpenBLAS, each peer in a link-map namespace of its own.
add_executable(bench_eigen_schur ${CMAKE_CURRENT_LIST_DIR}/eigen_schur.cpp $<TARGET_OBJECTS:zek_objects>)
target_include_directories(bench_eigen_schur PRIVATE ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/src)
target_link_libraries(bench_eigen_schur PRIVATE zek_warnings benchmark::benchmark ${CMAKE_DL_LIBS} m)
