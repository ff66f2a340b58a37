// The exact colour that stands beside a visible one (docs/svg.md, Colours).
#pragma once

#include "app/artwork/document.h"
#include "app/svg/paint/colour.h"
#include "app/svg/read/style/attributes.h"

#include <optional>
#include <string_view>

namespace corvane {

/// It counts while it looks like the visible colour.
struct PaintTwin {
    std::optional<Colour> exact;
    std::string_view spot; ///< name of a custom colour that `exact` stands for; empty: none
    Fixed tint = 0;        ///< how much the custom colour is weakened
    std::string_view inks; ///< a mixture of inks that is seen as `exact`; empty: none

    /// The colour that `visible` means. Custom colours and mixtures of inks are added to the
    /// document.
    Colour resolve(ScreenColour visible, Document& document) const;
};

/// What an element's attributes say; none where they say nothing of the paint.
std::optional<PaintTwin> fillTwin(const Attributes& attributes);
std::optional<PaintTwin> strokeTwin(const Attributes& attributes);
std::optional<PaintTwin> stopTwin(const Attributes& attributes);

} // namespace corvane
