// Whether what two groups hold looks the same: of annotations, soft masks and tiles.
#pragma once

#include "host/matrix.h"
#include "writer/patch/compare/comparison.h"

namespace corvane {

/// Clips, looks and text included; groups that do nothing to what they hold are not seen. The first
/// one is moved so on the artboard.
bool isSameGroup(Art was, Art is, PaintComparison& paints, const RealMatrix& movement = {});

} // namespace corvane
