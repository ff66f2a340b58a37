#include "reader/page/page_record.h"

#include "reader/syntax/syntax.h"
#include "runtime/exception.h"

#include <algorithm>
#include <array>

namespace corvane {

namespace {

/// From a page to our record.
constexpr std::array<std::string_view, 3> recordPath = {"PieceInfo", pieceInfoName, "Private"};

ObjectOwner recordObject(DocumentCache& cache) {
    ObjectOwner object = sharedObject(cache.page.get());
    for (const std::string_view key : recordPath) {
        if (typeObject(object.get()) != ObjectType::dictionary) {
            return {};
        }
        object = lookupObject(cache, object.get(), key);
    }
    return object;
}

/// The offset of the object that a reference names, by the cross-reference. What we save stands in
/// the file itself.
std::optional<std::int32_t> offsetOf(DocumentCache& cache, std::int32_t number,
                                     std::int32_t generation) {
    const Ref<ReferenceNode> node = findReference(*cache.references, number, generation);
    if (!node || node->place().isInStream()) {
        return std::nullopt;
    }
    return node->place().offset();
}

/// An integer, or an array of them.
std::vector<std::int32_t> numbersOf(DocumentCache& cache, const Object& record,
                                    std::string_view key) {
    const ObjectOwner stated = lookupObject(cache, record, key);
    if (typeObject(stated.get()) == ObjectType::integer) {
        return {integerObject(stated.get())};
    }
    if (typeObject(stated.get()) != ObjectType::array) {
        failException(Exception::range);
    }
    std::vector<std::int32_t> numbers;
    for (const Object& element : elementsObject(stated.get())) {
        numbers.push_back(integerObject(element));
    }
    return numbers;
}

/// Whether the new objects of the update, all of which it wrote in front of the page, stand there.
bool standInFront(DocumentCache& cache, std::span<const std::int32_t> runs, std::int32_t page) {
    std::int32_t former = 0;
    for (std::size_t i = 0; i + 1 < runs.size(); i += 2) {
        if (runs[i] <= former || runs[i + 1] < runs[i]) {
            failException(Exception::range);
        }
        former = runs[i + 1];
        for (std::int64_t number = runs[i]; number <= former; ++number) {
            const auto offset = offsetOf(cache, static_cast<std::int32_t>(number), 0);
            if (!offset || *offset > page) {
                return false;
            }
        }
    }
    return true;
}

std::vector<std::int32_t> numbersIfAny(DocumentCache& cache, const Object& record,
                                       std::string_view key) {
    const bool isThere = typeObject(findEntry(cache, record, key)) != ObjectType::null;
    return isThere ? numbersOf(cache, record, key) : std::vector<std::int32_t>();
}

/// Whether the page and the objects of the update stand where the record says.
bool speaksOfPage(DocumentCache& cache, const Object& record, std::span<const BaseStream> streams) {
    const PageEntry& entry = cache.pages[static_cast<std::size_t>(cache.pageNumber - 1)];
    const ObjectOwner page = lookupObject(cache, record, "Page");
    const std::int32_t place = integerObject(page.get());
    if (offsetOf(cache, entry.number, entry.generation) != place ||
        !standInFront(cache, numbersIfAny(cache, record, "Made"), place)) {
        return false;
    }
    std::vector<std::int32_t> stated = numbersOf(cache, record, "Content");
    std::vector<std::int32_t> standing;
    for (const BaseStream& stream : streams) {
        if (const auto offset = offsetOf(cache, stream.number, stream.generation)) {
            standing.push_back(*offset);
        }
    }
    std::ranges::sort(stated);
    std::ranges::sort(standing);
    return std::ranges::includes(standing, stated);
}

std::optional<PageOrigin> originOf(DocumentCache& cache, const Object& record) {
    const std::optional<std::uint64_t> digest = eightBytes(lookupObject(cache, record, "Origin"));
    if (!digest) {
        return std::nullopt;
    }
    const ObjectOwner version = lookupObject(cache, record, "Version");
    return PageOrigin{.digest = *digest,
                      .version = typeObject(version.get()) == ObjectType::integer
                                     ? static_cast<DigestVersion>(integerObject(version.get()))
                                     : DigestVersion::page};
}

} // namespace

std::optional<PageRecord> recordOfPage(DocumentCache& cache, std::span<const BaseStream> streams) {
    PageRecord record;
    bool isOurs = false;
    const bool isWhole = attempted([&] {
        const ObjectOwner object = recordObject(cache);
        isOurs = typeObject(object.get()) == ObjectType::dictionary &&
                 speaksOfPage(cache, object.get(), streams);
        if (isOurs) {
            record.origin = originOf(cache, object.get());
            record.artwork = eightBytes(lookupObject(cache, object.get(), "Artwork"));
            record.update = eightBytes(lookupObject(cache, object.get(), "Update"));
            record.layers = numbersIfAny(cache, object.get(), "Layers");
            record.base = readableObject(cache, findEntry(cache, object.get(), "Base"));
        }
    });
    return isWhole && isOurs ? std::optional(std::move(record)) : std::nullopt;
}

std::vector<RawEntry> rawBase(DocumentCache& cache) {
    const PageEntry& page = cache.pages[static_cast<std::size_t>(cache.pageNumber - 1)];
    std::vector<RawEntry> entries = soundEntries(cache, {page.number, page.generation});
    for (const std::string_view key :
         {recordPath[0], recordPath[1], recordPath[2], std::string_view("Base")}) {
        const auto entry = std::ranges::find(entries, key, &RawEntry::key);
        if (entry == entries.end()) {
            return {};
        }
        entries = rawEntries(cache, RawEntry(*entry));
    }
    return entries;
}

std::optional<std::uint64_t> eightBytes(const ObjectOwner& object) {
    if (typeObject(object.get()) != ObjectType::block) {
        return std::nullopt;
    }
    const std::span<const std::byte> bytes = blockObject(object.get());
    if (bytes.size() != sizeof(std::uint64_t)) {
        return std::nullopt;
    }
    std::uint64_t value = 0;
    for (const std::byte byte : bytes) {
        value = value << 8 | static_cast<std::uint64_t>(byte);
    }
    return value;
}

} // namespace corvane
