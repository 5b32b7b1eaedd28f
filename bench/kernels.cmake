# Benchmarks of the F06 kernels against the reference BLAS and serial OpenBLAS, both loaded at run time
# by full path so that the three implementations never clash.  One program per bench/kernels_*.cpp.
zek_add_benchmarks(kernels_ LIBRARIES benchmark::benchmark ${CMAKE_DL_LIBS})
