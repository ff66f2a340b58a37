// Files that opening a page wrote before.
#pragma once

#include "app/images/byte_source.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace corvane {

/// The digest of a PNG that was written here for the image of that key and is as it was; none of
/// any other file.
std::optional<std::uint64_t> digestOfOwnPng(const ByteSource& file, std::string_view key);

} // namespace corvane
