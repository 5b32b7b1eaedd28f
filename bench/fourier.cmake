# Fourier transforms against FFTW (libfftw3-dev), measured in the same run.
zek_add_benchmarks(fourier_ LIBRARIES benchmark::benchmark fftw3)
