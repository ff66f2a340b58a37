// Bytes and numbers as the digits of a hexadecimal string.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace corvane {

std::string hexadecimal(std::span<const std::byte> bytes);
/// Sixteen digits, the highest first.
std::string hexadecimal(std::uint64_t value);

} // namespace corvane
