// From an element's computed style to the style of a path of the artwork.
#pragma once

#include "app/svg/read/context.h"
#include "app/svg/read/style/computed_style.h"
#include "host/matrix.h"

namespace corvane {

/// The style of a shape that is drawn under `toArt`. Exact values in hidden
/// attributes count while the visible ones still look like them. A paint that is not in use is not
/// taken over.
/// A gradient or pattern counts as the colour that is seen instead: see `paint_reader.h`.
PathStyle paintedStyle(const ComputedStyle& style, const Attributes& attributes,
                       const RealMatrix& toArt, ReadingContext& context);

/// The style of the only shape of a clip that this program wrote: only paint that the shape itself
/// names counts.
PathStyle clippingStyle(const ComputedStyle& style, const Attributes& attributes,
                        const RealMatrix& toArt, ReadingContext& context);

/// Of `fill` and `stroke`, that of a colour itself included.
double fillOpacityOf(const ComputedStyle& style);
double strokeOpacityOf(const ComputedStyle& style);

} // namespace corvane
