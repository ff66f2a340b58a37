// The geometry of the shape elements (SVG 1.1, chapters 8 and 9).
#pragma once

#include "app/svg/read/element_names.h"
#include "app/svg/read/shape_builder.h"
#include "app/svg/read/style/attributes.h"
#include "app/svg/read/values/length.h"

namespace corvane {

bool isShapeElement(Element element);

/// Draws a shape; false where nothing is drawn because a size is 0 or missing. Wrong data are drawn
/// up to the error and counted.
bool drawShape(Element element, const Attributes& attributes, const LengthContext& lengths,
               ShapeBuilder& shape, Tally& tally);

/// A length attribute, `otherwise` where it is missing or wrong.
double lengthOf(const Attributes& attributes, Attribute name, Axis axis,
                const LengthContext& lengths, double otherwise = 0);

} // namespace corvane
