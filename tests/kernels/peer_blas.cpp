#include "peer_blas.h"

#include <dlfcn.h>

namespace zek_test {

PeerBlas::PeerBlas(const char *path) {
    handle_ = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (handle_ == nullptr) error_ = dlerror();
}

PeerBlas::~PeerBlas() {
    if (handle_ != nullptr) dlclose(handle_);
}

void *PeerBlas::symbol(const char *name) const {
    if (handle_ == nullptr) return nullptr;
    return dlsym(handle_, (std::string(name) + "_").c_str());
}

const PeerBlas &reference_blas() {
    static const PeerBlas blas(kReferenceBlasPath);
    return blas;
}

} // namespace zek_test
