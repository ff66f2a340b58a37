#include "reader/crypt/decrypt_object.h"

#include "crypt/cipher.h"
#include "filters/coding/decrypt.h"
#include "reader/crypt/encryption.h"
#include "reader/syntax/stream/meter.h"
#include "reader/syntax/syntax.h"
#include "runtime/memory.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>

namespace corvane {

namespace {

// A stream whose data are enciphered has two elements more: number and generation of its object.
constexpr std::size_t plainParts = 3;
constexpr std::size_t encryptedParts = 5;

void decryptString(Object& object, const CipherKey& key) {
    const ObjectType type = typeObject(object);
    const std::string plain = deciphered(key, textObject(object));
    Object made;
    if (type == ObjectType::text) {
        textualObject(made, type, plain);
    } else {
        BlockOwner bytes(allocateMemory(static_cast<std::int64_t>(plain.size())));
        std::ranges::copy(std::as_bytes(std::span(plain)), bytes.get().get());
        blockedObject(made, type, bytes.release(), static_cast<std::int32_t>(plain.size()));
    }
    freeObject(object);
    object = made;
}

/// Objects are nested no deeper than `budget::objectNesting`.
void decryptStrings(Object& object, const CipherKey& key) {
    switch (typeObject(object)) {
    case ObjectType::text:
    case ObjectType::block:
        return decryptString(object, key);
    case ObjectType::array:
    case ObjectType::procedure:
    case ObjectType::dictionary:
    case ObjectType::stream:
        for (Object& element : elementsObject(object)) {
            decryptStrings(element, key);
        }
        return;
    default:
        return;
    }
}

void markEncrypted(Object& stream, ObjectIdentifier identifier) {
    const std::span<Object> parts = elementsObject(stream);
    const Ref<Object> more = allocateRecord<Object>(encryptedParts);
    for (std::size_t i = 0; i < plainParts; ++i) {
        retainObject(parts[i]);
        more.get()[i] = parts[i];
    }
    shallowObject(more.get()[plainParts], ObjectType::integer, identifier.number);
    shallowObject(more.get()[plainParts + 1], ObjectType::integer, identifier.generation);
    freeObject(stream);
    groupedObject(stream, ObjectType::stream, more, encryptedParts);
}

/// Cross-reference streams are never enciphered.
bool isCrossReference(DocumentCache& cache, const Object& object) {
    if (typeObject(object) != ObjectType::stream) {
        return false;
    }
    const Object type = findEntry(cache, object, "Type");
    return typeObject(type) == ObjectType::literal && literalObject(type) == "XRef";
}

} // namespace

void decryptObject(DocumentCache& cache, Object& object, ObjectIdentifier identifier) {
    if (!cache.encryption || cache.encryption->isPlain(identifier.number) ||
        isCrossReference(cache, object)) {
        return;
    }
    const CipherKey key = cache.encryption->stringKey(identifier);
    if (key.method != CipherMethod::identity) {
        decryptStrings(object, key);
    }
    if (typeObject(object) == ObjectType::stream) {
        markEncrypted(object, identifier);
    }
}

std::optional<ObjectIdentifier> encryptedStream(const Object& stream) {
    const std::span<Object> parts = elementsObject(stream);
    if (parts.size() < encryptedParts) {
        return std::nullopt;
    }
    return ObjectIdentifier{.number = integerObject(parts[plainParts]),
                            .generation = integerObject(parts[plainParts + 1])};
}

void linkDecryption(DocumentCache& cache, Chain& chain, const Object& stream) {
    const auto identifier = encryptedStream(stream);
    if (!identifier || !cache.encryption) {
        return;
    }
    const FileCipher cipher = cache.encryption->cipherOf(cache, stream);
    if (cipher != FileCipher::identity) {
        chain.link(setupDecrypt(cache.encryption->streamKey(cipher, *identifier)));
        chain.link(setupMeter(cache.work));
    }
}

} // namespace corvane
