#include "writer/piece_info.h"

#include "output/primitives.h"
#include "reader/page_identity.h"
#include "writer/date.h"
#include "writer/hexadecimal.h"

#include <algorithm>

namespace corvane {

void rawEntryOutput(DocumentCache& cache, const RawEntry& entry) {
    const std::string value = rawValue(cache, entry);
    nameOutput(*cache.output, entry.key);
    writeFilter(*cache.output, std::as_bytes(std::span(value)));
    stringOutput(*cache.output, "\r");
}

void writePieceInfo(DocumentCache& cache, std::span<const RawEntry> formerPage,
                    const OriginNote& note) {
    Filter& output = *cache.output;
    const std::string date = "/LastModified (" + dateNow() + ")";
    stringOutput(output, date + "\r/PieceInfo <<\r");
    const auto former = std::ranges::find(formerPage, "PieceInfo", &RawEntry::key);
    if (former != formerPage.end()) {
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
