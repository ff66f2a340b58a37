// The exact colour that stands beside a visible one (docs/svg.md, Colours).
#pragma once

#include "app/svg/colour.h"
#include "app/svg/read/attributes.h"

#include <optional>

namespace corvane {

/// Holds as long as it looks like the visible colour.
struct PaintTwin {
    std::optional<Colour> exact;

    /// The colour that `visible` means.
    Colour resolve(ScreenColour visible) const;
};

/// What an element's attributes say; none where they say nothing of the paint.
std::optional<PaintTwin> fillTwin(const Attributes& attributes);
std::optional<PaintTwin> strokeTwin(const Attributes& attributes);
std::optional<PaintTwin> stopTwin(const Attributes& attributes);

} // namespace corvane
