// The properties of an element, from attributes, style sheets and `style` (CSS 2.1, 6.4).
#pragma once

#include "app/svg/read/context.h"
#include "app/svg/read/style/attributes.h"
#include "app/svg/read/style/computed_style.h"
#include "host/matrix.h"

namespace corvane {

/// The values that win; presentation attributes lose against every rule.
Declared cascade(pugi::xml_node element, const Attributes& attributes, ReadingContext& context);

/// Where the artwork holds no opacity, blending and masks, takes those of an element from its style
/// and counts them.
void settleLook(ComputedStyle& style, ReadingContext& context);

/// The style of an element within `outer`; one that is not meant for this program is not
/// displayed.
ComputedStyle styleOf(pugi::xml_node element, const Attributes& attributes,
                      const ComputedStyle& outer, const Viewport& viewport,
                      ReadingContext& context);

/// `outer` with the element's own transform. A wrong one is counted and does nothing.
RealMatrix transformed(const RealMatrix& outer, const ComputedStyle& style,
                       const LengthContext& lengths, ReadingContext& context);

/// `outer` with the transform in one of the element's attributes. A wrong one is counted and does
/// nothing.
RealMatrix transformed(const RealMatrix& outer, const Attributes& attributes, Attribute name,
                       ReadingContext& context);

} // namespace corvane
