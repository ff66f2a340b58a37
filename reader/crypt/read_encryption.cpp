#include "reader/crypt/read_encryption.h"

#include "objects/referenced.h"
#include "reader/syntax/raw_entries.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"
#include "runtime/reason.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace corvane {

namespace {

[[noreturn]] void refuse(Reason reason, std::string_view name) {
    noteReason(reason, name);
    failException(Exception::crossReference);
}

std::int32_t integerIn(DocumentCache& cache, const Object& dictionary, std::string_view key,
                       std::int32_t usual) {
    const ObjectOwner value = lookupObject(cache, dictionary, key);
    return typeObject(value.get()) == ObjectType::null ? usual : integerObject(value.get());
}

std::string nameIn(DocumentCache& cache, const Object& dictionary, std::string_view key,
                   std::string_view usual) {
    const ObjectOwner value = lookupObject(cache, dictionary, key);
    return std::string(typeObject(value.get()) == ObjectType::null ? usual
                                                                   : literalObject(value.get()));
}

std::string stringIn(DocumentCache& cache, const Object& dictionary, std::string_view key) {
    const ObjectOwner value = lookupObject(cache, dictionary, key);
    return typeObject(value.get()) == ObjectType::null ? std::string()
                                                       : std::string(textObject(value.get()));
}

/// The entries of the Encrypt dictionary as they are written. One that is part of a trailer that a
/// search found is not known so: `structure`.
std::vector<RawEntry> writtenEntries(DocumentCache& cache) {
    const Object encrypt = findEntry(cache, cache.trailer.get(), "Encrypt");
    if (typeObject(encrypt) == ObjectType::reference) {
        const ObjectIdentifier dictionary = referenced(encrypt);
        return rawEntries(cache, dictionary.number, dictionary.generation);
    }
    const std::vector<RawEntry> trailer = rawTrailer(cache);
    const auto entry = std::ranges::find(trailer, "Encrypt", &RawEntry::key);
    return entry == trailer.end() ? std::vector<RawEntry>() : rawEntries(cache, *entry);
}

/// P by its digits: some programs write it without a sign, and 32 bits do not hold it then.
std::optional<std::int32_t> writtenPermissions(DocumentCache& cache) {
    std::optional<std::int32_t> permissions;
    attempted([&] {
        const std::vector<RawEntry> entries = writtenEntries(cache);
        const auto entry = std::ranges::find(entries, "P", &RawEntry::key);
        if (entry == entries.end()) {
            return;
        }
        const std::string digits = rawValue(cache, *entry);
        std::int64_t value = 0;
        const auto [end, fault] =
            std::from_chars(digits.data(), digits.data() + digits.size(), value);
        if (fault == std::errc() && end == digits.data() + digits.size() && value >= INT32_MIN &&
            value <= UINT32_MAX) {
            permissions = static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
        }
    });
    return permissions;
}

std::int32_t permissionsIn(DocumentCache& cache, const Object& dictionary) {
    if (const auto written = writtenPermissions(cache)) {
        return *written;
    }
    const ObjectOwner value = lookupObject(cache, dictionary, "P");
    return integerObject(value.get());
}

/// The first half of the file's identifier; empty where it has none.
std::string identifierOf(DocumentCache& cache) {
    std::string identifier;
    attempted([&] {
        const ObjectOwner pair = lookupObject(cache, cache.trailer.get(), "ID");
        if (typeObject(pair.get()) == ObjectType::array && sizeObject(pair.get()) >= 1) {
            identifier = textObject(resolveObject(cache, elementsObject(pair.get())[0]).get());
        }
    });
    return identifier;
}

/// Bytes of the key. V 1 has 40 bits and 4 has 128 whatever Length says; only 2 goes by it.
std::size_t keyLengthOf(DocumentCache& cache, const Object& dictionary, std::int32_t version) {
    switch (version) {
    case 1:
        return 5;
    case 4:
        return 16;
    case 5:
        return 32;
    default:
        break;
    }
    const std::int32_t bits = integerIn(cache, dictionary, "Length", 40);
    if (bits < 40 || bits > 128 || bits % 8 != 0) {
        failException(Exception::range);
    }
    return static_cast<std::size_t>(bits / 8);
}

struct NamedMethod {
    std::string_view name;
    std::int32_t version;
    FileCipher cipher;
};
constexpr std::array namedMethods = {
    NamedMethod{"V2", 4, FileCipher::arcfour},
    NamedMethod{"AESV2", 4, FileCipher::aes128},
    NamedMethod{"AESV3", 5, FileCipher::aes256},
};

/// The crypt filters of the dictionary (PDF 2.0, 7.6.6).
class CryptFilters {
public:
    CryptFilters(DocumentCache& cache, const Object& dictionary, std::int32_t version)
        : cache_(cache), dictionary_(dictionary), version_(version),
          filters_(lookupObject(cache, dictionary, "CF")) {}

