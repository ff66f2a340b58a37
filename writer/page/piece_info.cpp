#include "writer/page/piece_info.h"

#include "output/primitives.h"
#include "reader/page/page_identity.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"
#include "writer/update/date.h"
#include "writer/update/hexadecimal.h"

#include <algorithm>

namespace corvane {

void rawEntryOutput(DocumentCache& cache, const RawEntry& entry) {
    const std::string value = rawValue(cache, entry);
    nameOutput(*cache.output, entry.key);
    writeFilter(*cache.output, std::as_bytes(std::span(value)));
    stringOutput(*cache.output, "\r");
}

namespace {

/// Whether the page has notes that can be read: what others could not read either would make the
/// page itself unreadable.
bool hasNotes(DocumentCache& cache) {
    bool has = false;
    const Exception code = guarded([&] {
        const ObjectOwner notes = lookupObject(cache, cache.page.get(), "PieceInfo");
        has = typeObject(notes.get()) == ObjectType::dictionary;
    });
    if (code != Exception::none && !isFileFault(code)) {
        againException();
    }
    resetException();
    return has;
}

} // namespace

void writePieceInfo(DocumentCache& cache, std::span<const RawEntry> formerPage,
                    const OriginNote& note) {
    Filter& output = *cache.output;
    const std::string date = "/LastModified (" + dateNow() + ")";
    stringOutput(output, date + "\r/PieceInfo <<\r");
    const auto former = std::ranges::find(formerPage, "PieceInfo", &RawEntry::key);
    if (former != formerPage.end() && hasNotes(cache)) {
        for (const RawEntry& entry : rawEntries(cache, *former)) {
            if (entry.key != pieceInfoName) {
                rawEntryOutput(cache, entry);
            }
        }
    }
    nameOutput(output, pieceInfoName);
    stringOutput(output,
                 "<< " + date + " /Private << /Origin <" + hexadecimal(note.origin) + "> /Page ");
    integerOutput(output, note.page);
    stringOutput(output, "/Content ");
    integerOutput(output, note.content);
    stringOutput(output, ">> >>\r>>\r");
}

} // namespace corvane
