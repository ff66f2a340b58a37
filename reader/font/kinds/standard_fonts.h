// The 14 fonts that every reader has, and the names under which files ask for them.
#pragma once

#include <optional>
#include <string_view>

namespace corvane {

struct StandardFont {
    std::string_view family; ///< "Helvetica", "Times", "Courier", "Symbol" or "ZapfDingbats"
    bool isSymbol() const { return family == "Symbol"; }
    bool isDingbats() const { return family == "ZapfDingbats"; }
};

/// Nothing where the name, tag and style aside, is that of no such font.
std::optional<StandardFont> standardFont(std::string_view baseFont);

} // namespace corvane
