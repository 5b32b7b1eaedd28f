# Benchmarks of the Schur forms and eigenvectors (F08PEF, F08QKF) against DHSEQR and DTREVC of reference
# LAPACK over reference BLAS and of serial OpenBLAS, each peer in a link-map namespace of its own.
zek_add_benchmarks(eigen_schur LIBRARIES benchmark::benchmark ${CMAKE_DL_LIBS})
