// The comment that an update of ours begins with, which names the former length of the file:
//
//   %Corvane update of a file of 0000012345 bytes
//
// If the file did not end with an end of line, a line feed stands before the comment; the length
// does not count it.
#pragma once

#include "reader/document/cache.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// Bytes of the line, its line feed included.
inline constexpr std::int32_t updateMarkLength = 46;

/// The line, its line feed included.
std::string updateMark(std::int32_t formerLength);

/// The start of the update whose line stands at `position`, both counted from the file's first
/// byte; nothing where there is no such line or it names another place.
std::optional<std::int32_t> updateAt(DocumentCache& cache, std::int32_t position);

/// Where the last update line of the file stands, and where its update begins.
struct UpdatePlace {
    std::int32_t line = 0;
    std::int32_t start = 0;
};
/// Searched backwards from `end`, not before `first`.
std::optional<UpdatePlace> lastUpdate(DocumentCache& cache, std::int32_t first, std::int32_t end);

/// The start of the update whose line ends at `position`, as `updateAt`.
std::optional<std::int32_t> updateBefore(DocumentCache& cache, std::int64_t position);

/// The start of an update of which the file holds nothing but a part of the line, at its very end.
std::optional<std::int32_t> brokenMark(DocumentCache& cache);

} // namespace corvane
