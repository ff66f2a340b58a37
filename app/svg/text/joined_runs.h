// Runs of a page's line that are written as one element, since nothing but their operators tells
// them apart: browsers print words letter by letter.
#pragma once

#include "app/artwork/document.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace corvane {

/// Runs that follow one another in line and page.
struct JoinedRun {
    /// The first of them, but for its text and pieces; its source goes on to the last one's end.
    TextRun run;
    std::uint32_t number = 0; ///< of the first, among the runs given
    std::string text;
    std::vector<TextPiece> pieces;

    /// Valid as long as this lives, where it is.
    TextRun whole() const {
        TextRun told = run;
        told.text = text;
        told.pieces = pieces;
        return told;
    }
};

/// The runs of a line from the left, those joined that look the same and that the page shows one
/// after the other. Letters that run from the right are not joined.
std::vector<JoinedRun> joinedRuns(std::span<const TextRun> runs);

} // namespace corvane
