#include "writer/update/section_data.h"

#include "output/xref.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace corvane {

namespace {

/// What `entryXRef` writes of a generation.
constexpr std::int32_t generationMask = 0xFFFF;

std::int32_t widthOf(std::int32_t value) {
    std::int32_t width = 0;
    for (; value > 0; value >>= 8) {
        ++width;
    }
    return width;
}

void append(std::string& bytes, std::int32_t value, std::int32_t width) {
    for (std::int32_t i = width - 1; i >= 0; --i) {
        bytes += static_cast<char>(value >> 8 * i & 0xFF);
    }
}

/// The entries in order, of several with one number the last.
std::vector<XRefEntry> listedEntries() {
    std::vector<XRefEntry> entries;
    forallXRef([&](const XRefEntry& entry) {
        if (!entries.empty() && entries.back().number == entry.number) {
            entries.pop_back();
        }
        entries.push_back(entry);
    });
    return entries;
}

} // namespace

SectionData sectionData() {
    const std::vector<XRefEntry> entries = listedEntries();
    std::int32_t offsetWidth = 0;
    std::int32_t generationWidth = 0;
    for (const XRefEntry& entry : entries) {
        offsetWidth = std::max(offsetWidth, widthOf(entry.offset));
        generationWidth = std::max(generationWidth, widthOf(entry.generation & generationMask));
    }
    SectionData data;
    data.widths = "1 " + std::to_string(offsetWidth) + " " + std::to_string(generationWidth) + " ";
    for (std::size_t first = 0, i = 0; i < entries.size(); ++i) {
        const XRefEntry& entry = entries[i];
        append(data.entries, 1, 1);
        append(data.entries, entry.offset, offsetWidth);
        append(data.entries, entry.generation & generationMask, generationWidth);
        if (i + 1 == entries.size() || entries[i + 1].number != entry.number + 1) {
            data.index +=
                std::to_string(entries[first].number) + " " + std::to_string(i + 1 - first) + " ";
            first = i + 1;
        }
    }
    return data;
}

} // namespace corvane
