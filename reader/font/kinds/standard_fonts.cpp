#include "reader/font/kinds/standard_fonts.h"

#include "reader/font/font_names.h"

#include <algorithm>
#include <utility>

namespace corvane {

std::optional<StandardFont> standardFont(std::string_view baseFont) {
    // As `partsOfName` spells them.
    constexpr std::pair<std::string_view, std::string_view> families[] = {
        {"Helvetica", "Helvetica"}, {"Arial", "Helvetica"},
        {"Times", "Times"},         {"Times New Roman", "Times"},
        {"Courier", "Courier"},     {"Courier New", "Courier"},
        {"Symbol", "Symbol"},       {"Zapf Dingbats", "ZapfDingbats"},
    };
    const std::string family = partsOfName(baseFont).family;
    const auto* const found =
        std::ranges::find(families, family, &std::pair<std::string_view, std::string_view>::first);
    if (found == std::end(families)) {
        return std::nullopt;
    }
    return StandardFont{.family = found->second};
}

} // namespace corvane
