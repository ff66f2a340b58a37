// The graphics state: one record for the process, saved and restored as a whole by `q` and `Q`.
#pragma once

#include "host/artwork.h"
#include "objects/stack.h"
#include "reader/content/containers.h"

#include <array>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>

namespace corvane {

/// Font and encoding of the text state; shared by the states that did not change it.
struct TextFont {
    std::string name = "Helvetica";
    std::int32_t kind = 1;                    ///< 1 Type 1, 2 Multiple Master, 3 TrueType, 4 Type 3
    std::array<std::uint8_t, 256> encoding{}; ///< PDF code to host code
};

struct TextState {
    std::shared_ptr<const TextFont> font;
    Fixed size = 0;
    std::int32_t renderMode = 0; ///< 0 to 7
    Fixed rise = 0;
    Fixed characterSpacing = 0;
    Fixed wordSpacing = 0;
    Fixed lineOffsetX = 0;
    Fixed lineOffsetY = 0;
    Fixed horizontalScale = 100 * fixedOne; ///< per cent
    Fixed verticalScale = 100 * fixedOne;   ///< per cent
    friend bool operator==(const TextState&, const TextState&) = default;
};

struct ColourSpace;

/// Beside the colour of filling or stroking: what made it.
struct Paint {
    std::shared_ptr<const ColourSpace> space =
        nullptr; ///< null: the device space that the colour is of
    /// A pattern or unknown space, which the artwork cannot hold: paths are not painted with it.
    bool hidden = false;
    friend bool operator==(const Paint&, const Paint&) = default;
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
    friend bool operator==(const GraphicsState&, const GraphicsState&) = default;
};

extern GraphicsState state;
extern Containers containers;

/// A fresh state, in the host's layer for imported art. Raises `host`.
void openState();
/// Drops every saved copy.
void closeState();

/// `q`: keeps a copy of the state.
void saveState();
/// `Q`: the copy kept last. None: `underflow`.
void restoreState();
/// Copies kept.
std::int32_t depthState();

/// `cm`: the matrix on the operand stack, then what the CTM did.
void concatState();

/// A point of user space on the page, by the CTM.
Point transformState(RealPoint point);

/// How much longer than in user space lengths are on the page: the root of the area's factor.
double scaleState();

} // namespace corvane
