// The encodings that PDF names: from codes to names of glyphs (PDF Reference, appendix D).
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace corvane {

enum class StandardEncodingKind : std::uint8_t {
    standard,
    winAnsi,
    macRoman,
    macExpert,
    symbol,
    zapfDingbats
};

/// Empty where the encoding has no glyph. In `winAnsi` codes that are not in use are bullets.
std::string_view glyphNameOf(StandardEncodingKind kind, std::uint8_t code);

/// The glyph of a code in Mac OS Roman: that of `macRoman`, and where it has none, of the sixteen
/// glyphs more that systems have. Empty: none.
std::string_view macintoshNameOf(std::uint8_t code);

/// The code of a glyph in the Roman encoding of Macintosh, which is `macRoman` and sixteen glyphs
/// more: by these TrueType programs are asked for names in their cmap (1,0).
std::optional<std::uint8_t> macintoshCodeOf(std::string_view glyphName);

/// The lowest code of a glyph in `winAnsi`.
std::optional<std::uint8_t> winAnsiCodeOf(std::string_view glyphName);

} // namespace corvane
