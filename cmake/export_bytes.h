// Argument bytes of an exported routine on 32-bit Windows, computed from its function type: a double
// passed by value counts eight bytes, every other argument (integers, pointers, function pointers)
// four.  Any other by-value type has no place in the library's ABI and stops the compile.
#ifndef ZEK_EXPORT_BYTES_H
#define ZEK_EXPORT_BYTES_H

#include <type_traits>

namespace zek_exports {

template <class T>
constexpr int argument_size() {
    static_assert(std::is_same_v<T, double> || std::is_pointer_v<T> ||
                      (std::is_integral_v<T> && sizeof(T) == 4),
                  "an exported routine takes doubles, 32-bit integers and pointers by value");
    return std::is_same_v<T, double> ? 8 : 4;
}

template <class F>
struct argument_bytes;

// The calling convention is part of the type: matching it here also proves each export is callee-pops.
template <class R, class... A>
struct argument_bytes<R __attribute__((stdcall)) (A...)> {
    static constexpr int value = (0 + ... + argument_size<A>());
};

template <class T>
constexpr bool is_data_word = !std::is_function_v<T>;

} // namespace zek_exports

#endif
