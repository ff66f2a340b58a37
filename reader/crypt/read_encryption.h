// What an Encrypt dictionary says.
#pragma once

#include "reader/crypt/encryption.h"
#include "reader/document/cache.h"

namespace corvane {

struct EncryptionFacts {
    HandlerFacts handler;
    FileCiphers ciphers;
};

/// Reads the dictionary. A security handler or a method that is not known raises `crossReference`
/// and notes why; what is missing, damaged or out of range is a fault of the file.
EncryptionFacts readEncryption(DocumentCache& cache, const Object& dictionary);

} // namespace corvane
