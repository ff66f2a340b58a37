// Where each letter of a line stands, and which of them are told.
#pragma once

#include "app/artwork/document.h"
#include "app/svg/text/letter_advances.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace corvane {

/// A glyph of a line, which may stand for several letters, or a piece of it.
struct PlacedGlyph {
    std::int32_t run = 0;
    std::size_t start = 0; ///< in the bytes of the run's text, as `end`
    std::size_t end = 0;
    std::int64_t at = 0;              ///< along the line, 16.16
    const TextPiece* piece = nullptr; ///< begins here; null: none does
};

struct LetterRule {
    LetterAdvances* advances = nullptr;
    bool isExact = false; ///< each glyph gets its place
};

/// What of a text gets a place of its own: each glyph, or else each piece of a line that is
/// stretched one way, because some programs misplace what follows there. Nothing where a width is
/// not known, or where the line is not a plain one.
std::vector<PlacedGlyph> placed(const Document& document, Art text, const LetterRule& rule);

/// The line, whose first run has that size, with its place at its right end if it is read from
/// there, so that a longer word moves what is read after it. As it is where its length is not
/// known, or where some programs would miss that place: in lines that are stretched one way.
TextLine placedWhereRead(TextLine line, Fixed size);

} // namespace corvane
