#include "fonts/made/made_font.h"
#include "fonts/made/cff_table.h"
#include "fonts/made/cmap_table.h"
#include "fonts/made/ligature_table.h"
#include "fonts/made/metric_tables.h"
#include "fonts/made/name_table.h"
#include "fonts/made/standing_tables.h"

#include <bit>
#include <span>
#include <string_view>

namespace corvane {

namespace {

struct Table {
    std::string_view tag;
    TableBytes content; ///< padded once its length is known
    std::size_t length = 0;
    std::uint32_t sum = 0;
};

/// Of 32-bit numbers.
std::uint32_t sumOf(std::span<const std::byte> bytes) {
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i + 4 <= bytes.size(); i += 4) {
        for (std::size_t j = 0; j < 4; ++j) {
            sum += std::to_integer<std::uint32_t>(bytes[i + j]) << (24 - 8 * j);
        }
    }
    return sum;
}

/// In the order of the tags, which the directory has.
std::vector<Table> tablesOf(const MadeFont& font) {
    const GlyphOrder order = orderGlyphs(font);
    const FontMeasures measures = measure(font, order);
    std::vector<Table> tables;
    const auto add = [&](std::string_view tag, TableBytes content) {
        tables.push_back({tag, std::move(content)});
    };
    add("CFF ", cffTable(postScriptName(font.family), order.glyphs, measures.box));
    const bool isStanding = wantsStanding(order);
    if (isStanding) {
        add("GDEF", glyphClassTable(order.glyphs.size()));
        add("GPOS", positionTable());
    }
    if (TableBytes ligatures = ligatureTable(order); ligatures.size() != 0) {
        add("GSUB", std::move(ligatures));
    }
    add("OS/2", os2Table(measures));
    add("cmap", cmapTable(order.byCharacter));
    add("head", headTable(measures));
    add("hhea", hheaTable(measures, order.glyphs));
    add("hmtx", hmtxTable(order.glyphs));
    add("maxp", maxpTable(order.glyphs.size()));
    add("name", nameTable(font));
    add("post", postTable());
    for (Table& table : tables) {
        table.length = table.content.size();
        table.content.padTo4();
        table.sum = sumOf(table.content.bytes());
    }
    return tables;
}

TableBytes directoryOf(std::span<const Table> tables) {
    const std::uint32_t count = count32(tables.size());
    const std::uint32_t halves = std::bit_floor(count);
    TableBytes directory;
    directory.text("OTTO");
    directory.all16({count, 16 * halves, static_cast<std::uint32_t>(std::bit_width(halves) - 1),
                     16 * (count - halves)});
    std::size_t at = 12 + 16 * tables.size();
    for (const Table& table : tables) {
        directory.text(table.tag);
        directory.u32(table.sum);
        directory.u32(count32(at));
        directory.u32(count32(table.length));
        at += table.content.size();
    }
    return directory;
}

} // namespace

std::vector<std::byte> writeMadeFont(const MadeFont& font) {
    const std::vector<Table> tables = tablesOf(font);
    TableBytes file = directoryOf(tables);
    std::size_t sumPlace = 0;
    for (const Table& table : tables) {
        if (table.tag == "head") {
            sumPlace = file.size() + headSumPlace;
        }
        file.append(table.content);
    }
    std::vector<std::byte> bytes = file.bytes();
    constexpr std::uint32_t wanted = 0xB1B0AFBA; // of the whole file, by the format
    const std::uint32_t rest = wanted - sumOf(bytes);
    for (std::size_t i = 0; i < 4; ++i) {
        bytes[sumPlace + i] = static_cast<std::byte>(rest >> (24 - 8 * i));
    }
    return bytes;
}

} // namespace corvane
