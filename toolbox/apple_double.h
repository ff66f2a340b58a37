// AppleDouble files: what a file has beside its data, kept in "._name" next to it (RFC 1740,
// appendix B).
#pragma once

#include "host/zone.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace corvane {

enum class AppleDoubleId : std::uint32_t { resourceFork = 2, finderInfo = 9 };

/// One entry; the bytes are the container's.
struct AppleDoubleEntry {
    AppleDoubleId id{};
    std::span<const std::byte> bytes;
};

/// The path of the AppleDouble file that belongs to the file at `path`.
TOOLBOX_CALL std::string appleDoublePath(const std::string& path);

TOOLBOX_CALL bool isAppleDouble(std::span<const std::byte> container);

/// All entries in the order of the file. None where it is no AppleDouble file of version 2, or an
/// entry lies outside it, or entries overlap so far that they are longer than the file together.
TOOLBOX_CALL std::optional<std::vector<AppleDoubleEntry>>
parseAppleDouble(std::span<const std::byte> container);

/// A container of these entries. The resource fork is put last, where it can grow.
TOOLBOX_CALL std::vector<std::byte> buildAppleDouble(std::span<const AppleDoubleEntry> entries);

} // namespace corvane
