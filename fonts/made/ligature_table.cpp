#include "fonts/made/ligature_table.h"

#include "fonts/made/layout_table.h"
#include "fonts/made/standing_tables.h"
#include "fonts/order/text_order.h"

#include <algorithm>
#include <map>
#include <optional>

namespace corvane {

namespace {

struct Ligature {
    std::vector<std::uint16_t> parts;
    std::uint16_t glyph = 0;
};

/// All that begin with one glyph, longest first: of those that fit, the first is taken.
using Set = std::vector<Ligature>;

/// Offsets in a subtable have 16 bits: further ligatures go to the next one. A set may be divided.
constexpr std::size_t subtableBytes = 60'000;

std::size_t bytesOf(const Ligature& ligature) {
    return 6 + 2 * ligature.parts.size();
}

std::optional<Ligature> ligatureOf(const GlyphOrder& order, std::size_t number) {
    Ligature ligature;
    ligature.glyph = static_cast<std::uint16_t>(number);
    // Programs look for ligatures in what is read.
    for (const char32_t character : inOtherOrder(order.glyphs[number].text)) {
        const auto part = order.byCharacter.find(character);
        if (part == order.byCharacter.end()) {
            return std::nullopt;
        }
        ligature.parts.push_back(part->second);
    }
    return ligature;
}

std::map<std::uint16_t, Set> setsOf(const GlyphOrder& order) {
    std::map<std::uint16_t, Set> sets;
    for (std::size_t i = 0; i < order.glyphs.size(); ++i) {
        if (order.glyphs[i].text.size() < 2) {
            continue;
        }
        if (auto ligature = ligatureOf(order, i);
            ligature && bytesOf(*ligature) < subtableBytes / 2) {
            sets[ligature->parts.front()].push_back(std::move(*ligature));
        }
    }
    for (auto& [first, set] : sets) {
        std::ranges::stable_sort(
            set, [](const auto& a, const auto& b) { return a.parts.size() > b.parts.size(); });
    }
    return sets;
}

TableBytes setTable(const Set& set) {
    TableBytes table;
    table.u16(count32(set.size()));
    std::size_t at = 2 + 2 * set.size();
    for (const Ligature& ligature : set) {
        table.u16(count32(at));
        at += 2 + 2 * ligature.parts.size();
    }
    for (const auto& [parts, glyph] : set) {
        table.all16({glyph, count32(parts.size())});
        for (std::size_t i = 1; i < parts.size(); ++i) {
            table.u16(parts[i]);
        }
    }
    return table;
}

/// Sets, then which glyphs they begin with.
TableBytes subtableOf(const std::map<std::uint16_t, Set>& sets) {
    std::vector<TableBytes> tables;
    std::size_t end = 6 + 2 * sets.size();
    TableBytes subtable;
    TableBytes offsets;
    TableBytes coverage;
    coverage.all16({1, count32(sets.size())});
    for (const auto& [first, set] : sets) {
        tables.push_back(setTable(set));
        offsets.u16(count32(end));
        end += tables.back().size();
        coverage.u16(first);
    }
    subtable.all16({1, count32(end), count32(sets.size())});
    subtable.append(offsets);
    for (const TableBytes& table : tables) {
        subtable.append(table);
    }
    subtable.append(coverage);
    return subtable;
}

std::vector<TableBytes> subtablesOf(const std::map<std::uint16_t, Set>& sets) {
    constexpr std::size_t setOverhead = 6; // its offset, its count, its first glyph
    std::vector<TableBytes> subtables;
    std::map<std::uint16_t, Set> gathered;
    std::size_t bytes = 0;
    for (const auto& [first, set] : sets) {
        for (const Ligature& ligature : set) {
            if (bytes + setOverhead + bytesOf(ligature) > subtableBytes) {
                subtables.push_back(subtableOf(gathered));
                gathered.clear();
                bytes = 0;
            }
            gathered[first].push_back(ligature);
            bytes += bytesOf(ligature) + (gathered[first].size() == 1 ? setOverhead : 0);
        }
    }
    subtables.push_back(subtableOf(gathered));
    return subtables;
}

/// One lookup of extension subtables, whose offsets have 32 bits.
TableBytes lookupList(const std::vector<TableBytes>& subtables) {
    constexpr std::uint32_t ligatures = 4;
    constexpr std::uint32_t extension = 7;
    constexpr std::size_t extensionBytes = 8;
    TableBytes list;
    list.all16({1, 4}); // one lookup, right behind
    const std::size_t head = 6 + 2 * subtables.size();
    list.all16({extension, 0, count32(subtables.size())});
    for (std::size_t i = 0; i < subtables.size(); ++i) {
        list.u16(count32(head + i * extensionBytes));
    }
    std::size_t at = subtables.size() * extensionBytes;
    for (const TableBytes& subtable : subtables) {
        list.all16({1, ligatures});
        list.u32(count32(at));
        at += subtable.size() - extensionBytes;
    }
    for (const TableBytes& subtable : subtables) {
        list.append(subtable);
    }
    return list;
}

} // namespace

TableBytes ligatureTable(const GlyphOrder& order) {
    const auto sets = setsOf(order);
    // Where a font has no form of a letter at all, programs look for all forms themselves.
    const bool hasForms = wantsStanding(order);
    if (sets.empty() && !hasForms) {
        return {};
    }
    // Browsers switch liga off where letters are spaced; ccmp stays.
    std::vector<LayoutFeature> features;
    if (!sets.empty()) {
        features.push_back({.tag = "ccmp", .hasLookup = true});
    }
    if (hasForms) {
        features.push_back({.tag = "isol"});
    }
    if (!sets.empty()) {
        features.push_back({.tag = "liga", .hasLookup = true});
    }
    return layoutTable(features, sets.empty() ? TableBytes() : lookupList(subtablesOf(sets)));
}

std::size_t longestLigature(const GlyphOrder& order) {
    std::size_t longest = 1;
    for (const UnitGlyph& glyph : order.glyphs) {
        longest = std::max(longest, glyph.text.size());
    }
    return longest;
}

} // namespace corvane
