// The encryption of an open file: which of its data are enciphered, how, and by which key.
#pragma once

#include "crypt/object_key.h"
#include "crypt/standard_handler.h"
#include "objects/object.h"
#include "objects/object_identifier.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace corvane {

struct DocumentCache;

/// What an Encrypt dictionary says of ciphers.
struct FileCiphers {
    FileCipher strings = FileCipher::arcfour;
    FileCipher streams = FileCipher::arcfour;
    /// Crypt filters by name; nothing where the cipher of one is not known.
    std::map<std::string, std::optional<FileCipher>, std::less<>> named;
    bool encryptsMetadata = true;
};

class Encryption {
public:
    /// `plain`: objects whose strings are never enciphered.
    Encryption(FileCiphers ciphers, FileKey key, std::int32_t permissions,
               std::set<std::int32_t> plain);

    /// Whether the password that opened the file lets its pages be changed (PDF 2.0, table 22).
    bool allowsChanges() const;

    bool isPlain(std::int32_t number) const { return plain_.contains(number); }

    CipherKey stringKey(ObjectIdentifier object) const;
    CipherKey streamKey(FileCipher cipher, ObjectIdentifier object) const;
    /// Of the streams that say nothing themselves.
    FileCipher streamCipher() const { return ciphers_.streams; }
    /// Of a stream: its own Crypt filter counts first. One that is not known raises `range`.
    FileCipher cipherOf(DocumentCache& cache, const Object& stream) const;

private:
    FileCipher namedCipher(std::string_view name) const;

    FileCiphers ciphers_;
    FileKey key_;
    std::int32_t permissions_;
    std::set<std::int32_t> plain_;
};

} // namespace corvane
