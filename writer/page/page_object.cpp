#include "writer/page/page_object.h"

#include "objects/family.h"
#include "objects/mask.h"
#include "output/primitives.h"
#include "output/xref.h"
#include "reader/syntax/raw_entries.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"
#include "runtime/rules.h"
#include "writer/font/font_works.h"
#include "writer/image/mask_works.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

namespace corvane {

namespace {

/// Keys that the new page object writes itself, and Thumb, which shows the old page.
constexpr std::array<std::string_view, 6> replacedKeys = {"Type",  "Contents",  "Resources",
                                                          "Thumb", "PieceInfo", "LastModified"};

/// Keys that go with the old size of a page.
constexpr std::array<std::string_view, 5> geometryKeys = {"MediaBox", "CropBox", "BleedBox",
                                                          "TrimBox", "ArtBox"};

bool isAmong(std::span<const std::string_view> keys, std::string_view key) {
    return std::ranges::find(keys, key) != keys.end();
}

/// What the art walk met.
void writeMetResources(DocumentCache& cache) {
    Filter& output = *cache.output;
    stringOutput(output, "/Resources <<\r");
    if (countFamily() > 0) {
        stringOutput(output, "/Font <<\r");
        forallFamily([&](const Family& family) { referFamily(cache, family); });
        stringOutput(output, ">>\r");
    }
    if (countMask() > 0) {
        stringOutput(output, "/XObject <<\r");
        forallMask([&](const Mask& mask) { referMask(cache, mask); });
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

/// The base's own stay as they are where nothing was added, or inherited.
void writeResources(DocumentCache& cache, const CarriedPage& carried,
                    const ResourceRegistry& resources, ObjectIdentifier page) {
    if (!resources.hasAdded()) {
        carried.resources.write(cache, page);
        return;
    }
    stringOutput(*cache.output, "/Resources <<\r");
    resources.write(cache, page);
    stringOutput(*cache.output, ">>\r");
}

void writeContents(Filter& output, std::span<const ContentPart> contents) {
    stringOutput(output, "/Contents ");
    if (contents.size() == 1) {
        referenceOutput(output, contents[0].number, contents[0].generation);
        return;
    }
    stringOutput(output, "[\r");
    for (const ContentPart& part : contents) {
        referenceOutput(output, part.number, part.generation);
    }
    stringOutput(output, "]\r");
}

/// The new objects among those that were written so far.
std::vector<std::int32_t> madeObjects(std::int32_t firstNew) {
    std::vector<std::int32_t> made;
    forallXRef([&](const XRefEntry& entry) {
        if (entry.number >= firstNew) {
            made.push_back(entry.number);
        }
    });
    return made;
}

RecordNote noteOf(const CarriedPage& carried, const PageParts& parts, std::int32_t place) {
    RecordNote note{.origin = parts.origin,
                    .artwork = parts.artwork,
                    .update = parts.written != nullptr ? std::optional(parts.written->value())
                                                       : std::nullopt,
                    .page = place,
                    .content = {},
                    .made = madeObjects(parts.firstNew),
                    .layers = parts.layers,
                    .base = carried.base ? &*carried.base : nullptr};
    for (const ContentPart& part : parts.contents) {
        if (part.place) {
            note.content.push_back(*part.place);
        }
    }
    return note;
}

void carryBase(DocumentCache& cache, CarriedPage& carried, const PageBase& base) {
    carried.base = CarriedBase{
        .content = {},
        .mediaBox = base.mediaBox,
        .cropBox = base.cropBox,
        .digest = base.contentDigest
                      ? *base.contentDigest
                      : digestContent(cache, base.streams, base.resources.get(), base.version),
        .isAsOpened = base.isAsOpened};
    if (base.contentsEntry) {
        carried.base->content.add(*base.contentsEntry);
    }
    if (base.resourcesEntry) {
        carried.base->content.add(*base.resourcesEntry);
        carried.resources.add(*base.resourcesEntry);
    }
}

const PageEntry& pageInUse(const DocumentCache& cache) {
    return cache.pages[static_cast<std::size_t>(cache.pageNumber - 1)];
}

void writeGeometry(Filter& output, const PageGeometry& geometry) {
    if (!rules().keepsGeometry) {
        stringOutput(output, "/Rotate 0\r");
    }
    writeBox(output, "MediaBox", geometry.mediaBox);
    writeBox(output, "CropBox", geometry.cropBox);
}

} // namespace

CarriedPage carriedPage(DocumentCache& cache, const PageGeometry& geometry, const PageBase* base) {
    const PageEntry& page = pageInUse(cache);
    CarriedPage carried;
    if (!rules().keepsPageEntries) {
        if (page.number == 0) {
            failException(Exception::underflow);
        }
        carried.entries.addReference(cache, cache.page.get(), "Parent");
        if (typeObject(findEntry(cache, cache.page.get(), "Annots")) != ObjectType::null) {
            carried.entries.addReference(cache, cache.page.get(), "Annots");
        }
        return carried;
    }
    if (page.number == 0) {
        failException(Exception::structure);
    }
    std::vector<RawEntry> entries = soundEntries(cache, {page.number, page.generation});
    carried.notes = notesOfOthers(cache, entries);
    for (RawEntry& entry : entries) {
        if (!isAmong(replacedKeys, entry.key) &&
            (geometry.kept || !isAmong(geometryKeys, entry.key))) {
            carried.entries.add(std::move(entry));
        }
    }
    if (base != nullptr) {
        carryBase(cache, carried, *base);
    }
    return carried;
}

void writePageObject(DocumentCache& cache, const CarriedPage& carried, const PageGeometry& geometry,
                     const PageParts& parts) {
    const ObjectIdentifier page{.number = pageInUse(cache).number,
                                .generation = pageInUse(cache).generation};
    Filter& output = *cache.output;
    const std::int32_t place = markFilter(output);
    touchXRef(output, page.number, page.generation);
    objectOutput(output, page.number, page.generation);
    stringOutput(output, "<<\r/Type /Page\r");
    carried.entries.write(cache, page);
    if (!geometry.kept && rules().keepsGeometry) {
        writeGeometry(output, geometry); // where the next save finds them among what it carries
    }
    writeContents(output, parts.contents);
    if (parts.resources != nullptr) {
        writeResources(cache, carried, *parts.resources, page);
    } else {
        writeMetResources(cache);
    }
    if (!geometry.kept && !rules().keepsGeometry) {
        writeGeometry(output, geometry);
    }
    if (rules().recordsOrigin) {
        writePieceInfo(cache, page, carried.notes, noteOf(carried, parts, place));
    }
    stringOutput(output, ">>\rendobj\r");
}

} // namespace corvane
