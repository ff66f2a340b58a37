#include "writer/page/page_object.h"

#include "objects/family.h"
#include "objects/mask.h"
#include "output/primitives.h"
#include "output/xref.h"
#include "reader/syntax/raw_entries.h"
#include "reader/syntax/syntax.h"
#include "runtime/exception.h"
#include "runtime/fixed.h"
#include "runtime/rules.h"
#include "writer/page/piece_info.h"
#include "writer/page/resource_registry.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
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

/// The fonts and images that the art walk met, by the names that it gave them.
ResourceRegistry metResources() {
    ResourceRegistry resources;
    forallFamily([&](const Family& family) {
        resources.add(ResourceCategory::font, resourceNameFamily(family), family.number,
                      family.generation);
    });
    forallMask([&](const Mask& mask) {
        resources.add(ResourceCategory::object, mask.resourceName.get(), mask.number,
                      mask.generation);
    });
    return resources;
}

void writeResources(DocumentCache& cache) {
    const ResourceRegistry resources = metResources();
    Filter& output = *cache.output;
    stringOutput(output, "/Resources <<\r");
    resources.write(cache);
    stringOutput(output, "/ProcSet [ /PDF ");
    if (resources.hasAdded(ResourceCategory::font)) {
        stringOutput(output, "/Text ");
    }
    if (resources.hasAdded(ResourceCategory::object)) {
        stringOutput(output, "/ImageB /ImageC /ImageI ");
    }
    stringOutput(output, "]\r>>\r");
}

const PageEntry& pageInUse(const DocumentCache& cache) {
    return cache.pages[static_cast<std::size_t>(cache.pageNumber - 1)];
}

/// A number; one beyond 16.16 is read back as an integer only, and beyond 32 bits not at all.
void writeCoordinate(Filter& output, double value) {
    constexpr double largestFixed = 32767;
    constexpr double largestInteger = std::numeric_limits<std::int32_t>::max();
    if (std::abs(value) <= largestFixed) {
        fixedOutput(output, fixedFromReal(value));
    } else {
        const double whole = std::clamp(std::nearbyint(value), -largestInteger, largestInteger);
        integerOutput(output, static_cast<std::int32_t>(whole));
    }
}

void writeBox(Filter& output, std::string_view key, const Box& box) {
    nameOutput(output, key);
    stringOutput(output, "[ ");
    for (const double edge : {box.left, box.bottom, box.right, box.top}) {
        writeCoordinate(output, edge);
    }
    stringOutput(output, "]\r");
}

void writeGeometry(Filter& output, const PageGeometry& geometry) {
    if (!rules().keepsGeometry) {
        stringOutput(output, "/Rotate 0\r");
    }
    writeBox(output, "MediaBox", geometry.mediaBox);
    writeBox(output, "CropBox", geometry.cropBox);
}

} // namespace

CarriedPage carriedPage(DocumentCache& cache, const PageGeometry& geometry) {
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
    std::vector<RawEntry> entries = rawEntries(cache, page.number, page.generation);
    carried.notes = notesOfOthers(cache, entries);
    for (RawEntry& entry : entries) {
        if (!isAmong(replacedKeys, entry.key) &&
            (geometry.kept || !isAmong(geometryKeys, entry.key))) {
            carried.entries.add(std::move(entry));
        }
    }
    return carried;
}

void writePageObject(DocumentCache& cache, const CarriedPage& carried, const PageGeometry& geometry,
                     const PageParts& parts) {
    const PageEntry& page = pageInUse(cache);
    Filter& output = *cache.output;
    const std::int32_t place = markFilter(output);
    touchXRef(output, page.number, page.generation);
    objectOutput(output, page.number, page.generation);
    stringOutput(output, "<<\r/Type /Page\r");
    carried.entries.write(cache);
    stringOutput(output, "/Contents ");
    referenceOutput(output, parts.content, 0);
    writeResources(cache);
    if (rules().recordsOrigin) {
        writePieceInfo(cache, carried.notes,
                       {.origin = parts.origin, .page = place, .content = parts.contentPlace});
    }
    if (!geometry.kept) {
        writeGeometry(output, geometry);
    }
    stringOutput(output, ">>\rendobj\r");
}

} // namespace corvane
