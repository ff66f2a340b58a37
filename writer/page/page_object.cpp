#include "writer/page/page_object.h"

#include "objects/family.h"
#include "objects/mask.h"
#include "output/primitives.h"
#include "output/xref.h"
#include "reader/syntax/raw_entries.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"
#include "runtime/rules.h"
#include "writer/page/carried_reference.h"
#include "writer/page/piece_info.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace corvane {

namespace {

/// Keys that the new page object writes itself, and Thumb, which shows the old page.
constexpr std::array<std::string_view, 7> replacedKeys = {
    "Type", "Parent", "Contents", "Resources", "Thumb", "PieceInfo", "LastModified"};

/// Keys that go with the old size of a page.
constexpr std::array<std::string_view, 6> geometryKeys = {"MediaBox", "CropBox", "BleedBox",
                                                          "TrimBox",  "ArtBox",  "Rotate"};

bool isAmong(std::span<const std::string_view> keys, std::string_view key) {
    return std::ranges::find(keys, key) != keys.end();
}

void writeResources(Filter& output) {
    stringOutput(output, "/Resources <<\r");
    if (countFamily() > 0) {
        stringOutput(output, "/Font <<\r");
        forallFamily([&](const Family& family) {
            nameOutput(output, resourceNameFamily(family));
            referenceOutput(output, family.number, family.generation);
        });
        stringOutput(output, ">>\r");
    }
    if (countMask() > 0) {
        stringOutput(output, "/XObject <<\r");
        forallMask([&](const Mask& mask) {
            nameOutput(output, mask.resourceName.get());
            referenceOutput(output, mask.number, mask.generation);
        });
        stringOutput(output, ">>\r");
    }
    stringOutput(output, "/ProcSet [ /PDF ");
    if (countFamily() > 0) {
        stringOutput(output, "/Text ");
    }
    if (countMask() > 0) {
        stringOutput(output, "/ImageB /ImageC /ImageI ");
    }
    stringOutput(output, "]\r>>\r");
}

/// Writes what the old page says beside its content, in its own bytes.
void carryEntries(DocumentCache& cache, std::span<const RawEntry> entries, bool withGeometry) {
    for (const RawEntry& entry : entries) {
        if (!isAmong(replacedKeys, entry.key) &&
            (withGeometry || !isAmong(geometryKeys, entry.key))) {
            rawEntryOutput(cache, entry);
        }
    }
}

void writeGeometry(Filter& output, const PageGeometry& geometry) {
    stringOutput(output, "/Rotate 0\r/MediaBox [ ");
    rectOutput(output, geometry.mediaBox);
    stringOutput(output, "]\r/CropBox [ ");
    rectOutput(output, geometry.cropBox);
    stringOutput(output, "]\r");
}

} // namespace

void writePageObject(DocumentCache& cache, const PageParts& parts) {
    const PageEntry& page = cache.pages[static_cast<std::size_t>(cache.pageNumber - 1)];
    if (page.number == 0) {
        failException(Exception::underflow);
    }
    Filter& output = *cache.output;
    const std::int32_t place = markFilter(output);
    touchXRef(output, page.number, page.generation);
    objectOutput(output, page.number, page.generation);
    stringOutput(output, "<<\r/Type /Page\r");
    carryReference(cache, cache.page.get(), "Parent");
    std::vector<RawEntry> entries;
    if (rules().keepsPageEntries) {
        entries = rawEntries(cache, page.number, page.generation);
        carryEntries(cache, entries, parts.geometry.kept);
    } else if (typeObject(findEntry(cache, cache.page.get(), "Annots")) != ObjectType::null) {
        carryReference(cache, cache.page.get(), "Annots");
    }
    stringOutput(output, "/Contents ");
    referenceOutput(output, parts.content, 0);
    writeResources(output);
    if (rules().recordsOrigin) {
        writePieceInfo(cache, entries,
                       {.origin = parts.origin, .page = place, .content = parts.contentPlace});
    }
    if (!parts.geometry.kept) {
        writeGeometry(output, parts.geometry);
    }
    stringOutput(output, ">>\rendobj\r");
}

} // namespace corvane
