// What the tables "GSUB" and "GPOS" begin with: scripts and features.
#pragma once

#include "fonts/made/table_bytes.h"

#include <span>
#include <string_view>

namespace corvane {

struct LayoutFeature {
    std::string_view tag;
    bool hasLookup = false; ///< the first one of the table; else none
};

/// A table whose features, in the order of their tags, all scripts have. `lookups` is a list of at
/// most one lookup; empty: none.
TableBytes layoutTable(std::span<const LayoutFeature> features, const TableBytes& lookups);

} // namespace corvane
