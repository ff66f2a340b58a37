#include "writer/page/piece_info.h"

#include "output/primitives.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"
#include "writer/update/date.h"
#include "writer/update/hexadecimal.h"

#include <algorithm>
#include <utility>

namespace corvane {

CarriedEntries notesOfOthers(DocumentCache& cache, std::span<const RawEntry> page) {
    CarriedEntries others;
    const auto notes = std::ranges::find(page, "PieceInfo", &RawEntry::key);
    if (notes == page.end() ||
        !attempted([&] { lookupObject(cache, cache.page.get(), "PieceInfo"); })) {
        return others;
    }
    for (RawEntry& entry : rawEntries(cache, *notes)) {
        if (entry.key != pieceInfoName) {
            others.add(std::move(entry));
        }
    }
    return others;
}

void writePieceInfo(DocumentCache& cache, const CarriedEntries& others, const OriginNote& note) {
    Filter& output = *cache.output;
    const std::string date = "/LastModified (" + dateNow() + ")";
    stringOutput(output, date + "\r/PieceInfo <<\r");
    others.write(cache);
    nameOutput(output, pieceInfoName);
    stringOutput(output, "<< " + date + " /Private << /Origin <" + hexadecimal(note.origin.digest) +
                             "> /Version ");
    integerOutput(output, static_cast<std::int32_t>(note.origin.version));
    stringOutput(output, "/Page ");
    integerOutput(output, note.page);
    stringOutput(output, "/Content ");
    integerOutput(output, note.content);
    stringOutput(output, ">> >>\r>>\r");
}

} // namespace corvane
