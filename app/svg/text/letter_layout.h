// Where each letter of a line stands.
#pragma once

#include "app/artwork/document.h"
#include "app/svg/text/letter_advances.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace corvane {

/// A glyph of a line. It may stand for several letters.
struct PlacedGlyph {
    std::int32_t run = 0;
    std::size_t start = 0; ///< in the bytes of the run's text, as `end`
    std::size_t end = 0;
    std::int64_t at = 0;              ///< along the line, 16.16
    const TextPiece* piece = nullptr; ///< begins here; null: none does
};

/// All glyphs of a text; none where a width is not known, or where the line is not a plain one.
std::vector<PlacedGlyph> layOut(const Document& document, Art text, LetterAdvances& advances);

} // namespace corvane
