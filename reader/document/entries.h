// Entries of a cross-reference subsection.
#pragma once

#include "filters/token/token.h"
#include "reader/document/cache.h"

namespace corvane {

/// An entry of a section. One that is not used names no object: it is free, or of a type without
/// meaning.
struct SectionEntry {
    ObjectPlace place = ObjectPlace::atOffset(0);
    std::int32_t generation = 0;
    bool used = false;
};

/// Enters an object, unless a newer section has it. A number that no object can have raises
/// `structure`.
void enterEntry(DocumentCache& cache, std::int32_t number, const SectionEntry& entry);
/// The same for an entry that is not deferred: those that are, are entered first.
void noteEntry(DocumentCache& cache, std::int32_t number, const SectionEntry& entry);

/// Once a whole section was read: what it frees is not looked up in older ones. Before, the stream
/// that a table names may still tell where objects are that the table shows as free.
void settleFreed(DocumentCache& cache);

/// Reads the entries of a subsection, without making tokens of them, as long as they have the exact
/// form of the PDF Reference, 3.4.3; many are deferred (reader/document/deferred_entries.h). The
/// subsection's header is all that is on the stack; if entries are left, their header stays there
/// for the operators "n" and "f", which take any form.
void readRegularEntries(DocumentCache& cache, TokenFilter& tokens);

} // namespace corvane
