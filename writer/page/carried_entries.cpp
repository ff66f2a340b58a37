#include "writer/page/carried_entries.h"

#include "output/primitives.h"
#include "reader/syntax/syntax.h"
#include "runtime/budget.h"
#include "runtime/exception.h"
#include "writer/crypt/sealed.h"
#include "writer/crypt/sealed_output.h"
#include "writer/paint/object_text.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <utility>

namespace corvane {

void CarriedEntries::addReference(DocumentCache& cache, const Object& dictionary,
                                  std::string_view key) {
    std::int32_t number = 0;
    std::int32_t generation = 0;
    referenceObject(findEntry(cache, dictionary, key), number, generation);
    replace(key, std::to_string(number) + " " + std::to_string(generation & 0xFFFF) + " R");
}

void CarriedEntries::add(RawEntry entry) {
    if (entry.end - entry.start > budget::keptEntryBytes) {
        failException(Exception::limit);
    }
    entries_.push_back(std::move(entry));
}

void CarriedEntries::replace(std::string_view key, std::string_view value) {
    std::erase_if(entries_, [&](const RawEntry& entry) { return entry.key == key; });
    std::erase_if(references_, [&](const auto& entry) { return entry.first == key; });
    references_.emplace_back(key, value);
}

bool CarriedEntries::has(std::string_view key) const {
    return std::ranges::find(entries_, key, &RawEntry::key) != entries_.end();
}

void CarriedEntries::write(DocumentCache& cache, ObjectIdentifier in) const {
    for (const auto& [key, value] : references_) {
        nameOutput(*cache.output, key);
        stringOutput(*cache.output, value + "\r");
    }
    for (const RawEntry& entry : entries_) {
        writeEntry(cache, entry, in);
    }
}

void writeEntry(DocumentCache& cache, const RawEntry& entry, ObjectIdentifier in) {
    const std::string bytes = entry.read ? std::string() : rawValue(cache, entry);
    nameOutput(*cache.output, entry.key);
    if (entry.read) {
        const auto sealed = [&](std::string_view string) {
            return sealedBytes(cache, in, std::as_bytes(std::span(string)));
        };
        stringOutput(*cache.output, objectText(entry.read->get(), sealed).value_or("null"));
    } else {
        sealedValueOutput(cache, bytes, entry.object, in);
    }
    stringOutput(*cache.output, "\r");
}

} // namespace corvane
