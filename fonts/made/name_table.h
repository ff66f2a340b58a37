// The table "name" of a made font.
#pragma once

#include "fonts/made/made_font.h"
#include "fonts/made/table_bytes.h"

#include <string>
#include <string_view>

namespace corvane {

/// Letters and digits of the family; "Made" where it has none.
std::string postScriptName(std::string_view family);

/// Bytes that are no UTF-8 become question marks.
TableBytes nameTable(const MadeFont& font);

} // namespace corvane
