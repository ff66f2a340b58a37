// Names that people read, as strings of a document (PDF Reference, 3.8.1).
#pragma once

#include "objects/object_identifier.h"
#include "reader/document/cache.h"

#include <string>
#include <string_view>

namespace corvane {

/// A text in UTF-8 as a string of the object `in`: letters of ASCII as they are, else UTF-16 with a
/// byte order mark.
std::string sealedName(const DocumentCache& cache, ObjectIdentifier in, std::string_view name);

} // namespace corvane
