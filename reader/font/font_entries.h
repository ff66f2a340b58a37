// Entries of font dictionaries, read as most readers read them: what has the wrong kind is not
// there.
#pragma once

#include "reader/document/cache.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// The value of `key` of a dictionary or stream, resolved; null where there is none, or where a
/// fault of the file keeps it from being read.
ObjectOwner entryOf(DocumentCache& cache, const Object& dictionary, std::string_view key);
/// The object itself for a reference; null where it cannot be read.
ObjectOwner resolved(DocumentCache& cache, const Object& object);

bool isDictionary(const Object& object); ///< or a stream
std::optional<double> numberOf(const Object& object);
std::string nameOf(const Object& object);   ///< empty where it is no name
std::string stringOf(const Object& object); ///< empty where it is no string

std::optional<double> numberEntry(DocumentCache& cache, const Object& dictionary,
                                  std::string_view key);
std::string nameEntry(DocumentCache& cache, const Object& dictionary, std::string_view key);
/// The numbers of an array; those that are none are 0.
std::vector<double> numbersEntry(DocumentCache& cache, const Object& dictionary,
                                 std::string_view key, std::size_t most);

/// At most `limit` bytes of a stream, decoded; those up to a fault where there is one.
std::vector<std::byte> bytesOfStream(DocumentCache& cache, const Object& stream, std::size_t limit);

} // namespace corvane
