#include "app/artwork/classic/host_fonts.h"
#include "app/artwork/classic/slots.h"
#include "app/artwork/geometry/arithmetic.h"
#include "app/artwork/slots/guard.h"

#include <algorithm>

namespace corvane {

std::string_view prefixedText(const std::uint8_t* text) {
    const std::size_t length = target(text);
    return {static_cast<const char*>(static_cast<const void*>(text + 1)), length};
}

void copyPrefixed(std::uint8_t* into, std::string_view text) {
    constexpr std::size_t longest = 255;
    text = text.substr(0, longest);
    target(into) = static_cast<std::uint8_t>(text.size());
    std::ranges::copy(text, into + 1);
}

Matrix withNegatedSlant(Matrix matrix) {
    matrix.b = saturate(-std::int64_t{matrix.b});
    matrix.c = saturate(-std::int64_t{matrix.c});
    return matrix;
}

namespace {

HostError firstFontName(std::int32_t* count) {
    return guardedSlot([&](CallbackScope&) { target(count) = HostFonts::all().count(); });
}

HostError nextFontName(std::int32_t font, std::uint8_t* name) {
    return guardedSlot([&](CallbackScope&) { copyPrefixed(name, HostFonts::all().name(font)); });
}

HostError getFontInfo(std::int32_t font, FontInfo* info) {
    return guardedSlot(
        [&](CallbackScope&) { target(info) = HostFonts::all().measured(font).info; });
}

HostError getFontPath(std::uint8_t* path) {
    return guardedSlot([&](CallbackScope&) {
        const HostFonts& fonts = HostFonts::all();
        copyPrefixed(path, fonts.count() == 0 ? std::string() : fonts.folder(0));
    });
}

HostError findFontFile(const std::uint8_t* name, FontFile* result, std::int32_t options) {
    return guardedSlot([&](CallbackScope&) {
        constexpr std::int32_t anyFont = 1;
        const auto found = HostFonts::all().standIn(prefixedText(name));
        if (!found || (options != anyFont && !found->isAlike)) {
            throw ArtworkError("no font stands in for the one asked for");
        }
        FontFile& answer = target(result);
        copyPrefixed(answer.font, HostFonts::all().name(found->font));
        answer.isAlike = found->isAlike ? 1 : 0;
    });
}

} // namespace

void fillFontSlots(std::span<HostProcedure> table) {
    fillSlot(table, slot::firstFontName, firstFontName);
    fillSlot(table, slot::nextFontName, nextFontName);
    fillSlot(table, slot::getFontInfo, getFontInfo);
    fillSlot(table, slot::getFontPath, getFontPath);
    fillSlot(table, slot::findFontFile, findFontFile);
}

} // namespace corvane
