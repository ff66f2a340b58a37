// Encodings of PDF in terms of the host's character set, made from the tables of glyph names.
#include "fonts/encodings.h"
#include "resources/resources.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace corvane {

namespace {

constexpr std::size_t codes = 256;
constexpr std::size_t nameSize = 16;
constexpr std::byte unknownLetter{'?'};

/// In the order of their rows.
constexpr std::array rowEncodings{StandardEncodingKind::standard, StandardEncodingKind::macRoman,
                                  StandardEncodingKind::macExpert, StandardEncodingKind::winAnsi};

/// What the names of variants of a letter end in: the letter itself is the nearest that there is.
constexpr std::array<std::string_view, 6> variants{"small",    "oldstyle", "superior",
                                                   "inferior", "caron",    "acute"};

std::byte nearestCode(std::string_view name) {
    if (const auto code = macintoshCodeOf(name); code && macintoshNameOf(*code) == name) {
        return std::byte{*code};
    }
    const auto* const variant = std::ranges::find_if(variants, [name](std::string_view ending) {
        return name.size() > ending.size() && name.ends_with(ending);
    });
    return variant == variants.end() ? unknownLetter
                                     : nearestCode(name.substr(0, name.size() - variant->size()));
}

std::array<std::byte, rowEncodings.size() * codes> makeRows() {
    std::array<std::byte, rowEncodings.size() * codes> rows{};
    for (std::size_t row = 0; row < rowEncodings.size(); ++row) {
        for (std::size_t code = 0; code < codes; ++code) {
            const auto letter = static_cast<std::uint8_t>(code);
            const std::string_view name = glyphNameOf(rowEncodings[row], letter);
            const bool isOwn = name.empty() || rowEncodings[row] == StandardEncodingKind::macRoman;
            rows[row * codes + code] = isOwn ? std::byte{letter} : nearestCode(name);
        }
    }
    return rows;
}

std::array<std::byte, codes * nameSize> makeNames() {
    std::array<std::byte, codes * nameSize> names{};
    for (std::size_t code = 0; code < codes; ++code) {
        const std::string_view name = macintoshNameOf(static_cast<std::uint8_t>(code));
        std::ranges::copy(std::as_bytes(std::span(name.substr(0, nameSize))),
                          names.begin() + static_cast<std::ptrdiff_t>(code * nameSize));
    }
    return names;
}

} // namespace

std::span<const std::byte> encodingRows() {
    static const auto rows = makeRows();
    return rows;
}

std::span<const std::byte> glyphNames() {
    static const auto names = makeNames();
    return names;
}

} // namespace corvane
