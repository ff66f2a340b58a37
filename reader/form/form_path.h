// Boxes of forms as paths.
#pragma once

#include "host/artwork.h"
#include "host/matrix.h"
#include "reader/form/form_entries.h"

namespace corvane {

/// Gives a path the four corners of a box, which `matrix` leads to the artboard.
void outlineBox(Art path, const FormBox& box, const RealMatrix& matrix);

/// Makes the box the clip of a group: a path in front of all that it holds.
Art clipGroup(Art group, const FormBox& box, const RealMatrix& matrix);

} // namespace corvane
