// Groups that forms painted: how an edited one differs from what the page shows.
#pragma once

#include "writer/patch/comparison.h"

namespace corvane {

/// `letters` where anything in it differs.
ArtDifference compareForms(Art was, Art is);

} // namespace corvane
