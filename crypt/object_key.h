// The key of one object of an encrypted file.
#pragma once

#include "crypt/cipher.h"

#include <cstdint>

namespace corvane {

/// How the strings or the streams of a file are enciphered.
enum class FileCipher : std::uint8_t { identity, arcfour, aes128, aes256 };

/// The key of the object `number` `generation` (PDF 2.0, 7.6.3.2 and 7.6.3.3): AES-256 takes the
/// file's key, the others make one of it for each object.
CipherKey objectKey(FileCipher cipher, const Secret& fileKey, std::int32_t number,
                    std::int32_t generation);

CipherMethod methodOf(FileCipher cipher);

} // namespace corvane
