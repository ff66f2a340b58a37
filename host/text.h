// The records in which text passes between host and plug-in: fonts, lines, runs.
//
// A text object (art of kind text) is one line, or several where runs say so. Its matrix leads from
// the line's own space, in which the baseline is the x axis (of vertical text: the column is the y
// axis, going down), to the artboard. The line begins at the origin of that space. Runs follow one
// another: each begins where the one before it ends. In a column each character takes an em,
// whatever its font says of its width: it is set as in a horizontal line, half an em to the left of
// the column and `columnOrigin` below the place that the column has come to. Lengths in the line's
// space are points where the matrix neither enlarges nor shrinks; who makes a line gives it a
// matrix whose second column (c, d) has the length 1, so that font sizes are sizes on the artboard.
#pragma once

#include "host/artwork.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace corvane {

/// A font that the host's document holds; 0 is null.
enum class Font : std::uint32_t { null = 0 };

enum class GenericFamily : std::uint8_t { sansSerif = 0, serif = 1, monospace = 2 };

/// A font by its names. Two fonts of one family, weight and slant are the same font.
struct FontFacts {
    /// What styles call it. Of a font that a page brings along: a name of its own, such as
    /// "Corvane 0A1B2C Times-Roman", which does not end in a blank and digits. UTF-8.
    std::string_view family = {};
    /// The family that a machine may have: "Times New Roman"; empty where that is `family`.
    std::string_view realFamily = {};
    GenericFamily generic = GenericFamily::sansSerif; ///< where neither is there
    std::int16_t weight = 400;                        ///< 100 to 900
    bool italic = false;
    bool isPageFont = false; ///< made of a font of the page: it has faces
};

/// Where the letters of a run depart from how the font sets them, from a place in its text on.
struct TextPiece {
    /// In the bytes of the text, at the beginning of a character.
    std::int32_t start = 0;
    /// Moves the letters from here on along the baseline, in ems of the run (16.16).
    Fixed shift = 0;
    /// Which face of a page font the letters from here to the next piece are of. The first face is
    /// 0; others hold glyphs whose characters the first has another glyph for.
    std::int32_t face = 0;
    /// Turns each letter from here to the next piece about the point of the baseline where it
    /// begins, clockwise, in degrees (16.16). The pen goes on as if it were not turned.
    Fixed turn = 0;
    friend constexpr bool operator==(const TextPiece&, const TextPiece&) = default;
};

/// Lines along the letters of a run, as far from the baseline as the font has them.
struct TextDecoration {
    bool isUnder = false;
    bool isOver = false;
    bool isThrough = false;
    Fixed size = 0;      ///< of the em that gives place and thickness, in the line's space
    Fixed thickness = 0; ///< in the line's space; 0: as the font has it
    bool hasColour = false;
    Colour colour = {}; ///< where it has one; else it is painted as the letters are
    friend constexpr bool operator==(const TextDecoration&, const TextDecoration&) = default;
};

/// Letters of one font, size and paint: of the page, what one operator shows, or a part of that.
struct TextRun {
    Font font = Font::null;
    Fixed size = 0;             ///< of the em, in the line's space; more than 0
    Fixed rise = 0;             ///< of the baseline, in the line's space
    Fixed spacing = 0;          ///< behind each letter, in the line's space
    std::string_view text = {}; ///< UTF-8, at least one character, no control characters
    /// Ascending by `start`, none for a place where nothing changes.
    std::span<const TextPiece> pieces = {};
    /// From the back to the front. Text of a page has none, nor has text that clips, runs down or
    /// stands on a path.
    std::span<const TextDecoration> decorations = {};
    /// How letters are painted; neither filled nor stroked: invisible. `clip` is 0 but for text
    /// that clips a group.
    PathStyle style = {};
    double fillOpacity = 1; ///< 0 to 1, as is the next
    double strokeOpacity = 1;
    /// The operator that shows them; `ordinal` is that of the run among the objects of the page.
    ArtSource source = {};
    /// The run begins a further line of its text object: the matrix of that line. Text of the
    /// classic slots has such runs; other text has one line.
    std::optional<Matrix> line = {};
};

/// Ems that each letter of a column takes, and from where it begins down to its baseline: as fonts
/// that say nothing of it have them (PDF Reference, 5.6.3).
inline constexpr double columnAdvance = 1;
inline constexpr double columnOrigin = 0.88;

/// Which point of a line stands where it begins: its left end, whatever its order, its middle, or
/// its right end.
enum class TextAnchor : std::uint8_t { start = 0, middle = 1, end = 2 };

/// In which order letters follow one another.
enum class TextOrder : std::uint8_t {
    visual = 0, ///< as they stand, whatever their direction
    leftToRight =
        1, ///< as they are read, in a line that runs to the right or, the next, to the left:
    rightToLeft = 2, ///< who draws it puts them in order (UAX #9)
};

/// Lines of a page have the defaults of all but `matrix`, `isVertical` and `reach`.
struct TextLine {
    Matrix matrix = {};
    bool isVertical = false;
    TextAnchor anchor = TextAnchor::start;
    TextOrder order = TextOrder::visual;
    /// How long the line is made, in its own space; 0: as long as its letters are.
    Fixed length = 0;
    bool stretchesLetters = false; ///< to be so long; else the room between them changes
    /// Letters stand on this path, each turned as it runs, in the space of the artboard; none: on
    /// the baseline. The matrix then gives size and slant alone. Lives as long as the text of runs
    /// does.
    std::span<const Segment> path = {};
    bool isPathClosed = false;
    Fixed pathStart = 0; ///< where the line begins, along the path from its first point
    /// Of a line of a page that has letters from the right: how long it is, in its own space. No
    /// letter stands farther to the right. 0: not told.
    Fixed reach = 0;
};

} // namespace corvane
