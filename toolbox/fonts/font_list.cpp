// The fonts of the machine by their names, each once.
#include "host/fonts.h"
#include "toolbox/fonts/installed_fonts.h"

#include <algorithm>
#include <map>
#include <vector>

namespace corvane {

namespace {

/// Of fonts of one name a Type 1 program comes first, then the one listed first.
std::vector<ListedFont> namedFonts() {
    std::map<std::string_view, const InstalledFont*> byName;
    for (const InstalledFont& font : installedFonts().list()) {
        if (font.postScriptName.empty()) {
            continue;
        }
        const auto [at, isNew] = byName.try_emplace(font.postScriptName, &font);
        if (!isNew && font.isType1 && !at->second->isType1) {
            at->second = &font;
        }
    }
    std::vector<ListedFont> list;
    list.reserve(byName.size());
    for (const auto& [name, font] : byName) {
        list.push_back({.name = std::string(name),
                        .family = font->family,
                        .path = font->path,
                        .face = font->face,
                        .weight = font->weight,
                        .isItalic = font->isItalic,
                        .isFixedPitch = font->isFixedPitch,
                        .isTrueType = font->isTrueType});
    }
    return list;
}

} // namespace

std::span<const ListedFont> listFonts() {
    static const std::vector<ListedFont> fonts = namedFonts();
    return fonts;
}

std::optional<std::int32_t> placeOfFont(std::string_view name) {
    const std::span<const ListedFont> fonts = listFonts();
    const auto found = std::ranges::lower_bound(fonts, name, {}, &ListedFont::name);
    if (found == fonts.end() || found->name != name) {
        return std::nullopt;
    }
    return static_cast<std::int32_t>(found - fonts.begin());
}

} // namespace corvane
