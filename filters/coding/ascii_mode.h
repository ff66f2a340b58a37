// The modes of the two filters between bytes and printable characters, hexadecimal and base-85.
#pragma once

#include "runtime/exception.h"

#include <cstdint>

namespace corvane {

enum class AsciiMode : std::int32_t {
    both = 0,       ///< reads and writes; no end marker is known
    toMarker = 1,   ///< reads up to the end marker
    pastMarker = 2, ///< as `toMarker`; unlinked early, it skips the rest, marker included
    write = 3,
};

/// Raises `type` for any other value.
inline void checkMode(AsciiMode mode) {
    if (mode < AsciiMode::both || mode > AsciiMode::write) {
        failException(Exception::type);
    }
}

inline bool knowsMarker(AsciiMode mode) {
    return mode == AsciiMode::toMarker || mode == AsciiMode::pastMarker;
}

} // namespace corvane
