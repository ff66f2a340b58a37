// The records of the classic slots for text: runs of one-byte letters, their styles, and the fonts
// of the host.
//
// A text object holds lines, and lines hold letters of the host's character set, Mac OS Roman
// (fonts of signs have a set of their own). Text is made through an open run, from `newTextRun` to
// `endTextRun`: styles are set, and letters put behind those that are there; a carriage return
// begins the next line. Text that is there is walked by runs, whose letters share all styles and
// follow one another without kerning, and by lines.
#pragma once

#include "host/artwork.h"
#include "host/parameters.h"

#include <cstdint>
#include <span>

namespace corvane {

/// Opaque handles of the host; 0 is null. Those of a walk are good until the text changes.
enum class RunHandle : std::uint64_t { null = 0 };
enum class LineHandle : std::uint64_t { null = 0 };

/// Result of a slot that says more than that it failed.
enum class HostStatus : std::uint32_t {
    none = 0,
    failed = 1,
    fontMissing = fourCharacters("NOTX"), ///< the font is not there; its name is kept
    notOnPath = fourCharacters("TYTX"),   ///< the line is not set along a path
};

/// Percent that change nothing.
inline constexpr Fixed wholePercent = 100 * fixedOne;

/// Technologies of fonts. A Type 1 font whose name holds "_" is a Multiple Master instance.
inline constexpr std::int16_t type1Technology = 0;
inline constexpr std::int16_t trueTypeTechnology = 1;

struct CharStyle {
    /// Length-prefixed name of a font, and its technology. Only read: `setRunFont` sets them.
    std::uint8_t font[256] = {};
    std::int16_t technology = type1Technology;
    Fixed size = 12 * fixedOne;
    Fixed leading = 0;  ///< from a line to this one
    Fixed rise = 0;     ///< of the baseline
    Fixed tracking = 0; ///< behind each letter, in thousandths of the size
    Fixed horizontalScale = wholePercent;
    Fixed verticalScale = wholePercent;
    std::uint8_t autoKern = 0;
};

/// Spacings are percents of the width that the font's blank has.
struct ParaStyle {
    std::int32_t alignment = 0; ///< 0 left, 1 centre, 2 right, 4 and 5 justified
    Fixed leastWordSpacing = wholePercent;
    Fixed wordSpacing = wholePercent;
    Fixed mostWordSpacing = wholePercent;
    Fixed leastLetterSpacing = 0;
    Fixed letterSpacing = 0;
    Fixed mostLetterSpacing = 0;
    Fixed leftIndent = 0;
    Fixed rightIndent = 0;
    Fixed firstIndent = 0;
    std::int32_t lettersBeforeHyphen = 1;
    std::uint8_t hyphenates = 0;
    std::uint8_t hangsPunctuation = 0;
    std::uint8_t autoLeading = 0;
};

/// What a justified line was set with, in widths of the font's blank.
struct FlowStyle {
    Fixed letterSpacing = 0;
    Fixed wordSpacing = fixedOne;
};

/// Letters of a run that is walked; they live as long as its handle.
struct RunText {
    std::span<const std::uint8_t> letters = {};
};

/// A font of the host; lengths in ems.
struct FontInfo {
    std::int32_t encoding = 0; ///< 0 or 1: Mac OS Roman, 2: the expert set
    /// What the font database knows the font by.
    std::int16_t identifiers[2] = {};
    Fixed leading = 0;
    Fixed ascent = 0;
    Fixed descent = 0; ///< below the baseline, positive
    Rect bounds = {};  ///< of all glyphs
    Fixed widths[256] = {};
};

/// A font that letters of another may be drawn in.
struct FontFile {
    std::uint8_t font[256] = {}; ///< length-prefixed name of a font of the host
    std::uint8_t isAlike = 0;    ///< it has the shapes and widths of the one asked for
};

} // namespace corvane
