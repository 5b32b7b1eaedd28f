# E04NFA and E04NCA against Clp's quadratic simplex, in the same process, on random dense convex QPs and
# least-squares problems with general constraints.  One program per bench/qp_*.cpp.
find_package(PkgConfig REQUIRED)
pkg_check_modules(ZEK_CLP REQUIRED IMPORTED_TARGET clp)
zek_add_benchmarks(qp_ LIBRARIES PkgConfig::ZEK_CLP)
