// Encodings of fonts, from codes of the page to those of the host's character set.
#pragma once

#include "reader/classic/text_state.h"

namespace corvane {
struct DocumentCache;
struct Object;
} // namespace corvane

namespace corvane::classic {

/// Reads the "Encoding" of a font. What the host's set does not have is warned of: it becomes the
/// letter that comes nearest, or a question mark. Raises `structure` where the entry is none.
EncodingMap readEncoding(DocumentCache& cache, const Object& font, const SelectedFont& selected);

} // namespace corvane::classic
