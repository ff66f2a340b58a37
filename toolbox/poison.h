// Tells AddressSanitizer which bytes nobody may touch; nothing without it.
#pragma once

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__)
#define CORVANE_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define CORVANE_ADDRESS_SANITIZER 1
#endif
#endif

#ifdef CORVANE_ADDRESS_SANITIZER
#include <sanitizer/asan_interface.h>
#endif

namespace corvane {

#ifdef CORVANE_ADDRESS_SANITIZER
inline constexpr bool poisons = true;
inline void poison(const std::byte* bytes, std::size_t count) {
    __asan_poison_memory_region(bytes, count);
}
inline void unpoison(const std::byte* bytes, std::size_t count) {
    __asan_unpoison_memory_region(bytes, count);
}
#else
inline constexpr bool poisons = false;
inline void poison(const std::byte*, std::size_t) {}
inline void unpoison(const std::byte*, std::size_t) {}
#endif

} // namespace corvane
