#include "writer/page/piece_info.h"

#include "output/primitives.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"
#include "writer/crypt/sealed.h"
#include "writer/page/page_geometry.h"
#include "writer/update/date.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace corvane {

namespace {

void writeDigest(DocumentCache& cache, ObjectIdentifier page, std::string_view key,
                 std::uint64_t digest) {
    std::array<std::byte, sizeof digest> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<std::byte>(digest >> 8 * (bytes.size() - 1 - i) & 0xFF);
    }
    nameOutput(*cache.output, key);
    stringOutput(*cache.output, sealedBytes(cache, page, bytes) + "\r");
}

/// Of one length, so that saves of one artwork are.
void writePlace(Filter& output, std::int32_t place) {
    paddedOutput(output, place, 10);
    stringOutput(output, " ");
}

/// Runs of ascending numbers, each by its first and its last one.
void writeRuns(Filter& output, std::string_view key, std::span<const std::int32_t> numbers) {
    nameOutput(output, key);
    stringOutput(output, "[ ");
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const bool isFirst = i == 0 || numbers[i] != numbers[i - 1] + 1;
        const bool isLast = i + 1 == numbers.size() || numbers[i + 1] != numbers[i] + 1;
        if (isFirst) {
            integerOutput(output, numbers[i]);
        }
        if (isLast) {
            integerOutput(output, numbers[i]);
        }
    }
    stringOutput(output, "]\r");
}

void writeBase(DocumentCache& cache, ObjectIdentifier page, const CarriedBase& base) {
    Filter& output = *cache.output;
    stringOutput(output, "/Base <<\r");
    base.content.write(cache, page);
    writeBox(output, "MediaBox", base.mediaBox, BoxDigits::all);
    writeBox(output, "CropBox", base.cropBox, BoxDigits::all);
    writeDigest(cache, page, "Digest", base.digest);
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

void writePieceInfo(DocumentCache& cache, ObjectIdentifier page, const CarriedEntries& others,
                    const RecordNote& note) {
    Filter& output = *cache.output;
    const std::string date = "/LastModified " + sealedText(cache, page, dateNow());
    stringOutput(output, date + "\r/PieceInfo <<\r");
    others.write(cache, page);
    nameOutput(output, pieceInfoName);
    stringOutput(output, "<< " + date + " /Private <<\r");
    if (note.origin) {
        writeDigest(cache, page, "Origin", note.origin->digest);
        stringOutput(output, "/Version ");
        integerOutput(output, static_cast<std::int32_t>(note.origin->version));
        stringOutput(output, "\r");
    }
    if (note.artwork) {
        writeDigest(cache, page, "Artwork", *note.artwork);
    }
    if (note.update) {
        writeDigest(cache, page, "Update", *note.update);
    }
    stringOutput(output, "/Page ");
    writePlace(output, note.page);
    stringOutput(output, "/Content [ ");
    for (const std::int32_t place : note.content) {
        writePlace(output, place);
    }
    stringOutput(output, "]\r");
    if (!note.made.empty()) {
        writeRuns(output, "Made", note.made);
    }
    if (!note.layers.empty()) {
        stringOutput(output, "/Layers [ ");
        for (const std::int32_t number : note.layers) {
            integerOutput(output, number);
        }
        stringOutput(output, "]\r");
    }
    if (note.base != nullptr) {
        writeBase(cache, page, *note.base);
    }
    stringOutput(output, ">> >>\r>>\r");
}

} // namespace corvane
