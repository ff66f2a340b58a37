// The two families of the standard security handler.
#pragma once

#include "crypt/standard_handler.h"

namespace corvane {

/// Revisions 2 to 4, by a password in PDFDocEncoding.
std::optional<FileKey> keyOfOldRevision(const HandlerFacts& facts, Octets password);
/// Revisions 5 and 6, by a password in UTF-8.
std::optional<FileKey> keyOfNewRevision(const HandlerFacts& facts, Octets password);

/// The permissions of revisions 5 and 6 that Perms holds; none where it is damaged.
std::int32_t heldPermissions(const HandlerFacts& facts, const FileKey& key);

/// Bytes of O and U of the two families.
inline constexpr std::size_t oldEntryLength = 32;
inline constexpr std::size_t newEntryLength = 48;
/// Bytes of OE and UE, and of the key that they hold.
inline constexpr std::size_t newKeyLength = 32;

} // namespace corvane
