#include "reader/revisions.h"

#include "filters/character.h"
#include "reader/file_bytes.h"
#include "reader/update_mark.h"
#include "runtime/exception.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace corvane {

namespace {

/// Bytes in which an end has its number and its mark.
constexpr std::int32_t endReach = 64;

/// Bytes behind the end of a revision in which an update of ours may begin: what readers accept
/// behind "%%EOF".
constexpr std::int32_t gapReach = 1024;

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
        {
            const SectionScope section(cache, *offset);
            end = behindEnd(cache, section.facts().end);
        }
        if (!found.empty() && position < found.back().end) {
            found.back().sections.push_back(*offset);
            continue;
        }
        Revision revision{.sections = {*offset}};
        if (!found.empty()) {
            revision.start = found.back().end;
            // A line feed before our line may look like the end of the line before it.
            const auto place =
                firstUpdate(cache, revision.start, std::min(position, revision.start + gapReach));
            if (place) {
                revision.start = place->start;
                revision.ours = true;
                found.back().end = place->start;
            }
        }
        revision.end = end;
        found.push_back(std::move(revision));
    }
    return found;
}

SectionScope::SectionScope(DocumentCache& cache, std::int32_t offset)
    : cache_(cache), references_(openReference()) {
    exchange();
    const Exception code = guarded([&] { facts_ = xrefCache(cache_, offset); });
    if (code != Exception::none) {
        exchange();
        againException();
    }
}

SectionScope::~SectionScope() {
    exchange();
}

void SectionScope::exchange() {
    std::swap(cache_.references, references_);
    std::swap(cache_.trailer, trailer_);
    std::swap(cache_.freed, freed_);
}

} // namespace corvane
