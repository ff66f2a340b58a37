// Deciphering what was read: strings at once, the data of streams when they are read.
#pragma once

#include "filters/filter.h"
#include "objects/object_identifier.h"
#include "reader/document/cache.h"

#include <optional>

namespace corvane {

/// Deciphers the strings of an indirect object that stands in the file itself and was just read,
/// and marks a stream as one whose data are enciphered. Objects of object streams are not handed
/// here: their strings are plain. Nothing happens where the file is not encrypted.
void decryptObject(DocumentCache& cache, Object& object, ObjectIdentifier identifier);

/// The object that a stream with enciphered data is; nothing for one whose data are plain.
std::optional<ObjectIdentifier> encryptedStream(const Object& stream);

/// Links what deciphers the stream's data on a chain that delivers them as they stand in the file.
void linkDecryption(DocumentCache& cache, Chain& chain, const Object& stream);

} // namespace corvane
