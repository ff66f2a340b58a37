// The entries of a dictionary as the very bytes of the file, for what is written back unchanged:
// our objects hold 16.16 numbers, which say less than the file does.
#pragma once

#include "objects/object_identifier.h"
#include "reader/document/cache.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace corvane {

/// One entry: its key, without the slash and with its #xx decoded, and where its value stands,
/// counted from the first byte of the file or of the object stream that holds it, decoded. White
/// space around the value is no part of it.
struct RawEntry {
    std::string key;
    std::int32_t start = 0;
    std::int32_t end = 0;
    std::int32_t stream = 0; ///< number of the object stream; 0: it stands in the file
    /// The object in which it stands; none where strings are plain: in a trailer,
    /// and in an object stream.
    ObjectIdentifier object = {};
    /// What was read of the value, where it stands in a damaged dictionary; it has no place then.
    std::shared_ptr<const ObjectOwner> read = {};
};

/// The entries of the dictionary that is the indirect object `number` `generation`, of several with
/// one key, the one that `findEntry` takes. Raises `structure` where that is no dictionary.
std::vector<RawEntry> rawEntries(DocumentCache& cache, std::int32_t number,
                                 std::int32_t generation);

/// What was read of the entries of a dictionary, which is in `object`; those that are null are
/// none.
std::vector<RawEntry> readEntries(const Object& dictionary, ObjectIdentifier object);

/// `rawEntries`; of a dictionary whose bytes would carry damage on, what was read of it.
std::vector<RawEntry> soundEntries(DocumentCache& cache, ObjectIdentifier object);

/// The entries of a value that is a dictionary or leads to one by a reference; none otherwise.
std::vector<RawEntry> rawEntries(DocumentCache& cache, const RawEntry& value);

/// The entries of the newest trailer.
std::vector<RawEntry> rawTrailer(DocumentCache& cache);

/// The bytes of a value that has a place. More than `budget::keptEntryBytes` raise `limit`.
std::string rawValue(DocumentCache& cache, const RawEntry& entry);

} // namespace corvane
