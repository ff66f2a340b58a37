// Entries of a cross-reference subsection.
#pragma once

#include "filters/token.h"
#include "reader/document/cache.h"

namespace corvane {

/// Behind a subsection's header, which is all that is on the stack: reads the entries that have the
/// exact form of the PDF Reference, 3.4.3, without making tokens of them. What is left of the
/// header stays for the operators "n" and "f", which take entries of any form.
void readRegularEntries(DocumentCache& cache, TokenFilter& tokens);

} // namespace corvane
