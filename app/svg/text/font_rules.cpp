#include "app/svg/text/font_rules.h"

#include "app/svg/markup.h"
#include "app/svg/text/font_names.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace corvane {

namespace {

void writeBase64(TextOutput& out, std::span<const std::byte> bytes) {
    constexpr std::string_view digits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        std::uint32_t three = 0;
        for (std::size_t i = at; i < at + 3; ++i) {
            three = three << 8 | (i < bytes.size() ? std::to_integer<std::uint32_t>(bytes[i]) : 0);
        }
        char* const four = out.room(4);
        for (std::size_t i = 0; i < 4; ++i) {
            const bool fills = at + i > bytes.size();
            four[i] = fills ? '=' : digits[three >> (18 - 6 * i) & 63];
        }
        out.advance(four + 4);
    }
}

void writeRule(TextOutput& out, const FontFacts& font, std::int32_t face,
               std::span<const std::byte> file) {
    writeIndent(out, 2);
    out.text("@font-face{font-family:");
    writeFamily(out, familyOfFace(font.family, face));
    if (font.weight != FontFacts{}.weight) {
        out.text(";font-weight:" + std::to_string(font.weight));
    }
    if (font.italic) {
        out.text(";font-style:italic");
    }
    out.text(";src:url(data:font/otf;base64,");
    writeBase64(out, file);
    out.text(")}");
}

} // namespace

void writeFontRules(TextOutput& out, const FontTable& fonts) {
    bool started = false;
    for (std::uint32_t number = 1; number <= fonts.size(); ++number) {
        const auto font = static_cast<Font>(number);
        for (std::int32_t face = 0; face < fonts.faceCount(font); ++face) {
            if (const auto file = fonts.file(font, face); !file.empty()) {
                if (!started) {
                    out.text("\n <style>");
                }
                started = true;
                writeRule(out, fonts.facts(font), face, file);
            }
        }
    }
    if (started) {
        out.text("\n </style>");
    }
}

} // namespace corvane