    /// The cipher of what the entry `key` names.
    FileCipher used(std::string_view key) {
        const std::string name = nameIn(cache_, dictionary_, key, "Identity");
        if (name == "Identity") {
            return FileCipher::identity;
        }
        if (typeObject(filters_.get()) != ObjectType::dictionary) {
            failException(Exception::range);
        }
        const std::string method = methodOfFilter(lookupObject(cache_, filters_.get(), name).get());
        const auto cipher = cipherOf(method);
        if (!cipher) {
            refuse(Reason::unknownMethod, method);
        }
        return *cipher;
    }

    void addNamed(FileCiphers& ciphers) {
        if (typeObject(filters_.get()) != ObjectType::dictionary) {
            return;
        }
        const std::span<Object> entries = elementsObject(filters_.get());
        for (std::size_t i = 0; i + 1 < entries.size(); i += 2) {
            attempted([&] {
                const ObjectOwner filter = resolveObject(cache_, entries[i + 1]);
                ciphers.named.insert_or_assign(std::string(literalObject(entries[i])),
                                               cipherOf(methodOfFilter(filter.get())));
            });
        }
    }

private:
    std::string methodOfFilter(const Object& filter) {
        return nameIn(cache_, filter, "CFM", "None");
    }

    std::optional<FileCipher> cipherOf(std::string_view method) const {
        const auto* const row = std::ranges::find_if(namedMethods, [&](const NamedMethod& named) {
            return named.name == method && named.version == version_;
        });
        return row == namedMethods.end() ? std::nullopt : std::optional(row->cipher);
    }

    DocumentCache& cache_;
    const Object& dictionary_;
    std::int32_t version_;
    ObjectOwner filters_;
};

bool fits(std::int32_t version, std::int32_t revision) {
    switch (version) {
    case 1:
    case 2:
        return revision == 2 || revision == 3;
    case 4:
        return revision == 4;
    case 5:
        return revision == 5 || revision == 6;
    default:
        return false;
    }
}

} // namespace

EncryptionFacts readEncryption(DocumentCache& cache, const Object& dictionary) {
    const std::string handler = nameIn(cache, dictionary, "Filter", "");
    if (handler.empty()) {
        failException(Exception::range);
    }
    if (handler != "Standard") {
        refuse(Reason::unknownHandler, handler);
    }
    const std::int32_t version = integerIn(cache, dictionary, "V", 0);
    EncryptionFacts facts;
    facts.handler.revision = integerIn(cache, dictionary, "R", 0);
    if (!fits(version, facts.handler.revision)) {
        refuse(Reason::unknownMethod,
               "V " + std::to_string(version) + " R " + std::to_string(facts.handler.revision));
    }
    facts.handler.keyLength = keyLengthOf(cache, dictionary, version);
    facts.handler.owner = stringIn(cache, dictionary, "O");
    facts.handler.user = stringIn(cache, dictionary, "U");
    facts.handler.ownerKey = stringIn(cache, dictionary, "OE");
    facts.handler.userKey = stringIn(cache, dictionary, "UE");
    attempted([&] { facts.handler.proof = stringIn(cache, dictionary, "Perms"); });
    facts.handler.permissions = permissionsIn(cache, dictionary);
    facts.handler.identifier = identifierOf(cache);
    if (version >= 4) {
        const ObjectOwner metadata = lookupObject(cache, dictionary, "EncryptMetadata");
        facts.handler.encryptsMetadata =
            typeObject(metadata.get()) != ObjectType::boolean || booleanObject(metadata.get());
        CryptFilters filters(cache, dictionary, version);
        facts.ciphers.strings = filters.used("StrF");
        facts.ciphers.streams = filters.used("StmF");
        filters.addNamed(facts.ciphers);
    }
    facts.ciphers.encryptsMetadata = facts.handler.encryptsMetadata;
    if (!normalise(facts.handler)) {
        failException(Exception::range);
    }
    return facts;
}

} // namespace corvane
