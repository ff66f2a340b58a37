// Deciphering the data of a stream, and enciphering what is written.
#pragma once

#include "crypt/cipher.h"
#include "filters/filter.h"

namespace corvane {

/// A decoder of enciphered data.
FilterOwner setupDecrypt(const CipherKey& key);
/// Enciphers what is written through it; the rest when it is unlinked. Nothing is read, or sought.
FilterOwner setupEncrypt(const CipherKey& key, VectorSource source = VectorSource::chance);

} // namespace corvane
