// Enciphering what an update writes into an encrypted file. In a file that is not encrypted all of
// it stays as it is.
#pragma once

#include "crypt/cipher.h"
#include "crypt/object_key.h"
#include "objects/object_identifier.h"
#include "reader/document/cache.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace corvane {

/// A string of the object `in` as it is written: in parentheses, or as the digits of its bytes. The
/// text holds nothing that would have to be escaped.
std::string sealedText(const DocumentCache& cache, ObjectIdentifier in, std::string_view text);
/// The same for any bytes, always as digits.
std::string sealedBytes(const DocumentCache& cache, ObjectIdentifier in,
                        std::span<const std::byte> bytes);

/// A value in PDF syntax that stood in the object `from` and is written into `to`: its strings are
/// enciphered anew. Strings of no object (number 0) are plain.
std::string sealedValue(const DocumentCache& cache, std::string value, ObjectIdentifier from,
                        ObjectIdentifier to);
/// What such a value means, the same whatever object it stands in: in an encrypted file, its
/// strings are the digits of their plain bytes.
std::string plainValue(const DocumentCache& cache, std::string value, ObjectIdentifier from);

/// Where the initialisation vectors of new ciphers come from.
VectorSource sealVectors();
/// How the data of a new stream are enciphered.
FileCipher newStreamCipher(const DocumentCache& cache);
/// Bytes that so many bytes of data become.
std::int64_t sealedLength(FileCipher cipher, std::int64_t length);

} // namespace corvane
