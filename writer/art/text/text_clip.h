// Text that clips a group.
#pragma once

#include "host/artwork.h"
#include "runtime/charged_list.h"

namespace corvane {

/// The text objects of what `isTextClip`, from the back to the front.
ChargedList<Art> clipTexts(Art clip);

} // namespace corvane
