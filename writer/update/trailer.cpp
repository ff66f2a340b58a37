// The end of an update: its section of the cross-reference, its trailer, and what makes it count.
#include "filters/coding/deflate.h"
#include "objects/identity.h"
#include "output/primitives.h"
#include "output/xref.h"
#include "reader/syntax/raw_entries.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/exception.h"
#include "runtime/rules.h"
#include "writer/update/hexadecimal.h"
#include "writer/update/listed_objects.h"
#include "writer/update/section_data.h"
#include "writer/update/update.h"
#include "writer/update/update_filter.h"

#include <algorithm>
#include <span>
#include <string_view>
#include <utility>

namespace corvane {

namespace {

/// A Size beyond is taken for a mistake: it would leave too few numbers for what is written.
constexpr std::int32_t largestSize = budget::objectNumber / 2;

/// An entry as the file has it: a reference or, in the extended profile, the thing itself.
void carry(DocumentCache& cache, CarriedEntries& entries, std::string_view key) {
    const Object& trailer = cache.trailer.get();
    if (!rules().carriesTrailer ||
        typeObject(findEntry(cache, trailer, key)) == ObjectType::reference) {
        return entries.addReference(cache, trailer, key);
    }
    if (cache.sectionOffsets.empty()) {
        return; // found by a search: its bytes are not known
    }
    for (RawEntry& entry : rawTrailer(cache)) {
        if (entry.key == key) {
            entries.add(std::move(entry));
        }
    }
}

/// What the file said before; 0 where it said nothing that counts.
std::int32_t formerSize(DocumentCache& cache) {
    const ObjectOwner former = lookupObject(cache, cache.trailer.get(), "Size");
    return typeObject(former.get()) == ObjectType::integer
               ? std::max(0, integerObject(former.get()))
               : 0;
}

/// A file's identifier: the first half stays for ever, the second is new with every update (PDF
/// Reference, 9.3).
std::optional<std::string> formerIdentifier(DocumentCache& cache) {
    const ObjectOwner pair = lookupObject(cache, cache.trailer.get(), "ID");
    if (typeObject(pair.get()) != ObjectType::array || sizeObject(pair.get()) < 1) {
        return std::nullopt;
    }
    const ObjectOwner first = resolveObject(cache, elementsObject(pair.get())[0]);
    const ObjectType type = typeObject(first.get());
    if (type != ObjectType::text && type != ObjectType::block) {
        return std::nullopt;
    }
    return std::string(textObject(first.get()));
}

/// Sixteen bytes that follow from what was written.
std::string newIdentifier(Digest digest) {
    const std::string first = hexadecimal(digest.value());
    digest.feed(std::as_bytes(std::span(first)));
    return first + hexadecimal(digest.value());
}

std::int32_t sizeOf(const CarriedTrailer& trailer) {
    return std::max(lastIdentity(), trailer.size);
}

/// What the trailer says, in either form of section.
void writeTrailerEntries(DocumentCache& cache, const CarriedTrailer& trailer) {
    Filter& output = *cache.output;
    stringOutput(output, "/Size ");
    integerOutput(output, sizeOf(trailer));
    if (!trailer.isWhole) {
        stringOutput(output, "\r/Prev ");
        integerOutput(output, weighXRef());
    }
    stringOutput(output, "\r");
    trailer.entries.write(cache, {});
    if (trailer.identifier) {
        const auto& update = static_cast<const UpdateFilter&>(output);
        stringOutput(output, "/ID [ <" +
                                 hexadecimal(std::as_bytes(std::span(*trailer.identifier))) +
                                 "> <" + newIdentifier(update.digest) + "> ]\r");
    }
}

/// A subsection for each run of numbers.
void writeWholeEntries(DocumentCache& cache, const CarriedTrailer& trailer) {
    Filter& output = *cache.output;
    const std::vector<ListedObject> objects = wholeObjects(cache, trailer.leftOut, sizeOf(trailer));
    for (const NumberRun& run : numberRuns(objects)) {
        integerOutput(output, run.first);
        integerOutput(output, static_cast<std::int32_t>(run.objects.size()));
        stringOutput(output, "\r");
        for (const ListedObject& object : run.objects) {
            lineXRef(output, object.place.offset(), object.generation, !object.isFree);
        }
    }
}

void writeTable(DocumentCache& cache, const CarriedTrailer& trailer) {
    Filter& output = *cache.output;
    stringOutput(output, "xref\r");
    if (trailer.isWhole) {
        writeWholeEntries(cache, trailer);
    } else {
        stringOutput(output, "0 1 \r0000000000 65535 f \r");
        forallXRef([&](const XRefEntry& entry) {
            entryXRef(output, entry.number, entry.generation, entry.offset);
        });
    }
    stringOutput(output, "trailer\r<<\r");
    writeTrailerEntries(cache, trailer);
    stringOutput(output, ">>\r");
}

/// The section is one of its own objects.
void writeStream(DocumentCache& cache, const CarriedTrailer& trailer) {
    Filter& output = *cache.output;
    touchXRef(output, trailer.section, 0);
    const SectionData section = sectionData(
        trailer.isWhole ? wholeObjects(cache, trailer.leftOut, sizeOf(trailer)) : updatedObjects());
    const std::string data = deflated(section.entries);
    objectOutput(output, trailer.section, 0);
    stringOutput(output, "<<\r/Type /XRef\r");
    writeTrailerEntries(cache, trailer);
    stringOutput(output, "/Index [ " + section.index + "]\r/W [ " + section.widths +
                             "]\r/Filter /FlateDecode\r/Length ");
    integerOutput(output, static_cast<std::int32_t>(data.size()));
    stringOutput(output, "\r>>\rstream\r");
    writeFilter(output, std::as_bytes(std::span(data)));
    stringOutput(output, "\rendstream\rendobj\r");
}

/// Whether the section is a stream: as the one before it or, where it stands for all sections, as
/// objects in object streams need it.
bool needsStream(const DocumentCache& cache, const CarriedTrailer& trailer) {
    if (!trailer.isWhole) {
        return cache.continuesStream;
    }
    Ref<ReferenceNode> node = firstReference(*cache.references);
    while (node && !node->place().isInStream()) {
        node = node->next;
    }
    return static_cast<bool>(node);
}

} // namespace

CarriedTrailer carriedTrailer(DocumentCache& cache) {
    CarriedTrailer trailer;
    carry(cache, trailer.entries, "Root");
    const Object info = findEntry(cache, cache.trailer.get(), "Info");
    if (!rules().carriesTrailer || typeObject(info) != ObjectType::null) {
        carry(cache, trailer.entries, "Info");
    }
    if (cache.encryption) {
        carry(cache, trailer.entries, "Encrypt");
    }
    if (rules().carriesTrailer) {
        // A file can do without an ID, and with a Size that is found anew.
        attempted([&] { trailer.size = formerSize(cache); });
        attempted([&] { trailer.identifier = formerIdentifier(cache); });
    }
    return trailer;
}

void reserveNumbers(const DocumentCache& cache, CarriedTrailer& trailer) {
    if (trailer.size > 0 && trailer.size <= largestSize) {
        usedIdentity(trailer.size - 1);
    }
    trailer.section = needsStream(cache, trailer) ? nextIdentity() : 0;
}

std::int32_t updateWrite(DocumentCache& cache, const CarriedTrailer& trailer) {
    const std::int32_t section = markFilter(*cache.output);
    if (trailer.section != 0) {
        writeStream(cache, trailer);
    } else {
        writeTable(cache, trailer);
    }
    return section;
}

std::string updateEnd(std::int32_t section) {
    return "startxref\n" + std::to_string(section) + " \n%%EOF\n";
}

} // namespace corvane
