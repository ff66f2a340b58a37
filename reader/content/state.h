// The graphics state: one record, saved and restored as a whole by `q` and `Q`.
#pragma once

#include "host/appearance.h"
#include "host/artwork.h"
#include "objects/stack.h"
#include "reader/classic/text_state.h"
#include "runtime/memory.h"

#include <array>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>

namespace corvane {

struct ColourSpace;
struct FontInUse;
struct Interpreter;

/// Lengths are those of text space, before the text matrix.
struct TextState {
    std::shared_ptr<FontInUse> font; ///< null: none, or one that cannot be read
    double size = 0;
    std::int32_t renderMode = 0; ///< 0 to 7
    double rise = 0;
    double characterSpacing = 0;
    double wordSpacing = 0;
    double leading = 0;
    double horizontalScale = 1;
    friend bool operator==(const TextState&, const TextState&) = default;
};

/// What made the colour of filling or stroking.
struct Paint {
    std::shared_ptr<const ColourSpace> space =
        nullptr; ///< null: the device space that the colour is of
    /// A pattern or unknown space, which the artwork cannot hold: paths are not painted with it.
    bool hidden = false;
    std::optional<Colour> ink = {}; ///< the colour as the artwork's own ink, if it has that
    friend bool operator==(const Paint&, const Paint&) = default;
};

/// How what is painted is laid over what is behind it; as a page begins while the host holds none
/// of it.
struct Transparency {
    double fillOpacity = 1; ///< of images too
    double strokeOpacity = 1;
    BlendMode blend = BlendMode::normal;
    SoftMask mask = SoftMask::null;
    friend bool operator==(const Transparency&, const Transparency&) = default;
};

struct GraphicsState {
    RealPoint currentPoint; ///< user space
    Matrix ctm;             ///< of the original profile
    RealMatrix exactCtm;    ///< of the extended one
    PathStyle style;        ///< what `setPathStyle` gets, but for its lengths
    double lineWidth = 1;   ///< this and the next two: user space
    double dashPhase = 0;
    std::array<double, std::extent_v<decltype(PathStyle::dash)>> dash{};
    Paint fill;
    Paint stroke;
    FillRule clipRule = FillRule::nonzero;
    TextState text;
    classic::TextState classicText; ///< in place of `text` in the original profile
    Transparency transparency;
    Overprint overprint;
    RenderingIntent intent = RenderingIntent::relativeColorimetric;
    /// Those of `gs` that are not as a page begins (reader/content/losses.h): a bit for each.
    std::uint16_t settings = 0;
    friend bool operator==(const GraphicsState&, const GraphicsState&) = default;
};

/// A copy kept by `q`, and how many `q` in a row kept the same.
struct SavedState {
    GraphicsState state;
    std::int32_t times = 1;
};

/// The copies kept, the newest last.
struct SavedStates {
    std::deque<SavedState> copies;
    std::int32_t depth = 0; ///< `q` without their `Q`
    ZoneCharge charge;
};

/// As a page, or a tile, begins.
GraphicsState initialState();

/// A fresh state, in the host's layer for imported art. Raises `host`.
void openState(Interpreter& interpreter);
/// A fresh state; new art goes into that group.
void openState(Interpreter& interpreter, Art group);

/// `q`: keeps a copy of the state.
void saveState(Interpreter& interpreter);
/// `Q`: the copy kept last. None that this content kept: `underflow`.
void restoreState(Interpreter& interpreter);
/// Copies that this content kept.
std::int32_t depthState(const Interpreter& interpreter);
/// Goes back to the state in which `depth` copies were kept, without a call of the host: groups
/// stay as they are.
void abandonStates(Interpreter& interpreter, std::int32_t depth) noexcept;

/// `cm`: the matrix on the operand stack, then what the CTM did.
void concatState(Interpreter& interpreter);

/// A point of user space on the page, by the CTM.
Point transformState(Interpreter& interpreter, RealPoint point);

/// The factor from lengths in user space to lengths on the page: the root of the factor of areas.
double scaleState(const GraphicsState& state);

} // namespace corvane
