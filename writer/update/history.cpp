#include "writer/update/history.h"

#include "filters/stream.h"
#include "objects/referenced.h"
#include "reader/document/revisions.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"
#include "runtime/extension.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <vector>

namespace corvane {

namespace {

/// Bytes of a date, "D:20261121090000+01'00'" and what careless writers put behind it.
constexpr std::size_t longestDate = 32;

/// Which pages an object is.
using PageNumbers = std::unordered_multimap<std::int32_t, std::int32_t>;

PageNumbers pagesByObject(DocumentCache& cache) {
    PageNumbers pages;
    const std::int32_t count = countCache(cache);
    for (std::int32_t page = 1; page <= count; ++page) {
        const PageEntry& entry = cache.pages[static_cast<std::size_t>(page - 1)];
        if (entry.number != 0) {
            pages.emplace(entry.number, page);
        }
    }
    return pages;
}

/// A date of an object of the section in force; empty where it has none that can be read.
std::string dateIn(DocumentCache& cache, const ReferenceNode& node, std::string_view key) {
    std::string date;
    const Exception code = guarded([&] {
        const ObjectOwner object = objectCache(cache, node.number, node.generation(), node.place());
        const ObjectOwner value = lookupObject(cache, object.get(), key);
        if (typeObject(value.get()) != ObjectType::null &&
            textObject(value.get()).size() <= longestDate) {
            date = textObject(value.get());
        }
    });
    if (code != Exception::none && !isFileFault(code)) {
        againException();
    }
    resetException();
    return date;
}

/// What is told of one revision.
struct Gathered {
    UpdateFacts facts;
    std::vector<std::int32_t> pages;
    std::string date;
};

/// Whether an object of the section in force was appended by the update that begins at `start`. One
/// that mended a file names those that stand before it, too.
bool isAppended(const DocumentCache& cache, const ReferenceNode& node, std::int32_t start) {
    return !node.place().isInStream() &&
           std::int64_t{node.place().offset()} + cache.headerOffset >= start;
}

void gatherSection(DocumentCache& cache, const PageNumbers& pages, Gathered& gathered) {
    const auto start = static_cast<std::int32_t>(gathered.facts.offset);
    for (Ref<ReferenceNode> node = firstReference(*cache.references); node; node = node->next) {
        if (gathered.facts.ours && !isAppended(cache, *node, start)) {
            continue;
        }
        ++gathered.facts.objects;
        const auto [first, last] = pages.equal_range(node->number);
        for (auto page = first; page != last; ++page) {
            gathered.pages.push_back(page->second);
        }
        // Dates begin alike, so that the latest is the greatest.
        if (first != last) {
            gathered.date = std::max(gathered.date, dateIn(cache, *node, "LastModified"));
        }
    }
    const Object info = findEntry(cache, cache.trailer.get(), "Info");
    if (gathered.date.empty() && typeObject(info) == ObjectType::reference) {
        const ObjectIdentifier dates = referenced(info);
        const auto node = findReference(*cache.references, dates.number, dates.generation);
        if (node && (!gathered.facts.ours || isAppended(cache, *node, start))) {
            gathered.date = dateIn(cache, *node, "ModDate");
        }
    }
}

Gathered gatherRevision(DocumentCache& cache, const PageNumbers& pages,
                        std::span<const Revision> all, std::size_t index) {
    const Revision& revision = all[index];
    const std::int32_t end = index + 1 == all.size() ? cache.fileLength : all[index + 1].start;
    Gathered gathered;
    gathered.facts = {.number = static_cast<std::int32_t>(index),
                      .offset = revision.start,
                      .size = std::int64_t{end} - revision.start,
                      .pages = {},
                      .date = {},
                      .ours = revision.ours};
    for (const std::int32_t section : revision.sections) {
        const SectionScope scope(cache, section);
        gatherSection(cache, pages, gathered);
    }
    std::ranges::sort(gathered.pages);
    gathered.pages.erase(std::unique(gathered.pages.begin(), gathered.pages.end()),
                         gathered.pages.end());
    return gathered;
}

void tell(Gathered gathered) {
    const auto extension = knownExtension();
    if (extension && extension->update != nullptr) {
        gathered.facts.pages = gathered.pages;
        gathered.facts.date = gathered.date;
        extension->update(extension->context, gathered.facts);
    }
}

/// Cuts the file off at `length`.
void cutFile(DocumentCache& cache, std::int32_t length) {
    Chain chain;
    chain.link(setupStream(cache.volume, cache.fileName, "append"));
    FileRecord& file = static_cast<StreamFilter&>(*chain.top()).file;
    const Exception code = guarded([&] {
        if (lengthFile(file) != cache.wholeLength) {
            failException(Exception::fileChanged);
        }
        backupFile(file, length);
        flushFile(file);
    });
    chain.unlink();
    raiseException(code);
}

} // namespace

void tellUpdates(DocumentCache& cache) {
    const std::vector<Revision> all = revisions(cache);
    const PageNumbers pages = pagesByObject(cache);
    for (std::size_t index = 0; index < all.size(); ++index) {
        tell(gatherRevision(cache, pages, all, index));
    }
}

void revertCache(DocumentCache& cache) {
    const std::vector<Revision> all = revisions(cache);
    const Revision& newest = all.back();
    // What somebody appended behind our update is not ours to cut off.
    if (!newest.ours || newest.end != cache.fileLength) {
        failException(Exception::foreignUpdate);
    }
    Gathered gathered = gatherRevision(cache, pagesByObject(cache), all, all.size() - 1);
    cutFile(cache, newest.start);
    tell(std::move(gathered));
}

} // namespace corvane
