// The records in which artwork passes between host and plug-in: numbers, points, styles, segments.
#pragma once

#include <cstddef>
#include <cstdint>

namespace corvane {

/// Signed 16.16 number. Lengths and coordinates are points (1/72 inch), y pointing up.
using Fixed = std::int32_t;
inline constexpr Fixed fixedOne = 0x10000;

struct Point {
    Fixed x = 0;
    Fixed y = 0;
    friend constexpr bool operator==(const Point&, const Point&) = default;
};

/// `top` is the larger y.
struct Rect {
    Fixed left = 0;
    Fixed top = 0;
    Fixed right = 0;
    Fixed bottom = 0;
    friend constexpr bool operator==(const Rect&, const Rect&) = default;
};

/// Maps (x, y) to (a x + c y + tx, b x + d y + ty).
struct Matrix {
    Fixed a = fixedOne;
    Fixed b = 0;
    Fixed c = 0;
    Fixed d = fixedOne;
    Fixed tx = 0;
    Fixed ty = 0;
    friend constexpr bool operator==(const Matrix&, const Matrix&) = default;
};

/// Opaque handles of the host; 0 is null. Never read as memory.
enum class Art : std::uint32_t { null = 0 };
enum class Layer : std::uint32_t { null = 0 };

enum class ArtKind : std::int16_t {
    unknown = 0,
    group = 1,
    path = 2,
    compound = 3,
    text = 4,
    placed = 7,
};

/// Where new, moved or copied art goes. Lists of art run front to back.
enum class Placement : std::int16_t {
    inFront = 1, ///< directly in front of the reference, as its previous sibling
    behind = 2,  ///< directly behind the reference, as its next sibling
    inside = 3,  ///< inside the reference, in front of all its children
};

/// Which bytes made a piece of art. They are counted in the page's content, taken as one sequence
/// of its decoded streams: from the first byte of the first operator of the object to behind its
/// painting operator. Copies have the source of their original.
///
/// Where an editor dropped the bytes and only the object's id is left, the source is its ordinal
/// alone: `end` is 0.
struct ArtSource {
    std::int64_t start = 0;
    std::int64_t end = 0; ///< not before `start`
    /// Among the objects of the page that artwork holds, in the order of painting, from 0; clips do
    /// not count and have the number of the object that would come next. Below 0: the source is not
    /// known.
    std::int32_t ordinal = -1;
    /// Whose bytes they are: 0, the page's; else those of a form, by its number among the forms
    /// that the page draws, from 1, in the order in which they are drawn. The ordinal is then one
    /// among the objects of that form.
    std::int32_t content = 0;
    friend constexpr bool operator==(const ArtSource&, const ArtSource&) = default;
};

/// A gradient, pattern, custom colour or mixture of inks that the host's document holds.
enum class PaintSource : std::uint32_t { null = 0 };
/// A text that a person put to a path, by `getNote`.
enum class Note : std::uint32_t { null = 0 };

enum class ColourKind : std::int32_t {
    gray = 0,
    process = 1,
    pattern = 2,
    custom = 3,
    gradient = 4,
    inks = 5 ///< a mixture of inks; from version 10 of the extension on
};

/// How the amounts of a process colour came about; decides which of RGB and CMYK is the truth.
enum class ColourOrigin : std::int32_t { given = 0, fromRgb = 1 };

/// Gray: component 0 is the amount of black. Process: cyan, magenta, yellow, black. Custom:
/// component 0 is the tint, by how much the colour of the source is weakened. 1.0 is full ink.
/// Amounts outside 0 to 1.0 are kept; who draws limits them. Patterns, custom colours, gradients
/// and mixtures of inks have their `source`.
struct Colour {
    ColourKind kind = ColourKind::gray;
    Fixed component[4] = {fixedOne, 0, 0, 0};
    ColourOrigin origin = ColourOrigin::given;
    PaintSource source = PaintSource::null;
    friend constexpr bool operator==(const Colour&, const Colour&) = default;
};

enum class FillRule : std::uint8_t { nonzero = 0, evenOdd = 1 };

/// What a stroke is drawn with: the symmetric matrix (xx xy; xy yy) makes it of a circle as wide as
/// the line. Its larger eigenvalue is 1, so the width is that where the line is widest; dashes,
/// caps, joins and miters are those before the matrix.
struct Pen {
    double xx = 1;
    double xy = 0;
    double yy = 1;
    friend constexpr bool operator==(const Pen&, const Pen&) = default;
};

/// How a path is painted: the record of `getPathStyle` and `setPathStyle`.
struct PathStyle {
    std::uint8_t fillPaint = 0;   ///< 1: filled
    std::uint8_t strokePaint = 0; ///< 1: stroked
    Colour fill;
    Colour stroke;
    Fixed lineWidth = fixedOne; ///< points
    std::int16_t dashCount = 0; ///< entries used of `dash`
    Fixed dashPhase = 0;
    Fixed dash[6] = {};
    std::int32_t cap = 0;  ///< 0 butt, 1 round, 2 projecting square
    std::int32_t join = 0; ///< 0 miter, 1 round, 2 bevel
    Fixed miterLimit = 10 * fixedOne;
    std::uint8_t clip = 0;             ///< 1: the path clips its group
    Fixed resolution = 800 * fixedOne; ///< dots per inch that curves are flattened for
    Note note = Note::null;
    FillRule rule = FillRule::nonzero; ///< of filling and of clipping
    Pen pen;                           ///< of paths alone; from version 7 of the extension on
    friend constexpr bool operator==(const PathStyle&, const PathStyle&) = default;
};

/// One anchor of a path with the control points before and behind it.
struct Segment {
    Point anchor;
    Point in;
    Point out;
    std::uint8_t corner = 0;
    friend constexpr bool operator==(const Segment&, const Segment&) = default;
};
static_assert(sizeof(Segment) == 28);

struct LayerInfo {
    std::uint8_t title[256] = {}; ///< length-prefixed
    std::uint8_t visible = 1;
    std::uint8_t preview = 1;
    std::uint8_t locked = 0;
    std::uint8_t printing = 1;
    std::uint8_t dimmed = 0;
};

struct ArtboardSize {
    Fixed width = 0;
    Fixed height = 0;
};

/// What a custom colour is printed with where its own ink is missing.
struct CustomColour {
    std::uint8_t name[64] = {}; ///< length-prefixed
    Fixed process[4] = {};      ///< cyan, magenta, yellow, black
};

/// With these the host draws a gradient for the plug-in: fills of one colour each, later ones over
/// earlier ones. Coordinates are those of the art. They may not throw or unwind.
struct DrawingProcedures {
    void (*setGray)(Fixed level) = nullptr; ///< 0 black to 1.0 white
    void (*setCMYK)(Fixed cyan, Fixed magenta, Fixed yellow, Fixed black) = nullptr;
    void (*beginFill)() = nullptr;
    void (*endFill)() = nullptr;
    void (*moveTo)(const Point*) = nullptr;
    void (*lineTo)(const Point*) = nullptr;
    void (*curveTo)(const Point*, const Point*, const Point*) = nullptr;
    /// Levels of light, 1.0 full. Null in the original profile: say it by `setCMYK`.
    void (*setRGB)(Fixed red, Fixed green, Fixed blue) = nullptr;
};

/// Takes the art of one tile of a pattern, where it lies.
using TileProcedure = void (*)(Art tile);

/// The document record of slot 12. `origin` is the page's lower left corner on the artboard.
struct DocumentInfo {
    Point origin;
};

} // namespace corvane
