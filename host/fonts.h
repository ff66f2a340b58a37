// Fonts that are installed on the machine.
#pragma once

#include "host/zone.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

struct FontRequest {
    /// As a document or artwork gives it: "ABCDEF+Arial,Bold", "TimesNewRomanPS-ItalicMT", "DejaVu
    /// Sans". Words of style in it count like the fields below.
    std::string name;
    std::int32_t weight = 400; ///< 100 to 900
    bool isItalic = false;
    bool isSerif = false;
    bool isFixedPitch = false;
    /// A font that has all of them comes before one that does not, whatever its name.
    std::u32string characters{};
    /// Paths of files that will not do.
    std::vector<std::string> passedOver{};
    /// The asker cannot use fonts in the older form Type 1.
    bool isOpenType = false;
};

/// How good an answer is.
enum class FontMatch : std::int32_t {
    named,   ///< the font of that name, or of that family
    standIn, ///< one made with the same advances, for a font that every PDF reader knows
    similar  ///< another family
};

struct FoundFont {
    std::string path;
    std::int32_t face = 0; ///< in a file of several fonts
    FontMatch match = FontMatch::similar;
    std::int32_t weight = 400;
    bool isItalic = false;
    std::string name = {}; ///< as `ListedFont` has it; empty: it is in no list
};

/// The best font there is. The same fonts give the same answer. Nothing only where no font is
/// installed.
TOOLBOX_CALL std::optional<FoundFont> findFont(const FontRequest& request);

/// The path of URW's font in place of the standard font of that very name ("Times-Roman"; a
/// subset's tag aside), without a search. Empty for other names, and where the font is not in a
/// usual place.
TOOLBOX_CALL std::string standardFontFile(std::string_view name);

/// A font of the machine. Where several files hold one of that name, it is that of Type 1: it tells
/// most about itself.
struct ListedFont {
    std::string name;   ///< PostScript name: "NimbusSans-Bold"
    std::string family; ///< "Nimbus Sans"
    std::string path;
    std::int32_t face = 0;
    std::int32_t weight = 400;
    bool isItalic = false;
    bool isFixedPitch = false;
    bool isTrueType = false;
};

/// All fonts, by ascending name; they stay where they are.
TOOLBOX_CALL std::span<const ListedFont> listFonts();
/// The place of a font in that list.
TOOLBOX_CALL std::optional<std::int32_t> placeOfFont(std::string_view name);

/// Lengths in ems.
struct FontMetrics {
    double leading = 0; ///< between lines, beside ascent and descent
    double ascent = 0;
    double descent = 0; ///< below the baseline, positive
    double left = 0;    ///< this and the next three: the box around all glyphs
    double bottom = 0;
    double right = 0;
    double top = 0;
    /// The characters of the codes of one byte, where the font has codes of its own (fonts of
    /// signs); otherwise those that were asked for.
    std::array<char32_t, 256> characters{};
    std::array<double, 256> widths{}; ///< of these; 0 where the font has no glyph
};

/// Reads the font counted `font` in the list. Nothing where it cannot be read.
TOOLBOX_CALL std::optional<FontMetrics> measureFont(std::int32_t font,
                                                    std::span<const char32_t, 256> characters);

/// Where a specification comes from.
enum class SpecificationSource : std::int32_t {
    program, ///< what a Type 1 program says of its stems
    tables,  ///< the tables of an OpenType file
    outlines ///< measured
};

/// Lengths in ems, angles in degrees, counterclockwise.
struct FontSpecification {
    double stemV = 0; ///< width of upright stems
    double stemH = 0; ///< height of level ones
    double xHeight = 0;
    double capHeight = 0;
    double italicAngle = 0;
    bool isFixedPitch = false;
    bool isSerif = false;
    bool isItalic = false;
    bool isSymbolic = false; ///< its letters are not those of Latin text
};

/// Of the font counted `font` in the list. Nothing where that source does not tell.
TOOLBOX_CALL std::optional<FontSpecification> specifyFont(std::int32_t font,
                                                          SpecificationSource source);

} // namespace corvane
