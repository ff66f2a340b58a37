// The two orders of a line's letters. In artwork the letters of a page stand as they are seen, from
// left to right. SVG has them as they are read where programs that put them in order (UAX #9) bring
// each back to its place: a person then finds words, and types them, as they are.
#pragma once

#include "host/text.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace corvane {

/// A run of a line in the other order, as far as it differs.
struct OrderedRun {
    std::size_t run = 0; ///< which of those given
    std::string text = {};
    std::vector<TextPiece> pieces = {};
};

struct OrderedLine {
    TextOrder order = TextOrder::visual; ///< in which the text of the runs is
    std::vector<OrderedRun> runs;
};

/// The line that stands so, as it is read. Nothing where it has no letters from the right, where it
/// would not stand so again, or where a run would be divided.
std::optional<OrderedLine> asRead(std::span<const TextRun> standing);

/// The line as it stands, which is read so in lines of that order. Nothing where a run would be
/// divided.
std::optional<OrderedLine> asSeen(std::span<const TextRun> read, TextOrder order);

} // namespace corvane
