// Entries that an update takes over from the dictionary that it replaces. They are settled before
// anything is written, so that what cannot be taken over is refused in time.
#pragma once

#include "reader/document/cache.h"
#include "reader/syntax/raw_entries.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace corvane {

class CarriedEntries {
public:
    /// Takes over the entry `key` of `dictionary`, a reference. Anything else raises `range`.
    void addReference(DocumentCache& cache, const Object& dictionary, std::string_view key);
    /// Takes over an entry in its own bytes. One that is too long raises `limit`.
    void add(RawEntry entry);
    /// A value of ours, without strings, in place of the one that was taken over under that key.
    void replace(std::string_view key, std::string_view value);
    /// Whether an entry was taken over in its own bytes under that key.
    bool has(std::string_view key) const;

    /// Writes the references, then the others, to the cache's output, into the object `in`: where
    /// that is another one than they come from, strings are enciphered anew.
    void write(DocumentCache& cache, ObjectIdentifier in) const;

private:
    std::vector<std::pair<std::string, std::string>> references_; // keys and values
    std::vector<RawEntry> entries_;
};

/// Writes one entry, as `CarriedEntries::write`.
void writeEntry(DocumentCache& cache, const RawEntry& entry, ObjectIdentifier in);

} // namespace corvane
