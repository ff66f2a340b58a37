// Files that opening a page wrote before.
#pragma once

#include "app/images/byte_source.h"

#include <cstdint>
#include <optional>

namespace corvane {

/// The digest of a PNG that was written here and is as it was; none of any other file.
std::optional<std::uint64_t> digestOfOwnPng(const ByteSource& file);

} // namespace corvane
