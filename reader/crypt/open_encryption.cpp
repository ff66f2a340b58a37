#include "reader/crypt/open_encryption.h"

#include "objects/referenced.h"
#include "reader/crypt/read_encryption.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/exception.h"
#include "runtime/extension.h"
#include "runtime/reason.h"

#include <array>
#include <memory>
#include <optional>
#include <utility>

namespace corvane {

namespace {

/// What the host answers where the person cancelled.
constexpr std::int32_t cancelled = -2;

/// Asks the host for passwords.
class Passwords {
public:
    /// The one for this attempt; nothing where the host has none.
    std::optional<Secret> next(std::int32_t attempt) {
        if (!extension_ || extension_->password == nullptr) {
            return std::nullopt;
        }
        Secret buffer(budget::passwordBytes);
        char* const text = static_cast<char*>(static_cast<void*>(buffer.bytes().data()));
        const std::int32_t length =
            extension_->password(extension_->context, attempt, std::span(text, buffer.size()));
        if (length == cancelled) {
            failException(Exception::cancelled);
        }
        if (length < 0 || static_cast<std::size_t>(length) > buffer.size()) {
            return std::nullopt;
        }
        hadOne_ = true;
        return Secret(std::as_const(buffer).bytes().first(static_cast<std::size_t>(length)));
    }

    bool hadOne() const { return hadOne_; }

private:
    const std::optional<HostExtension> extension_ = knownExtension();
    bool hadOne_ = false;
};

/// The key, by whatever password opens the file. Nothing where none of those that need no question
/// does, and no key is `needed` to read the file.
std::optional<FileKey> findKey(const HandlerFacts& facts, bool needed) {
    Passwords passwords;
    const auto tryNext = [&](std::int32_t attempt) -> std::optional<FileKey> {
        const std::optional<Secret> password = passwords.next(attempt);
        return password ? fileKey(facts, password->bytes()) : std::nullopt;
    };
    // One that was stated comes before the empty one: it may be the owner's.
    std::optional<FileKey> key = tryNext(0);
    if (!key) {
        key = fileKey(facts, {});
    }
    if (!key && !needed) {
        return std::nullopt;
    }
    for (std::int32_t attempt = 1; !key && attempt <= budget::passwordAttempts; ++attempt) {
        key = tryNext(attempt);
    }
    if (!key) {
        noteReason(passwords.hadOne() ? Reason::wrongPassword : Reason::missingPassword);
        failException(Exception::crossReference);
    }
    return key;
}

/// Objects that are never enciphered: those that a key is made of.
std::set<std::int32_t> plainObjects(DocumentCache& cache) {
    std::set<std::int32_t> plain;
    const auto add = [&](const Object& entry) {
        if (typeObject(entry) == ObjectType::reference) {
            plain.insert(referenced(entry).number);
        }
    };
    add(findEntry(cache, cache.trailer.get(), "Encrypt"));
    add(findEntry(cache, cache.trailer.get(), "ID"));
    attempted([&] {
        const ObjectOwner halves = lookupObject(cache, cache.trailer.get(), "ID");
        if (typeObject(halves.get()) == ObjectType::array) {
            for (const Object& half : elementsObject(halves.get())) {
                add(half);
            }
        }
    });
    return plain;
}

} // namespace

void openEncryption(DocumentCache& cache) {
    if (typeObject(findEntry(cache, cache.trailer.get(), "Encrypt")) == ObjectType::null) {
        return;
    }
    ObjectOwner dictionary;
    const bool isThere =
        attempted([&] { dictionary = lookupObject(cache, cache.trailer.get(), "Encrypt"); }) &&
        typeObject(dictionary.get()) == ObjectType::dictionary;
    if (!isThere && !cache.repaired) {
        failException(Exception::structure); // searching the file may find it
    }
    EncryptionFacts facts;
    const bool isReadable =
        isThere && attempted([&] { facts = readEncryption(cache, dictionary.get()); });
    if (!isReadable) {
        noteReason(Reason::damagedEncryption);
        failException(Exception::crossReference);
    }
    // Some files have nothing but their attachments enciphered.
    const bool isPlain = facts.ciphers.strings == FileCipher::identity &&
                         facts.ciphers.streams == FileCipher::identity;
    std::optional<FileKey> key = findKey(facts.handler, !isPlain);
    std::int32_t permissions = facts.handler.permissions;
    if (key) {
        permissions = provenPermissions(facts.handler, *key);
    } else {
        facts.ciphers.named.clear();
        key.emplace();
    }
    cache.encryption = std::make_unique<Encryption>(std::move(facts.ciphers), std::move(*key),
                                                    permissions, plainObjects(cache));
    flushReference(*cache.references);
    cache.objectStreams.clear();
}

} // namespace corvane
