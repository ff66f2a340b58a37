#include "fonts/made/standing_tables.h"

#include "fonts/made/layout_table.h"
#include "fonts/order/text_order.h"

#include <algorithm>
#include <array>

namespace corvane {

bool wantsStanding(const GlyphOrder& order) {
    return std::ranges::any_of(order.byCharacter, [](const auto& entry) {
        return isMark(entry.first) || isRightToLeft(entry.first);
    });
}

TableBytes glyphClassTable(std::size_t glyphs) {
    constexpr std::uint32_t header = 12;
    constexpr std::uint32_t base = 1;
    TableBytes table;
    table.all16({1, 0, header, 0, 0, 0});
    table.all16({2, 1, 0, count32(glyphs) - 1, base}); // one range, of all glyphs
    return table;
}

TableBytes positionTable() {
    return layoutTable(std::array{LayoutFeature{.tag = "mark"}}, {});
}

} // namespace corvane
