# The reference tests compare the Fourier transforms with FFTW (libfftw3-dev).
target_link_libraries(${target} PRIVATE fftw3)
