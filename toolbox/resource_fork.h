// The resource fork format: header, data, and a map of types, references and names (Inside
// Macintosh, More Macintosh Toolbox, chapter 1).
#pragma once

#include "host/zone.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace corvane {

/// One resource; the bytes are the fork's, or whoever builds one.
struct ResourceRecord {
    std::uint32_t type = 0;
    std::int16_t id = 0;
    std::uint8_t attributes = 0;
    std::string name; ///< empty: none; at most 255 bytes
    std::span<const std::byte> bytes;
};

/// All resources in the order of the map. None where anything the map names lies outside the fork.
/// No bytes at all are an empty fork.
TOOLBOX_CALL std::optional<std::vector<ResourceRecord>>
parseResourceFork(std::span<const std::byte> fork);

/// A fork of these resources, grouped by type. None where they do not fit the format: 16 MiB of
/// data, 64 KiB of map before the names and of names.
TOOLBOX_CALL std::optional<std::vector<std::byte>>
buildResourceFork(std::span<const ResourceRecord> resources);

} // namespace corvane
