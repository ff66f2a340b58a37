// The BBox of a form as the clip of its group.
#pragma once

#include "host/artwork.h"
#include "reader/form/form_entries.h"

namespace corvane {

/// What clips all that the form paints: a path in front of it.
Art clipGroup(Art group, const FormBox& box, const RealMatrix& matrix);

} // namespace corvane
