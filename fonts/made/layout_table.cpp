#include "fonts/made/layout_table.h"

#include <array>

namespace corvane {

namespace {

/// Scripts without an entry take the first of them.
constexpr std::array<std::string_view, 2> scriptTags = {"DFLT", "latn"};

TableBytes scriptList(std::size_t features) {
    TableBytes list;
    list.u16(count32(scriptTags.size()));
    for (const std::string_view script : scriptTags) {
        list.text(script);
        list.u16(count32(2 + 6 * scriptTags.size())); // one script for both
    }
    list.all16({4, 0});                         // script: its default language, no other
    list.all16({0, 0xFFFF, count32(features)}); // language: no feature is required
    for (std::size_t i = 0; i < features; ++i) {
        list.u16(count32(i));
    }
    return list;
}

TableBytes featureList(std::span<const LayoutFeature> features) {
    TableBytes list;
    TableBytes entries;
    list.u16(count32(features.size()));
    for (const LayoutFeature& feature : features) {
        list.text(feature.tag);
        list.u16(count32(2 + 6 * features.size() + entries.size()));
        entries.all16({0, feature.hasLookup ? 1U : 0U});
        if (feature.hasLookup) {
            entries.u16(0);
        }
    }
    list.append(entries);
    return list;
}

} // namespace

TableBytes layoutTable(std::span<const LayoutFeature> features, const TableBytes& lookups) {
    constexpr std::size_t header = 10;
    const TableBytes scripts = scriptList(features.size());
    const TableBytes listed = featureList(features);
    TableBytes table;
    table.all16({1, 0, header, count32(header + scripts.size()),
                 count32(header + scripts.size() + listed.size())});
    table.append(scripts);
    table.append(listed);
    table.append(lookups);
    if (lookups.size() == 0) {
        table.u16(0);
    }
    return table;
}

} // namespace corvane
