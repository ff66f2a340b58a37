// Bytes that nobody can foretell.
#pragma once

#include <cstdint>
#include <span>

namespace corvane {

/// Fills `bytes` from the system's source. Where that fails: `io`.
void randomBytes(std::span<std::uint8_t> bytes);

} // namespace corvane
