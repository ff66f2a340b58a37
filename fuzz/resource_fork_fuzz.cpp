// AppleDouble containers and the resource forks in them: whatever the bytes, all that is found can
// be read, and what can be written back says the same.
#include "fuzz/targets.h"
#include "toolbox/apple_double.h"
#include "toolbox/resource_fork.h"

#include <algorithm>
#include <cstddef>
#include <span>

namespace corvane::fuzz {

namespace {

bool same(Bytes a, Bytes b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

/// Read again, what was written back has the same resources, grouped by type.
void checkFork(Bytes fork) {
    const auto records = parseResourceFork(fork);
    if (!records) {
        return;
    }
    require(records->size() <= fork.size() / 12);
    std::size_t total = 0;
    for (const ResourceRecord& record : *records) {
        total += record.bytes.size(); // they may share their bytes
    }
    if (total > std::size_t{1} << 24) {
        return;
    }
    const auto written = buildResourceFork(*records);
    if (!written) {
        return;
    }
    const auto again = parseResourceFork(*written);
    require(again.has_value() && again->size() == records->size());
    for (const ResourceRecord& record : *records) {
        require(std::any_of(again->begin(), again->end(), [&](const ResourceRecord& other) {
            return other.type == record.type && other.id == record.id &&
                   other.attributes == record.attributes && other.name == record.name &&
                   same(other.bytes, record.bytes);
        }));
    }
}

} // namespace

void fuzzResourceFork(Bytes input) {
    checkFork(input);
    if (const auto entries = parseAppleDouble(input)) {
        for (const AppleDoubleEntry& entry : *entries) {
            if (entry.id == AppleDoubleId::resourceFork) {
                checkFork(entry.bytes);
            }
        }
        const auto again = parseAppleDouble(buildAppleDouble(*entries));
        require(again.has_value() && again->size() == entries->size());
    }
}

} // namespace corvane::fuzz
