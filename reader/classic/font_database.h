// The font database: which font of the host letters of a page are set in.
#pragma once

#include "reader/classic/font_list.h"

#include <optional>
#include <string>
#include <string_view>

namespace corvane {
struct DocumentCache;
struct Object;
} // namespace corvane

namespace corvane::classic {

/// Whether the host has a font of that name.
bool searchFont(FontList& fonts, std::string_view name);

// The name of a font that the host has, or nothing.

/// The Multiple Master instance itself, which the host may have under its name.
std::optional<std::string> makeMMFont(FontList& fonts, std::string_view name);
/// The Multiple Master font that an instance was made of: "Minion_400_600_" is of "Minion".
std::optional<std::string> makeBaseFont(FontList& fonts, std::string_view name);
/// What letters of a font that the host lacks are drawn in. `font` is its dictionary: where no font
/// is like it, its descriptor says which of the common ones comes nearest.
std::optional<std::string> substituteFont(DocumentCache& cache, FontList& fonts,
                                          std::string_view name, const Object& font);

} // namespace corvane::classic
