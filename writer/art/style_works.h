// How paths are painted: what differs from the shadow is written.
#pragma once

#include "writer/art/walk.h"

#include <cstdint>
#include <span>
#include <string>

namespace corvane {

/// Writes the parts of the style that a path needs and that are not in force. A cap or join outside
/// 0 to 2, or a dash count outside 0 to 6, raises `type`.
void pathStyleWorks(Walk& walk, const PathStyle& style);
void dashWorks(Walk& walk, const Dash& dash);
/// Cap and join of strokes: outside 0 to 2, `type`.
void capWorks(Walk& walk, std::int32_t cap);
void joinWorks(Walk& walk, std::int32_t join);
/// Writes the flatness of a resolution, unless it is in force.
void flatnessWorks(Walk& walk, Fixed resolution);

/// Length-prefixed text without control bytes, which could end a comment.
std::string commentText(std::span<const std::uint8_t> text);

} // namespace corvane
