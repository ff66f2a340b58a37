// Writing what is enciphered. The digest of what an update writes (`WrittenDigest`) is fed with
// what that means, since a new cipher has other bytes each time.
#pragma once

#include "crypt/object_key.h"
#include "filters/filter.h"
#include "objects/object_identifier.h"
#include "reader/document/cache.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace corvane {

/// A string of the object `in`, as `sealedText`.
void sealedTextOutput(DocumentCache& cache, ObjectIdentifier in, std::string_view text);
/// The same for any bytes, as `sealedBytes`.
void sealedBytesOutput(DocumentCache& cache, ObjectIdentifier in, std::span<const std::byte> bytes);
/// A value that stood in the object `from`, as `sealedValue`.
void sealedValueOutput(DocumentCache& cache, const std::string& value, ObjectIdentifier from,
                       ObjectIdentifier to);

/// Links what enciphers the data of the stream `in`.
void linkSeal(const DocumentCache& cache, Chain& chain, FileCipher cipher, ObjectIdentifier in);

} // namespace corvane
