// Text strings of a document: names that people read (PDF Reference, 3.8.1).
#pragma once

#include "objects/object.h"

#include <string>

namespace corvane {

/// In UTF-8, without control characters, cut to a length that people read: from UTF-16 or UTF-8
/// with a byte order mark, else from PDFDocEncoding. Empty where it is no string.
std::string documentText(const Object& string);

} // namespace corvane
