#include "writer/page/piece_info.h"

#include "output/primitives.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"
#include "writer/page/page_geometry.h"
#include "writer/update/date.h"
#include "writer/update/hexadecimal.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

namespace corvane {

namespace {

void writeDigest(Filter& output, std::string_view key, std::uint64_t digest) {
    nameOutput(output, key);
    stringOutput(output, "<" + hexadecimal(digest) + ">\r");
}

/// Of one length, so that saves of one artwork are.
void writePlace(Filter& output, std::int32_t place) {
    paddedOutput(output, place, 10);
    stringOutput(output, " ");
}

void writeBase(DocumentCache& cache, const CarriedBase& base) {
    Filter& output = *cache.output;
    stringOutput(output, "/Base <<\r");
    base.content.write(cache);
    writeBox(output, "MediaBox", base.mediaBox);
    writeBox(output, "CropBox", base.cropBox);
    writeDigest(output, "Digest", base.digest);
    stringOutput(output, base.isAsOpened ? ">>\r" : "/Anew true >>\r");
}

} // namespace

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

void writePieceInfo(DocumentCache& cache, const CarriedEntries& others, const RecordNote& note) {
    Filter& output = *cache.output;
    const std::string date = "/LastModified (" + dateNow() + ")";
    stringOutput(output, date + "\r/PieceInfo <<\r");
    others.write(cache);
    nameOutput(output, pieceInfoName);
    stringOutput(output, "<< " + date + " /Private <<\r");
    if (note.origin) {
        writeDigest(output, "Origin", note.origin->digest);
        stringOutput(output, "/Version ");
        integerOutput(output, static_cast<std::int32_t>(note.origin->version));
        stringOutput(output, "\r");
    }
    if (note.artwork) {
        writeDigest(output, "Artwork", *note.artwork);
    }
    stringOutput(output, "/Page ");
    writePlace(output, note.page);
    stringOutput(output, "/Content [ ");
    for (const std::int32_t place : note.content) {
        writePlace(output, place);
    }
    stringOutput(output, "]\r");
    if (note.base != nullptr) {
        writeBase(cache, *note.base);
    }
    stringOutput(output, ">> >>\r>>\r");
}

} // namespace corvane
