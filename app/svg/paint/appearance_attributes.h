// Opacity, blending and masks as attributes.
#pragma once

#include "app/svg/sink.h"
#include "host/appearance.h"
#include "host/artwork.h"

#include <optional>
#include <string_view>

namespace corvane {

/// What is said of an element as one thing; `mask` is the id of its mask.
void writeAppearance(TextOutput&, const Appearance&, std::string_view mask);

/// The opacities of the paints that a style uses.
void writePaintOpacities(TextOutput&, const PathStyle&, double fill, double stroke);

/// What `data-intent` says.
RenderingIntent parseIntent(std::string_view text);

/// What `data-overprint` says.
Overprint parseOverprint(std::string_view text);

/// The mode of that name in CSS; none where there is none.
std::optional<BlendMode> blendModeByName(std::string_view name);

} // namespace corvane
