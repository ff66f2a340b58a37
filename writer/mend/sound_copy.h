// New copies of objects that are damaged.
#pragma once

#include "objects/object_identifier.h"
#include "reader/document/cache.h"
#include "reader/syntax/raw_entries.h"

#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// What a new copy says otherwise than the old object.
struct CopyChanges {
    struct Entry {
        std::string_view key;
        std::string value;        ///< in PDF syntax, without strings
        bool onlyInPlace = false; ///< said only where the old object has the key
    };
    std::vector<Entry> entries;      ///< in the places of the old ones, or behind them
    std::vector<RawEntry> inherited; ///< added where the object has none of that key
};

/// Whether `writeCopy` can write one: of a dictionary or a stream whose entries can be told apart,
/// or of what else the file's end cut off within its value, as far as it can be read. What is
/// appended would become a part of that.
bool canCopy(DocumentCache& cache, ObjectIdentifier object);

/// Writes the object once more, under its own number, to the cache's output: its entries in their
/// own bytes, a stream with its true Length and its data as they stand. What was cut off is written
/// as it was read, with what it left open closed.
void writeCopy(DocumentCache& cache, ObjectIdentifier object, const CopyChanges& changes = {});

/// Writes a dictionary of these entries as the object.
void writeNew(DocumentCache& cache, ObjectIdentifier object, const CopyChanges& entries);

} // namespace corvane
