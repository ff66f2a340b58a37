// Whether anything on a page blends with what is behind it.
#pragma once

#include "app/artwork/document.h"

namespace corvane {

/// In the layers. What tiles and masks hold blends within them alone, and annotations blend with
/// the paper, too, which the page lies on by then.
bool blends(const Document& document);

} // namespace corvane
