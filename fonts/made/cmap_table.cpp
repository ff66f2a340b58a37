#include "fonts/made/cmap_table.h"

#include <bit>

namespace corvane {

namespace {

/// Characters and glyphs that follow one another.
struct Run {
    std::uint32_t first = 0;
    std::uint32_t last = 0;
    std::uint32_t glyph = 0;
};

std::vector<Run> runsOf(const std::map<char32_t, std::uint16_t>& glyphs) {
    std::vector<Run> runs;
    for (const auto& [character, glyph] : glyphs) {
        if (!runs.empty() && runs.back().last + 1 == character &&
            runs.back().glyph + (character - runs.back().first) == glyph) {
            runs.back().last = character;
        } else {
            runs.push_back({character, character, glyph});
        }
    }
    return runs;
}

/// Its length has 16 bits, so that it may have to leave out the last runs.
constexpr std::size_t most4 = 8000;

TableBytes format4(std::vector<Run> runs) {
    std::erase_if(runs, [](const Run& run) { return run.first >= 0xFFFF; });
    if (runs.size() > most4) {
        runs.resize(most4);
    }
    if (!runs.empty()) {
        runs.back().last = std::min(runs.back().last, 0xFFFEU);
    }
    runs.push_back({0xFFFF, 0xFFFF, 0}); // the end mark
    const std::uint32_t count = count32(runs.size());
    const std::uint32_t halves = std::bit_floor(count);
    TableBytes table;
    table.all16({4, 16 + 8 * count, 0, 2 * count, 2 * halves,
                 static_cast<std::uint32_t>(std::bit_width(halves) - 1), 2 * (count - halves)});
    for (const Run& run : runs) {
        table.u16(run.last);
    }
    table.u16(0);
    for (const Run& run : runs) {
        table.u16(run.first);
    }
    for (const Run& run : runs) {
        table.u16(run.glyph - run.first);
    }
    for (std::uint32_t i = 0; i < count; ++i) {
        table.u16(0);
    }
    return table;
}

TableBytes format12(const std::vector<Run>& runs) {
    TableBytes table;
    table.all16({12, 0});
    table.u32(count32(16 + 12 * runs.size()));
    table.u32(0);
    table.u32(count32(runs.size()));
    for (const Run& run : runs) {
        table.u32(run.first);
        table.u32(run.last);
        table.u32(run.glyph);
    }
    return table;
}

} // namespace

TableBytes cmapTable(const std::map<char32_t, std::uint16_t>& glyphs) {
    const std::vector<Run> runs = runsOf(glyphs);
    const bool needs12 = !runs.empty() && (runs.back().last >= 0xFFFF || runs.size() > most4);
    const TableBytes shortTable = format4(runs);
    const std::uint32_t subtables = needs12 ? 4 : 2;
    const std::uint32_t at4 = 4 + 8 * subtables;
    const std::uint32_t at12 = at4 + count32(shortTable.size());
    TableBytes table;
    const auto record = [&](std::uint32_t platform, std::uint32_t encoding, std::uint32_t at) {
        table.all16({platform, encoding});
        table.u32(at);
    };
    table.all16({0, subtables});
    record(0, 3, at4);
    if (needs12) {
        record(0, 4, at12);
    }
    record(3, 1, at4);
    if (needs12) {
        record(3, 10, at12);
    }
    table.append(shortTable);
    if (needs12) {
        table.append(format12(runs));
    }
    return table;
}

} // namespace corvane
