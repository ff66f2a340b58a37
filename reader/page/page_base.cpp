#include "reader/page/page_base.h"

#include "reader/page/page_record.h"
#include "reader/syntax/stream/stream_chain.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>
#include <utility>

namespace corvane {

namespace {

std::vector<BaseStream> standingStreams(DocumentCache& cache) {
    return streamsOf(cache, findEntry(cache, cache.page.get(), "Contents"));
}

std::optional<RawEntry> entryOf(std::span<const RawEntry> entries, std::string_view key) {
    const auto entry = std::ranges::find(entries, key, &RawEntry::key);
    return entry == entries.end() ? std::nullopt : std::optional(*entry);
}

/// Takes over how a dictionary states its content. Its resources count for none where they are
/// null.
void takeContent(DocumentCache& cache, PageBase& base, const Object& dictionary,
                 std::span<const RawEntry> entries) {
    base.contentsEntry = entryOf(entries, "Contents");
    base.resources = lookupObject(cache, dictionary, "Resources");
    if (typeObject(base.resources.get()) == ObjectType::null) {
        base.resources = inheritedResources(cache);
    } else {
        base.resourcesEntry = entryOf(entries, "Resources");
    }
}

PageBase baseFrom(const PageOrigin& origin) {
    PageBase base;
    base.digest = origin.digest;
    base.version = origin.version;
    return base;
}

PageBase standingBase(DocumentCache& cache, const PageOrigin& origin,
                      std::vector<BaseStream> streams) {
    PageBase base = baseFrom(origin);
    const PageEntry& page = cache.pages[static_cast<std::size_t>(cache.pageNumber - 1)];
    takeContent(cache, base, cache.page.get(), soundEntries(cache, {page.number, page.generation}));
    base.streams = std::move(streams);
    base.mediaBox = mediaCache(cache);
    base.cropBox = cropCache(cache);
    base.matrix = pageMatrix(cache);
    return base;
}

Box recordedBox(DocumentCache& cache, const Object& dictionary, const char* key) {
    const Box box = boxOf(cache, lookupObject(cache, dictionary, key).get());
    if (!hasArea(box)) {
        failException(Exception::range);
    }
    return box;
}

/// The base that a record states; nothing where it is damaged, or what it leads to was changed.
std::optional<PageBase> recordedBase(DocumentCache& cache, const PageRecord& record) {
    PageBase base = baseFrom(*record.origin);
    base.isStanding = false;
    bool holds = false;
    attempted([&] {
        const Object& stated = record.base.get();
        base.streams = streamsOf(cache, findEntry(cache, stated, "Contents"));
        readableObject(cache, findEntry(cache, stated, "Resources"));
        takeContent(cache, base, stated, rawBase(cache));
        base.mediaBox = recordedBox(cache, stated, "MediaBox");
        base.cropBox = recordedBox(cache, stated, "CropBox");
        base.matrix = pageMatrix(base.mediaBox, base.cropBox, rotateCache(cache));
        base.isAsOpened = lookupObject(cache, stated, "Anew")->type == ObjectType::null;
        base.contentDigest = eightBytes(lookupObject(cache, stated, "Digest"));
        holds = base.contentDigest &&
                *base.contentDigest ==
                    digestContent(cache, base.streams, base.resources.get(), base.version);
    });
    return holds ? std::optional(std::move(base)) : std::nullopt;
}

/// Whether the lengths differ, and so the digests of the pages do.
bool differInLength(std::span<const BaseStream> a, std::span<const BaseStream> b) {
    const auto length = [](const BaseStream& stream) { return streamLength(stream.stream.get()); };
    return !std::ranges::equal(a, b, {}, length, length);
}

/// The version by which the page as it stands has the digest `opened`.
std::optional<DigestVersion> versionOf(DocumentCache& cache, std::span<const BaseStream> streams,
                                       std::uint64_t opened) {
    std::vector<ObjectOwner> shared;
    shared.reserve(streams.size());
    for (const BaseStream& stream : streams) {
        shared.push_back(sharedObject(stream.stream.get()));
    }
    for (const DigestVersion version :
         std::array{DigestVersion::layered, DigestVersion::drawn, DigestVersion::page}) {
        if (digestPage(cache, shared, version) == opened) {
            return version;
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<PageBase> baseOf(DocumentCache& cache, std::uint64_t opened) {
    std::vector<BaseStream> streams = standingStreams(cache);
    std::optional<PageBase> recorded;
    const std::optional<PageRecord> record = recordOfPage(cache, streams);
    if (record && record->origin && record->origin->digest == opened) {
        if (typeObject(record->base.get()) == ObjectType::null) {
            PageBase base = standingBase(cache, *record->origin, std::move(streams));
            base.isAsOpened = false;
            return base;
        }
        recorded = recordedBase(cache, *record);
        if (recorded && differInLength(recorded->streams, streams)) {
            return recorded;
        }
    }
    if (const std::optional<DigestVersion> version = versionOf(cache, streams, opened)) {
        return standingBase(cache, {.digest = opened, .version = *version}, std::move(streams));
    }
    return recorded;
}

PageBase standingPage(DocumentCache& cache) {
    return standingBase(cache, {}, standingStreams(cache));
}

std::optional<std::uint64_t> lastArtwork(DocumentCache& cache) {
    const std::optional<PageRecord> record = recordOfPage(cache, standingStreams(cache));
    return record ? record->artwork : std::nullopt;
}

std::optional<std::uint64_t> lastUpdate(DocumentCache& cache) {
    const std::optional<PageRecord> record = recordOfPage(cache, standingStreams(cache));
    return record ? record->update : std::nullopt;
}

std::vector<std::int32_t> lastLayers(DocumentCache& cache) {
    std::optional<PageRecord> record = recordOfPage(cache, standingStreams(cache));
    return record ? std::move(record->layers) : std::vector<std::int32_t>();
}

} // namespace corvane
