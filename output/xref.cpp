#include "output/xref.h"

#include "output/primitives.h"
#include "runtime/exception.h"
#include "runtime/memory.h"
#include "runtime/rules.h"

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

constexpr std::int32_t offsetDigits = 10;
constexpr std::int32_t generationDigits = 5;

Ref<XRefEntry> xrefList;
Ref<XRefEntry> xrefLast;
std::int32_t highestNumber = 0;
std::int32_t xrefOffset = 0;

bool standsBefore(const XRefEntry& entry, const XRefEntry& other) {
    return entry.number < other.number &&
           (rules().xrefByNumber || entry.generation <= other.generation);
}

/// The link in which `entry` belongs. Numbers mostly come ascending, and then it is the last.
Ref<XRefEntry>* linkFor(const XRefEntry& entry) {
    if (xrefLast && entry.number >= highestNumber) {
        return &xrefLast->next;
    }
    Ref<XRefEntry>* link = &xrefList;
    while (*link && !standsBefore(entry, **link)) {
        link = &(*link)->next;
    }
    return link;
}

} // namespace

void openXRef() {
    closeXRef();
}

void closeXRef() {
    while (xrefList) {
        freeRecord(std::exchange(xrefList, xrefList->next));
    }
    xrefLast = {};
    highestNumber = 0;
    xrefOffset = 0;
}

void hoistXRef(std::int32_t offset) {
    xrefOffset = offset;
}

std::int32_t weighXRef() {
    return xrefOffset;
}

void touchXRef(Filter& stream, std::int32_t number, std::int32_t generation) {
    const std::int32_t offset = markFilter(stream);
    const auto added = NewPtrClear(sizeof(XRefEntry)).as<XRefEntry>();
    if (!added) {
        failException(Exception::io);
    }
    *added = XRefEntry{{}, number, generation, offset};
    Ref<XRefEntry>* link = linkFor(*added);
    added->next = std::exchange(*link, added);
    if (!added->next) {
        xrefLast = added;
    }
    highestNumber = std::max(highestNumber, number);
}

void forallXRef(const std::function<void(const XRefEntry&)>& procedure) {
    for (Ref<XRefEntry> entry = xrefList; entry; entry = entry->next) {
        procedure(*entry);
    }
}

void entryXRef(Filter& stream, std::int32_t number, std::int32_t generation, std::int32_t offset) {
    integerOutput(stream, number);
    stringOutput(stream, "1 \r");
    lineXRef(stream, offset, generation, true);
}

void lineXRef(Filter& stream, std::int32_t offset, std::int32_t generation, bool isUsed) {
    paddedOutput(stream, offset, offsetDigits);
    stringOutput(stream, " ");
    paddedOutput(stream, generation & 0xFFFF, generationDigits);
    stringOutput(stream, isUsed ? " n \r" : " f \r");
}

} // namespace corvane
