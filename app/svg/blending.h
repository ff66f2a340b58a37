// Whether anything in artwork blends with what is behind it.
#pragma once

#include "app/artwork/document.h"

namespace corvane {

/// In the layers; what tiles and masks hold blends within them alone.
bool blends(const Document& document);

} // namespace corvane
