// The end of an update: its section of the cross-reference, its trailer, and what makes it count.
#include "objects/identity.h"
#include "output/primitives.h"
#include "output/xref.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/exception.h"
#include "runtime/rules.h"
#include "writer/page/carried_reference.h"
#include "writer/update/hexadecimal.h"
#include "writer/update/update.h"
#include "writer/update/update_filter.h"

#include <algorithm>
#include <span>
#include <string_view>

namespace corvane {

namespace {

/// A Size beyond is taken for a mistake: it would leave too few numbers for what is written.
constexpr std::int32_t largestSize = budget::objectNumber / 2;

bool trailerHas(DocumentCache& cache, std::string_view key) {
    return typeObject(findEntry(cache, cache.trailer.get(), key)) != ObjectType::null;
}

/// What the file said before; 0 where it said nothing that counts.
std::int32_t formerSize(DocumentCache& cache) {
    const ObjectOwner former = lookupObject(cache, cache.trailer.get(), "Size");
    if (!rules().carriesTrailer || typeObject(former.get()) != ObjectType::integer) {
        return 0;
    }
    return std::max(0, integerObject(former.get()));
}

/// Sixteen bytes that follow from what was written.
std::string newIdentifier(Digest digest) {
    const std::string first = hexadecimal(digest.value());
    digest.feed(std::as_bytes(std::span(first)));
    return first + hexadecimal(digest.value());
}

/// A file's identifier: the first half stays for ever, the second is new with every update (PDF
/// Reference, 9.3).
void writeIdentifier(DocumentCache& cache) {
    const ObjectOwner pair = lookupObject(cache, cache.trailer.get(), "ID");
    if (typeObject(pair.get()) != ObjectType::array || sizeObject(pair.get()) < 1) {
        return;
    }
    const ObjectOwner first = resolveObject(cache, elementsObject(pair.get())[0]);
    const ObjectType type = typeObject(first.get());
    if (type != ObjectType::text && type != ObjectType::block) {
        return;
    }
    const std::string_view bytes = textObject(first.get());
    stringOutput(*cache.output,
                 "/ID [ <" + hexadecimal(std::as_bytes(std::span(bytes))) + "> <" +
                     newIdentifier(static_cast<const UpdateFilter&>(*cache.output).digest) +
                     "> ]\r");
}

} // namespace

void reserveNumbers(DocumentCache& cache) {
    const std::int32_t size = formerSize(cache);
    if (size > 0 && size <= largestSize) {
        usedIdentity(size - 1);
    }
}

std::int32_t updateWrite(DocumentCache& cache) {
    Filter& output = *cache.output;
    const std::int32_t section = markFilter(output);
    stringOutput(output, "xref\r0 1 \r0000000000 65535 f \r");
    forallXRef([&](const XRefEntry& entry) {
        entryXRef(output, entry.number, entry.generation, entry.offset);
    });
    stringOutput(output, "trailer\r<<\r/Size ");
    integerOutput(output, std::max(lastIdentity(), formerSize(cache)));
    stringOutput(output, "\r/Prev ");
    integerOutput(output, weighXRef());
    stringOutput(output, "\r");
    carryReference(cache, cache.trailer.get(), "Root");
    if (!rules().carriesTrailer || trailerHas(cache, "Info")) {
        carryReference(cache, cache.trailer.get(), "Info");
    }
    if (rules().carriesTrailer) {
        writeIdentifier(cache);
    }
    stringOutput(output, ">>\r");
    return section;
}

std::string updateEnd(std::int32_t section) {
    return "startxref\n" + std::to_string(section) + " \n%%EOF\n";
}

} // namespace corvane
