// Conditions under which an element is shown (SVG 1.1, 5.8).
#pragma once

#include "app/svg/read/style/attributes.h"

namespace corvane {

/// Whether an element is meant for this program: it needs no extension, and its language is
/// English, or it says nothing of that.
bool isForUs(const Attributes& attributes);

} // namespace corvane
