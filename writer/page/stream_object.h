// The ends of stream objects that are written.
#pragma once

#include "reader/document/cache.h"

#include <cstdint>
#include <string_view>

namespace corvane {

/// Ends the object of a new stream whose dictionary is open: writes its Length, and the data,
/// enciphered in an encrypted file. Bytes of the data as they stand in the file.
std::int64_t finishStream(DocumentCache& cache, std::int32_t number, std::string_view data);

/// Writes the object that holds the length of a stream.
void writeLength(DocumentCache& cache, std::int32_t number, std::int32_t length);

} // namespace corvane
