#include "reader/font/substitute.h"

#include "host/fonts.h"

#include <algorithm>
#include <utility>

namespace corvane {

namespace {

/// Characters that fonts for a collection have, and others lack.
std::u32string_view charactersOf(std::string_view collection) {
    constexpr std::pair<std::string_view, std::u32string_view> known[] = {
        {"Adobe-Japan1", U"\u3042\u65E5"}, {"Adobe-Japan2", U"\u3042\u65E5"},
        {"Adobe-GB1", U"\u6C49\u8BED"},    {"Adobe-CNS1", U"\u6F22\u8A9E"},
        {"Adobe-Korea1", U"\uD55C\uAD6D"}, {"Adobe-KR", U"\uD55C\uAD6D"},
    };
    const auto* const found = std::ranges::find(
        known, collection, &std::pair<std::string_view, std::u32string_view>::first);
    return found == std::end(known) ? std::u32string_view() : found->second;
}

} // namespace

std::shared_ptr<const FontProgram> findSubstitute(std::string_view baseFont, const FontNames& names,
                                                  std::string_view collection) {
    if (const std::string path = standardFontFile(baseFont); !path.empty() && collection.empty()) {
        if (auto program = FontProgram::openFile(path, 0)) {
            return program;
        }
    }
    const std::optional<FoundFont> found =
        findFont({.name = std::string(baseFont.empty() ? names.realFamily : baseFont),
                  .weight = names.weight,
                  .isItalic = names.italic,
                  .isSerif = names.generic == GenericFamily::serif,
                  .isFixedPitch = names.generic == GenericFamily::monospace,
                  .characters = std::u32string(charactersOf(collection))});
    return found ? FontProgram::openFile(found->path, found->face) : nullptr;
}

} // namespace corvane
