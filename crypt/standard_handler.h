// The standard security handler (PDF 2.0, 7.6.4): from a password to the key of a file.
#pragma once

#include "crypt/secret.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// What an Encrypt dictionary says of passwords.
struct HandlerFacts {
    std::int32_t revision = 0; ///< 2 to 6
    std::size_t keyLength = 0; ///< bytes of the file's key
    std::string owner;         ///< O
    std::string user;          ///< U
    std::string ownerKey;      ///< OE, from revision 5 on
    std::string userKey;       ///< UE, the same
    std::string proof;         ///< Perms, the same
    std::int32_t permissions = 0;
    bool encryptsMetadata = true;
    std::string identifier; ///< the first half of the file's
};

/// Cuts the strings to the lengths that count. False where one is too short, or another value is
/// out of range.
bool normalise(HandlerFacts& facts);

enum class Access : std::uint8_t { user, owner };

struct FileKey {
    Secret key;
    Access access = Access::user;
};

/// The key of the file, by a password in UTF-8 that is the owner's or the user's; nothing where it
/// is neither. `facts` must be normal. Revisions up to 4 take passwords in PDFDocEncoding; one that
/// it does not hold, or that is no UTF-8, is tried in its own bytes. Later revisions take it as
/// SASLprep has it, and then as it is, as some programs do; its first 127 bytes count.
std::optional<FileKey> fileKey(const HandlerFacts& facts, Octets password);

/// The permissions that count. Anybody can change P; from revision 5 on the file's key proves it
/// (PDF 2.0, 7.6.4.4.12): nothing is permitted that the proof does not permit as well, and nothing
/// at all where it is missing or damaged.
std::int32_t provenPermissions(const HandlerFacts& facts, const FileKey& key);

} // namespace corvane
