# Sorting against std::sort and the special functions against the C library's tgamma, lgamma and erfc,
# measured in the same run.  One program per bench/sorting_*.cpp.
zek_add_benchmarks(sorting_ LIBRARIES benchmark::benchmark)
