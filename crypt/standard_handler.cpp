#include "crypt/standard_handler.h"

#include "crypt/handler_revisions.h"
#include "crypt/password_text.h"
#include "crypt/prepared_password.h"

#include <algorithm>

namespace corvane {

namespace {

constexpr std::int32_t firstNewRevision = 5;

bool cut(std::string& entry, std::size_t length) {
    if (entry.size() < length) {
        return false;
    }
    entry.resize(length);
    return true;
}

} // namespace

bool normalise(HandlerFacts& facts) {
    if (facts.revision < 2 || facts.revision > 6) {
        return false;
    }
    if (facts.revision >= firstNewRevision) {
        return facts.keyLength == newKeyLength && cut(facts.owner, newEntryLength) &&
               cut(facts.user, newEntryLength) && cut(facts.ownerKey, newKeyLength) &&
               cut(facts.userKey, newKeyLength);
    }
    return facts.keyLength >= 5 && facts.keyLength <= 16 && cut(facts.owner, oldEntryLength) &&
           cut(facts.user, oldEntryLength);
}

std::optional<FileKey> fileKey(const HandlerFacts& facts, Octets password) {
    if (facts.revision >= firstNewRevision) {
        if (const std::optional<Secret> prepared = preparedPassword(password)) {
            if (auto key = keyOfNewRevision(facts, prepared->bytes())) {
                return key;
            }
            if (std::ranges::equal(prepared->bytes(), password)) {
                return std::nullopt;
            }
        }
        return keyOfNewRevision(facts, password);
    }
    if (const std::optional<Secret> encoded = documentEncoded(password)) {
        if (auto key = keyOfOldRevision(facts, encoded->bytes())) {
            return key;
        }
    }
    return keyOfOldRevision(facts, password);
}

std::int32_t provenPermissions(const HandlerFacts& facts, const FileKey& key) {
    return facts.revision >= firstNewRevision ? facts.permissions & heldPermissions(facts, key)
                                              : facts.permissions;
}

} // namespace corvane
