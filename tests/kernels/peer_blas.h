// A peer BLAS library loaded at run time by full path, so that its symbols never clash with ours or
// with another peer's.  Routines are looked up by their Fortran names (lower case, trailing '_').
#ifndef ZEK_TESTS_PEER_BLAS_H
#define ZEK_TESTS_PEER_BLAS_H

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace zek_test {

constexpr const char *kReferenceBlasPath = "/usr/lib/x86_64-linux-gnu/blas/libblas.so.3";

// Complex results of the Fortran functions come back as two doubles in registers.
struct FortranComplex {
    double re;
    double im;
};

class PeerBlas {
public:
    explicit PeerBlas(const char *path);
    ~PeerBlas();
    PeerBlas(const PeerBlas &) = delete;
    PeerBlas &operator=(const PeerBlas &) = delete;
    bool loaded() const { return handle_ != nullptr; }
    const std::string &error() const { return error_; }
    // The address of NAME_ (null when missing).
    void *symbol(const char *name) const;
    template <class F> F get(const char *name) const { return reinterpret_cast<F>(symbol(name)); }

private:
    void *handle_ = nullptr;
    std::string error_;
};

// The reference BLAS of the system, loaded once for the whole test program.
const PeerBlas &reference_blas();

// A routine of the reference BLAS, failing the test when it is missing.
template <class F> F ref(const char *name) {
    F f = reference_blas().get<F>(name);
    EXPECT_NE(f, nullptr) << name;
    return f;
}

// The hidden length that follows the arguments of a Fortran routine for each character argument.
using L = std::size_t;

// Calls the routine NAME (returning nothing) of the peer LIB with ARGS, its type taken from the
// arguments: pointers for the Fortran arguments, L for the hidden lengths; a missing routine fails.
template <class... Args> void call_peer(const PeerBlas &lib, const char *name, Args... args) {
    auto f = lib.get<void (*)(Args...)>(name);
    EXPECT_NE(f, nullptr) << name;
    if (f != nullptr) f(args...);
}

template <class... Args> void call_ref(const char *name, Args... args) {
    call_peer(reference_blas(), name, args...);
}

} // namespace zek_test

#endif
