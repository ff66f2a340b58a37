#include "reader/crypt/encryption.h"

#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/exception.h"

#include <utility>

namespace corvane {

namespace {

/// Bit 4 of the permissions: to change the document otherwise than by forms and annotations.
constexpr std::uint32_t changeBit = 1U << 3;

/// An entry that is an array or one value for all: the element `index`.
ObjectOwner elementOf(DocumentCache& cache, const Object& dictionary, std::string_view key,
                      std::size_t index) {
    ObjectOwner entry = lookupObject(cache, dictionary, key);
    if (typeObject(entry.get()) != ObjectType::array) {
        return index == 0 ? std::move(entry) : ObjectOwner();
    }
    const std::span<Object> elements = elementsObject(entry.get());
    return index < elements.size() ? resolveObject(cache, elements[index]) : ObjectOwner();
}

bool isName(const Object& object, std::string_view name) {
    return typeObject(object) == ObjectType::literal && literalObject(object) == name;
}

/// The name of the crypt filter that a stream asks for; nothing where it has none.
std::optional<std::string> cryptFilterOf(DocumentCache& cache, const Object& stream) {
    for (std::size_t i = 0; i <= budget::streamFilters; ++i) {
        const ObjectOwner filter = elementOf(cache, stream, "Filter", i);
        if (typeObject(filter.get()) != ObjectType::literal) {
            return std::nullopt;
        }
        if (literalObject(filter.get()) != "Crypt") {
            continue;
        }
        const ObjectOwner parameters = elementOf(cache, stream, "DecodeParms", i);
        if (typeObject(parameters.get()) != ObjectType::dictionary) {
            return "Identity";
        }
        const ObjectOwner name = lookupObject(cache, parameters.get(), "Name");
        return typeObject(name.get()) == ObjectType::literal
                   ? std::string(literalObject(name.get()))
                   : "Identity";
    }
    return std::nullopt;
}

} // namespace

Encryption::Encryption(FileCiphers ciphers, FileKey key, std::int32_t permissions,
                       std::set<std::int32_t> plain)
    : ciphers_(std::move(ciphers)), key_(std::move(key)), permissions_(permissions),
      plain_(std::move(plain)) {}

bool Encryption::allowsChanges() const {
    return key_.access == Access::owner ||
           (static_cast<std::uint32_t>(permissions_) & changeBit) != 0;
}

CipherKey Encryption::stringKey(ObjectIdentifier object) const {
    return streamKey(ciphers_.strings, object);
}

CipherKey Encryption::streamKey(FileCipher cipher, ObjectIdentifier object) const {
    return objectKey(cipher, key_.key, object.number, object.generation);
}

FileCipher Encryption::namedCipher(std::string_view name) const {
    if (name == "Identity") {
        return FileCipher::identity;
    }
    const auto found = ciphers_.named.find(name);
    if (found == ciphers_.named.end() || !found->second) {
        failException(Exception::range);
    }
    return *found->second;
}

FileCipher Encryption::cipherOf(DocumentCache& cache, const Object& stream) const {
    if (const auto name = cryptFilterOf(cache, stream)) {
        return namedCipher(*name);
    }
    const bool isPlainMetadata =
        !ciphers_.encryptsMetadata && isName(findEntry(cache, stream, "Type"), "Metadata");
    return isPlainMetadata ? FileCipher::identity : ciphers_.streams;
}

} // namespace corvane
