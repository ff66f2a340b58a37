// A part of a font for a document: the glyphs that it shows, under new numbers.
#pragma once

#include "fonts/made/open_type_font.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <unordered_map>
#include <vector>

namespace corvane {

struct FontSubset {
    /// TrueType tables, or of CFF outlines the bare CFF program.
    std::vector<std::byte> program;
    /// The CID of each glyph that was asked for, by its number in the whole font: the number of
    /// the glyph in the program, or, where that is CID-keyed, its own.
    std::unordered_map<GlyphNumber, std::uint32_t> cids;
};

/// Without hints, kerning and names. The same glyphs give the same bytes. Nothing where the font is
/// too damaged.
std::optional<FontSubset> makeSubset(const OpenTypeFont& font, std::span<const GlyphNumber> glyphs);

} // namespace corvane
