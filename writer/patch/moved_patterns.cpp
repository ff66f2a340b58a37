#include "writer/patch/moved_patterns.h"

#include "objects/identity.h"
#include "objects/referenced.h"
#include "output/primitives.h"
#include "output/xref.h"
#include "reader/crypt/decrypt_object.h"
#include "reader/crypt/encryption.h"
#include "reader/syntax/raw_entries.h"
#include "reader/syntax/stream/stream_chain.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"
#include "writer/crypt/sealed.h"
#include "writer/crypt/sealed_output.h"
#include "writer/page/used_names.h"

#include <array>
#include <span>
#include <utility>

namespace corvane {

namespace {

/// PDF Reference, 4.6: the identity where the pattern does not say one.
RealMatrix matrixOf(DocumentCache& cache, const Object& pattern) {
    const ObjectOwner array = lookupObject(cache, pattern, "Matrix");
    if (typeObject(array.get()) != ObjectType::array || sizeObject(array.get()) != 6) {
        return {};
    }
    std::array<double, 6> values{};
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = realNumber(resolveObject(cache, elementsObject(array.get())[i]).get());
    }
    const auto [a, b, c, d, tx, ty] = values;
    return {a, b, c, d, tx, ty};
}

/// How the data of a copy are enciphered: as those of its pattern.
FileCipher cipherOf(DocumentCache& cache, const Object& stream) {
    return encryptedStream(stream) ? cache.encryption->cipherOf(cache, stream)
                                   : FileCipher::identity;
}

} // namespace

std::string_view MovedPatterns::add(std::string_view name, const RealMatrix& movement) {
    const std::string decoded = decodedName(name);
    const std::pair key(decoded, movementKey(movement));
    auto known = known_.find(key);
    if (known == known_.end()) {
        known = known_.emplace(key, copy(decoded, movement)).first;
    }
    return resources_.add(ResourceCategory::pattern, known->second, 0);
}

std::int32_t MovedPatterns::copy(const std::string& name, const RealMatrix& movement) {
    const ObjectOwner patterns = lookupObject(cache_, names_, "Pattern");
    if (typeObject(patterns.get()) != ObjectType::dictionary) {
        failException(Exception::unpatchable);
    }
    const Object named = findEntry(cache_, patterns.get(), name);
    const auto fromArtboard = inverse(toArtboard_);
    if (typeObject(named) != ObjectType::reference || !fromArtboard) {
        failException(Exception::unpatchable);
    }
    const ObjectIdentifier object = referenced(named);
    ObjectOwner pattern = resolveObject(cache_, named);
    MovedPattern copied{.number = nextIdentity(), .entries = {}, .matrix = {}, .stream = {}};
    for (RawEntry& entry : rawEntries(cache_, object.number, object.generation)) {
        if (entry.key != "Matrix" && entry.key != "Length") {
            copied.entries.add(std::move(entry));
        }
    }
    const RealMatrix ofContent = multiply(multiply(toArtboard_, movement), *fromArtboard);
    copied.matrix = multiply(matrixOf(cache_, pattern.get()), ofContent);
    if (typeObject(pattern.get()) == ObjectType::stream) {
        copied.stream = std::move(pattern);
    }
    copies_.push_back(std::move(copied));
    return copies_.back().number;
}

void writePattern(DocumentCache& cache, const MovedPattern& pattern) {
    Filter& output = *cache.output;
    touchXRef(output, pattern.number, 0);
    objectOutput(output, pattern.number, 0);
    stringOutput(output, "<<\r");
    pattern.entries.write(cache, {pattern.number, 0});
    stringOutput(output, "/Matrix [ ");
    matrixOutput(output, withoutSignedZeros(pattern.matrix));
    stringOutput(output, "]\r");
    if (typeObject(pattern.stream.get()) != ObjectType::stream) {
        stringOutput(output, ">>\rendobj\r");
        return;
    }
    const FileCipher cipher = cipherOf(cache, pattern.stream.get());
    stringOutput(output, "/Length ");
    integerOutput(output, static_cast<std::int32_t>(
                              sealedLength(cipher, plainLength(cache, pattern.stream.get()))));
    stringOutput(output, ">>\rstream\r");
    Chain sealed(&output);
    linkSeal(cache, sealed, cipher, {pattern.number, 0});
    const Chain data = plainStream(cache, pattern.stream.get());
    std::array<std::byte, 1 << 14> block;
    while (const std::size_t count = readFilter(*data.top(), block)) {
        writeFilter(*sealed.top(), std::span(block).first(count));
    }
    sealed.unlink();
    stringOutput(output, "\rendstream\rendobj\r");
}

} // namespace corvane
