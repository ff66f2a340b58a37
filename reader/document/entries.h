// Entries of a cross-reference subsection.
#pragma once

#include "filters/token.h"
#include "reader/document/cache.h"

namespace corvane {

/// Reads the entries of a subsection, without making tokens of them, as long as they have the exact
/// form of the PDF Reference, 3.4.3. The subsection's header is all that is on the stack; if
/// entries are left, their header stays there for the operators "n" and "f", which take any form.
void readRegularEntries(DocumentCache& cache, TokenFilter& tokens);

} // namespace corvane
