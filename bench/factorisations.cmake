# Benchmarks of the dense factorisations (F07ADF, F07FDF, F01QCF) against reference LAPACK over
# reference BLAS and against serial OpenBLAS, each peer loaded at run time in a link-map namespace of its
# own so that the three implementations never clash.  One program per bench/factorisations_*.cpp.
zek_add_benchmarks(factorisations_ LIBRARIES benchmark::benchmark ${CMAKE_DL_LIBS})
