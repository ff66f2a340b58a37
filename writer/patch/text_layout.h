// Where the runs of the artwork's lines begin.
#pragma once

#include "writer/patch/base_reading.h"
#include "writer/patch/edited_artwork.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Letters as a font of the page shows them.
struct EncodedLetters {
    std::string codes = {}; ///< the bytes of a string
    std::int32_t start = 0; ///< in the text of the run
    double advance = 0;     ///< in ems of the font, without spacing
    std::int32_t count = 0; ///< of glyphs
    bool isBlank = false;   ///< a blank that the font does not have: `codes` is empty
};

/// The text of a run in codes of that font, a glyph each; nothing where the font does not have a
/// letter, which is then put into `missing`.
std::optional<std::vector<EncodedLetters>> encodeText(PageFont& font, std::string_view text,
                                                      std::string& missing);

/// Sets the start of each run: the runs before it are as long as they are on the page, or, where
/// their letters changed, as the page's font says.
void layOutText(const BaseReading& base, EditedArtwork& artwork);

} // namespace corvane
