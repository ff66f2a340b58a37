#include "reader/document/revisions.h"

#include "filters/token/character.h"
#include "reader/document/deferred_entries.h"
#include "reader/document/locate.h"
#include "reader/document/update_mark.h"
#include "reader/syntax/file_bytes.h"
#include "runtime/exception.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>
#include <utility>

namespace corvane {

namespace {

/// Bytes in which an end has its number and its mark.
constexpr std::int32_t endReach = 64;

/// Where a revision ends whose word "startxref" ends at `position`.
std::int32_t behindEnd(DocumentCache& cache, std::int32_t position) {
    constexpr std::string_view mark = "%%EOF";
    const std::string bytes = bytesOfFile(cache, position, endReach);
    std::size_t at = bytes.find(mark);
    if (at == std::string::npos) {
        return std::min(position, cache.fileLength);
    }
    at += mark.size();
    if (at < bytes.size() && bytes[at] == '\r') {
        ++at;
    }
    if (at < bytes.size() && bytes[at] == '\n') {
        ++at;
    }
    return std::min(position + static_cast<std::int32_t>(at), cache.fileLength);
}

/// Whether the file ended at `position` once, and its newest section was that at `offset`. The end
/// of that section says the same, but where the word "endstream" is missing its stream reaches into
/// what was appended.
bool endedAt(DocumentCache& cache, std::int32_t position, std::int32_t offset) {
    bool isEnd = false;
    if (position >= shortestFile() && offset < position) {
        attempted([&] { isEnd = locateSection(cache, position) == offset; });
    }
    return isEnd;
}

/// Where the first of the objects stands that the section in force names. An object stream is one
/// of them; what is in it stands no earlier.
std::int64_t firstObject(DocumentCache& cache) {
    std::int64_t lowest = INT32_MAX;
    for (Ref<ReferenceNode> node = firstReference(*cache.references); node; node = node->next) {
        const ObjectPlace place = node->place();
        if (!place.isInStream()) {
            lowest = std::min<std::int64_t>(lowest, place.offset());
        }
    }
    return lowest + cache.headerOffset;
}

/// Where the update begins whose section, at `offset`, names every object of the file, so that none
/// before it counts: the file was damaged, and we mended it. Nothing where the oldest section is
/// that of the file as it was made. Behind our line stands one of the objects that the section
/// names, or the section.
std::optional<std::int32_t> mendedBefore(DocumentCache& cache, std::int32_t offset) {
    const std::int32_t position = offset + cache.headerOffset;
    const auto last = lastUpdate(cache, 0, position);
    if (!last) {
        return std::nullopt;
    }
    const std::int32_t behind = last->line + updateMarkLength - cache.headerOffset;
    const SectionScope section(cache, offset);
    bool isNamed = behind == offset;
    for (Ref<ReferenceNode> node = firstReference(*cache.references); node && !isNamed;
         node = node->next) {
        isNamed = node->place() == ObjectPlace::atOffset(behind);
    }
    return isNamed ? std::optional(last->start) : std::nullopt;
}

} // namespace

std::vector<Revision> revisions(DocumentCache& cache) {
    if (cache.repaired) {
        failException(Exception::structure);
    }
    std::vector<Revision> found;
    for (auto offset = cache.sectionOffsets.rbegin(); offset != cache.sectionOffsets.rend();
         ++offset) {
        const std::int32_t position = *offset + cache.headerOffset;
        std::int32_t end = 0;
        std::int64_t first = 0;
        {
            const SectionScope section(cache, *offset);
            end = behindEnd(cache, section.facts().end);
            first = firstObject(cache);
        }
        if (!found.empty() && position < found.back().end) {
            found.back().sections.push_back(*offset);
            continue;
        }
        Revision revision{.sections = {*offset}};
        if (const auto mended = found.empty() ? mendedBefore(cache, *offset) : std::nullopt) {
            found.push_back({.start = 0, .end = *mended, .sections = {}});
            revision.start = *mended;
            revision.ours = true;
        } else if (!found.empty()) {
            revision.start = found.back().end;
            // Ours begins with an object right behind its line. A line alone is what is left of
            // a save that was cut short, and may have somebody else's update behind it.
            const auto start = updateBefore(cache, first);
            // A line feed before our line may look like the end of the line before it.
            if (start && first <= position &&
                (*start >= found.back().end - 1 || endedAt(cache, *start, *std::prev(offset)))) {
                revision.start = *start;
                revision.ours = true;
                found.back().end = *start;
            }
        }
        revision.end = end;
        found.push_back(std::move(revision));
    }
    return found;
}

SectionScope::SectionScope(DocumentCache& cache) : cache_(cache), references_(openReference()) {
    exchange();
}

// By way of the other constructor, so that a failure further on exchanges them again.
SectionScope::SectionScope(DocumentCache& cache, std::int32_t offset) : SectionScope(cache) {
    facts_ = xrefCache(cache_, offset);
}

SectionScope::~SectionScope() {
    exchange();
}

void SectionScope::exchange() noexcept {
    std::swap(cache_.references, references_);
    std::swap(cache_.deferred, deferred_);
    std::swap(cache_.trailer, trailer_);
    std::swap(cache_.freed, freed_);
}

} // namespace corvane
