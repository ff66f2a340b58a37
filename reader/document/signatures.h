// The signatures of a file (PDF 2.0, 12.8): which fields of its form hold one, and which bytes of
// the file each covers. Whether a signature is true is not looked at.
#pragma once

#include "reader/document/cache.h"

namespace corvane {

/// What is damaged in the form is passed over. Raises `limit` where the form has more fields than
/// the budget allows.
SignatureFacts signaturesOf(DocumentCache& cache);

} // namespace corvane
