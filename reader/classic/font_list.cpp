#include "reader/classic/font_list.h"

#include "host/fonts.h"
#include "runtime/callbacks.h"
#include "runtime/fixed.h"

#include <array>

namespace corvane::classic {

namespace {

/// What the machine says of the width of a blank, in ems; 0 where it has no font.
Fixed measuredSpaceOf(std::string_view name) {
    const auto found = findFont({.name = std::string(name)});
    const auto place = found ? placeOfFont(found->name) : std::nullopt;
    std::array<char32_t, 256> characters{};
    characters[' '] = ' ';
    const auto metrics = place ? measureFont(*place, characters) : std::nullopt;
    return metrics ? fixedFromReal(metrics->widths[' ']) : 0;
}

} // namespace

void FontList::list() {
    isListed_ = true;
    std::int32_t count = 0;
    callHost(slot::firstFontName, &count);
    std::array<std::uint8_t, 256> name{};
    for (std::int32_t font = 0; font < count; ++font) {
        callHost(slot::nextFontName, font, name.data());
        numbers_.try_emplace(std::string(name.begin() + 1, name.begin() + 1 + name[0]), font);
    }
}

std::optional<std::int32_t> FontList::find(std::string_view name) {
    if (!isListed_) {
        list();
    }
    const auto found = numbers_.find(name);
    return found == numbers_.end() ? std::nullopt : std::optional(found->second);
}

const FontInfo& FontList::info(std::int32_t font) {
    std::unique_ptr<FontInfo>& kept = infos_[font];
    if (kept == nullptr) {
        auto info = std::make_unique<FontInfo>();
        callHost(slot::getFontInfo, font, info.get());
        kept = std::move(info);
    }
    return *kept;
}

Fixed FontList::spaceWidth(std::string_view name) {
    if (const auto font = find(name)) {
        return info(*font).widths[' '];
    }
    if (measuredName_ != name) {
        measuredSpace_ = measuredSpaceOf(name);
        measuredName_ = name;
    }
    return measuredSpace_;
}

} // namespace corvane::classic
