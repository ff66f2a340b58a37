#include "reader/classic/font_database.h"

#include "reader/syntax/syntax.h"
#include "runtime/callbacks.h"

#include <array>
#include <cstring>

namespace corvane::classic {

namespace {

/// Flags of a font descriptor (PDF Reference, 5.7.1).
constexpr std::int32_t fixedPitch = 1 << 0;
constexpr std::int32_t serif = 1 << 1;
constexpr std::int32_t italic = 1 << 6;
constexpr std::int32_t forceBold = 1 << 18;

std::int32_t flagsOf(DocumentCache& cache, const Object& font) {
    const ObjectOwner descriptor = lookupObject(cache, font, "FontDescriptor");
    if (typeObject(descriptor.get()) != ObjectType::dictionary) {
        return 0;
    }
    const ObjectOwner flags = lookupObject(cache, descriptor.get(), "Flags");
    return typeObject(flags.get()) == ObjectType::integer ? integerObject(flags.get()) : 0;
}

bool says(std::string_view name, std::string_view word) {
    return name.find(word) != name.npos;
}

/// The common font that looks most like what the descriptor and the name say; empty where they say
/// nothing.
std::string_view commonFont(std::string_view name, std::int32_t flags) {
    // Plain, bold, italic, both.
    constexpr std::array<std::string_view, 4> mono{"Courier", "Courier-Bold", "Courier-Oblique",
                                                   "Courier-BoldOblique"};
    constexpr std::array<std::string_view, 4> roman{"Times-Roman", "Times-Bold", "Times-Italic",
                                                    "Times-BoldItalic"};
    const bool isBold = (flags & forceBold) != 0 || says(name, "Bold") || says(name, "Black");
    const bool isItalic = (flags & italic) != 0 || says(name, "Italic") || says(name, "Oblique");
    const std::size_t style = (isBold ? 1U : 0U) + (isItalic ? 2U : 0U);
    return (flags & fixedPitch) != 0 ? mono[style]
           : (flags & serif) != 0    ? roman[style]
                                     : std::string_view();
}

} // namespace

bool searchFont(FontList& fonts, std::string_view name) {
    return fonts.find(name).has_value();
}

std::optional<std::string> makeMMFont(FontList& fonts, std::string_view name) {
    return searchFont(fonts, name) ? std::optional(std::string(name)) : std::nullopt;
}

std::optional<std::string> makeBaseFont(FontList& fonts, std::string_view name) {
    return makeMMFont(fonts, name.substr(0, name.find('_')));
}

std::optional<std::string> substituteFont(DocumentCache& cache, FontList& fonts,
                                          std::string_view name, const Object& font) {
    std::array<std::uint8_t, 256> folder{};
    callHost(slot::getFontPath, folder.data());
    if (folder[0] == 0) {
        return std::nullopt;
    }
    constexpr std::int32_t anyFont = 1;
    std::array<std::uint8_t, 256> prefixed{};
    prefixed[0] = static_cast<std::uint8_t>(name.size());
    std::memcpy(prefixed.data() + 1, name.data(), name.size());
    FontFile file;
    callHost(slot::findFontFile, prefixed.data(), &file, anyFont);
    if (file.isAlike == 0) {
        const std::string_view common = commonFont(name, flagsOf(cache, font));
        if (!common.empty() && searchFont(fonts, common)) {
            return std::string(common);
        }
    }
    return std::string(file.font + 1, file.font + 1 + file.font[0]);
}

} // namespace corvane::classic
